// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdf/viewer/shown_viewer.h"
#include "tests/support/dialog_answers.h"
#include "tests/support/pdf_fixture.h"

#include <QAbstractButton>
#include <QApplication>
#include <QEvent>
#include <QFrame>
#include <QLineEdit>
#include <QPushButton>
#include <QSplitter>
#include <QStackedWidget>
#include <QTest>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

/// Tells when a widget is shown or hidden.
class VisibilityWatch final : public QObject
{
public:
    VisibilityWatch(QWidget *watched, std::function<void(bool shown)> changed)
        : m_changed(std::move(changed))
    {
        watched->installEventFilter(this);
    }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Show || event->type() == QEvent::Hide) {
            m_changed(event->type() == QEvent::Show);
        }
        return QObject::eventFilter(watched, event);
    }

private:
    std::function<void(bool shown)> m_changed;
};

} // namespace

/// How the viewer is built and how it switches between what it shows.
class TestPdfViewerModes final : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void partsStandBelowTheToolBar();
    void splitterGivesItsRoomToTheViews();
    void enumerationsAreMetaTypes();

    void startsEmptyInTheDocumentView();
    void gridHidesThumbnailsAndBottomBar();
    void documentViewResetsTheWorkspaceMode();
    void documentViewOfAnEmptyDocumentResetsTheWorkspaceMode();
    void workspaceModeAloneLeavesTheView();
    void workspaceModeReachesToolBarThenGridThenSidePanel();
    void openingReturnsToReading();
    void keyboardFocusFollowsTheView();

    void thumbnailChoiceIsKeptOverTheGrid_data();
    void thumbnailChoiceIsKeptOverTheGrid();
    void thumbnailChoiceMadeInTheGridCountsAfterwards();
    void previewKeepsHiddenThumbnailsHidden();
    void fitModeIsAppliedAgainWhenThumbnailsAreHidden_data();
    void fitModeIsAppliedAgainWhenThumbnailsAreHidden();
    void freeZoomStaysWhenThumbnailsAreHidden();

    void bottomBarFloatsInTheMiddleAboveTheBottom();
    void bottomBarFollowsTheViews();
    void bottomBarStaysBelowTheTopOfALowView();
    void bottomBarStartsAtTheLeftOfANarrowView();
    void bottomBarIsHiddenWithoutPages();
    void bottomBarComesBackWithTheDocumentView();
    void bottomBarStaysAboveTheView();
    void hiddenViewerPlacesItsBarWhenShown();

private:
    [[nodiscard]] QRect expectedBarGeometry() const;

    std::unique_ptr<ShownViewer> m_shown;
};

void TestPdfViewerModes::init()
{
    m_shown = std::make_unique<ShownViewer>();
}

void TestPdfViewerModes::cleanup()
{
    m_shown.reset();
}

QRect TestPdfViewerModes::expectedBarGeometry() const
{
    const QSize area = m_shown->views().size();
    const QSize bar = m_shown->bottomBar().sizeHint();
    return {QPoint(qMax((area.width() - bar.width()) / 2, 0),
                   qMax(area.height() - 24 - bar.height(), 8)),
            bar};
}

void TestPdfViewerModes::partsStandBelowTheToolBar()
{
    QCOMPARE(m_shown->viewer->objectName(), u"pdfViewerWidget"_s);
    const auto *layout = qobject_cast<QVBoxLayout *>(m_shown->viewer->layout());
    QVERIFY(layout);
    QCOMPARE(layout->contentsMargins(), QMargins());
    QCOMPARE(layout->spacing(), 0);
    QCOMPARE(layout->count(), 3);
    QCOMPARE(layout->itemAt(0)->widget(), &m_shown->toolBar());
    auto *divider = qobject_cast<QFrame *>(layout->itemAt(1)->widget());
    QVERIFY(divider);
    QCOMPARE(divider->objectName(), u"pdfToolbarViewDivider"_s);
    QCOMPARE(divider->height(), 1);
    QCOMPARE(divider->width(), m_shown->viewer->width());
    QCOMPARE(divider->sizePolicy().horizontalPolicy(), QSizePolicy::Expanding);
    QCOMPARE(divider->sizePolicy().verticalPolicy(), QSizePolicy::Fixed);
    QCOMPARE(divider->grab().toImage().pixelColor(100, 0), QColor(0xE2, 0xE7, 0xEF));
    const auto *splitter = qobject_cast<QSplitter *>(layout->itemAt(2)->widget());
    QVERIFY(splitter);
    QCOMPARE(splitter->geometry().bottom(), m_shown->viewer->rect().bottom());
}

void TestPdfViewerModes::splitterGivesItsRoomToTheViews()
{
    QVERIFY(m_shown->openPages(2));
    auto *splitter = m_shown->viewer->findChild<QSplitter *>(u"pdfViewerSplitter"_s);
    QVERIFY(splitter);
    QCOMPARE(splitter->orientation(), Qt::Horizontal);
    QVERIFY(!splitter->childrenCollapsible());
    QCOMPARE(splitter->handleWidth(), 1);
    QCOMPARE(splitter->count(), 3);
    QCOMPARE(splitter->widget(0), &m_shown->thumbnails());
    QCOMPARE(splitter->widget(1), &m_shown->views());
    QCOMPARE(splitter->widget(2), &m_shown->sidePanel());
    QCOMPARE(m_shown->views().widget(0), &m_shown->view());
    QCOMPARE(m_shown->views().widget(1), &m_shown->grid());
    QCOMPARE(m_shown->thumbnails().width(), 210);
    QVERIFY(m_shown->sidePanel().isHidden());

    const int viewsWidth = m_shown->views().width();
    m_shown->viewer->resize(m_shown->viewer->width() + 120, m_shown->viewer->height());
    QTRY_COMPARE(m_shown->views().width(), viewsWidth + 120);
    QCOMPARE(m_shown->thumbnails().width(), 210);

    m_shown->button("pdfExtractButton").click();
    QTRY_COMPARE(m_shown->sidePanel().width(), 340);
    m_shown->viewer->resize(m_shown->viewer->width() - 120, m_shown->viewer->height());
    QTRY_COMPARE(m_shown->sidePanel().width(), 340);

    // Where the line between two parts is to be seen; it can be taken hold of beside it, too.
    const QPoint handle =
        splitter->mapTo(m_shown->viewer.get(), splitter->handle(2)->geometry().center());
    QCOMPARE(m_shown->viewer->grab().toImage().pixelColor(handle), QColor(0xE2, 0xE7, 0xEF));
}

void TestPdfViewerModes::enumerationsAreMetaTypes()
{
    QVERIFY(QMetaType::fromName("PdfViewMode").isValid());
    QVERIFY(QMetaType::fromName("PdfWorkspaceMode").isValid());
    QCOMPARE(static_cast<int>(PdfViewMode::DocumentView), 0);
    QCOMPARE(static_cast<int>(PdfViewMode::PageManageView), 1);
    QCOMPARE(static_cast<int>(PdfWorkspaceMode::NormalMode), 0);
    QCOMPARE(static_cast<int>(PdfWorkspaceMode::InsertMode), 1);
    QCOMPARE(static_cast<int>(PdfWorkspaceMode::ExtractMode), 2);
    QCOMPARE(static_cast<int>(PdfWorkspaceMode::SplitMode), 3);
}

void TestPdfViewerModes::startsEmptyInTheDocumentView()
{
    QCOMPARE(m_shown->views().currentIndex(), 0);
    QVERIFY(m_shown->button("pdfDocumentViewButton").isChecked());
    QVERIFY(m_shown->button("pdfThumbnailButton").isChecked());
    QVERIFY(m_shown->thumbnails().isVisible());
    QVERIFY(m_shown->sidePanel().isHidden());
    QVERIFY(!m_shown->button("pdfToolsButton").isEnabled());
    QVERIFY(!m_shown->button("pdfUndoButton").isEnabled());
    QVERIFY(!m_shown->viewer->isModified());
}

void TestPdfViewerModes::gridHidesThumbnailsAndBottomBar()
{
    QVERIFY(m_shown->openPages(2));
    QTRY_VERIFY(m_shown->bottomBar().isVisible());
    m_shown->viewer->setViewMode(PdfViewMode::PageManageView);
    QCOMPARE(m_shown->views().currentIndex(), 1);
    QVERIFY(m_shown->button("pdfPageManageViewButton").isChecked());
    QVERIFY(!m_shown->thumbnails().isVisible());
    QVERIFY(!m_shown->bottomBar().isVisible());
    QTest::qWait(20);
    QVERIFY(!m_shown->bottomBar().isVisible());
}

void TestPdfViewerModes::documentViewResetsTheWorkspaceMode()
{
    QVERIFY(m_shown->openPages(2));
    m_shown->viewer->setViewMode(PdfViewMode::PageManageView);
    m_shown->viewer->setWorkspaceMode(PdfWorkspaceMode::SplitMode);
    m_shown->viewer->setViewMode(PdfViewMode::DocumentView);
    QVERIFY(!m_shown->button("pdfSplitButton").isChecked());
    QCOMPARE(m_shown->gridMode(), PdfWorkspaceMode::NormalMode);
    QVERIFY(m_shown->sidePanel().isHidden());
}

void TestPdfViewerModes::documentViewOfAnEmptyDocumentResetsTheWorkspaceMode()
{
    m_shown->viewer->setViewMode(PdfViewMode::PageManageView);
    m_shown->viewer->setWorkspaceMode(PdfWorkspaceMode::ExtractMode);
    m_shown->viewer->setViewMode(PdfViewMode::DocumentView);
    QVERIFY(m_shown->button("pdfDocumentViewButton").isChecked());
    QVERIFY(!m_shown->button("pdfExtractButton").isChecked());
    QCOMPARE(m_shown->gridMode(), PdfWorkspaceMode::NormalMode);
    QVERIFY(m_shown->sidePanel().isHidden());
    QTest::qWait(20);
    QVERIFY(!m_shown->bottomBar().isVisible());
}

void TestPdfViewerModes::workspaceModeAloneLeavesTheView()
{
    QVERIFY(m_shown->openPages(2));
    m_shown->viewer->setWorkspaceMode(PdfWorkspaceMode::InsertMode);
    QCOMPARE(m_shown->views().currentIndex(), 0);
    QVERIFY(m_shown->button("pdfDocumentViewButton").isChecked());
    QVERIFY(m_shown->thumbnails().isVisible());
    QCOMPARE(m_shown->gridMode(), PdfWorkspaceMode::InsertMode);
}

void TestPdfViewerModes::workspaceModeReachesToolBarThenGridThenSidePanel()
{
    QVERIFY(m_shown->openPages(2));
    m_shown->viewer->setViewMode(PdfViewMode::PageManageView);
    QStringList log;
    const auto note = [&](const QString &part) {
        log.append(part % u' ' % QString::number(static_cast<int>(m_shown->gridMode())));
    };
    connect(&m_shown->button("pdfSplitButton"), &QAbstractButton::toggled, this,
            [&note] { note(u"button"_s); });
    const VisibilityWatch panel(&m_shown->sidePanel(), [&note](bool shown) {
        note(shown ? u"panel shown"_s : u"panel hidden"_s);
    });
    m_shown->viewer->setWorkspaceMode(PdfWorkspaceMode::SplitMode);
    QCOMPARE(log, (QStringList{u"button 0"_s, u"panel shown 3"_s}));
    log.clear();
    m_shown->viewer->setWorkspaceMode(PdfWorkspaceMode::NormalMode);
    QCOMPARE(log, (QStringList{u"button 3"_s, u"panel hidden 0"_s}));
}

void TestPdfViewerModes::openingReturnsToReading()
{
    QVERIFY(m_shown->openPages(4));
    m_shown->viewer->goToPage(3);
    m_shown->viewer->fitPage();
    emit m_shown->grid().rotatePageRequested(m_shown->idAt(0));
    m_shown->button("pdfSplitButton").click();
    m_shown->viewer->showThumbnailPanel(false);
    DialogAnswers answers;
    answers.addButton(u"messageBoxDiscardButton"_s);
    QVERIFY(
        m_shown->viewer->openFile(m_shown->add(u"other.pdf"_s, PdfFixture::pagesByNumber(3)), {}));
    QCOMPARE(m_shown->views().currentIndex(), 0);
    QVERIFY(m_shown->button("pdfDocumentViewButton").isChecked());
    QVERIFY(!m_shown->button("pdfSplitButton").isChecked());
    QCOMPARE(m_shown->gridMode(), PdfWorkspaceMode::NormalMode);
    QVERIFY(m_shown->sidePanel().isHidden());
    QVERIFY(!m_shown->thumbnails().isVisible());
    QCOMPARE(m_shown->history().count(), 0);
    QCOMPARE(m_shown->view().fitMode(), PdfDocumentView::FitMode::Width);
    QVERIFY(m_shown->button("pdfFitToggleButton").property("fitWidth").toBool());
    QCOMPARE(m_shown->view().currentPage(), 0);
    QTRY_VERIFY(m_shown->bottomBar().isVisible());
}

void TestPdfViewerModes::keyboardFocusFollowsTheView()
{
    QVERIFY(m_shown->openPages(3));
    m_shown->viewer->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_shown->viewer.get()));
    m_shown->viewer->setFocus();
    QTRY_VERIFY(m_shown->view().hasFocus());
    m_shown->button("pdfPageManageViewButton").click();
    QTRY_VERIFY(m_shown->grid().isAncestorOf(QApplication::focusWidget()));
    // As when something beside the views was used meanwhile.
    QLineEdit other(m_shown->viewer.get());
    other.show();
    other.setFocus();
    QTRY_VERIFY(other.hasFocus());
    m_shown->viewer->setFocus();
    QTRY_VERIFY(m_shown->grid().isAncestorOf(QApplication::focusWidget()));
    m_shown->button("pdfDocumentViewButton").click();
    QTRY_VERIFY(m_shown->view().hasFocus());
}

void TestPdfViewerModes::thumbnailChoiceIsKeptOverTheGrid_data()
{
    QTest::addColumn<bool>("chosen");
    QTest::newRow("shown") << true;
    QTest::newRow("hidden") << false;
}

void TestPdfViewerModes::thumbnailChoiceIsKeptOverTheGrid()
{
    QFETCH(bool, chosen);
    QVERIFY(m_shown->openPages(2));
    m_shown->viewer->showThumbnailPanel(chosen);
    m_shown->button("pdfPageManageViewButton").click();
    QVERIFY(!m_shown->thumbnails().isVisible());
    m_shown->button("pdfDocumentViewButton").click();
    QCOMPARE(m_shown->thumbnails().isVisible(), chosen);
    QCOMPARE(m_shown->button("pdfThumbnailButton").isChecked(), chosen);
}

void TestPdfViewerModes::thumbnailChoiceMadeInTheGridCountsAfterwards()
{
    QVERIFY(m_shown->openPages(2));
    m_shown->viewer->showThumbnailPanel(false);
    m_shown->viewer->setViewMode(PdfViewMode::PageManageView);
    m_shown->viewer->showThumbnailPanel(true);
    QVERIFY(!m_shown->thumbnails().isVisible());
    QVERIFY(m_shown->button("pdfThumbnailButton").isChecked());
    m_shown->viewer->setViewMode(PdfViewMode::DocumentView);
    QVERIFY(m_shown->thumbnails().isVisible());
}

void TestPdfViewerModes::previewKeepsHiddenThumbnailsHidden()
{
    QVERIFY(m_shown->openPages(3));
    m_shown->viewer->showThumbnailPanel(false);
    m_shown->button("pdfPageManageViewButton").click();
    emit m_shown->grid().previewPageRequested(m_shown->idAt(2));
    QCOMPARE(m_shown->views().currentIndex(), 0);
    QVERIFY(!m_shown->thumbnails().isVisible());
}

void TestPdfViewerModes::fitModeIsAppliedAgainWhenThumbnailsAreHidden_data()
{
    QTest::addColumn<bool>("fitWidth");
    QTest::newRow("width") << true;
    QTest::newRow("page") << false;
}

void TestPdfViewerModes::fitModeIsAppliedAgainWhenThumbnailsAreHidden()
{
    QFETCH(bool, fitWidth);
    // Wide and low pages: the width of the view decides in both modes.
    QVERIFY(m_shown->viewer->openFile(
        m_shown->add(u"wide.pdf"_s, PdfFixture::document({PdfFixture::plain({900, 90}, Qt::red)})),
        {}));
    if (!fitWidth) {
        m_shown->viewer->fitPage();
    }
    const auto fitsWidth = [this] {
        return qFuzzyCompare(m_shown->view().zoomFactor(),
                             (m_shown->view().viewport()->width() - 64) / 900.0);
    };
    QTRY_VERIFY(fitsWidth());
    const double before = m_shown->view().zoomFactor();
    m_shown->button("pdfThumbnailButton").click();
    QTRY_VERIFY(m_shown->view().zoomFactor() > before && fitsWidth());
    m_shown->button("pdfThumbnailButton").click();
    QTRY_VERIFY(qFuzzyCompare(m_shown->view().zoomFactor(), before) && fitsWidth());
    QCOMPARE(m_shown->view().fitMode(),
             fitWidth ? PdfDocumentView::FitMode::Width : PdfDocumentView::FitMode::Page);
}

void TestPdfViewerModes::freeZoomStaysWhenThumbnailsAreHidden()
{
    QVERIFY(m_shown->openPages(3));
    m_shown->viewer->setZoomFactor(1.25);
    m_shown->button("pdfThumbnailButton").click();
    QTest::qWait(20);
    QCOMPARE(m_shown->view().zoomFactor(), 1.25);
    QCOMPARE(m_shown->view().fitMode(), PdfDocumentView::FitMode::Manual);
}

void TestPdfViewerModes::bottomBarFloatsInTheMiddleAboveTheBottom()
{
    QVERIFY(m_shown->openPages(3));
    QTRY_VERIFY(m_shown->bottomBar().isVisible());
    QCOMPARE(m_shown->bottomBar().parentWidget(), &m_shown->views());
    const QRect bar = m_shown->bottomBar().geometry();
    QCOMPARE(bar, expectedBarGeometry());
    QCOMPARE(m_shown->views().height() - bar.y() - bar.height(), 24);
    QVERIFY(bar.x() > 0);
}

void TestPdfViewerModes::bottomBarFollowsTheViews()
{
    QVERIFY(m_shown->openPages(3));
    QTRY_VERIFY(m_shown->bottomBar().isVisible());
    const QRect before = m_shown->bottomBar().geometry();
    m_shown->viewer->resize(m_shown->viewer->size() + QSize(100, 60));
    QTRY_COMPARE(m_shown->bottomBar().geometry(), expectedBarGeometry());
    QCOMPARE(m_shown->bottomBar().y(), before.y() + 60);
    const int viewsWidth = m_shown->views().width();
    m_shown->button("pdfThumbnailButton").click();
    QTRY_VERIFY(m_shown->views().width() > viewsWidth + 200);
    QTRY_COMPARE(m_shown->bottomBar().geometry(), expectedBarGeometry());
    QVERIFY(m_shown->bottomBar().x() > before.x() + 50 + 100);
}

void TestPdfViewerModes::bottomBarStaysBelowTheTopOfALowView()
{
    QVERIFY(m_shown->openPages(3));
    QTRY_VERIFY(m_shown->bottomBar().isVisible());
    m_shown->viewer->setMinimumSize(1, 1);
    m_shown->viewer->resize(m_shown->viewer->width(), m_shown->toolBar().height() + 60);
    QTRY_VERIFY(m_shown->views().height() < 70);
    QTRY_COMPARE(m_shown->bottomBar().y(), 8);
}

void TestPdfViewerModes::bottomBarStartsAtTheLeftOfANarrowView()
{
    QVERIFY(m_shown->openPages(3));
    QTRY_VERIFY(m_shown->bottomBar().isVisible());
    m_shown->viewer->showThumbnailPanel(false);
    m_shown->viewer->setMinimumSize(1, 1);
    m_shown->viewer->resize(200, m_shown->viewer->height());
    QTRY_VERIFY(m_shown->views().width() < m_shown->bottomBar().sizeHint().width());
    QTRY_COMPARE(m_shown->bottomBar().x(), 0);
}

void TestPdfViewerModes::bottomBarIsHiddenWithoutPages()
{
    QTest::qWait(20);
    QVERIFY(!m_shown->bottomBar().isVisible());
    m_shown->viewer->resize(m_shown->viewer->size() + QSize(10, 10));
    QTest::qWait(20);
    QVERIFY(!m_shown->bottomBar().isVisible());
}

void TestPdfViewerModes::bottomBarComesBackWithTheDocumentView()
{
    QVERIFY(m_shown->openPages(3));
    m_shown->button("pdfPageManageViewButton").click();
    m_shown->viewer->resize(m_shown->viewer->size() + QSize(40, 40));
    m_shown->model().insertBlankPage(0, {});
    QTest::qWait(20);
    QVERIFY(!m_shown->bottomBar().isVisible());
    m_shown->button("pdfDocumentViewButton").click();
    QTRY_VERIFY(m_shown->bottomBar().isVisible());
    QTRY_COMPARE(m_shown->bottomBar().geometry(), expectedBarGeometry());
}

void TestPdfViewerModes::bottomBarStaysAboveTheView()
{
    QVERIFY(m_shown->openPages(3));
    for (int round = 0; round < 2; ++round) {
        m_shown->button("pdfPageManageViewButton").click();
        m_shown->button("pdfDocumentViewButton").click();
        QTRY_VERIFY(m_shown->bottomBar().isVisible());
        const QPoint centre = m_shown->bottomBar().geometry().center();
        const QWidget *hit = m_shown->views().childAt(centre);
        QVERIFY(hit == &m_shown->bottomBar() || m_shown->bottomBar().isAncestorOf(hit));
    }
}

void TestPdfViewerModes::hiddenViewerPlacesItsBarWhenShown()
{
    m_shown->viewer->hide();
    QVERIFY(m_shown->openPages(3));
    m_shown->viewer->resize(900, 600);
    QTest::qWait(20);
    QVERIFY(m_shown->bottomBar().isHidden());
    m_shown->viewer->show();
    QTRY_VERIFY(m_shown->bottomBar().isVisible());
    QTRY_COMPARE(m_shown->bottomBar().geometry(), expectedBarGeometry());
}

QTEST_MAIN(TestPdfViewerModes)
#include "tst_pdf_viewer_modes.moc"
