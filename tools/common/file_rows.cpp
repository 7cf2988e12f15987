// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tools/common/file_rows.h"

#include "tools/common/separator_line.h"
#include "widgets/scroll_bar_style.h"
#include "widgets/theme.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QSignalBlocker>
#include <QVBoxLayout>

namespace {

constexpr QColor kRowBorder{0xEB, 0xED, 0xF0};
constexpr QColor kHoveredRow{0xF7, 0xF8, 0xFA};
constexpr QColor kSelectedRow{0xE8, 0xF1, 0xFF};
constexpr QColor kSelectedText{0x1D, 0x21, 0x29};

constexpr ScrollBarLook kScrollBar{8, {}, QColor(0xC9, 0xCD, 0xD4), QColor(0x86, 0x90, 0x9C),
                                   4, 30};

// %1 white, %2 border of rows, %3 hovered, %4 selected, %5 text of selected, %6 scroll bars
constexpr QLatin1String kStyleSheet{R"(
QListWidget { background: %1; border: none; outline: none; }
QListWidget::item {
    background: %1; border: none; border-bottom: 1px solid %2; padding: 0; margin: 0 15px;
}
QListWidget::item:hover { background: %3; }
QListWidget::item:selected { background: %4; color: %5; }
%6
)"};

} // namespace

void FileRows::arrange(QWidget &owner, QHBoxLayout *buttons, QListWidget *list)
{
    buttons->setContentsMargins(15, 0, 15, 0);
    auto *column = new QVBoxLayout(&owner);
    column->setContentsMargins(0, 10, 0, 10);
    column->setSpacing(0);
    column->addLayout(buttons);
    column->addSpacing(10);
    column->addWidget(createSeparator(Qt::Horizontal, &owner));
    column->addWidget(list, 1);
}

void FileRows::prepare(QListWidget &list)
{
    list.setFrameShape(QFrame::NoFrame);
    list.setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    list.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    list.setSelectionMode(QAbstractItemView::NoSelection);
    list.setFocusPolicy(Qt::NoFocus);
    list.setSpacing(0);
    list.setUniformItemSizes(true);
    list.setStyleSheet(QString(kStyleSheet)
                           .arg(Theme::white.name(), kRowBorder.name(), kHoveredRow.name(),
                                kSelectedRow.name(), kSelectedText.name(),
                                scrollBarStyleSheet(kScrollBar)));
}

QList<QListWidgetItem *> FileRows::append(QListWidget &list, const QStringList &data)
{
    if (data.isEmpty()) {
        return {};
    }
    const int first = list.count();
    QList<QListWidgetItem *> entries;
    // The list lays out all of its rows when one is inserted, and again when one is changed.
    list.model()->insertRows(first, static_cast<int>(data.size()));
    const QSignalBlocker silence(list.model());
    for (const QString &text : data) {
        QListWidgetItem *entry = list.item(first + static_cast<int>(entries.size()));
        entry->setSizeHint(QSize(0, kHeight));
        entry->setData(Qt::UserRole, text);
        entries.append(entry);
    }
    return entries;
}
