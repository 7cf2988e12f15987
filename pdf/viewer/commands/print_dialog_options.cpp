// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/commands/print_dialog_options.h"

#include "widgets/theme.h"

#include <QEvent>
#include <QPrintDialog>
#include <QWidget>

namespace {

// %1 disabled text. The application's palette makes no difference between the states.
constexpr QLatin1String kStyleSheet{R"(
QAbstractButton:disabled, QLabel:disabled, QLineEdit:disabled, QAbstractSpinBox:disabled,
QComboBox:disabled, QGroupBox:disabled { color: %1; }
)"};

/// What the print server does, in the dialog that Qt brings for X11 and Wayland.
constexpr QLatin1String kServerControls[] = {QLatin1String("copies"), QLatin1String("collate"),
                                             QLatin1String("reverse")};

/// A control that this dialog enables with a print server only.
constexpr QLatin1String kServerOnlyControl{"pagesRadioButton"};

/// Enables the controls of the server's work together with another control.
class ServerControls final : public QObject
{
public:
    ServerControls(QWidget &dialog, QWidget &leader)
        : QObject(&leader)
        , m_dialog(dialog)
        , m_leader(leader)
    {
        leader.installEventFilter(this);
        follow();
    }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::EnabledChange) {
            follow();
        }
        return QObject::eventFilter(watched, event);
    }

private:
    void follow()
    {
        for (const QLatin1String name : kServerControls) {
            if (auto *control = m_dialog.findChild<QWidget *>(name)) {
                control->setEnabled(m_leader.isEnabled());
            }
        }
    }

    QWidget &m_dialog;
    QWidget &m_leader;
};

} // namespace

void offerWhatIsPrinted(QPrintDialog &dialog)
{
    dialog.setStyleSheet(QString(kStyleSheet).arg(Theme::textMuted.name()));
    if (auto *leader = dialog.findChild<QWidget *>(kServerOnlyControl)) {
        // It belongs to that control.
        new ServerControls(dialog, *leader);
    }
}
