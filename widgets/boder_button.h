// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QAbstractButton>
#include <QColor>
#include <QPixmap>

/// A flat button with a border, which shows a picture, a white text or both, in the middle.
///
/// The fill is lighter under the pointer and darker while the button is pressed.
class BoderButton final : public QAbstractButton
{
    Q_OBJECT
    Q_PROPERTY(QColor backgroundColor READ backgroundColor WRITE setBackgroundColor NOTIFY
                   backgroundColorChanged)
    Q_PROPERTY(QColor borderColor READ borderColor WRITE setBorderColor NOTIFY borderColorChanged)
    Q_PROPERTY(int borderWidth READ borderWidth WRITE setBorderWidth NOTIFY borderWidthChanged)
    Q_PROPERTY(int radius READ radius WRITE setRadius NOTIFY radiusChanged)

public:
    explicit BoderButton(QWidget *parent = nullptr);
    explicit BoderButton(const QString &text, QWidget *parent = nullptr);
    ~BoderButton() override;

    [[nodiscard]] QColor backgroundColor() const { return m_backgroundColor; }
    [[nodiscard]] QColor borderColor() const { return m_borderColor; }
    /// In logical pixels, like the radius, which is that of the outer edge.
    [[nodiscard]] int borderWidth() const { return m_borderWidth; }
    [[nodiscard]] int radius() const { return m_radius; }
    [[nodiscard]] QPixmap pixmap() const { return m_pixmap; }
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

    void setBackgroundColor(const QColor &color);
    void setBorderColor(const QColor &color);
    void setBorderWidth(int width);
    void setRadius(int radius);
    /// Drawn at its own size; a null one is none.
    void setPixmap(const QPixmap &pixmap);

signals:
    void backgroundColorChanged(const QColor &color);
    void borderColorChanged(const QColor &color);
    void borderWidthChanged(int width);
    void radiusChanged(int radius);

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    [[nodiscard]] QColor fillNow() const;
    [[nodiscard]] int textWidth() const;

    QColor m_backgroundColor;
    QColor m_borderColor;
    int m_borderWidth = 1;
    int m_radius = 5;
    QPixmap m_pixmap;
};
