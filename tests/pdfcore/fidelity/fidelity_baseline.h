// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QMap>
#include <QString>
#include <QStringList>

class FidelityDocument;

/// What is wrong with files by itself, so that a file made from them need not be better.
///
/// Problems count by kind: what they say, without numbers and paths.
class FidelityBaseline
{
public:
    FidelityBaseline() = default;

    /// The problems that FidelitySoundness finds in a file.
    explicit FidelityBaseline(const QString &path);

    /// Adds the problems of another file.
    void add(const FidelityBaseline &other);

    /// The problems of an open file of which its sources have fewer. `copies` says how often the
    /// list has the page that comes most often.
    [[nodiscard]] QStringList newProblems(const QString &path, FidelityDocument &document,
                                          int copies) const;

private:
    QMap<QString, int> m_known;
};
