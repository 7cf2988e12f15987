// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/save/interactive/page_labels.h"

#include "pdfcore/src/qpdf/key_tree.h"
#include "pdfcore/src/qpdf/qpdf_objects.h"

#include <algorithm>
#include <iterator>
#include <limits>

namespace pdfcore {

namespace {

constexpr long long kGreatestNumber = std::numeric_limits<int>::max();

PageLabel labelOf(QPDFObjectHandle entry)
{
    PageLabel label;
    if (QPDFObjectHandle style = entry.getKey("/S"); style.isName()) {
        label.style = style.getName();
    }
    if (QPDFObjectHandle prefix = entry.getKey("/P"); prefix.isString()) {
        label.prefix = prefix;
    }
    if (QPDFObjectHandle start = entry.getKey("/St"); start.isInteger()) {
        label.number = std::clamp(start.getIntValue(), 1LL, kGreatestNumber);
    }
    return label;
}

std::string prefixOf(const PageLabel &label)
{
    QPDFObjectHandle prefix = label.prefix;
    return prefix.isString() ? prefix.getStringValue() : std::string();
}

/// Whether `label` is what comes after `before` by itself.
bool follows(const PageLabel &label, const PageLabel &before)
{
    const bool counts = !label.style.empty();
    return label.style == before.style && prefixOf(label) == prefixOf(before) &&
           (!counts || label.number == before.number + 1);
}

QPDFObjectHandle newEntry(const PageLabel &label)
{
    QPDFObjectHandle entry = QPDFObjectHandle::newDictionary();
    if (const std::string prefix = prefixOf(label); !prefix.empty()) {
        entry.replaceKey("/P", QPDFObjectHandle::newString(prefix));
    }
    // Without a style there is no number to start from.
    if (!label.style.empty()) {
        entry.replaceKey("/S", QPDFObjectHandle::newName(label.style));
        if (label.number != 1) {
            entry.replaceKey("/St", QPDFObjectHandle::newInteger(label.number));
        }
    }
    return entry;
}

} // namespace

SourceLabels::SourceLabels(const SourceDocument &source)
{
    for (const auto &[first, entry] : readNumberTree(entryOf(source.root(), "/PageLabels"))) {
        if (first >= 0 && QPDFObjectHandle(entry).isDictionary()) {
            m_ranges.push_back({first, labelOf(entry)});
        }
    }
    std::stable_sort(m_ranges.begin(), m_ranges.end(),
                     [](const Range &a, const Range &b) { return a.first < b.first; });
}

std::optional<PageLabel> SourceLabels::at(int index) const
{
    const auto behind =
        std::partition_point(m_ranges.begin(), m_ranges.end(),
                             [index](const Range &range) { return range.first <= index; });
    if (behind == m_ranges.begin()) {
        return std::nullopt;
    }
    const Range &range = *std::prev(behind);
    PageLabel label = range.label;
    label.number = std::min(label.number + index - range.first, kGreatestNumber);
    return label;
}

void installLabels(QPDF &output, const std::vector<std::optional<PageLabel>> &labels,
                   Unlabelled unlabelled)
{
    NumberEntries entries;
    PageLabel before;
    for (std::size_t i = 0; i < labels.size(); ++i) {
        if (unlabelled == Unlabelled::Leave && entries.empty() && !labels[i]) {
            continue;
        }
        PageLabel label{"/D", QPDFObjectHandle::newNull(), static_cast<long long>(i) + 1};
        if (labels[i]) {
            label = *labels[i];
        }
        if (entries.empty() || !follows(label, before)) {
            entries.emplace_back(static_cast<long long>(i), newEntry(label));
        }
        before = label;
    }
    if (entries.empty()) {
        // That the document has labels, although of other pages, shows in one behind its pages.
        entries.emplace_back(static_cast<long long>(labels.size()), newEntry(PageLabel()));
    }
    output.getRoot().replaceKey("/PageLabels", newNumberTree(output, entries));
}

} // namespace pdfcore
