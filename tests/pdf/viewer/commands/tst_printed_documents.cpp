// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/commands/page_printer.h"
#include "tests/pdf/viewer/page_numbers.h"
#include "tests/pdf/viewer/shown_viewer.h"
#include "tests/support/pdf_fixture.h"

#include <QPageSize>
#include <QPrinter>
#include <QTest>

#include <algorithm>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

/// Pictures are stored with losses in the printed file.
constexpr int kTolerance = 12;

/// A page of a file at `scale` pixels a point.
QImage rendered(const QString &path, int index, double scale)
{
    PdfDocumentInfo info;
    if (!PdfEditorBackend::inspectDocument(path, {}, &info, nullptr, nullptr) ||
        index >= info.pageSizes.size()) {
        return {};
    }
    PdfSourcePage page;
    page.filePath = path;
    page.pageIndex = index;
    page.pageSize = info.pageSizes.at(index);
    return PdfEditorBackend::renderPage(page, (page.pageSize * scale).toSize(), nullptr, nullptr);
}

/// Largest difference of a channel within a rectangle that both images have.
int distance(const QImage &a, const QImage &b, const QRect &part)
{
    int largest = 0;
    for (int y = part.top(); y <= part.bottom(); ++y) {
        for (int x = part.left(); x <= part.right(); ++x) {
            const QColor left = a.pixelColor(x, y);
            const QColor right = b.pixelColor(x, y);
            largest =
                std::max({largest, qAbs(left.red() - right.red()),
                          qAbs(left.green() - right.green()), qAbs(left.blue() - right.blue())});
        }
    }
    return largest;
}

/// How many pixels are black or nearly so.
int blackPixels(const QImage &image)
{
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            count += qGray(image.pixel(x, y)) < 20 ? 1 : 0;
        }
    }
    return count;
}

} // namespace

/// What is on the sheets when the document of a viewer is printed as the program does it, at the
/// resolution that the printer has by itself.
class TestPrintedDocuments final : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void sheetsShowWhatThePagesShow();
    void bandsLeaveNoLines_data();
    void bandsLeaveNoLines();
    void documentIsPrintedAfterSavingOverIt();
    void editedPagesArePrintedAfterSavingOverThem();
    void pagesTakenBeforeASaveArePrintedAfterIt();

private:
    [[nodiscard]] QString output() const { return m_shown->path(u"printed.pdf"_s); }
    /// Prints the pages to the output, on sheets of A7 without margins.
    [[nodiscard]] bool print(const QList<PdfPageRecord> &pages) const;

    /// The numbers of the pages on the sheets of the output.
    [[nodiscard]] QList<int> sheetNumbers() const;

    std::unique_ptr<ShownViewer> m_shown;
};

void TestPrintedDocuments::init()
{
    m_shown = std::make_unique<ShownViewer>();
}

void TestPrintedDocuments::cleanup()
{
    m_shown.reset();
}

bool TestPrintedDocuments::print(const QList<PdfPageRecord> &pages) const
{
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(output());
    printer.setPageSize(QPageSize(QPageSize::A7));
    printer.setPageMargins({});
    return PagePrinter().print(pages, printRange(0, 0, static_cast<int>(pages.size())), printer) ==
           PagePrinter::Outcome::Printed;
}

QList<int> TestPrintedDocuments::sheetNumbers() const
{
    QList<int> numbers;
    for (;;) {
        const QImage sheet = rendered(output(), static_cast<int>(numbers.size()), 0.2);
        if (sheet.isNull()) {
            return numbers;
        }
        numbers.append(PageNumbers::numberOf(sheet.pixelColor(sheet.rect().center()), kTolerance));
    }
}

void TestPrintedDocuments::sheetsShowWhatThePagesShow()
{
    // As large as the sheet.
    const QSizeF size = QPageSize(QPageSize::A7).size(QPageSize::Point);
    PdfFixture::Page page = PdfFixture::quartered(size);
    page.content += "BT /Helv 30 Tf 10 140 Td (Words) Tj ET 4 w 0 G 10 10 m 190 280 l S\n";
    const QString source = m_shown->add(u"report.pdf"_s, PdfFixture::document({page}));
    QVERIFY(m_shown->viewer->openFile(source, {}));
    QVERIFY(print(m_shown->model().pages()));
    const QImage printed = rendered(output(), 0, 2);
    const QImage expected = rendered(source, 0, 2).scaled(printed.size());
    QVERIFY(!printed.isNull());
    // The quarters, away from edges, which are not at the same part of a pixel.
    for (const QRect &part : {QRect(20, 20, 100, 200), QRect(380, 150, 30, 80),
                              QRect(120, 500, 70, 70), QRect(300, 400, 80, 150)}) {
        QVERIFY(distance(printed, expected, part) <= kTolerance);
    }
    const double black = blackPixels(expected);
    QVERIFY(black > 1000);
    QVERIFY(qAbs(blackPixels(printed) - black) < 0.1 * black);
}

void TestPrintedDocuments::bandsLeaveNoLines_data()
{
    QTest::addColumn<double>("scale");
    for (const double scale : {0.37, 1.0, 1.9, 4.0}) {
        QTest::addRow("%g", scale) << scale;
    }
}

void TestPrintedDocuments::bandsLeaveNoLines()
{
    QFETCH(const double, scale);
    const QSizeF size = QPageSize(QPageSize::A7).size(QPageSize::Point);
    const QColor colour(40, 90, 160);
    const QString source =
        m_shown->add(u"report.pdf"_s, PdfFixture::document({PdfFixture::plain(size, colour)}));
    QVERIFY(m_shown->viewer->openFile(source, {}));
    QVERIFY(print(m_shown->model().pages()));
    const QImage printed = rendered(output(), 0, scale);
    QImage expected(printed.size(), QImage::Format_RGB888);
    expected.fill(colour);
    QVERIFY(distance(printed, expected, printed.rect().adjusted(2, 2, -2, -2)) <= kTolerance);
}

void TestPrintedDocuments::documentIsPrintedAfterSavingOverIt()
{
    QVERIFY(m_shown->openPages(4));
    emit m_shown->grid().deletePageRequested(m_shown->idAt(1));
    m_shown->movePage(0, 3);
    QVERIFY(m_shown->viewer->save());
    QCOMPARE(m_shown->numbers(), (QList<int>{2, 3, 0}));
    QVERIFY(print(m_shown->model().pages()));
    QCOMPARE(sheetNumbers(), (QList<int>{2, 3, 0}));
}

void TestPrintedDocuments::editedPagesArePrintedAfterSavingOverThem()
{
    // What is undone after the save is no longer in the file.
    QVERIFY(m_shown->openPages(3));
    emit m_shown->grid().deletePageRequested(m_shown->idAt(0));
    m_shown->viewer->insertPdfFiles(
        {m_shown->add(u"more.pdf"_s, PageNumbers::documentOf({40, 41}))}, 1);
    QVERIFY(m_shown->viewer->save());
    m_shown->history().undo();
    m_shown->history().undo();
    QCOMPARE(m_shown->numbers(), (QList<int>{0, 1, 2}));
    QVERIFY(print(m_shown->model().pages()));
    QCOMPARE(sheetNumbers(), (QList<int>{0, 1, 2}));
}

void TestPrintedDocuments::pagesTakenBeforeASaveArePrintedAfterIt()
{
    QVERIFY(m_shown->openPages(3));
    const QList<PdfPageRecord> before = m_shown->model().pages();
    m_shown->movePage(0, 3);
    QVERIFY(m_shown->viewer->save());
    QCOMPARE(PageNumbers::numbersIn(m_shown->path(u"report.pdf"_s)), (QList<int>{1, 2, 0}));
    QVERIFY(print(before));
    QCOMPARE(sheetNumbers(), (QList<int>{0, 1, 2}));
}

QTEST_MAIN(TestPrintedDocuments)
#include "tst_printed_documents.moc"
