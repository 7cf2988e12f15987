// SPDX-License-Identifier: AGPL-3.0-or-later
#include "widgets/combo_popup.h"

#include "widgets/control_painting.h"
#include "widgets/desktop_translucency.h"
#include "widgets/popup_click.h"
#include "widgets/popup_hover.h"
#include "widgets/rounded_window.h"
#include "widgets/scroll_bar_style.h"
#include "widgets/theme.h"
#include "widgets/widget_font.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QListWidget>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QStyledItemDelegate>

#include <algorithm>

namespace {

constexpr int kRadius = 8;
constexpr int kPadding = 6;
constexpr int kIconSide = 20;
constexpr int kFont = 14;

// %1 text, %2 and %3 chosen item and its text, %4 hovered
constexpr QLatin1String kListStyleSheet{R"(
QListWidget#comboPopupList { color: %1; background: transparent; border: none; outline: none; }
QListWidget#comboPopupList::item {
    color: %1; background: transparent; border: none; border-radius: 6px; padding: 0 10px;
    min-height: 40px;
}
QListWidget#comboPopupList::item:hover { background: %4; }
QListWidget#comboPopupList::item:selected { color: %3; background: %2; }
)"};

/// Shows the icon of the chosen item in its own colours, where the style would tint it.
class ItemDelegate final : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

protected:
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override
    {
        QStyledItemDelegate::initStyleOption(option, index);
        if (!option->icon.isNull() && option->widget != nullptr) {
            const QPixmap pixmap = ControlPainting::pixmapOf(option->icon, option->decorationSize,
                                                             option->widget->devicePixelRatioF());
            option->icon = QIcon(pixmap);
            option->icon.addPixmap(pixmap, QIcon::Selected);
        }
    }
};

QListWidget *createList(QWidget *parent)
{
    auto *list = new QListWidget(parent);
    list->setObjectName(QStringLiteral("comboPopupList"));
    list->setFont(widgetFont(kFont));
    list->setIconSize({kIconSide, kIconSide});
    list->setItemDelegate(new ItemDelegate(list));
    list->setFrameShape(QFrame::NoFrame);
    list->setUniformItemSizes(true);
    list->setEditTriggers(QAbstractItemView::NoEditTriggers);
    list->setSelectionMode(QAbstractItemView::SingleSelection);
    list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    list->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    list->setMouseTracking(true);
    list->viewport()->setCursor(Qt::PointingHandCursor);
    list->setStyleSheet(QString(kListStyleSheet)
                            .arg(Theme::ink.name(), Theme::accentTint.name(), Theme::accent.name(),
                                 Theme::hover.name()) %
                        scrollBarStyleSheet({}));
    return list;
}

} // namespace

ComboPopup::ComboPopup(QWidget *box)
    : QWidget(box, Qt::Popup)
    , m_box(box)
    , m_list(createList(this))
{
    letCornersBeSeenThrough(*this, {.radius = kRadius, .edge = Theme::border});
    setFixedHeight(kHeight);
    setFocusProxy(m_list);
    endHoverWithPopup(*this, *box);
    keepClosingClickFrom(*this, *box);
    m_list->installEventFilter(this);
    connect(m_list, &QListWidget::itemClicked, this, &ComboPopup::itemChosen);
    connect(qApp, &QGuiApplication::applicationStateChanged, this,
            [this](Qt::ApplicationState state) {
                if (state != Qt::ApplicationActive) {
                    hide();
                }
            });
}

ComboPopup::~ComboPopup() = default;

QRect ComboPopup::frameRect() const
{
    int contents = 2 * kPadding;
    for (int row = 0; row < m_list->count() && contents < height(); ++row) {
        contents += m_list->sizeHintForRow(row);
    }
    const int frameHeight = std::min(contents, height());
    return {0, m_frameAtBottom ? height() - frameHeight : 0, width(), frameHeight};
}

void ComboPopup::setFrameAtBottom(bool atBottom)
{
    m_frameAtBottom = atBottom;
    fitFrame();
}

bool ComboPopup::event(QEvent *event)
{
    if (event->type() == QEvent::WindowDeactivate) {
        hide();
    }
    return QWidget::event(event);
}

bool ComboPopup::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_list) {
        if (event->type() == QEvent::FocusOut) {
            focusOutEvent(static_cast<QFocusEvent *>(event));
        }
        return event->type() == QEvent::KeyPress && handleListKey(*static_cast<QKeyEvent *>(event));
    }
    switch (event->type()) {
    case QEvent::Move:
    case QEvent::Resize:
    case QEvent::Hide:
    case QEvent::WindowDeactivate:
    case QEvent::WindowStateChange:
        hide();
        break;
    default:
        break;
    }
    return QWidget::eventFilter(watched, event);
}

void ComboPopup::focusOutEvent(QFocusEvent *event)
{
    QWidget::focusOutEvent(event);
    hide();
}

void ComboPopup::hideEvent(QHideEvent *event)
{
    m_box->window()->removeEventFilter(this);
    // The box shows that its list is open.
    m_box->update();
    QWidget::hideEvent(event);
}

void ComboPopup::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape) {
        hide();
        return;
    }
    QWidget::keyPressEvent(event);
}

void ComboPopup::mousePressEvent(QMouseEvent *event)
{
    if (frameRect().contains(event->position().toPoint())) {
        return;
    }
    hide();
}

void ComboPopup::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    ControlPainting::drawBox(painter, frameRect(),
                             {.fill = Theme::white, .border = Theme::border, .radius = kRadius});
}

void ComboPopup::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    fitFrame();
}

void ComboPopup::showEvent(QShowEvent *event)
{
    fitFrame();
    m_box->window()->installEventFilter(this);
    QWidget::showEvent(event);
    m_list->setFocus(Qt::PopupFocusReason);
}

void ComboPopup::fitFrame()
{
    const QRect frame = frameRect();
    m_list->setGeometry(frame.adjusted(kPadding, kPadding, -kPadding, -kPadding));
    if (!DesktopTranslucency::isShown()) {
        setMask(roundedRegion(frame, kRadius));
    }
    update();
}

bool ComboPopup::handleListKey(const QKeyEvent &event)
{
    switch (event.key()) {
    case Qt::Key_Escape:
        hide();
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (m_list->currentItem() != nullptr) {
            emit itemChosen(m_list->currentItem());
        }
        return true;
    default:
        return false;
    }
}
