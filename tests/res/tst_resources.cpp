// SPDX-License-Identifier: AGPL-3.0-or-later
#include "res/resources.h"
#include "widgets/theme.h"

#include <QImage>
#include <QTest>
#include <QTransform>

#include <cmath>
#include <functional>

namespace {

struct IconRow
{
    const char *path;
    int size; ///< side at 1x, in pixels
};

constexpr IconRow kIcons[] = {
    {":/res/checkbox/checkbox-checked.png", 20},
    {":/res/checkbox/checkbox-unchecked.png", 20},
    {":/res/icons/modern/add-file.png", 24},
    {":/res/icons/modern/addfile.png", 28},
    {":/res/icons/modern/chevron-down.png", 16},
    {":/res/icons/modern/close.png", 24},
    {":/res/icons/modern/close_20_hover.png", 14},
    {":/res/icons/modern/completed.png", 20},
    {":/res/icons/modern/compress-big.png", 32},
    {":/res/icons/modern/compress.png", 24},
    {":/res/icons/modern/convert-big.png", 32},
    {":/res/icons/modern/convert.png", 24},
    {":/res/icons/modern/decrypt-big.png", 32},
    {":/res/icons/modern/decrypt.png", 24},
    {":/res/icons/modern/documents-big.png", 32},
    {":/res/icons/modern/down.png", 24},
    {":/res/icons/modern/encrypt-big.png", 32},
    {":/res/icons/modern/encrypt.png", 24},
    {":/res/icons/modern/eye-off.png", 16},
    {":/res/icons/modern/eye.png", 16},
    {":/res/icons/modern/failed.png", 20},
    {":/res/icons/modern/file-pdf.png", 32},
    {":/res/icons/modern/folder.png", 32},
    {":/res/icons/modern/home.png", 24},
    {":/res/icons/modern/image-big.png", 32},
    {":/res/icons/modern/image.png", 24},
    {":/res/icons/modern/lock.png", 18},
    {":/res/icons/modern/logo.png", 64},
    {":/res/icons/modern/maximize.png", 14},
    {":/res/icons/modern/merge-big.png", 32},
    {":/res/icons/modern/merge.png", 24},
    {":/res/icons/modern/minimize.png", 14},
    {":/res/icons/modern/open-file.png", 24},
    {":/res/icons/modern/open-folder.png", 18},
    {":/res/icons/modern/pdf.png", 128},
    {":/res/icons/modern/print.png", 16},
    {":/res/icons/modern/restart.png", 16},
    {":/res/icons/modern/restore.png", 14},
    {":/res/icons/modern/save-as.png", 16},
    {":/res/icons/modern/save.png", 16},
    {":/res/icons/modern/search.png", 24},
    {":/res/icons/modern/trash.png", 24},
    {":/res/icons/pdfviewer/document-view.png", 27},
    {":/res/icons/pdfviewer/duplicate.png", 24},
    {":/res/icons/pdfviewer/expand.png", 24},
    {":/res/icons/pdfviewer/fit-height.png", 24},
    {":/res/icons/pdfviewer/fit-width.png", 24},
    {":/res/icons/pdfviewer/hand.png", 24},
    {":/res/icons/pdfviewer/more.png", 24},
    {":/res/icons/pdfviewer/next-disabled.png", 24},
    {":/res/icons/pdfviewer/next.png", 24},
    {":/res/icons/pdfviewer/page-grid.png", 27},
    {":/res/icons/pdfviewer/previous-disabled.png", 24},
    {":/res/icons/pdfviewer/previous.png", 24},
    {":/res/icons/pdfviewer/redo.png", 24},
    {":/res/icons/pdfviewer/rotate-left.png", 24},
    {":/res/icons/pdfviewer/rotate-right.png", 24},
    {":/res/icons/pdfviewer/thumbnail-panel.png", 27},
    {":/res/icons/pdfviewer/tools-grid.png", 27},
    {":/res/icons/pdfviewer/undo.png", 24},
    {":/res/icons/pdfviewer/zoom-in.png", 16},
    {":/res/icons/pdfviewer/zoom-out.png", 16},
};

QImage load(const QString &path)
{
    return QImage(path).convertToFormat(QImage::Format_ARGB32);
}

QString scaledPath(QString path, int scale)
{
    if (scale == 1) {
        return path;
    }
    return path.insert(path.size() - 4, QStringLiteral("@%1x").arg(scale));
}

void forEachPixel(const QImage &image, const std::function<void(int, int, const QColor &)> &visit)
{
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            visit(x, y, image.pixelColor(x, y));
        }
    }
}

/// Sum of alpha, 1 for each opaque pixel.
double inkAmount(const QImage &image)
{
    double sum = 0;
    forEachPixel(image, [&sum](int, int, const QColor &colour) { sum += double(colour.alphaF()); });
    return sum;
}

/// Mean x of the pixels that @p counts accepts, weighted by alpha, as a part of the width.
double centreX(const QImage &image, const std::function<bool(const QColor &)> &counts)
{
    double sum = 0;
    double weight = 0;
    forEachPixel(image, [&](int x, int, const QColor &colour) {
        if (!counts(colour)) {
            return;
        }
        sum += (x + 0.5) * double(colour.alphaF());
        weight += double(colour.alphaF());
    });
    return weight > 0 ? sum / weight / image.width() : -1;
}

/// Mean colour of what is drawn, whatever its alpha.
QColor drawnColour(const QImage &image)
{
    double red = 0, green = 0, blue = 0, weight = 0;
    forEachPixel(image, [&](int, int, const QColor &colour) {
        const double alpha = double(colour.alphaF());
        red += colour.red() * alpha;
        green += colour.green() * alpha;
        blue += colour.blue() * alpha;
        weight += alpha;
    });
    if (weight <= 0) {
        return {};
    }
    return QColor(qRound(red / weight), qRound(green / weight), qRound(blue / weight));
}

double luminance(const QColor &colour)
{
    const auto linear = [](int channel) {
        const double value = channel / 255.0;
        return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.red()) + 0.7152 * linear(colour.green()) +
           0.0722 * linear(colour.blue());
}

double contrast(const QColor &one, const QColor &other)
{
    const double a = luminance(one);
    const double b = luminance(other);
    return (qMax(a, b) + 0.05) / (qMin(a, b) + 0.05);
}

QString modern(const char *name)
{
    return QStringLiteral(":/res/icons/modern/%1.png").arg(QLatin1String(name));
}

QString viewer(const char *name)
{
    return QStringLiteral(":/res/icons/pdfviewer/%1.png").arg(QLatin1String(name));
}

} // namespace

class TestResources : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void everyIconComesInThreeSizes_data();
    void everyIconComesInThreeSizes();
    void largerSizesAreDrawnNotEnlarged_data();
    void largerSizesAreDrawnNotEnlarged();
    void noTwoIconsLookTheSame();
    void iconsStandOutOnTheirFill_data();
    void iconsStandOutOnTheirFill();
    void disabledArrowsAreFainter();
    void directionsAreNotSwapped();
    void mirroredPairsMatch_data();
    void mirroredPairsMatch();
    void openLockHasAGap();
    void stateIconsKeepTheirMarkInTheAlphaChannel();
    void checkBoxesUseTheThemeColours();
};

void TestResources::initTestCase()
{
    initResources();
    initResources();
}

void TestResources::everyIconComesInThreeSizes_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<int>("side");
    for (const IconRow &row : kIcons) {
        for (int scale = 1; scale <= 3; ++scale) {
            const QString path = scaledPath(QLatin1String(row.path), scale);
            QTest::newRow(qPrintable(path)) << path << row.size * scale;
        }
    }
}

void TestResources::everyIconComesInThreeSizes()
{
    QFETCH(QString, path);
    QFETCH(int, side);

    const QImage image(path);
    QVERIFY2(!image.isNull(), qPrintable(path));
    QCOMPARE(image.size(), QSize(side, side));
    QVERIFY(image.hasAlphaChannel());
    // The thinnest of them, the minimise line, covers more than two hundredths of its square.
    QVERIFY(inkAmount(load(path)) > 0.02 * side * side);
}

void TestResources::largerSizesAreDrawnNotEnlarged_data()
{
    QTest::addColumn<QString>("path");
    for (const IconRow &row : kIcons) {
        QTest::newRow(row.path) << QString(QLatin1String(row.path));
    }
}

void TestResources::largerSizesAreDrawnNotEnlarged()
{
    QFETCH(QString, path);

    const QImage small = load(path);
    for (int scale = 2; scale <= 3; ++scale) {
        QImage large = load(scaledPath(path, scale));
        large.setDevicePixelRatio(1);
        for (const auto mode : {Qt::FastTransformation, Qt::SmoothTransformation}) {
            QVERIFY(large != small.scaled(large.size(), Qt::IgnoreAspectRatio, mode));
        }
        // Both show the same drawing: the covered part of the square is the same.
        const double part = inkAmount(large) / (large.width() * large.height());
        QVERIFY(std::abs(part - inkAmount(small) / (small.width() * small.height())) < 0.02);
    }
}

void TestResources::noTwoIconsLookTheSame()
{
    QList<QImage> seen;
    for (const IconRow &row : kIcons) {
        const QImage image = load(QLatin1String(row.path));
        QVERIFY2(!seen.contains(image), row.path);
        seen.append(image);
    }
}

void TestResources::iconsStandOutOnTheirFill_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QColor>("fill");
    QTest::addColumn<double>("least");

    const QColor bar(0x18, 0x19, 0x1C);
    const QColor group(0x4A, 0x4C, 0x50);
    QTest::newRow("add on accent") << modern("addfile") << Theme::accent << 4.5;
    QTest::newRow("add on hovered accent") << modern("addfile") << Theme::accentHover << 4.0;
    QTest::newRow("previous") << viewer("previous") << group << 4.5;
    QTest::newRow("next") << viewer("next") << group << 4.5;
    QTest::newRow("fit width") << viewer("fit-width") << bar << 4.5;
    QTest::newRow("fit height") << viewer("fit-height") << bar << 4.5;
    QTest::newRow("zoom in") << viewer("zoom-in") << QColor(0x19, 0x19, 0x19) << 4.5;
    QTest::newRow("zoom out") << viewer("zoom-out") << QColor(0x19, 0x19, 0x19) << 4.5;
    QTest::newRow("close") << modern("close_20_hover") << Theme::windowBackground << 4.5;
    QTest::newRow("hovered close") << modern("close_20_hover") << Theme::dangerStrong << 3.0;
    QTest::newRow("minimise") << modern("minimize") << QColor(0xD8, 0xDB, 0xE0) << 4.5;
    QTest::newRow("maximise") << modern("maximize") << QColor(0xD8, 0xDB, 0xE0) << 4.5;
    QTest::newRow("restore") << modern("restore") << QColor(0xD8, 0xDB, 0xE0) << 4.5;
    QTest::newRow("close tab") << modern("close") << QColor(0xC8, 0xCC, 0xD2) << 4.5;
    QTest::newRow("trash") << modern("trash") << Theme::pressed << 4.5;
    QTest::newRow("hand") << viewer("hand") << Theme::pressed << 4.5;
    QTest::newRow("undo") << viewer("undo") << Theme::pressed << 4.5;
    QTest::newRow("search") << modern("search") << Theme::white << 3.0;
    QTest::newRow("lock") << modern("lock") << Theme::white << 3.0;
}

void TestResources::iconsStandOutOnTheirFill()
{
    QFETCH(QString, path);
    QFETCH(QColor, fill);
    QFETCH(double, least);

    const double reached = contrast(drawnColour(load(path)), fill);
    QVERIFY2(reached >= least, qPrintable(QString::number(reached)));
}

void TestResources::disabledArrowsAreFainter()
{
    for (const char *name : {"previous", "next"}) {
        const QImage enabled = load(viewer(name));
        const QImage disabled =
            load(QStringLiteral(":/res/icons/pdfviewer/%1-disabled.png").arg(QLatin1String(name)));
        QVERIFY(inkAmount(disabled) < 0.6 * inkAmount(enabled));
        QVERIFY(inkAmount(disabled) > 0.2 * inkAmount(enabled));
    }
}

void TestResources::directionsAreNotSwapped()
{
    const auto any = [](const QColor &) { return true; };
    // The tip of an arrow of two strokes lies off the middle, on the side that it points to; the
    // rows about the middle hold the tip alone.
    const auto tipX = [&any](const QString &path) {
        const QImage image = load(path);
        return centreX(image.copy(0, image.height() / 2 - 1, image.width(), 2), any);
    };
    QVERIFY(tipX(viewer("previous")) < 0.45);
    QVERIFY(tipX(viewer("next")) > 0.55);

    // The arrow heads of undo and redo are what reaches the top of the picture.
    const auto headX = [&any](const QString &path) {
        const QImage image = load(path);
        return centreX(image.copy(0, 0, image.width(), image.height() / 4), any);
    };
    QVERIFY(headX(viewer("undo")) < 0.45);
    QVERIFY(headX(viewer("redo")) > 0.55);

    // The turning arrow, in the accent, bends round the side to which the page turns.
    const auto accent = [](const QColor &colour) {
        return colour.alpha() > 128 && colour.blue() > 180 && colour.red() < 120;
    };
    QVERIFY(centreX(load(viewer("rotate-left")), accent) < 0.45);
    QVERIFY(centreX(load(viewer("rotate-right")), accent) > 0.55);

    // Two bars that limit the width stand at the sides, two that limit the height above and below.
    const QImage width = load(viewer("fit-width"));
    const QImage height = load(viewer("fit-height"));
    QVERIFY(inkAmount(width.copy(0, 0, 5, width.height())) > 20);
    QVERIFY(inkAmount(width.copy(0, 0, width.width(), 4)) < 1);
    QVERIFY(inkAmount(height.copy(0, 0, height.width(), 5)) > 20);
    QVERIFY(inkAmount(height.copy(0, 0, 4, height.height())) < 1);
}

void TestResources::mirroredPairsMatch_data()
{
    QTest::addColumn<QString>("left");
    QTest::addColumn<QString>("right");
    QTest::newRow("rotate") << viewer("rotate-left") << viewer("rotate-right");
    QTest::newRow("history") << viewer("undo") << viewer("redo");
    QTest::newRow("pages") << viewer("previous") << viewer("next");
}

void TestResources::mirroredPairsMatch()
{
    QFETCH(QString, left);
    QFETCH(QString, right);

    const QImage one = load(left).transformed(QTransform::fromScale(-1, 1));
    const QImage other = load(right);
    int different = 0;
    forEachPixel(one, [&](int x, int y, const QColor &colour) {
        different += std::abs(colour.alpha() - other.pixelColor(x, y).alpha()) > 8 ? 1 : 0;
    });
    QCOMPARE(different, 0);
}

void TestResources::openLockHasAGap()
{
    // Above the right end of the body the closed shackle comes down and the open one does not.
    const QRect leg(14, 7, 4, 3);
    QVERIFY(inkAmount(load(modern("encrypt")).copy(leg)) > 3);
    QVERIFY(inkAmount(load(modern("decrypt")).copy(leg)) < 0.5);
}

void TestResources::stateIconsKeepTheirMarkInTheAlphaChannel()
{
    for (const char *name : {"completed", "failed"}) {
        const QImage image = load(modern(name));
        int holes = 0;
        for (int y = 5; y < 15; ++y) {
            for (int x = 5; x < 15; ++x) {
                holes += qAlpha(image.pixel(x, y)) < 64 ? 1 : 0;
            }
        }
        QVERIFY2(holes >= 8, name);
        QCOMPARE(qAlpha(image.pixel(10, 3)), 255);
        QCOMPARE(qAlpha(image.pixel(0, 0)), 0);
    }
    QCOMPARE(drawnColour(load(modern("completed"))), Theme::success);
    QCOMPARE(drawnColour(load(modern("failed"))), Theme::danger);
}

void TestResources::checkBoxesUseTheThemeColours()
{
    const QImage checked = load(QStringLiteral(":/res/checkbox/checkbox-checked.png"));
    QCOMPARE(checked.pixelColor(3, 10), Theme::accent);
    const QImage plain = load(QStringLiteral(":/res/checkbox/checkbox-unchecked.png"));
    QCOMPARE(plain.pixelColor(10, 10), Theme::white);
    QCOMPARE(plain.pixelColor(1, 10), Theme::borderStrong);
}

QTEST_MAIN(TestResources)
#include "tst_resources.moc"
