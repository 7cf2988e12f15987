// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdf/viewer/commands/document_saver.h"

#include <QObject>
#include <QString>

class PdfDocumentModel;
class PdfRenderManager;
class PdfUndoManager;
class QWidget;

/// The commands that concern the file of a document: opening, saving, printing and showing it in
/// its folder.
///
/// Questions and errors come up in boxes over the window of the parent, which may be deleted while
/// one is open. Model, render manager and history live at least as long as the parent. Lives on the
/// interface thread.
class PdfFileCommands final : public QObject
{
    Q_OBJECT

public:
    PdfFileCommands(PdfDocumentModel *model, PdfRenderManager *renderManager,
                    PdfUndoManager *undoManager, QWidget *parent);
    ~PdfFileCommands() override;

    /// Loads a file in place of the document, after asking about unsaved changes, and asks for a
    /// password as long as the file needs another one. Pending images are cancelled. False when
    /// nothing was opened; the document then stays.
    bool open(const QString &path, const QString &password);

    /// Asks what to do with unsaved changes; true when the document may be replaced or closed.
    [[nodiscard]] bool maybeSave();
    /// Writes the document to its file, or to one that the user chooses if it has none.
    bool save();
    /// Lets the user choose a file to save to.
    bool promptSaveAs();
    /// Writes the document to `path`, which becomes its file. Returns when it is written; the
    /// window stays alive meanwhile. Refused while another save runs.
    bool saveAs(const QString &path);
    /// Replaces what writes documents.
    void setSaveFunction(PdfSaveFunction write);

    /// Prints the document after the user has chosen how.
    void print();
    /// Shows the document's file, if it has one, in the file manager.
    void revealInFolder() const;

signals:
    /// The model holds the document of another file.
    void opened();
    /// Images were cancelled for a file that was not opened; the document stays. Comes before the
    /// user is told of a failure.
    void notOpened();
    /// The document was written to `path`, which is its file now.
    void saved(const QString &path);

private:
    PdfDocumentModel *m_model;
    PdfRenderManager *m_renderManager;
    PdfUndoManager *m_undoManager;
    QWidget *m_parent; ///< Of boxes; owns this.
    PdfSaveFunction m_write;
    bool m_saving = false;
};
