// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "tools/tool_page.h"

class QListWidget;

/// A tool page that can be handed an input file, which it shows in a list.
class FileInputPage : public ToolPage
{
    Q_OBJECT

public:
    FileInputPage(const QString &iconPath, const QString &title, const QString &description,
                  QWidget *parent = nullptr);

    /// Full paths of the input files in list order.
    [[nodiscard]] QStringList inputFiles() const;

    /// Appends the file at `path`. An empty path and a file that is listed already do nothing.
    void addInputFile(const QString &path);

private:
    QListWidget *m_list;
};
