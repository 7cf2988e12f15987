// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>

/// A document put together from named objects, for tests of what a save keeps.
///
/// "{name}" in the body of an object stands for a reference to the object of that name. The first
/// object is the catalogue.
class FidelityAssembly
{
public:
    /// Adds an object, or replaces the body of an earlier one.
    void set(const QByteArray &name, const QByteArray &body);

    /// The same for a stream with the given dictionary entries besides its length.
    void setStream(const QByteArray &name, const QByteArray &entries, const QByteArray &data);

    /// Adds entries to the dictionary that the object is.
    void addEntries(const QByteArray &name, const QByteArray &entries);

    /// Adds elements to the end of the array that the object is.
    void addElements(const QByteArray &name, const QByteArray &elements);

    /// Replaces a part of an object's body, which must be there.
    void replace(const QByteArray &name, const QByteArray &before, const QByteArray &after);

    /// Entries of the trailer; references work as in bodies.
    void setTrailer(const QByteArray &entries);

    /// The whole file.
    [[nodiscard]] QByteArray file() const;

private:
    struct Object
    {
        QByteArray body;
        QByteArray data; ///< Of a stream.
        bool isStream = false;
    };

    Object &object(const QByteArray &name);
    [[nodiscard]] QByteArray resolved(const QByteArray &body) const;

    QList<Object> m_objects;
    QHash<QByteArray, qsizetype> m_indexes;
    QByteArray m_trailer;
};
