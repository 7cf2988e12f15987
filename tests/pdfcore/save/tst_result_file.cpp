// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/save/result_file.h"

#include "tests/pdfcore/engine_calls.h"
#include "tests/support/pdf_fixture.h"

#include <QFile>
#include <QTest>

using namespace EngineCalls;
using namespace Qt::StringLiterals;

using pdfcore::checkResult;
using pdfcore::EngineError;

namespace {

/// The content with one of its words replaced by another one of the same length.
QByteArray withWord(QByteArray content, const QByteArray &word, const QByteArray &other)
{
    const qsizetype place = content.lastIndexOf(word);
    return place < 0 ? QByteArray() : content.replace(place, word.size(), other);
}

} // namespace

/// What is looked at before a file that was written takes its place.
class TestResultFile : public QObject
{
    Q_OBJECT

private slots:
    void soundFilePasses();
    void pagesAreCounted();
    void damagedFileFails_data();
    void damagedFileFails();
    void fileThatNeedsARepairFails_data();
    void fileThatNeedsARepairFails();
    void protectedFileOpensWithItsPasswordOnly();
    void fileThatIsNotThereFails();

private:
    Folder m_folder;
};

void TestResultFile::soundFilePasses()
{
    for (const int count : {1, 12}) {
        const QString path = m_folder.add(u"sound.pdf"_s, PdfFixture::pagesByNumber(count));
        const EngineError outcome = checkResult(path, {}, count);
        QVERIFY2(outcome.code == PdfBackendError::None, qPrintable(outcome.message));
        // The file is about to be moved.
        QVERIFY(QFile::rename(path, m_folder.path(u"moved %1.pdf"_s.arg(count))));
    }
}

void TestResultFile::pagesAreCounted()
{
    const QString path = m_folder.add(u"three.pdf"_s, PdfFixture::pagesByNumber(3));
    for (const int wrong : {2, 4}) {
        const EngineError outcome = checkResult(path, {}, wrong);
        QCOMPARE(outcome.code, PdfBackendError::WriteFailed);
        QVERIFY2(outcome.message.contains(u'3') && outcome.message.contains(QString::number(wrong)),
                 qPrintable(outcome.message));
    }
}

void TestResultFile::damagedFileFails_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("no PDF") << QByteArray(5000, 'x');
    QTest::newRow("zeros") << QByteArray(5000, '\0');
    QTest::newRow("no pages") << PdfFixture::fromObjects({"<< /Type /Catalog >>"});
}

void TestResultFile::damagedFileFails()
{
    QFETCH(const QByteArray, content);
    const EngineError outcome = checkResult(m_folder.add(u"damaged.pdf"_s, content), {}, 3);
    QCOMPARE(outcome.code, PdfBackendError::WriteFailed);
    QVERIFY(!outcome.message.isEmpty());
}

void TestResultFile::fileThatNeedsARepairFails_data()
{
    QTest::addColumn<QByteArray>("content");
    const QByteArray sound = PdfFixture::pagesByNumber(3);
    const qsizetype start = sound.lastIndexOf("startxref");
    QTest::newRow("without its end") << sound.first(start);
    QTest::newRow("without its table") << sound.first(sound.lastIndexOf("\nxref") + 1);
    QTest::newRow("table elsewhere") << sound.first(start) + "startxref\n7\n%%EOF\n";
    QTest::newRow("table behind the end") << sound.first(start) + "startxref\n9999999\n%%EOF\n";
    QTest::newRow("table under another name") << withWord(sound, "\nxref", "\nxxxx");
    QTest::newRow("trailer under another name") << withWord(sound, "trailer", "xxxxxxx");
    QTest::newRow("trailer without a size") << withWord(sound, "/Size", "/Sise");
}

void TestResultFile::fileThatNeedsARepairFails()
{
    QFETCH(const QByteArray, content);
    QVERIFY(!content.isEmpty());
    const QString path = m_folder.add(u"repaired.pdf"_s, content);
    // Whoever opens it sees its pages all the same.
    QCOMPARE(inspect(path).pageSizes.size(), 3);
    const EngineError outcome = checkResult(path, {}, 3);
    QCOMPARE(outcome.code, PdfBackendError::WriteFailed);
    QVERIFY(!outcome.message.isEmpty());
}

void TestResultFile::protectedFileOpensWithItsPasswordOnly()
{
    const QString path = m_folder.add(
        u"protected.pdf"_s, PdfFixture::encrypted(PdfFixture::pagesByNumber(2), {"geheim", "own"}));
    QCOMPARE(checkResult(path, u"geheim"_s, 2).code, PdfBackendError::None);
    for (const QString &wrong : {QString(), u"Geheim"_s}) {
        QCOMPARE(checkResult(path, wrong, 2).code, PdfBackendError::WriteFailed);
    }
}

void TestResultFile::fileThatIsNotThereFails()
{
    const EngineError outcome = checkResult(m_folder.path(u"absent.pdf"_s), {}, 1);
    QCOMPARE(outcome.code, PdfBackendError::WriteFailed);
    QVERIFY(!outcome.message.isEmpty());
}

QTEST_GUILESS_MAIN(TestResultFile)
#include "tst_result_file.moc"
