// SPDX-License-Identifier: AGPL-3.0-or-later
#include "app/title_bar.h"

#include "app/language_manager.h"
#include "app/language_table.h"
#include "app/maximize_button.h"
#include "app/program_info.h"
#include "app/window_shape.h"
#include "widgets/theme.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QPushButton>
#include <QToolButton>

namespace {

constexpr int kLogoSize = 20;
constexpr QSize kButtonSize(46, TitleBar::kHeight);
constexpr char kMaximizedProperty[] = "maximized";

constexpr QLatin1String kMinimizeIcon(":/res/icons/modern/minimize.png");
constexpr QLatin1String kMaximizeIcon(":/res/icons/modern/maximize.png");
constexpr QLatin1String kRestoreIcon(":/res/icons/modern/restore.png");
constexpr QLatin1String kCloseIcon(":/res/icons/modern/close_20_hover.png");

// %1 colour
constexpr QLatin1String kTitleStyleSheet("QLabel{background:transparent;color:%1;}");
// %1 icon
constexpr QLatin1String kWindowButtonStyleSheet("QPushButton { image: url(%1); }");
// %1 background, %2 text, %3 close button hovered, %4 and %5 other buttons hovered, pressed,
// %6 radius of the corner
constexpr QLatin1String kStyleSheet(
    "TitleBar { background: %1; }"
    "QToolButton, QPushButton { background: transparent; border: none; border-radius: 6px;"
    " margin: 1px 2px; }"
    "QToolButton:hover, QPushButton:hover { background: %4; }"
    "QToolButton:pressed, QPushButton:pressed { background: %5; }"
    "QToolButton#languageBtn { color: %2; font-size: 12px; font-weight: 600; padding: 0 10px; }"
    "QPushButton { padding: 9px 14px; }"
    "QPushButton#closeBtn { border-top-right-radius: %6px; margin-right: 0px; }"
    "QPushButton#closeBtn:hover { background: %3; }"
    "QPushButton#closeBtn:pressed { background: #C93F3F; }");

} // namespace

TitleBar::TitleBar(QWidget *parent)
    : QWidget(parent)
    , m_languageButton(new QToolButton(this))
    , m_minimizeButton(createWindowButton<QPushButton>(kMinimizeIcon))
    , m_maximizeButton(createWindowButton<MaximizeButton>(kMaximizeIcon))
    , m_closeButton(createWindowButton<QPushButton>(kCloseIcon))
{
    setFixedHeight(kHeight);

    auto *logo = new QLabel(this);
    logo->setFixedSize(kLogoSize, kLogoSize);
    logo->setPixmap(QIcon(kProgramIcon).pixmap(QSize(kLogoSize, kLogoSize), devicePixelRatioF()));

    auto *title = new QLabel(tr("Quillora"), this);
    title->setObjectName(QStringLiteral("titleLabel"));
    title->setStyleSheet(kTitleStyleSheet.arg(Theme::ink.name()));

    m_languageButton->setObjectName(QStringLiteral("languageBtn"));
    m_languageButton->setFixedSize(kButtonSize);
    m_languageButton->setCursor(Qt::PointingHandCursor);
    m_languageButton->setFocusPolicy(Qt::NoFocus);
    m_minimizeButton->setObjectName(QStringLiteral("minimizeBtn"));
    m_maximizeButton->setObjectName(QStringLiteral("maximizeBtn"));
    m_closeButton->setObjectName(QStringLiteral("closeBtn"));

    connect(m_languageButton, &QToolButton::clicked, this, &TitleBar::languageRequested);
    connect(m_minimizeButton, &QPushButton::clicked, this, &TitleBar::minimizeRequested);
    connect(m_maximizeButton, &QPushButton::clicked, this, &TitleBar::maximizeRestoreRequested);
    connect(m_closeButton, &QPushButton::clicked, this, &TitleBar::closeRequested);

    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(12, 0, 0, 0);
    layout->setSpacing(8);
    layout->addWidget(logo);
    layout->addWidget(title);
    layout->addStretch(1);
    layout->addWidget(m_languageButton);
    layout->addWidget(m_minimizeButton);
    layout->addWidget(m_maximizeButton);
    layout->addWidget(m_closeButton);

    setStyleSheet(kStyleSheet.arg(Theme::windowBackground.name(), Theme::textSecondary.name(),
                                  Theme::dangerStrong.name(), Theme::frameHover.name(),
                                  Theme::framePressed.name(),
                                  QString::number(WindowShape::kInnerCornerRadius)));
    retranslateUi();
}

void TitleBar::setMaximized(bool maximized)
{
    m_maximizeButton->setStyleSheet(
        kWindowButtonStyleSheet.arg(maximized ? kRestoreIcon : kMaximizeIcon));
    m_maximizeButton->setProperty(kMaximizedProperty, maximized);
    updateMaximizeToolTip();
}

void TitleBar::retranslateUi()
{
    m_languageButton->setText(languageAbbreviation(LanguageManager::instance()->currentLanguage()));
    m_languageButton->setToolTip(tr("语言设置"));
    m_minimizeButton->setToolTip(tr("最小化"));
    updateMaximizeToolTip();
    m_closeButton->setToolTip(tr("关闭"));
}

void TitleBar::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange) {
        retranslateUi();
    }
    QWidget::changeEvent(event);
}

template <typename Button>
QPushButton *TitleBar::createWindowButton(const QString &iconPath)
{
    auto *button = new Button(this);
    button->setFixedSize(kButtonSize);
    button->setStyleSheet(kWindowButtonStyleSheet.arg(iconPath));
    button->setCursor(Qt::PointingHandCursor);
    button->setFocusPolicy(Qt::NoFocus);
    return button;
}

void TitleBar::updateMaximizeToolTip()
{
    const bool maximized = m_maximizeButton->property(kMaximizedProperty).toBool();
    m_maximizeButton->setToolTip(maximized ? tr("还原") : tr("最大化"));
}
