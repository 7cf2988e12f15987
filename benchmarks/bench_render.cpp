// SPDX-License-Identifier: AGPL-3.0-or-later
// Rendering at 150 dpi through PdfEditorBackend::renderPages against `mutool draw` without output:
// one thread against the peer, and two threads against one.
//
//     bench_render FOLDER     every figure, over the real files below FOLDER that are named here
//     bench_render --work THREADS FILE...     renders all pages of the files once (what is timed)

#include "benchmarks/peer_series.h"
#include "benchmarks/sample_files.h"
#include "pdfcore/pdf_editor_backend.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTextStream>

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

struct Job
{
    PdfSourcePage page;
    QSize pixels;
};

/// Every page of the files in order, with its size at 150 dpi; empty when a file cannot be read.
std::vector<Job> pagesOf(const QStringList &files)
{
    std::vector<Job> jobs;
    for (const QString &file : files) {
        PdfDocumentInfo info;
        PdfBackendError error = PdfBackendError::None;
        if (!PdfEditorBackend::inspectDocument(file, {}, &info, &error, nullptr)) {
            return {};
        }
        for (qsizetype i = 0; i < info.pageSizes.size(); ++i) {
            const QSizeF points = info.pageSizes.at(i);
            Job job;
            job.page.filePath = file;
            job.page.pageIndex = static_cast<qint32>(i);
            job.pixels = QSize(static_cast<int>(std::ceil(points.width() * kScale)),
                               static_cast<int>(std::ceil(points.height() * kScale)));
            jobs.push_back(job);
        }
    }
    return jobs;
}

int renderAll(const QStringList &files, int threadCount)
{
    const std::vector<Job> jobs = pagesOf(files);
    if (jobs.empty()) {
        return 1;
    }
    std::atomic<std::size_t> next{0};
    std::atomic<bool> failed{false};
    const auto work = [&] {
        for (std::size_t i = next++; i < jobs.size(); i = next++) {
            QStringList errors;
            if (PdfEditorBackend::renderPages({jobs[i].page}, {jobs[i].pixels}, &errors)
                    .constFirst()
                    .isNull()) {
                failed = true;
            }
        }
    };
    std::vector<std::thread> threads;
    for (int i = 1; i < threadCount; ++i) {
        threads.emplace_back(work);
    }
    work();
    for (std::thread &thread : threads) {
        thread.join();
    }
    return failed ? 1 : 0;
}

TimedCommand ours(const QStringList &files, int threads)
{
    return {QCoreApplication::applicationFilePath(),
            QStringList{QStringLiteral("--work"), QString::number(threads)} + files};
}

TimedCommand peer(const QStringList &files)
{
    return {QStringLiteral("mutool"),
            QStringList{QStringLiteral("draw"), QStringLiteral("-r"), QStringLiteral("150")} +
                files};
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == QLatin1String("--work")) {
        return renderAll(arguments.mid(3), arguments.value(2).toInt());
    }

    const QTemporaryDir folder;
    const QString generated = folder.filePath(QStringLiteral("text-1000.pdf"));
    if (!SampleFiles::writeText(generated, 1000)) {
        return 1;
    }
    QStringList files{generated};
    for (const QString &name : kRealFiles) {
        const QString path = arguments.value(1) + QLatin1Char('/') + name;
        if (QFileInfo::exists(path)) {
            files.append(path);
        }
    }

    QTextStream(stdout) << "One thread against mutool draw -r 150" << Qt::endl;
    printRatio(QStringLiteral("%1 files in one process").arg(files.size()),
               runPaired(ours(files, 1), peer(files), kRuns), kPeerLimit);
    QTextStream(stdout) << "Each file in a process of its own, start included" << Qt::endl;
    for (const QString &file : files) {
        printRatio(QFileInfo(file).fileName(), runPaired(ours({file}, 1), peer({file}), kRuns));
    }

    QTextStream(stdout) << "Two threads against one" << Qt::endl;
    printRatio(QStringLiteral("%1 files in one process").arg(files.size()),
               runPaired(ours(files, 2), ours(files, 1), kRuns), kThreadsLimit);
    return 0;
}
