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
    const Bytes image = PdfFixture::streamBody(
        "/Type /XObject /Subtype /Image /Filter /JPXDecode " + kGray, kNonsense);
    Folder folder;
    const QString path = folder.add(
        u"in.pdf"_s, PdfFixture::onePage("0 1 0 rg 0 0 200 200 re f q 200 0 0 200 0 0 cm /F Do Q",
                                         "/XObject << /F 5 0 R >>", {form, image}));
    const Rendering shown = render(filePage(path));
    QVERIFY2(shown.ok, qPrintable(shown.message));
    COMPARE_COLOUR(shown.image.pixelColor(50, 30), kBackground, 1);
    COMPARE_COLOUR(shown.image.pixelColor(50, 90), QColor(Qt::red), 1);
}

QTEST_GUILESS_MAIN(TestEngineBrokenImages)
#include "tst_engine_broken_images.moc"
