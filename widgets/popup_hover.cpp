// SPDX-License-Identifier: AGPL-3.0-or-later
#include "widgets/popup_hover.h"

#include <QCoreApplication>
#include <QCursor>
#include <QEvent>
#include <QHoverEvent>
#include <QPointer>
#include <QWidget>

namespace {

void endHover(QWidget &opener)
{
    if (opener.rect().contains(opener.mapFromGlobal(QCursor::pos()))) {
        return;
    }
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(&opener, &leave);
    const QPointF outside(-1, -1);
    QHoverEvent hoverLeave(QEvent::HoverLeave, outside, opener.mapToGlobal(outside), outside);
    QCoreApplication::sendEvent(&opener, &hoverLeave);
}

class PopupWatcher final : public QObject
{
public:
    PopupWatcher(QWidget &popup, QWidget &opener)
        : QObject(&popup)
        , m_opener(&opener)
    {
        popup.installEventFilter(this);
    }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Hide && m_opener != nullptr) {
            // Until the pop-up has closed, the pointer counts as being over it.
            QWidget *opener = m_opener;
            QMetaObject::invokeMethod(
                opener, [opener] { endHover(*opener); }, Qt::QueuedConnection);
        }
        return QObject::eventFilter(watched, event);
    }

private:
    QPointer<QWidget> m_opener;
};

} // namespace

void endHoverWithPopup(QWidget &popup, QWidget &opener)
{
    // It belongs to the pop-up.
    new PopupWatcher(popup, opener);
}
