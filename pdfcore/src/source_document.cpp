#include "pdfcore/src/source_document.h"

#include "pdfcore/src/key_tree.h"
#include "pdfcore/src/qpdf_objects.h"
#include "pdfcore/src/qpdf_source.h"

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
    for (std::size_t i = 0; i < m_pages.size(); ++i)
        m_indexes.emplace(m_pages[i].getObjGen(), static_cast<int>(i));
}

bool SourceDocument::agreeOn(const std::vector<int> &pageNumbers)
{
    if (pageNumbers.size() == m_pages.size())
        return true;
    std::map<int, QPDFObjectHandle> found;
    for (const QPDFObjectHandle &page : m_pages)
        found.emplace(page.getObjectID(), page);
    std::vector<QPDFObjectHandle> agreed;
    for (const int number : pageNumbers) {
        const auto page = found.find(number);
        if (page == found.end())
            return false;
        agreed.push_back(page->second);
    }
    setPages(std::move(agreed));
    return true;
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
    if (m_isKept[static_cast<std::size_t>(first)])
        return;
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
        if (!m_isKept[static_cast<std::size_t>(index)])
            gone.push_back(index);
    }
    return gone;
}

std::optional<int> SourceDocument::indexOf(QPDFObjectHandle page) const
{
    const auto found = page.isIndirect() ? m_indexes.find(page.getObjGen()) : m_indexes.end();
    if (found == m_indexes.end())
        return std::nullopt;
    return found->second;
}

bool SourceDocument::isGone(QPDFObjectHandle page) const
{
    const std::optional<int> index = indexOf(page);
    return index && !isKept(*index);
}

SourceDocument::Target SourceDocument::resolve(QPDFObjectHandle destination)
{
    bool isNamed = false;
    for (int step = 0; step < kMaxNameSteps; ++step) {
        if (destination.isDictionary())
            destination = destination.getKey("/D");
        if (destination.isArray())
            break;
        std::string name;
        if (destination.isString())
            name = destination.getStringValue();
        else if (destination.isName())
            name = destination.getName().substr(1);
        else
            return {};
        const auto named = namedDestinations().find(name);
        if (named == namedDestinations().end())
            return {};
        destination = named->second;
        isNamed = true;
    }
    if (!destination.isArray() || destination.getArrayNItems() == 0)
        return {};

    QPDFObjectHandle first = destination.getArrayItem(0);
    Target target{Target::Kind::Page, -1, !isNamed, destination};
    if (const std::optional<int> index = indexOf(first)) {
        target.page = *index;
    } else if (first.isInteger() && first.getIntValue() >= 0 && first.getIntValue() < pageCount()) {
        target.page = firstIndexOf(static_cast<int>(first.getIntValue()));
        target.isExplicit = false;
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

const std::map<std::string, QPDFObjectHandle> &SourceDocument::namedDestinations()
{
    if (m_names)
        return *m_names;
    m_names.emplace();
    QPDFObjectHandle catalogue = root();
    for (auto &[name, destination] : readNameTree(entryOf(entryOf(catalogue, "/Names"), "/Dests")))
        m_names->emplace(name, destination);
    if (QPDFObjectHandle dictionary = catalogue.getKey("/Dests"); dictionary.isDictionary()) {
        for (auto &[name, destination] : dictionary.getDictAsMap())
            m_names->emplace(name.substr(1), destination);
    }
    return *m_names;
}

} // namespace pdfcore
