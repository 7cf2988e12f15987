// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/save/interactive/outline.h"

#include "pdfcore/src/qpdf/qpdf_objects.h"

#include <set>

namespace pdfcore {

namespace {

constexpr const char *kLinks[] = {"/First", "/Last", "/Next", "/Prev", "/Parent", "/Count"};

struct Waiting
{
    QPDFObjectHandle dictionary;
    int parent;
};

/// Whether the object is not something else that a damaged outline leads to.
bool mayBeEntry(QPDFObjectHandle dictionary)
{
    if (!dictionary.isDictionary()) {
        return false;
    }
    QPDFObjectHandle type = dictionary.getKey("/Type");
    return !type.isName() || type.getName().rfind("/Outline", 0) == 0;
}

/// All entries, each one before those below it. Those that are met again are left out, so that an
/// outline that runs in circles ends.
std::vector<Outline::Entry> readEntries(QPDF &document)
{
    std::vector<Outline::Entry> entries;
    std::set<QPDFObjGen> visited;
    std::vector<Waiting> waiting;
    const auto push = [&](QPDFObjectHandle dictionary, int parent) {
        if (!mayBeEntry(dictionary)) {
            return;
        }
        if (!dictionary.isIndirect()) {
            dictionary = document.makeIndirectObject(dictionary);
        }
        if (visited.insert(dictionary.getObjGen()).second) {
            waiting.push_back({dictionary, parent});
        }
    };
    QPDFObjectHandle root = entryOf(document.getRoot(), "/Outlines");
    visited.insert(root.getObjGen());
    push(entryOf(root, "/First"), -1);
    while (!waiting.empty()) {
        Waiting entry = waiting.back();
        waiting.pop_back();
        QPDFObjectHandle count = entry.dictionary.getKey("/Count");
        // A negative count is that of a closed entry (ISO 32000-2, 12.3.3).
        const bool isOpen = count.isInteger() && count.getIntValue() > 0;
        entries.push_back({entry.dictionary, entry.parent, isOpen});
        // What is below comes before what is behind.
        push(entry.dictionary.getKey("/Next"), entry.parent);
        push(entry.dictionary.getKey("/First"), static_cast<int>(entries.size()) - 1);
    }
    return entries;
}

bool leadsSomewhere(QPDFObjectHandle entry)
{
    return entry.hasKey("/Dest") || entry.hasKey("/A");
}

/// Which entries stay.
std::vector<bool> findStaying(const std::vector<Outline::Entry> &entries, LinkPruner &links)
{
    std::vector<bool> stays(entries.size(), false);
    std::vector<bool> hadKids(entries.size(), false);
    std::vector<bool> hasKids(entries.size(), false);
    for (std::size_t i = entries.size(); i-- > 0;) {
        QPDFObjectHandle entry = entries[i].dictionary;
        const bool led = leadsSomewhere(entry);
        const bool leads = links.pruneEntry(entry);
        const bool lostAll = hadKids[i] && !hasKids[i];
        stays[i] = led ? leads : !lostAll;
        if (entries[i].parent < 0) {
            continue;
        }
        const auto parent = static_cast<std::size_t>(entries[i].parent);
        hadKids[parent] = true;
        // Kids of an entry that goes become kids of the one above it.
        hasKids[parent] = hasKids[parent] || stays[i] || hasKids[i];
    }
    return stays;
}

void link(QPDFObjectHandle parent, QPDFObjectHandle last, QPDFObjectHandle entry)
{
    entry.replaceKey("/Parent", parent);
    if (last.isInitialized()) {
        last.replaceKey("/Next", entry);
        entry.replaceKey("/Prev", last);
    } else {
        parent.replaceKey("/First", entry);
    }
    parent.replaceKey("/Last", entry);
}

} // namespace

Outline Outline::of(SourceDocument &source, LinkPruner &links, bool isMain)
{
    Outline outline;
    const std::vector<Entry> entries = readEntries(source.document());
    const std::vector<bool> stays = findStaying(entries, links);
    std::vector<int> newIndexes(entries.size(), -1);
    for (std::size_t i = 0; i < entries.size(); ++i) {
        const int parent = entries[i].parent;
        const int newParent = parent < 0 ? -1 : newIndexes[static_cast<std::size_t>(parent)];
        if (!stays[i]) {
            newIndexes[i] = newParent;
            continue;
        }
        newIndexes[i] = static_cast<int>(outline.m_entries.size());
        outline.m_entries.push_back({entries[i].dictionary, newParent, entries[i].isOpen});
        if (!isMain) {
            outline.m_entries.back().dictionary.removeKey("/SE");
        }
    }
    const bool isBroken =
        entries.empty() && !entryOf(entryOf(source.root(), "/Outlines"), "/First").isNull();
    outline.m_isPruned = isBroken || outline.m_entries.size() != entries.size();
    return outline;
}

void Outline::appendHeading(const QString &title, QPDFObjectHandle page, QPDF &target)
{
    // The position and the zoom of the reader stay as they are (ISO 32000-2, 12.3.2.2).
    const QPDFObjectHandle unchanged = QPDFObjectHandle::newNull();
    const QPDFObjectHandle entry = target.makeIndirectObject(QPDFObjectHandle::newDictionary(
        {{"/Title", QPDFObjectHandle::newUnicodeString(title.toStdString())},
         {"/Dest", QPDFObjectHandle::newArray({page, QPDFObjectHandle::newName("/XYZ"), unchanged,
                                               unchanged, unchanged})}}));
    m_heading = static_cast<int>(m_entries.size());
    m_entries.push_back({entry, -1, true});
}

void Outline::append(const Outline &other, ObjectCopier *copier, QPDF &target)
{
    const int offset = static_cast<int>(m_entries.size());
    for (const Entry &entry : other.m_entries) {
        QPDFObjectHandle dictionary = entry.dictionary;
        if (copier != nullptr) {
            dictionary = dictionary.shallowCopy();
            for (const char *key : kLinks) {
                dictionary.removeKey(key);
            }
            dictionary = target.makeIndirectObject(copier->copy(dictionary));
        }
        m_entries.push_back(
            {dictionary, entry.parent < 0 ? m_heading : entry.parent + offset, entry.isOpen});
    }
}

void Outline::install(QPDF &document) const
{
    QPDFObjectHandle catalogue = document.getRoot();
    if (m_entries.empty()) {
        catalogue.removeKey("/Outlines");
        if (hasName(catalogue, "/PageMode", "/UseOutlines")) {
            catalogue.removeKey("/PageMode");
        }
        return;
    }
    QPDFObjectHandle root = catalogue.getKey("/Outlines");
    if (!root.isDictionary() || !root.isIndirect()) {
        root = document.makeIndirectObject(QPDFObjectHandle::newDictionary());
        root.replaceKey("/Type", QPDFObjectHandle::newName("/Outlines"));
        catalogue.replaceKey("/Outlines", root);
    }
    for (const char *key : {"/First", "/Last", "/Count"}) {
        root.removeKey(key);
    }
    for (const Entry &entry : m_entries) {
        for (const char *key : kLinks) {
            QPDFObjectHandle(entry.dictionary).removeKey(key);
        }
    }

    std::vector<QPDFObjectHandle> lastKids(m_entries.size());
    QPDFObjectHandle lastTop;
    for (const Entry &entry : m_entries) {
        const bool isTop = entry.parent < 0;
        const auto above = static_cast<std::size_t>(entry.parent);
        QPDFObjectHandle &last = isTop ? lastTop : lastKids[above];
        link(isTop ? root : m_entries[above].dictionary, last, entry.dictionary);
        last = entry.dictionary;
    }

    // How many entries show below each one when it is open.
    std::vector<long long> below(m_entries.size(), 0);
    long long all = 0;
    for (std::size_t i = m_entries.size(); i-- > 0;) {
        const Entry &entry = m_entries[i];
        if (below[i] > 0) {
            QPDFObjectHandle(entry.dictionary)
                .replaceKey("/Count",
                            QPDFObjectHandle::newInteger(entry.isOpen ? below[i] : -below[i]));
        }
        const long long shown = 1 + (entry.isOpen ? below[i] : 0);
        (entry.parent < 0 ? all : below[static_cast<std::size_t>(entry.parent)]) += shown;
    }
    root.replaceKey("/Count", QPDFObjectHandle::newInteger(all));
}

} // namespace pdfcore
