// SPDX-License-Identifier: AGPL-3.0-or-later
// How long the interface thread is kept from its event loop while a document of two thousand pages
// is read and edited and ten tasks run beside it, and how long the tasks take to stop.
//
//     bench_tasks
//
// The limits are 50 ms between two passes of the event loop and two seconds for stopping.

#include "benchmarks/loop_watch.h"
#include "benchmarks/sample_files.h"
#include "pdf/core/pdf_document_model.h"
#include "pdf/core/pdf_undo_manager.h"
#include "pdf/viewer/pdf_viewer_widget.h"
#include "pdf/viewer/reading/pdf_document_view.h"
#include "pdfcore/render_threads.h"
#include "res/resources.h"
#include "taskcenter/task_center.h"

#include <QApplication>
#include <QDir>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QUndoStack>

#include <algorithm>
#include <iterator>

namespace {

constexpr int kPages = 2000;
constexpr int kScannedPages = 60;
constexpr int kTasks = 10;
constexpr int kFewestSteps = 200;

TaskRequest requestFor(int i, const QTemporaryDir &folder)
{
    constexpr TaskType kTypes[] = {TaskType::PdfToImages, TaskType::Compress, TaskType::Merge,
                                   TaskType::Encrypt, TaskType::PdfToImages};
    const TaskType type = kTypes[i % std::size(kTypes)];
    const QString source = folder.filePath(QStringLiteral("scan.pdf"));
    TaskRequest request;
    request.type = static_cast<qint32>(type);
    request.inputFile = source;
    request.inputFiles = {source, folder.filePath(QStringLiteral("text.pdf"))};
    request.outputPath = folder.filePath(QStringLiteral("out%1").arg(i));
    QDir().mkpath(request.outputPath);
    if (type == TaskType::Merge || type == TaskType::Compress) {
        request.outputPath += QStringLiteral("/result.pdf");
    }
    request.options = {{QStringLiteral("password"), QStringLiteral("secret")},
                       {QStringLiteral("saveOption"), 1},
                       {QStringLiteral("compressLevel"), 1},
                       {QStringLiteral("format"), 3}};
    return request;
}

/// Scrolls through the document and edits it until all tasks are over; the longest gap.
double workBeside(PdfViewerWidget &viewer, TaskCenter &center, const QTemporaryDir &folder)
{
    auto *model = viewer.findChild<PdfDocumentModel *>();
    auto *history = viewer.findChild<PdfUndoManager *>();
    QScrollBar *bar = viewer.findChild<PdfDocumentView *>()->verticalScrollBar();
    int over = 0;
    QObject::connect(&center, &TaskCenter::taskStatus, &viewer,
                     [&over](const QString & /*id*/, int status) {
                         over += status >= static_cast<int>(TaskStatus::Completed) ? 1 : 0;
                     });
    for (int i = 0; i < kTasks; ++i) {
        center.submitTask(requestFor(i, folder));
    }
    LoopWatch watch;
    double worst = 0;
    for (int step = 0; over < kTasks || step < kFewestSteps; ++step) {
        const auto work = [&] {
            bar->setValue(bar->value() + 90);
            if (step % 20 == 10) {
                history->rotatePages({model->pageAt(step)->id}, 90);
            } else if (step % 20 == 19) {
                history->deletePages({model->pageAt(step)->id});
            } else if (step % 40 == 39) {
                history->undoStack()->undo();
            }
        };
        worst = std::max(worst, watch.worstDuring(work, 50));
    }
    return worst;
}

/// Stops tasks that run and wait; how long that takes in milliseconds.
double timeToStop(const QTemporaryDir &folder)
{
    TaskCenter center(pdfcore::renderThreadLimit());
    for (int i = 0; i < 2 * kTasks; ++i) {
        center.submitTask(requestFor(i, folder));
    }
    LoopWatch().worstDuring([] {}, 700);
    QElapsedTimer timer;
    timer.start();
    center.shutdown();
    return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

} // namespace

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    initResources();
    const QTemporaryDir folder;
    const QString text = folder.filePath(QStringLiteral("text.pdf"));
    if (!SampleFiles::writeText(text, kPages) ||
        !SampleFiles::writeScan(folder.filePath(QStringLiteral("scan.pdf")), kScannedPages)) {
        return 1;
    }
    PdfViewerWidget viewer;
    viewer.resize(1160, 740);
    viewer.show();
    if (!viewer.openFile(text, {})) {
        return 1;
    }
    LoopWatch().worstDuring([] {}, 1000);
    {
        TaskCenter center(pdfcore::renderThreadLimit());
        reportGap(QStringLiteral("reading and editing beside ten tasks"),
                  workBeside(viewer, center, folder));
    }
    const double stop = timeToStop(folder);
    QTextStream(stdout)
        << QStringLiteral("stopping twenty tasks: %1 ms (at most 2000)").arg(stop, 0, 'f', 0)
        << Qt::endl;
    return 0;
}
