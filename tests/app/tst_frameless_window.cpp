// SPDX-License-Identifier: AGPL-3.0-or-later
#include "app/frameless_window.h"
#include "app/language_dialog.h"
#include "app/language_manager.h"
#include "app/title_bar.h"
#include "res/resources.h"
#include "tests/app/app_test.h"
#include "widgets/theme.h"

#include <QApplication>
#include <QImage>
#include <QLabel>
#include <QPainterPath>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>
#include <QWindow>

class TestFramelessWindow final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void frameAndSizes();
    void contentTakesThePlaceBelowTheTitleBar();
    void nullContentChangesNothing();
    void newContentReplacesAndDeletesTheOld();

    void dragByTheStripMovesTheWindow_data();
    void dragByTheStripMovesTheWindow();
    void dragStartsOnTheTitleBarsLabels();
    void dragOfAMaximizedWindowRestoresIt();
    void pressOnAMaximizedWindowLeavesItSo();
    void pressBelowTheStripDoesNotDrag();
    void otherButtonsDoNotDrag();
    void releaseEndsTheDrag();
    void buttonsOfTheTitleBarDoNotDrag();

    void bordersAndBackgroundArePainted();
    void cornersAreTransparentAndMasked();
    void squareContentIsRoundedInTheLowerCorners();
    void maximizedContentStaysSquare();
    void lowerCornersLetTheMouseThrough();
    void maskHasARadiusOfTwelve_data();
    void maskHasARadiusOfTwelve();
    void maskCoversTheRoundedWindow();
    void maskFollowsTheSize();
    void maximizedWindowIsSquareWithoutMask();
    void stateChangeFromOutsideReachesTheTitleBar();

    void maximizeButtonTogglesTheState();
    void minimizeButtonMinimizes();
    void closeButtonCloses();
    void doubleClickOnTheTitleBarDoesNothing();
    void languageButtonOpensTheModalDialog();

private:
    QWidget *titleButton(const char *name) const
    {
        return m_window->findChild<QAbstractButton *>(QLatin1String(name));
    }
    void drag(const QPoint &from, const QPoint &by, Qt::MouseButton button = Qt::LeftButton);

    std::unique_ptr<AppTestFolders> m_folders;
    std::unique_ptr<FramelessWindow> m_window;
};

void TestFramelessWindow::initTestCase()
{
    initResources();
    m_folders = std::make_unique<AppTestFolders>(QStringLiteral("tst_frameless_window"));
    LanguageManager::instance()->setLanguage(QStringLiteral("zh_CN"));
}

void TestFramelessWindow::init()
{
    m_window = std::make_unique<FramelessWindow>();
    m_window->setContentWidget(new QWidget);
    m_window->resize(1000, 640);
    m_window->move(100, 80);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
}

void TestFramelessWindow::cleanup()
{
    m_window.reset();
}

void TestFramelessWindow::drag(const QPoint &from, const QPoint &by, Qt::MouseButton button)
{
    // Positions are global, because the window moves under the pointer.
    const QPoint start = m_window->mapToGlobal(from);
    const auto send = [this](QEvent::Type type, const QPoint &global, Qt::MouseButton changed,
                             Qt::MouseButtons held) {
        QMouseEvent event(type, m_window->mapFromGlobal(QPointF(global)), QPointF(global), changed,
                          held, Qt::NoModifier);
        QCoreApplication::sendEvent(m_window.get(), &event);
    };
    send(QEvent::MouseButtonPress, start, button, button);
    send(QEvent::MouseMove, start + by / 2, Qt::NoButton, button);
    send(QEvent::MouseMove, start + by, Qt::NoButton, button);
    send(QEvent::MouseButtonRelease, start + by, button, Qt::NoButton);
}

void TestFramelessWindow::frameAndSizes()
{
    QCOMPARE(m_window->minimumSize(), QSize(940, 600));
    const Qt::WindowFlags expected = Qt::Window | Qt::FramelessWindowHint |
                                     Qt::WindowSystemMenuHint | Qt::WindowMinimizeButtonHint |
                                     Qt::WindowMaximizeButtonHint;
    QCOMPARE(m_window->windowFlags() & expected, expected);
    QVERIFY(!m_window->windowFlags().testFlag(Qt::WindowTitleHint));
    QVERIFY(m_window->testAttribute(Qt::WA_TranslucentBackground));
    QCOMPARE(m_window->layout()->contentsMargins(), QMargins(1, 0, 1, 1));
    QCOMPARE(m_window->layout()->spacing(), 0);
    const auto *titleBar = m_window->findChild<TitleBar *>();
    QCOMPARE(m_window->layout()->itemAt(0)->widget(), titleBar);
    QTRY_COMPARE(titleBar->geometry(), QRect(1, 0, 998, 40));
    m_window->resize(100, 100);
    QCOMPARE(m_window->size(), QSize(940, 600));
}

void TestFramelessWindow::contentTakesThePlaceBelowTheTitleBar()
{
    auto *content = new QWidget;
    m_window->setContentWidget(content);
    QCOMPARE(content->parentWidget(), m_window.get());
    QTRY_VERIFY(content->isVisible());
    QTRY_COMPARE(content->geometry(), QRect(1, 40, 998, 599));
}

void TestFramelessWindow::nullContentChangesNothing()
{
    auto *content = new QWidget;
    m_window->setContentWidget(content);
    m_window->setContentWidget(nullptr);
    QCOMPARE(m_window->layout()->count(), 2);
    QCOMPARE(m_window->layout()->itemAt(1)->widget(), content);
}

void TestFramelessWindow::newContentReplacesAndDeletesTheOld()
{
    const QPointer<QWidget> old = new QWidget;
    auto *fresh = new QWidget;
    m_window->setContentWidget(old);
    m_window->setContentWidget(fresh);
    QVERIFY2(old, "the old content must outlive the current event");
    QCOMPARE(m_window->layout()->count(), 2);
    QCOMPARE(m_window->layout()->itemAt(1)->widget(), fresh);
    QTRY_VERIFY(!old);
    QTRY_VERIFY(fresh->isVisible());
}

void TestFramelessWindow::dragByTheStripMovesTheWindow_data()
{
    QTest::addColumn<QPoint>("from");
    QTest::newRow("middle of the strip") << QPoint(500, 20);
    QTest::newRow("first row") << QPoint(500, 0);
    QTest::newRow("last row") << QPoint(500, 40);
}

void TestFramelessWindow::dragByTheStripMovesTheWindow()
{
    QFETCH(QPoint, from);
    const QPoint before = m_window->pos();
    drag(from, QPoint(60, -35));
    QCOMPARE(m_window->pos(), before + QPoint(60, -35));
}

void TestFramelessWindow::dragStartsOnTheTitleBarsLabels()
{
    const QPoint before = m_window->pos();
    const auto *title = m_window->findChild<QLabel *>(QStringLiteral("titleLabel"));
    const QPoint grip = title->mapTo(m_window.get(), title->rect().center());
    QWindow *handle = m_window->windowHandle();
    QTest::mousePress(handle, Qt::LeftButton, {}, grip);
    QTest::mouseMove(handle, grip + QPoint(40, 25));
    QTRY_COMPARE(m_window->pos(), before + QPoint(40, 25));
    QTest::mouseRelease(handle, Qt::LeftButton, {}, grip);
    QTest::mouseMove(handle, grip + QPoint(10, 10));
    QCoreApplication::processEvents();
    QCOMPARE(m_window->pos(), before + QPoint(40, 25));
}

void TestFramelessWindow::dragOfAMaximizedWindowRestoresIt()
{
    const QSize normal = m_window->size();
    m_window->showMaximized();
    QTRY_VERIFY(m_window->isMaximized() && m_window->width() != normal.width());
    const QPoint press(m_window->width() * 3 / 4, 20);
    const QPoint pointer = m_window->mapToGlobal(press) + QPoint(-30, 50);
    drag(press, QPoint(-30, 50));
    QTRY_VERIFY(!m_window->isMaximized());
    QTRY_COMPARE(m_window->size(), normal);
    // The pointer is on the title of the window, at the same share of its width.
    const QPoint onWindow = pointer - m_window->frameGeometry().topLeft();
    QCOMPARE(onWindow, QPoint(normal.width() * 3 / 4, 20));
}

void TestFramelessWindow::pressOnAMaximizedWindowLeavesItSo()
{
    m_window->showMaximized();
    QTRY_VERIFY(m_window->isMaximized());
    const QRect before = m_window->geometry();
    drag(QPoint(300, 20), QPoint(1, 1));
    QVERIFY(m_window->isMaximized());
    QCOMPARE(m_window->geometry(), before);
}

void TestFramelessWindow::pressBelowTheStripDoesNotDrag()
{
    const QPoint before = m_window->pos();
    drag(QPoint(500, 41), QPoint(60, 30));
    QCOMPARE(m_window->pos(), before);
    drag(QPoint(500, 300), QPoint(60, 30));
    QCOMPARE(m_window->pos(), before);
}

void TestFramelessWindow::otherButtonsDoNotDrag()
{
    const QPoint before = m_window->pos();
    drag(QPoint(500, 20), QPoint(60, 30), Qt::RightButton);
    drag(QPoint(500, 20), QPoint(60, 30), Qt::MiddleButton);
    QCOMPARE(m_window->pos(), before);
}

void TestFramelessWindow::releaseEndsTheDrag()
{
    drag(QPoint(500, 20), QPoint(20, 20));
    const QPoint after = m_window->pos();
    const QPointF global = m_window->mapToGlobal(QPointF(700, 30));
    QMouseEvent move(QEvent::MouseMove, QPointF(700, 30), global, Qt::NoButton, Qt::LeftButton,
                     Qt::NoModifier);
    QCoreApplication::sendEvent(m_window.get(), &move);
    QCOMPARE(m_window->pos(), after);
}

void TestFramelessWindow::buttonsOfTheTitleBarDoNotDrag()
{
    const QPoint before = m_window->pos();
    QWidget *button = titleButton("minimizeBtn");
    QTest::mousePress(button, Qt::LeftButton);
    QTest::mouseMove(button, QPoint(-60, 10));
    QTest::mouseRelease(button, Qt::LeftButton, {}, QPoint(-60, 10));
    QCOMPARE(m_window->pos(), before);
}

void TestFramelessWindow::bordersAndBackgroundArePainted()
{
    // The border is a pixel wide and lies half on the outermost row of pixels, half on the next.
    const QImage image = m_window->grab().toImage();
    const QRect window = m_window->rect();
    for (const QPoint &edge : {QPoint(500, 0), QPoint(0, 320), QPoint(window.right(), 320),
                               QPoint(500, window.bottom())}) {
        const QColor colour = image.pixelColor(edge);
        QVERIFY(qAbs(colour.alpha() - 128) <= 2);
        QVERIFY(qAbs(colour.red() - Theme::borderStrong.red()) <= 2);
        QVERIFY(qAbs(colour.blue() - Theme::borderStrong.blue()) <= 2);
    }
    const QColor next = image.pixelColor(500, window.bottom() - 1);
    QCOMPARE(next.alpha(), 255);
    QVERIFY(next.red() > Theme::borderStrong.red());
    QVERIFY(next.red() < Theme::windowBackground.red());
    QCOMPARE(image.pixelColor(500, window.bottom() - 2), Theme::windowBackground);
    QCOMPARE(image.pixelColor(500, 320), Theme::windowBackground);
    QCOMPARE(image.pixelColor(500, 2), Theme::windowBackground);
}

void TestFramelessWindow::cornersAreTransparentAndMasked()
{
    QImage image(m_window->size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    m_window->render(&image, QPoint(), QRegion(), QWidget::DrawWindowBackground);
    QCOMPARE(qAlpha(image.pixel(0, 0)), 0);
    QCOMPARE(qAlpha(image.pixel(999, 639)), 0);
    QCOMPARE(qAlpha(image.pixel(12, 12)), 255);

    const QRegion mask = m_window->mask();
    QVERIFY(!mask.isEmpty());
    QVERIFY(!mask.contains(QPoint(1, 1)));
    QVERIFY(!mask.contains(QPoint(998, 1)));
    QVERIFY(!mask.contains(QPoint(1, 638)));
    QVERIFY(!mask.contains(QPoint(998, 638)));
    QVERIFY(mask.contains(QPoint(12, 0)));
    QVERIFY(mask.contains(QPoint(0, 320)));
    QVERIFY(mask.contains(QPoint(999, 320)));
    QVERIFY(mask.contains(QPoint(500, 639)));
}

void TestFramelessWindow::squareContentIsRoundedInTheLowerCorners()
{
    auto *content = new QWidget;
    content->setStyleSheet(QStringLiteral("background: #FF0000"));
    m_window->setContentWidget(content);
    QTRY_VERIFY(content->isVisible());
    for (const QSize &size : {m_window->size(), QSize(1100, 700)}) {
        m_window->resize(size);
        QCoreApplication::processEvents();
        const QImage image = m_window->grab().toImage();
        const int right = size.width() - 1;
        const int bottom = size.height() - 1;
        QCOMPARE(image.pixelColor(1, bottom - 1).alpha(), 0);
        QCOMPARE(image.pixelColor(right - 1, bottom - 1).alpha(), 0);
        QCOMPARE(image.pixelColor(12, bottom - 12), QColor(Qt::red));
        QCOMPARE(image.pixelColor(right - 12, bottom - 12), QColor(Qt::red));
        // The corner's diagonal crosses the border.
        bool border = false;
        for (int i = 2; i < 8; ++i) {
            const QColor colour = image.pixelColor(i, bottom - i);
            border = border || colour.blue() > 100;
        }
        QVERIFY(border);
    }
}

void TestFramelessWindow::maximizedContentStaysSquare()
{
    auto *content = new QWidget;
    content->setStyleSheet(QStringLiteral("background: #FF0000"));
    m_window->setContentWidget(content);
    m_window->showMaximized();
    QTRY_VERIFY(m_window->isMaximized());
    QTRY_VERIFY(m_window->mask().isEmpty());
    const QImage image = m_window->grab().toImage();
    QCOMPARE(image.pixelColor(1, image.height() - 2), QColor(Qt::red));
    QCOMPARE(image.pixelColor(image.width() - 2, image.height() - 2), QColor(Qt::red));
}

void TestFramelessWindow::lowerCornersLetTheMouseThrough()
{
    auto *content = new QPushButton;
    content->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    m_window->setContentWidget(content);
    QTRY_VERIFY(content->isVisible());
    QSignalSpy clicked(content, &QPushButton::clicked);
    QTest::mouseClick(m_window->windowHandle(), Qt::LeftButton, {}, QPoint(8, 632));
    QCOMPARE(clicked.size(), 1);
}

void TestFramelessWindow::maskHasARadiusOfTwelve_data()
{
    QTest::addColumn<QPoint>("fromCorner");
    QTest::addColumn<bool>("inside");
    QTest::newRow("diagonal, outside") << QPoint(2, 2) << false;
    QTest::newRow("diagonal, inside") << QPoint(4, 4) << true;
    QTest::newRow("edge row, outside") << QPoint(6, 0) << false;
    QTest::newRow("edge row, inside") << QPoint(10, 0) << true;
    QTest::newRow("edge column, outside") << QPoint(0, 6) << false;
    QTest::newRow("edge column, inside") << QPoint(0, 10) << true;
}

void TestFramelessWindow::maskHasARadiusOfTwelve()
{
    QFETCH(QPoint, fromCorner);
    QFETCH(bool, inside);
    const QRect window = m_window->rect();
    const QPoint opposite = window.bottomRight() - fromCorner;
    QCOMPARE(m_window->mask().contains(fromCorner), inside);
    QCOMPARE(m_window->mask().contains(QPoint(opposite.x(), fromCorner.y())), inside);
    QCOMPARE(m_window->mask().contains(QPoint(fromCorner.x(), opposite.y())), inside);
    QCOMPARE(m_window->mask().contains(opposite), inside);
}

void TestFramelessWindow::maskCoversTheRoundedWindow()
{
    for (const QSize &size : {m_window->size(), QSize(1100, 700)}) {
        m_window->resize(size);
        QPainterPath outline;
        outline.addRoundedRect(QRectF(QPointF(0, 0), size), 12, 12);
        QTRY_COMPARE(m_window->mask(), QRegion(outline.toFillPolygon().toPolygon()));
    }
}

void TestFramelessWindow::maskFollowsTheSize()
{
    m_window->resize(1100, 700);
    QTRY_COMPARE(m_window->mask().boundingRect(), QRect(0, 0, 1100, 700));
}

void TestFramelessWindow::maximizedWindowIsSquareWithoutMask()
{
    m_window->showMaximized();
    QTRY_VERIFY(m_window->isMaximized());
    QTRY_VERIFY(m_window->mask().isEmpty());
    const QImage image = m_window->grab().toImage();
    QVERIFY(image.pixelColor(0, 0).alpha() > 0);
    QCOMPARE(image.pixelColor(2, 2), Theme::windowBackground);

    m_window->showNormal();
    QTRY_VERIFY(!m_window->mask().isEmpty());
    QVERIFY(!m_window->mask().contains(QPoint(1, 1)));
}

void TestFramelessWindow::stateChangeFromOutsideReachesTheTitleBar()
{
    const auto iconStyle = [](const QString &icon) {
        return QStringLiteral("QPushButton { image: url(:/res/icons/modern/%1.png); }").arg(icon);
    };
    QCOMPARE(titleButton("maximizeBtn")->styleSheet(), iconStyle(QStringLiteral("maximize")));
    m_window->setWindowState(Qt::WindowMaximized);
    QTRY_COMPARE(titleButton("maximizeBtn")->property("maximized").toBool(), true);
    QCOMPARE(titleButton("maximizeBtn")->toolTip(), QStringLiteral("还原"));
    QCOMPARE(titleButton("maximizeBtn")->styleSheet(), iconStyle(QStringLiteral("restore")));
    m_window->setWindowState(Qt::WindowNoState);
    QTRY_COMPARE(titleButton("maximizeBtn")->property("maximized").toBool(), false);
    QCOMPARE(titleButton("maximizeBtn")->toolTip(), QStringLiteral("最大化"));
    QCOMPARE(titleButton("maximizeBtn")->styleSheet(), iconStyle(QStringLiteral("maximize")));
}

void TestFramelessWindow::maximizeButtonTogglesTheState()
{
    const QSize before = m_window->size();
    QTest::mouseClick(titleButton("maximizeBtn"), Qt::LeftButton);
    QTRY_VERIFY(m_window->isMaximized());
    QTest::mouseClick(titleButton("maximizeBtn"), Qt::LeftButton);
    QTRY_VERIFY(!m_window->isMaximized());
    QTRY_COMPARE(m_window->size(), before);
}

void TestFramelessWindow::minimizeButtonMinimizes()
{
    QTest::mouseClick(titleButton("minimizeBtn"), Qt::LeftButton);
    QTRY_VERIFY(m_window->isMinimized());
}

void TestFramelessWindow::closeButtonCloses()
{
    QTest::mouseClick(titleButton("closeBtn"), Qt::LeftButton);
    QTRY_VERIFY(!m_window->isVisible());
}

void TestFramelessWindow::doubleClickOnTheTitleBarDoesNothing()
{
    QTest::mouseDClick(m_window->findChild<TitleBar *>(), Qt::LeftButton, {}, QPoint(500, 20));
    QTest::qWait(50);
    QVERIFY(!m_window->isMaximized());
    QVERIFY(!m_window->isMinimized());
    QVERIFY(m_window->isVisible());
}

void TestFramelessWindow::languageButtonOpensTheModalDialog()
{
    QPointer<LanguageDialog> dialog;
    bool modal = false;
    QTimer watch;
    connect(&watch, &QTimer::timeout, &watch, [&] {
        dialog = qobject_cast<LanguageDialog *>(QApplication::activeModalWidget());
        if (!dialog) {
            return;
        }
        watch.stop();
        modal = dialog->isModal() && dialog->parentWidget() == m_window.get();
        QTest::mouseClick(dialog->findChild<QPushButton *>(QStringLiteral("languageCancelButton")),
                          Qt::LeftButton);
    });
    watch.start(5);
    QTest::mouseClick(titleButton("languageBtn"), Qt::LeftButton);
    QVERIFY(modal);
    QVERIFY2(!dialog, "the dialog is discarded when it closes");
}

QTEST_MAIN(TestFramelessWindow)
#include "tst_frameless_window.moc"
