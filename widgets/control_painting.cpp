// SPDX-License-Identifier: AGPL-3.0-or-later
#include "widgets/control_painting.h"

#include "widgets/plain_tool_tip.h"
#include "widgets/theme.h"

#include <QHelpEvent>
#include <QPainter>
#include <QPixmap>
#include <QStyle>
#include <QToolTip>
#include <QWidget>

#include <algorithm>
#include <cmath>

namespace {

constexpr double kFocusLineWidth = 2.0;

QRectF insetBy(const QRectF &rect, double inset)
{
    return rect.adjusted(inset, inset, -inset, -inset);
}

/// The rectangle with its edges on whole pixels of the device.
QRectF onPixels(const QRectF &rect, const QTransform &toDevice)
{
    const QRectF device = toDevice.mapRect(rect);
    const QPointF topLeft(std::round(device.left()), std::round(device.top()));
    const QPointF bottomRight(std::round(device.right()), std::round(device.bottom()));
    return toDevice.inverted().mapRect(QRectF(topLeft, bottomRight));
}

/// A length that is a whole number of pixels of the device.
double onPixels(double length, const QTransform &toDevice)
{
    return std::round(length * toDevice.m11()) / toDevice.m11();
}

void drawElided(QPainter &painter, const QRect &rect, const QString &text, Qt::TextElideMode mode,
                int flags)
{
    painter.drawText(rect, flags | Qt::AlignAbsolute | Qt::TextSingleLine,
                     painter.fontMetrics().elidedText(text, mode, rect.width()));
}

} // namespace

void ControlPainting::drawBox(QPainter &painter, const QRectF &rect, const Box &box)
{
    const QTransform toDevice = painter.deviceTransform();
    // All four sides get the same inset, which rounding each edge for itself would not give them.
    const QRectF outer = insetBy(onPixels(rect, toDevice), onPixels(box.inset, toDevice));
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(box.fill.isValid() ? QBrush(box.fill) : QBrush(Qt::NoBrush));
    if (box.border.isValid() && box.lineWidth > 0.0) {
        const double width = onPixels(std::max(box.lineWidth, 1.0), toDevice);
        const double radius = std::max(box.radius - width / 2, 0.0);
        painter.setPen(QPen(box.border, width));
        painter.drawRoundedRect(insetBy(outer, width / 2), radius, radius);
    } else {
        painter.setPen(Qt::NoPen);
        painter.drawRoundedRect(outer, box.radius, box.radius);
    }
    painter.restore();
}

ControlPainting::Face ControlPainting::centredFace(const QRect &room, int iconSide, int gap,
                                                   int textWidth, Qt::LayoutDirection direction)
{
    const int besideText = iconSide > 0 ? iconSide + gap : 0;
    const int width = std::min(besideText + textWidth, room.width());
    const int left = room.left() + (room.width() - width) / 2;
    const QRect content(left, room.top(), width, room.height());
    const QRect icon(left, room.top() + (room.height() - iconSide) / 2, iconSide, iconSide);
    const QRect text = content.adjusted(besideText, 0, 0, 0);
    return {QStyle::visualRect(direction, content, icon),
            QStyle::visualRect(direction, content, text)};
}

void ControlPainting::drawFocusRing(QPainter &painter, const QRectF &rect, double radius)
{
    drawBox(painter, rect,
            {.border = Theme::white,
             .radius = std::max(radius - kFocusLineWidth, 0.0),
             .inset = kFocusLineWidth});
    drawBox(painter, rect,
            {.border = Theme::accent, .lineWidth = kFocusLineWidth, .radius = radius});
}

void ControlPainting::drawText(QPainter &painter, const QRect &rect, const QString &text,
                               Qt::Alignment alignment)
{
    drawElided(painter, rect, text, Qt::ElideRight, static_cast<int>(alignment));
}

void ControlPainting::drawPath(QPainter &painter, const QRect &rect, const QString &path,
                               Qt::Alignment alignment)
{
    drawElided(painter, rect, path, Qt::ElideMiddle,
               static_cast<int>(alignment) | Qt::TextForceLeftToRight);
}

QPixmap ControlPainting::pixmapOf(const QIcon &icon, const QSize &size, double ratio)
{
    // Between two whole scales Qt takes the picture for the lower one, which is too coarse.
    QPixmap pixmap = icon.pixmap(size, std::ceil(ratio));
    const QSize wanted = (QSizeF(size) * ratio).toSize();
    if (pixmap.width() <= wanted.width() && pixmap.height() <= wanted.height()) {
        return pixmap;
    }
    QPixmap fitting = pixmap.scaled(wanted, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    fitting.setDevicePixelRatio(ratio);
    return fitting;
}

void ControlPainting::drawIcon(QPainter &painter, const QRect &rect, const QIcon &icon)
{
    const QPixmap pixmap = pixmapOf(icon, rect.size(), painter.device()->devicePixelRatioF());
    QRectF place(QPointF(), pixmap.deviceIndependentSize());
    place.moveCenter(QRectF(rect).center());
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawPixmap(onPixels(place, painter.deviceTransform()).topLeft(), pixmap);
}

void ControlPainting::drawTinted(QPainter &painter, const QRect &rect, const QIcon &icon,
                                 const QColor &color)
{
    const double ratio = painter.device()->devicePixelRatioF();
    QPixmap pixmap(rect.size() * ratio);
    pixmap.setDevicePixelRatio(ratio);
    pixmap.fill(Qt::transparent);
    const QRect whole(QPoint(), rect.size());
    QPainter tinting(&pixmap);
    drawIcon(tinting, whole, icon);
    tinting.setCompositionMode(QPainter::CompositionMode_SourceIn);
    tinting.fillRect(whole, color);
    tinting.end();
    painter.drawPixmap(onPixels(rect, painter.deviceTransform()).topLeft(), pixmap);
}

bool ControlPainting::showWholeText(const QEvent &event, QWidget &widget, const QString &text)
{
    if (event.type() != QEvent::ToolTip || !widget.toolTip().isEmpty()) {
        return false;
    }
    const auto &help = static_cast<const QHelpEvent &>(event);
    QToolTip::showText(help.globalPos(), plainToolTip(text), &widget);
    return true;
}
