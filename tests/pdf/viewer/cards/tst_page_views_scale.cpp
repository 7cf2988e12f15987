// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/cards/page_list_view.h"
#include "tests/pdf/viewer/shown_grid.h"
#include "tests/pdf/viewer/shown_panel.h"
#include "tests/pdf/viewer/shown_view.h"

#include <QScrollBar>
#include <QTest>

namespace {

constexpr int kPageCount = 10000;

/// Counts how often the rows of a list are laid out while `edit` runs and afterwards.
template <typename Edit>
qint64 layoutsDuring(PageListView &list, Edit edit)
{
    QTest::qWait(20);
    const qint64 before = list.layoutCount();
    edit();
    QTest::qWait(50);
    return list.layoutCount() - before;
}

QList<PdfPageId> idsFrom(PdfPageId first, PdfPageId last, PdfPageId step = 1)
{
    QList<PdfPageId> ids;
    for (PdfPageId id = first; id <= last; id += step) {
        ids.append(id);
    }
    return ids;
}

/// What many changes at once may cost in layouts, whatever the current row.
void checkLayouts(PdfDocumentModel &model, PageListView &list)
{
    const QList<PdfPageRecord> all = model.pages();
    const auto restore = [&] { model.setPages(all, false); };
    const auto setCurrentLast = [&] { list.setCurrentIndex(model.index(model.rowCount() - 1)); };

    QCOMPARE(layoutsDuring(list, [&] { model.selectAll(); }), 0);
    QCOMPARE(layoutsDuring(list, [&] { model.clearSelection(); }), 0);
    QCOMPARE(layoutsDuring(list, [&] { model.rotatePages(idsFrom(1, kPageCount), 90); }), 0);
    QVERIFY(layoutsDuring(list, restore) <= 2);
    QVERIFY(layoutsDuring(list, [&] { model.removePages(idsFrom(1, kPageCount, 2)); }) <= 2);
    QVERIFY(layoutsDuring(list, restore) <= 2);
    setCurrentLast();
    QVERIFY(layoutsDuring(list, [&] { model.removePages(idsFrom(kPageCount / 2, kPageCount)); }) <=
            2);
    QVERIFY(layoutsDuring(list, restore) <= 2);
    QVERIFY(layoutsDuring(list, [&] { model.duplicatePages(idsFrom(1, kPageCount, 2)); }) <= 2);
}

} // namespace

/// The page lists with a document of ten thousand pages.
class TestPageViewsScale final : public QObject
{
    Q_OBJECT

private slots:
    void panelLaysOutOncePerChange();
    void gridLaysOutOncePerChange();
    void panelAsksForFewRowsPerScrollStep();
    void gridAsksForFewPagesPerScrollStep();
    void heldThumbnailsAreBounded();
    void thumbnailsScrolledBackToComeFromTheCache();
};

void TestPageViewsScale::panelLaysOutOncePerChange()
{
    ShownPanel shown(a4Pages(kPageCount));
    checkLayouts(shown.model, *shown.list);
}

void TestPageViewsScale::gridLaysOutOncePerChange()
{
    ShownGrid shown(a4Pages(kPageCount));
    checkLayouts(shown.model, *shown.list);
}

void TestPageViewsScale::panelAsksForFewRowsPerScrollStep()
{
    ShownPanel shown(a4Pages(kPageCount));
    shown.probe.hold();
    shown.list->verticalScrollBar()->setValue(shown.list->verticalScrollBar()->maximum() / 2);
    // A position between two rows as well as any other.
    for (int step = 0; step < 12; ++step) {
        QCoreApplication::processEvents();
        shown.list->verticalScrollBar()->setValue(shown.list->verticalScrollBar()->value() + 1);
    }
    // Rows in view, some around them, and the batches of the background pass.
    QVERIFY(shown.panel.thumbnails().pendingCount() <= 8 + 12 + 2 * 18);
}

void TestPageViewsScale::gridAsksForFewPagesPerScrollStep()
{
    ShownGrid shown(a4Pages(kPageCount));
    shown.probe.hold();
    QScrollBar *bar = shown.list->verticalScrollBar();
    for (int step = 1; step <= 100; ++step) {
        bar->setValue(bar->maximum() / 100 * step);
        QCoreApplication::processEvents();
    }
    // Once too much is under way that nobody looks at any more, new requests wait.
    QVERIFY(shown.view.thumbnails().pendingCount() <= 60);
    shown.probe.release();
    QTRY_VERIFY(shown.thumbnail(shown.list->indexAt({10, 10}).row()));
}

void TestPageViewsScale::heldThumbnailsAreBounded()
{
    ShownGrid shown(a4Pages(kPageCount), {1800, 1400});
    QScrollBar *bar = shown.list->verticalScrollBar();
    qint64 largest = 0;
    for (int step = 0; step <= 60; ++step) {
        bar->setValue(1400 * step);
        QTRY_VERIFY(shown.thumbnail(shown.list->indexAt({10, 10}).row()));
        largest = std::max(largest, shown.view.thumbnails().heldBytes());
    }
    // So many pages were seen that their images would have taken more.
    QVERIFY(largest > PageThumbnailStore::kDefaultBudget / 2);
    QVERIFY(largest <= PageThumbnailStore::kDefaultBudget);
    QVERIFY(shown.view.thumbnails().heldCount() < 1000);
    // What was dropped comes back with its page.
    QVERIFY(!shown.thumbnail(0));
    bar->setValue(0);
    QTRY_VERIFY(shown.thumbnail(0));
}

void TestPageViewsScale::thumbnailsScrolledBackToComeFromTheCache()
{
    ShownPanel shown(a4Pages(kPageCount));
    QTRY_VERIFY(shown.thumbnail(0));
    QTRY_VERIFY(shown.panel.thumbnails().heldCount() > 200);
    shown.panel.setCurrentPage(9000);
    QTRY_VERIFY(shown.thumbnail(9000));
    shown.panel.setCurrentPage(0);
    QTRY_VERIFY(shown.thumbnail(0));
    QCOMPARE(shown.probe.renderCount(0), 1);
}

QTEST_MAIN(TestPageViewsScale)
#include "tst_page_views_scale.moc"
