// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/save/interactive/article_threads.h"

#include "pdfcore/src/qpdf/qpdf_objects.h"

#include <algorithm>
#include <set>

namespace pdfcore {

namespace {

/// Beads of one thread that are followed.
constexpr int kMaxBeads = 100'000;

/// Joins the beads whose pages stay; false when all are gone.
bool pruneThread(SourceDocument &main, QPDFObjectHandle thread)
{
    std::vector<QPDFObjectHandle> kept;
    const std::vector<QPDFObjectHandle> beads = beadsOf(thread);
    for (const QPDFObjectHandle &bead : beads) {
        if (!main.isGone(QPDFObjectHandle(bead).getKey("/P"))) {
            kept.push_back(bead);
        }
    }
    if (kept.size() == beads.size()) {
        return true;
    }
    if (kept.empty()) {
        return false;
    }
    thread.replaceKey("/F", kept.front());
    for (std::size_t i = 0; i < kept.size(); ++i) {
        const std::size_t next = (i + 1) % kept.size();
        kept[i].replaceKey("/N", kept[next]);
        kept[next].replaceKey("/V", kept[i]);
    }
    // Only the first one of a thread has to name it (ISO 32000-2, 12.4.3).
    kept.front().replaceKey("/T", thread);
    return true;
}

} // namespace

std::vector<QPDFObjectHandle> beadsOf(QPDFObjectHandle thread)
{
    std::vector<QPDFObjectHandle> beads;
    std::set<QPDFObjGen> visited;
    QPDFObjectHandle bead = entryOf(thread, "/F");
    while (bead.isDictionary() && bead.isIndirect() && beads.size() < kMaxBeads &&
           visited.insert(bead.getObjGen()).second) {
        beads.push_back(bead);
        bead = bead.getKey("/N");
    }
    return beads;
}

bool isThreadGone(const SourceDocument &source, QPDFObjectHandle thread)
{
    const std::vector<QPDFObjectHandle> beads = beadsOf(thread);
    return !beads.empty() &&
           std::all_of(beads.begin(), beads.end(), [&source](const QPDFObjectHandle &bead) {
               return source.isGone(QPDFObjectHandle(bead).getKey("/P"));
           });
}

void pruneThreads(SourceDocument &main)
{
    QPDFObjectHandle threads = main.root().getKey("/Threads");
    if (!threads.isArray()) {
        return;
    }
    const std::vector<QPDFObjectHandle> before = threads.getArrayAsVector();
    std::vector<QPDFObjectHandle> kept;
    for (const QPDFObjectHandle &thread : before) {
        if (QPDFObjectHandle(thread).isDictionary() && pruneThread(main, thread)) {
            kept.push_back(thread);
        }
    }
    if (kept.size() == before.size()) {
        return;
    }
    if (kept.empty()) {
        main.root().removeKey("/Threads");
    } else {
        main.root().replaceKey("/Threads", QPDFObjectHandle::newArray(kept));
    }
}

} // namespace pdfcore
