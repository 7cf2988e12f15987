// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdfcore/engine_calls.h"
#include "tests/support/pdf_fixture.h"

#include <QBuffer>
#include <QImage>
#include <QProcess>

using namespace Qt::StringLiterals;

namespace {

/// A picture of many colours, as a JPEG file.
QByteArray jpegFile()
{
    QImage picture(64, 64, QImage::Format_RGB888);
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            picture.setPixelColor(x, y, QColor((x * 37) % 256, (y * 91) % 256, (x * y) % 256));
        }
    }
    QBuffer file;
    picture.save(&file, "JPG", 90);
    return file.data();
}

/// A document whose page shows a picture in JPEG format.
QByteArray documentWith(const QByteArray &jpeg)
{
    return PdfFixture::onePage("200 0 0 200 0 0 cm /I Do", "/XObject << /I 5 0 R >>",
                               {PdfFixture::streamBody("/Type /XObject /Subtype /Image /Width 64 "
                                                       "/Height 64 /BitsPerComponent 8 "
                                                       "/ColorSpace /DeviceRGB /Filter /DCTDecode",
                                                       jpeg)});
}

} // namespace

/// The engine prints nothing, whatever it meets. Standard error belongs to the process, so the
/// tests that meet something run in a process of their own.
class TestEngineSilence final : public QObject
{
    Q_OBJECT

private slots:
    void pictureThatEndsTooEarly();
    void pictureWithWrongBytes();
    void fileThatIsNoDocument();
    void nothingIsPrinted_data();
    void nothingIsPrinted();

private:
    EngineCalls::Folder m_folder;
};

void TestEngineSilence::pictureThatEndsTooEarly()
{
    const QByteArray jpeg = jpegFile();
    const QString path = m_folder.add(u"short.pdf"_s, documentWith(jpeg.left(jpeg.size() / 2)));
    QVERIFY(EngineCalls::render(EngineCalls::filePage(path)).ok);
}

void TestEngineSilence::pictureWithWrongBytes()
{
    QByteArray jpeg = jpegFile();
    // Markers in the middle of the coded pixels.
    for (qsizetype i = jpeg.size() / 2; i + 1 < jpeg.size() - 2; i += 40) {
        jpeg[i] = '\xFF';
        jpeg[i + 1] = '\xD3';
    }
    const QString path = m_folder.add(u"wrong.pdf"_s, documentWith(jpeg));
    QVERIFY(EngineCalls::render(EngineCalls::filePage(path)).ok);
}

void TestEngineSilence::fileThatIsNoDocument()
{
    const QString path = m_folder.add(u"none.pdf"_s, "%PDF-1.7\nnothing follows\n");
    QVERIFY(!EngineCalls::inspect(path).ok);
}

void TestEngineSilence::nothingIsPrinted_data()
{
    QTest::addColumn<QString>("test");

    QTest::newRow("a picture that ends too early") << u"pictureThatEndsTooEarly"_s;
    QTest::newRow("a picture with wrong bytes") << u"pictureWithWrongBytes"_s;
    QTest::newRow("a file that is no document") << u"fileThatIsNoDocument"_s;
}

void TestEngineSilence::nothingIsPrinted()
{
    QFETCH(const QString, test);
    QProcess process;
    process.start(QCoreApplication::applicationFilePath(), {test});
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitCode(), 0);
    QCOMPARE(process.readAllStandardError(), QByteArray());
}

QTEST_GUILESS_MAIN(TestEngineSilence)
#include "tst_engine_silence.moc"
