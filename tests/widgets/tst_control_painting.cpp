// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/widgets/control_test.h"
#include "widgets/control_painting.h"
#include "widgets/widget_font.h"

#include <QPainter>

namespace {

constexpr QColor kFill{10, 20, 30};
constexpr QColor kLine{200, 100, 50};

QImage canvas(const QSize &size, double ratio)
{
    QImage image(size * ratio, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(ControlTest::kBackground);
    return image;
}

} // namespace

/// What the styled controls are painted with.
class TestControlPainting final : public QObject
{
    Q_OBJECT

private slots:
    void linesAreSharp_data();
    void linesAreSharp();
    void linesAreSharpBetweenPixels();
    void boxWithoutLineIsFilledToItsEdge();
    void cornersAreRound();
    void focusRingHasALightLineInside();
    void longTextIsElided();
    void textStaysAtItsSide();
    void pathsRunFromLeftToRight();
    void iconStandsBeforeTheText();
    void iconsAreSharpAtAnyScale_data();
    void iconsAreSharpAtAnyScale();
    void tintKeepsTheShape();
    void fontsFollowTheirCodes();
};

void TestControlPainting::linesAreSharp_data()
{
    QTest::addColumn<double>("ratio");
    QTest::addColumn<int>("inset");
    QTest::addColumn<int>("width");
    QTest::newRow("1") << 1.0 << 1 << 1;
    QTest::newRow("1.25") << 1.25 << 1 << 1;
    QTest::newRow("1.5") << 1.5 << 2 << 2;
    QTest::newRow("2") << 2.0 << 2 << 2;
}

void TestControlPainting::linesAreSharp()
{
    QFETCH(double, ratio);
    QFETCH(int, inset);
    QFETCH(int, width);
    QImage image = canvas({40, 40}, ratio);
    {
        QPainter painter(&image);
        ControlPainting::drawBox(
            painter, QRect(0, 0, 40, 40),
            {.fill = kFill, .border = kLine, .lineWidth = 1.0, .radius = 5.0, .inset = 1.0});
    }
    const int side = image.width();
    const int middle = side / 2;
    for (int pixel = 0; pixel < inset + width + 2; ++pixel) {
        QColor expected = kFill;
        if (pixel < inset) {
            expected = ControlTest::kBackground;
        } else if (pixel < inset + width) {
            expected = kLine;
        }
        QCOMPARE(image.pixelColor(pixel, middle), expected);
        QCOMPARE(image.pixelColor(middle, pixel), expected);
        QCOMPARE(image.pixelColor(side - 1 - pixel, middle), expected);
        QCOMPARE(image.pixelColor(middle, side - 1 - pixel), expected);
    }
}

void TestControlPainting::linesAreSharpBetweenPixels()
{
    // At a scale and a half, every other place in a window is between two pixels.
    QImage image = canvas({40, 40}, 1.5);
    {
        QPainter painter(&image);
        painter.translate(3, 3);
        ControlPainting::drawBox(painter, QRect(0, 0, 20, 20),
                                 {.border = kLine, .lineWidth = 1.0, .radius = 0.0});
    }
    QCOMPARE(image.pixelColor(4, 20), ControlTest::kBackground);
    QCOMPARE(image.pixelColor(5, 20), kLine);
    QCOMPARE(image.pixelColor(6, 20), kLine);
    QCOMPARE(image.pixelColor(7, 20), ControlTest::kBackground);
}

void TestControlPainting::boxWithoutLineIsFilledToItsEdge()
{
    QImage image = canvas({20, 20}, 1.0);
    {
        QPainter painter(&image);
        ControlPainting::drawBox(painter, QRect(0, 0, 20, 20), {.fill = kFill, .radius = 4.0});
    }
    QCOMPARE(image.pixelColor(0, 10), kFill);
    QCOMPARE(image.pixelColor(19, 10), kFill);
}

void TestControlPainting::cornersAreRound()
{
    QImage image = canvas({40, 40}, 1.0);
    {
        QPainter painter(&image);
        ControlPainting::drawBox(painter, QRect(0, 0, 40, 40),
                                 {.fill = kFill, .border = kLine, .radius = 10.0});
    }
    QCOMPARE(image.pixelColor(0, 0), ControlTest::kBackground);
    QCOMPARE(image.pixelColor(1, 1), ControlTest::kBackground);
    QCOMPARE(image.pixelColor(39, 39), ControlTest::kBackground);
    QCOMPARE(image.pixelColor(5, 5), kFill);
    QCOMPARE(image.pixelColor(11, 0), kLine);
}

void TestControlPainting::focusRingHasALightLineInside()
{
    QImage image = canvas({40, 40}, 1.0);
    {
        QPainter painter(&image);
        ControlPainting::drawFocusRing(painter, QRect(0, 0, 40, 40), 6.0);
    }
    QCOMPARE(image.pixelColor(0, 20), Theme::accent);
    QCOMPARE(image.pixelColor(1, 20), Theme::accent);
    QCOMPARE(image.pixelColor(2, 20), Theme::white);
    QCOMPARE(image.pixelColor(3, 20), ControlTest::kBackground);
}

void TestControlPainting::longTextIsElided()
{
    const QString text = QStringLiteral("HHHHHHHHHHHHHHHHHHHH");
    QImage image = canvas({100, 30}, 1.0);
    {
        QPainter painter(&image);
        painter.setFont(widgetFont(14));
        painter.setPen(kLine);
        ControlPainting::drawText(painter, {10, 0, 60, 30}, text, Qt::AlignLeft | Qt::AlignVCenter);
    }
    // Cut off, the last letter would fill the height of the line at the edge; points do not.
    QVERIFY(ControlTest::hasInk(image, {11, 0, 20, 14}, kLine));
    QVERIFY(ControlTest::isPlain(image, {60, 0, 40, 14}, ControlTest::kBackground));
    QVERIFY(ControlTest::isPlain(image, {70, 0, 30, 30}, ControlTest::kBackground));
}

void TestControlPainting::textStaysAtItsSide()
{
    // Hebrew and Latin text, each at the left and at the right.
    for (const QString &text : {QStringLiteral("\u05D0\u05D1"), QStringLiteral("HH")}) {
        for (const Qt::Alignment side : {Qt::AlignLeft, Qt::AlignRight}) {
            QImage image = canvas({200, 30}, 1.0);
            {
                QPainter painter(&image);
                painter.setLayoutDirection(Qt::RightToLeft);
                painter.setFont(widgetFont(14));
                painter.setPen(kLine);
                ControlPainting::drawText(painter, {0, 0, 200, 30}, text, side | Qt::AlignVCenter);
            }
            const QRect empty(side == Qt::AlignLeft ? 100 : 0, 0, 100, 30);
            QVERIFY(ControlTest::isPlain(image, empty, ControlTest::kBackground));
            QVERIFY(!ControlTest::isPlain(image, image.rect(), ControlTest::kBackground));
        }
    }
}

void TestControlPainting::pathsRunFromLeftToRight()
{
    const auto drawn = [](Qt::LayoutDirection direction) {
        QImage image = canvas({200, 30}, 1.0);
        QPainter painter(&image);
        painter.setLayoutDirection(direction);
        painter.setFont(widgetFont(14));
        ControlPainting::drawPath(painter, {0, 0, 200, 30}, QStringLiteral("/home/a/"),
                                  Qt::AlignLeft | Qt::AlignVCenter);
        return image;
    };
    QCOMPARE(drawn(Qt::RightToLeft), drawn(Qt::LeftToRight));
}

void TestControlPainting::iconStandsBeforeTheText()
{
    const QRect room(10, 0, 100, 40);
    ControlPainting::Face face = ControlPainting::centredFace(room, 16, 4, 20, Qt::LeftToRight);
    QCOMPARE(face.icon, QRect(40, 12, 16, 16));
    QCOMPARE(face.text, QRect(60, 0, 20, 40));
    face = ControlPainting::centredFace(room, 16, 4, 20, Qt::RightToLeft);
    QCOMPARE(face.icon, QRect(64, 12, 16, 16));
    QCOMPARE(face.text, QRect(40, 0, 20, 40));
    face = ControlPainting::centredFace(room, 16, 4, 500, Qt::LeftToRight);
    QCOMPARE(face.icon.left(), 10);
    QCOMPARE(face.text, QRect(30, 0, 80, 40));
    face = ControlPainting::centredFace(room, 0, 4, 20, Qt::LeftToRight);
    QCOMPARE(face.text, QRect(50, 0, 20, 40));
}

void TestControlPainting::iconsAreSharpAtAnyScale_data()
{
    QTest::addColumn<double>("ratio");
    QTest::newRow("1") << 1.0;
    QTest::newRow("1.5") << 1.5;
    QTest::newRow("2") << 2.0;
}

void TestControlPainting::iconsAreSharpAtAnyScale()
{
    QFETCH(double, ratio);
    // Half of the icon is of one colour, half of the other.
    const auto halves = [](int side) {
        QPixmap pixmap(side, side);
        pixmap.fill(kFill);
        QPainter(&pixmap).fillRect(side / 2, 0, side / 2, side, kLine);
        return pixmap;
    };
    QIcon icon;
    icon.addPixmap(halves(16));
    QPixmap twice = halves(32);
    twice.setDevicePixelRatio(2.0);
    icon.addPixmap(twice);
    QImage image = canvas({16, 16}, ratio);
    {
        QPainter painter(&image);
        ControlPainting::drawIcon(painter, {0, 0, 16, 16}, icon);
    }
    const int side = image.width();
    QCOMPARE(ControlPainting::pixmapOf(icon, {16, 16}, ratio).size(), image.size());
    for (const int x : {0, side / 2 - 1}) {
        QCOMPARE(image.pixelColor(x, side / 2), kFill);
    }
    for (const int x : {side / 2, side - 1}) {
        QCOMPARE(image.pixelColor(x, side / 2), kLine);
    }
}

void TestControlPainting::tintKeepsTheShape()
{
    QPixmap half(16, 16);
    half.fill(Qt::transparent);
    QPainter(&half).fillRect(0, 0, 8, 16, kFill);
    QImage image = canvas({16, 16}, 1.0);
    {
        QPainter painter(&image);
        ControlPainting::drawTinted(painter, {0, 0, 16, 16}, QIcon(half), kLine);
    }
    QCOMPARE(image.pixelColor(4, 8), kLine);
    QCOMPARE(image.pixelColor(12, 8), ControlTest::kBackground);
}

void TestControlPainting::fontsFollowTheirCodes()
{
    QCOMPARE(widgetFont(14).pixelSize(), 14);
    QCOMPARE(widgetFont(14).weight(), QFont::Normal);
    QCOMPARE(widgetFont(14).families(), QStringList{QStringLiteral("Arial")});
    QCOMPARE(widgetFont(18 | kBoldFont).pixelSize(), 18);
    QCOMPARE(widgetFont(18 | kBoldFont).weight(), QFont::Bold);
    QVERIFY(!widgetFont(0x1000 | 14).families().contains(QStringLiteral("Arial")));
    QVERIFY(!widgetFont(0x8000 | 14).families().contains(QStringLiteral("Arial")));
}

QTEST_MAIN(TestControlPainting)
#include "tst_control_painting.moc"
