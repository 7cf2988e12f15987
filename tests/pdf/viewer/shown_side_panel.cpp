// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdf/viewer/shown_side_panel.h"

#include "res/resources.h"
#include "tests/pdf/viewer/shown_view.h"
#include "tools/file_location_selector.h"

#include <QCheckBox>
#include <QListWidget>
#include <QPushButton>
#include <QSet>
#include <QStackedWidget>

#include <algorithm>

namespace {

QStringList textsOf(const QListWidget &list)
{
    QStringList texts;
    for (int row = 0; row < list.count(); ++row) {
        texts << list.item(row)->text();
    }
    return texts;
}

} // namespace

const QString ShownSidePanel::kFolder = QStringLiteral("/files/reports");
const QString ShownSidePanel::kPath = QStringLiteral("/files/reports/report.pdf");
const QStringList ShownSidePanel::kExtractHint{QStringLiteral("请先选择要提取的页面")};
const QStringList ShownSidePanel::kSplitHint{
    QStringLiteral("点击页面之间的虚线，可以自定义拆分文件。")};

ShownSidePanel::ShownSidePanel(int pageCount, const QString &path)
{
    initResources();
    setPages(pageCount);
    model.markSaved(path);
    panel.setModel(&model);
    panel.resize(340, 700);
}

ShownSidePanel::~ShownSidePanel() = default;

void ShownSidePanel::setPages(int count)
{
    model.setPages(recordsOfSizes(a4Pages(count)), false);
}

void ShownSidePanel::select(const QList<int> &rows)
{
    QSet<PdfPageId> ids;
    for (const int row : rows) {
        ids.insert(model.pageAt(row)->id);
    }
    model.setSelectedPageIds(ids);
}

QWidget &ShownSidePanel::page() const
{
    return *panel.findChild<QStackedWidget *>()->currentWidget();
}

QCheckBox &ShownSidePanel::combine() const
{
    return part<QCheckBox>("pdfCombineExtractCheckBox");
}

QCheckBox &ShownSidePanel::everyPage() const
{
    return part<QCheckBox>("pdfSplitEveryPageCheckBox");
}

QListWidget &ShownSidePanel::extractList() const
{
    return part<QListWidget>("pdfExtractPreviewList");
}

QListWidget &ShownSidePanel::splitList() const
{
    return part<QListWidget>("pdfSplitPreviewList");
}

FileLocationSelector &ShownSidePanel::extractLocation() const
{
    return part<FileLocationSelector>("pdfExtractLocationSelector");
}

FileLocationSelector &ShownSidePanel::splitLocation() const
{
    return part<FileLocationSelector>("pdfSplitLocationSelector");
}

QPushButton &ShownSidePanel::extractButton() const
{
    return button(QStringLiteral("提取"));
}

QPushButton &ShownSidePanel::splitButton() const
{
    return button(QStringLiteral("拆分"));
}

QStringList ShownSidePanel::extractTexts() const
{
    return textsOf(extractList());
}

QStringList ShownSidePanel::splitTexts() const
{
    return textsOf(splitList());
}

QPushButton &ShownSidePanel::button(const QString &text) const
{
    const auto buttons = panel.findChildren<QPushButton *>(QStringLiteral("pdfPrimaryAction"));
    return **std::find_if(buttons.cbegin(), buttons.cend(),
                          [&](const QPushButton *each) { return each->text() == text; });
}
