// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/core/pdf_document_model.h"
#include "tests/pdf/core/model_signal_log.h"

#include <QTest>

namespace {

using Ids = QList<PdfPageId>;
using namespace ModelSignals;

} // namespace

/// Choosing pages, which is no edit.
class TestPdfDocumentModelSelection final : public QObject
{
    Q_OBJECT

private slots:
    // Selection.
    void checkingAPageIsNoEdit();
    void setDataAcceptsCheckStateAndSelectedRole_data();
    void setDataAcceptsCheckStateAndSelectedRole();
    void setDataOfAnEqualValueIsRefused();
    void setDataOfOtherRolesOrRowsIsRefused();
    void setPageSelectedEffects();
    void setSelectedPageIdsEffects();
    void selectAllAndClearSelectionEffects();
    void selectionQueriesFollowTheRows();
};

void TestPdfDocumentModelSelection::checkingAPageIsNoEdit()
{
    ObservedModel observed;
    showPages(observed, {1, 2});
    const quint64 revision = observed.model.documentRevision();
    QVERIFY(observed.model.setData(observed.model.index(1), Qt::Checked, Qt::CheckStateRole));
    observed.model.selectAll();
    observed.model.clearSelection();
    observed.model.setPageSelected(1, true);
    QCOMPARE(observed.model.documentRevision(), revision);
    QVERIFY(!observed.model.isModified());
    QVERIFY(!observed.model.pageAt(0)->changed);
}

void TestPdfDocumentModelSelection::setDataAcceptsCheckStateAndSelectedRole_data()
{
    QTest::addColumn<int>("role");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<bool>("before");
    QTest::addColumn<bool>("after");
    const int check = Qt::CheckStateRole;
    const int selected = PdfDocumentModel::SelectedRole;
    QTest::newRow("checked") << check << QVariant(2) << false << true;
    QTest::newRow("checked as enumerator")
        << check << QVariant::fromValue(Qt::Checked) << false << true;
    QTest::newRow("unchecked") << check << QVariant(0) << true << false;
    QTest::newRow("partially checked is not selected") << check << QVariant(1) << true << false;
    QTest::newRow("selected") << selected << QVariant(true) << false << true;
    QTest::newRow("not selected") << selected << QVariant(false) << true << false;
}

void TestPdfDocumentModelSelection::setDataAcceptsCheckStateAndSelectedRole()
{
    QFETCH(int, role);
    QFETCH(QVariant, value);
    QFETCH(bool, before);
    QFETCH(bool, after);
    ObservedModel observed;
    showPages(observed, {1, 2});
    observed.model.setPageSelected(2, before);
    observed.log.take();
    QVERIFY(observed.model.setData(observed.model.index(1), value, role));
    QCOMPARE(observed.model.pageAt(1)->selected, after);
    QCOMPARE(observed.log.take(), (QStringList{selectionOfRow(1), kSelection}));
}

void TestPdfDocumentModelSelection::setDataOfAnEqualValueIsRefused()
{
    ObservedModel observed;
    showPages(observed, {1});
    const QModelIndex index = observed.model.index(0);
    QVERIFY(!observed.model.setData(index, Qt::Unchecked, Qt::CheckStateRole));
    QVERIFY(!observed.model.setData(index, Qt::PartiallyChecked, Qt::CheckStateRole));
    QVERIFY(!observed.model.setData(index, false, PdfDocumentModel::SelectedRole));
    QCOMPARE(observed.log.take(), QStringList());
}

void TestPdfDocumentModelSelection::setDataOfOtherRolesOrRowsIsRefused()
{
    ObservedModel observed;
    showPages(observed, {1});
    const QModelIndex index = observed.model.index(0);
    QVERIFY(!observed.model.setData(index, 90, PdfDocumentModel::RotationRole));
    QVERIFY(!observed.model.setData(index, QStringLiteral("x"), Qt::EditRole));
    QVERIFY(!observed.model.setData(index, 5, Qt::DisplayRole));
    QVERIFY(!observed.model.setData({}, true, PdfDocumentModel::SelectedRole));
    observed.model.setPages({}, false);
    observed.log.take();
    QVERIFY(!observed.model.setData(index, true, PdfDocumentModel::SelectedRole));
    QCOMPARE(observed.log.take(), QStringList());
}

void TestPdfDocumentModelSelection::setPageSelectedEffects()
{
    ObservedModel observed;
    showPages(observed, {1, 2});
    observed.model.setPageSelected(2, true);
    QCOMPARE(observed.log.take(), (QStringList{selectionOfRow(1), kSelection}));
    observed.model.setPageSelected(2, true);
    observed.model.setPageSelected(99, true);
    QCOMPARE(observed.log.take(), QStringList());
    QCOMPARE(observed.model.selectedRows(), QList<int>{1});
}

void TestPdfDocumentModelSelection::setSelectedPageIdsEffects()
{
    ObservedModel observed;
    showPages(observed, {1, 2, 3, 4});
    observed.model.setSelectedPageIds({1, 2});
    QCOMPARE(observed.log.take(), (QStringList{selectionOfRow(0), selectionOfRow(1), kSelection}));
    observed.model.setSelectedPageIds({2, 4, 99});
    QCOMPARE(observed.log.take(), (QStringList{selectionOfRow(0), selectionOfRow(3), kSelection}));
    QCOMPARE(observed.model.selectedRows(), (QList<int>{1, 3}));
    observed.model.setSelectedPageIds({4, 2});
    QCOMPARE(observed.log.take(), QStringList());
}

void TestPdfDocumentModelSelection::selectAllAndClearSelectionEffects()
{
    ObservedModel observed;
    showPages(observed, {1, 2, 3});
    observed.model.setPageSelected(2, true);
    observed.log.take();
    const quint64 revision = observed.model.documentRevision();
    observed.model.selectAll();
    QCOMPARE(observed.log.take(), (QStringList{selectionOfRow(0), selectionOfRow(2), kSelection}));
    observed.model.selectAll();
    QCOMPARE(observed.log.take(), QStringList());
    observed.model.clearSelection();
    QCOMPARE(observed.log.take(),
             (QStringList{selectionOfRow(0), selectionOfRow(1), selectionOfRow(2), kSelection}));
    observed.model.clearSelection();
    QCOMPARE(observed.log.take(), QStringList());
    QCOMPARE(observed.model.documentRevision(), revision);
    QVERIFY(!observed.model.isModified());
}

void TestPdfDocumentModelSelection::selectionQueriesFollowTheRows()
{
    ObservedModel observed;
    showPages(observed, {1, 2, 3});
    observed.model.setSelectedPageIds({1, 3});
    observed.model.moveRow({}, 0, {}, 3);
    QCOMPARE(observed.model.selectedRows(), (QList<int>{1, 2}));
    QCOMPARE(observed.model.selectedPageIds(), (QSet<PdfPageId>{1, 3}));
    observed.model.removePages({3});
    QCOMPARE(observed.model.selectedRows(), QList<int>{1});
    QCOMPARE(observed.model.selectedPageIds(), QSet<PdfPageId>{1});
}

QTEST_GUILESS_MAIN(TestPdfDocumentModelSelection)
#include "tst_pdf_document_model_selection.moc"
