// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "widgets/framed_line_edit.h"

/// A field that reports what it holds when the user has finished editing it.
class CLineEdit final : public FramedLineEdit
{
    Q_OBJECT

public:
    explicit CLineEdit(QWidget *parent = nullptr);
    ~CLineEdit() override;

signals:
    /// The Enter key was pressed, or the field lost the keyboard focus.
    void sigEditFinished(const QString &value);
};
