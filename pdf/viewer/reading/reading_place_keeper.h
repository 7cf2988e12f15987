// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdf/core/pdf_page_record.h"
#include "pdf/viewer/reading/pdf_document_view.h"

#include <QList>
#include <QObject>
#include <QPointer>

#include <optional>

class PdfDocumentModel;

/// Keeps the page that is being read where it is on the screen while the document is edited, or its
/// nearest neighbour when it is gone.
///
/// The view by itself keeps the fraction of the document above the viewport, which is another page
/// once pages come or go anywhere. Whoever asks for a page after an edit gets that page. Edits that
/// come in one pass of the event loop count as one.
class ReadingPlaceKeeper final : public QObject
{
    Q_OBJECT

public:
    /// Watches the edits of `model`, which `view` shows and which lives as long as it.
    ReadingPlaceKeeper(PdfDocumentModel *model, PdfDocumentView *view);

    /// What was read before counts no more: another document was opened.
    void forget() { m_before.reset(); }

private:
    struct Before
    {
        QList<PdfPageId> pages;
        int row = 0; ///< The page that was read.
        PdfDocumentView::ReadingPlace place;
        quint64 visits = 0;
    };

    void remember();
    void restore();

    QPointer<PdfDocumentModel> m_model;
    PdfDocumentView *m_view;
    std::optional<Before> m_before;
};
