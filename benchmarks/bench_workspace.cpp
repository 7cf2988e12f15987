// SPDX-License-Identifier: AGPL-3.0-or-later
// How long the interface thread is kept from its event loop while a document of ten thousand pages
// is worked on in the whole viewer, and how much memory that takes.
//
//     bench_workspace
//
// Prints for each operation the longest time between two passes of the event loop, from the
// operation itself until everything it set off has settled. The limit is 50 ms; inspecting the file
// stands apart, because it is one call of the engine.

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
#include <QEventLoop>
#include <QListView>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTextStream>
#include <QTimer>
#include <QUndoStack>

#include <algorithm>
#include <functional>

namespace {

constexpr int kPages = 10'000;
constexpr int kDeleted = 5'000;
constexpr double kLimitMs = 50;
constexpr int kSettleMs = 1'500;
constexpr int kScrollSteps = 60;

/// Measures the longest time between two passes of the event loop.
class LoopWatch
{
public:
    /// Runs the operation from inside the event loop and the loop for a while after it.
    double worstDuring(const std::function<void()> &operation, int settleMs = kSettleMs)
    {
        m_worst = 0;
        m_timer.start();
        QTimer tick;
        QObject::connect(&tick, &QTimer::timeout, &tick, [this] { pass(); });
        tick.start(0);
        QEventLoop loop;
        QTimer::singleShot(0, &loop, operation);
        QTimer::singleShot(settleMs, &loop, &QEventLoop::quit);
        loop.exec();
        return m_worst;
    }

private:
    void pass()
    {
        m_worst = std::max(m_worst, static_cast<double>(m_timer.nsecsElapsed()) / 1e6);
        m_timer.start();
    }

    QElapsedTimer m_timer;
    double m_worst = 0;
};

void report(const QString &what, double milliseconds)
{
    QTextStream(stdout) << QStringLiteral("%1  longest gap %2 ms (at most %3)%4")
                               .arg(what, -44)
                               .arg(milliseconds, 7, 'f', 1)
                               .arg(kLimitMs, 0, 'f', 0)
                               .arg(milliseconds <= kLimitMs ? QString()
                                                             : QStringLiteral("  MISSED"))
                        << Qt::endl;
}

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
    report(QStringLiteral("opening, file inspected before"),
           watch.worstDuring([&] { opened = viewer.openFile(path, {}); }));
    if (!opened) {
        return 1;
    }
    report(QStringLiteral("scrolling the thumbnail panel"), scrollThrough(watch, *panelList));
    report(QStringLiteral("switching to the grid"),
           watch.worstDuring([&] { viewer.setViewMode(PdfViewMode::PageManageView); }));
    report(QStringLiteral("scrolling the grid"), scrollThrough(watch, *gridList));
    QTextStream(stdout) << QStringLiteral("memory after both scrolls: %1 MiB").arg(peakMemoryMiB())
                        << Qt::endl;
    report(QStringLiteral("selecting all"), watch.worstDuring([&] { model->selectAll(); }));

    QList<PdfPageId> doomed;
    for (int row = 0; row < kPages && doomed.size() < kDeleted; row += 2) {
        doomed.append(model->pageAt(row)->id);
    }
    report(QStringLiteral("deleting 5000 pages, every other"),
           watch.worstDuring([&] { history->deletePages(doomed); }));
    report(QStringLiteral("undo"), watch.worstDuring([&] { history->undoStack()->undo(); }));
    report(QStringLiteral("redo"), watch.worstDuring([&] { history->undoStack()->redo(); }));
    report(QStringLiteral("undo again"), watch.worstDuring([&] { history->undoStack()->undo(); }));
    report(QStringLiteral("rotating all"),
           watch.worstDuring([&] { history->rotatePages(model->selectedPageIds().values(), 90); }));
    report(QStringLiteral("back to the document"),
           watch.worstDuring([&] { viewer.setViewMode(PdfViewMode::DocumentView); }));
    QTextStream(stdout) << QStringLiteral("memory at the end: %1 MiB").arg(peakMemoryMiB())
                        << Qt::endl;
    return 0;
}
