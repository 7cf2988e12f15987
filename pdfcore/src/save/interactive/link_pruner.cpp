// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/save/interactive/link_pruner.h"

#include "pdfcore/src/qpdf/qpdf_objects.h"
#include "pdfcore/src/save/interactive/article_threads.h"
#include "pdfcore/src/save/source/annotation_copier.h"

#include <vector>

namespace pdfcore {

namespace {

/// Copies of annotations that several pages have in common; pages of a hostile file could ask for
/// very many.
constexpr int kMaxSharedCopies = 50'000;

/// A name as it stands in the tree of names.
std::string nameIn(QPDFObjectHandle destination)
{
    return destination.isName() ? destination.getName().substr(1) : destination.getStringValue();
}

} // namespace

LinkPruner::LinkPruner(SourceDocument &source, Role role)
    : m_source(source)
    , m_role(role)
    , m_actions([this](QPDFObjectHandle destination) { return prunedDestination(destination); },
                [this](QPDFObjectHandle thread) { return prunedThread(thread); },
                role != Role::Further)
{}

PrunedDestination LinkPruner::prunedDestination(QPDFObjectHandle destination)
{
    using Kind = PrunedDestination::Kind;
    const SourceDocument::Target target = m_source.resolve(destination);
    const bool isMain = m_role != Role::Further;
    const bool isName = destination.isName() || destination.isString();
    if (target.kind == SourceDocument::Target::Kind::OutsidePage && isMain &&
        m_source.losesPages()) {
        return {Kind::Gone};
    }
    if (target.kind != SourceDocument::Target::Kind::Page) {
        const bool isNumber = destination.isArray() && destination.getArrayNItems() > 0 &&
                              destination.getArrayItem(0).isInteger();
        const bool mayStay = m_role == Role::UnchangedMain || (isMain && !isNumber);
        if (isMain && isName) {
            m_brokenNames.insert(nameIn(destination));
        }
        return {Kind::Broken, mayStay ? destination : QPDFObjectHandle::newNull()};
    }
    if (!m_source.isKept(target.page)) {
        return {Kind::Gone};
    }
    if (target.isExplicit || (isMain && isName)) {
        return {Kind::Leads, destination};
    }
    return {Kind::Leads, m_source.explicitAddress(target)};
}

PrunedDestination LinkPruner::prunedThread(QPDFObjectHandle thread)
{
    using Kind = PrunedDestination::Kind;
    // Threads of further documents do not come along.
    if (m_role == Role::Further) {
        return {Kind::Gone};
    }
    if (!m_source.losesPages()) {
        return {Kind::Leads, thread};
    }
    QPDFObjectHandle found = thread;
    if (thread.isInteger()) {
        // Threads may be named by numbers (ISO 32000-2, 12.6.4), which change when some of them go.
        QPDFObjectHandle all = m_source.root().getKey("/Threads");
        const long long number = thread.getIntValue();
        const bool isThere = all.isArray() && number >= 0 && number < all.getArrayNItems();
        if (!isThere) {
            return {Kind::Broken};
        }
        found = all.getArrayItem(static_cast<int>(number));
    }
    if (!found.isDictionary() || !found.isIndirect()) {
        return {Kind::Leads, thread};
    }
    const auto [known, isNew] = m_goneThreads.emplace(found.getObjGen(), false);
    if (isNew) {
        known->second = isThreadGone(m_source, found);
    }
    return known->second ? PrunedDestination{Kind::Gone} : PrunedDestination{Kind::Leads, found};
}

bool LinkPruner::pruneAction(QPDFObjectHandle object, const std::string &key)
{
    QPDFObjectHandle action = object.getKey(key);
    if (!action.isDictionary()) {
        return true;
    }
    const ActionPruner::Result pruned = m_actions.pruned(action);
    if (QPDFObjectHandle(pruned.action).isNull()) {
        object.removeKey(key);
        return !pruned.ledToGonePage;
    }
    object.replaceKey(key, pruned.action);
    return true;
}

void LinkPruner::pruneTriggers(QPDFObjectHandle object)
{
    QPDFObjectHandle triggers = entryOf(object, "/AA");
    if (!triggers.isDictionary()) {
        return;
    }
    for (const std::string &trigger : triggers.getKeys()) {
        pruneAction(triggers, trigger);
    }
}

bool LinkPruner::pruneEntry(QPDFObjectHandle entry)
{
    bool stays = true;
    if (QPDFObjectHandle destination = entry.getKey("/Dest"); !destination.isNull()) {
        const PrunedDestination pruned = prunedDestination(destination);
        stays = pruned.kind != PrunedDestination::Kind::Gone;
        if (QPDFObjectHandle(pruned.use).isNull()) {
            entry.removeKey("/Dest");
        } else {
            entry.replaceKey("/Dest", pruned.use);
        }
    }
    stays = pruneAction(entry, "/A") && stays;
    // Where an address was before it was replaced by an action (ISO 32000-2, 12.5.6.5).
    pruneAction(entry, "/PA");
    return stays;
}

bool LinkPruner::pruneAnnotation(QPDFObjectHandle annotation, QPDFObjectHandle page)
{
    // An annotation that two pages have in common comes here twice.
    if (m_goneAnnotations.count(annotation.getObjGen()) != 0) {
        return false;
    }
    const bool leadsSomewhere = pruneEntry(annotation);
    if (!leadsSomewhere && hasName(annotation, "/Subtype", "/Link")) {
        m_goneAnnotations.insert(annotation.getObjGen());
        return false;
    }
    pruneTriggers(annotation);
    QPDFObjectHandle named = annotation.getKey("/P");
    if (!named.isNull() && !isSameObject(named, page)) {
        annotation.replaceKey("/P", page);
    }
    return true;
}

void LinkPruner::dropGoneAnnotations()
{
    for (const QPDFObjGen &id : m_goneAnnotations) {
        if (m_source.isAnnotation(m_source.document().getObject(id))) {
            m_source.document().replaceObject(id, QPDFObjectHandle::newNull());
        }
    }
}

void LinkPruner::prunePage(int index)
{
    QPDFObjectHandle page = m_source.page(index);
    pruneTriggers(page);
    QPDFObjectHandle annotations = page.getKey("/Annots");
    if (!annotations.isArray()) {
        return;
    }
    std::vector<QPDFObjectHandle> kept;
    AnnotationCopier copier(m_source.document());
    for (QPDFObjectHandle &annotation : annotations.getArrayAsVector()) {
        if (!annotation.isDictionary()) {
            continue;
        }
        if (!annotation.isIndirect()) {
            annotation = m_source.document().makeIndirectObject(annotation);
        }
        // One that belongs to an earlier page already. Fields may have several widgets, but each of
        // them has its place among the field's kids.
        const bool isShared = m_keptAnnotations.count(annotation.getObjGen()) != 0 &&
                              !hasName(annotation, "/Subtype", "/Widget");
        if (isShared && m_sharedCopies++ < kMaxSharedCopies) {
            kept.push_back(copier.add(annotation));
        } else if (pruneAnnotation(annotation, page)) {
            kept.push_back(annotation);
        }
    }
    copier.relate(page);
    for (QPDFObjectHandle &annotation : kept) {
        // A pop-up of an earlier page's annotation that only this page lists.
        QPDFObjectHandle copied = copier.copyOf(annotation);
        if (copied.isNull() || m_keptAnnotations.count(annotation.getObjGen()) != 0) {
            continue;
        }
        annotation.replaceKey("/P", annotation.getKey("/Parent").getKey("/P"));
        m_keptAnnotations.insert(annotation.getObjGen());
        annotation = copied;
    }
    for (const QPDFObjectHandle &annotation : kept) {
        if (m_keptAnnotations.insert(QPDFObjectHandle(annotation).getObjGen()).second) {
            copier.relateToCopies(annotation);
        }
    }
    page.replaceKey("/Annots", QPDFObjectHandle::newArray(kept));
}

} // namespace pdfcore
