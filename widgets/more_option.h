// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QCheckBox>

/// A check box drawn as a line of a list of options. A click anywhere on the line toggles it.
class MoreOption final : public QCheckBox
{
    Q_OBJECT

public:
    explicit MoreOption(const QString &text, QWidget *parent = nullptr);
    ~MoreOption() override;

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    bool event(QEvent *event) override;
    [[nodiscard]] bool hitButton(const QPoint &position) const override;
    void paintEvent(QPaintEvent *event) override;
};
