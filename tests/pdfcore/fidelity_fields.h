#pragma once

#include "tests/pdfcore/fidelity_document.h"

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

    /// All that stays the same wherever the widget goes.
    [[nodiscard]] QByteArray content() const;
};

namespace FidelityFields {

/// The widgets on a page, in the order of its annotations.
QList<FidelityWidget> onPage(FidelityDocument &document, qsizetype index);

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
