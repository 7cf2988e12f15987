// SPDX-License-Identifier: AGPL-3.0-or-later
#include "widgets/scroll_bar_style.h"

#include <QScrollBar>
#include <QTest>

class TestScrollBarStyle final : public QObject
{
    Q_OBJECT

private slots:
    void barsAreAsThickAsAskedFor_data();
    void barsAreAsThickAsAskedFor();
    void handleFillsTheBarButForItsMargins();
    void handleOfAHorizontalBarHasTheMarginsTurned();
    void handleLightsUpUnderThePointer();
    void handleStaysLongEnoughToBeGrabbed();

private:
    /// A bar of 200 logical pixels at the beginning of `steps` steps.
    static QScrollBar &addBar(QWidget &window, Qt::Orientation orientation, int steps);
};

QScrollBar &TestScrollBarStyle::addBar(QWidget &window, Qt::Orientation orientation, int steps)
{
    auto *bar = new QScrollBar(orientation, &window);
    bar->setRange(0, steps);
    bar->setPageStep(1);
    const QSize hint = bar->sizeHint();
    bar->setGeometry(0, 0, orientation == Qt::Horizontal ? 200 : hint.width(),
                     orientation == Qt::Horizontal ? hint.height() : 200);
    window.resize(300, 300);
    window.show();
    return *bar;
}

void TestScrollBarStyle::barsAreAsThickAsAskedFor_data()
{
    QTest::addColumn<int>("thickness");
    QTest::newRow("usual") << 10;
    QTest::newRow("thin") << 8;
}

void TestScrollBarStyle::barsAreAsThickAsAskedFor()
{
    QFETCH(int, thickness);
    QWidget window;
    window.setStyleSheet(scrollBarStyleSheet({.thickness = thickness}));
    QCOMPARE(addBar(window, Qt::Vertical, 1).sizeHint().width(), thickness);
    QCOMPARE(addBar(window, Qt::Horizontal, 1).sizeHint().height(), thickness);
}

void TestScrollBarStyle::handleFillsTheBarButForItsMargins()
{
    QWidget window;
    window.setStyleSheet(
        QStringLiteral("QWidget { background: #ffffff; }") +
        scrollBarStyleSheet({.margins = {4, 2, 0, 2}, .handle = Qt::red, .radius = 0}));
    const QScrollBar &vertical = addBar(window, Qt::Vertical, 1);
    const QImage image = window.grab(vertical.geometry()).toImage();
    QCOMPARE(image.pixelColor(3, 50), Theme::white);
    QCOMPARE(image.pixelColor(4, 50), QColor(Qt::red));
    QCOMPARE(image.pixelColor(9, 50), QColor(Qt::red));
    QCOMPARE(image.pixelColor(7, 1), Theme::white);
    QCOMPARE(image.pixelColor(7, 2), QColor(Qt::red));
    QCOMPARE(image.pixelColor(7, 150), Theme::white);
}

void TestScrollBarStyle::handleOfAHorizontalBarHasTheMarginsTurned()
{
    QWidget window;
    window.setStyleSheet(
        QStringLiteral("QWidget { background: #ffffff; }") +
        scrollBarStyleSheet({.margins = {4, 2, 0, 2}, .handle = Qt::red, .radius = 0}));
    const QScrollBar &horizontal = addBar(window, Qt::Horizontal, 1);
    const QImage image = window.grab(horizontal.geometry()).toImage();
    QCOMPARE(image.pixelColor(1, 5), Theme::white);
    QCOMPARE(image.pixelColor(2, 5), QColor(Qt::red));
    QCOMPARE(image.pixelColor(50, 0), QColor(Qt::red));
    QCOMPARE(image.pixelColor(50, 5), QColor(Qt::red));
    QCOMPARE(image.pixelColor(50, 6), Theme::white);
    QCOMPARE(image.pixelColor(50, 9), Theme::white);
}

void TestScrollBarStyle::handleLightsUpUnderThePointer()
{
    QWidget window;
    window.setStyleSheet(scrollBarStyleSheet({.handle = Qt::red, .hoveredHandle = Qt::blue}));
    QScrollBar &bar = addBar(window, Qt::Vertical, 1);
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QTest::mouseMove(&bar, {5, 150});
    QCOMPARE(window.grab().toImage().pixelColor(5, 50), QColor(Qt::red));
    QTest::mouseMove(&bar, {5, 50});
    QTRY_COMPARE(window.grab().toImage().pixelColor(5, 50), QColor(Qt::blue));
}

void TestScrollBarStyle::handleStaysLongEnoughToBeGrabbed()
{
    QWidget window;
    window.setStyleSheet(
        QStringLiteral("QWidget { background: #ffffff; }") +
        scrollBarStyleSheet(
            {.handle = Qt::red, .hoveredHandle = Qt::red, .radius = 0, .minimumLength = 24}));
    const QScrollBar &bar = addBar(window, Qt::Vertical, 100000);
    const QImage image = window.grab(bar.geometry()).toImage();
    int height = 0;
    for (int y = 0; y < image.height(); ++y) {
        height += image.pixelColor(5, y) == QColor(Qt::red) ? 1 : 0;
    }
    QCOMPARE(height, 24);
}

QTEST_MAIN(TestScrollBarStyle)

#include "tst_scroll_bar_style.moc"
