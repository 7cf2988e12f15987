// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tools/options/pdf_convert_options_panel.h"

#include "tools/options/switch_row.h"
#include "widgets/switch_button.h"

namespace {

/// The number of JPG, after which comes PNG.
constexpr int kJpg = 2;

} // namespace

PdfConvertOptionsPanel::PdfConvertOptionsPanel(QWidget *parent)
    : ToolOptionsPanel(tr("PDF 转为图像"), tr("转换"), OutputLocation::Source::Offered, parent)
{
    addHeading(tr("选择图像格式"));
    m_format = addChoice(QStringLiteral("imageFormatBox"), {tr("JPG"), tr("PNG")}, kJpg);
    addHeading(tr("更多选项"));
    auto *extract = new SwitchRow(tr("提取单个图像"), this);
    m_extract = extract->switchButton();
    m_extract->setObjectName(QStringLiteral("extractImagesSwitch"));
    addControl(extract);
    addNote(tr("PDF 中的每张图像都将保存为单张图像"));
}

TaskRequest PdfConvertOptionsPanel::buildRequest() const
{
    TaskRequest request = ToolOptionsPanel::buildRequest();
    request.options.insert(QStringLiteral("format"), valueOf(*m_format));
    request.options.insert(QStringLiteral("saveAsSeparateFiles"), m_extract->isChecked());
    return request;
}
