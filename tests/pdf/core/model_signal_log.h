// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdf/core/pdf_document_model.h"

#include <QAbstractItemModelTester>
#include <QIdentityProxyModel>
#include <QObject>
#include <QStringList>

/// Writes down, in order, what a document model tells its views: "modelReset",
/// "rowsInserted 1-3", "rowsRemoved 4-4", "rowsMoved 2 to 0", "dataChanged 0-9 (264)",
/// "selectionChanged", "pageOrderChanged", "modifiedChanged true", "documentReset".
class ModelSignalLog final : public QObject
{
    Q_OBJECT

public:
    explicit ModelSignalLog(PdfDocumentModel *model);

    /// What was logged since the last call.
    QStringList take();

private:
    QStringList m_lines;
};

/// Shows the page identifier where the model shows the page number.
///
/// Qt's model tester expects that a row that was not touched still displays what it did before a
/// change. Page numbers do not, because they count rows; identifiers do.
class PageIdProxy final : public QIdentityProxyModel
{
    Q_OBJECT

public:
    explicit PageIdProxy(PdfDocumentModel *model) { setSourceModel(model); }

    QVariant data(const QModelIndex &index, int role) const override;
};

/// A document model, checked by Qt's model tester, with its log.
struct ObservedModel
{
    PdfDocumentModel model;
    PageIdProxy proxy{&model};
    QAbstractItemModelTester tester{&proxy, QAbstractItemModelTester::FailureReportingMode::QtTest};
    ModelSignalLog log{&model};
};

/// Records with the given identifiers, of A4 pages of "/documents/report.pdf", index by index.
QList<PdfPageRecord> recordsWithIds(const QList<PdfPageId> &ids);

/// Makes `ids` the saved, unmodified document of `observed`, and forgets what that logged.
void showPages(ObservedModel &observed, const QList<PdfPageId> &ids);

/// The identifiers of all rows, in order.
QList<PdfPageId> idsOf(const PdfDocumentModel &model);

/// Entries of a ModelSignalLog that many tests expect.
namespace ModelSignals {

inline const QString kModified = QStringLiteral("modifiedChanged true");
inline const QString kSaved = QStringLiteral("modifiedChanged false");
inline const QString kOrder = QStringLiteral("pageOrderChanged");
inline const QString kSelection = QStringLiteral("selectionChanged");
inline const QString kReset = QStringLiteral("modelReset");
inline const QString kDocument = QStringLiteral("documentReset");

/// The page at `row` was chosen or not chosen any more.
[[nodiscard]] QString selectionOfRow(int row);
/// The page at `row` was turned.
[[nodiscard]] QString rotationOfRow(int row);

} // namespace ModelSignals
