// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/bars/pdf_top_tool_bar.h"
#include "pdf/viewer/bars/tool_bar_button.h"
#include "res/resources.h"
#include "tests/pdf/signal_signatures.h"
#include "tests/pdf/viewer/bars/tool_bar_probe.h"

#include <QAbstractButton>
#include <QApplication>
#include <QHBoxLayout>
#include <QHelpEvent>
#include <QImage>
#include <QPushButton>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>
#include <QToolTip>

#include <memory>
#include <utility>

namespace {

constexpr int kWide = 1600;

/// Counts how often a widget was given another style.
class StyleChangeCounter final : public QObject
{
public:
    explicit StyleChangeCounter(QWidget *widget) { widget->installEventFilter(this); }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        m_count += event->type() == QEvent::StyleChange ? 1 : 0;
        return QObject::eventFilter(watched, event);
    }

    /// The changes since the last call.
    int take() { return std::exchange(m_count, 0); }

private:
    int m_count = 0;
};

} // namespace

class TestPdfTopToolBar final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void barItself();
    void signalsInOrder();
    void startsWithTheDocumentView();
    void buttons_data();
    void buttons();
    void buttonsTakeNoFocusAndShowAHand();
    void layoutFromLeftToRight();
    void pageEditingGroupFromLeftToRight();
    void colours();
    void toolTipsShowWithoutWarnings();

    void clickAsks_data();
    void clickAsks();
    void thumbnailButtonToggles();
    void handToolToggles();
    void selectAllTogglesWithItsCheckBox();
    void selectAllIsRestyledOnlyByAChange();
    void disabledButtonsAskForNothing();

    void viewModeShowsItsCommands();
    void viewButtonsExcludeEachOther();
    void workspaceModeChecksItsButton();
    void workspaceModeZeroUnchecksTheExclusiveGroup();
    void workspaceButtonsExcludeEachOther();
    void documentActionsAreEnabledTogether();
    void selectionActionsAreEnabledTogether();
    void undoAndRedoAreEnabledApart();
    void settingStatesEmitsNothing();

    void narrowBarLeavesOutTextsAndKeepsToolTips();
    void narrowBarStillShowsEverything();

private:
    [[nodiscard]] QPushButton *button(const char *name) const
    {
        return m_bar->findChild<QPushButton *>(QLatin1String(name));
    }
    [[nodiscard]] bool isEnabledAndShown(const char *name) const
    {
        return button(name)->isEnabled() && button(name)->isVisible();
    }

    std::unique_ptr<PdfTopToolBar> m_bar;
    std::unique_ptr<RequestLog> m_log;
};

void TestPdfTopToolBar::initTestCase()
{
    initResources();
}

void TestPdfTopToolBar::init()
{
    m_bar = std::make_unique<PdfTopToolBar>();
    m_log = std::make_unique<RequestLog>(m_bar.get());
    m_bar->resize(kWide, 58);
    m_bar->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_bar.get()));
}

void TestPdfTopToolBar::cleanup()
{
    m_log.reset();
    m_bar.reset();
}

void TestPdfTopToolBar::barItself()
{
    QCOMPARE(m_bar->objectName(), QStringLiteral("pdfTopToolBar"));
    QCOMPARE(m_bar->minimumHeight(), 58);
    QCOMPARE(m_bar->sizeHint().height(), 58);
    QCOMPARE(m_bar->sizePolicy().horizontalPolicy(), QSizePolicy::Expanding);
    QCOMPARE(m_bar->sizePolicy().verticalPolicy(), QSizePolicy::Fixed);
}

void TestPdfTopToolBar::signalsInOrder()
{
    const QByteArrayList expected{
        "documentViewRequested()",
        "pageManageViewRequested()",
        "thumbnailToggled(bool)",
        "insertModeRequested()",
        "extractModeRequested()",
        "splitModeRequested()",
        "rotateLeftRequested()",
        "rotateRightRequested()",
        "deleteRequested()",
        "selectAllToggled(bool)",
        "handToolToggled(bool)",
        "undoRequested()",
        "redoRequested()",
        "searchRequested()",
        "saveRequested()",
        "saveAsRequested()",
        "printRequested()",
        "revealInFolderRequested()",
        "compressRequested()",
        "convertToOfficeRequested()",
        "convertToImagesRequested()",
        "encryptRequested()",
        "decryptRequested()",
        "pageNumberRequested()",
        "annotationActionRequested(QString)",
    };
    QCOMPARE(signalSignatures(*m_bar->metaObject()), expected);
}

void TestPdfTopToolBar::startsWithTheDocumentView()
{
    QVERIFY(button("pdfDocumentViewButton")->isChecked());
    QVERIFY(!button("pdfPageManageViewButton")->isChecked());
    QVERIFY(button("pdfThumbnailButton")->isChecked());
    QVERIFY(button("pdfThumbnailButton")->isVisible());
    QVERIFY(button("pdfHandToolButton")->isVisible());
    QVERIFY(!button("pdfHandToolButton")->isChecked());
    QVERIFY(!button("pdfInsertButton")->isVisible());
    for (const char *name : {"pdfUndoButton", "pdfRedoButton", "pdfRotateLeftButton",
                             "pdfRotateRightButton", "pdfDeleteButton"}) {
        QVERIFY2(!button(name)->isEnabled(), name);
    }
    QVERIFY(!button("pdfSelectAllButton")->isChecked());
}

void TestPdfTopToolBar::buttons_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("toolTip");
    QTest::addColumn<QString>("icon");
    QTest::addColumn<int>("iconExtent");
    QTest::addColumn<bool>("checkable");
    QTest::addColumn<QSize>("size");
    const QString none;
    const QSize any;
    QTest::newRow("pdfDocumentViewButton")
        << none << QStringLiteral("文档阅读视图") << viewerIcon("document-view.png") << 27 << true
        << QSize(48, 40);
    QTest::newRow("pdfPageManageViewButton")
        << none << QStringLiteral("页面管理视图") << viewerIcon("page-grid.png") << 27 << true
        << QSize(48, 40);
    QTest::newRow("pdfThumbnailButton")
        << none << QStringLiteral("显示或隐藏缩略图") << viewerIcon("thumbnail-panel.png") << 27
        << true << QSize(48, 42);
    QTest::newRow("pdfToolsButton")
        << QStringLiteral("工具") << QStringLiteral("PDF 工具") << viewerIcon("tools-grid.png")
        << 27 << false << QSize(110, 42);
    QTest::newRow("pdfHandToolButton")
        << none << QStringLiteral("手形工具") << viewerIcon("hand.png") << 24 << true << any;
    QTest::newRow("pdfInsertButton")
        << QStringLiteral("插入") << QStringLiteral("插入 PDF 或空白页")
        << modernIcon("add-file.png") << 24 << true << any;
    QTest::newRow("pdfExtractButton") << QStringLiteral("提取") << QStringLiteral("提取选定页面")
                                      << modernIcon("open-file.png") << 24 << true << any;
    QTest::newRow("pdfSplitButton") << QStringLiteral("拆分") << QStringLiteral("拆分 PDF")
                                    << modernIcon("merge.png") << 24 << true << any;
    QTest::newRow("pdfRotateLeftButton") << none << QStringLiteral("向左旋转")
                                         << viewerIcon("rotate-left.png") << 24 << false << any;
    QTest::newRow("pdfRotateRightButton") << none << QStringLiteral("向右旋转")
                                          << viewerIcon("rotate-right.png") << 24 << false << any;
    QTest::newRow("pdfDeleteButton")
        << none << QStringLiteral("删除选定页面") << modernIcon("trash.png") << 24 << false << any;
    QTest::newRow("pdfSelectAllButton")
        << QStringLiteral("全选") << QStringLiteral("选择全部页面")
        << QStringLiteral(":/res/checkbox/checkbox-unchecked.png") << 24 << true << any;
    QTest::newRow("pdfUndoButton")
        << none << QStringLiteral("撤销") << viewerIcon("undo.png") << 24 << false << any;
    QTest::newRow("pdfRedoButton")
        << none << QStringLiteral("重做") << viewerIcon("redo.png") << 24 << false << any;
    QTest::newRow("pdfMoreButton")
        << none << QStringLiteral("更多") << viewerIcon("more.png") << 24 << false << any;
}

void TestPdfTopToolBar::buttons()
{
    QFETCH(QString, text);
    QFETCH(QString, toolTip);
    QFETCH(QString, icon);
    QFETCH(int, iconExtent);
    QFETCH(bool, checkable);
    QFETCH(QSize, size);
    QPushButton *tested = button(QTest::currentDataTag());
    QVERIFY(tested);
    if (!tested->isVisible()) {
        m_bar->setViewMode(1);
        QTRY_VERIFY(tested->isVisible());
    }
    QCOMPARE(tested->text(), text);
    QCOMPARE(tested->toolTip(), toolTip);
    QVERIFY(!tested->accessibleName().isEmpty());
    QCOMPARE(tested->isCheckable(), checkable);
    QCOMPARE(tested->iconSize(), QSize(iconExtent, iconExtent));
    QVERIFY(tested->styleSheet().contains(QStringLiteral("qproperty-icon: url(%1);").arg(icon)));
    QVERIFY(showsIcon(tested->icon(), icon, tested->iconSize()));
    if (size.isValid()) {
        QTRY_COMPARE(tested->size(), size);
    } else {
        QVERIFY(tested->height() >= 36);
    }
    if (tested == button("pdfHandToolButton")) {
        QCOMPARE(tested->width(), 40);
    }
}

void TestPdfTopToolBar::buttonsTakeNoFocusAndShowAHand()
{
    const auto all = m_bar->findChildren<QAbstractButton *>();
    QCOMPARE(all.size(), 15);
    for (const QAbstractButton *each : all) {
        QCOMPARE(each->focusPolicy(), Qt::NoFocus);
        QCOMPARE(each->cursor().shape(), Qt::PointingHandCursor);
    }
}

void TestPdfTopToolBar::layoutFromLeftToRight()
{
    const auto *layout = qobject_cast<QHBoxLayout *>(m_bar->layout());
    QVERIFY(layout);
    QCOMPARE(layout->contentsMargins(), QMargins(12, 8, 12, 8));
    QCOMPARE(layout->spacing(), 4);
    QStringList parts;
    for (int i = 0; i < layout->count(); ++i) {
        QLayoutItem *item = layout->itemAt(i);
        if (const QWidget *widget = item->widget()) {
            parts << widget->objectName();
        } else if (item->spacerItem()->expandingDirections() & Qt::Horizontal) {
            parts << QStringLiteral("stretch");
        } else {
            parts << QString::number(item->sizeHint().width());
        }
    }
    QCOMPARE(parts,
             (QStringList{QStringLiteral("pdfViewModeGroup"), QStringLiteral("8"),
                          QStringLiteral("pdfThumbnailButton"), QStringLiteral("8"),
                          QStringLiteral("pdfToolsButton"), QStringLiteral("pdfToolbarSeparator"),
                          QStringLiteral("pdfHandToolGroup"), QStringLiteral("pdfPageEditGroup"),
                          QStringLiteral("stretch"), QStringLiteral("pdfUndoButton"),
                          QStringLiteral("pdfRedoButton"), QStringLiteral("pdfToolbarSeparator"),
                          QStringLiteral("pdfMoreButton")}));

    const auto *viewModes = m_bar->findChild<QWidget *>(QStringLiteral("pdfViewModeGroup"));
    QCOMPARE(viewModes->size(), QSize(98, 42));
    QCOMPARE(viewModes->layout()->contentsMargins(), QMargins(1, 1, 1, 1));
    QCOMPARE(viewModes->layout()->spacing(), 0);
    QCOMPARE(viewModes->layout()->itemAt(0)->widget(), button("pdfDocumentViewButton"));
    QCOMPARE(viewModes->layout()->itemAt(1)->widget(), button("pdfPageManageViewButton"));
    const auto separators = m_bar->findChildren<QWidget *>(QStringLiteral("pdfToolbarSeparator"));
    QCOMPARE(separators.size(), 2);
    QCOMPARE(separators.constFirst()->size(), QSize(1, 34));
    const auto *handTools = m_bar->findChild<QWidget *>(QStringLiteral("pdfHandToolGroup"));
    QCOMPARE(handTools->layout()->spacing(), 3);
}

void TestPdfTopToolBar::pageEditingGroupFromLeftToRight()
{
    m_bar->setViewMode(1);
    const QLayout *layout =
        m_bar->findChild<QWidget *>(QStringLiteral("pdfPageEditGroup"))->layout();
    QCOMPARE(layout->spacing(), 3);
    QStringList parts;
    for (int i = 0; i < layout->count(); ++i) {
        const QWidget *widget = layout->itemAt(i)->widget();
        parts << (widget ? widget->objectName()
                         : QString::number(layout->itemAt(i)->sizeHint().width()));
    }
    QCOMPARE(
        parts,
        (QStringList{QStringLiteral("pdfInsertButton"), QStringLiteral("pdfExtractButton"),
                     QStringLiteral("pdfSplitButton"), QStringLiteral("10"),
                     QStringLiteral("pdfRotateLeftButton"), QStringLiteral("pdfRotateRightButton"),
                     QStringLiteral("pdfDeleteButton"), QStringLiteral("pdfSelectAllButton")}));
}

void TestPdfTopToolBar::colours()
{
    const auto colourAt = [this](const QWidget *widget, const QPoint &point) {
        return m_bar->grab().toImage().pixelColor(widget->mapTo(m_bar.get(), point));
    };
    const QPoint corner(4, 8);
    QTest::mouseMove(m_bar.get(), QPoint(600, 4));
    QCOMPARE(colourAt(m_bar.get(), QPoint(600, 4)), QColor(0xFFFFFF));
    QCOMPARE(colourAt(button("pdfDocumentViewButton"), corner), QColor(0xE5EEFF));
    QCOMPARE(colourAt(button("pdfPageManageViewButton"), corner), QColor(0xFFFFFF));
    QCOMPARE(colourAt(button("pdfThumbnailButton"), corner), QColor(0xE8F0FF));
    QCOMPARE(colourAt(button("pdfToolsButton"), corner), QColor(0xF4F4F5));
    QCOMPARE(
        colourAt(m_bar->findChild<QWidget *>(QStringLiteral("pdfToolbarSeparator")), QPoint(0, 10)),
        QColor(0xE2E7EF));

    const QPushButton *more = button("pdfMoreButton");
    QTest::mouseMove(m_bar->findChild<QPushButton *>(QStringLiteral("pdfMoreButton")),
                     more->rect().center());
    QTRY_COMPARE(colourAt(more, corner), QColor(0xF1F3F8));
    QCOMPARE(colourAt(more, QPoint(more->width() / 2, 0)), QColor(0xE2E7EF));

    QPushButton *hand = button("pdfHandToolButton");
    QTest::mousePress(hand, Qt::LeftButton);
    QTRY_COMPARE(colourAt(hand, corner), QColor(0xE8EBF2));
    QTest::mouseRelease(hand, Qt::LeftButton);
    QTRY_COMPARE(colourAt(hand, corner), QColor(0xE8F0FF));
}

void TestPdfTopToolBar::toolTipsShowWithoutWarnings()
{
    QTest::failOnWarning(QRegularExpression(QStringLiteral("property|style ?sheet")));
    QPushButton *undo = button("pdfUndoButton");
    const QPoint centre = undo->rect().center();
    QHelpEvent help(QEvent::ToolTip, centre, undo->mapToGlobal(centre));
    QApplication::sendEvent(undo, &help);
    QTRY_COMPARE(QToolTip::text(), QStringLiteral("撤销"));
    QToolTip::hideText();
}

void TestPdfTopToolBar::clickAsks_data()
{
    QTest::addColumn<int>("viewMode");
    QTest::addColumn<QString>("request");
    QTest::newRow("pdfDocumentViewButton") << 1 << QStringLiteral("documentViewRequested");
    QTest::newRow("pdfPageManageViewButton") << 0 << QStringLiteral("pageManageViewRequested");
    QTest::newRow("pdfInsertButton") << 1 << QStringLiteral("insertModeRequested");
    QTest::newRow("pdfExtractButton") << 1 << QStringLiteral("extractModeRequested");
    QTest::newRow("pdfSplitButton") << 1 << QStringLiteral("splitModeRequested");
    QTest::newRow("pdfRotateLeftButton") << 1 << QStringLiteral("rotateLeftRequested");
    QTest::newRow("pdfRotateRightButton") << 1 << QStringLiteral("rotateRightRequested");
    QTest::newRow("pdfDeleteButton") << 1 << QStringLiteral("deleteRequested");
    QTest::newRow("pdfUndoButton") << 0 << QStringLiteral("undoRequested");
    QTest::newRow("pdfRedoButton") << 0 << QStringLiteral("redoRequested");
}

void TestPdfTopToolBar::clickAsks()
{
    QFETCH(int, viewMode);
    QFETCH(QString, request);
    m_bar->setViewMode(viewMode);
    m_bar->setSelectionActionsEnabled(true);
    m_bar->setUndoRedoEnabled(true, true);
    QTest::mouseClick(button(QTest::currentDataTag()), Qt::LeftButton);
    QCOMPARE(m_log->take(), QStringList{request});
    QTest::mouseClick(button(QTest::currentDataTag()), Qt::LeftButton);
    QCOMPARE(m_log->take(), QStringList{request});
}

void TestPdfTopToolBar::thumbnailButtonToggles()
{
    QTest::mouseClick(button("pdfThumbnailButton"), Qt::LeftButton);
    QCOMPARE(m_log->take(), QStringList{QStringLiteral("thumbnailToggled false")});
    QTest::mouseClick(button("pdfThumbnailButton"), Qt::LeftButton);
    QCOMPARE(m_log->take(), QStringList{QStringLiteral("thumbnailToggled true")});
}

void TestPdfTopToolBar::handToolToggles()
{
    QTest::mouseClick(button("pdfHandToolButton"), Qt::LeftButton);
    QCOMPARE(m_log->take(), QStringList{QStringLiteral("handToolToggled true")});
    QTest::mouseClick(button("pdfHandToolButton"), Qt::LeftButton);
    QCOMPARE(m_log->take(), QStringList{QStringLiteral("handToolToggled false")});
}

void TestPdfTopToolBar::selectAllTogglesWithItsCheckBox()
{
    const QString checked = QStringLiteral(":/res/checkbox/checkbox-checked.png");
    const QString unchecked = QStringLiteral(":/res/checkbox/checkbox-unchecked.png");
    const QSize size(24, 24);
    m_bar->setViewMode(1);
    QPushButton *selectAll = button("pdfSelectAllButton");
    QTest::mouseClick(selectAll, Qt::LeftButton);
    QCOMPARE(m_log->take(), QStringList{QStringLiteral("selectAllToggled true")});
    QVERIFY(showsIcon(selectAll->icon(), checked, size));
    QTest::mouseClick(selectAll, Qt::LeftButton);
    QCOMPARE(m_log->take(), QStringList{QStringLiteral("selectAllToggled false")});
    QVERIFY(showsIcon(selectAll->icon(), unchecked, size));

    m_bar->setSelectAllChecked(true);
    QVERIFY(selectAll->isChecked());
    QVERIFY(showsIcon(selectAll->icon(), checked, size));
    m_bar->setSelectAllChecked(false);
    QVERIFY(!selectAll->isChecked());
    QVERIFY(showsIcon(selectAll->icon(), unchecked, size));
    QCOMPARE(m_log->take(), QStringList());
}

void TestPdfTopToolBar::selectAllIsRestyledOnlyByAChange()
{
    m_bar->setViewMode(1);
    StyleChangeCounter changes(button("pdfSelectAllButton"));
    m_bar->setSelectAllChecked(false);
    QCOMPARE(changes.take(), 0);
    m_bar->setSelectAllChecked(true);
    QVERIFY(changes.take() > 0);
    m_bar->setSelectAllChecked(true);
    QCOMPARE(changes.take(), 0);
}

void TestPdfTopToolBar::disabledButtonsAskForNothing()
{
    m_bar->setViewMode(1);
    for (const char *name : {"pdfRotateLeftButton", "pdfRotateRightButton", "pdfDeleteButton",
                             "pdfUndoButton", "pdfRedoButton"}) {
        QTest::mouseClick(button(name), Qt::LeftButton);
    }
    m_bar->setDocumentActionsEnabled(false);
    for (const char *name : {"pdfPageManageViewButton", "pdfInsertButton", "pdfSelectAllButton",
                             "pdfMoreButton", "pdfToolsButton"}) {
        QTest::mouseClick(button(name), Qt::LeftButton);
    }
    QCOMPARE(m_log->take(), QStringList());
    QVERIFY(!QApplication::activePopupWidget());
}

void TestPdfTopToolBar::viewModeShowsItsCommands()
{
    for (const int mode : {1, 0, 2}) {
        m_bar->setViewMode(mode);
        QCOMPARE(button("pdfDocumentViewButton")->isChecked(), mode == 0);
        QCOMPARE(button("pdfPageManageViewButton")->isChecked(), mode == 1);
        QCOMPARE(button("pdfThumbnailButton")->isVisible(), mode == 0);
        QCOMPARE(button("pdfHandToolButton")->isVisible(), mode == 0);
        QCOMPARE(button("pdfInsertButton")->isVisible(), mode != 0);
        QCOMPARE(button("pdfSelectAllButton")->isVisible(), mode != 0);
        QVERIFY(button("pdfToolsButton")->isVisible());
        QVERIFY(button("pdfUndoButton")->isVisible());
    }
}

void TestPdfTopToolBar::viewButtonsExcludeEachOther()
{
    QTest::mouseClick(button("pdfPageManageViewButton"), Qt::LeftButton);
    QVERIFY(!button("pdfDocumentViewButton")->isChecked());
    QTest::mouseClick(button("pdfPageManageViewButton"), Qt::LeftButton);
    QVERIFY(button("pdfPageManageViewButton")->isChecked());
    m_bar->setViewMode(0);
    QTest::mouseClick(button("pdfPageManageViewButton"), Qt::LeftButton);
    QVERIFY(!button("pdfDocumentViewButton")->isChecked());
}

void TestPdfTopToolBar::workspaceModeChecksItsButton()
{
    for (const int mode : {1, 2, 3, 2, 0, 3}) {
        m_bar->setWorkspaceMode(mode);
        QCOMPARE(button("pdfInsertButton")->isChecked(), mode == 1);
        QCOMPARE(button("pdfExtractButton")->isChecked(), mode == 2);
        QCOMPARE(button("pdfSplitButton")->isChecked(), mode == 3);
    }
}

void TestPdfTopToolBar::workspaceModeZeroUnchecksTheExclusiveGroup()
{
    m_bar->setViewMode(1);
    QTest::mouseClick(button("pdfSplitButton"), Qt::LeftButton);
    QVERIFY(button("pdfSplitButton")->isChecked());
    m_bar->setWorkspaceMode(0);
    QVERIFY(!button("pdfInsertButton")->isChecked());
    QVERIFY(!button("pdfExtractButton")->isChecked());
    QVERIFY(!button("pdfSplitButton")->isChecked());
}

void TestPdfTopToolBar::workspaceButtonsExcludeEachOther()
{
    m_bar->setViewMode(1);
    m_bar->setWorkspaceMode(0);
    QTest::mouseClick(button("pdfInsertButton"), Qt::LeftButton);
    QTest::mouseClick(button("pdfExtractButton"), Qt::LeftButton);
    QVERIFY(!button("pdfInsertButton")->isChecked());
    QVERIFY(button("pdfExtractButton")->isChecked());
    QTest::mouseClick(button("pdfExtractButton"), Qt::LeftButton);
    QVERIFY(button("pdfExtractButton")->isChecked());
}

void TestPdfTopToolBar::documentActionsAreEnabledTogether()
{
    m_bar->setSelectionActionsEnabled(true);
    m_bar->setUndoRedoEnabled(true, true);
    for (const bool enabled : {false, true}) {
        m_bar->setDocumentActionsEnabled(enabled);
        for (const char *name : {"pdfPageManageViewButton", "pdfThumbnailButton", "pdfToolsButton",
                                 "pdfHandToolButton", "pdfInsertButton", "pdfExtractButton",
                                 "pdfSplitButton", "pdfRotateLeftButton", "pdfRotateRightButton",
                                 "pdfDeleteButton", "pdfSelectAllButton", "pdfMoreButton"}) {
            QVERIFY2(button(name)->isEnabled() == enabled, name);
        }
        for (const char *name : {"pdfDocumentViewButton", "pdfUndoButton", "pdfRedoButton"}) {
            QVERIFY2(button(name)->isEnabled(), name);
        }
    }
    m_bar->setSelectionActionsEnabled(false);
    m_bar->setDocumentActionsEnabled(true);
    QVERIFY(!button("pdfDeleteButton")->isEnabled());
}

void TestPdfTopToolBar::selectionActionsAreEnabledTogether()
{
    for (const bool enabled : {true, false}) {
        m_bar->setSelectionActionsEnabled(enabled);
        for (const char *name :
             {"pdfRotateLeftButton", "pdfRotateRightButton", "pdfDeleteButton"}) {
            QVERIFY2(button(name)->isEnabled() == enabled, name);
        }
        QVERIFY(button("pdfInsertButton")->isEnabled());
        QVERIFY(button("pdfSelectAllButton")->isEnabled());
    }
}

void TestPdfTopToolBar::undoAndRedoAreEnabledApart()
{
    m_bar->setUndoRedoEnabled(true, false);
    QVERIFY(isEnabledAndShown("pdfUndoButton"));
    QVERIFY(!isEnabledAndShown("pdfRedoButton"));
    m_bar->setUndoRedoEnabled(false, true);
    QVERIFY(!isEnabledAndShown("pdfUndoButton"));
    QVERIFY(isEnabledAndShown("pdfRedoButton"));
}

void TestPdfTopToolBar::settingStatesEmitsNothing()
{
    for (const int mode : {1, 2, 3, 0}) {
        m_bar->setWorkspaceMode(mode);
        m_bar->setViewMode(mode % 2);
    }
    for (const bool on : {false, true}) {
        m_bar->setThumbnailChecked(on);
        QCOMPARE(button("pdfThumbnailButton")->isChecked(), on);
        m_bar->setSelectAllChecked(on);
        m_bar->setDocumentActionsEnabled(on);
        m_bar->setSelectionActionsEnabled(on);
        m_bar->setUndoRedoEnabled(on, on);
    }
    QCOMPARE(m_log->take(), QStringList());
}

void TestPdfTopToolBar::narrowBarLeavesOutTextsAndKeepsToolTips()
{
    m_bar->setViewMode(1);
    const auto shownTexts = [this] {
        int shown = 0;
        const auto all = m_bar->findChildren<ToolBarButton *>();
        for (const ToolBarButton *each : all) {
            shown += each->isTextShown() && !each->text().isEmpty() ? 1 : 0;
        }
        return shown;
    };
    QTRY_COMPARE(shownTexts(), 5);
    const int fullWidth = m_bar->layout()->sizeHint().width();
    m_bar->resize(fullWidth, 58);
    QTRY_COMPARE(m_bar->width(), fullWidth);
    QCOMPARE(shownTexts(), 5);

    m_bar->resize(fullWidth - 1, 58);
    QTRY_COMPARE(shownTexts(), 4);
    const auto *selectAll = m_bar->findChild<ToolBarButton *>(QStringLiteral("pdfSelectAllButton"));
    QVERIFY(!selectAll->isTextShown());
    QCOMPARE(selectAll->text(), QStringLiteral("全选"));
    QCOMPARE(selectAll->toolTip(), QStringLiteral("选择全部页面"));

    m_bar->resize(fullWidth - selectAll->textWidth() - 1, 58);
    QTRY_COMPARE(shownTexts(), 1);
    m_bar->resize(fullWidth, 58);
    QTRY_COMPARE(shownTexts(), 5);
}

void TestPdfTopToolBar::narrowBarStillShowsEverything()
{
    m_bar->setViewMode(1);
    m_bar->resize(m_bar->minimumSizeHint());
    QTRY_VERIFY(button("pdfMoreButton")->geometry().right() < m_bar->width());
    const auto all = m_bar->findChildren<QPushButton *>();
    for (QPushButton *each : all) {
        if (each->isVisible()) {
            QVERIFY2(each->width() >= each->iconSize().width(), qPrintable(each->objectName()));
        }
    }
    QVERIFY(m_bar->width() <= 860);
}

QTEST_MAIN(TestPdfTopToolBar)
#include "tst_pdf_top_tool_bar.moc"
