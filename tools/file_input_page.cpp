// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tools/file_input_page.h"

#include "widgets/icon_paths.h"
#include "widgets/theme.h"

#include <QFileInfo>
#include <QIcon>
#include <QListWidget>
#include <QVBoxLayout>

namespace {

constexpr int kListHeight = 168;
constexpr int kRowHeight = 40;
constexpr int kIconSize = 20;

// %1 text, %2 background, %3 border, %4 hovered
constexpr QLatin1String
    kListStyleSheet("QListWidget#toolInputFiles { color: %1; background: %2; border: 1px solid %3;"
                    " border-radius: 8px; padding: 4px; font-size: 13px; outline: none; }"
                    "QListWidget#toolInputFiles::item { border-radius: 6px; padding: 0 8px; }"
                    "QListWidget#toolInputFiles::item:hover { background: %4; }");

} // namespace

FileInputPage::FileInputPage(const QString &iconPath, const QString &title,
                             const QString &description, QWidget *parent)
    : ToolPage(iconPath, title, description, parent)
    , m_list(new QListWidget(this))
{
    m_list->setObjectName(QStringLiteral("toolInputFiles"));
    m_list->setStyleSheet(kListStyleSheet.arg(Theme::ink.name(), Theme::white.name(),
                                              Theme::border.name(), Theme::hover.name()));
    m_list->setFixedHeight(kListHeight);
    m_list->setIconSize(QSize(kIconSize, kIconSize));
    m_list->setSelectionMode(QAbstractItemView::NoSelection);
    m_list->setFocusPolicy(Qt::NoFocus);
    m_list->setTextElideMode(Qt::ElideMiddle);
    m_list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_list->hide();
    column()->addSpacing(16);
    column()->addWidget(m_list);
}

QStringList FileInputPage::inputFiles() const
{
    QStringList files;
    for (int row = 0; row < m_list->count(); ++row) {
        files.append(m_list->item(row)->data(Qt::UserRole).toString());
    }
    return files;
}

void FileInputPage::addInputFile(const QString &path)
{
    if (path.isEmpty() || inputFiles().contains(path)) {
        return;
    }
    auto *item = new QListWidgetItem(QIcon(kPdfFileIcon), QFileInfo(path).fileName(), m_list);
    item->setData(Qt::UserRole, path);
    item->setToolTip(path);
    item->setSizeHint(QSize(0, kRowHeight));
    m_list->show();
}
