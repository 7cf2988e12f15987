#include "pdf/core/pdf_document_model.h"
#include "pdf/core/pdf_render_manager.h"
#include "pdf/viewer/pdf_document_view.h"
#include "tests/pdf/viewer/shown_view.h"

#include <QApplication>
#include <QSignalSpy>
#include <QTest>

namespace {

constexpr double kScale = 1.75;

/// Stands in for the engine: single pixels of black and white in turn.
QList<QImage> renderCheckerboards(const QList<PdfSourcePage> & /*pages*/, const QList<QSize> &sizes,
                                  QStringList * /*errors*/)
{
    QList<QImage> images;
    for (const QSize &size : sizes) {
        QImage image(size, QImage::Format_RGB32);
        for (int y = 0; y < size.height(); ++y) {
            for (int x = 0; x < size.width(); ++x) {
                image.setPixel(x, y, (x + y) % 2 == 0 ? qRgb(255, 255, 255) : qRgb(0, 0, 0));
            }
        }
        images.append(image);
    }
    return images;
}

} // namespace

/// The document view on a screen whose scale is no whole number.
class TestPdfDocumentViewScaled final : public QObject
{
    Q_OBJECT

private slots:
    void imagesHaveTheResolutionOfTheScreen();
    void imagesAreDrawnPixelByPixel();
};

void TestPdfDocumentViewScaled::imagesHaveTheResolutionOfTheScreen()
{
    ShownView shown({{301, 203}});
    QCOMPARE(shown.view.devicePixelRatioF(), kScale);
    shown.view.setZoomFactor(1.0);
    QTRY_VERIFY(shown.probe.hasRendered(0, QSize(527, 356)));
}

void TestPdfDocumentViewScaled::imagesAreDrawnPixelByPixel()
{
    PdfDocumentModel model;
    model.setPages(recordsOfSizes({{301, 203}}), false);
    PdfRenderManager manager(nullptr, renderCheckerboards);
    PdfDocumentView view;
    view.setModel(&model);
    view.setRenderManager(&manager);
    view.resize(402, 299);
    view.setZoomFactor(1.0);
    const QSignalSpy painted(&view, &PdfDocumentView::firstPagePainted);
    view.show();
    QTRY_COMPARE(painted.size(), 1);

    const QImage image = view.viewport()->grab().toImage();
    QCOMPARE(image.devicePixelRatio(), kScale);
    // The page is at (50, 32) and 301 × 203 large, in logical pixels.
    const QRect inside(100, 70, 400, 300);
    const QRgb first = image.pixel(inside.topLeft());
    QVERIFY(first == qRgb(255, 255, 255) || first == qRgb(0, 0, 0));
    const QRgb second = first == qRgb(0, 0, 0) ? qRgb(255, 255, 255) : qRgb(0, 0, 0);
    int wrong = 0;
    for (int y = 0; y < inside.height(); ++y) {
        for (int x = 0; x < inside.width(); ++x) {
            const QRgb expected = (x + y) % 2 == 0 ? first : second;
            wrong += image.pixel(inside.left() + x, inside.top() + y) == expected ? 0 : 1;
        }
    }
    QCOMPARE(wrong, 0);
}

int main(int argc, char **argv)
{
    qputenv("QT_SCALE_FACTOR", QByteArray::number(kScale));
    const QApplication application(argc, argv);
    TestPdfDocumentViewScaled test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_pdf_document_view_scaled.moc"
