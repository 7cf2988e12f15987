// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/pdf_file_operations.h"
#include "tests/pdfcore/engine_calls.h"
#include "tests/pdfcore/fidelity/fidelity_fixture.h"
#include "tests/support/pdf_fixture.h"

#include <QDir>
#include <QFile>

#include <qpdf/QPDF.hh>
#include <qpdf/QPDFAcroFormDocumentHelper.hh>
#include <qpdf/QPDFEmbeddedFileDocumentHelper.hh>
#include <qpdf/QPDFOutlineDocumentHelper.hh>
#include <qpdf/QPDFPageDocumentHelper.hh>

using namespace EngineCalls;
using namespace Qt::StringLiterals;

namespace {

PdfPlacement newAt(const QString &path)
{
    return PdfPlacement::firstFree(
        [path](int attempt) { return attempt == 0 ? path : path + QString::number(attempt); });
}

PdfOperationOutcome join(const QStringList &sources, const PdfPlacement &placement)
{
    return PdfFileOperations::join(sources, placement, {});
}

/// The outline, an entry a line, deeper ones indented, with the number of the page it leads to.
QStringList outlineOf(QPDF &document)
{
    std::map<QPDFObjGen, int> numbers;
    int count = 0;
    for (QPDFPageObjectHelper &page : QPDFPageDocumentHelper(document).getAllPages()) {
        numbers[page.getObjectHandle().getObjGen()] = ++count;
    }
    QStringList lines;
    const std::function<void(std::vector<QPDFOutlineObjectHelper>, int)> add =
        [&](std::vector<QPDFOutlineObjectHelper> entries, int depth) {
            for (QPDFOutlineObjectHelper &entry : entries) {
                const auto page = numbers.find(entry.getDestPage().getObjGen());
                lines.append(QString(depth * 2, u' ') + QString::fromStdString(entry.getTitle()) +
                             u' ' + QString::number(page == numbers.end() ? 0 : page->second));
                add(entry.getKids(), depth + 1);
            }
        };
    add(QPDFOutlineDocumentHelper(document).getTopLevelOutlines(), 0);
    return lines;
}

std::shared_ptr<QPDF> opened(const QString &path)
{
    auto document = std::make_shared<QPDF>();
    document->setSuppressWarnings(true);
    document->processFile(path.toUtf8().constData());
    return document;
}

/// Two pages, the second of which a bookmark leads to.
QByteArray bookmarked(const QByteArray &title)
{
    return PdfFixture::fromObjects(
        {"<< /Type /Catalog /Pages 2 0 R /Outlines 5 0 R >>",
         "<< /Type /Pages /Kids [3 0 R 4 0 R] /Count 2 >>",
         "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 90 90] >>",
         "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 90 90] >>",
         "<< /Type /Outlines /First 6 0 R /Last 6 0 R /Count 1 >>",
         "<< /Title (" + title + ") /Parent 5 0 R /Dest [4 0 R /Fit] >>"});
}

} // namespace

class TestFileJoining : public QObject
{
    Q_OBJECT

private slots:
    void pagesComeInTheOrderOfTheFiles();
    void outlineHasAnEntryForEachFile();
    void entriesOfFilesStandBelowTheirs();
    void fileThatComesTwiceHasTwoEntries();
    void whatEachFileCarriesStays();
    void titleIsThatOfTheFirstFile();
    void resultIsNamed();
    void existingFileStays();
    void replacedFileIsReplaced();
    void folderIsNotMade();
    void folderMayBeAFile();
    void failingFileIsNamed_data();
    void failingFileIsNamed();
    void noFilesAreAFailure();
    void filesWithoutPagesAreAFailureAlone();
    void cancelledJoinLeavesNothing();
    void cancelledInTheMiddleLeavesNothing();
    void manyFilesAreJoined();
};

void TestFileJoining::pagesComeInTheOrderOfTheFiles()
{
    Folder folder;
    const QString first = folder.add(u"b.pdf"_s, PdfFixture::pagesByNumber(3));
    const QString second = folder.add(u"a.pdf"_s, PdfFixture::pagesByNumber(2));
    const QString target = folder.path(u"out.pdf"_s);
    const PdfOperationOutcome outcome = join({first, second}, newAt(target));
    QVERIFY2(!outcome.isError(), qPrintable(outcome.message));
    QCOMPARE(numbersIn(target), (QList<int>{0, 1, 2, 0, 1}));
}

void TestFileJoining::outlineHasAnEntryForEachFile()
{
    Folder folder;
    const QString first = folder.add(u"One. Two.pdf"_s, PdfFixture::pagesByNumber(3));
    const QString second = folder.add(u"文件.PDF"_s, PdfFixture::pagesByNumber(2));
    const QString target = folder.path(u"out.pdf"_s);
    QVERIFY(!join({first, second}, newAt(target)).isError());
    QCOMPARE(outlineOf(*opened(target)), (QStringList{u"One. Two 1"_s, u"文件 4"_s}));
}

void TestFileJoining::entriesOfFilesStandBelowTheirs()
{
    Folder folder;
    const QString first = folder.add(u"first.pdf"_s, bookmarked("End of one"));
    const QString plain = folder.add(u"plain.pdf"_s, PdfFixture::pagesByNumber(1));
    const QString last = folder.add(u"last.pdf"_s, bookmarked("End of all"));
    const QString target = folder.path(u"out.pdf"_s);
    QVERIFY(!join({first, plain, last}, newAt(target)).isError());
    QCOMPARE(outlineOf(*opened(target)),
             (QStringList{u"first 1"_s, u"  End of one 2"_s, u"plain 3"_s, u"last 4"_s,
                          u"  End of all 5"_s}));
}

void TestFileJoining::fileThatComesTwiceHasTwoEntries()
{
    Folder folder;
    const QString file = folder.add(u"file.pdf"_s, bookmarked("End"));
    const QString other = folder.add(u"other.pdf"_s, PdfFixture::pagesByNumber(1));
    const QString target = folder.path(u"out.pdf"_s);
    QVERIFY(!join({file, other, file}, newAt(target)).isError());
    QCOMPARE(outlineOf(*opened(target)),
             (QStringList{u"file 1"_s, u"  End 2"_s, u"other 3"_s, u"file 4"_s}));
}

/// How it is joined is for the tests of saves to tell; these files are joined like theirs.
void TestFileJoining::whatEachFileCarriesStays()
{
    Folder folder;
    QStringList sources;
    QList<PdfSourcePage> pages;
    for (const QByteArray &name : {QByteArray("ONE"), QByteArray("TWO")}) {
        sources.append(folder.add(QString::fromLatin1(name) + u".pdf"_s,
                                  FidelityFixture::everything(name).file()));
        for (int i = 0; i < FidelityFixture::kPages; ++i) {
            pages.append(filePage(sources.constLast(), i));
        }
    }
    const QString target = folder.path(u"out.pdf"_s);
    const QString saved = folder.path(u"saved.pdf"_s);
    QVERIFY(!join(sources, newAt(target)).isError());
    QVERIFY(save(pages, saved).ok);

    const auto joined = opened(target);
    const auto expected = opened(saved);
    QCOMPARE(QPDFAcroFormDocumentHelper(*joined).getFormFields().size(),
             QPDFAcroFormDocumentHelper(*expected).getFormFields().size());
    QCOMPARE(QPDFEmbeddedFileDocumentHelper(*joined).getEmbeddedFiles().size(),
             QPDFEmbeddedFileDocumentHelper(*expected).getEmbeddedFiles().size());
    // All but the entries of the files, which are two objects.
    QCOMPARE(joined->getAllObjects().size(), expected->getAllObjects().size() + 2);
    QCOMPARE(outlineOf(*joined).size(), outlineOf(*expected).size() + 2);
    for (const char *key : {"/Names", "/PageLabels", "/StructTreeRoot", "/OCProperties"}) {
        QVERIFY2(joined->getRoot().hasKey(key), key);
    }
}

void TestFileJoining::titleIsThatOfTheFirstFile()
{
    Folder folder;
    const auto titled = [](const QByteArray &title) {
        return PdfFixture::fromObjects(
            {"<< /Type /Catalog /Pages 2 0 R >>", "<< /Type /Pages /Kids [3 0 R] /Count 1 >>",
             "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 9 9] >>", "<< /Title (" + title + ") >>"},
            "/Info 4 0 R");
    };
    const QStringList sources{folder.add(u"1.pdf"_s, titled("First")),
                              folder.add(u"2.pdf"_s, titled("Second"))};
    const QString target = folder.path(u"out.pdf"_s);
    QVERIFY(!join(sources, newAt(target)).isError());
    QCOMPARE(opened(target)->getTrailer().getKey("/Info").getKey("/Title").getUTF8Value(),
             std::string("First"));
}

void TestFileJoining::resultIsNamed()
{
    Folder folder;
    const QString source = folder.add(u"in.pdf"_s, PdfFixture::pagesByNumber(1));
    const QString target = folder.path(u"out.pdf"_s);
    QCOMPARE(join({source}, newAt(target)).result, target);
}

void TestFileJoining::existingFileStays()
{
    Folder folder;
    const QString source = folder.add(u"in.pdf"_s, PdfFixture::pagesByNumber(2));
    const QString taken = folder.add(u"out.pdf"_s, "taken");
    QVERIFY(QDir().mkdir(taken + u'1'));
    QVERIFY(QFile::link(u"/nowhere/at/all"_s, taken + u'2'));
    const PdfOperationOutcome outcome = join({source, source}, newAt(taken));
    QCOMPARE(outcome.result, taken + u'3');
    QCOMPARE(numbersIn(outcome.result), (QList<int>{0, 1, 0, 1}));
    QCOMPARE(contentOf(taken), "taken");
    QCOMPARE(folder.leftovers(), QStringList());
}

void TestFileJoining::replacedFileIsReplaced()
{
    Folder folder;
    const QString first = folder.add(u"in.pdf"_s, PdfFixture::pagesByNumber(2));
    const QString second = folder.add(u"more.pdf"_s, PdfFixture::pagesByNumber(1));
    const PdfOperationOutcome outcome = join({first, second}, PdfPlacement::replacing(first));
    QCOMPARE(outcome.result, first);
    QCOMPARE(numbersIn(first), (QList<int>{0, 1, 0}));
    QCOMPARE(folder.leftovers(), QStringList());
}

void TestFileJoining::folderIsNotMade()
{
    Folder folder;
    const QString source = folder.add(u"in.pdf"_s, PdfFixture::pagesByNumber(1));
    const PdfOperationOutcome outcome = join({source}, newAt(folder.path(u"missing/out.pdf"_s)));
    QCOMPARE(outcome.error, PdfOperationError::WriteFailed);
    QVERIFY(!QFile::exists(folder.path(u"missing"_s)));
}

void TestFileJoining::folderMayBeAFile()
{
    Folder folder;
    const QString source = folder.add(u"in.pdf"_s, PdfFixture::pagesByNumber(1));
    const PdfOperationOutcome outcome = join({source}, newAt(source + u"/out.pdf"_s));
    QCOMPARE(outcome.error, PdfOperationError::WriteFailed);
    QCOMPARE(numbersIn(source), QList<int>{0});
}

void TestFileJoining::failingFileIsNamed_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<PdfOperationError>("error");
    QTest::newRow("no document") << QByteArray("text") << PdfOperationError::InvalidDocument;
    QTest::newRow("empty") << QByteArray() << PdfOperationError::InvalidDocument;
    QTest::newRow("missing") << QByteArray("missing") << PdfOperationError::FileNotFound;
    QTest::newRow("protected") << PdfFixture::encrypted(PdfFixture::pagesByNumber(1),
                                                        {"user", "owner", 6})
                               << PdfOperationError::PasswordRequired;
}

void TestFileJoining::failingFileIsNamed()
{
    QFETCH(QByteArray, content);
    QFETCH(PdfOperationError, error);
    Folder folder;
    const QString good = folder.add(u"good.pdf"_s, PdfFixture::pagesByNumber(1));
    const QString bad =
        content == "missing" ? folder.path(u"bad.pdf"_s) : folder.add(u"bad.pdf"_s, content);
    const QString target = folder.path(u"out.pdf"_s);
    const PdfOperationOutcome outcome = join({good, bad, good}, newAt(target));
    QCOMPARE(outcome.error, error);
    QCOMPARE(outcome.file, bad);
    QVERIFY(!outcome.message.isEmpty());
    QVERIFY(outcome.result.isEmpty());
    QVERIFY(!QFile::exists(target));
    QCOMPARE(folder.leftovers(), QStringList());
}

void TestFileJoining::noFilesAreAFailure()
{
    const Folder folder;
    QCOMPARE(join({}, newAt(folder.path(u"out.pdf"_s))).error, PdfOperationError::InvalidDocument);
    QVERIFY(!QFile::exists(folder.path(u"out.pdf"_s)));
}

void TestFileJoining::filesWithoutPagesAreAFailureAlone()
{
    Folder folder;
    const QString empty = folder.add(
        u"empty.pdf"_s, PdfFixture::fromObjects({"<< /Type /Catalog /Pages 2 0 R >>",
                                                 "<< /Type /Pages /Kids [] /Count 0 >>"}));
    const QString target = folder.path(u"out.pdf"_s);
    const PdfOperationOutcome outcome = join({empty, empty}, newAt(target));
    QCOMPARE(outcome.error, PdfOperationError::InvalidDocument);
    QCOMPARE(outcome.file, empty);
    QVERIFY(!QFile::exists(target));
    const QString other = folder.add(u"other.pdf"_s, PdfFixture::pagesByNumber(2));
    QVERIFY(!join({empty, other}, newAt(target)).isError());
    QCOMPARE(numbersIn(target), (QList<int>{0, 1}));
    QCOMPARE(outlineOf(*opened(target)), (QStringList{u"empty 1"_s, u"other 1"_s}));
}

void TestFileJoining::cancelledJoinLeavesNothing()
{
    Folder folder;
    const QString source = folder.add(u"in.pdf"_s, PdfFixture::pagesByNumber(1));
    const QString target = folder.path(u"out.pdf"_s);
    const PdfCancelFlag cancel;
    cancel.set();
    const PdfOperationOutcome outcome =
        PdfFileOperations::join({source, source}, newAt(target), cancel);
    QCOMPARE(outcome.error, PdfOperationError::Cancelled);
    QVERIFY(!QFile::exists(target));
    QCOMPARE(folder.leftovers(), QStringList());
}

void TestFileJoining::cancelledInTheMiddleLeavesNothing()
{
    Folder folder;
    QStringList sources;
    for (int i = 0; i < 20; ++i) {
        sources.append(folder.add(u"in%1.pdf"_s.arg(i), PdfFixture::pagesByNumber(120)));
    }
    const QString target = folder.path(u"out.pdf"_s);
    const PdfCancelFlag cancel;
    // As soon as there is a file to write to.
    QThread *watcher = QThread::create([&] {
        while (!cancel.isSet()) {
            if (!folder.leftovers().isEmpty()) {
                cancel.set();
            }
        }
    });
    watcher->start();
    const PdfOperationOutcome outcome = PdfFileOperations::join(sources, newAt(target), cancel);
    watcher->wait();
    delete watcher;
    QCOMPARE(outcome.error, PdfOperationError::Cancelled);
    QVERIFY(!QFile::exists(target));
    QCOMPARE(folder.leftovers(), QStringList());
}

void TestFileJoining::manyFilesAreJoined()
{
    Folder folder;
    QStringList sources;
    for (int i = 0; i < 300; ++i) {
        sources.append(folder.add(u"in%1.pdf"_s.arg(i), PdfFixture::pagesByNumber(1)));
    }
    const QString target = folder.path(u"out.pdf"_s);
    const PdfOperationOutcome outcome = join(sources, newAt(target));
    QVERIFY2(!outcome.isError(), qPrintable(outcome.message));
    QCOMPARE(inspect(target).pageSizes.size(), 300);
}

QTEST_GUILESS_MAIN(TestFileJoining)
#include "tst_file_joining.moc"
