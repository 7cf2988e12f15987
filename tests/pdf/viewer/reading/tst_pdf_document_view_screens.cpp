// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/reading/pdf_document_view.h"
#include "pdf/viewer/thumbnails/pdf_thumbnail_panel.h"
#include "tests/pdf/viewer/shown_view.h"

#include <QApplication>
#include <QFile>
#include <QGuiApplication>
#include <QScreen>
#include <QTemporaryDir>
#include <QTest>
#include <QWindow>

namespace {

/// Screens beside each other, of which the second one has finer pixels.
constexpr char kScreens[] = R"({ "screens": [
    { "name": "coarse", "x": 0, "y": 0, "width": 1600, "height": 1200, "dpr": 2 },
    { "name": "fine", "x": 1600, "y": 0, "width": 1600, "height": 1200, "dpr": 3 }
] })";

constexpr QSizeF kPage{300, 200};

} // namespace

/// Views of pages in a window that is taken from one screen to another.
class TestPdfDocumentViewScreens final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void otherScreenGetsImagesOfItsOwnResolution();
    void otherScreenGetsThumbnailsOfItsOwnResolution();
};

void TestPdfDocumentViewScreens::initTestCase()
{
    if (QGuiApplication::screens().size() != 2 ||
        QGuiApplication::screens().constLast()->devicePixelRatio() != 3.0) {
        QSKIP("The screens cannot be chosen here.");
    }
}

void TestPdfDocumentViewScreens::otherScreenGetsImagesOfItsOwnResolution()
{
    ShownView shown({kPage, kPage});
    if (shown.view.devicePixelRatioF() != 2.0) {
        QSKIP("The window is not on the first screen.");
    }
    shown.view.setZoomFactor(1.0);
    QTRY_VERIFY(shown.probe.hasRendered(0, QSize(600, 400)));
    QTest::qWait(50);
    shown.probe.forgetRenders();
    for (const auto &[number, size] :
         {std::pair{1, QSize(900, 600)}, std::pair{0, QSize(600, 400)}}) {
        shown.manager.clearCache();
        shown.view.windowHandle()->setScreen(QGuiApplication::screens().at(number));
        QTRY_VERIFY(shown.probe.hasRendered(0, size));
        QTRY_VERIFY(shown.probe.hasRendered(1, size));
        const QPoint centre = shown.pageInViewport(0).center();
        QTRY_COMPARE(shown.view.viewport()->grab().toImage().pixelColor(
                         centre * shown.view.devicePixelRatioF()),
                     RenderProbe::colorOf(0));
        shown.probe.forgetRenders();
    }
}

void TestPdfDocumentViewScreens::otherScreenGetsThumbnailsOfItsOwnResolution()
{
    RenderProbe probe;
    PdfDocumentModel model;
    model.setPages(recordsOfSizes({kPage}), false);
    PdfRenderManager manager(nullptr, probe.function());
    PdfThumbnailPanel panel;
    panel.setModel(&model);
    panel.setRenderManager(&manager);
    panel.resize(210, 760);
    panel.show();
    if (panel.devicePixelRatioF() != 2.0) {
        QSKIP("The window is not on the first screen.");
    }
    const auto width = [&] {
        const QImage *image = panel.thumbnails().image(*model.pageAt(0));
        return image != nullptr ? image->width() : 0;
    };
    QTRY_VERIFY(width() > 0);
    QTest::qWait(50);
    const int coarse = width();
    panel.windowHandle()->setScreen(QGuiApplication::screens().at(1));
    QTRY_COMPARE(width(), coarse * 3 / 2);
    panel.windowHandle()->setScreen(QGuiApplication::screens().at(0));
    QTRY_COMPARE(width(), coarse);
}

int main(int argc, char **argv)
{
    const QTemporaryDir folder;
    QFile screens(folder.filePath(QStringLiteral("screens.json")));
    if (!screens.open(QIODevice::WriteOnly) || screens.write(kScreens) < 0) {
        return 1;
    }
    screens.close();
    const QByteArray platform = "offscreen:configfile=" + screens.fileName().toLocal8Bit();
    qputenv("QT_QPA_PLATFORM", platform);
    const QApplication application(argc, argv);
    TestPdfDocumentViewScreens test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_pdf_document_view_screens.moc"
