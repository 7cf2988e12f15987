// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QCheckBox>

/// A check box whose text is broken into lines where room is scarce.
///
/// Draws its indicator from the pictures in ":/res/checkbox/".
class WrappedCheckBox final : public QCheckBox
{
    Q_OBJECT

public:
    explicit WrappedCheckBox(const QString &text, QWidget *parent = nullptr);
    ~WrappedCheckBox() override;

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;
    [[nodiscard]] int heightForWidth(int width) const override;

protected:
    [[nodiscard]] bool hitButton(const QPoint &position) const override;
    void paintEvent(QPaintEvent *event) override;

private:
    /// The lines of the text at a width of the whole check box.
    [[nodiscard]] QSize textSize(int width) const;
    /// Indicator and text together, without the room left beside them.
    [[nodiscard]] QRect contentRect() const;
};
