// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/base/atomic_file.h"
#include "tests/support/full_disk.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;
using pdfcore::AtomicFile;

namespace {

QStringList namesIn(const QString &folder)
{
    return QDir(folder).entryList(QDir::Files | QDir::Hidden | QDir::System, QDir::Name);
}

bool writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("unreadable");
}

} // namespace

/// Files that get their place in one step.
class TestAtomicFile final : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }
    void nothingIsThereBeforeTheEnd();
    void whatIsNotCommittedIsRemoved();
    void fullDiskLeavesNothing_data();
    void fullDiskLeavesNothing();

private:
    [[nodiscard]] QString target() const { return m_folder->filePath(u"target.bin"_s); }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void TestAtomicFile::nothingIsThereBeforeTheEnd()
{
    QString reason;
    AtomicFile file(target());
    QVERIFY(file.open(&reason));
    QCOMPARE(file.device().write("new"), 3);
    QVERIFY(file.finishWriting(&reason));
    QVERIFY(!QFile::exists(target()));
    QVERIFY(file.commit(&reason));
    QCOMPARE(contentOf(target()), "new");
    QCOMPARE(namesIn(m_folder->path()), QStringList{u"target.bin"_s});
}

void TestAtomicFile::whatIsNotCommittedIsRemoved()
{
    QVERIFY(writeFile(target(), "old"));
    {
        QString reason;
        AtomicFile file(target());
        QVERIFY(file.open(&reason));
        QCOMPARE(file.device().write("new"), 3);
        QCOMPARE(namesIn(m_folder->path()).size(), 2);
    }
    QCOMPARE(namesIn(m_folder->path()), QStringList{u"target.bin"_s});
    QCOMPARE(contentOf(target()), "old");
}

void TestAtomicFile::fullDiskLeavesNothing_data()
{
    QTest::addColumn<AtomicFile::Existing>("existing");
    QTest::addColumn<int>("bytes");
    QTest::newRow("replacing, less than a buffer") << AtomicFile::Existing::Replace << 9'000;
    QTest::newRow("replacing, much") << AtomicFile::Existing::Replace << 300'000;
    QTest::newRow("beside, less than a buffer") << AtomicFile::Existing::Keep << 9'000;
    QTest::newRow("beside, much") << AtomicFile::Existing::Keep << 300'000;
}

void TestAtomicFile::fullDiskLeavesNothing()
{
    QFETCH(AtomicFile::Existing, existing);
    QFETCH(int, bytes);
    QVERIFY(writeFile(target(), "old"));
    {
        const FullDisk disk(5'000);
        if (!disk.isActive()) {
            QSKIP("The system does not limit the size of files.");
        }
        QString reason;
        AtomicFile file(target(), AtomicFile::Flush::First, existing);
        QVERIFY(file.open(&reason));
        const QByteArray piece(1'000, 'x');
        for (int written = 0; written < bytes; written += 1'000) {
            file.device().write(piece);
        }
        QVERIFY(!file.finishWriting(&reason));
        QVERIFY(!reason.isEmpty());
    }
    QCOMPARE(namesIn(m_folder->path()), QStringList{u"target.bin"_s});
    QCOMPARE(contentOf(target()), "old");
}

QTEST_GUILESS_MAIN(TestAtomicFile)
#include "tst_atomic_file.moc"
