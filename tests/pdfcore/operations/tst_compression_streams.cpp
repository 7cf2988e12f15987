// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/compress/jpeg_codec.h"
#include "tests/pdfcore/operations/compression_case.h"

#include <QElapsedTimer>
#include <QFile>

#include <chrono>
#include <thread>

#include <qpdf/Buffer.hh>
#include <qpdf/Pl_Flate.hh>
#include <qpdf/QPDFWriter.hh>

using namespace CompressionCase;
using namespace EngineCalls;
using namespace Qt::StringLiterals;

namespace {

constexpr PdfCompressionLevel kBasic = PdfCompressionLevel::Basic;

/// A content that takes some bytes, and fewer when it is compressed.
QByteArray longContent()
{
    QByteArray content;
    for (int i = 0; i < 400; ++i) {
        content += "0." + QByteArray::number(i) + " 0 1 rg " + QByteArray::number(i % 190) + ' ' +
                   QByteArray::number(i * 7 % 190) + " 10 10 re f\n";
    }
    return content;
}

QByteArray signedDocument(const QByteArray &catalogEntries, const QByteArray &pageEntries,
                          const QList<QByteArray> &more)
{
    return PdfFixture::fromObjects(
        QList<QByteArray>{
            "<< /Type /Catalog /Pages 2 0 R " + catalogEntries + " >>",
            "<< /Type /Pages /Kids [3 0 R] /Count 1 >>",
            "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 200 200] /Contents 4 0 R " + pageEntries +
                " >>",
            PdfFixture::streamBody({}, longContent()),
        } +
        more);
}

/// Bytes in the form of RunLength (ISO 32000-2, 7.4.5), each as it is.
QByteArray runs(const QByteArray &bytes)
{
    QByteArray packed;
    for (qsizetype i = 0; i < bytes.size(); i += 128) {
        const QByteArray part = bytes.mid(i, 128);
        packed.append(static_cast<char>(part.size() - 1)).append(part);
    }
    return packed + '\x80';
}

/// A document with metadata that say what they are for.
QByteArray withMetadata(const QByteArray &metadata)
{
    return PdfFixture::fromObjects({
        "<< /Type /Catalog /Pages 2 0 R /Metadata 4 0 R >>",
        "<< /Type /Pages /Kids [3 0 R] /Count 1 >>",
        "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 200 200] /Contents 5 0 R >>",
        PdfFixture::streamBody("/Type /Metadata /Subtype /XML", metadata),
        PdfFixture::streamBody({}, longContent()),
    });
}

QByteArray dataOf(QPDFObjectHandle stream)
{
    const auto data = stream.getStreamData(qpdf_dl_generalized);
    return QByteArray(reinterpret_cast<const char *>(data->getBuffer()),
                      static_cast<qsizetype>(data->getSize()));
}

} // namespace

/// What becomes of everything but pictures when a document is made smaller, and how it ends.
class TestCompressionStreams : public QObject
{
    Q_OBJECT

private slots:
    void streamsKeepTheirData_data();
    void streamsKeepTheirData();
    void predictedSamplesStay();
    void predictorsAreFound();
    void profilesKeepTheirData_data();
    void profilesKeepTheirData();
    void objectsArePackedTightly();
    void manyPagesArePacked();
    void metadataArePacked();
    void metadataOfArchivesStay();
    void equalStreamsAreKeptOnce();
    void annotationsStayApart();
    void needlessEntriesGo();
    void nothingToGainGivesTheSource();
    void signedDocumentsStay_data();
    void signedDocumentsStay();
    void protectionStays();
    void passwordIsRequired();
    void metadataOfProtectedFilesStay();
    void cancelLeavesNothing();
    void cancelEndsAPictureAtAnyTime();
    void sourceMayBeReplaced();
    void failuresAreTold();
    void damagedStreamsStay();
    void brokenFilesFail();
};

void TestCompressionStreams::streamsKeepTheirData_data()
{
    QTest::addColumn<QByteArray>("entries");
    QTest::addColumn<QByteArray>("data");
    const QByteArray content = longContent();
    QTest::newRow("plain") << QByteArray() << content;
    QTest::newRow("Flate") << QByteArray("/Filter /FlateDecode") << qCompress(content, 1).mid(4);
    QTest::newRow("hexadecimal") << QByteArray("/Filter /ASCIIHexDecode") << content.toHex() + '>';
    QTest::newRow("run length") << QByteArray("/Filter /RunLengthDecode") << runs(content);
    QTest::newRow("two filters") << QByteArray("/Filter [/ASCIIHexDecode /FlateDecode]")
                                 << qCompress(content, 1).mid(4).toHex() + '>';
}

void TestCompressionStreams::streamsKeepTheirData()
{
    QFETCH(QByteArray, entries);
    QFETCH(QByteArray, data);
    QByteArray document = PdfFixture::fromObjects({
        "<< /Type /Catalog /Pages 2 0 R >>",
        "<< /Type /Pages /Kids [3 0 R] /Count 1 >>",
        "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 200 200] /Contents 4 0 R >>",
        PdfFixture::streamBody(entries, data),
    });
    Result result(document);
    QCOMPARE(result.outcome().error, PdfOperationError::None);
    QCOMPARE(result.outcome().result, result.path());
    QVERIFY(result.bytes().size() < document.size());
    QPDFObjectHandle contents = result.page().getKey("/Contents");
    QCOMPARE(filterOf(contents), QByteArray("/FlateDecode"));
    QCOMPARE(dataOf(contents), longContent());
    QVERIFY(contents.getRawStreamData()->getSize() <
            static_cast<size_t>(qCompress(longContent(), 9).size() - 4));
    QCOMPARE(result.difference(), 0);
}

void TestCompressionStreams::predictedSamplesStay()
{
    // Samples that differ little from those above: a predictor gains much, and must be told.
    const QSize size(64, 300);
    QByteArray samples;
    for (int i = 0; i < size.width() * size.height(); ++i) {
        samples.append(static_cast<char>(i * 31 % 64 * 4 % 251 + i / 6400));
    }
    const QByteArray body =
        image(size,
              "/ColorSpace [/Indexed /DeviceGray 255 <" + photo({16, 16}, 1).toHex() +
                  ">] /BitsPerComponent 8 /Filter /FlateDecode /DecodeParms << /Predictor 12 "
                  "/Columns 64 >>",
              [&] {
                  QByteArray rows;
                  for (int y = 0; y < size.height(); ++y) {
                      rows.append('\x02');
                      for (int x = 0; x < size.width(); ++x) {
                          const int at = y * size.width() + x;
                          const int above = y > 0 ? samples.at(at - size.width()) : 0;
                          rows.append(static_cast<char>(samples.at(at) - above));
                      }
                  }
                  return qCompress(rows, 1).mid(4);
              }());
    Result result(pageWith(body, 72, {PdfFixture::streamBody({}, QByteArray(9000, 'x'))}));
    QVERIFY(!result.isCopy());
    QCOMPARE(samplesOf(result.image()), samples);
}

void TestCompressionStreams::predictorsAreFound()
{
    // Each row is the one above it, a little brighter, and nothing like itself; the page does not
    // show it, so that it stays exactly as it is.
    const QSize size(201, 120);
    QByteArray samples;
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            samples.append(static_cast<char>(x * x * 7919 % 251 + y));
        }
    }
    Result result(PdfFixture::onePage(longContent(), "/XObject << /X 5 0 R >>",
                                      {sampledImage(size, "/ColorSpace /DeviceGray", samples)}));
    QPDFObjectHandle parameters = result.image().getDict().getKey("/DecodeParms");
    QVERIFY(parameters.isDictionary());
    QCOMPARE(parameters.getKey("/Predictor").getIntValue(), 15LL);
    QVERIFY(result.image().getRawStreamData()->getSize() < 2000);
    QCOMPARE(samplesOf(result.image()), samples);
}

void TestCompressionStreams::profilesKeepTheirData_data()
{
    QTest::addColumn<int>("size");
    QTest::newRow("in rows") << 40 * 1024;
    QTest::newRow("in one row") << 4 * 10'007;
    QTest::newRow("of an odd length") << 40 * 1024 + 1;
}

void TestCompressionStreams::profilesKeepTheirData()
{
    QFETCH(int, size);
    // A table of colours in four bytes, each a little more than the one before it.
    QByteArray profile(size, '\0');
    for (int i = 0; i < size; ++i) {
        const int step = i / 4;
        const int slope = 3 + i % 4;
        profile[i] = static_cast<char>(step * slope + step * step % 7 + step % 5);
    }
    profile.replace(36, 4, "acsp");
    Result result(PdfFixture::onePage(longContent(), "/ColorSpace << /C [/ICCBased 5 0 R] >>",
                                      {PdfFixture::streamBody("/N 4", profile)}));
    QPDFObjectHandle packed =
        result.page().getKey("/Resources").getKey("/ColorSpace").getKey("/C").getArrayItem(1);
    QCOMPARE(dataOf(packed), profile);
    const bool isPredicted = packed.getDict().hasKey("/DecodeParms");
    QCOMPARE(isPredicted, size % 4 == 0);
    const qsizetype plainly = flate(profile).size();
    QVERIFY(!isPredicted ||
            packed.getRawStreamData()->getSize() < static_cast<size_t>(plainly * 3 / 4));
}

void TestCompressionStreams::objectsArePackedTightly()
{
    QList<QByteArray> notes;
    QByteArray list;
    for (int i = 0; i < 250; ++i) {
        notes += "<< /Type /Annot /Subtype /Text /Rect [0 0 9 9] /Contents (" +
                 QByteArray::number(i * 7919 % 1000) + " notes) /NM (n" + QByteArray::number(i) +
                 ") >>";
        list += QByteArray::number(5 + i) + " 0 R ";
    }
    const QByteArray document =
        PdfFixture::onePage(longContent(), {}, notes, "/Annots [" + list + ']');
    Result result(document);
    QCOMPARE(result.page().getKey("/Annots").getArrayNItems(), 250);
    for (int i = 0; i < 250; ++i) {
        QPDFObjectHandle note = result.page().getKey("/Annots").getArrayItem(i);
        QCOMPARE(note.getKey("/NM").getStringValue(), "n" + std::to_string(i));
    }
    // The same objects as QPDF packs them with all its effort.
    QPDF again;
    again.processFile(result.path().toUtf8().constData());
    QPDFWriter writer(again);
    Pl_Flate::setCompressionLevel(9);
    writer.setObjectStreamMode(qpdf_o_generate);
    writer.setOutputMemory();
    writer.write();
    const std::unique_ptr<Buffer> peer(writer.getBuffer());
    QVERIFY(static_cast<size_t>(result.bytes().size()) + 40 < peer->getSize());
    QVERIFY(again.getWarnings().empty());
}

void TestCompressionStreams::manyPagesArePacked()
{
    const QByteArray document = PdfFixture::pagesByNumber(1001);
    Result result(document);
    QVERIFY(result.bytes().contains("/ObjStm"));
    QCOMPARE(result.pdf().getAllPages().size(), size_t{1001});
}

void TestCompressionStreams::metadataArePacked()
{
    const QByteArray metadata = "<x>" + longContent() + "</x>";
    Result result(withMetadata(metadata));
    QPDFObjectHandle packed = result.pdf().getRoot().getKey("/Metadata");
    QCOMPARE(dataOf(packed), metadata);
    QCOMPARE(filterOf(packed), QByteArray("/FlateDecode"));
}

void TestCompressionStreams::metadataOfArchivesStay()
{
    const QByteArray metadata = "<x><pdfaid:part>1</pdfaid:part>" + longContent() + "</x>";
    Result result(withMetadata(metadata));
    QVERIFY(!result.isCopy());
    QPDFObjectHandle kept = result.pdf().getRoot().getKey("/Metadata");
    QCOMPARE(dataOf(kept), metadata);
    QVERIFY(!kept.getDict().hasKey("/Filter"));
    QVERIFY(!result.bytes().contains("/ObjStm"));
}

void TestCompressionStreams::equalStreamsAreKeptOnce()
{
    const QByteArray program = PdfFixture::streamBody("/Length1 9", longContent());
    const auto descriptor = [](int file) -> QByteArray {
        return "<< /Type /FontDescriptor /FontName /A /Flags 4 /FontFile2 " +
               QByteArray::number(file) + " 0 R >>";
    };
    const auto font = [](int number) -> QByteArray {
        return "<< /Type /Font /Subtype /TrueType /BaseFont /A /FontDescriptor " +
               QByteArray::number(number) + " 0 R >>";
    };
    const QByteArray document =
        PdfFixture::onePage("BT ET", "/Font << /A 9 0 R /B 10 0 R >>",
                            {program, program, descriptor(5), descriptor(6), font(7), font(8)});
    Result result(document);
    QPDFObjectHandle fonts = result.page().getKey("/Resources").getKey("/Font");
    QCOMPARE(fonts.getKeys().size(), size_t{2});
    QVERIFY(fonts.getKey("/A").getObjGen() == fonts.getKey("/B").getObjGen());
    QPDFObjectHandle file = fonts.getKey("/B").getKey("/FontDescriptor").getKey("/FontFile2");
    QCOMPARE(dataOf(file), longContent());
}

void TestCompressionStreams::annotationsStayApart()
{
    const QByteArray note = "<< /Type /Annot /Subtype /Text /Rect [0 0 9 9] /Contents (a) >>";
    const QByteArray document =
        PdfFixture::onePage(longContent(), {}, {note, note}, "/Annots [5 0 R 6 0 R]");
    Result result(document);
    QVERIFY(!result.isCopy());
    QPDFObjectHandle notes = result.page().getKey("/Annots");
    QCOMPARE(notes.getArrayNItems(), 2);
    QVERIFY(notes.getArrayItem(0).getObjGen() != notes.getArrayItem(1).getObjGen());
}

void TestCompressionStreams::needlessEntriesGo()
{
    const QByteArray thumbnail =
        image({10, 10}, "/ColorSpace /DeviceGray /BitsPerComponent 8", photo({10, 10}, 1));
    const QByteArray document =
        PdfFixture::onePage("/Thumb Do", "/XObject << /Thumb 7 0 R >>",
                            {thumbnail, "<< /Tool << /Private (secret) >> >>", jpegImage({50, 50})},
                            "/Thumb 5 0 R /PieceInfo 6 0 R /LastModified (D:2020)");
    Result result(document);
    QPDFObjectHandle page = result.page();
    QVERIFY(!page.hasKey("/Thumb"));
    QVERIFY(!page.hasKey("/PieceInfo"));
    QVERIFY(page.hasKey("/LastModified"));
    QVERIFY(page.getKey("/Resources").getKey("/XObject").hasKey("/Thumb"));
    QCOMPARE(result.images().size(), size_t{1});
}

void TestCompressionStreams::nothingToGainGivesTheSource()
{
    Result first(PdfFixture::onePage(longContent()));
    QVERIFY(!first.isCopy());
    Result second(first.bytes());
    QCOMPARE(second.outcome().error, PdfOperationError::None);
    QCOMPARE(second.outcome().result, second.path());
    QVERIFY(second.isCopy());
    QCOMPARE(second.folder().leftovers(), QStringList());
    // What is so small grows by being written anew.
    QVERIFY(Result(PdfFixture::onePage({})).isCopy());
}

void TestCompressionStreams::signedDocumentsStay_data()
{
    QTest::addColumn<QByteArray>("document");
    const QByteArray value =
        "<< /Type /Sig /Filter /Adobe.PPKLite /ByteRange [0 9 20 9] /Contents <00> >>";
    QTest::newRow("field") << signedDocument("/AcroForm << /Fields [5 0 R] >>", {},
                                             {"<< /FT /Sig /T (a) /V 6 0 R >>", value});
    QTest::newRow("field below another") << signedDocument(
        "/AcroForm << /Fields [5 0 R] >>", {},
        {"<< /T (a) /Kids [6 0 R] >>", "<< /FT /Sig /T (b) /Parent 5 0 R /V 7 0 R >>", value});
    QTest::newRow("on a page only") << signedDocument(
        {}, "/Annots [5 0 R]",
        {"<< /Subtype /Widget /FT /Sig /T (a) /V 6 0 R /Rect [0 0 9 9] >>", value});
    QTest::newRow("rights") << signedDocument("/Perms << /UR3 5 0 R >>", {}, {value});
}

void TestCompressionStreams::signedDocumentsStay()
{
    QFETCH(QByteArray, document);
    Result result(document);
    QCOMPARE(result.outcome().error, PdfOperationError::None);
    QVERIFY(result.isCopy());
    QVERIFY(!Result(signedDocument({}, {}, {})).isCopy());
}

void TestCompressionStreams::protectionStays()
{
    const QByteArray document =
        PdfFixture::encrypted(pageWith(jpegImage({600, 600})), {{}, "owner", 6});
    Result result(document);
    QCOMPARE(result.outcome().error, PdfOperationError::None);
    QVERIFY(result.bytes().size() < document.size());
    QVERIFY(result.pdf().isEncrypted());
    QCOMPARE(result.imageSize(), QSize(200, 200));
    QVERIFY(result.difference() < 8);
    QPDF asOwner;
    asOwner.processFile(result.path().toUtf8().constData(), "owner");
    QVERIFY(asOwner.ownerPasswordMatched());
}

void TestCompressionStreams::passwordIsRequired()
{
    Result result(PdfFixture::encrypted(pageWith(jpegImage({600, 600})), {"user", "owner", 6}));
    QCOMPARE(result.outcome().error, PdfOperationError::PasswordRequired);
    QVERIFY(!QFile::exists(result.path()));
    QCOMPARE(result.folder().leftovers(), QStringList());
}

void TestCompressionStreams::metadataOfProtectedFilesStay()
{
    const QByteArray document = PdfFixture::encrypted(
        PdfFixture::fromObjects({
            "<< /Type /Catalog /Pages 2 0 R /Metadata 4 0 R >>",
            "<< /Type /Pages /Kids [3 0 R] /Count 1 >>",
            "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 200 200] /Contents 5 0 R >>",
            PdfFixture::streamBody("/Type /Metadata /Subtype /XML", "<x>" + longContent() + "</x>"),
            PdfFixture::streamBody({}, longContent()),
        }),
        {{}, "owner", 6});
    Result result(document);
    QCOMPARE(dataOf(result.pdf().getRoot().getKey("/Metadata")), "<x>" + longContent() + "</x>");
}

void TestCompressionStreams::cancelLeavesNothing()
{
    Folder folder;
    const QString source = folder.add(u"source.pdf"_s, PdfFixture::pagesByNumber(3));
    const PdfCancelFlag cancel;
    cancel.set();
    const PdfOperationOutcome outcome = PdfCompression::compress(
        source, kBasic, PdfPlacement::replacing(folder.path(u"result.pdf"_s)), cancel);
    QCOMPARE(outcome.error, PdfOperationError::Cancelled);
    QVERIFY(!QFile::exists(folder.path(u"result.pdf"_s)));
    QCOMPARE(folder.leftovers(), QStringList());
}

void TestCompressionStreams::cancelEndsAPictureAtAnyTime()
{
    const QByteArray samples = photo({600, 600}, 3);
    pdfcore::Raster raster;
    raster.width = 600;
    raster.height = 600;
    raster.components = 3;
    raster.samples.assign(samples.begin(), samples.end());
    pdfcore::JpegSettings settings;
    settings.quality = 100;
    const PdfCancelFlag never;
    QElapsedTimer timer;
    timer.start();
    const qsizetype whole = pdfcore::newJpeg(raster, settings, never).size();
    const std::chrono::microseconds time(timer.nsecsElapsed() / 1000);
    QVERIFY(whole > 200'000);
    constexpr int kTries = 60;
    int ended = 0;
    for (int i = 0; i < kTries; ++i) {
        const PdfCancelFlag cancel;
        std::thread other([&] {
            std::this_thread::sleep_for(time * i / kTries);
            cancel.set();
        });
        const QByteArray jpeg = pdfcore::newJpeg(raster, settings, cancel);
        other.join();
        QVERIFY(jpeg.isEmpty() || jpeg.size() == whole);
        ended += jpeg.isEmpty() ? 1 : 0;
    }
    QVERIFY(ended > 0);
}

void TestCompressionStreams::sourceMayBeReplaced()
{
    Folder folder;
    const QByteArray document = PdfFixture::onePage(longContent());
    const QString source = folder.add(u"source.pdf"_s, document);
    for (int i = 0; i < 2; ++i) {
        const PdfOperationOutcome outcome = PdfCompression::compress(
            source, kBasic, PdfPlacement::replacing(source), PdfCancelFlag());
        QCOMPARE(outcome.error, PdfOperationError::None);
        QCOMPARE(outcome.result, source);
        QVERIFY(contentOf(source).size() < document.size());
    }
    QCOMPARE(folder.leftovers(), QStringList());
}

void TestCompressionStreams::failuresAreTold()
{
    Folder folder;
    const QString source = folder.add(u"source.pdf"_s, PdfFixture::onePage(longContent()));
    const auto errorOf = [](const QString &from, const QString &to) {
        const PdfOperationOutcome outcome =
            PdfCompression::compress(from, kBasic, PdfPlacement::replacing(to), PdfCancelFlag());
        return outcome.error;
    };
    QCOMPARE(errorOf(folder.path(u"none.pdf"_s), folder.path(u"a.pdf"_s)),
             PdfOperationError::FileNotFound);
    QCOMPARE(errorOf(source, folder.path(u"none/a.pdf"_s)), PdfOperationError::WriteFailed);
    QCOMPARE(errorOf(folder.add(u"text.pdf"_s, "no PDF"), folder.path(u"a.pdf"_s)),
             PdfOperationError::InvalidDocument);
    QVERIFY(!QFile::exists(folder.path(u"a.pdf"_s)));
    QVERIFY(!QFile::exists(folder.path(u"none"_s)));
    const QString kept = folder.add(u"kept.pdf"_s, "kept");
    const PdfOperationOutcome outcome = PdfCompression::compress(
        source, kBasic,
        PdfPlacement::firstFree([&](int i) { return i == 0 ? kept : folder.path(u"b.pdf"_s); }),
        PdfCancelFlag());
    QCOMPARE(outcome.result, folder.path(u"b.pdf"_s));
    QCOMPARE(contentOf(kept), QByteArray("kept"));
}

void TestCompressionStreams::damagedStreamsStay()
{
    const QByteArray packed = qCompress(longContent(), 9).mid(4);
    const QByteArray cut = packed.left(packed.size() / 2);
    Result result(PdfFixture::onePage(
        longContent(), {}, {PdfFixture::streamBody("/Filter /FlateDecode", cut)}, "/Mine 5 0 R"));
    QVERIFY(!result.isCopy());
    const auto raw = result.page().getKey("/Mine").getRawStreamData();
    QCOMPARE(QByteArray(reinterpret_cast<const char *>(raw->getBuffer()),
                        static_cast<qsizetype>(raw->getSize())),
             cut);
}

void TestCompressionStreams::brokenFilesFail()
{
    // Half of a file is what can be shown of it, or nothing; never something else.
    const QByteArray whole = PdfFixture::onePage(longContent());
    Result result(whole.left(whole.size() * 2 / 3));
    const bool isEnded = result.outcome().error == PdfOperationError::None ||
                         result.outcome().error == PdfOperationError::InvalidDocument;
    QVERIFY(isEnded);
    QCOMPARE(QFile::exists(result.path()), result.outcome().error == PdfOperationError::None);
}

QTEST_GUILESS_MAIN(TestCompressionStreams)
#include "tst_compression_streams.moc"
