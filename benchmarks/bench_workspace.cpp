// SPDX-License-Identifier: AGPL-3.0-or-later
// How long the interface thread is kept from its event loop while a document of ten thousand pages
// is worked on in the whole viewer, and how much memory that takes.
//
//     bench_workspace
//
// Prints for each operation the longest time between two passes of the event loop, from the
// operation itself until everything it set off has settled. The limit is 50 ms; inspecting the file
// stands apart, because it is one call of the engine.

#include "benchmarks/loop_watch.h"
#include "benchmarks/peer_series.h"
#include "benchmarks/sample_files.h"
#include "pdf/core/pdf_document_model.h"
#include "pdf/core/pdf_undo_manager.h"
#include "pdf/viewer/grid/pdf_page_manager_view.h"
#include "pdf/viewer/pdf_viewer_widget.h"
#include "pdf/viewer/thumbnails/pdf_thumbnail_panel.h"
#include "res/resources.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QListView>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTextStream>
#include <QUndoStack>

#include <algorithm>

namespace {

constexpr int kPages = 10'000;
constexpr int kDeleted = 5'000;
constexpr int kScrollSteps = 60;

/// Scrolls a list from its start to its end in steps, one every event-loop pass or two.
double scrollThrough(LoopWatch &watch, const QListView &list)
{
    double worst = 0;
    QScrollBar *bar = list.verticalScrollBar();
    for (int step = 0; step <= kScrollSteps; ++step) {
        const int value = static_cast<int>(qint64{bar->maximum()} * step / kScrollSteps);
        worst = std::max(worst, watch.worstDuring([bar, value] { bar->setValue(value); }, 60));
    }
    return worst;
}

} // namespace

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    initResources();
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("text-10000.pdf"));
    if (!SampleFiles::writeText(path, kPages)) {
        return 1;
    }

    PdfViewerWidget viewer;
    viewer.resize(1160, 740);
    viewer.show();
    auto *model = viewer.findChild<PdfDocumentModel *>();
    auto *history = viewer.findChild<PdfUndoManager *>();
    const auto *panel = viewer.findChild<PdfThumbnailPanel *>();
    const auto *panelList = panel->findChild<QListView *>(QStringLiteral("pdfThumbnailList"));
    const auto *grid = viewer.findChild<PdfPageManagerView *>();
    const auto *gridList = grid->findChild<QListView *>(QStringLiteral("pdfPageGrid"));

    LoopWatch watch;
    watch.worstDuring([] {}, 300);

    QElapsedTimer inspection;
    inspection.start();
    PdfDocumentInfo info;
    PdfEditorBackend::inspectDocument(path, {}, &info, nullptr, nullptr);
    QTextStream(stdout) << QStringLiteral("inspecting the file: %1 ms")
                               .arg(static_cast<double>(inspection.nsecsElapsed()) / 1e6, 0, 'f', 1)
                        << Qt::endl;

    bool opened = false;
    reportGap(QStringLiteral("opening, file inspected before"),
              watch.worstDuring([&] { opened = viewer.openFile(path, {}); }));
    if (!opened) {
        return 1;
    }
    reportGap(QStringLiteral("scrolling the thumbnail panel"), scrollThrough(watch, *panelList));
    reportGap(QStringLiteral("switching to the grid"),
              watch.worstDuring([&] { viewer.setViewMode(PdfViewMode::PageManageView); }));
    reportGap(QStringLiteral("scrolling the grid"), scrollThrough(watch, *gridList));
    QTextStream(stdout) << QStringLiteral("memory after both scrolls: %1 MiB").arg(peakMemoryMiB())
                        << Qt::endl;
    reportGap(QStringLiteral("selecting all"), watch.worstDuring([&] { model->selectAll(); }));

    QList<PdfPageId> doomed;
    for (int row = 0; row < kPages && doomed.size() < kDeleted; row += 2) {
        doomed.append(model->pageAt(row)->id);
    }
    reportGap(QStringLiteral("deleting 5000 pages, every other"),
              watch.worstDuring([&] { history->deletePages(doomed); }));
    reportGap(QStringLiteral("undo"), watch.worstDuring([&] { history->undoStack()->undo(); }));
    reportGap(QStringLiteral("redo"), watch.worstDuring([&] { history->undoStack()->redo(); }));
    reportGap(QStringLiteral("undo again"),
              watch.worstDuring([&] { history->undoStack()->undo(); }));
    reportGap(QStringLiteral("rotating all"), watch.worstDuring([&] {
        history->rotatePages(model->selectedPageIds().values(), 90);
    }));
    reportGap(QStringLiteral("back to the document"),
              watch.worstDuring([&] { viewer.setViewMode(PdfViewMode::DocumentView); }));
    QTextStream(stdout) << QStringLiteral("memory at the end: %1 MiB").arg(peakMemoryMiB())
                        << Qt::endl;
    return 0;
}
