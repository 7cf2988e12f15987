// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "widgets/theme.h"

#include <QCoreApplication>
#include <QHelpEvent>
#include <QImage>
#include <QTest>
#include <QToolTip>
#include <QWidget>

#include <cstdlib>

/// What the tests of the styled controls share.
namespace ControlTest {

/// What controls are painted on: a colour that none of them has.
inline constexpr QColor kBackground{0x00, 0xFF, 0x00};

/// The control and its children as they look at a scale; nothing is painted where they are not.
inline QImage imageOf(QWidget &widget, double ratio = 1.0)
{
    QImage image(widget.size() * ratio, QImage::Format_RGB32);
    image.setDevicePixelRatio(ratio);
    image.fill(kBackground);
    widget.render(&image, {}, {}, QWidget::DrawChildren);
    return image;
}

inline void enter(QWidget &widget)
{
    QEvent event(QEvent::Enter);
    QCoreApplication::sendEvent(&widget, &event);
}

inline void leave(QWidget &widget)
{
    QEvent event(QEvent::Leave);
    QCoreApplication::sendEvent(&widget, &event);
}

/// Whether any pixel in the rectangle has the colour.
inline bool contains(const QImage &image, const QRect &rect, const QColor &color)
{
    for (int y = rect.top(); y <= rect.bottom(); ++y) {
        for (int x = rect.left(); x <= rect.right(); ++x) {
            if (image.pixelColor(x, y) == color) {
                return true;
            }
        }
    }
    return false;
}

/// Whether strokes of that colour are in the rectangle. Those of letters may be thinner than a
/// pixel, so a pixel near the colour will do.
inline bool hasInk(const QImage &image, const QRect &rect, const QColor &color)
{
    constexpr int kTolerance = 90;
    for (int y = rect.top(); y <= rect.bottom(); ++y) {
        for (int x = rect.left(); x <= rect.right(); ++x) {
            const QColor found = image.pixelColor(x, y);
            const int distance = std::abs(found.red() - color.red()) +
                                 std::abs(found.green() - color.green()) +
                                 std::abs(found.blue() - color.blue());
            if (distance < kTolerance) {
                return true;
            }
        }
    }
    return false;
}

/// Whether all pixels in the rectangle have the colour.
inline bool isPlain(const QImage &image, const QRect &rect, const QColor &color)
{
    for (int y = rect.top(); y <= rect.bottom(); ++y) {
        for (int x = rect.left(); x <= rect.right(); ++x) {
            if (image.pixelColor(x, y) != color) {
                return false;
            }
        }
    }
    return true;
}

/// The tool tip that comes up in the middle of the widget; empty for none.
inline QString toolTipOf(QWidget &widget)
{
    QToolTip::hideText();
    // The previous one fades out.
    if (!QTest::qWaitFor([] { return !QToolTip::isVisible(); })) {
        return QStringLiteral("a tool tip that stays");
    }
    const QPoint middle = widget.rect().center();
    QHelpEvent event(QEvent::ToolTip, middle, widget.mapToGlobal(middle));
    QCoreApplication::sendEvent(&widget, &event);
    return QToolTip::isVisible() ? QToolTip::text() : QString();
}

/// Gives the widget the keyboard focus in a window of its own.
inline bool focus(QWidget &widget)
{
    widget.window()->show();
    widget.window()->activateWindow();
    if (!QTest::qWaitForWindowActive(widget.window())) {
        return false;
    }
    widget.setFocus();
    return QTest::qWaitFor([&] { return widget.hasFocus(); });
}

} // namespace ControlTest
