// SPDX-License-Identifier: AGPL-3.0-or-later
#include "res/resources.h"
#include "tests/support/dialog_answers.h"
#include "tests/widgets/control_test.h"
#include "widgets/custom_menu_button.h"

#include <QLabel>
#include <QMenu>
#include <QScreen>
#include <QSignalSpy>
#include <QTimer>

namespace {

void placeInTheMiddle(QWidget &button)
{
    button.resize(160, 42);
    button.move(QGuiApplication::primaryScreen()->availableGeometry().center());
    button.show();
}

} // namespace

/// The button that opens a menu.
class TestCustomMenuButton final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { initResources(); }
    void chosenEntryIsShownAndReported();
    void ownActionsMayBeConnected();
    void callWithoutActionDoesNothing();
    void menuOpensBelowTheButton();
    void toggleHidesTheOpenMenu();
    void leftClickOpensTheMenu();
    void closingClickIsNotRepeatedToTheButton();
    void looksOfTheButton();
    void buttonIsMirrored();
    void longTextIsElided();
};

void TestCustomMenuButton::chosenEntryIsShownAndReported()
{
    CustomMenuButton button;
    button.addMenuItem(QStringLiteral("A"));
    const QAction *second = button.addMenuItem(QStringLiteral("B"));
    placeInTheMiddle(button);
    const QSignalSpy selected(&button, &CustomMenuButton::menuItemSelected);
    DialogAnswers answers;
    answers.addMenuEntry(QStringLiteral("B"));
    button.toggleMenu();
    QVERIFY(answers.allGiven());
    QCOMPARE(button.label()->text(), QStringLiteral("B"));
    QCOMPARE(button.text(), QStringLiteral("B"));
    QCOMPARE(button.accessibleName(), QStringLiteral("B"));
    QCOMPARE(selected.count(), 1);
    QVERIFY(selected.at(0).at(0).value<QAction *>() == second);
}

void TestCustomMenuButton::ownActionsMayBeConnected()
{
    CustomMenuButton button;
    QAction action(QStringLiteral("C"));
    connect(&action, &QAction::triggered, &button, &CustomMenuButton::onMenuItemClicked);
    const QSignalSpy selected(&button, &CustomMenuButton::menuItemSelected);
    action.trigger();
    QCOMPARE(button.text(), QStringLiteral("C"));
    QCOMPARE(selected.count(), 1);
}

void TestCustomMenuButton::callWithoutActionDoesNothing()
{
    CustomMenuButton button;
    button.setText(QStringLiteral("A"));
    const QSignalSpy selected(&button, &CustomMenuButton::menuItemSelected);
    button.onMenuItemClicked();
    QCOMPARE(button.text(), QStringLiteral("A"));
    QCOMPARE(selected.count(), 0);
}

void TestCustomMenuButton::menuOpensBelowTheButton()
{
    CustomMenuButton button;
    button.addMenuItem(QStringLiteral("A"));
    placeInTheMiddle(button);
    QPoint place;
    int width = 0;
    QTimer::singleShot(0, &button, [&] {
        place = button.menu()->pos();
        width = button.menu()->width();
        button.menu()->hide();
    });
    button.toggleMenu();
    QCOMPARE(place, button.mapToGlobal(button.rect().bottomLeft()));
    QCOMPARE(width, button.width());
}

void TestCustomMenuButton::toggleHidesTheOpenMenu()
{
    CustomMenuButton button;
    button.addMenuItem(QStringLiteral("A"));
    placeInTheMiddle(button);
    bool wasOpen = false;
    QTimer::singleShot(0, &button, [&] {
        wasOpen = button.menu()->isVisible();
        button.toggleMenu();
    });
    button.toggleMenu();
    QVERIFY(wasOpen);
    QVERIFY(!button.menu()->isVisible());
}

void TestCustomMenuButton::leftClickOpensTheMenu()
{
    CustomMenuButton button;
    button.addMenuItem(QStringLiteral("A"));
    placeInTheMiddle(button);
    QCOMPARE(button.cursor().shape(), Qt::PointingHandCursor);
    QCOMPARE(button.focusPolicy(), Qt::NoFocus);
    int opened = 0;
    connect(button.menu(), &QMenu::aboutToShow, this, [&] {
        ++opened;
        QTimer::singleShot(0, button.menu(), &QMenu::hide);
    });
    QTest::mouseClick(&button, Qt::RightButton);
    QCOMPARE(opened, 0);
    QTest::mouseClick(&button, Qt::LeftButton);
    QCOMPARE(opened, 1);
}

void TestCustomMenuButton::closingClickIsNotRepeatedToTheButton()
{
    CustomMenuButton button;
    button.addMenuItem(QStringLiteral("A"));
    placeInTheMiddle(button);
    bool kept = false;
    QTimer::singleShot(0, &button, [&] {
        const QPoint onButton = button.menu()->mapFromGlobal(button.mapToGlobal(QPoint(5, 5)));
        QTest::mousePress(button.menu(), Qt::LeftButton, {}, onButton);
        kept = button.menu()->testAttribute(Qt::WA_NoMouseReplay);
        button.menu()->hide();
    });
    button.toggleMenu();
    QVERIFY(kept);
}

void TestCustomMenuButton::looksOfTheButton()
{
    CustomMenuButton button;
    button.setText(QStringLiteral("HH"));
    button.resize(160, 42);
    const auto lineOf = [&] { return ControlTest::imageOf(button).pixelColor(1, 21); };
    QCOMPARE(lineOf(), Theme::border);
    ControlTest::enter(button);
    QCOMPARE(lineOf(), Theme::textMuted);
    ControlTest::leave(button);
    button.setEnabled(false);
    QCOMPARE(ControlTest::imageOf(button).pixelColor(4, 21), Theme::windowBackground);
}

void TestCustomMenuButton::buttonIsMirrored()
{
    CustomMenuButton button;
    button.setText(QStringLiteral("HH"));
    placeInTheMiddle(button);
    QImage image = ControlTest::imageOf(button);
    QVERIFY(ControlTest::hasInk(image, {12, 8, 25, 26}, Theme::ink));
    QVERIFY(!ControlTest::isPlain(image, {124, 9, 24, 24}, Qt::white));
    button.setLayoutDirection(Qt::RightToLeft);
    QCoreApplication::processEvents();
    image = ControlTest::imageOf(button);
    QVERIFY(ControlTest::hasInk(image, {123, 8, 25, 26}, Theme::ink));
    QVERIFY(!ControlTest::isPlain(image, {12, 9, 24, 24}, Qt::white));
}

void TestCustomMenuButton::longTextIsElided()
{
    const QString text = QStringLiteral("HHHHHHHHHHHHHHHHHHHHHHHHHHHHHHHH");
    CustomMenuButton button;
    button.setText(text);
    QVERIFY(button.sizeHint().width() > 250);
    placeInTheMiddle(button);
    QVERIFY(ControlTest::isPlain(ControlTest::imageOf(button), {117, 5, 6, 30}, Qt::white));
    QCOMPARE(ControlTest::toolTipOf(button), text);
    button.resize(button.sizeHint());
    QCoreApplication::processEvents();
    QCOMPARE(ControlTest::toolTipOf(button), QString());
}

QTEST_MAIN(TestCustomMenuButton)
#include "tst_custom_menu_button.moc"
