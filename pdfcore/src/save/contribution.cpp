// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/save/contribution.h"

#include "pdfcore/src/qpdf/qpdf_objects.h"
#include "pdfcore/src/save/content/catalogue.h"
#include "pdfcore/src/save/content/resource_pruner.h"
#include "pdfcore/src/save/content/structure_tree.h"

namespace pdfcore {

void Contribution::prune(LinkPruner::Role role)
{
    const bool isMain = role != LinkPruner::Role::Further;
    LinkPruner links(m_source, role);
    m_labels.emplace(m_source);
    for (const int index : m_source.keptPages()) {
        m_rotations[index] = m_source.page(index).getKey("/Rotate");
        links.prunePage(index);
    }
    m_outline = Outline::of(m_source, links, isMain);
    m_fields = FormFields::of(m_source, links, isMain);
    if (isMain) {
        pruneCatalogue(m_source, links);
    }
    m_brokenNames = links.brokenNames();
    if (!m_source.losesPages()) {
        return;
    }
    if (isMain) {
        pruneStructure(m_source, links.goneAnnotations());
    }
    links.dropGoneAnnotations();
    pruneResources(m_source);
    dropGonePages();
}

/// Finds the annotations of the pages that stay. A pop-up (ISO 32000-2, 12.5.6.14) may be listed by
/// another page than what it belongs to; it moves to that one's page.
std::set<QPDFObjGen> Contribution::keepAnnotations()
{
    std::set<QPDFObjGen> kept;
    for (const int index : m_source.keptPages()) {
        for (const QPDFObjectHandle &annotation : itemsOf(m_source.page(index).getKey("/Annots"))) {
            kept.insert(QPDFObjectHandle(annotation).getObjGen());
        }
    }
    for (const int index : m_source.keptPages()) {
        for (const QPDFObjectHandle &annotation : itemsOf(m_source.page(index).getKey("/Annots"))) {
            QPDFObjectHandle popup = entryOf(annotation, "/Popup");
            if (popup.isDictionary() && popup.isIndirect() &&
                kept.insert(popup.getObjGen()).second) {
                popup.replaceKey("/P", m_source.page(index));
            }
        }
    }
    return kept;
}

/// Empties the pages that are gone and what was on them, so that nothing brings them along.
void Contribution::dropGonePages()
{
    const std::set<QPDFObjGen> kept = keepAnnotations();
    QPDF &document = m_source.document();
    for (const int index : m_source.gonePages()) {
        QPDFObjectHandle page = m_source.page(index);
        for (QPDFObjectHandle &annotation : itemsOf(page.getKey("/Annots"))) {
            // It may be a field whose other widgets stay.
            if (annotation.isIndirect() && m_source.isAnnotation(annotation) &&
                !m_fields.holds(annotation) && kept.count(annotation.getObjGen()) == 0) {
                document.replaceObject(annotation.getObjGen(), QPDFObjectHandle::newNull());
            }
        }
        document.replaceObject(page.getObjGen(), QPDFObjectHandle::newNull());
    }
}

void Contribution::bringPages(QPDF &output, bool isMain)
{
    if (isMain) {
        for (const int index : m_source.keptPages()) {
            m_pages[index] = m_source.page(index);
        }
        return;
    }
    m_copier = std::make_unique<ObjectCopier>(output, m_source.handle());
    // All pages are reserved before the first is copied, so that each finds the others.
    for (const int index : m_source.keptPages()) {
        m_pages[index] = QPDFObjectHandle::newReserved(&output);
        m_copier->map(m_source.page(index), m_pages[index]);
    }
    for (const int index : m_source.keptPages()) {
        // The output has a page tree, article threads and document parts of its own (ISO 32000-2,
        // 7.7.3.3).
        QPDFObjectHandle page = m_source.page(index).unsafeShallowCopy();
        for (const char *key : {"/Parent", "/B", "/DPart"}) {
            page.removeKey(key);
        }
        output.replaceReserved(m_pages[index], m_copier->copy(page));
    }
}

void Contribution::renameTargets(const ActionTargets::Names &fields,
                                 const ActionTargets::Names &attachments)
{
    if (fields.empty() && attachments.empty()) {
        return;
    }
    const ActionTargets::Objects none;
    ActionTargets targets(none, fields, attachments);
    for (const Outline::Entry &entry : m_outline.entries()) {
        targets.apply(entry.dictionary);
    }
    for (auto &[index, page] : m_pages) {
        targets.apply(page);
        for (const QPDFObjectHandle &annotation : itemsOf(page.getKey("/Annots"))) {
            if (QPDFObjectHandle(annotation).isDictionary()) {
                targets.apply(annotation);
            }
        }
    }
}

QPDFObjectHandle Contribution::pageInOutput(int index) const
{
    return m_pages.at(m_source.firstIndexOf(index));
}

QPDFObjectHandle Contribution::ownRotation(int index) const
{
    return m_rotations.at(m_source.firstIndexOf(index));
}

} // namespace pdfcore
