// SPDX-License-Identifier: AGPL-3.0-or-later
#include "app/custom_tab_widget.h"

#include "app/custom_tab_bar.h"
#include "pdf/viewer/pdf_show_page.h"
#include "pdf/viewer/pdf_viewer_widget.h"
#include "widgets/theme.h"

#include <QDebug>
#include <QPointer>

namespace {

// %1 line above the page. For this class alone: dialogs of the pages have tabs of their own.
constexpr QLatin1String
    kStyleSheet("CustomTabWidget { background: #F7F8FA; border: none; }"
                "CustomTabBar { background: transparent; }"
                "CustomTabWidget::pane { border: none; border-top: 1px solid %1; margin-top: -1px;"
                " background: white; }");

} // namespace

CustomTabWidget::CustomTabWidget(QWidget *parent)
    : QTabWidget(parent)
    , m_tabBar(new CustomTabBar(this))
{
    setAttribute(Qt::WA_StyledBackground);
    setTabBar(m_tabBar);
    m_tabBar->setExpanding(false);
    setStyleSheet(kStyleSheet.arg(Theme::borderNeutral.name()));
    connect(m_tabBar, &QTabBar::tabCloseRequested, this, &CustomTabWidget::closeTab);
}

void CustomTabWidget::closeTab(int index)
{
    QWidget *page = widget(index);
    qDebug() << "remove index" << index;
    if (page == nullptr) {
        return;
    }
    const QPointer<QWidget> pageInFront = currentWidget();
    if (const auto *viewerPage = qobject_cast<PdfShowPage *>(page)) {
        // The user is to see what he is asked about.
        if (viewerPage->viewer()->isModified()) {
            setCurrentWidget(page);
        }
        if (!viewerPage->viewer()->maybeSave()) {
            return;
        }
    }
    removeTab(indexOf(page));
    page->deleteLater();
    if (const int front = indexOf(pageInFront); front >= 0) {
        setCurrentIndex(front);
    }
}
