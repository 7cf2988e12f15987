// SPDX-License-Identifier: AGPL-3.0-or-later
#include "res/resources.h"
#include "tests/support/dialog_answers.h"
#include "tests/widgets/control_test.h"
#include "widgets/combo_popup.h"
#include "widgets/desktop_translucency.h"
#include "widgets/modern_combo_box.h"

#include <QListWidget>
#include <QScreen>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTimer>

namespace {

const QString kCaption = QStringLiteral("选择位置...");
constexpr int kLocationRole = Qt::UserRole + 4;
constexpr int kTextRole = Qt::UserRole + 1;

/// A window with a box in the middle of the screen, with the items "A", "B", "C".
struct Scene
{
    explicit Scene(bool opensUpwards = false)
        : box(new ModernComboBox(&window, opensUpwards))
    {
        for (const QChar letter : QStringLiteral("ABC")) {
            box->addItem(letter);
        }
        box->setCurrentItem(box->item(0));
        window.setGeometry(QRect(QPoint(), QSize(300, 100)));
        window.move(QGuiApplication::primaryScreen()->availableGeometry().center());
        box->setGeometry(20, 20, 200, 42);
        window.show();
    }

    /// Adds the item for a folder of the user's choice.
    QListWidgetItem *addCustom() const
    {
        QListWidgetItem *item = box->addItem(kCaption, {}, true);
        item->setData(kLocationRole, 3);
        return item;
    }

    [[nodiscard]] ComboPopup &popup() const { return *box->popup(); }
    [[nodiscard]] QListWidget &list() const { return *box->popup()->list(); }

    void clickItem(int index) const
    {
        QTest::mouseClick(list().viewport(), Qt::LeftButton, {},
                          list().visualItemRect(box->item(index)).center());
    }

    QWidget window;
    ModernComboBox *box;
};

} // namespace

/// The drop-down box and its list.
class TestModernComboBox final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { initResources(); }
    void cleanup() { DesktopTranslucency::pretend({}); }
    void hasItsSizeAndFont();
    void lastAddedItemIsCurrent();
    void itemsCarryTheirRoles();
    void settingTheCurrentItemIsSilent();
    void currentItemFollowsTheList();
    void emptyBoxOpensNothing();
    void listStandsBelow();
    void listStandsAboveWhereAsked();
    void listStaysOnTheScreen_data();
    void listStaysOnTheScreen();
    void shortListOpensUpwardsNearTheTop();
    void frameIsAsHighAsItsItems();
    void longListScrolls();
    void pressOnTheOpenBoxClosesTheList();
    void closingClickIsNotRepeatedToTheBox();
    void clickBesideTheFrameClosesTheList();
    void clickChoosesAnItem();
    void chosenItemIsReportedAgain();
    void arrowsAndEnterChoose();
    void escapeLeavesTheChoice();
    void listHidesWithItsWindow_data();
    void listHidesWithItsWindow();
    void listHidesWithoutFocus();
    void customItemAsksForAFolder();
    void cancelledDialogKeepsTheCaption();
    void otherItemResetsTheCustomOne();
    void onlyTheCustomItemIsReset();
    void itemMayGoWhileTheDialogIsOpen();
    void looksOfTheBox();
    void boxShowsTextIconAndArrow();
    void boxIsMirrored();
    void boxElidesLongTexts();
    void boxFitsItsItems();
    void cornersAreCutWithoutTranslucency();
    void listPaintsItsFrame();
};

void TestModernComboBox::hasItsSizeAndFont()
{
    const ModernComboBox box;
    QCOMPARE(box.minimumHeight(), 42);
    QCOMPARE(box.maximumHeight(), 42);
    QCOMPARE(box.cursor().shape(), Qt::PointingHandCursor);
    QCOMPARE(box.focusPolicy(), Qt::NoFocus);
    QCOMPARE(box.font().pixelSize(), 14);
    QCOMPARE(box.font().families(), QStringList{QStringLiteral("Arial")});
    QCOMPARE(box.currentIndex(), -1);
    QVERIFY(box.currentItem() == nullptr);
}

void TestModernComboBox::lastAddedItemIsCurrent()
{
    ModernComboBox box;
    const QSignalSpy changed(&box, &ModernComboBox::currentIndexChanged);
    box.addItem(QStringLiteral("A4"));
    const QListWidgetItem *last = box.addItem(QStringLiteral("Letter(US)"));
    QCOMPARE(box.count(), 2);
    QCOMPARE(box.currentIndex(), 1);
    QVERIFY(box.currentItem() == last);
    QCOMPARE(changed.count(), 0);
}

void TestModernComboBox::itemsCarryTheirRoles()
{
    ModernComboBox box;
    QPixmap red(20, 20);
    red.fill(Qt::red);
    const QListWidgetItem *item = box.addItem(QStringLiteral("A4"), QIcon(red));
    QCOMPARE(item->text(), QStringLiteral("A4"));
    QVERIFY(!item->icon().isNull());
    QVERIFY(!item->data(Qt::UserRole).value<QIcon>().isNull());
    QCOMPARE(item->data(Qt::UserRole + 1).toString(), QStringLiteral("A4"));
    QVERIFY(box.item(0) == item);
    QVERIFY(box.item(1) == nullptr);
}

void TestModernComboBox::settingTheCurrentItemIsSilent()
{
    const Scene scene;
    const QSignalSpy changed(scene.box, &ModernComboBox::currentIndexChanged);
    scene.box->setCurrentItem(scene.box->item(1));
    QCOMPARE(scene.box->currentIndex(), 1);
    QCOMPARE(scene.box->accessibleName(), QStringLiteral("B"));
    QCOMPARE(changed.count(), 0);
    scene.box->setCurrentItem(nullptr);
    QCOMPARE(scene.box->currentIndex(), -1);
}

void TestModernComboBox::currentItemFollowsTheList()
{
    const Scene scene;
    scene.box->setCurrentItem(scene.box->item(2));
    delete scene.box->item(0);
    QCOMPARE(scene.box->currentIndex(), 1);
    QCOMPARE(scene.box->currentItem()->text(), QStringLiteral("C"));
    delete scene.box->item(1);
    QVERIFY(scene.box->currentItem() == nullptr);
    QCOMPARE(scene.box->currentIndex(), -1);
}

void TestModernComboBox::emptyBoxOpensNothing()
{
    ModernComboBox box;
    box.show();
    QTest::mousePress(&box, Qt::LeftButton);
    QVERIFY(!box.popup()->isVisible());
    box.onItemClicked(nullptr);
    QCOMPARE(box.currentIndex(), -1);
}

void TestModernComboBox::listStandsBelow()
{
    const Scene scene;
    QTest::mousePress(scene.box, Qt::LeftButton);
    QVERIFY(scene.popup().isVisible());
    QCOMPARE(scene.popup().pos(), scene.box->mapToGlobal(QPoint(0, 42 + 8)));
    QCOMPARE(scene.popup().width(), scene.box->width());
    QCOMPARE(scene.popup().frameRect().top(), 0);
    scene.popup().hide();
    // A panel may have made the box higher.
    scene.box->setFixedHeight(48);
    scene.box->resize(240, 48);
    QTest::mousePress(scene.box, Qt::LeftButton);
    QCOMPARE(scene.popup().pos(), scene.box->mapToGlobal(QPoint(0, 48 + 8)));
    QCOMPARE(scene.popup().width(), 240);
}

void TestModernComboBox::listStandsAboveWhereAsked()
{
    const Scene scene(true);
    QTest::mousePress(scene.box, Qt::LeftButton);
    QVERIFY(scene.popup().isVisible());
    QCOMPARE(scene.popup().pos(), scene.box->mapToGlobal(QPoint(0, -215)));
    // The frame ends eight pixels above the box.
    const QPoint end = scene.popup().mapToGlobal(scene.popup().frameRect().bottomLeft());
    QCOMPARE(end.y() + 1 + 8, scene.box->mapToGlobal(QPoint()).y());
}

void TestModernComboBox::listStaysOnTheScreen_data()
{
    QTest::addColumn<bool>("opensUpwards");
    QTest::addColumn<QPointF>("place");
    QTest::addColumn<bool>("above");
    // Places are parts of the screen.
    QTest::newRow("up at the top") << true << QPointF(0.5, 0.0) << false;
    QTest::newRow("down at the bottom") << false << QPointF(0.5, 0.9) << true;
    QTest::newRow("left edge") << true << QPointF(-0.1, 0.5) << true;
    QTest::newRow("right edge") << false << QPointF(0.9, 0.5) << false;
}

void TestModernComboBox::listStaysOnTheScreen()
{
    QFETCH(bool, opensUpwards);
    QFETCH(QPointF, place);
    QFETCH(bool, above);
    const QRect available = QGuiApplication::primaryScreen()->availableGeometry();
    Scene scene(opensUpwards);
    scene.window.move(available.left() + qRound(available.width() * place.x()),
                      available.top() + qRound(available.height() * place.y()));
    QTest::mousePress(scene.box, Qt::LeftButton);
    QVERIFY(available.contains(scene.popup().geometry()));
    const bool isAbove = scene.popup().y() < scene.box->mapToGlobal(QPoint()).y();
    QCOMPARE(isAbove, above);
    QCOMPARE(scene.popup().frameRect().bottom() == scene.popup().rect().bottom(), above);
}

void TestModernComboBox::shortListOpensUpwardsNearTheTop()
{
    Scene scene(true);
    const QRect available = QGuiApplication::primaryScreen()->availableGeometry();
    // There is room for its three items, though not for a long list.
    scene.window.move(available.left() + 100, available.top() + 150);
    QTest::mousePress(scene.box, Qt::LeftButton);
    QVERIFY(scene.popup().y() < available.top());
    const QRect frame = scene.popup().frameRect().translated(scene.popup().pos());
    QVERIFY(available.contains(frame));
    QCOMPARE(frame.bottom() + 1, scene.box->mapToGlobal(QPoint()).y() - 8);
}

void TestModernComboBox::frameIsAsHighAsItsItems()
{
    Scene scene(true);
    QTest::mousePress(scene.box, Qt::LeftButton);
    QCOMPARE(scene.popup().height(), 207);
    const QRect frame = scene.popup().frameRect();
    QVERIFY(frame.height() < 207);
    QCOMPARE(frame.bottom(), 206);
    QVERIFY(!scene.list().verticalScrollBar()->isVisible());
    for (int row = 0; row < 3; ++row) {
        const QRect item = scene.list().visualItemRect(scene.box->item(row));
        QVERIFY(scene.list().viewport()->rect().contains(item));
    }
    // What is beside the frame is transparent.
    const QImage image = ControlTest::imageOf(scene.popup());
    QCOMPARE(image.pixelColor(100, 10), ControlTest::kBackground);
    QCOMPARE(image.pixelColor(100, frame.top()), Theme::border);
}

void TestModernComboBox::longListScrolls()
{
    const Scene scene(true);
    for (int index = 0; index < 20; ++index) {
        scene.box->addItem(QString::number(index));
    }
    QTest::mousePress(scene.box, Qt::LeftButton);
    QCOMPARE(scene.popup().height(), 207);
    QCOMPARE(scene.popup().frameRect().height(), 207);
    QTRY_VERIFY(scene.list().verticalScrollBar()->isVisible());
    // The current item is in view.
    QVERIFY(scene.list().viewport()->rect().intersects(
        scene.list().visualItemRect(scene.box->currentItem())));
}

void TestModernComboBox::pressOnTheOpenBoxClosesTheList()
{
    const Scene scene;
    QTest::mouseClick(scene.box, Qt::LeftButton);
    QVERIFY(scene.popup().isVisible());
    QVERIFY(!scene.box->isDown());
    QTest::mouseClick(scene.box, Qt::LeftButton);
    QVERIFY(!scene.popup().isVisible());
    QTest::mouseClick(scene.box, Qt::LeftButton);
    QVERIFY(scene.popup().isVisible());
}

void TestModernComboBox::closingClickIsNotRepeatedToTheBox()
{
    const Scene scene;
    QTest::mousePress(scene.box, Qt::LeftButton);
    // A click while a pop-up is open goes to the pop-up.
    const QPoint onBox = scene.popup().mapFromGlobal(scene.box->mapToGlobal(QPoint(5, 5)));
    QTest::mousePress(&scene.popup(), Qt::LeftButton, {}, onBox);
    QVERIFY(!scene.popup().isVisible());
    QVERIFY(scene.popup().testAttribute(Qt::WA_NoMouseReplay));

    scene.popup().setAttribute(Qt::WA_NoMouseReplay, false);
    QTest::mousePress(scene.box, Qt::LeftButton);
    QTest::mousePress(&scene.popup(), Qt::LeftButton, {}, {-50, -100});
    QVERIFY(!scene.popup().isVisible());
    QVERIFY(!scene.popup().testAttribute(Qt::WA_NoMouseReplay));
}

void TestModernComboBox::clickBesideTheFrameClosesTheList()
{
    const Scene scene(true);
    QTest::mousePress(scene.box, Qt::LeftButton);
    const QRect frame = scene.popup().frameRect();
    QTest::mousePress(&scene.popup(), Qt::LeftButton, {}, frame.topLeft() + QPoint(50, 2));
    QVERIFY(scene.popup().isVisible());
    QTest::mousePress(&scene.popup(), Qt::LeftButton, {}, frame.topLeft() + QPoint(50, -5));
    QVERIFY(!scene.popup().isVisible());
}

void TestModernComboBox::clickChoosesAnItem()
{
    const Scene scene;
    const QSignalSpy changed(scene.box, &ModernComboBox::currentIndexChanged);
    QTest::mousePress(scene.box, Qt::LeftButton);
    scene.clickItem(2);
    QVERIFY(!scene.popup().isVisible());
    QCOMPARE(changed.count(), 1);
    QCOMPARE(changed.at(0).at(0).toInt(), 2);
    QCOMPARE(scene.box->currentIndex(), 2);
    QVERIFY(scene.box->currentItem() == scene.box->item(2));
}

void TestModernComboBox::chosenItemIsReportedAgain()
{
    const Scene scene;
    const QSignalSpy changed(scene.box, &ModernComboBox::currentIndexChanged);
    scene.box->onItemClicked(scene.box->item(0));
    scene.box->onItemClicked(scene.box->item(0));
    QCOMPARE(changed.count(), 2);
}

void TestModernComboBox::arrowsAndEnterChoose()
{
    const Scene scene;
    const QSignalSpy changed(scene.box, &ModernComboBox::currentIndexChanged);
    for (const auto key : {Qt::Key_Return, Qt::Key_Enter}) {
        scene.box->setCurrentItem(scene.box->item(0));
        QTest::mousePress(scene.box, Qt::LeftButton);
        QTest::keyClick(&scene.list(), Qt::Key_Down);
        QTest::keyClick(&scene.list(), Qt::Key_Down);
        QTest::keyClick(&scene.list(), Qt::Key_Up);
        QCOMPARE(scene.box->currentIndex(), 0);
        QTest::keyClick(&scene.list(), key);
        QCOMPARE(scene.box->currentIndex(), 1);
        QVERIFY(!scene.popup().isVisible());
    }
    QCOMPARE(changed.count(), 2);
}

void TestModernComboBox::escapeLeavesTheChoice()
{
    const Scene scene;
    const QSignalSpy changed(scene.box, &ModernComboBox::currentIndexChanged);
    QTest::mousePress(scene.box, Qt::LeftButton);
    QTest::keyClick(&scene.list(), Qt::Key_Down);
    QTest::keyClick(&scene.list(), Qt::Key_Escape);
    QVERIFY(!scene.popup().isVisible());
    QCOMPARE(scene.box->currentIndex(), 0);
    QCOMPARE(changed.count(), 0);
    // The list starts with the choice again.
    QTest::mousePress(scene.box, Qt::LeftButton);
    QVERIFY(scene.list().currentItem() == scene.box->item(0));
    QTest::keyClick(&scene.popup(), Qt::Key_Escape);
    QVERIFY(!scene.popup().isVisible());
}

void TestModernComboBox::listHidesWithItsWindow_data()
{
    QTest::addColumn<QEvent::Type>("type");
    QTest::newRow("moved") << QEvent::Move;
    QTest::newRow("resized") << QEvent::Resize;
    QTest::newRow("deactivated") << QEvent::WindowDeactivate;
    QTest::newRow("hidden") << QEvent::Hide;
}

void TestModernComboBox::listHidesWithItsWindow()
{
    QFETCH(QEvent::Type, type);
    Scene scene;
    QTest::mousePress(scene.box, Qt::LeftButton);
    QVERIFY(scene.popup().isVisible());
    switch (type) {
    case QEvent::Move:
        scene.window.move(scene.window.pos() + QPoint(9, 9));
        break;
    case QEvent::Resize:
        scene.window.resize(scene.window.size() + QSize(9, 9));
        break;
    case QEvent::Hide:
        scene.window.hide();
        break;
    default: {
        QEvent event(type);
        QCoreApplication::sendEvent(&scene.window, &event);
    }
    }
    QTRY_VERIFY(!scene.popup().isVisible());
}

void TestModernComboBox::listHidesWithoutFocus()
{
    const Scene scene;
    for (QWidget *holder : std::initializer_list<QWidget *>{&scene.list(), &scene.popup()}) {
        QTest::mousePress(scene.box, Qt::LeftButton);
        QVERIFY(scene.popup().isVisible());
        QFocusEvent out(QEvent::FocusOut, Qt::OtherFocusReason);
        QCoreApplication::sendEvent(holder, &out);
        QVERIFY(!scene.popup().isVisible());
    }
}

void TestModernComboBox::customItemAsksForAFolder()
{
    const QTemporaryDir folder;
    const Scene scene;
    scene.addCustom();
    const QSignalSpy changed(scene.box, &ModernComboBox::currentIndexChanged);
    DialogAnswers answers;
    answers.addFiles({folder.path()});
    scene.box->onItemClicked(scene.box->item(3));
    QCOMPARE(answers.fileDialogs().size(), 1);
    QCOMPARE(answers.fileDialogs().at(0).title, QStringLiteral("选择文件夹"));
    QCOMPARE(answers.fileDialogs().at(0).mode, QFileDialog::Directory);
    QCOMPARE(QDir(answers.fileDialogs().at(0).folder), QDir::home());
    QCOMPARE(scene.box->item(3)->data(kTextRole).toString(), folder.path());
    QCOMPARE(scene.box->item(3)->text(), kCaption);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(changed.at(0).at(0).toInt(), 3);
    QCOMPARE(scene.box->toolTip(), QDir::toNativeSeparators(folder.path()));
    QCOMPARE(scene.box->accessibleName(), QDir::toNativeSeparators(folder.path()));
}

void TestModernComboBox::cancelledDialogKeepsTheCaption()
{
    const Scene scene;
    const QListWidgetItem *custom = scene.addCustom();
    const QSignalSpy changed(scene.box, &ModernComboBox::currentIndexChanged);
    const DialogAnswers answers;
    scene.box->onItemClicked(scene.box->item(3));
    QCOMPARE(answers.fileDialogs().size(), 1);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(changed.at(0).at(0).toInt(), 3);
    QCOMPARE(custom->data(kTextRole).toString(), kCaption);
    QVERIFY(scene.box->currentItem() == custom);
    QCOMPARE(scene.box->toolTip(), QString());
    QCOMPARE(scene.box->accessibleName(), kCaption);
}

void TestModernComboBox::otherItemResetsTheCustomOne()
{
    const Scene scene;
    QListWidgetItem *custom = scene.addCustom();
    custom->setData(kTextRole, QStringLiteral("/somewhere"));
    QCOMPARE(scene.box->toolTip(), QDir::toNativeSeparators(QStringLiteral("/somewhere")));
    scene.box->onItemClicked(scene.box->item(1));
    QCOMPARE(custom->data(kTextRole).toString(), kCaption);
    QCOMPARE(scene.box->toolTip(), QString());
    QCOMPARE(scene.box->accessibleName(), QStringLiteral("B"));
}

void TestModernComboBox::onlyTheCustomItemIsReset()
{
    const Scene scene;
    scene.box->onItemClicked(scene.box->item(1));
    for (int index = 0; index < 3; ++index) {
        QCOMPARE(scene.box->item(index)->data(kTextRole).toString(),
                 scene.box->item(index)->text());
    }
}

void TestModernComboBox::itemMayGoWhileTheDialogIsOpen()
{
    const QTemporaryDir folder;
    const Scene scene;
    scene.addCustom();
    QTimer::singleShot(0, scene.box, [&] { delete scene.box->item(3); });
    DialogAnswers answers;
    answers.addFiles({folder.path()});
    scene.box->onItemClicked(scene.box->item(3));
    QCOMPARE(answers.fileDialogs().size(), 1);
    QCOMPARE(scene.box->count(), 3);
    QCOMPARE(scene.box->toolTip(), QString());
}

void TestModernComboBox::looksOfTheBox()
{
    Scene scene;
    const auto lineOf = [&] { return ControlTest::imageOf(*scene.box).pixelColor(1, 21); };
    QCOMPARE(lineOf(), Theme::border);
    QCOMPARE(ControlTest::imageOf(*scene.box).pixelColor(4, 21), QColor(Qt::white));
    QCOMPARE(ControlTest::imageOf(*scene.box, 2.0).pixelColor(3, 42), Theme::border);
    ControlTest::enter(*scene.box);
    QCOMPARE(lineOf(), Theme::textMuted);
    QTest::mousePress(scene.box, Qt::LeftButton);
    QCOMPARE(lineOf(), Theme::accent);
    scene.popup().hide();
    ControlTest::leave(*scene.box);
    QCOMPARE(lineOf(), Theme::border);
    scene.box->setEnabled(false);
    QCOMPARE(ControlTest::imageOf(*scene.box).pixelColor(4, 21), Theme::windowBackground);
}

void TestModernComboBox::boxShowsTextIconAndArrow()
{
    Scene scene;
    QPixmap red(20, 20);
    red.fill(Qt::red);
    const QImage plain = ControlTest::imageOf(*scene.box);
    QImage arrow(24, 24, QImage::Format_RGB32);
    arrow.fill(Qt::white);
    QPainter(&arrow).drawImage(0, 0, QImage(QStringLiteral(":/res/icons/modern/down.png")));
    QCOMPARE(plain.copy(200 - 12 - 24, 9, 24, 24), arrow);
    QVERIFY(ControlTest::hasInk(plain, {12, 10, 12, 22}, Theme::ink));
    scene.box->addItem(QStringLiteral("H"), QIcon(red));
    const QImage withIcon = ControlTest::imageOf(*scene.box);
    QVERIFY(ControlTest::isPlain(withIcon, {12, 11, 20, 20}, Qt::red));
    QVERIFY(ControlTest::hasInk(withIcon, {40, 10, 15, 22}, Theme::ink));
}

void TestModernComboBox::boxIsMirrored()
{
    Scene scene;
    QPixmap red(20, 20);
    red.fill(Qt::red);
    scene.box->addItem(QStringLiteral("H"), QIcon(red));
    scene.box->setLayoutDirection(Qt::RightToLeft);
    const QImage image = ControlTest::imageOf(*scene.box);
    QVERIFY(ControlTest::isPlain(image, {168, 11, 20, 20}, Qt::red));
    QVERIFY(ControlTest::hasInk(image, {145, 10, 16, 22}, Theme::ink));
    QVERIFY(!ControlTest::isPlain(image, {12, 9, 24, 24}, Qt::white));
}

void TestModernComboBox::boxElidesLongTexts()
{
    Scene scene;
    const QString text = QStringLiteral("HHHHHHHHHHHHHHHHHHHHHHHHHHHHHHHH");
    scene.box->addItem(text);
    QVERIFY(ControlTest::isPlain(ControlTest::imageOf(*scene.box), {157, 8, 10, 26}, Qt::white));
    QCOMPARE(ControlTest::toolTipOf(*scene.box), text);
    scene.box->resize(scene.box->sizeHint());
    QCOMPARE(ControlTest::toolTipOf(*scene.box), QString());
    // A path keeps its end.
    scene.box->resize(200, 42);
    QListWidgetItem *custom = scene.addCustom();
    custom->setData(kTextRole, QStringLiteral("/HHHHHHHHHHHHHHHHHHHHHHHHHHHHHHHH/a"));
    const QImage ending = ControlTest::imageOf(*scene.box);
    custom->setData(kTextRole, QStringLiteral("/HHHHHHHHHHHHHHHHHHHHHHHHHHHHHHHH/w"));
    QVERIFY(ControlTest::imageOf(*scene.box) != ending);
}

void TestModernComboBox::boxFitsItsItems()
{
    ModernComboBox box;
    box.addItem(QStringLiteral("HHHHHHHHHHHHHHHHHHHHHHHHHHHHHHHH"));
    const int wide = box.sizeHint().width();
    box.addItem(QStringLiteral("A"));
    QCOMPARE(box.sizeHint().width(), wide);
    QVERIFY(wide > 250);
}

void TestModernComboBox::cornersAreCutWithoutTranslucency()
{
    DesktopTranslucency::pretend(false);
    const Scene scene(true);
    QTest::mousePress(scene.box, Qt::LeftButton);
    const QRegion mask = scene.popup().mask();
    QVERIFY(!mask.isEmpty());
    QCOMPARE(mask.boundingRect(), scene.popup().frameRect());
    QVERIFY(!mask.contains(scene.popup().frameRect().topLeft()));
    scene.popup().hide();
    DesktopTranslucency::pretend(true);
    QTest::mousePress(scene.box, Qt::LeftButton);
    QVERIFY(scene.popup().mask().isEmpty());
}

void TestModernComboBox::listPaintsItsFrame()
{
    const Scene scene;
    QTest::mousePress(scene.box, Qt::LeftButton);
    QTest::mouseMove(&scene.popup(), {1, 1});
    const QRect frame = scene.popup().frameRect();
    const QImage image = ControlTest::imageOf(scene.popup());
    QCOMPARE(image.pixelColor(0, 0), ControlTest::kBackground);
    QCOMPARE(image.pixelColor(0, frame.center().y()), Theme::border);
    QCOMPARE(image.pixelColor(2, frame.center().y()), QColor(Qt::white));
    // The current item is tinted.
    const QRect item = scene.list().visualItemRect(scene.box->currentItem());
    const QPoint inItem = scene.list().viewport()->mapTo(&scene.popup(), item.center());
    QCOMPARE(image.pixelColor(frame.width() - 20, inItem.y()), Theme::accentTint);
}

QTEST_MAIN(TestModernComboBox)
#include "tst_modern_combo_box.moc"
