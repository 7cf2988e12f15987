// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/reading/reading_place_keeper.h"

#include "pdf/core/pdf_document_model.h"
#include "pdf/viewer/common/view_changes.h"

#include <utility>

ReadingPlaceKeeper::ReadingPlaceKeeper(PdfDocumentModel *model, PdfDocumentView *view)
    : QObject(view)
    , m_model(model)
    , m_view(view)
{
    connect(model, &QAbstractItemModel::modelAboutToBeReset, this, &ReadingPlaceKeeper::remember);
    connect(model, &QAbstractItemModel::rowsAboutToBeInserted, this, &ReadingPlaceKeeper::remember);
    connect(model, &QAbstractItemModel::rowsAboutToBeRemoved, this, &ReadingPlaceKeeper::remember);
    connect(model, &QAbstractItemModel::rowsAboutToBeMoved, this, &ReadingPlaceKeeper::remember);
    // Of these the view hears afterwards, but it lays out later.
    connect(model, &QAbstractItemModel::dataChanged, this,
            [this](const QModelIndex &, const QModelIndex &, const QList<int> &roles) {
                if (changesPageImages(roles)) {
                    remember();
                }
            });
}

void ReadingPlaceKeeper::remember()
{
    if (m_before) {
        return;
    }
    const std::optional<PdfDocumentView::ReadingPlace> place = m_view->readingPlace();
    if (!place) {
        return;
    }
    Before before;
    before.pages.reserve(m_model->rowCount());
    for (const PdfPageRecord &record : m_model->pages()) {
        before.pages.append(record.id);
    }
    before.row = m_view->currentPage();
    before.place = *place;
    before.visits = m_view->visits();
    m_before = std::move(before);
    // Before anything is painted, which comes after all that was posted.
    QMetaObject::invokeMethod(this, &ReadingPlaceKeeper::restore, Qt::QueuedConnection);
}

void ReadingPlaceKeeper::restore()
{
    const std::optional<Before> before = std::exchange(m_before, std::nullopt);
    if (!before || m_model == nullptr || m_view->visits() != before->visits) {
        return;
    }
    const auto rowOf = [&](qsizetype row) {
        return row >= 0 && row < before->pages.size() ? m_model->rowForPageId(before->pages.at(row))
                                                      : -1;
    };
    if (const int row = rowOf(before->row); row >= 0) {
        m_view->restorePlace(row, before->place, PdfDocumentView::PlaceFor::SamePage);
        return;
    }
    for (qsizetype distance = 1; distance < before->pages.size(); ++distance) {
        for (const qsizetype neighbour : {before->row + distance, before->row - distance}) {
            if (const int row = rowOf(neighbour); row >= 0) {
                m_view->restorePlace(row, before->place, PdfDocumentView::PlaceFor::Neighbour);
                return;
            }
        }
    }
}
