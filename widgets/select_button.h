// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "widgets/choice_button.h"

/// One of a row of choices of which one is selected, such as the orientation of pages.
class SelectButton final : public ChoiceButton
{
    Q_OBJECT

public:
    explicit SelectButton(const QString &text, QWidget *parent = nullptr);
    ~SelectButton() override;

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
};
