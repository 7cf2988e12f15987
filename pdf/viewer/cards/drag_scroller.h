// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QPoint>
#include <QTimer>

#include <optional>

class QAbstractScrollArea;
class QWheelEvent;

/// How fast a viewport of `height` pixels scrolls while something is dragged at the height `y` of
/// it, in pixels per second; negative upwards. Zero away from the edges, faster nearer to them.
[[nodiscard]] double dragScrollSpeed(int y, int height);

/// Scrolls a view up and down while something is dragged over it.
///
/// It scrolls as long as the pointer stays near the upper or the lower edge, whether it moves or
/// rests, and when the wheel is turned. A drag that begins near an edge does not scroll before the
/// pointer has been away from the edges, or has come nearer to the edge. The base class of lists
/// has the pointer's place from its own handling of drags only, which a view of its own drop places
/// does not call.
class DragScroller final : public QObject
{
    Q_OBJECT

public:
    /// For `view`, which owns it.
    explicit DragScroller(QAbstractScrollArea *view);

    /// A drag begins at `point` of the viewport.
    void begin(QPoint point);
    /// Takes wheel events from everything else until end(). While something is dragged they reach
    /// no widget. To be called while the drag's own event loop runs.
    void takeWheel();
    /// The pointer is at `point` of the viewport.
    void moveTo(QPoint point);
    /// The pointer has left the viewport, or the drag is over.
    void leave();
    /// Leaves wheel events to everything else.
    void end();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void step();
    void scrollByWheel(const QWheelEvent &event);

    QAbstractScrollArea *m_view;
    QTimer m_timer;
    QElapsedTimer m_sinceStep;
    double m_speed = 0.0;
    double m_remainder = 0.0;      ///< Of a pixel, not scrolled yet.
    std::optional<QPoint> m_start; ///< Where the drag began or came in, until it may scroll.
    bool m_isOver = false;
};
