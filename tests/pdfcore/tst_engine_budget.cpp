// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/session/document_session.h"
#include "pdfcore/src/session/engine.h"
#include "tests/pdfcore/engine_calls.h"
#include "tests/support/pdf_fixture.h"

#include <QElapsedTimer>
#include <QRandomGenerator>

using namespace EngineCalls;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

using pdfcore::DocumentSession;
using pdfcore::Engine;
using pdfcore::EngineError;
using pdfcore::FileIdentity;
using pdfcore::SessionBudgets;

namespace {

/// What is enough for the pages of these tests that are no trouble.
constexpr auto kShortTime = 300ms;

/// Much less than the slow pages take.
constexpr auto kNoTime = 50ms;

/// What giving up may take on a busy machine; far from what the pages would take.
constexpr qint64 kPatience = 15'000;

/// A document whose first page is trouble and whose second is red.
QByteArray withTrouble(const QByteArray &content, const QByteArray &resources,
                       const QList<QByteArray> &more)
{
    return PdfFixture::fromObjects(
        QList<QByteArray>{
            "<< /Type /Catalog /Pages 2 0 R >>",
            "<< /Type /Pages /Kids [3 0 R 4 0 R] /Count 2 /MediaBox [0 0 200 200] >>",
            "<< /Type /Page /Parent 2 0 R /Contents 5 0 R /Resources << " + resources + " >> >>",
            "<< /Type /Page /Parent 2 0 R /Contents 6 0 R >>",
            PdfFixture::streamBody({}, content),
            PdfFixture::streamBody({}, PdfFixture::fill({0, 0, 200, 200}, Qt::red)),
        } +
        more);
}

/// Forms that draw the next one twice, so that the last is drawn 2^depth times.
QByteArray nestedForms(int depth, const QByteArray &innermost)
{
    QList<QByteArray> forms;
    for (int i = 0; i < depth; ++i) {
        const QByteArray next = QByteArray::number(8 + i);
        forms += PdfFixture::streamBody("/Type /XObject /Subtype /Form /BBox [0 0 200 200] "
                                        "/Resources << /XObject << /F " +
                                            next + " 0 R >> >>",
                                        i + 1 < depth ? "/F Do /F Do" : innermost);
    }
    forms += "null";
    return withTrouble("/F Do", "/XObject << /F 7 0 R >>", forms);
}

/// Operators that are read and obeyed without anything to see.
QByteArray idleOperators(int count)
{
    QRandomGenerator random(1);
    QByteArray content;
    content.reserve(qsizetype{count} * 24);
    for (int i = 0; i < count; ++i) {
        content += "q 1 0 0 1 " + QByteArray::number(random.bounded(100'000)) + " 0 cm Q\n";
    }
    return content;
}

QByteArray giantImage(const QByteArray &space)
{
    return withTrouble("q 200 0 0 200 0 0 cm /X Do Q", "/XObject << /X 7 0 R >>",
                       {PdfFixture::streamBody("/Type /XObject /Subtype /Image /Width 60000 "
                                               "/Height 60000 /BitsPerComponent 8 /ColorSpace " +
                                                   space,
                                               "few bytes")});
}

/// A page whose colour space has a profile of many megabytes in a small file.
QByteArray giantProfile()
{
    const QByteArray packed = qCompress(QByteArray(64 << 20, '\0'), 1).mid(4);
    return withTrouble("/C cs 1 0 0 sc 0 0 200 200 re f", "/ColorSpace << /C [/ICCBased 7 0 R] >>",
                       {PdfFixture::streamBody("/N 3 /Filter /FlateDecode", packed)});
}

} // namespace

/// Pages that would take minutes or gigabytes.
class TestEngineBudget : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();
    void slowPagesAreGivenUp_data();
    void slowPagesAreGivenUp();
    void largePagesAreGivenUp();
    void giantImagesStayWithinTheLimit_data();
    void giantImagesStayWithinTheLimit();
    void theNextPageOfTheBatchIsRendered_data();
    void theNextPageOfTheBatchIsRendered();
    void rotationAndAnnotationsDoNotEscapeTheLimit();
    void openingIsLimited();
    void aLargeTargetMayUseMoreMemory();
    void ordinaryPagesKeepTheSession();
};

void TestEngineBudget::cleanup()
{
    Engine::instance().sessions().setBudgets({});
    Engine::instance().sessions().closeIdle();
}

void TestEngineBudget::slowPagesAreGivenUp_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("forms that draw") << nestedForms(30, "0 0 9 9 re f");
    QTest::newRow("forms that do nothing") << nestedForms(30, "q Q");
    QTest::newRow("empty forms") << nestedForms(30, "");
    QTest::newRow("form that draws itself") << withTrouble(
        "/F Do", "/XObject << /F 7 0 R >>",
        {PdfFixture::streamBody("/Type /XObject /Subtype /Form /BBox [0 0 200 200] /Resources << "
                                "/XObject << /F 7 0 R /G 8 0 R >> >>",
                                "/F Do /G Do"),
         PdfFixture::streamBody("/Type /XObject /Subtype /Form /BBox [0 0 200 200] /Resources << "
                                "/XObject << /F 9 0 R >> >>",
                                QByteArray("/F Do ").repeated(100'000)),
         PdfFixture::streamBody("/Type /XObject /Subtype /Form /BBox [0 0 200 200]",
                                QByteArray("0 0 200 200 re f ").repeated(500))});
    QTest::newRow("many fills") << withTrouble(QByteArray("0 0 200 200 re f ").repeated(1'000'000),
                                               {}, {});
    QTest::newRow("one path of many parts") << withTrouble(
        QByteArray("0 0 m 200 200 l 0 200 l 200 0 l ").repeated(800'000) + " f*", {}, {});
    QTest::newRow("many operators that draw nothing")
        << withTrouble(idleOperators(1'500'000), {}, {});
    QTest::newRow("many compressed operators that draw nothing")
        << withTrouble("/F Do", "/XObject << /F 7 0 R >>",
                       {PdfFixture::streamBody("/Type /XObject /Subtype /Form /BBox [0 0 200 200] "
                                               "/Filter /FlateDecode",
                                               qCompress(idleOperators(1'500'000), 1).mid(4))});
    QTest::newRow("many transparency groups") << withTrouble(
        QByteArray("/F Do ").repeated(200'000), "/XObject << /F 7 0 R >> ",
        {PdfFixture::streamBody("/Type /XObject /Subtype /Form /BBox [0 0 200 200] /Group << /S "
                                "/Transparency /I true >>",
                                "0 0 200 200 re f")});
    QTest::newRow("tiny tiles") << withTrouble(
        "/Pattern cs /P scn 0 0 200 200 re f", "/Pattern << /P 7 0 R >>",
        {PdfFixture::streamBody(
            "/Type /Pattern /PatternType 1 /PaintType 1 /TilingType 1 /BBox [0 0 "
            "100 100] /XStep 0.001 /YStep 0.001 /Resources << >>",
            "0 0 100 100 re f")});
}

void TestEngineBudget::slowPagesAreGivenUp()
{
    QFETCH(const QByteArray, content);
    Folder folder;
    const QString path = folder.add(u"slow.pdf"_s, content);
    SessionBudgets budgets;
    budgets.page.time = kNoTime;
    EngineError outcome;
    const auto session = DocumentSession::open(FileIdentity::of(path), {}, budgets, &outcome);
    QVERIFY2(session, qPrintable(outcome.message));
    QElapsedTimer timer;
    timer.start();
    const QImage image = session->render(0, 0, {600, 600}, &outcome);
    QVERIFY2(timer.elapsed() < kPatience, qPrintable(QString::number(timer.elapsed())));
    QVERIFY(image.isNull());
    QCOMPARE(outcome.code, PdfBackendError::RenderFailed);
    QVERIFY2(outcome.message.contains(u"too long"_s), qPrintable(outcome.message));
    QVERIFY(!session->isUsable());
}

void TestEngineBudget::largePagesAreGivenUp()
{
    Folder folder;
    const QString path = folder.add(u"large.pdf"_s, giantProfile());
    SessionBudgets budgets;
    budgets.page.bytes = std::size_t{16} << 20;
    Engine::instance().sessions().setBudgets(budgets);
    const Rendering rendering = render(filePage(path));
    QVERIFY(rendering.image.isNull());
    QCOMPARE(rendering.error, PdfBackendError::RenderFailed);
    QVERIFY2(rendering.message.contains(u"memory"_s), qPrintable(rendering.message));

    budgets.page.bytes = std::size_t{512} << 20;
    Engine::instance().sessions().setBudgets(budgets);
    Engine::instance().sessions().closeIdle();
    COMPARE_COLOUR(middle(render(filePage(path)).image), Qt::red, 1);
}

void TestEngineBudget::giantImagesStayWithinTheLimit_data()
{
    QTest::addColumn<QByteArray>("space");
    QTest::addColumn<QSize>("size");
    for (const char *space : {"/DeviceRGB", "/DeviceCMYK", "/DeviceGray",
                              "[/Indexed /DeviceCMYK 1 <00000000FF000000>]"}) {
        QTest::addRow("%s, small", space) << QByteArray(space) << QSize(50, 50);
        QTest::addRow("%s, large", space) << QByteArray(space) << QSize(2000, 2000);
    }
}

void TestEngineBudget::giantImagesStayWithinTheLimit()
{
    QFETCH(const QByteArray, space);
    QFETCH(const QSize, size);
    Folder folder;
    const QString path = folder.add(u"large.pdf"_s, giantImage(space));
    SessionBudgets budgets;
    budgets.page.time = 1s;
    Engine::instance().sessions().setBudgets(budgets);
    QElapsedTimer timer;
    timer.start();
    const Rendering rendering = render(filePage(path), size);
    QVERIFY2(timer.elapsed() < kPatience, qPrintable(QString::number(timer.elapsed())));
    if (rendering.ok) {
        QCOMPARE(rendering.image.size(), size);
    } else {
        QCOMPARE(rendering.error, PdfBackendError::RenderFailed);
        QVERIFY(!rendering.message.isEmpty());
    }
    COMPARE_COLOUR(middle(render(filePage(path, 1)).image), Qt::red, 1);
}

void TestEngineBudget::theNextPageOfTheBatchIsRendered_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("slow page") << nestedForms(30, "0 0 9 9 re f");
    QTest::newRow("large page") << giantProfile();
}

void TestEngineBudget::theNextPageOfTheBatchIsRendered()
{
    QFETCH(const QByteArray, content);
    Folder folder;
    const QString path = folder.add(u"trouble.pdf"_s, content);
    SessionBudgets budgets;
    budgets.page = {kShortTime, std::size_t{16} << 20};
    Engine::instance().sessions().setBudgets(budgets);
    QStringList errors;
    const QList<QImage> images =
        PdfEditorBackend::renderPages({filePage(path, 1), filePage(path, 0), filePage(path, 1)},
                                      QList<QSize>(3, QSize(20, 20)), &errors);
    QCOMPARE(images.size(), 3);
    COMPARE_COLOUR(middle(images.at(0)), Qt::red, 1);
    QVERIFY(images.at(1).isNull());
    QVERIFY(!errors.at(1).isEmpty());
    COMPARE_COLOUR(middle(images.at(2)), Qt::red, 1);
    QVERIFY(errors.at(0).isEmpty());
    QVERIFY(errors.at(2).isEmpty());
    QCOMPARE(inspect(path).pageSizes.size(), 2);
}

void TestEngineBudget::rotationAndAnnotationsDoNotEscapeTheLimit()
{
    QList<QByteArray> objects{
        "<< /Type /Catalog /Pages 2 0 R >>", "<< /Type /Pages /Kids [3 0 R] /Count 1 >>",
        "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 200 200] /Annots [4 0 R] >>",
        "<< /Type /Annot /Subtype /Square /F 4 /Rect [0 0 200 200] /AP << /N 5 0 R >> >>"};
    for (int i = 0; i < 30; ++i) {
        objects += PdfFixture::streamBody("/Type /XObject /Subtype /Form /BBox [0 0 200 200] "
                                          "/Resources << /XObject << /F " +
                                              QByteArray::number(6 + i) + " 0 R >> >>",
                                          "/F Do /F Do");
    }
    objects +=
        PdfFixture::streamBody("/Type /XObject /Subtype /Form /BBox [0 0 200 200]", "0 0 9 9 re f");
    Folder folder;
    const QString path = folder.add(u"slow.pdf"_s, PdfFixture::fromObjects(objects));
    SessionBudgets budgets;
    budgets.page.time = kShortTime;
    Engine::instance().sessions().setBudgets(budgets);
    QElapsedTimer timer;
    timer.start();
    const Rendering rendering = render(filePage(path, 0, 90));
    QVERIFY(timer.elapsed() < kPatience);
    QCOMPARE(rendering.error, PdfBackendError::RenderFailed);
    QVERIFY2(rendering.message.contains(u"too long"_s), qPrintable(rendering.message));
}

void TestEngineBudget::openingIsLimited()
{
    Folder folder;
    const QString path = folder.add(u"good.pdf"_s, PdfFixture::pagesByNumber(100));
    SessionBudgets budgets;
    budgets.open = {0ms, std::size_t{1} << 30};
    Engine::instance().sessions().setBudgets(budgets);
    const Inspection slow = inspect(path);
    QVERIFY(!slow.ok);
    QCOMPARE(slow.error, PdfBackendError::InvalidDocument);
    QVERIFY2(slow.message.contains(u"too long"_s), qPrintable(slow.message));

    budgets.open = {20s, 10'000};
    Engine::instance().sessions().setBudgets(budgets);
    const Inspection large = inspect(path);
    QVERIFY(!large.ok);
    QCOMPARE(large.error, PdfBackendError::InvalidDocument);
    QVERIFY2(large.message.contains(u"memory"_s), qPrintable(large.message));

    Engine::instance().sessions().setBudgets({});
    QVERIFY(inspect(path).ok);
}

void TestEngineBudget::aLargeTargetMayUseMoreMemory()
{
    // A group as large as the page needs as much memory again as the image.
    Folder folder;
    const QString path =
        folder.add(u"group.pdf"_s,
                   PdfFixture::onePage(
                       "/G gs /F Do", "/XObject << /F 5 0 R >> /ExtGState << /G << /ca 0.5 >> >>",
                       {PdfFixture::streamBody("/Type /XObject /Subtype /Form /BBox [0 0 200 "
                                               "200] /Group << /S /Transparency >>",
                                               "1 0 0 rg 0 0 200 200 re f")}));
    SessionBudgets budgets;
    budgets.page.bytes = std::size_t{1} << 20;
    EngineError outcome;
    const auto session = DocumentSession::open(FileIdentity::of(path), {}, budgets, &outcome);
    QVERIFY(session);
    const QImage image = session->render(0, 0, {1500, 1500}, &outcome);
    QVERIFY2(!image.isNull(), qPrintable(outcome.message));
    COMPARE_COLOUR(middle(image), QColor(255, 128, 128), 2);
}

void TestEngineBudget::ordinaryPagesKeepTheSession()
{
    Folder folder;
    const QString path = folder.add(u"good.pdf"_s, PdfFixture::pagesByNumber(3));
    EngineError outcome;
    const auto session = DocumentSession::open(FileIdentity::of(path), {}, {}, &outcome);
    QVERIFY(session);
    for (int i = 0; i < 3; ++i) {
        QVERIFY(!session->render(i, 0, {20, 20}, &outcome).isNull());
    }
    QVERIFY(session->render(3, 0, {20, 20}, &outcome).isNull());
    QVERIFY(session->isUsable());
}

QTEST_GUILESS_MAIN(TestEngineBudget)
#include "tst_engine_budget.moc"
