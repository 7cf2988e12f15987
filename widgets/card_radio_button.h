// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QString>
#include <QWidget>

class QRadioButton;

/// A card with a title and a line of description, for one of several choices.
///
/// A click anywhere on the card checks it. Cards exclude each other when their owner puts their
/// radio buttons into one group.
class CardRadioButton final : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(bool checked READ isChecked WRITE setChecked NOTIFY toggled)

public:
    CardRadioButton(const QString &title, const QString &description, QWidget *parent = nullptr);
    ~CardRadioButton() override;

    /// Covers the card and belongs to it.
    [[nodiscard]] QRadioButton *radioButton() const { return m_radioButton; }
    [[nodiscard]] bool isChecked() const;
    void setChecked(bool checked);

signals:
    void toggled(bool checked);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    QRadioButton *m_radioButton;
};
