// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdf/core/pdf_page_record.h"

#include <QList>
#include <QObject>
#include <QPointer>
#include <QSizeF>
#include <QString>

class PdfDocumentModel;
class QUndoStack;

/// The edit history of one document: every page edit becomes a step that can be undone.
///
/// An edit is made through the operations below, each of which lets the model do the work and
/// keeps its page list from before and after, sharing what they have in common. Moves that views
/// make on the model themselves are noticed and become steps as soon as the event loop runs. What
/// changes nothing makes no step. The model's modified flag follows the clean state of the stack.
///
/// Lives on the interface thread. The model may be destroyed before the manager, which is not to be
/// used any more then.
class PdfUndoManager final : public QObject
{
    Q_OBJECT

public:
    PdfUndoManager(PdfDocumentModel *model, QObject *parent);
    ~PdfUndoManager() override;

    /// The steps and their texts; owned by the manager, never null.
    [[nodiscard]] QUndoStack *undoStack() const { return m_stack; }

    /// Each of these does what PdfDocumentModel does and returns what that returns.
    bool insertPdf(const QString &path, int row, const QString &password, PdfBackendError *error,
                   QString *message);
    PdfPageId insertBlankPage(int row, QSizeF size);
    QList<PdfPageId> duplicatePages(const QList<PdfPageId> &ids);
    void deletePages(const QList<PdfPageId> &ids);
    void rotatePages(const QList<PdfPageId> &ids, int delta);

    /// Notes that the document as it stands was saved.
    void markClean();
    /// No step of the history is what is saved.
    void markUnsaved();
    /// Forgets all steps; the document as it stands is unmodified.
    void reset();

private:
    /// The state of the document that an edit starts from.
    struct StartingPoint
    {
        QList<PdfPageRecord> pages;
        quint64 revision = 0;
    };

    [[nodiscard]] StartingPoint currentState() const;
    /// Runs an edit of the model and records it; returns what the edit returns.
    template <typename Edit>
    auto perform(const QString &text, Edit edit);
    void record(const QString &text, const StartingPoint &start);
    void observeMove();
    void recordObservedMove();
    void forgetObservedMove();

    QPointer<PdfDocumentModel> m_model;
    QUndoStack *m_stack;
    bool m_moveInProgress = false;
    StartingPoint m_moveStart;
};
