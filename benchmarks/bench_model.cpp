// SPDX-License-Identifier: AGPL-3.0-or-later
// Times the batch operations of the page model on a document of ten thousand pages, each as the
// user waits for it: the model, its notifications, and what the attached view does about them.
//
//     bench_model [file.pdf]
//
// Prints the median of several runs and its share of the budget for an operation that must feel
// immediate. Fails when an operation is over the budget.

#include "pdf/core/pdf_document_model.h"
#include "pdf/core/pdf_render_manager.h"
#include "pdf/viewer/reading/pdf_document_view.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QScrollBar>
#include <QTextStream>

#include <algorithm>
#include <functional>
#include <memory>
#include <random>

namespace {

constexpr int kPages = 10000;
constexpr int kRuns = 5;
constexpr double kBudgetMs = 200;

using Ids = QList<PdfPageId>;

QTextStream &out()
{
    static QTextStream stream(stdout);
    return stream;
}

QList<PdfPageRecord> longDocument()
{
    QList<PdfPageRecord> records;
    records.reserve(kPages);
    for (int i = 0; i < kPages; ++i) {
        PdfPageRecord record;
        record.id = static_cast<PdfPageId>(i) + 1;
        record.sourcePath = QStringLiteral("/documents/long.pdf");
        record.sourcePageIndex = i;
        record.pageSize = i % 3 == 0 ? QSizeF(842, 595) : QSizeF(595, 842);
        records.append(record);
    }
    return records;
}

Ids allIds(const PdfDocumentModel &model)
{
    Ids ids;
    for (int row = 0; row < model.rowCount(); ++row) {
        ids.append(model.pageAt(row)->id);
    }
    return ids;
}

Ids shuffled(Ids ids)
{
    std::mt19937 random(7);
    std::shuffle(ids.begin(), ids.end(), random);
    return ids;
}

/// Something that watches a model while it is timed.
class Watcher
{
public:
    virtual ~Watcher() = default;
    virtual void attach(PdfDocumentModel *model) = 0;
    virtual void scrollToEnd() {}
};

using WatcherMaker = std::function<std::unique_ptr<Watcher>()>;

/// Reads the rows it is told about, as any view must.
class RowReader final : public Watcher
{
public:
    void attach(PdfDocumentModel *model) override
    {
        const auto read = [this, model](int first, int last) {
            for (int row = first; row <= last; ++row) {
                const PdfPageRecord *record = model->pageAt(row);
                m_sum += record->id + static_cast<quint64>(record->displaySize().width());
            }
        };
        QObject::connect(model, &QAbstractItemModel::modelReset, &m_context,
                         [read, model] { read(0, model->rowCount() - 1); });
        QObject::connect(model, &QAbstractItemModel::rowsInserted, &m_context,
                         [read](const QModelIndex &, int first, int last) { read(first, last); });
        QObject::connect(model, &QAbstractItemModel::rowsRemoved, &m_context, [this] { ++m_sum; });
        QObject::connect(model, &QAbstractItemModel::dataChanged, &m_context,
                         [read](const QModelIndex &first, const QModelIndex &last) {
                             read(first.row(), last.row());
                         });
    }

private:
    QObject m_context;
    quint64 m_sum = 0;
};

/// The continuous view on the screen, with images that cost nothing to make.
class DocumentViewer final : public Watcher
{
public:
    DocumentViewer()
    {
        m_view.resize(1000, 800);
        m_view.show();
        m_view.setRenderManager(&m_manager);
    }

    void attach(PdfDocumentModel *model) override { m_view.setModel(model); }

    void scrollToEnd() override
    {
        m_view.verticalScrollBar()->setValue(m_view.verticalScrollBar()->maximum());
    }

private:
    static QList<QImage> whitePages(const PdfCancelFlag &, const QList<PdfSourcePage> &,
                                    const QList<QSize> &sizes, QStringList *)
    {
        QList<QImage> images;
        for (const QSize size : sizes) {
            images.append(QImage(size, QImage::Format_RGB32));
            images.last().fill(Qt::white);
        }
        return images;
    }

    PdfRenderManager m_manager{nullptr, whitePages};
    PdfDocumentView m_view;
};

struct Operation
{
    QString name;
    /// Gets the model, holding ten thousand pages, and its identifiers.
    std::function<void(PdfDocumentModel &, const Ids &, Watcher &)> run;
};

QList<Operation> operations(const QString &file)
{
    QList<Operation> list{
        {QStringLiteral("setPages"), [](PdfDocumentModel &model, const Ids &,
                                        Watcher &) { model.setPages(model.pages(), true); }},
        {QStringLiteral("select all"),
         [](PdfDocumentModel &model, const Ids &, Watcher &) { model.selectAll(); }},
        {QStringLiteral("rotate all"),
         [](PdfDocumentModel &model, const Ids &ids, Watcher &) { model.rotatePages(ids, 90); }},
        {QStringLiteral("duplicate 1,000"),
         [](PdfDocumentModel &model, const Ids &ids, Watcher &) {
             model.duplicatePages(shuffled(ids).mid(0, 1000));
         }},
        {QStringLiteral("delete the first 5,000"),
         [](PdfDocumentModel &model, const Ids &ids, Watcher &) {
             model.removePages(ids.mid(0, kPages / 2));
         }},
        {QStringLiteral("delete 5,000 at random"),
         [](PdfDocumentModel &model, const Ids &ids, Watcher &) {
             model.removePages(shuffled(ids).mid(0, kPages / 2));
         }},
        {QStringLiteral("move the last page to the top"),
         [](PdfDocumentModel &model, const Ids &, Watcher &) {
             model.moveRow({}, model.rowCount() - 1, {}, 0);
         }},
        {QStringLiteral("scroll to the end"),
         [](PdfDocumentModel &, const Ids &, Watcher &watcher) { watcher.scrollToEnd(); }},
    };
    if (!file.isEmpty()) {
        list.append({QStringLiteral("inspect the file"),
                     [file](PdfDocumentModel &, const Ids &, Watcher &) {
                         PdfDocumentInfo info;
                         PdfEditorBackend::inspectDocument(file, QString(), &info, nullptr,
                                                           nullptr);
                     }});
        list.append({QStringLiteral("load the file"),
                     [file](PdfDocumentModel &model, const Ids &, Watcher &) {
                         model.loadDocument(file, QString(), nullptr, nullptr);
                     }});
        list.append({QStringLiteral("insert the file"),
                     [file](PdfDocumentModel &model, const Ids &, Watcher &) {
                         model.insertDocument(file, kPages / 2, QString(), nullptr, nullptr);
                     }});
    }
    return list;
}

/// Milliseconds until the operation is done and everything it set off on this thread as well.
double timeOnce(const Operation &operation, const WatcherMaker &makeWatcher)
{
    PdfDocumentModel model;
    const std::unique_ptr<Watcher> watcher = makeWatcher();
    watcher->attach(&model);
    model.setPages(longDocument(), false);
    QCoreApplication::processEvents();
    const Ids ids = allIds(model);

    QElapsedTimer timer;
    timer.start();
    operation.run(model, ids, *watcher);
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
    return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

bool timeAll(const QString &title, const QString &file, const WatcherMaker &makeWatcher)
{
    bool withinBudget = true;
    out() << title << '\n';
    for (const Operation &operation : operations(file)) {
        QList<double> times;
        for (int run = 0; run < kRuns; ++run) {
            times.append(timeOnce(operation, makeWatcher));
        }
        std::sort(times.begin(), times.end());
        const double median = times.at(kRuns / 2);
        withinBudget = withinBudget && median < kBudgetMs;
        out() << QStringLiteral("  %1 %2 ms  %3 of the budget\n")
                     .arg(operation.name, -32)
                     .arg(median, 8, 'f', 2)
                     .arg(median / kBudgetMs, 6, 'f', 3);
        out().flush();
    }
    return withinBudget;
}

} // namespace

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    const QApplication application(argc, argv);
    const QString file = QCoreApplication::arguments().value(1);
    if (!file.isEmpty()) {
        PdfDocumentInfo info;
        QString message;
        QElapsedTimer timer;
        timer.start();
        if (!PdfEditorBackend::inspectDocument(file, QString(), &info, nullptr, &message)) {
            out() << file << ": " << message << '\n';
            return 1;
        }
        out() << file << ": " << info.pageSizes.size() << " pages, inspected for the first time in "
              << timer.elapsed() << " ms\n";
    }

    const bool model = timeAll(QStringLiteral("Model with an observer that reads the rows"), file,
                               [] { return std::make_unique<RowReader>(); });
    const bool view = timeAll(QStringLiteral("Model with a document view"), file,
                              [] { return std::make_unique<DocumentViewer>(); });
    return model && view ? 0 : 1;
}
