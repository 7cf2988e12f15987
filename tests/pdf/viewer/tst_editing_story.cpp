// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/cards/page_card_geometry.h"
#include "pdf/viewer/commands/page_printer.h"
#include "tests/pdf/viewer/marked_pages.h"
#include "tests/pdf/viewer/page_drag.h"
#include "tests/pdf/viewer/shown_viewer.h"
#include "tests/support/dialog_answers.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QCheckBox>
#include <QPageSize>
#include <QPrinter>
#include <QProcess>
#include <QPushButton>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTest>

using MarkedPages::Mark;

namespace {

constexpr int kPages = 300;
constexpr int kFirstOfPlain = 1000;
constexpr int kFirstOfProtected = 2000;
const QString kPassword = QStringLiteral("Schlüssel");
const QString kOtherPassword = QStringLiteral("secret");

QByteArray encrypted(const QByteArray &document, const QString &password)
{
    PdfFixture::Encryption encryption;
    encryption.userPassword = password.toUtf8();
    encryption.ownerPassword = "owner";
    return PdfFixture::encrypted(document, encryption);
}

/// What `qpdf --check` says about a file; empty when it has nothing to complain of.
QString complaints(const QString &path, const QString &password = {})
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(QStringLiteral("qpdf"),
                  {QStringLiteral("--check"), QStringLiteral("--password=") + password, path});
    if (!process.waitForFinished()) {
        return process.errorString();
    }
    return process.exitCode() == 0 ? QString() : QString::fromUtf8(process.readAll());
}

/// The marks on the sheets of a printed file, of which those of pages that lie on their side are
/// filled in the middle only.
QList<Mark> printedMarks(const QString &path, const QList<Mark> &expected)
{
    PdfDocumentInfo info;
    if (!PdfEditorBackend::inspectDocument(path, {}, &info, nullptr, nullptr)) {
        return {};
    }
    constexpr QSize kSheet(200, 300);
    QList<Mark> marks;
    for (qsizetype sheet = 0; sheet < info.pageSizes.size(); ++sheet) {
        PdfSourcePage page;
        page.filePath = path;
        page.pageIndex = static_cast<qint32>(sheet);
        const QImage image = PdfEditorBackend::renderPage(page, kSheet, nullptr, nullptr);
        QRect filled(QPoint(0, 0), kSheet);
        if (expected.value(sheet).rotation % 180 != 0) {
            filled.setSize(kSheet.transposed().scaled(kSheet, Qt::KeepAspectRatio));
            filled.moveCenter(image.rect().center());
        }
        marks.append(MarkedPages::markOf(image.copy(filled)));
    }
    return marks;
}

} // namespace

/// A long document is opened, rearranged, saved, printed, extracted and split by mouse and
/// keyboard; what was written is read back from its pictures.
class TestEditingStory final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void aProtectedDocumentIsRearrangedAndSaved();
    void pagesAreExtractedAndTheDocumentIsSplit();
    void theArrangedDocumentIsPrinted();
    void closingAsksAboutUnsavedChanges();

private:
    [[nodiscard]] QList<Mark> shownMarks() const;
    [[nodiscard]] PageCellGeometry cell(int row) const;
    void clickButton(const char *name) const;
    void clickInGrid(QPoint point) const;
    void clickSelectionBox(int row) const;
    void clickAction(int row, PageGridHit::ActionPart part) const;
    void undoEverything() const;
    void redoEverything() const;

    std::unique_ptr<ShownViewer> m_shown;
};

void TestEditingStory::initTestCase()
{
    QStandardPaths::setTestModeEnabled(true);
}

QList<Mark> TestEditingStory::shownMarks() const
{
    return MarkedPages::marksOf(m_shown->model().sourcePages());
}

PageCellGeometry TestEditingStory::cell(int row) const
{
    const auto &list = m_shown->part<PageManagerListView>();
    const QRect rect = list.visualRect(m_shown->model().index(row));
    // The size of thumbnails at the zoom that a grid starts with.
    return pageCellGeometry(rect, pageGridMetrics(kInitialGridZoom).thumbnail);
}

void TestEditingStory::clickButton(const char *name) const
{
    QPushButton &button = m_shown->button(name);
    QVERIFY2(button.isEnabled() && button.isVisible(), name);
    QTest::mouseClick(&button, Qt::LeftButton);
}

void TestEditingStory::clickInGrid(QPoint point) const
{
    QTest::mouseClick(m_shown->part<PageManagerListView>().viewport(), Qt::LeftButton, {}, point);
}

void TestEditingStory::clickSelectionBox(int row) const
{
    clickInGrid(cell(row).selectionBox.center());
}

void TestEditingStory::clickAction(int row, PageGridHit::ActionPart part) const
{
    moveMouse(m_shown->part<PageManagerListView>().viewport(), cell(row).thumbnail.center());
    clickInGrid(barPart(cell(row).actionBar, PageGridHit::PartCount, part).center());
}

void TestEditingStory::undoEverything() const
{
    const QPushButton &undo = m_shown->button("pdfUndoButton");
    for (int i = 0; i < 100 && undo.isEnabled(); ++i) {
        clickButton("pdfUndoButton");
    }
    QVERIFY(!undo.isEnabled());
}

void TestEditingStory::redoEverything() const
{
    const QPushButton &redo = m_shown->button("pdfRedoButton");
    for (int i = 0; i < 100 && redo.isEnabled(); ++i) {
        clickButton("pdfRedoButton");
    }
    QVERIFY(!redo.isEnabled());
}

void TestEditingStory::aProtectedDocumentIsRearrangedAndSaved()
{
    m_shown = std::make_unique<ShownViewer>();
    PdfViewerWidget &viewer = *m_shown->viewer;
    DialogAnswers answers;

    // Opened, with one wrong password on the way.
    const QString report = m_shown->add(QStringLiteral("report.pdf"),
                                        encrypted(MarkedPages::document(0, kPages), kPassword));
    answers.addPassword(QStringLiteral("wrong"));
    answers.addPassword(kPassword);
    QVERIFY(viewer.openFile(report, {}));
    QCOMPARE(m_shown->model().rowCount(), kPages);
    QTRY_VERIFY(m_shown->thumbnails().thumbnails().image(*m_shown->model().pageAt(0)) != nullptr);

    // Read by keyboard and bar.
    QTest::keyClick(&m_shown->view(), Qt::Key_PageDown);
    QTRY_VERIFY(m_shown->bottomBar().isVisible());
    QVERIFY(m_shown->view().currentPage() >= 0);

    // Rearranged in the grid.
    clickButton("pdfPageManageViewButton");
    QTRY_VERIFY(m_shown->grid().isVisible());
    QTRY_VERIFY(m_shown->grid().thumbnails().image(*m_shown->model().pageAt(0)) != nullptr);
    auto *viewport = m_shown->part<PageManagerListView>().viewport();
    const QRect third = cell(2).thumbnail;
    dragWithMouse(viewport, cell(0).thumbnail.center(), viewport,
                  QPoint(third.right(), third.center().y()));
    QTRY_COMPARE(m_shown->history().count(), 1);
    QList<Mark> expected = MarkedPages::upright([] {
        QList<int> numbers{1, 2, 0};
        for (int number = 3; number < kPages; ++number) {
            numbers.append(number);
        }
        return numbers;
    }());
    QCOMPARE(shownMarks(), expected);

    clickSelectionBox(1);
    clickSelectionBox(3);
    QCOMPARE(m_shown->model().selectedRows(), (QList<int>{1, 3}));
    clickButton("pdfRotateRightButton");
    expected[1].rotation = 90;
    expected[3].rotation = 90;
    QCOMPARE(shownMarks(), expected);
    clickSelectionBox(3);
    clickButton("pdfDeleteButton");
    expected.removeAt(1);
    QCOMPARE(shownMarks(), expected);
    clickAction(0, PageGridHit::DuplicatePart);
    expected.insert(1, expected.at(0));
    QCOMPARE(shownMarks(), expected);
    clickAction(1, PageGridHit::RotatePart);
    expected[1].rotation = 90;
    clickAction(4, PageGridHit::DeletePart);
    expected.removeAt(4);
    QCOMPARE(shownMarks(), expected);

    // Two files and a blank page are inserted behind the first page.
    const QString plain =
        m_shown->add(QStringLiteral("plain file.pdf"), MarkedPages::document(kFirstOfPlain, 2));
    const QString guarded =
        m_shown->add(QStringLiteral("受保护.pdf"),
                     encrypted(MarkedPages::document(kFirstOfProtected, 2), kOtherPassword));
    clickButton("pdfInsertButton");
    answers.addMenuEntry(QStringLiteral("插入 PDF"));
    answers.addFiles({plain, guarded});
    answers.addPassword(kOtherPassword);
    clickInGrid(cell(0).insertZone.center());
    QTRY_COMPARE(m_shown->model().rowCount(), int(expected.size()) + 4);
    for (const int number :
         {kFirstOfProtected + 1, kFirstOfProtected, kFirstOfPlain + 1, kFirstOfPlain}) {
        expected.insert(1, Mark{number, 0});
    }
    QCOMPARE(shownMarks(), expected);
    answers.addMenuEntry(QStringLiteral("在后面插入空白页"));
    clickInGrid(cell(0).insertZone.center());
    QTRY_COMPARE(m_shown->model().rowCount(), int(expected.size()) + 1);
    expected.insert(1, MarkedPages::kBlank);
    QCOMPARE(shownMarks(), expected);

    // All of it is undone and done again.
    undoEverything();
    QCOMPARE(shownMarks().size(), kPages);
    QCOMPARE(shownMarks().first(3), MarkedPages::upright({0, 1, 2}));
    QVERIFY(!viewer.isModified());
    redoEverything();
    QCOMPARE(shownMarks(), expected);
    QVERIFY(viewer.isModified());

    // Saved over the open file while the box shows.
    const qsizetype before = answers.seen().size();
    m_shown->menuEntry("pdfMoreMenu", QStringLiteral("保存文件")).trigger();
    QVERIFY2(answers.seen().mid(before).contains(QStringLiteral("正在保存 PDF")),
             qPrintable(answers.seen().join(u'|')));
    QVERIFY(!viewer.isModified());
    QCOMPARE(MarkedPages::marksIn(report), expected);
    QCOMPARE(complaints(report), QString());

    // Life goes on with the same pages.
    QCOMPARE(shownMarks(), expected);
    undoEverything();
    QCOMPARE(shownMarks().first(4), MarkedPages::upright({0, 1, 2, 3}));
    redoEverything();
    QCOMPARE(shownMarks(), expected);
}

void TestEditingStory::pagesAreExtractedAndTheDocumentIsSplit()
{
    QVERIFY(m_shown);
    DialogAnswers answers;
    const QList<Mark> marks = shownMarks();
    m_shown->model().clearSelection();

    clickButton("pdfExtractButton");
    QTRY_VERIFY(m_shown->sidePanel().isVisible());
    QCoreApplication::processEvents();
    for (const int row : {0, 2, 3}) {
        clickSelectionBox(row);
    }
    QCOMPARE(m_shown->model().selectedRows(), (QList<int>{0, 2, 3}));
    auto *combine =
        m_shown->sidePanel().findChild<QCheckBox *>(QStringLiteral("pdfCombineExtractCheckBox"));
    QTRY_VERIFY(combine->isEnabled());
    QTest::mouseClick(combine, Qt::LeftButton, {}, QPoint(12, combine->height() / 2));
    QVERIFY(combine->isChecked());
    const auto clickPrimary = [this] {
        for (auto *button :
             m_shown->sidePanel().findChildren<QPushButton *>(QStringLiteral("pdfPrimaryAction"))) {
            if (button->isVisible()) {
                QTest::mouseClick(button, Qt::LeftButton);
                return;
            }
        }
        QFAIL("no button");
    };
    clickPrimary();
    const QString extracted = m_shown->path(QStringLiteral("report-extracted.pdf"));
    // With its own protection, which a page of another protected document would have ended.
    QVERIFY(MarkedPages::marksIn(extracted).isEmpty());
    QCOMPARE(MarkedPages::marksIn(extracted, kPassword),
             (QList<Mark>{marks.at(0), marks.at(2), marks.at(3)}));
    QCOMPARE(complaints(extracted, kPassword), QString());

    clickButton("pdfSplitButton");
    for (const int row : {1, 4}) {
        m_shown->part<PageManagerListView>().scrollTo(m_shown->model().index(row));
        const QRect zone = cell(row).splitZone;
        clickInGrid(QPoint(qMax(zone.center().x(), 2), zone.center().y()));
    }
    clickPrimary();
    const auto part = [this](int number) {
        return m_shown->path(QStringLiteral("report-%1.pdf").arg(number));
    };
    QCOMPARE(MarkedPages::marksIn(part(1), kPassword), marks.mid(0, 1));
    QCOMPARE(MarkedPages::marksIn(part(2)), marks.mid(1, 3));
    QCOMPARE(MarkedPages::marksIn(part(3)), marks.mid(4));
    for (const int number : {1, 2, 3}) {
        QCOMPARE(complaints(part(number), number == 1 ? kPassword : QString()), QString());
    }
    QVERIFY(!QFile::exists(part(4)));
    QVERIFY(answers.seen().contains(QStringLiteral("提取完成")));
    QVERIFY(answers.seen().contains(QStringLiteral("拆分完成")));
    QVERIFY(!m_shown->viewer->isModified());
}

void TestEditingStory::theArrangedDocumentIsPrinted()
{
    QVERIFY(m_shown);
    const QList<Mark> marks = shownMarks();
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    // Sheets of the pages' shape.
    printer.setPageSize(QPageSize(QSizeF(100, 150), QPageSize::Point));
    printer.setPageMargins(QMarginsF(0, 0, 0, 0));
    const QString printed = m_shown->path(QStringLiteral("printed.pdf"));
    printer.setOutputFileName(printed);
    PagePrinter pages;
    constexpr int kPrinted = 8;
    QCOMPARE(
        pages.print(m_shown->model().pages(), printRange(1, kPrinted, int(marks.size())), printer),
        PagePrinter::Outcome::Printed);
    QCOMPARE(printedMarks(printed, marks.first(kPrinted)), marks.first(kPrinted));
}

void TestEditingStory::closingAsksAboutUnsavedChanges()
{
    QVERIFY(m_shown);
    PdfViewerWidget &viewer = *m_shown->viewer;
    const QString report = m_shown->path(QStringLiteral("report.pdf"));
    const qsizetype pages = MarkedPages::marksIn(report).size();
    QVERIFY(viewer.maybeSave());

    clickButton("pdfPageManageViewButton");
    clickAction(0, PageGridHit::DeletePart);
    QVERIFY(viewer.isModified());
    DialogAnswers answers;
    answers.addButton(QStringLiteral("messageBoxCancelButton"));
    QVERIFY(!viewer.maybeSave());
    QVERIFY(answers.seen().contains(QStringLiteral("当前 PDF 已修改，是否保存？")));
    answers.addButton(QStringLiteral("messageBoxDiscardButton"));
    QVERIFY(viewer.maybeSave());
    QCOMPARE(MarkedPages::marksIn(report).size(), pages);
    answers.addButton(QStringLiteral("messageBoxConfirmButton"));
    QVERIFY(viewer.maybeSave());
    QCOMPARE(MarkedPages::marksIn(report).size(), pages - 1);
}

int main(int argc, char **argv)
{
    // The platform that most tests run on knows no dragging.
    qputenv("QT_QPA_PLATFORM", "minimal");
    const QApplication application(argc, argv);
    TestEditingStory test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_editing_story.moc"
