// SPDX-License-Identifier: AGPL-3.0-or-later
// Memory of a viewer while a 1,000-page scan is scrolled from end to end.
//
//     bench_scroll [FILE]     scrolls FILE, or a scan made for the purpose

#include "benchmarks/peer_series.h"
#include "benchmarks/sample_files.h"
#include "pdf/core/pdf_render_manager.h"
#include "pdf/viewer/pdf_viewer_widget.h"
#include "pdf/viewer/reading/pdf_document_view.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTextStream>

namespace {

constexpr int kPages = 1'000;
constexpr double kLimitMiB = 600;
/// How long a step waits for a new page; pages ahead are often there already.
constexpr qint64 kStepMilliseconds = 60;

} // namespace

int main(int argc, char *argv[])
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    const QApplication application(argc, argv);
    QTextStream out(stdout);
    const QTemporaryDir folder;
    QString path = QCoreApplication::arguments().value(1);
    if (path.isEmpty()) {
        path = folder.filePath(QStringLiteral("scan.pdf"));
        if (!SampleFiles::writeScan(path, kPages)) {
            return 1;
        }
    }

    PdfViewerWidget viewer;
    viewer.resize(1160, 700);
    viewer.show();
    auto *manager = viewer.findChild<PdfRenderManager *>();
    auto *view = viewer.findChild<PdfDocumentView *>();
    int rendered = 0;
    QObject::connect(manager, &PdfRenderManager::pageRendered, &viewer, [&] { ++rendered; });
    if (!viewer.openFile(path, {})) {
        return 1;
    }
    out << QStringLiteral("opened: %1 MiB").arg(peakMemoryMiB(), 0, 'f', 0) << Qt::endl;

    QElapsedTimer whole;
    whole.start();
    QScrollBar *bar = view->verticalScrollBar();
    while (bar->value() < bar->maximum()) {
        const int before = rendered;
        bar->setValue(bar->value() + bar->pageStep());
        QElapsedTimer step;
        step.start();
        while (rendered == before && step.elapsed() < kStepMilliseconds) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
        }
    }
    const double peak = peakMemoryMiB();
    out << QStringLiteral("scrolled to page %1, %2 pages rendered in %3 ms")
               .arg(view->currentPage() + 1)
               .arg(rendered)
               .arg(whole.elapsed())
        << Qt::endl;
    out << QStringLiteral("highest memory use: %1 MiB (at most %2)%3")
               .arg(peak, 0, 'f', 0)
               .arg(kLimitMiB)
               .arg(peak <= kLimitMiB ? QString() : QStringLiteral("  MISSED"))
        << Qt::endl;
    return 0;
}
