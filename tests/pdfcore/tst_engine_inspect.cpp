// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdfcore/engine_calls.h"
#include "tests/support/pdf_fixture.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>

#include <thread>

using namespace EngineCalls;
using namespace Qt::StringLiterals;

namespace {

const QByteArray kCatalogue = "<< /Type /Catalog /Pages 2 0 R >>";
const QByteArray kPage = "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 100 200] >>";

/// A page as the kid of object 2, as wide as its number says.
QByteArray pageOfWidth(int width)
{
    return "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 " + QByteArray::number(width) + " 50] >>";
}

/// The width of a page of manyPages().
int widthAmongMany(int index)
{
    return index % 100 + 10;
}

/// A document of `count` pages, which are the objects from number 3 on.
QByteArray manyPages(int count, const QByteArray &rootEntries = {})
{
    QByteArray kids;
    QList<QByteArray> objects{kCatalogue, QByteArray()};
    for (int i = 0; i < count; ++i) {
        kids += QByteArray::number(i + 3) + " 0 R ";
        objects += pageOfWidth(widthAmongMany(i));
    }
    objects[1] = "<< /Type /Pages /Count " + QByteArray::number(count) + ' ' + rootEntries +
                 " /Kids [" + kids + "] >>";
    return PdfFixture::fromObjects(objects);
}

/// A chain of page tree nodes, one inside the other, with one page at the end.
QByteArray nestedTree(int levels)
{
    QList<QByteArray> objects{kCatalogue};
    for (int i = 0; i < levels; ++i) {
        const QByteArray parent =
            i == 0 ? QByteArray() : " /Parent " + QByteArray::number(i + 1) + " 0 R";
        objects += "<< /Type /Pages /Count 1 /Kids [" + QByteArray::number(i + 3) + " 0 R]" +
                   parent + " >>";
    }
    objects += "<< /Type /Page /MediaBox [0 0 100 200] /Parent " + QByteArray::number(levels + 1) +
               " 0 R >>";
    return PdfFixture::fromObjects(objects);
}

QList<double> widths(const QList<QSizeF> &sizes)
{
    QList<double> result;
    for (const QSizeF &size : sizes) {
        result.append(size.width());
    }
    return result;
}

} // namespace

/// What the engine says about files before anything is rendered or saved.
class TestEngineInspect : public QObject
{
    Q_OBJECT

private slots:
    void errorValuesAreStable();
    void missingFileIsNotFound();
    void folderIsNotFound();
    void emptyPathIsNotFound();
    void unreadableFileIsNotFound();
    void brokenFilesAreInvalidDocuments_data();
    void brokenFilesAreInvalidDocuments();
    void failureLeavesTheInfoAlone();
    void successClearsErrorAndMessage();
    void outputArgumentsMayBeNull();
    void unusualFileNamesOpen_data();
    void unusualFileNamesOpen();
    void truncatedFileShowsTheRemainingPages();
    void pagesInObjectStreamsThatTheTableLeavesOutAreFound();
    void leadingAndTrailingBytesDoNotMatter();
    void fileWithoutPagesHasNone();
    void pageTreesAreRead_data();
    void pageTreesAreRead();
    void pagesOfOddTreesAreTheOnesRenderedAndSaved_data();
    void pagesOfOddTreesAreTheOnesRenderedAndSaved();
    void pageSizes_data();
    void pageSizes();
    void tenThousandPagesAreCounted();
    void oddKidsAmongManyAreTreatedAsAmongFew();
    void pagesReadBeforeARepairAreReadAnew_data();
    void pagesReadBeforeARepairAreReadAnew();
    void manyPagesInObjectStreamsAreReadAlike();
};

void TestEngineInspect::errorValuesAreStable()
{
    QCOMPARE(qint32(PdfBackendError::None), 0);
    QCOMPARE(qint32(PdfBackendError::FileNotFound), 1);
    QCOMPARE(qint32(PdfBackendError::PasswordRequired), 2);
    QCOMPARE(qint32(PdfBackendError::InvalidPassword), 3);
    QCOMPARE(qint32(PdfBackendError::InvalidDocument), 4);
    QCOMPARE(qint32(PdfBackendError::RenderFailed), 5);
    QCOMPARE(qint32(PdfBackendError::WriteFailed), 6);
    QCOMPARE(PdfSourcePage().pageIndex, -1);
    QCOMPARE(PdfSourcePage().rotation, 0);
    QVERIFY(!PdfSourcePage().isBlank);
}

void TestEngineInspect::missingFileIsNotFound()
{
    const Folder folder;
    const Inspection found = inspect(folder.path(u"absent.pdf"_s));
    QVERIFY(!found.ok);
    QCOMPARE(found.error, PdfBackendError::FileNotFound);
    QVERIFY(!found.message.isEmpty());
    const Inspection inMissingFolder = inspect(folder.path(u"absent/absent.pdf"_s));
    QCOMPARE(inMissingFolder.error, PdfBackendError::FileNotFound);
}

void TestEngineInspect::folderIsNotFound()
{
    const Folder folder;
    const Inspection found = inspect(folder.path());
    QVERIFY(!found.ok);
    QCOMPARE(found.error, PdfBackendError::FileNotFound);
    QVERIFY(!found.message.isEmpty());
}

void TestEngineInspect::emptyPathIsNotFound()
{
    const Inspection found = inspect({});
    QVERIFY(!found.ok);
    QCOMPARE(found.error, PdfBackendError::FileNotFound);
}

void TestEngineInspect::unreadableFileIsNotFound()
{
    Folder folder;
    const QString path = folder.add(u"secret.pdf"_s, PdfFixture::pagesByNumber(1));
    QVERIFY(QFile::setPermissions(path, {}));
    if (QFile(path).open(QIODevice::ReadOnly)) {
        QSKIP("This user may read every file.");
    }
    const Inspection found = inspect(path);
    QVERIFY(!found.ok);
    QCOMPARE(found.error, PdfBackendError::FileNotFound);
    QVERIFY(!found.message.isEmpty());
}

void TestEngineInspect::brokenFilesAreInvalidDocuments_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("empty file") << QByteArray();
    QTest::newRow("one byte") << QByteArray("%");
    QTest::newRow("text") << QByteArray("Dear reader,\n\nthis is a letter.\n").repeated(50);
    QTest::newRow("header only") << QByteArray("%PDF-1.7\n");
    QTest::newRow("zero bytes") << QByteArray(70'000, '\0');
    QTest::newRow("picture") << QByteArray("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16).repeated(9);
    QTest::newRow("catalogue without pages")
        << PdfFixture::fromObjects({QByteArray("<< /Type /Catalog >>")});
    QTest::newRow("pages entry of another kind")
        << PdfFixture::fromObjects({QByteArray("<< /Type /Catalog /Pages 42 >>")});
    QTest::newRow("cut inside the first object") << PdfFixture::pagesByNumber(1).left(60);
}

void TestEngineInspect::brokenFilesAreInvalidDocuments()
{
    QFETCH(const QByteArray, content);
    Folder folder;
    const QString path = folder.add(u"broken.pdf"_s, content);
    for (const QString &password : {QString(), u"secret"_s}) {
        const Inspection found = inspect(path, password);
        QVERIFY(!found.ok);
        QCOMPARE(found.error, PdfBackendError::InvalidDocument);
        QVERIFY(!found.message.trimmed().isEmpty());
        QVERIFY(found.pageSizes.isEmpty());
    }
    QCOMPARE(render(filePage(path)).error, PdfBackendError::InvalidDocument);
    QCOMPARE(save({filePage(path)}, folder.path(u"out.pdf"_s)).error,
             PdfBackendError::InvalidDocument);
}

void TestEngineInspect::failureLeavesTheInfoAlone()
{
    const Folder folder;
    PdfDocumentInfo info;
    info.pageSizes = {QSizeF(1, 2)};
    QVERIFY(!PdfEditorBackend::inspectDocument(folder.path(u"absent.pdf"_s), {}, &info, nullptr,
                                               nullptr));
    QCOMPARE(info.pageSizes, QList<QSizeF>{QSizeF(1, 2)});
}

void TestEngineInspect::successClearsErrorAndMessage()
{
    Folder folder;
    const QString path = folder.add(u"good.pdf"_s, PdfFixture::pagesByNumber(2));
    PdfDocumentInfo info;
    info.pageSizes = {QSizeF(1, 2)};
    PdfBackendError error = PdfBackendError::WriteFailed;
    QString message = u"from before"_s;
    QVERIFY(PdfEditorBackend::inspectDocument(path, {}, &info, &error, &message));
    QCOMPARE(error, PdfBackendError::None);
    QVERIFY(message.isEmpty());
    QCOMPARE(info.pageSizes, (QList<QSizeF>{QSizeF(200, 300), QSizeF(200, 300)}));
}

void TestEngineInspect::outputArgumentsMayBeNull()
{
    Folder folder;
    const QString path = folder.add(u"good.pdf"_s, PdfFixture::pagesByNumber(1));
    QVERIFY(PdfEditorBackend::inspectDocument(path, {}, nullptr, nullptr, nullptr));
    QVERIFY(!PdfEditorBackend::renderPage(filePage(path), {9, 9}, nullptr, nullptr).isNull());
    QCOMPARE(PdfEditorBackend::renderPages({filePage(path)}, {QSize(9, 9)}, nullptr).size(), 1);
    QVERIFY(PdfEditorBackend::saveDocument({filePage(path)}, folder.path(u"out.pdf"_s), nullptr,
                                           nullptr));
    QVERIFY(!PdfEditorBackend::inspectDocument({}, {}, nullptr, nullptr, nullptr));
    QVERIFY(PdfEditorBackend::renderPage(filePage(path, 7), {9, 9}, nullptr, nullptr).isNull());
    QVERIFY(!PdfEditorBackend::saveDocument({}, {}, nullptr, nullptr));
}

void TestEngineInspect::unusualFileNamesOpen_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("space") << u"two words.pdf"_s;
    QTest::newRow("quotes") << u"it's \"quoted\".pdf"_s;
    QTest::newRow("Chinese") << u"文件 合同.pdf"_s;
    QTest::newRow("emoji") << u"😀👩‍👩‍👧.pdf"_s;
    QTest::newRow("accent, decomposed") << u"Re\u0301sume\u0301.pdf"_s;
    QTest::newRow("percent and hash") << u"100% #1 ?.pdf"_s;
    QTest::newRow("no extension") << u"document"_s;
    QTest::newRow("255 bytes") << QString(251, u'n') + u".pdf"_s;
}

void TestEngineInspect::unusualFileNamesOpen()
{
    QFETCH(const QString, name);
    Folder folder;
    const QString path = folder.add(name, PdfFixture::pagesByNumber(2));
    if (path.isEmpty()) {
        QSKIP("This file system does not take the name.");
    }
    QCOMPARE(inspect(path).pageSizes.size(), 2);
    COMPARE_COLOUR(middle(render(filePage(path, 1)).image), PdfFixture::numberColour(1), 1);
    QVERIFY(save({filePage(path, 1)}, folder.path(u"out.pdf"_s)).ok);
}

void TestEngineInspect::truncatedFileShowsTheRemainingPages()
{
    QList<QByteArray> objects{kCatalogue, "<< /Type /Pages /Kids [3 0 R 4 0 R] /Count 2 >>",
                              pageOfWidth(11), pageOfWidth(12)};
    const QByteArray whole = PdfFixture::fromObjects(objects);
    Folder folder;
    const QString path = folder.add(u"cut.pdf"_s, whole.left(whole.indexOf("startxref")));
    const Inspection found = inspect(path);
    QVERIFY2(found.ok, qPrintable(found.message));
    QCOMPARE(widths(found.pageSizes), (QList<double>{11, 12}));
    QVERIFY(render(filePage(path, 1)).ok);
    QVERIFY(save({filePage(path, 1)}, folder.path(u"out.pdf"_s)).ok);
    QCOMPARE(widths(inspect(folder.path(u"out.pdf"_s)).pageSizes), QList<double>{12});
}

void TestEngineInspect::pagesInObjectStreamsThatTheTableLeavesOutAreFound()
{
    const QByteArray tree = "<< /Type /Pages /Kids [4 0 R] /Count 1 >> ";
    const QByteArray places = "3 0 4 " + QByteArray::number(tree.size()) + ' ';
    const QByteArray page = "<< /Type /Page /Parent 3 0 R /MediaBox [0 0 100 200] >>";
    const QByteArray stream = PdfFixture::streamBody(
        "/Type /ObjStm /N 2 /First " + QByteArray::number(places.size()), places + tree + page);
    // The table does not name the object behind the catalogue either, whose number is the highest.
    const QByteArray catalogue = "<< /Type /Catalog /Pages 3 0 R >>\nendobj\n5 0 obj\nnull";
    Folder folder;
    const QString path = folder.add(u"streams.pdf"_s, PdfFixture::fromObjects({catalogue, stream}));
    const Inspection found = inspect(path);
    QVERIFY2(found.ok, qPrintable(found.message));
    QCOMPARE(found.pageSizes, QList<QSizeF>{QSizeF(100, 200)});
    QVERIFY(render(filePage(path)).ok);
}

void TestEngineInspect::leadingAndTrailingBytesDoNotMatter()
{
    Folder folder;
    const QByteArray document = PdfFixture::pagesByNumber(3);
    const QString before = folder.add(u"before.pdf"_s, QByteArray(700, '\n') + document);
    const QString after = folder.add(u"after.pdf"_s, document + QByteArray(5000, '\0'));
    QCOMPARE(inspect(before).pageSizes.size(), 3);
    QCOMPARE(inspect(after).pageSizes.size(), 3);
    COMPARE_COLOUR(middle(render(filePage(before, 2)).image), PdfFixture::numberColour(2), 1);
    COMPARE_COLOUR(middle(render(filePage(after, 2)).image), PdfFixture::numberColour(2), 1);
}

void TestEngineInspect::fileWithoutPagesHasNone()
{
    Folder folder;
    const QString path =
        folder.add(u"none.pdf"_s,
                   PdfFixture::fromObjects({kCatalogue, "<< /Type /Pages /Kids [] /Count 0 >>"}));
    const Inspection found = inspect(path);
    QVERIFY2(found.ok, qPrintable(found.message));
    QVERIFY(found.pageSizes.isEmpty());
    QCOMPARE(render(filePage(path)).error, PdfBackendError::RenderFailed);
}

void TestEngineInspect::pageTreesAreRead_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QList<double>>("expected");
    const auto tree = [](const QByteArray &root, const QList<QByteArray> &more) {
        return PdfFixture::fromObjects(QList<QByteArray>{kCatalogue, root} + more);
    };
    const QList<QByteArray> two{pageOfWidth(11), pageOfWidth(12)};
    QTest::newRow("plain") << tree("<< /Type /Pages /Kids [3 0 R 4 0 R] /Count 2 >>", two)
                           << QList<double>{11, 12};
    QTest::newRow("loop to the root")
        << tree("<< /Type /Pages /Kids [3 0 R 2 0 R 4 0 R] /Count 3 >>", two)
        << QList<double>{11, 12};
    QTest::newRow("loop through a node")
        << tree("<< /Type /Pages /Kids [3 0 R 5 0 R 4 0 R] /Count 3 >>",
                two + QList<QByteArray>{"<< /Type /Pages /Kids [2 0 R 5 0 R] /Count 2 >>"})
        << QList<double>{11, 12};
    QTest::newRow("count too small")
        << tree("<< /Type /Pages /Kids [3 0 R 4 0 R] /Count 1 >>", two) << QList<double>{11, 12};
    QTest::newRow("count too large")
        << tree("<< /Type /Pages /Kids [3 0 R 4 0 R] /Count 2000000000 >>", two)
        << QList<double>{11, 12};
    QTest::newRow("count negative")
        << tree("<< /Type /Pages /Kids [3 0 R 4 0 R] /Count -2 >>", two) << QList<double>{11, 12};
    QTest::newRow("count missing")
        << tree("<< /Type /Pages /Kids [3 0 R 4 0 R] >>", two) << QList<double>{11, 12};
    QTest::newRow("nested 400 deep") << nestedTree(400) << QList<double>{100};
    QTest::newRow("direct pages") << tree("<< /Type /Pages /Count 3 /Kids [" + pageOfWidth(10) +
                                              " 3 0 R " + pageOfWidth(13) + "] >>",
                                          two)
                                  << QList<double>{10, 11, 13};
    QTest::newRow("direct node")
        << tree("<< /Type /Pages /Count 2 /Kids [<< /Type /Pages /Count 1 /Kids [3 0 R] >> 4 0 R] "
                ">>",
                two)
        << QList<double>{11, 12};
    QTest::newRow("null kids")
        << tree("<< /Type /Pages /Count 5 /Kids [null 3 0 R 99 0 R null 4 0 R] >>", two)
        << QList<double>{11, 12};
    QTest::newRow("kids of other kinds")
        << tree("<< /Type /Pages /Count 5 /Kids [7 (x) 3 0 R [ ] 4 0 R] >>", two)
        << QList<double>{11, 12};
    QTest::newRow("same page twice")
        << tree("<< /Type /Pages /Kids [3 0 R 4 0 R 3 0 R] /Count 3 >>", two)
        << QList<double>{11, 12, 11};
    QTest::newRow("empty node between")
        << tree("<< /Type /Pages /Kids [3 0 R 5 0 R 4 0 R] /Count 2 >>",
                two + QList<QByteArray>{"<< /Type /Pages /Kids [] /Count 0 >>"})
        << QList<double>{11, 12};
    QTest::newRow("node without kids between")
        << tree("<< /Type /Pages /Kids [3 0 R 5 0 R 4 0 R] /Count 2 >>",
                two + QList<QByteArray>{"<< /Type /Pages /Count 0 >>"})
        << QList<double>{11, 12};
    QTest::newRow("page without type")
        << tree("<< /Type /Pages /Kids [3 0 R 4 0 R] /Count 2 >>",
                {"<< /Parent 2 0 R /MediaBox [0 0 11 50] >>", pageOfWidth(12)})
        << QList<double>{11, 12};
    QTest::newRow("nodes without type")
        << tree("<< /Kids [5 0 R 4 0 R] /Count 2 >>",
                two + QList<QByteArray>{"<< /Kids [3 0 R] /Count 1 >>"})
        << QList<double>{11, 12};
}

void TestEngineInspect::pageTreesAreRead()
{
    QFETCH(const QByteArray, content);
    QFETCH(const QList<double>, expected);
    Folder folder;
    const Inspection found = inspect(folder.add(u"tree.pdf"_s, content));
    QVERIFY2(found.ok, qPrintable(found.message));
    QCOMPARE(widths(found.pageSizes), expected);
}

void TestEngineInspect::pagesOfOddTreesAreTheOnesRenderedAndSaved_data()
{
    pageTreesAreRead_data();
}

void TestEngineInspect::pagesOfOddTreesAreTheOnesRenderedAndSaved()
{
    QFETCH(const QByteArray, content);
    QFETCH(const QList<double>, expected);
    Folder folder;
    const QString path = folder.add(u"tree.pdf"_s, content);
    const QString target = folder.path(u"out.pdf"_s);
    for (int i = 0; i < expected.size(); ++i) {
        const Rendering rendered = render(filePage(path, i));
        QVERIFY2(rendered.ok, qPrintable(rendered.message));
        const Outcome saved = save({filePage(path, i)}, target);
        QVERIFY2(saved.ok, qPrintable(saved.message));
        QCOMPARE(widths(inspect(target).pageSizes), QList<double>{expected.at(i)});
    }
    QCOMPARE(render(filePage(path, int(expected.size()))).error, PdfBackendError::RenderFailed);
}

void TestEngineInspect::pageSizes_data()
{
    QTest::addColumn<QByteArray>("entries");
    QTest::addColumn<QByteArray>("inherited");
    QTest::addColumn<QSizeF>("expected");
    const QByteArray box = "/MediaBox [0 0 100 200] ";
    const auto own = [](const char *name, const QByteArray &entries, QSizeF expected) {
        QTest::newRow(name) << entries << QByteArray() << expected;
    };
    own("media box", box, {100, 200});
    own("media box away from the origin", "/MediaBox [-30 40 70 240]", {100, 200});
    own("media box reversed", "/MediaBox [100 200 0 0]", {100, 200});
    own("media box reversed in one direction", "/MediaBox [100 0 0 200]", {100, 200});
    own("media box of fractions", "/MediaBox [0 0 100.5 200.25]", {100.5, 200.25});
    own("crop box within", box + "/CropBox [10 20 60 120]", {50, 100});
    own("crop box reversed", box + "/CropBox [60 120 10 20]", {50, 100});
    own("crop box partly outside", box + "/CropBox [50 -100 500 100]", {50, 100});
    own("crop box larger", box + "/CropBox [-10 -10 110 210]", {100, 200});
    own("crop box outside", box + "/CropBox [300 300 400 400]", {100, 200});
    own("crop box empty", box + "/CropBox [0 0 0 0]", {100, 200});
    own("crop box of the wrong kind", box + "/CropBox 7", {100, 200});
    own("media box empty", "/MediaBox [0 0 0 0]", {612, 792});
    own("media box missing", "", {612, 792});
    own("media box too short", "/MediaBox [0 0]", {612, 792});
    own("user unit", box + "/UserUnit 2.5", {250, 500});
    own("user unit and rotation", box + "/UserUnit 2 /Rotate 90", {400, 200});
    own("user unit of zero", box + "/UserUnit 0", {100, 200});
    own("user unit negative", box + "/UserUnit -1", {100, 200});
    own("rotation 0", box + "/Rotate 0", {100, 200});
    own("rotation 90", box + "/Rotate 90", {200, 100});
    own("rotation 180", box + "/Rotate 180", {100, 200});
    own("rotation 270", box + "/Rotate 270", {200, 100});
    own("rotation -90", box + "/Rotate -90", {200, 100});
    own("rotation -180", box + "/Rotate -180", {100, 200});
    own("rotation 450", box + "/Rotate 450", {200, 100});
    own("rotation 720", box + "/Rotate 720", {100, 200});
    own("rotation 90.0", box + "/Rotate 90.0", {200, 100});
    own("rotation 30", box + "/Rotate 30", {100, 200});
    own("rotation 45", box + "/Rotate 45", {200, 100});
    own("rotation of the wrong kind", box + "/Rotate /Left", {100, 200});
    own("rotated crop box", box + "/CropBox [10 20 60 120] /Rotate 270", {100, 50});
    const auto inherits = [](const char *name, const QByteArray &entries,
                             const QByteArray &inherited, QSizeF expected) {
        QTest::newRow(name) << entries << inherited << expected;
    };
    inherits("inherited media box", "", box, {100, 200});
    inherits("inherited crop box", box, "/CropBox [10 20 60 120]", {50, 100});
    inherits("crop box outside an inherited media box", "/CropBox [300 300 400 400]", box,
             {100, 200});
    inherits("inherited rotation", box, "/Rotate 90", {200, 100});
    inherits("rotation overriding the inherited", box + "/Rotate 0", "/Rotate 90", {100, 200});
    inherits("rotation inherited by a page that does not know its parent", box + "/Parent null",
             "/Rotate 90", {200, 100});
    inherits("user unit is not inherited", box, "/UserUnit 3", {100, 200});
}

void TestEngineInspect::pageSizes()
{
    QFETCH(const QByteArray, entries);
    QFETCH(const QByteArray, inherited);
    QFETCH(const QSizeF, expected);
    const QByteArray parent = entries.contains("/Parent") ? "" : "/Parent 2 0 R ";
    Folder folder;
    const QString path =
        folder.add(u"size.pdf"_s,
                   PdfFixture::fromObjects(
                       {kCatalogue, "<< /Type /Pages /Kids [3 0 R] /Count 1 " + inherited + " >>",
                        "<< /Type /Page " + parent + entries + " >>"}));
    const auto equal = [](const QSizeF &a, const QSizeF &b) {
        return qAbs(a.width() - b.width()) < 0.01 && qAbs(a.height() - b.height()) < 0.01;
    };
    const QList<QSizeF> sizes = inspect(path).pageSizes;
    QCOMPARE(sizes.size(), 1);
    QVERIFY2(equal(sizes.first(), expected),
             qPrintable(u"%1 x %2"_s.arg(sizes.first().width()).arg(sizes.first().height())));

    // A copy of the page looks as large as the page, turned or not.
    for (const int rotation : {0, 90}) {
        const QString copy = folder.path(u"copy.pdf"_s);
        const Outcome saved = save({filePage(path, 0, rotation)}, copy);
        QVERIFY2(saved.ok, qPrintable(saved.message));
        const QList<QSizeF> copied = inspect(copy).pageSizes;
        QCOMPARE(copied.size(), 1);
        const QSizeF turned = rotation == 90 ? expected.transposed() : expected;
        QVERIFY2(equal(copied.first(), turned), qPrintable(u"rotation %1: %2 x %3"_s.arg(rotation)
                                                               .arg(copied.first().width())
                                                               .arg(copied.first().height())));
    }
}

void TestEngineInspect::tenThousandPagesAreCounted()
{
    constexpr int kPages = 10'000;
    Folder folder;
    const QString path = folder.add(u"many.pdf"_s, manyPages(kPages));
    const Inspection found = inspect(path);
    QCOMPARE(found.pageSizes.size(), kPages);
    QCOMPARE(found.pageSizes.at(9'998).width(), 108);
    QVERIFY(render(filePage(path, kPages - 1)).ok);
}

void TestEngineInspect::oddKidsAmongManyAreTreatedAsAmongFew()
{
    // A node, a page that stands directly in the list, one without its own way up, a repeated page,
    // a missing one and something else, at the start, in the middle and at the end of a long list.
    constexpr int kPages = 3000;
    const QByteArray odd = "3 0 R << /Type /Page /Parent 2 0 R /MediaBox [0 0 7 7] >> 5 0 R 6 0 R "
                           "6 0 R 999999 0 R 7 0 R ";
    const QList<double> oddWidths{5, 7, 8, 6, 6};
    QList<QByteArray> objects{kCatalogue,
                              QByteArray(),
                              "<< /Type /Pages /Parent 2 0 R /Count 1 /Kids [4 0 R] >>",
                              "<< /Type /Page /Parent 3 0 R /MediaBox [0 0 5 5] >>",
                              "<< /Type /Page >>",
                              "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 6 6] >>",
                              "(no page)"};
    QByteArray kids = odd;
    for (int i = 0; i < kPages; ++i) {
        if (i == kPages / 2) {
            kids += odd;
        }
        kids += QByteArray::number(objects.size() + 1) + " 0 R ";
        objects += pageOfWidth(widthAmongMany(i));
    }
    kids += odd;
    objects[1] = "<< /Type /Pages /Count 3000 /MediaBox [0 0 8 8] /Kids [" + kids + "] >>";

    // The node counts once, where it stands first.
    QList<double> expected = oddWidths;
    for (int i = 0; i < kPages; ++i) {
        if (i == kPages / 2) {
            expected += oddWidths.mid(1);
        }
        expected += widthAmongMany(i);
    }
    expected += oddWidths.mid(1);

    Folder folder;
    const QString path = folder.add(u"odd.pdf"_s, PdfFixture::fromObjects(objects));
    QCOMPARE(widths(inspect(path).pageSizes), expected);
    QVERIFY(render(filePage(path, 1)).ok);
    QVERIFY(render(filePage(path, static_cast<int>(expected.size()) - 1)).ok);
}

void TestEngineInspect::pagesReadBeforeARepairAreReadAnew_data()
{
    QTest::addColumn<int>("pages");
    QTest::newRow("few") << 30;
    QTest::newRow("many, which are read ahead") << 3000;
}

void TestEngineInspect::pagesReadBeforeARepairAreReadAnew()
{
    // The table leads to an old state of the first page, and further on to an object that is none
    // of the kids; the repair for this one finds the latest state of the first.
    QFETCH(const int, pages);
    const int missing = pages / 3;
    QByteArray data = manyPages(pages);
    data += "3 0 obj\n" + pageOfWidth(500) + "\nendobj\n";
    const QByteArray header = "\n" + QByteArray::number(3 + missing) + " 0 obj";
    QCOMPARE(data.count(header), 1);
    data.replace(header, "\n9003 0 obj");

    QList<double> expected{500};
    for (int i = 1; i < pages; ++i) {
        if (i != missing) {
            expected += widthAmongMany(i);
        }
    }
    Folder folder;
    const QString path = folder.add(u"damaged.pdf"_s, data);
    QCOMPARE(widths(inspect(path).pageSizes), expected);
}

void TestEngineInspect::manyPagesInObjectStreamsAreReadAlike()
{
    const QString qpdf = QStandardPaths::findExecutable(u"qpdf"_s);
    if (qpdf.isEmpty()) {
        QSKIP("The qpdf command is missing.");
    }
    constexpr int kPages = 3000;
    Folder folder;
    const QString plain = folder.add(u"plain.pdf"_s, manyPages(kPages, "/Rotate 90"));
    const QString packed = folder.path(u"packed.pdf"_s);
    QCOMPARE(QProcess::execute(qpdf, {u"--object-streams=generate"_s, plain, packed}), 0);
    QVERIFY(QFileInfo(packed).size() < QFileInfo(plain).size() / 2);

    const QList<QSizeF> sizes = inspect(packed).pageSizes;
    QCOMPARE(sizes, inspect(plain).pageSizes);
    QCOMPARE(sizes.size(), kPages);
    QCOMPARE(sizes.at(kPages - 1).height(), widthAmongMany(kPages - 1));
    QVERIFY(render(filePage(packed, 0)).ok);
    QVERIFY(render(filePage(packed, kPages - 1)).ok);
}

QTEST_GUILESS_MAIN(TestEngineInspect)
#include "tst_engine_inspect.moc"
