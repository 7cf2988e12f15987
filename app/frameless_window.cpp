// SPDX-License-Identifier: AGPL-3.0-or-later
#include "app/frameless_window.h"

#include "app/language_dialog.h"
#include "app/main_page.h"
#include "app/title_bar.h"
#include "app/window_corner.h"
#include "app/window_shape.h"
#include "widgets/desktop_translucency.h"
#include "widgets/rounded_window.h"
#include "widgets/theme.h"

#include <QApplication>
#include <QCloseEvent>
#include <QEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>

namespace {

constexpr QSize kMinimumSize(940, 600);

} // namespace

FramelessWindow::FramelessWindow(QWidget *parent)
    : QWidget(parent)
    , m_dragStripHeight(TitleBar::kHeight)
    , m_titleBar(new TitleBar(this))
    , m_lowerCorners{new WindowCorner(Qt::BottomLeftCorner, this),
                     new WindowCorner(Qt::BottomRightCorner, this)}
{
    setWindowTitle(QApplication::applicationDisplayName());
    setMinimumSize(kMinimumSize);
    setWindowFlags(Qt::Window | Qt::FramelessWindowHint | Qt::WindowSystemMenuHint |
                   Qt::WindowMinimizeButtonHint | Qt::WindowMaximizeButtonHint);
    setAttribute(Qt::WA_TranslucentBackground);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(1, 0, 1, 1);
    layout->setSpacing(0);
    layout->addWidget(m_titleBar);

    connect(m_titleBar, &TitleBar::minimizeRequested, this, &FramelessWindow::showMinimized);
    connect(m_titleBar, &TitleBar::maximizeRestoreRequested, this,
            &FramelessWindow::toggleMaximized);
    connect(m_titleBar, &TitleBar::closeRequested, this, &FramelessWindow::close);
    connect(m_titleBar, &TitleBar::languageRequested, this, &FramelessWindow::openLanguageDialog);
}

void FramelessWindow::setContentWidget(QWidget *widget)
{
    if (widget == nullptr || widget == m_content) {
        return;
    }
    if (m_content != nullptr) {
        layout()->removeWidget(m_content);
        m_content->hide();
        m_content->deleteLater();
    }
    m_content = widget;
    m_content->setParent(this);
    layout()->addWidget(m_content);
    for (WindowCorner *corner : m_lowerCorners) {
        corner->raise();
    }
}

void FramelessWindow::closeEvent(QCloseEvent *event)
{
    auto *page = qobject_cast<MainPage *>(m_content);
    event->setAccepted(page == nullptr || page->maybeClose());
}

void FramelessWindow::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton || event->position().y() > m_dragStripHeight) {
        QWidget::mousePressEvent(event);
        return;
    }
    m_dragging = true;
    m_dragOffset = event->globalPosition().toPoint() - frameGeometry().topLeft();
    event->accept();
}

void FramelessWindow::mouseMoveEvent(QMouseEvent *event)
{
    if (!m_dragging || !event->buttons().testFlag(Qt::LeftButton)) {
        QWidget::mouseMoveEvent(event);
        return;
    }
    const QPoint pointer = event->globalPosition().toPoint();
    event->accept();
    if (isMaximized()) {
        const QPoint way = pointer - frameGeometry().topLeft() - m_dragOffset;
        if (way.manhattanLength() < QApplication::startDragDistance()) {
            return;
        }
        restoreUnderPointer();
    }
    move(pointer - m_dragOffset);
}

void FramelessWindow::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton) {
        m_dragging = false;
    }
    QWidget::mouseReleaseEvent(event);
}

void FramelessWindow::showEvent(QShowEvent *event)
{
    DesktopTranslucency::ask();
    QWidget::showEvent(event);
}

void FramelessWindow::paintEvent(QPaintEvent *)
{
    const qreal radius = isMaximized() ? 0 : WindowShape::kCornerRadius;
    QPainter painter(this);
    if (!DesktopTranslucency::isShown()) {
        // The pixels that the border covers in part are seen whole.
        painter.fillRect(rect(), Theme::borderStrong);
    }
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(WindowShape::outline(rect(), radius), Theme::borderStrong);
    painter.fillPath(WindowShape::interior(rect(), radius), Theme::windowBackground);
}

void FramelessWindow::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    for (WindowCorner *corner : m_lowerCorners) {
        corner->place();
    }
    updateMask();
}

void FramelessWindow::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::WindowStateChange) {
        m_titleBar->setMaximized(isMaximized());
        update();
        QTimer::singleShot(0, this, &FramelessWindow::updateMask);
    }
}

/// A window that is as large as the screen cannot be moved, so it takes its normal size first. The
/// pointer stays at the same share of its width, on its title.
void FramelessWindow::restoreUnderPointer()
{
    const double share = static_cast<double>(m_dragOffset.x()) / std::max(width(), 1);
    const QSize normal = normalGeometry().size();
    m_dragOffset.setX(qRound(share * normal.width()));
    showNormal();
    // Moving it would give it back the size that it has until the system has restored it.
    resize(normal);
}

void FramelessWindow::toggleMaximized()
{
    if (isMaximized()) {
        showNormal();
    } else {
        showMaximized();
    }
}

void FramelessWindow::openLanguageDialog()
{
    LanguageDialog dialog(this);
    dialog.exec();
}

void FramelessWindow::updateMask()
{
    const bool rounded = !isMaximized();
    for (WindowCorner *corner : m_lowerCorners) {
        corner->setVisible(rounded);
    }
    if (!rounded) {
        clearMask();
        return;
    }
    // It reaches to the very edges of the window.
    setMask(roundedPolygonRegion(rect(), WindowShape::kCornerRadius));
}
