// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdfcore/fidelity/fidelity_comparison.h"
#include "tests/pdfcore/fidelity/fidelity_fields.h"

#include <utility>

namespace {

QString rootName(const FidelityWidget &widget)
{
    return widget.fullName.section(u'.', 0, 0);
}

bool isSignature(const FidelityWidget &widget)
{
    return widget.kind.startsWith("/Sig");
}

/// What stays of a widget. The values of signatures are no part of that.
QString lastingContent(FidelityWidget widget)
{
    if (isSignature(widget)) {
        widget.value.clear();
    }
    return QString::fromLatin1(widget.content());
}

} // namespace

QStringList FidelityComparison::fieldProblems()
{
    if (!isComparable()) {
        return taken();
    }
    std::vector<QList<FidelityWidget>> found;
    for (qsizetype i = 0; i < m_uses.size(); ++i) {
        const Use &use = m_uses.at(i);
        found.push_back(FidelityFields::onPage(m_output, i));
        QStringList contents;
        QStringList wanted;
        QList<FidelityWidget> originals;
        if (use.source != nullptr) {
            originals = FidelityFields::onPage(*use.source, use.index);
        }
        for (const FidelityWidget &widget : std::as_const(originals)) {
            wanted.append(lastingContent(widget));
        }
        for (qsizetype k = 0; k < found.back().size(); ++k) {
            FidelityWidget widget = found.back().at(k);
            // A font that was never there may be anything.
            if (k < originals.size() && !originals.at(k).hasFont()) {
                widget.font = originals.at(k).font;
            }
            contents.append(lastingContent(widget));
        }
        compareLists(QStringLiteral("fields of page %1 (%2)").arg(i + 1).arg(mark(use)), contents,
                     wanted);
    }
    if (m_problems.isEmpty()) {
        compareFieldNames(found);
        compareCalculationOrder();
    }
    return taken();
}

std::set<QString> FidelityComparison::keptRootNames(FidelityDocument &document)
{
    std::set<QString> names;
    for (const Use &use : std::as_const(m_uses)) {
        if (use.source == &document) {
            for (const FidelityWidget &widget : FidelityFields::onPage(document, use.index)) {
                names.insert(rootName(widget));
            }
        }
    }
    return names;
}

/// First uses of pages share their fields as in the source; a copy has fields of its own.
void FidelityComparison::compareFieldNames(const std::vector<QList<FidelityWidget>> &found)
{
    std::map<QString, int> claims;
    for (FidelityDocument *source : std::as_const(m_order)) {
        for (const QString &name : keptRootNames(*source)) {
            ++claims[name];
        }
    }
    const std::set<QString> ofMain =
        m_order.isEmpty() ? std::set<QString>() : keptRootNames(*m_order.constFirst());

    using Root = std::pair<FidelityDocument *, QPDFObjGen>;
    std::map<Root, QPDFObjGen> firstRoots;
    std::map<QPDFObjGen, std::pair<Root, int>> owners;
    for (std::size_t i = 0; i < found.size(); ++i) {
        const Use &use = m_uses.at(static_cast<qsizetype>(i));
        if (use.source == nullptr) {
            continue;
        }
        const QList<FidelityWidget> originals = FidelityFields::onPage(*use.source, use.index);
        std::map<QPDFObjGen, QPDFObjGen> rootsOnPage;
        for (qsizetype k = 0; k < originals.size(); ++k) {
            const FidelityWidget &original = originals.at(k);
            const FidelityWidget &widget = found[i].at(k);
            const Root root{use.source, original.root};
            const QString name = QStringLiteral("field %1 of page %2 (%3)")
                                     .arg(widget.fullName)
                                     .arg(i + 1)
                                     .arg(mark(use));
            const auto [onPage, isNewOnPage] = rootsOnPage.emplace(original.root, widget.root);
            if (onPage->second != widget.root) {
                m_problems.append(name + QStringLiteral(" is torn apart on its page"));
            }
            const auto [owner, isNewOwner] = owners.emplace(widget.root, std::pair{root, use.copy});
            if (owner->second != std::pair{root, use.copy}) {
                m_problems.append(name + QStringLiteral(" is tied to another field"));
            }
            if (use.copy > 0) {
                continue;
            }
            const auto [first, isFirst] = firstRoots.emplace(root, widget.root);
            if (first->second != widget.root) {
                m_problems.append(name + QStringLiteral(" is torn apart"));
            }
            const QString ownName = rootName(original);
            const bool mayChange = use.source != m_order.constFirst() &&
                                   (claims[ownName] > 1 || ofMain.contains(ownName));
            if (!mayChange && widget.fullName != original.fullName) {
                m_problems.append(name + QStringLiteral(" was renamed from ") + original.fullName);
            }
        }
    }
}

void FidelityComparison::compareCalculationOrder()
{
    const QStringList found = FidelityFields::calculationOrder(m_output);
    qsizetype least = 0;
    for (FidelityDocument *source : std::as_const(m_order)) {
        std::set<QString> kept;
        for (const Use &use : std::as_const(m_uses)) {
            if (use.source != source) {
                continue;
            }
            for (const FidelityWidget &widget : FidelityFields::onPage(*source, use.index)) {
                kept.insert(widget.fullName);
            }
        }
        QStringList wanted;
        for (const QString &name : FidelityFields::calculationOrder(*source)) {
            if (kept.contains(name)) {
                wanted.append(name);
            }
        }
        least += wanted.size();
        if (source != m_order.constFirst()) {
            continue;
        }
        QStringList ofMain;
        for (const QString &name : found) {
            if (wanted.contains(name)) {
                ofMain.append(name);
            }
        }
        compareLists(QStringLiteral("calculation order"), ofMain, wanted);
    }
    if (found.size() < least) {
        m_problems.append(QStringLiteral("the calculation order has %1 fields instead of %2")
                              .arg(found.size())
                              .arg(least));
    }
}

QStringList FidelityComparison::hybridFormProblems()
{
    QPDFObjectHandle form = m_output.catalogue().getKey("/AcroForm");
    if (form.isDictionary() && form.hasKey("/XFA") && !isUnchanged()) {
        m_problems.append(QStringLiteral("/XFA is still there"));
    }
    return taken();
}

QStringList FidelityComparison::signatureProblems()
{
    if (!isComparable()) {
        return taken();
    }
    for (qsizetype i = 0; i < m_uses.size(); ++i) {
        for (const FidelityWidget &widget : FidelityFields::onPage(m_output, i)) {
            if (isSignature(widget) && widget.value != "null") {
                m_problems.append(
                    QStringLiteral("the field %1 is still signed").arg(widget.fullName));
            }
        }
    }
    QPDFObjectHandle root = m_output.catalogue();
    QPDFObjectHandle form = root.getKey("/AcroForm");
    if (root.hasKey("/Perms")) {
        m_problems.append(QStringLiteral("/Perms is still there"));
    }
    if (form.isDictionary() && form.hasKey("/SigFlags")) {
        m_problems.append(QStringLiteral("/SigFlags is still there"));
    }
    return taken();
}
