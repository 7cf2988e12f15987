// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tools/options/save_option.h"

#include "widgets/theme.h"
#include "widgets/widget_font.h"

#include <QButtonGroup>
#include <QRadioButton>
#include <QVBoxLayout>

namespace {

constexpr int kFontSize = 14;

// %1 text, %2 ring, %3 ring under the pointer, %4 chosen, %5 disabled, %6 white
constexpr QLatin1String kStyleSheet{R"(
QRadioButton { color: %1; background: transparent; spacing: 8px; padding: 4px 0; }
QRadioButton:disabled { color: %5; }
QRadioButton::indicator {
    width: 14px; height: 14px; border: 1px solid %2; border-radius: 8px; background: %6;
}
QRadioButton::indicator:hover { border-color: %3; }
QRadioButton::indicator:checked {
    width: 6px; height: 6px; border: 5px solid %4; border-radius: 8px; background: %6;
}
QRadioButton::indicator:disabled { border-color: %5; }
)"};

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
    setStyleSheet(kStyleSheet.arg(Theme::ink.name(), Theme::borderStrong.name(),
                                  Theme::textMuted.name(), Theme::accent.name(),
                                  Theme::textDisabled.name(), Theme::white.name()));
    m_keep->setChecked(true);
}

int SaveOption::value() const
{
    constexpr int kReplaces = 0;
    constexpr int kKeeps = 1;
    return m_replace->isChecked() ? kReplaces : kKeeps;
}
