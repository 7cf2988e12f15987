// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/core/pdf_document_model.h"
#include "pdf/viewer/commands/page_printer.h"
#include "tests/pdf/viewer/commands/sheet_printer.h"
#include "tests/support/pdf_fixture.h"

#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kMebibyte = qsizetype{1} << 20;
/// Beside what else the program takes.
constexpr qsizetype kBandLimit = 24 * kMebibyte;

QPageLayout fullSheet(QPageSize::PageSizeId size)
{
    return {QPageSize(size), QPageLayout::Portrait, QMarginsF()};
}

} // namespace

/// How pages come to the printer: in parts that take little memory and may be the last.
class TestPagePrinterBands final : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void renderSize_data();
    void renderSize();
    void largeSheetsArePrinted_data();
    void largeSheetsArePrinted();
    void bandsCoverThePageOnceBesidesTheirOverlap();
    void veryLargeSheetsAreRenderedSmaller();
    void everyPageGetsItsSheet();

    void cancelEndsThePageAfterABand();
    void cancelBeforeAPageRendersNothing();
    void cancelThatDoesNotComeChangesNothing();
    void jobAfterACancelledOneIsPrinted();

    void failingPageWithoutAReasonIsNamed();
    void failureAfterSomeBandsIsReported();

private:
    /// Writes and opens a document.
    QList<PdfPageRecord> records(const QByteArray &document);

    std::unique_ptr<QTemporaryDir> m_folder;
    PdfDocumentModel m_model;
};

void TestPagePrinterBands::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
}

QList<PdfPageRecord> TestPagePrinterBands::records(const QByteArray &document)
{
    const QString path = m_folder->filePath(u"source.pdf"_s);
    if (!PdfFixture::write(path, document) || !m_model.loadDocument(path, {}, nullptr, nullptr)) {
        return {};
    }
    return m_model.pages();
}

void TestPagePrinterBands::renderSize_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QSize>("rendered");
    QTest::newRow("small") << QSize(100, 50) << QSize(100, 50);
    QTest::newRow("A4 at 1200 dpi") << QSize(9921, 14031) << QSize(9921, 14031);
    QTest::newRow("A1 at 1200 dpi") << QSize(28063, 39732) << QSize(28063, 39732);
    QTest::newRow("A0 at 600 dpi") << QSize(19866, 28087) << QSize(19866, 28087);
    QTest::newRow("as large as it gets") << QSize(32768, 65536) << QSize(32768, 65536);
    QTest::newRow("one row more") << QSize(32768, 65537) << QSize(16384, 32768);
    QTest::newRow("A0 at 2400 dpi") << QSize(79464, 112346) << QSize(26488, 37448);
    QTest::newRow("line") << QSize(2'000'000'000, 1) << QSize(2'000'000'000, 1);
    QTest::newRow("wide line") << QSize(2'000'000'000, 2) << QSize(1'000'000'000, 1);
}

void TestPagePrinterBands::renderSize()
{
    QFETCH(const QSize, size);
    QFETCH(const QSize, rendered);
    QCOMPARE(printRenderSize(size), rendered);
}

void TestPagePrinterBands::largeSheetsArePrinted_data()
{
    QTest::addColumn<int>("sheet");
    QTest::addColumn<int>("resolution");
    QTest::newRow("A4 at 1200 dpi") << int(QPageSize::A4) << 1200;
    QTest::newRow("A2 at 1200 dpi") << int(QPageSize::A2) << 1200;
    QTest::newRow("A0 at 600 dpi") << int(QPageSize::A0) << 600;
}

void TestPagePrinterBands::largeSheetsArePrinted()
{
    QFETCH(const int, sheet);
    QFETCH(const int, resolution);
    const QPageLayout layout = fullSheet(static_cast<QPageSize::PageSizeId>(sheet));
    const QList<PdfPageRecord> pages = records(
        PdfFixture::document({PdfFixture::quartered(QPageSize(layout.pageSize()).sizePoints())}));
    SheetPrinter printer(layout, resolution);
    PagePrinter job;
    QCOMPARE(job.print(pages, {0, 1}, printer), PagePrinter::Outcome::Printed);
    QCOMPARE(job.reason(), QString());
    QRect covered;
    for (const SheetPrinter::Drawing &drawing : printer.drawings()) {
        // One pixel of the page for each one of the sheet, and never much of it at once. Newer Qt
        // rounds the lower edge of the last band outwards.
        const QSize more = drawing.place.size() - drawing.size;
        QVERIFY(more.width() == 0 && (more.height() == 0 || more.height() == 1));
        QVERIFY(drawing.bytes <= kBandLimit);
        covered |= drawing.place;
    }
    const QSize size = layout.paintRectPixels(resolution).size();
    QVERIFY(size.width() - covered.width() <= 1);
    QVERIFY(size.height() - covered.height() <= 1);
    // Blue stands above red.
    QCOMPARE(QColor(printer.drawings().constFirst().left.constFirst()), QColor(Qt::blue));
    QCOMPARE(QColor(printer.drawings().constLast().left.constLast()), QColor(Qt::red));
}

void TestPagePrinterBands::bandsCoverThePageOnceBesidesTheirOverlap()
{
    constexpr int kResolution = 600;
    const QPageLayout layout(QPageSize(QPageSize::A4), QPageLayout::Portrait,
                             QMarginsF(30, 40, 50, 60), QPageLayout::Point);
    const QList<PdfPageRecord> pages =
        records(PdfFixture::document({PdfFixture::quartered({595, 700})}));
    SheetPrinter printer(layout, kResolution);
    QCOMPARE(PagePrinter().print(pages, {0, 1}, printer), PagePrinter::Outcome::Printed);
    const QList<SheetPrinter::Drawing> &bands = printer.drawings();
    QVERIFY(bands.size() > 2);
    for (qsizetype i = 1; i < bands.size(); ++i) {
        const SheetPrinter::Drawing &before = bands.at(i - 1);
        const SheetPrinter::Drawing &band = bands.at(i);
        QCOMPARE(band.place.left(), before.place.left());
        QCOMPARE(band.place.width(), before.place.width());
        const int common = before.place.bottom() + 1 - band.place.top();
        QCOMPARE(common, kResolution / 24);
        QCOMPARE(band.left.mid(0, common), before.left.mid(before.left.size() - common));
    }
    const QRect covered = bands.constFirst().place | bands.constLast().place;
    const QSize sheet = layout.paintRectPixels(kResolution).size();
    QCOMPARE(covered.size(), QSizeF(595, 700).scaled(sheet, Qt::KeepAspectRatio).toSize());
    QVERIFY((covered.center() - QRect(QPoint(0, 0), sheet).center()).manhattanLength() <= 2);
}

void TestPagePrinterBands::veryLargeSheetsAreRenderedSmaller()
{
    constexpr int kResolution = 9600;
    const QPageLayout layout = fullSheet(QPageSize::A3);
    const QSize sheet = layout.paintRectPixels(kResolution).size();
    const QList<PdfPageRecord> pages =
        records(PdfFixture::document({PdfFixture::plain({842, 1191}, Qt::red)}));
    QSize asked;
    const auto look = [&](const PdfSourcePage & /*page*/, QSize size, int /*overlap*/,
                          const PdfPageBandSink &sink, PdfBackendError * /*error*/,
                          QString * /*message*/) {
        asked = size;
        constexpr int kRows = 1000;
        QImage band(1, kRows, QImage::Format_RGB888);
        for (int top = 0; top < size.height(); top += kRows) {
            if (!sink(band.copy(0, 0, 1, std::min(kRows, size.height() - top)), top)) {
                return false;
            }
        }
        return true;
    };
    SheetPrinter printer(layout, kResolution);
    QCOMPARE(PagePrinter(look).print(pages, {0, 1}, printer), PagePrinter::Outcome::Printed);
    QCOMPARE(asked, printRenderSize(QSizeF(842, 1191).scaled(sheet, Qt::KeepAspectRatio).toSize()));
    QVERIFY(asked.height() < sheet.height() / 2);
    // Drawn as large as the sheet, without a gap.
    int end = printer.drawings().constFirst().place.top();
    for (const SheetPrinter::Drawing &drawing : printer.drawings()) {
        QCOMPARE(drawing.place.top(), end);
        end = drawing.place.bottom() + 1;
        QVERIFY(sheet.width() - drawing.place.width() <= 1);
    }
    QVERIFY(sheet.height() - end <= 1);
}

void TestPagePrinterBands::everyPageGetsItsSheet()
{
    const QList<PdfPageRecord> pages = records(PdfFixture::pagesByNumber(3));
    SheetPrinter printer(fullSheet(QPageSize::A6), 300);
    QCOMPARE(PagePrinter().print(pages, {0, 3}, printer), PagePrinter::Outcome::Printed);
    QList<int> sheets;
    for (const SheetPrinter::Drawing &drawing : printer.drawings()) {
        sheets.append(drawing.sheet);
    }
    QCOMPARE(sheets, (QList<int>{0, 1, 2}));
    QVERIFY(!printer.isAborted());
}

void TestPagePrinterBands::cancelEndsThePageAfterABand()
{
    const QList<PdfPageRecord> pages = records(PdfFixture::pagesByNumber(3));
    SheetPrinter printer(fullSheet(QPageSize::A4), 600);
    PagePrinter job;
    job.setCancelQuery([&printer] { return printer.drawings().size() == 2; });
    QCOMPARE(job.print(pages, {0, 3}, printer), PagePrinter::Outcome::Cancelled);
    QCOMPARE(printer.drawings().size(), 2);
    QCOMPARE(printer.drawings().constLast().sheet, 0);
    QVERIFY(job.reason().isEmpty());
    QVERIFY(printer.isAborted());
}

void TestPagePrinterBands::cancelBeforeAPageRendersNothing()
{
    const QList<PdfPageRecord> pages = records(PdfFixture::pagesByNumber(3));
    SheetPrinter printer(fullSheet(QPageSize::A6), 100);
    PagePrinter job;
    job.setCancelQuery([] { return true; });
    QCOMPARE(job.print(pages, {0, 3}, printer), PagePrinter::Outcome::Cancelled);
    QVERIFY(printer.drawings().isEmpty());
}

void TestPagePrinterBands::cancelThatDoesNotComeChangesNothing()
{
    const QList<PdfPageRecord> pages = records(PdfFixture::pagesByNumber(2));
    SheetPrinter printer(fullSheet(QPageSize::A4), 600);
    PagePrinter job;
    int asked = 0;
    job.setCancelQuery([&asked] {
        ++asked;
        return false;
    });
    QCOMPARE(job.print(pages, {0, 2}, printer), PagePrinter::Outcome::Printed);
    QVERIFY(!printer.isAborted());
    // Before each page and after each band.
    QCOMPARE(asked, printer.drawings().size() + 2);
}

void TestPagePrinterBands::jobAfterACancelledOneIsPrinted()
{
    const QList<PdfPageRecord> pages = records(PdfFixture::pagesByNumber(2));
    PagePrinter job;
    bool cancels = true;
    job.setCancelQuery([&cancels] { return cancels; });
    SheetPrinter first(fullSheet(QPageSize::A6), 100);
    QCOMPARE(job.print(pages, {0, 2}, first), PagePrinter::Outcome::Cancelled);
    cancels = false;
    SheetPrinter second(fullSheet(QPageSize::A6), 100);
    QCOMPARE(job.print(pages, {0, 2}, second), PagePrinter::Outcome::Printed);
    QCOMPARE(second.drawings().size(), 2);
}

void TestPagePrinterBands::failingPageWithoutAReasonIsNamed()
{
    QList<PdfPageRecord> pages = records(PdfFixture::pagesByNumber(4));
    pages[2].sourcePageIndex = 77;
    // An engine that does not say why a page fails.
    const auto render = [](const PdfSourcePage &page, QSize size, int overlap,
                           const PdfPageBandSink &sink, PdfBackendError *error,
                           QString * /*message*/) {
        return PdfEditorBackend::renderPageInBands(page, size, overlap, sink, error, nullptr);
    };
    SheetPrinter printer(fullSheet(QPageSize::A6), 100);
    PagePrinter job(render);
    QCOMPARE(job.print(pages, {0, 4}, printer), PagePrinter::Outcome::Incomplete);
    QCOMPARE(job.reason(), u"第 3 页渲染失败。"_s);
    QCOMPARE(printer.drawings().size(), 2);
    QVERIFY(!printer.isAborted());
}

void TestPagePrinterBands::failureAfterSomeBandsIsReported()
{
    QList<PdfPageRecord> pages = records(PdfFixture::pagesByNumber(2));
    const auto render = [](const PdfSourcePage &page, QSize size, int overlap,
                           const PdfPageBandSink &sink, PdfBackendError *error, QString *message) {
        int bands = 0;
        PdfEditorBackend::renderPageInBands(
            page, size, overlap,
            [&](const QImage &band, int top) { return sink(band, top) && ++bands < 2; }, error,
            message);
        *message = u"the rest is missing"_s;
        return false;
    };
    SheetPrinter printer(fullSheet(QPageSize::A4), 600);
    PagePrinter job(render);
    QCOMPARE(job.print(pages, {0, 2}, printer), PagePrinter::Outcome::Incomplete);
    QCOMPARE(job.reason(), u"the rest is missing"_s);
    QCOMPARE(printer.drawings().size(), 2);
}

QTEST_MAIN(TestPagePrinterBands)
#include "tst_page_printer_bands.moc"
