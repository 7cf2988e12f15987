// Rendering at 150 dpi through PdfEditorBackend::renderPages against `mutool draw` without output:
// one thread against the peer, and two threads against one.
//
//     bench_render FOLDER     every figure, over the real files below FOLDER that are named here
//     bench_render --work FILE THREADS     renders all pages of FILE once (what is timed)

#include "benchmarks/peer_series.h"
#include "benchmarks/sample_files.h"
#include "pdfcore/pdf_editor_backend.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTextStream>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <thread>
#include <vector>

namespace {

constexpr int kRuns = 7;
constexpr double kScale = 150.0 / 72;
constexpr double kPeerLimit = 1.05;
constexpr double kThreadsLimit = 0.70;

/// Real files of different making: text, vector drawings, pictures, forms.
const QStringList kRealFiles = {
    QStringLiteral("py-pdf/004-pdflatex-4-pages/pdflatex-4-pages.pdf"),
    QStringLiteral("py-pdf/009-pdflatex-geotopo/GeoTopo-komprimiert.pdf"),
    QStringLiteral("py-pdf/010-pdflatex-forms/pdflatex-forms.pdf"),
    QStringLiteral("py-pdf/011-google-doc-document/google-doc-document.pdf"),
    QStringLiteral("py-pdf/014-outlines/mistitled_outlines_example.pdf"),
    QStringLiteral("py-pdf/026-latex-multicolumn/multicolumn.pdf"),
    QStringLiteral("py-pdf/018-base64-image/base64image.pdf"),
    QStringLiteral("ocrmypdf/tests/resources/multipage.pdf"),
    QStringLiteral("ocrmypdf/tests/resources/francais.pdf"),
    QStringLiteral("ocrmypdf/tests/resources/linn.pdf"),
    QStringLiteral("ocrmypdf/tests/resources/graph.pdf"),
    QStringLiteral("ocrmypdf/tests/resources/cardinal.pdf"),
    QStringLiteral("ocrmypdf/tests/resources/toc.pdf"),
};

int renderAll(const QString &path, int threadCount)
{
    PdfDocumentInfo info;
    PdfBackendError error = PdfBackendError::None;
    if (!PdfEditorBackend::inspectDocument(path, {}, &info, &error, nullptr))
        return 1;
    std::atomic<qsizetype> next{0};
    std::atomic<bool> failed{false};
    const auto work = [&] {
        for (qsizetype i = next++; i < info.pageSizes.size(); i = next++) {
            PdfSourcePage page;
            page.filePath = path;
            page.pageIndex = static_cast<qint32>(i);
            const QSizeF points = info.pageSizes.at(i);
            const QSize pixels(static_cast<int>(std::ceil(points.width() * kScale)),
                               static_cast<int>(std::ceil(points.height() * kScale)));
            QStringList errors;
            if (PdfEditorBackend::renderPages({page}, {pixels}, &errors).constFirst().isNull())
                failed = true;
        }
    };
    std::vector<std::thread> threads;
    for (int i = 1; i < threadCount; ++i)
        threads.emplace_back(work);
    work();
    for (std::thread &thread : threads)
        thread.join();
    return failed ? 1 : 0;
}

TimedCommand ours(const QString &file, int threads)
{
    return {QCoreApplication::applicationFilePath(),
            {QStringLiteral("--work"), file, QString::number(threads)}};
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == QLatin1String("--work"))
        return renderAll(arguments.value(2), arguments.value(3).toInt());

    const QTemporaryDir folder;
    const QString generated = folder.filePath(QStringLiteral("text-1000.pdf"));
    if (!SampleFiles::writeText(generated, 1000))
        return 1;
    QStringList files{generated};
    for (const QString &name : kRealFiles) {
        const QString path = arguments.value(1) + QLatin1Char('/') + name;
        if (QFileInfo::exists(path))
            files.append(path);
    }

    QTextStream(stdout) << "One thread against mutool draw -r 150" << Qt::endl;
    QList<double> peerRatios;
    double oursTotal = 0;
    double peerTotal = 0;
    for (const QString &file : files) {
        const TimedCommand peer{
            QStringLiteral("mutool"),
            {QStringLiteral("draw"), QStringLiteral("-r"), QStringLiteral("150"), file}};
        const PairedSeries series = runPaired(ours(file, 1), peer, kRuns);
        printRatio(QFileInfo(file).fileName(), series, kPeerLimit);
        if (series.problem.isEmpty()) {
            peerRatios.append(series.medianRatio);
            oursTotal += series.medianA;
            peerTotal += series.medianB;
        }
    }
    if (!peerRatios.isEmpty()) {
        printRatio(QStringLiteral("median of %1 files").arg(peerRatios.size()),
                   {0, 0, median(peerRatios), {}}, kPeerLimit);
        printRatio(QStringLiteral("all files together"),
                   {oursTotal, peerTotal, oursTotal / peerTotal, {}}, kPeerLimit);
    }

    QTextStream(stdout) << "Two threads against one" << Qt::endl;
    double two = 0;
    double one = 0;
    for (const QString &file : files) {
        const PairedSeries series = runPaired(ours(file, 2), ours(file, 1), kRuns);
        printRatio(QFileInfo(file).fileName(), series, kThreadsLimit);
        two += series.medianA;
        one += series.medianB;
    }
    printRatio(QStringLiteral("all files together"), {two, one, two / one, {}}, kThreadsLimit);
    return 0;
}
