// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/save/content/structure_tree.h"

#include "pdfcore/src/qpdf/key_tree.h"
#include "pdfcore/src/qpdf/qpdf_objects.h"

#include <algorithm>
#include <set>
#include <vector>

namespace pdfcore {

namespace {

/// An element of the structure while the tree is walked.
struct Element
{
    QPDFObjectHandle dictionary;
    int parent;            ///< Index, or -1.
    QPDFObjectHandle page; ///< What marked content without a page of its own is on.
};

/// The kids of an element (ISO 32000-2, 14.7.2); a single one is not written as an array.
std::vector<QPDFObjectHandle> kidsOf(QPDFObjectHandle element)
{
    QPDFObjectHandle kids = element.getKey("/K");
    if (kids.isArray()) {
        return kids.getArrayAsVector();
    }
    if (kids.isNull()) {
        return {};
    }
    return {kids};
}

class StructurePruner
{
public:
    StructurePruner(SourceDocument &source, const std::set<QPDFObjGen> &goneAnnotations)
        : m_source(source)
        , m_goneAnnotations(goneAnnotations)
    {
        for (const int index : source.gonePages()) {
            noteAnnotations(index, true);
        }
        for (const int index : source.keptPages()) {
            noteAnnotations(index, false);
        }
    }

    void prune(QPDFObjectHandle root)
    {
        readElements(root);
        for (std::size_t i = m_elements.size(); i-- > 0;) {
            pruneElement(i);
        }
        for (const QPDFObjGen &id : m_gone) {
            m_source.document().replaceObject(id, QPDFObjectHandle::newNull());
        }
    }

private:
    void noteAnnotations(int index, bool areGone)
    {
        for (const QPDFObjectHandle &item : itemsOf(m_source.page(index).getKey("/Annots"))) {
            QPDFObjectHandle annotation = item;
            if (!annotation.isIndirect()) {
                continue;
            }
            if (areGone) {
                m_goneAnnotations.insert(annotation.getObjGen());
            } else {
                m_goneAnnotations.erase(annotation.getObjGen());
            }
        }
    }

    /// Whether a kid is not marked content or an object (ISO 32000-2, 14.7.5), which need not say
    /// what they are.
    static bool isElement(QPDFObjectHandle kid)
    {
        return kid.isDictionary() && !hasName(kid, "/Type", "/MCR") &&
               !hasName(kid, "/Type", "/OBJR") &&
               (kid.hasKey("/S") || (!kid.hasKey("/MCID") && !kid.hasKey("/Obj")));
    }

    void readElements(QPDFObjectHandle root)
    {
        std::set<QPDFObjGen> visited;
        m_elements.push_back({root, -1, QPDFObjectHandle::newNull()});
        for (std::size_t i = 0; i < m_elements.size(); ++i) {
            QPDFObjectHandle list = m_elements[i].dictionary.getKey("/K");
            if (list.isArray() && list.isIndirect() && !visited.insert(list.getObjGen()).second) {
                continue;
            }
            for (QPDFObjectHandle &kid : kidsOf(m_elements[i].dictionary)) {
                if (!isElement(kid) ||
                    (kid.isIndirect() && !visited.insert(kid.getObjGen()).second)) {
                    continue;
                }
                QPDFObjectHandle page = kid.getKey("/Pg");
                m_elements.push_back(
                    {kid, static_cast<int>(i), page.isNull() ? m_elements[i].page : page});
            }
        }
    }

    /// Whether a kid that is no element is on a page that stays.
    bool stays(QPDFObjectHandle kid, QPDFObjectHandle page) const
    {
        if (kid.isDictionary() && (hasName(kid, "/Type", "/OBJR") || kid.hasKey("/Obj"))) {
            QPDFObjectHandle object = kid.getKey("/Obj");
            if (object.isNull() || m_goneAnnotations.count(object.getObjGen()) != 0) {
                return false;
            }
        }
        QPDFObjectHandle own = entryOf(kid, "/Pg");
        return !m_source.isGone(own.isNull() ? page : own);
    }

    /// All elements below have been pruned before.
    void pruneElement(std::size_t index)
    {
        QPDFObjectHandle dictionary = m_elements[index].dictionary;
        const std::vector<QPDFObjectHandle> before = kidsOf(dictionary);
        std::vector<QPDFObjectHandle> kept;
        for (const QPDFObjectHandle &kid : before) {
            const bool isGone = isElement(kid)
                                    ? kid.isIndirect() && m_gone.count(kid.getObjGen()) != 0
                                    : !stays(kid, m_elements[index].page);
            if (!isGone && !QPDFObjectHandle(kid).isNull()) {
                kept.push_back(kid);
            }
        }
        if (m_source.isGone(dictionary.getKey("/Pg"))) {
            dictionary.removeKey("/Pg");
        }
        if (kept.size() == before.size()) {
            return;
        }
        if (kept.size() == 1) {
            dictionary.replaceKey("/K", kept.front());
        } else if (!kept.empty()) {
            dictionary.replaceKey("/K", QPDFObjectHandle::newArray(kept));
        } else {
            dictionary.removeKey("/K");
        }
        const bool isRoot = m_elements[index].parent < 0;
        if (kept.empty() && !isRoot && dictionary.isIndirect()) {
            m_gone.insert(dictionary.getObjGen());
        }
    }

    SourceDocument &m_source;
    std::vector<Element> m_elements; ///< Each one before those below it.
    std::set<QPDFObjGen> m_gone;
    std::set<QPDFObjGen> m_goneAnnotations;
};

void noteKey(QPDFObjectHandle object, const char *key, std::set<long long> &keys)
{
    if (QPDFObjectHandle number = entryOf(object, key); number.isInteger()) {
        keys.insert(number.getIntValue());
    }
}

/// Notes under which keys of the parent tree (ISO 32000-2, 14.7.5.4) a page and its annotations
/// stand.
void noteKeys(QPDFObjectHandle page, std::set<long long> &keys)
{
    noteKey(page, "/StructParents", keys);
    for (const QPDFObjectHandle &annotation : itemsOf(page.getKey("/Annots"))) {
        noteKey(annotation, "/StructParent", keys);
    }
}

/// Whether nothing is left of what a key of the parent tree leads to. Elements that are gone have
/// become nulls.
bool isNothing(QPDFObjectHandle value)
{
    if (value.isNull()) {
        return true;
    }
    const std::vector<QPDFObjectHandle> items = itemsOf(value);
    return !items.empty() &&
           std::all_of(items.begin(), items.end(), [](const QPDFObjectHandle &item) {
               return QPDFObjectHandle(item).isNull();
           });
}

void pruneParentTree(SourceDocument &source, QPDFObjectHandle root,
                     const std::set<QPDFObjGen> &goneAnnotations)
{
    std::set<long long> goneKeys;
    std::set<long long> keptKeys;
    for (const QPDFObjGen &id : goneAnnotations) {
        noteKey(source.document().getObject(id), "/StructParent", goneKeys);
    }
    for (const int index : source.gonePages()) {
        noteKeys(source.page(index), goneKeys);
    }
    for (const int index : source.keptPages()) {
        noteKeys(source.page(index), keptKeys);
    }

    NumberEntries kept;
    for (auto &[key, value] : readNumberTree(root.getKey("/ParentTree"))) {
        const bool isOfGonePage = goneKeys.count(key) != 0 && keptKeys.count(key) == 0;
        if (!isOfGonePage && (keptKeys.count(key) != 0 || !isNothing(value))) {
            kept.emplace_back(key, value);
        }
    }
    root.replaceKey("/ParentTree", newNumberTree(source.document(), kept));
}

void pruneNames(SourceDocument &source, QPDFObjectHandle root)
{
    if (!root.hasKey("/IDTree")) {
        return;
    }
    root.replaceKey("/IDTree",
                    newNameTree(source.document(), readNameTree(root.getKey("/IDTree"))));
}

} // namespace

void pruneStructure(SourceDocument &source, const std::set<QPDFObjGen> &goneAnnotations)
{
    QPDFObjectHandle root = entryOf(source.root(), "/StructTreeRoot");
    if (!root.isDictionary()) {
        return;
    }
    StructurePruner(source, goneAnnotations).prune(root);
    pruneParentTree(source, root, goneAnnotations);
    pruneNames(source, root);
    if (kidsOf(root).empty()) {
        source.root().removeKey("/StructTreeRoot");
        source.root().removeKey("/MarkInfo");
    }
}

} // namespace pdfcore
