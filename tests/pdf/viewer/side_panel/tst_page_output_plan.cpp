// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/side_panel/page_output_plan.h"

#include <QTest>

#include <limits>
#include <numeric>

Q_DECLARE_METATYPE(PageOutputFile)

namespace {

const QString kBase = QStringLiteral("report");

PageOutputFile file(const char *name, const QList<int> &rows)
{
    return {QString::fromUtf8(name), rows};
}

} // namespace

/// Which files extracting and splitting make.
class TestPageOutputPlan final : public QObject
{
    Q_OBJECT

private slots:
    void extraction_data();
    void extraction();
    void split_data();
    void split();
    void baseNameMayHoldPlaceMarkers();
    void splitCoversEveryPageOnce();
};

void TestPageOutputPlan::extraction_data()
{
    QTest::addColumn<QList<int>>("rows");
    QTest::addColumn<bool>("combine");
    QTest::addColumn<QList<PageOutputFile>>("files");
    QTest::newRow("nothing") << QList<int>{} << false << QList<PageOutputFile>{};
    QTest::newRow("nothing combined") << QList<int>{} << true << QList<PageOutputFile>{};
    QTest::newRow("pages 2 and 5 apart")
        << QList<int>{1, 4} << false
        << QList<PageOutputFile>{file("report-2.pdf", {1}), file("report-5.pdf", {4})};
    QTest::newRow("pages 2 and 5 combined")
        << QList<int>{1, 4} << true << QList<PageOutputFile>{file("report-extracted.pdf", {1, 4})};
    QTest::newRow("single page") << QList<int>{6} << false
                                 << QList<PageOutputFile>{file("report-7.pdf", {6})};
    QTest::newRow("single page is never combined")
        << QList<int>{6} << true << QList<PageOutputFile>{file("report-7.pdf", {6})};
}

void TestPageOutputPlan::extraction()
{
    QFETCH(QList<int>, rows);
    QFETCH(bool, combine);
    QFETCH(QList<PageOutputFile>, files);
    QCOMPARE(planExtract(kBase, rows, combine), files);
}

void TestPageOutputPlan::split_data()
{
    QTest::addColumn<int>("pageCount");
    QTest::addColumn<bool>("everyPage");
    QTest::addColumn<QList<int>>("beforeRows");
    QTest::addColumn<QList<PageOutputFile>>("files");
    const QList<PageOutputFile> none;
    const QList<PageOutputFile> threeParts{file("report-1.pdf", {0}), file("report-2.pdf", {1, 2}),
                                           file("report-3.pdf", {3, 4})};
    const QList<PageOutputFile> threePages{file("report-1.pdf", {0}), file("report-2.pdf", {1}),
                                           file("report-3.pdf", {2})};
    QTest::newRow("unsorted cuts") << 5 << false << QList<int>{3, 1} << threeParts;
    QTest::newRow("repeated cuts") << 5 << false << QList<int>{1, 3, 3, 1} << threeParts;
    QTest::newRow("cuts out of range")
        << 5 << false << QList<int>{0, 1, 3, 5, 6, -1, std::numeric_limits<int>::max()}
        << threeParts;
    QTest::newRow("no cut") << 5 << false << QList<int>{} << none;
    QTest::newRow("only useless cuts") << 5 << false << QList<int>{0, 5, -3} << none;
    QTest::newRow("cut before the last page")
        << 3 << false << QList<int>{2}
        << QList<PageOutputFile>{file("report-1.pdf", {0, 1}), file("report-2.pdf", {2})};
    QTest::newRow("every page") << 3 << true << QList<int>{} << threePages;
    QTest::newRow("every page whatever was chosen") << 3 << true << QList<int>{2, 9} << threePages;
    QTest::newRow("single page") << 1 << false << QList<int>{0, 1} << none;
    QTest::newRow("every page of one") << 1 << true << QList<int>{} << none;
    QTest::newRow("no pages") << 0 << true << QList<int>{1} << none;
}

void TestPageOutputPlan::split()
{
    QFETCH(int, pageCount);
    QFETCH(bool, everyPage);
    QFETCH(QList<int>, beforeRows);
    QFETCH(QList<PageOutputFile>, files);
    QCOMPARE(planSplit(kBase, pageCount, everyPage, beforeRows), files);
}

void TestPageOutputPlan::baseNameMayHoldPlaceMarkers()
{
    const QString base = QStringLiteral("100%2 of %1");
    QCOMPARE(planExtract(base, {0}, false).at(0).fileName, QStringLiteral("100%2 of %1-1.pdf"));
    QCOMPARE(planExtract(base, {0, 1}, true).at(0).fileName,
             QStringLiteral("100%2 of %1-extracted.pdf"));
    QCOMPARE(planSplit(base, 2, true, {}).at(1).fileName, QStringLiteral("100%2 of %1-2.pdf"));
}

void TestPageOutputPlan::splitCoversEveryPageOnce()
{
    QList<int> all(100);
    std::iota(all.begin(), all.end(), 0);
    QList<int> written;
    for (const PageOutputFile &part : planSplit(kBase, 100, false, {90, 7, 33, 8, 7})) {
        QVERIFY(!part.rows.isEmpty());
        written += part.rows;
    }
    QCOMPARE(written, all);
}

QTEST_APPLESS_MAIN(TestPageOutputPlan)
#include "tst_page_output_plan.moc"
