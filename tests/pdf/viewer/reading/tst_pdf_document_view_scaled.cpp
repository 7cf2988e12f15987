// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/core/pdf_document_model.h"
#include "pdf/core/pdf_render_manager.h"
#include "pdf/viewer/reading/pdf_document_view.h"
#include "tests/pdf/viewer/checkerboards.h"
#include "tests/pdf/viewer/shown_view.h"
#include "widgets/theme.h"

#include <QApplication>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>

namespace {

constexpr double kScale = 1.75;

} // namespace

/// The document view on a screen whose scale is no whole number.
class TestPdfDocumentViewScaled final : public QObject
{
    Q_OBJECT

private slots:
    void imagesHaveTheResolutionOfTheScreen();
    void imagesAreDrawnPixelByPixel_data();
    void imagesAreDrawnPixelByPixel();
    void waitingPageHasItsBorderInside();
};

void TestPdfDocumentViewScaled::imagesHaveTheResolutionOfTheScreen()
{
    ShownView shown({{301, 203}});
    QCOMPARE(shown.view.devicePixelRatioF(), kScale);
    shown.view.setZoomFactor(1.0);
    QTRY_VERIFY(shown.probe.hasRendered(0, QSize(527, 356)));
}

void TestPdfDocumentViewScaled::imagesAreDrawnPixelByPixel_data()
{
    QTest::addColumn<QPoint>("scroll");
    QTest::newRow("at the start") << QPoint(0, 0);
    QTest::newRow("scrolled") << QPoint(11, 7);
    QTest::newRow("scrolled on") << QPoint(33, 101);
}

void TestPdfDocumentViewScaled::imagesAreDrawnPixelByPixel()
{
    QFETCH(QPoint, scroll);
    PdfDocumentModel model;
    model.setPages(recordsOfSizes({{501, 403}}), false);
    PdfRenderManager manager(nullptr, Checkerboards::render);
    PdfDocumentView view;
    view.setModel(&model);
    view.setRenderManager(&manager);
    view.resize(402, 299);
    view.setZoomFactor(1.0);
    const QSignalSpy painted(&view, &PdfDocumentView::firstPagePainted);
    view.show();
    QTRY_COMPARE(painted.size(), 1);
    view.horizontalScrollBar()->setValue(scroll.x());
    view.verticalScrollBar()->setValue(scroll.y());
    QCOMPARE(QPoint(view.horizontalScrollBar()->value(), view.verticalScrollBar()->value()),
             scroll);

    const QImage image = view.viewport()->grab().toImage();
    QCOMPARE(image.devicePixelRatio(), kScale);
    // The page begins at (32, 32) of the content; its first pixel is white.
    const QPoint corner = (QPointF(QPoint(32, 32) - scroll) * kScale).toPoint();
    const QRect inside = QRect(corner, QSize(877, 706)).intersected(image.rect());
    QVERIFY(inside.width() > 500 && inside.height() > 400);
    QCOMPARE(Checkerboards::wrongPixels(image, inside, corner), 0);
}

void TestPdfDocumentViewScaled::waitingPageHasItsBorderInside()
{
    PdfDocumentModel model;
    model.setPages(recordsOfSizes({{300, 200}}), false);
    PdfDocumentView view;
    view.setModel(&model);
    view.resize(400, 300);
    view.show();
    view.setZoomFactor(1.0);
    const QImage image = view.viewport()->grab().toImage();
    // The page is at (50, 32): from 87.5 and 56 in device pixels.
    QCOMPARE(image.pixelColor(300, 55), Theme::canvas);
    QCOMPARE(image.pixelColor(300, 56), Theme::border);
    QCOMPARE(image.pixelColor(300, 58), Theme::white);
}

int main(int argc, char **argv)
{
    qputenv("QT_SCALE_FACTOR", QByteArray::number(kScale));
    const QApplication application(argc, argv);
    TestPdfDocumentViewScaled test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_pdf_document_view_scaled.moc"
