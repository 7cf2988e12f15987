// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/save/source/source_document.h"

#include "pdfcore/src/qpdf/key_tree.h"
#include "pdfcore/src/qpdf/qpdf_objects.h"
#include "pdfcore/src/qpdf/qpdf_protection.h"
#include "pdfcore/src/qpdf/qpdf_source.h"

#include <utility>

namespace pdfcore {

namespace {

/// Names that lead to names are followed so often.
constexpr int kMaxNameSteps = 8;

} // namespace

SourceDocument::SourceDocument(std::shared_ptr<QPDF> document)
    : m_document(std::move(document))
{
    setPages(pagesOf(*m_document));
}

void SourceDocument::setPages(std::vector<QPDFObjectHandle> pages)
{
    m_pages = std::move(pages);
    m_isKept.assign(m_pages.size(), false);
    m_indexes.clear();
    for (std::size_t i = 0; i < m_pages.size(); ++i) {
        m_indexes.emplace(m_pages[i].getObjGen(), static_cast<int>(i));
    }
}

bool SourceDocument::agreeOn(const std::vector<int> &pageNumbers)
{
    if (pageNumbers.size() == m_pages.size()) {
        return true;
    }
    std::map<int, QPDFObjectHandle> found;
    for (const QPDFObjectHandle &page : m_pages) {
        found.emplace(page.getObjectID(), page);
    }
    std::vector<QPDFObjectHandle> agreed;
    for (const int number : pageNumbers) {
        const auto page = found.find(number);
        if (page == found.end()) {
            return false;
        }
        agreed.push_back(page->second);
    }
    setPages(std::move(agreed));
    return true;
}

QPDF *SourceDocument::protection() const
{
    return hasKey(*m_document) ? m_document.get() : m_protection.get();
}

QPDFObjectHandle SourceDocument::page(int index) const
{
    return m_pages[static_cast<std::size_t>(index)];
}

int SourceDocument::firstIndexOf(int index) const
{
    return m_indexes.at(page(index).getObjGen());
}

void SourceDocument::keep(int index)
{
    const int first = firstIndexOf(index);
    if (m_isKept[static_cast<std::size_t>(first)]) {
        return;
    }
    m_isKept[static_cast<std::size_t>(first)] = true;
    m_keptPages.push_back(first);
}

bool SourceDocument::isKept(int index) const
{
    return m_isKept[static_cast<std::size_t>(firstIndexOf(index))];
}

std::vector<int> SourceDocument::gonePages() const
{
    std::vector<int> gone;
    for (const auto &[id, index] : m_indexes) {
        if (!m_isKept[static_cast<std::size_t>(index)]) {
            gone.push_back(index);
        }
    }
    return gone;
}

std::optional<int> SourceDocument::indexOf(QPDFObjectHandle page) const
{
    const auto found = page.isIndirect() ? m_indexes.find(page.getObjGen()) : m_indexes.end();
    if (found == m_indexes.end()) {
        return std::nullopt;
    }
    return found->second;
}

bool SourceDocument::isGone(QPDFObjectHandle page) const
{
    const std::optional<int> index = indexOf(page);
    return index && !isKept(*index);
}

bool SourceDocument::isAnnotation(QPDFObjectHandle object) const
{
    return object.isDictionary() && object.hasKey("/Subtype") && object.hasKey("/Rect") &&
           (!object.hasKey("/Type") || hasName(object, "/Type", "/Annot")) && !indexOf(object) &&
           object.getObjGen() != root().getObjGen();
}

SourceDocument::Target SourceDocument::resolve(QPDFObjectHandle destination)
{
    bool isNamed = false;
    for (int step = 0; step < kMaxNameSteps; ++step) {
        if (destination.isDictionary()) {
            destination = destination.getKey("/D");
        }
        if (destination.isArray()) {
            break;
        }
        if (!destination.isString() && !destination.isName()) {
            return {};
        }
        destination = namedDestination(destination);
        isNamed = true;
    }
    if (!destination.isArray() || destination.getArrayNItems() == 0) {
        return {};
    }

    // Numbers are for pages of other files (ISO 32000-2, 12.3.2.2), but some name their own so.
    QPDFObjectHandle first = destination.getArrayItem(0);
    Target target{Target::Kind::Page, -1, !isNamed, destination};
    if (const std::optional<int> index = indexOf(first)) {
        target.page = *index;
    } else if (first.isInteger() && first.getIntValue() >= 0 && first.getIntValue() < pageCount()) {
        target.page = firstIndexOf(static_cast<int>(first.getIntValue()));
        target.isExplicit = false;
    } else if (hasName(first, "/Type", "/Page")) {
        target.kind = Target::Kind::OutsidePage;
    } else {
        return {};
    }
    return target;
}

QPDFObjectHandle SourceDocument::explicitAddress(const Target &target) const
{
    QPDFObjectHandle address = target.address;
    std::vector<QPDFObjectHandle> items = address.getArrayAsVector();
    items.front() = page(target.page);
    return QPDFObjectHandle::newArray(items);
}

/// What a name stands for; null when it stands for nothing. Strings are looked up in the tree of
/// names and names proper in the dictionary, which came first (ISO 32000-2, 12.3.2.4); some files
/// mix them up.
QPDFObjectHandle SourceDocument::namedDestination(QPDFObjectHandle name)
{
    const std::map<std::string, QPDFObjectHandle> &all = namedDestinations();
    if (name.isName()) {
        const auto own = m_dictionaryNames.find(name.getName().substr(1));
        if (own != m_dictionaryNames.end()) {
            return own->second;
        }
    }
    const auto found = all.find(name.isName() ? name.getName().substr(1) : name.getStringValue());
    return found != all.end() ? found->second : QPDFObjectHandle::newNull();
}

const std::map<std::string, QPDFObjectHandle> &SourceDocument::namedDestinations()
{
    if (m_names) {
        return *m_names;
    }
    m_names.emplace();
    QPDFObjectHandle catalogue = root();
    for (auto &[name, destination] :
         readNameTree(entryOf(entryOf(catalogue, "/Names"), "/Dests"))) {
        m_names->emplace(name, destination);
    }
    if (QPDFObjectHandle dictionary = catalogue.getKey("/Dests"); dictionary.isDictionary()) {
        for (auto &[name, destination] : dictionary.getDictAsMap()) {
            m_dictionaryNames.emplace(name.substr(1), destination);
        }
        m_names->insert(m_dictionaryNames.begin(), m_dictionaryNames.end());
    }
    return *m_names;
}

} // namespace pdfcore
