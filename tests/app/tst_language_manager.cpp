// SPDX-License-Identifier: AGPL-3.0-or-later
#include "app/language_manager.h"
#include "res/translate/translations.h"
#include "tests/app/app_test.h"

#include <QApplication>
#include <QDir>
#include <QLocale>
#include <QProcess>
#include <QResource>
#include <QSignalSpy>
#include <QTest>
#include <QTranslator>

#include <cstdio>

namespace {

constexpr QLatin1String kKey("appearance/language");
constexpr char kReportArgument[] = "--report-start-language";

QString translatedHome()
{
    return QCoreApplication::translate("MainPage", "首页");
}

} // namespace

class TestLanguageManager final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();

    void isNotInForceBeforeInitialize();
    void defaultLanguageFollowsTheSystem_data();
    void defaultLanguageFollowsTheSystem();
    void firstRunFollowsTheSystem_data();
    void firstRunFollowsTheSystem();
    void savedLanguageIsAppliedAtStart();
    void unusableSavedLanguageGivesChineseAndStays_data();
    void unusableSavedLanguageGivesChineseAndStays();

    void everyLanguageOfTheTable_data();
    void everyLanguageOfTheTable();
    void chineseNeedsNoTranslator();
    void arabicStaysLeftToRight();
    void switchReplacesTheTranslator();

    void setLanguageSavesAndTellsOnce();
    void languageInForceIsNotAppliedAgain();
    void unknownLanguageChangesNothing_data();
    void unknownLanguageChangesNothing();
    void missingTranslationFileChangesNothing();

private:
    std::unique_ptr<AppTestFolders> m_folders;
};

void TestLanguageManager::initTestCase()
{
    m_folders = std::make_unique<AppTestFolders>(QStringLiteral("tst_language_manager"));
}

void TestLanguageManager::init()
{
    QSettings().clear();
    if (QString::fromLatin1(QTest::currentTestFunction()) !=
        QStringLiteral("isNotInForceBeforeInitialize")) {
        LanguageManager::instance()->setLanguage(QStringLiteral("zh_CN"));
    }
    QSettings().clear();
}

void TestLanguageManager::isNotInForceBeforeInitialize()
{
    QVERIFY(LanguageManager::instance()->currentLanguage().isEmpty());
    QCOMPARE(LanguageManager::instance(), LanguageManager::instance());
    QVERIFY(!LanguageManager::instance()->parent());
}

void TestLanguageManager::defaultLanguageFollowsTheSystem_data()
{
    QTest::addColumn<QLocale>("system");
    QTest::addColumn<QString>("code");
    const QString chinese = QStringLiteral("zh_CN");
    const QString english = QStringLiteral("en_US");
    QTest::newRow("China") << QLocale(QLocale::Chinese, QLocale::China) << chinese;
    QTest::newRow("Taiwan") << QLocale(QLocale::Chinese, QLocale::Taiwan) << chinese;
    QTest::newRow("United States") << QLocale(QLocale::English) << english;
    QTest::newRow("Germany") << QLocale(QLocale::German) << english;
    QTest::newRow("Japan") << QLocale(QLocale::Japanese) << english;
    QTest::newRow("C") << QLocale::c() << english;
}

void TestLanguageManager::defaultLanguageFollowsTheSystem()
{
    QFETCH(QLocale, system);
    QFETCH(QString, code);
    QCOMPARE(LanguageManager::defaultLanguage(system), code);
}

void TestLanguageManager::firstRunFollowsTheSystem_data()
{
    QTest::addColumn<QString>("locale");
    QTest::addColumn<QString>("report");
    QTest::newRow("Chinese") << QStringLiteral("zh_CN.UTF-8") << QStringLiteral("zh_CN 首页");
    QTest::newRow("Chinese of Taiwan")
        << QStringLiteral("zh_TW.UTF-8") << QStringLiteral("zh_CN 首页");
    QTest::newRow("English") << QStringLiteral("en_GB.UTF-8") << QStringLiteral("en_US Home");
    QTest::newRow("German") << QStringLiteral("de_DE.UTF-8") << QStringLiteral("en_US Home");
}

// The system's locale is fixed for the life of a process, so another one reports.
void TestLanguageManager::firstRunFollowsTheSystem()
{
#ifdef Q_OS_UNIX
    QFETCH(QString, locale);
    QFETCH(QString, report);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("LC_ALL"), locale);
    environment.insert(QStringLiteral("LANG"), locale);
    environment.insert(QStringLiteral("LANGUAGE"), QString());
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(QCoreApplication::applicationFilePath(), {QLatin1String(kReportArgument)});
    QVERIFY(process.waitForFinished());
    QCOMPARE(QString::fromUtf8(process.readAllStandardOutput()), report);
#else
    QSKIP("the locale of a process is set through its environment on Unix only");
#endif
}

void TestLanguageManager::savedLanguageIsAppliedAtStart()
{
    QSettings().setValue(kKey, QStringLiteral("de_DE"));
    QSignalSpy changed(LanguageManager::instance(), &LanguageManager::languageChanged);
    LanguageManager::instance()->initialize();
    QCOMPARE(LanguageManager::instance()->currentLanguage(), QStringLiteral("de_DE"));
    QCOMPARE(translatedHome(), QStringLiteral("Start"));
    QVERIFY(changed.isEmpty());
}

void TestLanguageManager::unusableSavedLanguageGivesChineseAndStays_data()
{
    QTest::addColumn<QVariant>("saved");
    QTest::newRow("language the table lacks") << QVariant(QStringLiteral("it_IT"));
    QTest::newRow("known code in the wrong case") << QVariant(QStringLiteral("DE_de"));
    QTest::newRow("longer than a known code") << QVariant(QStringLiteral("de_DE "));
    QTest::newRow("prefix of a known code") << QVariant(QStringLiteral("de"));
    QTest::newRow("empty") << QVariant(QString());
    QTest::newRow("number") << QVariant(7);
}

void TestLanguageManager::unusableSavedLanguageGivesChineseAndStays()
{
    QFETCH(QVariant, saved);
    LanguageManager::instance()->setLanguage(QStringLiteral("fr_FR"));
    QSettings().setValue(kKey, saved);
    LanguageManager::instance()->initialize();
    QCOMPARE(LanguageManager::instance()->currentLanguage(), QStringLiteral("zh_CN"));
    QCOMPARE(translatedHome(), QStringLiteral("首页"));
    QCOMPARE(QSettings().value(kKey).toString(), saved.toString());
}

void TestLanguageManager::everyLanguageOfTheTable_data()
{
    QTest::addColumn<QString>("code");
    QTest::addColumn<QString>("home");
    QTest::addColumn<QLocale>("locale");
    const auto row = [](const char *code, const QString &home, QLocale::Language language,
                        QLocale::Territory territory) {
        QTest::newRow(code) << QString::fromLatin1(code) << home << QLocale(language, territory);
    };
    row("zh_CN", QStringLiteral("首页"), QLocale::Chinese, QLocale::China);
    row("en_US", QStringLiteral("Home"), QLocale::English, QLocale::UnitedStates);
    row("de_DE", QStringLiteral("Start"), QLocale::German, QLocale::Germany);
    row("fr_FR", QStringLiteral("Accueil"), QLocale::French, QLocale::France);
    row("es_ES", QStringLiteral("Inicio"), QLocale::Spanish, QLocale::Spain);
    row("ar_SA", QStringLiteral("الرئيسية"), QLocale::Arabic, QLocale::SaudiArabia);
    row("ja_JP", QStringLiteral("ホーム"), QLocale::Japanese, QLocale::Japan);
}

void TestLanguageManager::everyLanguageOfTheTable()
{
    QFETCH(QString, code);
    QFETCH(QString, home);
    QFETCH(QLocale, locale);
    // From a language that is neither this one nor the one of the source texts.
    LanguageManager::instance()->setLanguage(
        code == QStringLiteral("fr_FR") ? QStringLiteral("es_ES") : QStringLiteral("fr_FR"));
    QVERIFY(LanguageManager::instance()->setLanguage(code));
    QCOMPARE(LanguageManager::instance()->currentLanguage(), code);
    QCOMPARE(translatedHome(), home);
    QCOMPARE(QLocale(), locale);
    QCOMPARE(QGuiApplication::layoutDirection(), Qt::LeftToRight);
}

void TestLanguageManager::chineseNeedsNoTranslator()
{
    LanguageManager::instance()->setLanguage(QStringLiteral("en_US"));
    QCOMPARE(translatedHome(), QStringLiteral("Home"));
    LanguageManager::instance()->setLanguage(QStringLiteral("zh_CN"));
    QCOMPARE(translatedHome(), QStringLiteral("首页"));
}

void TestLanguageManager::arabicStaysLeftToRight()
{
    QVERIFY(LanguageManager::instance()->setLanguage(QStringLiteral("ar_SA")));
    QCoreApplication::processEvents();
    QCOMPARE(translatedHome(), QStringLiteral("الرئيسية"));
    QCOMPARE(QGuiApplication::layoutDirection(), Qt::LeftToRight);
    QCOMPARE(QWidget().layoutDirection(), Qt::LeftToRight);
}

void TestLanguageManager::switchReplacesTheTranslator()
{
    LanguageManager::instance()->setLanguage(QStringLiteral("de_DE"));
    LanguageManager::instance()->setLanguage(QStringLiteral("en_US"));
    // A text that only an old German translator could still answer differently.
    QCOMPARE(translatedHome(), QStringLiteral("Home"));
    LanguageManager::instance()->setLanguage(QStringLiteral("zh_CN"));
    QCOMPARE(translatedHome(), QStringLiteral("首页"));
}

void TestLanguageManager::setLanguageSavesAndTellsOnce()
{
    QSignalSpy changed(LanguageManager::instance(), &LanguageManager::languageChanged);
    QString savedWhenTold;
    const QObject context;
    connect(LanguageManager::instance(), &LanguageManager::languageChanged, &context,
            [&savedWhenTold] { savedWhenTold = QSettings().value(kKey).toString(); });
    QVERIFY(LanguageManager::instance()->setLanguage(QStringLiteral("ja_JP")));
    QCOMPARE(changed.size(), 1);
    QCOMPARE(changed.at(0).at(0).toString(), QStringLiteral("ja_JP"));
    QCOMPARE(savedWhenTold, QStringLiteral("ja_JP"));
}

void TestLanguageManager::languageInForceIsNotAppliedAgain()
{
    LanguageManager::instance()->setLanguage(QStringLiteral("es_ES"));
    QSettings().clear();
    QSignalSpy changed(LanguageManager::instance(), &LanguageManager::languageChanged);
    QVERIFY(LanguageManager::instance()->setLanguage(QStringLiteral("es_ES")));
    QVERIFY(changed.isEmpty());
    QVERIFY(!QSettings().contains(kKey));
}

void TestLanguageManager::unknownLanguageChangesNothing_data()
{
    QTest::addColumn<QString>("code");
    QTest::newRow("unknown") << QStringLiteral("it_IT");
    QTest::newRow("wrong case") << QStringLiteral("EN_US");
    QTest::newRow("empty") << QString();
    QTest::newRow("not Latin") << QStringLiteral("中文");
}

void TestLanguageManager::unknownLanguageChangesNothing()
{
    QFETCH(QString, code);
    LanguageManager::instance()->setLanguage(QStringLiteral("de_DE"));
    QSignalSpy changed(LanguageManager::instance(), &LanguageManager::languageChanged);
    QVERIFY(!LanguageManager::instance()->setLanguage(code));
    QCOMPARE(LanguageManager::instance()->currentLanguage(), QStringLiteral("de_DE"));
    QCOMPARE(QSettings().value(kKey).toString(), QStringLiteral("de_DE"));
    QCOMPARE(QLocale().language(), QLocale::German);
    QCOMPARE(translatedHome(), QStringLiteral("Start"));
    QVERIFY(changed.isEmpty());
}

void TestLanguageManager::missingTranslationFileChangesNothing()
{
    struct InForce
    {
        QString language = LanguageManager::instance()->currentLanguage();
        QLocale locale;
        QString home = translatedHome();
        QVariant saved = QSettings().value(kKey);
    };
    LanguageManager::instance()->setLanguage(QStringLiteral("de_DE"));
    const InForce before;
    QSignalSpy changed(LanguageManager::instance(), &LanguageManager::languageChanged);
    Q_CLEANUP_RESOURCE(translations);
    const bool switched = LanguageManager::instance()->setLanguage(QStringLiteral("fr_FR"));
    const InForce after;
    const QString savedFrench = QStringLiteral("fr_FR");
    QSettings().setValue(kKey, savedFrench);
    LanguageManager::instance()->initialize();
    const QString afterStart = LanguageManager::instance()->currentLanguage();
    initTranslations();

    QVERIFY(!switched);
    QVERIFY(changed.isEmpty());
    QCOMPARE(before.home, QStringLiteral("Start"));
    QCOMPARE(after.language, before.language);
    QCOMPARE(after.locale, before.locale);
    QCOMPARE(after.home, before.home);
    QCOMPARE(after.saved, before.saved);
    QCOMPARE(afterStart, QStringLiteral("zh_CN"));
    QCOMPARE(QSettings().value(kKey).toString(), savedFrench);
    QVERIFY(LanguageManager::instance()->setLanguage(QStringLiteral("fr_FR")));
}

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    if (QCoreApplication::arguments().contains(QLatin1String(kReportArgument))) {
        const AppTestFolders folders(QStringLiteral("tst_language_manager_report"));
        LanguageManager::instance()->initialize();
        const QString report =
            LanguageManager::instance()->currentLanguage() % QLatin1Char(' ') % translatedHome();
        std::fputs(report.toUtf8().constData(), stdout);
        return 0;
    }
    TestLanguageManager test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_language_manager.moc"
