// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tools/tool_page.h"

#include "widgets/theme.h"

#include <QIcon>
#include <QLabel>
#include <QVBoxLayout>

namespace {

constexpr int kIconSize = 64;
constexpr int kColumnWidth = 520;

// %1 title, %2 description
constexpr QLatin1String kStyleSheet("QLabel#toolTitle { color: %1; background: transparent;"
                                    " font-size: 18px; font-weight: 600; }"
                                    "QLabel#toolDescription { color: %2; background: transparent;"
                                    " font-size: 14px; }");

QLabel *centredLabel(const QString &objectName, const QString &text, QWidget *parent)
{
    auto *label = new QLabel(text, parent);
    label->setObjectName(objectName);
    label->setAlignment(Qt::AlignCenter);
    label->setWordWrap(true);
    label->setTextFormat(Qt::PlainText);
    return label;
}

} // namespace

ToolPage::ToolPage(const QString &iconPath, const QString &title, const QString &description,
                   QWidget *parent)
    : QWidget(parent)
{
    setStyleSheet(kStyleSheet.arg(Theme::ink.name(), Theme::textSecondary.name()));

    auto *icon = new QLabel(this);
    icon->setAlignment(Qt::AlignCenter);
    icon->setPixmap(QIcon(iconPath).pixmap(QSize(kIconSize, kIconSize), devicePixelRatioF()));

    auto *body = new QWidget(this);
    body->setMaximumWidth(kColumnWidth);
    m_column = new QVBoxLayout(body);
    m_column->setContentsMargins(0, 0, 0, 0);
    m_column->setSpacing(8);
    m_column->addWidget(icon);
    m_column->addSpacing(8);
    m_column->addWidget(centredLabel(QStringLiteral("toolTitle"), title, body));
    m_column->addWidget(centredLabel(QStringLiteral("toolDescription"), description, body));

    auto *rows = new QVBoxLayout;
    rows->setContentsMargins(24, 24, 24, 64);
    rows->addStretch(1);
    rows->addWidget(body, 0);
    rows->addStretch(1);

    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addStretch(1);
    layout->addLayout(rows, 4);
    layout->addStretch(1);
}
