// SPDX-License-Identifier: AGPL-3.0-or-later
#include "widgets/scroll_bar_style.h"

namespace {

// %1 thickness, %2 and %3 margins of a vertical and of a horizontal bar, %4 and %5 handle, hovered,
// %6 radius, %7 minimum length
constexpr QLatin1String kStyleSheet{R"(
QScrollBar { background: transparent; border: none; }
QScrollBar:vertical { width: %1px; margin: %2; }
QScrollBar:horizontal { height: %1px; margin: %3; }
QScrollBar::handle { background: %4; border-radius: %6px; }
QScrollBar::handle:hover { background: %5; }
QScrollBar::handle:vertical { min-height: %7px; }
QScrollBar::handle:horizontal { min-width: %7px; }
QScrollBar::add-line, QScrollBar::sub-line {
    width: 0px; height: 0px; border: none; background: none;
}
QScrollBar::add-page, QScrollBar::sub-page { background: none; }
)"};

QString marginText(int top, int right, int bottom, int left)
{
    return QStringLiteral("%1px %2px %3px %4px").arg(top).arg(right).arg(bottom).arg(left);
}

} // namespace

QString scrollBarStyleSheet(const ScrollBarLook &look)
{
    const QMargins &m = look.margins;
    return QString(kStyleSheet)
        .arg(QString::number(look.thickness), marginText(m.top(), m.right(), m.bottom(), m.left()),
             marginText(m.right(), m.top(), m.left(), m.bottom()), look.handle.name(),
             look.hoveredHandle.name(), QString::number(look.radius),
             QString::number(look.minimumLength));
}
