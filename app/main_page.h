// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QList>
#include <QPointer>
#include <QWidget>

class CustomTabWidget;
class HomePage;
class PdfShowPage;

/// The content of the main window: the workspace tabs.
///
/// The first tab is the home page and never closes. Further tabs are tool pages, at most one per
/// tool, and viewers, at most one per file.
class MainPage final : public QWidget
{
    Q_OBJECT

public:
    explicit MainPage(QWidget *parent = nullptr);

    /// Index of the first tab that shows the tool `toolType`, a value of ToolType, or -1.
    [[nodiscard]] int indexOfTool(int toolType) const;

    /// Shows the tab of the tool `toolType` (a value of ToolType), creating it at the end when
    /// needed. Other numbers do nothing.
    void openTool(int toolType);
    /// openTool(), then hands `filePath` to the page if the tool takes a file.
    void openToolWithFile(int toolType, const QString &filePath);
    /// Shows the viewer tab of the file at `path`, opening it when needed; nothing is recorded.
    ///
    /// A file that does not open leaves no tab; the viewer has told the user why.
    void openFileInTab(const QString &path);
    /// Asks about the unsaved changes of each tab in turn, with the tab in front, and then whether
    /// tasks are to be stopped that have not ended; false when the user wants to go on working.
    [[nodiscard]] bool maybeClose();

public slots:
    /// openFileInTab(), then records `path` as recently opened, whatever came of it.
    void openFile(const QString &path);

private:
    /// Shows the file at `path` as the one of the tab of `page`.
    void setFileOf(QWidget *page, const QString &path);
    /// Follows the document of `page` to the file it was saved to, and closes other tabs of that
    /// file, which show what it was before, unless they hold changes of their own.
    void noteSaved(QWidget *page, const QString &path);
    /// Whether no task is at work, or the user lets them be stopped, which the end of the program
    /// does.
    [[nodiscard]] bool maybeStopTasks();
    /// The pages of the viewer tabs in the order of the tabs.
    [[nodiscard]] QList<QPointer<PdfShowPage>> viewerPages() const;
    [[nodiscard]] int indexOfFile(const QString &normalizedPath) const;

    CustomTabWidget *m_tabs;
    HomePage *m_home;
};
