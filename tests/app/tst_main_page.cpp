// SPDX-License-Identifier: AGPL-3.0-or-later
#include "app/home_page.h"
#include "app/language_manager.h"
#include "app/main_page.h"
#include "app/tool_table.h"
#include "pdf/core/pdf_document_model.h"
#include "pdf/viewer/pdf_show_page.h"
#include "pdf/viewer/pdf_viewer_widget.h"
#include "recent/recent_file_manager.h"
#include "res/resources.h"
#include "tests/app/app_test.h"
#include "tests/app/style_rules.h"
#include "tests/support/dialog_answers.h"
#include "tests/support/pdf_fixture.h"
#include "tools/file_tool_page.h"
#include "tools/image_to_pdf_page.h"
#include "tools/office_to_pdf_page.h"
#include "tools/pdf_compress_page.h"
#include "tools/pdf_convert_page.h"
#include "tools/pdf_decry_page.h"
#include "tools/pdf_encry_page.h"
#include "tools/pdf_merge_page.h"
#include "tools/pdf_to_office_page.h"

#include <QApplication>
#include <QDialog>
#include <QSignalSpy>
#include <QTabBar>
#include <QTabWidget>
#include <QTest>
#include <QTimer>
#include <QVBoxLayout>

class TestMainPage final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void startsWithTheHomeTabAlone();
    void styleSheets_data();
    void styleSheets();
    void everyTool_data();
    void everyTool();
    void toolIconsExist();
    void unknownToolsOpenNothing_data();
    void unknownToolsOpenNothing();
    void toolTabIsUnique();
    void everyToolAtOnce();
    void closedToolOpensAfresh();
    void toolPageClosesWithoutAQuestion();
    void clickOnTheHomePageOpensTheTool();
    void toolTitlesAreTranslated();

    void toolGetsTheFile_data();
    void toolGetsTheFile();
    void fileGoesToTheOpenToolTab();
    void viewersToolRequestOpensTheToolWithTheFile();
    void requestForAnUnknownToolDoesNothing();

    void fileOpensInAViewerTab();
    void sameFileIsSelectedAgain();
    void sameFileInAnotherCaseIsSelectedAgain();
    void sameFileByAnotherRouteIsSelectedAgain();
    void backSlashInANameSeparatesNothing();
    void openedFileIsRecorded();
    void fileOfTheRecentListIsNotRecordedAgain();
    void blankPathOpensNothing_data();
    void blankPathOpensNothing();
    void failedOpenLeavesNoTabButIsRecorded_data();
    void failedOpenLeavesNoTabButIsRecorded();
    void cancelledPasswordLeavesNoTabButIsRecorded();
    void viewerTabCloses();
    void viewerWithUnsavedChangesKeepsItsTab();
    void homePageRequestsAreCarriedOut();

private:
    QTabWidget *tabs() const
    {
        return m_page->findChild<QTabWidget *>(QStringLiteral("mainTabWidget"));
    }
    QString current() const { return tabs()->tabText(tabs()->currentIndex()); }
    HomePage *home() const { return m_page->findChild<HomePage *>(); }
    bool showsIcon(int index, const QString &path) const
    {
        const QImage picture = QIcon(path).pixmap(16, 16).toImage();
        return !picture.isNull() && tabs()->tabIcon(index).pixmap(16, 16).toImage() == picture;
    }

    std::unique_ptr<AppTestFolders> m_folders;
    std::unique_ptr<MainPage> m_page;
    QString m_pdf;
    QString m_otherPdf;
};

void TestMainPage::initTestCase()
{
    initResources();
    m_folders = std::make_unique<AppTestFolders>(QStringLiteral("tst_main_page"));
    m_pdf = m_folders->filePath(QStringLiteral("Report 报告.pdf"));
    m_otherPdf = m_folders->filePath(QStringLiteral("other.pdf"));
    QVERIFY(PdfFixture::write(m_pdf, PdfFixture::pagesByNumber(2)));
    QVERIFY(PdfFixture::write(m_otherPdf, PdfFixture::pagesByNumber(1)));
}

void TestMainPage::init()
{
    LanguageManager::instance()->setLanguage(QStringLiteral("zh_CN"));
    m_page = std::make_unique<MainPage>();
    m_page->resize(1158, 739);
    m_page->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_page.get()));
}

void TestMainPage::cleanup()
{
    m_page.reset();
}

void TestMainPage::startsWithTheHomeTabAlone()
{
    QCOMPARE(m_page->objectName(), QStringLiteral("mainPage"));
    QVERIFY(m_page->testAttribute(Qt::WA_StyledBackground));
    QVERIFY(m_page->styleSheet().contains(QStringLiteral("#ffffff")));
    QCOMPARE(m_page->layout()->contentsMargins(), QMargins());
    QCOMPARE(m_page->layout()->spacing(), 0);
    QCOMPARE(tabs()->count(), 1);
    QCOMPARE(tabs()->tabText(0), QStringLiteral("首页"));
    QCOMPARE(tabs()->tabBar()->tabData(0), QVariant(1));
    QCOMPARE(tabs()->widget(0), home());
    QVERIFY(showsIcon(0, QStringLiteral(":/res/icons/modern/home.png")));
    QCOMPARE(tabs()->geometry(), m_page->rect());
}

void TestMainPage::styleSheets_data()
{
    QTest::addColumn<bool>("ofTheTabs");
    QTest::addColumn<QString>("selector");
    QTest::addColumn<QString>("declarations");
    const auto row = [](bool ofTheTabs, const char *selector, const char *declarations) {
        QTest::newRow(selector) << ofTheTabs << QString::fromLatin1(selector)
                                << QString::fromLatin1(declarations);
    };
    const char *rounded = "border-bottom-left-radius: 11px; border-bottom-right-radius: 11px";
    row(false, "QWidget#mainPage",
        "background: #ffffff; border-bottom-left-radius: 12px; border-bottom-right-radius: 12px");
    row(true, "QTabWidget#mainTabWidget", rounded);
    row(true, "QTabWidget#mainTabWidget::pane", rounded);
    row(true, "QTabWidget#mainTabWidget SideNavigationBar", "border-bottom-left-radius: 11px");
    row(true, "QTabWidget#mainTabWidget RecentFilesPage",
        "background: #ffffff; border-bottom-right-radius: 11px");
    // The style that the tabs have of their own is kept.
    row(true, "CustomTabWidget", "background: #F7F8FA; border: none");
}

void TestMainPage::styleSheets()
{
    QFETCH(bool, ofTheTabs);
    QFETCH(QString, selector);
    QFETCH(QString, declarations);
    const QWidget *styled = ofTheTabs ? static_cast<QWidget *>(tabs()) : m_page.get();
    QCOMPARE(StyleRules::declarationsFor(styled->styleSheet(), selector),
             StyleRules::declarations(declarations));
}

void TestMainPage::everyTool_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("className");
    QTest::addColumn<QString>("icon");
    const auto row = [](int type, const QString &title, const QMetaObject &page, const char *icon) {
        QTest::addRow("%d %s", type, page.className())
            << type << title << QString::fromLatin1(page.className())
            << QStringLiteral(":/res/icons/modern/%1.png").arg(QLatin1String(icon));
    };
    row(1, QStringLiteral("压缩PDF"), PdfCompressPage::staticMetaObject, "compress");
    row(2, QStringLiteral("PDF转为Office"), PdfToOfficePage::staticMetaObject, "convert");
    row(3, QStringLiteral("Office转为PDF"), OfficeToPdfPage::staticMetaObject, "convert");
    row(4, QStringLiteral("图像转PDF"), ImageToPdfPage::staticMetaObject, "image");
    row(5, QStringLiteral("PDF转为图像"), PdfConvertPage::staticMetaObject, "image");
    row(6, QStringLiteral("PDF解密"), PdfDecryPage::staticMetaObject, "decrypt");
    row(7, QStringLiteral("PDF加密"), PdfEncryPage::staticMetaObject, "encrypt");
    row(8, QStringLiteral("合并PDF"), PdfMergePage::staticMetaObject, "merge");
}

void TestMainPage::everyTool()
{
    QFETCH(int, type);
    QFETCH(QString, title);
    QFETCH(QString, className);
    QFETCH(QString, icon);
    QCOMPARE(m_page->indexOfTool(type), -1);
    m_page->openTool(type);
    QCOMPARE(m_page->indexOfTool(type), 1);
    QCOMPARE(tabs()->count(), 2);
    QCOMPARE(tabs()->currentIndex(), 1);
    QCOMPARE(tabs()->tabText(1), title);
    QCOMPARE(tabs()->widget(1)->property("plenvoToolType"), QVariant(type));
    QCOMPARE(QString::fromLatin1(tabs()->widget(1)->metaObject()->className()), className);
    QVERIFY(showsIcon(1, icon));
    QVERIFY(!tabs()->tabBar()->tabData(1).isValid());
}

void TestMainPage::toolIconsExist()
{
    QCOMPARE(toolTable().size(), size_t{8});
    for (const Tool &tool : toolTable()) {
        QVERIFY2(QFile::exists(tool.icon), tool.icon.data());
        QVERIFY2(QFile::exists(tool.bigIcon), tool.bigIcon.data());
        QCOMPARE(findTool(tool.type), &tool);
    }
}

void TestMainPage::unknownToolsOpenNothing_data()
{
    QTest::addColumn<int>("type");
    for (const int type : {0, 9, -1, 100, std::numeric_limits<int>::max()}) {
        QTest::addRow("%d", type) << type;
    }
}

void TestMainPage::unknownToolsOpenNothing()
{
    QFETCH(int, type);
    m_page->openTool(type);
    QCOMPARE(tabs()->count(), 1);
    QCOMPARE(m_page->indexOfTool(type), -1);
    emit home()->toolClicked(type);
    QCOMPARE(tabs()->count(), 1);
}

void TestMainPage::toolTabIsUnique()
{
    m_page->openTool(1);
    QWidget *page = tabs()->currentWidget();
    m_page->openTool(2);
    tabs()->setCurrentIndex(0);
    m_page->openTool(1);
    QCOMPARE(tabs()->count(), 3);
    QCOMPARE(tabs()->currentWidget(), page);
}

void TestMainPage::everyToolAtOnce()
{
    for (int type = 1; type <= 8; ++type) {
        m_page->openTool(type);
    }
    QCOMPARE(tabs()->count(), 9);
    for (int type = 1; type <= 8; ++type) {
        QCOMPARE(m_page->indexOfTool(type), type);
    }
    QCOMPARE(tabs()->currentIndex(), 8);
}

void TestMainPage::closedToolOpensAfresh()
{
    m_page->openToolWithFile(1, m_pdf);
    const QPointer<QWidget> first = tabs()->widget(1);
    emit tabs()->tabBar()->tabCloseRequested(1);
    m_page->openTool(1);
    const auto *second = qobject_cast<FileToolPage *>(tabs()->widget(1));
    QVERIFY(second);
    QVERIFY(second->inputFiles().isEmpty());
    QTRY_VERIFY(!first);
}

void TestMainPage::toolPageClosesWithoutAQuestion()
{
    m_page->openToolWithFile(7, m_pdf);
    QTest::mouseClick(tabs()->tabBar()->tabButton(1, QTabBar::RightSide), Qt::LeftButton);
    QCOMPARE(tabs()->count(), 1);
}

void TestMainPage::clickOnTheHomePageOpensTheTool()
{
    emit home()->toolClicked(8);
    QCOMPARE(current(), QStringLiteral("合并PDF"));
    tabs()->setCurrentIndex(0);
    emit home()->toolClicked(8);
    QCOMPARE(current(), QStringLiteral("合并PDF"));
    QCOMPARE(tabs()->count(), 2);
}

void TestMainPage::toolTitlesAreTranslated()
{
    LanguageManager::instance()->setLanguage(QStringLiteral("en_US"));
    m_page->openTool(2);
    QCOMPARE(current(), QStringLiteral("PDF to Office"));
    QCOMPARE(MainPage().findChild<QTabWidget *>()->tabText(0), QStringLiteral("Home"));
}

void TestMainPage::toolGetsTheFile_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<bool>("taken");
    for (int type = 1; type <= 8; ++type) {
        QTest::addRow("%d", type) << type << (type == 1 || (type >= 5 && type <= 7));
    }
}

void TestMainPage::toolGetsTheFile()
{
    QFETCH(int, type);
    QFETCH(bool, taken);
    m_page->openToolWithFile(type, m_pdf);
    QCOMPARE(m_page->indexOfTool(type), 1);
    QCOMPARE(tabs()->currentIndex(), 1);
    const auto *page = qobject_cast<FileToolPage *>(tabs()->widget(1));
    const QStringList files = page != nullptr ? page->inputFiles() : QStringList();
    QCOMPARE(files, taken ? QStringList{m_pdf} : QStringList());
}

void TestMainPage::fileGoesToTheOpenToolTab()
{
    m_page->openTool(1);
    tabs()->setCurrentIndex(0);
    m_page->openToolWithFile(1, m_pdf);
    m_page->openToolWithFile(1, m_otherPdf);
    m_page->openToolWithFile(1, m_pdf);
    m_page->openToolWithFile(1, QString());
    QCOMPARE(tabs()->count(), 2);
    QCOMPARE(tabs()->currentIndex(), 1);
    const QStringList expected{m_pdf, m_otherPdf};
    QCOMPARE(qobject_cast<PdfCompressPage *>(tabs()->widget(1))->inputFiles(), expected);
}

void TestMainPage::viewersToolRequestOpensTheToolWithTheFile()
{
    m_page->openFile(m_pdf);
    auto *viewer = qobject_cast<PdfShowPage *>(tabs()->currentWidget());
    QVERIFY(viewer);
    emit viewer->toolRequested(1, m_pdf);
    QCOMPARE(current(), QStringLiteral("压缩PDF"));
    QCOMPARE(qobject_cast<PdfCompressPage *>(tabs()->currentWidget())->inputFiles(),
             QStringList{m_pdf});
    emit viewer->toolRequested(2, m_pdf);
    QCOMPARE(current(), QStringLiteral("PDF转为Office"));
    QCOMPARE(tabs()->count(), 4);
}

void TestMainPage::requestForAnUnknownToolDoesNothing()
{
    m_page->openToolWithFile(9, m_pdf);
    m_page->openToolWithFile(0, m_pdf);
    QCOMPARE(tabs()->count(), 1);
}

void TestMainPage::fileOpensInAViewerTab()
{
    m_page->openFile(m_pdf);
    QCOMPARE(tabs()->count(), 2);
    QCOMPARE(tabs()->currentIndex(), 1);
    QCOMPARE(tabs()->tabText(1), QStringLiteral("Report 报告.pdf"));
    QCOMPARE(tabs()->tabToolTip(1), QDir::toNativeSeparators(QFileInfo(m_pdf).canonicalFilePath()));
    QVERIFY(showsIcon(1, QStringLiteral(":/res/icons/modern/file-pdf.png")));
    QVERIFY(qobject_cast<PdfShowPage *>(tabs()->widget(1)));
    QCOMPARE(tabs()->widget(1)->property("plenvoFilePath").toString(),
             QFileInfo(m_pdf).canonicalFilePath());
    QCOMPARE(m_page->indexOfTool(0), -1);
}

void TestMainPage::sameFileIsSelectedAgain()
{
    m_page->openFile(m_pdf);
    QWidget *page = tabs()->currentWidget();
    m_page->openFile(m_otherPdf);
    QCOMPARE(tabs()->count(), 3);
    m_page->openFile(m_pdf);
    QCOMPARE(tabs()->count(), 3);
    QCOMPARE(tabs()->currentWidget(), page);
}

void TestMainPage::sameFileInAnotherCaseIsSelectedAgain()
{
    m_page->openFileInTab(m_pdf);
    QWidget *page = tabs()->currentWidget();
    tabs()->setCurrentIndex(0);
    m_page->openFileInTab(m_pdf.toUpper());
    QCOMPARE(tabs()->count(), 2);
    QCOMPARE(tabs()->currentWidget(), page);
}

void TestMainPage::sameFileByAnotherRouteIsSelectedAgain()
{
    m_page->openFileInTab(m_pdf);
    QWidget *page = tabs()->currentWidget();
    const QFileInfo file(m_pdf);
    const QString detour = file.absolutePath() % QStringLiteral("/./x/..//") % file.fileName();
    QVERIFY(QDir(file.absolutePath()).mkpath(QStringLiteral("x")));
    m_page->openFileInTab(detour);
#ifdef Q_OS_WIN
    m_page->openFileInTab(QDir::toNativeSeparators(m_pdf));
#endif
    m_page->openFileInTab(QDir::current().relativeFilePath(m_pdf));
    QCOMPARE(tabs()->count(), 2);
    QCOMPARE(tabs()->currentWidget(), page);

    const QString link = m_folders->filePath(QStringLiteral("link.pdf"));
    if (QFile::link(m_pdf, link)) {
        m_page->openFileInTab(link);
        QCOMPARE(tabs()->count(), 2);
    }
}

void TestMainPage::backSlashInANameSeparatesNothing()
{
#ifdef Q_OS_WIN
    QSKIP("There are no such names here.");
#else
    // A file of that name is another one than the file in the folder.
    const QString folder = m_folders->filePath(QStringLiteral("folder"));
    const QString inside = folder + QStringLiteral("/inside.pdf");
    const QString beside = folder + QStringLiteral("\\inside.pdf");
    QVERIFY(QDir().mkpath(folder));
    QVERIFY(PdfFixture::write(inside, PdfFixture::pagesByNumber(1)));
    QVERIFY(PdfFixture::write(beside, PdfFixture::pagesByNumber(2)));
    m_page->openFileInTab(inside);
    m_page->openFileInTab(beside);
    QCOMPARE(tabs()->count(), 3);
    QCOMPARE(current(), QStringLiteral("folder\\inside.pdf"));
#endif
}

void TestMainPage::openedFileIsRecorded()
{
    const QString pdf = m_folders->filePath(QStringLiteral("recorded.pdf"));
    QVERIFY(PdfFixture::write(pdf, PdfFixture::pagesByNumber(1)));
    const QString asPassed = m_folders->filePath(QStringLiteral("./recorded.pdf"));
    QVERIFY(!RecentFileManager::instance()->contains(asPassed));
    m_page->openFile(asPassed);
    QCOMPARE(RecentFileManager::instance()->files().constFirst(), asPassed);
    // A file that is listed keeps its place, also when its tab is only selected again.
    m_page->openFile(m_otherPdf);
    const QStringList files = RecentFileManager::instance()->files();
    m_page->openFile(asPassed);
    QCOMPARE(RecentFileManager::instance()->files(), files);
}

void TestMainPage::fileOfTheRecentListIsNotRecordedAgain()
{
    const QString pdf = m_folders->filePath(QStringLiteral("clicked.pdf"));
    QVERIFY(PdfFixture::write(pdf, PdfFixture::pagesByNumber(1)));
    emit home()->fileClicked(pdf);
    QCOMPARE(current(), QStringLiteral("clicked.pdf"));
    QVERIFY(!RecentFileManager::instance()->contains(pdf));
}

void TestMainPage::blankPathOpensNothing_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("null") << QString();
    QTest::newRow("empty") << QStringLiteral("");
    QTest::newRow("blank") << QStringLiteral("  \t\n ");
}

void TestMainPage::blankPathOpensNothing()
{
    QFETCH(QString, path);
    m_page->openFileInTab(path);
    QCOMPARE(tabs()->count(), 1);
    QVERIFY(!m_page->findChild<PdfShowPage *>());
}

void TestMainPage::failedOpenLeavesNoTabButIsRecorded_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("exists");
    QTest::newRow("missing") << QStringLiteral("missing.pdf") << false;
    QTest::newRow("damaged") << QStringLiteral("damaged.pdf") << true;
}

void TestMainPage::failedOpenLeavesNoTabButIsRecorded()
{
    QFETCH(QString, name);
    QFETCH(bool, exists);
    const QString path = m_folders->filePath(name);
    if (exists) {
        QVERIFY(PdfFixture::write(path, QByteArray("this is no PDF")));
    }
    const DialogAnswers answers({QStringLiteral("messageBoxConfirmButton")});
    m_page->openFile(path);
    QVERIFY2(answers.allGiven(), "the user must be told");
    QCOMPARE(answers.kinds().size(), 1);
    QCOMPARE(tabs()->count(), 1);
    QVERIFY(RecentFileManager::instance()->contains(path));
    QTRY_VERIFY(!m_page->findChild<PdfShowPage *>());
}

void TestMainPage::cancelledPasswordLeavesNoTabButIsRecorded()
{
    const QString path = m_folders->filePath(QStringLiteral("locked.pdf"));
    QVERIFY(PdfFixture::write(
        path, PdfFixture::encrypted(PdfFixture::pagesByNumber(1), {"user", "owner", 6})));
    bool asked = false;
    QTimer watch;
    connect(&watch, &QTimer::timeout, &watch, [&asked, &watch] {
        if (auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget())) {
            asked = true;
            watch.stop();
            QTest::keyClick(dialog, Qt::Key_Escape);
        }
    });
    watch.start(5);
    m_page->openFile(path);
    QVERIFY(asked);
    QCOMPARE(tabs()->count(), 1);
    QVERIFY(RecentFileManager::instance()->contains(path));
}

void TestMainPage::viewerTabCloses()
{
    m_page->openFile(m_pdf);
    m_page->openFile(m_otherPdf);
    const QPointer<QWidget> viewer = tabs()->widget(1);
    QTest::mouseClick(tabs()->tabBar()->tabButton(1, QTabBar::RightSide), Qt::LeftButton);
    QCOMPARE(tabs()->count(), 2);
    QCOMPARE(tabs()->tabText(1), QStringLiteral("other.pdf"));
    QTRY_VERIFY(!viewer);
    m_page->openFile(m_pdf);
    QCOMPARE(tabs()->count(), 3);
}

void TestMainPage::viewerWithUnsavedChangesKeepsItsTab()
{
    m_page->openFile(m_pdf);
    m_page->openTool(1);
    auto *model = tabs()->widget(1)->findChild<PdfDocumentModel *>();
    QVERIFY(model);
    model->setModified(true);
    const QPointer<QWidget> viewer = tabs()->widget(1);
    const DialogAnswers answers({QStringLiteral("messageBoxCancelButton")});
    QTest::mouseClick(tabs()->tabBar()->tabButton(1, QTabBar::RightSide), Qt::LeftButton);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(viewer);
    QCOMPARE(tabs()->count(), 3);
    QCOMPARE(tabs()->widget(1), viewer.data());

    model->setModified(false);
    QTest::mouseClick(tabs()->tabBar()->tabButton(1, QTabBar::RightSide), Qt::LeftButton);
    QCOMPARE(tabs()->count(), 2);
    QCOMPARE(answers.kinds().size(), 1);
}

void TestMainPage::homePageRequestsAreCarriedOut()
{
    const QString pdf = m_folders->filePath(QStringLiteral("chosen.pdf"));
    QVERIFY(PdfFixture::write(pdf, PdfFixture::pagesByNumber(1)));
    emit home()->openFile(pdf);
    QCOMPARE(current(), QStringLiteral("chosen.pdf"));
    QVERIFY(RecentFileManager::instance()->contains(pdf));
}

QTEST_MAIN(TestMainPage)
#include "tst_main_page.moc"
