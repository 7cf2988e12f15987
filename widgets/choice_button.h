// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "widgets/choice_card.h"

#include <QString>
#include <QWidget>

/// What the buttons for one of several choices have in common. The owner selects the clicked one
/// and deselects the others.
class ChoiceButton : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(bool selected READ isSelected WRITE setSelected)
    Q_PROPERTY(QString text READ text WRITE setText)

public:
    ~ChoiceButton() override;

    [[nodiscard]] bool isSelected() const { return m_selected; }
    [[nodiscard]] QString text() const { return m_text; }

    /// Does so in silence.
    void setSelected(bool selected);
    void setText(const QString &text);

signals:
    /// The user clicked the button, selected or not.
    void sigSelected();

protected:
    ChoiceButton(const QString &text, QWidget *parent);

    /// How card and text look at present.
    [[nodiscard]] ChoiceCard::State cardState() const;

    bool event(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    QString m_text;
    bool m_selected = false;
    /// The left button went down here and is still held.
    bool m_held = false;
    /// It is held and the pointer is over the button.
    bool m_down = false;
};
