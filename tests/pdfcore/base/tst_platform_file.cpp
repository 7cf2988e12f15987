// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/base/platform_file.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

bool write(const QString &path, const QByteArray &content)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

/// What the engine asks of the system beyond Qt.
class TestPlatformFile : public QObject
{
    Q_OBJECT

private slots:
    void extendedWindowsPath_data();
    void extendedWindowsPath();
    void replacingTakesThePlaceOfTheOther();
    void replacingWhatIsNotThereFails();
    void replacingAFolderLeavesBothAlone();

private:
    QTemporaryDir m_folder;
};

void TestPlatformFile::extendedWindowsPath_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("extended");
    QTest::newRow("drive") << u"C:/Users/李/文件.pdf"_s << uR"(\\?\C:\Users\李\文件.pdf)"_s;
    QTest::newRow("native drive") << uR"(C:\a b.pdf)"_s << uR"(\\?\C:\a b.pdf)"_s;
    QTest::newRow("share") << u"//server/share/a.pdf"_s << uR"(\\?\UNC\server\share\a.pdf)"_s;
    QTest::newRow("native share") << uR"(\\server\share\a.pdf)"_s
                                  << uR"(\\?\UNC\server\share\a.pdf)"_s;
    QTest::newRow("extended") << u"//?/C:/a.pdf"_s << uR"(\\?\C:\a.pdf)"_s;
    QTest::newRow("extended share")
        << uR"(\\?\UNC\server\share\a.pdf)"_s << uR"(\\?\UNC\server\share\a.pdf)"_s;
}

void TestPlatformFile::extendedWindowsPath()
{
    QFETCH(const QString, path);
    QFETCH(const QString, extended);
    QCOMPARE(pdfcore::extendedWindowsPath(path), extended);
}

void TestPlatformFile::replacingTakesThePlaceOfTheOther()
{
    const QString from = m_folder.filePath(u"from.tmp"_s);
    const QString to = m_folder.filePath(u"到 ü.pdf"_s);
    QString reason;
    for (const char *content : {"first", "second"}) {
        QVERIFY(write(from, content));
        QVERIFY2(pdfcore::replaceFile(from, to, &reason), qPrintable(reason));
        QCOMPARE(contentOf(to), content);
        QVERIFY(!QFile::exists(from));
    }
}

void TestPlatformFile::replacingWhatIsNotThereFails()
{
    const QString to = m_folder.filePath(u"kept.pdf"_s);
    QVERIFY(write(to, "kept"));
    QString reason;
    QVERIFY(!pdfcore::replaceFile(m_folder.filePath(u"absent.tmp"_s), to, &reason));
    QVERIFY(!reason.isEmpty());
    QCOMPARE(contentOf(to), "kept");
}

void TestPlatformFile::replacingAFolderLeavesBothAlone()
{
    const QString from = m_folder.filePath(u"file.tmp"_s);
    const QString to = m_folder.filePath(u"folder"_s);
    QVERIFY(write(from, "new"));
    QVERIFY(QDir().mkpath(to + u"/inside"_s));
    QString reason;
    QVERIFY(!pdfcore::replaceFile(from, to, &reason));
    QVERIFY(!reason.isEmpty());
    QCOMPARE(contentOf(from), "new");
    QVERIFY(QDir(to + u"/inside"_s).exists());
}

QTEST_GUILESS_MAIN(TestPlatformFile)
#include "tst_platform_file.moc"
