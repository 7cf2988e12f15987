// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdf/viewer/shown_view.h"
#include "widgets/theme.h"

#include <QPaintEvent>
#include <QPainter>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>

namespace {

// The shadow's colour (15, 23, 42, 32 of 255) over the background.
const QColor kShadowOnCanvas(0xCE, 0xD2, 0xDB);

QImage picture(ShownView &shown)
{
    return shown.view.viewport()->grab().toImage();
}

bool isNear(const QColor &a, const QColor &b)
{
    constexpr int kRounding = 1;
    return std::abs(a.red() - b.red()) <= kRounding &&
           std::abs(a.green() - b.green()) <= kRounding &&
           std::abs(a.blue() - b.blue()) <= kRounding;
}

/// Counts pixels of a rectangle that have the colour.
int countPixels(const QImage &image, const QRect &rect, const QColor &color)
{
    int count = 0;
    for (int y = rect.top(); y <= rect.bottom(); ++y) {
        for (int x = rect.left(); x <= rect.right(); ++x) {
            count += image.pixelColor(x, y) == color ? 1 : 0;
        }
    }
    return count;
}

/// What of a widget is painted.
class PaintedRegion final : public QObject
{
public:
    explicit PaintedRegion(QWidget *widget)
        : QObject(widget)
    {
        widget->installEventFilter(this);
    }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Paint) {
            m_region += static_cast<QPaintEvent *>(event)->region();
        }
        return QObject::eventFilter(watched, event);
    }

    [[nodiscard]] const QRegion &region() const { return m_region; }

private:
    QRegion m_region;
};

} // namespace

/// What the document view paints.
class TestPdfDocumentViewPainting final : public QObject
{
    Q_OBJECT

private slots:
    void emptyViewIsFilledWithTheBackground();
    void waitingPageShowsShadowBorderAndText();
    void textNamesThePageByItsNumber();
    void finishedPageCoversItsWholeRectangle();
    void scrolledPagesAreTranslated();
    void arrivedImageIsPaintedWhereItsPageIs();
    void shadowOfAPageAboveTheViewportIsSeen();
    void scrollBarsAreThinRoundedHandlesOnTheBackground();
    void scrollBarsLightUpUnderThePointer();
    void firstPagePaintedComesOncePerDocument();
    void firstPagePaintedWaitsForTheFinishedImage();
};

void TestPdfDocumentViewPainting::emptyViewIsFilledWithTheBackground()
{
    ShownView shown({});
    const QImage image = picture(shown);
    QCOMPARE(countPixels(image, image.rect(), Theme::canvas), image.width() * image.height());
}

void TestPdfDocumentViewPainting::waitingPageShowsShadowBorderAndText()
{
    ShownView shown({{300, 400}});
    shown.probe.hold();
    shown.view.setZoomFactor(1.0);
    shown.model.setPages(recordsOfSizes({{300, 400}}), false);
    const QRect page = shown.pageInViewport(0);
    const QImage image = picture(shown);

    QCOMPARE(image.pixelColor(page.left() - 1, page.center().y()), Theme::canvas);
    QCOMPARE(image.pixelColor(page.center().x(), page.top() - 1), Theme::canvas);
    for (const QPoint &corner :
         {page.topLeft(), page.topRight(), page.bottomLeft(), page.bottomRight(),
          QPoint(page.center().x(), page.top()), QPoint(page.left(), page.center().y())}) {
        QCOMPARE(image.pixelColor(corner), Theme::border);
    }
    QCOMPARE(image.pixelColor(page.left() + 1, page.top() + 1), Theme::white);
    QCOMPARE(image.pixelColor(page.right() - 1, page.bottom() - 1), Theme::white);
    for (int below = 1; below <= 3; ++below) {
        QVERIFY(isNear(image.pixelColor(page.left(), page.bottom() + below), kShadowOnCanvas));
    }
    QCOMPARE(image.pixelColor(page.left(), page.bottom() + 4), Theme::canvas);

    const QRect middle(page.left() + 1, page.center().y() - 20, page.width() - 2, 40);
    QVERIFY(countPixels(image, middle, Theme::white) < middle.width() * middle.height() - 50);
    const QRect above(page.left() + 1, page.top() + 1, page.width() - 2, 100);
    QCOMPARE(countPixels(image, above, Theme::white), above.width() * above.height());
}

void TestPdfDocumentViewPainting::textNamesThePageByItsNumber()
{
    ShownView shown({{300, 400}, {300, 400}});
    shown.probe.hold();
    shown.view.setZoomFactor(1.0);
    shown.model.setPages(recordsOfSizes({{300, 400}, {300, 400}}), false);
    shown.scrollToY(shown.maximumScrollY());
    const QRect page = shown.pageInViewport(1);

    QImage expected(page.size(), QImage::Format_RGB32);
    expected.fill(Theme::white);
    QPainter painter(&expected);
    painter.setFont(shown.view.viewport()->font());
    painter.setPen(Theme::textMuted);
    painter.drawText(expected.rect(), Qt::AlignCenter, QStringLiteral("正在渲染第 %1 页…").arg(2));
    painter.end();
    const QRect text(50, 150, 200, 100);
    QCOMPARE(picture(shown).copy(page).copy(text).convertToFormat(QImage::Format_RGB32),
             expected.copy(text));
}

void TestPdfDocumentViewPainting::finishedPageCoversItsWholeRectangle()
{
    ShownView shown({{300, 400}});
    shown.view.setZoomFactor(1.0);
    const QRect page = shown.pageInViewport(0);
    const QColor color = RenderProbe::colorOf(0);
    QTRY_COMPARE(picture(shown).pixelColor(page.center()), color);
    const QImage image = picture(shown);
    QCOMPARE(countPixels(image, page, color), page.width() * page.height());
    QCOMPARE(image.pixelColor(page.right() + 1, page.center().y()), Theme::canvas);
    QVERIFY(isNear(image.pixelColor(page.center().x(), page.bottom() + 1), kShadowOnCanvas));
}

void TestPdfDocumentViewPainting::scrolledPagesAreTranslated()
{
    ShownView shown(a4Pages(5), {400, 600});
    shown.view.setZoomFactor(1.0);
    shown.resizeViewport({400, 600});
    shown.view.goToPage(2);
    const QRect page = shown.pageInViewport(2);
    QCOMPARE(page.topLeft(), QPoint(32 - shown.scrollX(), 32));
    QVERIFY(page.left() < 0);
    QTRY_COMPARE(picture(shown).pixelColor(0, page.top()), RenderProbe::colorOf(2));
    QCOMPARE(picture(shown).pixelColor(0, page.top() - 1), Theme::canvas);
}

void TestPdfDocumentViewPainting::arrivedImageIsPaintedWhereItsPageIs()
{
    ShownView shown(a4Pages(5));
    QVERIFY(shown.waitForVisiblePages());
    shown.probe.hold();
    shown.view.goToPage(4);
    QTest::qWait(50);
    const PaintedRegion painted(shown.view.viewport());
    shown.probe.release();
    const QRect page = shown.pageInViewport(4).intersected(shown.view.viewport()->rect());
    QTRY_VERIFY(QRegion(page).subtracted(painted.region()).isEmpty());
}

void TestPdfDocumentViewPainting::shadowOfAPageAboveTheViewportIsSeen()
{
    ShownView shown({{300, 700}, {300, 700}}, {400, 600});
    shown.view.setZoomFactor(1.0);
    shown.resizeViewport({400, 600});
    shown.scrollToY(shown.pageInViewport(0).bottom() + 1 + shown.scrollY());
    const QRect page = shown.pageInViewport(0);
    QCOMPARE(page.bottom(), -1);
    const QImage image = picture(shown);
    for (int y = 0; y < 3; ++y) {
        QVERIFY(isNear(image.pixelColor(page.center().x(), y), kShadowOnCanvas));
    }
    QCOMPARE(image.pixelColor(page.center().x(), 3), Theme::canvas);
}

void TestPdfDocumentViewPainting::scrollBarsAreThinRoundedHandlesOnTheBackground()
{
    const QColor handle(0xB8, 0xC0, 0xCE);
    ShownView shown(a4Pages(2000), {400, 600});
    shown.view.setZoomFactor(1.0);
    QCoreApplication::processEvents();
    shown.view.horizontalScrollBar()->setValue(0);
    QCOMPARE(shown.view.width() - shown.view.viewport()->width(), 10);
    QCOMPARE(shown.view.height() - shown.view.viewport()->height(), 10);

    const QImage image = shown.view.grab().toImage();
    const int left = shown.view.viewport()->width();
    QCOMPARE(countPixels(image, {left, 0, 10, 2}, Theme::canvas), 20);
    const int height = shown.view.viewport()->height();
    QCOMPARE(countPixels(image, {left + 5, 0, 1, height}, Theme::canvas), height - 32);
    QCOMPARE(image.pixelColor(left + 5, 17), handle);
    QVERIFY(image.pixelColor(left + 1, 2) != handle);
    QCOMPARE(image.pixelColor(left + 1, 17), handle);
    QCOMPARE(image.pixelColor(left, 17), Theme::canvas);
    QCOMPARE(image.pixelColor(left + 9, 17), Theme::canvas);
    QCOMPARE(image.pixelColor(left + 5, 300), Theme::canvas);

    QCOMPARE(countPixels(image, {0, height, 2, 10}, Theme::canvas), 20);
    QCOMPARE(image.pixelColor(20, height + 5), handle);
}

void TestPdfDocumentViewPainting::scrollBarsLightUpUnderThePointer()
{
    ShownView shown(a4Pages(2000), {400, 600});
    shown.view.setZoomFactor(1.0);
    QCoreApplication::processEvents();
    const auto handle = [&shown] {
        return shown.view.grab().toImage().pixelColor(shown.view.viewport()->width() + 5, 17);
    };
    QTest::mouseMove(shown.view.verticalScrollBar(), {5, 300});
    QTRY_COMPARE(handle(), Theme::pageScrollBar);
    QTest::mouseMove(shown.view.verticalScrollBar(), {5, 17});
    QTRY_COMPARE(handle(), Theme::pageScrollBarHover);
}

void TestPdfDocumentViewPainting::firstPagePaintedComesOncePerDocument()
{
    ShownView shown(a4Pages(5));
    const QSignalSpy painted(&shown.view, &PdfDocumentView::firstPagePainted);
    QTRY_COMPARE(painted.size(), 1);
    shown.view.goToPage(3);
    QVERIFY(shown.waitForVisiblePages());
    QTest::qWait(100);
    QCOMPARE(painted.size(), 1);
    shown.model.setPages(recordsOfSizes(a4Pages(2)), false);
    QTRY_COMPARE(painted.size(), 2);
}

void TestPdfDocumentViewPainting::firstPagePaintedWaitsForTheFinishedImage()
{
    ShownView shown(a4Pages(5));
    QVERIFY(shown.waitForVisiblePages());
    QTest::qWait(50);
    shown.manager.clearCache();
    shown.probe.hold();
    shown.model.setPages(recordsOfSizes(a4Pages(5)), false);
    const QSignalSpy painted(&shown.view, &PdfDocumentView::firstPagePainted);
    picture(shown);
    QTest::qWait(50);
    QCOMPARE(painted.size(), 0);
    shown.probe.release();
    QTRY_COMPARE(painted.size(), 1);
    QCOMPARE(picture(shown).pixelColor(432, 300), RenderProbe::colorOf(0));
}

QTEST_MAIN(TestPdfDocumentViewPainting)
#include "tst_pdf_document_view_painting.moc"
