// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tools/tool_page.h"

#include "tools/common/separator_line.h"
#include "tools/options/tool_options_panel.h"

#include <QHBoxLayout>
#include <QLabel>

ToolPage::ToolPage(QWidget *content, ToolOptionsPanel *panel, QWidget *parent)
    : QWidget(parent)
    , m_separator(createSeparator(Qt::Vertical, this))
    , m_panel(panel)
{
    m_separator->setObjectName(QStringLiteral("toolSeparator"));

    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    row->addWidget(content, 1);
    row->addWidget(m_separator);
    row->addWidget(m_panel);
}

void ToolPage::setOptionsVisible(bool visible)
{
    m_separator->setVisible(visible);
    m_panel->setVisible(visible);
}
