// SPDX-License-Identifier: AGPL-3.0-or-later
#include "widgets/border_line_edit.h"

#include <QIntValidator>

BorderLineEdit::BorderLineEdit(QWidget *parent)
    : FramedLineEdit(parent)
    , m_validator(new QIntValidator(this))
{
    setValidator(m_validator);
    setInputMethodHints(Qt::ImhDigitsOnly);
}

BorderLineEdit::~BorderLineEdit() = default;

int BorderLineEdit::value() const
{
    return locale().toInt(text());
}

void BorderLineEdit::setValue(int value)
{
    setText(QString::number(value));
}

void BorderLineEdit::setRange(int minimum, int maximum)
{
    m_validator->setRange(minimum, maximum);
}
