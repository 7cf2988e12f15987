// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/bars/floating_bar_placer.h"

#include <QEvent>
#include <QTimer>
#include <QWidget>

#include <algorithm>

namespace {

constexpr int kBottomMargin = 24;
constexpr int kLeastTop = 8;

} // namespace

FloatingBarPlacer::FloatingBarPlacer(QWidget *bar)
    : QObject(bar)
    , m_bar(bar)
    , m_area(bar->parentWidget())
{
    m_area->installEventFilter(this);
}

FloatingBarPlacer::~FloatingBarPlacer() = default;

void FloatingBarPlacer::setAllowed(bool allowed)
{
    m_allowed = allowed;
    if (allowed) {
        placeSoon();
    } else {
        m_bar->hide();
    }
}

bool FloatingBarPlacer::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::Move:
    case QEvent::Resize:
    case QEvent::Show:
    case QEvent::LayoutRequest:
        placeSoon();
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

void FloatingBarPlacer::placeSoon()
{
    if (m_placementPending) {
        return;
    }
    m_placementPending = true;
    QTimer::singleShot(0, this, &FloatingBarPlacer::place);
}

void FloatingBarPlacer::place()
{
    m_placementPending = false;
    if (!m_allowed || m_area->size().isEmpty() || !m_area->isVisible()) {
        return;
    }
    m_bar->resize(m_bar->sizeHint());
    m_bar->move(std::max((m_area->width() - m_bar->width()) / 2, 0),
                std::max(m_area->height() - kBottomMargin - m_bar->height(), kLeastTop));
    m_bar->show();
    m_bar->raise();
}
