// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QDialog>
#include <QPointer>
#include <QString>

class QFrame;
class QHBoxLayout;
class QVBoxLayout;

/// What a ModernMessageBox shows. A default record is an information box with one button.
struct MessageBoxOptions
{
    /// A value of ModernMessageBox::Kind; any other counts as information.
    int kind = 0;
    QString title;
    /// Empty for no message.
    QString message;
    /// Empty for no details.
    QString details;
    /// Texts of the buttons; empty for the usual ones.
    QString confirmText;
    QString discardText;
    QString cancelText;
    bool showDiscard = false;
    bool showCancel = false;
    bool showConfirm = true;
    /// Shows a busy bar that tells of no amount.
    bool showProgress = false;
    /// Lets Escape, the cancel button and the window system close the box.
    bool closable = true;
};

/// The program's message, question and busy box: a modal card over its dimmed window.
///
/// Texts are shown as they are, markup is not interpreted. Texts too long for the screen scroll.
///
/// The static functions run a box and return when it was answered. Their parent, and the box with
/// it, may be deleted meanwhile, which counts as Cancelled.
class ModernMessageBox final : public QDialog
{
    Q_OBJECT

public:
    enum Kind : int {
        Information = 0,
        Success = 1,
        Warning = 2,
        Danger = 3,
    };

    enum Result : int {
        Cancelled = 0, ///< Also for a box that was closed.
        Confirmed = 1,
        Discarded = 2,
    };

    explicit ModernMessageBox(const MessageBoxOptions &options, QWidget *parent = nullptr);
    ~ModernMessageBox() override;

    /// A property of windows that are not seen as rectangles: the QRegion that the backdrop of a
    /// box covers. Others are covered whole.
    static constexpr char kBackdropShapeProperty[] = "modalBackdropShape";

    /// How the box was answered: a value of Result. Hides QDialog::result().
    [[nodiscard]] int result() const { return m_result; }

    /// Asks with a cancel and a confirm button; returns Cancelled or Confirmed.
    static int question(QWidget *parent, const QString &title, const QString &message,
                        const QString &details, const QString &confirmText,
                        const QString &cancelText, int kind);
    /// Asks with a cancel, a discard and a confirm button; returns a value of Result.
    static int questionWithDiscard(QWidget *parent, const QString &title, const QString &message,
                                   const QString &details, const QString &confirmText,
                                   const QString &discardText, const QString &cancelText, int kind);
    static void showMessage(QWidget *parent, int kind, const QString &title, const QString &message,
                            const QString &details);
    static void showSuccess(QWidget *parent, const QString &title, const QString &message,
                            const QString &details);
    static void showWarning(QWidget *parent, const QString &title, const QString &message,
                            const QString &details);
    static void showError(QWidget *parent, const QString &title, const QString &message,
                          const QString &details);

public slots:
    /// Closes a closable box with the result Cancelled; does nothing to any other.
    void reject() override;

protected:
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    void fillCard();
    [[nodiscard]] QHBoxLayout *createButtons();
    void fitSize();
    void makeTextsScroll();
    void showBackdrop();
    void moveToCentre();
    void finishWith(Result result);

    MessageBoxOptions m_options;
    int m_result = Cancelled;
    QPointer<QWidget> m_backdrop;
    QFrame *m_card;
    QVBoxLayout *m_texts;
};
