// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/grid/page_grid_zoom_control.h"
#include "pdf/viewer/grid/pdf_page_manager_view.h"
#include "tests/pdf/viewer/page_drag.h"
#include "tests/pdf/viewer/shown_grid.h"
#include "tests/pdf/viewer/shown_view.h"
#include "widgets/theme.h"

#include <QPainter>
#include <QScrollBar>
#include <QSlider>
#include <QTest>
#include <QToolButton>

#include <algorithm>
#include <functional>

namespace {

constexpr int kNormalMode = 0;
constexpr int kInsertMode = 1;
constexpr int kExtractMode = 2;
constexpr int kSplitMode = 3;

/// Whether something of the colour is painted in the rectangle.
bool holdsColor(const QImage &image, const QRect &rect, const QColor &color)
{
    const QRect inside = rect.intersected(image.rect());
    for (int y = inside.top(); y <= inside.bottom(); ++y) {
        for (int x = inside.left(); x <= inside.right(); ++x) {
            if (image.pixelColor(x, y) == color) {
                return true;
            }
        }
    }
    return false;
}

/// The lightness of the darkest pixel in the rectangle, on a white ground.
int darkestIn(const QImage &image, const QRect &rect)
{
    QImage part(rect.size(), QImage::Format_RGB32);
    part.fill(Qt::white);
    QPainter(&part).drawImage(QPoint(), image, rect);
    int darkest = 255;
    for (int y = 0; y < part.height(); ++y) {
        for (int x = 0; x < part.width(); ++x) {
            darkest = std::min(darkest, part.pixelColor(x, y).lightness());
        }
    }
    return darkest;
}

/// Counts the times a widget is painted.
class PaintCounter final : public QObject
{
public:
    explicit PaintCounter(QWidget *widget)
        : QObject(widget)
    {
        widget->installEventFilter(this);
    }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        m_count += event->type() == QEvent::Paint ? 1 : 0;
        return QObject::eventFilter(watched, event);
    }

    [[nodiscard]] int count() const { return m_count; }

private:
    int m_count = 0;
};

} // namespace

/// What the page grid paints, and when.
class TestPdfPageManagerViewPainting final : public QObject
{
    Q_OBJECT

private slots:
    void zoomControlHasItsColors();
    void paintsSelectionHoverAndBox();
    void currentCardDoesNotLookChosen();
    void partLooksPressedOnlyWhileThePointerStaysOnIt();
    void partOfALostReleaseLooksPressedNoLonger();
    void paintsInsertMarksOnlyInInsertMode();
    void marksOutOfViewAreNotPainted();
    void paintsSplitLines();
    void firstPageInViewHasItsSplitLine();
    void disabledGridIsPaler();
    void everyPartOfADisabledGridIsPaler_data();
    void everyPartOfADisabledGridIsPaler();
    void boxUnderThePointerIsLit();
    void markUnderThePointerOnlyIsLit();
    void restingPointerSeesTheMarksComeAndGo();
    void cardUnderAPressLooksPressed();
    void binUnderThePointerIsRed();
    void disabledGridShowsNoActionBar();
    void actionBarShowsItsIconsInOrder();
    void zoomButtonsShowTheirIcons();
    void zoomMovesTheHover();
    void whatChangesIsPaintedAnew_data();
    void whatChangesIsPaintedAnew();
    void pointerMovesOnTheSamePlaceRepaintNothing();
};

void TestPdfPageManagerViewPainting::zoomControlHasItsColors()
{
    ShownGrid shown(a4Pages(1));
    auto *control = shown.view.findChild<PageGridZoomControl *>();
    auto *zoomIn = shown.view.findChild<QToolButton *>(QStringLiteral("pdfPageGridZoomIn"));
    const QPoint besideTheSlider(shown.slider->x() - 3, control->height() / 2);
    QImage image = control->grab().toImage();
    QCOMPARE(image.pixelColor(control->width() / 2, 0), QColor(0x32, 0x32, 0x32));
    QCOMPARE(image.pixelColor(control->width() / 2, 1), QColor(0x19, 0x19, 0x19));
    QCOMPARE(image.pixelColor(besideTheSlider), QColor(0x19, 0x19, 0x19));

    // Filled to the left of the handle only.
    const QPoint slider = shown.slider->pos() + QPoint(0, shown.slider->height() / 2);
    QCOMPARE(image.pixelColor(slider + QPoint(4, 0)), Theme::white);
    QCOMPARE(image.pixelColor(slider + QPoint(shown.slider->width() - 4, 0)),
             QColor(0x4C, 0x4C, 0x4C));

    const QPoint inButton = zoomIn->geometry().center() + QPoint(5, 5);
    QVERIFY(image.pixelColor(zoomIn->x() + zoomIn->width() / 2, zoomIn->y()).lightness() > 200);
    QCOMPARE(image.pixelColor(inButton), QColor(0x19, 0x19, 0x19));
    zoomIn->setAttribute(Qt::WA_UnderMouse);
    QCOMPARE(control->grab().toImage().pixelColor(inButton), QColor(0x33, 0x33, 0x33));
    zoomIn->setDown(true);
    QCOMPARE(control->grab().toImage().pixelColor(inButton), QColor(0x47, 0x47, 0x47));
    QCOMPARE(shown.view.grab().toImage().pixelColor(600, 400), QColor(0xFA, 0xFB, 0xFC));
}

void TestPdfPageManagerViewPainting::currentCardDoesNotLookChosen()
{
    ShownGrid shown({{595, 842}, {842, 595}, {595, 842}});
    QTRY_VERIFY(shown.thumbnail(0) && shown.thumbnail(1) && shown.thumbnail(2));
    shown.click(shown.cell(1).thumbnail.center());
    shown.moveTo({900, 600});
    const auto edgeOf = [&](int row) {
        const QRect card = shown.cell(row).card;
        return shown.picture().pixelColor(card.left(), card.center().y());
    };
    QCOMPARE(edgeOf(1), Theme::textSecondary);
    QCOMPARE(edgeOf(2), Theme::border);
    const QPoint inCard = shown.cell(1).card.topLeft() + QPoint(10, 10);
    QCOMPARE(shown.picture().pixelColor(inCard), Theme::white);
    shown.moveTo(inCard);
    QCOMPARE(shown.picture().pixelColor(inCard), Theme::hover);
    QCOMPARE(edgeOf(1), Theme::textSecondary);
    shown.moveTo({900, 600});
    shown.model.setPageSelected(2, true);
    QCOMPARE(edgeOf(1), Theme::accent);
}

void TestPdfPageManagerViewPainting::paintsSelectionHoverAndBox()
{
    ShownGrid shown({{595, 842}, {842, 595}, {595, 842}});
    QTRY_VERIFY(shown.thumbnail(0) && shown.thumbnail(1) && shown.thumbnail(2));
    const PageCellGeometry cell = shown.cell(1);
    const QPoint inCard = cell.card.topLeft() + QPoint(10, 10);
    QImage image = shown.picture();
    QCOMPARE(image.pixelColor(cell.thumbnail.center()), RenderProbe::colorOf(1));
    // An image of 206 x 146 reaches from edge to edge of its box.
    QCOMPARE(image.pixelColor(cell.thumbnail.left(), cell.thumbnail.center().y()),
             RenderProbe::colorOf(1));
    QCOMPARE(image.pixelColor(cell.thumbnail.right(), cell.thumbnail.center().y()),
             RenderProbe::colorOf(1));
    QCOMPARE(image.pixelColor(inCard), Theme::white);
    QVERIFY(!holdsColor(image, cell.selectionBox, Theme::accent));

    shown.click(cell.selectionBox.center());
    image = shown.picture();
    QCOMPARE(image.pixelColor(inCard), Theme::accentTint);
    QVERIFY(holdsColor(image, cell.selectionBox, Theme::accent));
    QVERIFY(holdsColor(image, cell.caption, Theme::accent));

    const PageCellGeometry other = shown.cell(2);
    shown.moveTo(other.card.topLeft() + QPoint(8, 8));
    image = shown.picture();
    QCOMPARE(image.pixelColor(other.card.topLeft() + QPoint(10, 10)), Theme::hover);
    QCOMPARE(image.pixelColor(other.actionBar.center() + QPoint(0, 13)), Theme::white);
    shown.moveTo(shown.barPartOf(2, 0));
    image = shown.picture();
    QCOMPARE(image.pixelColor(shown.barPartOf(2, 0) + QPoint(0, 13)), Theme::hover);
    shown.press(shown.barPartOf(2, 0));
    image = shown.picture();
    QCOMPARE(image.pixelColor(shown.barPartOf(2, 0) + QPoint(0, 13)), Theme::pressed);
}

void TestPdfPageManagerViewPainting::partLooksPressedOnlyWhileThePointerStaysOnIt()
{
    ShownGrid shown(a4Pages(3));
    QWidget *viewport = shown.list->viewport();
    const auto look = [&shown](int part) {
        return shown.picture().pixelColor(shown.barPartOf(1, part) + QPoint(0, 13));
    };
    shown.moveTo(shown.barPartOf(1, 0));
    shown.press(shown.barPartOf(1, 0));
    moveMouse(viewport, shown.barPartOf(1, 0) + QPoint(1, 0), Qt::LeftButton);
    QCOMPARE(look(0), Theme::pressed);
    for (const int step : {0, 1, 2}) {
        moveMouse(viewport, shown.barPartOf(1, 2) + QPoint(step, 0), Qt::LeftButton);
        QCOMPARE(look(2), Theme::hover);
        QCOMPARE(look(0), Theme::white);
    }
}

void TestPdfPageManagerViewPainting::partOfALostReleaseLooksPressedNoLonger()
{
    ShownGrid shown(a4Pages(3));
    const QPoint part = shown.barPartOf(1, 0);
    const auto look = [&] { return shown.picture().pixelColor(part + QPoint(0, 13)); };
    shown.moveTo(part);
    shown.press(part);
    QCOMPARE(look(), Theme::pressed);
    // The button was let go over another window.
    moveMouse(shown.list->viewport(), part + QPoint(1, 0), Qt::NoButton);
    QCOMPARE(look(), Theme::hover);
}

void TestPdfPageManagerViewPainting::paintsInsertMarksOnlyInInsertMode()
{
    ShownGrid shown(a4Pages(3));
    const QRect zone = shown.cell(0).insertZone;
    QVERIFY(!holdsColor(shown.picture(), zone, Theme::accent));
    shown.view.setWorkspaceMode(kInsertMode);
    QVERIFY(holdsColor(shown.picture(), zone, Theme::accent));
    QCOMPARE(shown.picture().pixelColor(zone.center() + QPoint(0, 9)), Theme::white);
    shown.moveTo(zone.center());
    QCOMPARE(shown.picture().pixelColor(zone.center() + QPoint(0, 9)), Theme::accentHover);
    QCOMPARE(shown.list->viewport()->cursor().shape(), Qt::PointingHandCursor);
    shown.press(zone.center());
    QCOMPARE(shown.picture().pixelColor(zone.center() + QPoint(0, 9)), Theme::accentPressed);
    shown.view.setWorkspaceMode(kExtractMode);
    QVERIFY(!holdsColor(shown.picture(), zone, Theme::accent));
}

void TestPdfPageManagerViewPainting::marksOutOfViewAreNotPainted()
{
    // Of the third line, only the upper edges of the cards are in view.
    ShownGrid shown(a4Pages(40), {1100, 560});
    const QRect besideTheCards(0, 0, 16, 560);
    const QImage without = shown.picture().copy(besideTheCards);
    shown.view.setWorkspaceMode(kInsertMode);
    QCOMPARE(shown.picture().copy(besideTheCards), without);
    const QRect zone = shown.cell(8).insertZone;
    QVERIFY(zone.top() > 560 + zone.height());
    QVERIFY(holdsColor(shown.picture(), QRect(zone.left(), 552, zone.width(), 8), Theme::border));
    shown.view.setWorkspaceMode(kSplitMode);
    // There is no line before the first page.
    QCOMPARE(shown.picture().copy(0, 0, 16, 270), without.copy(0, 0, 16, 270));
    QVERIFY(shown.picture().copy(0, 552, 16, 8) != without.copy(0, 552, 16, 8));
}

void TestPdfPageManagerViewPainting::paintsSplitLines()
{
    ShownGrid shown(a4Pages(6));
    shown.view.setWorkspaceMode(kSplitMode);
    const QRect gap = shown.cell(1).splitZone;
    QVERIFY(holdsColor(shown.picture(), gap, Theme::textMuted));
    QVERIFY(!holdsColor(shown.picture(), gap, Theme::accent));
    shown.moveTo(gap.center());
    QVERIFY(holdsColor(shown.picture(), gap, Theme::accentHover));
    shown.click(gap.center());
    shown.moveTo({1080, 700});
    QVERIFY(holdsColor(shown.picture(), gap, Theme::accent));
    QVERIFY(!holdsColor(shown.picture(), shown.cell(2).splitZone, Theme::accent));
    // There is no line before the first page; there is one before the first of a line.
    QVERIFY(!holdsColor(shown.picture(), QRect(0, 0, 14, 270), Theme::textMuted));
    QVERIFY(holdsColor(shown.picture(), shown.cell(4).splitZone, Theme::textMuted));

    shown.view.setEveryPageSplit(true);
    QVERIFY(holdsColor(shown.picture(), shown.cell(2).splitZone, Theme::accent));
    shown.moveTo(shown.cell(2).splitZone.center());
    QVERIFY(!holdsColor(shown.picture(), shown.cell(2).splitZone, Theme::accentHover));
    QCOMPARE(shown.list->viewport()->cursor().shape(), Qt::ArrowCursor);
}

void TestPdfPageManagerViewPainting::firstPageInViewHasItsSplitLine()
{
    ShownGrid shown(a4Pages(40));
    shown.view.setWorkspaceMode(kSplitMode);
    shown.list->verticalScrollBar()->setValue(shown.cell(4).cell.top());
    QCOMPARE(shown.list->indexAt({0, 0}).row(), 4);
    QVERIFY(holdsColor(shown.picture(), shown.cell(4).splitZone, Theme::textMuted));
    shown.click(shown.cell(4).splitZone.center());
    shown.moveTo({1080, 700});
    QVERIFY(holdsColor(shown.picture(), shown.cell(4).splitZone, Theme::accent));
}

void TestPdfPageManagerViewPainting::disabledGridIsPaler()
{
    ShownGrid shown(a4Pages(2));
    QTRY_VERIFY(shown.thumbnail(0));
    const QPoint centre = shown.cell(0).thumbnail.center();
    QTRY_COMPARE(shown.picture().pixelColor(centre), RenderProbe::colorOf(0));
    shown.view.setEnabled(false);
    QVERIFY(shown.picture().pixelColor(centre).lightness() >
            RenderProbe::colorOf(0).lightness() + 20);
}

void TestPdfPageManagerViewPainting::everyPartOfADisabledGridIsPaler_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<QRect PageCellGeometry::*>("part");
    QTest::newRow("text of a waiting page") << kNormalMode << &PageCellGeometry::thumbnail;
    QTest::newRow("card with its border") << kNormalMode << &PageCellGeometry::card;
    QTest::newRow("caption") << kNormalMode << &PageCellGeometry::caption;
    QTest::newRow("selection box") << kNormalMode << &PageCellGeometry::selectionBox;
    QTest::newRow("insert mark") << kInsertMode << &PageCellGeometry::insertZone;
    QTest::newRow("split line") << kSplitMode << &PageCellGeometry::splitZone;
}

void TestPdfPageManagerViewPainting::everyPartOfADisabledGridIsPaler()
{
    QFETCH(const int, mode);
    QFETCH(QRect PageCellGeometry::*const, part);
    ShownGrid shown(a4Pages(3));
    QTRY_COMPARE(shown.view.thumbnails().heldCount(), 3);
    shown.view.setModel(nullptr);
    shown.manager.clearCache();
    shown.probe.hold();
    shown.view.setModel(&shown.model);
    shown.view.setWorkspaceMode(mode);
    shown.model.setPageSelected(shown.model.pageAt(1)->id, true);
    QTRY_COMPARE(shown.view.thumbnails().pendingCount(), 3);
    const QRect rect = shown.cell(1).*part;
    const int enabled = darkestIn(shown.picture(), rect);
    shown.view.setEnabled(false);
    const int disabled = darkestIn(shown.picture(), rect);
    shown.probe.release();
    QVERIFY2(disabled > enabled + 15,
             qPrintable(QStringLiteral("%1, disabled %2").arg(enabled).arg(disabled)));
    QVERIFY(disabled < 240);
}

void TestPdfPageManagerViewPainting::boxUnderThePointerIsLit()
{
    ShownGrid shown(a4Pages(3));
    QTRY_COMPARE(shown.view.thumbnails().heldCount(), 3);
    const QRect zone = shown.cell(1).selectionBox;
    const QPoint edge = zone.center() - QPoint(9, 0);
    const QPoint inside = zone.center() - QPoint(6, 0);
    const auto colorAt = [&shown](QPoint point) { return shown.picture().pixelColor(point); };
    QCOMPARE(colorAt(edge), Theme::textMuted);
    shown.moveTo(shown.cell(1).thumbnail.center());
    QCOMPARE(colorAt(edge), Theme::textMuted);
    shown.moveTo(zone.center());
    QCOMPARE(colorAt(edge), Theme::accent);
    QCOMPARE(colorAt(inside), Theme::white);
    QVERIFY(!holdsColor(shown.picture(), shown.cell(2).selectionBox, Theme::accent));

    shown.press(zone.center());
    QCOMPARE(colorAt(inside), Theme::accentPressed);
    QTest::mouseRelease(shown.list->viewport(), Qt::LeftButton, {}, zone.center());
    QCOMPARE(colorAt(inside), Theme::accentHover);
    shown.press(zone.center());
    QCOMPARE(colorAt(inside), Theme::accentTint);
    QTest::mouseRelease(shown.list->viewport(), Qt::LeftButton, {}, zone.center());
    QCOMPARE(colorAt(inside), Theme::white);
    shown.moveTo({900, 600});
    QCOMPARE(colorAt(edge), Theme::textMuted);
}

void TestPdfPageManagerViewPainting::markUnderThePointerOnlyIsLit()
{
    ShownGrid shown(a4Pages(6));
    const QList<std::pair<int, QRect PageCellGeometry::*>> marks{
        {kInsertMode, &PageCellGeometry::insertZone}, {kSplitMode, &PageCellGeometry::splitZone}};
    for (const auto &[mode, zone] : marks) {
        shown.view.setWorkspaceMode(mode);
        const QPoint point = (shown.cell(1).*zone).center();
        const auto rowsLitIn = [&](const QColor &color) {
            QList<int> rows;
            for (const int row : {1, 2, 4, 5}) {
                if (holdsColor(shown.picture(), shown.cell(row).*zone, color)) {
                    rows.append(row);
                }
            }
            return rows;
        };
        shown.moveTo({900, 600});
        QCOMPARE(rowsLitIn(Theme::accentHover), QList<int>());
        shown.moveTo(point);
        QCOMPARE(rowsLitIn(Theme::accentHover), QList<int>{1});
        shown.press(point);
        QCOMPARE(rowsLitIn(Theme::accentPressed), QList<int>{1});
        QCOMPARE(rowsLitIn(Theme::accentHover), QList<int>());
        QTest::mouseRelease(shown.list->viewport(), Qt::LeftButton, {}, point);
        QCOMPARE(rowsLitIn(Theme::accentPressed), QList<int>());
        QCOMPARE(rowsLitIn(Theme::accentHover), QList<int>{1});
    }
}

void TestPdfPageManagerViewPainting::restingPointerSeesTheMarksComeAndGo()
{
    ShownGrid shown(a4Pages(6));
    const QRect insertZone = shown.cell(1).insertZone;
    const auto isLit = [&shown](const QRect &zone) {
        return holdsColor(shown.picture(), zone, Theme::accentHover);
    };
    const auto cursor = [&shown] { return shown.list->viewport()->cursor().shape(); };
    shown.moveTo(insertZone.center());
    QCOMPARE(cursor(), Qt::ArrowCursor);
    shown.view.setWorkspaceMode(kInsertMode);
    QVERIFY(isLit(insertZone));
    QCOMPARE(cursor(), Qt::PointingHandCursor);
    shown.view.setWorkspaceMode(kNormalMode);
    QVERIFY(!isLit(insertZone));
    QCOMPARE(cursor(), Qt::ArrowCursor);

    const QRect gap = shown.cell(1).splitZone;
    shown.view.setWorkspaceMode(kSplitMode);
    shown.moveTo(gap.center());
    QVERIFY(isLit(gap));
    QCOMPARE(cursor(), Qt::PointingHandCursor);
    shown.view.setEveryPageSplit(true);
    QVERIFY(!isLit(gap));
    QCOMPARE(cursor(), Qt::ArrowCursor);
    shown.view.setEveryPageSplit(false);
    QVERIFY(isLit(gap));
    QCOMPARE(cursor(), Qt::PointingHandCursor);
}

void TestPdfPageManagerViewPainting::cardUnderAPressLooksPressed()
{
    ShownGrid shown(a4Pages(3));
    const auto look = [&shown](int row) {
        return shown.picture().pixelColor(shown.cell(row).card.topLeft() + QPoint(10, 10));
    };
    const QPoint point = shown.cell(1).thumbnail.center();
    shown.moveTo(point);
    QCOMPARE(look(1), Theme::hover);
    shown.press(point);
    QCOMPARE(look(1), Theme::pressed);
    QCOMPARE(look(0), Theme::white);
    QCOMPARE(look(2), Theme::white);
    QTest::mouseRelease(shown.list->viewport(), Qt::LeftButton, {}, point);
    QCOMPARE(look(1), Theme::hover);
}

void TestPdfPageManagerViewPainting::binUnderThePointerIsRed()
{
    ShownGrid shown(a4Pages(3));
    const auto look = [&shown](int part) {
        return shown.picture().pixelColor(shown.barPartOf(1, part) + QPoint(0, 13));
    };
    for (const int part : {0, 1, 2, 3}) {
        shown.moveTo(shown.barPartOf(1, part));
        QCOMPARE(look(part), part == 3 ? QColor(0xFD, 0xEC, 0xEC) : Theme::hover);
    }
    shown.press(shown.barPartOf(1, 3));
    QCOMPARE(look(3), QColor(0xFA, 0xD9, 0xD9));
}

void TestPdfPageManagerViewPainting::disabledGridShowsNoActionBar()
{
    ShownGrid shown(a4Pages(3));
    QTRY_COMPARE(shown.view.thumbnails().heldCount(), 3);
    const QRect bar = shown.cell(1).actionBar;
    const auto holdsABar = [&] {
        const QRect onThePage = bar.adjusted(40, 4, -40, -4);
        return holdsColor(shown.picture(), onThePage, Theme::white);
    };
    QVERIFY(!holdsABar());
    shown.moveTo(shown.cell(1).thumbnail.center());
    QVERIFY(holdsABar());
    shown.view.setEnabled(false);
    QVERIFY(!holdsABar());
}

void TestPdfPageManagerViewPainting::actionBarShowsItsIconsInOrder()
{
    ShownGrid shown(a4Pages(2));
    shown.moveTo(shown.cell(0).card.topLeft() + QPoint(10, 10));
    const QImage picture = shown.picture().convertToFormat(QImage::Format_RGB32);
    const QStringList icons{
        QStringLiteral("pdfviewer/expand"), QStringLiteral("pdfviewer/duplicate"),
        QStringLiteral("pdfviewer/rotate-right"), QStringLiteral("modern/trash")};
    QList<QImage> painted;
    for (int part = 0; part < 4; ++part) {
        constexpr QSize kIconSize(20, 20);
        const QRect bar = barPart(shown.cell(0).actionBar, 4, part);
        painted.append(picture.copy(centredIn(bar, kIconSize).toRect()));
        QImage expected(kIconSize, QImage::Format_RGB32);
        expected.fill(Theme::white);
        QPainter painter(&expected);
        QIcon(QStringLiteral(":/res/icons/%1.png").arg(icons.at(part)))
            .paint(&painter, expected.rect());
        painter.end();
        QVERIFY2(painted.constLast() == expected, qPrintable(icons.at(part)));
        QCOMPARE(painted.count(expected), 1);
    }
}

void TestPdfPageManagerViewPainting::zoomButtonsShowTheirIcons()
{
    ShownGrid shown(a4Pages(1));
    const QList<std::pair<QString, QString>> icons{
        {QStringLiteral("pdfPageGridZoomOut"), QStringLiteral("zoom-out")},
        {QStringLiteral("pdfPageGridZoomIn"), QStringLiteral("zoom-in")}};
    QList<QImage> pictures;
    for (const auto &[name, icon] : icons) {
        const auto *button = shown.view.findChild<QToolButton *>(name);
        const QSize size = button->iconSize();
        pictures.append(button->icon().pixmap(size, 1.0).toImage());
        QVERIFY(!pictures.constLast().isNull());
        QCOMPARE(pictures.constLast(),
                 QIcon(QStringLiteral(":/res/icons/pdfviewer/%1.png").arg(icon))
                     .pixmap(size, 1.0)
                     .toImage());
    }
    QVERIFY(pictures.at(0) != pictures.at(1));
    const auto *in = shown.view.findChild<QToolButton *>(icons.at(1).first);
    const auto *out = shown.view.findChild<QToolButton *>(icons.at(0).first);
    // In every language.
    for (const Qt::LayoutDirection direction : {Qt::LeftToRight, Qt::RightToLeft}) {
        shown.view.setLayoutDirection(direction);
        QCoreApplication::processEvents();
        QVERIFY(out->x() < shown.slider->x() && shown.slider->x() < in->x());
        QCOMPARE(shown.slider->layoutDirection(), Qt::LeftToRight);
    }
    QCOMPARE(out->toolTip(), QStringLiteral("缩小"));
    QCOMPARE(in->toolTip(), QStringLiteral("放大"));
}

void TestPdfPageManagerViewPainting::zoomMovesTheHover()
{
    ShownGrid shown(a4Pages(12));
    const QPoint point = shown.cell(5).thumbnail.center();
    const auto look = [&shown](int row) {
        return shown.picture().pixelColor(shown.cell(row).card.topLeft() + QPoint(10, 10));
    };
    shown.moveTo(point);
    QCOMPARE(look(5), Theme::hover);
    // The pages become larger under a pointer that rests.
    shown.slider->setValue(160);
    QTRY_COMPARE(look(0), Theme::hover);
    QVERIFY(shown.list->visualRect(shown.model.index(0)).contains(point));
    QCOMPARE(look(1), Theme::white);
    shown.slider->setValue(80);
    QTRY_COMPARE(look(5), Theme::hover);
    QCOMPARE(look(0), Theme::white);
}

void TestPdfPageManagerViewPainting::whatChangesIsPaintedAnew_data()
{
    using Change = std::function<void(ShownGrid &)>;
    QTest::addColumn<Change>("change");
    QTest::newRow("mode") << Change(
        [](ShownGrid &shown) { shown.view.setWorkspaceMode(kInsertMode); });
    QTest::newRow("every page split")
        << Change([](ShownGrid &shown) { shown.view.setEveryPageSplit(true); });
    QTest::newRow("split point") << Change(
        [](ShownGrid &shown) { shown.press(shown.cell(2).splitZone.center()); });
    QTest::newRow("chosen page") << Change(
        [](ShownGrid &shown) { shown.model.setPageSelected(2, true); });
    QTest::newRow("all pages chosen") << Change([](ShownGrid &shown) { shown.model.selectAll(); });
    QTest::newRow("turned page") << Change(
        [](ShownGrid &shown) { shown.model.rotatePages({2}, 90); });
    QTest::newRow("model taken away")
        << Change([](ShownGrid &shown) { shown.view.setModel(nullptr); });
}

void TestPdfPageManagerViewPainting::whatChangesIsPaintedAnew()
{
    QFETCH(const std::function<void(ShownGrid &)>, change);
    ShownGrid shown(a4Pages(5));
    QTRY_COMPARE(shown.view.thumbnails().heldCount(), 5);
    shown.view.setWorkspaceMode(kSplitMode);
    QTest::qWait(50);
    const PaintCounter paints(shown.list->viewport());
    QCoreApplication::processEvents();
    QCOMPARE(paints.count(), 0);
    change(shown);
    QTRY_VERIFY(paints.count() > 0);
}

void TestPdfPageManagerViewPainting::pointerMovesOnTheSamePlaceRepaintNothing()
{
    ShownGrid shown(a4Pages(5));
    QTRY_COMPARE(shown.view.thumbnails().heldCount(), 5);
    const QPoint centre = shown.cell(1).thumbnail.center();
    shown.moveTo(centre);
    QTest::qWait(50);
    const PaintCounter paints(shown.list->viewport());
    for (int x = 0; x < 40; ++x) {
        shown.moveTo(centre + QPoint(x, 0));
        QCoreApplication::processEvents();
    }
    QCOMPARE(paints.count(), 0);
    shown.moveTo(shown.cell(2).thumbnail.center());
    QCoreApplication::processEvents();
    QCOMPARE(paints.count(), 1);
}

QTEST_MAIN(TestPdfPageManagerViewPainting)
#include "tst_pdf_page_manager_view_painting.moc"
