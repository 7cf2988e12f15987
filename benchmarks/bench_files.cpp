// SPDX-License-Identifier: AGPL-3.0-or-later
// Operations on whole files against the qpdf command in the same series.
//
//     bench_files                          every figure
//     bench_files --join OUT FILE...       does it once and prints the milliseconds that it took
//     bench_files --protect OUT FILE
//     bench_files --unprotect OUT FILE
//
// What they write is checked and flushed to the disk, which the peer leaves out.

#include "benchmarks/peer_series.h"
#include "benchmarks/sample_files.h"
#include "pdfcore/pdf_file_operations.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>
#include <QTextStream>

namespace {

const QString kPeer = QStringLiteral("qpdf");
const QString kPassword = QStringLiteral("secret");

PdfOperationOutcome work(const QString &what, const QString &target, const QStringList &files)
{
    const PdfPlacement placement = PdfPlacement::replacing(target);
    if (what == QLatin1String("--join")) {
        return PdfFileOperations::join(files, placement, {});
    }
    if (what == QLatin1String("--protect")) {
        return PdfFileOperations::protect(files.constFirst(), kPassword, placement, {});
    }
    return PdfFileOperations::unprotect(files.constFirst(), kPassword, placement, {});
}

int workOnce(const QString &what, const QString &target, const QStringList &files)
{
    QElapsedTimer timer;
    timer.start();
    const PdfOperationOutcome outcome = work(what, target, files);
    if (outcome.isError()) {
        QTextStream(stderr) << outcome.message << Qt::endl;
        return 1;
    }
    QTextStream(stdout) << static_cast<double>(timer.nsecsElapsed()) / 1e6 << Qt::endl;
    return 0;
}

bool compareJoin(const QTemporaryDir &folder, int fileCount, int pagesOfEach)
{
    QStringList files;
    for (int i = 0; i < fileCount; ++i) {
        files.append(folder.filePath(QStringLiteral("in%1.pdf").arg(i)));
        if (!SampleFiles::writeText(files.constLast(), pagesOfEach)) {
            return false;
        }
    }
    const QStringList peer =
        QStringList{QStringLiteral("--empty"), QStringLiteral("--pages")} + files +
        QStringList{QStringLiteral("--"), folder.filePath(QStringLiteral("p.pdf"))};
    return printRunRatio(
        QStringLiteral("%1 files of %2 pages joined / qpdf --pages")
            .arg(fileCount)
            .arg(pagesOfEach),
        QStringList{QStringLiteral("--join"), folder.filePath(QStringLiteral("o.pdf"))} + files,
        kPeer, {peer}, {}, 1.2);
}

bool compareProtection(const QTemporaryDir &folder, const QString &what, const QString &file)
{
    const QString locked = folder.filePath(QStringLiteral("locked.pdf"));
    const QStringList encrypt{QStringLiteral("--encrypt"), kPassword, QStringLiteral("owner"),
                              QStringLiteral("256"), QStringLiteral("--")};
    const QString own = folder.filePath(QStringLiteral("o.pdf"));
    const QString peer = folder.filePath(QStringLiteral("p.pdf"));
    return QProcess::execute(kPeer, encrypt + QStringList{file, locked}) == 0 &&
           printRunRatio(what + QStringLiteral(" encrypted / qpdf --encrypt"),
                         {QStringLiteral("--protect"), own, file}, kPeer,
                         {encrypt + QStringList{file, peer}}, {}, 1.1) &&
           printRunRatio(what + QStringLiteral(" decrypted / qpdf --decrypt"),
                         {QStringLiteral("--unprotect"), own, locked}, kPeer,
                         {{QStringLiteral("--password=") + kPassword, QStringLiteral("--decrypt"),
                           locked, peer}},
                         {}, 1.1);
}

bool compareProtections(const QTemporaryDir &folder)
{
    const QString text = folder.filePath(QStringLiteral("text.pdf"));
    const QString scan = folder.filePath(QStringLiteral("scan.pdf"));
    return SampleFiles::writeText(text, 10'000) && SampleFiles::writeScan(scan, 200) &&
           compareProtection(folder, QStringLiteral("10000 pages"), text) &&
           compareProtection(folder, QStringLiteral("200 scans"), scan);
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() > 3) {
        return workOnce(arguments.at(1), arguments.at(2), arguments.mid(3));
    }
    const QTemporaryDir folder;
    return compareJoin(folder, 200, 20) && compareJoin(folder, 2, 5000) &&
                   compareProtections(folder)
               ? 0
               : 1;
}
