// SPDX-License-Identifier: AGPL-3.0-or-later
#include "widgets/boder_button.h"

#include "widgets/control_painting.h"
#include "widgets/theme.h"
#include "widgets/widget_font.h"

#include <QEvent>
#include <QPainter>

#include <algorithm>

namespace {

constexpr int kMinimumWidth = 32;
constexpr int kHeight = 32;
constexpr int kPadding = 8;
constexpr int kFont = 14;
/// In per cent of the fill's own lightness.
constexpr int kPressedDarkness = 120;
constexpr int kHoverLightness = 110;

} // namespace

BoderButton::BoderButton(QWidget *parent)
    : BoderButton(QString(), parent)
{}

BoderButton::BoderButton(const QString &text, QWidget *parent)
    : QAbstractButton(parent)
    , m_backgroundColor(Theme::accent)
    , m_borderColor(Theme::accentPressed)
{
    setText(text);
    setFont(widgetFont(kFont));
    setCursor(Qt::PointingHandCursor);
    setFocusPolicy(Qt::NoFocus);
    setAttribute(Qt::WA_Hover);
    setSizePolicy(QSizePolicy::Minimum, QSizePolicy::Fixed);
}

BoderButton::~BoderButton() = default;

QSize BoderButton::sizeHint() const
{
    ensurePolished();
    const QSize picture = m_pixmap.deviceIndependentSize().toSize();
    const int width = std::max(textWidth(), picture.width()) + 2 * kPadding;
    const int height = std::max(fontMetrics().height(), picture.height()) + kPadding;
    return {std::max(width, kMinimumWidth), std::max(height, kHeight)};
}

QSize BoderButton::minimumSizeHint() const
{
    return {kMinimumWidth, sizeHint().height()};
}

void BoderButton::setBackgroundColor(const QColor &color)
{
    if (color != m_backgroundColor) {
        m_backgroundColor = color;
        update();
        emit backgroundColorChanged(color);
    }
}

void BoderButton::setBorderColor(const QColor &color)
{
    if (color != m_borderColor) {
        m_borderColor = color;
        update();
        emit borderColorChanged(color);
    }
}

void BoderButton::setBorderWidth(int width)
{
    if (width != m_borderWidth) {
        m_borderWidth = width;
        update();
        emit borderWidthChanged(width);
    }
}

void BoderButton::setRadius(int radius)
{
    if (radius != m_radius) {
        m_radius = radius;
        update();
        emit radiusChanged(radius);
    }
}

void BoderButton::setPixmap(const QPixmap &pixmap)
{
    m_pixmap = pixmap;
    updateGeometry();
    update();
}

bool BoderButton::event(QEvent *event)
{
    if (event->type() == QEvent::ToolTip && width() < textWidth() + 2 * kPadding &&
        ControlPainting::showWholeText(*event, *this, text())) {
        return true;
    }
    return QAbstractButton::event(event);
}

void BoderButton::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.setOpacity(isEnabled() ? 1.0 : Theme::disabledOpacity);
    const double inner = std::max(m_radius - m_borderWidth, 0);
    if (m_borderWidth > 0) {
        ControlPainting::drawBox(painter, rect(),
                                 {.fill = m_borderColor, .radius = double(m_radius)});
    }
    ControlPainting::drawBox(
        painter, rect(),
        {.fill = fillNow(), .radius = inner, .inset = double(std::max(m_borderWidth, 0))});
    if (!m_pixmap.isNull()) {
        QRectF place(QPointF(), m_pixmap.deviceIndependentSize());
        place.moveCenter(QRectF(rect()).center());
        painter.drawPixmap(place.topLeft(), m_pixmap);
    }
    painter.setOpacity(1.0);
    if (hasFocus()) {
        ControlPainting::drawFocusRing(painter, rect(), m_radius);
    }
    painter.setPen(Theme::white);
    ControlPainting::drawText(painter, rect().adjusted(kPadding, 0, -kPadding, 0), text(),
                              Qt::AlignCenter);
}

QColor BoderButton::fillNow() const
{
    if (isDown()) {
        return m_backgroundColor.darker(kPressedDarkness);
    }
    return isEnabled() && underMouse() ? m_backgroundColor.lighter(kHoverLightness)
                                       : m_backgroundColor;
}

int BoderButton::textWidth() const
{
    return fontMetrics().size(Qt::TextSingleLine, text()).width();
}
