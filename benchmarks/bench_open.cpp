// SPDX-License-Identifier: AGPL-3.0-or-later
// Opening long documents against peers in the same series.
//
//     bench_open                  every figure
//     bench_open --inspect FILE   inspects FILE once (what is timed)
//     bench_open --first FILE WIDTH   opens FILE in a viewer of that width until its first page
//                                 arrives; prints the milliseconds from openFile() to the first
//                                 pageRendered()
//
// The peer draws its page at the size of the viewer's page image: once at its usual 72 dpi, which
// takes a narrow viewer, and once for a viewer of ordinary width.

#include "benchmarks/peer_series.h"
#include "benchmarks/sample_files.h"
#include "pdf/core/pdf_render_manager.h"
#include "pdf/viewer/pdf_viewer_widget.h"
#include "pdfcore/pdf_editor_backend.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QProcess>
#include <QTemporaryDir>
#include <QTextStream>

namespace {

constexpr int kRuns = 9;
constexpr int kManyPages = 10'000;
constexpr int kSomePages = 1'000;
/// Side margins of 64 and a scroll bar of 10 beside the page, 1.5 pixels of the image a pixel.
constexpr int kBesidePage = 64 + 10;
constexpr double kImageScale = 1.5;
constexpr double kPageWidth = 595;
/// Page image of 595 pixels, as at 72 dpi.
constexpr int kPeerWidth = kBesidePage + 397;
constexpr int kOrdinaryWidth = 1160;
constexpr int kHeight = 700;

int inspectOnce(const QString &path)
{
    PdfDocumentInfo info;
    return PdfEditorBackend::inspectDocument(path, {}, &info, nullptr, nullptr) ? 0 : 1;
}

/// Milliseconds from openFile() until the first page image arrives, or a negative value.
double timeToFirstPage(PdfViewerWidget &viewer, const QString &path)
{
    auto *manager = viewer.findChild<PdfRenderManager *>();
    QEventLoop loop;
    double milliseconds = -1;
    QElapsedTimer timer;
    QObject::connect(manager, &PdfRenderManager::pageRendered, &loop, [&] {
        if (milliseconds < 0) {
            milliseconds = static_cast<double>(timer.nsecsElapsed()) / 1e6;
        }
        loop.quit();
    });
    timer.start();
    if (viewer.openFile(path, {})) {
        loop.exec();
    }
    return milliseconds;
}

int openOnce(const QString &path, int width)
{
    const QTemporaryDir folder;
    const QString small = folder.filePath(QStringLiteral("small.pdf"));
    if (!SampleFiles::writeText(small, 1)) {
        return 1;
    }
    // A program that is running has its fonts and styles loaded.
    PdfViewerWidget running;
    running.resize(width, kHeight);
    running.show();
    timeToFirstPage(running, small);
    QCoreApplication::processEvents();

    PdfViewerWidget viewer;
    viewer.resize(width, kHeight);
    viewer.show();
    QCoreApplication::processEvents();
    const double milliseconds = timeToFirstPage(viewer, path);
    QTextStream(stdout) << milliseconds << Qt::endl;
    return milliseconds < 0 ? 1 : 0;
}

/// Milliseconds that a run of --first reported.
double firstPage(const QString &path, int width)
{
    QProcess process;
    process.start(QCoreApplication::applicationFilePath(),
                  {QStringLiteral("--first"), path, QString::number(width)});
    process.waitForFinished();
    return process.readAllStandardOutput().trimmed().toDouble();
}

void compareFirstPage(const QString &path, int pages, int width, double limit)
{
    const int dpi = qRound(72 * (width - kBesidePage) * kImageScale / kPageWidth);
    const TimedCommand peer{QStringLiteral("mutool"),
                            {QStringLiteral("draw"), QStringLiteral("-r"), QString::number(dpi),
                             path, QStringLiteral("1")}};
    QList<double> ours;
    QList<double> peers;
    QList<double> ratios;
    firstPage(path, width);
    for (int run = 0; run < kRuns; ++run) {
        ours.append(firstPage(path, width));
        peers.append(runPaired(peer, peer, 1).medianA);
        ratios.append(ours.constLast() / peers.constLast());
    }
    printRatio(QStringLiteral("first of %1 pages, %2 dpi, / mutool draw 1").arg(pages).arg(dpi),
               {median(ours), median(peers), median(ratios), {}}, limit);
}

} // namespace

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == QLatin1String("--inspect")) {
        return inspectOnce(arguments.value(2));
    }
    if (arguments.value(1) == QLatin1String("--first")) {
        return openOnce(arguments.value(2), arguments.value(3).toInt());
    }

    const QTemporaryDir folder;
    const QString many = folder.filePath(QStringLiteral("text-10000.pdf"));
    const QString some = folder.filePath(QStringLiteral("text-1000.pdf"));
    if (!SampleFiles::writeText(many, kManyPages) || !SampleFiles::writeText(some, kSomePages)) {
        return 1;
    }

    printRatio(
        QStringLiteral("inspect, 10000 pages, / pdfinfo"),
        runPaired({QCoreApplication::applicationFilePath(), {QStringLiteral("--inspect"), many}},
                  {QStringLiteral("pdfinfo"),
                   {QStringLiteral("-f"), QStringLiteral("1"), QStringLiteral("-l"),
                    QStringLiteral("99999"), many}},
                  kRuns),
        1.0);
    for (const int width : {kPeerWidth, kOrdinaryWidth}) {
        compareFirstPage(some, kSomePages, width, 1.5);
        compareFirstPage(many, kManyPages, width, 3.0);
    }
    return 0;
}
