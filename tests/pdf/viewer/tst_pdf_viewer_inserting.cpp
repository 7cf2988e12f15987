// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdf/viewer/page_numbers.h"
#include "tests/pdf/viewer/shown_viewer.h"
#include "tests/support/dialog_answers.h"
#include "tests/support/pdf_fixture.h"
#include "widgets/modern_message_box.h"

#include <QApplication>
#include <QDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const QString kPasswordWanted = u"插入的 PDF 已加密，请输入密码："_s;
const QString kPasswordWrong = u"密码错误，请重新输入 PDF 密码："_s;
const QString kInsertFailed = u"插入 PDF 失败"_s;
const QString kInsertFiles = u"插入 PDF"_s;
const QString kInsertBlank = u"在后面插入空白页"_s;

} // namespace

class TestPdfViewerInserting final : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    // Files.
    void filesKeepTheirOrderAtTheChosenRow();
    void everyFileIsAStepOfItsOwn();
    void rowsOutOfRangeAreBroughtIntoIt_data();
    void rowsOutOfRangeAreBroughtIntoIt();
    void noFilesInsertNothing();
    void filesCanBeInsertedIntoAnEmptyDocument();

    // Passwords.
    void encryptedFileAsksForItsPassword();
    void wrongPasswordIsAskedForAgainWithoutEnd();
    void cancelledSecondOfThreeFilesIsLeftOut();
    void passwordOfTheOpenFileIsNotTried();

    // Failures.
    void missingFileIsReportedAndLeftOut();
    void damagedFileIsReportedAndLeftOut();

    // Menu.
    void menuOffersFilesAndABlankPage();
    void dismissedMenuInsertsNothing();
    void blankPageHasTheSizeOfThePageBefore_data();
    void blankPageHasTheSizeOfThePageBefore();
    void blankPageAfterATurnedPageLooksLikeIt();
    void blankPageInAnEmptyDocumentIsA4();
    void blankPageIsOneStep();
    void filesEntryLetsTheUserChooseFiles();
    void deletingTheViewerDuringTheMenuIsSafe();

    // File dialog.
    void fileDialogStartsInTheFolderOfTheOpenFile();
    void chosenFilesAreInsertedInOrder();
    void cancelledFileDialogInsertsNothing();

private:
    [[nodiscard]] QString file(const QString &name, const QList<int> &numbers) const
    {
        return m_shown->add(name, PageNumbers::documentOf(numbers));
    }
    /// Protected by the password "geheim".
    [[nodiscard]] QString secretFile(const QString &name, const QList<int> &numbers) const;

    std::unique_ptr<ShownViewer> m_shown;
};

void TestPdfViewerInserting::init()
{
    m_shown = std::make_unique<ShownViewer>();
}

void TestPdfViewerInserting::cleanup()
{
    m_shown.reset();
}

QString TestPdfViewerInserting::secretFile(const QString &name, const QList<int> &numbers) const
{
    PdfFixture::Encryption encryption;
    encryption.userPassword = "geheim";
    encryption.ownerPassword = "owner";
    return m_shown->add(name, PdfFixture::encrypted(PageNumbers::documentOf(numbers), encryption));
}

void TestPdfViewerInserting::filesKeepTheirOrderAtTheChosenRow()
{
    QVERIFY(m_shown->openPages(3));
    m_shown->viewer->insertPdfFiles(
        {file(u"b.pdf"_s, {20, 21}), file(u"a.pdf"_s, {30}), file(u"c.pdf"_s, {40, 41, 42})}, 2);
    QCOMPARE(m_shown->numbers(), (QList<int>{0, 1, 20, 21, 30, 40, 41, 42, 2}));
    QVERIFY(m_shown->viewer->isModified());
}

void TestPdfViewerInserting::everyFileIsAStepOfItsOwn()
{
    QVERIFY(m_shown->openPages(2));
    m_shown->viewer->insertPdfFiles({file(u"a.pdf"_s, {20, 21}), file(u"b.pdf"_s, {30})}, 1);
    QCOMPARE(m_shown->history().count(), 2);
    m_shown->history().undo();
    QCOMPARE(m_shown->numbers(), (QList<int>{0, 20, 21, 1}));
    m_shown->history().undo();
    QCOMPARE(m_shown->numbers(), (QList<int>{0, 1}));
}

void TestPdfViewerInserting::rowsOutOfRangeAreBroughtIntoIt_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<QList<int>>("numbers");
    QTest::newRow("negative") << -1 << QList<int>{20, 30, 0, 1};
    QTest::newRow("far too low") << -1000 << QList<int>{20, 30, 0, 1};
    QTest::newRow("first") << 0 << QList<int>{20, 30, 0, 1};
    QTest::newRow("end") << 2 << QList<int>{0, 1, 20, 30};
    QTest::newRow("too high") << 99 << QList<int>{0, 1, 20, 30};
}

void TestPdfViewerInserting::rowsOutOfRangeAreBroughtIntoIt()
{
    QFETCH(int, row);
    QFETCH(QList<int>, numbers);
    QVERIFY(m_shown->openPages(2));
    m_shown->viewer->insertPdfFiles({file(u"a.pdf"_s, {20}), file(u"b.pdf"_s, {30})}, row);
    QCOMPARE(m_shown->numbers(), numbers);
}

void TestPdfViewerInserting::noFilesInsertNothing()
{
    QVERIFY(m_shown->openPages(2));
    m_shown->viewer->insertPdfFiles({}, 1);
    QCOMPARE(m_shown->model().rowCount(), 2);
    QCOMPARE(m_shown->history().count(), 0);
}

void TestPdfViewerInserting::filesCanBeInsertedIntoAnEmptyDocument()
{
    m_shown->viewer->insertPdfFiles({file(u"a.pdf"_s, {20, 21})}, 5);
    QCOMPARE(m_shown->numbers(), (QList<int>{20, 21}));
    QTRY_VERIFY(m_shown->bottomBar().isVisible());
}

void TestPdfViewerInserting::encryptedFileAsksForItsPassword()
{
    QVERIFY(m_shown->openPages(2));
    const QString secret = secretFile(u"secret.pdf"_s, {20, 21});
    DialogAnswers answers;
    answers.addPassword(u"geheim"_s);
    m_shown->viewer->insertPdfFiles({secret}, 1);
    QCOMPARE(answers.seen(), QStringList{kPasswordWanted});
    QCOMPARE(m_shown->numbers(), (QList<int>{0, 20, 21, 1}));
    QCOMPARE(m_shown->history().count(), 1);
}

void TestPdfViewerInserting::wrongPasswordIsAskedForAgainWithoutEnd()
{
    QVERIFY(m_shown->openPages(2));
    const QString secret = secretFile(u"secret.pdf"_s, {20});
    DialogAnswers answers;
    QStringList expected{kPasswordWanted};
    for (int attempt = 0; attempt < 6; ++attempt) {
        answers.addPassword(u"wrong %1"_s.arg(attempt));
        expected.append(kPasswordWrong);
    }
    answers.addPassword(u"geheim"_s);
    m_shown->viewer->insertPdfFiles({secret}, 2);
    QCOMPARE(answers.seen(), expected);
    QCOMPARE(m_shown->numbers(), (QList<int>{0, 1, 20}));
}

void TestPdfViewerInserting::cancelledSecondOfThreeFilesIsLeftOut()
{
    QVERIFY(m_shown->openPages(3));
    const DialogAnswers answers;
    m_shown->viewer->insertPdfFiles({file(u"first.pdf"_s, {20, 21}),
                                     secretFile(u"second.pdf"_s, {30, 31}),
                                     file(u"third.pdf"_s, {40})},
                                    1);
    QTest::qWait(20);
    QCOMPARE(answers.seen(), QStringList{kPasswordWanted});
    QCOMPARE(m_shown->numbers(), (QList<int>{0, 20, 21, 40, 1, 2}));
    QCOMPARE(m_shown->history().count(), 2);
}

void TestPdfViewerInserting::passwordOfTheOpenFileIsNotTried()
{
    const QString secret = secretFile(u"secret.pdf"_s, {20});
    QVERIFY(m_shown->viewer->openFile(secret, u"geheim"_s));
    DialogAnswers answers;
    answers.addPassword(u"geheim"_s);
    m_shown->viewer->insertPdfFiles({secret}, 1);
    QCOMPARE(answers.seen(), QStringList{kPasswordWanted});
    QCOMPARE(m_shown->numbers(), (QList<int>{20, 20}));
}

void TestPdfViewerInserting::missingFileIsReportedAndLeftOut()
{
    QVERIFY(m_shown->openPages(2));
    const DialogAnswers answers;
    m_shown->viewer->insertPdfFiles(
        {file(u"a.pdf"_s, {20}), m_shown->path(u"missing.pdf"_s), file(u"b.pdf"_s, {30})}, 1);
    QCOMPARE(answers.seen().size(), 3);
    QCOMPARE(answers.seen().mid(0, 2), (QStringList{kInsertFailed, u"文件不存在或已被移动。"_s}));
    QVERIFY(!answers.seen().at(2).isEmpty());
    QCOMPARE(answers.seen().at(2), answers.seen().at(2).trimmed());
    QCOMPARE(answers.kinds(), QList<int>{ModernMessageBox::Danger});
    QCOMPARE(m_shown->numbers(), (QList<int>{0, 20, 30, 1}));
}

void TestPdfViewerInserting::damagedFileIsReportedAndLeftOut()
{
    QVERIFY(m_shown->openPages(2));
    const QString damaged = m_shown->add(u"damaged.pdf"_s, "This is no PDF.");
    const DialogAnswers answers;
    m_shown->viewer->insertPdfFiles({damaged, file(u"b.pdf"_s, {30})}, 0);
    QCOMPARE(answers.seen().mid(0, 2),
             (QStringList{kInsertFailed, u"PDF 已损坏或格式不受支持。"_s}));
    QCOMPARE(answers.kinds(), QList<int>{ModernMessageBox::Danger});
    QCOMPARE(m_shown->numbers(), (QList<int>{30, 0, 1}));
    QCOMPARE(m_shown->history().count(), 1);
}

void TestPdfViewerInserting::menuOffersFilesAndABlankPage()
{
    QVERIFY(m_shown->openPages(2));
    const DialogAnswers answers;
    m_shown->viewer->showInsertMenu(1, m_shown->viewer->mapToGlobal(QPoint(300, 300)));
    QCOMPARE(answers.menuTexts(), (QStringList{kInsertFiles, u"-"_s, kInsertBlank}));
}

void TestPdfViewerInserting::dismissedMenuInsertsNothing()
{
    QVERIFY(m_shown->openPages(2));
    const DialogAnswers answers;
    m_shown->viewer->showInsertMenu(1, m_shown->viewer->mapToGlobal(QPoint(300, 300)));
    QCOMPARE(m_shown->model().rowCount(), 2);
    QCOMPARE(m_shown->history().count(), 0);
    QVERIFY(answers.fileDialogs().isEmpty());
}

void TestPdfViewerInserting::blankPageHasTheSizeOfThePageBefore_data()
{
    QTest::addColumn<int>("beforeRow");
    QTest::addColumn<int>("row");
    QTest::addColumn<QSizeF>("size");
    QTest::newRow("before the first") << 0 << 0 << QSizeF(100, 200);
    QTest::newRow("behind the first") << 1 << 1 << QSizeF(100, 200);
    QTest::newRow("behind the second") << 2 << 2 << QSizeF(300, 400);
    QTest::newRow("at the end") << 3 << 3 << QSizeF(500, 150);
    QTest::newRow("behind the end") << 77 << 3 << QSizeF(500, 150);
}

void TestPdfViewerInserting::blankPageHasTheSizeOfThePageBefore()
{
    QFETCH(int, beforeRow);
    QFETCH(int, row);
    QFETCH(QSizeF, size);
    const QByteArray sizes = PdfFixture::document({PdfFixture::plain({100, 200}, Qt::red),
                                                   PdfFixture::plain({300, 400}, Qt::red),
                                                   PdfFixture::plain({500, 150}, Qt::red)});
    QVERIFY(m_shown->viewer->openFile(m_shown->add(u"sizes.pdf"_s, sizes), {}));
    DialogAnswers answers;
    answers.addMenuEntry(kInsertBlank);
    m_shown->viewer->showInsertMenu(beforeRow, m_shown->viewer->mapToGlobal(QPoint(300, 300)));
    QCOMPARE(m_shown->model().rowCount(), 4);
    QCOMPARE(m_shown->model().pageAt(row)->origin, PdfPageOrigin::Blank);
    QCOMPARE(m_shown->model().pageAt(row)->pageSize, size);
}

void TestPdfViewerInserting::blankPageAfterATurnedPageLooksLikeIt()
{
    QVERIFY(m_shown->openPages(2));
    emit m_shown->grid().rotatePageRequested(m_shown->idAt(0));
    DialogAnswers answers;
    answers.addMenuEntry(kInsertBlank);
    m_shown->viewer->showInsertMenu(1, m_shown->viewer->mapToGlobal(QPoint(300, 300)));
    QCOMPARE(m_shown->model().pageAt(1)->displaySize(), QSizeF(300, 200));
}

void TestPdfViewerInserting::blankPageInAnEmptyDocumentIsA4()
{
    DialogAnswers answers;
    answers.addMenuEntry(kInsertBlank);
    m_shown->viewer->showInsertMenu(0, m_shown->viewer->mapToGlobal(QPoint(300, 300)));
    QCOMPARE(m_shown->model().rowCount(), 1);
    QCOMPARE(m_shown->model().pageAt(0)->pageSize, QSizeF(595, 842));
}

void TestPdfViewerInserting::blankPageIsOneStep()
{
    QVERIFY(m_shown->openPages(2));
    DialogAnswers answers;
    answers.addMenuEntry(kInsertBlank);
    m_shown->viewer->showInsertMenu(1, m_shown->viewer->mapToGlobal(QPoint(300, 300)));
    QCOMPARE(m_shown->numbers(), (QList<int>{0, PageNumbers::kWhite, 1}));
    QCOMPARE(m_shown->history().count(), 1);
    m_shown->history().undo();
    QCOMPARE(m_shown->numbers(), (QList<int>{0, 1}));
}

void TestPdfViewerInserting::filesEntryLetsTheUserChooseFiles()
{
    QVERIFY(m_shown->openPages(2));
    DialogAnswers answers;
    answers.addMenuEntry(kInsertFiles);
    answers.addFiles({file(u"a.pdf"_s, {20})});
    m_shown->viewer->showInsertMenu(1, m_shown->viewer->mapToGlobal(QPoint(300, 300)));
    QCOMPARE(answers.fileDialogs().size(), 1);
    QCOMPARE(m_shown->numbers(), (QList<int>{0, 20, 1}));
}

void TestPdfViewerInserting::deletingTheViewerDuringTheMenuIsSafe()
{
    QVERIFY(m_shown->openPages(2));
    PdfViewerWidget *viewer = m_shown->viewer.get();
    QTimer::singleShot(0, this, [this] {
        QVERIFY(QApplication::activePopupWidget());
        m_shown->viewer.reset();
    });
    viewer->showInsertMenu(1, QPoint(300, 300));
    QVERIFY(!m_shown->viewer);
}

void TestPdfViewerInserting::fileDialogStartsInTheFolderOfTheOpenFile()
{
    QVERIFY(m_shown->openPages(2));
    const DialogAnswers answers;
    m_shown->viewer->chooseInsertFiles(1);
    QCOMPARE(answers.fileDialogs().size(), 1);
    const DialogAnswers::FileDialog dialog = answers.fileDialogs().first();
    QCOMPARE(dialog.title, u"插入 PDF"_s);
    QCOMPARE(dialog.filters, QStringList{u"PDF 文件 (*.pdf)"_s});
    QCOMPARE(dialog.mode, QFileDialog::ExistingFiles);
    QCOMPARE(QDir(dialog.folder), QDir(m_shown->path({})));
}

void TestPdfViewerInserting::chosenFilesAreInsertedInOrder()
{
    QVERIFY(m_shown->openPages(2));
    DialogAnswers answers;
    answers.addFiles({file(u"z.pdf"_s, {20}), file(u"a.pdf"_s, {30, 31})});
    m_shown->viewer->chooseInsertFiles(1);
    QCOMPARE(m_shown->numbers(), (QList<int>{0, 20, 30, 31, 1}));
}

void TestPdfViewerInserting::cancelledFileDialogInsertsNothing()
{
    QVERIFY(m_shown->openPages(2));
    const DialogAnswers answers;
    m_shown->viewer->chooseInsertFiles(1);
    QCOMPARE(m_shown->model().rowCount(), 2);
    QCOMPARE(m_shown->history().count(), 0);
    QVERIFY(answers.seen().isEmpty());
}

QTEST_MAIN(TestPdfViewerInserting)
#include "tst_pdf_viewer_inserting.moc"
