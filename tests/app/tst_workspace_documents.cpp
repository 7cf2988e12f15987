// SPDX-License-Identifier: AGPL-3.0-or-later
#include "app/frameless_window.h"
#include "app/language_manager.h"
#include "app/main_page.h"
#include "pdf/core/pdf_document_model.h"
#include "pdf/core/pdf_undo_manager.h"
#include "pdf/viewer/pdf_show_page.h"
#include "pdf/viewer/pdf_viewer_widget.h"
#include "res/resources.h"
#include "tests/app/app_test.h"
#include "tests/support/dialog_answers.h"
#include "tests/support/pdf_fixture.h"

#include <QApplication>
#include <QSignalSpy>
#include <QTabBar>
#include <QTabWidget>
#include <QTest>
#include <QTimer>
#include <QUndoStack>

#include <array>

/// Documents in the tabs of the main window: their unsaved changes and their files.
class TestWorkspaceDocuments final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void cancelledQuestionKeepsTheTabInFront_data();
    void cancelledQuestionKeepsTheTabInFront();
    void discardedChangesCloseTheTab();
    void savedChangesCloseTheTab();
    void closingATabInTheBackgroundKeepsTheOneInFront_data();
    void closingATabInTheBackgroundKeepsTheOneInFront();

    void closingTheWindowAsksEachModifiedTab();
    void cancelledQuestionKeepsTheWindowAndShowsTheTab();
    void closingWithoutChangesAsksNothing();
    void savingWhileTheWindowClosesPassesOverNoTab();

    void saveAsRenamesTheTab();
    void savingOverAFileOfAnotherTabLeavesOneTabForIt();
    void savingOverAFileOfAModifiedTabLeavesThatTab();
    void savingUnderAnotherFilesNameInAnotherFolderLeavesItsTab();
    void savingToItsOwnFileKeepsTheTab();

private:
    MainPage *page() const { return m_window->findChild<MainPage *>(); }
    QTabWidget *tabs() const
    {
        return m_window->findChild<QTabWidget *>(QStringLiteral("mainTabWidget"));
    }
    PdfShowPage *open(const QString &path) const;
    static void modify(const PdfShowPage &tab);
    void clickCloseButton(const QWidget *tab) const;
    static bool isModified(const PdfShowPage &tab) { return tab.viewer()->isModified(); }
    static bool isTurned(const QString &path);
    static QString filePathOf(const QWidget &tab)
    {
        return tab.property("plenvoFilePath").toString();
    }
    /// What DialogAnswers has noted of one question about unsaved changes.
    static QStringList question()
    {
        return {QStringLiteral("保存修改"), QStringLiteral("当前 PDF 已修改，是否保存？"),
                QString()};
    }

    std::unique_ptr<AppTestFolders> m_folders;
    std::unique_ptr<FramelessWindow> m_window;
    std::array<QString, 3> m_files;
};

void TestWorkspaceDocuments::initTestCase()
{
    initResources();
}

void TestWorkspaceDocuments::init()
{
    m_folders = std::make_unique<AppTestFolders>(QStringLiteral("tst_workspace_documents"));
    LanguageManager::instance()->setLanguage(QStringLiteral("zh_CN"));
    for (size_t i = 0; i < m_files.size(); ++i) {
        m_files.at(i) = m_folders->filePath(QStringLiteral("file%1.pdf").arg(i));
        QVERIFY(PdfFixture::write(m_files.at(i), PdfFixture::pagesByNumber(2)));
    }
    m_window = std::make_unique<FramelessWindow>();
    m_window->setContentWidget(new MainPage);
    m_window->resize(1160, 780);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
}

void TestWorkspaceDocuments::cleanup()
{
    m_window.reset();
}

/// Opens a file in a tab of its own and returns the tab's page.
PdfShowPage *TestWorkspaceDocuments::open(const QString &path) const
{
    page()->openFileInTab(path);
    return qobject_cast<PdfShowPage *>(tabs()->currentWidget());
}

/// Turns the first page.
void TestWorkspaceDocuments::modify(const PdfShowPage &tab)
{
    const PdfPageId first = tab.findChild<PdfDocumentModel *>()->pageAt(0)->id;
    tab.findChild<PdfUndoManager *>()->rotatePages({first}, 90);
    QVERIFY(isModified(tab));
}

void TestWorkspaceDocuments::clickCloseButton(const QWidget *tab) const
{
    const int index = tabs()->indexOf(tab);
    QTest::mouseClick(tabs()->tabBar()->tabButton(index, QTabBar::RightSide), Qt::LeftButton);
}

/// Whether the first page of a file lies on its side, as modify() leaves it.
bool TestWorkspaceDocuments::isTurned(const QString &path)
{
    PdfDocumentModel model;
    if (!model.loadDocument(path, {}, nullptr, nullptr)) {
        qFatal("the file cannot be read: %ls", qUtf16Printable(path));
    }
    const QSizeF size = model.pageAt(0)->displaySize();
    return size.width() > size.height();
}

void TestWorkspaceDocuments::cancelledQuestionKeepsTheTabInFront_data()
{
    QTest::addColumn<bool>("inFront");
    QTest::newRow("tab in the background") << false;
    QTest::newRow("current tab") << true;
}

void TestWorkspaceDocuments::cancelledQuestionKeepsTheTabInFront()
{
    QFETCH(bool, inFront);
    const QPointer<PdfShowPage> tab = open(m_files[0]);
    modify(*tab);
    page()->openTool(1);
    if (inFront) {
        tabs()->setCurrentWidget(tab);
    }
    QPointer<QWidget> shownDuringTheQuestion;
    QTimer watch;
    connect(&watch, &QTimer::timeout, &watch, [&] {
        if (QApplication::activeModalWidget() && !shownDuringTheQuestion) {
            shownDuringTheQuestion = tabs()->currentWidget();
        }
    });
    watch.start(0);

    DialogAnswers answers;
    answers.addButton(QStringLiteral("messageBoxCancelButton"));
    clickCloseButton(tab);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCOMPARE(answers.seen(), question());
    QVERIFY(tab);
    QCOMPARE(shownDuringTheQuestion.data(), tab.data());
    QCOMPARE(tabs()->count(), 3);
    QCOMPARE(tabs()->currentWidget(), tab.data());
    QVERIFY(tab->isVisible());
    QVERIFY(isModified(*tab));
}

void TestWorkspaceDocuments::discardedChangesCloseTheTab()
{
    const QPointer<PdfShowPage> tab = open(m_files[0]);
    modify(*tab);
    DialogAnswers answers;
    answers.addButton(QStringLiteral("messageBoxDiscardButton"));
    clickCloseButton(tab);
    QCOMPARE(answers.seen(), question());
    QCOMPARE(tabs()->count(), 1);
    QTRY_VERIFY(!tab);
    QVERIFY(!isTurned(m_files[0]));
}

void TestWorkspaceDocuments::savedChangesCloseTheTab()
{
    const QPointer<PdfShowPage> tab = open(m_files[0]);
    modify(*tab);
    DialogAnswers answers;
    answers.addButton(QStringLiteral("messageBoxConfirmButton"));
    clickCloseButton(tab);
    QCOMPARE(tabs()->count(), 1);
    QTRY_VERIFY(!tab);
    QVERIFY(isTurned(m_files[0]));
}

void TestWorkspaceDocuments::closingATabInTheBackgroundKeepsTheOneInFront_data()
{
    QTest::addColumn<bool>("modified");
    QTest::addColumn<int>("front");
    QTest::newRow("clean, home in front") << false << 0;
    QTest::newRow("clean, right neighbour in front") << false << 2;
    QTest::newRow("modified, home in front") << true << 0;
    QTest::newRow("modified, right neighbour in front") << true << 2;
    QTest::newRow("modified, last in front") << true << 3;
}

void TestWorkspaceDocuments::closingATabInTheBackgroundKeepsTheOneInFront()
{
    QFETCH(bool, modified);
    QFETCH(int, front);
    const PdfShowPage *tab = open(m_files[0]);
    open(m_files[1]);
    open(m_files[2]);
    if (modified) {
        modify(*tab);
    }
    tabs()->setCurrentIndex(front);
    const QWidget *shown = tabs()->currentWidget();
    QSignalSpy changed(tabs(), &QTabWidget::currentChanged);
    DialogAnswers answers;
    answers.addButton(QStringLiteral("messageBoxDiscardButton"));
    clickCloseButton(tab);
    QCOMPARE(tabs()->count(), 3);
    QCOMPARE(tabs()->currentWidget(), shown);
    QCOMPARE(answers.seen(), modified ? question() : QStringList());
    if (!modified) {
        QVERIFY2(changed.size() <= 1, "a clean tab is not brought to the front");
    }
}

void TestWorkspaceDocuments::closingTheWindowAsksEachModifiedTab()
{
    const PdfShowPage *first = open(m_files[0]);
    open(m_files[1]);
    const PdfShowPage *last = open(m_files[2]);
    modify(*first);
    modify(*last);
    tabs()->setCurrentIndex(0);
    QSignalSpy changed(tabs(), &QTabWidget::currentChanged);
    DialogAnswers answers;
    answers.addButton(QStringLiteral("messageBoxDiscardButton"));
    answers.addButton(QStringLiteral("messageBoxDiscardButton"));
    QVERIFY(m_window->close());
    QVERIFY(!m_window->isVisible());
    QCOMPARE(answers.seen(), question() + question());
    QCOMPARE(changed.size(), 2);
    QCOMPARE(changed.at(0).at(0).toInt(), 1);
    QCOMPARE(changed.at(1).at(0).toInt(), 3);
    QVERIFY(!isTurned(m_files[0]));
    QVERIFY(!isTurned(m_files[2]));
}

void TestWorkspaceDocuments::cancelledQuestionKeepsTheWindowAndShowsTheTab()
{
    const PdfShowPage *first = open(m_files[0]);
    const PdfShowPage *second = open(m_files[1]);
    modify(*first);
    modify(*second);
    tabs()->setCurrentIndex(0);
    DialogAnswers answers;
    answers.addButton(QStringLiteral("messageBoxCancelButton"));
    answers.addButton(QStringLiteral("messageBoxDiscardButton"));
    QVERIFY(!m_window->close());
    QVERIFY(m_window->isVisible());
    QCOMPARE(answers.seen(), question());
    QCOMPARE(tabs()->currentWidget(), first);
    QCOMPARE(tabs()->count(), 3);
    QVERIFY(isModified(*first));
    QVERIFY(isModified(*second));
}

void TestWorkspaceDocuments::closingWithoutChangesAsksNothing()
{
    open(m_files[0]);
    open(m_files[1]);
    page()->openToolWithFile(1, m_files[2]);
    tabs()->setCurrentIndex(0);
    QSignalSpy changed(tabs(), &QTabWidget::currentChanged);
    const DialogAnswers answers;
    QVERIFY(m_window->close());
    QVERIFY(!m_window->isVisible());
    QCOMPARE(answers.seen(), QStringList());
    QVERIFY(changed.isEmpty());
}

// Saving the second tab closes the first, which shows the same file, so that the third moves up.
void TestWorkspaceDocuments::savingWhileTheWindowClosesPassesOverNoTab()
{
    const QPointer<PdfShowPage> first = open(m_files[0]);
    modify(*first);
    const PdfShowPage *second = open(m_files[1]);
    QVERIFY(second->viewer()->saveAs(m_files[0]));
    first->findChild<QUndoStack *>()->undo();
    QVERIFY(!isModified(*first));
    modify(*second);
    const PdfShowPage *third = open(m_files[2]);
    modify(*third);

    DialogAnswers answers;
    answers.addButton(QStringLiteral("messageBoxConfirmButton"));
    answers.addButton(QStringLiteral("messageBoxConfirmButton"));
    QVERIFY(m_window->close());
    QCOMPARE(answers.seen().count(question().constFirst()), 2);
    QVERIFY(isTurned(m_files[0]));
    QVERIFY(isTurned(m_files[2]));
}

void TestWorkspaceDocuments::saveAsRenamesTheTab()
{
    const QString path = m_folders->filePath(QStringLiteral("Renamed 新.pdf"));
    const PdfShowPage *tab = open(m_files[0]);
    modify(*tab);
    const DialogAnswers answers;
    QVERIFY(tab->viewer()->saveAs(path));
    const QString canonical = QFileInfo(path).canonicalFilePath();
    QCOMPARE(tabs()->count(), 2);
    QCOMPARE(tabs()->tabText(1), QStringLiteral("Renamed 新.pdf"));
    QCOMPARE(tabs()->tabToolTip(1), QDir::toNativeSeparators(canonical));
    QCOMPARE(filePathOf(*tab), canonical);

    tabs()->setCurrentIndex(0);
    page()->openFileInTab(path);
    QCOMPARE(tabs()->count(), 2);
    QCOMPARE(tabs()->currentWidget(), tab);

    page()->openFileInTab(m_files[0]);
    QCOMPARE(tabs()->count(), 3);
    QCOMPARE(tabs()->currentIndex(), 2);
    QCOMPARE(tabs()->tabText(2), QStringLiteral("file0.pdf"));
}

void TestWorkspaceDocuments::savingOverAFileOfAnotherTabLeavesOneTabForIt()
{
    const QPointer<PdfShowPage> overwritten = open(m_files[0]);
    const QPointer<PdfShowPage> unrelated = open(m_files[1]);
    const PdfShowPage *saved = open(m_files[2]);
    modify(*saved);
    const DialogAnswers answers;
    QVERIFY(saved->viewer()->saveAs(m_files[0]));
    QCOMPARE(tabs()->count(), 3);
    QCOMPARE(tabs()->indexOf(overwritten), -1);
    QCOMPARE(tabs()->indexOf(unrelated), 1);
    QCOMPARE(tabs()->currentWidget(), saved);
    QCOMPARE(tabs()->tabText(2), QStringLiteral("file0.pdf"));
    QVERIFY2(overwritten, "the page must outlive the current event");
    QTRY_VERIFY(!overwritten);

    tabs()->setCurrentIndex(0);
    page()->openFileInTab(m_files[0]);
    QCOMPARE(tabs()->currentWidget(), saved);
    QCOMPARE(tabs()->count(), 3);
}

void TestWorkspaceDocuments::savingOverAFileOfAModifiedTabLeavesThatTab()
{
    const QPointer<PdfShowPage> overwritten = open(m_files[0]);
    modify(*overwritten);
    const PdfShowPage *saved = open(m_files[1]);
    const DialogAnswers answers;
    QVERIFY(saved->viewer()->saveAs(m_files[0]));
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(overwritten);
    QCOMPARE(tabs()->count(), 3);
    QCOMPARE(tabs()->indexOf(overwritten), 1);
    QVERIFY(isModified(*overwritten));
}

void TestWorkspaceDocuments::savingUnderAnotherFilesNameInAnotherFolderLeavesItsTab()
{
    const QPointer<PdfShowPage> other = open(m_files[0]);
    const PdfShowPage *saved = open(m_files[1]);
    QVERIFY(QDir(m_folders->filePath({})).mkpath(QStringLiteral("elsewhere")));
    const DialogAnswers answers;
    QVERIFY(saved->viewer()->saveAs(m_folders->filePath(QStringLiteral("elsewhere/file0.pdf"))));
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(other);
    QCOMPARE(tabs()->count(), 3);
}

void TestWorkspaceDocuments::savingToItsOwnFileKeepsTheTab()
{
    const QPointer<PdfShowPage> tab = open(m_files[0]);
    modify(*tab);
    const DialogAnswers answers;
    QVERIFY(tab->viewer()->save());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(tab);
    QCOMPARE(tabs()->count(), 2);
    QCOMPARE(tabs()->currentWidget(), tab.data());
    QVERIFY(!isModified(*tab));
}

QTEST_MAIN(TestWorkspaceDocuments)
#include "tst_workspace_documents.moc"
