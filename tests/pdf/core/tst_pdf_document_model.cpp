// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/core/pdf_document_model.h"
#include "tests/pdf/core/model_signal_log.h"
#include "tests/pdf/signal_signatures.h"

#include <QTest>

#include <algorithm>
#include <functional>
#include <limits>

namespace {

using Ids = QList<PdfPageId>;
using namespace ModelSignals;

/// The page identifiers as a view knows them that only ever listens to notifications.
class MirrorView final : public QObject
{
    Q_OBJECT

public:
    explicit MirrorView(PdfDocumentModel *model)
        : m_model(model)
    {
        connect(model, &QAbstractItemModel::modelReset, this, [this] {
            m_ids = idsOf(*m_model);
            compare();
        });
        connect(model, &QAbstractItemModel::rowsInserted, this,
                [this](const QModelIndex &, int first, int last) {
                    for (int row = first; row <= last; ++row) {
                        m_ids.insert(row, m_model->pageAt(row)->id);
                    }
                    compare();
                });
        connect(model, &QAbstractItemModel::rowsRemoved, this,
                [this](const QModelIndex &, int first, int last) {
                    m_ids.remove(first, last - first + 1);
                    compare();
                });
        connect(model, &QAbstractItemModel::rowsMoved, this,
                [this](const QModelIndex &, int first, int, const QModelIndex &, int row) {
                    m_ids.move(first, row > first ? row - 1 : row);
                    compare();
                });
    }

    int comparisons = 0;
    int differences = 0;

private:
    void compare()
    {
        ++comparisons;
        Ids fromPages;
        for (const PdfPageRecord &record : m_model->pages()) {
            fromPages.append(record.id);
        }
        bool same =
            std::ranges::equal(idsOf(*m_model), m_ids) && std::ranges::equal(fromPages, m_ids);
        for (qsizetype row = 0; row < m_ids.size(); ++row) {
            same = same && m_model->rowForPageId(m_ids.at(row)) == row;
        }
        differences += same ? 0 : 1;
    }

    PdfDocumentModel *m_model;
    Ids m_ids;
};

} // namespace

/// Records, queries, whole lists, saving, and what views are told.
class TestPdfDocumentModel final : public QObject
{
    Q_OBJECT

private slots:
    // Records and queries.
    void displaySizeFollowsTheRotation_data();
    void displaySizeFollowsTheRotation();
    void sourcePagesCarryTheRecordsInOrder();
    void newModelIsEmptyUnmodifiedAndAtRevisionZero();
    void pageAtOutsideTheRowsIsNull();
    void rowForPageIdIsTheFirstRowWithTheId();
    void pagesAreASnapshot();
    void dataAnswersEveryRole();
    void dataOutsideTheRowsIsEmpty();
    void noRoleShowsThePassword();
    void flagsAllowDropsBetweenRows();
    void rowsHaveNoChildren();
    void typesAreRegisteredUnderTheirNames();
    void signalsStandInTheirOrder();

    // Whole lists.
    void setPagesEffects();
    void setPagesRaisesTheIdentifierCounter();
    void setPagesNeverLowersTheIdentifierCounter();
    void revisionGrowsThroughUndoAndRedo();
    void restoredListHasItsCheckStates();

    // Saving.
    void markSavedEffects();
    void markSavedWithoutPathKeepsThePath();
    void markSavedOfAnUnmodifiedDocumentDoesNotRepeatSaved();
    void markSavedOfAnEmptyModelSendsNoRows();
    void setModifiedReportsChangesOnly();

    // Views.
    void viewsSeeAConsistentListAtEveryNotification();
    void notificationsComeWithTheirRevision_data();
    void notificationsComeWithTheirRevision();
};

void TestPdfDocumentModel::displaySizeFollowsTheRotation_data()
{
    QTest::addColumn<int>("rotation");
    QTest::addColumn<QSizeF>("size");
    QTest::newRow("0") << 0 << QSizeF(100, 200);
    QTest::newRow("90") << 90 << QSizeF(200, 100);
    QTest::newRow("180") << 180 << QSizeF(100, 200);
    QTest::newRow("270") << 270 << QSizeF(200, 100);
    QTest::newRow("360") << 360 << QSizeF(100, 200);
    QTest::newRow("450") << 450 << QSizeF(200, 100);
    QTest::newRow("-90") << -90 << QSizeF(200, 100);
    QTest::newRow("-180") << -180 << QSizeF(100, 200);
    QTest::newRow("45") << 45 << QSizeF(100, 200);
}

void TestPdfDocumentModel::displaySizeFollowsTheRotation()
{
    QFETCH(int, rotation);
    QFETCH(QSizeF, size);
    PdfPageRecord record;
    record.pageSize = QSizeF(100, 200);
    record.rotation = rotation;
    QCOMPARE(record.displaySize(), size);
}

void TestPdfDocumentModel::sourcePagesCarryTheRecordsInOrder()
{
    ObservedModel observed;
    QList<PdfPageRecord> records = recordsWithIds({1, 2, 3, 4});
    records[0].rotation = 270;
    records[1].origin = PdfPageOrigin::Inserted;
    records[2].origin = PdfPageOrigin::Blank;
    records[2].sourcePath.clear();
    records[2].password.clear();
    records[2].sourcePageIndex = -1;
    records[2].pageSize = QSizeF(300, 400);
    records[3].origin = PdfPageOrigin::Duplicate;
    observed.model.setPages(records, false);

    const QList<PdfSourcePage> sources = observed.model.sourcePages();
    QCOMPARE(sources.size(), 4);
    for (qsizetype i = 0; i < sources.size(); ++i) {
        QCOMPARE(sources.at(i).filePath, records.at(i).sourcePath);
        QCOMPARE(sources.at(i).password, records.at(i).password);
        QCOMPARE(sources.at(i).pageIndex, records.at(i).sourcePageIndex);
        QCOMPARE(sources.at(i).rotation, records.at(i).rotation);
        QCOMPARE(sources.at(i).pageSize, records.at(i).pageSize);
        QCOMPARE(sources.at(i).isBlank, i == 2);
    }
}

void TestPdfDocumentModel::newModelIsEmptyUnmodifiedAndAtRevisionZero()
{
    ObservedModel observed;
    PdfDocumentModel &model = observed.model;
    QCOMPARE(model.rowCount(), 0);
    QCOMPARE(model.documentRevision(), 0U);
    QVERIFY(!model.isModified());
    QVERIFY(model.documentPath().isEmpty());
    QVERIFY(model.pages().isEmpty());
    QVERIFY(model.sourcePages().isEmpty());
    QVERIFY(model.selectedRows().isEmpty());
    QVERIFY(model.selectedPageIds().isEmpty());
    QCOMPARE(model.insertBlankPage(0, {}), 1U);
}

void TestPdfDocumentModel::pageAtOutsideTheRowsIsNull()
{
    ObservedModel observed;
    QVERIFY(!observed.model.pageAt(0));
    showPages(observed, {7, 8});
    QVERIFY(!observed.model.pageAt(-1));
    QVERIFY(!observed.model.pageAt(2));
    QCOMPARE(observed.model.pageAt(1)->id, 8U);
}

void TestPdfDocumentModel::rowForPageIdIsTheFirstRowWithTheId()
{
    ObservedModel observed;
    showPages(observed, {5, 9, 9, 5});
    // Often enough for every way of looking up.
    for (int i = 0; i < 20; ++i) {
        QCOMPARE(observed.model.rowForPageId(5), 0);
        QCOMPARE(observed.model.rowForPageId(9), 1);
        QCOMPARE(observed.model.rowForPageId(6), -1);
        QCOMPARE(observed.model.rowForPageId(0), -1);
    }
    QVERIFY(observed.model.moveRows({}, 0, 1, {}, 2));
    for (int i = 0; i < 20; ++i) {
        QCOMPARE(observed.model.rowForPageId(9), 0);
        QCOMPARE(observed.model.rowForPageId(5), 1);
    }
}

void TestPdfDocumentModel::pagesAreASnapshot()
{
    ObservedModel observed;
    showPages(observed, {1, 2, 3});
    const QList<PdfPageRecord> before = observed.model.pages();
    observed.model.rotatePages({1}, 90);
    observed.model.removePages({2});
    observed.model.selectAll();
    QCOMPARE(before, recordsWithIds({1, 2, 3}));
    QCOMPARE(observed.model.pages().size(), 2);
}

void TestPdfDocumentModel::dataAnswersEveryRole()
{
    ObservedModel observed;
    QList<PdfPageRecord> records = recordsWithIds({41, 42});
    PdfPageRecord &record = records[1];
    record.rotation = 90;
    record.pageSize = QSizeF(100, 200);
    record.origin = PdfPageOrigin::Duplicate;
    record.selected = true;
    record.changed = true;
    observed.model.setPages(records, false);

    const QModelIndex index = observed.model.index(1);
    QCOMPARE(index.data(0), QVariant(2));
    QCOMPARE(index.data(10), QVariant(2));
    QCOMPARE(index.data(257), QVariant::fromValue<PdfPageId>(42));
    QCOMPARE(index.data(258), QVariant(QStringLiteral("/documents/report.pdf")));
    QCOMPARE(index.data(259), QVariant(1));
    QCOMPARE(index.data(260), QVariant(90));
    QCOMPARE(index.data(261), QVariant(true));
    QCOMPARE(index.data(262), QVariant(QSizeF(200, 100)));
    QCOMPARE(index.data(263), QVariant(3));
    QCOMPARE(index.data(264), QVariant(true));

    const QModelIndex first = observed.model.index(0);
    QCOMPARE(first.data(0), QVariant(1));
    QCOMPARE(first.data(10), QVariant(0));
    QCOMPARE(first.data(261), QVariant(false));
    QCOMPARE(first.data(263), QVariant(0));
    QCOMPARE(first.data(264), QVariant(false));

    for (const int role : {1, 2, 3, 4, 6, 13, 256, 265}) {
        QVERIFY2(!index.data(role).isValid(), qPrintable(QString::number(role)));
    }
}

void TestPdfDocumentModel::dataOutsideTheRowsIsEmpty()
{
    ObservedModel observed;
    showPages(observed, {1});
    QVERIFY(!observed.model.data({}, Qt::DisplayRole).isValid());
    QVERIFY(!observed.model.data({}, PdfDocumentModel::PageIdRole).isValid());
    const QModelIndex gone = observed.model.index(0);
    observed.model.setPages({}, false);
    QVERIFY(!observed.model.data(gone, Qt::DisplayRole).isValid());
}

void TestPdfDocumentModel::noRoleShowsThePassword()
{
    ObservedModel observed;
    showPages(observed, {1});
    const QModelIndex index = observed.model.index(0);
    for (int role = 0; role < Qt::UserRole + 200; ++role) {
        QVERIFY(!index.data(role).toString().contains(QStringLiteral("sesame")));
    }
}

void TestPdfDocumentModel::flagsAllowDropsBetweenRows()
{
    ObservedModel observed;
    showPages(observed, {1});
    QCOMPARE(observed.model.flags({}), Qt::ItemFlags(Qt::ItemIsDropEnabled));
    QCOMPARE(observed.model.flags(observed.model.index(0)),
             Qt::ItemIsSelectable | Qt::ItemIsDragEnabled | Qt::ItemIsDropEnabled |
                 Qt::ItemIsUserCheckable | Qt::ItemIsEnabled);
    QCOMPARE(observed.model.supportedDropActions(), Qt::DropActions(Qt::MoveAction));
    QCOMPARE(observed.model.supportedDragActions(), Qt::DropActions(Qt::MoveAction));
}

void TestPdfDocumentModel::rowsHaveNoChildren()
{
    ObservedModel observed;
    showPages(observed, {1, 2});
    QCOMPARE(observed.model.rowCount(), 2);
    QCOMPARE(observed.model.rowCount(observed.model.index(0)), 0);
}

void TestPdfDocumentModel::typesAreRegisteredUnderTheirNames()
{
    ObservedModel observed;
    QCOMPARE(QMetaType::fromName("PdfPageId"), QMetaType::fromType<quint64>());
}

void TestPdfDocumentModel::signalsStandInTheirOrder()
{
    QCOMPARE(signalSignatures(PdfDocumentModel::staticMetaObject),
             (QList<QByteArray>{"selectionChanged()", "pageOrderChanged()", "modifiedChanged(bool)",
                                "documentReset()"}));
}

void TestPdfDocumentModel::setPagesEffects()
{
    ObservedModel observed;
    showPages(observed, {1, 2});
    for (const bool modified : {true, true, false, false}) {
        const quint64 revision = observed.model.documentRevision();
        observed.model.setPages(recordsWithIds({2, 1, 3}), modified);
        QCOMPARE(observed.log.take(),
                 (QStringList{kReset, kSelection, modified ? kModified : kSaved, kDocument}));
        QCOMPARE(observed.model.documentRevision(), revision + 1);
        QCOMPARE(observed.model.isModified(), modified);
        QCOMPARE(observed.model.pages(), recordsWithIds({2, 1, 3}));
    }
}

void TestPdfDocumentModel::setPagesRaisesTheIdentifierCounter()
{
    ObservedModel observed;
    observed.model.setPages(recordsWithIds({7, 40, 12}), false);
    QCOMPARE(observed.model.insertBlankPage(-1, {}), 41U);
}

void TestPdfDocumentModel::setPagesNeverLowersTheIdentifierCounter()
{
    ObservedModel observed;
    observed.model.setPages(recordsWithIds({40}), false);
    observed.model.setPages(recordsWithIds({1, 2}), false);
    QCOMPARE(observed.model.insertBlankPage(-1, {}), 41U);
    observed.model.setPages({}, false);
    QCOMPARE(observed.model.insertBlankPage(-1, {}), 42U);
}

void TestPdfDocumentModel::revisionGrowsThroughUndoAndRedo()
{
    ObservedModel observed;
    showPages(observed, {1, 2, 3});
    const QList<PdfPageRecord> before = observed.model.pages();
    observed.model.removePages({2});
    const QList<PdfPageRecord> after = observed.model.pages();
    const quint64 edited = observed.model.documentRevision();
    observed.model.setPages(before, true);
    QCOMPARE(observed.model.documentRevision(), edited + 1);
    QCOMPARE(idsOf(observed.model), (Ids{1, 2, 3}));
    observed.model.setPages(after, true);
    QCOMPARE(observed.model.documentRevision(), edited + 2);
    QCOMPARE(idsOf(observed.model), (Ids{1, 3}));
}

void TestPdfDocumentModel::restoredListHasItsCheckStates()
{
    ObservedModel observed;
    showPages(observed, {1, 2, 3});
    observed.model.setSelectedPageIds({1, 3});
    const QList<PdfPageRecord> before = observed.model.pages();
    observed.model.rotatePages({1, 3}, 90);
    observed.model.clearSelection();
    observed.model.setPages(before, true);
    QCOMPARE(observed.model.selectedRows(), (QList<int>{0, 2}));
}

void TestPdfDocumentModel::markSavedEffects()
{
    ObservedModel observed;
    showPages(observed, {1, 2, 3});
    observed.model.rotatePages({1}, 90);
    observed.model.insertBlankPage(-1, {});
    observed.log.take();
    const quint64 revision = observed.model.documentRevision();
    observed.model.markSaved(QStringLiteral("/documents/new.pdf"));
    QCOMPARE(observed.log.take(), (QStringList{QStringLiteral("dataChanged 0-3 (264)"), kSaved}));
    QCOMPARE(observed.model.documentRevision(), revision);
    QVERIFY(!observed.model.isModified());
    QCOMPARE(observed.model.documentPath(), QStringLiteral("/documents/new.pdf"));
    for (int row = 0; row < observed.model.rowCount(); ++row) {
        QCOMPARE(observed.model.index(row).data(PdfDocumentModel::ChangedRole), QVariant(false));
    }
    // What the pages are made of stays.
    QCOMPARE(observed.model.pageAt(0)->sourcePath, QStringLiteral("/documents/report.pdf"));
    QCOMPARE(observed.model.pageAt(0)->rotation, 90);
}

void TestPdfDocumentModel::markSavedWithoutPathKeepsThePath()
{
    ObservedModel observed;
    showPages(observed, {1});
    observed.model.markSaved(QStringLiteral("/documents/a.pdf"));
    observed.model.markSaved(QString());
    QCOMPARE(observed.model.documentPath(), QStringLiteral("/documents/a.pdf"));
}

void TestPdfDocumentModel::markSavedOfAnUnmodifiedDocumentDoesNotRepeatSaved()
{
    ObservedModel observed;
    showPages(observed, {1, 2});
    observed.model.markSaved(QString());
    QCOMPARE(observed.log.take(), QStringList{QStringLiteral("dataChanged 0-1 (264)")});
}

void TestPdfDocumentModel::markSavedOfAnEmptyModelSendsNoRows()
{
    ObservedModel observed;
    observed.model.setModified(true);
    observed.log.take();
    observed.model.markSaved(QString());
    QCOMPARE(observed.log.take(), QStringList{kSaved});
}

void TestPdfDocumentModel::setModifiedReportsChangesOnly()
{
    ObservedModel observed;
    observed.model.setModified(false);
    QCOMPARE(observed.log.take(), QStringList());
    observed.model.setModified(true);
    observed.model.setModified(true);
    QCOMPARE(observed.log.take(), QStringList{kModified});
    QVERIFY(observed.model.isModified());
    observed.model.setModified(false);
    QCOMPARE(observed.log.take(), QStringList{kSaved});
    QCOMPARE(observed.model.documentRevision(), 0U);
}

void TestPdfDocumentModel::viewsSeeAConsistentListAtEveryNotification()
{
    ObservedModel observed;
    MirrorView view(&observed.model);
    Ids ids;
    for (PdfPageId id = 1; id <= 30; ++id) {
        ids.append(id);
    }
    observed.model.setPages(recordsWithIds(ids), false);
    observed.model.duplicatePages({30, 1, 7, 7, 15});
    observed.model.removePages({2, 30, 14, 31, 32, 3, 1});
    observed.model.insertBlankPage(4, {});
    observed.model.moveRow({}, 10, {}, 2);
    observed.model.moveRow({}, 2, {}, 20);
    observed.model.removePages(idsOf(observed.model));
    // One list, five copies, seven removals, two moves, two blank pages, and 29 removals.
    QCOMPARE(view.comparisons, 1 + 5 + 7 + 1 + 2 + 29 + 1);
    QCOMPARE(view.differences, 0);
}

void TestPdfDocumentModel::notificationsComeWithTheirRevision_data()
{
    using Operation = std::function<void(PdfDocumentModel &)>;
    QTest::addColumn<Operation>("operation");
    QTest::addColumn<QStringList>("seen");
    const auto row = [](const char *name, const Operation &operation, const QStringList &seen) {
        QTest::newRow(name) << operation << seen;
    };
    const QString rowsBefore = QStringLiteral("rows +0 saved");
    const QString modifiedAfter = QStringLiteral("modifiedChanged +1 modified");
    const QString orderAfter = QStringLiteral("pageOrderChanged +1 modified");
    row("insert", [](PdfDocumentModel &model) { model.insertBlankPage(0, {}); },
        {rowsBefore, modifiedAfter, orderAfter});
    row("duplicate", [](PdfDocumentModel &model) { model.duplicatePages({1}); },
        {rowsBefore, modifiedAfter, orderAfter});
    row("move", [](PdfDocumentModel &model) { model.moveRow({}, 0, {}, 2); },
        {rowsBefore, modifiedAfter, orderAfter});
    row("remove", [](PdfDocumentModel &model) { model.removePages({1}); },
        {rowsBefore, modifiedAfter, QStringLiteral("selectionChanged +1 modified"), orderAfter});
    row("remove all",
        [](PdfDocumentModel &model) {
            model.removePages({1, 2});
        },
        {rowsBefore, rowsBefore, rowsBefore, modifiedAfter, orderAfter,
         QStringLiteral("selectionChanged +2 modified"),
         QStringLiteral("pageOrderChanged +2 modified")});
    row("rotate", [](PdfDocumentModel &model) { model.rotatePages({2}, 90); },
        {QStringLiteral("dataChanged +0 saved"), modifiedAfter});
    row("whole list", [](PdfDocumentModel &model) { model.setPages(recordsWithIds({5}), true); },
        {QStringLiteral("modelReset +1 modified"), QStringLiteral("selectionChanged +1 modified"),
         modifiedAfter, QStringLiteral("documentReset +1 modified")});
    row("saved",
        [](PdfDocumentModel &model) {
            model.setModified(true);
            model.markSaved(QString());
        },
        {QStringLiteral("modifiedChanged +0 modified"), QStringLiteral("dataChanged +0 modified"),
         QStringLiteral("modifiedChanged +0 saved")});
}

void TestPdfDocumentModel::notificationsComeWithTheirRevision()
{
    QFETCH(const std::function<void(PdfDocumentModel &)>, operation);
    QFETCH(const QStringList, seen);
    ObservedModel observed;
    showPages(observed, {1, 2});
    const PdfDocumentModel &model = observed.model;
    const quint64 before = model.documentRevision();
    QStringList lines;
    const auto note = [&model, &lines, before](const QString &what) {
        return [&model, &lines, before, what] {
            lines << QStringLiteral("%1 +%2 %3")
                         .arg(what)
                         .arg(model.documentRevision() - before)
                         .arg(model.isModified() ? QStringLiteral("modified")
                                                 : QStringLiteral("saved"));
        };
    };
    const QObject context;
    const auto noteRows = note(QStringLiteral("rows"));
    connect(&model, &QAbstractItemModel::rowsInserted, &context, noteRows);
    connect(&model, &QAbstractItemModel::rowsRemoved, &context, noteRows);
    connect(&model, &QAbstractItemModel::rowsMoved, &context, noteRows);
    connect(&model, &QAbstractItemModel::modelReset, &context, note(QStringLiteral("modelReset")));
    connect(&model, &QAbstractItemModel::dataChanged, &context,
            note(QStringLiteral("dataChanged")));
    connect(&model, &PdfDocumentModel::selectionChanged, &context, note(kSelection));
    connect(&model, &PdfDocumentModel::pageOrderChanged, &context, note(kOrder));
    connect(&model, &PdfDocumentModel::modifiedChanged, &context,
            note(QStringLiteral("modifiedChanged")));
    connect(&model, &PdfDocumentModel::documentReset, &context, note(kDocument));

    operation(observed.model);
    QCOMPARE(lines, seen);
}

QTEST_GUILESS_MAIN(TestPdfDocumentModel)
#include "tst_pdf_document_model.moc"
