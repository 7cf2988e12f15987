// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QAbstractButton>
#include <QColor>

/// A button with a text and, beside it, an icon: for adding, clearing, starting and restarting.
///
/// The text is white on the accent unless the colours are set. An icon of one colour is greyed when
/// the button is disabled. Text that does not fit is elided and shown whole in a tool tip.
class IconButton final : public QAbstractButton
{
    Q_OBJECT

public:
    explicit IconButton(const QString &text, QWidget *parent = nullptr);
    ~IconButton() override;

    /// Wide enough for icon and text.
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

    void setFillColor(const QColor &color);
    void setHoverFillColor(const QColor &color);
    /// An invalid colour, the initial one, leaves the line out.
    void setBorderColor(const QColor &color);
    void setTextColor(const QColor &color);
    /// Shows the picture of a resource path in a square of that side, in logical pixels. An empty
    /// path shows none.
    void setIconPixmap(const QString &iconPath, int size);

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    [[nodiscard]] QColor fillNow() const;
    /// 0 without an icon.
    [[nodiscard]] int iconSide() const;
    [[nodiscard]] int textWidth() const;
    /// Icon, gap and text together.
    [[nodiscard]] int contentWidth() const;

    QColor m_fill;
    QColor m_hoverFill;
    QColor m_border;
    QColor m_textColor;
};
