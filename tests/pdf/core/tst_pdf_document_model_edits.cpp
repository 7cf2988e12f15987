// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/core/pdf_document_model.h"
#include "tests/pdf/core/model_signal_log.h"

#include <QTest>

#include <algorithm>
#include <limits>

namespace {

using Ids = QList<PdfPageId>;
using namespace ModelSignals;

} // namespace

/// Inserting, duplicating, removing, rotating and moving pages.
class TestPdfDocumentModelEdits final : public QObject
{
    Q_OBJECT

private slots:
    // Insertions.
    void blankPageGoesToTheClampedRow_data();
    void blankPageGoesToTheClampedRow();
    void blankPageRecordIsComplete();
    void blankPageOfEmptySizeIsA4_data();
    void blankPageOfEmptySizeIsA4();
    void insertBlankPageEffects();

    // Duplicates.
    void duplicatesLandBehindTheirOriginals();
    void duplicateRecordIsACopyWithItsOwnIdentity();
    void pageListedTwiceIsCopiedTwice();
    void duplicatePagesEffects();
    void duplicatingUnknownPagesDoesNothing();

    // Removals.
    void removingGoesFromTheLastRowToTheFirst();
    void removePagesEffects();
    void removingFromAModifiedDocumentDoesNotRepeatModified();
    void deletingEveryPageLeavesOneBlankPage();
    void deletingEveryPageEffects();
    void removingUnknownPagesDoesNothing();
    void identifiersOfRemovedPagesAreNotReused();

    // Rotations.
    void rotationStaysWithinACircle_data();
    void rotationStaysWithinACircle();
    void fourQuarterTurnsLeaveTheDocumentModified();
    void rotatePagesEffects();
    void rotatingOneOfManyChangesOnlyThatRow();
    void pageListedTwiceIsRotatedTwice();
    void rotatingUnknownPagesDoesNothing();

    // Moves.
    void moveOfRowTwo_data();
    void moveOfRowTwo();
    void moveRowsEffects();
    void movingAnythingButOneRootRowIsRefused();
    void removeRowsIsLeftToRemovePages();
};

void TestPdfDocumentModelEdits::blankPageGoesToTheClampedRow_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("landsAt");
    QTest::newRow("-5") << -5 << 3;
    QTest::newRow("-1") << -1 << 3;
    QTest::newRow("0") << 0 << 0;
    QTest::newRow("2") << 2 << 2;
    QTest::newRow("at the end") << 3 << 3;
    QTest::newRow("beyond the end") << 100 << 3;
}

void TestPdfDocumentModelEdits::blankPageGoesToTheClampedRow()
{
    QFETCH(int, row);
    QFETCH(int, landsAt);
    ObservedModel observed;
    showPages(observed, {1, 2, 3});
    const PdfPageId id = observed.model.insertBlankPage(row, QSizeF(10, 20));
    QCOMPARE(observed.model.rowForPageId(id), landsAt);
    QVERIFY(observed.log.take().contains(QStringLiteral("rowsInserted %1-%1").arg(landsAt)));
}

void TestPdfDocumentModelEdits::blankPageRecordIsComplete()
{
    ObservedModel observed;
    showPages(observed, {1, 2});
    PdfPageRecord expected;
    expected.id = observed.model.insertBlankPage(1, QSizeF(300, 400));
    expected.sourcePageIndex = -1;
    expected.pageSize = QSizeF(300, 400);
    expected.origin = PdfPageOrigin::Blank;
    expected.changed = true;
    QCOMPARE(expected.id, 3U);
    QCOMPARE(*observed.model.pageAt(1), expected);
}

void TestPdfDocumentModelEdits::blankPageOfEmptySizeIsA4_data()
{
    QTest::addColumn<QSizeF>("size");
    QTest::newRow("no size") << QSizeF();
    QTest::newRow("zero width") << QSizeF(0, 100);
    QTest::newRow("zero height") << QSizeF(100, 0);
    QTest::newRow("negative") << QSizeF(-10, 20);
}

void TestPdfDocumentModelEdits::blankPageOfEmptySizeIsA4()
{
    QFETCH(QSizeF, size);
    ObservedModel observed;
    observed.model.insertBlankPage(0, size);
    QCOMPARE(observed.model.pageAt(0)->pageSize, QSizeF(595, 842));
}

void TestPdfDocumentModelEdits::insertBlankPageEffects()
{
    ObservedModel observed;
    showPages(observed, {1, 2});
    const quint64 revision = observed.model.documentRevision();

    observed.model.insertBlankPage(1, {});
    QCOMPARE(observed.log.take(),
             (QStringList{QStringLiteral("rowsInserted 1-1"), kModified, kOrder}));
    QCOMPARE(observed.model.documentRevision(), revision + 1);
    QVERIFY(observed.model.isModified());

    observed.model.insertBlankPage(-1, {});
    QCOMPARE(observed.log.take(), (QStringList{QStringLiteral("rowsInserted 3-3"), kOrder}));
    QCOMPARE(observed.model.documentRevision(), revision + 2);
}

void TestPdfDocumentModelEdits::duplicatesLandBehindTheirOriginals()
{
    ObservedModel observed;
    showPages(observed, {1, 2, 3, 4});
    // Whatever order they are asked for in.
    QCOMPARE(observed.model.duplicatePages({4, 2}), (Ids{5, 6}));
    QCOMPARE(idsOf(observed.model), (Ids{1, 2, 5, 3, 4, 6}));
    QCOMPARE(observed.model.pageAt(2)->sourcePageIndex, 1);
    QCOMPARE(observed.model.pageAt(5)->sourcePageIndex, 3);
}

void TestPdfDocumentModelEdits::duplicateRecordIsACopyWithItsOwnIdentity()
{
    ObservedModel observed;
    QList<PdfPageRecord> records = recordsWithIds({1});
    records[0].rotation = 180;
    records[0].selected = true;
    records[0].origin = PdfPageOrigin::Blank;
    observed.model.setPages(records, false);

    const Ids copies = observed.model.duplicatePages({1});
    QCOMPARE(copies, Ids{2});
    QCOMPARE(*observed.model.pageAt(0), records.at(0));
    PdfPageRecord expected = records.at(0);
    expected.id = 2;
    expected.origin = PdfPageOrigin::Duplicate;
    expected.selected = false;
    expected.changed = true;
    QCOMPARE(*observed.model.pageAt(1), expected);
}

void TestPdfDocumentModelEdits::pageListedTwiceIsCopiedTwice()
{
    ObservedModel observed;
    showPages(observed, {1, 2, 3});
    QCOMPARE(observed.model.duplicatePages({2, 3, 2}), (Ids{4, 5, 6}));
    const QList<int> sourceIndexes = [&observed] {
        QList<int> indexes;
        for (const PdfPageRecord &record : observed.model.pages()) {
            indexes.append(record.sourcePageIndex);
        }
        return indexes;
    }();
    QCOMPARE(sourceIndexes, (QList<int>{0, 1, 1, 1, 2, 2}));
}

void TestPdfDocumentModelEdits::duplicatePagesEffects()
{
    ObservedModel observed;
    showPages(observed, {1, 2, 3, 4});
    const quint64 revision = observed.model.documentRevision();
    observed.model.duplicatePages({2, 4});
    QCOMPARE(observed.log.take(),
             (QStringList{QStringLiteral("rowsInserted 2-2"), QStringLiteral("rowsInserted 5-5"),
                          kModified, kOrder}));
    QCOMPARE(observed.model.documentRevision(), revision + 1);
    QVERIFY(observed.model.isModified());

    observed.model.duplicatePages({1});
    QCOMPARE(observed.log.take(), (QStringList{QStringLiteral("rowsInserted 1-1"), kOrder}));
    QCOMPARE(observed.model.documentRevision(), revision + 2);
}

void TestPdfDocumentModelEdits::duplicatingUnknownPagesDoesNothing()
{
    ObservedModel observed;
    showPages(observed, {1, 2});
    const quint64 revision = observed.model.documentRevision();
    QCOMPARE(observed.model.duplicatePages({}), Ids());
    QCOMPARE(observed.model.duplicatePages({99, 0}), Ids());
    QCOMPARE(observed.log.take(), QStringList());
    QCOMPARE(observed.model.documentRevision(), revision);
    QVERIFY(!observed.model.isModified());
    QCOMPARE(observed.model.duplicatePages({99, 2}), Ids{3});
}

void TestPdfDocumentModelEdits::removingGoesFromTheLastRowToTheFirst()
{
    ObservedModel observed;
    showPages(observed, {1, 2, 3, 4, 5, 6});
    observed.model.removePages({2, 5, 99, 2, 3});
    QCOMPARE(idsOf(observed.model), (Ids{1, 4, 6}));
    QCOMPARE(observed.log.take().mid(0, 3),
             (QStringList{QStringLiteral("rowsRemoved 4-4"), QStringLiteral("rowsRemoved 2-2"),
                          QStringLiteral("rowsRemoved 1-1")}));
}

void TestPdfDocumentModelEdits::removePagesEffects()
{
    ObservedModel observed;
    showPages(observed, {1, 2, 3});
    const quint64 revision = observed.model.documentRevision();
    observed.model.removePages({1, 3});
    QCOMPARE(observed.log.take(),
             (QStringList{QStringLiteral("rowsRemoved 2-2"), QStringLiteral("rowsRemoved 0-0"),
                          kModified, kSelection, kOrder}));
    QCOMPARE(observed.model.documentRevision(), revision + 1);
    QVERIFY(observed.model.isModified());
}

void TestPdfDocumentModelEdits::removingFromAModifiedDocumentDoesNotRepeatModified()
{
    ObservedModel observed;
    observed.model.setPages(recordsWithIds({1, 2}), true);
    observed.log.take();
    observed.model.removePages({2});
    QCOMPARE(observed.log.take(),
             (QStringList{QStringLiteral("rowsRemoved 1-1"), kSelection, kOrder}));
}

void TestPdfDocumentModelEdits::deletingEveryPageLeavesOneBlankPage()
{
    ObservedModel observed;
    showPages(observed, {1, 2, 3});
    observed.model.removePages({3, 1, 2});
    QCOMPARE(observed.model.rowCount(), 1);
    PdfPageRecord expected;
    expected.id = 4;
    expected.pageSize = QSizeF(595, 842);
    expected.origin = PdfPageOrigin::Blank;
    expected.changed = true;
    QCOMPARE(*observed.model.pageAt(0), expected);
    QVERIFY(observed.model.isModified());
}

void TestPdfDocumentModelEdits::deletingEveryPageEffects()
{
    ObservedModel observed;
    showPages(observed, {1, 2});
    const quint64 revision = observed.model.documentRevision();
    observed.model.removePages({1, 2});
    QCOMPARE(
        observed.log.take(),
        (QStringList{QStringLiteral("rowsRemoved 1-1"), QStringLiteral("rowsRemoved 0-0"),
                     QStringLiteral("rowsInserted 0-0"), kModified, kOrder, kSelection, kOrder}));
    QCOMPARE(observed.model.documentRevision(), revision + 2);
}

void TestPdfDocumentModelEdits::removingUnknownPagesDoesNothing()
{
    ObservedModel observed;
    showPages(observed, {1, 2});
    const quint64 revision = observed.model.documentRevision();
    observed.model.removePages({});
    observed.model.removePages({0, 99});
    QCOMPARE(observed.log.take(), QStringList());
    QCOMPARE(observed.model.documentRevision(), revision);
    QVERIFY(!observed.model.isModified());
    QCOMPARE(observed.model.rowCount(), 2);
}

void TestPdfDocumentModelEdits::identifiersOfRemovedPagesAreNotReused()
{
    ObservedModel observed;
    showPages(observed, {1, 2, 3});
    observed.model.removePages({3});
    QCOMPARE(observed.model.insertBlankPage(-1, {}), 4U);
    const QList<PdfPageRecord> before = recordsWithIds({1, 2, 3});
    observed.model.setPages(before, true);
    QCOMPARE(observed.model.insertBlankPage(-1, {}), 5U);
}

void TestPdfDocumentModelEdits::rotationStaysWithinACircle_data()
{
    QTest::addColumn<int>("start");
    QTest::addColumn<int>("delta");
    QTest::addColumn<int>("result");
    QTest::newRow("left from 0") << 0 << -90 << 270;
    QTest::newRow("right from 270") << 270 << 90 << 0;
    QTest::newRow("half turn") << 90 << 180 << 270;
    QTest::newRow("more than a circle") << 90 << 450 << 180;
    QTest::newRow("less than a circle back") << 90 << -450 << 0;
    QTest::newRow("whole circle") << 180 << 360 << 180;
    QTest::newRow("largest delta") << 270 << std::numeric_limits<int>::max() << (270 + 127) % 360;
    QTest::newRow("smallest delta") << 0 << std::numeric_limits<int>::min() << 360 - 128;
}

void TestPdfDocumentModelEdits::rotationStaysWithinACircle()
{
    QFETCH(int, start);
    QFETCH(int, delta);
    QFETCH(int, result);
    ObservedModel observed;
    QList<PdfPageRecord> records = recordsWithIds({1});
    records[0].rotation = start;
    observed.model.setPages(records, false);
    observed.model.rotatePages({1}, delta);
    QCOMPARE(observed.model.pageAt(0)->rotation, result);
}

void TestPdfDocumentModelEdits::fourQuarterTurnsLeaveTheDocumentModified()
{
    ObservedModel observed;
    showPages(observed, {1});
    for (int i = 0; i < 4; ++i) {
        observed.model.rotatePages({1}, 90);
    }
    QCOMPARE(observed.model.pageAt(0)->rotation, 0);
    QVERIFY(observed.model.isModified());
    QVERIFY(observed.model.pageAt(0)->changed);
}

void TestPdfDocumentModelEdits::rotatePagesEffects()
{
    ObservedModel observed;
    showPages(observed, {1, 2, 3});
    const quint64 revision = observed.model.documentRevision();
    observed.model.rotatePages({3, 99, 1}, 90);
    QCOMPARE(observed.log.take(), (QStringList{rotationOfRow(2), rotationOfRow(0), kModified}));
    QCOMPARE(observed.model.documentRevision(), revision + 1);
    QVERIFY(observed.model.isModified());

    observed.model.rotatePages({2}, -90);
    QCOMPARE(observed.log.take(), QStringList{rotationOfRow(1)});
    QCOMPARE(observed.model.documentRevision(), revision + 2);
}

void TestPdfDocumentModelEdits::rotatingOneOfManyChangesOnlyThatRow()
{
    ObservedModel observed;
    showPages(observed, {1, 2, 3});
    observed.model.rotatePages({2}, 90);
    QList<PdfPageRecord> expected = recordsWithIds({1, 2, 3});
    expected[1].rotation = 90;
    expected[1].changed = true;
    QCOMPARE(observed.model.pages(), expected);
    QCOMPARE(observed.model.index(1).data(PdfDocumentModel::DisplaySizeRole),
             QVariant(QSizeF(842, 595)));
}

void TestPdfDocumentModelEdits::pageListedTwiceIsRotatedTwice()
{
    ObservedModel observed;
    showPages(observed, {1});
    const quint64 revision = observed.model.documentRevision();
    observed.model.rotatePages({1, 1}, 90);
    QCOMPARE(observed.model.pageAt(0)->rotation, 180);
    QCOMPARE(observed.model.documentRevision(), revision + 1);
    QCOMPARE(observed.log.take(), (QStringList{rotationOfRow(0), rotationOfRow(0), kModified}));
}

void TestPdfDocumentModelEdits::rotatingUnknownPagesDoesNothing()
{
    ObservedModel observed;
    showPages(observed, {1});
    const quint64 revision = observed.model.documentRevision();
    observed.model.rotatePages({}, 90);
    observed.model.rotatePages({0, 99}, 90);
    QCOMPARE(observed.log.take(), QStringList());
    QCOMPARE(observed.model.documentRevision(), revision);
    QVERIFY(!observed.model.isModified());
}

void TestPdfDocumentModelEdits::moveOfRowTwo_data()
{
    QTest::addColumn<int>("destination");
    QTest::addColumn<QList<PdfPageId>>("order");
    QTest::newRow("to its own row") << 2 << Ids();
    QTest::newRow("to behind itself") << 3 << Ids();
    QTest::newRow("before the first") << -1 << Ids();
    QTest::newRow("beyond the end") << 6 << Ids();
    QTest::newRow("first") << 0 << Ids{3, 1, 2, 4, 5};
    QTest::newRow("one up") << 1 << Ids{1, 3, 2, 4, 5};
    QTest::newRow("one down") << 4 << Ids{1, 2, 4, 3, 5};
    QTest::newRow("last") << 5 << Ids{1, 2, 4, 5, 3};
}

void TestPdfDocumentModelEdits::moveOfRowTwo()
{
    QFETCH(int, destination);
    QFETCH(QList<PdfPageId>, order);
    ObservedModel observed;
    showPages(observed, {1, 2, 3, 4, 5});
    const quint64 revision = observed.model.documentRevision();
    const bool moved = observed.model.moveRow({}, 2, {}, destination);
    QCOMPARE(moved, !order.isEmpty());
    QCOMPARE(idsOf(observed.model), moved ? order : (Ids{1, 2, 3, 4, 5}));
    QCOMPARE(observed.model.documentRevision(), moved ? revision + 1 : revision);
    QCOMPARE(observed.model.isModified(), moved);
    if (!moved) {
        QCOMPARE(observed.log.take(), QStringList());
    }
}

void TestPdfDocumentModelEdits::moveRowsEffects()
{
    ObservedModel observed;
    showPages(observed, {1, 2, 3});
    const quint64 revision = observed.model.documentRevision();
    const QPersistentModelIndex second = observed.model.index(1);
    QVERIFY(observed.model.moveRows({}, 1, 1, {}, 0));
    QCOMPARE(observed.log.take(),
             (QStringList{QStringLiteral("rowsMoved 1 to 0"), kModified, kOrder}));
    QCOMPARE(observed.model.documentRevision(), revision + 1);
    QVERIFY(observed.model.isModified());
    QCOMPARE(second.row(), 0);

    QVERIFY(observed.model.moveRows({}, 0, 1, {}, 3));
    QCOMPARE(observed.log.take(), (QStringList{QStringLiteral("rowsMoved 0 to 3"), kOrder}));
    QCOMPARE(observed.model.documentRevision(), revision + 2);
    QVERIFY(!observed.model.pageAt(0)->changed);
}

void TestPdfDocumentModelEdits::movingAnythingButOneRootRowIsRefused()
{
    ObservedModel observed;
    showPages(observed, {1, 2, 3, 4});
    const QModelIndex child = observed.model.index(0);
    QVERIFY(!observed.model.moveRows({}, 0, 2, {}, 4));
    QVERIFY(!observed.model.moveRows({}, 0, 0, {}, 4));
    QVERIFY(!observed.model.moveRows(child, 0, 1, {}, 4));
    QVERIFY(!observed.model.moveRows({}, 0, 1, child, 4));
    QVERIFY(!observed.model.moveRows({}, -1, 1, {}, 2));
    QVERIFY(!observed.model.moveRows({}, 4, 1, {}, 0));
    QCOMPARE(observed.log.take(), QStringList());
}

void TestPdfDocumentModelEdits::removeRowsIsLeftToRemovePages()
{
    // A view that finishes a drag as a move asks for the removal of the dragged rows.
    ObservedModel observed;
    showPages(observed, {1, 2});
    QVERIFY(!observed.model.removeRow(0));
    QCOMPARE(idsOf(observed.model), (Ids{1, 2}));
}

QTEST_GUILESS_MAIN(TestPdfDocumentModelEdits)
#include "tst_pdf_document_model_edits.moc"
