// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "widgets/choice_button.h"

#include <QIcon>

/// One of several choices that are types, such as those of files: an icon and the type's name.
class TypeButton final : public ChoiceButton
{
    Q_OBJECT
    Q_PROPERTY(QIcon icon READ icon WRITE setIcon)

public:
    /// A null icon shows none.
    explicit TypeButton(const QString &text, const QIcon &icon = {}, QWidget *parent = nullptr);
    ~TypeButton() override;

    [[nodiscard]] QIcon icon() const { return m_icon; }
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

    void setIcon(const QIcon &icon);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QIcon m_icon;
};
