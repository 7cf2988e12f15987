// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tools/common/size_text.h"

#include <QTest>

/// Sizes of files as texts.
class TestSizeText final : public QObject
{
    Q_OBJECT

private slots:
    void unitsChangeAtPowersOf1024_data();
    void unitsChangeAtPowersOf1024();
};

void TestSizeText::unitsChangeAtPowersOf1024_data()
{
    QTest::addColumn<qint64>("bytes");
    QTest::addColumn<QString>("text");
    const auto row = [](qint64 bytes, const char *text) {
        QTest::addRow("%lld", static_cast<long long>(bytes)) << bytes << QString::fromLatin1(text);
    };
    row(0, "0 B");
    row(1, "1 B");
    row(1023, "1023 B");
    row(1024, "1 KB");
    row(1535, "1 KB");
    row(1537, "2 KB");
    row(1048575, "1024 KB");
    row(1048576, "1.00 MB");
    row(1572864, "1.50 MB");
    row(12345678, "11.77 MB");
    row(1073741823, "1024.00 MB");
    row(1073741824, "1.00 GB");
    row(2684354560, "2.50 GB");
    row(5497558138880, "5120.00 GB");
}

void TestSizeText::unitsChangeAtPowersOf1024()
{
    QFETCH(qint64, bytes);
    QFETCH(QString, text);
    QCOMPARE(sizeText(bytes), text);
}

QTEST_APPLESS_MAIN(TestSizeText)
#include "tst_size_text.moc"
