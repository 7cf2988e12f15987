// SPDX-License-Identifier: AGPL-3.0-or-later
#include "widgets/popup_click.h"

#include <QMouseEvent>
#include <QPointer>
#include <QWidget>

namespace {

class ClickKeeper final : public QObject
{
public:
    ClickKeeper(QWidget &popup, QWidget &opener)
        : QObject(&popup)
        , m_popup(popup)
        , m_opener(&opener)
    {
        popup.installEventFilter(this);
    }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::MouseButtonPress && m_opener != nullptr) {
            const auto *press = static_cast<QMouseEvent *>(event);
            const QPoint place = m_opener->mapFromGlobal(press->globalPosition().toPoint());
            if (m_opener->rect().contains(place)) {
                m_popup.setAttribute(Qt::WA_NoMouseReplay);
            }
        }
        return QObject::eventFilter(watched, event);
    }

private:
    QWidget &m_popup;
    QPointer<QWidget> m_opener;
};

} // namespace

void keepClosingClickFrom(QWidget &popup, QWidget &opener)
{
    // It belongs to the pop-up.
    new ClickKeeper(popup, opener);
}
