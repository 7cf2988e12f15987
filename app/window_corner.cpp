// SPDX-License-Identifier: AGPL-3.0-or-later
#include "app/window_corner.h"

#include "app/window_shape.h"
#include "widgets/desktop_translucency.h"
#include "widgets/theme.h"

#include <QPainter>

WindowCorner::WindowCorner(Qt::Corner corner, QWidget *window)
    : QWidget(window)
    , m_corner(corner)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    resize(WindowShape::kCornerRadius, WindowShape::kCornerRadius);
}

void WindowCorner::place()
{
    const QRect window = parentWidget()->rect();
    const int left = m_corner == Qt::BottomLeftCorner ? 0 : window.width() - width();
    move(left, window.height() - height());
}

void WindowCorner::paintEvent(QPaintEvent *)
{
    const QRect window = parentWidget()->rect();
    const QPainterPath outline = WindowShape::outline(window, WindowShape::kCornerRadius);
    const QPainterPath interior = WindowShape::interior(window, WindowShape::kCornerRadius);
    QPainterPath outside;
    outside.addRect(geometry());

    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(-pos());
    if (DesktopTranslucency::isShown()) {
        painter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
        painter.fillPath(outside.subtracted(outline), Qt::black);
        painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    } else {
        painter.fillPath(outside.subtracted(outline), Theme::borderStrong);
    }
    painter.fillPath(outline.subtracted(interior), Theme::borderStrong);
}
