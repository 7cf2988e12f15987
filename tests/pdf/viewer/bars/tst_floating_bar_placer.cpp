// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/bars/floating_bar_placer.h"

#include <QTest>
#include <QWidget>

#include <memory>

namespace {

constexpr QSize kAreaSize{600, 400};
constexpr QSize kBarSize{200, 40};

/// A bar that wants to be of a size that can be changed.
class Bar final : public QWidget
{
public:
    using QWidget::QWidget;

    [[nodiscard]] QSize sizeHint() const override { return wanted; }

    QSize wanted = kBarSize;
};

} // namespace

class TestFloatingBarPlacer final : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void allowedBarStandsInTheMiddleAboveTheLowerEdge();
    void barIsHiddenUntilItIsAllowed();
    void forbiddenBarIsHiddenAtOnceAndStaysSo();
    void barFollowsTheSizeOfItsParent();
    void barTakesTheSizeThatItWants();
    void barIsPlacedAnewWhenItWantsAnotherSize();
    void barStaysInsideASmallParent();
    void barOfAHiddenParentIsPlacedWhenThatIsShown();
    void barIsRaisedAboveItsSiblings();
    void barMayGoBeforeItIsPlaced();

private:
    std::unique_ptr<QWidget> m_area;
    Bar *m_bar = nullptr;
    FloatingBarPlacer *m_placer = nullptr;
};

void TestFloatingBarPlacer::init()
{
    m_area = std::make_unique<QWidget>();
    m_area->resize(kAreaSize);
    m_bar = new Bar(m_area.get());
    m_bar->hide();
    m_placer = new FloatingBarPlacer(m_bar);
    m_area->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_area.get()));
    QCoreApplication::processEvents();
}

void TestFloatingBarPlacer::cleanup()
{
    m_area.reset();
}

void TestFloatingBarPlacer::allowedBarStandsInTheMiddleAboveTheLowerEdge()
{
    m_placer->setAllowed(true);
    QTRY_VERIFY(m_bar->isVisible());
    QCOMPARE(m_bar->geometry(), QRect(QPoint(200, 336), kBarSize));
}

void TestFloatingBarPlacer::barIsHiddenUntilItIsAllowed()
{
    m_area->resize(kAreaSize + QSize(20, 20));
    QTest::qWait(20);
    QVERIFY(!m_bar->isVisible());
}

void TestFloatingBarPlacer::forbiddenBarIsHiddenAtOnceAndStaysSo()
{
    m_placer->setAllowed(true);
    QTRY_VERIFY(m_bar->isVisible());
    m_area->resize(kAreaSize + QSize(20, 20));
    m_placer->setAllowed(false);
    QVERIFY(!m_bar->isVisible());
    QTest::qWait(20);
    QVERIFY(!m_bar->isVisible());
}

void TestFloatingBarPlacer::barFollowsTheSizeOfItsParent()
{
    m_placer->setAllowed(true);
    QTRY_VERIFY(m_bar->isVisible());
    m_area->resize(800, 500);
    QTRY_COMPARE(m_bar->pos(), QPoint(300, 436));
}

void TestFloatingBarPlacer::barTakesTheSizeThatItWants()
{
    m_placer->setAllowed(true);
    QTRY_VERIFY(m_bar->isVisible());
    m_bar->wanted = QSize(260, 50);
    m_placer->setAllowed(true);
    QTRY_COMPARE(m_bar->geometry(), QRect(170, 326, 260, 50));
}

void TestFloatingBarPlacer::barIsPlacedAnewWhenItWantsAnotherSize()
{
    m_placer->setAllowed(true);
    QTRY_VERIFY(m_bar->isVisible());
    m_bar->wanted = QSize(260, 50);
    m_bar->updateGeometry();
    QTRY_COMPARE(m_bar->geometry(), QRect(170, 326, 260, 50));
}

void TestFloatingBarPlacer::barStaysInsideASmallParent()
{
    m_placer->setAllowed(true);
    QTRY_VERIFY(m_bar->isVisible());
    m_area->resize(150, 50);
    QTRY_COMPARE(m_bar->pos(), QPoint(0, 8));
}

void TestFloatingBarPlacer::barOfAHiddenParentIsPlacedWhenThatIsShown()
{
    m_area->hide();
    m_area->resize(800, 500);
    m_placer->setAllowed(true);
    QTest::qWait(20);
    QVERIFY(m_bar->isHidden());
    m_area->show();
    QTRY_VERIFY(m_bar->isVisible());
    QCOMPARE(m_bar->pos(), QPoint(300, 436));
}

void TestFloatingBarPlacer::barIsRaisedAboveItsSiblings()
{
    auto *sibling = new QWidget(m_area.get());
    sibling->setGeometry(m_area->rect());
    sibling->show();
    m_placer->setAllowed(true);
    QTRY_VERIFY(m_bar->isVisible());
    QCOMPARE(m_area->childAt(m_bar->geometry().center()), m_bar);
}

void TestFloatingBarPlacer::barMayGoBeforeItIsPlaced()
{
    m_placer->setAllowed(true);
    delete m_bar;
    m_area->resize(800, 500);
    QTest::qWait(20);
    QVERIFY(m_area->children().isEmpty());
}

QTEST_MAIN(TestFloatingBarPlacer)
#include "tst_floating_bar_placer.moc"
