// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdfcore/engine_calls.h"
#include "tests/support/pdf_fixture.h"

using namespace EngineCalls;
using namespace Qt::StringLiterals;

namespace {

const QByteArray kCatalogue = "<< /Type /Catalog /Pages 2 0 R >>";
const QByteArray kBox = "/MediaBox [0 0 100 200] ";
constexpr QSizeF kUpright{100, 200};
constexpr QSizeF kOnItsSide{200, 100};

/// References to the objects from `first` on.
QByteArray references(qsizetype first, qsizetype count)
{
    QByteArray kids;
    for (qsizetype number = first; number < first + count; ++number) {
        kids += QByteArray::number(number) + " 0 R ";
    }
    return kids;
}

/// A page of the node that is object `parent`.
QByteArray page(const QByteArray &entries, int parent = 2)
{
    return "<< /Type /Page /Parent " + QByteArray::number(parent) + " 0 R " + entries + " >>";
}

/// A document of page objects, whose root is object 2. The `more` objects are numbered from 3 on;
/// the pages come after them.
QByteArray documentOf(const QList<QByteArray> &pages, const QList<QByteArray> &more = {},
                      const QByteArray &rootEntries = {})
{
    const QByteArray root = "<< /Type /Pages /Count " + QByteArray::number(pages.size()) + ' ' +
                            rootEntries + " /Kids [" + references(3 + more.size(), pages.size()) +
                            "] >>";
    return PdfFixture::fromObjects(QList<QByteArray>{kCatalogue, root} + more + pages);
}

QList<QSizeF> sizesIn(const QByteArray &document)
{
    Folder folder;
    return inspect(folder.add(u"pages.pdf"_s, document)).pageSizes;
}

} // namespace

/// The sizes of pages whose objects are written in all the ways in which they may be written.
///
/// Pages that say the same of their size have to be told from pages that only seem to. So each odd
/// page stands among plain ones: ones of another size, for which a careless reader takes it.
class TestPageEntries : public QObject
{
    Q_OBJECT

private slots:
    void oddPagesAmongPlainOnes_data();
    void oddPagesAmongPlainOnes();
    void equalPagesOfDifferentNodesInheritFromTheirOwn();
    void pageThatNamesAnotherNodeInheritsWhereItStands();
    void pagesWithoutParentInheritWhereTheyStand_data();
    void pagesWithoutParentInheritWhereTheyStand();
    void moreKindsOfPagesThanAreRememberedTakeTurns();
    void kindsOfPagesTakeTurnsInALongDocument();
    void kidsThatAreNoPagesAreNotMeasuredAsSuch();
    void pagesWhosePlacesAreMixedUpKeepTheirSizes();
    void pageThatIsCutOffIsNoPageAndLeavesTheOthersAlone_data();
    void pageThatIsCutOffIsNoPageAndLeavesTheOthersAlone();
};

void TestPageEntries::oddPagesAmongPlainOnes_data()
{
    QTest::addColumn<QByteArray>("odd");
    QTest::addColumn<QSizeF>("expected");
    QTest::addColumn<QByteArray>("plain");
    QTest::addColumn<QSizeF>("plainSize");
    QTest::addColumn<QList<QByteArray>>("more");
    const auto row = [](const char *name, const QByteArray &odd, QSizeF expected,
                        const QByteArray &plain, QSizeF plainSize,
                        const QList<QByteArray> &more = {}) {
        QTest::newRow(name) << odd << expected << plain << plainSize << more;
    };
    const auto entries = [&row](const char *name, const QByteArray &odd, QSizeF expected,
                                const QByteArray &plain, QSizeF plainSize,
                                const QList<QByteArray> &more = {}) {
        row(name, page(odd), expected, page(plain), plainSize, more);
    };
    const QByteArray small = "/MediaBox [0 0 7 9] ";
    constexpr QSizeF kSmall{7, 9};
    constexpr QSizeF kFallback{612, 792};

    // Values of other objects.
    entries("indirect media box", "/MediaBox 3 0 R", kUpright, "", kFallback, {"[0 0 100 200]"});
    entries("other indirect media box", "/MediaBox 3 0 R", kUpright, "/MediaBox 4 0 R", kSmall,
            {"[0 0 100 200]", "[0 0 7 9]"});
    entries("indirect edges of the media box", "/MediaBox [0 0 3 0 R 4 0 R]", kUpright,
            "/MediaBox [0 0 3 0]", kFallback, {"100", "200"});
    entries("indirect crop box", kBox + "/CropBox 3 0 R", {50, 80}, kBox, kUpright,
            {"[10 20 60 100]"});
    entries("indirect rotation", kBox + "/Rotate 3 0 R", kOnItsSide, kBox + "/Rotate 3", kUpright,
            {"90"});
    entries("indirect user unit", kBox + "/UserUnit 3 0 R", {200, 400}, kBox + "/UserUnit 3",
            {300, 600}, {"2"});
    entries("indirect type", kBox + "/Type 3 0 R", kUpright, small, kSmall, {"/Page"});

    // Names.
    entries("escaped media box", "/Media#42ox [0 0 100 200]", kUpright, "", kFallback);
    entries("escaped rotation", kBox + "/#52#6F#74ate 90", kOnItsSide, kBox, kUpright);
    entries("escaped crop box", kBox + "/Crop#42#6fx [10 20 60 100]", {50, 80}, kBox, kUpright);
    entries("escaped user unit", kBox + "/UserUni#74 2", {200, 400}, kBox, kUpright);
    row("escaped type and parent", "<< /T#79pe /#50age /#50arent 2 0 R /MediaBox [0 0 100 200] >>",
        kUpright, page(small), kSmall);
    entries("keys that are alike",
            small + "/mediabox [0 0 100 200] /MediaBoxes [0 0 100 200] /Rot 90", kSmall,
            kBox + "/Rotate 90", kOnItsSide);
    entries("keys as values", kBox + "/A /Rotate /B /CropBox /C /MediaBox", kUpright,
            kBox + "/CropBox [0 0 7 9]", kSmall);

    // What is skipped.
    entries("comments", "% /Rotate 90\n/MediaBox % [0 0 7 9]\n[0 0 %7 9]\n100 200] % >> endobj\n",
            kUpright, kBox + "/Rotate 90", kOnItsSide);
    entries("comment in front of the value", kBox + "/Rotate % 0\r 90", kOnItsSide,
            kBox + "/Rotate 0", kUpright);
    entries("strings", kBox + "/A (/Rotate 90 \\) (/MediaBox [0 0 7 9]) ) /B <2F526F74617465>",
            kUpright, kBox + "/Rotate 90", kOnItsSide);
    entries("nested entries before the page's own",
            "/PieceInfo << /Private << /MediaBox [0 0 7 9] /CropBox [0 0 3 5] /Rotate 90 "
            "/UserUnit 4 >> >> " +
                kBox,
            kUpright, kBox + "/CropBox [0 0 3 5] /Rotate 90 /UserUnit 4", {20, 12});
    entries("nested entries after the page's own",
            kBox + "/PieceInfo << /MediaBox [0 0 7 9] /Parent 9 0 R >>", kUpright, small, kSmall);
    entries("nested entries only", "/PieceInfo << /MediaBox [0 0 7 9] >>", kFallback, small,
            kSmall);
    entries("nested kids and type",
            kBox + "/PieceInfo << /Kids [] /MediaBox [0 0 7 9] /Type /Pages >>", kUpright, small,
            kSmall);
    entries("entries in an array", kBox + "/A [/Rotate 90 << /Rotate 90 >> [/Rotate 90]]", kUpright,
            kBox + "/Rotate 90", kOnItsSide);
    entries("references and other values",
            "/A 9 0 R /B true /C null /D -1.5 /E 7 /F [9 0 R 1] " + kBox, kUpright, small, kSmall);

    // Keys that come twice: the last one counts.
    entries("two media boxes", small + kBox, kUpright, small, kSmall);
    entries("two rotations", kBox + "/Rotate 90 /Rotate 0", kUpright, kBox + "/Rotate 90",
            kOnItsSide);
    entries("two crop boxes", kBox + "/CropBox [0 0 7 9] /CropBox [10 20 60 100]", {50, 80},
            kBox + "/CropBox [0 0 7 9]", kSmall);
    entries("two user units", kBox + "/UserUnit 3 /UserUnit 2", {200, 400}, kBox + "/UserUnit 3",
            {300, 600});

    // Boxes.
    entries("swapped corners", "/MediaBox [100 200 0 0]", kUpright, kBox, kUpright);
    entries("swapped in one direction", "/MediaBox [0 200 100 0]", kUpright, small, kSmall);
    entries("crop box with swapped corners", kBox + "/CropBox [60 20 10 100]", {50, 80},
            kBox + "/CropBox [10 20 60 101]", {50, 81});
    entries("fractions", "/MediaBox [.5 0.25 101. 200.75]", {100.5, 200.5},
            "/MediaBox [0 0 101 200]", {101, 200});
    entries("three numbers", "/MediaBox [0 0 100]", kFallback, kBox, kUpright);
    entries("five numbers", "/MediaBox [0 0 100 200 300]", kUpright, "/MediaBox [0 100 200 300]",
            {200, 200});
    entries("a name among the numbers", "/MediaBox [0 0 /Wide 200]", kFallback, kBox, kUpright);
    entries("no array", "/MediaBox (0 0 7 9)", kFallback, small, kSmall);
    entries("null", kBox + "/CropBox null /Rotate null /UserUnit null", kUpright,
            kBox + "/Rotate 90", kOnItsSide);

    // Rotations and units.
    entries("rotation of -90", kBox + "/Rotate -90", kOnItsSide, kBox + "/Rotate 0", kUpright);
    entries("rotation of 450", kBox + "/Rotate 450", kOnItsSide, kBox + "/Rotate 360", kUpright);
    entries("rotation of 44", kBox + "/Rotate 44", kUpright, kBox + "/Rotate 46", kOnItsSide);
    entries("rotation of 90.0", kBox + "/Rotate 90.0", kOnItsSide, kBox + "/Rotate 0.0", kUpright);
    entries("rotation that is no number", kBox + "/Rotate /Left", kUpright, kBox + "/Rotate 90",
            kOnItsSide);
    entries("user unit of 2", kBox + "/UserUnit 2", {200, 400}, kBox, kUpright);
    entries("user unit of 0", kBox + "/UserUnit 0", kUpright, kBox + "/UserUnit 2", {200, 400});
    entries("user unit below 0", kBox + "/UserUnit -2", kUpright, kBox + "/UserUnit 2", {200, 400});
    entries("user unit below 1", kBox + "/UserUnit .5", {50, 100}, kBox, kUpright);

    // The object as a whole.
    row("no type", "<< /Parent 2 0 R /MediaBox [0 0 100 200] >>", kUpright, page(small), kSmall);
    row("template", "<< /Type /Template /Parent 2 0 R /MediaBox [0 0 100 200] >>", kUpright,
        page(small), kSmall);
    row("written without spaces", "<</Type/Page/Parent 2 0 R/MediaBox[0 0 100 200]/Rotate 90>>",
        kOnItsSide, page(kBox), kUpright);
    row("parent at the end", "<< /Rotate 90 /MediaBox [0 0 100 200] /Type /Page /Parent 2 0 R >>",
        kOnItsSide, page(kBox), kUpright);
    row("stream", PdfFixture::streamBody("/Type /Page /Parent 2 0 R " + kBox, "/Rotate 90"),
        kUpright, page(kBox + "/Rotate 90"), kOnItsSide);
}

void TestPageEntries::oddPagesAmongPlainOnes()
{
    QFETCH(const QByteArray, odd);
    QFETCH(const QSizeF, expected);
    QFETCH(const QByteArray, plain);
    QFETCH(const QSizeF, plainSize);
    QFETCH(const QList<QByteArray>, more);
    QCOMPARE(sizesIn(documentOf({odd}, more)), QList<QSizeF>{expected});
    QCOMPARE(sizesIn(documentOf({plain, odd, odd, plain, odd}, more)),
             (QList<QSizeF>{plainSize, expected, expected, plainSize, expected}));
    QCOMPARE(sizesIn(documentOf({odd, plain, plain, odd, plain}, more)),
             (QList<QSizeF>{expected, plainSize, plainSize, expected, plainSize}));
}

void TestPageEntries::equalPagesOfDifferentNodesInheritFromTheirOwn()
{
    // Objects 3 to 6 are the nodes; each has two pages that differ in nothing but their parent.
    const QList<QByteArray> inherited{"/MediaBox [0 0 100 200]", "/MediaBox [0 0 7 9]",
                                      "/MediaBox [0 0 100 200] /Rotate 90",
                                      "/MediaBox [0 0 100 200] /CropBox [10 20 60 100]"};
    const QList<QSizeF> expected{kUpright, {7, 9}, kOnItsSide, {50, 80}};
    QList<QByteArray> nodes;
    QList<QByteArray> pages;
    for (int i = 0; i < inherited.size(); ++i) {
        nodes += "<< /Type /Pages /Parent 2 0 R /Count 2 " + inherited.at(i) + " /Kids [" +
                 references(7 + pages.size(), 2) + "] >>";
        pages += page({}, 3 + i);
        pages += page({}, 3 + i);
    }
    const QByteArray root = "<< /Type /Pages /Count 8 /Kids [" + references(3, 4) + "] >>";
    QList<QSizeF> sizes;
    for (const QSizeF &size : expected) {
        sizes << size << size;
    }
    QCOMPARE(sizesIn(PdfFixture::fromObjects(QList<QByteArray>{kCatalogue, root} + nodes + pages)),
             sizes);
}

void TestPageEntries::pageThatNamesAnotherNodeInheritsWhereItStands()
{
    const auto node = [](const QByteArray &entries) -> QByteArray {
        return "<< /Type /Pages /Parent 2 0 R /Count 2 " + entries + " >>";
    };
    const QList<QByteArray> objects{kCatalogue,
                                    "<< /Type /Pages /Count 4 /Kids [3 0 R 4 0 R] >>",
                                    node("/MediaBox [0 0 100 200] /Kids [5 0 R 6 0 R]"),
                                    node("/MediaBox [0 0 7 9] /Kids [7 0 R 8 0 R]"),
                                    page({}, 3),
                                    page({}, 4),
                                    page({}, 4),
                                    page({}, 3)};
    QCOMPARE(sizesIn(PdfFixture::fromObjects(objects)),
             (QList<QSizeF>{kUpright, kUpright, {7, 9}, {7, 9}}));
}

void TestPageEntries::pagesWithoutParentInheritWhereTheyStand_data()
{
    QTest::addColumn<QByteArray>("parent");
    QTest::newRow("missing") << QByteArray();
    QTest::newRow("null") << QByteArray("/Parent null");
    QTest::newRow("number") << QByteArray("/Parent 2");
    QTest::newRow("number of no object") << QByteArray("/Parent 0 0 R");
    QTest::newRow("object that is missing") << QByteArray("/Parent 99 0 R");
    QTest::newRow("dictionary") << QByteArray(
        "/Parent << /Type /Pages /MediaBox [0 0 7 9] /Rotate 0 >>");
    QTest::newRow("indirect dictionary") << QByteArray("/Parent 3 0 R");
}

void TestPageEntries::pagesWithoutParentInheritWhereTheyStand()
{
    QFETCH(const QByteArray, parent);
    const QByteArray odd = "<< /Type /Page " + parent + " >>";
    const QList<QByteArray> more{"<< /Type /Pages /MediaBox [0 0 7 9] /Rotate 0 >>"};
    const QByteArray inherited = kBox + "/Rotate 90";
    QCOMPARE(sizesIn(documentOf({odd, page({}), odd, page("/Rotate 0")}, more, inherited)),
             (QList<QSizeF>{kOnItsSide, kOnItsSide, kOnItsSide, kUpright}));
}

void TestPageEntries::moreKindsOfPagesThanAreRememberedTakeTurns()
{
    constexpr int kKinds = 13;
    QList<QByteArray> pages;
    QList<QSizeF> expected;
    for (int round = 0; round < 4; ++round) {
        for (int kind = 0; kind < kKinds; ++kind) {
            const QByteArray height = QByteArray::number(100 + kind);
            pages += page("/MediaBox [0 0 50 " + height + "] /Rotate " +
                          QByteArray::number(kind % 2 * 90));
            expected += kind % 2 == 0 ? QSizeF(50, 100 + kind) : QSizeF(100 + kind, 50);
        }
    }
    // One of each kind again, from the last one back to the first one.
    for (int kind = kKinds - 1; kind >= 0; --kind) {
        pages += pages.at(kind);
        expected += expected.at(kind);
    }
    QCOMPARE(sizesIn(documentOf(pages)), expected);
}

void TestPageEntries::kindsOfPagesTakeTurnsInALongDocument()
{
    constexpr int kPages = 2500;
    const QList<QByteArray> kinds{page(kBox),
                                  page(kBox + "/Rotate 90"),
                                  page(kBox + "/A << /Rotate 90 >>"),
                                  page(kBox + "/Rot#61te 270"),
                                  page("/MediaBox 3 0 R"),
                                  page(kBox + "/UserUnit 2"),
                                  "<< /Type /Page /Parent 2 0 R >>",
                                  page({}),
                                  "<< /Type /Page /MediaBox [0 0 100 200] >>",
                                  page("/MediaBox [0 0 100 200 300]"),
                                  page("/CropBox [10 20 60 100] " + kBox)};
    const QList<QSizeF> sizes{kUpright, kOnItsSide, kUpright, kOnItsSide, {7, 9},  {200, 400},
                              {5, 6},   {5, 6},     kUpright, kUpright,   {50, 80}};
    QList<QByteArray> pages;
    QList<QSizeF> expected;
    for (int i = 0; i < kPages; ++i) {
        // Runs of different lengths, in changing order.
        const int kind = (i / (1 + i % 3) + i / 7) % static_cast<int>(kinds.size());
        pages += kinds.at(kind);
        expected += sizes.at(kind);
    }
    QCOMPARE(sizesIn(documentOf(pages, {"[0 0 7 9]"}, "/MediaBox [0 0 5 6]")), expected);
}

void TestPageEntries::kidsThatAreNoPagesAreNotMeasuredAsSuch()
{
    const QByteArray plain = page(kBox);
    const QList<QByteArray> kids{plain,
                                 "<< /Type /Pages /Parent 2 0 R /MediaBox [0 0 100 200] >>",
                                 "<< /Type /Pages /Type /Page /Parent 2 0 R /MediaBox [0 0 7 9] >>",
                                 page(kBox + "/Kids []"),
                                 page(kBox + "/Kids 7"),
                                 "[/Type /Page /Parent 2 0 R /MediaBox [0 0 100 200]]",
                                 plain};
    QCOMPARE(sizesIn(documentOf(kids)), (QList<QSizeF>{kUpright, {7, 9}, kUpright, kUpright}));
}

void TestPageEntries::pagesWhosePlacesAreMixedUpKeepTheirSizes()
{
    // The table says of each of the last two pages where the other one stands.
    const QByteArray upright = page(kBox);
    const QByteArray onItsSide = page(kBox + "/Rotate 90");
    QByteArray document = documentOf({upright, onItsSide, upright, onItsSide});
    constexpr qsizetype kLineLength = 20;
    const qsizetype line = document.indexOf("0000000000 65535 f") + 5 * kLineLength;
    const QByteArray third = document.mid(line, kLineLength);
    document.remove(line, kLineLength).insert(line + kLineLength, third);
    QCOMPARE(sizesIn(document), (QList<QSizeF>{kUpright, kOnItsSide, kUpright, kOnItsSide}));
}

void TestPageEntries::pageThatIsCutOffIsNoPageAndLeavesTheOthersAlone_data()
{
    QTest::addColumn<QByteArray>("cut");
    QTest::newRow("behind the box") << "<< /Type /Page /Parent 2 0 R " + kBox;
    QTest::newRow("half of the end") << "<< /Type /Page /Parent 2 0 R " + kBox + '>';
    QTest::newRow("inside the box") << QByteArray("<< /Type /Page /Parent 2 0 R /MediaBox [0 0");
    QTest::newRow("inside a reference") << "<< /Type /Page " + kBox + "/Parent 2 0";
    QTest::newRow("behind a key") << "<< /Type /Page /Parent 2 0 R " + kBox + "/Rotate";
    QTest::newRow("inside a nested dictionary")
        << "<< /Type /Page /Parent 2 0 R " + kBox + "/Resources << /Font <<";
}

void TestPageEntries::pageThatIsCutOffIsNoPageAndLeavesTheOthersAlone()
{
    QFETCH(const QByteArray, cut);
    QCOMPARE(sizesIn(documentOf({cut})), QList<QSizeF>());
    QCOMPARE(sizesIn(documentOf({page(kBox), cut, page(kBox + "/Rotate 90"), cut, page(kBox)})),
             (QList<QSizeF>{kUpright, kOnItsSide, kUpright}));
}

QTEST_GUILESS_MAIN(TestPageEntries)
#include "tst_page_entries.moc"
