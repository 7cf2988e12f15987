// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QFrame>

class QSlider;
class QToolButton;

/// The floating bar that zooms the page grid, in percent.
class PageGridZoomControl final : public QFrame
{
    Q_OBJECT

public:
    explicit PageGridZoomControl(QWidget *parent = nullptr);
    ~PageGridZoomControl() override;

signals:
    void zoomChanged(int percent);

private:
    [[nodiscard]] QToolButton *makeButton(const QString &name, const QString &icon,
                                          const QString &toolTip);
    void updateButtons();

    QToolButton *m_zoomOut;
    QSlider *m_slider;
    QToolButton *m_zoomIn;
};
