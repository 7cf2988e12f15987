// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/core/pdf_document_model.h"
#include "tests/pdf/core/model_signal_log.h"

#include <QSignalSpy>
#include <QTest>

#include <memory>

namespace {

constexpr int kPages = 10000;

QList<PdfPageId> idsFrom(PdfPageId first, int count, int step = 1)
{
    QList<PdfPageId> ids;
    ids.reserve(count);
    for (int i = 0; i < count; ++i) {
        ids.append(first + static_cast<PdfPageId>(i) * static_cast<PdfPageId>(step));
    }
    return ids;
}

} // namespace

/// Documents of ten thousand pages: one notification per changed row, none beyond, and the right
/// list in the end. Without the model tester, which reads the whole model at every notification.
class TestPdfDocumentModelScale final : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void selectAllReportsEachRowOnce();
    void rotateAllReportsEachRowOnce();
    void duplicatesOfAThousandScatteredPages();
    void removalOfEverySecondPage();
    void removalOfTheFirstHalf();
    void snapshotsShareTheirMemory();
    void lookUpsFromASlotStayRight();

private:
    std::unique_ptr<PdfDocumentModel> m_model;
};

void TestPdfDocumentModelScale::init()
{
    m_model = std::make_unique<PdfDocumentModel>();
    m_model->setPages(recordsWithIds(idsFrom(1, kPages)), false);
}

void TestPdfDocumentModelScale::cleanup()
{
    m_model.reset();
}

void TestPdfDocumentModelScale::selectAllReportsEachRowOnce()
{
    const QSignalSpy rows(m_model.get(), &PdfDocumentModel::dataChanged);
    const QSignalSpy selection(m_model.get(), &PdfDocumentModel::selectionChanged);
    m_model->selectAll();
    QCOMPARE(rows.size(), kPages);
    QCOMPARE(selection.size(), 1);
    QCOMPARE(m_model->selectedRows().size(), kPages);
}

void TestPdfDocumentModelScale::rotateAllReportsEachRowOnce()
{
    const QSignalSpy rows(m_model.get(), &PdfDocumentModel::dataChanged);
    m_model->rotatePages(idsFrom(1, kPages), 90);
    QCOMPARE(rows.size(), kPages);
    QCOMPARE(m_model->pageAt(kPages - 1)->rotation, 90);
}

void TestPdfDocumentModelScale::duplicatesOfAThousandScatteredPages()
{
    const QSignalSpy insertions(m_model.get(), &PdfDocumentModel::rowsInserted);
    const QSignalSpy order(m_model.get(), &PdfDocumentModel::pageOrderChanged);
    QCOMPARE(m_model->duplicatePages(idsFrom(1, 1000, 10)), idsFrom(kPages + 1, 1000));
    QCOMPARE(insertions.size(), 1000);
    QCOMPARE(order.size(), 1);
    for (int i = 0; i < 1000; ++i) {
        const int row = i * 11;
        QCOMPARE(m_model->pageAt(row)->id, static_cast<PdfPageId>(i) * 10 + 1);
        QCOMPARE(m_model->pageAt(row + 1)->id, static_cast<PdfPageId>(kPages + 1 + i));
    }
}

void TestPdfDocumentModelScale::removalOfEverySecondPage()
{
    const QSignalSpy removals(m_model.get(), &PdfDocumentModel::rowsRemoved);
    const QSignalSpy order(m_model.get(), &PdfDocumentModel::pageOrderChanged);
    m_model->removePages(idsFrom(1, kPages / 2, 2));
    QCOMPARE(removals.size(), kPages / 2);
    QCOMPARE(order.size(), 1);
    QCOMPARE(idsOf(*m_model), idsFrom(2, kPages / 2, 2));
}

void TestPdfDocumentModelScale::removalOfTheFirstHalf()
{
    const QSignalSpy removals(m_model.get(), &PdfDocumentModel::rowsRemoved);
    m_model->removePages(idsFrom(1, kPages / 2));
    QCOMPARE(removals.size(), kPages / 2);
    QCOMPARE(removals.first().at(1).toInt(), kPages / 2 - 1);
    QCOMPARE(removals.last().at(1).toInt(), 0);
    QCOMPARE(idsOf(*m_model), idsFrom(kPages / 2 + 1, kPages / 2));
}

void TestPdfDocumentModelScale::snapshotsShareTheirMemory()
{
    const auto sharesMemory = [this] {
        const QList<PdfPageRecord> first = m_model->pages();
        return first.constData() == m_model->pages().constData();
    };
    m_model->removePages(idsFrom(1, 10));
    QVERIFY(sharesMemory());
    m_model->duplicatePages({100, 200});
    QVERIFY(sharesMemory());
    m_model->moveRow({}, 5, {}, 500);
    QVERIFY(sharesMemory());
    m_model->insertBlankPage(70, {});
    QVERIFY(sharesMemory());
    const QList<PdfPageRecord> records = m_model->pages();
    m_model->setPages(records, true);
    QCOMPARE(m_model->pages().constData(), records.constData());
}

void TestPdfDocumentModelScale::lookUpsFromASlotStayRight()
{
    int wrongRows = 0;
    connect(m_model.get(), &PdfDocumentModel::rowsRemoved, this,
            [this, &wrongRows](const QModelIndex &, int first) {
                const PdfPageRecord *follower = m_model->pageAt(first);
                if (follower && m_model->rowForPageId(follower->id) != first) {
                    ++wrongRows;
                }
            });
    m_model->removePages(idsFrom(1, 1000, 3));
    QCOMPARE(wrongRows, 0);
}

QTEST_GUILESS_MAIN(TestPdfDocumentModelScale)
#include "tst_pdf_document_model_scale.moc"
