// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QLineEdit>

/// A line edit with the frame of the other fields of the program.
class FramedLineEdit : public QLineEdit
{
    Q_OBJECT
    Q_PROPERTY(int lineWidth READ lineWidth WRITE setLineWidth NOTIFY lineWidthChanged)

public:
    ~FramedLineEdit() override;

    /// Of the frame, in logical pixels; 0 draws none.
    [[nodiscard]] int lineWidth() const { return m_lineWidth; }
    [[nodiscard]] QSize sizeHint() const override;

    void setLineWidth(int width);

signals:
    void lineWidthChanged(int width);

protected:
    explicit FramedLineEdit(QWidget *parent);

    void changeEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    int m_lineWidth = 1;
};
