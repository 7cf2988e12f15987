// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tools/tasks/task_list_item.h"

#include "taskcenter/task_request.h"
#include "tools/common/elided_label.h"
#include "tools/common/size_text.h"
#include "tools/tasks/task_row.h"
#include "widgets/icon_paths.h"
#include "widgets/text_alignment.h"
#include "widgets/theme.h"
#include "widgets/widget_font.h"

#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QIcon>
#include <QImage>
#include <QLabel>
#include <QPixmap>
#include <QPushButton>
#include <QUrl>

namespace {

constexpr int kFileIconSize = 32;
constexpr int kLineGap = 4;
constexpr int kTextGap = 12;
constexpr int kStateIconSize = 20;
constexpr int kButtonIconSize = 18;
constexpr int kButtonSize = 34;

constexpr QColor kText{0x1A, 0x1A, 0x1A};

constexpr QLatin1String kCompletedIcon{":/res/icons/modern/completed.png"};
constexpr QLatin1String kFailedIcon{":/res/icons/modern/failed.png"};

constexpr QLatin1String kStatusStyleSheet{"QLabel{background-color:transparent;color:%1;}"};

// %1 texts, %2 border, %3 white, %4 disabled
constexpr QLatin1String kStyleSheet{R"(
QLabel#taskName, QLabel#taskSize { color: %1; background: transparent; }
TaskListItem QPushButton {
    border: 1px solid %2; border-radius: 6px; background: %3; padding: 5px; outline: none;
}
TaskListItem QPushButton:enabled:hover { background: #F2F7FF; border-color: #4080FF; }
TaskListItem QPushButton:enabled:pressed { background: #E8F1FF; border-color: #4080FF; }
TaskListItem QPushButton:disabled { background: %4; border-color: %2; }
)"};

QPushButton *openButton(const QString &name, const QString &icon, const QString &toolTip,
                        QWidget *parent)
{
    auto *button = new QPushButton(parent);
    button->setObjectName(name);
    button->setIcon(QIcon(icon));
    button->setIconSize(QSize(kButtonIconSize, kButtonIconSize));
    button->setFixedSize(kButtonSize, kButtonSize);
    button->setCursor(Qt::PointingHandCursor);
    button->setFocusPolicy(Qt::NoFocus);
    button->setToolTip(toolTip);
    button->setAccessibleName(toolTip);
    button->hide();
    return button;
}

/// The icon in one colour, with its own alpha; null when there is no such icon.
QPixmap tinted(const QString &iconPath, const QColor &color, qreal scale)
{
    const QSize size(kStateIconSize, kStateIconSize);
    QImage image = QIcon(iconPath).pixmap(size, scale).toImage();
    if (image.isNull()) {
        return {};
    }
    image.convertTo(QImage::Format_ARGB32);
    for (int y = 0; y < image.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            line[x] = qRgba(color.red(), color.green(), color.blue(), qAlpha(line[x]));
        }
    }
    QPixmap pixmap = QPixmap::fromImage(image).scaled(size * scale, Qt::KeepAspectRatio,
                                                      Qt::SmoothTransformation);
    pixmap.setDevicePixelRatio(scale);
    return pixmap;
}

} // namespace

TaskListItem::TaskListItem(QWidget *parent)
    : QWidget(parent)
    , m_icon(new QLabel(this))
    , m_name(new ElidedLabel(this))
    , m_size(new QLabel(this))
    , m_status(new QLabel(this))
    , m_stateIcon(new QLabel(this))
    , m_openFile(openButton(QStringLiteral("taskOpenFileButton"),
                            QStringLiteral(":/res/icons/modern/open-file.png"), tr("打开文件"),
                            this))
    , m_openFolder(openButton(QStringLiteral("taskOpenFolderButton"),
                              QStringLiteral(":/res/icons/modern/open-folder.png"),
                              tr("打开所在文件夹"), this))
{
    m_icon->setObjectName(QStringLiteral("taskIcon"));
    m_name->setObjectName(QStringLiteral("taskName"));
    m_name->setFont(widgetFont(14));
    m_size->setObjectName(QStringLiteral("taskSize"));
    m_size->setFont(widgetFont(12));
    m_size->setAlignment(leadingSide(layoutDirection()));
    m_status->setObjectName(QStringLiteral("taskStatus"));
    m_status->setFont(widgetFont(14));
    m_stateIcon->setObjectName(QStringLiteral("taskStateIcon"));
    m_stateIcon->hide();
    connect(m_openFile, &QPushButton::clicked, this, &TaskListItem::openFile);
    connect(m_openFolder, &QPushButton::clicked, this, &TaskListItem::openFolder);

    auto *texts = new QVBoxLayout;
    texts->setSpacing(kLineGap);
    texts->addStretch();
    texts->addWidget(m_name);
    texts->addWidget(m_size);
    texts->addStretch();

    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(15, 0, 15, 0);
    row->setSpacing(0);
    row->addWidget(m_icon, 0, Qt::AlignVCenter);
    row->addSpacing(15);
    row->addLayout(texts, 1);
    row->addSpacing(kTextGap);
    row->addStretch();
    row->addWidget(m_status, 0, Qt::AlignVCenter);
    row->addSpacing(5);
    row->addWidget(m_stateIcon, 0, Qt::AlignVCenter);
    row->addSpacing(5);
    row->addWidget(m_openFile, 0, Qt::AlignVCenter);
    row->addSpacing(5);
    row->addWidget(m_openFolder, 0, Qt::AlignVCenter);
    setStatus(static_cast<int>(TaskStatus::Queued));
}

void TaskListItem::setTask(const TaskRow &task)
{
    m_id = task.id;
    setPath(task.outputPath);
    setStatus(static_cast<int>(TaskStatus::Queued));
}

void TaskListItem::setPath(const QString &path)
{
    m_path = QDir::cleanPath(QDir::fromNativeSeparators(path));
    const QFileInfo info(m_path);
    const bool isPendingPdf =
        !info.exists() && info.suffix().compare(QLatin1String("pdf"), Qt::CaseInsensitive) == 0;
    m_name->setFullText(info.fileName().isEmpty() ? m_path : info.fileName());
    m_icon->setPixmap(
        QIcon(info.isFile() || isPendingPdf ? QString(kPdfFileIcon) : QString(kFolderIcon))
            .pixmap(QSize(kFileIconSize, kFileIconSize), devicePixelRatioF()));
    m_size->setText(info.isFile() ? sizeText(info.size()) : QString());
    m_size->setVisible(info.isFile());
}

void TaskListItem::setStatus(int status)
{
    switch (static_cast<TaskStatus>(status)) {
    case TaskStatus::Queued:
    case TaskStatus::Running:
        showState(tr("处理中..."), Theme::accent, {});
        return;
    case TaskStatus::Paused:
        showState(tr("已暂停"), Theme::warning, {});
        return;
    case TaskStatus::Completed:
        // It is there now, and has a size.
        setPath(m_path);
        showState(tr("完成"), Theme::success, kCompletedIcon);
        m_openFile->setVisible(QFileInfo(m_path).isFile());
        m_openFolder->setVisible(QFileInfo(folder()).isDir());
        return;
    case TaskStatus::Failed:
        showState(tr("失败"), Theme::danger, kFailedIcon);
        return;
    case TaskStatus::Cancelled:
        showState(tr("已取消"), Theme::danger, kFailedIcon);
        return;
    }
}

QString TaskListItem::rowStyleSheet()
{
    return kStyleSheet.arg(kText.name(), Theme::borderNeutral.name(), Theme::white.name(),
                           QColor(0xF2, 0xF3, 0xF5).name());
}

/// The folder that is to be opened: the result itself, or where it lies.
QString TaskListItem::folder() const
{
    if (m_path.isEmpty()) {
        return {};
    }
    const QFileInfo info(m_path);
    return info.isDir() ? info.absoluteFilePath() : info.absolutePath();
}

void TaskListItem::openFile() const
{
    const QFileInfo info(m_path);
    if (info.isFile()) {
        QDesktopServices::openUrl(QUrl::fromLocalFile(info.absoluteFilePath()));
    }
}

void TaskListItem::openFolder() const
{
    const QString path = folder();
    if (!path.isEmpty() && QFileInfo(path).isDir()) {
        QDesktopServices::openUrl(QUrl::fromLocalFile(path));
    }
}

/// Shows a status without buttons; without an icon when `iconPath` is empty.
void TaskListItem::showState(const QString &text, const QColor &color, const QString &iconPath)
{
    m_status->setText(text);
    m_status->setStyleSheet(kStatusStyleSheet.arg(color.name().toUpper()));
    m_stateIcon->setPixmap(iconPath.isEmpty() ? QPixmap()
                                              : tinted(iconPath, color, devicePixelRatioF()));
    m_stateIcon->setVisible(!iconPath.isEmpty());
    m_openFile->hide();
    m_openFolder->hide();
}
