// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdf/core/gap_list.h"
#include "pdf/core/page_row_index.h"
#include "pdf/core/pdf_page_record.h"

#include <QAbstractListModel>
#include <QList>
#include <QSet>
#include <QSizeF>
#include <QString>
#include <QStringList>

/// The edited document: an ordered list of pages, each a reference to a page of a source file or a
/// blank page.
///
/// No operation touches a PDF file; saving hands sourcePages() to the engine. The model is a list
/// model with one row per page, so that every page view shows the same rows. It lives on the
/// interface thread. Slots connected to its notifications may read it, but not edit it.
///
/// Operations skip identifiers that no page has; given none that is known they do nothing and emit
/// nothing. Rows for insertions: a negative row means the end, any other is brought into
/// 0..rowCount().
class PdfDocumentModel final : public QAbstractListModel
{
    Q_OBJECT

public:
    enum Role : int {
        PageIdRole = Qt::UserRole + 1,          ///< PdfPageId
        SourcePathRole = Qt::UserRole + 2,      ///< QString
        SourcePageIndexRole = Qt::UserRole + 3, ///< int
        RotationRole = Qt::UserRole + 4,        ///< int, degrees
        SelectedRole = Qt::UserRole + 5,        ///< bool, writable
        DisplaySizeRole = Qt::UserRole + 6,     ///< QSizeF, points
        OriginRole = Qt::UserRole + 7,          ///< int, value of PdfPageOrigin
        ChangedRole = Qt::UserRole + 8,         ///< bool
    };

    explicit PdfDocumentModel(QObject *parent = nullptr);
    ~PdfDocumentModel() override;

    /// The record at `row`, null when out of range. Valid until the next change of the model.
    [[nodiscard]] const PdfPageRecord *pageAt(int row) const;
    /// The first row with the identifier, or -1.
    [[nodiscard]] int rowForPageId(PdfPageId id) const;
    /// All records in row order; a shared copy.
    [[nodiscard]] QList<PdfPageRecord> pages() const;
    /// All pages in row order, as the engine takes them.
    [[nodiscard]] QList<PdfSourcePage> sourcePages() const;
    /// The file that was opened, or the one the document was last saved as.
    [[nodiscard]] QString documentPath() const { return m_documentPath; }
    /// The password the document was opened with.
    [[nodiscard]] QString documentPassword() const { return m_documentPassword; }
    [[nodiscard]] bool isModified() const { return m_modified; }
    /// Grows with every change of the page list or of a rotation; never goes down.
    [[nodiscard]] quint64 documentRevision() const { return m_documentRevision; }
    /// Rows of the selected pages, ascending.
    [[nodiscard]] QList<int> selectedRows() const;
    [[nodiscard]] QSet<PdfPageId> selectedPageIds() const;

    /// Replaces the document by the pages of a file. On failure returns false with the engine's
    /// error and message, and nothing changes. `error` and `message` may be null.
    bool loadDocument(const QString &path, const QString &password, PdfBackendError *error,
                      QString *message);
    /// Inserts all pages of a file before `row`. Fails like loadDocument().
    bool insertDocument(const QString &path, int row, const QString &password,
                        PdfBackendError *error, QString *message);
    /// Inserts a blank page before `row`; an empty `size` (points) means A4.
    PdfPageId insertBlankPage(int row, QSizeF size);
    /// Puts a copy of each page right behind it; returns the copies in row order.
    QList<PdfPageId> duplicatePages(const QList<PdfPageId> &ids);
    /// Removes the pages. A document that would be left empty gets one blank A4 page.
    void removePages(const QList<PdfPageId> &ids);
    /// Turns each page clockwise by `delta` degrees, anticlockwise when negative.
    void rotatePages(const QList<PdfPageId> &ids, int delta);
    /// Installs a whole page list, identifiers and check states included.
    void setPages(const QList<PdfPageRecord> &records, bool modified);
    /// Notes that the document was saved; a `path` that is not empty is its file from now on.
    void markSaved(const QString &path);
    /// Notes that the document was saved to `path`, its file from now on, as it was before the
    /// latest changes, which stay unsaved.
    void markSavedBefore(const QString &path) { m_documentPath = path; }
    void setModified(bool modified);

    void setPageSelected(PdfPageId id, bool selected);
    /// Selects exactly the pages in `ids`.
    void setSelectedPageIds(const QSet<PdfPageId> &ids);
    void selectAll();
    void clearSelection();

signals:
    void selectionChanged();
    void pageOrderChanged();
    void modifiedChanged(bool modified);
    void documentReset();

public:
    [[nodiscard]] int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index,
                                int role = Qt::DisplayRole) const override;
    /// Accepts the check-state role and SelectedRole; false for others and for an equal value.
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex &index) const override;
    [[nodiscard]] Qt::DropActions supportedDropActions() const override;
    /// Moves one row to before `destinationChild`; false if the order would stay as it is.
    bool moveRows(const QModelIndex &sourceParent, int sourceRow, int count,
                  const QModelIndex &destinationParent, int destinationChild) override;
    [[nodiscard]] QStringList mimeTypes() const override;
    [[nodiscard]] QMimeData *mimeData(const QModelIndexList &indexes) const override;
    /// Moves the first page of the payload; a page of another document is refused.
    bool dropMimeData(const QMimeData *data, Qt::DropAction action, int row, int column,
                      const QModelIndex &parent) override;

private:
    [[nodiscard]] const PdfPageRecord *recordOf(const QModelIndex &index) const;
    [[nodiscard]] int pageCount() const { return static_cast<int>(m_pages.size()); }
    [[nodiscard]] int insertionRow(int row) const;
    [[nodiscard]] bool isMove(int sourceRow, int destinationRow) const;
    /// The rows of the known ones among `ids`, ascending, repetitions included.
    [[nodiscard]] QList<int> sortedRows(const QList<PdfPageId> &ids) const;
    [[nodiscard]] QList<PdfPageRecord> recordsOfFile(const QString &path, const QString &password,
                                                     const PdfDocumentInfo &info,
                                                     PdfPageOrigin origin);
    void insertRecords(int row, QList<PdfPageRecord> records);
    void selectRow(int row, bool selected);
    void markEdited();

    GapList<PdfPageRecord> m_pages;
    mutable PageRowIndex m_rowIndex;
    QString m_documentPath;
    QString m_documentPassword;
    PdfFileRevisionPtr m_mainFile; ///< The revision of the file that was opened.
    PdfPageId m_nextPageId = 1;
    quint64 m_documentRevision = 0;
    bool m_modified = false;
};
