// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/paper_size.h"
#include "taskcenter/task_job.h"
#include "tests/pdfcore/engine_calls.h"
#include "tests/support/pdf_fixture.h"

#include <QDir>
#include <QFile>
#include <QImage>

using namespace EngineCalls;
using namespace Qt::StringLiterals;

namespace {

constexpr double kInch = 0.0254;

QStringList filesIn(const QString &folder)
{
    return QDir(folder).entryList(QDir::Files | QDir::Hidden | QDir::System, QDir::Name);
}

/// The first and the last column and row of a rendered page that are not white.
QRect inkIn(const QImage &page)
{
    QRect ink;
    for (int y = 0; y < page.height(); ++y) {
        for (int x = 0; x < page.width(); ++x) {
            if (distance(page.pixelColor(x, y), Qt::white) > 60) {
                ink |= QRect(x, y, 1, 1);
            }
        }
    }
    return ink;
}

} // namespace

/// Tasks between PDF files and pictures.
class TestPictureJobs : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void pagesBecomePictures_data();
    void pagesBecomePictures();
    void picturesHaveTheirResolution();
    void embeddedImagesBecomePictures();
    void documentWithoutImagesGivesAnEmptyFolder();
    void missingFolderFails();
    void damagedDocumentLeavesTheFolderEmpty();
    void sourceOfPicturesMayBeNamedAlone();

    void picturesBecomePages();
    void pagesHaveTheirSize_data();
    void pagesHaveTheirSize();
    void marginsAreKept_data();
    void marginsAreKept();
    void documentTakesTheNextName();
    void pictureInAFolderThatIsAFileFails();
    void brokenPictureIsNamed();
    void missingSourcesFail_data();
    void missingSourcesFail();

private:
    [[nodiscard]] TaskRequest requestFor(TaskType type, const QStringList &sources,
                                         const QString &output) const;
    QString addPicture(const QString &name, QSize size, const QColor &colour);
    static PdfOperationOutcome run(const TaskRequest &request) { return runTaskJob(request, {}); }

    std::unique_ptr<Folder> m_folder;
    QString m_output; ///< A folder below.
};

void TestPictureJobs::init()
{
    m_folder = std::make_unique<Folder>();
    m_output = m_folder->path(u"output"_s);
    QVERIFY(QDir().mkdir(m_output));
}

TaskRequest TestPictureJobs::requestFor(TaskType type, const QStringList &sources,
                                        const QString &output) const
{
    TaskRequest request;
    request.type = static_cast<qint32>(type);
    for (const QString &source : sources) {
        request.inputFiles.append(QDir::toNativeSeparators(source));
    }
    request.outputPath = output;
    return request;
}

QString TestPictureJobs::addPicture(const QString &name, QSize size, const QColor &colour)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(colour);
    const QString path = m_folder->path(name);
    return image.save(path) ? path : QString();
}

void TestPictureJobs::pagesBecomePictures_data()
{
    QTest::addColumn<int>("format");
    QTest::addColumn<QString>("suffix");
    QTest::addColumn<QByteArray>("start");
    QTest::newRow("JPEG") << 2 << u"jpg"_s << QByteArray("\xFF\xD8\xFF");
    QTest::newRow("PNG") << 3 << u"png"_s << QByteArray("\x89PNG");
}

void TestPictureJobs::pagesBecomePictures()
{
    QFETCH(int, format);
    QFETCH(QString, suffix);
    QFETCH(QByteArray, start);
    const QString source = m_folder->add(u"a.b.pdf"_s, PdfFixture::pagesByNumber(3));
    TaskRequest request = requestFor(TaskType::PdfToImages, {source}, m_output);
    request.options = {{u"format"_s, format}, {u"saveAsSeparateFiles"_s, false}};
    const PdfOperationOutcome outcome = run(request);
    QVERIFY2(!outcome.isError(), qPrintable(outcome.message));
    const QStringList files = filesIn(m_output);
    QCOMPARE(files,
             (QStringList{u"a.b-01."_s + suffix, u"a.b-02."_s + suffix, u"a.b-03."_s + suffix}));
    for (int i = 0; i < 3; ++i) {
        const QString path = m_output + u'/' + files.at(i);
        QVERIFY(contentOf(path).startsWith(start));
        COMPARE_COLOUR(middle(QImage(path)), PdfFixture::numberColour(i), 3);
    }
}

void TestPictureJobs::picturesHaveTheirResolution()
{
    const QString source = m_folder->add(u"a.pdf"_s, PdfFixture::pagesByNumber(1));
    for (const int format : {2, 3}) {
        TaskRequest request = requestFor(TaskType::PdfToImages, {source}, m_output);
        request.options = {{u"format"_s, format}};
        QVERIFY(!run(request).isError());
    }
    for (const QString &name : {u"/a-01.jpg"_s, u"/a-01.png"_s}) {
        const QImage picture(m_output + name);
        // 200 by 300 points.
        QCOMPARE(picture.size(), QSize(556, 833));
        QVERIFY(qAbs(picture.dotsPerMeterX() - 200 / kInch) < 10);
        QVERIFY(qAbs(picture.dotsPerMeterY() - 200 / kInch) < 10);
    }
}

void TestPictureJobs::embeddedImagesBecomePictures()
{
    const QByteArray image = PdfFixture::streamBody(
        "/Type /XObject /Subtype /Image /Width 2 /Height 1 /ColorSpace /DeviceRGB "
        "/BitsPerComponent 8",
        QByteArray("\xFF\x00\x00\x00\x00\xFF", 6));
    const QString source =
        m_folder->add(u"a.pdf"_s, PdfFixture::onePage("q 200 0 0 200 0 0 cm /X Do Q",
                                                      "/XObject << /X 5 0 R >>", {image}));
    TaskRequest request = requestFor(TaskType::PdfToImages, {source}, m_output);
    request.options = {{u"format"_s, 3}, {u"saveAsSeparateFiles"_s, true}};
    const PdfOperationOutcome outcome = run(request);
    QVERIFY2(!outcome.isError(), qPrintable(outcome.message));
    QCOMPARE(filesIn(m_output), QStringList{u"a-01.png"_s});
    const QImage picture(m_output + u"/a-01.png"_s);
    QCOMPARE(picture.size(), QSize(2, 1));
    QCOMPARE(picture.pixelColor(0, 0), QColor(Qt::red));
    QCOMPARE(picture.pixelColor(1, 0), QColor(Qt::blue));
}

void TestPictureJobs::documentWithoutImagesGivesAnEmptyFolder()
{
    const QString source = m_folder->add(u"a.pdf"_s, PdfFixture::pagesByNumber(2));
    TaskRequest request = requestFor(TaskType::PdfToImages, {source}, m_output);
    request.options = {{u"format"_s, 2}, {u"saveAsSeparateFiles"_s, true}};
    const PdfOperationOutcome outcome = run(request);
    QVERIFY2(!outcome.isError(), qPrintable(outcome.message));
    QCOMPARE(outcome.result, m_output);
    QCOMPARE(filesIn(m_output), QStringList());
}

void TestPictureJobs::missingFolderFails()
{
    const QString source = m_folder->add(u"a.pdf"_s, PdfFixture::pagesByNumber(1));
    for (const QString &folder : QStringList{m_output + u"/missing"_s, source, QString()}) {
        TaskRequest request = requestFor(TaskType::PdfToImages, {source}, folder);
        request.options = {{u"format"_s, 3}};
        QCOMPARE(run(request).error, PdfOperationError::WriteFailed);
    }
    QVERIFY(!QFile::exists(m_output + u"/missing"_s));
}

void TestPictureJobs::damagedDocumentLeavesTheFolderEmpty()
{
    const QString source = m_folder->add(u"a.pdf"_s, "no document");
    const PdfOperationOutcome outcome = run(requestFor(TaskType::PdfToImages, {source}, m_output));
    QCOMPARE(outcome.error, PdfOperationError::InvalidDocument);
    QCOMPARE(filesIn(m_output), QStringList());
}

void TestPictureJobs::sourceOfPicturesMayBeNamedAlone()
{
    TaskRequest request = requestFor(TaskType::PdfToImages, {}, m_output);
    request.inputFile = m_folder->add(u"a.pdf"_s, PdfFixture::pagesByNumber(1));
    QVERIFY(!run(request).isError());
    QCOMPARE(filesIn(m_output), QStringList{u"a-01.png"_s});
}

void TestPictureJobs::picturesBecomePages()
{
    const QStringList sources{addPicture(u"x.png"_s, {30, 20}, PdfFixture::numberColour(4)),
                              addPicture(u"y.jpg"_s, {20, 30}, PdfFixture::numberColour(2))};
    TaskRequest request = requestFor(TaskType::ImagesToPdf, sources, m_output + u"/x.pdf"_s);
    request.options = {{u"singlePdf"_s, true}};
    const PdfOperationOutcome outcome = run(request);
    QVERIFY2(!outcome.isError(), qPrintable(outcome.message));
    QCOMPARE(outcome.result, m_output + u"/x.pdf"_s);
    COMPARE_COLOUR(middle(render(filePage(outcome.result, 0)).image), PdfFixture::numberColour(4),
                   3);
    COMPARE_COLOUR(middle(render(filePage(outcome.result, 1)).image), PdfFixture::numberColour(2),
                   3);
    QCOMPARE(inspect(outcome.result).pageSizes.size(), 2);
}

void TestPictureJobs::pagesHaveTheirSize_data()
{
    QTest::addColumn<int>("pageSize");
    QTest::addColumn<int>("orientation");
    QTest::addColumn<QSizeF>("points");
    QTest::newRow("A4") << 0 << 0 << kA4PageSize;
    QTest::newRow("A4, landscape") << 0 << 1 << kA4PageSize.transposed();
    QTest::newRow("Letter") << 1 << 0 << QSizeF(612, 792);
    QTest::newRow("Letter, landscape") << 1 << 1 << QSizeF(792, 612);
}

void TestPictureJobs::pagesHaveTheirSize()
{
    QFETCH(int, pageSize);
    QFETCH(int, orientation);
    QFETCH(QSizeF, points);
    TaskRequest request = requestFor(
        TaskType::ImagesToPdf, {addPicture(u"x.png"_s, {30, 20}, Qt::red)}, m_output + u"/x.pdf"_s);
    request.options = {{u"pageSize"_s, pageSize}, {u"pageOrientation"_s, orientation}};
    QCOMPARE(inspect(run(request).result).pageSizes, QList<QSizeF>{points});
}

void TestPictureJobs::marginsAreKept_data()
{
    QTest::addColumn<int>("margin");
    QTest::addColumn<int>("points");
    QTest::newRow("none") << 0 << 0;
    QTest::newRow("narrow") << 1 << 36;
    QTest::newRow("wide") << 2 << 72;
    QTest::newRow("unknown") << 3 << 0;
    QTest::newRow("wrong") << -1 << 0;
}

void TestPictureJobs::marginsAreKept()
{
    QFETCH(int, margin);
    QFETCH(int, points);
    // Higher than any page.
    TaskRequest request =
        requestFor(TaskType::ImagesToPdf, {addPicture(u"x.png"_s, {10, 100}, Qt::red)},
                   m_output + u"/x.pdf"_s);
    request.options = {{u"pageMargin"_s, margin}};
    const QSize size = kA4PageSize.toSize();
    const QRect ink = inkIn(render(filePage(run(request).result), size).image);
    QVERIFY2(qAbs(ink.top() - points) <= 1, qPrintable(QString::number(ink.top())));
    QVERIFY2(qAbs(size.height() - 1 - ink.bottom() - points) <= 1,
             qPrintable(QString::number(ink.bottom())));
    QVERIFY(qAbs(ink.left() - (size.width() - 1 - ink.right())) <= 1);
    QVERIFY(qAbs(ink.width() * 10 - ink.height()) <= 20);
}

void TestPictureJobs::documentTakesTheNextName()
{
    const QString source = addPicture(u"x.png"_s, {30, 20}, Qt::red);
    const TaskRequest request =
        requestFor(TaskType::ImagesToPdf, {source}, m_output + u"/x(1).pdf"_s);
    QCOMPARE(run(request).result, m_output + u"/x(1).pdf"_s);
    QCOMPARE(run(request).result, m_output + u"/x(2).pdf"_s);
    QCOMPARE(filesIn(m_output).size(), 2);
}

/// As with pictures that are made one after the other, each in a folder named like the file before.
void TestPictureJobs::pictureInAFolderThatIsAFileFails()
{
    const QString source = addPicture(u"x.png"_s, {30, 20}, Qt::red);
    const QString first =
        run(requestFor(TaskType::ImagesToPdf, {source}, m_output + u"/x.pdf"_s)).result;
    const QByteArray before = contentOf(first);
    QCOMPARE(run(requestFor(TaskType::ImagesToPdf, {source}, first + u"/y.pdf"_s)).error,
             PdfOperationError::WriteFailed);
    QCOMPARE(contentOf(first), before);
    QCOMPARE(filesIn(m_output), QStringList{u"x.pdf"_s});
}

void TestPictureJobs::brokenPictureIsNamed()
{
    const QString good = addPicture(u"x.png"_s, {30, 20}, Qt::red);
    const QString bad = m_folder->add(u"y.png"_s, "no picture");
    const PdfOperationOutcome outcome =
        run(requestFor(TaskType::ImagesToPdf, {good, bad}, m_output + u"/x.pdf"_s));
    QCOMPARE(outcome.error, PdfOperationError::InvalidPicture);
    QCOMPARE(outcome.file, bad);
    QCOMPARE(filesIn(m_output), QStringList());
}

void TestPictureJobs::missingSourcesFail_data()
{
    QTest::addColumn<TaskType>("type");
    QTest::newRow("PDF to images") << TaskType::PdfToImages;
    QTest::newRow("images to PDF") << TaskType::ImagesToPdf;
}

void TestPictureJobs::missingSourcesFail()
{
    QFETCH(TaskType, type);
    const QString output = type == TaskType::PdfToImages ? m_output : m_output + u"/x.pdf"_s;
    QCOMPARE(run(requestFor(type, {}, output)).error, PdfOperationError::FileNotFound);
    const QString missing = m_folder->path(u"missing"_s);
    QCOMPARE(run(requestFor(type, {missing}, output)).error, PdfOperationError::FileNotFound);
    QCOMPARE(filesIn(m_output), QStringList());
}

QTEST_GUILESS_MAIN(TestPictureJobs)
#include "tst_picture_jobs.moc"
