// SPDX-License-Identifier: AGPL-3.0-or-later
#include "app/startup.h"
#include "pdf/viewer/bars/pdf_bottom_control_bar.h"
#include "pdf/viewer/bars/pdf_top_tool_bar.h"
#include "res/resources.h"
#include "tools/file_location_selector.h"

#include <QApplication>
#include <QCursor>
#include <QScreen>
#include <QTest>
#include <QTimer>
#include <QVBoxLayout>

namespace {

constexpr QPoint kElsewhere{300, 280};

/// Counts how often a widget is told that the pointer has left it.
class Leaves final : public QObject
{
public:
    explicit Leaves(QWidget &widget) { widget.installEventFilter(this); }

    [[nodiscard]] int count() const { return m_count; }
    void forget() { m_count = 0; }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        m_count += event->type() == QEvent::Leave ? 1 : 0;
        return QObject::eventFilter(watched, event);
    }

private:
    int m_count = 0;
};

/// Everything that opens a menu or a list, in one window.
class Openers final : public QWidget
{
public:
    Openers()
    {
        auto *layout = new QVBoxLayout(this);
        layout->addWidget(new PdfTopToolBar);
        layout->addWidget(new FileLocationSelector);
        auto *bar = new PdfBottomControlBar;
        layout->addWidget(bar);
        layout->addStretch(1);
        bar->show();
        resize(900, 500);
        move(0, 0);
        show();
    }

    /// What is on the screen. Grabbing the widget would paint it anew.
    [[nodiscard]] QImage pictureOf(const QWidget &opener) const
    {
        const QPoint corner = opener.mapTo(this, QPoint());
        return screen()
            ->grabWindow(winId(), corner.x(), corner.y(), opener.width(), opener.height())
            .toImage();
    }

    void movePointerTo(QPoint place)
    {
        QTest::mouseMove(windowHandle(), place);
        QCoreApplication::processEvents();
    }
};

/// Opens what `opener` opens, and closes that by a key while the pointer is elsewhere.
void openAndClose(Openers &window, QWidget &opener)
{
    bool closed = false;
    QTimer::singleShot(50, &window, [&] {
        QWidget *popup = QApplication::activePopupWidget();
        QVERIFY(popup != nullptr);
        // On X11 nobody is told that the pointer leaves the opener now.
        opener.setAttribute(Qt::WA_UnderMouse);
        opener.repaint();
        QTest::keyClick(popup, Qt::Key_Escape);
        closed = true;
    });
    QTest::mouseClick(&opener, Qt::LeftButton);
    QTRY_VERIFY(closed);
    QTRY_VERIFY(QApplication::activePopupWidget() == nullptr);
}

} // namespace

/// Buttons and boxes that open a menu or a list.
class TestPopupHover final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void openerLooksAsBeforeOnceThePopupClosedElsewhere_data() { addOpeners(); }
    void openerLooksAsBeforeOnceThePopupClosedElsewhere();
    void openerUnderThePointerIsNotLeft();

private:
    static void addOpeners();
};

void TestPopupHover::initTestCase()
{
    initResources();
    Startup::setAppearance();
}

void TestPopupHover::addOpeners()
{
    QTest::addColumn<QString>("name");
    for (const char *name :
         {"pdfMoreButton", "pdfToolsButton", "pdfZoomCombo", "fileLocationSelector"}) {
        QTest::newRow(name) << QString::fromLatin1(name);
    }
}

void TestPopupHover::openerLooksAsBeforeOnceThePopupClosedElsewhere()
{
    QFETCH(QString, name);
    Openers window;
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    auto *opener = window.findChild<QWidget *>(name);
    opener->clearFocus();
    QCursor::setPos(window.mapToGlobal(kElsewhere));
    window.movePointerTo(kElsewhere);
    QTest::qWait(20);
    const QImage before = window.pictureOf(*opener);
    QVERIFY(!before.isNull());
    window.movePointerTo(opener->mapTo(&window, opener->rect().center()));
    QTRY_VERIFY(opener->underMouse());
    QTRY_VERIFY(window.pictureOf(*opener) != before);

    openAndClose(window, *opener);
    opener->clearFocus();
    QTRY_VERIFY(!opener->underMouse());
    QTRY_COMPARE(window.pictureOf(*opener), before);
}

void TestPopupHover::openerUnderThePointerIsNotLeft()
{
    Openers window;
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    auto *opener = window.findChild<QWidget *>(QStringLiteral("pdfMoreButton"));
    QCursor::setPos(opener->mapToGlobal(opener->rect().center()));
    QTRY_VERIFY(opener->underMouse());
    Leaves leaves(*opener);
    QTest::mouseClick(opener, Qt::LeftButton);
    QTRY_VERIFY(QApplication::activePopupWidget() != nullptr);
    leaves.forget();
    QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_Escape);
    QTRY_VERIFY(QApplication::activePopupWidget() == nullptr);
    QCoreApplication::processEvents();
    QCOMPARE(leaves.count(), 0);
}

QTEST_MAIN(TestPopupHover)
#include "tst_popup_hover.moc"
