// SPDX-License-Identifier: AGPL-3.0-or-later
#include "app/language_manager.h"
#include "app/title_bar.h"
#include "res/resources.h"
#include "tests/app/app_test.h"
#include "tests/app/style_rules.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>

class TestTitleBar final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void sizesAndOrder();
    void logoAndTitleAreShown();
    void styleSheet_data();
    void styleSheet();
    void windowButtonsShowTheirIcons_data();
    void windowButtonsShowTheirIcons();
    void buttonsOnlyAsk_data();
    void buttonsOnlyAsk();
    void buttonsTakeNoFocusAndShowAHand();
    void languageButtonShowsThePrefix_data();
    void languageButtonShowsThePrefix();
    void languageSwitchRetranslatesInPlace();
    void maximizedStateSwapsIconAndToolTip();
    void maximizedToolTipSurvivesALanguageSwitch();
    void doubleClickAsksForNothing();
    void pressesBesideTheButtonsReachTheWindow();

private:
    template <typename Button>
    Button *button(const char *name) const
    {
        return m_bar->findChild<Button *>(QLatin1String(name));
    }

    std::unique_ptr<AppTestFolders> m_folders;
    std::unique_ptr<TitleBar> m_bar;
};

void TestTitleBar::initTestCase()
{
    initResources();
    m_folders = std::make_unique<AppTestFolders>(QStringLiteral("tst_title_bar"));
}

void TestTitleBar::init()
{
    LanguageManager::instance()->setLanguage(QStringLiteral("zh_CN"));
    m_bar = std::make_unique<TitleBar>();
    m_bar->resize(940, 40);
    m_bar->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_bar.get()));
}

void TestTitleBar::cleanup()
{
    m_bar.reset();
}

void TestTitleBar::sizesAndOrder()
{
    QCOMPARE(m_bar->height(), 40);
    const auto *layout = qobject_cast<QHBoxLayout *>(m_bar->layout());
    QVERIFY(layout);
    QCOMPARE(layout->contentsMargins(), QMargins(12, 0, 0, 0));
    QCOMPARE(layout->spacing(), 8);
    QCOMPARE(layout->count(), 7);
    QCOMPARE(layout->itemAt(0)->widget()->size(), QSize(20, 20));
    QCOMPARE(layout->itemAt(1)->widget()->objectName(), QStringLiteral("titleLabel"));
    QVERIFY(layout->itemAt(2)->spacerItem());
    const QStringList names{QStringLiteral("languageBtn"), QStringLiteral("minimizeBtn"),
                            QStringLiteral("maximizeBtn"), QStringLiteral("closeBtn")};
    for (int i = 0; i < names.size(); ++i) {
        const QWidget *widget = layout->itemAt(3 + i)->widget();
        QCOMPARE(widget->objectName(), names.at(i));
        QCOMPARE(widget->size(), QSize(46, 40));
    }
    QCOMPARE(button<QPushButton>("closeBtn")->geometry().right(), m_bar->width() - 1);
}

void TestTitleBar::logoAndTitleAreShown()
{
    const auto *logo = qobject_cast<QLabel *>(m_bar->layout()->itemAt(0)->widget());
    QVERIFY(logo);
    QCOMPARE(logo->pixmap().deviceIndependentSize(), QSizeF(20, 20));
    const QIcon picture(QStringLiteral(":/res/icons/modern/logo.png"));
    QVERIFY(!picture.pixmap(20, 20).isNull());
    QCOMPARE(logo->pixmap().toImage(), picture.pixmap(20, 20).toImage());
    const auto *title = m_bar->findChild<QLabel *>(QStringLiteral("titleLabel"));
    QCOMPARE(title->text(), QStringLiteral("Quillora"));
    QCOMPARE(title->styleSheet(), QStringLiteral("QLabel{background:transparent;color:#172033;}"));
}

void TestTitleBar::styleSheet_data()
{
    using Rule = QPair<QString, QString>;
    QTest::addColumn<QList<Rule>>("rules");
    const auto row = [](const char *name, const QList<Rule> &rules) {
        QTest::newRow(name) << rules;
    };
    const auto rule = [](const char *selector, const char *declarations) {
        return Rule(QLatin1String(selector), QLatin1String(declarations));
    };
    const char *flat = "background: transparent; border: none; border-radius: 6px;"
                       " margin: 1px 2px";
    const char *flatAndPadded = "background: transparent; border: none; border-radius: 6px;"
                                " margin: 1px 2px; padding: 9px 14px";
    row("bar", {rule("TitleBar", "background: #F7F8FC")});
    row("buttons", {rule("QToolButton", flat), rule("QPushButton", flatAndPadded)});
    row("hover", {rule("QToolButton:hover", "background: #E4E6EB"),
                  rule("QPushButton:hover", "background: #E4E6EB")});
    row("pressed", {rule("QToolButton:pressed", "background: #D8DBE0"),
                    rule("QPushButton:pressed", "background: #D8DBE0")});
    row("language button",
        {rule("QToolButton#languageBtn", "color: #475569; font-size: 12px; font-weight: 600;"
                                         " padding: 0 10px")});
    row("window buttons", {rule("QPushButton", flatAndPadded)});
    row("close button",
        {rule("QPushButton#closeBtn", "border-top-right-radius: 11px; margin-right: 0px"),
         rule("QPushButton#closeBtn:hover", "background: #D94B4B"),
         rule("QPushButton#closeBtn:pressed", "background: #C93F3F")});
}

void TestTitleBar::styleSheet()
{
    using Rule = QPair<QString, QString>;
    QFETCH(QList<Rule>, rules);
    for (const auto &[selector, declarations] : rules) {
        QCOMPARE(StyleRules::declarationsFor(m_bar->styleSheet(), selector),
                 StyleRules::declarations(declarations));
    }
}

void TestTitleBar::windowButtonsShowTheirIcons_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("icon");
    QTest::newRow("minimize") << QStringLiteral("minimizeBtn") << QStringLiteral("minimize");
    QTest::newRow("maximize") << QStringLiteral("maximizeBtn") << QStringLiteral("maximize");
    QTest::newRow("close") << QStringLiteral("closeBtn") << QStringLiteral("close_20_hover");
}

void TestTitleBar::windowButtonsShowTheirIcons()
{
    QFETCH(QString, name);
    QFETCH(QString, icon);
    const QString path = QStringLiteral(":/res/icons/modern/%1.png").arg(icon);
    QVERIFY(QFile::exists(path));
    auto *button = m_bar->findChild<QPushButton *>(name);
    QCOMPARE(button->styleSheet(), QStringLiteral("QPushButton { image: url(%1); }").arg(path));
    const QImage shown = button->grab().toImage();
    button->setStyleSheet({});
    QVERIFY2(shown != button->grab().toImage(), "the icon must show");
}

void TestTitleBar::buttonsOnlyAsk_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("request");
    QTest::newRow("language") << QStringLiteral("languageBtn") << 0;
    QTest::newRow("minimize") << QStringLiteral("minimizeBtn") << 1;
    QTest::newRow("maximize") << QStringLiteral("maximizeBtn") << 2;
    QTest::newRow("close") << QStringLiteral("closeBtn") << 3;
}

void TestTitleBar::buttonsOnlyAsk()
{
    QFETCH(QString, name);
    QFETCH(int, request);
    QSignalSpy language(m_bar.get(), &TitleBar::languageRequested);
    QSignalSpy minimize(m_bar.get(), &TitleBar::minimizeRequested);
    QSignalSpy maximize(m_bar.get(), &TitleBar::maximizeRestoreRequested);
    QSignalSpy close(m_bar.get(), &TitleBar::closeRequested);
    QTest::mouseClick(m_bar->findChild<QAbstractButton *>(name), Qt::LeftButton);
    const std::array<const QSignalSpy *, 4> spies{&language, &minimize, &maximize, &close};
    for (size_t i = 0; i < spies.size(); ++i) {
        QCOMPARE(spies.at(i)->size(), static_cast<int>(i) == request ? 1 : 0);
    }
    QVERIFY(m_bar->isVisible());
}

void TestTitleBar::buttonsTakeNoFocusAndShowAHand()
{
    const auto buttons = m_bar->findChildren<QAbstractButton *>();
    QCOMPARE(buttons.size(), 4);
    for (const QAbstractButton *each : buttons) {
        QCOMPARE(each->focusPolicy(), Qt::NoFocus);
        QCOMPARE(each->cursor().shape(), Qt::PointingHandCursor);
    }
}

void TestTitleBar::languageButtonShowsThePrefix_data()
{
    QTest::addColumn<QString>("code");
    QTest::addColumn<QString>("text");
    for (const char *code : {"zh_CN", "en_US", "de_DE", "fr_FR", "es_ES", "ar_SA", "ja_JP"}) {
        QTest::newRow(code) << QString::fromLatin1(code) << QString::fromLatin1(code, 2).toUpper();
    }
}

void TestTitleBar::languageButtonShowsThePrefix()
{
    QFETCH(QString, code);
    QFETCH(QString, text);
    LanguageManager::instance()->setLanguage(code);
    QTRY_COMPARE(button<QToolButton>("languageBtn")->text(), text);
}

void TestTitleBar::languageSwitchRetranslatesInPlace()
{
    const QPointer<QToolButton> language = button<QToolButton>("languageBtn");
    QCOMPARE(language->toolTip(), QStringLiteral("语言设置"));
    QCOMPARE(button<QPushButton>("minimizeBtn")->toolTip(), QStringLiteral("最小化"));
    QCOMPARE(button<QPushButton>("maximizeBtn")->toolTip(), QStringLiteral("最大化"));
    QCOMPARE(button<QPushButton>("closeBtn")->toolTip(), QStringLiteral("关闭"));

    LanguageManager::instance()->setLanguage(QStringLiteral("de_DE"));

    QTRY_COMPARE(button<QToolButton>("languageBtn")->text(), QStringLiteral("DE"));
    QVERIFY(language);
    QCOMPARE(language->toolTip(), QStringLiteral("Spracheinstellungen"));
    QCOMPARE(button<QPushButton>("minimizeBtn")->toolTip(), QStringLiteral("Minimieren"));
    QCOMPARE(button<QPushButton>("maximizeBtn")->toolTip(), QStringLiteral("Maximieren"));
    QCOMPARE(button<QPushButton>("closeBtn")->toolTip(), QStringLiteral("Schließen"));
}

void TestTitleBar::maximizedStateSwapsIconAndToolTip()
{
    QPushButton *maximize = button<QPushButton>("maximizeBtn");
    QCOMPARE(maximize->property("maximized").toBool(), false);
    QCOMPARE(maximize->styleSheet(),
             QStringLiteral("QPushButton { image: url(:/res/icons/modern/maximize.png); }"));

    m_bar->setMaximized(true);
    QCOMPARE(maximize->property("maximized").toBool(), true);
    QCOMPARE(maximize->toolTip(), QStringLiteral("还原"));
    QCOMPARE(maximize->styleSheet(),
             QStringLiteral("QPushButton { image: url(:/res/icons/modern/restore.png); }"));

    m_bar->setMaximized(false);
    QCOMPARE(maximize->property("maximized").toBool(), false);
    QCOMPARE(maximize->toolTip(), QStringLiteral("最大化"));
    QCOMPARE(maximize->styleSheet(),
             QStringLiteral("QPushButton { image: url(:/res/icons/modern/maximize.png); }"));
}

void TestTitleBar::maximizedToolTipSurvivesALanguageSwitch()
{
    m_bar->setMaximized(true);
    LanguageManager::instance()->setLanguage(QStringLiteral("en_US"));
    QTRY_COMPARE(button<QPushButton>("maximizeBtn")->toolTip(), QStringLiteral("Restore"));
}

void TestTitleBar::doubleClickAsksForNothing()
{
    QSignalSpy minimize(m_bar.get(), &TitleBar::minimizeRequested);
    QSignalSpy maximize(m_bar.get(), &TitleBar::maximizeRestoreRequested);
    QSignalSpy close(m_bar.get(), &TitleBar::closeRequested);
    QTest::mouseDClick(m_bar.get(), Qt::LeftButton, {}, QPoint(400, 20));
    QVERIFY(minimize.isEmpty());
    QVERIFY(maximize.isEmpty());
    QVERIFY(close.isEmpty());
}

void TestTitleBar::pressesBesideTheButtonsReachTheWindow()
{
    class Window final : public QWidget
    {
    public:
        int presses = 0;

    protected:
        void mousePressEvent(QMouseEvent *) override { ++presses; }
    } window;
    auto *bar = new TitleBar(&window);
    bar->resize(600, 40);
    window.resize(600, 100);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));

    QTest::mouseClick(bar, Qt::LeftButton, {}, QPoint(300, 20));
    QCOMPARE(window.presses, 1);
    QTest::mouseClick(bar->layout()->itemAt(1)->widget(), Qt::LeftButton);
    QCOMPARE(window.presses, 2);
    QTest::mouseClick(bar->layout()->itemAt(0)->widget(), Qt::LeftButton);
    QCOMPARE(window.presses, 3);
    QTest::mouseClick(bar->findChild<QPushButton *>(QStringLiteral("closeBtn")), Qt::LeftButton);
    QCOMPARE(window.presses, 3);
}

QTEST_MAIN(TestTitleBar)
#include "tst_title_bar.moc"
