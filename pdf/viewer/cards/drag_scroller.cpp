// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/cards/drag_scroller.h"

#include <QAbstractScrollArea>
#include <QApplication>
#include <QScrollBar>
#include <QWheelEvent>

#include <algorithm>
#include <chrono>
#include <cmath>

using namespace std::chrono_literals;

namespace {

constexpr int kEdge = 64;
/// Of the viewport's height; in a low viewport the edges leave room between them.
constexpr int kEdgeShare = 4;
constexpr double kSlowest = 80.0;
/// In heights of the viewport per second.
constexpr double kFastest = 5.0;
constexpr auto kStep = 16ms;
/// One notch of a wheel, in the units of QWheelEvent::angleDelta().
constexpr double kNotch = 120.0;

} // namespace

double dragScrollSpeed(int y, int height)
{
    const int edge = std::min(kEdge, height / kEdgeShare);
    const int above = edge - y;
    const int below = y - (height - 1 - edge);
    const int depth = std::min(std::max(above, below), edge);
    if (edge <= 0 || depth <= 0) {
        return 0.0;
    }
    // Slow enough to stop at a page, fast enough to cross a long document.
    const double share = static_cast<double>(depth) / edge;
    const double speed = kSlowest + share * share * (kFastest * height - kSlowest);
    return above > below ? -speed : speed;
}

DragScroller::DragScroller(QAbstractScrollArea *view)
    : QObject(view)
    , m_view(view)
{
    m_timer.setTimerType(Qt::PreciseTimer);
    m_timer.setInterval(kStep);
    connect(&m_timer, &QTimer::timeout, this, &DragScroller::step);
}

void DragScroller::begin(QPoint point)
{
    m_isOver = true;
    m_start = point;
}

void DragScroller::takeWheel()
{
    qApp->installEventFilter(this);
}

void DragScroller::moveTo(QPoint point)
{
    if (!m_isOver) {
        m_isOver = true;
        m_start = point;
    }
    m_speed = dragScrollSpeed(point.y(), m_view->viewport()->height());
    if (m_start) {
        const int nearer = (point.y() - m_start->y()) * (m_speed < 0.0 ? -1 : 1);
        if (m_speed != 0.0 && nearer < QApplication::startDragDistance()) {
            m_speed = 0.0;
            return;
        }
        m_start.reset();
    }
    if (m_speed == 0.0) {
        m_timer.stop();
    } else if (!m_timer.isActive()) {
        m_remainder = 0.0;
        m_sinceStep.start();
        m_timer.start();
    }
}

void DragScroller::leave()
{
    m_isOver = false;
    m_start.reset();
    m_timer.stop();
}

void DragScroller::end()
{
    leave();
    qApp->removeEventFilter(this);
}

bool DragScroller::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Wheel && m_isOver) {
        scrollByWheel(*static_cast<QWheelEvent *>(event));
        event->accept();
        return true;
    }
    return QObject::eventFilter(watched, event);
}

void DragScroller::step()
{
    // By the clock, because a busy event loop runs timers late. What is more than a few steps late
    // is not made up for, which would be a jump.
    const qint64 elapsed = std::min<qint64>(m_sinceStep.restart(), 4 * kStep.count());
    const double wanted = m_speed * static_cast<double>(elapsed) / 1000.0 + m_remainder;
    const double whole = std::trunc(wanted);
    m_remainder = wanted - whole;
    QScrollBar *bar = m_view->verticalScrollBar();
    bar->setValue(bar->value() + static_cast<int>(whole));
}

void DragScroller::scrollByWheel(const QWheelEvent &event)
{
    QScrollBar *bar = m_view->verticalScrollBar();
    int delta = event.pixelDelta().y();
    if (delta == 0) {
        delta = qRound(event.angleDelta().y() / kNotch * QApplication::wheelScrollLines() *
                       bar->singleStep());
    }
    bar->setValue(bar->value() - delta);
}
