// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdf/viewer/shown_view.h"

#include <QApplication>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QWheelEvent>

#include <memory>

namespace {

struct Wheel
{
    QPoint pixelDelta;
    QPoint angleDelta;
    Qt::KeyboardModifiers modifiers = Qt::NoModifier;
    QPointF position{200, 150};
};

/// Turns the wheel over the viewport; true if the view took the event.
bool turnWheel(ShownView &shown, const Wheel &wheel)
{
    QWidget *viewport = shown.view.viewport();
    QWheelEvent event(wheel.position, viewport->mapToGlobal(wheel.position), wheel.pixelDelta,
                      wheel.angleDelta, Qt::NoButton, wheel.modifiers, Qt::NoScrollPhase, false);
    event.ignore();
    QApplication::sendEvent(viewport, &event);
    return event.isAccepted();
}

bool sendMouse(ShownView &shown, QEvent::Type type, QPointF position, Qt::MouseButton button,
               Qt::MouseButtons buttons)
{
    QWidget *viewport = shown.view.viewport();
    QMouseEvent event(type, position, viewport->mapToGlobal(position), button, buttons,
                      Qt::NoModifier);
    event.ignore();
    QApplication::sendEvent(viewport, &event);
    return event.isAccepted();
}

} // namespace

/// Mouse, wheel and keyboard in the document view.
class TestPdfDocumentViewInput final : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void clickNamesThePageUnderIt_data();
    void clickNamesThePageUnderIt();
    void clickAfterScrollingNamesThePageUnderIt();
    void otherButtonsClickNothing();
    void handToolShowsTheOpenHand();
    void handToolPansInsteadOfClicking();
    void middleButtonPansWithoutTheHandTool();
    void panningEndsWithEitherButton();
    void panningRoundsThePosition();
    void movingWithoutPanningScrollsNothing();
    void leftButtonDoesNotPanWithoutTheHandTool();
    void wheelScrolls_data();
    void wheelScrolls();
    void controlWheelZooms_data();
    void controlWheelZooms();
    void controlWheelKeepsThePointUnderThePointer();
    void controlWheelKeepsThePageFarDown();
    void controlWheelEndsTheFitMode();
    void controlWheelWithoutAMovementChangesNothing();
    void keysScroll_data();
    void keysScroll();

private:
    [[nodiscard]] QPoint scroll() const { return {m_shown->scrollX(), m_shown->scrollY()}; }
    [[nodiscard]] Qt::CursorShape cursor() const
    {
        return m_shown->view.viewport()->cursor().shape();
    }

    std::unique_ptr<ShownView> m_shown;
};

void TestPdfDocumentViewInput::init()
{
    // Pages of 1190 × 1684, content of 1254 × 17064.
    m_shown = std::make_unique<ShownView>(a4Pages(10), QSize(800, 600));
    m_shown->view.setZoomFactor(2.0);
    m_shown->resizeViewport({800, 600});
    m_shown->scrollToY(2000);
    m_shown->view.horizontalScrollBar()->setValue(200);
    QCOMPARE(scroll(), QPoint(200, 2000));
}

void TestPdfDocumentViewInput::cleanup()
{
    m_shown.reset();
}

void TestPdfDocumentViewInput::clickNamesThePageUnderIt_data()
{
    QTest::addColumn<QPoint>("content");
    QTest::addColumn<int>("page");
    QTest::newRow("first corner of the second page") << QPoint(200, 32 + 1702) << 1;
    QTest::newRow("gap above it") << QPoint(200, 32 + 1701) << -1;
    QTest::newRow("last row of the first page") << QPoint(200, 32 + 1683) << 0;
}

void TestPdfDocumentViewInput::clickNamesThePageUnderIt()
{
    QFETCH(QPoint, content);
    QFETCH(int, page);
    m_shown->scrollToY(1600);
    const QSignalSpy clicked(&m_shown->view, &PdfDocumentView::pageClicked);
    QTest::mousePress(m_shown->view.viewport(), Qt::LeftButton, {}, content - scroll());
    QCOMPARE(clicked.size(), page < 0 ? 0 : 1);
    if (page >= 0) {
        QCOMPARE(clicked.first().first().toInt(), page);
    }
}

void TestPdfDocumentViewInput::clickAfterScrollingNamesThePageUnderIt()
{
    const QSignalSpy clicked(&m_shown->view, &PdfDocumentView::pageClicked);
    m_shown->scrollToY(m_shown->maximumScrollY());
    QTest::mousePress(m_shown->view.viewport(), Qt::LeftButton, {}, {400, 300});
    QCOMPARE(clicked.size(), 1);
    QCOMPARE(clicked.first().first().toInt(), 9);
}

void TestPdfDocumentViewInput::otherButtonsClickNothing()
{
    const QSignalSpy clicked(&m_shown->view, &PdfDocumentView::pageClicked);
    QTest::mouseClick(m_shown->view.viewport(), Qt::RightButton, {}, {400, 300});
    QTest::mouseClick(m_shown->view.viewport(), Qt::MiddleButton, {}, {400, 300});
    QCOMPARE(clicked.size(), 0);
}

void TestPdfDocumentViewInput::handToolShowsTheOpenHand()
{
    m_shown->view.setHandToolEnabled(true);
    QCOMPARE(cursor(), Qt::OpenHandCursor);
    m_shown->view.setHandToolEnabled(false);
    QCOMPARE(cursor(), Qt::ArrowCursor);
}

void TestPdfDocumentViewInput::handToolPansInsteadOfClicking()
{
    const QSignalSpy clicked(&m_shown->view, &PdfDocumentView::pageClicked);
    m_shown->view.setHandToolEnabled(true);
    QVERIFY(
        sendMouse(*m_shown, QEvent::MouseButtonPress, {400, 300}, Qt::LeftButton, Qt::LeftButton));
    QCOMPARE(cursor(), Qt::ClosedHandCursor);
    QVERIFY(sendMouse(*m_shown, QEvent::MouseMove, {390, 250}, Qt::NoButton, Qt::LeftButton));
    QCOMPARE(scroll(), QPoint(210, 2050));
    QVERIFY(sendMouse(*m_shown, QEvent::MouseMove, {420, 330}, Qt::NoButton, Qt::LeftButton));
    QCOMPARE(scroll(), QPoint(180, 1970));
    QVERIFY(
        sendMouse(*m_shown, QEvent::MouseButtonRelease, {420, 330}, Qt::LeftButton, Qt::NoButton));
    QCOMPARE(cursor(), Qt::OpenHandCursor);
    QCOMPARE(clicked.size(), 0);
}

void TestPdfDocumentViewInput::middleButtonPansWithoutTheHandTool()
{
    QVERIFY(sendMouse(*m_shown, QEvent::MouseButtonPress, {400, 300}, Qt::MiddleButton,
                      Qt::MiddleButton));
    QCOMPARE(cursor(), Qt::ClosedHandCursor);
    QVERIFY(sendMouse(*m_shown, QEvent::MouseMove, {401, 290}, Qt::NoButton, Qt::MiddleButton));
    QCOMPARE(scroll(), QPoint(199, 2010));
    QVERIFY(sendMouse(*m_shown, QEvent::MouseButtonRelease, {401, 290}, Qt::MiddleButton,
                      Qt::NoButton));
    QCOMPARE(cursor(), Qt::ArrowCursor);
}

void TestPdfDocumentViewInput::panningEndsWithEitherButton()
{
    sendMouse(*m_shown, QEvent::MouseButtonPress, {400, 300}, Qt::MiddleButton, Qt::MiddleButton);
    sendMouse(*m_shown, QEvent::MouseButtonRelease, {400, 300}, Qt::RightButton, Qt::MiddleButton);
    QCOMPARE(cursor(), Qt::ClosedHandCursor);
    sendMouse(*m_shown, QEvent::MouseButtonRelease, {400, 300}, Qt::LeftButton, Qt::MiddleButton);
    QCOMPARE(cursor(), Qt::ArrowCursor);
    sendMouse(*m_shown, QEvent::MouseMove, {300, 200}, Qt::NoButton, Qt::MiddleButton);
    QCOMPARE(scroll(), QPoint(200, 2000));
}

void TestPdfDocumentViewInput::panningRoundsThePosition()
{
    sendMouse(*m_shown, QEvent::MouseButtonPress, {400.6, 300.4}, Qt::MiddleButton,
              Qt::MiddleButton);
    sendMouse(*m_shown, QEvent::MouseMove, {390.4, 290.6}, Qt::NoButton, Qt::MiddleButton);
    QCOMPARE(scroll(), QPoint(200 + 401 - 390, 2000 + 300 - 291));
}

void TestPdfDocumentViewInput::movingWithoutPanningScrollsNothing()
{
    sendMouse(*m_shown, QEvent::MouseMove, {390, 250}, Qt::NoButton, Qt::NoButton);
    QCOMPARE(scroll(), QPoint(200, 2000));
}

void TestPdfDocumentViewInput::leftButtonDoesNotPanWithoutTheHandTool()
{
    sendMouse(*m_shown, QEvent::MouseButtonPress, {400, 300}, Qt::LeftButton, Qt::LeftButton);
    sendMouse(*m_shown, QEvent::MouseMove, {390, 250}, Qt::NoButton, Qt::LeftButton);
    QCOMPARE(scroll(), QPoint(200, 2000));
    QCOMPARE(cursor(), Qt::ArrowCursor);
}

void TestPdfDocumentViewInput::wheelScrolls_data()
{
    QTest::addColumn<QPoint>("pixelDelta");
    QTest::addColumn<QPoint>("angleDelta");
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
    QTest::addColumn<QPoint>("moved");
    const Qt::KeyboardModifiers none = Qt::NoModifier;
    const Qt::KeyboardModifiers shift = Qt::ShiftModifier;
    QTest::newRow("one notch down") << QPoint() << QPoint(0, -120) << none << QPoint(0, 180);
    QTest::newRow("one notch up") << QPoint() << QPoint(0, 120) << none << QPoint(0, -180);
    QTest::newRow("rounded") << QPoint() << QPoint(0, -15) << none << QPoint(0, 23);
    QTest::newRow("sideways") << QPoint() << QPoint(-20, 0) << none << QPoint(30, 0);
    QTest::newRow("shift") << QPoint() << QPoint(0, -40) << shift << QPoint(60, 0);
    QTest::newRow("shift and sideways") << QPoint() << QPoint(20, -40) << shift << QPoint(-30, 60);
    QTest::newRow("pixels win") << QPoint(3, -7) << QPoint(0, -120) << none << QPoint(-3, 7);
}

void TestPdfDocumentViewInput::wheelScrolls()
{
    QFETCH(QPoint, pixelDelta);
    QFETCH(QPoint, angleDelta);
    QFETCH(Qt::KeyboardModifiers, modifiers);
    QFETCH(QPoint, moved);
    QVERIFY(turnWheel(*m_shown, {pixelDelta, angleDelta, modifiers}));
    QCOMPARE(scroll() - QPoint(200, 2000), moved);
    QCOMPARE(m_shown->view.zoomFactor(), 2.0);
}

void TestPdfDocumentViewInput::controlWheelZooms_data()
{
    QTest::addColumn<QPoint>("angleDelta");
    QTest::addColumn<double>("zoom");
    QTest::newRow("up") << QPoint(0, 120) << 2.0 * 1.12;
    QTest::newRow("down") << QPoint(0, -120) << 2.0 / 1.12;
    QTest::newRow("a little up") << QPoint(0, 1) << 2.0 * 1.12;
}

void TestPdfDocumentViewInput::controlWheelZooms()
{
    QFETCH(QPoint, angleDelta);
    QVERIFY(turnWheel(*m_shown, {{}, angleDelta, Qt::ControlModifier}));
    QTEST(m_shown->view.zoomFactor(), "zoom");
}

void TestPdfDocumentViewInput::controlWheelKeepsThePointUnderThePointer()
{
    const QPointF pointer(350.5, 420.0);
    const PageLayout before = m_shown->layout();
    const QPointF point = pointer + QPointF(200, 2000);
    const int row = pageForAnchor(before, point);
    const QRectF page = before.pages.at(row);
    QVERIFY(page.contains(point));
    QVERIFY(turnWheel(*m_shown, {{}, {0, 120}, Qt::ControlModifier, pointer}));
    const QRectF grown = m_shown->layout().pages.at(row);
    const QPointF moved = pointer + scroll();
    QVERIFY(std::abs((moved.x() - grown.left()) / grown.width() -
                     (point.x() - page.left()) / page.width()) < 0.001);
    QVERIFY(std::abs((moved.y() - grown.top()) / grown.height() -
                     (point.y() - page.top()) / page.height()) < 0.001);
}

void TestPdfDocumentViewInput::controlWheelKeepsThePageFarDown()
{
    // Thousands of gaps above, none of which grows.
    ShownView shown(a4Pages(3000));
    shown.view.setZoomFactor(1.0);
    shown.view.goToPage(2500);
    const QPointF pointer(400.0, 300.0);
    const auto pageUnderPointer = [&] {
        return pageForAnchor(shown.layout(), pointer + QPointF(0, shown.scrollY()));
    };
    QCOMPARE(pageUnderPointer(), 2500);
    for (int notch = 0; notch < 5; ++notch) {
        QVERIFY(turnWheel(shown, {{}, {0, 120}, Qt::ControlModifier, pointer}));
        QCOMPARE(pageUnderPointer(), 2500);
    }
    for (int notch = 0; notch < 5; ++notch) {
        QVERIFY(turnWheel(shown, {{}, {0, -120}, Qt::ControlModifier, pointer}));
    }
    const int top = shown.layout().pages.at(2500).top();
    QVERIFY(std::abs(shown.scrollY() - (top - 32)) <= 5);
}

void TestPdfDocumentViewInput::controlWheelEndsTheFitMode()
{
    m_shown->view.fitWidth();
    turnWheel(*m_shown, {{}, {0, 120}, Qt::ControlModifier});
    QCOMPARE(m_shown->view.fitMode(), PdfDocumentView::FitMode::Manual);
}

void TestPdfDocumentViewInput::controlWheelWithoutAMovementChangesNothing()
{
    QVERIFY(turnWheel(*m_shown, {{}, {}, Qt::ControlModifier}));
    QCOMPARE(m_shown->view.zoomFactor(), 2.0);
    QCOMPARE(scroll(), QPoint(200, 2000));
}

void TestPdfDocumentViewInput::keysScroll_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
    QTest::addColumn<QPoint>("position");
    const Qt::KeyboardModifiers none = Qt::NoModifier;
    const int bottom = 32 + 10 * (1684 + 18) + 14 - 600;
    QTest::newRow("down") << Qt::Key_Down << none << QPoint(200, 2048);
    QTest::newRow("up") << Qt::Key_Up << none << QPoint(200, 1952);
    QTest::newRow("left") << Qt::Key_Left << none << QPoint(152, 2000);
    QTest::newRow("right") << Qt::Key_Right << none << QPoint(248, 2000);
    QTest::newRow("page down") << Qt::Key_PageDown << none << QPoint(200, 2600);
    QTest::newRow("page up") << Qt::Key_PageUp << none << QPoint(200, 1400);
    QTest::newRow("space") << Qt::Key_Space << none << QPoint(200, 2600);
    QTest::newRow("shift and space")
        << Qt::Key_Space << Qt::KeyboardModifiers(Qt::ShiftModifier) << QPoint(200, 1400);
    QTest::newRow("home") << Qt::Key_Home << none << QPoint(200, 0);
    QTest::newRow("end") << Qt::Key_End << none << QPoint(200, bottom);
}

void TestPdfDocumentViewInput::keysScroll()
{
    QFETCH(Qt::Key, key);
    QFETCH(Qt::KeyboardModifiers, modifiers);
    QTest::keyClick(&m_shown->view, key, modifiers);
    QTEST(scroll(), "position");
}

QTEST_MAIN(TestPdfDocumentViewInput)
#include "tst_pdf_document_view_input.moc"
