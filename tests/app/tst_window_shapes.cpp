// SPDX-License-Identifier: AGPL-3.0-or-later
#include "app/frameless_window.h"
#include "app/language_dialog.h"
#include "app/startup.h"
#include "pdf/viewer/bars/pdf_bottom_control_bar.h"
#include "pdf/viewer/bars/pdf_top_tool_bar.h"
#include "res/resources.h"
#include "tools/file_location_selector.h"
#include "widgets/desktop_translucency.h"
#include "widgets/modern_message_box.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QMenu>
#include <QTest>
#include <QTimer>
#include <QToolTip>

#include <cmath>
#include <functional>

namespace {

using Check = std::function<void(QWidget &window)>;

MessageBoxOptions someOptions()
{
    MessageBoxOptions options;
    options.title = QStringLiteral("title");
    options.message = QStringLiteral("message");
    return options;
}

void withMessageBox(const Check &check)
{
    ModernMessageBox box(someOptions());
    box.show();
    check(box);
}

void withLanguageDialog(const Check &check)
{
    LanguageDialog dialog;
    dialog.show();
    check(dialog);
}

void withZoomList(const Check &check)
{
    PdfBottomControlBar bar;
    bar.show();
    auto *box = bar.findChild<QComboBox *>();
    box->showPopup();
    check(*box->view()->window());
    box->hidePopup();
}

void withMoreMenu(const Check &check)
{
    PdfTopToolBar bar;
    bar.show();
    auto *menu = bar.findChild<QMenu *>(QStringLiteral("pdfMoreMenu"));
    menu->popup({100, 100});
    check(*menu);
    menu->close();
}

void withLocationMenu(const Check &check)
{
    FileLocationSelector selector;
    selector.show();
    bool opened = false;
    QTimer::singleShot(0, &selector, [&] {
        QWidget *menu = QApplication::activePopupWidget();
        QVERIFY(menu != nullptr);
        opened = true;
        check(*menu);
        menu->close();
    });
    selector.click();
    QVERIFY(opened);
}

QLabel *shownToolTip()
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget *window : windows) {
        if (window->inherits("QTipLabel") && window->isVisible()) {
            return qobject_cast<QLabel *>(window);
        }
    }
    return nullptr;
}

void withToolTip(const Check &check)
{
    QWidget owner;
    owner.resize(200, 200);
    owner.show();
    QToolTip::showText(owner.mapToGlobal(QPoint(10, 10)), QStringLiteral("撤销"), &owner);
    QVERIFY(shownToolTip() != nullptr);
    check(*shownToolTip());
    QToolTip::hideText();
    QTRY_VERIFY(shownToolTip() == nullptr);
}

void withMainWindow(const Check &check)
{
    FramelessWindow window;
    auto *content = new QWidget;
    content->setAutoFillBackground(true);
    window.setContentWidget(content);
    window.resize(940, 600);
    window.show();
    check(window);
}

/// The window on a transparent ground, whether the desktop would show that part of it or not.
QImage picture(QWidget &window, double scale)
{
    QImage image((QSizeF(window.size()) * scale).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(scale);
    image.fill(Qt::transparent);
    window.render(&image, {}, {}, QWidget::DrawChildren | QWidget::IgnoreMask);
    return image;
}

/// Device pixels in the mask of the window that something behind the window would be seen through.
int transparentPixels(QWidget &window, double scale)
{
    const QRegion mask = window.mask();
    const QImage image = picture(window, scale);
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QPoint place(static_cast<int>((x + 0.5) / scale),
                               static_cast<int>((y + 0.5) / scale));
            const bool isSeen = mask.isEmpty() || mask.contains(place);
            count += isSeen && image.pixelColor(x, y).alpha() < 255 ? 1 : 0;
        }
    }
    return count;
}

} // namespace

/// The windows that are no rectangles, on desktops with translucency and without.
class TestWindowShapes final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup() { DesktopTranslucency::pretend(std::nullopt); }

    void withoutTranslucencyOnlyTheShapeIsSeen_data() { addWindows(); }
    void withoutTranslucencyOnlyTheShapeIsSeen();
    void withTranslucencyCornersAndShadowStay_data() { addWindows(); }
    void withTranslucencyCornersAndShadowStay();
    void shapeIsChosenAtEachShow();
    void shapeFollowsTheSize();
    void cornersOfTheShapeAreAlike();
    void toolTipIsAsLargeAsItsTextAndPadding();

private:
    static void addWindows();
};

void TestWindowShapes::initTestCase()
{
    initResources();
    Startup::setAppearance();
}

void TestWindowShapes::addWindows()
{
    using Opener = std::function<void(const Check &)>;
    QTest::addColumn<Opener>("open");
    QTest::addColumn<int>("margin");
    QTest::addColumn<bool>("alwaysMasked");
    QTest::newRow("message box") << Opener(withMessageBox) << 20 << false;
    QTest::newRow("language dialog") << Opener(withLanguageDialog) << 20 << false;
    QTest::newRow("zoom list") << Opener(withZoomList) << 0 << false;
    QTest::newRow("more menu") << Opener(withMoreMenu) << 0 << true;
    QTest::newRow("location menu") << Opener(withLocationMenu) << 0 << false;
    QTest::newRow("tool tip") << Opener(withToolTip) << 0 << false;
    QTest::newRow("main window") << Opener(withMainWindow) << 0 << true;
}

void TestWindowShapes::withoutTranslucencyOnlyTheShapeIsSeen()
{
    QFETCH(std::function<void(const Check &)>, open);
    QFETCH(int, margin);
    DesktopTranslucency::pretend(false);
    open([margin](QWidget &window) {
        const QRect shape = window.rect().adjusted(margin, margin, -margin, -margin);
        QCOMPARE(window.mask().boundingRect(), shape);
        for (const QPoint &corner :
             {shape.topLeft(), shape.topRight(), shape.bottomLeft(), shape.bottomRight()}) {
            QVERIFY(!window.mask().contains(corner));
        }
        for (const double scale : {1.0, 1.5, 2.0}) {
            QCOMPARE(transparentPixels(window, scale), 0);
        }
    });
}

void TestWindowShapes::withTranslucencyCornersAndShadowStay()
{
    QFETCH(std::function<void(const Check &)>, open);
    QFETCH(int, margin);
    QFETCH(bool, alwaysMasked);
    DesktopTranslucency::pretend(true);
    open([=](QWidget &window) {
        QCOMPARE(window.mask().isEmpty(), !alwaysMasked);
        QVERIFY(window.testAttribute(Qt::WA_TranslucentBackground));
        const QImage image = picture(window, 1.0);
        QCOMPARE(image.pixelColor(0, 0).alpha(), 0);
        if (margin > 0) {
            const int shadow = image.pixelColor(image.width() / 2, image.height() - 10).alpha();
            QVERIFY(shadow > 0 && shadow < 128);
        }
    });
}

void TestWindowShapes::shapeIsChosenAtEachShow()
{
    ModernMessageBox box(someOptions());
    for (const bool translucent : {false, true, false}) {
        DesktopTranslucency::pretend(translucent);
        box.show();
        QCOMPARE(box.mask().isEmpty(), translucent);
        QCOMPARE(picture(box, 1.0).pixelColor(box.width() / 2, 2).alpha() == 255, !translucent);
        box.hide();
    }
}

void TestWindowShapes::shapeFollowsTheSize()
{
    DesktopTranslucency::pretend(false);
    ModernMessageBox box(someOptions());
    box.show();
    box.resize(box.size() + QSize(40, 30));
    QCOMPARE(box.mask().boundingRect(), box.rect().adjusted(20, 20, -20, -20));
}

void TestWindowShapes::cornersOfTheShapeAreAlike()
{
    DesktopTranslucency::pretend(false);
    ModernMessageBox box(someOptions());
    box.show();
    constexpr int kRadius = 18;
    const QRect shape = box.mask().boundingRect();
    for (int y = 0; y < kRadius; ++y) {
        for (int x = 0; x < kRadius; ++x) {
            const bool isSeen = box.mask().contains(shape.topLeft() + QPoint(x, y));
            QCOMPARE(box.mask().contains(shape.topRight() + QPoint(-x, y)), isSeen);
            QCOMPARE(box.mask().contains(shape.bottomLeft() + QPoint(x, -y)), isSeen);
            QCOMPARE(box.mask().contains(shape.bottomRight() - QPoint(x, y)), isSeen);
            const double distance = std::hypot(kRadius - x - 0.5, kRadius - y - 0.5);
            QVERIFY(distance < kRadius + 0.8 ? isSeen || distance > kRadius - 0.8 : !isSeen);
        }
    }
}

void TestWindowShapes::toolTipIsAsLargeAsItsTextAndPadding()
{
    QWidget owner;
    owner.resize(200, 200);
    owner.show();
    constexpr QSize kPadding(2 * 10, 2 * 6);
    // The second one takes over the window of the first.
    for (const QString &text : {QStringLiteral("撤销"), QStringLiteral("Rückgängig")}) {
        QToolTip::showText(owner.mapToGlobal(QPoint(10, 10)), text, &owner);
        const QLabel *toolTip = shownToolTip();
        QVERIFY(toolTip != nullptr);
        QCOMPARE(toolTip->text(), text);
        const QSize least = toolTip->fontMetrics().size(0, text) + kPadding;
        const QSize most = least + QSize(4, 2);
        const QSize size = toolTip->size();
        QVERIFY2(size == size.expandedTo(least) && size == size.boundedTo(most),
                 qPrintable(QStringLiteral("%1 x %2").arg(size.width()).arg(size.height())));
    }
    QToolTip::hideText();
}

QTEST_MAIN(TestWindowShapes)
#include "tst_window_shapes.moc"
