// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/cards/page_card_geometry.h"
#include "pdf/viewer/cards/page_card_painter.h"
#include "widgets/theme.h"

#include <QPainter>
#include <QTest>

#include <algorithm>
#include <cstdlib>
#include <functional>

using namespace PageCardPainter;

Q_DECLARE_METATYPE(PageCardPainter::CardState)
Q_DECLARE_METATYPE(PageCardPainter::PartState)

namespace {

constexpr QSize kCanvas{240, 200};
constexpr QRect kCard{20, 20, 160, 120};
constexpr QRect kZone{100, 60, 28, 28};
/// As high as a card; of an odd width, so that its middle is one of a pixel.
constexpr QRect kGap{100, 10, 27, 160};
constexpr QRect kBar{20, 50, 160, 34};
const QString kText = QStringLiteral("888");

/// What is drawn on a ground of one colour.
QImage drawn(const std::function<void(QPainter &)> &draw, const QColor &ground = Qt::white)
{
    QImage image(kCanvas, QImage::Format_RGB32);
    image.fill(ground);
    QPainter painter(&image);
    draw(painter);
    return image;
}

bool isLike(const QColor &color, const QColor &expected)
{
    constexpr int kRounding = 8;
    return std::abs(color.red() - expected.red()) <= kRounding &&
           std::abs(color.green() - expected.green()) <= kRounding &&
           std::abs(color.blue() - expected.blue()) <= kRounding;
}

/// How many pixels of about the colour there are in the rectangle.
int pixelsLike(const QImage &image, const QRect &rect, const QColor &color)
{
    int count = 0;
    for (int y = rect.top(); y <= rect.bottom(); ++y) {
        for (int x = rect.left(); x <= rect.right(); ++x) {
            count += isLike(image.pixelColor(x, y), color) ? 1 : 0;
        }
    }
    return count;
}

/// The lightness of the darkest pixel in the rectangle.
int darkestIn(const QImage &image, const QRect &rect)
{
    int darkest = 255;
    for (int y = rect.top(); y <= rect.bottom(); ++y) {
        for (int x = rect.left(); x <= rect.right(); ++x) {
            darkest = std::min(darkest, image.pixelColor(x, y).lightness());
        }
    }
    return darkest;
}

/// `color` at the opacity over black.
QColor dimmed(const QColor &color, double opacity)
{
    return QColor::fromRgbF(static_cast<float>(color.redF() * opacity),
                            static_cast<float>(color.greenF() * opacity),
                            static_cast<float>(color.blueF() * opacity));
}

CardState hoveredCard(CardState state = {})
{
    state.hovered = true;
    return state;
}

CardState pressedCard(CardState state = {})
{
    state.hovered = true;
    state.pressed = true;
    return state;
}

constexpr CardState kChosen{.selected = true};
constexpr CardState kCurrent{.current = true};

void addPartStates()
{
    QTest::addColumn<PartState>("state");
    // What the part is filled with or, where it is empty, drawn in.
    QTest::addColumn<QColor>("color");
    QTest::newRow("empty") << PartState{} << QColor();
    QTest::newRow("empty, hovered") << PartState{.hovered = true} << Theme::accentHover;
    QTest::newRow("empty, pressed")
        << PartState{.hovered = true, .pressed = true} << Theme::accentPressed;
    QTest::newRow("on") << PartState{.on = true} << Theme::accent;
    QTest::newRow("on, hovered") << PartState{.hovered = true, .on = true} << Theme::accentHover;
    QTest::newRow("on, pressed") << PartState{.hovered = true, .pressed = true, .on = true}
                                 << Theme::accentPressed;
}

} // namespace

/// What the parts of a page card look like in each of their states.
class TestPageCardPainter final : public QObject
{
    Q_OBJECT

private slots:
    void cardHasTheColorsOfItsState_data();
    void cardHasTheColorsOfItsState();
    void cardIsRoundedAndItsBorderInside();
    void captionOfAChosenCardIsInTheAccent();
    void captionIsBold();
    void waitingTextIsBrokenIntoLines();
    void pageOfItsSizeIsDrawnPixelByPixel_data();
    void pageOfItsSizeIsDrawnPixelByPixel();
    void pageOfAnotherSizeIsScaledSmoothly();
    void selectionBoxShowsItsState_data() { addPartStates(); }
    void selectionBoxShowsItsState();
    void insertMarkerShowsItsState_data() { addPartStates(); }
    void insertMarkerShowsItsState();
    void splitLineShowsItsState_data() { addPartStates(); }
    void splitLineShowsItsState();
    void splitLineThatIsOnIsThicker();
    void actionBarShowsWhatIsUnderThePointer_data();
    void actionBarShowsWhatIsUnderThePointer();
    void actionBarHasABorderAndAShadow();
    void sheetHasABorderAndAShadow_data();
    void sheetHasABorderAndAShadow();
    void whatIsDraggedOrDisabledIsPaler_data();
    void whatIsDraggedOrDisabledIsPaler();
    void disabledPartsArePaler_data();
    void disabledPartsArePaler();
    void fadingAddsUp();
    void dropIndicatorIsRounded();
};

void TestPageCardPainter::cardHasTheColorsOfItsState_data()
{
    QTest::addColumn<CardState>("state");
    QTest::addColumn<QColor>("fill");
    QTest::addColumn<QColor>("border");
    QTest::addColumn<int>("borderWidth");
    QTest::newRow("plain") << CardState{} << Theme::white << Theme::border << 1;
    QTest::newRow("hovered") << hoveredCard() << Theme::hover << Theme::borderStrong << 1;
    QTest::newRow("pressed") << pressedCard() << Theme::pressed << Theme::borderStrong << 1;
    QTest::newRow("current") << kCurrent << Theme::white << Theme::textSecondary << 1;
    QTest::newRow("current, hovered")
        << hoveredCard(kCurrent) << Theme::hover << Theme::textSecondary << 1;
    QTest::newRow("current, pressed")
        << pressedCard(kCurrent) << Theme::pressed << Theme::textSecondary << 1;
    QTest::newRow("chosen") << kChosen << Theme::accentTint << Theme::accent << 2;
    QTest::newRow("chosen, hovered")
        << hoveredCard(kChosen) << Theme::accentTint << Theme::accentHover << 2;
    QTest::newRow("chosen, pressed")
        << pressedCard(kChosen) << Theme::accentTint.darker(104) << Theme::accentHover << 2;
    QTest::newRow("chosen and current")
        << CardState{.selected = true, .current = true} << Theme::accentTint << Theme::accent << 2;
}

void TestPageCardPainter::cardHasTheColorsOfItsState()
{
    QFETCH(const CardState, state);
    QFETCH(const QColor, fill);
    QFETCH(const QColor, border);
    QFETCH(const int, borderWidth);
    const QImage image = drawn([&](QPainter &painter) { drawCard(painter, kCard, state); });
    QCOMPARE(image.pixel(kCard.center()), fill.rgb());
    for (int i = 0; i <= borderWidth; ++i) {
        const int middle = kCard.center().y();
        QCOMPARE(image.pixelColor(kCard.left() + i, middle) == border, i < borderWidth);
        QCOMPARE(image.pixelColor(kCard.right() - i, middle) == border, i < borderWidth);
    }
}

void TestPageCardPainter::cardIsRoundedAndItsBorderInside()
{
    const QImage image =
        drawn([](QPainter &painter) { drawCard(painter, kCard, kChosen); }, Qt::black);
    QCOMPARE(image.pixelColor(kCard.topLeft()), QColor(Qt::black));
    QCOMPARE(image.pixelColor(kCard.bottomRight()), QColor(Qt::black));
    QCOMPARE(image.pixelColor(kCard.left() - 1, kCard.center().y()), QColor(Qt::black));
    QCOMPARE(image.pixelColor(kCard.center().x(), kCard.bottom() + 1), QColor(Qt::black));
    QCOMPARE(image.pixelColor(kCard.center().x(), kCard.bottom()), Theme::accent);
}

void TestPageCardPainter::captionOfAChosenCardIsInTheAccent()
{
    for (const bool chosen : {false, true}) {
        const CardState state{.selected = chosen};
        const QImage image = drawn(
            [&](QPainter &painter) { drawCaption(painter, kCard, kText, painter.font(), state); });
        QCOMPARE(pixelsLike(image, kCard, Theme::accent) > 0, chosen);
        QCOMPARE(pixelsLike(image, kCard, Theme::textSecondary) > 0, !chosen);
    }
}

void TestPageCardPainter::captionIsBold()
{
    const QImage image =
        drawn([](QPainter &painter) { drawCaption(painter, kCard, kText, painter.font(), {}); });
    const QImage expected = drawn([](QPainter &painter) {
        QFont font = painter.font();
        font.setPixelSize(12);
        font.setBold(true);
        painter.setFont(font);
        painter.setPen(Theme::textSecondary);
        painter.drawText(kCard, Qt::AlignCenter, kText);
    });
    QCOMPARE(image, expected);
}

void TestPageCardPainter::waitingTextIsBrokenIntoLines()
{
    const auto heightOfInk = [](const QString &text) {
        const QImage image = drawn([&text](QPainter &painter) {
            drawWaitingPage(painter, kCard, {150, 110}, text, painter.font(), {});
        });
        int first = kCanvas.height();
        int last = 0;
        for (int y = kCard.top() + 10; y <= kCard.bottom() - 10; ++y) {
            const QRect line(kCard.left() + 10, y, kCard.width() - 20, 1);
            if (pixelsLike(image, line, Theme::textMuted) > 0) {
                first = std::min(first, y);
                last = std::max(last, y);
            }
        }
        return last - first + 1;
    };
    const int oneLine = heightOfInk(kText);
    QVERIFY(oneLine > 0 && oneLine < 16);
    QVERIFY(heightOfInk(QString(kText + u' ').repeated(12)) > 20);
}

void TestPageCardPainter::pageOfItsSizeIsDrawnPixelByPixel_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<double>("ratio");
    QTest::addColumn<double>("ratioOfTheImage");
    for (const double ratio : {1.0, 1.25, 1.5, 2.0}) {
        for (const QSize &size : {QSize(100, 80), QSize(101, 81), QSize(97, 60)}) {
            QTest::addRow("%dx%d at %g", size.width(), size.height(), ratio)
                << size << ratio << 1.0;
        }
    }
    QTest::newRow("image for a finer screen") << QSize(100, 80) << 1.0 << 2.0;
}

void TestPageCardPainter::pageOfItsSizeIsDrawnPixelByPixel()
{
    QFETCH(const QSize, size);
    QFETCH(const double, ratio);
    QFETCH(const double, ratioOfTheImage);
    QImage page(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            page.setPixelColor(x, y, (x + y) % 2 == 0 ? Qt::red : Qt::blue);
        }
    }
    QImage shown = page;
    shown.setDevicePixelRatio(ratioOfTheImage);
    QImage image(kCanvas * ratio, QImage::Format_RGB32);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::black);
    {
        QPainter painter(&image);
        drawPage(painter, kCard, size, shown, {});
    }
    image.setDevicePixelRatio(1.0);
    QPoint corner(-1, -1);
    for (int y = image.height() - 1; y >= 0; --y) {
        for (int x = image.width() - 1; x >= 0; --x) {
            const QColor color = image.pixelColor(x, y);
            corner = color == QColor(Qt::red) || color == QColor(Qt::blue) ? QPoint(x, y) : corner;
        }
    }
    QCOMPARE(image.copy(QRect(corner, size)), page);
    // The border lies close around it.
    for (const QPoint &beside :
         {QPoint(-1, 10), QPoint(size.width(), 10), QPoint(10, -1), QPoint(10, size.height())}) {
        QCOMPARE(image.pixelColor(corner + beside), Theme::borderStrong);
    }
}

void TestPageCardPainter::pageOfAnotherSizeIsScaledSmoothly()
{
    QImage page(50, 40, QImage::Format_RGB32);
    for (int x = 0; x < page.width(); ++x) {
        for (int y = 0; y < page.height(); ++y) {
            page.setPixelColor(x, y, x < 25 ? Qt::white : Qt::black);
        }
    }
    const QImage image = drawn([&page](QPainter &painter) {
        drawPage(painter, kCard, {100, 80}, page, {});
    });
    const int y = kCard.center().y();
    QCOMPARE(image.pixelColor(55, y), QColor(Qt::white));
    QCOMPARE(image.pixelColor(145, y), QColor(Qt::black));
    int between = 0;
    for (int x = 95; x < 105; ++x) {
        const int lightness = image.pixelColor(x, y).lightness();
        between += lightness > 20 && lightness < 235 ? 1 : 0;
    }
    QVERIFY(between > 0);
}

void TestPageCardPainter::selectionBoxShowsItsState()
{
    QFETCH(const PartState, state);
    QFETCH(const QColor, color);
    const QImage image = drawn([&](QPainter &painter) { drawSelectionBox(painter, kZone, state); });
    // A box of 20 in a zone of 28.
    const QRect box = kZone.adjusted(4, 4, -4, -4);
    const QColor edge = image.pixelColor(box.left(), box.center().y());
    const QColor fill = image.pixelColor(box.left() + 2, box.center().y());
    const QRect inside = box.adjusted(5, 5, -5, -5);
    if (state.on) {
        QCOMPARE(edge, color);
        QCOMPARE(fill, color);
        QVERIFY(pixelsLike(image, inside, Theme::white) > 0);
    } else {
        QCOMPARE(edge, color.isValid() ? Theme::accent : Theme::textMuted);
        QCOMPARE(fill, state.pressed ? Theme::accentTint : Theme::white);
        QCOMPARE(pixelsLike(image, inside, fill), inside.width() * inside.height());
    }
    QCOMPARE(image.pixelColor(box.left() - 1, box.center().y()), QColor(Qt::white));
}

void TestPageCardPainter::insertMarkerShowsItsState()
{
    QFETCH(const PartState, state);
    QFETCH(const QColor, color);
    const bool lit = color.isValid() && (state.hovered || state.pressed);
    const QRect gap(kZone.left(), 0, kZone.width(), kCanvas.height());
    const QImage image =
        drawn([&](QPainter &painter) { drawInsertMarker(painter, kZone, gap, state); });
    const QPoint centre(kZone.left() + kZone.width() / 2, kZone.top() + kZone.height() / 2);
    const QColor line = lit ? color : Theme::border;
    for (const int y : {0, kZone.top() - 1, kZone.bottom() + 1, kCanvas.height() - 1}) {
        QCOMPARE(image.pixelColor(centre.x(), y), line);
        QCOMPARE(image.pixelColor(centre.x() - 1, y), line);
    }
    QCOMPARE(image.pixelColor(centre + QPoint(0, 9)), lit ? color : Theme::white);
    QCOMPARE(image.pixelColor(centre), lit ? Theme::white : Theme::accent);
    // A circle of 26 pixels in a zone of 28.
    const QRect edge(kZone.left() + 1, centre.y() - 1, 2, 2);
    QVERIFY(darkestIn(image, edge) < 190);
    QCOMPARE(image.pixelColor(kZone.left(), centre.y()), QColor(Qt::white));
}

void TestPageCardPainter::splitLineShowsItsState()
{
    QFETCH(const PartState, state);
    QFETCH(const QColor, color);
    const QImage image = drawn([&](QPainter &painter) { drawSplitLine(painter, kGap, state); });
    const QColor line = color.isValid() ? color : Theme::textMuted;
    const QPoint centre = kGap.center();
    const QRect above(kGap.left(), kGap.top(), kGap.width(), centre.y() - 14 - kGap.top());
    QVERIFY(pixelsLike(image, above, line) > above.height() / 3);
    QVERIFY(pixelsLike(image, above.translated(0, kGap.bottom() - above.bottom()), line) >
            above.height() / 3);
    const QRect badge(centre - QPoint(7, 7), centre + QPoint(7, 7));
    QCOMPARE(image.pixelColor(centre + QPoint(0, 9)), state.on ? color : Theme::white);
    const QColor off = color.isValid() ? color : Theme::textSecondary;
    QVERIFY(pixelsLike(image, badge, state.on ? Theme::white : off) > 3);
    // The edge of the badge is that of a circle with a diameter of 24.
    QVERIFY(pixelsLike(image, QRect(centre.x() - 12, centre.y() - 1, 2, 3), line) > 0);
}

void TestPageCardPainter::splitLineThatIsOnIsThicker()
{
    const QImage off = drawn([](QPainter &painter) { drawSplitLine(painter, kGap, {}); });
    const QImage on = drawn([](QPainter &painter) { drawSplitLine(painter, kGap, {.on = true}); });
    const QRect column(kGap.center().x() - 1, kGap.top(), 1, 40);
    // Beside its middle a line of one and a half pixels is but half as dark.
    QVERIFY(darkestIn(on, column) < darkestIn(off, column));
}

void TestPageCardPainter::actionBarShowsWhatIsUnderThePointer_data()
{
    QTest::addColumn<int>("hovered");
    QTest::addColumn<int>("pressed");
    QTest::addColumn<QList<QColor>>("fills");
    const QColor danger(0xFD, 0xEC, 0xEC);
    const QColor dangerPressed(0xFA, 0xD9, 0xD9);
    const auto fills = [](const QColor &first, const QColor &last) {
        return QList<QColor>{first, Theme::white, last};
    };
    QTest::newRow("nothing") << -1 << -1 << fills(Theme::white, Theme::white);
    QTest::newRow("first hovered") << 0 << -1 << fills(Theme::hover, Theme::white);
    QTest::newRow("first pressed") << 0 << 0 << fills(Theme::pressed, Theme::white);
    QTest::newRow("bin hovered") << 2 << -1 << fills(Theme::white, danger);
    QTest::newRow("bin pressed") << 2 << 2 << fills(Theme::white, dangerPressed);
    QTest::newRow("bin pressed, first hovered") << 0 << 2 << fills(Theme::hover, dangerPressed);
}

void TestPageCardPainter::actionBarShowsWhatIsUnderThePointer()
{
    QFETCH(const int, hovered);
    QFETCH(const int, pressed);
    QFETCH(const QList<QColor>, fills);
    const QList<Action> actions{{QIcon()}, {QIcon()}, {QIcon(), true}};
    const QImage image =
        drawn([&](QPainter &painter) { drawActionBar(painter, kBar, actions, hovered, pressed); });
    for (int part = 0; part < 3; ++part) {
        const QRect rect = barPart(kBar, 3, part);
        QCOMPARE(image.pixelColor(rect.center()), fills.at(part));
        // Around what is lit up some of the bar stays.
        QCOMPARE(image.pixelColor(rect.center().x(), rect.top() + 2), Theme::white);
    }
}

void TestPageCardPainter::actionBarHasABorderAndAShadow()
{
    const QList<Action> actions{{QIcon()}};
    const QImage image =
        drawn([&](QPainter &painter) { drawActionBar(painter, kBar, actions, -1, -1); });
    const int x = kBar.center().x();
    QCOMPARE(image.pixelColor(x, kBar.top()), Theme::borderStrong);
    QCOMPARE(image.pixelColor(x, kBar.top() - 1), QColor(Qt::white));
    QCOMPARE(image.pixelColor(x, kBar.bottom()), Theme::borderStrong);
    const QColor shadow = image.pixelColor(x, kBar.bottom() + 2);
    QVERIFY(shadow != QColor(Qt::white));
    QVERIFY(shadow.lightness() > 200);
    QCOMPARE(image.pixelColor(x, kBar.bottom() + 3), QColor(Qt::white));
}

void TestPageCardPainter::sheetHasABorderAndAShadow_data()
{
    QTest::addColumn<bool>("waits");
    QTest::newRow("page") << false;
    QTest::newRow("waiting page") << true;
}

void TestPageCardPainter::sheetHasABorderAndAShadow()
{
    QFETCH(const bool, waits);
    QImage page(100, 80, QImage::Format_ARGB32_Premultiplied);
    page.fill(Qt::transparent);
    const QImage image = drawn(
        [&](QPainter &painter) {
            if (waits) {
                drawWaitingPage(painter, kCard, page.size(), {}, painter.font(), {});
            } else {
                drawPage(painter, kCard, page.size(), page, {});
            }
        },
        Qt::black);
    const QRect sheet(50, 40, 100, 80);
    QCOMPARE(image.pixelColor(sheet.topLeft()), Theme::white);
    QCOMPARE(image.pixelColor(sheet.bottomRight()), Theme::white);
    QCOMPARE(image.pixelColor(sheet.left() - 1, sheet.top() - 1), Theme::borderStrong);
    QCOMPARE(image.pixelColor(sheet.right() + 1, sheet.bottom() + 1), Theme::borderStrong);
    const QColor shadow = image.pixelColor(sheet.center().x(), sheet.bottom() + 2);
    QVERIFY(shadow != QColor(Qt::black));
    QVERIFY(shadow.lightness() < 40);
    QCOMPARE(image.pixelColor(sheet.center().x(), sheet.top() - 2), QColor(Qt::black));
}

void TestPageCardPainter::whatIsDraggedOrDisabledIsPaler_data()
{
    using Draw = std::function<void(QPainter &, const CardState &)>;
    QTest::addColumn<Draw>("draw");
    QTest::newRow("card") << Draw(
        [](QPainter &painter, const CardState &state) { drawCard(painter, kCard, state); });
    QTest::newRow("page") << Draw([](QPainter &painter, const CardState &state) {
        QImage page(100, 80, QImage::Format_RGB32);
        page.fill(Qt::white);
        drawPage(painter, kCard, page.size(), page, state);
    });
    QTest::newRow("waiting page") << Draw([](QPainter &painter, const CardState &state) {
        drawWaitingPage(painter, kCard, {100, 80}, {}, painter.font(), state);
    });
}

void TestPageCardPainter::whatIsDraggedOrDisabledIsPaler()
{
    QFETCH(const std::function<void(QPainter &, const CardState &)>, draw);
    const auto centreOf = [&](const CardState &state) {
        return drawn([&](QPainter &painter) { draw(painter, state); }, Qt::black)
            .pixelColor(kCard.center());
    };
    QCOMPARE(centreOf({}), Theme::white);
    const QColor dragged = centreOf({.dragged = true});
    QVERIFY(dragged.lightness() < 230);
    const QColor disabled = centreOf({.enabled = false});
    QVERIFY(disabled.lightness() < 250);
    QVERIFY(disabled != dragged);
    QCOMPARE(centreOf({.dragged = true, .enabled = false}), disabled);
}

void TestPageCardPainter::disabledPartsArePaler_data()
{
    using Draw = std::function<void(QPainter &, const PartState &)>;
    QTest::addColumn<Draw>("draw");
    QTest::newRow("selection box") << Draw(
        [](QPainter &painter, const PartState &state) { drawSelectionBox(painter, kZone, state); });
    QTest::newRow("insert marker") << Draw([](QPainter &painter, const PartState &state) {
        drawInsertMarker(painter, kZone, kGap, state);
    });
    QTest::newRow("split line") << Draw(
        [](QPainter &painter, const PartState &state) { drawSplitLine(painter, kGap, state); });
}

void TestPageCardPainter::disabledPartsArePaler()
{
    QFETCH(const std::function<void(QPainter &, const PartState &)>, draw);
    for (const bool on : {false, true}) {
        const auto darkestOf = [&](bool enabled) {
            const QImage image =
                drawn([&](QPainter &painter) { draw(painter, {.on = on, .enabled = enabled}); });
            return darkestIn(image, image.rect());
        };
        QVERIFY(darkestOf(false) > darkestOf(true) + 15);
        QVERIFY(darkestOf(false) < 240);
    }
}

void TestPageCardPainter::fadingAddsUp()
{
    // As for the picture under the pointer of a drag.
    const QImage image = drawn(
        [](QPainter &painter) {
            painter.setOpacity(0.5);
            drawCard(painter, kCard, {.dragged = true});
        },
        Qt::black);
    QVERIFY(isLike(image.pixelColor(kCard.center()), dimmed(Theme::white, 0.2)));
}

void TestPageCardPainter::dropIndicatorIsRounded()
{
    const QRect line(20, 20, 4, 100);
    const QImage image =
        drawn([&](QPainter &painter) { drawDropIndicator(painter, line); }, Qt::white);
    QCOMPARE(image.pixelColor(line.center()), Theme::accent);
    QCOMPARE(image.pixelColor(line.left(), line.center().y()), Theme::accent);
    QVERIFY(image.pixelColor(line.topLeft()).lightness() > Theme::accent.lightness() + 20);
    QCOMPARE(image.pixelColor(line.left() - 1, line.center().y()), QColor(Qt::white));
}

QTEST_MAIN(TestPageCardPainter)
#include "tst_page_card_painter.moc"
