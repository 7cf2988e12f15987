// SPDX-License-Identifier: AGPL-3.0-or-later
#include "res/resources.h"
#include "tests/widgets/control_test.h"
#include "widgets/card_radio_button.h"
#include "widgets/select_button.h"
#include "widgets/type_button.h"

#include <QButtonGroup>
#include <QRadioButton>
#include <QSignalSpy>

namespace {

constexpr QColor kCheckedLine{0x16, 0x5D, 0xFF};
constexpr QColor kCheckedFill{0xE8, 0xF1, 0xFF};
constexpr QColor kLine{0xE5, 0xE6, 0xEB};
constexpr QColor kHoverFill{0xF2, 0xF3, 0xF5};
constexpr QColor kFill{0xFF, 0xFF, 0xFF};

const QString kTitle = QStringLiteral("强");
const QString kDescription = QStringLiteral("文件最小，质量");

/// Checks the line one pixel from the left edge and the fill next to it.
void verifyCard(QWidget &control, const QColor &line, const QColor &fill)
{
    const QImage image = ControlTest::imageOf(control);
    const int middle = image.height() / 2;
    QCOMPARE(image.pixelColor(0, middle), ControlTest::kBackground);
    QCOMPARE(image.pixelColor(1, middle), line);
    QCOMPARE(image.pixelColor(2, middle), fill);
    QCOMPARE(image.pixelColor(image.width() - 2, middle), line);
    QCOMPARE(image.pixelColor(image.width() / 2, 1), line);
    QCOMPARE(image.pixelColor(image.width() / 2, 2), fill);
    QCOMPARE(image.pixelColor(image.width() / 2, image.height() - 2), line);
    // The corner.
    QCOMPARE(image.pixelColor(1, 1), ControlTest::kBackground);
    QCOMPARE(image.pixelColor(5, 5), fill);
}

QList<ChoiceButton *> choiceButtons(QWidget *parent)
{
    return {new SelectButton(QStringLiteral("纵向"), parent),
            new TypeButton(QStringLiteral("PNG"),
                           QIcon(QStringLiteral(":/res/icons/modern/image.png")), parent)};
}

} // namespace

/// The cards and buttons for one of several choices.
class TestChoiceControls final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { initResources(); }
    void cardHasItsSize();
    void cardStartsUnchecked();
    void clickAnywhereChecksTheCard();
    void cardsExcludeEachOtherInAGroup();
    void cardTellsOfItsState();
    void looksOfTheCard();
    void pressedAndDisabledCard();
    void focusIsSeenOnTheCard();
    void cardIsMirrored();
    void longCardTextsAreElided();
    void cardFitsItsTexts();
    void choiceTellsOfClicks();
    void choiceIgnoresOtherClicks();
    void choiceLeavesSelectingToItsOwner();
    void looksOfChoices();
    void pressedChoiceFollowsThePointer();
    void disabledChoice();
    void focusIsSeenOnChoices();
    void spaceChoosesWhereFocusIsGiven();
    void choicesFitTheirTexts();
    void typeIconIsMirrored();
};

void TestChoiceControls::cardHasItsSize()
{
    const CardRadioButton card(kTitle, kDescription);
    QCOMPARE(card.minimumHeight(), 70);
    QCOMPARE(card.maximumHeight(), 70);
    QCOMPARE(card.cursor().shape(), Qt::PointingHandCursor);
    QCOMPARE(card.radioButton()->cursor().shape(), Qt::PointingHandCursor);
    QCOMPARE(card.radioButton()->focusPolicy(), Qt::NoFocus);
    QCOMPARE(card.radioButton()->text(), kTitle);
    QCOMPARE(card.accessibleName(), kTitle);
    QCOMPARE(card.radioButton()->accessibleDescription(), kDescription);
}

void TestChoiceControls::cardStartsUnchecked()
{
    const CardRadioButton card(kTitle, kDescription);
    QVERIFY(!card.isChecked());
    QVERIFY(!card.radioButton()->isChecked());
}

void TestChoiceControls::clickAnywhereChecksTheCard()
{
    for (const QPoint &place : {QPoint(3, 3), QPoint(150, 35), QPoint(297, 66), QPoint(24, 35)}) {
        CardRadioButton card(kTitle, kDescription);
        card.resize(300, 70);
        card.show();
        QWidget *hit = card.childAt(place);
        QVERIFY(hit != nullptr);
        QTest::mouseClick(hit, Qt::LeftButton, {}, hit->mapFrom(&card, place));
        QVERIFY(card.isChecked());
    }
}

void TestChoiceControls::cardsExcludeEachOtherInAGroup()
{
    CardRadioButton first(kTitle, kDescription);
    CardRadioButton second(kTitle, kDescription);
    QButtonGroup group;
    group.addButton(first.radioButton(), 0);
    group.addButton(second.radioButton(), 1);
    QCOMPARE(group.checkedId(), -1);
    first.setChecked(true);
    QTest::mouseClick(second.radioButton(), Qt::LeftButton);
    QVERIFY(!first.isChecked());
    QVERIFY(second.isChecked());
    QCOMPARE(group.checkedId(), 1);
    // Another click leaves it so.
    QTest::mouseClick(second.radioButton(), Qt::LeftButton);
    QVERIFY(second.isChecked());
}

void TestChoiceControls::cardTellsOfItsState()
{
    CardRadioButton card(kTitle, kDescription);
    const QSignalSpy toggled(&card, &CardRadioButton::toggled);
    QVERIFY(card.setProperty("checked", true));
    QCOMPARE(toggled.count(), 1);
    QCOMPARE(toggled.at(0).at(0).toBool(), true);
    QVERIFY(card.radioButton()->isChecked());
    QVERIFY(card.property("checked").toBool());
}

void TestChoiceControls::looksOfTheCard()
{
    CardRadioButton card(kTitle, kDescription);
    card.resize(300, 70);
    verifyCard(card, kLine, kFill);
    ControlTest::enter(*card.radioButton());
    verifyCard(card, kLine, kHoverFill);
    card.setChecked(true);
    verifyCard(card, kCheckedLine, kCheckedFill);
    ControlTest::leave(*card.radioButton());
    verifyCard(card, kCheckedLine, kCheckedFill);
}

void TestChoiceControls::pressedAndDisabledCard()
{
    CardRadioButton card(kTitle, kDescription);
    card.resize(300, 70);
    card.radioButton()->setDown(true);
    const QColor pressed = ControlTest::imageOf(card).pixelColor(4, 35);
    QVERIFY(pressed.lightness() < kHoverFill.lightness());
    card.radioButton()->setDown(false);
    card.setChecked(true);
    card.setEnabled(false);
    const QColor line = ControlTest::imageOf(card).pixelColor(1, 35);
    QVERIFY(line != kCheckedLine);
    QTest::mouseClick(card.radioButton(), Qt::LeftButton);
}

void TestChoiceControls::focusIsSeenOnTheCard()
{
    QWidget window;
    CardRadioButton card(kTitle, kDescription, &window);
    card.resize(300, 70);
    card.radioButton()->setFocusPolicy(Qt::StrongFocus);
    QVERIFY(ControlTest::focus(*card.radioButton()));
    QCOMPARE(ControlTest::imageOf(card).pixelColor(0, 35), Theme::accent);
}

void TestChoiceControls::cardIsMirrored()
{
    CardRadioButton card(kTitle, kDescription);
    card.resize(300, 70);
    card.setChecked(true);
    QImage image = ControlTest::imageOf(card);
    QCOMPARE(image.pixelColor(24, 35), kCheckedLine);
    QVERIFY(ControlTest::isPlain(image, {200, 5, 95, 60}, kCheckedFill));
    card.setLayoutDirection(Qt::RightToLeft);
    image = ControlTest::imageOf(card);
    QCOMPARE(image.pixelColor(300 - 24, 35), kCheckedLine);
    QVERIFY(ControlTest::isPlain(image, {5, 5, 95, 60}, kCheckedFill));
}

void TestChoiceControls::longCardTextsAreElided()
{
    const QString title = QStringLiteral("HHHHHHHHHHHHHHHHHHHHHHHHHHHHHH");
    CardRadioButton card(title, title);
    card.show();
    card.resize(160, 70);
    QVERIFY(ControlTest::isPlain(ControlTest::imageOf(card), {146, 5, 10, 60}, kFill));
    QCOMPARE(ControlTest::toolTipOf(*card.radioButton()), title + u'\n' + title);
    card.resize(card.sizeHint());
    QCOMPARE(ControlTest::toolTipOf(*card.radioButton()), QString());
}

void TestChoiceControls::cardFitsItsTexts()
{
    const CardRadioButton narrow(QStringLiteral("HH"), QStringLiteral("HH"));
    const CardRadioButton wide(QStringLiteral("HH"), QStringLiteral("HHHHHHHHHHHHHHHHHHHHHHHH"));
    const CardRadioButton titled(QStringLiteral("HHHHHHHHHHHHHHHHHHHHHHHH"), QString());
    QVERIFY(wide.sizeHint().width() > narrow.sizeHint().width() + 100);
    QVERIFY(titled.sizeHint().width() > narrow.sizeHint().width() + 100);
}

void TestChoiceControls::choiceTellsOfClicks()
{
    QWidget parent;
    for (ChoiceButton *button : choiceButtons(&parent)) {
        const QSignalSpy chosen(button, &ChoiceButton::sigSelected);
        QTest::mousePress(button, Qt::LeftButton);
        QCOMPARE(chosen.count(), 0);
        QTest::mouseRelease(button, Qt::LeftButton);
        QCOMPARE(chosen.count(), 1);
        button->setSelected(true);
        QTest::mouseClick(button, Qt::LeftButton);
        QCOMPARE(chosen.count(), 2);
        QCOMPARE(button->cursor().shape(), Qt::PointingHandCursor);
        QCOMPARE(button->focusPolicy(), Qt::NoFocus);
        QCOMPARE(button->accessibleName(), button->text());
    }
}

void TestChoiceControls::choiceIgnoresOtherClicks()
{
    QWidget parent;
    for (ChoiceButton *button : choiceButtons(&parent)) {
        const QSignalSpy chosen(button, &ChoiceButton::sigSelected);
        QTest::mouseClick(button, Qt::RightButton);
        QTest::mousePress(button, Qt::LeftButton);
        QTest::mouseRelease(button, Qt::LeftButton, {}, {-5, 5});
        QTest::mouseRelease(button, Qt::LeftButton);
        button->setEnabled(false);
        QTest::mouseClick(button, Qt::LeftButton);
        QCOMPARE(chosen.count(), 0);
    }
}

void TestChoiceControls::choiceLeavesSelectingToItsOwner()
{
    SelectButton button(QStringLiteral("纵向"));
    const QSignalSpy chosen(&button, &SelectButton::sigSelected);
    QVERIFY(!button.isSelected());
    QTest::mouseClick(&button, Qt::LeftButton);
    QCOMPARE(chosen.count(), 1);
    QVERIFY(!button.isSelected());
    button.setSelected(true);
    QVERIFY(button.property("selected").toBool());
    QCOMPARE(chosen.count(), 1);
    QCOMPARE(button.text(), QStringLiteral("纵向"));
}

void TestChoiceControls::looksOfChoices()
{
    QWidget parent;
    for (ChoiceButton *button : choiceButtons(&parent)) {
        button->resize(160, 45);
        verifyCard(*button, kLine, kFill);
        ControlTest::enter(*button);
        verifyCard(*button, kLine, kHoverFill);
        button->setSelected(true);
        verifyCard(*button, kCheckedLine, kCheckedFill);
        button->setSelected(false);
        ControlTest::leave(*button);
        verifyCard(*button, kLine, kFill);
    }
}

void TestChoiceControls::pressedChoiceFollowsThePointer()
{
    SelectButton button(QStringLiteral("纵向"));
    button.resize(160, 45);
    const auto fill = [&] { return ControlTest::imageOf(button).pixelColor(5, 22); };
    QTest::mousePress(&button, Qt::LeftButton);
    const QColor pressed = fill();
    QVERIFY(pressed.lightness() < kHoverFill.lightness());
    QMouseEvent away(QEvent::MouseMove, QPointF(-9, 9), button.mapToGlobal(QPointF(-9, 9)),
                     Qt::NoButton, Qt::LeftButton, {});
    QCoreApplication::sendEvent(&button, &away);
    QVERIFY(fill() != pressed);
    QTest::mouseRelease(&button, Qt::LeftButton);
    QVERIFY(fill() != pressed);
}

void TestChoiceControls::disabledChoice()
{
    QWidget parent;
    for (ChoiceButton *button : choiceButtons(&parent)) {
        button->resize(160, 45);
        button->setSelected(true);
        button->setEnabled(false);
        const QImage image = ControlTest::imageOf(*button);
        QVERIFY(image.pixelColor(1, 22) != kCheckedLine);
        QVERIFY(!ControlTest::contains(image, image.rect(), kCheckedLine));
    }
}

void TestChoiceControls::focusIsSeenOnChoices()
{
    QWidget window;
    SelectButton button(QStringLiteral("纵向"), &window);
    button.resize(160, 45);
    button.setFocusPolicy(Qt::StrongFocus);
    QVERIFY(ControlTest::focus(button));
    QCOMPARE(ControlTest::imageOf(button).pixelColor(0, 22), Theme::accent);
}

void TestChoiceControls::spaceChoosesWhereFocusIsGiven()
{
    SelectButton button(QStringLiteral("纵向"));
    const QSignalSpy chosen(&button, &SelectButton::sigSelected);
    QTest::keyClick(&button, Qt::Key_A);
    QCOMPARE(chosen.count(), 0);
    QTest::keyClick(&button, Qt::Key_Space);
    QCOMPARE(chosen.count(), 1);
}

void TestChoiceControls::choicesFitTheirTexts()
{
    QWidget parent;
    for (ChoiceButton *button : choiceButtons(&parent)) {
        const int before = button->sizeHint().width();
        const QString text = QStringLiteral("HHHHHHHHHHHHHHHHHHHHHHHHHHHHHHHH");
        button->setText(text);
        const QSize fitting = button->sizeHint();
        QVERIFY(fitting.width() > before + 100);
        button->resize(fitting);
        QCOMPARE(ControlTest::toolTipOf(*button), QString());
        button->resize(100, fitting.height());
        QVERIFY(ControlTest::isPlain(ControlTest::imageOf(*button), {90, 5, 6, 30}, kFill));
        QCOMPARE(ControlTest::toolTipOf(*button), text);
    }
}

void TestChoiceControls::typeIconIsMirrored()
{
    QPixmap red(24, 24);
    red.fill(Qt::red);
    TypeButton button(QStringLiteral("PNG"), QIcon(red));
    button.resize(160, 48);
    QImage image = ControlTest::imageOf(button);
    QVERIFY(ControlTest::contains(image, {0, 0, 80, 48}, Qt::red));
    QVERIFY(!ControlTest::contains(image, {90, 0, 70, 48}, Qt::red));
    button.setLayoutDirection(Qt::RightToLeft);
    image = ControlTest::imageOf(button);
    QVERIFY(ControlTest::contains(image, {80, 0, 80, 48}, Qt::red));
    QVERIFY(!ControlTest::contains(image, {0, 0, 70, 48}, Qt::red));
}

QTEST_MAIN(TestChoiceControls)
#include "tst_choice_controls.moc"
