#include "pdfcore/src/link_reducer.h"

#include "pdfcore/src/annotation_copier.h"
#include "pdfcore/src/qpdf_objects.h"

#include <vector>

namespace pdfcore {

namespace {

/// Actions that follow one another; longer chains are cut off.
constexpr int kMaxActionChain = 64;

} // namespace

LinkReducer::LinkReducer(SourceDocument &source, bool isMain)
    : m_source(source)
    , m_isMain(isMain)
{}

QPDFObjectHandle LinkReducer::reducedDestination(QPDFObjectHandle destination)
{
    const SourceDocument::Target target = m_source.resolve(destination);
    if (target.kind == SourceDocument::Target::Kind::Nowhere) {
        QPDFObjectHandle first = destination.isArray() && destination.getArrayNItems() > 0
                                     ? destination.getArrayItem(0)
                                     : destination;
        const bool mayStay = m_isMain || first.isNull();
        return mayStay ? destination : QPDFObjectHandle::newNull();
    }
    if (!m_source.isKept(target.page))
        return QPDFObjectHandle::newNull();
    const bool isName = destination.isName() || destination.isString();
    if (target.isExplicit || (m_isMain && isName))
        return destination;
    return m_source.explicitAddress(target);
}

bool LinkReducer::reduceAction(QPDFObjectHandle action)
{
    if (!action.isDictionary())
        return true;
    if (action.isIndirect()) {
        const auto [known, isNew] = m_actions.emplace(action.getObjGen(), true);
        if (!isNew)
            return known->second;
    }
    bool stays = true;
    if (hasName(action, "/S", "/GoTo")) {
        QPDFObjectHandle destination = action.getKey("/D");
        QPDFObjectHandle reduced = reducedDestination(destination);
        stays = !reduced.isNull() || destination.isNull();
        if (stays && !destination.isNull())
            action.replaceKey("/D", reduced);
        // A place in the structure tree, which only the main document brings along.
        if (!m_isMain)
            action.removeKey("/SD");
    }
    if (action.isIndirect())
        m_actions[action.getObjGen()] = stays;
    if (stays)
        reduceFollowing(action);
    return stays;
}

void LinkReducer::reduceFollowing(QPDFObjectHandle action)
{
    QPDFObjectHandle next = action.getKey("/Next");
    if (next.isNull())
        return;
    if (m_depth >= kMaxActionChain) {
        action.removeKey("/Next");
        return;
    }
    ++m_depth;
    if (next.isArray()) {
        std::vector<QPDFObjectHandle> kept;
        for (QPDFObjectHandle &following : next.getArrayAsVector()) {
            if (reduceAction(following))
                kept.push_back(following);
        }
        action.replaceKey("/Next", QPDFObjectHandle::newArray(kept));
    } else if (!reduceAction(next)) {
        action.removeKey("/Next");
    }
    --m_depth;
}

void LinkReducer::reduceTriggers(QPDFObjectHandle object)
{
    QPDFObjectHandle triggers = entryOf(object, "/AA");
    if (!triggers.isDictionary())
        return;
    for (const auto &[trigger, action] : triggers.getDictAsMap()) {
        if (!reduceAction(action))
            triggers.removeKey(trigger);
    }
}

bool LinkReducer::reduceEntry(QPDFObjectHandle entry)
{
    bool stays = true;
    if (QPDFObjectHandle destination = entry.getKey("/Dest"); !destination.isNull()) {
        QPDFObjectHandle reduced = reducedDestination(destination);
        stays = !reduced.isNull();
        if (stays)
            entry.replaceKey("/Dest", reduced);
        else
            entry.removeKey("/Dest");
    }
    for (const char *key : {"/A", "/PA"}) {
        QPDFObjectHandle action = entry.getKey(key);
        if (reduceAction(action))
            continue;
        entry.removeKey(key);
        stays = stays && std::string(key) != "/A";
    }
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
