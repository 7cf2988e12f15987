// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/core/pdf_document_model.h"
#include "pdf/core/pdf_render_manager.h"
#include "pdf/viewer/cards/page_card_geometry.h"
#include "pdf/viewer/grid/page_manager_list_view.h"
#include "pdf/viewer/grid/pdf_page_manager_view.h"
#include "pdf/viewer/thumbnails/pdf_thumbnail_panel.h"
#include "res/resources.h"
#include "tests/pdf/viewer/checkerboards.h"
#include "tests/pdf/viewer/shown_view.h"

#include <QApplication>
#include <QTest>

namespace {

constexpr double kScale = 1.5;

/// The number of pixels in the middle of `box` (logical) that differ from a checkerboard.
int blurredPixels(const QImage &image, const QRect &box)
{
    constexpr int kReach = 60;
    const QPoint centre = (QPointF(box.center()) * kScale).toPoint();
    const QPoint reach(kReach, kReach);
    const bool isCentreWhite = image.pixelColor(centre).lightness() > 127;
    return Checkerboards::wrongPixels(image, QRect(centre - reach, centre + reach),
                                      isCentreWhite ? centre : centre + QPoint(1, 0));
}

} // namespace

/// The page lists on a screen whose scale is no whole number.
class TestPageViewsScaled final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { initResources(); }
    void panelThumbnailsAreSharp();
    void gridThumbnailsAreSharp();
};

void TestPageViewsScaled::panelThumbnailsAreSharp()
{
    PdfDocumentModel model;
    model.setPages(recordsOfSizes({{595, 842}, {842, 595}}), false);
    PdfRenderManager manager(nullptr, Checkerboards::render);
    PdfThumbnailPanel panel;
    panel.setModel(&model);
    panel.setRenderManager(&manager);
    panel.resize(210, 760);
    panel.show();
    QTRY_COMPARE(panel.thumbnails().heldCount(), 2);
    QCOMPARE(panel.thumbnails().image(*model.pageAt(0))->size(), QSize(176, 249));
    QCOMPARE(panel.thumbnails().image(*model.pageAt(1))->size(), QSize(204, 144));
    const auto *list = panel.findChild<PageListView *>();
    const QImage image = list->viewport()->grab().toImage();
    QCOMPARE(image.devicePixelRatio(), kScale);
    for (int row = 0; row < 2; ++row) {
        const QRect item = list->visualRect(model.index(row));
        QCOMPARE(blurredPixels(image, thumbnailRowGeometry(item).imageArea), 0);
    }
}

void TestPageViewsScaled::gridThumbnailsAreSharp()
{
    PdfDocumentModel model;
    model.setPages(recordsOfSizes({{595, 842}, {842, 595}, {301, 203}}), false);
    PdfRenderManager manager(nullptr, Checkerboards::render);
    PdfPageManagerView view;
    view.setModel(&model);
    view.setRenderManager(&manager);
    view.resize(900, 600);
    view.show();
    QTRY_COMPARE(view.thumbnails().heldCount(), 3);
    QCOMPARE(view.thumbnails().image(*model.pageAt(0))->size(), QSize(246, 348));
    const auto *list = view.findChild<PageManagerListView *>();
    const QImage image = list->viewport()->grab().toImage();
    for (int row = 0; row < 3; ++row) {
        const QRect cell = list->visualRect(model.index(row));
        const PageCellGeometry geometry = pageCellGeometry(cell, list->metrics().thumbnail);
        QCOMPARE(blurredPixels(image, geometry.thumbnail), 0);
    }
}

int main(int argc, char **argv)
{
    qputenv("QT_SCALE_FACTOR", QByteArray::number(kScale));
    const QApplication application(argc, argv);
    TestPageViewsScaled test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_page_views_scaled.moc"
