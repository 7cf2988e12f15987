// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tools/options/location_box.h"

#include "taskcenter/task_request.h"

#include <QDir>
#include <QIcon>
#include <QListWidgetItem>
#include <QStandardPaths>

namespace {

constexpr int kBoxHeight = 48;

/// The folder of the program among the documents; it is there afterwards.
QString programFolder()
{
    const QString path =
        QDir(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation))
            .filePath(QStringLiteral("Quillora"));
    QDir().mkpath(path);
    return path;
}

} // namespace

LocationBox::LocationBox(Source source, QWidget *parent)
    : ModernComboBox(parent, true)
{
    setFixedHeight(kBoxHeight);
    const auto add = [this](const QString &text, Mode mode) {
        addItem(text, QIcon(), mode == Chosen)->setData(kModeRole, static_cast<int>(mode));
    };
    if (source == Source::Offered) {
        add(tr("原始文件"), SourceFolder);
    }
    add(tr("桌面"), Desktop);
    add(tr("Quillora文件"), ProgramFolder);
    add(tr("选择位置..."), Chosen);
    setCurrentItem(item(0));
}

void LocationBox::fill(TaskRequest &request) const
{
    const QListWidgetItem *place = currentItem();
    const int mode = place != nullptr ? place->data(kModeRole).toInt() : -1;
    request.useSourceFolder = mode == SourceFolder;
    switch (mode) {
    case Desktop:
        request.outputPath = QStandardPaths::writableLocation(QStandardPaths::DesktopLocation);
        break;
    case ProgramFolder:
        request.outputPath = programFolder();
        break;
    case Chosen:
        request.outputPath = place->data(kFolderRole).toString();
        break;
    default:
        break;
    }
}
