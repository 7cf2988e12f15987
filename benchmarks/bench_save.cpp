// SPDX-License-Identifier: AGPL-3.0-or-later
// Saving against the qpdf command in the same series.
//
//     bench_save                          every figure
//     bench_save --split FILE...          sizes of the parts when every page becomes a file
//     bench_save --every-page FILE        makes every page of a file one of its own
//     bench_save --work ORDER OUT FILES   saves once and prints the milliseconds that it took
//     bench_save --parts FOLDER FILE      makes every page a file; prints the milliseconds
//
// The program that saves is running already and has shown a page; the peer is a command.

#include "benchmarks/peer_series.h"
#include "benchmarks/sample_files.h"
#include "pdfcore/pdf_editor_backend.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QTextStream>

#include <algorithm>

namespace {

constexpr int kPagesOfMixedFile = 400;
constexpr int kMixedPages = 1000;
constexpr int kManyPages = 10'000;
constexpr int kManyFiles = 10;

/// In which order the pages of the files are put together.
const QString kMixed = QStringLiteral("mixed");      ///< In turn, each file from its end.
const QString kReversed = QStringLiteral("reverse"); ///< All pages from the last to the first.
const QString kJoined = QStringLiteral("joined");    ///< One file after the other.
const QString kOnePage = QStringLiteral("one");      ///< The page in the middle alone.

/// Page i of the mixed output: the files in turn, each from its end.
PdfSourcePage mixedPage(const QStringList &files, int i)
{
    PdfSourcePage page;
    page.filePath = files.at(i % 3);
    page.pageIndex = kPagesOfMixedFile - 1 - i / 3;
    return page;
}

/// All pages of the files, as the program has them after inspecting.
QList<PdfSourcePage> pagesOfFiles(const QStringList &files)
{
    QList<PdfSourcePage> pages;
    for (const QString &file : files) {
        PdfDocumentInfo info;
        if (!PdfEditorBackend::inspectDocument(file, {}, &info, nullptr, nullptr)) {
            return {};
        }
        for (qint32 i = 0; i < info.pageSizes.size(); ++i) {
            PdfSourcePage page;
            page.filePath = file;
            page.pageIndex = i;
            page.revision = info.revision;
            pages.append(page);
        }
    }
    return pages;
}

QList<PdfSourcePage> pagesInOrder(const QString &order, const QStringList &files)
{
    QList<PdfSourcePage> pages;
    if (order == kMixed) {
        for (int i = 0; i < kMixedPages; ++i) {
            pages.append(mixedPage(files, i));
        }
        return pages;
    }
    pages = pagesOfFiles(files);
    if (order == kReversed) {
        std::reverse(pages.begin(), pages.end());
    } else if (order == kOnePage) {
        pages = pages.mid(pages.size() / 2, 1);
    }
    return pages;
}

int saveOnce(const QString &order, const QString &target, const QStringList &files)
{
    const QList<PdfSourcePage> pages = pagesInOrder(order, files);
    if (pages.isEmpty()) {
        return 1;
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

int saveParts(const QString &folder, const QString &file)
{
    QList<PdfOutputFile> parts;
    for (const PdfSourcePage &page : pagesOfFiles({file})) {
        parts.append({{page}, folder + QStringLiteral("/%1.pdf").arg(parts.size() + 1)});
    }
    QElapsedTimer timer;
    timer.start();
    const QList<PdfSaveOutcome> outcomes = PdfEditorBackend::saveDocuments(parts);
    const double ms = static_cast<double>(timer.nsecsElapsed()) / 1e6;
    for (const PdfSaveOutcome &outcome : outcomes) {
        if (outcome.error != PdfBackendError::None) {
            QTextStream(stderr) << outcome.message << Qt::endl;
            return 1;
        }
    }
    QTextStream(stdout) << ms << Qt::endl;
    return outcomes.isEmpty() ? 1 : 0;
}

/// Prints the time of one save as a ratio to that of the commands.
bool compare(const QString &what, const QString &order, const QStringList &files,
             const QList<QStringList> &peer, const QTemporaryDir &folder, double limit)
{
    return printRunRatio(
        what,
        QStringList{QStringLiteral("--work"), order, folder.filePath(QStringLiteral("o.pdf"))} +
            files,
        QStringLiteral("qpdf"), peer, {}, limit);
}

bool compareMixed(const QTemporaryDir &folder)
{
    QStringList files;
    for (const QChar name : QStringLiteral("abc")) {
        files.append(folder.filePath(QString(name) + QStringLiteral(".pdf")));
        if (!SampleFiles::writeText(files.constLast(), kPagesOfMixedFile)) {
            return false;
        }
    }
    QStringList peer{QStringLiteral("--empty"), QStringLiteral("--object-streams=generate"),
                     QStringLiteral("--pages")};
    for (int i = 0; i < kMixedPages; ++i) {
        const PdfSourcePage page = mixedPage(files, i);
        peer << page.filePath << QString::number(page.pageIndex + 1);
    }
    peer << QStringLiteral("--") << folder.filePath(QStringLiteral("peer.pdf"));
    return compare(QStringLiteral("1000 pages of three files / qpdf --pages"), kMixed, files,
                   {peer}, folder, 1.0);
}

bool compareReversed(const QTemporaryDir &folder)
{
    const QString file = folder.filePath(QStringLiteral("many.pdf"));
    return SampleFiles::writeText(file, kManyPages) &&
           compare(QStringLiteral("10000 pages reversed / qpdf IN OUT"), kReversed, {file},
                   {{file, folder.filePath(QStringLiteral("peer.pdf"))}}, folder, 1.1);
}

bool compareJoined(const QTemporaryDir &folder)
{
    QStringList files;
    QList<QStringList> peer;
    for (int i = 0; i < kManyFiles; ++i) {
        files.append(folder.filePath(QStringLiteral("join%1.pdf").arg(i)));
        if (!SampleFiles::writeText(files.constLast(), kManyPages / kManyFiles)) {
            return false;
        }
        peer.append({files.constLast(), folder.filePath(QStringLiteral("peer.pdf"))});
    }
    return compare(QStringLiteral("10000 pages of ten files / qpdf IN OUT of each"), kJoined, files,
                   peer, folder, 2.0);
}

bool compareOnePage(const QTemporaryDir &folder)
{
    const QString file = folder.filePath(QStringLiteral("many.pdf"));
    return compare(QStringLiteral("one page of 10000 / qpdf --pages"), kOnePage, {file},
                   {{QStringLiteral("--empty"), QStringLiteral("--pages"), file,
                     QString::number(kManyPages / 2 + 1), QStringLiteral("--"),
                     folder.filePath(QStringLiteral("peer.pdf"))}},
                   folder, 5.0);
}

/// Every page of a file of its own.
bool compareSplit(const QTemporaryDir &folder, const QString &what, const QString &file)
{
    const QStringList folders{folder.filePath(QStringLiteral("ours")),
                              folder.filePath(QStringLiteral("peers"))};
    for (const QString &path : folders) {
        QDir().mkpath(path);
    }
    return printRunRatio(
        what + QStringLiteral(" split into every page / qpdf --split-pages"),
        {QStringLiteral("--parts"), folders.first(), file}, QStringLiteral("qpdf"),
        {{QStringLiteral("--split-pages"), file, folders.last() + QStringLiteral("/p.pdf")}},
        folders, 5.0);
}

bool compareSplits(const QTemporaryDir &folder)
{
    for (const int pages : {300, 1000, 5000}) {
        const QString file = folder.filePath(QStringLiteral("split.pdf"));
        if (!SampleFiles::writeText(file, pages) ||
            !compareSplit(folder, QStringLiteral("%1 pages").arg(pages), file)) {
            return false;
        }
    }
    return true;
}

qint64 sizeOfFiles(const QString &folder)
{
    qint64 bytes = 0;
    for (const QFileInfo &file : QDir(folder).entryInfoList(QDir::Files)) {
        bytes += file.size();
    }
    return bytes;
}

/// Prints the size of all one-page parts of each file against those that the peer writes.
int compareParts(const QStringList &files)
{
    QTextStream out(stdout);
    for (const QString &file : files) {
        const QTemporaryDir ours;
        const QTemporaryDir peers;
        bool saved = true;
        int number = 0;
        for (const PdfSourcePage &page : pagesOfFiles({file})) {
            saved = saved && PdfEditorBackend::saveDocument(
                                 {page}, ours.filePath(QStringLiteral("%1.pdf").arg(++number)),
                                 nullptr, nullptr);
        }
        QProcess::execute(QStringLiteral("qpdf"), {QStringLiteral("--split-pages"), file,
                                                   peers.filePath(QStringLiteral("p.pdf"))});
        const auto part = static_cast<double>(sizeOfFiles(ours.path()));
        const auto peer = static_cast<double>(sizeOfFiles(peers.path()));
        out << QFileInfo(file).fileName() << ": " << number << " parts, "
            << (saved ? part / peer : -1) << " of the size of qpdf's" << Qt::endl;
    }
    return 0;
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == QLatin1String("--work")) {
        return saveOnce(arguments.value(2), arguments.value(3), arguments.mid(4));
    }
    if (arguments.value(1) == QLatin1String("--parts")) {
        return saveParts(arguments.value(2), arguments.value(3));
    }
    if (arguments.value(1) == QLatin1String("--split")) {
        return compareParts(arguments.mid(2));
    }

    const QTemporaryDir folder;
    if (arguments.value(1) == QLatin1String("--every-page")) {
        const QString file = arguments.value(2);
        return compareSplit(folder, QFileInfo(file).fileName(), file) ? 0 : 1;
    }
    return compareMixed(folder) && compareReversed(folder) && compareOnePage(folder) &&
                   compareJoined(folder) && compareSplits(folder)
               ? 0
               : 1;
}
