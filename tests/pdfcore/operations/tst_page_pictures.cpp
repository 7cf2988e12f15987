// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/pdf_picture_export.h"
#include "pdfcore/render_threads.h"
#include "pdfcore/src/operations/page_pictures.h"
#include "pdfcore/src/session/engine.h"
#include "tests/pdfcore/engine_calls.h"
#include "tests/support/pdf_fixture.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QImageReader>

#include <atomic>
#include <chrono>
#include <cmath>
#include <thread>

using namespace EngineCalls;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

using pdfcore::Engine;
using pdfcore::RenderSlots;

namespace {

constexpr int kLowDpi = 10;

QStringList namesOf(const QStringList &paths)
{
    QStringList names;
    for (const QString &path : paths) {
        names.append(QFileInfo(path).fileName());
    }
    return names;
}

/// Two pages, of which the second one takes longer than any test waits.
QByteArray endlessSecondPage()
{
    QByteArray content;
    for (int i = 0; i < 2'000'000; ++i) {
        content += "q 1 0 0 1 0 0 cm 0 0 9 9 re f Q\n";
    }
    return PdfFixture::fromObjects({
        "<< /Type /Catalog /Pages 2 0 R >>",
        "<< /Type /Pages /Kids [3 0 R 4 0 R] /Count 2 /MediaBox [0 0 200 200] >>",
        "<< /Type /Page /Parent 2 0 R /Resources << >> >>",
        "<< /Type /Page /Parent 2 0 R /Contents 5 0 R /Resources << >> >>",
        PdfFixture::streamBody({}, content),
    });
}

} // namespace

/// Pictures of the pages of a file.
class TestPagePictures : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void everyPageBecomesAPicture();
    void pictureShowsThePageAsOnScreen_data();
    void pictureShowsThePageAsOnScreen();
    void jpegPicture();
    void numbersAreEquallyLong_data();
    void numbersAreEquallyLong();
    void whatIsThereStays();
    void nameThatIsTooLongLeavesNothing();
    void hugePageGetsFewerPixels_data();
    void hugePageGetsFewerPixels();
    void pageThatFailsLeavesNothing();
    void cancelLeavesNothing();
    void failuresAreToldApart_data();
    void failuresAreToldApart();
    void nameWithAFolderFails();
    void workStaysWithinTheLimitOfThreads();
    void othersHaveTheirTurnBetweenPages();

private:
    [[nodiscard]] PdfPictureTarget target(PdfPictureFormat format = PdfPictureFormat::Png) const
    {
        return {m_folder->path(u"out"_s), u"page %1"_s, format};
    }
    [[nodiscard]] QStringList made() const
    {
        return QDir(m_folder->path(u"out"_s))
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    }

    std::unique_ptr<Folder> m_folder;
};

void TestPagePictures::init()
{
    m_folder = std::make_unique<Folder>();
    QVERIFY(QDir(m_folder->path()).mkdir(u"out"_s));
}

void TestPagePictures::cleanup()
{
    Engine::instance().sessions().setBudgets({});
    Engine::instance().sessions().closeIdle();
}

void TestPagePictures::everyPageBecomesAPicture()
{
    const QString source = m_folder->add(u"a.pdf"_s, PdfFixture::pagesByNumber(3));
    const PdfPicturesOutcome outcome = PdfPictureExport::exportPages(source, target(), {});
    QCOMPARE(outcome.error, PdfOperationError::None);
    const QStringList names{u"page %1-01.png"_s, u"page %1-02.png"_s, u"page %1-03.png"_s};
    QCOMPARE(namesOf(outcome.pictures), names);
    QCOMPARE(made(), names);
    QCOMPARE(outcome.result, m_folder->path(u"out"_s));
    for (int i = 0; i < 3; ++i) {
        const QImage picture(outcome.pictures.at(i));
        // 200 × 300 points at 200 pixels per inch.
        QCOMPARE(picture.size(), QSize(556, 833));
        QCOMPARE(picture.dotsPerMeterX(), 7874);
        QCOMPARE(picture.dotsPerMeterY(), 7874);
        COMPARE_COLOUR(middle(picture), PdfFixture::numberColour(i), 0);
    }
}

void TestPagePictures::pictureShowsThePageAsOnScreen_data()
{
    QTest::addColumn<QSizeF>("size");
    QTest::addColumn<int>("dpi");
    QTest::addColumn<QSize>("pixels");
    QTest::newRow("small") << QSizeF(180, 90) << 200 << QSize(250, 500);
    QTest::newRow("in bands") << QSizeF(1440, 936) << 260 << QSize(3380, 5200);
}

void TestPagePictures::pictureShowsThePageAsOnScreen()
{
    QFETCH(QSizeF, size);
    QFETCH(int, dpi);
    QFETCH(QSize, pixels);
    PdfFixture::Page page = PdfFixture::quartered(size);
    page.rotate = 90;
    page.content += "\n1 0 1 RG 7 w 3 5 m 40 88 l S";
    const QString source = m_folder->add(u"a.pdf"_s, PdfFixture::document({page}));
    const PdfPicturesOutcome outcome = PdfPictureExport::exportPages(source, target(), {}, dpi);
    QCOMPARE(outcome.error, PdfOperationError::None);
    const QImage picture(outcome.pictures.value(0));
    QCOMPARE(picture.size(), pixels);
    QCOMPARE(quarters(picture), quarters(render(filePage(source), pixels).image));
    QCOMPARE(quarters(picture).first(), QColor(Qt::red));
    QVERIFY(distance(picture, render(filePage(source), pixels).image) <= 16);
}

void TestPagePictures::jpegPicture()
{
    const QString source =
        m_folder->add(u"a.pdf"_s, PdfFixture::document({PdfFixture::quartered({180, 180})}));
    const PdfPicturesOutcome outcome =
        PdfPictureExport::exportPages(source, target(PdfPictureFormat::Jpeg), {}, 150);
    QCOMPARE(outcome.error, PdfOperationError::None);
    QCOMPARE(made(), QStringList{u"page %1-01.jpg"_s});
    QImageReader reader(outcome.pictures.value(0));
    reader.setDecideFormatFromContent(true);
    QCOMPARE(reader.format(), QByteArray("jpeg"));
    const QImage picture = reader.read();
    QCOMPARE(picture.size(), QSize(375, 375));
    QCOMPARE(qRound(picture.dotsPerMeterX() * 0.0254), 150);
    const QList<QColor> colours{Qt::blue, Qt::yellow, Qt::red, Qt::green};
    for (int i = 0; i < colours.size(); ++i) {
        COMPARE_COLOUR(quarters(picture).at(i), colours.at(i), 4);
    }
    // The first entry of the first table of quantisers, which is 16 for quality 50.
    const QByteArray file = contentOf(outcome.pictures.value(0));
    QCOMPARE(int(file.at(file.indexOf("\xff\xdb") + 5)), 3);
}

void TestPagePictures::numbersAreEquallyLong_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<QString>("first");
    QTest::addColumn<QString>("last");
    QTest::newRow("one") << 1 << u"page %1-01.png"_s << u"page %1-01.png"_s;
    QTest::newRow("99") << 99 << u"page %1-01.png"_s << u"page %1-99.png"_s;
    QTest::newRow("100") << 100 << u"page %1-001.png"_s << u"page %1-100.png"_s;
}

void TestPagePictures::numbersAreEquallyLong()
{
    QFETCH(int, count);
    QFETCH(QString, first);
    QFETCH(QString, last);
    const QString source = m_folder->add(u"a.pdf"_s, PdfFixture::pagesByNumber(count));
    const PdfPicturesOutcome outcome = PdfPictureExport::exportPages(source, target(), {}, kLowDpi);
    QCOMPARE(outcome.error, PdfOperationError::None);
    QCOMPARE(outcome.pictures.size(), count);
    QCOMPARE(namesOf(outcome.pictures).first(), first);
    QCOMPARE(namesOf(outcome.pictures).last(), last);
    COMPARE_COLOUR(middle(QImage(outcome.pictures.last())), PdfFixture::numberColour(count - 1), 0);
}

void TestPagePictures::whatIsThereStays()
{
    const QString source = m_folder->add(u"a.pdf"_s, PdfFixture::pagesByNumber(3));
    m_folder->add(u"out/page %1-01.png"_s, "mine");
    m_folder->add(u"out/page %1-03.png"_s, "mine");
    m_folder->add(u"out/page %1-03(1).png"_s, "mine too");
    const PdfPicturesOutcome outcome = PdfPictureExport::exportPages(source, target(), {}, kLowDpi);
    QCOMPARE(outcome.error, PdfOperationError::None);
    const QStringList names{u"page %1-01(1).png"_s, u"page %1-02.png"_s, u"page %1-03(2).png"_s};
    QCOMPARE(namesOf(outcome.pictures), names);
    QCOMPARE(contentOf(m_folder->path(u"out/page %1-01.png"_s)), QByteArray("mine"));
    QCOMPARE(contentOf(m_folder->path(u"out/page %1-03(1).png"_s)), QByteArray("mine too"));
    COMPARE_COLOUR(middle(QImage(outcome.pictures.last())), PdfFixture::numberColour(2), 0);
    QCOMPARE(made().size(), 6);
}

void TestPagePictures::nameThatIsTooLongLeavesNothing()
{
    const QString source = m_folder->add(u"a.pdf"_s, PdfFixture::pagesByNumber(2));
    // As long as a name can be, so that there is none for a second picture of that number.
    constexpr qsizetype kMostBytes = 255;
    PdfPictureTarget longNamed = target();
    longNamed.baseName = QString(kMostBytes - u"-01.png"_s.size(), u'n');
    const QString taken = longNamed.baseName + u"-02.png"_s;
    m_folder->add(u"out/"_s + taken, "mine");
    const PdfPicturesOutcome outcome =
        PdfPictureExport::exportPages(source, longNamed, {}, kLowDpi);
    QCOMPARE(outcome.error, PdfOperationError::WriteFailed);
    QVERIFY(outcome.pictures.isEmpty());
    QCOMPARE(made(), QStringList{taken});
    QCOMPARE(contentOf(m_folder->path(u"out/"_s + taken)), QByteArray("mine"));
}

void TestPagePictures::hugePageGetsFewerPixels_data()
{
    QTest::addColumn<QSizeF>("points");
    QTest::addColumn<QSize>("pixels");
    QTest::addColumn<double>("dpi");
    QTest::newRow("usual") << QSizeF(595.276, 841.89) << QSize(1654, 2339) << 200.0;
    // 200 inches: the square root of 2^27 / (200 × 200) is 57.9.
    QTest::newRow("square") << QSizeF(14400, 14400) << QSize(11400, 11400) << 57.0;
    QTest::newRow("enormous") << QSizeF(1e6, 1e6) << QSize(11574, 11574) << 0.833295;
    // 2000 inches by 0.1: 65500 / 2000 is 32.75.
    QTest::newRow("long") << QSizeF(144000, 7.2) << QSize(64000, 3) << 32.0;
    // The longest page that there can be.
    QTest::newRow("endless") << QSizeF(0.1, 72e6) << QSize(1, 65435) << 0.0654345;
    QTest::newRow("tiny") << QSizeF(0.01, 0.01) << QSize(1, 1) << 200.0;
}

void TestPagePictures::hugePageGetsFewerPixels()
{
    QFETCH(QSizeF, points);
    QFETCH(QSize, pixels);
    QFETCH(double, dpi);
    const pdfcore::PictureForm form = pdfcore::pagePictureForm(points, 200);
    QVERIFY2(std::abs(form.dpi - dpi) < 1e-5, qPrintable(QString::number(form.dpi)));
    QCOMPARE(form.size, pixels);
    QVERIFY(qint64{form.size.width()} * form.size.height() <= PdfPictureExport::kMostPixels);
}

void TestPagePictures::pageThatFailsLeavesNothing()
{
    const QString source = m_folder->add(u"a.pdf"_s, endlessSecondPage());
    m_folder->add(u"out/mine"_s, "mine");
    pdfcore::SessionBudgets budgets;
    budgets.page.time = 200ms;
    Engine::instance().sessions().setBudgets(budgets);
    const PdfPicturesOutcome outcome = PdfPictureExport::exportPages(source, target(), {});
    QCOMPARE(outcome.error, PdfOperationError::RenderFailed);
    QVERIFY2(outcome.message.contains(u"Page 2"_s), qPrintable(outcome.message));
    QCOMPARE(outcome.file, source);
    QVERIFY(outcome.pictures.isEmpty());
    QVERIFY(outcome.result.isEmpty());
    QCOMPARE(made(), QStringList{u"mine"_s});
}

void TestPagePictures::cancelLeavesNothing()
{
    const QString source = m_folder->add(u"a.pdf"_s, endlessSecondPage());
    const PdfCancelFlag cancel;
    QElapsedTimer sinceCancelled;
    std::thread canceller([&] {
        std::this_thread::sleep_for(300ms);
        sinceCancelled.start();
        cancel.set();
    });
    const PdfPicturesOutcome outcome = PdfPictureExport::exportPages(source, target(), cancel);
    canceller.join();
    QVERIFY2(sinceCancelled.elapsed() < 1000,
             qPrintable(QString::number(sinceCancelled.elapsed())));
    QCOMPARE(outcome.error, PdfOperationError::Cancelled);
    QVERIFY(outcome.pictures.isEmpty());
    QCOMPARE(made(), QStringList());
}

void TestPagePictures::failuresAreToldApart_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("dpi");
    QTest::addColumn<PdfOperationError>("error");
    const QByteArray sound = PdfFixture::pagesByNumber(1);
    QTest::newRow("nothing in it") << QByteArray() << 200 << PdfOperationError::InvalidDocument;
    QTest::newRow("nonsense") << QByteArray("nonsense") << 200
                              << PdfOperationError::InvalidDocument;
    QTest::newRow("no pages") << PdfFixture::pagesByNumber(0) << 200
                              << PdfOperationError::InvalidDocument;
    QTest::newRow("password") << PdfFixture::encrypted(sound, {"user", "owner", 6}) << 200
                              << PdfOperationError::PasswordRequired;
    QTest::newRow("empty password")
        << PdfFixture::encrypted(sound, {"", "owner", 6}) << 200 << PdfOperationError::None;
    QTest::newRow("no resolution") << sound << 0 << PdfOperationError::RenderFailed;
}

void TestPagePictures::failuresAreToldApart()
{
    QFETCH(QByteArray, content);
    QFETCH(int, dpi);
    QFETCH(PdfOperationError, error);
    const QString source = m_folder->add(u"a.pdf"_s, content);
    const PdfPicturesOutcome outcome = PdfPictureExport::exportPages(source, target(), {}, dpi);
    QCOMPARE(outcome.error, error);
    QCOMPARE(outcome.message.isEmpty(), error == PdfOperationError::None);
    QCOMPARE(made().size(), error == PdfOperationError::None ? 1 : 0);
    QCOMPARE(PdfPictureExport::exportPages(m_folder->path(u"none.pdf"_s), target(), {}).error,
             PdfOperationError::FileNotFound);
}

void TestPagePictures::nameWithAFolderFails()
{
    const QString source = m_folder->add(u"a.pdf"_s, PdfFixture::pagesByNumber(1));
    PdfPictureTarget elsewhere = target();
    elsewhere.baseName = u"../page"_s;
    QCOMPARE(PdfPictureExport::exportPages(source, elsewhere, {}).error,
             PdfOperationError::WriteFailed);
    PdfPictureTarget missing = target();
    missing.folder = m_folder->path(u"none"_s);
    QCOMPARE(PdfPictureExport::exportPages(source, missing, {}).error,
             PdfOperationError::WriteFailed);
    QVERIFY(!QFileInfo::exists(missing.folder));
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
             (QStringList{u"a.pdf"_s, u"out"_s}));
}

void TestPagePictures::workStaysWithinTheLimitOfThreads()
{
    RenderSlots &slotsOfAll = Engine::instance().renderSlots();
    const QString source = m_folder->add(u"a.pdf"_s, PdfFixture::pagesByNumber(40));
    const int limit = pdfcore::renderThreadLimit();
    const auto most = [&] {
        std::atomic<bool> isDone = false;
        std::thread work([&] {
            PdfPictureExport::exportPages(source, target(), {}, 100);
            isDone = true;
        });
        int found = 0;
        while (!isDone) {
            found = std::max(found, slotsOfAll.inUse());
        }
        work.join();
        return found;
    };
    QCOMPARE(most(), 2);
    for (int i = 1; i < limit; ++i) {
        slotsOfAll.force();
    }
    const int besidesOthers = most();
    for (int i = 1; i < limit; ++i) {
        slotsOfAll.giveBack();
    }
    QCOMPARE(besidesOthers, limit);
    QCOMPARE(slotsOfAll.inUse(), 0);
}

void TestPagePictures::othersHaveTheirTurnBetweenPages()
{
    RenderSlots &slotsOfAll = Engine::instance().renderSlots();
    const QString source = m_folder->add(u"a.pdf"_s, PdfFixture::pagesByNumber(200));
    const int limit = pdfcore::renderThreadLimit();
    for (int i = 1; i < limit; ++i) {
        slotsOfAll.force();
    }
    std::atomic<bool> isDone = false;
    std::thread work([&] {
        PdfPictureExport::exportPages(source, target(), {}, 72);
        isDone = true;
    });
    QTRY_COMPARE(slotsOfAll.inUse(), limit);
    const bool isTaken = slotsOfAll.take({});
    // Long enough for work that had come to its end to say so.
    std::this_thread::sleep_for(50ms);
    const bool wasDone = isDone;
    slotsOfAll.giveBack();
    work.join();
    for (int i = 1; i < limit; ++i) {
        slotsOfAll.giveBack();
    }
    QVERIFY(isTaken);
    QVERIFY(!wasDone);
    QCOMPARE(made().size(), 200);
}

QTEST_GUILESS_MAIN(TestPagePictures)
#include "tst_page_pictures.moc"
