// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/widgets/control_test.h"
#include "widgets/switch_button.h"

#include <QPropertyAnimation>
#include <QSignalSpy>

namespace {

constexpr QColor kOn{0x16, 0x5D, 0xFF};
constexpr QColor kOffBorder{0xE5, 0xE6, 0xEB};
constexpr QColor kOff{0xF2, 0xF3, 0xF5};

QPropertyAnimation *animationOf(const SwitchButton &button)
{
    return button.findChild<QPropertyAnimation *>();
}

} // namespace

/// The switch with its sliding knob.
class TestSwitchButton final : public QObject
{
    Q_OBJECT

private slots:
    void startsOff();
    void slidesInAFifthOfASecond();
    void pressSwitchesAtOnceAndSlides();
    void secondPressReversesFromThePresentPosition();
    void doubleClickSwitchesTwice();
    void otherButtonsDoNothing();
    void disabledOneStays();
    void setCheckedIsSilentAndImmediate();
    void setCheckedEndsTheSliding();
    void spaceSwitchesWhereFocusIsGiven();
    void looksOff();
    void looksOn();
    void knobFollowsThePosition_data();
    void knobFollowsThePosition();
    void disabledLookIsFaint();
    void sharpAtTwiceTheScale();
};

void TestSwitchButton::startsOff()
{
    const SwitchButton button;
    QVERIFY(!button.isChecked());
    QCOMPARE(button.sliderPosition(), 0.0);
    QCOMPARE(button.property("sliderPosition").toDouble(), 0.0);
    QCOMPARE(button.minimumSize(), QSize(60, 30));
    QCOMPARE(button.maximumSize(), QSize(60, 30));
    QCOMPARE(button.cursor().shape(), Qt::PointingHandCursor);
    QCOMPARE(button.focusPolicy(), Qt::NoFocus);
}

void TestSwitchButton::slidesInAFifthOfASecond()
{
    const SwitchButton button;
    const QPropertyAnimation *animation = animationOf(button);
    QVERIFY(animation != nullptr);
    QCOMPARE(animation->propertyName(), QByteArray("sliderPosition"));
    QCOMPARE(animation->duration(), 200);
    QCOMPARE(animation->easingCurve().type(), QEasingCurve::OutCubic);
}

void TestSwitchButton::pressSwitchesAtOnceAndSlides()
{
    SwitchButton button;
    double positionThen = -1.0;
    connect(&button, &SwitchButton::toggled, this, [&] { positionThen = button.sliderPosition(); });
    const QSignalSpy toggled(&button, &SwitchButton::toggled);
    QTest::mousePress(&button, Qt::LeftButton);
    QCOMPARE(toggled.count(), 1);
    QCOMPARE(toggled.at(0).at(0).toBool(), true);
    QVERIFY(button.isChecked());
    QVERIFY(positionThen >= 0.0 && positionThen < 1.0);
    QTRY_COMPARE(button.sliderPosition(), 1.0);
    QTest::mouseRelease(&button, Qt::LeftButton);
    QCOMPARE(toggled.count(), 1);

    QTest::mousePress(&button, Qt::LeftButton);
    QVERIFY(!button.isChecked());
    QCOMPARE(toggled.at(1).at(0).toBool(), false);
    QTRY_COMPARE(button.sliderPosition(), 0.0);
}

void TestSwitchButton::secondPressReversesFromThePresentPosition()
{
    SwitchButton button;
    const QSignalSpy toggled(&button, &SwitchButton::toggled);
    QTest::mousePress(&button, Qt::LeftButton);
    QPropertyAnimation *animation = animationOf(button);
    animation->pause();
    animation->setCurrentTime(60);
    const double position = button.sliderPosition();
    QVERIFY(position > 0.1 && position < 0.9);

    QTest::mousePress(&button, Qt::LeftButton);
    QCOMPARE(toggled.count(), 2);
    QVERIFY(!button.isChecked());
    QCOMPARE(animation->state(), QAbstractAnimation::Running);
    QCOMPARE(animation->startValue().toDouble(), position);
    QCOMPARE(animation->endValue().toDouble(), 0.0);
    QVERIFY(button.sliderPosition() <= position);
    QTRY_COMPARE(button.sliderPosition(), 0.0);
}

void TestSwitchButton::doubleClickSwitchesTwice()
{
    SwitchButton button;
    const QSignalSpy toggled(&button, &SwitchButton::toggled);
    QTest::mousePress(&button, Qt::LeftButton);
    QTest::mouseRelease(&button, Qt::LeftButton);
    QTest::mouseDClick(&button, Qt::LeftButton);
    QVERIFY(toggled.count() >= 2);
    QCOMPARE(button.isChecked(), toggled.count() % 2 == 1);
}

void TestSwitchButton::otherButtonsDoNothing()
{
    SwitchButton button;
    const QSignalSpy toggled(&button, &SwitchButton::toggled);
    QTest::mousePress(&button, Qt::RightButton);
    QTest::mousePress(&button, Qt::MiddleButton);
    QCOMPARE(toggled.count(), 0);
    QVERIFY(!button.isChecked());
}

void TestSwitchButton::disabledOneStays()
{
    SwitchButton button;
    button.setEnabled(false);
    QTest::mousePress(&button, Qt::LeftButton);
    QVERIFY(!button.isChecked());
}

void TestSwitchButton::setCheckedIsSilentAndImmediate()
{
    SwitchButton button;
    const QSignalSpy toggled(&button, &SwitchButton::toggled);
    button.setChecked(true);
    QVERIFY(button.isChecked());
    QCOMPARE(button.sliderPosition(), 1.0);
    button.setChecked(false);
    QCOMPARE(button.sliderPosition(), 0.0);
    QCOMPARE(toggled.count(), 0);
}

void TestSwitchButton::setCheckedEndsTheSliding()
{
    SwitchButton button;
    QTest::mousePress(&button, Qt::LeftButton);
    button.setChecked(false);
    QCOMPARE(animationOf(button)->state(), QAbstractAnimation::Stopped);
    QCOMPARE(button.sliderPosition(), 0.0);
}

void TestSwitchButton::spaceSwitchesWhereFocusIsGiven()
{
    SwitchButton button;
    QTest::keyClick(&button, Qt::Key_Space);
    QVERIFY(button.isChecked());
    QTest::keyClick(&button, Qt::Key_A);
    QVERIFY(button.isChecked());
}

void TestSwitchButton::looksOff()
{
    SwitchButton button;
    const QImage image = ControlTest::imageOf(button);
    QCOMPARE(image.pixelColor(30, 0), kOffBorder);
    QCOMPARE(image.pixelColor(30, 29), kOffBorder);
    QCOMPARE(image.pixelColor(30, 1), kOff);
    QCOMPARE(image.pixelColor(30, 28), kOff);
    QCOMPARE(image.pixelColor(45, 15), kOff);
    QCOMPARE(image.pixelColor(15, 15), QColor(Qt::white));
    QCOMPARE(image.pixelColor(0, 0), ControlTest::kBackground);
    QCOMPARE(image.pixelColor(3, 3), ControlTest::kBackground);
}

void TestSwitchButton::looksOn()
{
    SwitchButton button;
    button.setChecked(true);
    const QImage image = ControlTest::imageOf(button);
    QCOMPARE(image.pixelColor(30, 0), kOn);
    QCOMPARE(image.pixelColor(30, 29), kOn);
    QCOMPARE(image.pixelColor(15, 15), kOn);
    QCOMPARE(image.pixelColor(58, 15), kOn);
    QCOMPARE(image.pixelColor(45, 15), QColor(Qt::white));
    QCOMPARE(image.pixelColor(59, 29), ControlTest::kBackground);
}

void TestSwitchButton::knobFollowsThePosition_data()
{
    QTest::addColumn<double>("position");
    QTest::addColumn<int>("left");
    QTest::newRow("off") << 0.0 << 3;
    QTest::newRow("rounded down") << 0.11 << 6;
    QTest::newRow("rounded up") << 0.62 << 22;
    QTest::newRow("on") << 1.0 << 33;
}

void TestSwitchButton::knobFollowsThePosition()
{
    QFETCH(double, position);
    QFETCH(int, left);
    SwitchButton button;
    button.setChecked(true);
    QVERIFY(button.setProperty("sliderPosition", position));
    const QImage image = ControlTest::imageOf(button);
    const QRect knob(left, 3, 24, 24);
    QCOMPARE(image.pixelColor(knob.left() - 1, 15), kOn);
    QCOMPARE(image.pixelColor(knob.left() + 1, 15), QColor(Qt::white));
    QCOMPARE(image.pixelColor(knob.right() - 1, 15), QColor(Qt::white));
    QCOMPARE(image.pixelColor(knob.right() + 1, 15), kOn);
    QCOMPARE(image.pixelColor(knob.center().x(), 2), kOn);
    QCOMPARE(image.pixelColor(knob.center().x(), 4), QColor(Qt::white));
    QCOMPARE(image.pixelColor(knob.center().x(), 27), kOn);
}

void TestSwitchButton::disabledLookIsFaint()
{
    SwitchButton button;
    button.setChecked(true);
    button.setEnabled(false);
    const QColor faint = ControlTest::imageOf(button).pixelColor(15, 15);
    QVERIFY(faint != kOn);
    QVERIFY(faint != ControlTest::kBackground);
}

void TestSwitchButton::sharpAtTwiceTheScale()
{
    SwitchButton button;
    const QImage image = ControlTest::imageOf(button, 2.0);
    QCOMPARE(image.pixelColor(60, 1), kOffBorder);
    QCOMPARE(image.pixelColor(60, 2), kOff);
}

QTEST_MAIN(TestSwitchButton)
#include "tst_switch_button.moc"
