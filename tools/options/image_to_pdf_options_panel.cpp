// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tools/options/image_to_pdf_options_panel.h"

#include "tools/options/switch_row.h"
#include "widgets/select_button.h"
#include "widgets/switch_button.h"

#include <QHBoxLayout>

namespace {

constexpr int kSelectHeight = 45;
constexpr int kSelectGap = 8;

} // namespace

ImageToPdfOptionsPanel::ImageToPdfOptionsPanel(QWidget *parent)
    : ToolOptionsPanel(tr("图像转PDF"), tr("转换"), OutputLocation::Source::Offered, parent)
    , m_portrait(new SelectButton(tr("纵向"), this))
    , m_landscape(new SelectButton(tr("横向"), this))
{
    addHeading(tr("页面大小"));
    m_pageSize = addChoice(QStringLiteral("pageSizeBox"), {tr("A4"), tr("Letter(US)")}, 0);
    addHeading(tr("页边距选项"));
    m_margin = addChoice(QStringLiteral("pageMarginBox"), {tr("无"), tr("窄"), tr("宽")}, 0);

    addHeading(tr("页面方向"));
    auto *orientation = new QWidget(this);
    auto *row = new QHBoxLayout(orientation);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(kSelectGap);
    for (SelectButton *button : {m_portrait, m_landscape}) {
        button->setFixedHeight(kSelectHeight);
        row->addWidget(button);
        connect(button, &SelectButton::sigSelected, this, [this, button] {
            m_portrait->setSelected(button == m_portrait);
            m_landscape->setSelected(button == m_landscape);
        });
    }
    m_portrait->setObjectName(QStringLiteral("portraitButton"));
    m_landscape->setObjectName(QStringLiteral("landscapeButton"));
    m_portrait->setSelected(true);
    addControl(orientation);

    addHeading(tr("更多选项"));
    auto *single = new SwitchRow(tr("转换为单个PDF"), this);
    m_singlePdf = single->switchButton();
    m_singlePdf->setObjectName(QStringLiteral("singlePdfSwitch"));
    addControl(single);
    addNote(tr("每张图像都将保存为单个PDF"));
}

TaskRequest ImageToPdfOptionsPanel::buildRequest() const
{
    constexpr int kPortrait = 0;
    constexpr int kLandscape = 1;
    TaskRequest request = ToolOptionsPanel::buildRequest();
    request.options.insert(QStringLiteral("pageSize"), valueOf(*m_pageSize));
    request.options.insert(QStringLiteral("pageMargin"), valueOf(*m_margin));
    request.options.insert(QStringLiteral("singlePdf"), isSinglePdf());
    request.options.insert(QStringLiteral("pageOrientation"),
                           m_portrait->isSelected() ? kPortrait : kLandscape);
    return request;
}

bool ImageToPdfOptionsPanel::isSinglePdf() const
{
    return m_singlePdf->isChecked();
}
