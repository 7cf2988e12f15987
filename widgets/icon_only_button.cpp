// SPDX-License-Identifier: AGPL-3.0-or-later
#include "widgets/icon_only_button.h"

#include "widgets/control_painting.h"
#include "widgets/theme.h"

#include <QEvent>
#include <QPainter>

namespace {

constexpr int kPadding = 6;
constexpr int kRadius = 6;

} // namespace

IconOnlyButton::IconOnlyButton(const QIcon &icon, int iconSize, QWidget *parent)
    : QAbstractButton(parent)
{
    setIcon(icon);
    setIconSize({iconSize, iconSize});
    setCursor(Qt::PointingHandCursor);
    setFocusPolicy(Qt::NoFocus);
    setAttribute(Qt::WA_Hover);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

IconOnlyButton::~IconOnlyButton() = default;

QSize IconOnlyButton::sizeHint() const
{
    return iconSize() + QSize(2 * kPadding, 2 * kPadding);
}

bool IconOnlyButton::event(QEvent *event)
{
    if (event->type() == QEvent::ToolTipChange) {
        setAccessibleName(toolTip());
    }
    return QAbstractButton::event(event);
}

void IconOnlyButton::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    ControlPainting::drawBox(painter, rect(), {.fill = fillNow(), .radius = kRadius});
    if (hasFocus()) {
        ControlPainting::drawFocusRing(painter, rect(), kRadius);
    }
    QRect place(QPoint(), iconSize());
    place.moveTopLeft({(width() - place.width()) / 2, (height() - place.height()) / 2});
    painter.setOpacity(isEnabled() ? 1.0 : Theme::disabledOpacity);
    ControlPainting::drawIcon(painter, place, icon());
}

QColor IconOnlyButton::fillNow() const
{
    if (isDown()) {
        return Theme::pressed;
    }
    if (isChecked()) {
        return Theme::accentTint;
    }
    return isEnabled() && underMouse() ? Theme::hover : QColor();
}
