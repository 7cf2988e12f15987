// SPDX-License-Identifier: AGPL-3.0-or-later
#include "app/custom_tab_bar.h"
#include "app/custom_tab_widget.h"
#include "res/resources.h"
#include "tests/app/app_test.h"
#include "tests/app/style_rules.h"
#include "widgets/theme.h"

#include <QApplication>
#include <QImage>
#include <QPainter>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>
#include <QtMath>

class TestCustomTabBar final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void homeTabIsNarrow();
    void otherTabsAreWide();
    void tabsNarrowFromSevenOn();
    void tabsWidenAgainBelowSeven();

    void homeTabHasNoCloseButton();
    void otherTabsHaveACloseButton();
    void tabInsertedInFrontHasNoCloseButton();
    void closeButtonLiesBesideTheTitle();
    void closeButtonNamesItsTabOfTheMoment();
    void closeButtonStyle_data();
    void closeButtonStyle();
    void tabWidgetStyle_data();
    void tabWidgetStyle();

    void tabsOnAPageLookAsElsewhere();

    void closingRemovesTheTabAndDeletesThePageLater();
    void closingWritesTheTrace();
    void closingNothingIsSurvived();

    void hoverIsPaintedAndClearedOnLeave();
    void currentTabIsPaintedOnWhite();
    void movingWithinATabRepaintsNothing();
    void titleStartsRightOfTheIcon();
    void longTitleIsCutBeforeTheCloseButton();
    void homeTitleIsShownWhole_data();
    void homeTitleIsShownWhole();
    void ampersandInATitleIsNoShortcut();
    void scrollButtonsShowOnlyWhenNeeded_data();
    void scrollButtonsShowOnlyWhenNeeded();
    void lastOfManyTabsIsReachable();

private:
    void addTabs(int count);
    QWidget *closeButton(int index) const
    {
        return m_tabs->tabBar()->tabButton(index, QTabBar::RightSide);
    }

    std::unique_ptr<CustomTabWidget> m_tabs;
};

void TestCustomTabBar::initTestCase()
{
    initResources();
}

/// A bar with the home tab alone.
void TestCustomTabBar::init()
{
    m_tabs = std::make_unique<CustomTabWidget>();
    m_tabs->addTab(new QWidget, QStringLiteral("首页"));
    m_tabs->tabBar()->setTabData(0, 1);
    m_tabs->resize(940, 560);
    m_tabs->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_tabs.get()));
}

void TestCustomTabBar::cleanup()
{
    m_tabs.reset();
}

void TestCustomTabBar::addTabs(int count)
{
    for (int i = 0; i < count; ++i) {
        m_tabs->addTab(new QWidget, QStringLiteral("Tab %1").arg(m_tabs->count()));
    }
    QCoreApplication::processEvents();
}

void TestCustomTabBar::homeTabIsNarrow()
{
    QCOMPARE(m_tabs->tabBar()->tabRect(0).size(), QSize(90, 42));
    QCOMPARE(m_tabs->tabBar()->height(), 42);
}

void TestCustomTabBar::otherTabsAreWide()
{
    addTabs(2);
    QCOMPARE(m_tabs->tabBar()->tabRect(0).size(), QSize(90, 42));
    QCOMPARE(m_tabs->tabBar()->tabRect(1), QRect(90, 0, 180, 42));
    QCOMPARE(m_tabs->tabBar()->tabRect(2), QRect(270, 0, 180, 42));
}

void TestCustomTabBar::tabsNarrowFromSevenOn()
{
    addTabs(5);
    QCOMPARE(m_tabs->count(), 6);
    QCOMPARE(m_tabs->tabBar()->tabRect(5).size(), QSize(180, 42));
    addTabs(1);
    QCOMPARE(m_tabs->count(), 7);
    QCOMPARE(m_tabs->tabBar()->tabRect(0).size(), QSize(90, 42));
    for (int index = 1; index < 7; ++index) {
        QCOMPARE(m_tabs->tabBar()->tabRect(index).size(), QSize(150, 42));
    }
}

void TestCustomTabBar::tabsWidenAgainBelowSeven()
{
    addTabs(6);
    QTest::mouseClick(closeButton(6), Qt::LeftButton);
    QCOMPARE(m_tabs->count(), 6);
    QTRY_COMPARE(m_tabs->tabBar()->tabRect(1).width(), 180);
}

void TestCustomTabBar::homeTabHasNoCloseButton()
{
    QVERIFY(!closeButton(0));
    QVERIFY(!m_tabs->tabBar()->tabButton(0, QTabBar::LeftSide));
}

void TestCustomTabBar::otherTabsHaveACloseButton()
{
    addTabs(1);
    const auto *button = qobject_cast<QPushButton *>(closeButton(1));
    QVERIFY(button);
    QCOMPARE(button->size(), QSize(24, 24));
    QCOMPARE(button->cursor().shape(), Qt::PointingHandCursor);
    QCOMPARE(button->focusPolicy(), Qt::NoFocus);
}

void TestCustomTabBar::tabInsertedInFrontHasNoCloseButton()
{
    m_tabs->insertTab(0, new QWidget, QStringLiteral("front"));
    QVERIFY(!closeButton(0));
}

void TestCustomTabBar::closeButtonLiesBesideTheTitle()
{
    addTabs(2);
    m_tabs->setCurrentIndex(1);
    for (int index = 1; index < 3; ++index) {
        const QRect tab = m_tabs->tabBar()->tabRect(index);
        const QRect button = closeButton(index)->geometry();
        QVERIFY(button.left() > tab.right() - 32);
        QVERIFY(button.right() < tab.right());
        QVERIFY(tab.contains(button));
    }
}

void TestCustomTabBar::closeButtonNamesItsTabOfTheMoment()
{
    addTabs(3);
    QWidget *lastButton = closeButton(3);
    QWidget *lastPage = m_tabs->widget(3);
    QTest::mouseClick(closeButton(1), Qt::LeftButton);
    QCOMPARE(m_tabs->indexOf(lastPage), 2);

    QSignalSpy requested(m_tabs->tabBar(), &QTabBar::tabCloseRequested);
    QTest::mouseClick(lastButton, Qt::LeftButton);
    QCOMPARE(requested.size(), 1);
    QCOMPARE(requested.at(0).at(0).toInt(), 2);
    QCOMPARE(m_tabs->indexOf(lastPage), -1);
    QCOMPARE(m_tabs->count(), 2);
}

void TestCustomTabBar::closeButtonStyle_data()
{
    QTest::addColumn<QString>("selector");
    QTest::addColumn<QString>("declarations");
    QTest::newRow("button") << QStringLiteral("QPushButton")
                            << QStringLiteral("border: none; background: transparent;"
                                              " border-radius: 4px; padding: 3px;"
                                              " image: url(:/res/icons/modern/close.png)");
    QTest::newRow("hover") << QStringLiteral("QPushButton:hover")
                           << QStringLiteral("background: #D8DBE0");
    QTest::newRow("pressed") << QStringLiteral("QPushButton:pressed")
                             << QStringLiteral("background: #C8CCD2");
}

void TestCustomTabBar::closeButtonStyle()
{
    QFETCH(QString, selector);
    QFETCH(QString, declarations);
    addTabs(1);
    QCOMPARE(StyleRules::declarationsFor(closeButton(1)->styleSheet(), selector),
             StyleRules::declarations(declarations));
    QVERIFY(QFile::exists(QStringLiteral(":/res/icons/modern/close.png")));
}

void TestCustomTabBar::tabWidgetStyle_data()
{
    QTest::addColumn<QString>("selector");
    QTest::addColumn<QString>("declarations");
    QTest::newRow("widget") << QStringLiteral("CustomTabWidget")
                            << QStringLiteral("background: #F7F8FA; border: none");
    QTest::newRow("bar") << QStringLiteral("CustomTabBar")
                         << QStringLiteral("background: transparent");
    QTest::newRow("pane") << QStringLiteral("CustomTabWidget::pane")
                          << QStringLiteral("border: none; border-top: 1px solid #E5E6EB;"
                                            " margin-top: -1px; background: white");
}

void TestCustomTabBar::tabWidgetStyle()
{
    QFETCH(QString, selector);
    QFETCH(QString, declarations);
    QCOMPARE(StyleRules::declarationsFor(m_tabs->styleSheet(), selector),
             StyleRules::declarations(declarations));
}

void TestCustomTabBar::tabsOnAPageLookAsElsewhere()
{
    const auto pictureOf = [](QTabWidget &tabs) {
        tabs.addTab(new QWidget, QStringLiteral("Paper"));
        tabs.addTab(new QWidget, QStringLiteral("Job"));
        tabs.setFixedSize(300, 120);
        tabs.ensurePolished();
        return tabs.grab().toImage().convertToFormat(QImage::Format_ARGB32);
    };
    QWidget window;
    auto *elsewhere = new QTabWidget(&window);
    auto *page = new QWidget;
    m_tabs->addTab(page, QStringLiteral("Page"));
    auto *onPage = new QTabWidget(page);
    QCOMPARE(pictureOf(*onPage), pictureOf(*elsewhere));
}

void TestCustomTabBar::closingRemovesTheTabAndDeletesThePageLater()
{
    addTabs(1);
    const QPointer<QWidget> page = m_tabs->widget(1);
    emit m_tabs->tabBar()->tabCloseRequested(1);
    QCOMPARE(m_tabs->count(), 1);
    QVERIFY2(page, "the page must outlive the current event");
    QTRY_VERIFY(!page);
}

void TestCustomTabBar::closingWritesTheTrace()
{
    addTabs(2);
    QTest::ignoreMessage(QtDebugMsg, "remove index 2");
    QTest::mouseClick(closeButton(2), Qt::LeftButton);
}

void TestCustomTabBar::closingNothingIsSurvived()
{
    QTest::ignoreMessage(QtDebugMsg, "remove index 7");
    emit m_tabs->tabBar()->tabCloseRequested(7);
    QTest::ignoreMessage(QtDebugMsg, "remove index -1");
    emit m_tabs->tabBar()->tabCloseRequested(-1);
    QCOMPARE(m_tabs->count(), 1);
}

void TestCustomTabBar::hoverIsPaintedAndClearedOnLeave()
{
    addTabs(2);
    m_tabs->setCurrentIndex(0);
    QTabBar *bar = m_tabs->tabBar();
    const QPoint inside = bar->tabRect(2).center() + QPoint(20, 12);
    const auto colour = [&] { return bar->grab().toImage().pixelColor(inside); };
    const QColor idle = colour();
    QVERIFY(idle != Theme::hover);

    QTest::mouseMove(bar, bar->tabRect(2).center());
    QTRY_COMPARE(colour(), Theme::hover);
    QTest::mouseMove(bar, bar->tabRect(1).center());
    QTRY_COMPARE(colour(), idle);

    QTest::mouseMove(bar, bar->tabRect(2).center());
    QTRY_COMPARE(colour(), Theme::hover);
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(bar, &leave);
    QCOMPARE(colour(), idle);
}

void TestCustomTabBar::currentTabIsPaintedOnWhite()
{
    addTabs(1);
    m_tabs->setCurrentIndex(1);
    QTabBar *bar = m_tabs->tabBar();
    const QImage image = bar->grab().toImage();
    const QRect tab = bar->tabRect(1);
    QCOMPARE(image.pixelColor(tab.center() + QPoint(20, 12)), Theme::white);
    bool accent = false;
    for (int y = 0; y < 12; ++y) {
        accent = accent || image.pixelColor(tab.center().x(), y) == Theme::accent;
    }
    QVERIFY(accent);
}

void TestCustomTabBar::movingWithinATabRepaintsNothing()
{
    class PaintCounter final : public QObject
    {
    public:
        int paints = 0;
        bool eventFilter(QObject *, QEvent *event) override
        {
            paints += event->type() == QEvent::Paint ? 1 : 0;
            return false;
        }
    } counter;
    addTabs(2);
    m_tabs->setCurrentIndex(0);
    QTabBar *bar = m_tabs->tabBar();
    bar->installEventFilter(&counter);
    const auto paintsAfterMovingTo = [&](const QPoint &position) {
        counter.paints = 0;
        QTest::mouseMove(bar, position);
        QTest::qWait(20);
        return counter.paints;
    };
    const QPoint inside = bar->tabRect(1).center();
    QVERIFY(paintsAfterMovingTo(inside) > 0);
    QCOMPARE(paintsAfterMovingTo(inside + QPoint(20, 0)), 0);
    QCOMPARE(paintsAfterMovingTo(inside + QPoint(-30, 5)), 0);
    QVERIFY(paintsAfterMovingTo(bar->tabRect(2).center()) > 0);
}

void TestCustomTabBar::titleStartsRightOfTheIcon()
{
    addTabs(1);
    m_tabs->setTabIcon(1, QIcon(QStringLiteral(":/res/icons/modern/file-pdf.png")));
    QTabBar *bar = m_tabs->tabBar();
    const auto barWithTitle = [&](const QString &title) {
        m_tabs->setTabText(1, title);
        return bar->grab().toImage();
    };
    const QImage untitled = barWithTitle(QString());
    const QImage titled = barWithTitle(QString(40, QLatin1Char('H')));
    const QRect tab = bar->tabRect(1);
    int textLeft = tab.right();
    for (int x = tab.right(); x >= tab.left(); --x) {
        for (int y = 0; y < titled.height(); ++y) {
            textLeft = titled.pixel(x, y) == untitled.pixel(x, y) ? textLeft : x;
        }
    }
    QFont font = bar->font();
    font.setPixelSize(13);
    const int bearing = qFloor(QFontMetricsF(font).leftBearing(QLatin1Char('H')));
    const int start = textLeft - tab.left() - bearing;
    QVERIFY2(start >= 34 && start <= 36, qPrintable(QString::number(start)));
}

void TestCustomTabBar::homeTitleIsShownWhole_data()
{
    QTest::addColumn<QString>("title");
    QTest::newRow("Chinese") << QStringLiteral("首页");
    QTest::newRow("English") << QStringLiteral("Home");
    QTest::newRow("German") << QStringLiteral("Start");
    QTest::newRow("French") << QStringLiteral("Accueil");
    QTest::newRow("Spanish") << QStringLiteral("Inicio");
    QTest::newRow("Arabic") << QStringLiteral("الرئيسية");
    QTest::newRow("Japanese") << QStringLiteral("ホーム");
}

void TestCustomTabBar::homeTitleIsShownWhole()
{
    QFETCH(QString, title);
    QTabBar *bar = m_tabs->tabBar();
    const auto barWithTitle = [&](const QString &text) {
        m_tabs->setTabText(0, text);
        return bar->grab().toImage();
    };
    const QRect tab = bar->tabRect(0);
    QImage expected = barWithTitle(QString());
    const QImage titled = barWithTitle(title);
    QVERIFY(titled != expected);
    QPainter painter(&expected);
    painter.setRenderHint(QPainter::Antialiasing);
    QFont font = bar->font();
    font.setPixelSize(13);
    painter.setFont(font);
    painter.setPen(Theme::ink);
    painter.drawText(tab.adjusted(34, 6, 0, 0),
                     Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, title);
    painter.end();
    QCOMPARE(titled, expected);
}

void TestCustomTabBar::ampersandInATitleIsNoShortcut()
{
    addTabs(1);
    m_tabs->addTab(new QWidget, QStringLiteral("R&D.pdf"));
    m_tabs->setCurrentIndex(1);
    m_tabs->setTabText(0, QStringLiteral("Q&A.pdf"));
    m_tabs->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_tabs.get()));
    QTest::keyClick(m_tabs.get(), Qt::Key_D, Qt::AltModifier);
    QCOMPARE(m_tabs->currentIndex(), 1);
    QTest::keyClick(m_tabs.get(), Qt::Key_A, Qt::AltModifier);
    QCOMPARE(m_tabs->currentIndex(), 1);
    QCOMPARE(m_tabs->tabText(2), QStringLiteral("R&D.pdf"));
}

void TestCustomTabBar::longTitleIsCutBeforeTheCloseButton()
{
    addTabs(1);
    m_tabs->setCurrentIndex(0);
    QTabBar *bar = m_tabs->tabBar();
    m_tabs->setTabText(1, QString(80, QLatin1Char('W')));
    closeButton(1)->hide();
    const QImage image = bar->grab().toImage();
    const QRect tab = bar->tabRect(1);
    const QColor empty = image.pixelColor(tab.right() - 8, tab.center().y());
    for (int x = tab.right() - 31; x < tab.right() - 4; ++x) {
        for (int y = 12; y < 38; ++y) {
            QCOMPARE(image.pixelColor(x, y), empty);
        }
    }
    QCOMPARE(bar->tabRect(1).width(), 180);
}

void TestCustomTabBar::scrollButtonsShowOnlyWhenNeeded_data()
{
    QTest::addColumn<int>("tabs");
    QTest::addColumn<bool>("needed");
    QTest::newRow("1 tab") << 1 << false;
    QTest::newRow("3 tabs") << 3 << false;
    QTest::newRow("7 tabs") << 7 << true;
    QTest::newRow("15 tabs") << 15 << true;
}

void TestCustomTabBar::scrollButtonsShowOnlyWhenNeeded()
{
    QFETCH(int, tabs);
    QFETCH(bool, needed);
    addTabs(tabs - 1);
    const auto scrollButtons =
        m_tabs->tabBar()->findChildren<QToolButton *>(QString(), Qt::FindDirectChildrenOnly);
    QCOMPARE(scrollButtons.size(), 2);
    for (const QToolButton *button : scrollButtons) {
        QTRY_COMPARE(button->isVisible(), needed);
    }
}

void TestCustomTabBar::lastOfManyTabsIsReachable()
{
    addTabs(14);
    m_tabs->setCurrentIndex(14);
    QTRY_VERIFY(m_tabs->tabBar()->rect().contains(m_tabs->tabBar()->tabRect(14)));
    m_tabs->setCurrentIndex(0);
    QTRY_COMPARE(m_tabs->tabBar()->tabRect(0), QRect(0, 0, 90, 42));
}

QTEST_MAIN(TestCustomTabBar)
#include "tst_custom_tab_bar.moc"
