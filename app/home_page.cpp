// SPDX-License-Identifier: AGPL-3.0-or-later
#include "app/home_page.h"

#include "app/program_info.h"
#include "app/tool_table.h"
#include "recent/recent_file_manager.h"
#include "widgets/icon_paths.h"
#include "widgets/scroll_bar_style.h"
#include "widgets/text_alignment.h"
#include "widgets/theme.h"

#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QGridLayout>
#include <QIcon>
#include <QLabel>
#include <QListWidget>
#include <QPainter>
#include <QPushButton>
#include <QStackedWidget>
#include <QStyledItemDelegate>
#include <QToolButton>
#include <QVBoxLayout>

namespace {

constexpr int kLogoSize = 48;
constexpr int kCardHeight = 88;
constexpr int kCardIconSize = 32;
constexpr int kCardColumns = 4;
constexpr int kRowHeight = 52;
constexpr int kRowIconSize = 28;

// %1 ink, %2 muted text, %3 white, %4 to %6 accent, hovered, pressed, %7 border, %8 and %9 card
// hovered, pressed
constexpr QLatin1String kStyleSheet(
    "QLabel { background: transparent; }"
    "QLabel#homeTitle { color: %1; font-size: 18px; font-weight: 600; }"
    "QLabel#homeHint { color: %2; font-size: 13px; }"
    "QLabel#homeSection { color: %1; font-size: 14px; font-weight: 600; }"
    "QLabel#homeEmptyTitle { color: %1; font-size: 14px; font-weight: 600; }"
    "QPushButton#homeOpenButton { color: %3; background: %4; border: none; border-radius: 8px;"
    " padding: 0 20px; font-size: 14px; font-weight: 600; }"
    "QPushButton#homeOpenButton:hover { background: %5; }"
    "QPushButton#homeOpenButton:pressed { background: %6; }"
    "QToolButton { color: %1; background: %3; border: 1px solid %7; border-radius: 8px;"
    " padding: 8px; font-size: 13px; }"
    "QToolButton:hover { background: %8; border-color: %5; }"
    "QToolButton:pressed { background: %9; }"
    "QListWidget { background: transparent; border: none; outline: none; }");

/// Draws a recent file as two lines, its name above its folder.
class RecentFileDelegate final : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem &, const QModelIndex &) const override
    {
        return {0, kRowHeight};
    }

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override
    {
        const QRect row = option.rect;
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        if (option.state.testFlag(QStyle::State_MouseOver)) {
            painter->setPen(Qt::NoPen);
            painter->setBrush(Theme::hover);
            painter->drawRoundedRect(row.adjusted(0, 1, 0, -1), 6, 6);
        }
        const QRect iconRect(row.left() + 12, row.top() + (row.height() - kRowIconSize) / 2,
                             kRowIconSize, kRowIconSize);
        index.data(Qt::DecorationRole).value<QIcon>().paint(painter, iconRect);

        const QRect text = row.adjusted(52, 8, -12, -8);
        const QString path = index.data(Qt::UserRole).toString();
        const QString folder = QDir::toNativeSeparators(QFileInfo(path).absolutePath());
        drawLine(*painter, text, Qt::AlignTop, 13, Theme::ink, index.data().toString());
        drawLine(*painter, text, Qt::AlignBottom, 12, Theme::textMuted, folder);
        painter->restore();
    }

private:
    static void drawLine(QPainter &painter, const QRect &rect, Qt::Alignment vertical,
                         int pixelSize, const QColor &color, const QString &text)
    {
        QFont font = painter.font();
        font.setPixelSize(pixelSize);
        painter.setFont(font);
        painter.setPen(color);
        painter.drawText(rect, static_cast<int>(Qt::AlignLeft | vertical) | Qt::TextSingleLine,
                         painter.fontMetrics().elidedText(text, Qt::ElideMiddle, rect.width()));
    }
};

} // namespace

HomePage::HomePage(QWidget *parent)
    : QWidget(parent)
{
    setStyleSheet(kStyleSheet.arg(Theme::ink.name(), Theme::textMuted.name(), Theme::white.name(),
                                  Theme::accent.name(), Theme::accentHover.name(),
                                  Theme::accentPressed.name(), Theme::border.name(),
                                  Theme::accentTintLight.name(), Theme::accentTint.name()) %
                  scrollBarStyleSheet({.thickness = 8, .margins = {}, .radius = 4}));

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(32, 24, 32, 12);
    layout->setSpacing(12);
    layout->addWidget(createHeader());
    layout->addSpacing(4);
    layout->addWidget(createSectionTitle(tr("工具")));
    layout->addWidget(createToolGrid());
    layout->addSpacing(4);
    layout->addWidget(createSectionTitle(tr("最近文件")));
    layout->addWidget(createRecentList(), 1);

    const QStringList files = RecentFileManager::instance()->files();
    for (const QString &path : files) {
        insertExistingFile(m_recentFiles->count(), path);
    }
}

void HomePage::recordFile(const QString &path)
{
    RecentFileManager *store = RecentFileManager::instance();
    if (store->contains(path)) {
        return;
    }
    insertExistingFile(0, path);
    store->addFile(path);
}

QWidget *HomePage::createHeader()
{
    auto *header = new QWidget(this);

    auto *logo = new QLabel(header);
    logo->setFixedSize(kLogoSize, kLogoSize);
    logo->setPixmap(QIcon(kProgramIcon).pixmap(QSize(kLogoSize, kLogoSize), devicePixelRatioF()));
    auto *title = new QLabel(kProgramName, header);
    title->setObjectName(QStringLiteral("homeTitle"));
    auto *hint = new QLabel(tr("打开一个 PDF 文件，或选择下方的工具开始。"), header);
    hint->setObjectName(QStringLiteral("homeHint"));
    hint->setAlignment(kAlwaysLeft);
    hint->setWordWrap(true);

    auto *openButton = new QPushButton(tr("打开 PDF 文件"), header);
    openButton->setObjectName(QStringLiteral("homeOpenButton"));
    openButton->setFixedHeight(40);
    openButton->setCursor(Qt::PointingHandCursor);
    openButton->setFocusPolicy(Qt::NoFocus);
    connect(openButton, &QPushButton::clicked, this, &HomePage::chooseFile);

    auto *texts = new QVBoxLayout;
    texts->setSpacing(4);
    texts->addStretch(1);
    texts->addWidget(title);
    texts->addWidget(hint);
    texts->addStretch(1);

    auto *layout = new QHBoxLayout(header);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(16);
    layout->addWidget(logo);
    layout->addLayout(texts, 1);
    layout->addWidget(openButton);
    return header;
}

QWidget *HomePage::createToolGrid()
{
    auto *grid = new QWidget(this);
    auto *layout = new QGridLayout(grid);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(12);
    int position = 0;
    for (const Tool &tool : toolTable()) {
        auto *card = new QToolButton(grid);
        card->setText(QCoreApplication::translate("MainPage", tool.title));
        card->setIcon(QIcon(tool.bigIcon));
        card->setIconSize(QSize(kCardIconSize, kCardIconSize));
        card->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
        card->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
        card->setFixedHeight(kCardHeight);
        card->setCursor(Qt::PointingHandCursor);
        card->setFocusPolicy(Qt::NoFocus);
        connect(card, &QToolButton::clicked, this,
                [this, type = tool.type] { emit toolClicked(type); });
        layout->addWidget(card, position / kCardColumns, position % kCardColumns);
        ++position;
    }
    return grid;
}

QWidget *HomePage::createRecentList()
{
    m_recentFiles = new QListWidget(this);
    m_recentFiles->setObjectName(QStringLiteral("homeRecentFiles"));
    m_recentFiles->setItemDelegate(new RecentFileDelegate(m_recentFiles));
    m_recentFiles->setMouseTracking(true);
    m_recentFiles->setFocusPolicy(Qt::NoFocus);
    m_recentFiles->setSelectionMode(QAbstractItemView::NoSelection);
    m_recentFiles->setUniformItemSizes(true);
    m_recentFiles->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    m_recentFiles->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_recentFiles->viewport()->setCursor(Qt::PointingHandCursor);
    connect(m_recentFiles, &QListWidget::itemClicked, this, [this](const QListWidgetItem *item) {
        emit fileClicked(item->data(Qt::UserRole).toString());
    });

    auto *emptyState = new QWidget(this);
    auto *emptyTitle = new QLabel(tr("暂无最近文件"), emptyState);
    emptyTitle->setObjectName(QStringLiteral("homeEmptyTitle"));
    emptyTitle->setAlignment(Qt::AlignCenter);
    auto *emptyHint = new QLabel(tr("打开的 PDF 文件会显示在这里"), emptyState);
    emptyHint->setObjectName(QStringLiteral("homeHint"));
    emptyHint->setAlignment(Qt::AlignCenter);
    auto *emptyLayout = new QVBoxLayout(emptyState);
    emptyLayout->setSpacing(8);
    emptyLayout->addStretch(1);
    emptyLayout->addWidget(emptyTitle);
    emptyLayout->addWidget(emptyHint);
    emptyLayout->addStretch(2);

    m_recentStack = new QStackedWidget(this);
    m_recentStack->addWidget(emptyState);
    m_recentStack->addWidget(m_recentFiles);
    return m_recentStack;
}

QLabel *HomePage::createSectionTitle(const QString &text)
{
    auto *label = new QLabel(text, this);
    label->setObjectName(QStringLiteral("homeSection"));
    label->setAlignment(kAlwaysLeft);
    return label;
}

void HomePage::chooseFile()
{
    const QString path =
        QFileDialog::getOpenFileName(this, tr("打开 PDF 文件"), QString(), tr("PDF 文件 (*.pdf)"));
    if (!path.isEmpty()) {
        emit openFile(path);
    }
}

void HomePage::insertExistingFile(int row, const QString &path)
{
    const QFileInfo file(path);
    if (!file.exists()) {
        return;
    }
    auto *item = new QListWidgetItem(QIcon(kPdfFileIcon), file.fileName());
    item->setData(Qt::UserRole, path);
    item->setToolTip(QDir::toNativeSeparators(path));
    m_recentFiles->insertItem(row, item);
    m_recentStack->setCurrentWidget(m_recentFiles);
}
