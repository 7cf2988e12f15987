// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/cards/page_card_painter.h"

#include "pdf/viewer/cards/page_card_geometry.h"
#include "widgets/theme.h"

#include <QPainter>
#include <QPainterPath>
#include <QTransform>

#include <algorithm>

namespace PageCardPainter {

namespace {

constexpr double kCardRadius = 8.0;
constexpr double kBarRadius = 8.0;
constexpr double kBarPartMargin = 3.0;
constexpr double kBarPartRadius = 6.0;
constexpr int kBarIconSize = 20;
constexpr int kCheckBoxSide = 20;
constexpr double kCheckBoxRadius = 5.0;
constexpr int kMarkerSide = 26;
constexpr int kScissorsSide = 24;
constexpr int kCaptionPixelSize = 12;
constexpr int kWaitingPixelSize = 12;

constexpr double kDraggedOpacity = 0.4;

constexpr QColor kPageShadow = Theme::shadow(22);
constexpr QColor kBarShadow = Theme::shadow(26);
constexpr QColor kDangerTint{0xFD, 0xEC, 0xEC};
constexpr QColor kDangerTintPressed{0xFA, 0xD9, 0xD9};

/// Keeps the painter's state for the length of a block.
class PainterState final
{
public:
    explicit PainterState(QPainter &painter)
        : m_painter(painter)
    {
        m_painter.save();
    }
    ~PainterState() { m_painter.restore(); }
    PainterState(const PainterState &) = delete;
    PainterState &operator=(const PainterState &) = delete;

private:
    QPainter &m_painter;
};

double opacityOf(const CardState &state)
{
    if (!state.enabled) {
        return Theme::disabledCardOpacity;
    }
    return state.dragged ? kDraggedOpacity : 1.0;
}

double opacityOf(const PartState &state)
{
    return state.enabled ? 1.0 : Theme::disabledCardOpacity;
}

/// Fades what is drawn next, on top of what the painter fades already.
void fade(QPainter &painter, double opacity)
{
    painter.setOpacity(painter.opacity() * opacity);
}

QPen roundPen(const QColor &color, double width)
{
    return QPen(color, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
}

/// A rounded rectangle whose border lies inside of it.
void drawPanel(QPainter &painter, const QRectF &rect, double radius, const QColor &fill,
               const QColor &border, double borderWidth)
{
    const double half = borderWidth / 2;
    painter.setBrush(fill);
    painter.setPen(borderWidth > 0 ? QPen(border, borderWidth) : QPen(Qt::NoPen));
    painter.drawRoundedRect(rect.adjusted(half, half, -half, -half), radius - half, radius - half);
}

struct CardColors
{
    QColor fill;
    QColor border;
    double borderWidth = 1.0;
};

CardColors cardColors(const CardState &state)
{
    if (state.selected) {
        return {state.pressed ? Theme::accentTint.darker(104) : Theme::accentTint,
                state.hovered ? Theme::accentHover : Theme::accent, 2.0};
    }
    if (state.current) {
        // Quieter than a card that is chosen, whose colour it must not have.
        const QColor fill = state.hovered ? Theme::hover : Theme::white;
        return {state.pressed ? Theme::pressed : fill, Theme::textSecondary, 1.0};
    }
    if (state.pressed) {
        return {Theme::pressed, Theme::borderStrong, 1.0};
    }
    if (state.hovered) {
        return {Theme::hover, Theme::borderStrong, 1.0};
    }
    return {Theme::white, Theme::border, 1.0};
}

/// The rectangle of a page in logical pixels, its corner on a whole device pixel.
QRectF sheetRect(const QPainter &painter, const QRect &box, QSize targetSize)
{
    const QTransform toDevice = painter.deviceTransform();
    const QRectF sheet = centredIn(box, QSizeF(targetSize) / painter.device()->devicePixelRatioF());
    const QPointF corner = toDevice.map(sheet.topLeft()).toPoint();
    return QRectF(toDevice.inverted().map(corner), sheet.size());
}

void drawSheet(QPainter &painter, const QRectF &sheet)
{
    painter.fillRect(sheet.adjusted(-1, 1, 1, 3), kPageShadow);
    painter.fillRect(sheet.adjusted(-1, -1, 1, 1), Theme::borderStrong);
    painter.fillRect(sheet, Theme::white);
}

/// Draws one pixel of the image per pixel of the device.
void drawImagePixels(QPainter &painter, const QPointF &corner, const QImage &image)
{
    const QTransform toDevice = painter.deviceTransform();
    const PainterState state(painter);
    painter.setWorldTransform(toDevice.inverted() * painter.worldTransform());
    QImage pixels = image;
    pixels.setDevicePixelRatio(1.0);
    painter.drawImage(toDevice.map(corner).toPoint(), pixels);
}

QColor partFill(const PartState &state)
{
    if (state.pressed) {
        return Theme::accentPressed;
    }
    return state.hovered ? Theme::accentHover : Theme::accent;
}

void drawCheckMark(QPainter &painter, const QRectF &box)
{
    QPainterPath mark;
    mark.moveTo(box.left() + box.width() * 0.27, box.top() + box.height() * 0.52);
    mark.lineTo(box.left() + box.width() * 0.44, box.top() + box.height() * 0.68);
    mark.lineTo(box.left() + box.width() * 0.74, box.top() + box.height() * 0.34);
    painter.setPen(roundPen(Theme::white, 2.0));
    painter.setBrush(Qt::NoBrush);
    painter.drawPath(mark);
}

void drawPlus(QPainter &painter, const QPointF &centre, double arm, const QColor &color)
{
    painter.setPen(roundPen(color, 2.0));
    painter.drawLine(centre - QPointF(arm, 0), centre + QPointF(arm, 0));
    painter.drawLine(centre - QPointF(0, arm), centre + QPointF(0, arm));
}

/// Scissors that cut upwards, about 12 pixels high at a scale of 1.
void drawScissors(QPainter &painter, const QPointF &centre, double scale, const QColor &color)
{
    const auto at = [=](double x, double y) { return centre + QPointF(x, y) * scale; };
    const double handle = 2.1 * scale;
    painter.setPen(roundPen(color, 1.5));
    painter.setBrush(Qt::NoBrush);
    painter.drawEllipse(at(-3.4, 4.0), handle, handle);
    painter.drawEllipse(at(3.4, 4.0), handle, handle);
    painter.drawLine(at(-2.3, 2.2), at(3.2, -6.2));
    painter.drawLine(at(2.3, 2.2), at(-3.2, -6.2));
}

} // namespace

void drawCard(QPainter &painter, const QRect &card, const CardState &state)
{
    const PainterState saved(painter);
    painter.setRenderHint(QPainter::Antialiasing);
    fade(painter, opacityOf(state));
    const CardColors colors = cardColors(state);
    drawPanel(painter, card, kCardRadius, colors.fill, colors.border, colors.borderWidth);
}

void drawPage(QPainter &painter, const QRect &box, QSize targetSize, const QImage &image,
              const CardState &state)
{
    const PainterState saved(painter);
    fade(painter, opacityOf(state));
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    const QRectF sheet = sheetRect(painter, box, targetSize);
    drawSheet(painter, sheet);
    if (image.size() == targetSize) {
        drawImagePixels(painter, sheet.topLeft(), image);
    } else {
        painter.drawImage(sheet, image);
    }
}

void drawWaitingPage(QPainter &painter, const QRect &box, QSize targetSize, const QString &text,
                     const QFont &font, const CardState &state)
{
    const PainterState saved(painter);
    fade(painter, opacityOf(state));
    drawSheet(painter, sheetRect(painter, box, targetSize));
    QFont textFont = font;
    textFont.setPixelSize(kWaitingPixelSize);
    painter.setFont(textFont);
    painter.setPen(Theme::textMuted);
    painter.drawText(box, Qt::AlignCenter | Qt::TextWordWrap, text);
}

void drawCaption(QPainter &painter, const QRect &caption, const QString &text, const QFont &font,
                 const CardState &state)
{
    const PainterState saved(painter);
    fade(painter, opacityOf(state));
    QFont captionFont = font;
    captionFont.setPixelSize(kCaptionPixelSize);
    captionFont.setWeight(QFont::Bold);
    painter.setFont(captionFont);
    painter.setPen(state.selected ? Theme::accent : Theme::textSecondary);
    painter.drawText(caption, Qt::AlignCenter, text);
}

void drawActionBar(QPainter &painter, const QRect &bar, const QList<Action> &actions,
                   int hoveredPart, int pressedPart)
{
    const PainterState saved(painter);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(kBarShadow);
    painter.drawRoundedRect(QRectF(bar).translated(0, 2), kBarRadius, kBarRadius);
    drawPanel(painter, bar, kBarRadius, Theme::white, Theme::borderStrong, 1.0);

    const int parts = static_cast<int>(actions.size());
    for (int part = 0; part < parts; ++part) {
        const Action &action = actions.at(part);
        const QRect rect = barPart(bar, parts, part);
        if (part == hoveredPart || part == pressedPart) {
            const bool pressed = part == pressedPart;
            const QColor danger = pressed ? kDangerTintPressed : kDangerTint;
            const QColor plain = pressed ? Theme::pressed : Theme::hover;
            const QRectF fill = QRectF(rect).adjusted(kBarPartMargin, kBarPartMargin,
                                                      -kBarPartMargin, -kBarPartMargin);
            drawPanel(painter, fill, kBarPartRadius, action.destructive ? danger : plain, {}, 0.0);
        }
        const QSize iconSize(kBarIconSize, kBarIconSize);
        action.icon.paint(&painter, centredIn(rect, iconSize).toRect());
    }
}

void drawSelectionBox(QPainter &painter, const QRect &zone, const PartState &state)
{
    const PainterState saved(painter);
    painter.setRenderHint(QPainter::Antialiasing);
    fade(painter, opacityOf(state));
    const QRectF box = centredIn(zone, QSizeF(kCheckBoxSide, kCheckBoxSide));
    if (state.on) {
        drawPanel(painter, box, kCheckBoxRadius, partFill(state), {}, 0.0);
        drawCheckMark(painter, box);
        return;
    }
    const QColor fill = state.pressed ? Theme::accentTint : Theme::white;
    const bool lit = state.hovered || state.pressed;
    drawPanel(painter, box, kCheckBoxRadius, fill, lit ? Theme::accent : Theme::textMuted, 1.5);
}

void drawInsertMarker(QPainter &painter, const QRect &zone, const QRect &gap,
                      const PartState &state)
{
    const PainterState saved(painter);
    painter.setRenderHint(QPainter::Antialiasing);
    fade(painter, opacityOf(state));
    const bool lit = state.hovered || state.pressed;
    const double side = std::min(kMarkerSide, zone.width() - 2);
    const QRectF circle = centredIn(zone, QSizeF(side, side));
    const double x = circle.center().x();
    painter.setPen(QPen(lit ? partFill(state) : Theme::border, 2.0, Qt::SolidLine, Qt::FlatCap));
    painter.drawLine(QPointF(x, gap.top()), QPointF(x, gap.bottom() + 1));
    drawPanel(painter, circle, side / 2, lit ? partFill(state) : Theme::white,
              lit ? partFill(state) : Theme::accent, 1.5);
    drawPlus(painter, circle.center(), side / 5, lit ? Theme::white : Theme::accent);
}

void drawSplitLine(QPainter &painter, const QRect &gap, const PartState &state)
{
    const PainterState saved(painter);
    painter.setRenderHint(QPainter::Antialiasing);
    fade(painter, opacityOf(state));
    const bool lit = state.on || state.hovered || state.pressed;
    const QColor lineColor = lit ? partFill(state) : Theme::textMuted;
    const QPointF centre = QRectF(gap).center();

    QPen line(lineColor, state.on ? 2.0 : 1.5);
    line.setCapStyle(Qt::FlatCap);
    line.setDashPattern({4.0, 3.0});
    painter.setPen(line);
    // At the edge of the view only half of the gap is left for the badge.
    const double width = std::min(kScissorsSide, gap.width() - 2);
    const QRectF badge = centredIn(gap, QSizeF(width, kScissorsSide));
    // Away from the badge on both sides, so that the dashes above mirror the ones below.
    painter.drawLine(QPointF(centre.x(), badge.top()), QPointF(centre.x(), gap.top()));
    painter.drawLine(QPointF(centre.x(), badge.bottom()), QPointF(centre.x(), gap.bottom() + 1));

    drawPanel(painter, badge, width / 2, state.on ? partFill(state) : Theme::white, lineColor, 1.5);
    const QColor offColor = lit ? partFill(state) : Theme::textSecondary;
    drawScissors(painter, badge.center(), std::min(width / 19.0, 1.0),
                 state.on ? Theme::white : offColor);
}

void drawDropIndicator(QPainter &painter, const QRect &line)
{
    const PainterState saved(painter);
    painter.setRenderHint(QPainter::Antialiasing);
    const double radius = std::min(line.width(), line.height()) / 2.0;
    painter.setPen(Qt::NoPen);
    painter.setBrush(Theme::accent);
    painter.drawRoundedRect(line, radius, radius);
}

} // namespace PageCardPainter
