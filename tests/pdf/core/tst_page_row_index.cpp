// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/core/page_row_index.h"

#include <QTest>

namespace {

GapList<PdfPageRecord> pagesWithIds(const QList<PdfPageId> &ids)
{
    QList<PdfPageRecord> records;
    for (const PdfPageId id : ids) {
        PdfPageRecord record;
        record.id = id;
        records.append(record);
    }
    return GapList<PdfPageRecord>(records);
}

QList<PdfPageId> idsUpTo(PdfPageId last)
{
    QList<PdfPageId> ids;
    for (PdfPageId id = 1; id <= last; ++id) {
        ids.append(id);
    }
    return ids;
}

} // namespace

class TestPageRowIndex final : public QObject
{
    Q_OBJECT

private slots:
    void findsRowsByScanAndByHash_data();
    void findsRowsByScanAndByHash();
    void firstOfEqualIdentifiersWins();
    void answersForTheChangedListAfterInvalidation();
    void aLoneLookUpReadsNoMoreThanAScan();
    void manyLookUpsReadTheListAFewTimesOnly();
};

void TestPageRowIndex::findsRowsByScanAndByHash_data()
{
    QTest::addColumn<bool>("prepared");
    QTest::newRow("scan") << false;
    QTest::newRow("hash") << true;
}

void TestPageRowIndex::findsRowsByScanAndByHash()
{
    QFETCH(bool, prepared);
    const auto pages = pagesWithIds({30, 10, 20});
    PageRowIndex index;
    if (prepared) {
        index.prepare(pages);
    }
    QCOMPARE(index.rowOf(30, pages), 0);
    QCOMPARE(index.rowOf(20, pages), 2);
    QCOMPARE(index.rowOf(99, pages), -1);
    QCOMPARE(index.rowOf(0, pages), -1);
}

void TestPageRowIndex::firstOfEqualIdentifiersWins()
{
    const auto pages = pagesWithIds({1, 2, 2, 1});
    PageRowIndex index;
    for (int i = 0; i <= 2 * PageRowIndex::kScansBeforeHash; ++i) {
        QCOMPARE(index.rowOf(2, pages), 1);
        QCOMPARE(index.rowOf(1, pages), 0);
    }
}

void TestPageRowIndex::answersForTheChangedListAfterInvalidation()
{
    auto pages = pagesWithIds({1, 2, 3});
    PageRowIndex index;
    index.prepare(pages);
    QCOMPARE(index.rowOf(3, pages), 2);
    pages.takeAt(0);
    index.invalidate();
    for (int i = 0; i <= 2 * PageRowIndex::kScansBeforeHash; ++i) {
        QCOMPARE(index.rowOf(3, pages), 1);
        QCOMPARE(index.rowOf(1, pages), -1);
    }
}

void TestPageRowIndex::aLoneLookUpReadsNoMoreThanAScan()
{
    const auto pages = pagesWithIds(idsUpTo(1000));
    PageRowIndex index;
    QCOMPARE(index.rowOf(3, pages), 2);
    QCOMPARE(index.recordsRead(), 3);
    // After every change anew.
    for (int change = 0; change < 10; ++change) {
        index.invalidate();
        QCOMPARE(index.rowOf(3, pages), 2);
    }
    QCOMPARE(index.recordsRead(), 33);
}

void TestPageRowIndex::manyLookUpsReadTheListAFewTimesOnly()
{
    const auto pages = pagesWithIds(idsUpTo(10000));
    PageRowIndex index;
    for (PdfPageId id = 10000; id >= 1; --id) {
        QCOMPARE(index.rowOf(id, pages), static_cast<int>(id) - 1);
    }
    QVERIFY(index.recordsRead() <= (PageRowIndex::kScansBeforeHash + 1) * 10000);
}

QTEST_GUILESS_MAIN(TestPageRowIndex)
#include "tst_page_row_index.moc"
