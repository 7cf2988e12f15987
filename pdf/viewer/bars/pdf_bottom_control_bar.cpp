// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/bars/pdf_bottom_control_bar.h"

#include "pdf/viewer/bars/bar_metrics.h"
#include "pdf/viewer/bars/page_number_validator.h"
#include "pdf/viewer/common/zoom_limits.h"
#include "widgets/popup_hover.h"
#include "widgets/rounded_window.h"
#include "widgets/scroll_bar_style.h"
#include "widgets/theme.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMouseEvent>
#include <QPushButton>
#include <QSignalBlocker>
#include <QStyle>
#include <QStyledItemDelegate>

#include <algorithm>
#include <array>
#include <cmath>

namespace {

constexpr int kHeight = 52;
constexpr QMargins kMargins{7, 7, 7, 7};
constexpr int kSpacing = 8;
constexpr QSize kButtonSize{38, 38};
constexpr QSize kPageNumberSize{54, 38};
constexpr QSize kPageCountSize{48, 38};
constexpr QSize kZoomComboSize{110, 36};
constexpr int kZoomPopupRadius = 6;
constexpr QColor kZoomBorder{0xC9, 0xCB, 0xD1};

constexpr std::array kZoomPresets{25, 50, 75, 100, 125, 150, 200, 300, 400};
constexpr int kInitialZoom = 100;
constexpr auto kVisibleZooms = static_cast<int>(kZoomPresets.size());
constexpr int kPercentRole = Qt::UserRole;
constexpr int kCustomRole = Qt::UserRole + 1;

constexpr char kFitWidthProperty[] = "fitWidth";

// %1 white, %2 hovered, %3 and %4 chosen entry and its text, %5 ink, %6 border of the zoom box and
// its list, %7 radius of the list
constexpr QLatin1String kStyleSheet{R"(
#pdfBottomControlBar { background: #18191C; border: 1px solid #303136; border-radius: 8px; }
#pdfPageNavigation { background: #4A4C50; border-radius: 5px; }
#pdfPageNavigation QPushButton { color: %1; background: transparent; border: none; padding: 0; }
#pdfPageNavigation QPushButton:hover { background: #606267; }
#pdfPageNavigation QPushButton:pressed { background: #6B6D73; }
#pdfPageNavigation QPushButton:disabled { background: transparent; }
QPushButton#pdfPreviousPageButton {
    image: url(:/res/icons/pdfviewer/previous.png); border-right: 1px solid #242529;
    border-top-left-radius: 5px; border-bottom-left-radius: 5px;
}
QPushButton#pdfPreviousPageButton:disabled {
    image: url(:/res/icons/pdfviewer/previous-disabled.png);
}
QPushButton#pdfNextPageButton {
    image: url(:/res/icons/pdfviewer/next.png); border-left: 1px solid #242529;
    border-top-right-radius: 5px; border-bottom-right-radius: 5px;
}
QPushButton#pdfNextPageButton:disabled { image: url(:/res/icons/pdfviewer/next-disabled.png); }
QLineEdit#pdfPageNumberEdit {
    color: %1; background: #4A4C50; border: none; padding: 0; font-size: 16px;
    selection-color: %1; selection-background-color: #6B6D73;
}
QLineEdit#pdfPageNumberEdit:disabled { color: #8C8E93; }
QLabel#pdfPageCountLabel { color: %1; background: transparent; font-size: 16px; }
#pdfBottomSeparator { background: #3A3B40; }
QComboBox#pdfZoomCombo {
    color: %5; background: %1; border: 1px solid %6; border-radius: 6px;
    padding: 0 26px 0 10px; font-size: 15px; combobox-popup: 0;
}
QComboBox#pdfZoomCombo:hover { background: %2; }
QComboBox#pdfZoomCombo::drop-down {
    subcontrol-origin: border; subcontrol-position: center right; width: 26px; border: none;
}
QComboBox#pdfZoomCombo::down-arrow {
    image: url(:/res/icons/modern/chevron-down.png); width: 14px; height: 14px;
}
QListView#pdfZoomPopup {
    color: %5; background: %1; border: 1px solid %6; border-radius: %7px; padding: 4px;
    outline: none; font-size: 15px;
}
QListView#pdfZoomPopup::item { min-height: 30px; padding: 0 8px; border-radius: 4px; }
QListView#pdfZoomPopup::item:hover { background: %2; }
QListView#pdfZoomPopup::item:selected { color: %4; background: %3; }
QPushButton#pdfFitToggleButton {
    background: transparent; border: none; border-radius: 5px; padding: 0;
}
QPushButton#pdfFitToggleButton[fitWidth="true"] {
    qproperty-icon: url(:/res/icons/pdfviewer/fit-width.png);
}
QPushButton#pdfFitToggleButton[fitWidth="false"] {
    qproperty-icon: url(:/res/icons/pdfviewer/fit-height.png);
}
QPushButton#pdfFitToggleButton:hover { background: #34363C; }
QPushButton#pdfFitToggleButton:pressed { background: #4A4C50; }
)"};

/// A click selects the number, which is to be replaced, unless the user is at work on it.
class PageNumberEdit final : public QLineEdit
{
public:
    using QLineEdit::QLineEdit;

protected:
    void mouseReleaseEvent(QMouseEvent *event) override
    {
        QLineEdit::mouseReleaseEvent(event);
        if (!isModified() && !hasSelectedText()) {
            selectAll();
        }
    }
};

QString percentText(int percent)
{
    return QStringLiteral("%1%").arg(percent);
}

int percentOf(double factor)
{
    return static_cast<int>(std::lround(qBound(kMinimumZoom, factor, kMaximumZoom) * 100));
}

} // namespace

PdfBottomControlBar::PdfBottomControlBar(QWidget *parent)
    : QWidget(parent)
{
    setObjectName(QStringLiteral("pdfBottomControlBar"));
    setAttribute(Qt::WA_StyledBackground);
    setFixedHeight(kHeight);

    setStyleSheet(
        QString(kStyleSheet)
            .arg(Theme::white.name(), Theme::hover.name(), Theme::accentTint.name(),
                 Theme::chosen.name(), Theme::inkNeutral.name(), kZoomBorder.name(),
                 QString::number(kZoomPopupRadius)) %
        scrollBarStyleSheet(
            {.margins = {4, 2, 0, 2}, .hoveredHandle = Theme::borderStrong, .minimumLength = 24}));

    QWidget *navigation = createPageNavigation();
    m_pageCountLabel = new QLabel(this);
    m_pageCountLabel->setObjectName(QStringLiteral("pdfPageCountLabel"));
    m_pageCountLabel->setAlignment(Qt::AlignCenter);
    // Totals of more digits than usual make the label wider rather than being cut off.
    m_pageCountLabel->setMinimumSize(kPageCountSize);
    m_pageCountLabel->setFixedHeight(kPageCountSize.height());
    createZoomCombo();
    m_fitToggleButton = createButton(QStringLiteral("pdfFitToggleButton"), QString());
    m_fitToggleButton->setIconSize(kBarIconSize);

    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(kMargins);
    layout->setSpacing(kSpacing);
    layout->addWidget(navigation);
    layout->addWidget(m_pageCountLabel);
    layout->addWidget(createSeparator());
    layout->addWidget(m_zoomCombo);
    layout->addWidget(createSeparator());
    layout->addWidget(m_fitToggleButton);

    connectControls();
    setFitWidth(true);
    setPageCount(0);
    // Showing the parent does not show the bar where nobody has placed it yet.
    hide();
}

PdfBottomControlBar::~PdfBottomControlBar()
{
    // The field may lose the focus while it goes with the bar, and would then call half of it.
    m_pageNumberEdit->disconnect(this);
}

void PdfBottomControlBar::setPageCount(int count)
{
    m_pageCount = std::max(count, 0);
    m_pageCountLabel->setText(QStringLiteral("/%1").arg(m_pageCount));
    m_validator->setRange(1, std::max(m_pageCount, 1));
    m_pageNumberEdit->setEnabled(m_pageCount > 0);
    setCurrentPage(m_currentPage);
}

void PdfBottomControlBar::setCurrentPage(int index)
{
    m_currentPage = m_pageCount > 0 ? std::clamp(index, 0, m_pageCount - 1) : -1;
    showCurrentPage();
    updateArrows();
}

void PdfBottomControlBar::setZoom(double factor)
{
    const int percent = percentOf(factor);
    const QSignalBlocker blocker(m_zoomCombo);
    for (int item = m_zoomCombo->count() - 1; item >= 0; --item) {
        if (m_zoomCombo->itemData(item, kCustomRole).toBool()) {
            m_zoomCombo->removeItem(item);
        }
    }
    int item = m_zoomCombo->findData(percent, kPercentRole);
    if (item < 0) {
        item = 0;
        m_zoomCombo->insertItem(item, percentText(percent), percent);
        m_zoomCombo->setItemData(item, true, kCustomRole);
    }
    m_zoomCombo->setCurrentIndex(item);
}

void PdfBottomControlBar::setFitWidth(bool fitWidth)
{
    m_fitWidth = fitWidth;
    m_fitToggleButton->setProperty(kFitWidthProperty, fitWidth);
    m_fitToggleButton->style()->unpolish(m_fitToggleButton);
    m_fitToggleButton->style()->polish(m_fitToggleButton);
    const QString toolTip = fitWidth ? tr("切换为适合高度") : tr("切换为适合宽度");
    m_fitToggleButton->setToolTip(toolTip);
    m_fitToggleButton->setAccessibleName(toolTip);
}

void PdfBottomControlBar::keyPressEvent(QKeyEvent *event)
{
    if (event->key() != Qt::Key_Escape || !m_pageNumberEdit->hasFocus()) {
        QWidget::keyPressEvent(event);
        return;
    }
    // What was typed does not count.
    showCurrentPage();
    m_pageNumberEdit->selectAll();
    event->accept();
}

QPushButton *PdfBottomControlBar::createButton(const QString &objectName, const QString &toolTip)
{
    auto *button = new QPushButton(this);
    button->setObjectName(objectName);
    button->setToolTip(toolTip);
    button->setAccessibleName(toolTip);
    button->setFixedSize(kButtonSize);
    button->setCursor(Qt::PointingHandCursor);
    button->setFocusPolicy(Qt::NoFocus);
    return button;
}

QWidget *PdfBottomControlBar::createPageNavigation()
{
    auto *navigation = new QWidget(this);
    navigation->setObjectName(QStringLiteral("pdfPageNavigation"));
    navigation->setAttribute(Qt::WA_StyledBackground);

    m_previousButton = createButton(QStringLiteral("pdfPreviousPageButton"), tr("上一页"));
    m_nextButton = createButton(QStringLiteral("pdfNextPageButton"), tr("下一页"));
    m_pageNumberEdit = new PageNumberEdit(navigation);
    m_pageNumberEdit->setObjectName(QStringLiteral("pdfPageNumberEdit"));
    m_pageNumberEdit->setAlignment(Qt::AlignCenter);
    m_pageNumberEdit->setFixedSize(kPageNumberSize);
    m_validator = new PageNumberValidator(m_pageNumberEdit);
    m_pageNumberEdit->setValidator(m_validator);

    auto *layout = new QHBoxLayout(navigation);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_previousButton);
    layout->addWidget(m_pageNumberEdit);
    layout->addWidget(m_nextButton);
    return navigation;
}

QWidget *PdfBottomControlBar::createSeparator()
{
    auto *separator = new QWidget(this);
    separator->setObjectName(QStringLiteral("pdfBottomSeparator"));
    separator->setAttribute(Qt::WA_StyledBackground);
    separator->setFixedSize(kBarSeparatorSize);
    return separator;
}

void PdfBottomControlBar::createZoomCombo()
{
    m_zoomCombo = new QComboBox(this);
    m_zoomCombo->setObjectName(QStringLiteral("pdfZoomCombo"));
    m_zoomCombo->setFixedSize(kZoomComboSize);
    m_zoomCombo->setMaxVisibleItems(kVisibleZooms);
    m_zoomCombo->setCursor(Qt::PointingHandCursor);
    m_zoomCombo->setFocusPolicy(Qt::NoFocus);

    auto *list = new QListView(m_zoomCombo);
    list->setObjectName(QStringLiteral("pdfZoomPopup"));
    list->setMinimumWidth(kZoomComboSize.width());
    m_zoomCombo->setView(list);
    list->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    letCornersBeSeenThrough(*list->window(), {.radius = kZoomPopupRadius, .edge = kZoomBorder});
    endHoverWithPopup(*list->window(), *m_zoomCombo);
    // The combo box's own delegate does not know the rules for items of a style sheet.
    m_zoomCombo->setItemDelegate(new QStyledItemDelegate(m_zoomCombo));
    for (const int percent : kZoomPresets) {
        m_zoomCombo->addItem(percentText(percent), percent);
    }
    m_zoomCombo->setCurrentIndex(m_zoomCombo->findData(kInitialZoom, kPercentRole));
}

void PdfBottomControlBar::connectControls()
{
    connect(m_previousButton, &QPushButton::clicked, this,
            &PdfBottomControlBar::previousPageRequested);
    connect(m_nextButton, &QPushButton::clicked, this, &PdfBottomControlBar::nextPageRequested);
    connect(m_pageNumberEdit, &QLineEdit::returnPressed, this,
            &PdfBottomControlBar::commitPageNumber);
    connect(m_pageNumberEdit, &QLineEdit::editingFinished, this,
            &PdfBottomControlBar::commitPageNumber);
    connect(m_zoomCombo, &QComboBox::activated, this, &PdfBottomControlBar::requestZoomAt);
    connect(m_fitToggleButton, &QPushButton::clicked, this, &PdfBottomControlBar::toggleFit);
}

void PdfBottomControlBar::requestZoomAt(int item)
{
    const int percent = m_zoomCombo->itemData(item, kPercentRole).toInt();
    if (percent >= 1) {
        emit zoomRequested(percent / 100.0);
    }
}

void PdfBottomControlBar::commitPageNumber()
{
    if (m_pageCount == 0) {
        return;
    }
    const int index = std::max(std::min(m_pageCount, m_pageNumberEdit->text().toInt()) - 1, 0);
    const bool changed = index != m_currentPage;
    setCurrentPage(index);
    if (changed) {
        emit pageRequested(index);
    }
}

void PdfBottomControlBar::toggleFit()
{
    setFitWidth(!m_fitWidth);
    if (m_fitWidth) {
        emit fitWidthRequested();
    } else {
        emit fitPageRequested();
    }
}

void PdfBottomControlBar::showCurrentPage()
{
    const QSignalBlocker blocker(m_pageNumberEdit);
    m_validator->setCurrentNumber(m_currentPage + 1);
    m_pageNumberEdit->setText(QString::number(m_currentPage + 1));
}

void PdfBottomControlBar::updateArrows()
{
    m_previousButton->setEnabled(m_currentPage >= 1);
    m_nextButton->setEnabled(m_currentPage + 1 < m_pageCount);
}
