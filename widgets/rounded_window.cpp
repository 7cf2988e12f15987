// SPDX-License-Identifier: AGPL-3.0-or-later
#include "widgets/rounded_window.h"

#include "widgets/desktop_translucency.h"

#include <QEvent>
#include <QPainter>
#include <QPainterPath>
#include <QWidget>

#include <cmath>

namespace {

/// Cuts a window to its shape while the desktop shows no translucency.
class ShapeKeeper final : public QObject
{
public:
    ShapeKeeper(QWidget &window, const SeenShape &shape)
        : QObject(&window)
        , m_window(window)
        , m_shape(shape)
    {
        window.installEventFilter(this);
    }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        switch (event->type()) {
        case QEvent::Show:
            setCut(!DesktopTranslucency::ask());
            break;
        case QEvent::Resize:
            setCut(m_cut);
            break;
        case QEvent::Paint:
            if (m_cut) {
                // The pixels that the round edge covers in part are seen whole.
                QPainter(&m_window).fillRect(m_window.rect(), m_shape.edge);
            }
            break;
        default:
            break;
        }
        return QObject::eventFilter(watched, event);
    }

private:
    void setCut(bool cut)
    {
        if (cut) {
            const int margin = m_shape.margin;
            m_window.setMask(roundedRegion(
                m_window.rect().adjusted(margin, margin, -margin, -margin), m_shape.radius));
        } else if (m_cut) {
            m_window.clearMask();
        }
        m_cut = cut;
    }

    QWidget &m_window;
    SeenShape m_shape;
    bool m_cut = false;
};

} // namespace

QRegion roundedRegion(const QRect &rect, int radius)
{
    QRegion region(rect.adjusted(0, radius, 0, -radius));
    for (int row = 0; row < radius; ++row) {
        const double rise = radius - row - 0.5;
        const int inset = qRound(radius - std::sqrt(radius * radius - rise * rise));
        const QRect line(rect.left() + inset, rect.top() + row, rect.width() - 2 * inset, 1);
        region += line;
        region += line.translated(0, rect.height() - 1 - 2 * row);
    }
    return region;
}

QRegion roundedPolygonRegion(const QRectF &rect, qreal radius)
{
    QPainterPath outline;
    outline.addRoundedRect(rect, radius, radius);
    return QRegion(outline.toFillPolygon().toPolygon());
}

void showAsShape(QWidget &window, const SeenShape &shape)
{
    window.setAttribute(Qt::WA_TranslucentBackground);
    // It belongs to the window.
    new ShapeKeeper(window, shape);
}

void letCornersBeSeenThrough(QWidget &window, const SeenShape &shape)
{
    // The window system's shadow would be that of a window with square corners.
    window.setWindowFlags(window.windowFlags() | Qt::FramelessWindowHint |
                          Qt::NoDropShadowWindowHint);
    showAsShape(window, shape);
}
