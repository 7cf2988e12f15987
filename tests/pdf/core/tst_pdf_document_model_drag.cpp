// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/core/page_drag_format.h"
#include "pdf/core/pdf_document_model.h"
#include "tests/pdf/core/model_signal_log.h"

#include <QMimeData>
#include <QTest>

#include <memory>

namespace {

using Ids = QList<PdfPageId>;

const QString kMime = QStringLiteral("application/x-plenvo-page-id");

std::unique_ptr<QMimeData> payload(const QByteArray &bytes, const QString &type = kMime)
{
    auto mime = std::make_unique<QMimeData>();
    mime->setData(type, bytes);
    return mime;
}

std::unique_ptr<QMimeData> dragOf(const PdfDocumentModel &model, const QList<int> &rows)
{
    QModelIndexList indexes;
    for (const int row : rows) {
        indexes.append(model.index(row));
    }
    return std::unique_ptr<QMimeData>(model.mimeData(indexes));
}

} // namespace

/// Dragging pages within and between documents.
class TestPdfDocumentModelDrag final : public QObject
{
    Q_OBJECT

private slots:
    void pageIdIsTheOnlyFormat();
    void dragOfOnePageIsEightBytes();
    void dragOfSeveralPagesIsAPlainSequence();
    void repeatedAndInvalidIndexesAreLeftOut();
    void payloadOfNothingIsEmpty();
    void firstPageIdNeedsEightBytes();

    void dropOfRowTwo_data();
    void dropOfRowTwo();
    void dropEffects();
    void dropMovesTheFirstPageOfThePayload();
    void dropIgnoresTheColumn();
    void ignoredDropIsAcceptedWithoutEffect();
    void dropOfAnotherFormatIsRefused();
    void dropOfABrokenPayloadIsRefused();
    void dropOfAPageOfAnotherDocumentIsRefused();
};

void TestPdfDocumentModelDrag::pageIdIsTheOnlyFormat()
{
    ObservedModel observed;
    QCOMPARE(observed.model.mimeTypes(), QStringList{kMime});
    showPages(observed, {1});
    QCOMPARE(dragOf(observed.model, {0})->formats(), QStringList{kMime});
}

void TestPdfDocumentModelDrag::dragOfOnePageIsEightBytes()
{
    ObservedModel observed;
    showPages(observed, {1, 0x0102030405060708});
    QCOMPARE(dragOf(observed.model, {1})->data(kMime), QByteArray::fromHex("0102030405060708"));
    QCOMPARE(dragOf(observed.model, {0})->data(kMime), QByteArray::fromHex("0000000000000001"));
}

void TestPdfDocumentModelDrag::dragOfSeveralPagesIsAPlainSequence()
{
    ObservedModel observed;
    showPages(observed, {1, 2, 300});
    QCOMPARE(dragOf(observed.model, {2, 0})->data(kMime),
             QByteArray::fromHex("000000000000012c0000000000000001"));
}

void TestPdfDocumentModelDrag::repeatedAndInvalidIndexesAreLeftOut()
{
    ObservedModel observed;
    showPages(observed, {1, 2});
    const auto mime = dragOf(observed.model, {1, -1, 1, 0, 7, 1});
    QCOMPARE(mime->data(kMime), QByteArray::fromHex("00000000000000020000000000000001"));
}

void TestPdfDocumentModelDrag::payloadOfNothingIsEmpty()
{
    ObservedModel observed;
    showPages(observed, {1, 2});
    const auto mime = dragOf(observed.model, {});
    QVERIFY(mime->data(kMime).isEmpty());
    QVERIFY(!observed.model.dropMimeData(mime.get(), Qt::MoveAction, 0, 0, {}));
}

void TestPdfDocumentModelDrag::firstPageIdNeedsEightBytes()
{
    QVERIFY(!PageDragFormat::firstPageId({}));
    QVERIFY(!PageDragFormat::firstPageId(QByteArray(7, '\0')));
    QCOMPARE(PageDragFormat::firstPageId(QByteArray::fromHex("000000000000000aff")).value_or(0),
             10U);
}

void TestPdfDocumentModelDrag::dropOfRowTwo_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("parentRow");
    QTest::addColumn<QList<PdfPageId>>("order");
    QTest::newRow("before the first") << 0 << -1 << Ids{3, 1, 2, 4, 5};
    QTest::newRow("before the last") << 4 << -1 << Ids{1, 2, 4, 3, 5};
    QTest::newRow("at the end") << 5 << -1 << Ids{1, 2, 4, 5, 3};
    QTest::newRow("beyond the end") << 6 << -1 << Ids();
    QTest::newRow("before itself") << 2 << -1 << Ids();
    QTest::newRow("behind itself") << 3 << -1 << Ids();
    QTest::newRow("onto nothing") << -1 << -1 << Ids{1, 2, 4, 5, 3};
    QTest::newRow("onto the first page") << -1 << 0 << Ids{3, 1, 2, 4, 5};
    QTest::newRow("onto the last page") << -1 << 4 << Ids{1, 2, 4, 3, 5};
    QTest::newRow("onto itself") << -1 << 2 << Ids();
    QTest::newRow("onto the next page") << -1 << 3 << Ids();
    QTest::newRow("the row goes before the page") << 0 << 4 << Ids{3, 1, 2, 4, 5};
}

void TestPdfDocumentModelDrag::dropOfRowTwo()
{
    QFETCH(int, row);
    QFETCH(int, parentRow);
    QFETCH(QList<PdfPageId>, order);
    ObservedModel observed;
    showPages(observed, {1, 2, 3, 4, 5});
    const QModelIndex parent = parentRow < 0 ? QModelIndex() : observed.model.index(parentRow);
    const auto mime = dragOf(observed.model, {2});
    const bool moved = observed.model.dropMimeData(mime.get(), Qt::MoveAction, row, 0, parent);
    QCOMPARE(moved, !order.isEmpty());
    QCOMPARE(idsOf(observed.model), moved ? order : (Ids{1, 2, 3, 4, 5}));
    if (!moved) {
        QCOMPARE(observed.log.take(), QStringList());
        QVERIFY(!observed.model.isModified());
    }
}

void TestPdfDocumentModelDrag::dropEffects()
{
    ObservedModel observed;
    showPages(observed, {1, 2, 3});
    const quint64 revision = observed.model.documentRevision();
    const auto mime = dragOf(observed.model, {2});
    QVERIFY(observed.model.dropMimeData(mime.get(), Qt::MoveAction, 0, 0, {}));
    QCOMPARE(observed.log.take(), (QStringList{QStringLiteral("rowsMoved 2 to 0"),
                                               QStringLiteral("modifiedChanged true"),
                                               QStringLiteral("pageOrderChanged")}));
    QCOMPARE(observed.model.documentRevision(), revision + 1);
    QVERIFY(observed.model.isModified());
}

void TestPdfDocumentModelDrag::dropMovesTheFirstPageOfThePayload()
{
    ObservedModel observed;
    showPages(observed, {1, 2, 3, 4});
    const auto mime = dragOf(observed.model, {2, 3});
    QVERIFY(observed.model.dropMimeData(mime.get(), Qt::MoveAction, 0, 0, {}));
    QCOMPARE(idsOf(observed.model), (Ids{3, 1, 2, 4}));
}

void TestPdfDocumentModelDrag::dropIgnoresTheColumn()
{
    ObservedModel observed;
    showPages(observed, {1, 2});
    const auto mime = dragOf(observed.model, {1});
    QVERIFY(observed.model.dropMimeData(mime.get(), Qt::MoveAction, 0, 17, {}));
    QCOMPARE(idsOf(observed.model), (Ids{2, 1}));
}

void TestPdfDocumentModelDrag::ignoredDropIsAcceptedWithoutEffect()
{
    ObservedModel observed;
    showPages(observed, {1, 2});
    const auto mime = dragOf(observed.model, {1});
    QVERIFY(observed.model.dropMimeData(mime.get(), Qt::IgnoreAction, 0, 0, {}));
    QCOMPARE(idsOf(observed.model), (Ids{1, 2}));
    QCOMPARE(observed.log.take(), QStringList());
}

void TestPdfDocumentModelDrag::dropOfAnotherFormatIsRefused()
{
    ObservedModel observed;
    showPages(observed, {1, 2});
    const auto mime =
        payload(QByteArray::fromHex("0000000000000002"), QStringLiteral("text/plain"));
    QVERIFY(!observed.model.dropMimeData(mime.get(), Qt::MoveAction, 0, 0, {}));
    QVERIFY(!observed.model.dropMimeData(nullptr, Qt::MoveAction, 0, 0, {}));
    QCOMPARE(observed.log.take(), QStringList());
}

void TestPdfDocumentModelDrag::dropOfABrokenPayloadIsRefused()
{
    ObservedModel observed;
    showPages(observed, {1, 2});
    for (const char *bytes : {"", "02", "00000000000002", "0000000000000000"}) {
        const auto mime = payload(QByteArray::fromHex(bytes));
        QVERIFY2(!observed.model.dropMimeData(mime.get(), Qt::MoveAction, 0, 0, {}), bytes);
    }
    QCOMPARE(observed.log.take(), QStringList());
}

void TestPdfDocumentModelDrag::dropOfAPageOfAnotherDocumentIsRefused()
{
    ObservedModel observed;
    showPages(observed, {1, 2, 3});
    const QList<PdfPageRecord> before = observed.model.pages();
    const quint64 revision = observed.model.documentRevision();
    ObservedModel other;
    showPages(other, {10, 11});
    const auto mime = dragOf(other.model, {1});
    QVERIFY(!observed.model.dropMimeData(mime.get(), Qt::MoveAction, 0, 0, {}));
    QCOMPARE(observed.model.pages(), before);
    QCOMPARE(observed.model.documentRevision(), revision);
    QVERIFY(!observed.model.isModified());
    QCOMPARE(observed.log.take(), QStringList());
    QCOMPARE(idsOf(other.model), (Ids{10, 11}));
}

QTEST_GUILESS_MAIN(TestPdfDocumentModelDrag)
#include "tst_pdf_document_model_drag.moc"
