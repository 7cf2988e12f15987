// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/core/pdf_undo_manager.h"

#include "pdf/core/page_list_snapshot.h"
#include "pdf/core/pdf_document_model.h"

#include <QUndoCommand>
#include <QUndoStack>

#include <type_traits>
#include <utility>

namespace {

/// One step: the page lists from before and after an edit that was already made.
class PageSnapshotCommand final : public QUndoCommand
{
public:
    PageSnapshotCommand(const QString &text, PdfDocumentModel *model, PageListSnapshot before,
                        PageListSnapshot after)
        : QUndoCommand(text)
        , m_model(model)
        , m_before(std::move(before))
        , m_after(std::move(after))
    {}

    [[nodiscard]] const PageListSnapshot &before() const { return m_before; }
    [[nodiscard]] const PageListSnapshot &after() const { return m_after; }

    void undo() override { m_model->setPages(m_before.pages(), true); }

    void redo() override
    {
        if (!std::exchange(m_skipFirstRedo, false)) {
            m_model->setPages(m_after.pages(), true);
        }
    }

private:
    PdfDocumentModel *m_model;
    PageListSnapshot m_before;
    PageListSnapshot m_after;
    bool m_skipFirstRedo = true;
};

/// The snapshot in the history that is nearest to the document as it stands.
PageListSnapshot latestSnapshot(const QUndoStack &stack)
{
    const bool atStart = stack.index() == 0;
    // No command, or one that somebody else has pushed, is none of ours.
    const auto *nearest =
        dynamic_cast<const PageSnapshotCommand *>(stack.command(atStart ? 0 : stack.index() - 1));
    if (nearest == nullptr) {
        return {};
    }
    return atStart ? nearest->before() : nearest->after();
}

} // namespace

PdfUndoManager::PdfUndoManager(PdfDocumentModel *model, QObject *parent)
    : QObject(parent)
    , m_model(model)
    , m_stack(new QUndoStack(this))
{
    connect(m_stack, &QUndoStack::indexChanged, this, [this] {
        if (m_model != nullptr) {
            m_model->setModified(!m_stack->isClean());
        }
    });
    connect(m_model, &PdfDocumentModel::rowsAboutToBeMoved, this, &PdfUndoManager::observeMove);
    // The model finishes a move, its revision above all, only after this notification.
    connect(m_model, &PdfDocumentModel::rowsMoved, this, [this] {
        QMetaObject::invokeMethod(this, &PdfUndoManager::recordObservedMove, Qt::QueuedConnection);
    });
}

PdfUndoManager::~PdfUndoManager() = default;

template <typename Edit>
auto PdfUndoManager::perform(const QString &text, Edit edit)
{
    // A move whose turn has not come yet belongs before this edit.
    recordObservedMove();
    const StartingPoint start = currentState();
    if constexpr (std::is_void_v<decltype(edit())>) {
        edit();
        record(text, start);
    } else {
        auto result = edit();
        record(text, start);
        return result;
    }
}

bool PdfUndoManager::insertPdf(const QString &path, int row, const QString &password,
                               PdfBackendError *error, QString *message)
{
    return perform(tr("插入 PDF"),
                   [&] { return m_model->insertDocument(path, row, password, error, message); });
}

PdfPageId PdfUndoManager::insertBlankPage(int row, QSizeF size)
{
    return perform(tr("插入空白页"), [&] { return m_model->insertBlankPage(row, size); });
}

QList<PdfPageId> PdfUndoManager::duplicatePages(const QList<PdfPageId> &ids)
{
    return perform(tr("复制页面"), [&] { return m_model->duplicatePages(ids); });
}

void PdfUndoManager::deletePages(const QList<PdfPageId> &ids)
{
    perform(tr("删除页面"), [&] { m_model->removePages(ids); });
}

void PdfUndoManager::rotatePages(const QList<PdfPageId> &ids, int delta)
{
    perform(delta < 0 ? tr("向左旋转页面") : tr("向右旋转页面"),
            [&] { m_model->rotatePages(ids, delta); });
}

void PdfUndoManager::markClean()
{
    recordObservedMove();
    m_stack->setClean();
    m_model->setModified(false);
}

void PdfUndoManager::markUnsaved()
{
    recordObservedMove();
    m_stack->resetClean();
    m_model->setModified(true);
}

void PdfUndoManager::reset()
{
    forgetObservedMove();
    m_stack->clear();
    m_model->setModified(false);
}

PdfUndoManager::StartingPoint PdfUndoManager::currentState() const
{
    return {m_model->pages(), m_model->documentRevision()};
}

void PdfUndoManager::record(const QString &text, const StartingPoint &start)
{
    if (m_model->documentRevision() == start.revision) {
        return;
    }
    const PageListSnapshot before(start.pages, latestSnapshot(*m_stack));
    const PageListSnapshot after(m_model->pages(), before);
    m_stack->push(new PageSnapshotCommand(text, m_model, before, after));
}

void PdfUndoManager::observeMove()
{
    if (!m_moveInProgress) {
        m_moveInProgress = true;
        m_moveStart = currentState();
    }
}

void PdfUndoManager::recordObservedMove()
{
    // Its turn may come only after the model is gone.
    if (m_moveInProgress && m_model != nullptr) {
        m_moveInProgress = false;
        record(tr("移动页面"), std::exchange(m_moveStart, {}));
    }
}

void PdfUndoManager::forgetObservedMove()
{
    m_moveInProgress = false;
    m_moveStart = {};
}
