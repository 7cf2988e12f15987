#include "pdfcore/src/resource_pruner.h"

#include "pdfcore/src/qpdf_objects.h"

#include <exception>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace pdfcore {

namespace {

/// Categories of resources that are looked through. Names of others are few and small.
constexpr const char *kCategories[] = {"/Font",    "/XObject",   "/ColorSpace", "/Pattern",
                                       "/Shading", "/ExtGState", "/Properties"};

/// Forms within forms that are followed.
constexpr int kMaxNesting = 32;

/// Pages up to which it does not matter how many others are gone.
constexpr int kAlwaysPruned = 1'000;

/// Collects the names among the operands of a content stream. What they are used for does not
/// matter: a resource whose name does not occur at all is not used.
class NameCollector final : public QPDFObjectHandle::ParserCallbacks
{
public:
    explicit NameCollector(std::set<std::string> &names)
        : m_names(names)
    {}

    void handleObject(QPDFObjectHandle object, size_t /*offset*/, size_t /*length*/) override
    {
        collect(object, 0);
    }

    void handleEOF() override {}

private:
    void collect(QPDFObjectHandle object, int depth)
    {
        if (object.isName()) {
            m_names.insert(object.getName());
        } else if (object.isArray() && depth < kMaxNesting) {
            for (const QPDFObjectHandle &item : object.getArrayAsVector())
                collect(item, depth + 1);
        } else if (object.isDictionary() && depth < kMaxNesting) {
            for (const auto &[key, value] : object.getDictAsMap())
                collect(value, depth + 1);
        }
    }

    std::set<std::string> &m_names;
};

/// Works on the resources of one source.
class Pruner
{
public:
    explicit Pruner(SourceDocument &source)
        : m_source(source)
    {}

    void findShared()
    {
        for (const int index : m_source.gonePages()) {
            forEachResource(m_source.page(index).getKey("/Resources"),
                            [this](QPDFObjGen id) { return !m_ofGonePages.insert(id).second; });
        }
    }

    void prunePage(int index)
    {
        QPDFObjectHandle page = m_source.page(index);
        QPDFObjectHandle resources = page.getKey("/Resources");
        if (!isShared(resources))
            return;
        std::set<std::string> names;
        if (!readNames(page.getKey("/Contents"), names) || !addNamesOfLooks(page, names) ||
            !addNamesOfParts(resources, names))
            return;
        page.replaceKey("/Resources", pruned(resources, names, 0));
    }

private:
    /// Calls `visit` with the object numbers that stand in a resource dictionary, until it returns
    /// true for a dictionary whose content is known.
    template <typename Visit>
    static void forEachResource(QPDFObjectHandle resources, Visit &&visit)
    {
        if (!resources.isDictionary() || (resources.isIndirect() && visit(resources.getObjGen())))
            return;
        for (const char *category : kCategories) {
            QPDFObjectHandle all = resources.getKey(category);
            if (!all.isDictionary() || (all.isIndirect() && visit(all.getObjGen())))
                continue;
            for (auto &[name, resource] : all.getDictAsMap()) {
                if (resource.isIndirect())
                    visit(resource.getObjGen());
            }
        }
    }

    bool isShared(QPDFObjectHandle resources) const
    {
        bool shared = false;
        forEachResource(resources, [&](QPDFObjGen id) {
            shared = shared || m_ofGonePages.count(id) != 0;
            return shared;
        });
        return shared;
    }

    /// Adds the names that the looks of annotations take from the page for want of their own.
    bool addNamesOfLooks(QPDFObjectHandle page, std::set<std::string> &names)
    {
        for (const QPDFObjectHandle &annotation : itemsOf(page.getKey("/Annots"))) {
            QPDFObjectHandle looks = entryOf(annotation, "/AP");
            if (!looks.isDictionary())
                continue;
            for (auto &[mode, look] : looks.getDictAsMap()) {
                if (look.isStream() && !addNamesOf(look, names))
                    return false;
                if (!look.isDictionary())
                    continue;
                for (auto &[state, stream] : look.getDictAsMap()) {
                    if (stream.isStream() && !addNamesOf(stream, names))
                        return false;
                }
            }
        }
        return true;
    }

    bool readNames(QPDFObjectHandle content, std::set<std::string> &names) const
    {
        if (content.isNull())
            return true;
        const std::size_t warnings = m_source.document().numWarnings();
        try {
            NameCollector collector(names);
            QPDFObjectHandle::parseContentStream(content, &collector);
        } catch (const std::exception &) {
            return false;
        }
        // Who reads damaged content may read something else in it.
        return m_source.document().numWarnings() == warnings;
    }

    /// Adds the names that forms, patterns and glyphs among the resources take from them, or from
    /// what surrounds them.
    bool addNamesOfParts(QPDFObjectHandle resources, std::set<std::string> &names, int depth = 0)
    {
        // What a part uses may be another part.
        for (std::size_t known = names.size() + 1; known != names.size();) {
            known = names.size();
            for (const char *category : {"/XObject", "/Pattern", "/Font", "/ExtGState"}) {
                QPDFObjectHandle parts = resources.getKey(category);
                if (!parts.isDictionary())
                    continue;
                for (auto &[name, part] : parts.getDictAsMap()) {
                    if (names.count(name) != 0 && !addNamesOf(part, names, depth))
                        return false;
                }
            }
        }
        return true;
    }

    /// The form that a graphics state takes its soft mask from, if it has one.
    static QPDFObjectHandle maskOf(QPDFObjectHandle state)
    {
        return entryOf(entryOf(state, "/SMask"), "/G");
    }

    /// Adds the names that a part uses without defining them itself: readers look for them in what
    /// surrounds it.
    bool addNamesOf(QPDFObjectHandle part, std::set<std::string> &names, int depth = 0)
    {
        if (QPDFObjectHandle mask = maskOf(part); mask.isStream())
            part = mask;
        const bool isGlyphs = hasName(part, "/Subtype", "/Type3");
        if (!isGlyphs && !(part.isStream() && hasContent(part.getDict())))
            return true;
        const QPDFObjGen id = part.getObjGen();
        if (const auto known = m_openNamesOf.find(id); known != m_openNamesOf.end()) {
            names.insert(known->second.begin(), known->second.end());
            return true;
        }
        // A part that contains itself is left to those who can make sense of it.
        if (depth >= kMaxNesting || (part.isIndirect() && !m_beingRead.insert(id).second))
            return false;
        std::set<std::string> open;
        QPDFObjectHandle dictionary = part.isStream() ? part.getDict() : part;
        const bool isRead = isGlyphs ? readNamesOfGlyphs(part, open) : readNames(part, open);
        const bool isClosed = isRead && closeNames(dictionary.getKey("/Resources"), depth, open);
        m_beingRead.erase(id);
        if (!isClosed)
            return false;
        names.insert(open.begin(), open.end());
        if (part.isIndirect())
            m_openNamesOf.emplace(id, std::move(open));
        return true;
    }

    /// Adds what the parts among the resources leave open, then takes out what is defined here.
    bool closeNames(QPDFObjectHandle resources, int depth, std::set<std::string> &names)
    {
        if (!resources.isDictionary())
            return true;
        if (!addNamesOfParts(resources, names, depth + 1))
            return false;
        for (auto &[category, all] : resources.getDictAsMap()) {
            if (!all.isDictionary())
                continue;
            for (const std::string &name : all.getKeys())
                names.erase(name);
        }
        return true;
    }

    bool readNamesOfGlyphs(QPDFObjectHandle font, std::set<std::string> &names) const
    {
        QPDFObjectHandle glyphs = font.getKey("/CharProcs");
        if (!glyphs.isDictionary())
            return true;
        for (auto &[name, glyph] : glyphs.getDictAsMap()) {
            if (glyph.isStream() && !readNames(glyph, names))
                return false;
        }
        return true;
    }

    /// The same for a form or a pattern with resources of its own.
    void prunePart(QPDFObjectHandle part, int depth)
    {
        if (!part.isStream() || depth >= kMaxNesting ||
            !m_visitedParts.insert(part.getObjGen()).second)
            return;
        QPDFObjectHandle dictionary = part.getDict();
        QPDFObjectHandle resources = dictionary.getKey("/Resources");
        if (!hasContent(dictionary) || !isShared(resources))
            return;
        std::set<std::string> names;
        if (readNames(part, names) && addNamesOfParts(resources, names))
            dictionary.replaceKey("/Resources", pruned(resources, names, depth));
    }

    static bool hasContent(QPDFObjectHandle dictionary)
    {
        QPDFObjectHandle pattern = dictionary.getKey("/PatternType");
        return hasName(dictionary, "/Subtype", "/Form") ||
               (pattern.isInteger() && pattern.getIntValue() == 1);
    }

    /// Colour spaces that stand in for the plain ones are used without being named.
    static bool isUsedUnnamed(const std::string &category, const std::string &name)
    {
        return category == "/ColorSpace" && name.rfind("/Default", 0) == 0;
    }

    QPDFObjectHandle pruned(QPDFObjectHandle resources, const std::set<std::string> &names,
                            int depth)
    {
        QPDFObjectHandle kept = resources.unsafeShallowCopy();
        for (const char *category : kCategories) {
            QPDFObjectHandle all = resources.getKey(category);
            if (!all.isDictionary())
                continue;
            QPDFObjectHandle used = QPDFObjectHandle::newDictionary();
            for (auto &[name, resource] : all.getDictAsMap()) {
                if (names.count(name) == 0 && !isUsedUnnamed(category, name))
                    continue;
                used.replaceKey(name, resource);
                prunePart(resource, depth + 1);
                prunePart(maskOf(resource), depth + 1);
            }
            kept.replaceKey(category, used);
        }
        return kept;
    }

    SourceDocument &m_source;
    std::set<QPDFObjGen> m_ofGonePages;
    std::set<QPDFObjGen> m_visitedParts;
    std::map<QPDFObjGen, std::set<std::string>> m_openNamesOf;
    std::set<QPDFObjGen> m_beingRead;
};

} // namespace

void pruneResources(SourceDocument &source)
{
    const auto kept = static_cast<int>(source.keptPages().size());
    // Reading the content of many pages is not worth it when few are gone.
    if (kept > kAlwaysPruned && kept > source.pageCount() / 2)
        return;
    Pruner pruner(source);
    pruner.findShared();
    for (const int index : source.keptPages())
        pruner.prunePage(index);
}

} // namespace pdfcore
