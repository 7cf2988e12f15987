// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/render/page_bands.h"
#include "pdfcore/src/session/engine.h"
#include "tests/pdfcore/engine_calls.h"
#include "tests/pdfcore/icc_profiles.h"
#include "tests/support/pdf_fixture.h"

#include <QElapsedTimer>
#include <QRandomGenerator>

#include <functional>
#include <stdexcept>

using namespace EngineCalls;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

using pdfcore::DocumentSession;
using pdfcore::Engine;
using pdfcore::EngineError;
using pdfcore::FileIdentity;
using pdfcore::PageBands;
using pdfcore::SessionBudgets;

namespace {

/// How far a page in bands may be from the whole one.
struct Slack
{
    int colour = 0; ///< Of a channel.
    int pixels = 0; ///< Of the place.
    int specks = 0; ///< Pixels that may be anything.
};

constexpr Slack kNone;
/// MuPDF looks at a pixel in 15 lines, and an edge that is cut at the end of a band is rounded
/// there in each of them; a pixel may have two of them.
constexpr Slack kSlantedEdge{2 * 17, 0, 0};
/// MuPDF adds up where in a picture that is enlarged, or in a shading, it is, from the first row
/// that is painted on, and each sum is rounded.
constexpr Slack kAddedUp{8, 1, 0};
/// MuPDF paints a round shading in triangles and leaves out a pixel between them here and there,
/// also of a whole page, but not always the same ones.
constexpr Slack kTriangles{8, 1, 25};

/// MuPDF makes the small one from what it still has of the large one, if anything.
constexpr Slack kTwoSizes{16, 0, 100};

constexpr QSize kSize(430, 610);
constexpr int kBandRows = 37;
constexpr int kOverlap = 5;

const QByteArray kUsesX = "/XObject << /X 5 0 R >> ";

QByteArray noise(int bytes)
{
    QRandomGenerator random(7);
    QByteArray data(bytes, Qt::Uninitialized);
    for (char &byte : data) {
        byte = static_cast<char>(random.bounded(256));
    }
    return data;
}

QByteArray noisyImage(int side, const QByteArray &space, int components,
                      const QByteArray &more = {})
{
    const QByteArray number = QByteArray::number(side);
    return PdfFixture::streamBody("/Type /XObject /Subtype /Image /Width " + number + " /Height " +
                                      number + " /BitsPerComponent 8 /ColorSpace " + space + ' ' +
                                      more,
                                  noise(side * side * components));
}

QByteArray imageMask(int width, int height)
{
    return PdfFixture::streamBody(
        "/Type /XObject /Subtype /Image /ImageMask true /BitsPerComponent 1 /Width " +
            QByteArray::number(width) + " /Height " + QByteArray::number(height),
        noise((width + 7) / 8 * height));
}

QByteArray form(const QByteArray &content, const QByteArray &more)
{
    return PdfFixture::streamBody("/Type /XObject /Subtype /Form /BBox [0 0 200 200] " + more,
                                  content);
}

QByteArray shading(int type, const QByteArray &coordinates)
{
    return "/Shading << /S << /ShadingType " + QByteArray::number(type) +
           " /ColorSpace /DeviceCMYK /Extend [true true] /Coords [" + coordinates +
           "] /Function << /FunctionType 2 /Domain [0 1] /C0 [1 0 0 0] /C1 [0 1 0.5 0] /N 1 >> "
           ">> >>";
}

QByteArray letters()
{
    QByteArray content = "BT /F 9 Tf 11 TL 10 190 Td ";
    for (int line = 0; line < 17; ++line) {
        content += "(All letters of a line, which one band may show in part: gjpqy) Tj T* ";
    }
    return content + "ET BT /F 150 Tf 20 40 Td (Qg) Tj ET";
}

/// The bands of a page put together, each in a place of its own; null when the page failed.
QImage joined(const QString &path, int rotation, QSize size, int bandRows, int overlap,
              QString *reason, const SessionBudgets &budgets = {})
{
    EngineError outcome;
    const auto session = DocumentSession::open(FileIdentity::of(path), {}, budgets, &outcome);
    if (!session) {
        return {};
    }
    PageBands bands(size, overlap, qsizetype{3} * size.width() * bandRows);
    QImage whole(size, QImage::Format_RGB888);
    whole.fill(Qt::magenta);
    int end = 0;
    bool fits = true;
    const bool complete = session->renderBands(
        0, rotation, bands,
        [&](const QImage &band, int top) {
            const int common = end - top;
            fits = fits && band.width() == size.width() && common == (end > 0 ? overlap : 0);
            for (int row = 0; row < band.height(); ++row) {
                // What is there twice is the same.
                fits =
                    fits && (row >= common || std::equal(band.constScanLine(row),
                                                         band.constScanLine(row) + 3 * band.width(),
                                                         whole.constScanLine(top + row)));
                std::copy_n(band.constScanLine(row), 3 * band.width(), whole.scanLine(top + row));
            }
            end = top + band.height();
            return true;
        },
        &outcome);
    *reason = outcome.message;
    return complete && fits && end == size.height() ? whole : QImage();
}

/// Whether a pixel is as expected there or beside it.
/// How a page that was handed over in bands came out.
struct Handover : Outcome
{
    int bands = 0;
    int end = 0;   ///< The first row that is missing.
    QColor colour; ///< In the middle of the last band.
};

/// Renders a page in bands, of which `wanted` are taken; all by default.
Handover renderInBands(const PdfSourcePage &page, QSize size, int overlap = 0, int wanted = -1)
{
    Handover handover;
    handover.ok = PdfEditorBackend::renderPageInBands(
        page, size, overlap,
        [&](const QImage &band, int top) {
            handover.end = top + band.height();
            handover.colour = middle(band);
            return ++handover.bands != wanted;
        },
        &handover.error, &handover.message);
    return handover;
}

/// A page that is filled again and again, in half transparent colours.
QByteArray filledManyTimes(int count)
{
    return PdfFixture::onePage(
        "/G gs " + QByteArray("1 0 0 rg 3 3 m 197 3 l 100 197 l f ").repeated(count),
        "/ExtGState << /G << /ca 0.5 >> >>");
}

bool isNear(const QColor &colour, const QImage &expected, QPoint place, const Slack &slack)
{
    const QRect seen =
        QRect(place, place).adjusted(-slack.pixels, -slack.pixels, slack.pixels, slack.pixels) &
        expected.rect();
    for (int y = seen.top(); y <= seen.bottom(); ++y) {
        for (int x = seen.left(); x <= seen.right(); ++x) {
            if (distance(colour, expected.pixelColor(x, y)) <= slack.colour) {
                return true;
            }
        }
    }
    return false;
}

/// The pixels that are not as expected.
QList<QPoint> differences(const QImage &image, const QImage &expected, const Slack &slack)
{
    QList<QPoint> places;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (!isNear(image.pixelColor(x, y), expected, {x, y}, slack)) {
                places.append({x, y});
            }
        }
    }
    return places;
}

} // namespace

Q_DECLARE_METATYPE(Slack)

/// Pages that are rendered in bands.
class TestEngineBands : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();
    void bandsJoinToTheWholePage_data();
    void bandsJoinToTheWholePage();
    void largePicturesComeInPieces_data();
    void largePicturesComeInPieces();
    void bandsOfABlankPageAreWhite();
    void bandsBeyondAllMemoryFail();
    void pagesOfAnySizeAreRendered();
    void theSinkEndsThePage();
    void pagesThatCannotBeRenderedFail_data();
    void pagesThatCannotBeRenderedFail();
    void whatTheSinkThrowsFailsThePage();
    void theRevisionThatWasOpenedIsRendered();
    void theTimeGrowsWithThePixels_data();
    void theTimeGrowsWithThePixels();
    void slowPagesAreGivenUp();
    void theTimeIsThatOfAllBands();
    void whatTheSinkTakesDoesNotCount();
};

void TestEngineBands::cleanup()
{
    Engine::instance().sessions().setBudgets({});
    Engine::instance().sessions().closeIdle();
}

void TestEngineBands::bandsJoinToTheWholePage_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::addColumn<Slack>("slack");
    const auto row = [](const QByteArray &name, const Slack &slack, const QByteArray &content,
                        const QByteArray &resources = {}, const QList<QByteArray> &objects = {}) {
        QTest::newRow(name.constData())
            << PdfFixture::onePage(content, resources, objects) << slack;
    };
    const QByteArray all = "q 200 0 0 200 0 0 cm /X Do Q";
    const QByteArray part = "q 151.3 0 0 163.7 21.2 17.9 cm /X Do Q";
    const QByteArray slanted = "q 120 50 -40 110 60 20 cm /X Do Q";
    row("letters", kSlantedEdge, letters(),
        "/Font << /F << /Type /Font /Subtype /Type1 /BaseFont /Times-Roman >> >>");
    row("letters in tiles", kSlantedEdge, "/Pattern cs /P scn 0 0 200 200 re f",
        "/Pattern << /P 5 0 R >>",
        {PdfFixture::streamBody("/Type /Pattern /PatternType 1 /PaintType 1 /TilingType 1 /BBox "
                                "[0 0 60 60] /XStep 60 /YStep 60 /Matrix [1 0 0 1 7 -653] "
                                "/Resources << /Font << /F << /Type /Font /Subtype /Type1 "
                                "/BaseFont /Times-Roman >> >> >>",
                                "BT /F 40 Tf 0 10 Td (Qg) Tj ET")});
    const QByteArray drawn =
        "/Font << /F << /Type /Font /Subtype /Type3 /FontBBox [0 0 1 1] /FontMatrix [1 0 0 1 0 0] "
        "/CharProcs << /A 5 0 R /B 6 0 R >> /Encoding << /Differences [65 /A /B] >> /FirstChar 65 "
        "/LastChar 66 /Widths [0.9 0.9] /Resources << /XObject << /X 7 0 R >> >> >> >> ";
    const QList<QByteArray> letters{
        PdfFixture::streamBody({}, "1 0 d0 1 0 0 0 k 0.1 0.1 0.6 0.7 re f 0 1 0 0 k 0.2 0.3 m 0.8 "
                                   "0.4 l 0.5 0.9 l f q 0.4 0 0 0.4 0.5 0.5 cm /X Do Q"),
        PdfFixture::streamBody({}, "1 0 0 0 1 1 d1 0.1 0.1 0.4 0.8 re f"),
        noisyImage(120, "/DeviceCMYK", 4)};
    row("letters in colours of their own", kSlantedEdge,
        "0 0 1 0 k BT /F 31 Tf 4 150 Td (ABABA) Tj /F 140 Tf 10 -145 Td (AB) Tj ET", drawn,
        letters);
    row("half transparent letters in colours of their own", kSlantedEdge,
        "/G gs BT /F 31 Tf 4 150 Td (ABABA) Tj /F 140 Tf 10 -145 Td (AB) Tj ET",
        drawn + "/ExtGState << /G << /ca 0.5 >> >>", letters);
    row("boxes", kNone,
        "0.2 0.4 0.8 rg 10.3 20.7 150.1 130.9 re f 1 0 0 RG 3.3 w 40 40 99 99 re S");
    row("slanted edges", kSlantedEdge,
        "1 0 0 rg 3 5 m 190 77 l 100 195 l f 0 0 1 RG 0.4 w 0 0 m 200 200 l S "
        "[7 3] 0 d 5 w 20 180 m 60 -40 140 240 180 20 c S");
    for (const auto &[name, matrix] : {std::pair{"all", all}, {"part", part}}) {
        const QByteArray place(name);
        row(QByteArray("enlarged picture, ") + place, kAddedUp, matrix, kUsesX,
            {noisyImage(23, "/DeviceRGB", 3)});
        row(QByteArray("enlarged smooth picture, ") + place, kAddedUp, matrix, kUsesX,
            {noisyImage(23, "/DeviceRGB", 3, "/Interpolate true")});
        row(QByteArray("reduced picture, ") + place, kNone, matrix, kUsesX,
            {noisyImage(701, "/DeviceRGB", 3)});
        row(QByteArray("much reduced picture, ") + place, kNone, matrix, kUsesX,
            {noisyImage(2600, "/DeviceGray", 1)});
        row(QByteArray("reduced picture in ink, ") + place, kNone, matrix, kUsesX,
            {noisyImage(701, "/DeviceCMYK", 4)});
        row(QByteArray("much reduced picture in ink, ") + place, kNone, matrix, kUsesX,
            {noisyImage(1500, "/DeviceCMYK", 4)});
        row(QByteArray("indexed picture, ") + place, kNone, matrix, kUsesX,
            {noisyImage(1400, "[/Indexed /DeviceRGB 1 <FF00000000FF>]", 1)});
        row(QByteArray("picture with a profile, ") + place, kNone, matrix, kUsesX,
            {noisyImage(701, "[/ICCBased 6 0 R]", 3),
             PdfFixture::streamBody("/N 3", IccProfiles::swappedRgb())});
        row(QByteArray("picture with a soft mask, ") + place, kNone, matrix, kUsesX,
            {noisyImage(701, "/DeviceRGB", 3, "/SMask 6 0 R"), noisyImage(903, "/DeviceGray", 1)});
        row(QByteArray("stencil, ") + place, kNone, "0 0.5 0.5 rg " + matrix, kUsesX,
            {imageMask(1300, 900)});
        row(QByteArray("picture through a stencil, ") + place, kNone, matrix, kUsesX,
            {noisyImage(701, "/DeviceRGB", 3, "/Mask 6 0 R"), imageMask(1300, 900)});
    }
    const QByteArray small = "q 31 0 0 31 4 90 cm /X Do Q ";
    const QByteArray large = "q 150 0 0 150 40 25 cm /X Do Q ";
    for (const auto &[name, content] :
         {std::pair{"small first", small + large}, {"large first", large + small}}) {
        row(QByteArray("picture in two sizes, ") + name, kTwoSizes, content, kUsesX,
            {noisyImage(1700, "/DeviceGray", 1)});
        row(QByteArray("picture in ink in two sizes, ") + name, kTwoSizes, content, kUsesX,
            {noisyImage(1700, "/DeviceCMYK", 4)});
    }
    row("slanted picture", kAddedUp, slanted, kUsesX, {noisyImage(60, "/DeviceRGB", 3)});
    row("axial shading", kAddedUp, "/S sh", shading(2, "20 30 180 150"));
    row("radial shading", kTriangles, "/S sh", shading(3, "100 100 10 120 90 95"));
    row("group", kNone, "0 1 0 rg 0 0 100 200 re f /G gs /X Do",
        kUsesX + "/ExtGState << /G << /ca 0.5 /BM /Multiply >> >>",
        {form("1 0 0 rg 20 20 150 150 re f 0 0 1 rg 50 50 60 140 re f",
              "/Group << /S /Transparency /I true /K true >>")});
    row("luminosity", kNone, "/G gs 0 0 1 rg 0 0 200 200 re f",
        "/ExtGState << /G << /SMask << /S /Luminosity /G 5 0 R >> >> >>",
        {form("0.3 g 0 0 200 200 re f 1 g 40 30 99 120 re f",
              "/Group << /S /Transparency /CS /DeviceGray >>")});
    row("tiles", kNone, "/Pattern cs /P scn 13 17 160 170 re f", "/Pattern << /P 5 0 R >>",
        {PdfFixture::streamBody("/Type /Pattern /PatternType 1 /PaintType 1 /TilingType 1 /BBox "
                                "[0 0 7 7] /XStep 9.3 /YStep 8.1 /Resources << >>",
                                "1 0 1 rg 1 1 5 4 re f 0 g 3 3 1 4 re f")});
}

void TestEngineBands::bandsJoinToTheWholePage()
{
    QFETCH(const QByteArray, document);
    QFETCH(const Slack, slack);
    Folder folder;
    const QString path = folder.add(u"page.pdf"_s, document);
    for (const int rotation : {0, 90}) {
        // Pictures that are decoded already would be taken as they are.
        Engine::instance().sessions().closeIdle();
        const QImage whole = render(filePage(path, 0, rotation), kSize).image;
        QVERIFY(!whole.isNull());
        QString reason;
        const QImage bands = joined(path, rotation, kSize, kBandRows, kOverlap, &reason);
        QVERIFY2(!bands.isNull(), qPrintable(reason));
        const QList<QPoint> off = differences(bands, whole, slack);
        QVERIFY2(off.size() <= slack.specks,
                 qPrintable(u"rotated by %1, %2 pixels, first %3,%4"_s.arg(rotation)
                                .arg(off.size())
                                .arg(off.value(0).x())
                                .arg(off.value(0).y())));
    }
}

void TestEngineBands::largePicturesComeInPieces_data()
{
    QTest::addColumn<QByteArray>("matrix");
    QTest::newRow("upright") << QByteArray("200 0 0 200 0 0");
    QTest::newRow("mirrored") << QByteArray("200 0 0 -200 0 200");
    QTest::newRow("on its side") << QByteArray("0 200 200 0 0 0");
    QTest::newRow("larger than the page") << QByteArray("300 0 0 420 -50 -90");
}

void TestEngineBands::largePicturesComeInPieces()
{
    QFETCH(const QByteArray, matrix);
    constexpr int kSide = 200;
    Folder folder;
    const QString path =
        folder.add(u"page.pdf"_s, PdfFixture::onePage("q " + matrix + " cm /X Do Q", kUsesX,
                                                      {noisyImage(kSide, "/DeviceRGB", 3)}));
    for (const int rotation : {0, 90, 180, 270}) {
        const QImage whole = render(filePage(path, 0, rotation), kSize).image;
        // Less than a band needs, a few bands, and more than a half of the picture.
        for (const std::size_t kept : {1, kSide * 4 * 60, kSide * 4 * 130}) {
            SessionBudgets budgets;
            budgets.keptImages = kept;
            QString reason;
            const QImage bands =
                joined(path, rotation, kSize, kBandRows, kOverlap, &reason, budgets);
            QVERIFY2(!bands.isNull(), qPrintable(reason));
            QCOMPARE(differences(bands, whole, kAddedUp), QList<QPoint>());
        }
    }
}

void TestEngineBands::bandsOfABlankPageAreWhite()
{
    const Handover handover = renderInBands(blankPage({100, 200}), {4000, 8000}, 10);
    QVERIFY(handover.ok);
    QVERIFY(handover.bands > 2);
    QCOMPARE(handover.end, 8000);
    QCOMPARE(handover.colour, QColor(Qt::white));
}

void TestEngineBands::bandsBeyondAllMemoryFail()
{
    Folder folder;
    const QString path = folder.add(u"pages.pdf"_s, PdfFixture::pagesByNumber(1));
    constexpr QSize kTooWide(2'000'000'000, 2);
    for (const PdfSourcePage &page : {blankPage({100, 200}), filePage(path)}) {
        const Handover handover = renderInBands(page, kTooWide, 1);
        QVERIFY(!handover.ok);
        QCOMPARE(handover.error, PdfBackendError::RenderFailed);
        QVERIFY2(handover.message.contains(u"memory"_s), qPrintable(handover.message));
        QCOMPARE(handover.bands, 0);
    }
}

void TestEngineBands::pagesOfAnySizeAreRendered()
{
    // More pixels than one image may have.
    constexpr QSize kLarge(30'000, 20'000);
    Folder folder;
    const QString path = folder.add(u"pages.pdf"_s, PdfFixture::pagesByNumber(3));
    QVERIFY(!render(filePage(path, 2), kLarge).ok);
    const Handover handover = renderInBands(filePage(path, 2), kLarge, 25);
    QVERIFY2(handover.ok, qPrintable(handover.message));
    QCOMPARE(handover.end, kLarge.height());
    COMPARE_COLOUR(handover.colour, PdfFixture::numberColour(2), 1);
    // Rows that are wider than a band is to be come one by one.
    const Handover wide = renderInBands(filePage(path, 1), {20'000'000, 3}, 25);
    QVERIFY2(wide.ok, qPrintable(wide.message));
    QCOMPARE(wide.bands, 3);
}

void TestEngineBands::theSinkEndsThePage()
{
    Folder folder;
    const QString path = folder.add(u"pages.pdf"_s, PdfFixture::pagesByNumber(3));
    for (const PdfSourcePage &page : {filePage(path, 2), blankPage({100, 200})}) {
        const Handover handover = renderInBands(page, {6000, 9000}, 0, 2);
        QVERIFY(!handover.ok);
        QCOMPARE(handover.bands, 2);
        QCOMPARE(handover.error, PdfBackendError::None);
        QCOMPARE(handover.message, QString());
    }
    // The document is as good as before.
    QVERIFY(renderInBands(filePage(path, 1), {60, 90}).ok);
    QVERIFY(render(filePage(path, 1)).ok);
}

void TestEngineBands::pagesThatCannotBeRenderedFail_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("index");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<PdfBackendError>("error");
    const QString good = u"pages.pdf"_s;
    QTest::newRow("no file") << u"absent.pdf"_s << 0 << QSize(9, 9)
                             << PdfBackendError::FileNotFound;
    QTest::newRow("no document") << u"text.pdf"_s << 0 << QSize(9, 9)
                                 << PdfBackendError::InvalidDocument;
    QTest::newRow("no password") << u"locked.pdf"_s << 0 << QSize(9, 9)
                                 << PdfBackendError::PasswordRequired;
    QTest::newRow("page behind the last")
        << good << 3 << QSize(9, 9) << PdfBackendError::RenderFailed;
    QTest::newRow("page before the first")
        << good << -1 << QSize(9, 9) << PdfBackendError::RenderFailed;
    QTest::newRow("no size") << good << 0 << QSize() << PdfBackendError::RenderFailed;
    QTest::newRow("no height") << good << 0 << QSize(9, 0) << PdfBackendError::RenderFailed;
}

void TestEngineBands::pagesThatCannotBeRenderedFail()
{
    QFETCH(const QString, name);
    QFETCH(const int, index);
    QFETCH(const QSize, size);
    QFETCH(const PdfBackendError, error);
    Folder folder;
    const QByteArray document = PdfFixture::pagesByNumber(3);
    folder.add(u"pages.pdf"_s, document);
    folder.add(u"text.pdf"_s, "no document");
    folder.add(u"locked.pdf"_s, PdfFixture::encrypted(document, {"user", "owner", 6}));
    const Handover handover = renderInBands(filePage(folder.path(name), index), size);
    QVERIFY(!handover.ok);
    QCOMPARE(handover.bands, 0);
    QCOMPARE(handover.error, error);
    QVERIFY(!handover.message.isEmpty());
}

void TestEngineBands::whatTheSinkThrowsFailsThePage()
{
    Folder folder;
    const QString path = folder.add(u"pages.pdf"_s, PdfFixture::pagesByNumber(1));
    PdfBackendError error = PdfBackendError::None;
    QString message;
    QVERIFY(!PdfEditorBackend::renderPageInBands(
        filePage(path), {20, 30}, 0,
        [](const QImage &, int) -> bool { throw std::runtime_error("no paper"); }, &error,
        &message));
    QCOMPARE(error, PdfBackendError::RenderFailed);
    QCOMPARE(message, u"no paper"_s);
    QVERIFY(renderInBands(filePage(path), {20, 30}).ok);
}

void TestEngineBands::theRevisionThatWasOpenedIsRendered()
{
    Folder folder;
    const QString path = folder.add(u"pages.pdf"_s, PdfFixture::pagesByNumber(3));
    PdfDocumentInfo info;
    QVERIFY(PdfEditorBackend::inspectDocument(path, {}, &info, nullptr, nullptr));
    PdfSourcePage page = filePage(path, 1);
    page.revision = info.revision;
    QVERIFY(save({filePage(path, 2)}, path).ok);
    COMPARE_COLOUR(renderInBands(page, {60, 90}).colour, PdfFixture::numberColour(1), 1);
    COMPARE_COLOUR(renderInBands(filePage(path), {60, 90}).colour, PdfFixture::numberColour(2), 1);
    // Another program's content does not pass for it.
    folder.add(u"pages.pdf"_s, PdfFixture::pagesByNumber(5));
    COMPARE_COLOUR(renderInBands(page, {60, 90}).colour, PdfFixture::numberColour(1), 1);
    QVERIFY(PdfEditorBackend::inspectDocument(path, {}, &info, nullptr, nullptr));
    page.revision = info.revision;
    folder.add(u"pages.pdf"_s, PdfFixture::pagesByNumber(7));
    QCOMPARE(renderInBands(page, {60, 90}).error, PdfBackendError::FileNotFound);
}

void TestEngineBands::theTimeGrowsWithThePixels_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<int>("seconds");
    QTest::newRow("on a screen") << QSize(1240, 1754) << 10;
    QTest::newRow("A4 at 300 dpi") << QSize(2480, 3508) << 10;
    QTest::newRow("A4 at 600 dpi") << QSize(4960, 7016) << 40;
    QTest::newRow("A4 at 1200 dpi") << QSize(9920, 14032) << 160;
    QTest::newRow("A0 at 1200 dpi") << QSize(39'680, 56'128) << 2560;
}

void TestEngineBands::theTimeGrowsWithThePixels()
{
    QFETCH(const QSize, size);
    QFETCH(const int, seconds);
    SessionBudgets budgets;
    budgets.page = {10s, 1000};
    const pdfcore::WorkBudget whole = DocumentSession::pageBudget(budgets, size, size);
    QCOMPARE(whole.time, std::chrono::milliseconds(std::chrono::seconds(seconds)));
    // Memory goes by what there is of the page at a time.
    const pdfcore::WorkBudget band = DocumentSession::pageBudget(budgets, size, {100, 10});
    QCOMPARE(band.time, whole.time);
    QCOMPARE(band.bytes, std::size_t{1000 + 16 * 1000});
}

void TestEngineBands::slowPagesAreGivenUp()
{
    Folder folder;
    const QString path = folder.add(u"slow.pdf"_s, filledManyTimes(20'000));
    SessionBudgets budgets;
    budgets.page.time = 100ms;
    Engine::instance().sessions().setBudgets(budgets);
    QElapsedTimer timer;
    timer.start();
    const Handover handover = renderInBands(filePage(path), {2400, 3500});
    QVERIFY2(timer.elapsed() < 15'000, qPrintable(QString::number(timer.elapsed())));
    QVERIFY(!handover.ok);
    QCOMPARE(handover.error, PdfBackendError::RenderFailed);
    QVERIFY2(handover.message.contains(u"too long"_s), qPrintable(handover.message));
    // The session may not be used again.
    QCOMPARE(Engine::instance().sessions().idleCount(), 0);
}

void TestEngineBands::theTimeIsThatOfAllBands()
{
    // Each of them takes a small part of it.
    constexpr int kBands = 600;
    Folder folder;
    const QString path = folder.add(u"slow.pdf"_s, filledManyTimes(6000));
    SessionBudgets budgets;
    budgets.page.time = 600ms;
    EngineError outcome;
    const auto session = DocumentSession::open(FileIdentity::of(path), {}, budgets, &outcome);
    QVERIFY(session);
    PageBands bands({1200, kBands}, 0, qsizetype{3} * 1200);
    int seen = 0;
    QVERIFY(!session->renderBands(
        0, 0, bands,
        [&](const QImage &, int) {
            ++seen;
            return true;
        },
        &outcome));
    QVERIFY2(outcome.message.contains(u"too long"_s), qPrintable(outcome.message));
    QVERIFY(seen < kBands);
}

void TestEngineBands::whatTheSinkTakesDoesNotCount()
{
    constexpr int kBands = 4;
    Folder folder;
    const QString path = folder.add(u"pages.pdf"_s, PdfFixture::pagesByNumber(1));
    SessionBudgets budgets;
    budgets.page.time = 600ms;
    EngineError outcome;
    const auto session = DocumentSession::open(FileIdentity::of(path), {}, budgets, &outcome);
    QVERIFY(session);
    PageBands bands({60, 4 * kBands}, 0, qsizetype{3} * 60 * 4);
    int seen = 0;
    QVERIFY2(session->renderBands(
                 0, 0, bands,
                 [&](const QImage &, int) {
                     QTest::qSleep(300);
                     ++seen;
                     return true;
                 },
                 &outcome),
             qPrintable(outcome.message));
    QCOMPARE(seen, kBands);
}

QTEST_GUILESS_MAIN(TestEngineBands)
#include "tst_engine_bands.moc"
