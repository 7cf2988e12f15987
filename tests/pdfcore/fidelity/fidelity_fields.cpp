// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdfcore/fidelity/fidelity_fields.h"

#include <QRegularExpression>

#include <algorithm>

namespace FidelityFields {

namespace {

constexpr int kMaxDepth = 50;

bool isWidget(QPDFObjectHandle annotation)
{
    if (!annotation.isDictionary()) {
        return false;
    }
    QPDFObjectHandle kind = annotation.getKey("/Subtype");
    return kind.isName() && kind.getName() == "/Widget";
}

/// The field of a widget: itself, or the one that it is a part of.
QPDFObjectHandle fieldOf(QPDFObjectHandle widget)
{
    return widget.hasKey("/T") || !widget.hasKey("/Parent") ? widget : widget.getKey("/Parent");
}

QPDFObjectHandle rootOf(QPDFObjectHandle field)
{
    for (int depth = 0; depth < kMaxDepth && field.getKey("/Parent").isDictionary(); ++depth) {
        field = field.getKey("/Parent");
    }
    return field;
}

/// What a form object draws, with fonts in the place of their names, which may change.
QByteArray drawing(FidelityDocument &document, QPDFObjectHandle appearance)
{
    if (!appearance.isStream()) {
        return document.describe(appearance);
    }
    QByteArray data = fidelityData(appearance);
    QPDFObjectHandle resources = appearance.getDict().getKey("/Resources");
    QPDFObjectHandle fonts = resources.isDictionary() ? resources.getKey("/Font") : resources;
    for (const std::string &name :
         fonts.isDictionary() ? fonts.getKeys() : std::set<std::string>()) {
        data.replace(QByteArray(QByteArray::fromStdString(name) + ' '),
                     QByteArray(document.describe(fonts.getKey(name)) + ' '));
    }
    return document.describe(appearance.getDict().getKey("/BBox")) + data;
}

/// What a widget shows in each of its states.
QByteArray appearanceOf(FidelityDocument &document, QPDFObjectHandle widget)
{
    QByteArray text = document.describe(widget.getKey("/AS"));
    QPDFObjectHandle appearances = widget.getKey("/AP");
    for (const std::string &key :
         appearances.isDictionary() ? appearances.getKeys() : std::set<std::string>()) {
        QPDFObjectHandle appearance = appearances.getKey(key);
        text += ' ' + QByteArray::fromStdString(key);
        if (!appearance.isDictionary() || appearance.isStream()) {
            text += ' ' + drawing(document, appearance);
            continue;
        }
        for (const std::string &state : appearance.getKeys()) {
            text += ' ' + QByteArray::fromStdString(state) + ' ' +
                    drawing(document, appearance.getKey(state));
        }
    }
    return text;
}

/// The base font that the appearance string of a field means.
QByteArray fontOf(FidelityDocument &document, QPDFObjectHandle widget)
{
    QPDFObjectHandle form = document.catalogue().getKey("/AcroForm");
    QPDFObjectHandle appearance = attribute(widget, "/DA");
    if (appearance.isNull() && form.isDictionary()) {
        appearance = form.getKey("/DA");
    }
    static const QRegularExpression fontName(QStringLiteral("(/\\S+)\\s+[\\d.]+\\s+Tf"));
    const QString name = fontName.match(fidelityText(appearance)).captured(1);
    if (name.isEmpty()) {
        return "no name";
    }
    for (const char *key : {"/DR", "/Font"}) {
        form = form.isDictionary() ? form.getKey(key) : QPDFObjectHandle::newNull();
    }
    QPDFObjectHandle font =
        form.isDictionary() ? form.getKey(name.toStdString()) : QPDFObjectHandle::newNull();
    if (!font.isDictionary()) {
        return "no font " + name.toLatin1();
    }
    return document.describe(font.getKey("/BaseFont"));
}

struct Walker
{
    FidelityDocument &document;
    QStringList problems;
    std::map<QPDFObjGen, int> widgetsOnPages;
    std::set<QPDFObjGen> visited;
    QStringList names;

    void walk(QPDFObjectHandle field, QPDFObjectHandle parent)
    {
        const QString name = fullName(field);
        if (!field.isDictionary() || !field.isIndirect()) {
            problems.append(QStringLiteral("a field is no object of its own"));
            return;
        }
        if (!visited.insert(field.getObjGen()).second) {
            problems.append(QStringLiteral("field %1 comes twice in the form").arg(name));
            return;
        }
        QPDFObjectHandle ownParent = field.getKey("/Parent");
        if (parent.isNull() ? !ownParent.isNull() : ownParent.getObjGen() != parent.getObjGen()) {
            problems.append(QStringLiteral("field %1 has another parent").arg(name));
        }
        if (field.hasKey("/T")) {
            names.append(name);
        }
        if (fidelityText(field.getKey("/T")).contains(u'.')) {
            problems.append(QStringLiteral("field %1 has a full stop in its own name").arg(name));
        }
        QPDFObjectHandle kids = field.getKey("/Kids");
        const bool isParent = kids.isArray() && kids.getArrayNItems() > 0;
        for (int i = 0; isParent && i < kids.getArrayNItems(); ++i) {
            walk(kids.getArrayItem(i), field);
        }
        if (!isParent && widgetsOnPages[field.getObjGen()] != 1) {
            problems.append(QStringLiteral("field %1 stands on %2 pages")
                                .arg(name)
                                .arg(widgetsOnPages[field.getObjGen()]));
        }
    }
};

} // namespace

QPDFObjectHandle attribute(QPDFObjectHandle field, const char *key)
{
    for (int depth = 0; depth < kMaxDepth && field.isDictionary(); ++depth) {
        if (field.hasKey(key)) {
            return field.getKey(key);
        }
        field = field.getKey("/Parent");
    }
    return QPDFObjectHandle::newNull();
}

QString fullName(QPDFObjectHandle field)
{
    QStringList parts;
    for (int depth = 0; depth < kMaxDepth && field.isDictionary(); ++depth) {
        if (field.hasKey("/T")) {
            parts.prepend(fidelityText(field.getKey("/T")));
        }
        field = field.getKey("/Parent");
    }
    return parts.join(u'.');
}

QList<FidelityWidget> onPage(FidelityDocument &document, qsizetype index)
{
    QList<FidelityWidget> widgets;
    for (QPDFObjectHandle annotation : document.annotations(index)) {
        if (!isWidget(annotation)) {
            continue;
        }
        QPDFObjectHandle field = fieldOf(annotation);
        FidelityWidget widget;
        widget.fullName = fullName(field);
        widget.lastName = fidelityText(field.getKey("/T"));
        widget.value = document.describe(attribute(field, "/V"));
        widget.kind = document.describe(attribute(field, "/FT")) + ' ' +
                      document.describe(attribute(field, "/Ff")) + ' ' +
                      document.describe(attribute(field, "/Opt")) + ' ' +
                      document.describe(attribute(field, "/DV")) + ' ' +
                      document.describe(field.getKey("/AA"));
        widget.appearance = appearanceOf(document, annotation);
        if (widget.kind.startsWith("/Tx") || widget.kind.startsWith("/Ch")) {
            widget.font = fontOf(document, annotation);
        }
        widget.root = rootOf(field).getObjGen();
        widget.widget = annotation.getObjGen();
        widgets.append(widget);
    }
    return widgets;
}

void completeForm(FidelityDocument &document)
{
    QPDFObjectHandle form = document.catalogue().getKey("/AcroForm");
    if (!form.isDictionary()) {
        return;
    }
    std::vector<QPDFObjectHandle> fields;
    if (QPDFObjectHandle list = form.getKey("/Fields"); list.isArray()) {
        fields = list.getArrayAsVector();
    }
    std::set<QPDFObjGen> visited;
    for (const QPDFObjectHandle &field : fields) {
        visited.insert(QPDFObjectHandle(field).getObjGen());
    }
    const auto visitBelow = [&visited](std::vector<QPDFObjectHandle> waiting) {
        for (std::size_t i = 0; i < waiting.size(); ++i) {
            QPDFObjectHandle field = waiting[i];
            if (!field.isDictionary() || !field.getKey("/Kids").isArray()) {
                continue;
            }
            for (QPDFObjectHandle &kid : field.getKey("/Kids").getArrayAsVector()) {
                if (!kid.isDictionary() || !visited.insert(kid.getObjGen()).second) {
                    continue;
                }
                if (!kid.hasKey("/Parent")) {
                    kid.replaceKey("/Parent", field);
                }
                waiting.push_back(kid);
            }
        }
    };
    visitBelow(fields);
    for (qsizetype i = 0; i < document.marks().size(); ++i) {
        for (QPDFObjectHandle annotation : document.annotations(i)) {
            if (!isWidget(annotation)) {
                continue;
            }
            QPDFObjectHandle parent = annotation.getKey("/Parent");
            if (parent.isDictionary() && parent.getKey("/Type").isNameAndEquals("/Page")) {
                annotation.removeKey("/Parent");
            }
            QPDFObjectHandle root = rootOf(fieldOf(annotation));
            const bool isField = root.hasKey("/FT") || root.hasKey("/T");
            if (!isField || !visited.insert(root.getObjGen()).second) {
                continue;
            }
            fields.push_back(root);
            visitBelow({root});
        }
    }
    form.replaceKey("/Fields", QPDFObjectHandle::newArray(fields));
}

QStringList calculationOrder(FidelityDocument &document)
{
    QStringList names;
    QPDFObjectHandle form = document.catalogue().getKey("/AcroForm");
    QPDFObjectHandle order = form.isDictionary() ? form.getKey("/CO") : QPDFObjectHandle::newNull();
    for (int i = 0; order.isArray() && i < order.getArrayNItems(); ++i) {
        names.append(fullName(order.getArrayItem(i)));
    }
    return names;
}

QStringList problems(FidelityDocument &document)
{
    Walker walker{document, {}, {}, {}, {}};
    for (qsizetype i = 0; i < document.marks().size(); ++i) {
        for (QPDFObjectHandle annotation : document.annotations(i)) {
            if (isWidget(annotation)) {
                ++walker.widgetsOnPages[annotation.getObjGen()];
            }
        }
    }
    QPDFObjectHandle form = document.catalogue().getKey("/AcroForm");
    QPDFObjectHandle fields =
        form.isDictionary() ? form.getKey("/Fields") : QPDFObjectHandle::newNull();
    for (int i = 0; fields.isArray() && i < fields.getArrayNItems(); ++i) {
        walker.walk(fields.getArrayItem(i), QPDFObjectHandle::newNull());
    }
    for (const auto &[widget, count] : walker.widgetsOnPages) {
        if (!walker.visited.contains(widget)) {
            walker.problems.append(
                QStringLiteral("the widget of %1 belongs to no field of the form")
                    .arg(fullName(document.pdf().getObjectByObjGen(widget))));
        }
    }
    walker.names.sort();
    for (qsizetype i = 1; i < walker.names.size(); ++i) {
        if (walker.names.at(i) == walker.names.at(i - 1)) {
            walker.problems.append(
                QStringLiteral("two fields are called %1").arg(walker.names.at(i)));
        }
    }
    QPDFObjectHandle order = form.isDictionary() ? form.getKey("/CO") : QPDFObjectHandle::newNull();
    for (int i = 0; order.isArray() && i < order.getArrayNItems(); ++i) {
        if (!walker.visited.contains(order.getArrayItem(i).getObjGen())) {
            walker.problems.append(QStringLiteral("the calculation order names a lost field"));
        }
    }
    return walker.problems;
}

} // namespace FidelityFields

QByteArray FidelityWidget::content() const
{
    // The names of root fields may change.
    const QString name = fullName == lastName ? QString() : lastName;
    return name.toUtf8() + " = " + value + " | " + kind + " | " + font + " | " + appearance;
}
