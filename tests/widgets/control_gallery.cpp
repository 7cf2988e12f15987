// SPDX-License-Identifier: AGPL-3.0-or-later
//
// Paints the styled controls in all their states into one picture, to be looked at:
//
//   control_gallery PICTURE.png [rtl]
//
// QT_SCALE_FACTOR sets the scale.
#include "res/resources.h"
#include "widgets/boder_button.h"
#include "widgets/border_line_edit.h"
#include "widgets/c_line_edit.h"
#include "widgets/card_radio_button.h"
#include "widgets/combo_popup.h"
#include "widgets/custom_menu_button.h"
#include "widgets/icon_button.h"
#include "widgets/icon_only_button.h"
#include "widgets/icon_paths.h"
#include "widgets/modern_combo_box.h"
#include "widgets/more_option.h"
#include "widgets/password_input.h"
#include "widgets/select_button.h"
#include "widgets/switch_button.h"
#include "widgets/theme.h"
#include "widgets/type_button.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLineEdit>
#include <QListWidget>
#include <QPainter>
#include <QPalette>
#include <QRadioButton>
#include <QTest>
#include <QVBoxLayout>

#include <array>
#include <functional>

namespace {

enum class State { Normal, Hovered, Pressed, Focused, Disabled };

constexpr std::array kStates{State::Normal, State::Hovered, State::Pressed, State::Focused,
                             State::Disabled};
constexpr int kCellWidth = 232;
constexpr int kControlWidth = 208;
constexpr int kMargin = 16;
constexpr int kGap = 12;

struct Sample
{
    std::function<QWidget *()> create;
    /// The width of the control; 0 for its own.
    int width = kControlWidth;
};

/// The part of a control that takes clicks and the focus.
QWidget *activePart(QWidget *control)
{
    if (auto *card = qobject_cast<CardRadioButton *>(control)) {
        return card->radioButton();
    }
    if (auto *password = qobject_cast<PasswordInput *>(control)) {
        return password->lineEdit();
    }
    return control;
}

void apply(State state, QWidget *control)
{
    QWidget *part = activePart(control);
    QEvent enter(QEvent::Enter);
    switch (state) {
    case State::Normal:
        break;
    case State::Hovered:
        QCoreApplication::sendEvent(part, &enter);
        QCoreApplication::sendEvent(control, &enter);
        break;
    case State::Pressed:
        if (auto *button = qobject_cast<QAbstractButton *>(part)) {
            button->setDown(true);
        } else if (qobject_cast<ChoiceButton *>(part) != nullptr) {
            QTest::mousePress(part, Qt::LeftButton);
        }
        break;
    case State::Focused:
        part->setFocusPolicy(Qt::StrongFocus);
        part->setFocus();
        break;
    case State::Disabled:
        control->setEnabled(false);
        break;
    }
}

QPixmap picture(const Sample &sample, State state)
{
    QWidget window;
    auto *layout = new QVBoxLayout(&window);
    layout->setContentsMargins(0, 0, 0, 0);
    QWidget *control = sample.create();
    if (sample.width > 0) {
        control->setFixedWidth(sample.width);
    } else {
        control->setFixedSize(control->sizeHint());
    }
    layout->addWidget(control);
    QPalette palette;
    palette.setColor(QPalette::Window, Theme::white);
    window.setPalette(palette);
    // Away from the pointer.
    window.move(200, 200);
    window.show();
    window.activateWindow();
    if (!QTest::qWaitForWindowActive(&window)) {
        qWarning("The window is not active.");
    }
    window.setFocus();
    apply(state, control);
    QCoreApplication::processEvents();
    QPixmap pixmap = control->grab();
    control->setEnabled(true);
    return pixmap;
}

QWidget *card(bool checked)
{
    auto *button = new CardRadioButton(
        QStringLiteral("强 Strong"), QStringLiteral("文件最小，质量 Smallest size, lower quality"));
    button->setChecked(checked);
    return button;
}

IconButton *iconButton(const QString &text, const QString &icon, int size)
{
    auto *button = new IconButton(text);
    button->setIconPixmap(icon, size);
    return button;
}

QWidget *outlined(const QString &text, const QString &icon, int size)
{
    IconButton *button = iconButton(text, icon, size);
    button->setFillColor(Theme::white);
    button->setHoverFillColor(Theme::hover);
    button->setBorderColor(Theme::border);
    button->setTextColor(Theme::textSecondary);
    return button;
}

QWidget *boder(const QColor &color)
{
    auto *button = new BoderButton(QStringLiteral("确定 OK"));
    button->setBackgroundColor(color);
    button->setBorderColor(color.darker(120));
    return button;
}

template <class Button>
QWidget *selected(Button *button, bool on)
{
    button->setSelected(on);
    return button;
}

template <class Button>
QWidget *checked(Button *button, bool on)
{
    button->setChecked(on);
    return button;
}

QWidget *password(const QString &text, bool error)
{
    auto *input = new PasswordInput;
    input->setPlaceholderText(QStringLiteral("密码 Password"));
    input->lineEdit()->setText(text);
    input->setError(error);
    return input;
}

ModernComboBox *comboBox(bool withIcons)
{
    auto *box = new ModernComboBox(nullptr, true);
    const QIcon icon = withIcons ? QIcon(kFolderIcon) : QIcon();
    for (const QString &text : {QStringLiteral("原始文件 Original folder"),
                                QStringLiteral("桌面 Desktop"), QStringLiteral("Quillora文件")}) {
        box->addItem(text, icon);
    }
    box->addItem(QStringLiteral("选择位置..."), icon, true)
        ->setData(ModernComboBox::kLocationRole, ModernComboBox::kCustomLocation);
    box->setCurrentItem(box->item(0));
    return box;
}

QWidget *folderBox()
{
    ModernComboBox *box = comboBox(true);
    box->setCurrentItem(box->item(3));
    box->item(3)->setData(ModernComboBox::kTextRole,
                          QStringLiteral("/home/somebody/Documents/Reports of the year"));
    return box;
}

QWidget *menuButton()
{
    auto *button = new CustomMenuButton;
    button->addMenuItem(QStringLiteral("A4"));
    button->setText(QStringLiteral("按名称 By name"));
    return button;
}

QWidget *lineEdit(QLineEdit *edit, const QString &text)
{
    edit->setText(text);
    return edit;
}

QIcon pictureOf(const char *name)
{
    return QIcon(QStringLiteral(":/res/icons/modern/%1.png").arg(QLatin1String(name)));
}

QList<Sample> samples()
{
    const QString add = QStringLiteral(":/res/icons/modern/addfile.png");
    const QString trash = QStringLiteral(":/res/icons/modern/trash.png");
    const QString restart = QStringLiteral(":/res/icons/modern/restart.png");
    return {
        {[=] { return iconButton(QStringLiteral("添加文件 Add files"), add, 24); }, 0},
        {[=] { return outlined(QStringLiteral("清除全部 Clear all"), trash, 16); }, 0},
        {[=] { return outlined(QStringLiteral("Wiederherstellen von vorn"), restart, 16); }, 110},
        {[] { return iconButton(QStringLiteral("压缩 Compress"), {}, 0); }},
        {[] { return boder(Theme::accent); }, 0},
        {[] { return boder(Theme::danger); }, 0},
        {[] { return card(false); }},
        {[] { return card(true); }},
        {[] { return checked(new SwitchButton, false); }, 60},
        {[] { return checked(new SwitchButton, true); }, 60},
        {[] { return selected(new SelectButton(QStringLiteral("纵向 Portrait")), false); }, 120},
        {[] { return selected(new SelectButton(QStringLiteral("横向 Landscape")), true); }, 120},
        {[] { return selected(new TypeButton(QStringLiteral("PNG"), pictureOf("image")), false); },
         120},
        {[] { return selected(new TypeButton(QStringLiteral("JPG"), pictureOf("image")), true); },
         120},
        {[] { return new IconOnlyButton(pictureOf("restart"), 16); }, 0},
        {[] {
             auto *button = new IconOnlyButton(pictureOf("search"));
             button->setCheckable(true);
             return checked(button, true);
         },
         0},
        {[] { return lineEdit(new BorderLineEdit, QStringLiteral("42")); }},
        {[] { return lineEdit(new CLineEdit, QStringLiteral("文本 Text")); }},
        {[] { return password({}, false); }},
        {[] { return password(QStringLiteral("secret"), true); }},
        {[] { return comboBox(false); }},
        {[] { return comboBox(true); }},
        {[] { return folderBox(); }},
        {[] { return menuButton(); }},
        {[] { return checked(new MoreOption(QStringLiteral("更多 More option")), false); }},
        {[] { return checked(new MoreOption(QStringLiteral("更多 More option")), true); }},
    };
}

/// Lists of boxes, with the second item hovered.
QList<QPixmap> popups()
{
    QList<QPixmap> pixmaps;
    for (const int count : {3, 4, 8}) {
        ModernComboBox *box = comboBox(count != 3);
        for (int index = 4; index < count; ++index) {
            box->addItem(QStringLiteral("%1").arg(index));
        }
        if (count == 3) {
            delete box->item(3);
        }
        box->setCurrentItem(box->item(1));
        box->setFixedWidth(kControlWidth);
        box->move(300, 400);
        box->show();
        QTest::mousePress(box, Qt::LeftButton);
        QTest::mouseMove(box->popup()->list()->viewport(),
                         box->popup()->list()->visualItemRect(box->item(2)).center());
        QCoreApplication::processEvents();
        pixmaps.append(box->popup()->grab());
        delete box;
    }
    return pixmaps;
}

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    initResources();
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() < 2) {
        qCritical("control_gallery PICTURE.png [rtl]");
        return 2;
    }
    if (arguments.contains(QStringLiteral("rtl"))) {
        QGuiApplication::setLayoutDirection(Qt::RightToLeft);
    }

    QList<QList<QPixmap>> rows;
    for (const Sample &sample : samples()) {
        QList<QPixmap> row;
        for (const State state : kStates) {
            row.append(picture(sample, state));
        }
        rows.append(row);
    }
    rows.append(popups());

    const auto heightOf = [](const QList<QPixmap> &row) {
        qreal height = 0;
        for (const QPixmap &pixmap : row) {
            height = std::max(height, pixmap.deviceIndependentSize().height());
        }
        // Even, so that pictures of half pixels start on whole ones.
        return 2 * qCeil(height / 2);
    };
    int height = 2 * kMargin;
    for (const QList<QPixmap> &row : rows) {
        height += heightOf(row) + kGap;
    }
    const QSize size(2 * kMargin + kCellWidth * int(kStates.size()), height);
    const double ratio = application.devicePixelRatio();
    QImage image(size * ratio, QImage::Format_RGB32);
    image.setDevicePixelRatio(ratio);
    image.fill(Theme::white);
    QPainter painter(&image);
    int y = kMargin;
    for (const QList<QPixmap> &row : rows) {
        int x = kMargin;
        for (const QPixmap &pixmap : row) {
            painter.drawPixmap(x, y, pixmap);
            x += kCellWidth;
        }
        y += heightOf(row) + kGap;
    }
    painter.end();
    return image.save(arguments.at(1)) ? 0 : 1;
}
