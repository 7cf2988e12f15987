// SPDX-License-Identifier: AGPL-3.0-or-later
// Pictures of pages and documents of pictures against pdftoppm and img2pdf in the same series.
//
//     bench_pictures [FILE...]              every figure; pictures of the pages of these files too
//     bench_pictures --pages FOLDER FILE    does it once and prints the milliseconds that it took
//     bench_pictures --document OUT FOLDER
//
// What they write is read back and flushed to the disk, which the peers leave out.

#include "benchmarks/peer_series.h"
#include "benchmarks/sample_files.h"
#include "pdfcore/pdf_picture_export.h"
#include "pdfcore/pdf_picture_import.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QTextStream>

namespace {

constexpr int kPhotographs = 500;

QStringList picturesIn(const QString &folder)
{
    QStringList paths;
    const QFileInfoList files = QDir(folder).entryInfoList(QDir::Files, QDir::Name);
    for (const QFileInfo &file : files) {
        paths.append(file.filePath());
    }
    return paths;
}

PdfOperationOutcome work(const QString &what, const QString &target, const QString &source)
{
    if (what == QLatin1String("--pages")) {
        PdfPictureTarget pictures;
        pictures.folder = target;
        pictures.baseName = QStringLiteral("page");
        return PdfPictureExport::exportPages(source, pictures, {});
    }
    return PdfPictureImport::toDocument(picturesIn(source), {}, PdfPlacement::replacing(target),
                                        {});
}

int workOnce(const QString &what, const QString &target, const QString &source)
{
    QElapsedTimer timer;
    timer.start();
    const PdfOperationOutcome outcome = work(what, target, source);
    if (outcome.isError()) {
        QTextStream(stderr) << outcome.message << Qt::endl;
        return 1;
    }
    QTextStream(stdout) << static_cast<double>(timer.nsecsElapsed()) / 1e6 << Qt::endl;
    return 0;
}

bool comparePages(const QTemporaryDir &folder, const QString &name, const QString &file)
{
    const QString own = folder.filePath(QStringLiteral("own"));
    const QString peer = folder.filePath(QStringLiteral("peer"));
    QDir().mkpath(own);
    QDir().mkpath(peer);
    return printRunRatio(name + QStringLiteral(" as PNG / pdftoppm -png -r 200"),
                         {QStringLiteral("--pages"), own, file}, QStringLiteral("pdftoppm"),
                         {{QStringLiteral("-png"), QStringLiteral("-r"), QStringLiteral("200"),
                           file, peer + QStringLiteral("/page")}},
                         {own, peer}, 1.0);
}

bool compareDocument(const QTemporaryDir &folder)
{
    const QString photographs = folder.filePath(QStringLiteral("photographs"));
    const QString own = folder.filePath(QStringLiteral("own.pdf"));
    const QString peer = folder.filePath(QStringLiteral("peer.pdf"));
    if (!QDir().mkpath(photographs) || !SampleFiles::writePhotographs(photographs, kPhotographs) ||
        !printRunRatio(QStringLiteral("%1 photographs / img2pdf").arg(kPhotographs),
                       {QStringLiteral("--document"), own, photographs}, QStringLiteral("img2pdf"),
                       {picturesIn(photographs) + QStringList{QStringLiteral("-o"), peer}}, {},
                       0.8)) {
        return false;
    }
    qint64 bytes = 0;
    for (const QString &path : picturesIn(photographs)) {
        bytes += QFileInfo(path).size();
    }
    QTextStream(stdout) << QStringLiteral("their size: %1 bytes, ours / img2pdf's = %2\n")
                               .arg(bytes)
                               .arg(static_cast<double>(QFileInfo(own).size()) /
                                        static_cast<double>(QFileInfo(peer).size()),
                                    0, 'f', 4);
    return true;
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments().mid(1);
    if (arguments.size() == 3 && arguments.constFirst().startsWith(QLatin1String("--"))) {
        return workOnce(arguments.at(0), arguments.at(1), arguments.at(2));
    }
    const QTemporaryDir folder;
    const QString text = folder.filePath(QStringLiteral("text.pdf"));
    const QString scan = folder.filePath(QStringLiteral("scan.pdf"));
    bool done = SampleFiles::writeText(text, 4) && SampleFiles::writeScan(scan, 3) &&
                comparePages(folder, QStringLiteral("4 pages of text"), text) &&
                comparePages(folder, QStringLiteral("3 scans"), scan) && compareDocument(folder);
    for (const QString &file : arguments) {
        done = comparePages(folder, QFileInfo(file).fileName(), file) && done;
    }
    return done ? 0 : 1;
}
