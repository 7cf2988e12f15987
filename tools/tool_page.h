// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QWidget>

class QLabel;
class ToolOptionsPanel;

/// The frame of every page of a batch tool: what the tool works on, a line, and its options.
class ToolPage : public QWidget
{
    Q_OBJECT

public:
    [[nodiscard]] ToolOptionsPanel *optionsPanel() const { return m_panel; }

protected:
    /// Takes both widgets.
    ToolPage(QWidget *content, ToolOptionsPanel *panel, QWidget *parent);

    void setOptionsVisible(bool visible);

private:
    QLabel *m_separator;
    ToolOptionsPanel *m_panel;
};
