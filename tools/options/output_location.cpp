// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tools/options/output_location.h"

#include "taskcenter/task_request.h"
#include "widgets/modern_combo_box.h"

#include <QCoreApplication>
#include <QDir>
#include <QListWidgetItem>
#include <QStandardPaths>

namespace {

constexpr int kBoxHeight = 48;

struct Texts
{
    Q_DECLARE_TR_FUNCTIONS(OutputLocation)
};

/// The folder of the program among the documents; it is there afterwards.
QString programFolder()
{
    QString path = QDir(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation))
                       .filePath(QStringLiteral("Quillora"));
    QDir().mkpath(path);
    return path;
}

} // namespace

ModernComboBox *OutputLocation::createBox(Source source, QWidget *parent)
{
    auto *box = new ModernComboBox(parent, true);
    box->setObjectName(QStringLiteral("outputLocationBox"));
    box->setFixedHeight(kBoxHeight);
    const auto add = [box](const QString &text, Mode mode) {
        box->addItem(text, {}, mode == Chosen)
            ->setData(ModernComboBox::kLocationRole, static_cast<int>(mode));
    };
    if (source == Source::Offered) {
        add(Texts::tr("原始文件"), SourceFolder);
    }
    add(Texts::tr("桌面"), Desktop);
    add(Texts::tr("Quillora文件"), ProgramFolder);
    add(Texts::tr("选择位置..."), Chosen);
    box->setCurrentItem(box->item(0));
    return box;
}

void OutputLocation::fill(const ModernComboBox &box, TaskRequest &request)
{
    const QListWidgetItem *place = box.currentItem();
    const int mode = place != nullptr ? place->data(ModernComboBox::kLocationRole).toInt() : -1;
    request.useSourceFolder = mode == SourceFolder;
    switch (mode) {
    case Desktop:
        request.outputPath = QStandardPaths::writableLocation(QStandardPaths::DesktopLocation);
        break;
    case ProgramFolder:
        request.outputPath = programFolder();
        break;
    case Chosen:
        request.outputPath = place->data(ModernComboBox::kTextRole).toString();
        break;
    default:
        break;
    }
}
