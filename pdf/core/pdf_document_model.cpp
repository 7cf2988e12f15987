// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/core/pdf_document_model.h"

#include "pdf/core/page_drag_format.h"
#include "pdf/core/page_rotation.h"

#include <QMimeData>

#include <algorithm>
#include <memory>

PdfDocumentModel::PdfDocumentModel(QObject *parent)
    : QAbstractListModel(parent)
{
    qRegisterMetaType<PdfPageId>("PdfPageId");
}

PdfDocumentModel::~PdfDocumentModel() = default;

const PdfPageRecord *PdfDocumentModel::pageAt(int row) const
{
    return row >= 0 && row < pageCount() ? &m_pages.at(row) : nullptr;
}

int PdfDocumentModel::rowForPageId(PdfPageId id) const
{
    return m_rowIndex.rowOf(id, m_pages);
}

QList<PdfPageRecord> PdfDocumentModel::pages() const
{
    return m_pages.toList();
}

QList<PdfSourcePage> PdfDocumentModel::sourcePages() const
{
    QList<PdfSourcePage> sources;
    sources.reserve(m_pages.size());
    for (int row = 0; row < pageCount(); ++row) {
        sources.append(m_pages.at(row).toSourcePage());
        PdfSourcePage &page = sources.last();
        page.isOfMainDocument = page.revision && page.revision == m_mainFile;
    }
    return sources;
}

QList<int> PdfDocumentModel::selectedRows() const
{
    QList<int> rows;
    for (int row = 0; row < pageCount(); ++row) {
        if (m_pages.at(row).selected) {
            rows.append(row);
        }
    }
    return rows;
}

QSet<PdfPageId> PdfDocumentModel::selectedPageIds() const
{
    QSet<PdfPageId> ids;
    for (int row = 0; row < pageCount(); ++row) {
        if (m_pages.at(row).selected) {
            ids.insert(m_pages.at(row).id);
        }
    }
    return ids;
}

bool PdfDocumentModel::loadDocument(const QString &path, const QString &password,
                                    PdfBackendError *error, QString *message)
{
    PdfDocumentInfo info;
    if (!PdfEditorBackend::inspectDocument(path, password, &info, error, message)) {
        return false;
    }
    beginResetModel();
    m_pages = GapList<PdfPageRecord>(recordsOfFile(path, password, info, PdfPageOrigin::Original));
    m_rowIndex.invalidate();
    m_documentPath = path;
    m_documentPassword = password;
    m_mainFile = info.revision;
    ++m_documentRevision;
    m_modified = false;
    endResetModel();
    emit selectionChanged();
    emit modifiedChanged(false);
    emit documentReset();
    return true;
}

bool PdfDocumentModel::insertDocument(const QString &path, int row, const QString &password,
                                      PdfBackendError *error, QString *message)
{
    PdfDocumentInfo info;
    if (!PdfEditorBackend::inspectDocument(path, password, &info, error, message)) {
        return false;
    }
    insertRecords(insertionRow(row), recordsOfFile(path, password, info, PdfPageOrigin::Inserted));
    markEdited();
    return true;
}

PdfPageId PdfDocumentModel::insertBlankPage(int row, QSizeF size)
{
    PdfPageRecord record;
    record.id = m_nextPageId++;
    record.pageSize = size.isEmpty() ? kBlankPageSize : size;
    record.origin = PdfPageOrigin::Blank;
    record.changed = true;
    insertRecords(insertionRow(row), {record});
    markEdited();
    return record.id;
}

QList<PdfPageId> PdfDocumentModel::duplicatePages(const QList<PdfPageId> &ids)
{
    QList<PdfPageId> copies;
    for (const int row : sortedRows(ids)) {
        const int copyRow = row + static_cast<int>(copies.size()) + 1;
        PdfPageRecord copy = m_pages.at(copyRow - 1);
        copy.id = m_nextPageId++;
        copy.origin = PdfPageOrigin::Duplicate;
        copy.selected = false;
        copy.changed = true;
        copies.append(copy.id);
        beginInsertRows(QModelIndex(), copyRow, copyRow);
        m_pages.insert(copyRow, std::move(copy));
        m_rowIndex.invalidate();
        endInsertRows();
    }
    if (!copies.isEmpty()) {
        m_pages.close();
        markEdited();
    }
    return copies;
}

void PdfDocumentModel::removePages(const QList<PdfPageId> &ids)
{
    QList<int> rows = sortedRows(ids);
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    if (rows.isEmpty()) {
        return;
    }
    for (auto row = rows.crbegin(); row != rows.crend(); ++row) {
        beginRemoveRows(QModelIndex(), *row, *row);
        m_pages.takeAt(*row);
        m_rowIndex.invalidate();
        endRemoveRows();
    }
    m_pages.close();
    if (m_pages.isEmpty()) {
        insertBlankPage(0, kBlankPageSize);
    }
    ++m_documentRevision;
    setModified(true);
    emit selectionChanged();
    emit pageOrderChanged();
}

void PdfDocumentModel::rotatePages(const QList<PdfPageId> &ids, int delta)
{
    m_rowIndex.prepare(m_pages);
    bool rotated = false;
    for (const PdfPageId id : ids) {
        const int row = rowForPageId(id);
        if (row < 0) {
            continue;
        }
        PdfPageRecord &record = m_pages[row];
        // Each by itself: the sum of both could leave the range of an integer.
        record.rotation =
            withoutFullTurns(withoutFullTurns(record.rotation) + withoutFullTurns(delta));
        record.changed = true;
        rotated = true;
        emit dataChanged(index(row), index(row), {RotationRole, DisplaySizeRole, ChangedRole});
    }
    if (rotated) {
        ++m_documentRevision;
        setModified(true);
    }
}

void PdfDocumentModel::setPages(const QList<PdfPageRecord> &records, bool modified)
{
    beginResetModel();
    m_pages = GapList<PdfPageRecord>(records);
    m_rowIndex.invalidate();
    for (const PdfPageRecord &record : records) {
        m_nextPageId = std::max(m_nextPageId, record.id + 1);
    }
    ++m_documentRevision;
    m_modified = modified;
    endResetModel();
    emit selectionChanged();
    emit modifiedChanged(modified);
    emit documentReset();
}

void PdfDocumentModel::markSaved(const QString &path)
{
    if (!path.isEmpty()) {
        m_documentPath = path;
    }
    for (int row = 0; row < pageCount(); ++row) {
        m_pages[row].changed = false;
    }
    if (!m_pages.isEmpty()) {
        emit dataChanged(index(0), index(pageCount() - 1), {ChangedRole});
    }
    setModified(false);
}

void PdfDocumentModel::setModified(bool modified)
{
    if (m_modified != modified) {
        m_modified = modified;
        emit modifiedChanged(modified);
    }
}

void PdfDocumentModel::setPageSelected(PdfPageId id, bool selected)
{
    const int row = rowForPageId(id);
    if (row >= 0) {
        setData(index(row), selected, SelectedRole);
    }
}

void PdfDocumentModel::setSelectedPageIds(const QSet<PdfPageId> &ids)
{
    bool anyChanged = false;
    for (int row = 0; row < pageCount(); ++row) {
        const PdfPageRecord &record = m_pages.at(row);
        const bool selected = ids.contains(record.id);
        if (record.selected != selected) {
            selectRow(row, selected);
            anyChanged = true;
        }
    }
    if (anyChanged) {
        emit selectionChanged();
    }
}

void PdfDocumentModel::selectAll()
{
    QSet<PdfPageId> ids;
    ids.reserve(m_pages.size());
    for (int row = 0; row < pageCount(); ++row) {
        ids.insert(m_pages.at(row).id);
    }
    setSelectedPageIds(ids);
}

void PdfDocumentModel::clearSelection()
{
    setSelectedPageIds({});
}

int PdfDocumentModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : pageCount();
}

QVariant PdfDocumentModel::data(const QModelIndex &index, int role) const
{
    const PdfPageRecord *record = recordOf(index);
    if (record == nullptr) {
        return {};
    }
    switch (role) {
    case Qt::DisplayRole:
        return index.row() + 1;
    case Qt::CheckStateRole:
        return static_cast<int>(record->selected ? Qt::Checked : Qt::Unchecked);
    case PageIdRole:
        return QVariant::fromValue<PdfPageId>(record->id);
    case SourcePathRole:
        return record->sourcePath;
    case SourcePageIndexRole:
        return record->sourcePageIndex;
    case RotationRole:
        return record->rotation;
    case SelectedRole:
        return record->selected;
    case DisplaySizeRole:
        return record->displaySize();
    case OriginRole:
        return static_cast<int>(record->origin);
    case ChangedRole:
        return record->changed;
    default:
        return {};
    }
}

bool PdfDocumentModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    const PdfPageRecord *record = recordOf(index);
    if (record == nullptr || (role != Qt::CheckStateRole && role != SelectedRole)) {
        return false;
    }
    const bool selected =
        role == Qt::CheckStateRole ? value.toInt() == Qt::Checked : value.toBool();
    if (record->selected == selected) {
        return false;
    }
    selectRow(index.row(), selected);
    emit selectionChanged();
    return true;
}

Qt::ItemFlags PdfDocumentModel::flags(const QModelIndex &index) const
{
    if (!index.isValid()) {
        return Qt::ItemIsDropEnabled;
    }
    return Qt::ItemIsSelectable | Qt::ItemIsDragEnabled | Qt::ItemIsDropEnabled |
           Qt::ItemIsUserCheckable | Qt::ItemIsEnabled;
}

Qt::DropActions PdfDocumentModel::supportedDropActions() const
{
    return Qt::MoveAction;
}

bool PdfDocumentModel::moveRows(const QModelIndex &sourceParent, int sourceRow, int count,
                                const QModelIndex &destinationParent, int destinationChild)
{
    if (count != 1 || sourceParent.isValid() || destinationParent.isValid() ||
        !isMove(sourceRow, destinationChild)) {
        return false;
    }
    beginMoveRows(QModelIndex(), sourceRow, sourceRow, QModelIndex(), destinationChild);
    PdfPageRecord record = m_pages.takeAt(sourceRow);
    m_pages.insert(destinationChild > sourceRow ? destinationChild - 1 : destinationChild,
                   std::move(record));
    m_pages.close();
    m_rowIndex.invalidate();
    endMoveRows();
    markEdited();
    return true;
}

QStringList PdfDocumentModel::mimeTypes() const
{
    return {PageDragFormat::kMimeType};
}

QMimeData *PdfDocumentModel::mimeData(const QModelIndexList &indexes) const
{
    QList<PdfPageId> ids;
    for (const QModelIndex &index : indexes) {
        if (const PdfPageRecord *record = recordOf(index)) {
            ids.append(record->id);
        }
    }
    auto mime = std::make_unique<QMimeData>();
    mime->setData(PageDragFormat::kMimeType, PageDragFormat::encode(ids));
    return mime.release();
}

bool PdfDocumentModel::dropMimeData(const QMimeData *data, Qt::DropAction action, int row,
                                    int /*column*/, const QModelIndex &parent)
{
    if (action == Qt::IgnoreAction) {
        return true;
    }
    if (data == nullptr || !data->hasFormat(PageDragFormat::kMimeType)) {
        return false;
    }
    const auto id = PageDragFormat::firstPageId(data->data(PageDragFormat::kMimeType));
    const int sourceRow = id ? rowForPageId(*id) : -1;
    int destinationRow = row;
    if (row < 0) {
        destinationRow = parent.isValid() ? parent.row() : pageCount();
    }
    return moveRows(QModelIndex(), sourceRow, 1, QModelIndex(), destinationRow);
}

const PdfPageRecord *PdfDocumentModel::recordOf(const QModelIndex &index) const
{
    return index.isValid() ? pageAt(index.row()) : nullptr;
}

int PdfDocumentModel::insertionRow(int row) const
{
    return row < 0 ? pageCount() : std::min(row, pageCount());
}

bool PdfDocumentModel::isMove(int sourceRow, int destinationRow) const
{
    return sourceRow >= 0 && sourceRow < pageCount() && destinationRow >= 0 &&
           destinationRow <= pageCount() && destinationRow != sourceRow &&
           destinationRow != sourceRow + 1;
}

QList<int> PdfDocumentModel::sortedRows(const QList<PdfPageId> &ids) const
{
    m_rowIndex.prepare(m_pages);
    QList<int> rows;
    rows.reserve(ids.size());
    for (const PdfPageId id : ids) {
        const int row = rowForPageId(id);
        if (row >= 0) {
            rows.append(row);
        }
    }
    std::sort(rows.begin(), rows.end());
    return rows;
}

QList<PdfPageRecord> PdfDocumentModel::recordsOfFile(const QString &path, const QString &password,
                                                     const PdfDocumentInfo &info,
                                                     PdfPageOrigin origin)
{
    PdfPageRecord record;
    record.sourcePath = path;
    record.password = password;
    record.revision = info.revision;
    record.origin = origin;
    record.changed = origin != PdfPageOrigin::Original;

    QList<PdfPageRecord> records;
    records.reserve(info.pageSizes.size());
    for (const QSizeF &size : info.pageSizes) {
        record.id = m_nextPageId++;
        record.sourcePageIndex = static_cast<qint32>(records.size());
        record.pageSize = size;
        records.append(record);
    }
    return records;
}

void PdfDocumentModel::insertRecords(int row, QList<PdfPageRecord> records)
{
    if (records.isEmpty()) {
        return;
    }
    beginInsertRows(QModelIndex(), row, row + static_cast<int>(records.size()) - 1);
    for (PdfPageRecord &record : records) {
        m_pages.insert(row++, std::move(record));
    }
    m_pages.close();
    m_rowIndex.invalidate();
    endInsertRows();
}

void PdfDocumentModel::selectRow(int row, bool selected)
{
    m_pages[row].selected = selected;
    emit dataChanged(index(row), index(row), {Qt::CheckStateRole, SelectedRole});
}

void PdfDocumentModel::markEdited()
{
    ++m_documentRevision;
    setModified(true);
    emit pageOrderChanged();
}
