// SPDX-License-Identifier: AGPL-3.0-or-later
#include "app/custom_tab_bar.h"

#include "widgets/theme.h"

#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QProxyStyle>
#include <QPushButton>
#include <QStyleOptionTab>

namespace {

constexpr int kTabHeight = 42;
constexpr int kHomeTabWidth = 90;
constexpr int kTabWidth = 180;
constexpr int kNarrowTabWidth = 150;
constexpr int kNarrowFromCount = 7;

constexpr int kIconLeft = 12;
constexpr int kTabIconSize = 16;
constexpr int kTitleLeft = 34;
constexpr int kTitleRight = 32;
constexpr int kTitleRightWithoutButton = 8;
constexpr int kTitlePixelSize = 13;

constexpr int kCloseButtonSize = 24;
constexpr int kCloseButtonRight = 4;

constexpr int kFaceTop = 6;
constexpr qreal kFaceRadius = 8;
constexpr int kAccentHeight = 2;
constexpr int kSeparatorHeight = 16;

// %1 background, %2 hovered, %3 pressed
constexpr QLatin1String kBarStyleSheet("CustomTabBar QToolButton { background: %1; border: none; "
                                       "border-radius: 4px; margin: 8px 1px; }"
                                       "CustomTabBar QToolButton:hover { background: %2; }"
                                       "CustomTabBar QToolButton:pressed { background: %3; }"
                                       "CustomTabBar::scroller { width: 56px; }");
// %1 hovered
constexpr QLatin1String kCloseButtonStyleSheet(
    "QPushButton { border: none; background: transparent; border-radius: 4px; padding: 3px;"
    " image: url(:/res/icons/modern/close.png); }"
    "QPushButton:hover { background: %1; }"
    "QPushButton:pressed { background: #C8CCD2; }");

/// Puts the close buttons into the strip that the titles leave free for them.
class CloseButtonPlacement final : public QProxyStyle
{
public:
    QRect subElementRect(SubElement element, const QStyleOption *option,
                         const QWidget *widget) const override
    {
        const auto *tab = qstyleoption_cast<const QStyleOptionTab *>(option);
        if (element != SE_TabBarTabRightButton || tab == nullptr) {
            return QProxyStyle::subElementRect(element, option, widget);
        }
        QRect button(QPoint(0, 0), tab->rightButtonSize);
        button.moveCenter(tab->rect.adjusted(0, kFaceTop, 0, 0).center());
        button.moveRight(tab->rect.right() - kCloseButtonRight);
        return button;
    }
};

/// The face of a tab: rounded at the top, open towards the page below.
QPainterPath tabFacePath(const QRectF &rect)
{
    QPainterPath path(rect.bottomLeft());
    path.lineTo(rect.left(), rect.top() + kFaceRadius);
    path.quadTo(rect.topLeft(), QPointF(rect.left() + kFaceRadius, rect.top()));
    path.lineTo(rect.right() - kFaceRadius, rect.top());
    path.quadTo(rect.topRight(), QPointF(rect.right(), rect.top() + kFaceRadius));
    path.lineTo(rect.bottomRight());
    return path;
}

} // namespace

CustomTabBar::CustomTabBar(QWidget *parent)
    : QTabBar(parent)
{
    auto *placement = new CloseButtonPlacement;
    placement->setParent(this);
    setStyle(placement);
    setMouseTracking(true);
    setFocusPolicy(Qt::NoFocus);
    setDrawBase(false);
    setUsesScrollButtons(true);
    setIconSize(QSize(kTabIconSize, kTabIconSize));
    setStyleSheet(kBarStyleSheet.arg(Theme::windowBackground.name(), Theme::frameHover.name(),
                                     Theme::framePressed.name()));
}

QSize CustomTabBar::tabSizeHint(int index) const
{
    if (tabData(index).toInt() == kHomeTabData) {
        return {kHomeTabWidth, kTabHeight};
    }
    return {count() < kNarrowFromCount ? kTabWidth : kNarrowTabWidth, kTabHeight};
}

void CustomTabBar::tabInserted(int index)
{
    if (index != 0) {
        auto *button = new QPushButton(this);
        button->setFixedSize(kCloseButtonSize, kCloseButtonSize);
        button->setCursor(Qt::PointingHandCursor);
        button->setFocusPolicy(Qt::NoFocus);
        button->setToolTip(tr("关闭"));
        button->setStyleSheet(kCloseButtonStyleSheet.arg(Theme::framePressed.name()));
        connect(button, &QPushButton::clicked, this, [this, button] { closeTabOf(button); });
        setTabButton(index, QTabBar::RightSide, button);
    }
    QTabBar::tabInserted(index);
}

bool CustomTabBar::event(QEvent *event)
{
    // The bar takes an ampersand in a title for a keyboard shortcut, but titles are file names.
    return event->type() == QEvent::Shortcut || QTabBar::event(event);
}

void CustomTabBar::mouseMoveEvent(QMouseEvent *event)
{
    setHoveredIndex(tabAt(event->position().toPoint()));
    QTabBar::mouseMoveEvent(event);
}

void CustomTabBar::leaveEvent(QEvent *event)
{
    setHoveredIndex(-1);
    QTabBar::leaveEvent(event);
}

void CustomTabBar::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QFont titleFont = font();
    titleFont.setPixelSize(kTitlePixelSize);
    painter.setFont(titleFont);
    for (int index = 0; index < count(); ++index) {
        paintTab(painter, index);
    }
}

void CustomTabBar::setHoveredIndex(int index)
{
    if (m_hoveredIndex == index) {
        return;
    }
    m_hoveredIndex = index;
    update();
}

void CustomTabBar::closeTabOf(const QWidget *button)
{
    for (int index = 0; index < count(); ++index) {
        if (tabButton(index, QTabBar::RightSide) == button) {
            emit tabCloseRequested(index);
            return;
        }
    }
}

void CustomTabBar::paintTab(QPainter &painter, int index) const
{
    const QRect tab = tabRect(index);
    paintTabFace(painter, index, tab);

    const QRect iconRect(tab.left() + kIconLeft,
                         tab.top() + kFaceTop + (tab.height() - kFaceTop - kTabIconSize) / 2,
                         kTabIconSize, kTabIconSize);
    tabIcon(index).paint(&painter, iconRect);

    const bool closable = tabButton(index, QTabBar::RightSide) != nullptr;
    const int right = closable ? kTitleRight : kTitleRightWithoutButton;
    const QRect titleRect = tab.adjusted(kTitleLeft, kFaceTop, -right, 0);
    painter.setPen(index == currentIndex() ? Theme::ink : Theme::textSecondary);
    painter.drawText(
        titleRect, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
        painter.fontMetrics().elidedText(tabText(index), Qt::ElideRight, titleRect.width()));
}

void CustomTabBar::paintTabFace(QPainter &painter, int index, const QRect &tab) const
{
    const QRectF face = QRectF(tab).adjusted(2.5, kFaceTop + 0.5, -2.5, 0);
    if (index == currentIndex()) {
        painter.setPen(Theme::border);
        painter.setBrush(Theme::white);
        painter.drawPath(tabFacePath(face));
        painter.setPen(Qt::NoPen);
        painter.setBrush(Theme::accent);
        painter.drawRoundedRect(QRectF(face.left() + kFaceRadius, face.top() - 0.5,
                                       face.width() - 2 * kFaceRadius, kAccentHeight),
                                kAccentHeight / 2.0, kAccentHeight / 2.0);
        return;
    }
    if (index == m_hoveredIndex) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(Theme::hover);
        painter.drawPath(tabFacePath(face));
        return;
    }
    if (index + 1 < count() && !isHighlighted(index + 1)) {
        const int top = tab.top() + kFaceTop + (tab.height() - kFaceTop - kSeparatorHeight) / 2;
        painter.fillRect(QRect(tab.right(), top, 1, kSeparatorHeight), Theme::border);
    }
}

bool CustomTabBar::isHighlighted(int index) const
{
    return index == currentIndex() || index == m_hoveredIndex;
}
