// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/core/pdf_undo_manager.h"
#include "tests/pdf/viewer/shown_viewer.h"
#include "tests/support/pdf_fixture.h"

#include <QLineEdit>
#include <QListView>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

constexpr int kPages = 300;
constexpr int kRead = 150;

} // namespace

/// What the reader has before them while the document is edited.
class TestPdfViewerReadingPlace final : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void pagesInsertedAtTheEndMoveNothing();
    void pagesInsertedBeforeKeepThePageInPlace();
    void otherPagesDeletedKeepThePageInPlace();
    void nextPageTakesThePlaceOfADeletedOne();
    void nearestPageTakesThePlaceOfManyDeletedOnes();
    void neighbourBeginsInTheViewport();
    void lastPageDeletedLeavesThePageBefore();
    void undoAndRedoKeepThePage();
    void movedPageIsFollowed();
    void turnedPageStaysInTheMiddle();
    void turnedPageIsFitAgain_data();
    void turnedPageIsFitAgain();
    void editsOfOnePassCountAsOne();
    void onePageLeftIsFoundAgain();
    void pageGoneToAfterAnEditIsShown();
    void anotherDocumentBeginsAtItsStart();
    void clickedPageIsCurrentEverywhere();
    void clickedPageStaysCurrentThroughUndo();
    void gridOpensAtThePageThatIsRead();
    void pageThatIsReadIsNotChosenWithAnother();

private:
    [[nodiscard]] int topOf(PdfPageId id) const;
    void readPage(int row);
    void settle() const;
    /// The page that the bar names, counted from zero.
    [[nodiscard]] int shownPage() const;
    [[nodiscard]] PdfUndoManager &edits() const { return m_shown->part<PdfUndoManager>(); }

    std::unique_ptr<ShownViewer> m_shown;
    PdfPageId m_read = 0;
    int m_top = 0;
};

void TestPdfViewerReadingPlace::init()
{
    m_shown = std::make_unique<ShownViewer>();
    QVERIFY(m_shown->openPages(kPages));
    m_shown->view().setZoomFactor(2.0);
    readPage(kRead);
}

void TestPdfViewerReadingPlace::cleanup()
{
    m_shown.reset();
}

/// The upper edge of a page on the screen, seen from that of the page that is current.
int TestPdfViewerReadingPlace::topOf(PdfPageId id) const
{
    QList<QSizeF> sizes;
    for (const PdfPageRecord &record : m_shown->model().pages()) {
        sizes.append(record.displaySize());
    }
    const PdfDocumentView &view = m_shown->view();
    const PageLayout layout = computePageLayout(sizes, view.zoomFactor(), view.viewport()->size());
    return layout.pages.at(m_shown->model().rowForPageId(id)).top() -
           view.verticalScrollBar()->value();
}

/// Scrolls so that a page is read somewhere in its middle.
void TestPdfViewerReadingPlace::readPage(int row)
{
    m_shown->view().goToPage(row);
    QScrollBar *bar = m_shown->view().verticalScrollBar();
    bar->setValue(bar->value() + 100);
    settle();
    QCOMPARE(m_shown->view().currentPage(), row);
    m_read = m_shown->model().pageAt(row)->id;
    m_top = topOf(m_read);
    QVERIFY(m_top < 0);
}

void TestPdfViewerReadingPlace::settle() const
{
    QCoreApplication::processEvents();
    QCoreApplication::processEvents();
}

int TestPdfViewerReadingPlace::shownPage() const
{
    return m_shown->bottomBar().findChild<QLineEdit *>(u"pdfPageNumberEdit"_s)->text().toInt() - 1;
}

void TestPdfViewerReadingPlace::pagesInsertedAtTheEndMoveNothing()
{
    const QString more = m_shown->add(u"more.pdf"_s, PdfFixture::pagesByNumber(120));
    m_shown->viewer->insertPdfFiles({more}, kPages);
    settle();
    QCOMPARE(m_shown->model().rowCount(), kPages + 120);
    QCOMPARE(m_shown->view().currentPage(), kRead);
    QCOMPARE(topOf(m_read), m_top);
}

void TestPdfViewerReadingPlace::pagesInsertedBeforeKeepThePageInPlace()
{
    const QString more = m_shown->add(u"more.pdf"_s, PdfFixture::pagesByNumber(20));
    m_shown->viewer->insertPdfFiles({more}, 0);
    settle();
    QCOMPARE(m_shown->view().currentPage(), kRead + 20);
    QCOMPARE(topOf(m_read), m_top);
    QCOMPARE(shownPage(), kRead + 20);
}

void TestPdfViewerReadingPlace::otherPagesDeletedKeepThePageInPlace()
{
    QList<PdfPageId> others;
    for (int row = 0; row < 100; ++row) {
        others.append(m_shown->model().pageAt(row)->id);
    }
    others.append(m_shown->model().pageAt(kPages - 1)->id);
    edits().deletePages(others);
    settle();
    QCOMPARE(m_shown->view().currentPage(), kRead - 100);
    QCOMPARE(topOf(m_read), m_top);
}

void TestPdfViewerReadingPlace::nextPageTakesThePlaceOfADeletedOne()
{
    QScrollBar *bar = m_shown->view().verticalScrollBar();
    bar->setValue(bar->value() + m_top - 60);
    settle();
    QCOMPARE(m_shown->view().currentPage(), kRead);
    QCOMPARE(topOf(m_read), 60);
    const PdfPageId next = m_shown->model().pageAt(kRead + 1)->id;
    edits().deletePages({m_read});
    settle();
    QCOMPARE(m_shown->view().currentPage(), kRead);
    QCOMPARE(m_shown->model().pageAt(kRead)->id, next);
    QCOMPARE(topOf(next), 60);
}

void TestPdfViewerReadingPlace::nearestPageTakesThePlaceOfManyDeletedOnes()
{
    QList<PdfPageId> around;
    for (int row = kRead - 100; row < kRead + 20; ++row) {
        around.append(m_shown->idAt(row));
    }
    const PdfPageId nearest = m_shown->idAt(kRead + 20);
    edits().deletePages(around);
    settle();
    QCOMPARE(m_shown->view().currentPage(), kRead - 100);
    QCOMPARE(m_shown->idAt(kRead - 100), nearest);
    QCOMPARE(topOf(nearest), 32);
}

void TestPdfViewerReadingPlace::neighbourBeginsInTheViewport()
{
    const PdfPageId next = m_shown->model().pageAt(kRead + 1)->id;
    edits().deletePages({m_read});
    settle();
    QCOMPARE(topOf(next), 32);
    QCOMPARE(m_shown->view().currentPage(), m_shown->model().rowForPageId(next));
}

void TestPdfViewerReadingPlace::lastPageDeletedLeavesThePageBefore()
{
    m_shown->view().goToPage(kPages - 1);
    settle();
    edits().deletePages({m_shown->model().pageAt(kPages - 1)->id});
    settle();
    QCOMPARE(m_shown->view().currentPage(), kPages - 2);
}

void TestPdfViewerReadingPlace::undoAndRedoKeepThePage()
{
    edits().deletePages({m_shown->model().pageAt(10)->id, m_shown->model().pageAt(20)->id});
    settle();
    QSignalSpy changed(m_shown->viewer.get(), &PdfViewerWidget::currentPageChanged);
    m_shown->history().undo();
    settle();
    QCOMPARE(m_shown->view().currentPage(), kRead);
    QCOMPARE(topOf(m_read), m_top);
    QCOMPARE(shownPage(), kRead);
    QCOMPARE(changed.last().first().toInt(), kRead);
    m_shown->history().redo();
    settle();
    QCOMPARE(m_shown->view().currentPage(), kRead - 2);
    QCOMPARE(topOf(m_read), m_top);
    QCOMPARE(shownPage(), kRead - 2);
}

void TestPdfViewerReadingPlace::movedPageIsFollowed()
{
    m_shown->movePage(kRead, 5);
    settle();
    QCOMPARE(m_shown->model().rowForPageId(m_read), 5);
    QCOMPARE(m_shown->view().currentPage(), 5);
    QCOMPARE(topOf(m_read), m_top);
}

void TestPdfViewerReadingPlace::turnedPageStaysInTheMiddle()
{
    edits().rotatePages({m_read}, 90);
    settle();
    QCOMPARE(m_shown->view().currentPage(), kRead);
    const int top = topOf(m_read);
    const int middle = m_shown->view().viewport()->height() / 2;
    QVERIFY(top < middle);
    QVERIFY(m_shown->view().readingPlace()->middle.beyond.y() == 0.0);
}

void TestPdfViewerReadingPlace::turnedPageIsFitAgain_data()
{
    QTest::addColumn<bool>("width");
    QTest::newRow("width") << true;
    QTest::newRow("page") << false;
}

void TestPdfViewerReadingPlace::turnedPageIsFitAgain()
{
    QFETCH(bool, width);
    PdfFixture::Page wide;
    wide.mediaBox = QRectF(0, 0, 800, 200);
    QVERIFY(m_shown->viewer->openFile(
        m_shown->add(u"wide.pdf"_s, PdfFixture::document(QList<PdfFixture::Page>(9, wide))), {}));
    if (width) {
        m_shown->viewer->fitWidth();
    } else {
        m_shown->viewer->fitPage();
    }
    m_shown->view().goToPage(4);
    settle();
    const double before = m_shown->view().zoomFactor();
    edits().rotatePages({m_shown->model().pageAt(4)->id}, 90);
    settle();
    const double after = m_shown->view().zoomFactor();
    QVERIFY(!qFuzzyCompare(before, after));
    QCOMPARE(m_shown->view().currentPage(), 4);
    m_shown->view().goToPage(4);
    QCOMPARE(m_shown->view().zoomFactor(), after);
}

void TestPdfViewerReadingPlace::editsOfOnePassCountAsOne()
{
    edits().deletePages({m_shown->model().pageAt(3)->id});
    edits().insertBlankPage(0, {595, 842});
    edits().insertBlankPage(0, {595, 842});
    edits().rotatePages({m_shown->model().pageAt(20)->id}, 90);
    settle();
    QCOMPARE(m_shown->view().currentPage(), kRead + 1);
    QCOMPARE(topOf(m_read), m_top);
}

void TestPdfViewerReadingPlace::onePageLeftIsFoundAgain()
{
    const PdfPageId left = m_shown->model().pageAt(200)->id;
    m_shown->model().selectAll();
    m_shown->model().setPageSelected(left, false);
    edits().deletePages(m_shown->model().selectedPageIds().values());
    settle();
    QCOMPARE(m_shown->model().rowCount(), 1);
    QCOMPARE(m_shown->view().currentPage(), 0);
    m_shown->history().undo();
    settle();
    QCOMPARE(m_shown->view().currentPage(), 200);
    QCOMPARE(shownPage(), 200);
}

void TestPdfViewerReadingPlace::pageGoneToAfterAnEditIsShown()
{
    edits().deletePages({m_shown->model().pageAt(3)->id});
    m_shown->view().goToPage(40);
    const int scroll = m_shown->view().verticalScrollBar()->value();
    settle();
    QCOMPARE(m_shown->view().currentPage(), 40);
    QCOMPARE(m_shown->view().verticalScrollBar()->value(), scroll);
}

void TestPdfViewerReadingPlace::anotherDocumentBeginsAtItsStart()
{
    const QString other = m_shown->add(u"other.pdf"_s, PdfFixture::pagesByNumber(200));
    QVERIFY(m_shown->viewer->openFile(other, {}));
    settle();
    QCOMPARE(m_shown->view().currentPage(), 0);
    QCOMPARE(m_shown->view().verticalScrollBar()->value(), 0);
}

void TestPdfViewerReadingPlace::clickedPageIsCurrentEverywhere()
{
    // Two pages are in view; the click is on the second one.
    m_shown->view().setZoomFactor(1.0);
    m_shown->view().goToPage(kRead);
    settle();
    const int clicked = kRead + 1;
    const QPoint point(m_shown->view().viewport()->width() / 2,
                       topOf(m_shown->model().pageAt(clicked)->id) + 20);
    const int scroll = m_shown->view().verticalScrollBar()->value();
    QTest::mouseClick(m_shown->view().viewport(), Qt::LeftButton, {}, point);
    settle();
    QCOMPARE(m_shown->view().currentPage(), clicked);
    QCOMPARE(m_shown->view().verticalScrollBar()->value(), scroll);
    QCOMPARE(shownPage(), clicked);
    const auto *list = m_shown->thumbnails().findChild<QListView *>(u"pdfThumbnailList"_s);
    QCOMPARE(list->currentIndex().row(), clicked);
}

void TestPdfViewerReadingPlace::clickedPageStaysCurrentThroughUndo()
{
    // The clicked page is in view, but another one is in its middle.
    m_shown->view().setZoomFactor(1.0);
    m_shown->view().goToPage(kRead);
    QScrollBar *bar = m_shown->view().verticalScrollBar();
    bar->setValue(bar->value() + 20);
    settle();
    const int clicked = kRead;
    const PdfPageId id = m_shown->idAt(clicked);
    const int top = topOf(id);
    QVERIFY(top >= 0);
    QVERIFY(topOf(m_shown->idAt(clicked + 1)) < m_shown->view().viewport()->height() / 2);
    QCOMPARE(m_shown->view().currentPage(), clicked + 1);
    edits().deletePages({m_shown->idAt(10)});
    settle();
    QTest::mouseClick(m_shown->view().viewport(), Qt::LeftButton, {},
                      {m_shown->view().viewport()->width() / 2, top + 20});
    settle();
    QCOMPARE(m_shown->view().currentPage(), clicked - 1);
    m_shown->history().undo();
    settle();
    QCOMPARE(m_shown->view().currentPage(), clicked);
    QCOMPARE(shownPage(), clicked);
    QCOMPARE(topOf(id), top);
    m_shown->history().redo();
    settle();
    QCOMPARE(m_shown->view().currentPage(), clicked - 1);
    QCOMPARE(shownPage(), clicked - 1);
}

void TestPdfViewerReadingPlace::gridOpensAtThePageThatIsRead()
{
    m_shown->viewer->setViewMode(PdfViewMode::PageManageView);
    settle();
    const auto *list = m_shown->grid().findChild<QListView *>(u"pdfPageGrid"_s);
    const QModelIndex index = m_shown->model().index(kRead);
    QVERIFY(list->viewport()->rect().contains(list->visualRect(index)));
    QCOMPARE(list->currentIndex(), index);
    QVERIFY(m_shown->model().selectedRows().isEmpty());
    // Where the reader scrolled to in the grid is theirs.
    list->verticalScrollBar()->setValue(0);
    m_shown->viewer->setViewMode(PdfViewMode::PageManageView);
    settle();
    QCOMPARE(list->verticalScrollBar()->value(), 0);
}

void TestPdfViewerReadingPlace::pageThatIsReadIsNotChosenWithAnother()
{
    m_shown->viewer->setViewMode(PdfViewMode::PageManageView);
    settle();
    const auto *list = m_shown->grid().findChild<QListView *>(u"pdfPageGrid"_s);
    const int other = kRead + 1;
    const QRect cell = list->visualRect(m_shown->model().index(other));
    QTest::mouseClick(list->viewport(), Qt::LeftButton, Qt::ControlModifier, cell.center());
    QCOMPARE(m_shown->model().selectedRows(), QList<int>{other});
}

QTEST_MAIN(TestPdfViewerReadingPlace)
#include "tst_pdf_viewer_reading_place.moc"
