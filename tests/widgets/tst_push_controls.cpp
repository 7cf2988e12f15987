// SPDX-License-Identifier: AGPL-3.0-or-later
#include "res/resources.h"
#include "tests/widgets/control_test.h"
#include "widgets/boder_button.h"
#include "widgets/icon_button.h"
#include "widgets/icon_only_button.h"
#include "widgets/icon_paths.h"
#include "widgets/more_option.h"

#include <QSignalSpy>

namespace {

const QString kTrash = QStringLiteral(":/res/icons/modern/trash.png");
const QString kLongText = QStringLiteral("HHHHHHHHHHHHHHHHHHHHHHHHHHHHHHHH");

constexpr QColor kFill{20, 100, 180};
constexpr QColor kHoverFill{40, 120, 200};
constexpr QColor kBorder{90, 10, 10};

QPixmap plain(const QSize &size, const QColor &color)
{
    QPixmap pixmap(size);
    pixmap.fill(color);
    return pixmap;
}

/// The fill near the left edge, away from text and line.
QColor fillOf(QWidget &control)
{
    return ControlTest::imageOf(control).pixelColor(5, control.height() / 2);
}

} // namespace

/// The buttons that are pushed, and the check box that looks like one.
class TestPushControls final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { initResources(); }
    void buttonsTakeNoFocus();
    void boderPropertiesTellOfChanges();
    void boderHasABorderAndAFill();
    void boderFillFollowsTheState();
    void boderBorderCanBeWiderOrNone();
    void boderShowsPictureAndText();
    void boderFitsItsContents();
    void disabledBoderIsFaint();
    void iconButtonFitsIconAndText();
    void iconButtonStartsInTheAccent();
    void iconButtonColoursFollowTheState();
    void iconButtonHasABorderWhereSet();
    void iconButtonShowsItsTextColour();
    void iconButtonIsMirrored();
    void iconButtonElidesItsText();
    void disabledIconButtonIsGrey();
    void focusIsSeenOnButtons();
    void iconButtonClicks();
    void iconOnlyButtonIsNamedByItsToolTip();
    void iconOnlyButtonStates();
    void moreOptionColours();
    void clickAnywhereTogglesTheOption();
    void optionIndicatorIsMirrored();
    void optionFitsItsText();
};

void TestPushControls::buttonsTakeNoFocus()
{
    BoderButton boder;
    IconButton iconButton(QStringLiteral("A"));
    IconOnlyButton iconOnly{QIcon(kTrash)};
    MoreOption option(QStringLiteral("A"));
    for (const QAbstractButton *button :
         std::initializer_list<QAbstractButton *>{&boder, &iconButton, &iconOnly, &option}) {
        QCOMPARE(button->focusPolicy(), Qt::NoFocus);
        QCOMPARE(button->cursor().shape(), Qt::PointingHandCursor);
    }
}

void TestPushControls::boderPropertiesTellOfChanges()
{
    BoderButton button;
    QCOMPARE(button.property("radius").toInt(), 5);
    QCOMPARE(button.property("borderWidth").toInt(), 1);
    const QSignalSpy background(&button, &BoderButton::backgroundColorChanged);
    const QSignalSpy border(&button, &BoderButton::borderColorChanged);
    const QSignalSpy width(&button, &BoderButton::borderWidthChanged);
    const QSignalSpy radius(&button, &BoderButton::radiusChanged);
    for (int round = 0; round < 2; ++round) {
        QVERIFY(button.setProperty("backgroundColor", kFill));
        QVERIFY(button.setProperty("borderColor", kBorder));
        QVERIFY(button.setProperty("borderWidth", 3));
        QVERIFY(button.setProperty("radius", 9));
        for (const QSignalSpy *spy : {&background, &border, &width, &radius}) {
            QCOMPARE(spy->count(), 1);
        }
    }
    QCOMPARE(button.backgroundColor(), kFill);
    QCOMPARE(button.borderColor(), kBorder);
    QCOMPARE(button.borderWidth(), 3);
    QCOMPARE(button.radius(), 9);
}

void TestPushControls::boderHasABorderAndAFill()
{
    BoderButton button;
    button.setBackgroundColor(kFill);
    button.setBorderColor(kBorder);
    button.resize(60, 32);
    const QImage image = ControlTest::imageOf(button);
    for (const QPoint &edge : {QPoint(0, 16), QPoint(59, 16), QPoint(30, 0), QPoint(30, 31)}) {
        QCOMPARE(image.pixelColor(edge), kBorder);
    }
    for (const QPoint &inner : {QPoint(1, 16), QPoint(58, 16), QPoint(30, 1), QPoint(30, 30)}) {
        QCOMPARE(image.pixelColor(inner), kFill);
    }
    QCOMPARE(image.pixelColor(0, 0), ControlTest::kBackground);
    QCOMPARE(image.pixelColor(4, 4), kFill);
    QCOMPARE(image.pixelColor(6, 0), kBorder);
}

void TestPushControls::boderFillFollowsTheState()
{
    BoderButton button;
    button.setBackgroundColor(kFill);
    button.resize(60, 32);
    QCOMPARE(fillOf(button), kFill);
    ControlTest::enter(button);
    QCOMPARE(fillOf(button).rgb(), kFill.lighter(110).rgb());
    button.setDown(true);
    QCOMPARE(fillOf(button).rgb(), kFill.darker(120).rgb());
    ControlTest::leave(button);
    QCOMPARE(fillOf(button).rgb(), kFill.darker(120).rgb());
    button.setDown(false);
    QCOMPARE(fillOf(button), kFill);
}

void TestPushControls::boderBorderCanBeWiderOrNone()
{
    BoderButton button;
    button.setBackgroundColor(kFill);
    button.setBorderColor(kBorder);
    button.resize(60, 32);
    button.setBorderWidth(3);
    QImage image = ControlTest::imageOf(button);
    QCOMPARE(image.pixelColor(2, 16), kBorder);
    QCOMPARE(image.pixelColor(3, 16), kFill);
    button.setBorderWidth(0);
    button.setRadius(0);
    image = ControlTest::imageOf(button);
    QCOMPARE(image.pixelColor(0, 16), kFill);
    QCOMPARE(image.pixelColor(0, 0), kFill);
}

void TestPushControls::boderShowsPictureAndText()
{
    BoderButton button;
    button.setBackgroundColor(kFill);
    button.resize(60, 32);
    button.setPixmap(plain({10, 10}, Qt::red));
    QImage image = ControlTest::imageOf(button);
    QVERIFY(ControlTest::isPlain(image, {25, 11, 10, 10}, Qt::red));
    QCOMPARE(image.pixelColor(24, 16), kFill);
    QCOMPARE(image.pixelColor(35, 16), kFill);
    button.setPixmap({});
    button.setText(QStringLiteral("H"));
    image = ControlTest::imageOf(button);
    QVERIFY(ControlTest::hasInk(image, {24, 8, 12, 16}, Qt::white));
    QVERIFY(ControlTest::isPlain(image, {5, 5, 15, 20}, kFill));
}

void TestPushControls::boderFitsItsContents()
{
    BoderButton button(kLongText);
    QVERIFY(button.sizeHint().width() > 200);
    button.resize(100, 32);
    QCOMPARE(ControlTest::toolTipOf(button), kLongText);
    button.setText(QString());
    button.setPixmap(plain({90, 70}, Qt::red));
    QVERIFY(button.sizeHint().width() >= 90);
    QVERIFY(button.sizeHint().height() >= 70);
}

void TestPushControls::disabledBoderIsFaint()
{
    BoderButton button;
    button.setBackgroundColor(kFill);
    button.resize(60, 32);
    button.setEnabled(false);
    ControlTest::enter(button);
    const QColor faint = fillOf(button);
    QVERIFY(faint != kFill);
    QVERIFY(faint.rgb() != kFill.lighter(110).rgb());
}

void TestPushControls::iconButtonFitsIconAndText()
{
    IconButton button(QStringLiteral("A"));
    QCOMPARE(button.sizeHint().width(), 80);
    button.setText(kLongText);
    const int textOnly = button.sizeHint().width();
    QVERIFY(textOnly > button.fontMetrics().horizontalAdvance(kLongText));
    button.setIconPixmap(kTrash, 16);
    QVERIFY(button.sizeHint().width() >= textOnly + 16);
    button.setIconPixmap(kTrash, 28);
    QVERIFY(button.sizeHint().width() >= textOnly + 28);
    button.setIconPixmap(QString(), 28);
    QCOMPARE(button.sizeHint().width(), textOnly);
    // At its preferred width nothing is elided.
    button.setIconPixmap(kTrash, 16);
    button.resize(button.sizeHint());
    QCOMPARE(ControlTest::toolTipOf(button), QString());
}

void TestPushControls::iconButtonStartsInTheAccent()
{
    IconButton button(QStringLiteral("HHH"));
    button.resize(100, 40);
    QCOMPARE(fillOf(button), QColor(0x4F, 0x46, 0xE5));
    QVERIFY(ControlTest::hasInk(ControlTest::imageOf(button), {20, 5, 60, 30}, Qt::white));
    ControlTest::enter(button);
    QCOMPARE(fillOf(button), QColor(0x63, 0x66, 0xF1));
    button.setDown(true);
    QCOMPARE(fillOf(button), QColor(0x43, 0x38, 0xCA));
}

void TestPushControls::iconButtonColoursFollowTheState()
{
    IconButton button(QString{});
    button.setFillColor(kFill);
    button.setHoverFillColor(kHoverFill);
    button.resize(100, 40);
    QCOMPARE(fillOf(button), kFill);
    ControlTest::enter(button);
    QCOMPARE(fillOf(button), kHoverFill);
    button.setDown(true);
    QVERIFY(fillOf(button).lightness() < kFill.lightness());
    button.setFillColor(Qt::white);
    button.setHoverFillColor(Theme::hover);
    QVERIFY(fillOf(button).lightness() < Theme::hover.lightness());
}

void TestPushControls::iconButtonHasABorderWhereSet()
{
    IconButton button(QString{});
    button.setFillColor(kFill);
    button.resize(100, 40);
    QCOMPARE(ControlTest::imageOf(button).pixelColor(0, 20), kFill);
    button.setBorderColor(kBorder);
    const QImage image = ControlTest::imageOf(button);
    QCOMPARE(image.pixelColor(0, 20), kBorder);
    QCOMPARE(image.pixelColor(1, 20), kFill);
    QCOMPARE(image.pixelColor(99, 20), kBorder);
    // The corners have a radius of six.
    QCOMPARE(image.pixelColor(0, 0), ControlTest::kBackground);
    QCOMPARE(image.pixelColor(1, 1), ControlTest::kBackground);
    QCOMPARE(image.pixelColor(7, 0), kBorder);
    QVERIFY(image.pixelColor(3, 0) != kBorder);
}

void TestPushControls::iconButtonShowsItsTextColour()
{
    IconButton button(QStringLiteral("HHH"));
    button.setFillColor(Qt::white);
    button.setTextColor(kBorder);
    button.resize(100, 40);
    QVERIFY(ControlTest::hasInk(ControlTest::imageOf(button), button.rect(), kBorder));
}

void TestPushControls::iconButtonIsMirrored()
{
    IconButton button(QStringLiteral("HHH"));
    button.setFillColor(Qt::white);
    button.setIcon(QIcon(plain({16, 16}, Qt::red)));
    button.setIconSize({16, 16});
    button.resize(140, 40);
    QImage image = ControlTest::imageOf(button);
    QVERIFY(ControlTest::contains(image, {0, 0, 68, 40}, Qt::red));
    QVERIFY(!ControlTest::contains(image, {72, 0, 68, 40}, Qt::red));
    button.setLayoutDirection(Qt::RightToLeft);
    image = ControlTest::imageOf(button);
    QVERIFY(!ControlTest::contains(image, {0, 0, 68, 40}, Qt::red));
    QVERIFY(ControlTest::contains(image, {72, 0, 68, 40}, Qt::red));
    // The icon keeps its size.
    int reds = 0;
    for (int x = 0; x < 140; ++x) {
        reds += image.pixelColor(x, 20) == QColor(Qt::red) ? 1 : 0;
    }
    QCOMPARE(reds, 16);
}

void TestPushControls::iconButtonElidesItsText()
{
    IconButton button(kLongText);
    button.setFillColor(kFill);
    button.resize(120, 40);
    const QImage image = ControlTest::imageOf(button);
    QVERIFY(ControlTest::isPlain(image, {109, 5, 9, 30}, kFill));
    QVERIFY(ControlTest::isPlain(image, {2, 5, 9, 30}, kFill));
    QCOMPARE(ControlTest::toolTipOf(button), kLongText);
    button.setToolTip(QStringLiteral("own"));
    QCOMPARE(ControlTest::toolTipOf(button), QStringLiteral("own"));
}

void TestPushControls::disabledIconButtonIsGrey()
{
    IconButton button(QStringLiteral("HHH"));
    button.setIconPixmap(QStringLiteral(":/res/icons/modern/addfile.png"), 24);
    button.resize(140, 40);
    button.setEnabled(false);
    ControlTest::enter(button);
    const QImage image = ControlTest::imageOf(button);
    QCOMPARE(image.pixelColor(5, 20), Theme::pressed);
    // The white icon would not be seen on the grey.
    QVERIFY(!ControlTest::contains(image, button.rect(), Qt::white));
    QVERIFY(ControlTest::contains(image, button.rect(), Theme::textMuted));
}

void TestPushControls::focusIsSeenOnButtons()
{
    QWidget window;
    BoderButton boder(&window);
    IconButton iconButton(QStringLiteral("A"), &window);
    IconOnlyButton iconOnly(QIcon(kTrash), 20, &window);
    MoreOption option(QStringLiteral("A"), &window);
    for (QAbstractButton *button :
         std::initializer_list<QAbstractButton *>{&boder, &iconButton, &iconOnly, &option}) {
        button->resize(button->sizeHint());
        button->setFocusPolicy(Qt::StrongFocus);
        QVERIFY(ControlTest::focus(*button));
        QCOMPARE(ControlTest::imageOf(*button).pixelColor(0, button->height() / 2), Theme::accent);
    }
}

void TestPushControls::iconButtonClicks()
{
    IconButton button(QStringLiteral("A"));
    const QSignalSpy clicked(&button, &IconButton::clicked);
    QTest::mouseClick(&button, Qt::LeftButton);
    QCOMPARE(clicked.count(), 1);
    QCOMPARE(button.text(), QStringLiteral("A"));
}

void TestPushControls::iconOnlyButtonIsNamedByItsToolTip()
{
    IconOnlyButton button{QIcon(kTrash)};
    button.setToolTip(QStringLiteral("清除"));
    QCOMPARE(button.accessibleName(), QStringLiteral("清除"));
}

void TestPushControls::iconOnlyButtonStates()
{
    IconOnlyButton button(QIcon(plain({16, 16}, Qt::red)), 16);
    QCOMPARE(button.sizeHint(), QSize(28, 28));
    button.resize(28, 28);
    QCOMPARE(fillOf(button), ControlTest::kBackground);
    QVERIFY(ControlTest::isPlain(ControlTest::imageOf(button), {6, 6, 16, 16}, Qt::red));
    ControlTest::enter(button);
    QCOMPARE(fillOf(button), Theme::hover);
    button.setDown(true);
    QCOMPARE(fillOf(button), Theme::pressed);
    button.setDown(false);
    ControlTest::leave(button);
    button.setCheckable(true);
    button.setChecked(true);
    QCOMPARE(fillOf(button), Theme::accentTint);
    button.setEnabled(false);
    QVERIFY(ControlTest::imageOf(button).pixelColor(14, 14) != QColor(Qt::red));
}

void TestPushControls::moreOptionColours()
{
    MoreOption option(QStringLiteral("更多"));
    option.resize(200, 42);
    const QImage image = ControlTest::imageOf(option);
    QCOMPARE(image.pixelColor(1, 21), QColor(0xDD, 0xDD, 0xDD));
    QCOMPARE(image.pixelColor(198, 21), QColor(0xDD, 0xDD, 0xDD));
    QCOMPARE(image.pixelColor(5, 21), QColor(0xFF, 0xFF, 0xFF));
    ControlTest::enter(option);
    QCOMPARE(fillOf(option), Theme::hover);
    option.setDown(true);
    QCOMPARE(fillOf(option), Theme::pressed);
    option.setDown(false);
    option.setEnabled(false);
    QVERIFY(ControlTest::imageOf(option).pixelColor(1, 21) != QColor(0xDD, 0xDD, 0xDD));
}

void TestPushControls::clickAnywhereTogglesTheOption()
{
    MoreOption option(QStringLiteral("更多"));
    option.resize(200, 42);
    const QSignalSpy toggled(&option, &MoreOption::toggled);
    QTest::mouseClick(&option, Qt::LeftButton, {}, {195, 38});
    QVERIFY(option.isChecked());
    QTest::mouseClick(&option, Qt::LeftButton, {}, {20, 20});
    QVERIFY(!option.isChecked());
    QCOMPARE(toggled.count(), 2);
}

void TestPushControls::optionIndicatorIsMirrored()
{
    MoreOption option(QStringLiteral("更多"));
    option.resize(200, 42);
    const auto expected = [](const QString &path) {
        QImage image(20, 20, QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter(&image).drawImage(0, 0, QImage(path));
        return image;
    };
    QCOMPARE(ControlTest::imageOf(option).copy(12, 11, 20, 20), expected(kUncheckedIcon));
    option.setChecked(true);
    QCOMPARE(ControlTest::imageOf(option).copy(12, 11, 20, 20), expected(kCheckedIcon));
    option.setLayoutDirection(Qt::RightToLeft);
    QCOMPARE(ControlTest::imageOf(option).copy(168, 11, 20, 20), expected(kCheckedIcon));
}

void TestPushControls::optionFitsItsText()
{
    MoreOption option(kLongText);
    option.resize(option.sizeHint());
    QCOMPARE(ControlTest::toolTipOf(option), QString());
    QVERIFY(option.width() > option.fontMetrics().horizontalAdvance(kLongText));
    option.resize(120, 42);
    QCOMPARE(ControlTest::toolTipOf(option), kLongText);
    QVERIFY(ControlTest::isPlain(ControlTest::imageOf(option), {110, 5, 6, 30}, Qt::white));
}

QTEST_MAIN(TestPushControls)
#include "tst_push_controls.moc"
