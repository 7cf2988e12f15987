// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdfcore/engine_calls.h"
#include "tests/support/pdf_fixture.h"

using namespace EngineCalls;
using namespace Qt::StringLiterals;

namespace {

using Bytes = QByteArray;

/// A page in green with an image over its left half and a blue strip at its top, which comes last.
Bytes pageWith(const Bytes &imageEntries, const Bytes &data, const QList<Bytes> &more = {})
{
    return PdfFixture::onePage("0 1 0 rg 0 0 200 200 re f 1 0 0 rg q 100 0 0 200 0 0 cm /I Do Q 0 "
                               "0 1 rg 0 180 200 20 re f",
                               "/XObject << /I 5 0 R >>",
                               QList<Bytes>{PdfFixture::streamBody(
                                   "/Type /XObject /Subtype /Image " + imageEntries, data)} +
                                   more);
}

const Bytes kGray = "/Width 64 /Height 64 /BitsPerComponent 8 /ColorSpace /DeviceGray ";
const Bytes kBilevel = "/Width 64 /Height 64 /BitsPerComponent 1 /ColorSpace /DeviceGray ";
const Bytes kMask = "/Width 64 /Height 64 /ImageMask true ";
const Bytes kNonsense = "this is no picture at all";

/// One that is found to be broken before anything of it is painted.
Bytes unreadableImage()
{
    return PdfFixture::streamBody("/Type /XObject /Subtype /Image /Filter /JPXDecode " + kGray,
                                  kNonsense);
}

const Bytes kPaintsBackground = "0 1 0 rg 0 0 200 200 re f ";
/// Paints what is within 0 and 1 of both axes over the lower half.
const Bytes kUpToTheMiddle = "q 200 0 0 100 0 0 cm ";
const Bytes kPaintsStrip = " 0 0 1 rg 0 180 200 20 re f";

const QColor kBackground(Qt::green);
const QColor kStrip(Qt::blue);

} // namespace

/// Pages with images that cannot be decoded, or not whole.
class TestEngineBrokenImages : public QObject
{
    Q_OBJECT

private slots:
    void imageWithoutPixelsIsLeftOut_data();
    void imageWithoutPixelsIsLeftOut();
    void whatCanBeDecodedIsShown();
    void blackImageIsNoBrokenOne();
    void brokenImageWithinAFormIsLeftOut();
    void brokenImageIsLeftOutWhereverItIsNamed_data();
    void brokenImageIsLeftOutWhereverItIsNamed();
    void manyBrokenImagesAreLeftOut_data();
    void manyBrokenImagesAreLeftOut();
};

void TestEngineBrokenImages::imageWithoutPixelsIsLeftOut_data()
{
    QTest::addColumn<Bytes>("entries");
    QTest::addColumn<Bytes>("data");
    const auto row = [](const char *name, const Bytes &entries, const Bytes &data) {
        QTest::newRow(name) << entries << data;
    };
    row("JBIG2", kBilevel + "/Filter /JBIG2Decode", kNonsense);
    row("JBIG2, mask", kMask + "/Filter /JBIG2Decode", kNonsense);
    row("JPEG", kGray + "/Filter /DCTDecode", kNonsense);
    row("packed", kGray + "/Filter /FlateDecode", kNonsense);
    row("packed, mask", kMask + "/Filter /FlateDecode", kNonsense);
    row("packed, in colours", kGray + "/Filter /FlateDecode /ColorSpace /DeviceCMYK", kNonsense);
    row("empty", kGray, {});
    row("empty mask", kMask, {});
    row("JPEG 2000", kGray + "/Filter /JPXDecode", kNonsense);
    row("no width", "/Width 0 /Height 64 /BitsPerComponent 8 /ColorSpace /DeviceGray", kNonsense);
}

void TestEngineBrokenImages::imageWithoutPixelsIsLeftOut()
{
    QFETCH(const Bytes, entries);
    QFETCH(const Bytes, data);
    Folder folder;
    const QString path = folder.add(u"in.pdf"_s, pageWith(entries, data));
    // Twice: what was found out by the first must hold for the second.
    for (int round = 0; round < 2; ++round) {
        const Rendering shown = render(filePage(path));
        QVERIFY2(shown.ok, qPrintable(shown.message));
        COMPARE_COLOUR(shown.image.pixelColor(25, 50), kBackground, 1);
        COMPARE_COLOUR(shown.image.pixelColor(25, 5), kStrip, 1);
    }
}

void TestEngineBrokenImages::whatCanBeDecodedIsShown()
{
    // The upper half of the rows.
    const Bytes half(qsizetype{64} * 32, '\xC0');
    Folder folder;
    const QString path = folder.add(u"in.pdf"_s, pageWith(kGray, half));
    const QImage image = render(filePage(path)).image;
    COMPARE_COLOUR(image.pixelColor(25, 30), QColor(0xC0, 0xC0, 0xC0), 2);
}

void TestEngineBrokenImages::blackImageIsNoBrokenOne()
{
    Folder folder;
    const QString path = folder.add(u"in.pdf"_s, pageWith(kGray, Bytes(qsizetype{64} * 64, '\0')));
    COMPARE_COLOUR(render(filePage(path)).image.pixelColor(25, 50), QColor(Qt::black), 1);
}

void TestEngineBrokenImages::brokenImageWithinAFormIsLeftOut()
{
    const Bytes form = PdfFixture::streamBody("/Type /XObject /Subtype /Form /BBox [0 0 1 1] "
                                              "/Resources << /XObject << /J 6 0 R /Me 5 0 R "
                                              ">> >>",
                                              "q /J Do Q 1 0 0 rg 0 0 1 0.25 re f");
    Folder folder;
    const QString path = folder.add(
        u"in.pdf"_s, PdfFixture::onePage("0 1 0 rg 0 0 200 200 re f q 200 0 0 200 0 0 cm /F Do Q",
                                         "/XObject << /F 5 0 R >>", {form, unreadableImage()}));
    const Rendering shown = render(filePage(path));
    QVERIFY2(shown.ok, qPrintable(shown.message));
    COMPARE_COLOUR(shown.image.pixelColor(50, 30), kBackground, 1);
    COMPARE_COLOUR(shown.image.pixelColor(50, 90), QColor(Qt::red), 1);
}

void TestEngineBrokenImages::brokenImageIsLeftOutWhereverItIsNamed_data()
{
    QTest::addColumn<Bytes>("document");
    const Bytes image = PdfFixture::streamBody(
        "/Type /XObject /Subtype /Image /Filter /JPXDecode " + kGray, kNonsense);
    // Each shows the image, and red over the lower half of it.
    const Bytes shown = "q 100 0 0 100 0 0 cm /J Do Q 1 0 0 rg 0 0 100 50 re f ";
    const Bytes named = "/Resources << /XObject << /J 6 0 R >> >> ";
    const Bytes box = "/BBox [0 0 100 100] ";
    const Bytes form =
        PdfFixture::streamBody("/Type /XObject /Subtype /Form " + box + named, shown);
    const Bytes tile = PdfFixture::streamBody("/Type /Pattern /PatternType 1 /PaintType 1 "
                                              "/TilingType 1 /XStep 100 /YStep 100 " +
                                                  box + named,
                                              shown);
    const Bytes below = "0 1 0 rg 0 0 200 200 re f ";
    const Bytes above = "0 0 1 rg 0 180 200 20 re f ";

    QTest::newRow("inherited resources") << PdfFixture::fromObjects(
        {"<< /Type /Catalog /Pages 2 0 R >>",
         "<< /Type /Pages /Kids [3 0 R] /Count 1 " + named + ">>",
         "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 200 200] /Contents 4 0 R >>",
         PdfFixture::streamBody({}, below + shown + above), "null", image});
    QTest::newRow("pattern") << PdfFixture::onePage(below + "/Pattern cs /P scn 0 0 100 100 re f " +
                                                        above,
                                                    "/Pattern << /P 5 0 R >>", {tile, image});
    const Bytes font = "<< /Type /Font /Subtype /Type3 /FontBBox [0 0 100 100] /FontMatrix [1 0 0 "
                       "1 0 0] /FirstChar 97 /LastChar 97 /Widths [100] /Encoding << /Differences "
                       "[97 /a] >> /CharProcs << /a 7 0 R >> " +
                       named + ">>";
    QTest::newRow("letter behind a broken image")
        << PdfFixture::onePage(below + "/J Do BT /F 1 Tf (a) Tj ET " + above,
                               "/XObject << /J 6 0 R >> /Font << /F 5 0 R >>",
                               {font, image, PdfFixture::streamBody({}, "100 0 d0 " + shown)});
    const Bytes group = PdfFixture::streamBody(
        "/Type /XObject /Subtype /Form /Group << /S /Transparency /CS /DeviceGray >> " + box +
            named,
        "q 100 0 0 100 0 0 cm /J Do Q 1 g 0 0 100 50 re f");
    QTest::newRow("soft mask") << PdfFixture::onePage(
        below + "q /M gs 1 0 0 rg 0 0 100 100 re f Q " + above,
        "/ExtGState << /M << /SMask << /S /Luminosity /G 5 0 R >> >> >>", {group, image});
    const Bytes stamp = "/Annots [<< /Type /Annot /Subtype /Stamp /F 4 /Rect [0 0 100 100] ";
    QTest::newRow("annotation") << PdfFixture::onePage(below + above, {}, {form, image},
                                                       stamp + "/AP << /N 5 0 R >> >>]");
    QTest::newRow("annotation of several states") << PdfFixture::onePage(
        below + above, {}, {form, image}, stamp + "/AS /On /AP << /N << /On 5 0 R >> >> >>]");
}

void TestEngineBrokenImages::brokenImageIsLeftOutWhereverItIsNamed()
{
    QFETCH(const Bytes, document);
    Folder folder;
    const Rendering shown = render(filePage(folder.add(u"in.pdf"_s, document)));
    QVERIFY2(shown.ok, qPrintable(shown.message));
    COMPARE_COLOUR(shown.image.pixelColor(25, 60), kBackground, 1);
    COMPARE_COLOUR(shown.image.pixelColor(25, 90), QColor(Qt::red), 1);
    COMPARE_COLOUR(shown.image.pixelColor(75, 90), kBackground, 1);
    COMPARE_COLOUR(shown.image.pixelColor(25, 5), kStrip, 1);
}

void TestEngineBrokenImages::manyBrokenImagesAreLeftOut_data()
{
    QTest::addColumn<int>("count");
    for (const int count : {2, 3, 8}) {
        QTest::addRow("%d", count) << count;
    }
}

void TestEngineBrokenImages::manyBrokenImagesAreLeftOut()
{
    QFETCH(const int, count);
    Bytes content = kPaintsBackground;
    Bytes names;
    QList<Bytes> images;
    for (int i = 0; i < count; ++i) {
        const Bytes name = "/I" + Bytes::number(i);
        content += kUpToTheMiddle + name + " Do Q ";
        names += name + ' ' + Bytes::number(5 + i) + " 0 R ";
        images.append(unreadableImage());
    }
    // A good one among them stays.
    content += "q 200 0 0 50 0 50 cm /I0good Do Q";
    names += "/I0good " + Bytes::number(5 + count) + " 0 R";
    images.append(PdfFixture::streamBody("/Type /XObject /Subtype /Image " + kGray,
                                         Bytes(qsizetype{64} * 64, '\0')));
    Folder folder;
    const QString path =
        folder.add(u"in.pdf"_s, PdfFixture::onePage(content + kPaintsStrip,
                                                    "/XObject << " + names + " >>", images));
    const Rendering shown = render(filePage(path));
    QVERIFY2(shown.ok, qPrintable(shown.message));
    const int width = shown.image.width();
    const auto colourAt = [&](double height) {
        return shown.image.pixelColor(width / 2, qRound(shown.image.height() * (1.0 - height)));
    };
    COMPARE_COLOUR(colourAt(0.95), kStrip, 1);
    COMPARE_COLOUR(colourAt(0.75), kBackground, 1);
    COMPARE_COLOUR(colourAt(0.375), QColor(Qt::black), 1);
    COMPARE_COLOUR(colourAt(0.1), kBackground, 1);
}

QTEST_GUILESS_MAIN(TestEngineBrokenImages)
#include "tst_engine_broken_images.moc"
