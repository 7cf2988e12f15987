// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/bars/pdf_tools_menu_style.h"
#include "pdf/viewer/bars/pdf_top_tool_bar.h"
#include "pdf/viewer/common/rounded_popup_menu.h"
#include "res/resources.h"
#include "tests/pdf/viewer/bars/tool_bar_probe.h"
#include "tests/support/menu_click.h"

#include <QImage>
#include <QMargins>
#include <QMenu>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <memory>
#include <utility>
#include <vector>

namespace {

constexpr QSize kBarSize{1600, 58};

} // namespace

/// The menus of the bar at the top of a viewer.
class TestPdfTopToolBarMenus final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void toolsMenuEntries();
    void toolsMenuAsks_data();
    void toolsMenuAsks();
    void toolsMenuOpensByItsButton();
    void toolsMenuHasLargeIcons();
    void moreMenuEntries();
    void moreMenuAsks_data();
    void moreMenuAsks();
    void moreMenuPopsUpRightAlignedUnderItsButton();
    void menuItemsHaveTheirSize_data();
    void menuItemsHaveTheirSize();
    void hoveredMenuItemIsTinted_data();
    void hoveredMenuItemIsTinted();
    void menusAreRounded();
    void maskFollowsTheSizeOfTheMenu();

private:
    [[nodiscard]] QPushButton *button(const char *name) const
    {
        return m_bar->findChild<QPushButton *>(QLatin1String(name));
    }
    [[nodiscard]] QMenu *menu(const char *name) const
    {
        return m_bar->findChild<QMenu *>(QLatin1String(name));
    }
    void chooseByMouse(QMenu *openMenu, const QString &text);

    std::unique_ptr<PdfTopToolBar> m_bar;
    std::unique_ptr<RequestLog> m_log;
};

void TestPdfTopToolBarMenus::initTestCase()
{
    initResources();
}

void TestPdfTopToolBarMenus::init()
{
    m_bar = std::make_unique<PdfTopToolBar>();
    m_log = std::make_unique<RequestLog>(m_bar.get());
    m_bar->resize(kBarSize);
    m_bar->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_bar.get()));
}

void TestPdfTopToolBarMenus::cleanup()
{
    m_log.reset();
    m_bar.reset();
}

void TestPdfTopToolBarMenus::chooseByMouse(QMenu *openMenu, const QString &text)
{
    const auto actions = openMenu->actions();
    for (QAction *action : actions) {
        if (action->text() == text) {
            clickMenuEntry(*openMenu, action);
            return;
        }
    }
    QFAIL("no such entry");
}

void TestPdfTopToolBarMenus::toolsMenuEntries()
{
    const QMenu *tools = menu("pdfToolsMenu");
    QCOMPARE(button("pdfToolsButton")->menu(), tools);
    const std::vector<std::pair<QString, QString>> expected{
        {QStringLiteral("压缩"), modernIcon("compress.png")},
        {QStringLiteral("PDF 转为 Office"), modernIcon("convert.png")},
        {QStringLiteral("PDF 转为图像"), modernIcon("image.png")},
        {QStringLiteral("加密 PDF"), modernIcon("encrypt.png")},
        {QStringLiteral("解锁 PDF"), modernIcon("decrypt.png")},
        {QStringLiteral("页面编号"), modernIcon("file-pdf.png")},
        {QString(), QString()},
        {QStringLiteral("插入"), modernIcon("add-file.png")},
        {QStringLiteral("提取"), modernIcon("open-file.png")},
        {QStringLiteral("拆分"), modernIcon("merge.png")},
    };
    const auto actions = tools->actions();
    QCOMPARE(static_cast<std::size_t>(actions.size()), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        const QAction *action = actions.at(static_cast<qsizetype>(i));
        const auto &[text, icon] = expected.at(i);
        QCOMPARE(action->text(), text);
        QCOMPARE(action->isSeparator(), text.isEmpty());
        QVERIFY(!action->isCheckable());
        QVERIFY(text.isEmpty() || showsIcon(action->icon(), icon, QSize(24, 24)));
    }
}

void TestPdfTopToolBarMenus::toolsMenuAsks_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("request");
    QTest::newRow("compress") << QStringLiteral("压缩") << QStringLiteral("compressRequested");
    QTest::newRow("office") << QStringLiteral("PDF 转为 Office")
                            << QStringLiteral("convertToOfficeRequested");
    QTest::newRow("images") << QStringLiteral("PDF 转为图像")
                            << QStringLiteral("convertToImagesRequested");
    QTest::newRow("encrypt") << QStringLiteral("加密 PDF") << QStringLiteral("encryptRequested");
    QTest::newRow("decrypt") << QStringLiteral("解锁 PDF") << QStringLiteral("decryptRequested");
    QTest::newRow("page numbers") << QStringLiteral("页面编号")
                                  << QStringLiteral("pageNumberRequested");
    QTest::newRow("insert") << QStringLiteral("插入") << QStringLiteral("insertModeRequested");
    QTest::newRow("extract") << QStringLiteral("提取") << QStringLiteral("extractModeRequested");
    QTest::newRow("split") << QStringLiteral("拆分") << QStringLiteral("splitModeRequested");
}

void TestPdfTopToolBarMenus::toolsMenuAsks()
{
    QFETCH(QString, text);
    QFETCH(QString, request);
    menu("pdfToolsMenu")->popup(m_bar->mapToGlobal(QPoint(0, 58)));
    QTRY_VERIFY(menu("pdfToolsMenu")->isVisible());
    chooseByMouse(menu("pdfToolsMenu"), text);
    QCOMPARE(m_log->take(), QStringList{request});
    QVERIFY(!menu("pdfToolsMenu")->isVisible());
}

void TestPdfTopToolBarMenus::toolsMenuOpensByItsButton()
{
    bool opened = false;
    // How soon the menu comes up after the press differs between releases of Qt.
    QTimer look;
    connect(&look, &QTimer::timeout, this, [this, &opened] {
        opened = opened || menu("pdfToolsMenu")->isVisible();
        menu("pdfToolsMenu")->close();
    });
    look.start(1);
    QTest::mousePress(button("pdfToolsButton"), Qt::LeftButton);
    QTRY_VERIFY(opened);
    QCOMPARE(m_log->take(), QStringList());
}

void TestPdfTopToolBarMenus::toolsMenuHasLargeIcons()
{
    const QMenu *tools = menu("pdfToolsMenu");
    QCOMPARE(tools->style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, tools), 28);

    const PdfToolsMenuStyle style;
    QCOMPARE(style.pixelMetric(QStyle::PM_SmallIconSize), 28);
    for (const auto metric : {QStyle::PM_LargeIconSize, QStyle::PM_ButtonMargin,
                              QStyle::PM_MenuHMargin, QStyle::PM_ToolBarIconSize}) {
        QCOMPARE(style.pixelMetric(metric), style.baseStyle()->pixelMetric(metric));
    }
    const QMenu *more = menu("pdfMoreMenu");
    QVERIFY(more->style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, more) != 28);
}

void TestPdfTopToolBarMenus::moreMenuEntries()
{
    const std::vector<std::pair<QString, QString>> expected{
        {QStringLiteral("保存文件"), modernIcon("save.png")},
        {QStringLiteral("将文件保存为…"), modernIcon("save-as.png")},
        {QStringLiteral("打印"), modernIcon("print.png")},
        {QStringLiteral("在文件夹中显示"), modernIcon("folder.png")},
    };
    const auto actions = menu("pdfMoreMenu")->actions();
    QCOMPARE(static_cast<std::size_t>(actions.size()), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        const QAction *action = actions.at(static_cast<qsizetype>(i));
        QCOMPARE(action->text(), expected.at(i).first);
        QVERIFY(!action->isCheckable());
        QVERIFY(showsIcon(action->icon(), expected.at(i).second, QSize(16, 16)));
    }
}

void TestPdfTopToolBarMenus::moreMenuAsks_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("request");
    QTest::newRow("save") << QStringLiteral("保存文件") << QStringLiteral("saveRequested");
    QTest::newRow("save as") << QStringLiteral("将文件保存为…")
                             << QStringLiteral("saveAsRequested");
    QTest::newRow("print") << QStringLiteral("打印") << QStringLiteral("printRequested");
    QTest::newRow("reveal") << QStringLiteral("在文件夹中显示")
                            << QStringLiteral("revealInFolderRequested");
}

void TestPdfTopToolBarMenus::moreMenuAsks()
{
    QFETCH(QString, text);
    QFETCH(QString, request);
    QTest::mouseClick(button("pdfMoreButton"), Qt::LeftButton);
    QTRY_VERIFY(menu("pdfMoreMenu")->isVisible());
    chooseByMouse(menu("pdfMoreMenu"), text);
    QCOMPARE(m_log->take(), QStringList{request});
    QVERIFY(!menu("pdfMoreMenu")->isVisible());
}

void TestPdfTopToolBarMenus::moreMenuPopsUpRightAlignedUnderItsButton()
{
    m_bar->resize(700, 58);
    m_bar->move(0, 0);
    const QPushButton *more = button("pdfMoreButton");
    QTRY_VERIFY(more->geometry().right() < 700);
    QTest::mouseClick(button("pdfMoreButton"), Qt::LeftButton);
    QTRY_VERIFY(menu("pdfMoreMenu")->isVisible());
    const QPoint offset(more->width() - menu("pdfMoreMenu")->sizeHint().width(),
                        more->height() + 2);
    QCOMPARE(menu("pdfMoreMenu")->pos(), more->mapToGlobal(offset));
    menu("pdfMoreMenu")->close();
}

void TestPdfTopToolBarMenus::menuItemsHaveTheirSize_data()
{
    QTest::addColumn<QMargins>("paddings");
    QTest::addColumn<QMargins>("margins");
    QTest::addColumn<int>("minimumHeight");
    QTest::newRow("pdfToolsMenu") << QMargins(8, 3, 16, 3) << QMargins(5, 2, 5, 2) << 38;
    QTest::newRow("pdfMoreMenu") << QMargins(14, 0, 16, 0) << QMargins() << 34;
}

void TestPdfTopToolBarMenus::menuItemsHaveTheirSize()
{
    QFETCH(QMargins, paddings);
    QFETCH(QMargins, margins);
    QFETCH(int, minimumHeight);
    QMenu *tested = menu(QTest::currentDataTag());
    tested->popup(QPoint(0, 100));
    QTRY_VERIFY(tested->isVisible());
    const QSize least =
        QRect(0, 0, 210, minimumHeight).marginsAdded(paddings).marginsAdded(margins).size();
    int width = 0;
    const auto actions = tested->actions();
    for (QAction *action : actions) {
        const QSize size = tested->actionGeometry(action).size();
        width = size.width();
        if (action->isSeparator()) {
            QCOMPARE(size.height(), 5 + 1 + 5);
        } else {
            QCOMPARE(size.height(), least.height());
            QVERIFY2(size.width() >= least.width(), qPrintable(QString::number(size.width())));
        }
    }
    // The border and the padding of the menu.
    QCOMPARE(tested->width(), width + 2 * (1 + 7));
    tested->close();
}

void TestPdfTopToolBarMenus::hoveredMenuItemIsTinted_data()
{
    QTest::addColumn<int>("hovered");
    QTest::newRow("pdfToolsMenu") << 3;
    QTest::newRow("pdfMoreMenu") << 2;
}

void TestPdfTopToolBarMenus::hoveredMenuItemIsTinted()
{
    QFETCH(int, hovered);
    QMenu *tested = menu(QTest::currentDataTag());
    tested->popup(QPoint(0, 100));
    QTRY_VERIFY(tested->isVisible());
    const auto besideText = [tested](int row) {
        const QRect item = tested->actionGeometry(tested->actions().at(row));
        return tested->grab().toImage().pixelColor(item.right() - 12, item.center().y());
    };
    moveToMenuEntry(*tested, tested->actions().at(hovered));
    QTRY_COMPARE(besideText(hovered), QColor(0xEEF2FF));
    QCOMPARE(besideText(hovered - 1), QColor(0xFFFFFF));
    moveToMenuEntry(*tested, tested->actions().at(hovered - 1));
    QTRY_COMPARE(besideText(hovered - 1), QColor(0xEEF2FF));
    QCOMPARE(besideText(hovered), QColor(0xFFFFFF));
    tested->close();
}

void TestPdfTopToolBarMenus::menusAreRounded()
{
    for (const char *name : {"pdfToolsMenu", "pdfMoreMenu"}) {
        QMenu *tested = menu(name);
        QVERIFY(qobject_cast<RoundedPopupMenu *>(tested));
        QVERIFY(tested->windowFlags().testFlag(Qt::FramelessWindowHint));
        QVERIFY(tested->testAttribute(Qt::WA_TranslucentBackground));
        tested->popup(QPoint(0, 100));
        QTRY_VERIFY(tested->isVisible());
        const QRegion mask = tested->mask();
        const int right = tested->width() - 1;
        const int bottom = tested->height() - 1;
        for (const QPoint &corner : {QPoint(0, 0), QPoint(right, 0), QPoint(0, bottom),
                                     QPoint(right, bottom), QPoint(1, 1)}) {
            QVERIFY(!mask.contains(corner));
        }
        for (const QPoint &edge : {QPoint(8, 0), QPoint(0, 8), QPoint(right, bottom / 2),
                                   QPoint(right / 2, bottom), QPoint(3, 3)}) {
            QVERIFY(mask.contains(edge));
        }
        QCOMPARE(tested->grab().toImage().pixelColor(0, 0).alpha(), 0);
        tested->close();
    }
}

void TestPdfTopToolBarMenus::maskFollowsTheSizeOfTheMenu()
{
    RoundedPopupMenu rounded;
    rounded.addAction(QStringLiteral("one"));
    QVERIFY(rounded.mask().isEmpty());
    rounded.popup(QPoint(0, 0));
    QTRY_VERIFY(rounded.isVisible());
    QCOMPARE(rounded.mask().boundingRect(), rounded.rect());
    rounded.resize(rounded.size() + QSize(40, 30));
    QTRY_COMPARE(rounded.mask().boundingRect(), rounded.rect());
    rounded.close();
}

QTEST_MAIN(TestPdfTopToolBarMenus)
#include "tst_pdf_top_tool_bar_menus.moc"
