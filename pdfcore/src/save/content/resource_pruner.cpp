// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/save/content/resource_pruner.h"

#include "pdfcore/src/qpdf/qpdf_objects.h"
#include "pdfcore/src/save/content/content_names.h"

#include <array>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace pdfcore {

namespace {

/// Categories of resources that are looked through. Names of others are few and small.
constexpr std::string_view kColourSpaces{"/ColorSpace"};
constexpr std::array kCategories{"/Font",    "/XObject",   "/ColorSpace", "/Pattern",
                                 "/Shading", "/ExtGState", "/Properties"};

/// Parts within parts that are followed.
constexpr int kMaxNesting = 32;

/// Pages up to which it does not matter how many others are gone.
constexpr int kAlwaysPruned = 1'000;

/// Resources without data of their own that are not worth reading the content for.
constexpr int kFewResources = 2;

/// Names that content uses, each with the categories in which it means something nearer, as bits.
/// What a name is used for does not matter: a resource whose name does not occur is not used.
using UsedNames = std::map<std::string, unsigned>;

void addNames(const UsedNames &added, UsedNames &names)
{
    for (const auto &[name, nearer] : added) {
        const auto [known, isNew] = names.emplace(name, nearer);
        if (!isNew) {
            known->second &= nearer;
        }
    }
}

/// The streams that draw an annotation (ISO 32000-2, 12.5.5).
std::vector<QPDFObjectHandle> appearancesOf(QPDFObjectHandle annotation)
{
    std::vector<QPDFObjectHandle> found;
    QPDFObjectHandle appearances = entryOf(annotation, "/AP");
    if (!appearances.isDictionary()) {
        return found;
    }
    for (auto &[mode, appearance] : appearances.getDictAsMap()) {
        if (appearance.isStream()) {
            found.push_back(appearance);
        } else if (appearance.isDictionary()) {
            for (auto &[state, stream] : appearance.getDictAsMap()) {
                if (stream.isStream()) {
                    found.push_back(stream);
                }
            }
        }
    }
    return found;
}

/// What a resource draws with resources of its own: the form of its soft mask (ISO 32000-2, 11.6.5)
/// or itself, as a form (8.10), a tiling pattern (8.7.3) or a font with glyphs of its own (9.6).
/// Null when it draws nothing.
QPDFObjectHandle partOf(QPDFObjectHandle resource)
{
    if (QPDFObjectHandle mask = entryOf(entryOf(resource, "/SMask"), "/G"); mask.isStream()) {
        return mask;
    }
    if (hasName(resource, "/Subtype", "/Type3")) {
        return resource;
    }
    if (!resource.isStream()) {
        return QPDFObjectHandle::newNull();
    }
    QPDFObjectHandle pattern = resource.getDict().getKey("/PatternType");
    const bool isDrawn = hasName(resource.getDict(), "/Subtype", "/Form") ||
                         (pattern.isInteger() && pattern.getIntValue() == 1);
    return isDrawn ? resource : QPDFObjectHandle::newNull();
}

QPDFObjectHandle dictionaryOf(QPDFObjectHandle part)
{
    return part.isStream() ? part.getDict() : part;
}

/// Whether leaving the resource out could save more than a few bytes: it draws something, or has
/// data of its own.
bool isWorthLeavingOut(QPDFObjectHandle resource)
{
    if (resource.isStream()) {
        return true;
    }
    if (resource.isArray()) {
        return resource.getArrayNItems() > 1;
    }
    for (const char *key : {"/FontDescriptor", "/DescendantFonts", "/CharProcs", "/ToUnicode",
                            "/SMask", "/Function", "/Font"}) {
        QPDFObjectHandle data = entryOf(resource, key);
        if (!data.isNull() && !data.isName()) {
            return true;
        }
    }
    return false;
}

/// Works on the resources of one source document.
class Pruner
{
public:
    explicit Pruner(SourceDocument &source)
        : m_source(source)
    {}

    /// Notes the resources of pages that are gone, with those of all that these draw.
    void findShared()
    {
        std::vector<QPDFObjectHandle> waiting;
        for (const int index : m_source.gonePages()) {
            QPDFObjectHandle page = m_source.page(index);
            waiting.push_back(page.getKey("/Resources"));
            for (const QPDFObjectHandle &annotation : itemsOf(page.getKey("/Annots"))) {
                for (const QPDFObjectHandle &appearance : appearancesOf(annotation)) {
                    waiting.push_back(dictionaryOf(appearance).getKey("/Resources"));
                }
            }
        }
        while (!waiting.empty()) {
            QPDFObjectHandle resources = waiting.back();
            waiting.pop_back();
            forEachResource(
                resources, [this](QPDFObjGen id) { return !m_ofGonePages.insert(id).second; },
                [&](QPDFObjectHandle resource) {
                    QPDFObjectHandle part = partOf(resource);
                    if (part.isIndirect() && m_partsOfGonePages.insert(part.getObjGen()).second) {
                        waiting.push_back(dictionaryOf(part).getKey("/Resources"));
                    }
                });
        }
    }

    void prunePage(int index)
    {
        QPDFObjectHandle page = m_source.page(index);
        QPDFObjectHandle resources = page.getKey("/Resources");
        for (const QPDFObjectHandle &annotation : itemsOf(page.getKey("/Annots"))) {
            for (const QPDFObjectHandle &appearance : appearancesOf(annotation)) {
                prunePart(appearance, 0);
            }
        }
        if (!isShared(resources)) {
            pruneParts(resources, 0);
            return;
        }
        UsedNames names;
        if (!readPage(page, names) || !addNamesOfParts(resources, names, 0)) {
            return;
        }
        page.replaceKey("/Resources", pruned(resources, names, 0));
    }

private:
    /// Calls `isKnown` with the object numbers that stand in a resource dictionary, until it
    /// returns true for a dictionary whose content is known, and `visit` with the resources.
    template <typename IsKnown, typename Visit>
    static void forEachResource(QPDFObjectHandle resources, IsKnown &&isKnown, Visit &&visit)
    {
        if (!resources.isDictionary() ||
            (resources.isIndirect() && isKnown(resources.getObjGen()))) {
            return;
        }
        for (const char *category : kCategories) {
            QPDFObjectHandle all = resources.getKey(category);
            if (!all.isDictionary() || (all.isIndirect() && isKnown(all.getObjGen()))) {
                continue;
            }
            for (auto &[name, resource] : all.getDictAsMap()) {
                if (resource.isIndirect()) {
                    isKnown(resource.getObjGen());
                }
                visit(resource);
            }
        }
    }

    /// Whether gone pages have something of these resources, and there is something to be saved.
    bool isShared(QPDFObjectHandle resources)
    {
        if (!resources.isIndirect()) {
            return sharesWithGonePages(resources);
        }
        const auto [known, isNew] = m_shared.emplace(resources.getObjGen(), false);
        if (isNew) {
            known->second = sharesWithGonePages(resources);
        }
        return known->second;
    }

    bool sharesWithGonePages(QPDFObjectHandle resources) const
    {
        bool isShared = false;
        bool isWorthIt = false;
        int count = 0;
        forEachResource(
            resources,
            [&](QPDFObjGen id) {
                isShared = isShared || m_ofGonePages.count(id) != 0;
                return isShared && isWorthIt;
            },
            [&](const QPDFObjectHandle &resource) {
                isWorthIt = isWorthIt || ++count > kFewResources || isWorthLeavingOut(resource);
            });
        return isShared && isWorthIt;
    }

    /// Reads what the page and its annotations take from the resources of the page.
    bool readPage(QPDFObjectHandle page, UsedNames &names)
    {
        QPDFObjectHandle contents = page.getKey("/Contents");
        const std::vector<QPDFObjectHandle> streams =
            contents.isArray() ? contents.getArrayAsVector() : std::vector{contents};
        for (const QPDFObjectHandle &stream : streams) {
            if (!readNames(stream, names)) {
                return false;
            }
        }
        for (const QPDFObjectHandle &annotation : itemsOf(page.getKey("/Annots"))) {
            for (const QPDFObjectHandle &appearance : appearancesOf(annotation)) {
                if (!addNamesOf(appearance, names, 0)) {
                    return false;
                }
            }
        }
        return true;
    }

    /// Adds the names in a stream; false when it cannot be told what these are.
    bool readNames(QPDFObjectHandle content, UsedNames &names)
    {
        if (!content.isStream()) {
            return content.isNull();
        }
        const std::set<std::string> *found = m_contents.namesIn(content);
        if (found == nullptr) {
            return false;
        }
        for (const std::string &name : *found) {
            names[name] = 0;
        }
        return true;
    }

    /// Adds the names that parts among the resources take from them, or from what surrounds them.
    bool addNamesOfParts(QPDFObjectHandle resources, UsedNames &names, int depth)
    {
        // What a part uses may be another part.
        std::set<std::string> followed;
        for (bool isNew = true; isNew;) {
            isNew = false;
            for (const std::string &name : newNames(names, followed)) {
                isNew = true;
                for (const char *category : {"/XObject", "/Pattern", "/Font", "/ExtGState"}) {
                    QPDFObjectHandle part = entryOf(resources.getKey(category), name);
                    if (!addNamesOf(partOf(part), names, depth)) {
                        return false;
                    }
                }
            }
        }
        return true;
    }

    /// Names that have not been followed yet; they count as followed afterwards.
    static std::vector<std::string> newNames(const UsedNames &names,
                                             std::set<std::string> &followed)
    {
        std::vector<std::string> found;
        for (const auto &[name, nearer] : names) {
            if (followed.insert(name).second) {
                found.push_back(name);
            }
        }
        return found;
    }

    /// Adds the names that a part uses without defining them itself: readers appearance for them in
    /// what surrounds it.
    bool addNamesOf(QPDFObjectHandle part, UsedNames &names, int depth)
    {
        if (part.isNull()) {
            return true;
        }
        const QPDFObjGen id = part.getObjGen();
        if (const auto known = m_openNamesOf.find(id); known != m_openNamesOf.end()) {
            addNames(known->second, names);
            return true;
        }
        // A part that contains itself is left to those who can make sense of it.
        if (depth >= kMaxNesting || (part.isIndirect() && !m_beingRead.insert(id).second)) {
            return false;
        }
        UsedNames open;
        const bool isRead = readPart(part, open) &&
                            closeNames(dictionaryOf(part).getKey("/Resources"), depth, open);
        m_beingRead.erase(id);
        if (!isRead) {
            return false;
        }
        addNames(open, names);
        if (part.isIndirect()) {
            m_openNamesOf.emplace(id, std::move(open));
        }
        return true;
    }

    /// Adds the names in the content of a part: its own or that of its glyphs.
    bool readPart(QPDFObjectHandle part, UsedNames &names)
    {
        if (part.isStream()) {
            return readNames(part, names);
        }
        QPDFObjectHandle glyphs = part.getKey("/CharProcs");
        if (!glyphs.isDictionary()) {
            return true;
        }
        for (auto &[name, glyph] : glyphs.getDictAsMap()) {
            if (glyph.isStream() && !readNames(glyph, names)) {
                return false;
            }
        }
        return true;
    }

    /// Adds what the parts among the resources leave open, then notes what is defined here.
    bool closeNames(QPDFObjectHandle resources, int depth, UsedNames &names)
    {
        if (!resources.isDictionary()) {
            return true;
        }
        if (!addNamesOfParts(resources, names, depth + 1)) {
            return false;
        }
        for (std::size_t i = 0; i < kCategories.size(); ++i) {
            QPDFObjectHandle all = resources.getKey(kCategories[i]);
            if (!all.isDictionary()) {
                continue;
            }
            for (const std::string &name : all.getKeys()) {
                if (const auto used = names.find(name); used != names.end()) {
                    used->second |= 1U << i;
                }
            }
        }
        return true;
    }

    /// Prunes the resources that a part has of its own, and those of the parts among them.
    void prunePart(QPDFObjectHandle part, int depth)
    {
        if (part.isNull() || !part.isIndirect() || depth >= kMaxNesting ||
            !m_visitedParts.insert(part.getObjGen()).second) {
            return;
        }
        QPDFObjectHandle dictionary = dictionaryOf(part);
        QPDFObjectHandle resources = dictionary.getKey("/Resources");
        if (!isShared(resources)) {
            pruneParts(resources, depth + 1);
            return;
        }
        UsedNames names;
        if (readPart(part, names) && addNamesOfParts(resources, names, depth)) {
            dictionary.replaceKey("/Resources", pruned(resources, names, depth));
        }
    }

    void pruneParts(QPDFObjectHandle resources, int depth)
    {
        if (resources.isIndirect() && !m_visitedResources.insert(resources.getObjGen()).second) {
            return;
        }
        forEachResource(
            resources, [](QPDFObjGen) { return false; },
            [&](QPDFObjectHandle resource) { prunePart(partOf(resource), depth); });
    }

    QPDFObjectHandle pruned(QPDFObjectHandle resources, const UsedNames &names, int depth)
    {
        QPDFObjectHandle kept = resources.unsafeShallowCopy();
        for (std::size_t i = 0; i < kCategories.size(); ++i) {
            QPDFObjectHandle all = resources.getKey(kCategories[i]);
            if (!all.isDictionary()) {
                continue;
            }
            QPDFObjectHandle used = QPDFObjectHandle::newDictionary();
            const auto keep = [&](const std::string &name) {
                QPDFObjectHandle resource = all.getKey(name);
                if (resource.isNull()) {
                    return;
                }
                used.replaceKey(name, resource);
                prunePart(partOf(resource), depth + 1);
            };
            for (const auto &[name, nearer] : names) {
                if ((nearer & (1U << i)) == 0) {
                    keep(name);
                }
            }
            // Colour spaces that stand in for the plain ones (ISO 32000-2, 8.6.5.6) are used
            // without being named.
            if (kCategories[i] == kColourSpaces) {
                for (const char *name : {"/DefaultGray", "/DefaultRGB", "/DefaultCMYK"}) {
                    keep(name);
                }
            }
            kept.replaceKey(kCategories[i], used);
        }
        return kept;
    }

    SourceDocument &m_source;
    ContentNames m_contents;
    std::set<QPDFObjGen> m_ofGonePages;
    std::set<QPDFObjGen> m_partsOfGonePages;
    std::set<QPDFObjGen> m_visitedParts;
    std::set<QPDFObjGen> m_visitedResources;
    std::map<QPDFObjGen, bool> m_shared; ///< Whether gone pages have something of these resources.
    std::map<QPDFObjGen, UsedNames> m_openNamesOf;
    std::set<QPDFObjGen> m_beingRead;
};

} // namespace

void pruneResources(SourceDocument &source)
{
    const auto kept = static_cast<int>(source.keptPages().size());
    // Reading the content of many pages is not worth it when few are gone.
    if (kept > kAlwaysPruned && kept > source.pageCount() / 2) {
        return;
    }
    Pruner pruner(source);
    pruner.findShared();
    for (const int index : source.keptPages()) {
        pruner.prunePage(index);
    }
}

} // namespace pdfcore
