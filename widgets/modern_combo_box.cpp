// SPDX-License-Identifier: AGPL-3.0-or-later
#include "widgets/modern_combo_box.h"

#include "widgets/combo_popup.h"
#include "widgets/control_painting.h"
#include "widgets/field_frame.h"
#include "widgets/plain_tool_tip.h"
#include "widgets/text_alignment.h"
#include "widgets/theme.h"
#include "widgets/widget_font.h"

#include <QDir>
#include <QFileDialog>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QListWidget>
#include <QPainter>
#include <QScreen>

#include <algorithm>

namespace {

constexpr int kHeight = 42;
constexpr int kMinimumWidth = 96;
constexpr int kPadding = 12;
constexpr int kGap = 8;
constexpr int kIconSide = 20;
constexpr int kArrowSide = 24;
constexpr int kFont = 14;
constexpr int kPopupGap = 8;
/// From the top of the box to that of a pop-up above it.
constexpr int kPopupRise = ComboPopup::kHeight + kPopupGap;

constexpr QLatin1String kArrowIcon{":/res/icons/modern/down.png"};

QListWidgetItem *itemAt(const QListWidget &list, const QPersistentModelIndex &index)
{
    return index.isValid() ? list.item(index.row()) : nullptr;
}

} // namespace

ModernComboBox::ModernComboBox(QWidget *parent, bool opensUpwards)
    : QPushButton(parent)
    , m_popup(new ComboPopup(this))
    , m_opensUpwards(opensUpwards)
{
    setFixedHeight(kHeight);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    setFont(widgetFont(kFont));
    setCursor(Qt::PointingHandCursor);
    setFocusPolicy(Qt::NoFocus);
    setAutoDefault(false);
    setAttribute(Qt::WA_Hover);
    connect(this, &QPushButton::pressed, this, &ModernComboBox::togglePopup);
    connect(m_popup, &ComboPopup::itemChosen, this, &ModernComboBox::onItemClicked);
    connect(m_popup->list(), &QListWidget::itemChanged, this, &ModernComboBox::refreshTexts);
}

ModernComboBox::~ModernComboBox() = default;

int ModernComboBox::count() const
{
    return m_popup->list()->count();
}

QListWidgetItem *ModernComboBox::item(int index) const
{
    return m_popup->list()->item(index);
}

QListWidgetItem *ModernComboBox::currentItem() const
{
    return itemAt(*m_popup->list(), m_current);
}

int ModernComboBox::currentIndex() const
{
    return m_current.isValid() ? m_current.row() : -1;
}

QSize ModernComboBox::sizeHint() const
{
    ensurePolished();
    int width = kMinimumWidth;
    for (int index = 0; index < count(); ++index) {
        width = std::max(width, contentWidth(item(index)->text(), item(index)->icon()));
    }
    return {width, kHeight};
}

QSize ModernComboBox::minimumSizeHint() const
{
    return {kMinimumWidth, kHeight};
}

QListWidgetItem *ModernComboBox::addItem(const QString &text, const QIcon &icon, bool custom)
{
    auto *added = new QListWidgetItem(icon, text);
    added->setData(kIconRole, icon);
    added->setData(kTextRole, text);
    m_popup->list()->addItem(added);
    if (custom) {
        m_custom = m_popup->list()->indexFromItem(added);
    }
    setCurrentItem(added);
    updateGeometry();
    return added;
}

void ModernComboBox::setCurrentItem(QListWidgetItem *item)
{
    m_popup->list()->setCurrentItem(item);
    m_current = m_popup->list()->indexFromItem(item);
    refreshTexts();
}

void ModernComboBox::onItemClicked(QListWidgetItem *item)
{
    if (item == nullptr) {
        return;
    }
    setCurrentItem(item);
    m_popup->hide();
    if (item->data(kLocationRole).toInt() == kCustomLocation) {
        chooseFolder(m_current);
    } else if (QListWidgetItem *custom = itemAt(*m_popup->list(), m_custom)) {
        custom->setData(kTextRole, tr("选择位置..."));
    }
    emit currentIndexChanged(currentIndex());
}

bool ModernComboBox::event(QEvent *event)
{
    if (event->type() == QEvent::ToolTip && isElided() &&
        ControlPainting::showWholeText(*event, *this, shownText())) {
        return true;
    }
    return QPushButton::event(event);
}

void ModernComboBox::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Down && !event->isAutoRepeat()) {
        togglePopup();
        return;
    }
    QPushButton::keyPressEvent(event);
}

void ModernComboBox::paintEvent(QPaintEvent * /*event*/)
{
    const bool open = m_popup->isVisible();
    QPainter painter(this);
    FieldFrame::draw(
        painter, rect(),
        {.focused = open || hasFocus(), .hovered = underMouse(), .enabled = isEnabled()});

    const auto placed = [this](const QRect &part) {
        return QStyle::visualRect(layoutDirection(), rect(), part);
    };
    const auto centred = [this](int left, int side) {
        return QRect(left, (height() - side) / 2, side, side);
    };
    const QRect arrow = centred(width() - kPadding - kArrowSide, kArrowSide);
    int textLeft = kPadding;
    painter.setOpacity(isEnabled() ? 1.0 : Theme::disabledOpacity);
    const QListWidgetItem *shown = currentItem();
    if (shown != nullptr && !shown->icon().isNull()) {
        ControlPainting::drawIcon(painter, placed(centred(textLeft, kIconSide)), shown->icon());
        textLeft += kIconSide + kGap;
    }
    ControlPainting::drawIcon(painter, placed(arrow), QIcon(kArrowIcon));
    painter.setOpacity(1.0);

    const QRect text = placed({textLeft, 0, arrow.left() - kGap - textLeft, height()});
    const Qt::Alignment side = leadingSide(layoutDirection()) | Qt::AlignVCenter;
    painter.setPen(isEnabled() ? Theme::ink : Theme::textMuted);
    if (chosenFolder().isEmpty()) {
        ControlPainting::drawText(painter, text, shownText(), side);
    } else {
        ControlPainting::drawPath(painter, text, shownText(), side);
    }
}

void ModernComboBox::togglePopup()
{
    if (m_popup->isVisible()) {
        m_popup->hide();
        return;
    }
    if (count() == 0) {
        return;
    }
    setDown(false);
    bool above = false;
    m_popup->setFixedWidth(width());
    const QRect geometry = popupGeometry(&above);
    m_popup->list()->setCurrentItem(currentItem());
    m_popup->setFrameAtBottom(above);
    m_popup->move(geometry.topLeft());
    m_popup->show();
    update();
}

QRect ModernComboBox::popupGeometry(bool *above) const
{
    // The window may be on two screens.
    const QScreen *shown = QGuiApplication::screenAt(mapToGlobal(rect().center()));
    const QRect available = (shown != nullptr ? shown : screen())->availableGeometry();
    const auto placedAt = [this](int y) {
        return QRect(mapToGlobal(QPoint(0, y)), QSize(width(), ComboPopup::kHeight));
    };
    const QRect below = placedAt(height() + kPopupGap);
    const QRect over = placedAt(-kPopupRise);
    // What counts is what is seen of the pop-up: the frame, at the box's side.
    const int frame = m_popup->frameRect().height();
    const bool fitsAbove = over.bottom() + 1 - frame >= available.top();
    const bool fitsBelow = below.top() + frame <= available.bottom() + 1;
    // At the edge of the screen the list goes to the other side of the box if there is room.
    *above = m_opensUpwards ? fitsAbove || !fitsBelow : !fitsBelow && fitsAbove;
    QRect geometry = *above ? over : below;
    // Nothing that is seen is beyond the screen, but on a screen that is smaller than the list.
    const int lastLeft = std::max(available.right() + 1 - geometry.width(), available.left());
    geometry.moveLeft(std::clamp(geometry.left(), available.left(), lastLeft));
    const int hidden = *above ? geometry.height() - frame : 0;
    const int lastTop = std::max(available.bottom() + 1 - frame, available.top());
    geometry.moveTop(std::clamp(geometry.top() + hidden, available.top(), lastTop) - hidden);
    return geometry;
}

void ModernComboBox::chooseFolder(const QPersistentModelIndex &index)
{
    const QString folder = QFileDialog::getExistingDirectory(
        this, tr("选择文件夹"), QDir::homePath(), QFileDialog::ShowDirsOnly);
    // The item may have gone while the dialog was open.
    QListWidgetItem *chosen = itemAt(*m_popup->list(), index);
    if (chosen != nullptr && !folder.isEmpty()) {
        chosen->setData(kTextRole, folder);
    }
}

void ModernComboBox::refreshTexts()
{
    setToolTip(plainToolTip(QDir::toNativeSeparators(chosenFolder())));
    setAccessibleName(shownText());
    update();
}

QString ModernComboBox::chosenFolder() const
{
    const QListWidgetItem *shown = currentItem();
    if (shown == nullptr || shown->data(kLocationRole).toInt() != kCustomLocation) {
        return {};
    }
    const QString text = shown->data(kTextRole).toString();
    return text == shown->text() || text == tr("选择位置...") ? QString() : text;
}

QString ModernComboBox::shownText() const
{
    const QListWidgetItem *shown = currentItem();
    if (shown == nullptr) {
        return {};
    }
    const QString folder = chosenFolder();
    return folder.isEmpty() ? shown->text() : QDir::toNativeSeparators(folder);
}

bool ModernComboBox::isElided() const
{
    const QListWidgetItem *shown = currentItem();
    return shown != nullptr && width() < contentWidth(shownText(), shown->icon());
}

int ModernComboBox::contentWidth(const QString &text, const QIcon &icon) const
{
    const int iconWidth = icon.isNull() ? 0 : kIconSide + kGap;
    return kPadding + iconWidth + fontMetrics().size(Qt::TextSingleLine, text).width() + kGap +
           kArrowSide + kPadding;
}
