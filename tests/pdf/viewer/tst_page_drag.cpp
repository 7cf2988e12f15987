#include "tests/pdf/viewer/page_drag.h"

#include "tests/pdf/viewer/shown_panel.h"
#include "tests/pdf/viewer/shown_view.h"

#include <QApplication>
#include <QSignalSpy>
#include <QTest>

namespace {

QList<PdfPageId> idsOf(const PdfDocumentModel &model)
{
    QList<PdfPageId> ids;
    for (const PdfPageRecord &record : model.pages()) {
        ids.append(record.id);
    }
    return ids;
}

} // namespace

/// Pages dragged with the mouse.
class TestPageDrag final : public QObject
{
    Q_OBJECT

private slots:
    void pageDraggedInThePanelIsMoved_data();
    void pageDraggedInThePanelIsMoved();
    void panelRefusesPagesOfAnotherDocument();
};

void TestPageDrag::pageDraggedInThePanelIsMoved_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("to");
    QTest::addColumn<bool>("below");
    QTest::addColumn<QList<PdfPageId>>("order");
    QTest::newRow("down") << 0 << 2 << true << QList<PdfPageId>{2, 3, 1};
    QTest::newRow("between") << 0 << 2 << false << QList<PdfPageId>{2, 1, 3};
    QTest::newRow("up") << 2 << 0 << false << QList<PdfPageId>{3, 1, 2};
    QTest::newRow("onto itself") << 1 << 1 << true << QList<PdfPageId>{1, 2, 3};
    QTest::newRow("before its follower") << 0 << 1 << false << QList<PdfPageId>{1, 2, 3};
    QTest::newRow("behind its predecessor") << 2 << 1 << true << QList<PdfPageId>{1, 2, 3};
}

void TestPageDrag::pageDraggedInThePanelIsMoved()
{
    QFETCH(int, from);
    QFETCH(int, to);
    QFETCH(bool, below);
    ShownPanel shown(a4Pages(3), {210, 900});
    QSignalSpy moved(&shown.model, &QAbstractItemModel::rowsMoved);
    const QRect target = shown.itemAt(to);
    const QPoint point = target.center() + QPoint(0, below ? 60 : -60);
    dragWithMouse(shown.list->viewport(), shown.cardCentre(from), shown.list->viewport(), point);
    QTEST(idsOf(shown.model), "order");
    QVERIFY(moved.size() <= 1);
    QCOMPARE(shown.list->draggedPage(), PdfPageId(0));
}

void TestPageDrag::panelRefusesPagesOfAnotherDocument()
{
    ShownPanel shown(a4Pages(3), {210, 900});
    ShownPanel other(a4Pages(3), {210, 900});
    other.panel.move(400, 0);
    QCoreApplication::processEvents();
    dragWithMouse(other.list->viewport(), other.cardCentre(0), shown.list->viewport(),
                  shown.itemAt(2).center() + QPoint(0, 60));
    QCOMPARE(idsOf(shown.model), (QList<PdfPageId>{1, 2, 3}));
    QCOMPARE(idsOf(other.model), (QList<PdfPageId>{1, 2, 3}));
    QVERIFY(!shown.model.isModified());
}

int main(int argc, char **argv)
{
    // The platform that the other tests run on knows no dragging.
    qputenv("QT_QPA_PLATFORM", "minimal");
    const QApplication application(argc, argv);
    TestPageDrag test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_page_drag.moc"
