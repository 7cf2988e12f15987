// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QAbstractButton>

/// A button that shows nothing but an icon. Its tool tip is also its accessible name. A checked
/// one has a tinted face.
class IconOnlyButton final : public QAbstractButton
{
    Q_OBJECT

public:
    /// `iconSize` is the side of the icon in logical pixels.
    explicit IconOnlyButton(const QIcon &icon, int iconSize = 20, QWidget *parent = nullptr);
    ~IconOnlyButton() override;

    [[nodiscard]] QSize sizeHint() const override;

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    [[nodiscard]] QColor fillNow() const;
};
