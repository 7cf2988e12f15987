// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/qpdf/qpdf_io.h"
#include "tests/pdfcore/engine_calls.h"
#include "tests/support/pdf_fixture.h"

#include <QBuffer>
#include <QRandomGenerator>

#include <array>
#include <atomic>
#include <functional>
#include <memory>
#include <stdexcept>

#include <qpdf/BufferInputSource.hh>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFWriter.hh>

using namespace EngineCalls;
using namespace Qt::StringLiterals;

namespace {

/// Bytes that the input reads from its file at a time; what happens at their borders is tested.
constexpr int kChunk = 64 * 1024;

/// Bytes with lines of all lengths and all kinds of line ends.
QByteArray randomLines(int size, quint32 seed)
{
    QRandomGenerator random(seed);
    QByteArray bytes;
    while (bytes.size() < size) {
        const int length = random.bounded(10) == 0 ? random.bounded(40'000) : random.bounded(60);
        for (int i = 0; i < length; ++i) {
            bytes.append(static_cast<char>(random.bounded(256)));
        }
        for (int i = random.bounded(4); i > 0; --i) {
            bytes.append(random.bounded(2) == 0 ? '\n' : '\r');
        }
    }
    bytes.truncate(size);
    return bytes;
}

/// A device that takes so many bytes and no more.
class SmallDevice : public QIODevice
{
public:
    explicit SmallDevice(qint64 room)
        : m_room(room)
    {
        open(QIODevice::WriteOnly | QIODevice::Unbuffered);
    }

protected:
    qint64 readData(char * /*data*/, qint64 /*size*/) override { return -1; }

    qint64 writeData(const char * /*data*/, qint64 size) override
    {
        if (m_room <= 0) {
            setErrorString(u"no room"_s);
            return -1;
        }
        const qint64 taken = qMin(size, m_room);
        m_room -= taken;
        return taken;
    }

private:
    qint64 m_room;
};

/// Sets a flag at its n-th write.
class CancellingDevice : public QIODevice
{
public:
    CancellingDevice(int last, std::atomic<bool> &cancelled)
        : m_last(last)
        , m_cancelled(cancelled)
    {
        open(QIODevice::WriteOnly | QIODevice::Unbuffered);
    }

    [[nodiscard]] int writes() const { return m_writes; }

protected:
    qint64 readData(char * /*data*/, qint64 /*size*/) override { return -1; }

    qint64 writeData(const char * /*data*/, qint64 size) override
    {
        m_cancelled = ++m_writes == m_last;
        return size;
    }

private:
    int m_last;
    std::atomic<bool> &m_cancelled;
    int m_writes = 0;
};

/// Writes a document; the reason why that failed, empty when it did not.
QString written(const QByteArray &document, QIODevice &device,
                const std::function<void(QPDFWriter &)> &prepare = {},
                const std::atomic<bool> *cancelled = nullptr)
{
    QPDF pdf;
    pdf.processMemoryFile("fixture", document.constData(), static_cast<size_t>(document.size()));
    pdfcore::QDeviceOutput output(device, cancelled);
    QPDFWriter writer(pdf);
    writer.setStaticID(true);
    if (prepare) {
        prepare(writer);
    }
    try {
        pdfcore::writeQpdf(writer, output);
    } catch (const std::runtime_error &error) {
        return output.hasFailed() ? QString::fromUtf8(error.what()) : QString();
    }
    return {};
}

void protect(QPDFWriter &writer)
{
    writer.setR6EncryptionParameters("user", "owner", true, true, true, true, true, true,
                                     qpdf_r3p_full, true);
    writer.setObjectStreamMode(qpdf_o_generate);
}

} // namespace

/// The engine's own input and output for QPDF.
class TestQpdfIo : public QObject
{
    Q_OBJECT

private slots:
    void missingFileThrows();
    void nameIsThePath();
    void behavesLikeTheBufferInput_data();
    void behavesLikeTheBufferInput();
    void readsAcrossChunks();
    void readingAtTheEndGivesNothing();
    void seekingBeyondTheEndAndBack();
    void seekingBeforeTheBeginningThrows();
    void endOfLineAcrossAChunkBorder_data();
    void endOfLineAcrossAChunkBorder();
    void lastLineWithoutEnd();
    void unreadGoesBackOneByte();
    void emptyFile();
    void outputTakesEverything();
    void outputThatIsRefusedThrows_data();
    void outputThatIsRefusedThrows();
    void outputMayEndInsideOfAnEncryptedStream();
    void writingStopsWhenCancelled_data();
    void writingStopsWhenCancelled();
};

void TestQpdfIo::missingFileThrows()
{
    const Folder folder;
    QVERIFY_THROWS_EXCEPTION(std::runtime_error,
                             pdfcore::QFileInput(folder.path(u"absent"_s)).rewind());
    QVERIFY_THROWS_EXCEPTION(std::runtime_error, pdfcore::QFileInput(folder.path()).rewind());
}

void TestQpdfIo::nameIsThePath()
{
    Folder folder;
    const QString path = folder.add(u"文件.pdf"_s, "x");
    QCOMPARE(QString::fromStdString(pdfcore::QFileInput(path).getName()), path);
}

void TestQpdfIo::behavesLikeTheBufferInput_data()
{
    QTest::addColumn<int>("size");
    QTest::newRow("small") << 900;
    QTest::newRow("one chunk") << kChunk;
    QTest::newRow("one chunk and a byte") << kChunk + 1;
    QTest::newRow("several chunks") << 5 * kChunk + 321;
}

void TestQpdfIo::behavesLikeTheBufferInput()
{
    QFETCH(const int, size);
    constexpr int kSteps = 4000;
    Folder folder;
    const QByteArray bytes = randomLines(size, 11);
    pdfcore::QFileInput file(folder.add(u"bytes"_s, bytes));
    BufferInputSource buffer("bytes", bytes.toStdString());
    QRandomGenerator random(5);
    std::array<char, 3000> fromFile{};
    std::array<char, 3000> fromBuffer{};
    for (int step = 0; step < kSteps; ++step) {
        switch (random.bounded(6)) {
        case 0:
        case 1: {
            const auto length = static_cast<size_t>(random.bounded(1, 3000));
            const size_t got = file.read(fromFile.data(), length);
            QCOMPARE(got, buffer.read(fromBuffer.data(), length));
            QVERIFY(std::equal(fromFile.begin(), fromFile.begin() + got, fromBuffer.begin()));
            QCOMPARE(file.getLastOffset(), buffer.getLastOffset());
            // Only what was read can be unread.
            if (got > 0 && random.bounded(2) == 0) {
                file.unreadCh(fromFile.at(got - 1));
                buffer.unreadCh(fromBuffer.at(got - 1));
            }
            break;
        }
        case 2:
        case 3:
            QCOMPARE(file.findAndSkipNextEOL(), buffer.findAndSkipNextEOL());
            break;
        case 4: {
            const int target = random.bounded(size);
            file.seek(target, SEEK_SET);
            buffer.seek(target, SEEK_SET);
            break;
        }
        default: {
            const int back = random.bounded(size);
            file.seek(-back, SEEK_END);
            buffer.seek(-back, SEEK_END);
            const auto rest = static_cast<int>(size - buffer.tell());
            const int forward = random.bounded(-qMin(size - rest, 500), qMin(rest, 500) + 1);
            file.seek(forward, SEEK_CUR);
            buffer.seek(forward, SEEK_CUR);
            break;
        }
        }
        QCOMPARE(file.tell(), buffer.tell());
    }
    file.rewind();
    QCOMPARE(file.tell(), 0);
}

void TestQpdfIo::readsAcrossChunks()
{
    Folder folder;
    const QByteArray bytes = randomLines(3 * kChunk + 17, 3);
    pdfcore::QFileInput file(folder.add(u"bytes"_s, bytes));
    QByteArray read(bytes.size() + 100, '\0');
    file.seek(5, SEEK_SET);
    const size_t got = file.read(read.data(), static_cast<size_t>(read.size()));
    QCOMPARE(got, static_cast<size_t>(bytes.size() - 5));
    QVERIFY(read.startsWith(bytes.mid(5)));
    QCOMPARE(file.tell(), bytes.size());
    QCOMPARE(file.getLastOffset(), 5);
}

void TestQpdfIo::readingAtTheEndGivesNothing()
{
    Folder folder;
    pdfcore::QFileInput file(folder.add(u"bytes"_s, "abc"));
    char byte = 'x';
    file.seek(0, SEEK_END);
    QCOMPARE(file.tell(), 3);
    QCOMPARE(file.read(&byte, 1), 0U);
    QCOMPARE(byte, 'x');
    QCOMPARE(file.findAndSkipNextEOL(), 3);
}

void TestQpdfIo::seekingBeyondTheEndAndBack()
{
    Folder folder;
    pdfcore::QFileInput file(folder.add(u"bytes"_s, "abc"));
    char byte = 'x';
    for (const qpdf_offset_t offset : {qpdf_offset_t{4}, qpdf_offset_t{1} << 40}) {
        file.seek(offset, SEEK_SET);
        QCOMPARE(file.read(&byte, 1), 0U);
        file.seek(10, SEEK_END);
        QCOMPARE(file.read(&byte, 1), 0U);
        file.findAndSkipNextEOL();
        file.seek(1, SEEK_SET);
        QCOMPARE(file.read(&byte, 1), 1U);
        QCOMPARE(byte, 'b');
    }
}

void TestQpdfIo::seekingBeforeTheBeginningThrows()
{
    Folder folder;
    pdfcore::QFileInput file(folder.add(u"bytes"_s, "abc"));
    QVERIFY_THROWS_EXCEPTION(std::runtime_error, file.seek(-1, SEEK_SET));
    QVERIFY_THROWS_EXCEPTION(std::runtime_error, file.seek(-4, SEEK_END));
    QVERIFY_THROWS_EXCEPTION(std::runtime_error, file.seek(-1, SEEK_CUR));
    file.seek(-3, SEEK_END);
    char byte = 'x';
    QCOMPARE(file.read(&byte, 1), 1U);
    QCOMPARE(byte, 'a');
}

void TestQpdfIo::endOfLineAcrossAChunkBorder_data()
{
    QTest::addColumn<int>("position");
    QTest::addColumn<QByteArray>("end");
    for (int shift = -3; shift <= 1; ++shift) {
        for (const char *end : {"\n", "\r", "\r\n", "\n\r\n\n"}) {
            QTest::addRow("%d bytes at %d", int(qstrlen(end)), shift)
                << kChunk + shift << QByteArray(end);
        }
    }
}

void TestQpdfIo::endOfLineAcrossAChunkBorder()
{
    QFETCH(const int, position);
    QFETCH(const QByteArray, end);
    Folder folder;
    pdfcore::QFileInput file(
        folder.add(u"bytes"_s, QByteArray(position, 'a') + end + QByteArray(100, 'b')));
    QCOMPARE(file.findAndSkipNextEOL(), position);
    QCOMPARE(file.tell(), position + end.size());
    char byte = 'x';
    QCOMPARE(file.read(&byte, 1), 1U);
    QCOMPARE(byte, 'b');
}

void TestQpdfIo::lastLineWithoutEnd()
{
    Folder folder;
    pdfcore::QFileInput file(folder.add(u"bytes"_s, "first\nlast"));
    QCOMPARE(file.findAndSkipNextEOL(), 5);
    QCOMPARE(file.tell(), 6);
    QCOMPARE(file.findAndSkipNextEOL(), 10);
    QCOMPARE(file.tell(), 10);
}

void TestQpdfIo::unreadGoesBackOneByte()
{
    Folder folder;
    pdfcore::QFileInput file(folder.add(u"bytes"_s, QByteArray(kChunk, 'a') + "bc"));
    char byte = 'x';
    file.seek(kChunk, SEEK_SET);
    QCOMPARE(file.read(&byte, 1), 1U);
    file.unreadCh(byte);
    QCOMPARE(file.tell(), kChunk);
    QCOMPARE(file.read(&byte, 1), 1U);
    QCOMPARE(byte, 'b');
    file.unreadCh(byte);
    file.unreadCh('a');
    QCOMPARE(file.read(&byte, 1), 1U);
    QCOMPARE(byte, 'a');
}

void TestQpdfIo::emptyFile()
{
    Folder folder;
    pdfcore::QFileInput file(folder.add(u"bytes"_s, {}));
    char byte = 'x';
    QCOMPARE(file.read(&byte, 1), 0U);
    QCOMPARE(file.findAndSkipNextEOL(), 0);
    file.seek(0, SEEK_END);
    QCOMPARE(file.tell(), 0);
}

void TestQpdfIo::outputTakesEverything()
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    QVERIFY(buffer.open(QIODevice::WriteOnly));
    pdfcore::QDeviceOutput output(buffer);
    output.writeString("one ");
    output.write(nullptr, 0);
    output.writeString("two");
    output.finish();
    QCOMPARE(bytes, "one two");
    QVERIFY(!output.hasFailed());
}

void TestQpdfIo::outputThatIsRefusedThrows_data()
{
    QTest::addColumn<int>("room");
    QTest::newRow("nothing") << 0;
    QTest::newRow("the header") << 9;
    QTest::newRow("a part") << 100;
    QTest::newRow("all but one byte") << -1;
}

void TestQpdfIo::outputThatIsRefusedThrows()
{
    QFETCH(int, room);
    const QByteArray document = PdfFixture::pagesByNumber(3);
    QBuffer whole;
    QVERIFY(whole.open(QIODevice::WriteOnly));
    QCOMPARE(written(document, whole), QString());
    SmallDevice device(room < 0 ? static_cast<int>(whole.size()) - 1 : room);
    const QString reason = written(document, device);
    QCOMPARE(reason, u"no room"_s);
}

void TestQpdfIo::outputMayEndInsideOfAnEncryptedStream()
{
    // What is encrypted or packed reaches the device when QPDF puts its filters away.
    const QByteArray document = PdfFixture::pagesByNumber(3);
    QBuffer whole;
    QVERIFY(whole.open(QIODevice::WriteOnly));
    QCOMPARE(written(document, whole, protect), QString());
    for (int room = 0; room < whole.size(); room += 5) {
        SmallDevice device(room);
        QVERIFY2(!written(document, device, protect).isEmpty(), qPrintable(QString::number(room)));
    }
}

void TestQpdfIo::writingStopsWhenCancelled_data()
{
    QTest::addColumn<int>("writes");
    QTest::newRow("before it begins") << 0;
    QTest::newRow("at the header") << 1;
    QTest::newRow("in the middle") << 200;
    QTest::newRow("at the end") << -1;
}

void TestQpdfIo::writingStopsWhenCancelled()
{
    QFETCH(int, writes);
    const QByteArray document = PdfFixture::pagesByNumber(40);
    std::atomic<bool> cancelled = false;
    CancellingDevice whole(-1, cancelled);
    QCOMPARE(written(document, whole, protect, &cancelled), QString());
    CancellingDevice device(writes < 0 ? whole.writes() : writes, cancelled);
    cancelled = writes == 0;
    const QString reason = written(document, device, protect, &cancelled);
    QCOMPARE(reason, u"It was cancelled."_s);
    // Nothing reaches the device any more.
    QCOMPARE(device.writes(), writes < 0 ? whole.writes() : writes);
}

QTEST_GUILESS_MAIN(TestQpdfIo)
#include "tst_qpdf_io.moc"
