// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "tests/pdfcore/fidelity/fidelity_document.h"

#include <functional>

/// One entry of an outline with all that belongs to it.
struct FidelityOutlineEntry
{
    QString title;
    FidelityTarget target;
    QByteArray style; ///< Colour and flags.
    bool isOpen = false;
    QList<FidelityOutlineEntry> children;

    /// An entry that leads nowhere.
    [[nodiscard]] bool isHeading() const { return !target.isPage && target.other.isEmpty(); }

    /// An entry that was meant to lead to a page and does not.
    [[nodiscard]] bool leadsNowhere() const { return target.isPage && target.index < 0; }
};

namespace FidelityOutline {

/// The outline of a document. A broken chain of entries is added to `problems`.
QList<FidelityOutlineEntry> read(FidelityDocument &document, QStringList *problems = nullptr);

/// The outline without the entries whose page `isKept` denies; their children move up.
QList<FidelityOutlineEntry> filtered(const QList<FidelityOutlineEntry> &entries,
                                     const std::function<bool(const QString &mark)> &isKept);

/// The outline without the entries that are in the way, whose children move up, and without
/// headings that have lost all of theirs by that.
QList<FidelityOutlineEntry>
without(const QList<FidelityOutlineEntry> &entries,
        const std::function<bool(const FidelityOutlineEntry &entry)> &isInTheWay);

/// One line for each entry: its depth, title, target, style and whether it is open.
QStringList lines(const QList<FidelityOutlineEntry> &entries);

/// The titles alone, each after two blanks for each level above it.
QStringList titles(const QList<FidelityOutlineEntry> &entries);

} // namespace FidelityOutline
