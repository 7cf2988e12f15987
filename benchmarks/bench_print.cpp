// SPDX-License-Identifier: AGPL-3.0-or-later
// Printing a page on large sheets at the resolution of a printer, into a PDF file, against
// `mutool draw` of the same page at the same number of pixels, and the memory that it takes.
//
//     bench_print [FILE...]   every figure, for the first page of a text, of a scan and of the
//     files bench_print --work FILE SHEET       prints the first page of FILE once (what is timed)
//     and
//                                         tells the highest memory use in MiB
//
// The peer renders the page and writes nothing. Printing compresses it besides.

#include "benchmarks/peer_series.h"
#include "benchmarks/sample_files.h"
#include "pdf/core/pdf_document_model.h"
#include "pdf/viewer/commands/page_printer.h"

#include <QApplication>
#include <QFileInfo>
#include <QPageSize>
#include <QPrinter>
#include <QProcess>
#include <QTemporaryDir>
#include <QTextStream>

#include <array>

namespace {

constexpr int kRuns = 3;
constexpr double kMemoryLimitMiB = 300;
constexpr double kTimeLimit = 3;
constexpr int kTimeout = 600'000;

struct Sheet
{
    const char *name;
    QPageSize::PageSizeId size;
    int resolution;
};

constexpr std::array kSheets{
    Sheet{"A4 at 1200 dpi", QPageSize::A4, 1200},
    Sheet{"A2 at 1200 dpi", QPageSize::A2, 1200},
    Sheet{"A1 at 1200 dpi", QPageSize::A1, 1200},
    Sheet{"A0 at 600 dpi", QPageSize::A0, 600},
};

int printOnce(const QString &path, const Sheet &sheet)
{
    const QTemporaryDir folder;
    PdfDocumentModel document;
    if (!document.loadDocument(path, {}, nullptr, nullptr)) {
        return 1;
    }
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(folder.filePath(QStringLiteral("printed.pdf")));
    printer.setResolution(sheet.resolution);
    printer.setPageSize(QPageSize(sheet.size));
    printer.setPageMargins({});
    const bool printed =
        PagePrinter().print(document.pages(), {0, 1}, printer) == PagePrinter::Outcome::Printed;
    QTextStream(stdout) << peakMemoryMiB() << Qt::endl;
    return printed ? 0 : 1;
}

TimedCommand ours(const QString &path, std::size_t sheet)
{
    return {QCoreApplication::applicationFilePath(),
            {QStringLiteral("--work"), path, QString::number(sheet)}};
}

/// The peer with a picture of as many pixels.
TimedCommand peer(const QString &path, QSizeF pageSize, const Sheet &sheet)
{
    const QSizeF pixels = QPageSize(sheet.size).sizePixels(sheet.resolution);
    const double dpi =
        72 * std::min(pixels.width() / pageSize.width(), pixels.height() / pageSize.height());
    return {QStringLiteral("mutool"),
            {QStringLiteral("draw"), QStringLiteral("-r"), QString::number(dpi, 'f', 1), path,
             QStringLiteral("1")}};
}

/// The highest memory use of a run in MiB, or a negative value.
double memoryOf(const TimedCommand &command)
{
    QProcess process;
    process.start(command.program, command.arguments);
    if (!process.waitForFinished(kTimeout) || process.exitCode() != 0) {
        return -1;
    }
    return process.readAllStandardOutput().trimmed().toDouble();
}

void measure(const QString &path)
{
    QTextStream out(stdout);
    PdfDocumentInfo info;
    if (!PdfEditorBackend::inspectDocument(path, {}, &info, nullptr, nullptr)) {
        return;
    }
    const QString name = QFileInfo(path).fileName();
    for (std::size_t i = 0; i < kSheets.size(); ++i) {
        const Sheet &sheet = kSheets.at(i);
        const QString what = name + QStringLiteral(", ") + QLatin1String(sheet.name);
        const double memory = memoryOf(ours(path, i));
        out << QStringLiteral("%1  %2 MiB (at most %3)%4")
                   .arg(what, -44)
                   .arg(memory, 0, 'f', 0)
                   .arg(kMemoryLimitMiB)
                   .arg(memory >= 0 && memory <= kMemoryLimitMiB ? QString()
                                                                 : QStringLiteral("  MISSED"))
            << Qt::endl;
        printRatio(what,
                   runPaired(ours(path, i), peer(path, info.pageSizes.constFirst(), sheet), kRuns),
                   kTimeLimit);
    }
}

} // namespace

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == QLatin1String("--work")) {
        return printOnce(arguments.value(2), kSheets.at(arguments.value(3).toUInt()));
    }
    const QTemporaryDir folder;
    const QString text = folder.filePath(QStringLiteral("text.pdf"));
    const QString scan = folder.filePath(QStringLiteral("scan.pdf"));
    if (!SampleFiles::writeText(text, 1) || !SampleFiles::writeScan(scan, 1)) {
        return 1;
    }
    for (const QString &path : QStringList{text, scan} + arguments.mid(1)) {
        measure(path);
    }
    return 0;
}
