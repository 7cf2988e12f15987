// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QWidget>

class QPropertyAnimation;

/// A switch whose knob slides from off to on and back. It starts off.
class SwitchButton final : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(bool checked READ isChecked WRITE setChecked NOTIFY toggled)
    Q_PROPERTY(double sliderPosition READ sliderPosition WRITE setSliderPosition)

public:
    explicit SwitchButton(QWidget *parent = nullptr);
    ~SwitchButton() override;

    [[nodiscard]] bool isChecked() const { return m_checked; }
    /// Where the knob is: from 0 for off to 1 for on.
    [[nodiscard]] double sliderPosition() const { return m_sliderPosition; }

    /// Sets the switch in silence and puts the knob there at once.
    void setChecked(bool checked);
    void setSliderPosition(double position);

signals:
    /// The user switched. Comes while the knob still slides.
    void toggled(bool checked);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void toggle();

    bool m_checked = false;
    double m_sliderPosition = 0.0;
    QPropertyAnimation *m_animation;
};
