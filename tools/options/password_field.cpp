// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tools/options/password_field.h"

#include "widgets/password_input.h"
#include "widgets/text_alignment.h"
#include "widgets/widget_font.h"

#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

namespace {

constexpr int kMessageSize = 12;
constexpr int kInputHeight = 45;
constexpr int kGap = 4;

constexpr QLatin1String kMessageStyleSheet{"QLabel{background-color:transparent;color:#F53F3F;}"};

} // namespace

PasswordField::PasswordField(QWidget *parent)
    : QWidget(parent)
    , m_input(new PasswordInput(this))
    , m_label(new QLabel(this))
{
    m_input->setFixedHeight(kInputHeight);
    m_label->setObjectName(QStringLiteral("passwordMessage"));
    m_label->setFont(widgetFont(kMessageSize));
    m_label->setTextFormat(Qt::PlainText);
    m_label->setWordWrap(true);
    m_label->setAlignment(leadingSide(layoutDirection()) | Qt::AlignVCenter);
    m_label->setStyleSheet(kMessageStyleSheet);
    m_label->hide();

    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(kGap);
    column->addWidget(m_input);
    column->addWidget(m_label);
    connect(m_input->lineEdit(), &QLineEdit::textChanged, this, &PasswordField::textChanged);
}

QString PasswordField::text() const
{
    return m_input->text();
}

void PasswordField::showMessage(const QString &message)
{
    m_label->setText(message);
    setMessageVisible(true);
}

void PasswordField::setMessageVisible(bool visible)
{
    m_label->setVisible(visible);
}

void PasswordField::setError(bool error)
{
    m_input->setError(error);
}
