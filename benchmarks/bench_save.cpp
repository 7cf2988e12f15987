// Saving against the qpdf command in the same series: a thousand pages, reordered, from three
// files.
//
//     bench_save                     every figure
//     bench_save --work OUT A B C    saves once and prints the milliseconds that it took
//
// The program that saves is running already and has shown a page; the peer is a command.

#include "benchmarks/peer_series.h"
#include "benchmarks/sample_files.h"
#include "pdfcore/pdf_editor_backend.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>
#include <QTextStream>

namespace {

constexpr int kRuns = 7;
constexpr int kPagesOfFile = 400;
constexpr int kPages = 1000;

struct Pick
{
    int file;
    int page;
};

/// Page i of the output: the files in turn, each from its end.
Pick pickOf(int i)
{
    return {i % 3, kPagesOfFile - 1 - i / 3};
}

int saveOnce(const QString &target, const QStringList &files)
{
    QList<PdfSourcePage> pages;
    for (int i = 0; i < kPages; ++i) {
        const Pick pick = pickOf(i);
        PdfSourcePage page;
        page.filePath = files.at(pick.file);
        page.pageIndex = pick.page;
        pages.append(page);
    }
    PdfEditorBackend::renderPage(pages.constFirst(), {1700, 2200}, nullptr, nullptr);
    QString message;
    QElapsedTimer timer;
    timer.start();
    if (!PdfEditorBackend::saveDocument(pages, target, nullptr, &message)) {
        QTextStream(stderr) << message << Qt::endl;
        return 1;
    }
    QTextStream(stdout) << static_cast<double>(timer.nsecsElapsed()) / 1e6 << Qt::endl;
    return 0;
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == QLatin1String("--work"))
        return saveOnce(arguments.value(2), arguments.mid(3));

    const QTemporaryDir folder;
    QStringList files;
    for (const QChar name : QStringLiteral("abc")) {
        files.append(folder.filePath(QString(name) + QStringLiteral(".pdf")));
        if (!SampleFiles::writeText(files.constLast(), kPagesOfFile))
            return 1;
    }
    QStringList peer{QStringLiteral("--empty"), QStringLiteral("--object-streams=generate"),
                     QStringLiteral("--pages")};
    for (int i = 0; i < kPages; ++i) {
        const Pick pick = pickOf(i);
        peer << files.at(pick.file) << QString::number(pick.page + 1);
    }
    peer << QStringLiteral("--") << folder.filePath(QStringLiteral("peer.pdf"));
    const TimedCommand peerCommand{QStringLiteral("qpdf"), peer};
    QList<double> ours;
    QList<double> peers;
    QList<double> ratios;
    for (int run = 0; run < kRuns; ++run) {
        QProcess process;
        process.start(
            QCoreApplication::applicationFilePath(),
            QStringList{QStringLiteral("--work"), folder.filePath(QStringLiteral("ours.pdf"))} +
                files);
        process.waitForFinished();
        ours.append(process.readAllStandardOutput().trimmed().toDouble());
        const PairedSeries series = runPaired(peerCommand, peerCommand, 1);
        if (!series.problem.isEmpty() || process.exitCode() != 0)
            return 1;
        peers.append(series.medianA);
        ratios.append(ours.constLast() / peers.constLast());
    }
    printRatio(QStringLiteral("1000 pages of three files / qpdf --pages"),
               {median(ours), median(peers), median(ratios), {}}, 1.0);
    return 0;
}
