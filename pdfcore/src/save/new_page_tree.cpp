// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/save/new_page_tree.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace pdfcore {

namespace {

/// Kids of one node of a page tree that is written.
constexpr std::size_t kTreeFanOut = 32;

struct TreeNode
{
    QPDFObjectHandle object;
    long long pages;
};

} // namespace

void installPageTree(QPDF &document, const std::vector<QPDFObjectHandle> &pages)
{
    std::vector<TreeNode> level;
    level.reserve(pages.size());
    for (const QPDFObjectHandle &page : pages) {
        level.push_back({page, 1});
    }
    do {
        std::vector<TreeNode> above;
        for (std::size_t first = 0; first < level.size(); first += kTreeFanOut) {
            const std::size_t end = std::min(first + kTreeFanOut, level.size());
            QPDFObjectHandle node = document.makeIndirectObject(QPDFObjectHandle::newDictionary());
            std::vector<QPDFObjectHandle> kids;
            long long count = 0;
            for (std::size_t i = first; i < end; ++i) {
                level[i].object.replaceKey("/Parent", node);
                kids.push_back(level[i].object);
                count += level[i].pages;
            }
            node.replaceKey("/Type", QPDFObjectHandle::newName("/Pages"));
            node.replaceKey("/Kids", QPDFObjectHandle::newArray(kids));
            node.replaceKey("/Count", QPDFObjectHandle::newInteger(count));
            above.push_back({node, count});
        }
        level = std::move(above);
    } while (level.size() > 1);
    document.getRoot().replaceKey("/Pages", level.front().object);
}

} // namespace pdfcore
