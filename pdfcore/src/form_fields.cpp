#include "pdfcore/src/form_fields.h"

#include "pdfcore/src/default_appearance.h"
#include "pdfcore/src/qpdf_objects.h"

#include <optional>

namespace pdfcore {

namespace {

/// Levels of fields that are followed.
constexpr int kMaxFieldDepth = 64;

bool isWidget(QPDFObjectHandle object)
{
    return hasName(object, "/Subtype", "/Widget");
}

/// Walks the fields of a source and takes out what no page of the output shows.
class FieldReducer
{
public:
    FieldReducer(SourceDocument &source, bool keepsBareFields)
        : m_source(source)
        , m_keepsBareFields(keepsBareFields)
    {
        for (const int index : source.keptPages()) {
            for (const QPDFObjectHandle &annotation : itemsOf(source.page(index).getKey("/Annots")))
                m_keptWidgets.insert(QPDFObjectHandle(annotation).getObjGen());
        }
    }

    /// The fields of the list that stay, each an object of its own.
    std::vector<QPDFObjectHandle> reduce(QPDFObjectHandle list, const std::string &type, int depth)
    {
        std::vector<QPDFObjectHandle> kept;
        if (!list.isArray())
            return kept;
        for (QPDFObjectHandle &field : list.getArrayAsVector()) {
            if (!field.isDictionary())
                continue;
            if (!field.isIndirect())
                field = m_source.document().makeIndirectObject(field);
            if (!m_visited.insert(field.getObjGen()).second)
                continue;
            if (reduceField(field, type, depth)) {
                kept.push_back(field);
                m_keptFields.insert(field.getObjGen());
            }
        }
        return kept;
    }

    [[nodiscard]] bool hasKept(QPDFObjectHandle field) const
    {
        return m_keptFields.count(field.getObjGen()) != 0;
    }

private:
    bool reduceField(QPDFObjectHandle field, const std::string &inheritedType, int depth)
    {
        QPDFObjectHandle own = field.getKey("/FT");
        const std::string type = own.isName() ? own.getName() : inheritedType;
        if (type == "/Sig")
            field.removeKey("/V");
        QPDFObjectHandle kids = field.getKey("/Kids");
        const bool hasKids = kids.isArray() && kids.getArrayNItems() > 0;
        if (!hasKids)
            return isWidget(field) ? m_keptWidgets.count(field.getObjGen()) != 0
                                   : m_keepsBareFields;
        if (depth >= kMaxFieldDepth)
            return false;
        const std::vector<QPDFObjectHandle> kept = reduce(kids, type, depth + 1);
        field.replaceKey("/Kids", QPDFObjectHandle::newArray(kept));
        return !kept.empty();
    }

    SourceDocument &m_source;
    bool m_keepsBareFields;
    std::set<QPDFObjGen> m_keptWidgets;
    std::set<QPDFObjGen> m_keptFields;
    std::set<QPDFObjGen> m_visited;
};

/// A name like `wanted` that is not among those taken.
std::string freeName(const std::string &wanted, const std::set<std::string> &taken)
{
    std::string name = wanted;
    for (int number = 2; taken.count(name) != 0; ++number)
        name = wanted + "_" + std::to_string(number);
    return name;
}

/// A copy of an appearance dictionary with streams of its own, so that filling in one widget does
/// not change what another one shows.
QPDFObjectHandle copyOfAppearance(QPDFObjectHandle appearance)
{
    if (!appearance.isDictionary())
        return appearance;
    QPDFObjectHandle copied = appearance.shallowCopy();
    for (auto &[mode, value] : copied.getDictAsMap()) {
        if (value.isStream()) {
            copied.replaceKey(mode, value.copyStream());
        } else if (value.isDictionary()) {
            QPDFObjectHandle states = value.shallowCopy();
            for (auto &[state, stream] : states.getDictAsMap()) {
                if (stream.isStream())
                    states.replaceKey(state, stream.copyStream());
            }
            copied.replaceKey(mode, states);
        }
    }
    return copied;
}

} // namespace

FormFields FormFields::of(SourceDocument &source, bool keepsBareFields)
{
    FormFields fields;
    fields.m_form = entryOf(source.root(), "/AcroForm");
    if (!fields.m_form.isDictionary()) {
        fields.m_form = QPDFObjectHandle::newNull();
        return fields;
    }
    FieldReducer reducer(source, keepsBareFields);
    fields.m_roots = reducer.reduce(fields.m_form.getKey("/Fields"), {}, 0);
    for (const QPDFObjectHandle &field : itemsOf(fields.m_form.getKey("/CO"))) {
        if (reducer.hasKept(field))
            fields.m_calculationOrder.push_back(field);
    }
    return fields;
}

OutputForm::OutputForm(QPDF &output, const FormFields &main)
    : m_output(output)
    , m_form(main.form())
    , m_calculationOrder(main.calculationOrder())
{
    for (QPDFObjectHandle root : main.roots()) {
        m_roots.push_back(root);
        m_rootIds.insert(root.getObjGen());
        if (QPDFObjectHandle name = root.getKey("/T"); name.isString())
            m_names.insert(name.getUTF8Value());
    }
}

/// Adds fields of one document, or of one page's copy, whose names may be taken. Fields that had a
/// name in common before, which makes them one field to a reader, still have one afterwards.
void OutputForm::addRoots(const std::vector<QPDFObjectHandle> &fields)
{
    std::set<std::string> taken = m_names;
    taken.insert(m_reservedNames.begin(), m_reservedNames.end());
    Names given;
    for (QPDFObjectHandle field : fields) {
        if (QPDFObjectHandle name = field.getKey("/T"); name.isString()) {
            const auto [known, isNew] = given.emplace(name.getUTF8Value(), std::string());
            if (isNew) {
                const bool isFree = m_names.count(known->first) == 0;
                known->second = isFree ? known->first : freeName(known->first, taken);
                taken.insert(known->second);
            }
            if (known->second != known->first)
                field.replaceKey("/T", QPDFObjectHandle::newUnicodeString(known->second));
        }
        m_roots.push_back(field);
        m_rootIds.insert(field.getObjGen());
    }
    for (const auto &[wanted, name] : given)
        m_names.insert(name);
}

void OutputForm::reserveNames(const FormFields &fields)
{
    for (QPDFObjectHandle field : fields.roots()) {
        if (QPDFObjectHandle name = field.getKey("/T"); name.isString())
            m_reservedNames.insert(name.getUTF8Value());
    }
}

void OutputForm::add(const FormFields &fields, ObjectCopier &copier)
{
    if (fields.roots().empty())
        return;
    std::vector<QPDFObjectHandle> roots;
    for (const QPDFObjectHandle &root : fields.roots())
        roots.push_back(copier.copy(root));
    if (!m_form.isDictionary())
        m_form = QPDFObjectHandle::newDictionary();
    adoptDefaults(fields.form(), roots, copier);
    addRoots(roots);
    for (const QPDFObjectHandle &field : fields.calculationOrder())
        m_calculationOrder.push_back(copier.copy(field));
}

/// What the fields took from their form becomes their own where the output's form says otherwise.
void OutputForm::adoptDefaults(QPDFObjectHandle form, std::vector<QPDFObjectHandle> &roots,
                               ObjectCopier &copier)
{
    const Names renamed = adoptResources(copier.copy(entryOf(form, "/DR")));
    for (const char *key : {"/DA", "/Q"}) {
        QPDFObjectHandle theirs = form.getKey(key);
        if (theirs.isNull())
            continue;
        for (QPDFObjectHandle &root : roots) {
            if (!root.hasKey(key))
                root.replaceKey(key, theirs.shallowCopy());
        }
    }
    if (QPDFObjectHandle needed = form.getKey("/NeedAppearances");
        needed.isBool() && needed.getBoolValue())
        m_form.replaceKey("/NeedAppearances", QPDFObjectHandle::newBool(true));
    if (renamed.empty())
        return;

    std::set<QPDFObjGen> visited;
    std::vector<QPDFObjectHandle> waiting = roots;
    while (!waiting.empty()) {
        QPDFObjectHandle field = waiting.back();
        waiting.pop_back();
        if (!field.isDictionary() || !visited.insert(field.getObjGen()).second)
            continue;
        if (QPDFObjectHandle appearance = field.getKey("/DA"); appearance.isString())
            field.replaceKey("/DA", QPDFObjectHandle::newString(
                                        renamedAppearance(appearance.getStringValue(), renamed)));
        const std::vector<QPDFObjectHandle> kids = itemsOf(field.getKey("/Kids"));
        waiting.insert(waiting.end(), kids.begin(), kids.end());
    }
}

/// Adds the resources of another form to those of the output. A font whose name means another one
/// here already gets a new name; these are returned.
OutputForm::Names OutputForm::adoptResources(QPDFObjectHandle resources)
{
    Names renamed;
    if (!resources.isDictionary())
        return renamed;
    QPDFObjectHandle ours = m_form.getKey("/DR");
    if (!ours.isDictionary()) {
        m_form.replaceKey("/DR", resources);
        return renamed;
    }
    for (auto &[category, theirs] : resources.getDictAsMap()) {
        QPDFObjectHandle own = ours.getKey(category);
        if (!theirs.isDictionary())
            continue;
        if (!own.isDictionary()) {
            ours.replaceKey(category, theirs);
            continue;
        }
        std::set<std::string> taken = own.getKeys();
        for (auto &[name, resource] : theirs.getDictAsMap()) {
            const std::string free = freeName(name, taken);
            if (free != name && category != "/Font")
                continue;
            if (free != name)
                renamed[name] = free;
            taken.insert(free);
            own.replaceKey(free, resource);
        }
    }
    return renamed;
}

QPDFObjectHandle OutputForm::cloneOf(QPDFObjectHandle field, Clones &clones,
                                     std::vector<QPDFObjectHandle> &roots, int depth)
{
    const auto [known, isNew] = clones.emplace(field.getObjGen(), QPDFObjectHandle());
    if (!isNew)
        return known->second;
    QPDFObjectHandle clone = m_output.makeIndirectObject(field.shallowCopy());
    known->second = clone;
    clone.replaceKey("/Kids", QPDFObjectHandle::newArray());
    QPDFObjectHandle parent = field.getKey("/Parent");
    if (parent.isDictionary() && parent.isIndirect() && depth < kMaxFieldDepth) {
        QPDFObjectHandle parentClone = cloneOf(parent, clones, roots, depth + 1);
        if (parentClone.isInitialized()) {
            clone.replaceKey("/Parent", parentClone);
            parentClone.getKey("/Kids").appendItem(clone);
        }
    } else {
        clone.removeKey("/Parent");
        if (m_rootIds.count(field.getObjGen()) != 0)
            roots.push_back(clone);
    }
    return clone;
}

void OutputForm::addCopies(const AnnotationCopies &copies)
{
    Clones clones;
    std::vector<QPDFObjectHandle> roots;
    for (auto [original, copied] : copies) {
        if (!isWidget(original))
            continue;
        copied.replaceKey("/AP", copyOfAppearance(original.getKey("/AP")));
        clones[original.getObjGen()] = copied;
        QPDFObjectHandle parent = original.getKey("/Parent");
        if (parent.isDictionary() && parent.isIndirect()) {
            QPDFObjectHandle parentClone = cloneOf(parent, clones, roots, 0);
            copied.replaceKey("/Parent", parentClone);
            parentClone.getKey("/Kids").appendItem(copied);
        } else if (m_rootIds.count(original.getObjGen()) != 0) {
            roots.push_back(copied);
        }
    }
    addRoots(roots);
    const std::vector<QPDFObjectHandle> order = m_calculationOrder;
    for (const QPDFObjectHandle &field : order) {
        const auto clone = clones.find(field.getObjGen());
        if (clone != clones.end())
            m_calculationOrder.push_back(clone->second);
    }
}

void OutputForm::install(bool pagesChanged)
{
    QPDFObjectHandle catalogue = m_output.getRoot();
    if (!m_form.isDictionary())
        return;
    const bool lostAll = m_roots.empty() && !itemsOf(m_form.getKey("/Fields")).empty();
    if (lostAll) {
        catalogue.removeKey("/AcroForm");
        return;
    }
    m_form.replaceKey("/Fields", QPDFObjectHandle::newArray(m_roots));
    if (m_calculationOrder.empty())
        m_form.removeKey("/CO");
    else
        m_form.replaceKey("/CO", QPDFObjectHandle::newArray(m_calculationOrder));
    m_form.removeKey("/SigFlags");
    if (pagesChanged)
        m_form.removeKey("/XFA");
    if (!isSameObject(catalogue.getKey("/AcroForm"), m_form))
        catalogue.replaceKey("/AcroForm", m_form);
}

} // namespace pdfcore
