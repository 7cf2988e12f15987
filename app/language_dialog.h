// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QDialog>

class QButtonGroup;
class QFrame;
class QGridLayout;
class QHBoxLayout;
class QPushButton;

/// The modal picker of the interface language.
///
/// Applying another language than the one in force asks first, because the workspace is built anew
/// and its tabs close. The caller runs the dialog with exec().
class LanguageDialog final : public QDialog
{
    Q_OBJECT

public:
    explicit LanguageDialog(QWidget *parent = nullptr);

protected:
    void showEvent(QShowEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    [[nodiscard]] QFrame *createFrame();
    [[nodiscard]] QGridLayout *createCards();
    [[nodiscard]] QHBoxLayout *createButtons();
    void apply();

    QButtonGroup *m_cards;
    QPushButton *m_applyButton;
};
