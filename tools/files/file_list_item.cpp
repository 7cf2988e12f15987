// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tools/files/file_list_item.h"

#include "tools/common/elided_label.h"
#include "tools/common/size_text.h"
#include "widgets/icon_paths.h"
#include "widgets/plain_tool_tip.h"
#include "widgets/text_alignment.h"
#include "widgets/theme.h"
#include "widgets/widget_font.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QHelpEvent>
#include <QIcon>
#include <QLabel>
#include <QMouseEvent>
#include <QPointer>
#include <QPushButton>
#include <QStyle>
#include <QToolTip>

namespace {

constexpr int kHandleWidth = 14;
constexpr int kFileIconSize = 32;
constexpr int kLineGap = 4;
constexpr int kTextGap = 12;
constexpr int kCloseIconSize = 24;
constexpr int kCloseButtonSize = 28;

constexpr QColor kDraggedBorder{0xC7, 0xD2, 0xFE};
constexpr QColor kCloseHover{0xF0, 0xF0, 0xF1};
constexpr QColor kText{0x1A, 0x1A, 0x1A};

// %1 background and %2 border of a dragged row, %3 hovered button, %4 handle, %5 texts
constexpr QLatin1String kStyleSheet{R"(
FileListItem { background: transparent; border: 1px solid transparent; border-radius: 6px; }
FileListItem[dragging="true"] { background: %1; border-color: %2; }
FileListItem QPushButton { border: none; background: transparent; border-radius: 4px; }
FileListItem QPushButton:hover { background: %3; }
QLabel#fileName, QLabel#fileSize { color: %5; background: transparent; }
QLabel#fileDragHandle { color: %4; background: transparent; }
)"};

} // namespace

FileListItem::FileListItem(QWidget *parent)
    : QWidget(parent)
    , m_handle(new QLabel(QString(QChar(0x283F)), this))
    , m_icon(new QLabel(this))
    , m_name(new ElidedLabel(this))
    , m_size(new QLabel(this))
{
    setAttribute(Qt::WA_StyledBackground);
    setCursor(Qt::OpenHandCursor);

    m_handle->setObjectName(QStringLiteral("fileDragHandle"));
    m_handle->setFixedWidth(kHandleWidth);
    m_handle->setAlignment(Qt::AlignCenter);
    m_handle->setToolTip(tr("拖动排序"));
    m_icon->setObjectName(QStringLiteral("fileIcon"));
    m_icon->setPixmap(
        QIcon(kPdfFileIcon).pixmap(QSize(kFileIconSize, kFileIconSize), devicePixelRatioF()));
    m_name->setObjectName(QStringLiteral("fileName"));
    m_name->setFont(widgetFont(14));
    m_size->setObjectName(QStringLiteral("fileSize"));
    m_size->setFont(widgetFont(12));
    m_size->setAlignment(leadingSide(layoutDirection()));
    for (QLabel *label : {m_handle, m_icon, static_cast<QLabel *>(m_name), m_size}) {
        label->setAttribute(Qt::WA_TransparentForMouseEvents);
    }

    auto *closeButton = new QPushButton(this);
    closeButton->setObjectName(QStringLiteral("fileCloseButton"));
    closeButton->setIcon(QIcon(QStringLiteral(":/res/icons/modern/close.png")));
    closeButton->setIconSize(QSize(kCloseIconSize, kCloseIconSize));
    closeButton->setFixedSize(kCloseButtonSize, kCloseButtonSize);
    closeButton->setCursor(Qt::PointingHandCursor);
    closeButton->setFocusPolicy(Qt::NoFocus);
    connect(closeButton, &QPushButton::clicked, this, &FileListItem::close);

    auto *texts = new QVBoxLayout;
    texts->setSpacing(kLineGap);
    texts->addStretch();
    texts->addWidget(m_name);
    texts->addWidget(m_size);
    texts->addStretch();

    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(15, 0, 15, 0);
    row->setSpacing(0);
    row->addWidget(m_handle, 0, Qt::AlignVCenter);
    row->addSpacing(8);
    row->addWidget(m_icon, 0, Qt::AlignVCenter);
    row->addSpacing(15);
    row->addLayout(texts, 1);
    row->addSpacing(kTextGap);
    row->addStretch();
    row->addWidget(closeButton, 0, Qt::AlignVCenter);
}

void FileListItem::setPath(const QString &path)
{
    m_path = path;
    const QFileInfo file(path);
    m_name->setFullText(file.fileName());
    m_size->setText(sizeText(file.size()));
    setToolTip(plainToolTip(QDir::toNativeSeparators(path)));
}

void FileListItem::setDragging(bool dragging)
{
    if (dragging == m_dragging) {
        return;
    }
    m_dragging = dragging;
    setCursor(dragging ? Qt::ClosedHandCursor : Qt::OpenHandCursor);
    style()->unpolish(this);
    style()->polish(this);
    update();
}

QString FileListItem::rowStyleSheet()
{
    return kStyleSheet.arg(Theme::accentTint.name(), kDraggedBorder.name(), kCloseHover.name(),
                           Theme::textMuted.name(), kText.name());
}

bool FileListItem::event(QEvent *event)
{
    // The mouse passes through the handle, and with it would the question for its tool tip.
    if (event->type() == QEvent::ToolTip) {
        const auto *help = static_cast<QHelpEvent *>(event);
        if (m_handle->geometry().contains(help->pos())) {
            QToolTip::showText(help->globalPos(), m_handle->toolTip(), this, m_handle->geometry());
            return true;
        }
    }
    return QWidget::event(event);
}

void FileListItem::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton) {
        QWidget::mousePressEvent(event);
        return;
    }
    m_pressed = true;
    m_pressPosition = event->position().toPoint();
    event->accept();
}

void FileListItem::mouseMoveEvent(QMouseEvent *event)
{
    if (!m_pressed || !event->buttons().testFlag(Qt::LeftButton)) {
        QWidget::mouseMoveEvent(event);
        return;
    }
    if (!m_dragging) {
        const QPoint way = event->position().toPoint() - m_pressPosition;
        if (way.manhattanLength() < QApplication::startDragDistance()) {
            return;
        }
        setDragging(true);
        emit dragStarted();
    }
    emit dragMoved(event->globalPosition().toPoint());
    event->accept();
}

void FileListItem::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton || !m_pressed) {
        QWidget::mouseReleaseEvent(event);
        return;
    }
    m_pressed = false;
    if (m_dragging) {
        // Who hears of the end may empty the list, and this row with it.
        const QPointer<FileListItem> self(this);
        emit dragFinished();
        if (self != nullptr) {
            setDragging(false);
        }
    }
    event->accept();
}
