// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdf/viewer/page_numbers.h"
#include "tests/pdf/viewer/shown_viewer.h"
#include "tests/support/dialog_answers.h"
#include "tests/support/pdf_fixture.h"

#include <QAbstractItemView>
#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QDesktopServices>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPrintDialog>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QStackedWidget>
#include <QTest>
#include <QWheelEvent>

using namespace Qt::StringLiterals;

namespace {

constexpr int kPages = 6;

/// Takes the folders that are to be opened in a file manager.
class FolderOpener final : public QObject
{
    Q_OBJECT

public:
    FolderOpener() { QDesktopServices::setUrlHandler(u"file"_s, this, "open"); }
    ~FolderOpener() override { QDesktopServices::unsetUrlHandler(u"file"_s); }

    [[nodiscard]] QList<QUrl> opened() const { return m_opened; }

public slots:
    void open(const QUrl &url) { m_opened.append(url); }

private:
    QList<QUrl> m_opened;
};

} // namespace

/// What the viewer does when one of its parts asks for something.
class TestPdfViewerConnections final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    // Document view.
    void currentPageReachesThumbnailsBarAndOwner();
    void zoomReachesBarAndOwner();

    // Thumbnail panel.
    void activatedThumbnailIsGoneTo();
    void thumbnailPreviewShowsThePage();
    void thumbnailStripRotatesItsPageOnly();
    void thumbnailStripDeletesItsPageOnly();
    void dropZoneLetsTheUserChooseFiles();
    void filesForTheThumbnailPanelAreInserted();

    // Bottom bar.
    void wheelOverTheBarScrollsTheDocument();
    void wheelOverTheBarZoomsAboutThePointer();
    void wheelOverTheListOfZoomsScrollsTheList();
    void previousPageStopsAtTheFirst();
    void nextPageStopsAtTheLast();
    void requestedPageIsGoneTo();
    void requestedZoomIsSet();
    void fitButtonTogglesBetweenWidthAndPage();

    // Tool bar: modes.
    void documentViewButtonLeavesTheGrid();
    void pageManageButtonKeepsTheWorkspaceMode();
    void thumbnailButtonHidesAndShowsThePanel();
    void workspaceButtonsOpenTheGrid_data();
    void workspaceButtonsOpenTheGrid();
    void handToolReachesTheDocumentView();

    // Tool bar: edits.
    void rotateButtonsTurnTheSelectedPagesInOneStep_data();
    void rotateButtonsTurnTheSelectedPagesInOneStep();
    void deleteButtonDeletesTheSelectedPagesInOneStep();
    void selectAllButtonSelectsAndClears();
    void undoAndRedoButtonsWalkTheHistory();
    void undoAndRedoAreEnabledByTheHistory();

    // Tool bar: file.
    void saveEntrySaves();
    void saveAsEntryAsksForAName();
    void printEntryOpensThePrintDialog();
    void revealEntryOpensTheFolder();
    void revealWithoutAFileDoesNothing();
    void officeEntryAsksTheOwner();
    void toolEntriesAskTheOwner_data();
    void toolEntriesAskTheOwner();

    // Page grid.
    void gridPreviewShowsThePage();
    void previewOfAnUnknownPageShowsTheDocument();
    void gridDuplicatesItsPage();
    void gridRotatesItsPageOnly();
    void gridDeletesItsPageOnly();
    void insertMarkOpensTheInsertMenu();
    void splitPointsReachTheSidePanel();

    // Side panel.
    void extractButtonWritesTheSelectedPages();
    void splitButtonWritesTheParts();
    void everyPageBoxReachesTheGrid();

    // Model.
    void insertedAndRemovedRowsRefreshThePageState();
    void resetOfTheModelRefreshesThePageState();
    void currentPageStaysWithinTheDocument();
    void emptyDocumentDisablesTheCommands();
    void modifiedChangesReachTheOwner();
    void selectionEnablesTheSelectionCommands();
    void selectingEveryPageChecksTheButtonSilently();
    void insertedPagesUncheckTheSelectAllButton();

private:
    [[nodiscard]] QList<int> splitRows() const;

    std::unique_ptr<ShownViewer> m_shown;
};

void TestPdfViewerConnections::initTestCase()
{
    // No file manager of the desktop is to open a window.
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent");
}

void TestPdfViewerConnections::init()
{
    m_shown = std::make_unique<ShownViewer>();
    QVERIFY(m_shown->openPages(kPages));
}

void TestPdfViewerConnections::cleanup()
{
    m_shown.reset();
}

QList<int> TestPdfViewerConnections::splitRows() const
{
    QList<int> rows;
    for (int row = 1; row < m_shown->model().rowCount(); ++row) {
        if (m_shown->part<PageManagerListView>().isSplitBefore(row)) {
            rows.append(row);
        }
    }
    return rows;
}

void TestPdfViewerConnections::currentPageReachesThumbnailsBarAndOwner()
{
    const QSignalSpy current(m_shown->viewer.get(), &PdfViewerWidget::currentPageChanged);
    m_shown->view().goToPage(4);
    QCOMPARE(current.size(), 1);
    QCOMPARE(current.first().first().toInt(), 4);
    const auto *list = m_shown->viewer->findChild<QListView *>(u"pdfThumbnailList"_s);
    QCOMPARE(list->currentIndex().row(), 4);
    const auto *field = m_shown->viewer->findChild<QLineEdit *>(u"pdfPageNumberEdit"_s);
    QCOMPARE(field->text(), u"5"_s);
}

void TestPdfViewerConnections::zoomReachesBarAndOwner()
{
    const QSignalSpy zoom(m_shown->viewer.get(), &PdfViewerWidget::zoomChanged);
    const QSignalSpy factor(m_shown->viewer.get(), &PdfViewerWidget::zoomFactorChanged);
    m_shown->view().setZoomFactor(1.37);
    QCOMPARE(m_shown->bottomBar().findChild<QComboBox *>()->currentText(), u"137%"_s);
    QCOMPARE(zoom.size(), 1);
    QCOMPARE(zoom.first().first().toDouble(), 1.37);
    QCOMPARE(factor.size(), 1);
    QCOMPARE(factor.first().first().toDouble(), 1.37);
}

void TestPdfViewerConnections::activatedThumbnailIsGoneTo()
{
    emit m_shown->thumbnails().pageActivated(3);
    QCOMPARE(m_shown->view().currentPage(), 3);
}

void TestPdfViewerConnections::thumbnailPreviewShowsThePage()
{
    m_shown->viewer->setWorkspaceMode(PdfWorkspaceMode::SplitMode);
    emit m_shown->thumbnails().previewPageRequested(m_shown->idAt(5));
    QCOMPARE(m_shown->view().currentPage(), 5);
    QCOMPARE(m_shown->views().currentIndex(), 0);
    QCOMPARE(m_shown->gridMode(), PdfWorkspaceMode::NormalMode);
    QVERIFY(m_shown->sidePanel().isHidden());
}

void TestPdfViewerConnections::thumbnailStripRotatesItsPageOnly()
{
    m_shown->select({0, 1});
    emit m_shown->thumbnails().rotatePageRequested(m_shown->idAt(2));
    QCOMPARE(m_shown->rotations(), (QList<int>{0, 0, 90, 0, 0, 0}));
    QCOMPARE(m_shown->model().selectedRows(), (QList<int>{0, 1}));
    QCOMPARE(m_shown->history().count(), 1);
}

void TestPdfViewerConnections::thumbnailStripDeletesItsPageOnly()
{
    m_shown->select({0, 1});
    emit m_shown->thumbnails().deletePageRequested(m_shown->idAt(2));
    QCOMPARE(m_shown->numbers(), (QList<int>{0, 1, 3, 4, 5}));
    QCOMPARE(m_shown->history().count(), 1);
}

void TestPdfViewerConnections::dropZoneLetsTheUserChooseFiles()
{
    const QString file = m_shown->add(u"more.pdf"_s, PageNumbers::documentOf({40, 41}));
    DialogAnswers answers;
    answers.addFiles({file});
    QTest::mouseClick(&m_shown->button("pdfInsertDropZone"), Qt::LeftButton);
    QCOMPARE(answers.fileDialogs().size(), 1);
    QCOMPARE(m_shown->numbers(), (QList<int>{0, 1, 2, 3, 4, 5, 40, 41}));
}

void TestPdfViewerConnections::filesForTheThumbnailPanelAreInserted()
{
    const QString file = m_shown->add(u"more.pdf"_s, PageNumbers::documentOf({40, 41}));
    emit m_shown->thumbnails().insertFilesRequested({file}, 1);
    // Not while the drop is under way.
    QCOMPARE(m_shown->numbers(), (QList<int>{0, 1, 2, 3, 4, 5}));
    QCoreApplication::processEvents();
    QCOMPARE(m_shown->numbers(), (QList<int>{0, 40, 41, 1, 2, 3, 4, 5}));
}

void TestPdfViewerConnections::wheelOverTheBarScrollsTheDocument()
{
    QTRY_VERIFY(m_shown->bottomBar().isVisible());
    const double zoom = m_shown->view().zoomFactor();
    const QScrollBar *bar = m_shown->view().verticalScrollBar();
    QVERIFY(bar->maximum() > 0);
    const QList<QWidget *> parts{&m_shown->bottomBar(),
                                 m_shown->bottomBar().findChild<QComboBox *>(),
                                 m_shown->bottomBar().findChild<QLineEdit *>()};
    for (QWidget *part : parts) {
        const int before = bar->value();
        const QPointF point = part->rect().center();
        QWheelEvent wheel(point, part->mapToGlobal(point), {}, {0, -20}, Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(part, &wheel);
        QCOMPARE(bar->value(), before + 30);
    }
    QCOMPARE(m_shown->view().zoomFactor(), zoom);
}

void TestPdfViewerConnections::wheelOverTheBarZoomsAboutThePointer()
{
    QTRY_VERIFY(m_shown->bottomBar().isVisible());
    PdfDocumentView &view = m_shown->view();
    const QPoint global = m_shown->bottomBar().mapToGlobal(m_shown->bottomBar().rect().center());
    const auto placeAfterZooming = [&](QWidget *under) {
        view.setZoomFactor(2.0);
        view.goToPage(2);
        QWheelEvent wheel(under->mapFromGlobal(global), global, {}, {0, 120}, Qt::NoButton,
                          Qt::ControlModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(under, &wheel);
        return QPoint(view.horizontalScrollBar()->value(), view.verticalScrollBar()->value());
    };
    const QPoint expected = placeAfterZooming(view.viewport());
    QVERIFY(view.zoomFactor() > 2.0);
    QCOMPARE(placeAfterZooming(&m_shown->bottomBar()), expected);
}

void TestPdfViewerConnections::wheelOverTheListOfZoomsScrollsTheList()
{
    QTRY_VERIFY(m_shown->bottomBar().isVisible());
    auto *zooms = m_shown->bottomBar().findChild<QComboBox *>();
    zooms->showPopup();
    QWidget *list = zooms->view()->viewport();
    QTRY_VERIFY(list->isVisible());
    QScrollBar *bar = zooms->view()->verticalScrollBar();
    bar->setValue(0);
    QVERIFY(bar->maximum() > 0);
    const QPointF point = list->rect().center();
    QWheelEvent wheel(point, list->mapToGlobal(point), {}, {0, -120}, Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(list, &wheel);
    QVERIFY(bar->value() > 0);
    QCOMPARE(m_shown->view().verticalScrollBar()->value(), 0);
    zooms->hidePopup();
}

void TestPdfViewerConnections::previousPageStopsAtTheFirst()
{
    m_shown->viewer->goToPage(2);
    for (const int expected : {1, 0, 0}) {
        emit m_shown->bottomBar().previousPageRequested();
        QCOMPARE(m_shown->view().currentPage(), expected);
    }
}

void TestPdfViewerConnections::nextPageStopsAtTheLast()
{
    m_shown->viewer->goToPage(3);
    for (const int expected : {4, 5, 5}) {
        emit m_shown->bottomBar().nextPageRequested();
        QCOMPARE(m_shown->view().currentPage(), expected);
    }
}

void TestPdfViewerConnections::requestedPageIsGoneTo()
{
    auto *field = m_shown->bottomBar().findChild<QLineEdit *>(u"pdfPageNumberEdit"_s);
    field->setText(u"4"_s);
    QTest::keyClick(field, Qt::Key_Return);
    QCOMPARE(m_shown->view().currentPage(), 3);
}

void TestPdfViewerConnections::requestedZoomIsSet()
{
    emit m_shown->bottomBar().zoomRequested(1.5);
    QCOMPARE(m_shown->view().zoomFactor(), 1.5);
    QCOMPARE(m_shown->view().fitMode(), PdfDocumentView::FitMode::Manual);
}

void TestPdfViewerConnections::fitButtonTogglesBetweenWidthAndPage()
{
    QPushButton &toggle = m_shown->button("pdfFitToggleButton");
    QTest::mouseClick(&toggle, Qt::LeftButton);
    QCOMPARE(m_shown->view().fitMode(), PdfDocumentView::FitMode::Page);
    QCOMPARE(toggle.property("fitWidth").toBool(), false);
    QTest::mouseClick(&toggle, Qt::LeftButton);
    QCOMPARE(m_shown->view().fitMode(), PdfDocumentView::FitMode::Width);
    QCOMPARE(toggle.property("fitWidth").toBool(), true);
}

void TestPdfViewerConnections::documentViewButtonLeavesTheGrid()
{
    m_shown->button("pdfPageManageViewButton").click();
    m_shown->button("pdfSplitButton").click();
    m_shown->button("pdfDocumentViewButton").click();
    QCOMPARE(m_shown->views().currentIndex(), 0);
    QVERIFY(m_shown->button("pdfDocumentViewButton").isChecked());
    QVERIFY(!m_shown->button("pdfSplitButton").isChecked());
    QVERIFY(m_shown->sidePanel().isHidden());
    QCOMPARE(m_shown->gridMode(), PdfWorkspaceMode::NormalMode);
    QVERIFY(m_shown->thumbnails().isVisible());
}

void TestPdfViewerConnections::pageManageButtonKeepsTheWorkspaceMode()
{
    m_shown->button("pdfExtractButton").click();
    m_shown->button("pdfPageManageViewButton").click();
    QCOMPARE(m_shown->views().currentIndex(), 1);
    QVERIFY(m_shown->button("pdfExtractButton").isChecked());
    QVERIFY(m_shown->sidePanel().isVisible());
    QCOMPARE(m_shown->gridMode(), PdfWorkspaceMode::ExtractMode);
}

void TestPdfViewerConnections::thumbnailButtonHidesAndShowsThePanel()
{
    QPushButton &button = m_shown->button("pdfThumbnailButton");
    QVERIFY(button.isChecked());
    QVERIFY(m_shown->thumbnails().isVisible());
    button.click();
    QVERIFY(!m_shown->thumbnails().isVisible());
    QVERIFY(!button.isChecked());
    button.click();
    QVERIFY(m_shown->thumbnails().isVisible());
    QVERIFY(button.isChecked());
}

void TestPdfViewerConnections::workspaceButtonsOpenTheGrid_data()
{
    QTest::addColumn<QString>("buttonName");
    QTest::addColumn<QString>("menuText");
    QTest::addColumn<PdfWorkspaceMode>("mode");
    QTest::addColumn<bool>("panelShown");
    QTest::newRow("insert") << u"pdfInsertButton"_s << u"插入"_s << PdfWorkspaceMode::InsertMode
                            << false;
    QTest::newRow("extract") << u"pdfExtractButton"_s << u"提取"_s << PdfWorkspaceMode::ExtractMode
                             << true;
    QTest::newRow("split") << u"pdfSplitButton"_s << u"拆分"_s << PdfWorkspaceMode::SplitMode
                           << true;
}

void TestPdfViewerConnections::workspaceButtonsOpenTheGrid()
{
    QFETCH(QString, buttonName);
    QFETCH(QString, menuText);
    QFETCH(PdfWorkspaceMode, mode);
    QFETCH(bool, panelShown);
    QTRY_VERIFY(m_shown->bottomBar().isVisible());
    // The tools menu asks for the same from within the document view.
    m_shown->menuEntry("pdfToolsMenu", menuText).trigger();
    QCOMPARE(m_shown->views().currentIndex(), 1);
    QVERIFY(m_shown->button("pdfPageManageViewButton").isChecked());
    QVERIFY(m_shown->button(buttonName.toLatin1()).isChecked());
    QVERIFY(!m_shown->thumbnails().isVisible());
    QVERIFY(!m_shown->bottomBar().isVisible());
    QCOMPARE(m_shown->gridMode(), mode);
    QCOMPARE(m_shown->sidePanel().isVisible(), panelShown);

    m_shown->viewer->setWorkspaceMode(PdfWorkspaceMode::NormalMode);
    m_shown->button(buttonName.toLatin1()).click();
    QCOMPARE(m_shown->gridMode(), mode);
    QCOMPARE(m_shown->sidePanel().isVisible(), panelShown);
}

void TestPdfViewerConnections::handToolReachesTheDocumentView()
{
    m_shown->button("pdfHandToolButton").click();
    QCOMPARE(m_shown->view().viewport()->cursor().shape(), Qt::OpenHandCursor);
    m_shown->button("pdfHandToolButton").click();
    QCOMPARE(m_shown->view().viewport()->cursor().shape(), Qt::ArrowCursor);
}

void TestPdfViewerConnections::rotateButtonsTurnTheSelectedPagesInOneStep_data()
{
    QTest::addColumn<QString>("buttonName");
    QTest::addColumn<int>("rotation");
    QTest::newRow("left") << u"pdfRotateLeftButton"_s << 270;
    QTest::newRow("right") << u"pdfRotateRightButton"_s << 90;
}

void TestPdfViewerConnections::rotateButtonsTurnTheSelectedPagesInOneStep()
{
    QFETCH(QString, buttonName);
    QFETCH(int, rotation);
    m_shown->button("pdfPageManageViewButton").click();
    m_shown->select({0, 2, 5});
    m_shown->button(buttonName.toLatin1()).click();
    QCOMPARE(m_shown->rotations(), (QList<int>{rotation, 0, rotation, 0, 0, rotation}));
    QCOMPARE(m_shown->history().count(), 1);
    m_shown->history().undo();
    QCOMPARE(m_shown->rotations(), QList<int>(kPages, 0));
}

void TestPdfViewerConnections::deleteButtonDeletesTheSelectedPagesInOneStep()
{
    m_shown->button("pdfPageManageViewButton").click();
    m_shown->select({1, 2, 4});
    m_shown->button("pdfDeleteButton").click();
    QCOMPARE(m_shown->numbers(), (QList<int>{0, 3, 5}));
    QCOMPARE(m_shown->history().count(), 1);
    m_shown->history().undo();
    QCOMPARE(m_shown->numbers(), (QList<int>{0, 1, 2, 3, 4, 5}));
}

void TestPdfViewerConnections::selectAllButtonSelectsAndClears()
{
    m_shown->button("pdfPageManageViewButton").click();
    m_shown->button("pdfSelectAllButton").click();
    QCOMPARE(m_shown->model().selectedRows().size(), kPages);
    QVERIFY(m_shown->button("pdfSelectAllButton").isChecked());
    m_shown->button("pdfSelectAllButton").click();
    QVERIFY(m_shown->model().selectedRows().isEmpty());
    QVERIFY(!m_shown->button("pdfSelectAllButton").isChecked());
}

void TestPdfViewerConnections::undoAndRedoButtonsWalkTheHistory()
{
    emit m_shown->grid().deletePageRequested(m_shown->idAt(0));
    emit m_shown->grid().deletePageRequested(m_shown->idAt(0));
    m_shown->button("pdfUndoButton").click();
    QCOMPARE(m_shown->numbers(), (QList<int>{1, 2, 3, 4, 5}));
    m_shown->button("pdfUndoButton").click();
    QCOMPARE(m_shown->numbers(), (QList<int>{0, 1, 2, 3, 4, 5}));
    m_shown->button("pdfRedoButton").click();
    QCOMPARE(m_shown->numbers(), (QList<int>{1, 2, 3, 4, 5}));
}

void TestPdfViewerConnections::undoAndRedoAreEnabledByTheHistory()
{
    const QPushButton &undo = m_shown->button("pdfUndoButton");
    const QPushButton &redo = m_shown->button("pdfRedoButton");
    QVERIFY(!undo.isEnabled());
    QVERIFY(!redo.isEnabled());
    emit m_shown->grid().deletePageRequested(m_shown->idAt(0));
    emit m_shown->grid().deletePageRequested(m_shown->idAt(0));
    QVERIFY(undo.isEnabled());
    QVERIFY(!redo.isEnabled());
    m_shown->history().undo();
    QVERIFY(undo.isEnabled());
    QVERIFY(redo.isEnabled());
    m_shown->history().undo();
    QVERIFY(!undo.isEnabled());
    QVERIFY(redo.isEnabled());
    QVERIFY(m_shown->openPages(2));
    QVERIFY(!undo.isEnabled());
    QVERIFY(!redo.isEnabled());
}

void TestPdfViewerConnections::saveEntrySaves()
{
    emit m_shown->grid().deletePageRequested(m_shown->idAt(0));
    m_shown->menuEntry("pdfMoreMenu", u"保存文件"_s).trigger();
    QVERIFY(!m_shown->model().isModified());
    QCOMPARE(PageNumbers::numbersIn(m_shown->path(u"report.pdf"_s)), (QList<int>{1, 2, 3, 4, 5}));
}

void TestPdfViewerConnections::saveAsEntryAsksForAName()
{
    const QString target = m_shown->path(u"copy.pdf"_s);
    DialogAnswers answers;
    answers.addFiles({target});
    m_shown->menuEntry("pdfMoreMenu", u"将文件保存为…"_s).trigger();
    QCOMPARE(answers.fileDialogs().size(), 1);
    QCOMPARE(PageNumbers::numbersIn(target), (QList<int>{0, 1, 2, 3, 4, 5}));
    QCOMPARE(m_shown->model().documentPath(), target);
}

void TestPdfViewerConnections::printEntryOpensThePrintDialog()
{
    QString title;
    QTimer timer;
    connect(&timer, &QTimer::timeout, this, [&title] {
        if (auto *dialog = qobject_cast<QPrintDialog *>(QApplication::activeModalWidget())) {
            title = dialog->windowTitle();
            dialog->reject();
        }
    });
    timer.start(1);
    m_shown->menuEntry("pdfMoreMenu", u"打印"_s).trigger();
    QCOMPARE(title, u"打印 PDF"_s);
}

void TestPdfViewerConnections::revealEntryOpensTheFolder()
{
#if defined(Q_OS_WIN) || defined(Q_OS_MACOS)
    QSKIP("the file manager of this system is started as a program");
#endif
    const FolderOpener opener;
    m_shown->menuEntry("pdfMoreMenu", u"在文件夹中显示"_s).trigger();
    QTRY_COMPARE(opener.opened(), QList<QUrl>{QUrl::fromLocalFile(m_shown->path({}))});
}

void TestPdfViewerConnections::revealWithoutAFileDoesNothing()
{
    const FolderOpener opener;
    const DialogAnswers answers;
    PdfViewerWidget empty;
    empty.revealInFolder();
    QTest::qWait(20);
    QVERIFY(opener.opened().isEmpty());
    QVERIFY(answers.seen().isEmpty());
}

void TestPdfViewerConnections::officeEntryAsksTheOwner()
{
    const QSignalSpy office(m_shown->viewer.get(), &PdfViewerWidget::convertPdfToOfficeRequested);
    const QSignalSpy tool(m_shown->viewer.get(), &PdfViewerWidget::externalToolRequested);
    m_shown->menuEntry("pdfToolsMenu", u"PDF 转为 Office"_s).trigger();
    QCOMPARE(office.size(), 1);
    QCOMPARE(office.first().first().toString(), m_shown->path(u"report.pdf"_s));
    QCOMPARE(tool.size(), 0);
}

void TestPdfViewerConnections::toolEntriesAskTheOwner_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("toolId");
    QTest::newRow("compress") << u"压缩"_s << u"compress"_s;
    QTest::newRow("images") << u"PDF 转为图像"_s << u"images"_s;
    QTest::newRow("encrypt") << u"加密 PDF"_s << u"encrypt"_s;
    QTest::newRow("decrypt") << u"解锁 PDF"_s << u"decrypt"_s;
    QTest::newRow("page number") << u"页面编号"_s << u"page-number"_s;
    QTest::newRow("search") << QString() << u"search"_s;
}

void TestPdfViewerConnections::toolEntriesAskTheOwner()
{
    QFETCH(QString, text);
    QFETCH(QString, toolId);
    const QSignalSpy office(m_shown->viewer.get(), &PdfViewerWidget::convertPdfToOfficeRequested);
    const QSignalSpy tool(m_shown->viewer.get(), &PdfViewerWidget::externalToolRequested);
    if (text.isEmpty()) {
        emit m_shown->toolBar().searchRequested();
    } else {
        m_shown->menuEntry("pdfToolsMenu", text).trigger();
    }
    QCOMPARE(tool.size(), 1);
    QCOMPARE(tool.first().at(0).toString(), toolId);
    QCOMPARE(tool.first().at(1).toString(), m_shown->path(u"report.pdf"_s));
    QCOMPARE(office.size(), 0);
}

void TestPdfViewerConnections::gridPreviewShowsThePage()
{
    m_shown->button("pdfExtractButton").click();
    emit m_shown->grid().previewPageRequested(m_shown->idAt(4));
    QCOMPARE(m_shown->views().currentIndex(), 0);
    QCOMPARE(m_shown->view().currentPage(), 4);
    QVERIFY(m_shown->button("pdfDocumentViewButton").isChecked());
    QVERIFY(!m_shown->button("pdfExtractButton").isChecked());
    QCOMPARE(m_shown->gridMode(), PdfWorkspaceMode::NormalMode);
    QVERIFY(m_shown->sidePanel().isHidden());
    QVERIFY(m_shown->thumbnails().isVisible());
    QTRY_VERIFY(m_shown->bottomBar().isVisible());
}

void TestPdfViewerConnections::previewOfAnUnknownPageShowsTheDocument()
{
    m_shown->viewer->goToPage(2);
    m_shown->button("pdfPageManageViewButton").click();
    emit m_shown->grid().previewPageRequested(987654);
    QCOMPARE(m_shown->views().currentIndex(), 0);
    QCOMPARE(m_shown->view().currentPage(), 2);
}

void TestPdfViewerConnections::gridDuplicatesItsPage()
{
    emit m_shown->grid().duplicatePageRequested(m_shown->idAt(3));
    QCOMPARE(m_shown->numbers(), (QList<int>{0, 1, 2, 3, 3, 4, 5}));
    QCOMPARE(m_shown->history().count(), 1);
}

void TestPdfViewerConnections::gridRotatesItsPageOnly()
{
    m_shown->select({0, 1});
    emit m_shown->grid().rotatePageRequested(m_shown->idAt(5));
    emit m_shown->grid().rotatePageRequested(m_shown->idAt(5));
    QCOMPARE(m_shown->rotations(), (QList<int>{0, 0, 0, 0, 0, 180}));
    QCOMPARE(m_shown->history().count(), 2);
}

void TestPdfViewerConnections::gridDeletesItsPageOnly()
{
    m_shown->select({0, 1});
    emit m_shown->grid().deletePageRequested(m_shown->idAt(5));
    QCOMPARE(m_shown->numbers(), (QList<int>{0, 1, 2, 3, 4}));
    QCOMPARE(m_shown->history().count(), 1);
}

void TestPdfViewerConnections::insertMarkOpensTheInsertMenu()
{
    DialogAnswers answers;
    answers.addMenuEntry(u"在后面插入空白页"_s);
    emit m_shown->grid().insertAtRequested(2, m_shown->grid().mapToGlobal(QPoint(50, 50)));
    QVERIFY(!answers.menuTexts().isEmpty());
    QCOMPARE(m_shown->numbers(), (QList<int>{0, 1, PageNumbers::kWhite, 2, 3, 4, 5}));
}

void TestPdfViewerConnections::splitPointsReachTheSidePanel()
{
    m_shown->button("pdfSplitButton").click();
    emit m_shown->grid().splitPointsChanged({4, 2});
    const auto *preview = m_shown->viewer->findChild<QListWidget *>(u"pdfSplitPreviewList"_s);
    QCOMPARE(preview->count(), 3);
    QCOMPARE(preview->item(1)->text(), u"report-2.pdf\n页面 3-4"_s);
}

void TestPdfViewerConnections::extractButtonWritesTheSelectedPages()
{
    m_shown->button("pdfExtractButton").click();
    m_shown->select({1, 4});
    m_shown->sidePanel().findChild<QCheckBox *>(u"pdfCombineExtractCheckBox"_s)->click();
    const DialogAnswers answers;
    emit m_shown->sidePanel().extractRequested(true, m_shown->path(u"out"_s));
    QCOMPARE(PageNumbers::numbersIn(m_shown->path(u"out/report-extracted.pdf"_s)),
             (QList<int>{1, 4}));
    for (QPushButton *button : m_shown->sidePanel().findChildren<QPushButton *>()) {
        if (button->isVisible() && button->objectName() == u"pdfPrimaryAction") {
            button->click();
        }
    }
    QCOMPARE(PageNumbers::numbersIn(m_shown->path(u"report-extracted.pdf"_s)), (QList<int>{1, 4}));
    QCOMPARE(answers.seen().count(u"提取完成"_s), 2);
}

void TestPdfViewerConnections::splitButtonWritesTheParts()
{
    const DialogAnswers answers;
    emit m_shown->sidePanel().splitRequested(false, {4}, m_shown->path(u"out"_s));
    QCOMPARE(PageNumbers::numbersIn(m_shown->path(u"out/report-1.pdf"_s)),
             (QList<int>{0, 1, 2, 3}));
    QCOMPARE(PageNumbers::numbersIn(m_shown->path(u"out/report-2.pdf"_s)), (QList<int>{4, 5}));
}

void TestPdfViewerConnections::everyPageBoxReachesTheGrid()
{
    m_shown->button("pdfSplitButton").click();
    QCOMPARE(splitRows(), QList<int>{});
    auto *everyPage = m_shown->sidePanel().findChild<QCheckBox *>(u"pdfSplitEveryPageCheckBox"_s);
    everyPage->click();
    QCOMPARE(splitRows(), (QList<int>{1, 2, 3, 4, 5}));
    everyPage->click();
    QCOMPARE(splitRows(), QList<int>{});
}

void TestPdfViewerConnections::insertedAndRemovedRowsRefreshThePageState()
{
    const QSignalSpy count(m_shown->viewer.get(), &PdfViewerWidget::pageCountChanged);
    const auto *total = m_shown->viewer->findChild<QLabel *>(u"pdfPageCountLabel"_s);
    m_shown->model().insertBlankPage(0, {});
    QCOMPARE(count.size(), 1);
    QCOMPARE(count.last().first().toInt(), 7);
    QCOMPARE(total->text(), u"/7"_s);
    m_shown->model().removePages({m_shown->idAt(3)});
    QCOMPARE(count.size(), 2);
    QCOMPARE(count.last().first().toInt(), 6);
    QCOMPARE(total->text(), u"/6"_s);
}

void TestPdfViewerConnections::resetOfTheModelRefreshesThePageState()
{
    const QSignalSpy count(m_shown->viewer.get(), &PdfViewerWidget::pageCountChanged);
    m_shown->model().setPages(m_shown->model().pages().mid(0, 2), true);
    QCOMPARE(count.size(), 1);
    QCOMPARE(count.last().first().toInt(), 2);
    QCOMPARE(m_shown->viewer->findChild<QLabel *>(u"pdfPageCountLabel"_s)->text(), u"/2"_s);
}

void TestPdfViewerConnections::currentPageStaysWithinTheDocument()
{
    m_shown->viewer->goToPage(5);
    m_shown->select({3, 4, 5});
    emit m_shown->toolBar().deleteRequested();
    const auto *field = m_shown->viewer->findChild<QLineEdit *>(u"pdfPageNumberEdit"_s);
    QTRY_COMPARE(m_shown->view().currentPage(), 2);
    QCOMPARE(field->text(), u"3"_s);
    QVERIFY(!m_shown->button("pdfNextPageButton").isEnabled());
}

void TestPdfViewerConnections::emptyDocumentDisablesTheCommands()
{
    QTRY_VERIFY(m_shown->bottomBar().isVisible());
    m_shown->model().setPages({}, true);
    QVERIFY(!m_shown->bottomBar().isVisible());
    for (const char *name : {"pdfPageManageViewButton", "pdfToolsButton", "pdfMoreButton"}) {
        QVERIFY2(!m_shown->button(name).isEnabled(), name);
    }
    QVERIFY(!m_shown->button("pdfSelectAllButton").isChecked());
    m_shown->history().clear();
    m_shown->model().insertBlankPage(0, {});
    QVERIFY(m_shown->button("pdfToolsButton").isEnabled());
    QTRY_VERIFY(m_shown->bottomBar().isVisible());
}

void TestPdfViewerConnections::modifiedChangesReachTheOwner()
{
    const QSignalSpy modified(m_shown->viewer.get(), &PdfViewerWidget::modifiedChanged);
    emit m_shown->grid().rotatePageRequested(m_shown->idAt(0));
    QCOMPARE(modified.size(), 1);
    QCOMPARE(modified.last().first().toBool(), true);
    QVERIFY(m_shown->viewer->isModified());
    m_shown->button("pdfUndoButton").click();
    QCOMPARE(modified.last().first().toBool(), false);
    QVERIFY(!m_shown->viewer->isModified());
}

void TestPdfViewerConnections::selectionEnablesTheSelectionCommands()
{
    const auto areEnabled = [this] {
        QList<bool> enabled;
        for (const char *name :
             {"pdfRotateLeftButton", "pdfRotateRightButton", "pdfDeleteButton"}) {
            enabled.append(m_shown->button(name).isEnabled());
        }
        return enabled;
    };
    QCOMPARE(areEnabled(), (QList<bool>{false, false, false}));
    m_shown->select({3});
    QCOMPARE(areEnabled(), (QList<bool>{true, true, true}));
    m_shown->select({});
    QCOMPARE(areEnabled(), (QList<bool>{false, false, false}));
}

void TestPdfViewerConnections::selectingEveryPageChecksTheButtonSilently()
{
    const QSignalSpy toggled(&m_shown->toolBar(), &PdfTopToolBar::selectAllToggled);
    const QPushButton &button = m_shown->button("pdfSelectAllButton");
    m_shown->select({0, 1, 2, 3, 4});
    QVERIFY(!button.isChecked());
    m_shown->select({0, 1, 2, 3, 4, 5});
    QVERIFY(button.isChecked());
    m_shown->model().setPageSelected(m_shown->idAt(2), false);
    QVERIFY(!button.isChecked());
    QCOMPARE(toggled.size(), 0);
    QCOMPARE(m_shown->model().selectedRows().size(), 5);
}

void TestPdfViewerConnections::insertedPagesUncheckTheSelectAllButton()
{
    m_shown->select({0, 1, 2, 3, 4, 5});
    m_shown->model().insertBlankPage(2, {});
    QVERIFY(!m_shown->button("pdfSelectAllButton").isChecked());
    QCOMPARE(m_shown->model().selectedRows().size(), kPages);
}

QTEST_MAIN(TestPdfViewerConnections)
#include "tst_pdf_viewer_connections.moc"
