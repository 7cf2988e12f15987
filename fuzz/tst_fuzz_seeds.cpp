// SPDX-License-Identifier: AGPL-3.0-or-later
#include "fuzz/fuzz_engine.h"

#include <QDir>
#include <QTest>

/// Replays the seeds of the fuzzers. None may end the process or take long.
class TestFuzzSeeds : public QObject
{
    Q_OBJECT

private slots:
    void seeds_data();
    void seeds();
};

void TestFuzzSeeds::seeds_data()
{
    QTest::addColumn<QString>("path");
    const QDir folder(QStringLiteral(QUILLORA_FUZZ_SEEDS));
    const QFileInfoList files = folder.entryInfoList(QDir::Files, QDir::Name);
    QVERIFY(!files.isEmpty());
    for (const QFileInfo &file : files) {
        QTest::newRow(qPrintable(file.fileName())) << file.filePath();
    }
}

void TestFuzzSeeds::seeds()
{
    QFETCH(QString, path);
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    FuzzEngine::run(file.readAll());
}

QTEST_GUILESS_MAIN(TestFuzzSeeds)
#include "tst_fuzz_seeds.moc"
