// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdf/core/model_signal_log.h"

#include <algorithm>
#include <utility>

ModelSignalLog::ModelSignalLog(PdfDocumentModel *model)
{
    const auto logRange = [this](const QString &what, int first, int last) {
        m_lines << QStringLiteral("%1 %2-%3").arg(what).arg(first).arg(last);
    };
    connect(model, &QAbstractItemModel::modelReset, this,
            [this] { m_lines << QStringLiteral("modelReset"); });
    connect(model, &QAbstractItemModel::rowsInserted, this,
            [logRange](const QModelIndex &, int first, int last) {
                logRange(QStringLiteral("rowsInserted"), first, last);
            });
    connect(model, &QAbstractItemModel::rowsRemoved, this,
            [logRange](const QModelIndex &, int first, int last) {
                logRange(QStringLiteral("rowsRemoved"), first, last);
            });
    connect(model, &QAbstractItemModel::rowsMoved, this,
            [this](const QModelIndex &, int first, int last, const QModelIndex &, int row) {
                const QString rows = first == last ? QString::number(first)
                                                   : QStringLiteral("%1-%2").arg(first).arg(last);
                m_lines << QStringLiteral("rowsMoved %1 to %2").arg(rows).arg(row);
            });
    connect(model, &QAbstractItemModel::dataChanged, this,
            [this](const QModelIndex &first, const QModelIndex &last, QList<int> roles) {
                std::sort(roles.begin(), roles.end());
                QStringList names;
                for (const int role : std::as_const(roles)) {
                    names << QString::number(role);
                }
                m_lines << QStringLiteral("dataChanged %1-%2 (%3)")
                               .arg(first.row())
                               .arg(last.row())
                               .arg(names.join(QLatin1Char(' ')));
            });
    connect(model, &PdfDocumentModel::selectionChanged, this,
            [this] { m_lines << QStringLiteral("selectionChanged"); });
    connect(model, &PdfDocumentModel::pageOrderChanged, this,
            [this] { m_lines << QStringLiteral("pageOrderChanged"); });
    connect(model, &PdfDocumentModel::modifiedChanged, this, [this](bool modified) {
        m_lines << (modified ? QStringLiteral("modifiedChanged true")
                             : QStringLiteral("modifiedChanged false"));
    });
    connect(model, &PdfDocumentModel::documentReset, this,
            [this] { m_lines << QStringLiteral("documentReset"); });
}

QStringList ModelSignalLog::take()
{
    return std::exchange(m_lines, {});
}

QVariant PageIdProxy::data(const QModelIndex &index, int role) const
{
    const int shown = role == Qt::DisplayRole ? int{PdfDocumentModel::PageIdRole} : role;
    return QIdentityProxyModel::data(index, shown);
}

QList<PdfPageRecord> recordsWithIds(const QList<PdfPageId> &ids)
{
    QList<PdfPageRecord> records;
    for (const PdfPageId id : ids) {
        PdfPageRecord record;
        record.id = id;
        record.sourcePath = QStringLiteral("/documents/report.pdf");
        record.password = QStringLiteral("open sesame");
        record.sourcePageIndex = static_cast<qint32>(records.size());
        record.pageSize = QSizeF(595, 842);
        records.append(record);
    }
    return records;
}

void showPages(ObservedModel &observed, const QList<PdfPageId> &ids)
{
    observed.model.setPages(recordsWithIds(ids), false);
    observed.log.take();
}

QList<PdfPageId> idsOf(const PdfDocumentModel &model)
{
    QList<PdfPageId> ids;
    for (int row = 0; row < model.rowCount(); ++row) {
        ids.append(model.pageAt(row)->id);
    }
    return ids;
}

QString ModelSignals::selectionOfRow(int row)
{
    return QStringLiteral("dataChanged %1-%1 (10 261)").arg(row);
}

QString ModelSignals::rotationOfRow(int row)
{
    return QStringLiteral("dataChanged %1-%1 (260 262 264)").arg(row);
}
