// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tools/options/switch_row.h"

#include "widgets/switch_button.h"
#include "widgets/text_alignment.h"
#include "widgets/theme.h"
#include "widgets/widget_font.h"

#include <QHBoxLayout>
#include <QLabel>

namespace {

constexpr int kFontSize = 14;
constexpr int kGap = 12;

// %1 text
constexpr QLatin1String kTextStyleSheet{
    "QLabel#switchText { color: %1; background: transparent; }"};

} // namespace

SwitchRow::SwitchRow(const QString &text, QWidget *parent)
    : QWidget(parent)
    , m_switch(new SwitchButton(this))
{
    auto *label = new QLabel(text, this);
    label->setObjectName(QStringLiteral("switchText"));
    label->setFont(widgetFont(kFontSize));
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setAlignment(leadingSide(layoutDirection()) | Qt::AlignVCenter);
    label->setStyleSheet(kTextStyleSheet.arg(Theme::ink.name()));
    m_switch->setAccessibleName(text);

    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(kGap);
    row->addWidget(label, 1);
    row->addWidget(m_switch);
}
