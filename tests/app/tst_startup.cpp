// SPDX-License-Identifier: AGPL-3.0-or-later
#include "app/frameless_window.h"
#include "app/language_manager.h"
#include "app/main_page.h"
#include "app/startup.h"
#include "pdf/core/pdf_document_model.h"
#include "pdf/core/pdf_undo_manager.h"
#include "pdf/viewer/pdf_show_page.h"
#include "pdf/viewer/pdf_viewer_widget.h"
#include "recent/recent_file_manager.h"
#include "tests/app/app_test.h"
#include "tests/support/dialog_answers.h"
#include "tests/support/pdf_fixture.h"
#include "widgets/theme.h"

#include <QApplication>
#include <QFile>
#include <QFileInfo>
#include <QIcon>
#include <QImage>
#include <QLabel>
#include <QPalette>
#include <QProcess>
#include <QSysInfo>
#include <QTabWidget>
#include <QTest>

class TestStartup final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();

    void highDpiAttributesAreSet();
    void identity();
    void windowIconIsTheLogo_data();
    void windowIconIsTheLogo();
    void font();
    void apostropheTakesTheRoomOfAPunctuationMark();
    void palette_data();
    void palette();
    void otherPaletteRolesStay();
    void styleSheet_data();
    void styleSheet();

    void windowShowsTheWorkspace();
    void languageChangeBuildsTheWorkspaceAnew();
    void languageChangeDropsUnsavedChangesWithoutAQuestion();
    void languageInForceKeepsTheWorkspace();
    void languageChangeAfterTheWindowIsGone();

    void withoutAnArgumentTheHomeTabShows();
    void fileArgumentIsOpenedAndRecorded();
    void relativeArgumentIsRecordedInFull();
    void onlyTheFirstArgumentIsOpened();
    void missingFileIsIgnored_data();
    void missingFileIsIgnored();
    void argumentOfAnyTypeIsTried();

    void programOpensItsArgumentAndSavesAPicture();
    void programWithoutAFileSavesAPicture();
    void programReportsAPictureThatCannotBeSaved();
    void programRemovesWhatAnEarlierRunLeft();
    void programStartsInTheSavedLanguage_data();
    void programStartsInTheSavedLanguage();

private:
    int runProgram(const QStringList &arguments, const QString &picture) const;

    std::unique_ptr<AppTestFolders> m_folders;
    QString m_pdf;
    QString m_otherPdf;
};

namespace {

QTabWidget *tabsOf(const FramelessWindow &window)
{
    return window.findChild<MainPage *>()->findChild<QTabWidget *>();
}

} // namespace

void TestStartup::initTestCase()
{
    Startup::setIdentity();
    Startup::setAppearance();
}

void TestStartup::init()
{
    m_folders = std::make_unique<AppTestFolders>(QStringLiteral("tst_startup"));
    LanguageManager::instance()->setLanguage(QStringLiteral("zh_CN"));
    m_pdf = m_folders->filePath(QStringLiteral("first.pdf"));
    m_otherPdf = m_folders->filePath(QStringLiteral("second.pdf"));
    QVERIFY(PdfFixture::write(m_pdf, PdfFixture::pagesByNumber(3)));
    QVERIFY(PdfFixture::write(m_otherPdf, PdfFixture::pagesByNumber(1)));
}

void TestStartup::highDpiAttributesAreSet()
{
    // The names of the two are hidden together with the deprecated interface.
    const auto enableHighDpiScaling = static_cast<Qt::ApplicationAttribute>(20);
    const auto useHighDpiPixmaps = static_cast<Qt::ApplicationAttribute>(13);
    QCoreApplication::setAttribute(enableHighDpiScaling, false);
    QCoreApplication::setAttribute(useHighDpiPixmaps, false);
    Startup::setAttributes();
    QVERIFY(QCoreApplication::testAttribute(enableHighDpiScaling));
    QVERIFY(QCoreApplication::testAttribute(useHighDpiPixmaps));
}

void TestStartup::identity()
{
    Startup::setIdentity();
    QCOMPARE(QCoreApplication::applicationName(), QStringLiteral("Quillora"));
    QCOMPARE(QCoreApplication::applicationVersion(), QStringLiteral("1.0.0"));
    QCOMPARE(QCoreApplication::organizationName(), QStringLiteral("Quillora"));
    QCOMPARE(QGuiApplication::applicationDisplayName(), QStringLiteral("Quillora"));
}

void TestStartup::windowIconIsTheLogo_data()
{
    QTest::addColumn<int>("size");
    for (const int size : {16, 20, 32, 64}) {
        QTest::addRow("%d pixels", size) << size;
    }
}

void TestStartup::windowIconIsTheLogo()
{
    QFETCH(int, size);
    const QImage logo =
        QIcon(QStringLiteral(":/res/icons/modern/logo.png")).pixmap(size, size).toImage();
    QVERIFY(!logo.isNull());
    QGuiApplication::setWindowIcon({});
    Startup::setIdentity();
    QCOMPARE(QGuiApplication::windowIcon().pixmap(size, size).toImage(), logo);
    const auto window = Startup::showMainWindow();
    QCOMPARE(window->windowIcon().pixmap(size, size).toImage(), logo);
}

void TestStartup::font()
{
    const QFont font = QApplication::font();
    QCOMPARE(font.family(), QStringLiteral("Microsoft YaHei UI"));
    QCOMPARE(font.styleStrategy(), QFont::PreferAntialias);
    QCOMPARE(font.weight(), QFont::Normal);
    QVERIFY(!font.italic());
    QCOMPARE(font.pointSize(), QFont(QStringLiteral("Microsoft YaHei UI")).pointSize());
    QVERIFY(QApplication::font("QLabel") == font);
}

void TestStartup::apostropheTakesTheRoomOfAPunctuationMark()
{
    // In fonts for Chinese it may be as wide as a Chinese character.
    const QFontMetrics metrics(QApplication::font());
    QVERIFY(metrics.horizontalAdvance(QStringLiteral("l\u2019e")) <
            metrics.horizontalAdvance(QStringLiteral("lme")));
}

void TestStartup::palette_data()
{
    QTest::addColumn<QPalette::ColorRole>("role");
    QTest::addColumn<QColor>("colour");
    QTest::newRow("Window") << QPalette::Window << QColor(QStringLiteral("#FFFFFF"));
    QTest::newRow("WindowText") << QPalette::WindowText << QColor(QStringLiteral("#172033"));
    QTest::newRow("Base") << QPalette::Base << QColor(QStringLiteral("#FFFFFF"));
    QTest::newRow("Text") << QPalette::Text << QColor(QStringLiteral("#172033"));
    QTest::newRow("ButtonText") << QPalette::ButtonText << QColor(QStringLiteral("#172033"));
    QTest::newRow("Highlight") << QPalette::Highlight << QColor(QStringLiteral("#4F46E5"));
    QTest::newRow("HighlightedText") << QPalette::HighlightedText << QColor(Qt::white);
}

void TestStartup::palette()
{
    QFETCH(QPalette::ColorRole, role);
    QFETCH(QColor, colour);
    for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
        QCOMPARE(QApplication::palette().color(group, role).rgba(), colour.rgba());
        QCOMPARE(QApplication::palette().brush(group, role).style(), Qt::SolidPattern);
    }
}

void TestStartup::otherPaletteRolesStay()
{
    const QColor before = QApplication::palette().color(QPalette::Button);
    Startup::setAppearance();
    QCOMPARE(QApplication::palette().color(QPalette::Button), before);
}

void TestStartup::styleSheet_data()
{
    QTest::addColumn<QString>("rule");
    const auto row = [](const char *rule) { QTest::newRow(rule) << QString::fromLatin1(rule); };
    row("QToolTip{background-color:#1D2129;color:#FFFFFF;border:none;padding:6px10px;"
        "border-radius:4px;}");
    row("QMenu{background-color:#FFFFFF;border:1pxsolid#E5E6EB;border-radius:8px;padding:6px;}");
    row("QMenu::item{background-color:transparent;border-radius:4px;color:#4E5969;"
        "padding:8px24px8px16px;}");
    row("QMenu::item:selected{background-color:#E8F1FF;color:#165DFF;}");
    row("QMenu::separator{height:1px;background:#EBEDF0;margin:5px10px;}");
}

void TestStartup::styleSheet()
{
    QFETCH(QString, rule);
    QVERIFY(qApp->styleSheet().remove(QLatin1Char(' ')).contains(rule));
}

void TestStartup::windowShowsTheWorkspace()
{
    const auto window = Startup::showMainWindow();
    QVERIFY(QTest::qWaitForWindowExposed(window.get()));
    QCOMPARE(window->size(), QSize(1160, 780));
    QVERIFY(!window->isMaximized());
    QVERIFY(window->isWindow());
    QCOMPARE(window->windowTitle(), QStringLiteral("Quillora"));
    const auto *page = window->findChild<MainPage *>();
    QCOMPARE(page->geometry(), QRect(1, 40, 1158, 739));
    QCOMPARE(tabsOf(*window)->count(), 1);
}

void TestStartup::languageChangeBuildsTheWorkspaceAnew()
{
    const auto window = Startup::showMainWindow();
    const QPointer<MainPage> page = window->findChild<MainPage *>();
    page->openTool(1);
    page->openFile(m_pdf);
    QCOMPARE(tabsOf(*window)->count(), 3);

    LanguageManager::instance()->setLanguage(QStringLiteral("en_US"));
    QTRY_VERIFY(!page);
    QCOMPARE(window->findChildren<MainPage *>().size(), 1);
    QCOMPARE(tabsOf(*window)->count(), 1);
    QCOMPARE(tabsOf(*window)->tabText(0), QStringLiteral("Home"));
    QTRY_VERIFY(tabsOf(*window)->isVisible());
    QCOMPARE(window->findChild<MainPage *>()->geometry(), QRect(1, 40, 1158, 739));
}

void TestStartup::languageChangeDropsUnsavedChangesWithoutAQuestion()
{
    // The user has agreed to losing the tabs before.
    const auto window = Startup::showMainWindow();
    const QPointer<MainPage> page = window->findChild<MainPage *>();
    page->openFile(m_pdf);
    const auto *viewer = page->findChild<PdfViewerWidget *>();
    QVERIFY(viewer != nullptr);
    page->findChild<PdfUndoManager *>()->rotatePages(
        {page->findChild<PdfDocumentModel *>()->pageAt(0)->id}, 90);
    QVERIFY(viewer->isModified());
    QFile file(m_pdf);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray before = file.readAll();
    file.close();

    const DialogAnswers answers;
    LanguageManager::instance()->setLanguage(QStringLiteral("en_US"));
    QTRY_VERIFY(!page);
    QCOMPARE(answers.seen(), QStringList());
    QCOMPARE(window->findChildren<MainPage *>().size(), 1);
    QCOMPARE(tabsOf(*window)->count(), 1);
    QVERIFY(window->isVisible());
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), before);
    // Nor is anything left that closing would ask about.
    QVERIFY(window->close());
    QCOMPARE(answers.seen(), QStringList());
}

void TestStartup::languageInForceKeepsTheWorkspace()
{
    const auto window = Startup::showMainWindow();
    const QPointer<MainPage> page = window->findChild<MainPage *>();
    page->openTool(1);
    LanguageManager::instance()->setLanguage(QStringLiteral("zh_CN"));
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
    QVERIFY(page);
    QCOMPARE(tabsOf(*window)->count(), 2);
}

void TestStartup::languageChangeAfterTheWindowIsGone()
{
    Startup::showMainWindow().reset();
    QVERIFY(LanguageManager::instance()->setLanguage(QStringLiteral("fr_FR")));
}

void TestStartup::withoutAnArgumentTheHomeTabShows()
{
    const auto window = Startup::showMainWindow();
    Startup::openFileArgument(*window, {});
    Startup::openFileArgument(*window, {m_pdf});
    QCOMPARE(tabsOf(*window)->count(), 1);
}

void TestStartup::fileArgumentIsOpenedAndRecorded()
{
    const auto window = Startup::showMainWindow();
    Startup::openFileArgument(*window, {QStringLiteral("quillora"), m_pdf});
    QCOMPARE(tabsOf(*window)->count(), 2);
    QCOMPARE(tabsOf(*window)->currentIndex(), 1);
    QCOMPARE(tabsOf(*window)->tabText(1), QStringLiteral("first.pdf"));
    QVERIFY(RecentFileManager::instance()->contains(m_pdf));
}

void TestStartup::relativeArgumentIsRecordedInFull()
{
    const QString before = QDir::currentPath();
    QVERIFY(QDir::setCurrent(QFileInfo(m_pdf).absolutePath()));
    const auto window = Startup::showMainWindow();
    Startup::openFileArgument(*window, {QStringLiteral("quillora"), QStringLiteral("first.pdf")});
    QVERIFY(QDir::setCurrent(before));
    QCOMPARE(tabsOf(*window)->count(), 2);
    QVERIFY(RecentFileManager::instance()->contains(m_pdf));
    QVERIFY(!RecentFileManager::instance()->contains(QStringLiteral("first.pdf")));
}

void TestStartup::onlyTheFirstArgumentIsOpened()
{
    const auto window = Startup::showMainWindow();
    Startup::openFileArgument(*window, {QStringLiteral("quillora"), m_pdf, m_otherPdf});
    QCOMPARE(tabsOf(*window)->count(), 2);
    QCOMPARE(tabsOf(*window)->tabText(1), QStringLiteral("first.pdf"));
    QVERIFY(!RecentFileManager::instance()->contains(m_otherPdf));
}

void TestStartup::missingFileIsIgnored_data()
{
    QTest::addColumn<QString>("argument");
    QTest::newRow("missing file") << QStringLiteral("/none/such.pdf");
    QTest::newRow("empty") << QString();
    QTest::newRow("option") << QStringLiteral("--help");
}

void TestStartup::missingFileIsIgnored()
{
    QFETCH(QString, argument);
    const auto window = Startup::showMainWindow();
    const QStringList recent = RecentFileManager::instance()->files();
    Startup::openFileArgument(*window, {QStringLiteral("quillora"), argument, m_pdf});
    QCOMPARE(tabsOf(*window)->count(), 1);
    QCOMPARE(RecentFileManager::instance()->files(), recent);
}

void TestStartup::argumentOfAnyTypeIsTried()
{
    const QString text = m_folders->filePath(QStringLiteral("notes.txt"));
    QVERIFY(PdfFixture::write(text, QByteArray("no PDF at all")));
    const auto window = Startup::showMainWindow();
    const DialogAnswers answers({QStringLiteral("messageBoxConfirmButton")});
    Startup::openFileArgument(*window, {QStringLiteral("quillora"), text});
    QVERIFY(answers.allGiven());
    QCOMPARE(answers.kinds().size(), 1);
    QCOMPARE(tabsOf(*window)->count(), 1);
}

int TestStartup::runProgram(const QStringList &arguments, const QString &picture) const
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QUILLORA_SCREENSHOT"), picture);
    for (const char *folder : {"XDG_CONFIG_HOME", "XDG_CACHE_HOME"}) {
        environment.insert(QLatin1String(folder), m_folders->filePath({}));
    }
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(QUILLORA_PROGRAM), arguments);
    return process.waitForFinished(50'000) && process.exitStatus() == QProcess::NormalExit
               ? process.exitCode()
               : -1;
}

void TestStartup::programOpensItsArgumentAndSavesAPicture()
{
    const QString pdf = m_folders->filePath(QStringLiteral("red.pdf"));
    QVERIFY(PdfFixture::write(pdf, PdfFixture::document({PdfFixture::plain({200, 300}, Qt::red)})));
    const QString path = m_folders->filePath(QStringLiteral("document.png"));
    QCOMPARE(runProgram({pdf}, path), 0);
    const QImage picture(path);
    QCOMPARE(picture.size(), QSize(1160, 780));
    QCOMPARE(picture.pixelColor(580, 500), QColor(Qt::red));
}

void TestStartup::programWithoutAFileSavesAPicture()
{
    const QString path = m_folders->filePath(QStringLiteral("home.png"));
    QCOMPARE(runProgram({}, path), 0);
    const QImage picture(path);
    QCOMPARE(picture.size(), QSize(1160, 780));
    QCOMPARE(picture.pixelColor(1100, 700), Theme::white);
}

void TestStartup::programReportsAPictureThatCannotBeSaved()
{
    QCOMPARE(runProgram({}, m_folders->filePath(QStringLiteral("none/home.png"))), 1);
}

void TestStartup::programRemovesWhatAnEarlierRunLeft()
{
#if defined(Q_OS_UNIX) && !defined(Q_OS_DARWIN)
    // The content that a saved file had, of a process that is gone.
    const QString folder =
        m_folders->filePath(QStringLiteral("Quillora/Quillora/quillora-sources/ended"));
    QVERIFY(QDir().mkpath(folder));
    QProcess ended;
    ended.start(QCoreApplication::applicationFilePath(), {QStringLiteral("-functions")});
    QVERIFY(ended.waitForStarted());
    const qint64 process = ended.processId();
    QVERIFY(ended.waitForFinished());
    QVERIFY(PdfFixture::write(folder + QStringLiteral("/in-use.lock"),
                              QByteArray::number(process) + "\ntst_startup\n" +
                                  QSysInfo::machineHostName().toUtf8() + '\n'));
    QVERIFY(PdfFixture::write(folder + QStringLiteral("/1.pdf"), QByteArray("old content")));
    QCOMPARE(runProgram({}, m_folders->filePath(QStringLiteral("home.png"))), 0);
    QVERIFY(!QFileInfo::exists(folder));
#else
    QSKIP("the folder for cached data can be set from outside on such systems only");
#endif
}

void TestStartup::programStartsInTheSavedLanguage_data()
{
    QTest::addColumn<QString>("saved");
    QTest::addColumn<QString>("shown");
    QTest::newRow("German") << QStringLiteral("de_DE") << QStringLiteral("de_DE");
    QTest::newRow("Arabic") << QStringLiteral("ar_SA") << QStringLiteral("ar_SA");
    QTest::newRow("Japanese") << QStringLiteral("ja_JP") << QStringLiteral("ja_JP");
    QTest::newRow("unknown") << QStringLiteral("de_de") << QStringLiteral("zh_CN");
}

// Compares the title bar and the tabs, which both name things in the language.
void TestStartup::programStartsInTheSavedLanguage()
{
#if defined(Q_OS_UNIX) && !defined(Q_OS_DARWIN)
    QFETCH(QString, saved);
    QFETCH(QString, shown);
    QVERIFY(QDir(m_folders->filePath({})).mkpath(QStringLiteral("Quillora")));
    const QString settings = m_folders->filePath(QStringLiteral("Quillora/Quillora.conf"));
    const QByteArray content = "[appearance]\nlanguage=" + saved.toUtf8() + '\n';
    QVERIFY(PdfFixture::write(settings, content));

    const QString path = m_folders->filePath(QStringLiteral("home.png"));
    QCOMPARE(runProgram({}, path), 0);
    QFile file(settings);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), content);

    const auto stripOf = [](const QImage &window) {
        return window.copy(0, 0, window.width(), 82).convertToFormat(QImage::Format_ARGB32);
    };
    const auto stripIn = [&stripOf](const QString &language) {
        LanguageManager::instance()->setLanguage(language);
        const auto window = Startup::showMainWindow();
        [[maybe_unused]] const bool exposed = QTest::qWaitForWindowExposed(window.get());
        QCoreApplication::processEvents();
        return stripOf(window->grab().toImage());
    };
    const QImage strip = stripOf(QImage(path));
    QVERIFY(strip != stripIn(QStringLiteral("en_US")));
    QCOMPARE(strip, stripIn(shown));
#else
    QSKIP("the settings are a file in the configuration folder on such systems only");
#endif
}

QTEST_MAIN(TestStartup)
#include "tst_startup.moc"
