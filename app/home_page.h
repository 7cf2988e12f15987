// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QWidget>

class QLabel;
class QListWidget;
class QListWidgetItem;
class QStackedWidget;

/// The first tab of the workspace: opens a PDF, starts a tool, lists the recently opened files.
///
/// The list holds the files of the recent-file store that exist when the page is made; files
/// recorded later are put on top.
class HomePage final : public QWidget
{
    Q_OBJECT

public:
    explicit HomePage(QWidget *parent = nullptr);

    /// Records the file at `path` as recently opened and lists it, unless the store has it.
    void recordFile(const QString &path);

signals:
    /// The user has chosen the tool `toolType`, a value of ToolType.
    void toolClicked(int toolType);
    /// The user wants to open the file at `filePath`, which is not recorded yet.
    void openFile(const QString &filePath);
    /// The user has clicked the recent file at `path`.
    void fileClicked(const QString &path);

private:
    [[nodiscard]] QWidget *createHeader();
    [[nodiscard]] QWidget *createToolGrid();
    [[nodiscard]] QWidget *createRecentList();
    [[nodiscard]] QLabel *createSectionTitle(const QString &text);
    void chooseFile();
    void insertExistingFile(int row, const QString &path);

    QListWidget *m_recentFiles = nullptr;
    QStackedWidget *m_recentStack = nullptr;
};
