// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/cards/drag_scroller.h"
#include "tests/pdf/viewer/page_drag.h"
#include "tests/pdf/viewer/shown_grid.h"
#include "tests/pdf/viewer/shown_panel.h"
#include "tests/pdf/viewer/shown_view.h"
#include "widgets/theme.h"

#include <QApplication>
#include <QScrollBar>
#include <QTest>
#include <QTimer>
#include <QWheelEvent>
#include <QWindow>

#include <algorithm>
#include <functional>

namespace {

constexpr int kPages = 300;

/// Holds a page over `viewport` while `during` runs, and lets go where the mouse is then.
void dragWhile(QWidget *viewport, QPoint from, const std::function<void()> &during, QPoint letGoAt)
{
    // Not at once, which some event loops take for the same round as the press.
    QTimer::singleShot(1, viewport, [=] {
        during();
        QTest::mouseRelease(viewport, Qt::LeftButton, {}, letGoAt);
    });
    QTest::mousePress(viewport, Qt::LeftButton, {}, from);
    for (const int distance : {15, 30}) {
        moveMouse(viewport, from + QPoint(0, distance), Qt::LeftButton);
    }
}

/// A point of the page nearest to `point` on which nothing but the page itself is taken hold of.
QPoint handleAt(const PageListView &view, QPoint point)
{
    return view.visualRect(view.indexAt(point)).center();
}

void holdAt(QWidget *viewport, QPoint point)
{
    for (const QPoint &place : {point - QPoint(1, 0), point}) {
        moveMouse(viewport, place, Qt::LeftButton);
        QCoreApplication::processEvents();
    }
}

/// A point beside the window of a list.
constexpr QPoint kOutside(2000, 300);

/// Where the mark of a page that is let go at `point` is to be seen.
QPoint markFor(const PageListView &view, QPoint point)
{
    const QRect page = view.visualRect(view.indexAt(point));
    const int room = view.spacing();
    return {page.center().x(),
            point.y() > page.center().y() ? page.bottom() + 1 + room : page.top() - 1 - room};
}

void turnWheel(QWidget *viewport, QPoint point, int angle, int pixels = 0)
{
    QWheelEvent event(point, viewport->mapToGlobal(point), {0, pixels}, {0, angle}, Qt::LeftButton,
                      {}, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(viewport->window()->windowHandle(), &event);
}

/// A list of many pages of which the page in the middle is dragged.
struct Dragging
{
    /// Does `work` while the page is held over the middle, and ends the drag without a drop.
    void during(const std::function<void()> &work)
    {
        dragWhile(
            viewport, handleAt(*shown.list, middle),
            [&] {
                QCoreApplication::processEvents();
                holdAt(viewport, middle);
                work();
                QTest::keyClick(viewport, Qt::Key_Escape);
            },
            middle);
    }

    ShownPanel shown{a4Pages(kPages), {210, 900}};
    QWidget *viewport = shown.list->viewport();
    QScrollBar *bar = shown.list->verticalScrollBar();
    QPoint middle = viewport->rect().center();
};

} // namespace

/// Views that scroll while a page is dragged.
class TestPageDragScrolling final : public QObject
{
    Q_OBJECT

private slots:
    void speedGrowsTowardsTheEdges();
    void lowViewportsKeepRoomBetweenTheEdges();
    void panelScrollsWhileThePointerRests_data();
    void panelScrollsWhileThePointerRests();
    void gridScrollsWhileThePointerRests();
    void scrollingMakesNoJumpAfterADelay();
    void scrollingStopsAwayFromTheEdge_data();
    void scrollingStopsAwayFromTheEdge();
    void scrollingStopsWithTheDrag();
    void dragThatBeginsAtTheEdgeDoesNotScrollByItself();
    void dragThatBeginsAtTheEdgeScrollsOnceItComesNearer();
    void dragThatBeginsAtTheEdgeScrollsOnceItHasBeenAway();
    void dragThatComesInAtTheEdgeScrollsOnceItComesNearer();
    void wheelScrollsDuringADrag();
    void touchpadScrollsDuringADrag();
    void wheelBesideTheListLeavesItDuringADrag();
    void wheelWorksAsEverAfterADrag();
    void pageGoesWhereThePointerIsAfterScrolling();
    void markStaysUnderThePointerThroughScrolling();
    void scrollingAfterADragShowsNoMark();
};

void TestPageDragScrolling::speedGrowsTowardsTheEdges()
{
    constexpr int kHeight = 900;
    QCOMPARE(dragScrollSpeed(kHeight / 2, kHeight), 0.0);
    QCOMPARE(dragScrollSpeed(64, kHeight), 0.0);
    QCOMPARE(dragScrollSpeed(kHeight - 1 - 64, kHeight), 0.0);
    QVERIFY(dragScrollSpeed(63, kHeight) < 0.0);
    QVERIFY(dragScrollSpeed(kHeight - 64, kHeight) > 0.0);
    for (int y = 1; y < 63; ++y) {
        QVERIFY(dragScrollSpeed(y, kHeight) > dragScrollSpeed(y - 1, kHeight));
        QCOMPARE(dragScrollSpeed(y, kHeight), -dragScrollSpeed(kHeight - 1 - y, kHeight));
    }
    // Beyond the edge it stays as it is at the edge.
    QCOMPARE(dragScrollSpeed(-50, kHeight), dragScrollSpeed(0, kHeight));
    QCOMPARE(dragScrollSpeed(0, kHeight), -5.0 * kHeight);
}

void TestPageDragScrolling::lowViewportsKeepRoomBetweenTheEdges()
{
    QCOMPARE(dragScrollSpeed(50, 100), 0.0);
    QCOMPARE(dragScrollSpeed(25, 100), 0.0);
    QVERIFY(dragScrollSpeed(24, 100) < 0.0);
    QVERIFY(dragScrollSpeed(75, 100) > 0.0);
    QCOMPARE(dragScrollSpeed(0, 0), 0.0);
    QCOMPARE(dragScrollSpeed(1, 3), 0.0);
}

void TestPageDragScrolling::panelScrollsWhileThePointerRests_data()
{
    QTest::addColumn<bool>("down");
    QTest::newRow("down") << true;
    QTest::newRow("up") << false;
}

void TestPageDragScrolling::panelScrollsWhileThePointerRests()
{
    QFETCH(bool, down);
    ShownPanel shown(a4Pages(kPages), {210, 900});
    QWidget *viewport = shown.list->viewport();
    QScrollBar *bar = shown.list->verticalScrollBar();
    bar->setValue(shown.itemAt(150).center().y() - 450);
    QCoreApplication::processEvents();
    const int start = bar->value();
    const QPoint middle = shown.itemAt(150).center();
    const QPoint edge(middle.x(), down ? viewport->height() - 10 : 10);
    bool hasScrolled = false;
    dragWhile(
        viewport, handleAt(*shown.list, middle),
        [&] {
            holdAt(viewport, edge);
            hasScrolled = QTest::qWaitFor(
                [&] { return down ? bar->value() > start + 300 : bar->value() < start - 300; });
            QTest::keyClick(viewport, Qt::Key_Escape);
        },
        edge);
    QVERIFY(hasScrolled);
}

void TestPageDragScrolling::gridScrollsWhileThePointerRests()
{
    ShownGrid shown(a4Pages(kPages), {1100, 700});
    QWidget *viewport = shown.list->viewport();
    QScrollBar *bar = shown.list->verticalScrollBar();
    const QPoint edge(viewport->width() / 2, viewport->height() - 5);
    bool hasScrolled = false;
    dragWhile(
        viewport, handleAt(*shown.list, viewport->rect().center()),
        [&] {
            holdAt(viewport, edge);
            hasScrolled = QTest::qWaitFor([&] { return bar->value() > 600; });
            QTest::keyClick(viewport, Qt::Key_Escape);
        },
        edge);
    QVERIFY(hasScrolled);
}

void TestPageDragScrolling::scrollingMakesNoJumpAfterADelay()
{
    ShownPanel shown(a4Pages(kPages), {210, 900});
    QWidget *viewport = shown.list->viewport();
    QScrollBar *bar = shown.list->verticalScrollBar();
    const QPoint middle = viewport->rect().center();
    const QPoint edge(middle.x(), viewport->height() - 5);
    int farthest = 0;
    dragWhile(
        viewport, handleAt(*shown.list, middle),
        [&] {
            holdAt(viewport, edge);
            QVERIFY(QTest::qWaitFor([&] { return bar->value() > 200; }));
            int before = bar->value();
            connect(bar, &QScrollBar::valueChanged, this, [&](int value) {
                farthest = std::max(farthest, value - before);
                before = value;
            });
            // Nothing runs meanwhile.
            QTest::qSleep(500);
            QTest::qWait(50);
            disconnect(bar, nullptr, this, nullptr);
            QTest::keyClick(viewport, Qt::Key_Escape);
        },
        edge);
    QVERIFY(farthest > 0);
    // Four steps of 16 milliseconds at the greatest speed.
    QVERIFY(farthest <= 5 * viewport->height() * 4 * 16 / 1000 + 1);
}

void TestPageDragScrolling::scrollingStopsAwayFromTheEdge_data()
{
    QTest::addColumn<bool>("inside");
    QTest::newRow("in the middle") << true;
    QTest::newRow("outside") << false;
}

void TestPageDragScrolling::scrollingStopsAwayFromTheEdge()
{
    QFETCH(const bool, inside);
    ShownPanel shown(a4Pages(kPages), {210, 900});
    QWidget *viewport = shown.list->viewport();
    QScrollBar *bar = shown.list->verticalScrollBar();
    const QPoint middle = viewport->rect().center();
    const QPoint away = inside ? middle : kOutside;
    bool hasScrolled = false;
    int atRest = -1;
    int later = -2;
    dragWhile(
        viewport, handleAt(*shown.list, middle),
        [&] {
            holdAt(viewport, {middle.x(), viewport->height() - 5});
            hasScrolled = QTest::qWaitFor([&] { return bar->value() > 200; });
            holdAt(viewport, away);
            atRest = bar->value();
            QTest::qWait(100);
            later = bar->value();
            QTest::keyClick(viewport, Qt::Key_Escape);
        },
        away);
    QVERIFY(hasScrolled);
    QCOMPARE(later, atRest);
}

void TestPageDragScrolling::scrollingStopsWithTheDrag()
{
    ShownPanel shown(a4Pages(kPages), {210, 900});
    QWidget *viewport = shown.list->viewport();
    QScrollBar *bar = shown.list->verticalScrollBar();
    const QPoint middle = viewport->rect().center();
    const QPoint edge(middle.x(), viewport->height() - 5);
    dragWhile(
        viewport, handleAt(*shown.list, middle),
        [&] {
            holdAt(viewport, edge);
            QVERIFY(QTest::qWaitFor([&] { return bar->value() > 200; }));
        },
        edge);
    QCoreApplication::processEvents();
    const int atRest = bar->value();
    QTest::qWait(100);
    QCOMPARE(bar->value(), atRest);
}

void TestPageDragScrolling::dragThatBeginsAtTheEdgeDoesNotScrollByItself()
{
    ShownPanel shown(a4Pages(kPages), {210, 900});
    QWidget *viewport = shown.list->viewport();
    QScrollBar *bar = shown.list->verticalScrollBar();
    // The middle of a page lies near the edge.
    bar->setValue(shown.itemAt(100).center().y() - 20);
    QCoreApplication::processEvents();
    const int start = bar->value();
    const QPoint nearTheEdge = shown.itemAt(100).center();
    QCOMPARE(nearTheEdge.y(), 20);
    bool isDragged = false;
    int later = -1;
    dragWhile(
        viewport, nearTheEdge,
        [&] {
            holdAt(viewport, nearTheEdge + QPoint(0, 25));
            isDragged = shown.list->draggedPage() != 0;
            QTest::qWait(100);
            later = bar->value();
            QTest::keyClick(viewport, Qt::Key_Escape);
        },
        nearTheEdge);
    QVERIFY(isDragged);
    QCOMPARE(later, start);
}

void TestPageDragScrolling::dragThatBeginsAtTheEdgeScrollsOnceItComesNearer()
{
    ShownPanel shown(a4Pages(kPages), {210, 900});
    QWidget *viewport = shown.list->viewport();
    QScrollBar *bar = shown.list->verticalScrollBar();
    bar->setValue(shown.itemAt(100).center().y() - 20);
    QCoreApplication::processEvents();
    const int start = bar->value();
    const QPoint nearTheEdge = shown.itemAt(100).center();
    bool hasScrolled = false;
    dragWhile(
        viewport, nearTheEdge,
        [&] {
            holdAt(viewport, nearTheEdge + QPoint(0, 25));
            holdAt(viewport, nearTheEdge - QPoint(0, 15));
            hasScrolled = QTest::qWaitFor([&] { return bar->value() < start - 100; });
            QTest::keyClick(viewport, Qt::Key_Escape);
        },
        nearTheEdge);
    QVERIFY(hasScrolled);
}

void TestPageDragScrolling::dragThatBeginsAtTheEdgeScrollsOnceItHasBeenAway()
{
    ShownPanel shown(a4Pages(kPages), {210, 900});
    QWidget *viewport = shown.list->viewport();
    QScrollBar *bar = shown.list->verticalScrollBar();
    bar->setValue(shown.itemAt(100).center().y() - 20);
    QCoreApplication::processEvents();
    const int start = bar->value();
    const QPoint nearTheEdge = shown.itemAt(100).center();
    bool hasScrolled = false;
    dragWhile(
        viewport, nearTheEdge,
        [&] {
            holdAt(viewport, viewport->rect().center());
            // Not nearer to the edge than where the drag began.
            holdAt(viewport, nearTheEdge + QPoint(0, 10));
            hasScrolled = QTest::qWaitFor([&] { return bar->value() < start - 100; });
            QTest::keyClick(viewport, Qt::Key_Escape);
        },
        nearTheEdge);
    QVERIFY(hasScrolled);
}

void TestPageDragScrolling::dragThatComesInAtTheEdgeScrollsOnceItComesNearer()
{
    ShownPanel shown(a4Pages(kPages), {210, 900});
    QWidget *viewport = shown.list->viewport();
    QScrollBar *bar = shown.list->verticalScrollBar();
    const QPoint middle = viewport->rect().center();
    const QPoint nearTheEdge(middle.x(), viewport->height() - 30);
    int cameIn = -1;
    bool hasScrolled = false;
    dragWhile(
        viewport, handleAt(*shown.list, middle),
        [&] {
            holdAt(viewport, middle);
            holdAt(viewport, kOutside);
            holdAt(viewport, nearTheEdge);
            QTest::qWait(100);
            cameIn = bar->value();
            holdAt(viewport, nearTheEdge + QPoint(0, 20));
            hasScrolled = QTest::qWaitFor([&] { return bar->value() > 100; });
            QTest::keyClick(viewport, Qt::Key_Escape);
        },
        nearTheEdge);
    QCOMPARE(cameIn, 0);
    QVERIFY(hasScrolled);
}

void TestPageDragScrolling::wheelScrollsDuringADrag()
{
    Dragging dragging;
    int down = -1;
    int up = -1;
    dragging.during([&] {
        turnWheel(dragging.viewport, dragging.middle, -240);
        down = dragging.bar->value();
        turnWheel(dragging.viewport, dragging.middle, 120);
        up = dragging.bar->value();
    });
    const int notch = QApplication::wheelScrollLines() * dragging.bar->singleStep();
    QCOMPARE(down, 2 * notch);
    QCOMPARE(up, notch);
}

void TestPageDragScrolling::touchpadScrollsDuringADrag()
{
    Dragging dragging;
    int down = -1;
    int up = -1;
    dragging.during([&] {
        turnWheel(dragging.viewport, dragging.middle, -120, -50);
        down = dragging.bar->value();
        turnWheel(dragging.viewport, dragging.middle, 120, 20);
        up = dragging.bar->value();
    });
    QCOMPARE(down, 50);
    QCOMPARE(up, 30);
}

void TestPageDragScrolling::wheelBesideTheListLeavesItDuringADrag()
{
    Dragging dragging;
    int over = -1;
    int beside = -1;
    dragging.during([&] {
        turnWheel(dragging.viewport, dragging.middle, -240);
        over = dragging.bar->value();
        holdAt(dragging.viewport, kOutside);
        turnWheel(dragging.viewport, kOutside, -240);
        beside = dragging.bar->value();
    });
    QVERIFY(over > 0);
    QCOMPARE(beside, over);
}

void TestPageDragScrolling::wheelWorksAsEverAfterADrag()
{
    ShownPanel shown(a4Pages(kPages), {210, 900});
    QWidget *viewport = shown.list->viewport();
    QScrollBar *bar = shown.list->verticalScrollBar();
    const QPoint middle = viewport->rect().center();
    dragWhile(
        viewport, handleAt(*shown.list, middle), [&] { QTest::keyClick(viewport, Qt::Key_Escape); },
        middle);
    QCoreApplication::processEvents();
    turnWheel(viewport, middle, -120);
    QTRY_VERIFY(bar->value() > 0);
}

void TestPageDragScrolling::pageGoesWhereThePointerIsAfterScrolling()
{
    ShownPanel shown(a4Pages(kPages), {210, 900});
    QWidget *viewport = shown.list->viewport();
    QScrollBar *bar = shown.list->verticalScrollBar();
    const QPoint first = shown.cardCentre(0);
    const QPoint middle = viewport->rect().center();
    const QPoint edge(middle.x(), viewport->height() - 2);
    int targetRow = -1;
    dragWhile(
        viewport, first,
        [&] {
            holdAt(viewport, middle);
            holdAt(viewport, edge);
            QVERIFY(QTest::qWaitFor([&] { return bar->value() > 3000; }));
            holdAt(viewport, middle);
            const QModelIndex index = shown.list->indexAt(middle);
            QVERIFY(index.isValid());
            const bool below = middle.y() > shown.list->visualRect(index).center().y();
            targetRow = index.row() + (below ? 1 : 0);
        },
        middle);
    QVERIFY(targetRow > 10);
    QCOMPARE(shown.model.rowForPageId(1), targetRow - 1);
}

void TestPageDragScrolling::markStaysUnderThePointerThroughScrolling()
{
    Dragging dragging;
    QColor mark;
    int scrolled = 0;
    dragging.during([&] {
        // Away from the page that is held, which would stay beside itself.
        turnWheel(dragging.viewport, dragging.middle, -120 * 20);
        scrolled = dragging.bar->value();
        mark = dragging.shown.picture().pixelColor(markFor(*dragging.shown.list, dragging.middle));
    });
    QVERIFY(scrolled > dragging.viewport->height());
    QCOMPARE(mark, Theme::accent);
}

void TestPageDragScrolling::scrollingAfterADragShowsNoMark()
{
    ShownPanel shown(a4Pages(kPages), {210, 900});
    QWidget *viewport = shown.list->viewport();
    const QPoint middle = viewport->rect().center();
    dragWhile(
        viewport, handleAt(*shown.list, middle), [&] { holdAt(viewport, middle); }, middle);
    shown.list->verticalScrollBar()->setValue(5000);
    QVERIFY(shown.picture().pixelColor(markFor(*shown.list, middle)) != Theme::accent);
}

int main(int argc, char **argv)
{
    // The platform that the other tests run on knows no dragging.
    qputenv("QT_QPA_PLATFORM", "minimal");
    const QApplication application(argc, argv);
    TestPageDragScrolling test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_page_drag_scrolling.moc"
