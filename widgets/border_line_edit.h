// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "widgets/framed_line_edit.h"

class QIntValidator;

/// A field for a whole number. Takes any that fits an int until it is given a range.
class BorderLineEdit final : public FramedLineEdit
{
    Q_OBJECT

public:
    explicit BorderLineEdit(QWidget *parent = nullptr);
    ~BorderLineEdit() override;

    /// The number, 0 where there is none yet.
    [[nodiscard]] int value() const;

    void setValue(int value);
    /// Both ends belong to the range.
    void setRange(int minimum, int maximum);

private:
    QIntValidator *m_validator;
};
