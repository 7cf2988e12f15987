// SPDX-License-Identifier: AGPL-3.0-or-later
#include "widgets/icon_button.h"

#include "widgets/control_painting.h"
#include "widgets/text_alignment.h"
#include "widgets/theme.h"
#include "widgets/widget_font.h"

#include <QEvent>
#include <QPainter>

#include <algorithm>

namespace {

constexpr int kMinimumWidth = 80;
constexpr int kHeight = 36;
constexpr int kPadding = 12;
constexpr int kGap = 6;
constexpr int kRadius = 6;
constexpr int kFont = 14;
/// A fill is darkened by these per cents of its value while the button is pressed: light ones
/// need less.
constexpr int kStrongPressed = 112;
constexpr int kLightPressed = 105;
constexpr int kLightFrom = 200;

} // namespace

IconButton::IconButton(const QString &text, QWidget *parent)
    : QAbstractButton(parent)
    , m_fill(Theme::accent)
    , m_hoverFill(Theme::accentHover)
    , m_textColor(Theme::white)
{
    setText(text);
    setFont(widgetFont(kFont));
    setIconSize({});
    setCursor(Qt::PointingHandCursor);
    setFocusPolicy(Qt::NoFocus);
    setAttribute(Qt::WA_Hover);
    setSizePolicy(QSizePolicy::Minimum, QSizePolicy::Fixed);
}

IconButton::~IconButton() = default;

QSize IconButton::sizeHint() const
{
    ensurePolished();
    const int contentHeight = std::max(fontMetrics().height(), iconSize().height());
    return {std::max(contentWidth() + 2 * kPadding, kMinimumWidth),
            std::max(contentHeight + kPadding, kHeight)};
}

QSize IconButton::minimumSizeHint() const
{
    return {kMinimumWidth, sizeHint().height()};
}

void IconButton::setFillColor(const QColor &color)
{
    m_fill = color;
    update();
}

void IconButton::setHoverFillColor(const QColor &color)
{
    m_hoverFill = color;
    update();
}

void IconButton::setBorderColor(const QColor &color)
{
    m_border = color;
    update();
}

void IconButton::setTextColor(const QColor &color)
{
    m_textColor = color;
    update();
}

void IconButton::setIconPixmap(const QString &iconPath, int size)
{
    setIcon(iconPath.isEmpty() ? QIcon() : QIcon(iconPath));
    setIconSize(iconPath.isEmpty() ? QSize() : QSize(size, size));
    updateGeometry();
}

bool IconButton::event(QEvent *event)
{
    if (event->type() == QEvent::ToolTip && width() < contentWidth() + 2 * kPadding &&
        ControlPainting::showWholeText(*event, *this, text())) {
        return true;
    }
    return QAbstractButton::event(event);
}

void IconButton::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    ControlPainting::drawBox(
        painter, rect(),
        {.fill = fillNow(), .border = isEnabled() ? m_border : QColor(), .radius = kRadius});
    if (hasFocus()) {
        ControlPainting::drawFocusRing(painter, rect(), kRadius);
    }

    const ControlPainting::Face face =
        ControlPainting::centredFace(rect().adjusted(kPadding, 0, -kPadding, 0), iconSide(), kGap,
                                     textWidth(), layoutDirection());
    if (!icon().isNull() && isEnabled()) {
        ControlPainting::drawIcon(painter, face.icon, icon());
    } else if (!icon().isNull()) {
        ControlPainting::drawTinted(painter, face.icon, icon(), Theme::textMuted);
    }
    painter.setPen(isEnabled() ? m_textColor : Theme::textMuted);
    ControlPainting::drawText(painter, face.text, text(),
                              leadingSide(layoutDirection()) | Qt::AlignVCenter);
}

QColor IconButton::fillNow() const
{
    if (!isEnabled()) {
        return Theme::pressed;
    }
    if (isDown()) {
        if (m_fill == Theme::accent) {
            return Theme::accentPressed;
        }
        return m_hoverFill.lightness() >= kLightFrom ? m_hoverFill.darker(kLightPressed)
                                                     : m_fill.darker(kStrongPressed);
    }
    return underMouse() ? m_hoverFill : m_fill;
}

int IconButton::iconSide() const
{
    return icon().isNull() ? 0 : iconSize().width();
}

int IconButton::textWidth() const
{
    return fontMetrics().size(Qt::TextSingleLine, text()).width();
}

int IconButton::contentWidth() const
{
    const int besideText = iconSide() > 0 ? iconSide() + kGap : 0;
    return besideText + textWidth();
}
