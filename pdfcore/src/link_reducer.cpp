#include "pdfcore/src/link_reducer.h"

#include "pdfcore/src/annotation_copier.h"
#include "pdfcore/src/qpdf_objects.h"

#include <vector>

namespace pdfcore {

namespace {

/// A name as it stands in the tree of names.
std::string nameIn(QPDFObjectHandle destination)
{
    return destination.isName() ? destination.getName().substr(1) : destination.getStringValue();
}

} // namespace

LinkReducer::LinkReducer(SourceDocument &source, Role role)
    : m_source(source)
    , m_role(role)
    , m_actions([this](QPDFObjectHandle destination) { return reducedDestination(destination); },
                role != Role::Further)
{}

ReducedDestination LinkReducer::reducedDestination(QPDFObjectHandle destination)
{
    using Kind = ReducedDestination::Kind;
    const SourceDocument::Target target = m_source.resolve(destination);
    const bool isMain = m_role != Role::Further;
    const bool isName = destination.isName() || destination.isString();
    if (target.kind == SourceDocument::Target::Kind::OutsidePage && isMain && m_source.losesPages())
        return {Kind::Gone};
    if (target.kind != SourceDocument::Target::Kind::Page) {
        const bool isNumber = destination.isArray() && destination.getArrayNItems() > 0 &&
                              destination.getArrayItem(0).isInteger();
        const bool mayStay = m_role == Role::UnchangedMain || (isMain && !isNumber);
        if (isMain && isName)
            m_brokenNames.insert(nameIn(destination));
        return {Kind::Broken, mayStay ? destination : QPDFObjectHandle::newNull()};
    }
    if (!m_source.isKept(target.page))
        return {Kind::Gone};
    if (target.isExplicit || (isMain && isName))
        return {Kind::Leads, destination};
    return {Kind::Leads, m_source.explicitAddress(target)};
}

bool LinkReducer::reduceAction(QPDFObjectHandle object, const std::string &key)
{
    QPDFObjectHandle action = object.getKey(key);
    if (!action.isDictionary())
        return true;
    const ActionReducer::Result reduced = m_actions.reduced(action);
    if (QPDFObjectHandle(reduced.action).isNull()) {
        object.removeKey(key);
        return !reduced.ledToGonePage;
    }
    object.replaceKey(key, reduced.action);
    return true;
}

void LinkReducer::reduceTriggers(QPDFObjectHandle object)
{
    QPDFObjectHandle triggers = entryOf(object, "/AA");
    if (!triggers.isDictionary())
        return;
    for (const std::string &trigger : triggers.getKeys())
        reduceAction(triggers, trigger);
}

bool LinkReducer::reduceEntry(QPDFObjectHandle entry)
{
    bool stays = true;
    if (QPDFObjectHandle destination = entry.getKey("/Dest"); !destination.isNull()) {
        const ReducedDestination reduced = reducedDestination(destination);
        stays = reduced.kind != ReducedDestination::Kind::Gone;
        if (QPDFObjectHandle(reduced.use).isNull())
            entry.removeKey("/Dest");
        else
            entry.replaceKey("/Dest", reduced.use);
    }
    stays = reduceAction(entry, "/A") && stays;
    // Where an address was before it was replaced by an action.
    reduceAction(entry, "/PA");
    return stays;
}

bool LinkReducer::reduceAnnotation(QPDFObjectHandle annotation, QPDFObjectHandle page)
{
    // An annotation that two pages have in common comes here twice.
    if (m_goneAnnotations.count(annotation.getObjGen()) != 0)
        return false;
    const bool leadsSomewhere = reduceEntry(annotation);
    if (!leadsSomewhere && hasName(annotation, "/Subtype", "/Link")) {
        m_goneAnnotations.insert(annotation.getObjGen());
        return false;
    }
    reduceTriggers(annotation);
    QPDFObjectHandle named = annotation.getKey("/P");
    if (!named.isNull() && !isSameObject(named, page))
        annotation.replaceKey("/P", page);
    return true;
}

void LinkReducer::dropGoneAnnotations()
{
    for (const QPDFObjGen &id : m_goneAnnotations)
        m_source.document().replaceObject(id, QPDFObjectHandle::newNull());
}

void LinkReducer::reducePage(int index)
{
    QPDFObjectHandle page = m_source.page(index);
    reduceTriggers(page);
    QPDFObjectHandle annotations = page.getKey("/Annots");
    if (!annotations.isArray())
        return;
    std::vector<QPDFObjectHandle> kept;
    AnnotationCopier copier(m_source.document());
    for (QPDFObjectHandle &annotation : annotations.getArrayAsVector()) {
        if (!annotation.isDictionary())
            continue;
        if (!annotation.isIndirect())
            annotation = m_source.document().makeIndirectObject(annotation);
        // One that belongs to an earlier page already. Fields may have several widgets, but each of
        // them has its place among the field's kids.
        const bool isShared = m_keptAnnotations.count(annotation.getObjGen()) != 0 &&
                              !hasName(annotation, "/Subtype", "/Widget");
        if (isShared)
            kept.push_back(copier.add(annotation));
        else if (reduceAnnotation(annotation, page))
            kept.push_back(annotation);
    }
    copier.relate(page);
    for (const QPDFObjectHandle &annotation : kept) {
        if (m_keptAnnotations.insert(QPDFObjectHandle(annotation).getObjGen()).second)
            copier.relateToCopies(annotation);
    }
    page.replaceKey("/Annots", QPDFObjectHandle::newArray(kept));
}

} // namespace pdfcore
