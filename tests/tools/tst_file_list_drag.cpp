// SPDX-License-Identifier: AGPL-3.0-or-later
#include "res/resources.h"
#include "tests/tools/row_mouse.h"
#include "tools/files/file_list_item.h"
#include "tools/files/file_list_widget.h"

#include <QApplication>
#include <QListWidget>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr int kRowHeight = 80;

QStringList names(const QStringList &paths)
{
    QStringList bare;
    for (const QString &path : paths) {
        bare += path.section(QLatin1Char('/'), -1);
    }
    return bare;
}

/// Counts how often timers go off, while it lives.
class TimerCount final : public QObject
{
public:
    TimerCount() { QCoreApplication::instance()->installEventFilter(this); }

    [[nodiscard]] int count() const { return m_count; }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Timer && qobject_cast<QTimer *>(watched) != nullptr) {
            ++m_count;
        }
        return false;
    }

private:
    int m_count = 0;
};

} // namespace

/// How rows of the list of files are dragged.
class TestFileListDrag final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { initResources(); }
    void init();
    void cleanup();

    void rowIsDraggedToAnother_data();
    void rowIsDraggedToAnother();
    void rowsFollowWhileTheMouseIsHeld();
    void rowIsDraggingUntilItIsDropped();
    void draggedRowKeepsItsWidget();
    void targetOfAPointer_data();
    void targetOfAPointer();
    void pointBesideTheRowsIsNoTarget();
    void pointBeyondAScrolledListIsTheRowThere();
    void dragThatComesBackIsNone();
    void pressWithoutADragKeepsTheOrder();
    void endOnAnotherRowEmptiesTheList();
    void filesCanBePutBackAtTheEnd();
    void movesWithoutADragDoNothing();

    void edgeScrolls_data();
    void edgeScrolls();
    void eachMoveScrollsOnce();
    void movedRowStaysInSight();
    void restingAtAnEdgeScrollsOn_data();
    void restingAtAnEdgeScrollsOn();
    void restingElsewhereDoesNotScroll();
    void scrollingEndsWithTheDrag();

    void closingTheDraggedRowEndsTheDrag();
    void closingTheMovedRowReportsTheOrderFirst();
    void closingAnotherRowKeepsTheDrag();
    void clearingEndsTheDrag();
    void clearingReportsTheOrderFirst();
    void takingTheFilesEndsTheDrag();
    void dragWithoutAnEndIsForgotten();

private:
    void add(int count);
    [[nodiscard]] FileListItem *row(int index) const
    {
        return qobject_cast<FileListItem *>(m_list->itemWidget(m_list->item(index)));
    }
    /// A point of the viewport in global coordinates.
    [[nodiscard]] QPointF at(int y, int x = 300) const
    {
        return m_list->viewport()->mapToGlobal(QPoint(x, y));
    }
    [[nodiscard]] QStringList order() const { return names(m_widget->files()); }
    [[nodiscard]] QScrollBar *bar() const { return m_list->verticalScrollBar(); }
    [[nodiscard]] int height() const { return m_list->viewport()->height(); }
    /// Presses on a row that can be seen.
    FileListItem *press(int index);

    std::unique_ptr<FileListWidget> m_widget;
    QListWidget *m_list = nullptr;
    std::unique_ptr<QSignalSpy> m_counted;
    std::unique_ptr<QSignalSpy> m_ordered;
};

void TestFileListDrag::init()
{
    m_widget = std::make_unique<FileListWidget>();
    m_list = m_widget->findChild<QListWidget *>();
    m_widget->resize(600, 500);
    m_widget->show();
    m_counted = std::make_unique<QSignalSpy>(m_widget.get(), &FileListWidget::fileCountChange);
    m_ordered = std::make_unique<QSignalSpy>(m_widget.get(), &FileListWidget::fileOrderChanged);
}

void TestFileListDrag::cleanup()
{
    m_counted.reset();
    m_ordered.reset();
    m_widget.reset();
}

void TestFileListDrag::add(int count)
{
    QStringList paths;
    for (int i = 0; i < count; ++i) {
        paths += u"/x/%1"_s.arg(i);
    }
    m_widget->onAddFile(paths);
    QCoreApplication::processEvents();
}

FileListItem *TestFileListDrag::press(int index)
{
    FileListItem *pressed = row(index);
    const QRect place = m_list->visualItemRect(m_list->item(index));
    pressLeft(*pressed, at(place.center().y()));
    return pressed;
}

void TestFileListDrag::rowIsDraggedToAnother_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("to");
    QTest::addColumn<QString>("order");
    QTest::newRow("first to last") << 0 << 2 << u"1 2 0"_s;
    QTest::newRow("last to first") << 2 << 0 << u"2 0 1"_s;
    QTest::newRow("first to middle") << 0 << 1 << u"1 0 2"_s;
    QTest::newRow("middle to first") << 1 << 0 << u"1 0 2"_s;
    QTest::newRow("middle to last") << 1 << 2 << u"0 2 1"_s;
}

void TestFileListDrag::rowIsDraggedToAnother()
{
    QFETCH(int, from);
    QFETCH(int, to);
    QFETCH(QString, order);
    add(3);
    FileListItem *dragged = press(from);
    moveLeft(*dragged, at(to * kRowHeight + 40));
    QCOMPARE(this->order().join(u' '), order);
    releaseLeft(*dragged, at(to * kRowHeight + 40));
    QCOMPARE(m_ordered->size(), 1);
    QCOMPARE(names(m_ordered->at(0).at(0).toStringList()).join(u' '), order);
}

void TestFileListDrag::rowsFollowWhileTheMouseIsHeld()
{
    add(4);
    FileListItem *dragged = press(3);
    const QList<std::pair<int, QString>> way{
        {2, u"0 1 3 2"_s}, {1, u"0 3 1 2"_s}, {0, u"3 0 1 2"_s}, {2, u"0 1 3 2"_s}};
    for (const auto &[target, expected] : way) {
        moveLeft(*dragged, at(target * kRowHeight + 40));
        QCOMPARE(order().join(u' '), expected);
        QCoreApplication::processEvents();
        QTRY_COMPARE(dragged->mapTo(m_list->viewport(), QPoint()).y(), target * kRowHeight);
    }
    QCOMPARE(m_ordered->size(), 0);
}

void TestFileListDrag::rowIsDraggingUntilItIsDropped()
{
    add(3);
    FileListItem *dragged = press(1);
    QVERIFY(!dragged->isDragging());
    moveLeft(*dragged, at(140));
    QVERIFY(dragged->isDragging());
    QVERIFY(!row(0)->isDragging() && !row(2)->isDragging());
    releaseLeft(*dragged, at(140));
    QVERIFY(!dragged->isDragging());
    // The list says so as well, to a row that only asks.
    emit dragged->dragStarted();
    QVERIFY(dragged->isDragging());
    emit dragged->dragFinished();
    QVERIFY(!dragged->isDragging());
}

void TestFileListDrag::draggedRowKeepsItsWidget()
{
    add(3);
    FileListItem *dragged = press(0);
    moveLeft(*dragged, at(2 * kRowHeight + 40));
    QCOMPARE(row(2), dragged);
    QCOMPARE(dragged->path(), u"/x/0"_s);
    QCOMPARE(row(0)->path(), u"/x/1"_s);
}

void TestFileListDrag::targetOfAPointer_data()
{
    QTest::addColumn<int>("y");
    QTest::addColumn<QString>("order");
    // Three rows of 80 in a viewport that is higher.
    QTest::newRow("above the viewport") << -1 << u"1 0 2"_s;
    QTest::newRow("far above") << -3000 << u"1 0 2"_s;
    QTest::newRow("upper edge") << 0 << u"1 0 2"_s;
    QTest::newRow("end of the first row") << 79 << u"1 0 2"_s;
    QTest::newRow("begin of its own row") << 80 << u"0 1 2"_s;
    QTest::newRow("end of its own row") << 159 << u"0 1 2"_s;
    QTest::newRow("begin of the last row") << 160 << u"0 2 1"_s;
    QTest::newRow("end of the last row") << 239 << u"0 2 1"_s;
    QTest::newRow("below the last row") << 240 << u"0 1 2"_s;
    QTest::newRow("lower edge") << -10001 << u"0 1 2"_s;
    QTest::newRow("below the viewport") << -10000 << u"0 2 1"_s;
    QTest::newRow("far below") << 3000 << u"0 2 1"_s;
}

void TestFileListDrag::targetOfAPointer()
{
    QFETCH(int, y);
    QFETCH(QString, order);
    if (y <= -10000) {
        y += 10000 + height();
    }
    add(3);
    FileListItem *dragged = press(1);
    moveLeft(*dragged, at(y));
    QVERIFY(dragged->isDragging());
    QCOMPARE(this->order().join(u' '), order);
}

void TestFileListDrag::pointBesideTheRowsIsNoTarget()
{
    add(3);
    FileListItem *dragged = press(0);
    moveLeft(*dragged, at(200, -20));
    QCOMPARE(order().join(u' '), u"0 1 2"_s);
    moveLeft(*dragged, at(-1, -20));
    QCOMPARE(order().join(u' '), u"0 1 2"_s);
    moveLeft(*dragged, at(height(), -20));
    QCOMPARE(order().join(u' '), u"1 2 0"_s);
}

void TestFileListDrag::pointBeyondAScrolledListIsTheRowThere()
{
    add(20);
    FileListItem *dragged = press(0);
    // After a step of 12, the point lies in row 9.
    moveLeft(*dragged, at(9 * kRowHeight - 12));
    QCOMPARE(order().indexOf(u"0"_s), 9);
}

void TestFileListDrag::dragThatComesBackIsNone()
{
    add(3);
    FileListItem *dragged = press(0);
    moveLeft(*dragged, at(200));
    QCOMPARE(order().join(u' '), u"1 2 0"_s);
    moveLeft(*dragged, at(40));
    releaseLeft(*dragged, at(40));
    QCOMPARE(order().join(u' '), u"0 1 2"_s);
    QCOMPARE(m_ordered->size() + m_counted->size(), 0);
}

void TestFileListDrag::pressWithoutADragKeepsTheOrder()
{
    add(3);
    FileListItem *pressed = press(1);
    moveLeft(*pressed, at(kRowHeight + 40 + QApplication::startDragDistance() - 1));
    releaseLeft(*pressed, at(200));
    QCOMPARE(order().join(u' '), u"0 1 2"_s);
    QCOMPARE(m_ordered->size() + m_counted->size(), 0);
}

void TestFileListDrag::endOnAnotherRowEmptiesTheList()
{
    add(3);
    FileListItem *dragged = press(0);
    moveLeft(*dragged, at(200));
    releaseLeft(*dragged, at(200));
    QCOMPARE(m_ordered->size(), 1);
    QCOMPARE(m_list->count(), 0);
    QCOMPARE(m_counted->size(), 0);
}

void TestFileListDrag::filesCanBePutBackAtTheEnd()
{
    connect(m_widget.get(), &FileListWidget::fileOrderChanged, m_widget.get(),
            &FileListWidget::putBack);
    add(20);
    bar()->setValue(300);
    // Row 5 lies from 100 to 180.
    FileListItem *dragged = press(5);
    moveLeft(*dragged, at(220));
    releaseLeft(*dragged, at(220));
    QCOMPARE(m_list->count(), 20);
    QCOMPARE(order().mid(4, 4).join(u' '), u"4 6 5 7"_s);
    QCOMPARE(bar()->value(), 300);
    // The new rows can be dragged, too.
    QCoreApplication::processEvents();
    dragged = press(6);
    moveLeft(*dragged, at(140));
    releaseLeft(*dragged, at(140));
    QCOMPARE(order().mid(4, 4).join(u' '), u"4 5 6 7"_s);
    QCOMPARE(m_ordered->size(), 2);
}

void TestFileListDrag::movesWithoutADragDoNothing()
{
    add(20);
    bar()->setValue(400);
    emit row(6)->dragMoved(at(5).toPoint());
    emit row(6)->dragFinished();
    QCOMPARE(bar()->value(), 400);
    QCOMPARE(order().indexOf(u"6"_s), 6);
    QCOMPARE(m_ordered->size(), 0);
}

void TestFileListDrag::edgeScrolls_data()
{
    QTest::addColumn<int>("y");
    QTest::addColumn<bool>("fromBelow");
    QTest::addColumn<int>("step");
    QTest::newRow("above") << 31 << false << -12;
    QTest::newRow("margin above") << 32 << false << 0;
    QTest::newRow("below") << -31 << true << 12;
    QTest::newRow("margin below") << -32 << true << 0;
}

void TestFileListDrag::edgeScrolls()
{
    QFETCH(int, y);
    QFETCH(bool, fromBelow);
    QFETCH(int, step);
    add(20);
    if (fromBelow) {
        y += height();
    }
    constexpr int kValue = 400;
    bar()->setValue(kValue);
    // The row that will be under the pointer, so that it stays where it is.
    const int index = (kValue + step + y) / kRowHeight;
    emit row(index)->dragStarted();
    emit row(index)->dragMoved(at(y).toPoint());
    QCOMPARE(bar()->value(), kValue + step);
    QCOMPARE(order().indexOf(QString::number(index)), index);
}

void TestFileListDrag::eachMoveScrollsOnce()
{
    add(20);
    bar()->setValue(460);
    // Row 5 is under the pointer from 400 to 470.
    emit row(5)->dragStarted();
    for (const int expected : {448, 436, 424, 412}) {
        emit row(5)->dragMoved(at(10).toPoint());
        QCOMPARE(bar()->value(), expected);
    }
    QCOMPARE(order().indexOf(u"5"_s), 5);
}

void TestFileListDrag::movedRowStaysInSight()
{
    add(20);
    FileListItem *dragged = press(0);
    moveLeft(*dragged, at(height() - 1));
    const int moved = static_cast<int>(order().indexOf(u"0"_s));
    QCOMPARE(moved, (height() - 1 + 12) / kRowHeight);
    // It is the last that can be seen, and whole.
    QCOMPARE(bar()->value() + height(), (moved + 1) * kRowHeight);
    QVERIFY(m_list->viewport()->rect().contains(m_list->visualItemRect(m_list->item(moved))));
}

void TestFileListDrag::restingAtAnEdgeScrollsOn_data()
{
    QTest::addColumn<int>("y");
    QTest::addColumn<int>("end");
    QTest::newRow("up") << 10 << 0;
    QTest::newRow("beyond the upper edge") << -100 << 0;
    QTest::newRow("down") << 9990 << 19;
    QTest::newRow("beyond the lower edge") << 10100 << 19;
}

void TestFileListDrag::restingAtAnEdgeScrollsOn()
{
    QFETCH(int, y);
    QFETCH(int, end);
    if (y > 5000) {
        y += height() - 10000;
    }
    add(20);
    bar()->setValue(600);
    FileListItem *dragged = press(10);
    moveLeft(*dragged, at(y));
    // Nothing but time goes by.
    QTRY_COMPARE(static_cast<int>(order().indexOf(u"10"_s)), end);
    QTRY_COMPARE(bar()->value(), end == 0 ? 0 : bar()->maximum());
    releaseLeft(*dragged, at(y));
    QCOMPARE(m_ordered->size(), 1);
}

void TestFileListDrag::restingElsewhereDoesNotScroll()
{
    add(20);
    bar()->setValue(600);
    FileListItem *dragged = press(10);
    for (const int y : {32, height() - 32}) {
        moveLeft(*dragged, at(y));
        const int value = bar()->value();
        const QStringList before = order();
        QTest::qWait(150);
        QCOMPARE(bar()->value(), value);
        QCOMPARE(order(), before);
    }
}

void TestFileListDrag::scrollingEndsWithTheDrag()
{
    add(20);
    bar()->setValue(620);
    // Row 7 is under the pointer.
    emit row(7)->dragStarted();
    emit row(7)->dragMoved(at(5).toPoint());
    emit row(7)->dragFinished();
    QCOMPARE(m_list->count(), 20);
    const int value = bar()->value();
    const TimerCount timers;
    QTest::qWait(150);
    QCOMPARE(bar()->value(), value);
    QCOMPARE(timers.count(), 0);
}

void TestFileListDrag::closingTheDraggedRowEndsTheDrag()
{
    add(3);
    FileListItem *dragged = press(1);
    moveLeft(*dragged, at(140));
    emit dragged->close();
    QCOMPARE(order().join(u' '), u"0 2"_s);
    QCOMPARE(m_ordered->size(), 0);
    QCOMPARE(m_counted->size(), 1);
    QCOMPARE(m_counted->at(0).at(0).toInt(), 2);
    // The mouse is still held.
    moveLeft(*dragged, at(20));
    releaseLeft(*dragged, at(20));
    QCOMPARE(order().join(u' '), u"0 2"_s);
    QCOMPARE(m_ordered->size(), 0);
}

void TestFileListDrag::closingTheMovedRowReportsTheOrderFirst()
{
    QStringList told;
    connect(m_widget.get(), &FileListWidget::fileOrderChanged, this,
            [&](const QStringList &files) { told += names(files).join(u' '); });
    connect(m_widget.get(), &FileListWidget::fileCountChange, this,
            [&](int count) { told += QString::number(count); });
    add(3);
    FileListItem *dragged = press(0);
    moveLeft(*dragged, at(200));
    emit dragged->close();
    QCOMPARE(told, QStringList({u"1 2 0"_s, u"0"_s}));
    QCOMPARE(m_list->count(), 0);
}

void TestFileListDrag::closingAnotherRowKeepsTheDrag()
{
    add(4);
    FileListItem *dragged = press(0);
    moveLeft(*dragged, at(60));
    emit row(3)->close();
    QCOMPARE(m_counted->size(), 1);
    QVERIFY(dragged->isDragging());
    moveLeft(*dragged, at(200));
    QCOMPARE(order().join(u' '), u"1 2 0"_s);
    releaseLeft(*dragged, at(200));
    QCOMPARE(m_ordered->size(), 1);
}

void TestFileListDrag::clearingEndsTheDrag()
{
    add(3);
    FileListItem *dragged = press(1);
    moveLeft(*dragged, at(140));
    m_widget->clearFiles();
    QCOMPARE(m_ordered->size(), 0);
    QCOMPARE(m_counted->size(), 1);
    add(3);
    moveLeft(*dragged, at(20));
    QTest::qWait(100);
    QCOMPARE(order().join(u' '), u"0 1 2"_s);
}

void TestFileListDrag::clearingReportsTheOrderFirst()
{
    // Also when somebody puts the files back.
    connect(m_widget.get(), &FileListWidget::fileOrderChanged, m_widget.get(),
            &FileListWidget::putBack);
    add(3);
    FileListItem *dragged = press(0);
    moveLeft(*dragged, at(200));
    m_widget->clearFiles();
    QCOMPARE(m_ordered->size(), 1);
    QCOMPARE(m_counted->size(), 1);
    QCOMPARE(m_counted->at(0).at(0).toInt(), 0);
    QCOMPARE(m_list->count(), 0);
}

void TestFileListDrag::takingTheFilesEndsTheDrag()
{
    add(20);
    FileListItem *dragged = press(1);
    moveLeft(*dragged, at(height() - 5));
    QVERIFY(m_widget->takeFiles().size() == 20);
    QVERIFY(!dragged->isDragging());
    add(20);
    const QStringList before = order();
    QTest::qWait(100);
    QCOMPARE(order(), before);
    m_widget->clearFiles();
    QCOMPARE(m_ordered->size(), 0);
    QCOMPARE(m_counted->size(), 1);
}

void TestFileListDrag::dragWithoutAnEndIsForgotten()
{
    add(3);
    FileListItem *lost = press(0);
    moveLeft(*lost, at(60));
    QVERIFY(lost->isDragging());
    FileListItem *dragged = press(2);
    moveLeft(*dragged, at(200 + QApplication::startDragDistance()));
    QVERIFY(dragged->isDragging());
    QVERIFY(!lost->isDragging());
    releaseLeft(*dragged, at(200));
    QCOMPARE(order().join(u' '), u"0 1 2"_s);
}

QTEST_MAIN(TestFileListDrag)
#include "tst_file_list_drag.moc"
