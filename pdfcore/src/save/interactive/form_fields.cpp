// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/save/interactive/form_fields.h"

#include "pdfcore/src/qpdf/qpdf_objects.h"

#include <cstddef>
#include <map>
#include <set>
#include <string>

namespace pdfcore {

namespace {

/// Whether the value of a field is a signature (ISO 32000-2, 12.8), whatever the field says that it
/// is.
bool isSignature(QPDFObjectHandle value)
{
    return value.isDictionary() && (value.hasKey("/ByteRange") || hasName(value, "/Type", "/Sig") ||
                                    hasName(value, "/Type", "/DocTimeStamp"));
}

/// The type of a field, its own or inherited from its parent (ISO 32000-2, 12.7.4).
std::string typeOf(QPDFObjectHandle field, const std::string &parentType)
{
    QPDFObjectHandle own = field.getKey("/FT");
    return own.isName() ? own.getName() : parentType;
}

void dropSignature(QPDFObjectHandle field, const std::string &type)
{
    if (type == "/Sig" || isSignature(field.getKey("/V"))) {
        field.removeKey("/V");
    }
}

/// A field or a widget while the form is walked.
struct Node
{
    QPDFObjectHandle field;
    int parent;       ///< Index, or -1.
    int place;        ///< Among the kids of the parent as they stood in the file, or -1.
    std::string type; ///< Its own or inherited.
};

/// Walks the fields of a source document and takes out what no page of the output shows.
///
/// The kids of a field are found through /Kids, and the widgets of kept pages through /Parent as
/// well. No depth is too deep, and a field that is met again counts once.
class FieldPruner
{
public:
    FieldPruner(SourceDocument &source, LinkPruner &links, bool keepsBareFields)
        : m_source(source)
        , m_links(links)
        , m_keepsBareFields(keepsBareFields)
    {
        for (const int index : source.keptPages()) {
            noteAnnotations(index, m_onKeptPages);
        }
    }

    /// Takes the signatures from everything on kept pages, whether a form knows of it or not.
    void dropSignatures()
    {
        for (const auto &[id, annotation] : m_onKeptPages) {
            std::vector<QPDFObjectHandle> chain;
            QPDFObjectHandle field = annotation;
            for (; field.isDictionary() && m_types.emplace(field.getObjGen(), std::string()).second;
                 field = parentField(field)) {
                chain.push_back(field);
            }
            std::string type = field.isNull() ? std::string() : m_types[field.getObjGen()];
            for (auto link = chain.rbegin(); link != chain.rend(); ++link) {
                type = typeOf(*link, type);
                m_types[link->getObjGen()] = type;
                dropSignature(*link, type);
            }
        }
    }

    /// The fields of the list that stay, each an object of its own.
    std::vector<QPDFObjectHandle> prune(QPDFObjectHandle list)
    {
        for (const int index : m_source.gonePages()) {
            noteAnnotations(index, m_onGonePages);
        }
        readNodes(list);
        findStaying();
        std::vector<QPDFObjectHandle> roots;
        std::vector<std::vector<int>> kids(m_nodes.size());
        for (std::size_t i = 0; i < m_nodes.size(); ++i) {
            if (!m_stays[i]) {
                continue;
            }
            if (m_nodes[i].parent < 0) {
                roots.push_back(newRoot(m_nodes[i].field));
            } else {
                kids[static_cast<std::size_t>(m_nodes[i].parent)].push_back(static_cast<int>(i));
            }
        }
        for (std::size_t i = 0; i < m_nodes.size(); ++i) {
            if (m_stays[i]) {
                setKids(m_nodes[i], kids[i]);
            }
        }
        return roots;
    }

    [[nodiscard]] std::set<QPDFObjGen> keptFields() const
    {
        std::set<QPDFObjGen> kept;
        for (std::size_t i = 0; i < m_nodes.size(); ++i) {
            if (m_stays[i]) {
                kept.insert(m_nodes[i].field.getObjGen());
            }
        }
        return kept;
    }

private:
    using Annotations = std::map<QPDFObjGen, QPDFObjectHandle>;

    /// A topmost field without what is no parent of it.
    static QPDFObjectHandle newRoot(QPDFObjectHandle field)
    {
        if (field.hasKey("/Parent") && parentField(field).isNull()) {
            field.removeKey("/Parent");
        }
        return field;
    }

    void noteAnnotations(int index, Annotations &annotations) const
    {
        for (const QPDFObjectHandle &item : itemsOf(m_source.page(index).getKey("/Annots"))) {
            QPDFObjectHandle annotation = item;
            if (annotation.isIndirect() && annotation.isDictionary()) {
                annotations.emplace(annotation.getObjGen(), annotation);
            }
        }
    }

    /// Adds a node unless it is known or no dictionary.
    void addNode(QPDFObjectHandle field, int parent, int place)
    {
        if (!field.isDictionary()) {
            return;
        }
        if (!field.isIndirect()) {
            field = m_source.document().makeIndirectObject(field);
        }
        const auto index = static_cast<int>(m_nodes.size());
        if (!m_indexes.emplace(field.getObjGen(), index).second) {
            return;
        }
        m_nodes.push_back(
            {field, parent, place, typeOf(field, parent < 0 ? std::string() : at(parent).type)});
    }

    Node &at(int index) { return m_nodes[static_cast<std::size_t>(index)]; }

    /// Adds what is below the nodes from `next` on.
    void expand(std::size_t next)
    {
        for (; next < m_nodes.size(); ++next) {
            int place = 0;
            for (const QPDFObjectHandle &kid : itemsOf(m_nodes[next].field.getKey("/Kids"))) {
                addNode(kid, static_cast<int>(next), place++);
            }
        }
    }

    void readNodes(QPDFObjectHandle list)
    {
        std::set<QPDFObjGen> listed;
        for (const QPDFObjectHandle &field : itemsOf(list)) {
            listed.insert(QPDFObjectHandle(field).getObjGen());
        }
        std::vector<QPDFObjectHandle> below;
        for (const QPDFObjectHandle &item : itemsOf(list)) {
            QPDFObjectHandle field = item;
            QPDFObjectHandle parent = parentField(field);
            // Some documents list fields that belong to others of the list as well.
            if (!parent.isNull() && listed.count(parent.getObjGen()) != 0 &&
                !isSameObject(parent, field)) {
                below.push_back(field);
            } else {
                addNode(field, -1, -1);
            }
        }
        expand(0);
        attachWidgets();
        for (const QPDFObjectHandle &field : below) {
            attach(field);
            const std::size_t next = m_nodes.size();
            addNode(field, -1, -1);
            expand(next);
        }
        adoptOrphans();
    }

    /// Adds the topmost fields of widgets on kept pages that a damaged form does not list.
    void adoptOrphans()
    {
        for (const QPDFObjGen &id : m_unattached) {
            QPDFObjectHandle field = m_source.document().getObject(id);
            const bool isTopmost = parentField(field).isNull();
            const std::size_t next = m_nodes.size();
            if (isTopmost && (field.hasKey("/FT") || field.getKey("/T").isString())) {
                addNode(field, -1, -1);
            }
            expand(next);
        }
        m_unattached.clear();
        attachWidgets();
    }

    void attachWidgets()
    {
        for (const auto &[id, annotation] : m_onKeptPages) {
            if (hasName(annotation, "/Subtype", "/Widget")) {
                attach(annotation);
            }
        }
    }

    /// Adds a field that nothing leads down to, if what it names as its parent is known.
    void attach(QPDFObjectHandle field)
    {
        std::vector<QPDFObjectHandle> chain;
        QPDFObjectHandle above = field;
        while (above.isDictionary() && above.isIndirect() &&
               m_indexes.count(above.getObjGen()) == 0) {
            if (!m_unattached.insert(above.getObjGen()).second) {
                return;
            }
            chain.push_back(above);
            above = parentField(above);
        }
        if (chain.empty() || above.isNull()) {
            return;
        }
        int parent = m_indexes.at(above.getObjGen());
        const std::size_t next = m_nodes.size();
        for (auto link = chain.rbegin(); link != chain.rend(); ++link) {
            addNode(*link, parent, -1);
            parent = static_cast<int>(m_nodes.size()) - 1;
        }
        expand(next);
    }

    void findStaying()
    {
        m_stays.assign(m_nodes.size(), false);
        std::vector<bool> hasNodes(m_nodes.size(), false);
        std::vector<bool> keepsKid(m_nodes.size(), false);
        for (std::size_t i = m_nodes.size(); i-- > 0;) {
            const Node &node = m_nodes[i];
            dropSignature(node.field, node.type);
            m_stays[i] = keepsKid[i] || isOnKeptPage(node.field) ||
                         (!hasNodes[i] && m_keepsBareFields && isSomething(node.field) &&
                          !isOnGonePage(node.field));
            if (m_stays[i]) {
                m_links.pruneTriggers(node.field);
            }
            if (node.parent < 0) {
                continue;
            }
            const auto parent = static_cast<std::size_t>(node.parent);
            hasNodes[parent] = true;
            keepsKid[parent] = keepsKid[parent] || m_stays[i];
        }
    }

    /// Whether it says more than that it is below another one.
    static bool isSomething(QPDFObjectHandle field)
    {
        return field.hasKey("/T") || field.hasKey("/FT") || field.hasKey("/Subtype");
    }

    bool isOnKeptPage(QPDFObjectHandle field) const
    {
        return m_onKeptPages.count(field.getObjGen()) != 0;
    }

    /// What no page lists is on the page that it names.
    bool isOnGonePage(QPDFObjectHandle field) const
    {
        return m_onGonePages.count(field.getObjGen()) != 0 || m_source.isGone(field.getKey("/P"));
    }

    void setKids(const Node &node, const std::vector<int> &kept)
    {
        QPDFObjectHandle field = node.field;
        QPDFObjectHandle list = field.getKey("/Kids");
        if (!list.isArray() && kept.empty()) {
            return;
        }
        std::vector<QPDFObjectHandle> kids;
        std::vector<QPDFObjectHandle> options;
        const std::vector<QPDFObjectHandle> oldOptions = itemsOf(field.getKey("/Opt"));
        for (const int index : kept) {
            QPDFObjectHandle kid = at(index).field;
            if (!isSameObject(kid.getKey("/Parent"), field)) {
                kid.replaceKey("/Parent", field);
            }
            kids.push_back(kid);
            const auto place = static_cast<std::size_t>(at(index).place);
            if (at(index).place >= 0 && place < oldOptions.size()) {
                options.push_back(oldOptions[place]);
            }
        }
        // Buttons have an option for each kid (ISO 32000-2, 12.7.5.2).
        const bool hasOptionOfEach =
            node.type == "/Btn" && !oldOptions.empty() && oldOptions.size() == itemsOf(list).size();
        if (hasOptionOfEach && options.size() == kids.size()) {
            field.replaceKey("/Opt", QPDFObjectHandle::newArray(options));
        }
        if (kids.empty() && isOnKeptPage(field)) {
            field.removeKey("/Kids");
        } else {
            field.replaceKey("/Kids", QPDFObjectHandle::newArray(kids));
        }
    }

    SourceDocument &m_source;
    LinkPruner &m_links;
    bool m_keepsBareFields;
    Annotations m_onKeptPages;
    Annotations m_onGonePages;
    std::map<QPDFObjGen, std::string> m_types; ///< Looked through for signatures.
    std::set<QPDFObjGen> m_unattached;         ///< Neither known nor below a known one.
    std::vector<Node> m_nodes;                 ///< Each one before those below it.
    std::map<QPDFObjGen, int> m_indexes;
    std::vector<bool> m_stays;
};

} // namespace

QPDFObjectHandle parentField(QPDFObjectHandle field)
{
    QPDFObjectHandle parent = entryOf(field, "/Parent");
    QPDFObjectHandle type = entryOf(parent, "/Type");
    const bool isField = parent.isDictionary() && parent.isIndirect() &&
                         (!type.isName() || type.getName() == "/Annot");
    return isField ? parent : QPDFObjectHandle::newNull();
}

FormFields FormFields::of(SourceDocument &source, LinkPruner &links, bool keepsBareFields)
{
    FormFields fields;
    FieldPruner pruner(source, links, keepsBareFields);
    pruner.dropSignatures();
    QPDFObjectHandle form = entryOf(source.root(), "/AcroForm");
    // Widgets without a form are fields to many readers; beside a form they would take what it says
    // about its own ones.
    if (!form.isDictionary() && !keepsBareFields) {
        fields.m_roots = pruner.prune(QPDFObjectHandle::newNull());
    }
    if (!form.isDictionary()) {
        return fields;
    }
    fields.m_form = form;
    for (const QPDFObjectHandle &field : itemsOf(form.getKey("/Fields"))) {
        fields.m_hadFields = fields.m_hadFields || QPDFObjectHandle(field).isDictionary();
    }
    fields.m_roots = pruner.prune(form.getKey("/Fields"));
    fields.m_kept = pruner.keptFields();
    for (const QPDFObjectHandle &field : itemsOf(form.getKey("/CO"))) {
        if (fields.holds(field)) {
            fields.m_calculationOrder.push_back(field);
        }
    }
    return fields;
}

} // namespace pdfcore
