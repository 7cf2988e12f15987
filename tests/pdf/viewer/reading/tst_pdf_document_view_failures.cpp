// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdf/viewer/shown_view.h"
#include "widgets/theme.h"

#include <QPainter>
#include <QSignalSpy>
#include <QTest>

namespace {

QImage picture(ShownView &shown)
{
    return shown.view.viewport()->grab().toImage().convertToFormat(QImage::Format_RGB32);
}

/// A white rectangle with a text in its middle.
QImage sheetWithText(const ShownView &shown, QSize size, const QString &text)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Theme::white);
    QPainter painter(&image);
    painter.setFont(shown.view.viewport()->font());
    painter.setPen(Theme::textMuted);
    painter.drawText(image.rect(), Qt::AlignCenter, text);
    return image;
}

/// Where a text in the middle of `area` is, with some white around it.
QRect aroundTheMiddle(const QRect &area)
{
    QRect rect(0, 0, 200, 60);
    rect.moveCenter(area.center());
    return rect;
}

/// Whether a text, and nothing else, stands in the middle of what is seen of a page.
bool isShownInView(ShownView &shown, int row, const QString &text)
{
    const QRect seen = shown.pageInViewport(row).intersected(shown.view.viewport()->rect());
    return picture(shown).copy(aroundTheMiddle(seen)) ==
           sheetWithText(shown, seen.size(), text).copy(aroundTheMiddle(QRect({}, seen.size())));
}

QString failed()
{
    return QStringLiteral("无法显示此页面");
}

QString waiting(int number)
{
    return QStringLiteral("正在渲染第 %1 页…").arg(number);
}

/// Sets pages whose first one cannot be rendered, and waits until that is known.
void failFirstPage(ShownView &shown, const QList<QSizeF> &sizes)
{
    shown.probe.setFailing(0, true);
    QSignalSpy failures(&shown.manager, &PdfRenderManager::pageRenderFailed);
    shown.model.setPages(recordsOfSizes(sizes), false);
    QVERIFY(failures.wait());
}

/// Counts how often a widget is painted.
class PaintCounter final : public QObject
{
public:
    explicit PaintCounter(QWidget &widget) { widget.installEventFilter(this); }

    int count = 0;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        count += event->type() == QEvent::Paint ? 1 : 0;
        return QObject::eventFilter(watched, event);
    }
};

} // namespace

/// Pages in the document view that there are no images of.
class TestPdfDocumentViewFailures final : public QObject
{
    Q_OBJECT

private slots:
    void failedPageSaysSo();
    void failureIsPaintedAsSoonAsItIsKnown();
    void failedPageSaysSoWhileItIsTriedAgain();
    void pageThatCanBeRenderedAgainIsShown();
    void sentenceStandsInThePartThatIsSeen();
    void waitingTextStandsInThePartThatIsSeen();
    void textAtTheEdgeOfTheViewIsNotSqueezed_data();
    void textAtTheEdgeOfTheViewIsNotSqueezed();
    void otherDocumentIsNotTakenForFailed();
    void turnedPageIsNotTakenForFailed();
    void failureIsForgottenOutOfSight();
};

void TestPdfDocumentViewFailures::failedPageSaysSo()
{
    ShownView shown({});
    shown.view.setZoomFactor(1.0);
    failFirstPage(shown, {{300, 400}});
    QTRY_VERIFY(isShownInView(shown, 0, failed()));
}

void TestPdfDocumentViewFailures::failureIsPaintedAsSoonAsItIsKnown()
{
    ShownView shown({});
    shown.view.setZoomFactor(1.0);
    shown.probe.setFailing(0, true);
    shown.probe.hold();
    PaintCounter paints(*shown.view.viewport());
    shown.model.setPages(recordsOfSizes({{300, 400}}), false);
    QTRY_COMPARE(shown.probe.renderCount(0), 1);
    QTRY_VERIFY(paints.count > 0);
    QCoreApplication::processEvents();
    paints.count = 0;
    shown.probe.release();
    QTRY_VERIFY(paints.count > 0);
    QVERIFY(isShownInView(shown, 0, failed()));
}

void TestPdfDocumentViewFailures::failedPageSaysSoWhileItIsTriedAgain()
{
    ShownView shown({});
    shown.view.setZoomFactor(1.0);
    // No other page may take the place of this one while everything that is rendered is held.
    failFirstPage(shown, {{300, 2000}});
    QTRY_VERIFY(isShownInView(shown, 0, failed()));
    shown.probe.hold();
    const int tries = shown.probe.renderCount(0);
    shown.scrollToY(5);
    QTRY_COMPARE(shown.probe.renderCount(0), tries + 1);
    QVERIFY(isShownInView(shown, 0, failed()));
}

void TestPdfDocumentViewFailures::pageThatCanBeRenderedAgainIsShown()
{
    ShownView shown({});
    shown.view.setZoomFactor(1.0);
    failFirstPage(shown, {{300, 400}, {300, 400}, {300, 400}});
    QTRY_VERIFY(isShownInView(shown, 0, failed()));
    shown.probe.setFailing(0, false);
    shown.scrollToY(5);
    const QPoint middle = shown.pageInViewport(0).center();
    QTRY_COMPARE(picture(shown).pixelColor(middle), RenderProbe::colorOf(0));
}

void TestPdfDocumentViewFailures::sentenceStandsInThePartThatIsSeen()
{
    ShownView shown({});
    shown.view.setZoomFactor(5.0);
    failFirstPage(shown, {{300, 1400}});
    shown.scrollToY(shown.maximumScrollY() / 4);
    QTRY_VERIFY(isShownInView(shown, 0, failed()));
}

void TestPdfDocumentViewFailures::waitingTextStandsInThePartThatIsSeen()
{
    ShownView shown({});
    shown.view.setZoomFactor(5.0);
    shown.probe.hold();
    shown.model.setPages(recordsOfSizes({{300, 1400}}), false);
    shown.scrollToY(shown.maximumScrollY() / 4);
    QTRY_VERIFY(isShownInView(shown, 0, waiting(1)));
}

void TestPdfDocumentViewFailures::textAtTheEdgeOfTheViewIsNotSqueezed_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("scroll");
    // Two pages of 600 pixels; the first begins at 32, the second at 650.
    QTest::newRow("of the page that begins there") << 1 << 650 + 10 - 600;
    QTest::newRow("of the page that ends there") << 0 << 632 - 10;
}

void TestPdfDocumentViewFailures::textAtTheEdgeOfTheViewIsNotSqueezed()
{
    QFETCH(int, row);
    QFETCH(int, scroll);
    ShownView shown({}, {864, 600});
    shown.view.setZoomFactor(1.0);
    shown.probe.hold();
    shown.model.setPages(recordsOfSizes({{300, 600}, {300, 600}}), false);
    shown.scrollToY(scroll);

    const QRect page = shown.pageInViewport(row);
    const QRect seen = page.intersected(shown.view.viewport()->rect());
    QCOMPARE(seen.height(), 10);
    QImage expected(page.size(), QImage::Format_RGB32);
    expected.fill(Theme::white);
    QPainter painter(&expected);
    painter.setFont(shown.view.viewport()->font());
    painter.setPen(Theme::textMuted);
    QRect line =
        painter.boundingRect(expected.rect(), Qt::AlignTop | Qt::AlignHCenter, waiting(row + 1));
    if (row == 0) {
        line.moveBottom(page.height() - 1);
    }
    painter.drawText(line, Qt::AlignCenter, waiting(row + 1));
    painter.end();
    // Without the border.
    const QRect inner = seen.adjusted(1, row == 1 ? 1 : 0, -1, row == 0 ? -1 : 0);
    QCOMPARE(picture(shown).copy(inner), expected.copy(inner.translated(-page.topLeft())));
}

void TestPdfDocumentViewFailures::otherDocumentIsNotTakenForFailed()
{
    ShownView shown({});
    shown.view.setZoomFactor(1.0);
    failFirstPage(shown, {{300, 400}});
    QTRY_VERIFY(isShownInView(shown, 0, failed()));
    shown.probe.hold();
    shown.model.setPages(recordsOfSizes({{300, 400}}), false);
    QCoreApplication::processEvents();
    QVERIFY(isShownInView(shown, 0, waiting(1)));
}

void TestPdfDocumentViewFailures::turnedPageIsNotTakenForFailed()
{
    ShownView shown({});
    shown.view.setZoomFactor(1.0);
    failFirstPage(shown, {{300, 400}});
    QTRY_VERIFY(isShownInView(shown, 0, failed()));
    shown.probe.hold();
    shown.model.rotatePages({shown.model.pageAt(0)->id}, 90);
    QCoreApplication::processEvents();
    QVERIFY(isShownInView(shown, 0, waiting(1)));
}

void TestPdfDocumentViewFailures::failureIsForgottenOutOfSight()
{
    ShownView shown({});
    shown.view.setZoomFactor(1.0);
    failFirstPage(shown, QList<QSizeF>(30, QSizeF(300, 400)));
    QTRY_VERIFY(isShownInView(shown, 0, failed()));
    shown.scrollToY(shown.maximumScrollY());
    QCoreApplication::processEvents();
    shown.probe.hold();
    shown.scrollToY(0);
    QCoreApplication::processEvents();
    QVERIFY(isShownInView(shown, 0, waiting(1)));
}

QTEST_MAIN(TestPdfDocumentViewFailures)
#include "tst_pdf_document_view_failures.moc"
