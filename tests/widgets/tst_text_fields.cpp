// SPDX-License-Identifier: AGPL-3.0-or-later
#include "res/resources.h"
#include "tests/widgets/control_test.h"
#include "widgets/border_line_edit.h"
#include "widgets/c_line_edit.h"
#include "widgets/password_input.h"

#include <QAction>
#include <QHBoxLayout>
#include <QIntValidator>
#include <QLabel>
#include <QLineEdit>
#include <QPaintEvent>
#include <QSignalSpy>

namespace {

constexpr QColor kNormal{0xE2, 0xE7, 0xEF};
constexpr QColor kHovered{0x84, 0x90, 0xA3};
constexpr QColor kFocused{0x4F, 0x46, 0xE5};
constexpr QColor kError{0xE0, 0x52, 0x52};

QAction *eyeOf(const PasswordInput &input)
{
    const QList<QAction *> actions = input.lineEdit()->actions();
    return actions.size() == 1 ? actions.first() : nullptr;
}

/// The line at the middle of the left edge, if the upper edge has it too.
QColor lineOf(QWidget &field)
{
    const QImage image = ControlTest::imageOf(field);
    const QColor left = image.pixelColor(1, field.height() / 2);
    return left == image.pixelColor(field.width() / 2, 1) ? left : QColor();
}

/// Counts how often a field is asked to paint its line, which the line edit in it leaves alone.
class LinePaints final : public QObject
{
public:
    explicit LinePaints(QWidget &field)
        : m_place(1, field.height() / 2)
    {
        field.installEventFilter(this);
    }

    int count = 0;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Paint &&
            static_cast<QPaintEvent *>(event)->region().contains(m_place)) {
            ++count;
        }
        return QObject::eventFilter(watched, event);
    }

private:
    QPoint m_place;
};

} // namespace

/// The fields that take text.
class TestTextFields final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { initResources(); }
    void passwordIsHiddenAtFirst();
    void lockStandsBeforeThePassword();
    void eyeIsThereWhileThereIsText();
    void eyeShowsAndHidesThePassword();
    void frameOfThePassword();
    void passwordLineFollowsPointerAndError();
    void clickAnywhereInThePasswordFieldFocusesIt();
    void focusCountsMoreThanTheError();
    void pointerCountsMoreThanTheError();
    void focusRepaintsThePassword();
    void setErrorRepaints();
    void lockIsMirrored();
    void disabledPassword();
    void fieldLinesFollowTheState();
    void lineWidthIsAProperty();
    void numberFieldTakesWholeNumbers();
    void editFinishedTellsTheValue();
    void textStandsAtTheLeadingSide();
};

void TestTextFields::passwordIsHiddenAtFirst()
{
    PasswordInput input;
    QCOMPARE(input.lineEdit()->echoMode(), QLineEdit::Password);
    QCOMPARE(input.lineEdit()->styleSheet(),
             QStringLiteral("QLineEdit {    background: transparent;    border: none;}"));
    QCOMPARE(input.focusProxy(), input.lineEdit());
    QVERIFY(!input.hasError());
    QTest::keyClicks(input.lineEdit(), QStringLiteral("secret"));
    QCOMPARE(input.text(), QStringLiteral("secret"));
    input.setPlaceholderText(QStringLiteral("密码"));
    QCOMPARE(input.lineEdit()->placeholderText(), QStringLiteral("密码"));
}

void TestTextFields::lockStandsBeforeThePassword()
{
    PasswordInput input;
    QCOMPARE(input.layout()->contentsMargins(), QMargins(10, 0, 10, 0));
    auto *lock = qobject_cast<QLabel *>(input.layout()->itemAt(0)->widget());
    QVERIFY(lock != nullptr);
    QCOMPARE(lock->pixmap().deviceIndependentSize(), QSizeF(18, 18));
    QCOMPARE(lock->pixmap().toImage(),
             QIcon(QStringLiteral(":/res/icons/modern/lock.png")).pixmap(18, 18).toImage());
    QCOMPARE(input.layout()->itemAt(1)->widget(), input.lineEdit());
}

void TestTextFields::eyeIsThereWhileThereIsText()
{
    PasswordInput input;
    const QAction *eye = eyeOf(input);
    QVERIFY(eye != nullptr);
    QVERIFY(!eye->isVisible());
    input.lineEdit()->setText(QStringLiteral("a"));
    QVERIFY(eye->isVisible());
    QTest::keyClick(input.lineEdit(), Qt::Key_Backspace);
    QVERIFY(!eye->isVisible());
}

void TestTextFields::eyeShowsAndHidesThePassword()
{
    PasswordInput input;
    input.lineEdit()->setText(QStringLiteral("a"));
    QAction *eye = eyeOf(input);
    const auto picture = [&] { return eye->icon().pixmap(16, 16).toImage(); };
    const QImage closed = picture();
    QCOMPARE(closed, QIcon(QStringLiteral(":/res/icons/modern/eye.png")).pixmap(16, 16).toImage());
    QCOMPARE(eye->toolTip(), QStringLiteral("显示密码"));
    eye->trigger();
    QCOMPARE(input.lineEdit()->echoMode(), QLineEdit::Normal);
    QCOMPARE(eye->toolTip(), QStringLiteral("隐藏密码"));
    QVERIFY(picture() != closed);
    eye->trigger();
    QCOMPARE(input.lineEdit()->echoMode(), QLineEdit::Password);
    QCOMPARE(picture(), closed);
}

void TestTextFields::frameOfThePassword()
{
    PasswordInput input;
    input.resize(200, 42);
    const QImage image = ControlTest::imageOf(input);
    QCOMPARE(image.pixelColor(0, 21), ControlTest::kBackground);
    QCOMPARE(image.pixelColor(1, 21), kNormal);
    QCOMPARE(image.pixelColor(2, 21), QColor(Qt::white));
    QCOMPARE(image.pixelColor(198, 21), kNormal);
    QCOMPARE(image.pixelColor(100, 40), kNormal);
    QCOMPARE(image.pixelColor(1, 1), ControlTest::kBackground);
    QCOMPARE(image.pixelColor(4, 4), QColor(Qt::white));
    QCOMPARE(ControlTest::imageOf(input, 2.0).pixelColor(3, 42), kNormal);
    QCOMPARE(ControlTest::imageOf(input, 2.0).pixelColor(4, 42), QColor(Qt::white));
}

void TestTextFields::passwordLineFollowsPointerAndError()
{
    PasswordInput input;
    input.resize(200, 42);
    QCOMPARE(lineOf(input), kNormal);
    input.setError(true);
    QVERIFY(input.hasError());
    QCOMPARE(lineOf(input), kError);
    QVERIFY(input.setProperty("error", false));
    QCOMPARE(lineOf(input), kNormal);
    ControlTest::enter(input);
    QCOMPARE(lineOf(input), kHovered);
    ControlTest::leave(input);
    QCOMPARE(lineOf(input), kNormal);
}

void TestTextFields::clickAnywhereInThePasswordFieldFocusesIt()
{
    QWidget window;
    PasswordInput input(&window);
    input.resize(200, 45);
    window.resize(220, 60);
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    const QPoint places[] = {{100, 2}, {100, 42}, {15, 22}};
    for (const QPoint place : places) {
        input.lineEdit()->clearFocus();
        QWidget *under = window.childAt(input.mapTo(&window, place));
        QTest::mouseClick(under, Qt::LeftButton, {},
                          under->mapFrom(&window, input.mapTo(&window, place)));
        QVERIFY(input.lineEdit()->hasFocus());
    }
}

void TestTextFields::focusCountsMoreThanTheError()
{
    QWidget window;
    PasswordInput input(&window);
    input.resize(200, 42);
    input.setError(true);
    QVERIFY(ControlTest::focus(*input.lineEdit()));
    QCOMPARE(lineOf(input), kFocused);
    ControlTest::enter(input);
    QCOMPARE(lineOf(input), kFocused);
    ControlTest::leave(input);
    input.lineEdit()->clearFocus();
    QCOMPARE(lineOf(input), kError);
}

void TestTextFields::pointerCountsMoreThanTheError()
{
    PasswordInput input;
    input.resize(200, 42);
    input.setError(true);
    ControlTest::enter(input);
    QCOMPARE(lineOf(input), kHovered);
}

void TestTextFields::focusRepaintsThePassword()
{
    QWidget window;
    window.resize(300, 100);
    PasswordInput input(&window);
    input.resize(200, 42);
    QLineEdit other(&window);
    other.move(0, 60);
    QVERIFY(ControlTest::focus(other));
    QCoreApplication::processEvents();
    LinePaints paints(input);
    input.setFocus();
    QTRY_VERIFY(paints.count > 0);
    QCoreApplication::processEvents();
    const int before = paints.count;
    other.setFocus();
    QTRY_VERIFY(paints.count > before);
}

void TestTextFields::setErrorRepaints()
{
    QWidget window;
    window.resize(300, 100);
    PasswordInput input(&window);
    input.resize(200, 42);
    QLineEdit other(&window);
    other.move(0, 60);
    QVERIFY(ControlTest::focus(other));
    QCoreApplication::processEvents();
    LinePaints paints(input);
    input.setError(true);
    QTRY_VERIFY(paints.count > 0);
}

void TestTextFields::lockIsMirrored()
{
    PasswordInput input;
    input.resize(200, 42);
    input.show();
    QCOMPARE(input.layout()->itemAt(0)->widget()->x(), 10);
    input.setLayoutDirection(Qt::RightToLeft);
    QCoreApplication::processEvents();
    QCOMPARE(input.layout()->itemAt(0)->widget()->geometry().right(), 189);
}

void TestTextFields::disabledPassword()
{
    PasswordInput input;
    input.resize(200, 42);
    input.setError(true);
    input.setEnabled(false);
    ControlTest::enter(input);
    QCOMPARE(lineOf(input), kNormal);
    QCOMPARE(ControlTest::imageOf(input).pixelColor(5, 21), Theme::windowBackground);
}

void TestTextFields::fieldLinesFollowTheState()
{
    QWidget window;
    BorderLineEdit number(&window);
    CLineEdit text(&window);
    QLineEdit other(&window);
    for (QLineEdit *edit : std::initializer_list<QLineEdit *>{&number, &text}) {
        edit->resize(120, 36);
        QVERIFY(ControlTest::focus(other));
        QCOMPARE(lineOf(*edit), kNormal);
        QCOMPARE(ControlTest::imageOf(*edit).pixelColor(5, 18), QColor(Qt::white));
        ControlTest::enter(*edit);
        QCOMPARE(lineOf(*edit), kHovered);
        QVERIFY(edit->focusPolicy() != Qt::NoFocus);
        QVERIFY(ControlTest::focus(*edit));
        QCOMPARE(lineOf(*edit), kFocused);
        edit->setEnabled(false);
        QCOMPARE(lineOf(*edit), kNormal);
        QCOMPARE(ControlTest::imageOf(*edit).pixelColor(5, 18), Theme::windowBackground);
    }
}

void TestTextFields::lineWidthIsAProperty()
{
    BorderLineEdit edit;
    edit.resize(120, 36);
    QCOMPARE(edit.property("lineWidth").toInt(), 1);
    const QSignalSpy changed(&edit, &BorderLineEdit::lineWidthChanged);
    QVERIFY(edit.setProperty("lineWidth", 3));
    QVERIFY(edit.setProperty("lineWidth", 3));
    QCOMPARE(changed.count(), 1);
    QImage image = ControlTest::imageOf(edit);
    QCOMPARE(image.pixelColor(3, 18), kNormal);
    QCOMPARE(image.pixelColor(4, 18), QColor(Qt::white));
    edit.setLineWidth(0);
    image = ControlTest::imageOf(edit);
    QCOMPARE(image.pixelColor(1, 18), QColor(Qt::white));
}

void TestTextFields::numberFieldTakesWholeNumbers()
{
    BorderLineEdit edit;
    const auto *validator = qobject_cast<const QIntValidator *>(edit.validator());
    QVERIFY(validator != nullptr);
    QTest::keyClicks(&edit, QStringLiteral("1a2.3"));
    QCOMPARE(edit.text(), QStringLiteral("123"));
    QCOMPARE(edit.value(), 123);
    edit.setRange(1, 99);
    QCOMPARE(validator->bottom(), 1);
    QCOMPARE(validator->top(), 99);
    QVERIFY(!edit.hasAcceptableInput());
    edit.setValue(42);
    QCOMPARE(edit.text(), QStringLiteral("42"));
    QVERIFY(edit.hasAcceptableInput());
    edit.clear();
    QCOMPARE(edit.value(), 0);
}

void TestTextFields::editFinishedTellsTheValue()
{
    QWidget window;
    CLineEdit edit(&window);
    QLineEdit other(&window);
    QSignalSpy finished(&edit, &CLineEdit::sigEditFinished);
    QVERIFY(ControlTest::focus(edit));
    QTest::keyClicks(&edit, QStringLiteral("abc"));
    QCOMPARE(finished.count(), 0);
    QTest::keyClick(&edit, Qt::Key_Return);
    QCOMPARE(finished.count(), 1);
    QCOMPARE(finished.at(0).at(0).toString(), QStringLiteral("abc"));
    QTest::keyClicks(&edit, QStringLiteral("d"));
    finished.clear();
    other.setFocus();
    QTRY_COMPARE(finished.count(), 1);
    QCOMPARE(finished.at(0).at(0).toString(), QStringLiteral("abcd"));
}

void TestTextFields::textStandsAtTheLeadingSide()
{
    CLineEdit edit;
    PasswordInput input;
    for (QLineEdit *field : std::initializer_list<QLineEdit *>{&edit, input.lineEdit()}) {
        field->setText(QStringLiteral("HH"));
        QVERIFY((field->alignment() & Qt::AlignLeft) != 0);
    }
    edit.setLayoutDirection(Qt::RightToLeft);
    input.setLayoutDirection(Qt::RightToLeft);
    for (const QLineEdit *field : std::initializer_list<QLineEdit *>{&edit, input.lineEdit()}) {
        QVERIFY((field->alignment() & Qt::AlignRight) != 0);
        QVERIFY((field->alignment() & Qt::AlignAbsolute) != 0);
    }
}

QTEST_MAIN(TestTextFields)
#include "tst_text_fields.moc"
