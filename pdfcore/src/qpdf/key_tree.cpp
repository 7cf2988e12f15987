// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/qpdf/key_tree.h"

#include <algorithm>
#include <set>

namespace pdfcore {

namespace {

/// Entries in one leaf of a tree that is written.
constexpr std::size_t kLeafEntries = 64;

bool readKey(QPDFObjectHandle object, std::string *key)
{
    if (!object.isString()) {
        return false;
    }
    *key = object.getStringValue();
    return true;
}

bool readKey(QPDFObjectHandle object, long long *key)
{
    if (!object.isInteger()) {
        return false;
    }
    *key = object.getIntValue();
    return true;
}

QPDFObjectHandle newKey(const std::string &key)
{
    return QPDFObjectHandle::newString(key);
}

QPDFObjectHandle newKey(long long key)
{
    return QPDFObjectHandle::newInteger(key);
}

template <typename Key>
std::vector<std::pair<Key, QPDFObjectHandle>> readTree(QPDFObjectHandle root, const char *listKey)
{
    std::vector<std::pair<Key, QPDFObjectHandle>> entries;
    std::set<QPDFObjGen> visited;
    std::vector<QPDFObjectHandle> waiting{root};
    while (!waiting.empty()) {
        QPDFObjectHandle node = waiting.back();
        waiting.pop_back();
        if (!node.isDictionary() ||
            (node.isIndirect() && !visited.insert(node.getObjGen()).second)) {
            continue;
        }
        if (QPDFObjectHandle list = node.getKey(listKey); list.isArray()) {
            const std::vector<QPDFObjectHandle> items = list.getArrayAsVector();
            for (std::size_t i = 0; i + 1 < items.size(); i += 2) {
                Key key{};
                if (readKey(items[i], &key) && !QPDFObjectHandle(items[i + 1]).isNull()) {
                    entries.emplace_back(std::move(key), items[i + 1]);
                }
            }
        }
        QPDFObjectHandle kids = node.getKey("/Kids");
        const bool isKnown = kids.isIndirect() && !visited.insert(kids.getObjGen()).second;
        if (kids.isArray() && !isKnown) {
            const std::vector<QPDFObjectHandle> items = kids.getArrayAsVector();
            waiting.insert(waiting.end(), items.rbegin(), items.rend());
        }
    }
    return entries;
}

template <typename Key>
QPDFObjectHandle newTree(QPDF &document, std::vector<std::pair<Key, QPDFObjectHandle>> entries,
                         const char *listKey)
{
    const auto isBefore = [](const auto &a, const auto &b) { return a.first < b.first; };
    const auto isSame = [](const auto &a, const auto &b) { return a.first == b.first; };
    std::stable_sort(entries.begin(), entries.end(), isBefore);
    entries.erase(std::unique(entries.begin(), entries.end(), isSame), entries.end());

    std::vector<QPDFObjectHandle> leaves;
    for (std::size_t first = 0; first < entries.size(); first += kLeafEntries) {
        const std::size_t end = std::min(first + kLeafEntries, entries.size());
        std::vector<QPDFObjectHandle> list;
        for (std::size_t i = first; i < end; ++i) {
            list.push_back(newKey(entries[i].first));
            list.push_back(entries[i].second);
        }
        QPDFObjectHandle leaf = QPDFObjectHandle::newDictionary();
        leaf.replaceKey(listKey, QPDFObjectHandle::newArray(list));
        leaf.replaceKey("/Limits", QPDFObjectHandle::newArray({newKey(entries[first].first),
                                                               newKey(entries[end - 1].first)}));
        leaves.push_back(leaf);
    }
    QPDFObjectHandle root = QPDFObjectHandle::newDictionary();
    if (leaves.size() <= 1) {
        root.replaceKey(listKey, leaves.empty() ? QPDFObjectHandle::newArray()
                                                : leaves.front().getKey(listKey));
    } else {
        for (QPDFObjectHandle &leaf : leaves) {
            leaf = document.makeIndirectObject(leaf);
        }
        root.replaceKey("/Kids", QPDFObjectHandle::newArray(leaves));
    }
    return document.makeIndirectObject(root);
}

} // namespace

NameEntries readNameTree(QPDFObjectHandle root)
{
    return readTree<std::string>(root, "/Names");
}

NumberEntries readNumberTree(QPDFObjectHandle root)
{
    return readTree<long long>(root, "/Nums");
}

QPDFObjectHandle newNameTree(QPDF &document, NameEntries entries)
{
    return newTree<std::string>(document, std::move(entries), "/Names");
}

QPDFObjectHandle newNumberTree(QPDF &document, NumberEntries entries)
{
    return newTree<long long>(document, std::move(entries), "/Nums");
}

} // namespace pdfcore
