// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QWidget>

class QListWidget;
class QListWidgetItem;

/// The list that a ModernComboBox opens: a pop-up of one height, whatever it holds.
///
/// The frame is as high as the items need, up to that height, and lies at the side of the box; the
/// rest of the pop-up is transparent. It hides when it loses the focus, with Escape, with a click
/// beside the frame, and when the window of its box moves or is not the active one any more.
class ComboPopup final : public QWidget
{
    Q_OBJECT

public:
    /// Of the pop-up, in logical pixels. Above a box it leaves a gap of the same width as below.
    static constexpr int kHeight = 207;

    /// The pop-up belongs to the box.
    explicit ComboPopup(QWidget *box);
    ~ComboPopup() override;

    [[nodiscard]] QListWidget *list() const { return m_list; }
    /// What is seen of the pop-up, in its own coordinates.
    [[nodiscard]] QRect frameRect() const;

    /// Puts the frame at the lower edge, for a pop-up above its box, or else at the upper one.
    void setFrameAtBottom(bool atBottom);

signals:
    /// The user clicked the item, or pressed the Enter key on it.
    void itemChosen(QListWidgetItem *item);

protected:
    bool event(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    void fitFrame();
    bool handleListKey(const QKeyEvent &event);

    QWidget *m_box;
    QListWidget *m_list;
    bool m_frameAtBottom = false;
};
