// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tools/options/save_option.h"

#include "widgets/theme.h"
#include "widgets/widget_font.h"

#include <QButtonGroup>
#include <QRadioButton>
#include <QVBoxLayout>

namespace {

constexpr int kFontSize = 14;

// %1 text
constexpr QLatin1String kStyleSheet{"QRadioButton { color: %1; background: transparent;"
                                    " spacing: 8px; padding: 4px 0; }"};

} // namespace

SaveOption::SaveOption(QWidget *parent)
    : QWidget(parent)
    , m_replace(new QRadioButton(tr("替换原始文件"), this))
    , m_keep(new QRadioButton(tr("保留原始文件"), this))
{
    auto *group = new QButtonGroup(this);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    for (QRadioButton *button : {m_replace, m_keep}) {
        button->setFont(widgetFont(kFontSize));
        button->setCursor(Qt::PointingHandCursor);
        button->setFocusPolicy(Qt::NoFocus);
        group->addButton(button);
        column->addWidget(button);
    }
    m_replace->setObjectName(QStringLiteral("replaceSourceButton"));
    m_keep->setObjectName(QStringLiteral("keepSourceButton"));
    setStyleSheet(kStyleSheet.arg(Theme::ink.name()));
    m_keep->setChecked(true);
}

int SaveOption::value() const
{
    constexpr int kReplaces = 0;
    constexpr int kKeeps = 1;
    return m_replace->isChecked() ? kReplaces : kKeeps;
}
