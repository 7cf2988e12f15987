// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "taskcenter/task_request.h"
#include "tools/options/output_location.h"

#include <QWidget>

class ModernComboBox;
class QVBoxLayout;

/// What every panel of a tool's options has: a title, sections, the place of the results and the
/// button that starts the tool. Sections scroll where there is no room for all of them.
class ToolOptionsPanel : public QWidget
{
    Q_OBJECT

public:
    static constexpr int kWidth = 320;

    /// A request with what was chosen here; who asks adds type and files.
    [[nodiscard]] virtual TaskRequest buildRequest() const;

    [[nodiscard]] ModernComboBox *locationBox() const { return m_location; }

signals:
    void startClicked();

protected:
    /// The texts are translated already.
    ToolOptionsPanel(const QString &title, const QString &startText, OutputLocation::Source source,
                     QWidget *parent);

    /// Appends a heading; what is added after it belongs to it.
    void addHeading(const QString &text);
    /// Appends a widget to the section.
    void addControl(QWidget *control);
    /// Appends a text that names something.
    void addText(const QString &text);
    /// Appends a note, which explains something in a line or more.
    void addNote(const QString &text);
    /// Appends a line between two sections.
    void addSeparator();
    /// Appends a box with a value in kValueRole for each text, counted from `firstValue`; the first
    /// is chosen.
    ModernComboBox *addChoice(const QString &objectName, const QStringList &texts, int firstValue);

    /// The value of the chosen item of such a box.
    [[nodiscard]] static int valueOf(const ModernComboBox &box);

    static constexpr int kValueRole = Qt::UserRole + 3;

private:
    QVBoxLayout *m_sections;
    ModernComboBox *m_location;
};
