// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tools/files/file_drop_zone_widget.h"

#include "widgets/file_drop.h"
#include "widgets/icon_button.h"
#include "widgets/theme.h"
#include "widgets/widget_font.h"

#include <QDragEnterEvent>
#include <QFileDialog>
#include <QIcon>
#include <QLabel>
#include <QMimeData>
#include <QPainter>
#include <QStyleOption>
#include <QVBoxLayout>

namespace {

constexpr QSize kMinimumSize(700, 600);
constexpr int kSpacing = 20;
constexpr int kIconSize = 128;
constexpr int kTextWidth = 480;
constexpr int kButtonWidth = 120;
constexpr int kButtonHeight = 40;
constexpr int kButtonIconSize = 28;

constexpr int kFrameInset = 40;
constexpr int kFrameRadius = 8;
constexpr int kFrameWidth = 2;
constexpr QColor kFill{0xFA, 0xFB, 0xFC};

constexpr QLatin1String kStyleSheet{"background: white;"};
constexpr QLatin1String kIconStyleSheet{"background: transparent;"};
constexpr QLatin1String kTextStyleSheet{"background: transparent; color: #1A1A1A;"};

} // namespace

FileDropZoneWidget::FileDropZoneWidget(QWidget *parent)
    : QWidget(parent)
    , filter(tr("PDF 文件 (*.pdf)"))
    , caption(tr("选择 PDF"))
    , m_text(new QLabel(tr("从你的桌面上添加或拖放PDF文件，开始转换。"), this))
{
    setAcceptDrops(true);
    setMinimumSize(kMinimumSize);
    setStyleSheet(kStyleSheet);

    auto *icon = new QLabel(this);
    icon->setObjectName(QStringLiteral("dropZoneIcon"));
    icon->setAlignment(Qt::AlignCenter);
    icon->setStyleSheet(kIconStyleSheet);
    icon->setPixmap(QIcon(QStringLiteral(":/res/icons/modern/pdf.png"))
                        .pixmap(QSize(kIconSize, kIconSize), devicePixelRatioF()));

    m_text->setObjectName(QStringLiteral("dropZoneText"));
    m_text->setFont(widgetFont(16));
    m_text->setWordWrap(true);
    m_text->setAlignment(Qt::AlignCenter);
    m_text->setTextFormat(Qt::PlainText);
    m_text->setFixedWidth(kTextWidth);
    m_text->setStyleSheet(kTextStyleSheet);

    auto *add = new IconButton(tr("添加文件"), this);
    add->setObjectName(QStringLiteral("dropZoneAddButton"));
    add->setFillColor(Theme::accent);
    add->setHoverFillColor(Theme::accentHover);
    add->setIconPixmap(QStringLiteral(":/res/icons/modern/addfile.png"), kButtonIconSize);
    add->setMinimumWidth(kButtonWidth);
    add->setFixedHeight(kButtonHeight);
    add->setSizePolicy(QSizePolicy::Minimum, QSizePolicy::Fixed);
    connect(add, &IconButton::clicked, this, &FileDropZoneWidget::chooseFile);

    auto *column = new QVBoxLayout(this);
    column->setAlignment(Qt::AlignCenter);
    column->setSpacing(kSpacing);
    column->addStretch();
    column->addWidget(icon, 0, Qt::AlignHCenter);
    column->addWidget(m_text, 0, Qt::AlignHCenter);
    column->addWidget(add, 0, Qt::AlignHCenter);
    column->addStretch();
}

QString FileDropZoneWidget::text() const
{
    return m_text->text();
}

void FileDropZoneWidget::setText(const QString &text)
{
    m_text->setText(text);
}

void FileDropZoneWidget::chooseFile()
{
    const QStringList files = QFileDialog::getOpenFileNames(this, caption, QString(), filter);
    if (!files.isEmpty()) {
        emit fileSelected(files);
    }
}

void FileDropZoneWidget::dragEnterEvent(QDragEnterEvent *event)
{
    if (!event->mimeData()->hasUrls()) {
        event->ignore();
        return;
    }
    setAimedAt(acceptAsCopy(*event));
}

void FileDropZoneWidget::dragMoveEvent(QDragMoveEvent *event)
{
    acceptAsCopy(*event);
}

void FileDropZoneWidget::dragLeaveEvent(QDragLeaveEvent * /*event*/)
{
    setAimedAt(false);
}

void FileDropZoneWidget::dropEvent(QDropEvent *event)
{
    setAimedAt(false);
    const QStringList files = filePaths(*event->mimeData());
    if (acceptAsCopy(*event) && !files.isEmpty()) {
        emit fileSelected(files);
    }
}

void FileDropZoneWidget::paintEvent(QPaintEvent *event)
{
    QWidget::paintEvent(event);
    QPainter painter(this);
    QStyleOption option;
    option.initFrom(this);
    style()->drawPrimitive(QStyle::PE_Widget, &option, &painter, this);

    painter.setRenderHint(QPainter::Antialiasing);
    QPen pen(m_aimedAt ? Theme::accent : Theme::borderStrong, kFrameWidth);
    pen.setDashPattern({1.8, 2.5});
    pen.setCapStyle(Qt::RoundCap);
    painter.setPen(pen);
    painter.setBrush(m_aimedAt ? Theme::accentTintLight : kFill);
    painter.drawRoundedRect(rect().adjusted(kFrameInset, kFrameInset, -kFrameInset, -kFrameInset),
                            kFrameRadius, kFrameRadius);
}

/// Shows whether a drop would be taken here.
void FileDropZoneWidget::setAimedAt(bool aimedAt)
{
    m_aimedAt = aimedAt;
    update();
}
