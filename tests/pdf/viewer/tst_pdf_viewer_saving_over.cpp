// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdf/viewer/page_numbers.h"
#include "tests/pdf/viewer/shown_viewer.h"
#include "tests/support/dialog_answers.h"
#include "tests/support/pdf_fixture.h"

#include <QPushButton>
#include <QTest>

using namespace Qt::StringLiterals;
using PageNumbers::numbersIn;

/// Saving over files whose pages are open, and going on with these pages.
class TestPdfViewerSavingOver final : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void savingOverTheOpenFileWritesTheEditedPages();
    void historyAfterSavingOverTheOpenFileShowsTheOldPages();
    void viewShowsTheOldPageAfterUndo();
    void savingTwiceOverTheOpenFileWritesTheRightPages();
    void savingElsewhereAfterSavingOverTheOpenFile();
    void extractingAndSplittingAfterSavingOverTheOpenFile();
    void protectedFileIsSavedOverWithItsProtection();
    void insertedFileIsSavedOverInAnotherViewer();
    void cleanStateFollowsTheSavedStep();

private:
    /// Pages 0 to 4, of which 1 is deleted, 0 moved to the end and turned, and 40 and 41 inserted.
    void editFivePages() const;

    std::unique_ptr<ShownViewer> m_shown;
};

void TestPdfViewerSavingOver::init()
{
    m_shown = std::make_unique<ShownViewer>();
}

void TestPdfViewerSavingOver::cleanup()
{
    m_shown.reset();
}

void TestPdfViewerSavingOver::editFivePages() const
{
    emit m_shown->grid().deletePageRequested(m_shown->idAt(1));
    m_shown->movePage(0, 4);
    emit m_shown->grid().rotatePageRequested(m_shown->idAt(3));
    m_shown->viewer->insertPdfFiles(
        {m_shown->add(u"more.pdf"_s, PageNumbers::documentOf({40, 41}))}, 1);
    QCOMPARE(m_shown->numbers(), (QList<int>{2, 40, 41, 3, 4, 0}));
    QCOMPARE(m_shown->history().count(), 4);
}

void TestPdfViewerSavingOver::savingOverTheOpenFileWritesTheEditedPages()
{
    QVERIFY(m_shown->openPages(5));
    editFivePages();
    QVERIFY(m_shown->viewer->save());
    const QString path = m_shown->path(u"report.pdf"_s);
    QCOMPARE(numbersIn(path), (QList<int>{2, 40, 41, 3, 4, 0}));
    PdfDocumentInfo info;
    QVERIFY(PdfEditorBackend::inspectDocument(path, {}, &info, nullptr, nullptr));
    QCOMPARE(info.pageSizes.at(4), QSizeF(200, 300));
    QCOMPARE(info.pageSizes.at(5), QSizeF(300, 200));
    // The document goes on with the pages it had.
    QCOMPARE(m_shown->numbers(), (QList<int>{2, 40, 41, 3, 4, 0}));
    QCOMPARE(m_shown->rotations(), (QList<int>{0, 0, 0, 0, 0, 90}));
}

void TestPdfViewerSavingOver::historyAfterSavingOverTheOpenFileShowsTheOldPages()
{
    QVERIFY(m_shown->openPages(5));
    editFivePages();
    QVERIFY(m_shown->viewer->save());
    const QList<QList<int>> states{
        {0, 1, 2, 3, 4}, {0, 2, 3, 4}, {2, 3, 4, 0}, {2, 3, 4, 0}, {2, 40, 41, 3, 4, 0}};
    for (int step = 3; step >= 0; --step) {
        m_shown->history().undo();
        QCOMPARE(m_shown->numbers(), states.at(step));
        QVERIFY(m_shown->viewer->isModified());
    }
    for (int step = 1; step <= 4; ++step) {
        m_shown->history().redo();
        QCOMPARE(m_shown->numbers(), states.at(step));
        QCOMPARE(m_shown->viewer->isModified(), step != 4);
    }
}

void TestPdfViewerSavingOver::viewShowsTheOldPageAfterUndo()
{
    QVERIFY(m_shown->openPages(5));
    const auto shownNumber = [this] {
        QWidget *viewport = m_shown->view().viewport();
        return PageNumbers::numberOf(
            viewport->grab().toImage().pixelColor(viewport->width() / 2, 80));
    };
    emit m_shown->grid().deletePageRequested(m_shown->idAt(0));
    QTRY_COMPARE(shownNumber(), 1);
    QVERIFY(m_shown->viewer->save());
    m_shown->viewer->goToPage(0);
    QTRY_COMPARE(shownNumber(), 1);
    m_shown->button("pdfUndoButton").click();
    m_shown->viewer->goToPage(0);
    QTRY_COMPARE(shownNumber(), 0);
    m_shown->viewer->goToPage(4);
    m_shown->viewer->goToPage(0);
    QTRY_COMPARE(shownNumber(), 0);
}

void TestPdfViewerSavingOver::savingTwiceOverTheOpenFileWritesTheRightPages()
{
    QVERIFY(m_shown->openPages(5));
    const QString path = m_shown->path(u"report.pdf"_s);
    editFivePages();
    QVERIFY(m_shown->viewer->save());
    m_shown->history().setIndex(1);
    QVERIFY(m_shown->viewer->save());
    QCOMPARE(numbersIn(path), (QList<int>{0, 2, 3, 4}));
    m_shown->history().setIndex(4);
    QVERIFY(m_shown->viewer->save());
    QCOMPARE(numbersIn(path), (QList<int>{2, 40, 41, 3, 4, 0}));
    m_shown->history().setIndex(0);
    QVERIFY(m_shown->viewer->save());
    QCOMPARE(numbersIn(path), (QList<int>{0, 1, 2, 3, 4}));
}

void TestPdfViewerSavingOver::savingElsewhereAfterSavingOverTheOpenFile()
{
    QVERIFY(m_shown->openPages(5));
    editFivePages();
    QVERIFY(m_shown->viewer->save());
    m_shown->history().undo();
    const QString copy = m_shown->path(u"copy.pdf"_s);
    QVERIFY(m_shown->viewer->saveAs(copy));
    QCOMPARE(numbersIn(copy), (QList<int>{2, 3, 4, 0}));
    QCOMPARE(numbersIn(m_shown->path(u"report.pdf"_s)), (QList<int>{2, 40, 41, 3, 4, 0}));
    m_shown->history().setIndex(0);
    QVERIFY(m_shown->viewer->save());
    QCOMPARE(numbersIn(copy), (QList<int>{0, 1, 2, 3, 4}));
    QCOMPARE(numbersIn(m_shown->path(u"report.pdf"_s)), (QList<int>{2, 40, 41, 3, 4, 0}));
}

void TestPdfViewerSavingOver::extractingAndSplittingAfterSavingOverTheOpenFile()
{
    QVERIFY(m_shown->openPages(5));
    editFivePages();
    QVERIFY(m_shown->viewer->save());
    const DialogAnswers answers;
    m_shown->select({2, 5});
    m_shown->viewer->extractPages(true, m_shown->path(u"out"_s));
    QCOMPARE(numbersIn(m_shown->path(u"out/report-extracted.pdf"_s)), (QList<int>{41, 0}));
    m_shown->viewer->splitDocument(false, {3}, m_shown->path(u"out"_s));
    QCOMPARE(numbersIn(m_shown->path(u"out/report-1.pdf"_s)), (QList<int>{2, 40, 41}));
    QCOMPARE(numbersIn(m_shown->path(u"out/report-2.pdf"_s)), (QList<int>{3, 4, 0}));
}

void TestPdfViewerSavingOver::protectedFileIsSavedOverWithItsProtection()
{
    PdfFixture::Encryption encryption;
    encryption.userPassword = "geheim";
    encryption.ownerPassword = "owner";
    const QString path = m_shown->add(
        u"secret.pdf"_s, PdfFixture::encrypted(PdfFixture::pagesByNumber(4), encryption));
    QVERIFY(m_shown->viewer->openFile(path, u"geheim"_s));
    emit m_shown->grid().deletePageRequested(m_shown->idAt(0));
    m_shown->movePage(0, 3);
    QVERIFY(m_shown->viewer->save());
    QVERIFY(numbersIn(path).isEmpty());
    QCOMPARE(numbersIn(path, u"geheim"_s), (QList<int>{2, 3, 1}));
    QCOMPARE(m_shown->numbers(), (QList<int>{2, 3, 1}));
    m_shown->history().setIndex(0);
    QCOMPARE(m_shown->numbers(), (QList<int>{0, 1, 2, 3}));
    QVERIFY(m_shown->viewer->save());
    QCOMPARE(numbersIn(path, u"geheim"_s), (QList<int>{0, 1, 2, 3}));
}

void TestPdfViewerSavingOver::insertedFileIsSavedOverInAnotherViewer()
{
    const ShownViewer other;
    const QString inserted = other.add(u"other.pdf"_s, PageNumbers::documentOf({30, 31, 32}));
    QVERIFY(other.viewer->openFile(inserted, {}));
    QVERIFY(m_shown->openPages(2));
    m_shown->viewer->insertPdfFiles({inserted}, 1);
    emit other.grid().deletePageRequested(other.idAt(0));
    QVERIFY(other.viewer->save());
    QCOMPARE(numbersIn(inserted), (QList<int>{31, 32}));
    QCOMPARE(m_shown->numbers(), (QList<int>{0, 30, 31, 32, 1}));
    QVERIFY(m_shown->viewer->save());
    QCOMPARE(numbersIn(m_shown->path(u"report.pdf"_s)), (QList<int>{0, 30, 31, 32, 1}));
    // A new insertion takes the file as it is now.
    m_shown->viewer->insertPdfFiles({inserted}, 0);
    QCOMPARE(m_shown->numbers(), (QList<int>{31, 32, 0, 30, 31, 32, 1}));
}

void TestPdfViewerSavingOver::cleanStateFollowsTheSavedStep()
{
    QVERIFY(m_shown->openPages(3));
    emit m_shown->grid().rotatePageRequested(m_shown->idAt(0));
    QVERIFY(m_shown->viewer->save());
    emit m_shown->grid().rotatePageRequested(m_shown->idAt(1));
    QVERIFY(m_shown->viewer->isModified());
    m_shown->button("pdfUndoButton").click();
    QVERIFY(!m_shown->viewer->isModified());
    m_shown->button("pdfUndoButton").click();
    QVERIFY(m_shown->viewer->isModified());
    m_shown->button("pdfRedoButton").click();
    QVERIFY(!m_shown->viewer->isModified());
}

QTEST_MAIN(TestPdfViewerSavingOver)
#include "tst_pdf_viewer_saving_over.moc"
