// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/thumbnails/pdf_insert_drop_zone.h"

#include "res/resources.h"

#include <QDragEnterEvent>
#include <QMimeData>
#include <QSignalSpy>
#include <QTest>
#include <QUrl>
#include <QWindow>

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace {

/// Lets a drag of `data` enter the zone; true if it was taken.
bool dragEnter(PdfInsertDropZone &zone, const QMimeData &data)
{
    QDragEnterEvent event({20, 20}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    event.ignore();
    QCoreApplication::sendEvent(&zone, &event);
    return event.isAccepted();
}

/// Drops `data` onto the zone; true if it was taken.
bool drop(PdfInsertDropZone &zone, const QMimeData &data)
{
    QDropEvent event({20, 20}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    event.ignore();
    QCoreApplication::sendEvent(&zone, &event);
    return event.isAccepted();
}

void dragLeave(PdfInsertDropZone &zone)
{
    QDragLeaveEvent event;
    QCoreApplication::sendEvent(&zone, &event);
}

bool isDragActive(const PdfInsertDropZone &zone)
{
    return zone.property("dragActive").toBool();
}

QList<QUrl> urlsOf(const QStringList &texts)
{
    QList<QUrl> urls;
    for (const QString &text : texts) {
        urls.append(text.contains(QStringLiteral("://")) ? QUrl(text) : QUrl::fromLocalFile(text));
    }
    return urls;
}

} // namespace

/// The button that takes dropped PDF files.
class TestPdfInsertDropZone final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { initResources(); }
    void hasItsShape();
    void takesOnlyLocalPdfFiles_data();
    void takesOnlyLocalPdfFiles();
    void otherDataIsRefused();
    void filesAreCopiedWhateverIsProposed_data();
    void filesAreCopiedWhateverIsProposed();
    void dropReportsTheFilesInTheirOrder();
    void highlightGoesWhenTheDragLeaves();
    void highlightChangesTheLook();
    void hoverChangesTheLook();
    void longTextIsBrokenIntoLines();
    void iconStandsAboveTheText();
    void disabledZoneIsPaler();
};

void TestPdfInsertDropZone::hasItsShape()
{
    const PdfInsertDropZone zone;
    QCOMPARE(zone.objectName(), QStringLiteral("pdfInsertDropZone"));
    QCOMPARE(zone.text(), QStringLiteral("插入 PDF\n或将多个 PDF 拖放至此处"));
    QCOMPARE(zone.iconSize(), QSize(28, 28));
    const auto pictureOf = [](const QIcon &icon) {
        return icon.pixmap(QSize(28, 28), 1.0).toImage();
    };
    QVERIFY(!pictureOf(zone.icon()).isNull());
    QCOMPARE(pictureOf(zone.icon()),
             pictureOf(QIcon(QStringLiteral(":/res/icons/modern/add-file.png"))));
    QCOMPARE(zone.minimumHeight(), 152);
    QCOMPARE(zone.sizePolicy().horizontalPolicy(), QSizePolicy::Expanding);
    QCOMPARE(zone.sizePolicy().verticalPolicy(), QSizePolicy::Fixed);
    QCOMPARE(zone.cursor().shape(), Qt::PointingHandCursor);
    QCOMPARE(zone.focusPolicy(), Qt::NoFocus);
    QVERIFY(zone.acceptDrops());
    QCOMPARE(zone.property("dragActive"), QVariant(false));
}

void TestPdfInsertDropZone::takesOnlyLocalPdfFiles_data()
{
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<bool>("taken");
    const QString pdf = QStringLiteral("/files/report.pdf");
    QTest::newRow("one PDF") << QStringList{pdf} << true;
    QTest::newRow("REPORT.PDF") << QStringList{QStringLiteral("/files/REPORT.PDF")} << true;
    QTest::newRow("mixed case") << QStringList{QStringLiteral("/files/a.Pdf")} << true;
    QTest::newRow("Chinese name") << QStringList{QStringLiteral("/文件/报告.pdf")} << true;
    QTest::newRow("two PDFs") << QStringList{pdf, QStringLiteral("/files/b.pdf")} << true;
    QTest::newRow("one PDF and one image")
        << QStringList{pdf, QStringLiteral("/files/photo.png")} << false;
    QTest::newRow("image") << QStringList{QStringLiteral("/files/photo.png")} << false;
    QTest::newRow("suffix before the last") << QStringList{QStringLiteral("/a.pdf.zip")} << false;
    QTest::newRow("no suffix") << QStringList{QStringLiteral("/files/pdf")} << false;
    QTest::newRow("remote") << QStringList{QStringLiteral("https://host/a.pdf")} << false;
    QTest::newRow("local and remote")
        << QStringList{pdf, QStringLiteral("https://host/a.pdf")} << false;
    QTest::newRow("nothing") << QStringList{} << false;
}

void TestPdfInsertDropZone::takesOnlyLocalPdfFiles()
{
    QFETCH(QStringList, files);
    QFETCH(bool, taken);
    PdfInsertDropZone zone;
    QSignalSpy dropped(&zone, &PdfInsertDropZone::filesDropped);
    QMimeData data;
    data.setUrls(urlsOf(files));
    QCOMPARE(dragEnter(zone, data), taken);
    QCOMPARE(isDragActive(zone), taken);
    QCOMPARE(drop(zone, data), taken);
    QCOMPARE(dropped.size(), taken ? 1 : 0);
}

void TestPdfInsertDropZone::otherDataIsRefused()
{
    PdfInsertDropZone zone;
    QMimeData data;
    data.setText(QStringLiteral("/files/report.pdf"));
    QVERIFY(!dragEnter(zone, data));
    QVERIFY(!isDragActive(zone));
}

void TestPdfInsertDropZone::filesAreCopiedWhateverIsProposed_data()
{
    QTest::addColumn<Qt::DropActions>("possible");
    QTest::addColumn<Qt::KeyboardModifiers>("keys");
    QTest::addColumn<bool>("taken");
    const Qt::DropActions all = Qt::CopyAction | Qt::MoveAction | Qt::LinkAction;
    const Qt::KeyboardModifiers none = Qt::NoModifier;
    const Qt::KeyboardModifiers shift = Qt::ShiftModifier;
    QTest::newRow("copy") << Qt::DropActions(Qt::CopyAction) << none << true;
    QTest::newRow("any") << all << none << true;
    QTest::newRow("any, with Shift for a move") << all << shift << true;
    QTest::newRow("move only") << Qt::DropActions(Qt::MoveAction) << shift << false;
    QTest::newRow("link only") << Qt::DropActions(Qt::LinkAction) << none << false;
}

void TestPdfInsertDropZone::filesAreCopiedWhateverIsProposed()
{
    QFETCH(const Qt::DropActions, possible);
    QFETCH(const Qt::KeyboardModifiers, keys);
    QFETCH(const bool, taken);
    PdfInsertDropZone zone;
    QSignalSpy dropped(&zone, &PdfInsertDropZone::filesDropped);
    QMimeData data;
    data.setUrls(urlsOf({QStringLiteral("/files/report.pdf")}));
    QDragEnterEvent enter({20, 20}, possible, &data, Qt::LeftButton, keys);
    QDragMoveEvent move({25, 20}, possible, &data, Qt::LeftButton, keys);
    QDropEvent drop({25, 20}, possible, &data, Qt::LeftButton, keys);
    for (QDropEvent *event :
         {static_cast<QDropEvent *>(&enter), static_cast<QDropEvent *>(&move), &drop}) {
        // As a file manager proposes it when Shift is held.
        event->setDropAction(keys == Qt::ShiftModifier ? Qt::MoveAction : Qt::CopyAction);
        QCoreApplication::sendEvent(&zone, event);
        QCOMPARE(event->isAccepted(), taken);
        QVERIFY(!taken || event->dropAction() == Qt::CopyAction);
    }
    QCOMPARE(dropped.size(), taken ? 1 : 0);
}

void TestPdfInsertDropZone::dropReportsTheFilesInTheirOrder()
{
    PdfInsertDropZone zone;
    QSignalSpy dropped(&zone, &PdfInsertDropZone::filesDropped);
    const QStringList files{QStringLiteral("/z/第二.pdf"), QStringLiteral("/a/first.pdf"),
                            QStringLiteral("/z/第二.pdf")};
    QMimeData data;
    data.setUrls(urlsOf(files));
    QVERIFY(dragEnter(zone, data));
    QVERIFY(drop(zone, data));
    QCOMPARE(dropped.size(), 1);
    QCOMPARE(dropped.at(0).at(0).toStringList(), files);
    QVERIFY(!isDragActive(zone));
}

void TestPdfInsertDropZone::highlightGoesWhenTheDragLeaves()
{
    PdfInsertDropZone zone;
    QMimeData data;
    data.setUrls(urlsOf({QStringLiteral("/a.pdf")}));
    QVERIFY(dragEnter(zone, data));
    QVERIFY(isDragActive(zone));
    dragLeave(zone);
    QVERIFY(!isDragActive(zone));
}

void TestPdfInsertDropZone::highlightChangesTheLook()
{
    PdfInsertDropZone zone;
    zone.resize(194, 152);
    const QPoint inside(20, 20);
    QCOMPARE(zone.grab().toImage().pixelColor(inside), QColor(0xEE, 0xF2, 0xFF));
    QMimeData data;
    data.setUrls(urlsOf({QStringLiteral("/a.pdf")}));
    QVERIFY(dragEnter(zone, data));
    QCOMPARE(zone.grab().toImage().pixelColor(inside), QColor(0xE2, 0xE9, 0xFF));
    dragLeave(zone);
    QCOMPARE(zone.grab().toImage().pixelColor(inside), QColor(0xEE, 0xF2, 0xFF));
}

void TestPdfInsertDropZone::hoverChangesTheLook()
{
    PdfInsertDropZone zone;
    zone.resize(194, 152);
    zone.show();
    QTest::mouseMove(zone.windowHandle(), {40, 40});
    QTRY_VERIFY(zone.underMouse());
    QCOMPARE(zone.grab().toImage().pixelColor(20, 20), QColor(0xE2, 0xE9, 0xFF));
}

void TestPdfInsertDropZone::longTextIsBrokenIntoLines()
{
    PdfInsertDropZone zone;
    zone.resize(160, 152);
    zone.setText(QStringLiteral("Insert\nor drop several documents of yours right here"));
    const QImage image = zone.grab().toImage();
    // Nothing is painted over the side padding.
    for (int y = 10; y < 142; ++y) {
        QCOMPARE(image.pixelColor(4, y), QColor(0xEE, 0xF2, 0xFF));
        QCOMPARE(image.pixelColor(155, y), QColor(0xEE, 0xF2, 0xFF));
    }
}

void TestPdfInsertDropZone::iconStandsAboveTheText()
{
    PdfInsertDropZone zone;
    zone.resize(200, 152);
    const QImage with = zone.grab().toImage();
    zone.setIcon(QIcon());
    const QImage without = zone.grab().toImage();
    QRect icon;
    for (int y = 0; y < with.height(); ++y) {
        for (int x = 0; x < with.width(); ++x) {
            if (with.pixel(x, y) != without.pixel(x, y)) {
                icon |= QRect(x, y, 1, 1);
            }
        }
    }
    QVERIFY(!icon.isEmpty());
    QVERIFY(icon.width() <= 28 && icon.height() <= 28);
    QVERIFY(std::abs(icon.center().x() - zone.rect().center().x()) <= 3);
    QVERIFY(icon.bottom() < zone.rect().center().y());
}

void TestPdfInsertDropZone::disabledZoneIsPaler()
{
    PdfInsertDropZone zone;
    zone.resize(200, 152);
    const auto darkest = [&zone](const QRect &rect) {
        const QImage image = zone.grab(rect).toImage();
        int lightness = 255;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                lightness = std::min(lightness, image.pixelColor(x, y).lightness());
            }
        }
        return lightness;
    };
    const QRect icon(80, 30, 40, 40);
    const QRect text(20, 85, 160, 50);
    const std::pair enabled(darkest(icon), darkest(text));
    zone.setEnabled(false);
    QVERIFY(darkest(icon) > enabled.first + 15);
    QVERIFY(darkest(text) > enabled.second + 15);
}

QTEST_MAIN(TestPdfInsertDropZone)
#include "tst_pdf_insert_drop_zone.moc"
