// Opening long documents against peers in the same series.
//
//     bench_open                  every figure
//     bench_open --inspect FILE   inspects FILE once (what is timed)
//     bench_open --first FILE     opens FILE in a viewer until its first page arrives; prints the
//                                 milliseconds from openFile() to the first pageRendered()

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

int inspectOnce(const QString &path)
{
    PdfDocumentInfo info;
    return PdfEditorBackend::inspectDocument(path, {}, &info, nullptr, nullptr) ? 0 : 1;
}

int openOnce(const QString &path)
{
    PdfViewerWidget viewer;
    viewer.resize(1160, 700);
    viewer.show();
    QCoreApplication::processEvents();
    auto *manager = viewer.findChild<PdfRenderManager *>();
    QEventLoop loop;
    double milliseconds = 0;
    QElapsedTimer timer;
    QObject::connect(manager, &PdfRenderManager::pageRendered, &loop, [&] {
        if (milliseconds == 0)
            milliseconds = static_cast<double>(timer.nsecsElapsed()) / 1e6;
        loop.quit();
    });
    timer.start();
    if (!viewer.openFile(path, {}))
        return 1;
    loop.exec();
    QTextStream(stdout) << milliseconds << Qt::endl;
    return 0;
}

/// Milliseconds that a run of --first reported.
double firstPage(const QString &path)
{
    QProcess process;
    process.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--first"), path});
    process.waitForFinished();
    return process.readAllStandardOutput().trimmed().toDouble();
}

void compareFirstPage(const QString &path, int pages, double limit)
{
    const TimedCommand peer{QStringLiteral("mutool"),
                            {QStringLiteral("draw"), path, QStringLiteral("1")}};
    QList<double> ours;
    QList<double> peers;
    QList<double> ratios;
    firstPage(path);
    for (int run = 0; run < kRuns; ++run) {
        ours.append(firstPage(path));
        peers.append(runPaired(peer, peer, 1).medianA);
        ratios.append(ours.constLast() / peers.constLast());
    }
    printRatio(QStringLiteral("open to first page, %1 pages, / mutool draw 1").arg(pages),
               {median(ours), median(peers), median(ratios), {}}, limit);
}

} // namespace

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == QLatin1String("--inspect"))
        return inspectOnce(arguments.value(2));
    if (arguments.value(1) == QLatin1String("--first"))
        return openOnce(arguments.value(2));

    const QTemporaryDir folder;
    const QString many = folder.filePath(QStringLiteral("text-10000.pdf"));
    const QString some = folder.filePath(QStringLiteral("text-1000.pdf"));
    if (!SampleFiles::writeText(many, kManyPages) || !SampleFiles::writeText(some, kSomePages))
        return 1;

    printRatio(
        QStringLiteral("inspect, 10000 pages, / pdfinfo"),
        runPaired({QCoreApplication::applicationFilePath(), {QStringLiteral("--inspect"), many}},
                  {QStringLiteral("pdfinfo"),
                   {QStringLiteral("-f"), QStringLiteral("1"), QStringLiteral("-l"),
                    QStringLiteral("99999"), many}},
                  kRuns),
        1.0);
    compareFirstPage(some, kSomePages, 1.5);
    compareFirstPage(many, kManyPages, 3.0);
    return 0;
}
