// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/save/interactive/output_form.h"

#include "pdfcore/src/qpdf/qpdf_objects.h"
#include "pdfcore/src/save/interactive/default_appearance.h"

namespace pdfcore {

namespace {

/// Levels of fields that are followed upwards.
constexpr int kMaxFieldDepth = 10'000;

bool isWidget(QPDFObjectHandle object)
{
    return hasName(object, "/Subtype", "/Widget");
}

/// Calls `visit` with the fields and all that is below them.
template <typename Visit>
void forEachField(const std::vector<QPDFObjectHandle> &fields, Visit &&visit)
{
    std::set<QPDFObjGen> visited;
    std::vector<QPDFObjectHandle> waiting = fields;
    while (!waiting.empty()) {
        QPDFObjectHandle field = waiting.back();
        waiting.pop_back();
        if (!field.isDictionary() || !visited.insert(field.getObjGen()).second) {
            continue;
        }
        visit(field);
        const std::vector<QPDFObjectHandle> kids = itemsOf(field.getKey("/Kids"));
        waiting.insert(waiting.end(), kids.begin(), kids.end());
    }
}

/// The topmost fields that have a name. Above them may be fields without one.
std::vector<QPDFObjectHandle> namedFields(const std::vector<QPDFObjectHandle> &roots)
{
    std::vector<QPDFObjectHandle> named;
    std::vector<QPDFObjectHandle> waiting = roots;
    std::set<QPDFObjGen> visited;
    for (std::size_t i = 0; i < waiting.size(); ++i) {
        QPDFObjectHandle field = waiting[i];
        if (!field.isDictionary() || !visited.insert(field.getObjGen()).second) {
            continue;
        }
        if (field.getKey("/T").isString()) {
            named.push_back(field);
            continue;
        }
        const std::vector<QPDFObjectHandle> kids = itemsOf(field.getKey("/Kids"));
        waiting.insert(waiting.end(), kids.begin(), kids.end());
    }
    return named;
}

std::string nameOf(QPDFObjectHandle field)
{
    return field.getKey("/T").getUTF8Value();
}

/// Whether the field is a button, by itself or by what it inherits (ISO 32000-2, 12.7.4).
bool isButton(QPDFObjectHandle field)
{
    for (int depth = 0; field.isDictionary() && depth < kMaxFieldDepth; ++depth) {
        if (QPDFObjectHandle type = field.getKey("/FT"); type.isName()) {
            return type.getName() == "/Btn";
        }
        field = parentField(field);
    }
    return false;
}

/// A name like `wanted` that is not among those taken.
std::string freeName(const std::string &wanted, const std::set<std::string> &taken)
{
    std::string name = wanted;
    for (int number = 2; taken.count(name) != 0; ++number) {
        name = wanted + "_" + std::to_string(number);
    }
    return name;
}

/// A copy of an appearance dictionary (ISO 32000-2, 12.5.5) with streams of its own, so that
/// filling in one widget does not change what another one shows.
QPDFObjectHandle copyOfAppearance(QPDFObjectHandle appearance)
{
    if (!appearance.isDictionary()) {
        return appearance;
    }
    QPDFObjectHandle copied = appearance.shallowCopy();
    for (auto &[mode, value] : copied.getDictAsMap()) {
        if (value.isStream()) {
            copied.replaceKey(mode, value.copyStream());
        } else if (value.isDictionary()) {
            QPDFObjectHandle states = value.shallowCopy();
            for (auto &[state, stream] : states.getDictAsMap()) {
                if (stream.isStream()) {
                    states.replaceKey(state, stream.copyStream());
                }
            }
            copied.replaceKey(mode, states);
        }
    }
    return copied;
}

} // namespace

OutputForm::OutputForm(QPDF &output, const FormFields &main)
    : m_output(output)
    , m_form(main.form())
    , m_calculationOrder(main.calculationOrder())
    , m_ownOrder(m_calculationOrder.size())
    , m_hadFields(main.hadFields())
{
    for (const QPDFObjectHandle &root : main.roots()) {
        m_roots.push_back(root);
        m_rootIds.insert(QPDFObjectHandle(root).getObjGen());
    }
    for (const QPDFObjectHandle &field : namedFields(main.roots())) {
        m_names.insert(nameOf(field));
    }
}

bool OutputForm::isTaken(const std::string &name) const
{
    return m_names.count(name) != 0 || m_reservedNames.count(name) != 0;
}

/// A name like `wanted` that no field has and none of `fresh`.
std::string OutputForm::freeFieldName(const std::string &wanted, const std::set<std::string> &fresh)
{
    int &number = m_nextNumbers.emplace(wanted, 2).first->second;
    for (;; ++number) {
        std::string name = wanted + "_" + std::to_string(number);
        if (!isTaken(name) && fresh.count(name) == 0) {
            return name;
        }
    }
}

/// Adds fields of one document, or of one page's copy, whose names may be taken. Fields that had a
/// name in common before, which makes them one field to a reader, still have one afterwards.
OutputForm::Names OutputForm::addRoots(const std::vector<QPDFObjectHandle> &fields)
{
    for (const QPDFObjectHandle &field : fields) {
        m_roots.push_back(field);
        m_rootIds.insert(QPDFObjectHandle(field).getObjGen());
    }
    std::set<std::string> fresh;
    Names given;
    Names renamed;
    for (QPDFObjectHandle field : namedFields(fields)) {
        const auto [known, isNew] = given.emplace(nameOf(field), std::string());
        if (isNew) {
            const bool isFree = m_names.count(known->first) == 0;
            known->second = isFree ? known->first : freeFieldName(known->first, fresh);
            fresh.insert(known->second);
        }
        if (known->second != known->first) {
            field.replaceKey("/T", QPDFObjectHandle::newUnicodeString(known->second));
            renamed.insert(*known);
        }
    }
    m_names.insert(fresh.begin(), fresh.end());
    return renamed;
}

void OutputForm::reserveNames(const FormFields &fields)
{
    for (const QPDFObjectHandle &field : namedFields(fields.roots())) {
        m_reservedNames.insert(nameOf(field));
    }
}

OutputForm::Names OutputForm::add(const FormFields &fields, ObjectCopier &copier)
{
    const bool areJustWidgets = fields.form().isNull() && !m_form.isDictionary();
    if (fields.roots().empty() || areJustWidgets) {
        return {};
    }
    std::vector<QPDFObjectHandle> roots;
    for (const QPDFObjectHandle &root : fields.roots()) {
        roots.push_back(copier.copy(root));
    }
    if (!m_form.isDictionary()) {
        m_form = QPDFObjectHandle::newDictionary();
    }
    adoptDefaults(fields.form(), roots, copier);
    for (const QPDFObjectHandle &field : fields.calculationOrder()) {
        m_calculationOrder.push_back(copier.copy(field));
    }
    m_ownOrder = m_calculationOrder.size();
    Names renamed = addRoots(roots);
    if (!renamed.empty()) {
        const ActionTargets::Objects none;
        ActionTargets targets(none, renamed);
        forEachField(roots, [&targets](QPDFObjectHandle field) { targets.apply(field); });
    }
    return renamed;
}

/// What the fields inherit from their form (ISO 32000-2, 12.7.3 and 12.7.4.3) becomes their own
/// where the output's form says otherwise.
void OutputForm::adoptDefaults(QPDFObjectHandle form, std::vector<QPDFObjectHandle> &roots,
                               ObjectCopier &copier)
{
    const Names renamed = adoptResources(copier.copy(entryOf(form, "/DR")));
    for (const char *key : {"/DA", "/Q"}) {
        QPDFObjectHandle theirs = entryOf(form, key);
        // Where nothing is said, text is aligned to the left and looks as the reader likes.
        if (theirs.isNull() && m_form.hasKey(key)) {
            theirs = std::string(key) == "/Q" ? QPDFObjectHandle::newInteger(0)
                                              : QPDFObjectHandle::newString("");
        }
        if (theirs.isNull()) {
            continue;
        }
        for (QPDFObjectHandle &root : roots) {
            if (!root.hasKey(key)) {
                root.replaceKey(key, theirs.shallowCopy());
            }
        }
    }
    if (QPDFObjectHandle needed = entryOf(form, "/NeedAppearances");
        needed.isBool() && needed.getBoolValue()) {
        m_form.replaceKey("/NeedAppearances", QPDFObjectHandle::newBool(true));
    }
    if (renamed.empty()) {
        return;
    }

    forEachField(roots, [&renamed](QPDFObjectHandle field) {
        if (QPDFObjectHandle appearance = field.getKey("/DA"); appearance.isString()) {
            field.replaceKey("/DA", QPDFObjectHandle::newString(
                                        renamedAppearance(appearance.getStringValue(), renamed)));
        }
    });
}

/// Adds the resources of another form to those of the output. A font whose name means another one
/// here already gets a new name; these are returned.
OutputForm::Names OutputForm::adoptResources(QPDFObjectHandle resources)
{
    Names renamed;
    if (!resources.isDictionary()) {
        return renamed;
    }
    QPDFObjectHandle ours = m_form.getKey("/DR");
    if (!ours.isDictionary()) {
        m_form.replaceKey("/DR", resources);
        return renamed;
    }
    for (auto &[category, theirs] : resources.getDictAsMap()) {
        QPDFObjectHandle own = ours.getKey(category);
        if (!theirs.isDictionary()) {
            continue;
        }
        if (!own.isDictionary()) {
            ours.replaceKey(category, theirs);
            continue;
        }
        std::set<std::string> taken = own.getKeys();
        for (auto &[name, resource] : theirs.getDictAsMap()) {
            const std::string free = freeName(name, taken);
            if (free != name && category != "/Font") {
                continue;
            }
            if (free != name) {
                renamed[name] = free;
            }
            taken.insert(free);
            own.replaceKey(free, resource);
        }
    }
    return renamed;
}

/// A copy of a field and of what is above it; the kids are set when all are known.
QPDFObjectHandle OutputForm::cloneOf(QPDFObjectHandle field, Clones &clones,
                                     std::vector<QPDFObjectHandle> &roots)
{
    QPDFObjectHandle first;
    QPDFObjectHandle below;
    for (int depth = 0; depth < kMaxFieldDepth; ++depth) {
        const auto [known, isNew] = clones.emplace(field.getObjGen(), QPDFObjectHandle());
        // Not with the list of its kids, which may be long.
        if (isNew) {
            known->second = m_output.makeIndirectObject(field.unsafeShallowCopy());
        }
        QPDFObjectHandle clone = known->second;
        if (below.isInitialized()) {
            below.replaceKey("/Parent", clone);
        } else {
            first = clone;
        }
        if (!isNew) {
            break;
        }
        below = clone;
        QPDFObjectHandle parent = parentField(field);
        if (parent.isNull()) {
            if (m_rootIds.count(field.getObjGen()) != 0) {
                roots.push_back(clone);
            }
            break;
        }
        field = parent;
    }
    return first;
}

/// Where the kids of a field stand in its list.
const OutputForm::Places &OutputForm::placesOf(QPDFObjectHandle field)
{
    const auto [known, isNew] = m_places.emplace(field.getObjGen(), Places());
    if (isNew) {
        std::size_t place = 0;
        for (const QPDFObjectHandle &kid : itemsOf(field.getKey("/Kids"))) {
            known->second.emplace(QPDFObjectHandle(kid).getObjGen(), place++);
        }
    }
    return known->second;
}

/// Gives the clone of a field its kids, in the order of those that they are clones of.
void OutputForm::setKids(QPDFObjectHandle original, QPDFObjectHandle clone,
                         const std::map<std::size_t, QPDFObjectHandle> &byPlace)
{
    const std::vector<QPDFObjectHandle> allOptions = itemsOf(original.getKey("/Opt"));
    std::vector<QPDFObjectHandle> kids;
    std::vector<QPDFObjectHandle> options;
    for (const auto &[place, kid] : byPlace) {
        kids.push_back(kid);
        if (place < allOptions.size()) {
            options.push_back(allOptions[place]);
        }
    }
    clone.replaceKey("/Kids", QPDFObjectHandle::newArray(kids));
    // Buttons have an option for each kid (ISO 32000-2, 12.7.5.2).
    const bool hasOptionOfEach =
        !allOptions.empty() &&
        static_cast<int>(allOptions.size()) == original.getKey("/Kids").getArrayNItems();
    if (hasOptionOfEach && isButton(original)) {
        clone.replaceKey("/Opt", QPDFObjectHandle::newArray(options));
    }
}

void OutputForm::addCopies(QPDFObjectHandle page, const AnnotationCopies &copies)
{
    Clones clones;
    for (const auto &[original, copied] : copies) {
        clones[QPDFObjectHandle(original).getObjGen()] = copied;
    }
    std::vector<QPDFObjectHandle> roots;
    for (auto [original, copied] : copies) {
        if (!isWidget(original) && !original.hasKey("/FT")) {
            continue;
        }
        copied.replaceKey("/AP", copyOfAppearance(original.getKey("/AP")));
        QPDFObjectHandle parent = parentField(original);
        if (!parent.isNull()) {
            copied.replaceKey("/Parent", cloneOf(parent, clones, roots));
        } else if (m_rootIds.count(original.getObjGen()) != 0) {
            roots.push_back(copied);
        }
    }
    std::map<QPDFObjGen, std::map<std::size_t, QPDFObjectHandle>> kids;
    for (const auto &[id, clone] : clones) {
        QPDFObjectHandle original = m_output.getObject(id);
        if (original.getKey("/Kids").isArray()) {
            kids[id];
        }
        QPDFObjectHandle parent = parentField(original);
        if (parent.isNull() || clones.count(parent.getObjGen()) == 0) {
            continue;
        }
        const Places &places = placesOf(parent);
        if (const auto place = places.find(id); place != places.end()) {
            kids[parent.getObjGen()][place->second] = clone;
        }
    }
    for (const auto &[id, byPlace] : kids) {
        setKids(m_output.getObject(id), clones.at(id), byPlace);
    }
    const Names renamed = addRoots(roots);
    ActionTargets targets(clones, renamed);
    targets.apply(page);
    for (const auto &[original, clone] : clones) {
        targets.apply(clone);
    }
    addToCalculationOrder(clones);
}

/// Adds the clones of calculated fields behind the order, as they follow each other in it.
void OutputForm::addToCalculationOrder(const Clones &clones)
{
    for (std::size_t i = m_calculated.empty() ? 0 : m_ownOrder; i < m_ownOrder; ++i) {
        m_calculated.emplace(m_calculationOrder[i].getObjGen(), i);
    }
    std::map<std::size_t, QPDFObjectHandle> added;
    for (const auto &[id, clone] : clones) {
        if (const auto place = m_calculated.find(id); place != m_calculated.end()) {
            added.emplace(place->second, clone);
        }
    }
    for (const auto &[place, clone] : added) {
        m_calculationOrder.push_back(clone);
    }
}

void OutputForm::install(bool pagesChanged)
{
    QPDFObjectHandle catalogue = m_output.getRoot();
    if (!m_form.isDictionary()) {
        return;
    }
    if (m_roots.empty() && m_hadFields) {
        catalogue.removeKey("/AcroForm");
        return;
    }
    m_form.replaceKey("/Fields", QPDFObjectHandle::newArray(m_roots));
    if (m_calculationOrder.empty()) {
        m_form.removeKey("/CO");
    } else {
        m_form.replaceKey("/CO", QPDFObjectHandle::newArray(m_calculationOrder));
    }
    m_form.removeKey("/SigFlags");
    if (pagesChanged && m_form.hasKey("/XFA")) {
        m_form.removeKey("/XFA");
        catalogue.removeKey("/NeedsRendering");
    }
    if (!isSameObject(catalogue.getKey("/AcroForm"), m_form)) {
        catalogue.replaceKey("/AcroForm", m_form);
    }
}

} // namespace pdfcore
