// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdf/viewer/side_panel/page_output_plan.h"

#include <QList>
#include <QObject>
#include <QPoint>
#include <QString>
#include <QStringList>

class PdfDocumentModel;
class PdfUndoManager;
class QWidget;

/// The commands that bring pages into a document and write pages of it to files of their own.
///
/// Rows are counted from zero. Questions and errors come up in boxes over the window of the parent,
/// which may be deleted while one is open. Model and history live at least as long as the parent.
/// Lives on the interface thread.
class PdfPageCommands final : public QObject
{
    Q_OBJECT

public:
    PdfPageCommands(PdfDocumentModel *model, PdfUndoManager *undoManager, QWidget *parent);
    ~PdfPageCommands() override;

    /// Inserts the pages of the files before `beforeRow`, in order, asking for passwords. A file
    /// that cannot be inserted is left out.
    void insertFiles(const QStringList &files, int beforeRow);
    /// Lets the user choose the files to insert.
    void chooseInsertFiles(int beforeRow);
    /// Offers what can be inserted before `beforeRow` in a menu.
    void showInsertMenu(int beforeRow, const QPoint &globalPosition);

    /// Writes the selected pages to files of their own, or to one, in `outputDirectory`.
    void extractPages(bool combineIntoOne, const QString &outputDirectory) const;
    /// Writes the parts between the cuts to files in `outputDirectory`: a cut before each of
    /// `beforeRows`, or before every page.
    void splitDocument(bool everyPage, const QList<int> &beforeRows,
                       const QString &outputDirectory) const;

private:
    /// What the user is told about a batch of files that were written.
    struct BatchTexts
    {
        QString noFolderTitle;
        QString failedTitle;
        QString doneTitle;
    };

    bool insertFile(const QString &file, int row);
    void insertBlankPage(int beforeRow);
    [[nodiscard]] QString baseName() const;
    void writeFiles(const QList<PageOutputFile> &plan, const QString &outputDirectory,
                    const BatchTexts &texts) const;

    PdfDocumentModel *m_model;
    PdfUndoManager *m_undoManager;
    QWidget *m_parent; ///< Of boxes and menus; owns this.
};
