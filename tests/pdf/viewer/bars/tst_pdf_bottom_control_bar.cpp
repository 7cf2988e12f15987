// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/bars/page_number_validator.h"
#include "pdf/viewer/bars/pdf_bottom_control_bar.h"
#include "res/resources.h"
#include "tests/pdf/signal_signatures.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QHBoxLayout>
#include <QHelpEvent>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QMetaMethod>
#include <QPainter>
#include <QPushButton>
#include <QRegularExpression>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QToolTip>

#include <limits>
#include <memory>

namespace {

const QString kToHeight = QStringLiteral("切换为适合高度");
const QString kToWidth = QStringLiteral("切换为适合宽度");

} // namespace

class TestPdfBottomControlBar final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void barItself();
    void signalsInOrder();
    void controlsFromLeftToRight();
    void staysHiddenInAShownParent();
    void startsEmptyAtHundredPercent();
    void buttonsTakeNoFocusAndShowAHand();
    void colours();
    void toolTipsShowWithoutWarnings();

    void emptyDocument();
    void pageCountBoundsTheCurrentPage_data();
    void pageCountBoundsTheCurrentPage();
    void currentPageIsClamped_data();
    void currentPageIsClamped();
    void arrowsShowTheirIcons();
    void arrowsAskToTurnPages();
    void typedNumber_data();
    void typedNumber();
    void numberBeyondTheEndWhereOneIsComesBack_data();
    void numberBeyondTheEndWhereOneIsComesBack();
    void numberIsCommittedWhenTheFocusLeaves();
    void numberIsCommittedOnce();
    void emptiedNumberComesBack();
    void escapeBringsTheNumberBack();
    void otherCharactersAreNotTaken();
    void clickSelectsTheNumberUntilItIsEdited();
    void committedNumberMovesTheArrows();
    void longTotalsAreShownWhole();
    void validator_data();
    void validator();

    void zoomItems();
    void chosenZoomIsAskedFor_data();
    void chosenZoomIsAskedFor();
    void chosenCustomZoomIsAskedFor();
    void zoomIsChosenByMouse();
    void zoomShown_data();
    void zoomShown();
    void customZoomGoesWithTheNextZoom();
    void zoomListScrollsBeyondNineItems();

    void fitToggleNamesWhatAClickSwitchesTo();
    void fitToggleAsks();
    void fitToggleShowsTheState();
    void settingStatesEmitsNothing();

private:
    [[nodiscard]] QPushButton *button(const char *name) const
    {
        return m_bar->findChild<QPushButton *>(QLatin1String(name));
    }
    [[nodiscard]] QPushButton *previous() const { return button("pdfPreviousPageButton"); }
    [[nodiscard]] QPushButton *next() const { return button("pdfNextPageButton"); }
    [[nodiscard]] QPushButton *fitToggle() const { return button("pdfFitToggleButton"); }
    [[nodiscard]] QLineEdit *edit() const
    {
        return m_bar->findChild<QLineEdit *>(QStringLiteral("pdfPageNumberEdit"));
    }
    [[nodiscard]] QLabel *total() const
    {
        return m_bar->findChild<QLabel *>(QStringLiteral("pdfPageCountLabel"));
    }
    [[nodiscard]] QComboBox *zoom() const
    {
        return m_bar->findChild<QComboBox *>(QStringLiteral("pdfZoomCombo"));
    }
    /// Replaces the number in the field by typing.
    void type(const QString &number);
    [[nodiscard]] QStringList zoomTexts() const;

    std::unique_ptr<PdfBottomControlBar> m_bar;
};

void TestPdfBottomControlBar::initTestCase()
{
    initResources();
}

void TestPdfBottomControlBar::init()
{
    m_bar = std::make_unique<PdfBottomControlBar>();
    m_bar->resize(m_bar->sizeHint());
    m_bar->show();
    m_bar->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_bar.get()));
}

void TestPdfBottomControlBar::cleanup()
{
    m_bar.reset();
}

void TestPdfBottomControlBar::type(const QString &number)
{
    edit()->setFocus();
    edit()->selectAll();
    QTest::keyClick(edit(), Qt::Key_Delete);
    for (const QChar character : number) {
        QTest::sendKeyEvent(QTest::Click, edit(), Qt::Key_unknown, QString(character),
                            Qt::NoModifier);
    }
}

QStringList TestPdfBottomControlBar::zoomTexts() const
{
    QStringList texts;
    for (int item = 0; item < zoom()->count(); ++item) {
        texts << zoom()->itemText(item);
    }
    return texts;
}

void TestPdfBottomControlBar::barItself()
{
    QCOMPARE(m_bar->objectName(), QStringLiteral("pdfBottomControlBar"));
    QCOMPARE(m_bar->minimumHeight(), 52);
    QCOMPARE(m_bar->maximumHeight(), 52);
    QCOMPARE(m_bar->sizeHint().height(), 52);
}

void TestPdfBottomControlBar::signalsInOrder()
{
    QCOMPARE(
        signalSignatures(*m_bar->metaObject()),
        (QByteArrayList{"previousPageRequested()", "nextPageRequested()", "pageRequested(int)",
                        "zoomRequested(double)", "fitWidthRequested()", "fitPageRequested()"}));
}

void TestPdfBottomControlBar::controlsFromLeftToRight()
{
    QStringList names;
    const QLayout *layout = m_bar->layout();
    for (int i = 0; i < layout->count(); ++i) {
        names << layout->itemAt(i)->widget()->objectName();
    }
    QCOMPARE(
        names,
        (QStringList{QStringLiteral("pdfPageNavigation"), QStringLiteral("pdfPageCountLabel"),
                     QStringLiteral("pdfBottomSeparator"), QStringLiteral("pdfZoomCombo"),
                     QStringLiteral("pdfBottomSeparator"), QStringLiteral("pdfFitToggleButton")}));
    const QLayout *navigation = layout->itemAt(0)->widget()->layout();
    QCOMPARE(navigation->count(), 3);
    QCOMPARE(navigation->itemAt(0)->widget(), previous());
    QCOMPARE(navigation->itemAt(1)->widget(), edit());
    QCOMPARE(navigation->itemAt(2)->widget(), next());

    QCOMPARE(previous()->size(), QSize(38, 38));
    QCOMPARE(edit()->size(), QSize(54, 38));
    QCOMPARE(next()->size(), QSize(38, 38));
    QCOMPARE(total()->size(), QSize(48, 38));
    QCOMPARE(layout->itemAt(2)->widget()->size(), QSize(1, 34));
    QCOMPARE(zoom()->size(), QSize(110, 36));
    QCOMPARE(layout->itemAt(4)->widget()->size(), QSize(1, 34));
    QCOMPARE(fitToggle()->size(), QSize(38, 38));
    QCOMPARE(edit()->alignment(), Qt::AlignCenter);
    QCOMPARE(total()->alignment(), Qt::AlignCenter);
    QCOMPARE(previous()->toolTip(), QStringLiteral("上一页"));
    QCOMPARE(next()->toolTip(), QStringLiteral("下一页"));
}

void TestPdfBottomControlBar::staysHiddenInAShownParent()
{
    QWidget parent;
    auto *bar = new PdfBottomControlBar(&parent);
    parent.resize(600, 100);
    parent.show();
    QVERIFY(QTest::qWaitForWindowExposed(&parent));
    QVERIFY(!bar->isVisible());
    bar->show();
    QVERIFY(bar->isVisible());
}

void TestPdfBottomControlBar::startsEmptyAtHundredPercent()
{
    QCOMPARE(total()->text(), QStringLiteral("/0"));
    QCOMPARE(edit()->text(), QStringLiteral("0"));
    QVERIFY(!edit()->isEnabled());
    QVERIFY(!previous()->isEnabled());
    QVERIFY(!next()->isEnabled());
    QCOMPARE(zoom()->currentText(), QStringLiteral("100%"));
}

void TestPdfBottomControlBar::buttonsTakeNoFocusAndShowAHand()
{
    for (const QWidget *control :
         {static_cast<QWidget *>(previous()), static_cast<QWidget *>(next()),
          static_cast<QWidget *>(fitToggle()), static_cast<QWidget *>(zoom())}) {
        QCOMPARE(control->focusPolicy(), Qt::NoFocus);
        QCOMPARE(control->cursor().shape(), Qt::PointingHandCursor);
    }
}

void TestPdfBottomControlBar::colours()
{
    m_bar->setPageCount(3);
    m_bar->setCurrentPage(1);
    const auto colourAt = [this](const QWidget *widget, const QPoint &point) {
        return m_bar->grab().toImage().pixelColor(widget->mapTo(m_bar.get(), point));
    };
    QTest::mouseMove(m_bar.get(), QPoint(3, 26));
    QCOMPARE(colourAt(m_bar.get(), QPoint(3, 26)), QColor(0x18191C));
    QCOMPARE(colourAt(m_bar.get(), QPoint(0, 26)), QColor(0x303136));
    QCOMPARE(colourAt(previous(), QPoint(5, 19)), QColor(0x4A4C50));
    QCOMPARE(colourAt(previous(), QPoint(37, 19)), QColor(0x242529));
    QCOMPARE(colourAt(next(), QPoint(0, 19)), QColor(0x242529));
    QCOMPARE(colourAt(edit(), QPoint(4, 19)), QColor(0x4A4C50));
    QCOMPARE(
        colourAt(m_bar->findChild<QWidget *>(QStringLiteral("pdfBottomSeparator")), QPoint(0, 17)),
        QColor(0x3A3B40));
    QCOMPARE(colourAt(zoom(), QPoint(5, 18)), QColor(0xFFFFFF));
    QCOMPARE(colourAt(zoom(), QPoint(40, 0)), QColor(0xC9CBD1));
    QCOMPARE(colourAt(fitToggle(), QPoint(3, 19)), QColor(0x18191C));

    QTest::mouseMove(next(), next()->rect().center());
    QTRY_COMPARE(colourAt(next(), QPoint(5, 6)), QColor(0x606267));
    QTest::mouseMove(fitToggle(), fitToggle()->rect().center());
    QTRY_COMPARE(colourAt(fitToggle(), QPoint(3, 19)), QColor(0x34363C));
}

void TestPdfBottomControlBar::toolTipsShowWithoutWarnings()
{
    QTest::failOnWarning(QRegularExpression(QStringLiteral("property|style ?sheet")));
    const QPoint centre = fitToggle()->rect().center();
    QHelpEvent help(QEvent::ToolTip, centre, fitToggle()->mapToGlobal(centre));
    QApplication::sendEvent(fitToggle(), &help);
    QTRY_COMPARE(QToolTip::text(), kToHeight);
    QToolTip::hideText();
}

void TestPdfBottomControlBar::emptyDocument()
{
    m_bar->setPageCount(5);
    m_bar->setCurrentPage(2);
    m_bar->setPageCount(0);
    QCOMPARE(total()->text(), QStringLiteral("/0"));
    QCOMPARE(edit()->text(), QStringLiteral("0"));
    QVERIFY(!edit()->isEnabled());
    QVERIFY(!previous()->isEnabled());
    QVERIFY(!next()->isEnabled());

    const QSignalSpy page(m_bar.get(), &PdfBottomControlBar::pageRequested);
    m_bar->setCurrentPage(3);
    QCOMPARE(edit()->text(), QStringLiteral("0"));
    QTest::keyClick(edit(), Qt::Key_Return);
    QCOMPARE(page.size(), 0);
}

void TestPdfBottomControlBar::pageCountBoundsTheCurrentPage_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<QString>("totalText");
    QTest::addColumn<QString>("number");
    QTest::addColumn<bool>("hasPrevious");
    QTest::addColumn<bool>("hasNext");
    QTest::newRow("more pages") << 9 << QStringLiteral("/9") << QStringLiteral("4") << true << true;
    QTest::newRow("just enough") << 4 << QStringLiteral("/4") << QStringLiteral("4") << true
                                 << false;
    QTest::newRow("fewer") << 2 << QStringLiteral("/2") << QStringLiteral("2") << true << false;
    QTest::newRow("one") << 1 << QStringLiteral("/1") << QStringLiteral("1") << false << false;
    QTest::newRow("negative") << -3 << QStringLiteral("/0") << QStringLiteral("0") << false
                              << false;
}

void TestPdfBottomControlBar::pageCountBoundsTheCurrentPage()
{
    QFETCH(int, count);
    m_bar->setPageCount(6);
    m_bar->setCurrentPage(3);
    m_bar->setPageCount(count);
    QTEST(total()->text(), "totalText");
    QTEST(edit()->text(), "number");
    QTEST(previous()->isEnabled(), "hasPrevious");
    QTEST(next()->isEnabled(), "hasNext");
    const auto *validator = qobject_cast<const QIntValidator *>(edit()->validator());
    QVERIFY(validator);
    QCOMPARE(validator->bottom(), 1);
    QCOMPARE(validator->top(), std::max(count, 1));

    m_bar->setPageCount(6);
    QCOMPARE(edit()->text().toInt(), count > 0 ? std::min(count, 4) : 1);
}

void TestPdfBottomControlBar::currentPageIsClamped_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("number");
    QTest::addColumn<bool>("hasPrevious");
    QTest::addColumn<bool>("hasNext");
    QTest::newRow("first") << 0 << QStringLiteral("1") << false << true;
    QTest::newRow("middle") << 1 << QStringLiteral("2") << true << true;
    QTest::newRow("last") << 2 << QStringLiteral("3") << true << false;
    QTest::newRow("beyond") << 3 << QStringLiteral("3") << true << false;
    QTest::newRow("negative") << -1 << QStringLiteral("1") << false << true;
}

void TestPdfBottomControlBar::currentPageIsClamped()
{
    QFETCH(int, index);
    m_bar->setPageCount(3);
    m_bar->setCurrentPage(index);
    QTEST(edit()->text(), "number");
    QTEST(previous()->isEnabled(), "hasPrevious");
    QTEST(next()->isEnabled(), "hasNext");
    QVERIFY(edit()->isEnabled());
}

void TestPdfBottomControlBar::arrowsShowTheirIcons()
{
    const QColor background(0x4A4C50);
    const auto shows = [&](QPushButton *arrow, int left, const char *name) {
        // Beside the line of one pixel between the arrow and the number.
        const QRect face(left, 0, 37, 38);
        QImage expected(arrow->size(), QImage::Format_RGB32);
        expected.fill(background);
        QPainter painter(&expected);
        QIcon(QStringLiteral(":/res/icons/pdfviewer/") + QLatin1String(name)).paint(&painter, face);
        painter.end();
        // Without the rounded corners.
        const QRect inner = face.adjusted(5, 5, -5, -5);
        const QImage shown = m_bar->grab(QRect(arrow->mapTo(m_bar.get(), QPoint()), arrow->size()))
                                 .toImage()
                                 .convertToFormat(QImage::Format_RGB32);
        QImage empty = expected.copy(inner);
        empty.fill(background);
        return shown.copy(inner) == expected.copy(inner) && shown.copy(inner) != empty;
    };
    QTest::mouseMove(m_bar.get(), QPoint(3, 26));
    m_bar->setPageCount(2);
    QTRY_VERIFY(shows(previous(), 0, "previous-disabled.png"));
    QVERIFY(shows(next(), 1, "next.png"));
    m_bar->setCurrentPage(1);
    QVERIFY(shows(previous(), 0, "previous.png"));
    QVERIFY(shows(next(), 1, "next-disabled.png"));
}

void TestPdfBottomControlBar::arrowsAskToTurnPages()
{
    const QSignalSpy back(m_bar.get(), &PdfBottomControlBar::previousPageRequested);
    const QSignalSpy forth(m_bar.get(), &PdfBottomControlBar::nextPageRequested);
    const QSignalSpy page(m_bar.get(), &PdfBottomControlBar::pageRequested);
    m_bar->setPageCount(3);
    QTest::mouseClick(previous(), Qt::LeftButton);
    QCOMPARE(back.size(), 0);
    QTest::mouseClick(next(), Qt::LeftButton);
    QCOMPARE(forth.size(), 1);
    QCOMPARE(edit()->text(), QStringLiteral("1"));
    m_bar->setCurrentPage(2);
    QTest::mouseClick(next(), Qt::LeftButton);
    QCOMPARE(forth.size(), 1);
    QTest::mouseClick(previous(), Qt::LeftButton);
    QCOMPARE(back.size(), 1);
    QCOMPARE(page.size(), 0);
}

void TestPdfBottomControlBar::typedNumber_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<int>("requested"); // -1: nothing
    QTest::addColumn<QString>("shown");
    const auto row = [](const char *name, int count, const QString &typed, int requested,
                        const QString &shown) {
        QTest::newRow(name) << count << typed << requested << shown;
    };
    row("a page", 20, QStringLiteral("12"), 11, QStringLiteral("12"));
    row("the current page", 20, QStringLiteral("4"), -1, QStringLiteral("4"));
    row("zero", 20, QStringLiteral("0"), 0, QStringLiteral("1"));
    row("beyond, as many digits", 20, QStringLiteral("99"), 19, QStringLiteral("20"));
    row("beyond, more digits", 20, QStringLiteral("1000"), 19, QStringLiteral("20"));
    row("beyond a short document", 5, QStringLiteral("10"), 4, QStringLiteral("5"));
    row("leading zeros", 20, QStringLiteral("007"), 6, QStringLiteral("7"));
    row("current with leading zero", 20, QStringLiteral("04"), -1, QStringLiteral("4"));
    row("full-width digits", 20, QStringLiteral("１２"), 11, QStringLiteral("12"));
    row("Arabic digits", 20, QStringLiteral("١٢"), 11, QStringLiteral("12"));
}

void TestPdfBottomControlBar::typedNumber()
{
    QFETCH(int, count);
    QFETCH(QString, typed);
    QFETCH(int, requested);
    m_bar->setPageCount(count);
    m_bar->setCurrentPage(3);
    const QSignalSpy page(m_bar.get(), &PdfBottomControlBar::pageRequested);
    type(typed);
    QCOMPARE(page.size(), 0);
    QTest::keyClick(edit(), Qt::Key_Return);
    QCOMPARE(page.size(), requested < 0 ? 0 : 1);
    if (requested >= 0) {
        QCOMPARE(page.at(0).at(0).toInt(), requested);
    }
    QTEST(edit()->text(), "shown");
}

void TestPdfBottomControlBar::numberBeyondTheEndWhereOneIsComesBack_data()
{
    QTest::addColumn<int>("current");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("shown");
    QTest::newRow("zero on the first page") << 0 << QStringLiteral("0") << QStringLiteral("1");
    QTest::newRow("zeros on the first page") << 0 << QStringLiteral("00") << QStringLiteral("1");
    QTest::newRow("beyond the end on the last page")
        << 19 << QStringLiteral("21") << QStringLiteral("20");
    QTest::newRow("far beyond the end on the last page")
        << 19 << QStringLiteral("4000") << QStringLiteral("20");
}

void TestPdfBottomControlBar::numberBeyondTheEndWhereOneIsComesBack()
{
    QFETCH(int, current);
    QFETCH(QString, typed);
    m_bar->setPageCount(20);
    m_bar->setCurrentPage(current);
    const QSignalSpy page(m_bar.get(), &PdfBottomControlBar::pageRequested);
    type(typed);
    QCOMPARE(edit()->text(), typed);
    QTest::keyClick(edit(), Qt::Key_Return);
    QTEST(edit()->text(), "shown");
    type(typed);
    edit()->clearFocus();
    QTEST(edit()->text(), "shown");
    QCOMPARE(page.size(), 0);
}

void TestPdfBottomControlBar::numberIsCommittedWhenTheFocusLeaves()
{
    m_bar->setPageCount(20);
    const QSignalSpy page(m_bar.get(), &PdfBottomControlBar::pageRequested);
    type(QStringLiteral("25"));
    edit()->clearFocus();
    QCOMPARE(page.size(), 1);
    QCOMPARE(page.at(0).at(0).toInt(), 19);
    QCOMPARE(edit()->text(), QStringLiteral("20"));
}

void TestPdfBottomControlBar::numberIsCommittedOnce()
{
    m_bar->setPageCount(20);
    const QSignalSpy page(m_bar.get(), &PdfBottomControlBar::pageRequested);
    type(QStringLiteral("7"));
    QTest::keyClick(edit(), Qt::Key_Enter);
    QTest::keyClick(edit(), Qt::Key_Return);
    edit()->clearFocus();
    QCOMPARE(page.size(), 1);
}

void TestPdfBottomControlBar::emptiedNumberComesBack()
{
    m_bar->setPageCount(20);
    m_bar->setCurrentPage(6);
    const QSignalSpy page(m_bar.get(), &PdfBottomControlBar::pageRequested);
    type(QString());
    QCOMPARE(edit()->text(), QString());
    QTest::keyClick(edit(), Qt::Key_Return);
    QCOMPARE(edit()->text(), QStringLiteral("7"));
    type(QString());
    edit()->clearFocus();
    QCOMPARE(edit()->text(), QStringLiteral("7"));
    QCOMPARE(page.size(), 0);
}

void TestPdfBottomControlBar::escapeBringsTheNumberBack()
{
    m_bar->setPageCount(50);
    m_bar->setCurrentPage(6);
    const QSignalSpy page(m_bar.get(), &PdfBottomControlBar::pageRequested);
    type(QStringLiteral("31"));
    QCOMPARE(edit()->text(), QStringLiteral("31"));
    QTest::keyClick(edit(), Qt::Key_Escape);
    QCOMPARE(edit()->text(), QStringLiteral("7"));
    // Another number takes its place.
    QCOMPARE(edit()->selectedText(), QStringLiteral("7"));
    QTest::keyClick(edit(), Qt::Key_Return);
    QCOMPARE(page.size(), 0);
}

void TestPdfBottomControlBar::otherCharactersAreNotTaken()
{
    m_bar->setPageCount(20);
    type(QStringLiteral("-1a.2 "));
    QCOMPARE(edit()->text(), QStringLiteral("12"));
    type(QStringLiteral("12345678901"));
    QCOMPARE(edit()->text(), QStringLiteral("123456789"));
}

void TestPdfBottomControlBar::clickSelectsTheNumberUntilItIsEdited()
{
    m_bar->setPageCount(500);
    m_bar->setCurrentPage(11);
    QTest::mouseClick(edit(), Qt::LeftButton);
    QCOMPARE(edit()->selectedText(), QStringLiteral("12"));
    QTest::keyClicks(edit(), QStringLiteral("34"));
    QCOMPARE(edit()->text(), QStringLiteral("34"));
    QTest::mouseClick(edit(), Qt::LeftButton);
    QCOMPARE(edit()->selectedText(), QString());
    QTest::keyClick(edit(), Qt::Key_Return);
    QTest::mouseClick(edit(), Qt::LeftButton);
    QCOMPARE(edit()->selectedText(), QStringLiteral("34"));
}

void TestPdfBottomControlBar::committedNumberMovesTheArrows()
{
    m_bar->setPageCount(20);
    type(QStringLiteral("20"));
    QTest::keyClick(edit(), Qt::Key_Return);
    QVERIFY(previous()->isEnabled());
    QVERIFY(!next()->isEnabled());
    type(QStringLiteral("1"));
    QTest::keyClick(edit(), Qt::Key_Return);
    QVERIFY(!previous()->isEnabled());
    QVERIFY(next()->isEnabled());
}

void TestPdfBottomControlBar::longTotalsAreShownWhole()
{
    m_bar->setPageCount(99);
    QCOMPARE(total()->sizeHint().width() <= 48, true);
    const int usualWidth = m_bar->sizeHint().width();
    m_bar->setPageCount(10000000);
    m_bar->resize(m_bar->sizeHint());
    QVERIFY(m_bar->width() > usualWidth);
    QTRY_VERIFY(total()->width() >= total()->fontMetrics().horizontalAdvance(total()->text()));
}

void TestPdfBottomControlBar::validator_data()
{
    QTest::addColumn<QString>("input");
    QTest::addColumn<QValidator::State>("state");
    QTest::addColumn<QString>("fixed");
    QTest::newRow("first") << QStringLiteral("1") << QValidator::Acceptable << QStringLiteral("1");
    QTest::newRow("last") << QStringLiteral("30") << QValidator::Acceptable << QStringLiteral("30");
    QTest::newRow("beyond") << QStringLiteral("31") << QValidator::Intermediate
                            << QStringLiteral("30");
    QTest::newRow("far beyond") << QStringLiteral("4000") << QValidator::Intermediate
                                << QStringLiteral("30");
    QTest::newRow("zero") << QStringLiteral("0") << QValidator::Intermediate << QStringLiteral("1");
    QTest::newRow("empty") << QString() << QValidator::Intermediate << QStringLiteral("12");
    QTest::newRow("sign") << QStringLiteral("-3") << QValidator::Invalid << QStringLiteral("1");
    QTest::newRow("too long") << QStringLiteral("1234567890") << QValidator::Invalid
                              << QStringLiteral("30");
}

void TestPdfBottomControlBar::validator()
{
    QFETCH(QString, input);
    PageNumberValidator tested;
    tested.setRange(1, 30);
    tested.setCurrentNumber(12);
    int position = 0;
    QTEST(tested.validate(input, position), "state");
    tested.fixup(input);
    QTEST(input, "fixed");
}

void TestPdfBottomControlBar::zoomItems()
{
    QCOMPARE(zoomTexts(),
             (QStringList{QStringLiteral("25%"), QStringLiteral("50%"), QStringLiteral("75%"),
                          QStringLiteral("100%"), QStringLiteral("125%"), QStringLiteral("150%"),
                          QStringLiteral("200%"), QStringLiteral("300%"), QStringLiteral("400%")}));
    for (int item = 0; item < zoom()->count(); ++item) {
        QCOMPARE(QStringLiteral("%1%").arg(zoom()->itemData(item).toInt()), zoom()->itemText(item));
        QVERIFY(!zoom()->itemData(item, Qt::UserRole + 1).toBool());
    }
    QVERIFY(!zoom()->isEditable());
    QCOMPARE(zoom()->maxVisibleItems(), 9);
    QCOMPARE(zoom()->view()->objectName(), QStringLiteral("pdfZoomPopup"));
    QCOMPARE(zoom()->view()->minimumWidth(), 110);
}

void TestPdfBottomControlBar::chosenZoomIsAskedFor_data()
{
    QTest::addColumn<int>("item");
    QTest::addColumn<double>("factor");
    QTest::newRow("25%") << 0 << 0.25;
    QTest::newRow("75%") << 2 << 0.75;
    QTest::newRow("100%") << 3 << 1.0;
    QTest::newRow("400%") << 8 << 4.0;
}

void TestPdfBottomControlBar::chosenZoomIsAskedFor()
{
    QFETCH(int, item);
    m_bar->setZoom(1.25);
    const QSignalSpy requested(m_bar.get(), &PdfBottomControlBar::zoomRequested);
    const int start = zoom()->currentIndex();
    const Qt::Key key = item < start ? Qt::Key_Up : Qt::Key_Down;
    for (int steps = std::abs(item - start); steps > 0; --steps) {
        QTest::keyClick(zoom(), key);
    }
    QCOMPARE(requested.size(), std::abs(item - start));
    QTEST(requested.last().at(0).toDouble(), "factor");
}

void TestPdfBottomControlBar::chosenCustomZoomIsAskedFor()
{
    m_bar->setZoom(0.333);
    QTest::keyClick(zoom(), Qt::Key_Down);
    const QSignalSpy requested(m_bar.get(), &PdfBottomControlBar::zoomRequested);
    QTest::keyClick(zoom(), Qt::Key_Up);
    QCOMPARE(requested.size(), 1);
    QCOMPARE(requested.at(0).at(0).toDouble(), 0.33);
}

void TestPdfBottomControlBar::zoomIsChosenByMouse()
{
    const QSignalSpy requested(m_bar.get(), &PdfBottomControlBar::zoomRequested);
    QTest::mouseClick(zoom(), Qt::LeftButton);
    QAbstractItemView *list = zoom()->view();
    QTRY_VERIFY(list->isVisible());
    // The list ignores releases for a moment, lest the opening click choose an item.
    QTest::qWait(QApplication::doubleClickInterval() + 50);
    const QRect item = list->visualRect(list->model()->index(6, 0));
    QTest::mouseMove(list->viewport(), item.center());
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, item.center());
    QTRY_COMPARE(requested.size(), 1);
    QCOMPARE(requested.at(0).at(0).toDouble(), 2.0);
    QTRY_VERIFY(!list->isVisible());
}

void TestPdfBottomControlBar::zoomShown_data()
{
    QTest::addColumn<double>("factor");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("custom");
    QTest::newRow("a third") << 0.333 << QStringLiteral("33%") << true;
    QTest::newRow("preset") << 1.5 << QStringLiteral("150%") << false;
    QTest::newRow("nearly a preset") << 1.4951 << QStringLiteral("150%") << false;
    QTest::newRow("half rounds away from zero") << 0.125 << QStringLiteral("13%") << true;
    QTest::newRow("below half") << 1.014 << QStringLiteral("101%") << true;
    QTest::newRow("largest") << 5.0 << QStringLiteral("500%") << true;
    QTest::newRow("too large") << 7.0 << QStringLiteral("500%") << true;
    QTest::newRow("smallest") << 0.1 << QStringLiteral("10%") << true;
    QTest::newRow("too small") << 0.05 << QStringLiteral("10%") << true;
    QTest::newRow("negative") << -1.0 << QStringLiteral("10%") << true;
    QTest::newRow("infinite") << std::numeric_limits<double>::infinity() << QStringLiteral("500%")
                              << true;
}

void TestPdfBottomControlBar::zoomShown()
{
    QFETCH(double, factor);
    QFETCH(QString, text);
    QFETCH(bool, custom);
    const QSignalSpy requested(m_bar.get(), &PdfBottomControlBar::zoomRequested);
    m_bar->setZoom(factor);
    QCOMPARE(zoom()->currentText(), text);
    QCOMPARE(zoom()->count(), custom ? 10 : 9);
    QCOMPARE(zoom()->currentIndex() == 0, custom);
    QCOMPARE(zoom()->currentData(Qt::UserRole + 1).toBool(), custom);
    QCOMPARE(QStringLiteral("%1%").arg(zoom()->currentData().toInt()), text);
    QCOMPARE(requested.size(), 0);
}

void TestPdfBottomControlBar::customZoomGoesWithTheNextZoom()
{
    const QStringList presets = zoomTexts();
    m_bar->setZoom(0.333);
    QCOMPARE(zoomTexts(), QStringList{QStringLiteral("33%")} + presets);
    m_bar->setZoom(0.6);
    QCOMPARE(zoomTexts(), QStringList{QStringLiteral("60%")} + presets);
    QCOMPARE(zoom()->currentIndex(), 0);
    m_bar->setZoom(1.5);
    QCOMPARE(zoomTexts(), presets);
    QCOMPARE(zoom()->currentText(), QStringLiteral("150%"));
}

void TestPdfBottomControlBar::zoomListScrollsBeyondNineItems()
{
    m_bar->setZoom(0.333);
    QTest::mouseClick(zoom(), Qt::LeftButton);
    const QAbstractItemView *list = zoom()->view();
    QTRY_VERIFY(list->isVisible());
    QTRY_VERIFY(list->verticalScrollBar()->isVisible());
    QVERIFY(list->visualRect(list->model()->index(8, 0)).bottom() < list->viewport()->height());
    QVERIFY(list->visualRect(list->model()->index(9, 0)).bottom() >= list->viewport()->height());
    zoom()->hidePopup();
}

void TestPdfBottomControlBar::fitToggleNamesWhatAClickSwitchesTo()
{
    m_bar->setFitWidth(true);
    QCOMPARE(fitToggle()->toolTip(), kToHeight);
    m_bar->setFitWidth(false);
    QCOMPARE(fitToggle()->toolTip(), kToWidth);
    QTest::mouseClick(fitToggle(), Qt::LeftButton);
    QCOMPARE(fitToggle()->toolTip(), kToHeight);
    QTest::mouseClick(fitToggle(), Qt::LeftButton);
    QCOMPARE(fitToggle()->toolTip(), kToWidth);
}

void TestPdfBottomControlBar::fitToggleAsks()
{
    const QSignalSpy width(m_bar.get(), &PdfBottomControlBar::fitWidthRequested);
    const QSignalSpy page(m_bar.get(), &PdfBottomControlBar::fitPageRequested);
    m_bar->setFitWidth(true);
    QTest::mouseClick(fitToggle(), Qt::LeftButton);
    QCOMPARE(width.size(), 0);
    QCOMPARE(page.size(), 1);
    QTest::mouseClick(fitToggle(), Qt::LeftButton);
    QCOMPARE(width.size(), 1);
    QCOMPARE(page.size(), 1);
}

void TestPdfBottomControlBar::fitToggleShowsTheState()
{
    const auto shows = [this](const char *name) {
        const QIcon icon(QStringLiteral(":/res/icons/pdfviewer/") + QLatin1String(name));
        const QImage shown = fitToggle()->icon().pixmap(QSize(24, 24), 1.0).toImage();
        return !shown.isNull() && shown == icon.pixmap(QSize(24, 24), 1.0).toImage();
    };
    m_bar->setFitWidth(true);
    QCOMPARE(fitToggle()->property("fitWidth"), QVariant(true));
    QVERIFY(shows("fit-width.png"));
    m_bar->setFitWidth(false);
    QCOMPARE(fitToggle()->property("fitWidth"), QVariant(false));
    QVERIFY(shows("fit-height.png"));
    QTest::mouseClick(fitToggle(), Qt::LeftButton);
    QVERIFY(shows("fit-width.png"));
}

void TestPdfBottomControlBar::settingStatesEmitsNothing()
{
    std::vector<std::unique_ptr<QSignalSpy>> spies;
    const QMetaObject *meta = m_bar->metaObject();
    for (int i = meta->methodOffset(); i < meta->methodCount(); ++i) {
        if (meta->method(i).methodType() == QMetaMethod::Signal) {
            spies.push_back(std::make_unique<QSignalSpy>(m_bar.get(), meta->method(i)));
        }
    }
    QCOMPARE(spies.size(), std::size_t{6});
    const QSignalSpy edited(edit(), &QLineEdit::textChanged);
    const QSignalSpy zoomed(zoom(), &QComboBox::currentTextChanged);
    m_bar->setPageCount(12);
    m_bar->setCurrentPage(7);
    m_bar->setPageCount(3);
    m_bar->setZoom(0.333);
    m_bar->setZoom(4);
    m_bar->setFitWidth(false);
    m_bar->setFitWidth(true);
    for (const auto &spy : spies) {
        QCOMPARE(spy->size(), 0);
    }
    QCOMPARE(edited.size(), 0);
    QCOMPARE(zoomed.size(), 0);
}

QTEST_MAIN(TestPdfBottomControlBar)
#include "tst_pdf_bottom_control_bar.moc"
