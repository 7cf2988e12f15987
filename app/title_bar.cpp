// SPDX-License-Identifier: AGPL-3.0-or-later
#include "app/title_bar.h"

#include "app/language_manager.h"
#include "app/maximize_button.h"
#include "widgets/theme.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QPushButton>
#include <QToolButton>

namespace {

constexpr int kHeight = 40;
constexpr int kLogoSize = 20;
constexpr QSize kButtonSize(46, kHeight);
constexpr char kMaximizedProperty[] = "maximized";

constexpr QLatin1String kMinimizeIcon(":/res/icons/modern/minimize.png");
constexpr QLatin1String kMaximizeIcon(":/res/icons/modern/maximize.png");
constexpr QLatin1String kRestoreIcon(":/res/icons/modern/restore.png");
constexpr QLatin1String kCloseIcon(":/res/icons/modern/close_20_hover.png");

constexpr QLatin1String kTitleStyle("QLabel{background:transparent;color:%1;}");
constexpr QLatin1String kWindowButtonStyle("QPushButton { image: url(%1); }");
constexpr QLatin1String kStyle(
    "TitleBar { background: %1; }"
    "QToolButton, QPushButton { background: transparent; border: none; border-radius: 6px;"
    " margin: 1px 2px; }"
    "QToolButton:hover, QPushButton:hover { background: #E4E6EB; }"
    "QToolButton:pressed, QPushButton:pressed { background: #D8DBE0; }"
    "QToolButton#languageBtn { color: %2; font-size: 12px; font-weight: 600; padding: 0 10px; }"
    "QPushButton { padding: 9px 14px; }"
    "QPushButton#closeBtn { border-top-right-radius: 11px; margin-right: 0px; }"
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
    logo->setPixmap(QIcon(QStringLiteral(":/res/icons/modern/logo.png"))
                        .pixmap(QSize(kLogoSize, kLogoSize), devicePixelRatioF()));

    auto *title = new QLabel(tr("Quillora"), this);
    title->setObjectName(QStringLiteral("titleLabel"));
    title->setStyleSheet(kTitleStyle.arg(Theme::ink.name()));

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

    setStyleSheet(kStyle.arg(Theme::windowBackground.name(), Theme::textSecondary.name(),
                             Theme::dangerStrong.name()));
    retranslateUi();
}

void TitleBar::setMaximized(bool maximized)
{
    m_maximizeButton->setStyleSheet(
        kWindowButtonStyle.arg(maximized ? kRestoreIcon : kMaximizeIcon));
    m_maximizeButton->setProperty(kMaximizedProperty, maximized);
    updateMaximizeToolTip();
}

void TitleBar::retranslateUi()
{
    const QString language = LanguageManager::instance()->currentLanguage();
    m_languageButton->setText(language.section(QLatin1Char('_'), 0, 0).toUpper());
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
    button->setStyleSheet(kWindowButtonStyle.arg(iconPath));
    button->setCursor(Qt::PointingHandCursor);
    button->setFocusPolicy(Qt::NoFocus);
    return button;
}

void TitleBar::updateMaximizeToolTip()
{
    const bool maximized = m_maximizeButton->property(kMaximizedProperty).toBool();
    m_maximizeButton->setToolTip(maximized ? tr("还原") : tr("最大化"));
}
