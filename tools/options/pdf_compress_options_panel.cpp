// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tools/options/pdf_compress_options_panel.h"

#include "tools/options/save_option.h"
#include "widgets/card_radio_button.h"

#include <QButtonGroup>
#include <QRadioButton>

PdfCompressOptionsPanel::PdfCompressOptionsPanel(QWidget *parent)
    : ToolOptionsPanel(tr("压缩PDF"), tr("压缩"), OutputLocation::Source::Offered, parent)
    , m_basic(new CardRadioButton(tr("基本"), tr("文件尺寸适中，质量最"), this))
    , m_save(new SaveOption(this))
{
    auto *strong = new CardRadioButton(tr("强"), tr("文件最小，质量"), this);
    m_basic->setObjectName(QStringLiteral("basicLevelCard"));
    strong->setObjectName(QStringLiteral("strongLevelCard"));
    auto *levels = new QButtonGroup(this);
    levels->addButton(m_basic->radioButton());
    levels->addButton(strong->radioButton());

    addHeading(tr("选择压缩等级"));
    addControl(m_basic);
    addControl(strong);
    addSeparator();
    addHeading(tr("保存选项"));
    addControl(m_save);
}

TaskRequest PdfCompressOptionsPanel::buildRequest() const
{
    constexpr int kBasic = 0;
    constexpr int kStrong = 1;
    TaskRequest request = ToolOptionsPanel::buildRequest();
    request.options.insert(QStringLiteral("compressLevel"),
                           m_basic->isChecked() ? kBasic : kStrong);
    request.options.insert(QStringLiteral("saveOption"), m_save->value());
    return request;
}
