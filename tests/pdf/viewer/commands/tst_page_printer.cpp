// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/commands/page_printer.h"
#include "tests/pdf/viewer/page_numbers.h"
#include "tests/pdf/viewer/shown_viewer.h"
#include "tests/support/dialog_answers.h"
#include "tests/support/pdf_fixture.h"
#include "widgets/modern_message_box.h"

#include <QApplication>
#include <QFile>
#include <QImage>
#include <QLineEdit>
#include <QPageLayout>
#include <QPrintDialog>
#include <QPrinter>
#include <QRadioButton>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <functional>

using namespace Qt::StringLiterals;

namespace {

/// Pictures are stored with losses in the printed file.
constexpr int kTolerance = 12;
constexpr int kResolution = 100;
constexpr char kNoDialog[] = "the print dialog of this system cannot be answered";

/// A printer that writes an A4 PDF file.
class FilePrinter : public QPrinter
{
public:
    explicit FilePrinter(const QString &path)
        : QPrinter(QPrinter::HighResolution)
    {
        setOutputFormat(QPrinter::PdfFormat);
        setOutputFileName(path);
        setResolution(kResolution);
        setPageLayout(QPageLayout(QPageSize(QPageSize::A4), QPageLayout::Portrait,
                                  QMarginsF(20, 50, 60, 90), QPageLayout::Point));
    }
};

/// A printer that runs out of sheets.
class JammingPrinter final : public FilePrinter
{
public:
    using FilePrinter::FilePrinter;

    bool newPage() override { return m_sheetsLeft-- > 0 && QPrinter::newPage(); }

private:
    int m_sheetsLeft = 1;
};

bool hasNumber(QRgb pixel, int number)
{
    return PageNumbers::numberOf(QColor(pixel), kTolerance) == number;
}

/// The smallest rectangle around everything on a sheet that is not white.
QRect printedArea(const QImage &sheet)
{
    QRect area;
    for (int y = 0; y < sheet.height(); ++y) {
        for (int x = 0; x < sheet.width(); ++x) {
            if (!hasNumber(sheet.pixel(x, y), PageNumbers::kWhite)) {
                area = area.united(QRect(x, y, 1, 1));
            }
        }
    }
    return area;
}

bool isNear(const QRect &area, const QRectF &expected)
{
    constexpr double kSlack = 2.0;
    return qAbs(area.left() - expected.left()) <= kSlack &&
           qAbs(area.top() - expected.top()) <= kSlack &&
           qAbs(area.right() + 1 - expected.right()) <= kSlack &&
           qAbs(area.bottom() + 1 - expected.bottom()) <= kSlack;
}

QByteArray describe(const QRect &area)
{
    return QStringLiteral("%1,%2 %3x%4")
        .arg(area.x())
        .arg(area.y())
        .arg(area.width())
        .arg(area.height())
        .toLatin1();
}

} // namespace

class TestPagePrinter final : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void rangeOfPages_data();
    void rangeOfPages();

    void everyPageGetsItsSheet();
    void onlyTheRangeIsPrinted();
    void rowsBehindTheDocumentAreLeftOut();
    void pagesAreCentredAndAsLargeAsTheyFit_data();
    void pagesAreCentredAndAsLargeAsTheyFit();
    void turnedPageIsPrintedTurned();
    void landscapeSheetsAreFilledToo();
    void blankPageIsAnEmptySheet();
    void editedDocumentIsPrintedAsItStands();

    void failingPageEndsWithItsReason();
    void printerWithoutSheetsEndsWithAReason();
    void printerThatCannotStartIsTold();
    void nextJobForgetsTheReason();

    void emptyDocumentOpensNoDialog();
    void dialogIsSetToTheWholeDocument();
    void cancelledDialogPrintsNothing();
    void dialogPrintsTheWholeDocumentToAFile();
    void dialogPrintsTheChosenPages();
    void failedPrintingIsReported();
    void printerThatCannotStartIsReported();

private:
    [[nodiscard]] QString output() const { return m_folder->filePath(u"printed.pdf"_s); }
    /// Writes and opens a document.
    QList<PdfPageRecord> records(const QByteArray &document);
    /// The sheets of the printed file, at one pixel per point.
    [[nodiscard]] QList<QImage> sheets() const;
    [[nodiscard]] QList<int> sheetNumbers() const;
    /// Prints the viewer's document, answering the dialog with `answer`, which by default lets it
    /// print into the output. False if the dialog of this system cannot be answered.
    [[nodiscard]] bool printed(const ShownViewer &shown,
                               const std::function<bool(QPrintDialog &)> &answer = {}) const;

    std::unique_ptr<QTemporaryDir> m_folder;
    PdfDocumentModel m_model;
};

void TestPagePrinter::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
}

void TestPagePrinter::cleanup()
{
    QCOMPARE(QGuiApplication::overrideCursor(), nullptr);
}

QList<PdfPageRecord> TestPagePrinter::records(const QByteArray &document)
{
    const QString path = m_folder->filePath(u"source.pdf"_s);
    if (!PdfFixture::write(path, document) || !m_model.loadDocument(path, {}, nullptr, nullptr)) {
        return {};
    }
    return m_model.pages();
}

QList<QImage> TestPagePrinter::sheets() const
{
    PdfDocumentInfo info;
    if (!PdfEditorBackend::inspectDocument(output(), {}, &info, nullptr, nullptr)) {
        return {};
    }
    QList<QImage> images;
    for (const QSizeF &size : std::as_const(info.pageSizes)) {
        PdfSourcePage page;
        page.filePath = output();
        page.pageIndex = static_cast<qint32>(images.size());
        page.pageSize = size;
        images.append(PdfEditorBackend::renderPage(page, size.toSize(), nullptr, nullptr));
    }
    return images;
}

QList<int> TestPagePrinter::sheetNumbers() const
{
    QList<int> numbers;
    for (const QImage &sheet : sheets()) {
        numbers.append(PageNumbers::numberOf(
            sheet.pixelColor(sheet.width() / 2, sheet.height() / 2), kTolerance));
    }
    return numbers;
}

void TestPagePrinter::rangeOfPages_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("to");
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("end");
    QTest::newRow("no numbers") << 0 << 0 << 0 << 7;
    QTest::newRow("negative numbers") << -3 << -1 << 0 << 7;
    QTest::newRow("whole document") << 1 << 7 << 0 << 7;
    QTest::newRow("part") << 3 << 5 << 2 << 5;
    QTest::newRow("one page") << 4 << 4 << 3 << 4;
    QTest::newRow("from a page on") << 4 << 0 << 3 << 7;
    QTest::newRow("up to a page") << 0 << 2 << 0 << 2;
    QTest::newRow("to beyond the end") << 6 << 99 << 5 << 7;
    QTest::newRow("from beyond the end") << 99 << 0 << 6 << 7;
    QTest::newRow("all beyond the end") << 50 << 99 << 6 << 7;
    QTest::newRow("to before from") << 5 << 2 << 4 << 5;
    QTest::newRow("to before from beyond the end") << 99 << 1 << 6 << 7;
}

void TestPagePrinter::rangeOfPages()
{
    QFETCH(int, from);
    QFETCH(int, to);
    QFETCH(int, first);
    QFETCH(int, end);
    const PrintRange range = printRange(from, to, 7);
    QCOMPARE(range.first, first);
    QCOMPARE(range.end, end);
}

void TestPagePrinter::everyPageGetsItsSheet()
{
    const QList<PdfPageRecord> pages = records(PdfFixture::pagesByNumber(5));
    FilePrinter printer(output());
    PagePrinter job;
    QCOMPARE(job.print(pages, {0, 5}, printer), PagePrinter::Outcome::Printed);
    QVERIFY(job.reason().isEmpty());
    QCOMPARE(sheetNumbers(), (QList<int>{0, 1, 2, 3, 4}));
    for (const QImage &sheet : sheets()) {
        QCOMPARE(sheet.size(), QSize(595, 842));
    }
}

void TestPagePrinter::onlyTheRangeIsPrinted()
{
    const QList<PdfPageRecord> pages = records(PdfFixture::pagesByNumber(6));
    FilePrinter printer(output());
    QCOMPARE(PagePrinter().print(pages, {2, 4}, printer), PagePrinter::Outcome::Printed);
    QCOMPARE(sheetNumbers(), (QList<int>{2, 3}));
}

void TestPagePrinter::rowsBehindTheDocumentAreLeftOut()
{
    const QList<PdfPageRecord> pages = records(PdfFixture::pagesByNumber(2));
    FilePrinter printer(output());
    QCOMPARE(PagePrinter().print(pages, {1, 3}, printer), PagePrinter::Outcome::Printed);
    QCOMPARE(sheetNumbers().first(), 1);
}

void TestPagePrinter::pagesAreCentredAndAsLargeAsTheyFit_data()
{
    QTest::addColumn<QSizeF>("size");
    QTest::newRow("upright") << QSizeF(200, 300);
    QTest::newRow("narrow") << QSizeF(40, 300);
    QTest::newRow("wide") << QSizeF(300, 100);
    QTest::newRow("square") << QSizeF(1000, 1000);
    QTest::newRow("larger than the sheet") << QSizeF(1191, 1684);
    QTest::newRow("tiny") << QSizeF(9, 6);
}

void TestPagePrinter::pagesAreCentredAndAsLargeAsTheyFit()
{
    QFETCH(QSizeF, size);
    const QList<PdfPageRecord> pages =
        records(PdfFixture::document({PdfFixture::plain(size, PdfFixture::numberColour(0)),
                                      PdfFixture::plain({200, 300}, PdfFixture::numberColour(7))}));
    FilePrinter printer(output());
    QCOMPARE(PagePrinter().print(pages, {0, 2}, printer), PagePrinter::Outcome::Printed);
    // What the margins leave of the sheet.
    const QRectF printable(20, 50, 595 - 20 - 60, 842 - 50 - 90);
    QRectF expected(QPointF(0, 0), size.scaled(printable.size(), Qt::KeepAspectRatio));
    expected.moveCenter(printable.center());
    const QRect area = printedArea(sheets().at(0));
    QVERIFY2(isNear(area, expected), describe(area).constData());
    // The size of one page does not matter to the next.
    QRectF next(QPointF(0, 0), QSizeF(200, 300).scaled(printable.size(), Qt::KeepAspectRatio));
    next.moveCenter(printable.center());
    const QRect nextArea = printedArea(sheets().at(1));
    QVERIFY2(isNear(nextArea, next), describe(nextArea).constData());
}

void TestPagePrinter::turnedPageIsPrintedTurned()
{
    records(PdfFixture::document({PdfFixture::quartered({200, 300})}));
    m_model.rotatePages({m_model.pageAt(0)->id}, 90);
    FilePrinter printer(output());
    QCOMPARE(PagePrinter().print(m_model.pages(), {0, 1}, printer), PagePrinter::Outcome::Printed);
    const QImage sheet = sheets().at(0);
    const QRect area = printedArea(sheet);
    QVERIFY(area.width() > area.height());
    const auto colourAt = [&](double x, double y) {
        return QColor(sheet.pixel(area.x() + static_cast<int>(area.width() * x),
                                  area.y() + static_cast<int>(area.height() * y)));
    };
    // Blue and yellow stand above red and green; turned clockwise, red and blue stand above.
    QVERIFY(colourAt(0.25, 0.25).red() > 200 && colourAt(0.25, 0.25).blue() < 60);
    QVERIFY(colourAt(0.75, 0.25).blue() > 200 && colourAt(0.75, 0.25).red() < 60);
    QVERIFY(colourAt(0.25, 0.75).green() > 200 && colourAt(0.25, 0.75).red() < 60);
    QVERIFY(colourAt(0.75, 0.75).green() > 200 && colourAt(0.75, 0.75).red() > 200);
}

void TestPagePrinter::landscapeSheetsAreFilledToo()
{
    const QList<PdfPageRecord> pages =
        records(PdfFixture::document({PdfFixture::plain({300, 200}, PdfFixture::numberColour(0))}));
    FilePrinter printer(output());
    printer.setPageLayout(QPageLayout(QPageSize(QPageSize::A4), QPageLayout::Landscape,
                                      QMarginsF(30, 30, 30, 30), QPageLayout::Point));
    QCOMPARE(PagePrinter().print(pages, {0, 1}, printer), PagePrinter::Outcome::Printed);
    QCOMPARE(sheets().at(0).size(), QSize(842, 595));
    const QRectF printable(30, 30, 842 - 60, 595 - 60);
    QRectF expected(QPointF(0, 0), QSizeF(300, 200).scaled(printable.size(), Qt::KeepAspectRatio));
    expected.moveCenter(printable.center());
    const QRect area = printedArea(sheets().at(0));
    QVERIFY2(isNear(area, expected), describe(area).constData());
}

void TestPagePrinter::blankPageIsAnEmptySheet()
{
    records(PdfFixture::pagesByNumber(2));
    m_model.insertBlankPage(1, {200, 300});
    FilePrinter printer(output());
    QCOMPARE(PagePrinter().print(m_model.pages(), {0, 3}, printer), PagePrinter::Outcome::Printed);
    QCOMPARE(sheetNumbers(), (QList<int>{0, PageNumbers::kWhite, 1}));
    QVERIFY(printedArea(sheets().at(1)).isEmpty());
}

void TestPagePrinter::editedDocumentIsPrintedAsItStands()
{
    records(PdfFixture::pagesByNumber(4));
    m_model.moveRows({}, 0, 1, {}, 4);
    m_model.removePages({m_model.pageAt(1)->id});
    FilePrinter printer(output());
    QCOMPARE(PagePrinter().print(m_model.pages(), {0, 3}, printer), PagePrinter::Outcome::Printed);
    QCOMPARE(sheetNumbers(), (QList<int>{1, 3, 0}));
}

void TestPagePrinter::failingPageEndsWithItsReason()
{
    QList<PdfPageRecord> pages = records(PdfFixture::pagesByNumber(4));
    pages[2].sourcePath = m_folder->filePath(u"missing.pdf"_s);
    pages[2].revision.reset();
    QString reason;
    QVERIFY(PdfEditorBackend::renderPage(pages.at(2).toSourcePage(), {4, 4}, nullptr, &reason)
                .isNull());
    QVERIFY(!reason.isEmpty());
    FilePrinter printer(output());
    PagePrinter job;
    QCOMPARE(job.print(pages, {0, 4}, printer), PagePrinter::Outcome::Incomplete);
    QCOMPARE(job.reason(), reason);
    const QList<int> numbers = sheetNumbers();
    QCOMPARE(numbers.mid(0, 2), (QList<int>{0, 1}));
    QVERIFY(!numbers.contains(3));
}

void TestPagePrinter::printerWithoutSheetsEndsWithAReason()
{
    const QList<PdfPageRecord> pages = records(PdfFixture::pagesByNumber(4));
    JammingPrinter printer(output());
    PagePrinter job;
    QCOMPARE(job.print(pages, {0, 4}, printer), PagePrinter::Outcome::Incomplete);
    QCOMPARE(job.reason(), u"打印机无法创建新页面。"_s);
    QCOMPARE(sheetNumbers(), (QList<int>{0, 1}));
}

void TestPagePrinter::printerThatCannotStartIsTold()
{
    const QList<PdfPageRecord> pages = records(PdfFixture::pagesByNumber(2));
    FilePrinter printer(m_folder->filePath(u"no/such/folder/printed.pdf"_s));
    PagePrinter job;
    QCOMPARE(job.print(pages, {0, 2}, printer), PagePrinter::Outcome::NotStarted);
    QVERIFY(job.reason().isEmpty());
}

void TestPagePrinter::nextJobForgetsTheReason()
{
    const QList<PdfPageRecord> pages = records(PdfFixture::pagesByNumber(3));
    PagePrinter job;
    {
        JammingPrinter printer(output());
        QCOMPARE(job.print(pages, {0, 3}, printer), PagePrinter::Outcome::Incomplete);
    }
    FilePrinter printer(output());
    QCOMPARE(job.print(pages, {0, 3}, printer), PagePrinter::Outcome::Printed);
    QVERIFY(job.reason().isEmpty());
    QCOMPARE(sheetNumbers(), (QList<int>{0, 1, 2}));
}

namespace {

/// Answers the next print dialog.
class PrintDialogAnswer final : public QObject
{
public:
    explicit PrintDialogAnswer(std::function<void(QPrintDialog &dialog)> answer)
    {
        connect(&m_timer, &QTimer::timeout, this, [this, answer] {
            auto *dialog = qobject_cast<QPrintDialog *>(QApplication::activeModalWidget());
            if (dialog && dialog->isVisible()) {
                m_timer.stop();
                ++m_count;
                answer(*dialog);
            }
        });
        m_timer.start(1);
    }

    /// How many dialogs came up.
    [[nodiscard]] int count() const { return m_count; }

private:
    QTimer m_timer;
    int m_count = 0;
};

/// Lets the dialog print into a file, if it offers that; cancels it otherwise.
bool printIntoFile(QPrintDialog &dialog, const QString &path)
{
    auto *field = dialog.findChild<QLineEdit *>(u"filename"_s);
    if (!field || !field->isEnabled()) {
        dialog.reject();
        return false;
    }
    dialog.printer()->setResolution(kResolution);
    field->setText(path);
    dialog.accept();
    return true;
}

} // namespace

bool TestPagePrinter::printed(const ShownViewer &shown,
                              const std::function<bool(QPrintDialog &)> &answer) const
{
    bool accepted = false;
    const PrintDialogAnswer answered([&](QPrintDialog &dialog) {
        accepted = answer ? answer(dialog) : printIntoFile(dialog, output());
    });
    shown.viewer->printDocument();
    return accepted;
}

void TestPagePrinter::emptyDocumentOpensNoDialog()
{
    const PrintDialogAnswer answer([](QPrintDialog &dialog) { dialog.reject(); });
    const DialogAnswers answers;
    const ShownViewer shown;
    shown.viewer->printDocument();
    QTest::qWait(20);
    QCOMPARE(answer.count(), 0);
    QVERIFY(answers.seen().isEmpty());
}

void TestPagePrinter::dialogIsSetToTheWholeDocument()
{
    const ShownViewer shown;
    QVERIFY(shown.openPages(6));
    QString title;
    QString name;
    QList<int> numbers;
    const PrintDialogAnswer answer([&](QPrintDialog &dialog) {
        title = dialog.windowTitle();
        name = dialog.printer()->docName();
        numbers = {dialog.minPage(), dialog.maxPage(), dialog.fromPage(), dialog.toPage()};
        QCOMPARE(dialog.parentWidget(), shown.viewer.get());
        dialog.reject();
    });
    shown.viewer->printDocument();
    QCOMPARE(answer.count(), 1);
    QCOMPARE(title, u"打印 PDF"_s);
    QCOMPARE(name, u"report.pdf"_s);
    QCOMPARE(numbers, (QList<int>{1, 6, 1, 6}));
}

void TestPagePrinter::cancelledDialogPrintsNothing()
{
    const ShownViewer shown;
    QVERIFY(shown.openPages(2));
    const DialogAnswers answers;
    const PrintDialogAnswer answer([this](QPrintDialog &dialog) {
        dialog.printer()->setOutputFileName(output());
        dialog.reject();
    });
    shown.viewer->printDocument();
    QCOMPARE(answer.count(), 1);
    QVERIFY(answers.seen().isEmpty());
    QVERIFY(!QFile::exists(output()));
}

void TestPagePrinter::dialogPrintsTheWholeDocumentToAFile()
{
    const ShownViewer shown;
    QVERIFY(shown.openPages(4));
    const DialogAnswers answers;
    if (!printed(shown)) {
        QSKIP(kNoDialog);
    }
    QVERIFY(answers.seen().isEmpty());
    QCOMPARE(sheetNumbers(), (QList<int>{0, 1, 2, 3}));
    QVERIFY(!shown.viewer->isModified());
}

void TestPagePrinter::dialogPrintsTheChosenPages()
{
    const ShownViewer shown;
    QVERIFY(shown.openPages(5));
    const auto printTwoPages = [this](QPrintDialog &dialog) {
        auto *range = dialog.findChild<QRadioButton *>(u"printRange"_s);
        auto *from = dialog.findChild<QSpinBox *>(u"from"_s);
        auto *to = dialog.findChild<QSpinBox *>(u"to"_s);
        if (!range || !from || !to) {
            dialog.reject();
            return false;
        }
        range->setChecked(true);
        from->setValue(2);
        to->setValue(3);
        return printIntoFile(dialog, output());
    };
    if (!printed(shown, printTwoPages)) {
        QSKIP(kNoDialog);
    }
    QCOMPARE(sheetNumbers(), (QList<int>{1, 2}));
}

void TestPagePrinter::failedPrintingIsReported()
{
    const ShownViewer shown;
    QVERIFY(shown.openPages(3));
    shown.add(u"report.pdf"_s, PdfFixture::pagesByNumber(5));
    const DialogAnswers answers;
    if (!printed(shown)) {
        QSKIP(kNoDialog);
    }
    QCOMPARE(answers.seen().size(), 3);
    QCOMPARE(answers.seen().at(0), u"打印未完成"_s);
    QVERIFY(answers.seen().at(1).contains(u"changed"_s));
    QCOMPARE(answers.seen().at(2), QString());
    QCOMPARE(answers.kinds(), QList<int>{ModernMessageBox::Danger});
}

void TestPagePrinter::printerThatCannotStartIsReported()
{
    const ShownViewer shown;
    QVERIFY(shown.openPages(3));
    const auto loseTheFolder = [this](QPrintDialog &dialog) {
        const bool accepted = printIntoFile(dialog, output());
        // Gone between the dialog and the job.
        dialog.printer()->setOutputFileName(m_folder->filePath(u"no/such/folder/printed.pdf"_s));
        return accepted;
    };
    const DialogAnswers answers;
    if (!printed(shown, loseTheFolder)) {
        QSKIP(kNoDialog);
    }
    QCOMPARE(answers.seen(), (QStringList{u"打印失败"_s, u"无法启动打印任务。"_s, QString()}));
    QCOMPARE(answers.kinds(), QList<int>{ModernMessageBox::Danger});
}

QTEST_MAIN(TestPagePrinter)
#include "tst_page_printer.moc"
