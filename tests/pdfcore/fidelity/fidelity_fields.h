// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "tests/pdfcore/fidelity/fidelity_document.h"

/// One widget on a page with its field.
struct FidelityWidget
{
    QString fullName;      ///< Names from the root to the field, with full stops between.
    QString lastName;      ///< The partial name of the field itself.
    QByteArray value;      ///< /V of the field, inherited.
    QByteArray kind;       ///< /FT, /Ff, options and default value.
    QByteArray appearance; ///< What the widget shows, and its state.
    QByteArray font;       ///< The font that its /DA means.
    QPDFObjGen root;       ///< The root field.
    QPDFObjGen widget;

    /// Whether the form holds the font that the /DA means.
    [[nodiscard]] bool hasFont() const { return font.startsWith('/'); }

    /// All that stays the same wherever the widget goes.
    [[nodiscard]] QByteArray content() const;
};

namespace FidelityFields {

/// The widgets on a page, in the order of its annotations.
QList<FidelityWidget> onPage(FidelityDocument &document, qsizetype index);

/// Adds what a damaged form leaves out and a reader sees all the same: what fields are parts of,
/// and fields that only a page knows.
void completeForm(FidelityDocument &document);

/// Full names of the fields of the calculation order.
QStringList calculationOrder(FidelityDocument &document);

/// Full name of a field.
QString fullName(QPDFObjectHandle field);

/// What is wrong with the form as a whole: fields without widgets, widgets without fields, names
/// that come twice, parents that do not know their children.
QStringList problems(FidelityDocument &document);

/// An attribute of a field, inherited ones included.
QPDFObjectHandle attribute(QPDFObjectHandle field, const char *key);

} // namespace FidelityFields
