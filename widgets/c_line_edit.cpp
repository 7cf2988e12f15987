// SPDX-License-Identifier: AGPL-3.0-or-later
#include "widgets/c_line_edit.h"

CLineEdit::CLineEdit(QWidget *parent)
    : FramedLineEdit(parent)
{
    connect(this, &QLineEdit::editingFinished, this, [this] { emit sigEditFinished(text()); });
}

CLineEdit::~CLineEdit() = default;
