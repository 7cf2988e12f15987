// SPDX-License-Identifier: AGPL-3.0-or-later
#include "widgets/custom_menu_button.h"

#include "widgets/control_painting.h"
#include "widgets/field_frame.h"
#include "widgets/popup_click.h"
#include "widgets/popup_hover.h"
#include "widgets/rounded_window.h"
#include "widgets/text_alignment.h"
#include "widgets/theme.h"
#include "widgets/widget_font.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QIcon>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>

namespace {

constexpr int kHeight = 42;
constexpr int kMinimumWidth = 96;
constexpr int kPadding = 12;
constexpr int kGap = 8;
constexpr int kArrowSide = 24;
constexpr int kFont = 14;
constexpr int kMenuRadius = 8;
constexpr int kBesideText = 2 * kPadding + kGap + kArrowSide;

constexpr QLatin1String kArrowIcon{":/res/icons/modern/down.png"};

// %1 background, %2 text, %3 border, %4 and %5 chosen entry and its text, %6 radius
constexpr QLatin1String kMenuStyleSheet{R"(
QMenu#customMenuButtonMenu {
    color: %2; background: %1; border: 1px solid %3; border-radius: %6px; padding: 6px;
}
QMenu#customMenuButtonMenu::item {
    color: %2; background: transparent; min-height: 36px; padding: 0 24px 0 10px;
    border-radius: 6px;
}
QMenu#customMenuButtonMenu::item:selected { color: %5; background: %4; }
)"};

/// Shows its text in one line that is elided where it is too long.
class ElidedLabel final : public QLabel
{
public:
    using QLabel::QLabel;

protected:
    void paintEvent(QPaintEvent * /*event*/) override
    {
        QPainter painter(this);
        painter.setPen(isEnabled() ? Theme::ink : Theme::textMuted);
        ControlPainting::drawText(painter, rect(), text(),
                                  leadingSide(layoutDirection()) | Qt::AlignVCenter);
    }
};

} // namespace

CustomMenuButton::CustomMenuButton(QWidget *parent)
    : QWidget(parent)
    , m_label(new ElidedLabel(this))
    , m_menu(new QMenu(this))
{
    setCursor(Qt::PointingHandCursor);
    setAttribute(Qt::WA_Hover);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    m_label->setFont(widgetFont(kFont));
    m_label->setTextFormat(Qt::PlainText);
    m_label->setMinimumWidth(1);
    m_label->setAttribute(Qt::WA_TransparentForMouseEvents);

    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(kPadding, 0, kPadding, 0);
    layout->setSpacing(0);
    layout->addWidget(m_label, 1);
    // Layouts mirror this, other than margins.
    layout->addSpacing(kGap + kArrowSide);

    m_menu->setObjectName(QStringLiteral("customMenuButtonMenu"));
    m_menu->setFont(widgetFont(kFont));
    letCornersBeSeenThrough(*m_menu, {.radius = kMenuRadius, .edge = Theme::border});
    endHoverWithPopup(*m_menu, *this);
    keepClosingClickFrom(*m_menu, *this);
    m_menu->setStyleSheet(QString(kMenuStyleSheet)
                              .arg(Theme::white.name(), Theme::ink.name(), Theme::border.name(),
                                   Theme::accentTint.name(), Theme::accent.name(),
                                   QString::number(kMenuRadius)));
    connect(m_menu, &QMenu::aboutToShow, this, qOverload<>(&QWidget::update));
    connect(m_menu, &QMenu::aboutToHide, this, qOverload<>(&QWidget::update));
}

CustomMenuButton::~CustomMenuButton() = default;

QString CustomMenuButton::text() const
{
    return m_label->text();
}

QSize CustomMenuButton::sizeHint() const
{
    const QFontMetrics metrics(m_label->font());
    int textWidth = metrics.size(Qt::TextSingleLine, text()).width();
    const QList<QAction *> actions = m_menu->actions();
    for (const QAction *action : actions) {
        textWidth = std::max(textWidth, metrics.size(Qt::TextSingleLine, action->text()).width());
    }
    return {std::max(textWidth + kBesideText, kMinimumWidth), kHeight};
}

QSize CustomMenuButton::minimumSizeHint() const
{
    return {kMinimumWidth, kHeight};
}

void CustomMenuButton::setText(const QString &text)
{
    m_label->setText(text);
    setAccessibleName(text);
    updateGeometry();
}

QAction *CustomMenuButton::addMenuItem(const QString &text)
{
    QAction *action = m_menu->addAction(text);
    connect(action, &QAction::triggered, this, &CustomMenuButton::onMenuItemClicked);
    updateGeometry();
    return action;
}

void CustomMenuButton::onMenuItemClicked()
{
    auto *action = qobject_cast<QAction *>(sender());
    if (action == nullptr) {
        return;
    }
    setText(action->text());
    emit menuItemSelected(action);
}

void CustomMenuButton::toggleMenu()
{
    if (m_menu->isVisible()) {
        m_menu->hide();
        return;
    }
    // As wide as the button, the menu stands below it in both directions of layouts.
    m_menu->setMinimumWidth(width());
    m_menu->exec(mapToGlobal(rect().bottomLeft()));
}

bool CustomMenuButton::event(QEvent *event)
{
    if (event->type() == QEvent::ToolTip &&
        m_label->width() < m_label->fontMetrics().size(Qt::TextSingleLine, text()).width() &&
        ControlPainting::showWholeText(*event, *this, text())) {
        return true;
    }
    return QWidget::event(event);
}

void CustomMenuButton::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Space && !event->isAutoRepeat()) {
        toggleMenu();
        return;
    }
    QWidget::keyPressEvent(event);
}

void CustomMenuButton::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton) {
        toggleMenu();
        return;
    }
    QWidget::mousePressEvent(event);
}

void CustomMenuButton::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    FieldFrame::draw(painter, rect(),
                     {.focused = hasFocus() || m_menu->isVisible(),
                      .hovered = underMouse(),
                      .enabled = isEnabled()});
    const QRect arrow(width() - kPadding - kArrowSide, (height() - kArrowSide) / 2, kArrowSide,
                      kArrowSide);
    painter.setOpacity(isEnabled() ? 1.0 : Theme::disabledOpacity);
    ControlPainting::drawIcon(painter, QStyle::visualRect(layoutDirection(), rect(), arrow),
                              QIcon(kArrowIcon));
}
