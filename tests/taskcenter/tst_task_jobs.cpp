// SPDX-License-Identifier: AGPL-3.0-or-later
#include "taskcenter/task_job.h"
#include "tests/pdfcore/engine_calls.h"
#include "tests/support/pdf_fixture.h"

#include <QDir>
#include <QFile>

#include <cmath>

using namespace EngineCalls;
using namespace Qt::StringLiterals;

namespace {

QByteArray protectedPages(int count)
{
    return PdfFixture::encrypted(PdfFixture::pagesByNumber(count), {"user", "owner", 6});
}

bool isProtected(const QString &path)
{
    return inspect(path).error == PdfBackendError::PasswordRequired;
}

TaskRequest requestFor(TaskType type, const QString &source, const QString &output)
{
    TaskRequest request;
    request.type = static_cast<qint32>(type);
    request.inputFile = QDir::toNativeSeparators(source);
    request.outputPath = QDir::toNativeSeparators(output);
    return request;
}

QStringList filesIn(const QString &folder)
{
    return QDir(folder).entryList(QDir::Files | QDir::Hidden | QDir::System, QDir::Name);
}

} // namespace

class TestTaskJobs : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void unknownTypesFail_data();
    void unknownTypesFail();
    void missingSourcesFail_data();
    void missingSourcesFail();

    void filesAreMerged();
    void mergedFileTakesTheNextName();

    void encryptedFileIsNamedLikeItsSource();
    void encryptedFileReplacesItsSource();
    void sourceIsKeptUnlessItIsToBeReplaced();
    void sourceOfEncryptionMayStandInTheList();
    void encryptionWithoutAPasswordFails();
    void missingFolderFails();
    void noFolderFails();
    void decryptedFileIsNamedLikeItsSource();
    void decryptedFileReplacesItsSource();
    void decryptionWithAWrongPasswordFails();

    void compressedFileHasTheNameOfTheRequest();
    void compressedFileTakesTheNextName();
    void compressedFileReplacesItsSource();
    void strongerLevelMakesASmallerFile();

private:
    QString addPhotograph(const QString &name);
    [[nodiscard]] QString pathOf(const QString &name) const { return m_folder->path(name); }
    static PdfOperationOutcome run(const TaskRequest &request) { return runTaskJob(request, {}); }

    std::unique_ptr<Folder> m_folder;
    QString m_output; ///< A folder below.
};

void TestTaskJobs::init()
{
    m_folder = std::make_unique<Folder>();
    m_output = pathOf(u"output"_s);
    QVERIFY(QDir().mkdir(m_output));
}

void TestTaskJobs::unknownTypesFail_data()
{
    QTest::addColumn<int>("type");
    for (const int type : {-1, 1, 7, 1000}) {
        QTest::addRow("%d", type) << type;
    }
}

void TestTaskJobs::unknownTypesFail()
{
    QFETCH(int, type);
    TaskRequest request = requestFor(TaskType::Merge, {}, m_output + u"/a.pdf"_s);
    request.type = type;
    request.inputFiles = {m_folder->add(u"a.pdf"_s, PdfFixture::pagesByNumber(1))};
    QVERIFY(run(request).isError());
    QCOMPARE(filesIn(m_output), QStringList());
}

void TestTaskJobs::missingSourcesFail_data()
{
    QTest::addColumn<TaskType>("type");
    QTest::newRow("merge") << TaskType::Merge;
    QTest::newRow("encrypt") << TaskType::Encrypt;
    QTest::newRow("decrypt") << TaskType::Decrypt;
    QTest::newRow("compress") << TaskType::Compress;
}

void TestTaskJobs::missingSourcesFail()
{
    QFETCH(TaskType, type);
    TaskRequest request = requestFor(type, {}, m_output);
    request.options.insert(u"password"_s, u"secret"_s);
    QCOMPARE(run(request).error, PdfOperationError::FileNotFound);
    request.inputFile = pathOf(u"missing.pdf"_s);
    request.inputFiles = {request.inputFile};
    QCOMPARE(run(request).error, PdfOperationError::FileNotFound);
}

void TestTaskJobs::filesAreMerged()
{
    TaskRequest request = requestFor(TaskType::Merge, {}, m_output + u"/pdf_merge.pdf"_s);
    request.inputFiles = {m_folder->add(u"b.pdf"_s, PdfFixture::pagesByNumber(2)),
                          m_folder->add(u"a.pdf"_s, PdfFixture::pagesByNumber(1))};
    const PdfOperationOutcome outcome = run(request);
    QVERIFY2(!outcome.isError(), qPrintable(outcome.message));
    QCOMPARE(outcome.result, m_output + u"/pdf_merge.pdf"_s);
    QCOMPARE(numbersIn(outcome.result), (QList<int>{0, 1, 0}));
}

void TestTaskJobs::mergedFileTakesTheNextName()
{
    TaskRequest request = requestFor(TaskType::Merge, {}, m_output + u"/pdf_merge(1).pdf"_s);
    request.inputFiles = {m_folder->add(u"a.pdf"_s, PdfFixture::pagesByNumber(1))};
    for (int i = 1; i <= 3; ++i) {
        QCOMPARE(run(request).result, m_output + u"/pdf_merge(%1).pdf"_s.arg(i));
    }
    QCOMPARE(filesIn(m_output).size(), 3);
}

void TestTaskJobs::encryptedFileIsNamedLikeItsSource()
{
    const QString source = m_folder->add(u"a.b.pdf"_s, PdfFixture::pagesByNumber(1));
    TaskRequest request = requestFor(TaskType::Encrypt, source, m_output);
    request.options.insert(u"password"_s, u"secret"_s);
    request.options.insert(u"saveOption"_s, 1);
    for (const QString &name : {u"a.b.pdf"_s, u"a.b(1).pdf"_s, u"a.b(2).pdf"_s}) {
        const PdfOperationOutcome outcome = run(request);
        QCOMPARE(outcome.result, m_output + u'/' + name);
        QVERIFY(isProtected(outcome.result));
        QCOMPARE(inspect(outcome.result, u"secret"_s).pageSizes.size(), 1);
    }
    QCOMPARE(numbersIn(source), QList<int>{0});
}

void TestTaskJobs::encryptedFileReplacesItsSource()
{
    const QString source = m_folder->add(u"a.pdf"_s, PdfFixture::pagesByNumber(1));
    TaskRequest request = requestFor(TaskType::Encrypt, source, m_output);
    request.options.insert(u"password"_s, u"secret"_s);
    request.options.insert(u"saveOption"_s, 0);
    QCOMPARE(run(request).result, source);
    QVERIFY(isProtected(source));
    QCOMPARE(filesIn(m_output), QStringList());
    QCOMPARE(filesIn(m_folder->path()), QStringList{u"a.pdf"_s});
}

void TestTaskJobs::sourceIsKeptUnlessItIsToBeReplaced()
{
    const QString source = m_folder->add(u"a.pdf"_s, PdfFixture::pagesByNumber(1));
    TaskRequest request = requestFor(TaskType::Encrypt, source, m_folder->path());
    request.options.insert(u"password"_s, u"secret"_s);
    QCOMPARE(run(request).result, pathOf(u"a(1).pdf"_s));
    QVERIFY(!isProtected(source));
}

void TestTaskJobs::sourceOfEncryptionMayStandInTheList()
{
    const QString source = m_folder->add(u"a.pdf"_s, PdfFixture::pagesByNumber(1));
    TaskRequest request = requestFor(TaskType::Encrypt, {}, m_output);
    request.inputFiles = {source};
    request.options.insert(u"password"_s, u"secret"_s);
    QCOMPARE(run(request).result, m_output + u"/a.pdf"_s);
}

void TestTaskJobs::encryptionWithoutAPasswordFails()
{
    const QString source = m_folder->add(u"a.pdf"_s, PdfFixture::pagesByNumber(1));
    for (const int saveOption : {0, 1}) {
        TaskRequest request = requestFor(TaskType::Encrypt, source, m_output);
        request.options.insert(u"password"_s, QString());
        request.options.insert(u"saveOption"_s, saveOption);
        QCOMPARE(run(request).error, PdfOperationError::PasswordRequired);
    }
    QVERIFY(!isProtected(source));
    QCOMPARE(filesIn(m_output), QStringList());
}

void TestTaskJobs::missingFolderFails()
{
    const QString source = m_folder->add(u"a.pdf"_s, PdfFixture::pagesByNumber(1));
    TaskRequest request = requestFor(TaskType::Encrypt, source, m_output + u"/missing"_s);
    request.options.insert(u"password"_s, u"secret"_s);
    QCOMPARE(run(request).error, PdfOperationError::WriteFailed);
    QVERIFY(!QFile::exists(m_output + u"/missing"_s));
}

void TestTaskJobs::noFolderFails()
{
    const QString source = m_folder->add(u"a.pdf"_s, PdfFixture::pagesByNumber(1));
    TaskRequest request = requestFor(TaskType::Encrypt, source, {});
    request.options.insert(u"password"_s, u"secret"_s);
    QCOMPARE(run(request).error, PdfOperationError::WriteFailed);
}

void TestTaskJobs::decryptedFileIsNamedLikeItsSource()
{
    const QString source = m_folder->add(u"文件.pdf"_s, protectedPages(2));
    TaskRequest request = requestFor(TaskType::Decrypt, source, m_output);
    request.options.insert(u"saveOption"_s, 1);
    for (const QString &password : {u"user"_s, u"owner"_s}) {
        request.options.insert(u"password"_s, password);
        const QString result = run(request).result;
        QCOMPARE(result, m_output + (password == u"user"_s ? u"/文件.pdf"_s : u"/文件(1).pdf"_s));
        QCOMPARE(numbersIn(result), (QList<int>{0, 1}));
    }
    QVERIFY(isProtected(source));
}

void TestTaskJobs::decryptedFileReplacesItsSource()
{
    const QString source = m_folder->add(u"a.pdf"_s, protectedPages(2));
    TaskRequest request = requestFor(TaskType::Decrypt, source, m_output);
    request.options.insert(u"password"_s, u"owner"_s);
    request.options.insert(u"saveOption"_s, 0);
    QCOMPARE(run(request).result, source);
    QCOMPARE(numbersIn(source), (QList<int>{0, 1}));
    QCOMPARE(filesIn(m_output), QStringList());
}

void TestTaskJobs::decryptionWithAWrongPasswordFails()
{
    const QString source = m_folder->add(u"a.pdf"_s, protectedPages(2));
    const QByteArray before = contentOf(source);
    for (const int saveOption : {0, 1}) {
        TaskRequest request = requestFor(TaskType::Decrypt, source, m_output);
        request.options.insert(u"password"_s, u"wrong"_s);
        request.options.insert(u"saveOption"_s, saveOption);
        QCOMPARE(run(request).error, PdfOperationError::InvalidPassword);
    }
    QCOMPARE(contentOf(source), before);
    QCOMPARE(filesIn(m_output), QStringList());
}

/// A page that shows a picture of many colours, larger than it needs to be.
QString TestTaskJobs::addPhotograph(const QString &name)
{
    constexpr int kSide = 1200;
    QByteArray pixels;
    for (int y = 0; y < kSide; ++y) {
        for (int x = 0; x < kSide; ++x) {
            for (const int divisor : {37, 53, 71}) {
                const double wave = std::sin(x / double(divisor)) * std::cos(y / (divisor + 9.0));
                pixels.append(static_cast<char>(127 + 100 * wave + (x * 7 + y * 13) % 17));
            }
        }
    }
    return m_folder->add(
        name, PdfFixture::onePage(
                  "q 200 0 0 200 0 0 cm /X Do Q", "/XObject << /X 5 0 R >>",
                  {PdfFixture::streamBody("/Type /XObject /Subtype /Image /Width 1200 /Height 1200 "
                                          "/ColorSpace /DeviceRGB /BitsPerComponent 8",
                                          pixels)}));
}

void TestTaskJobs::compressedFileHasTheNameOfTheRequest()
{
    const QString source = addPhotograph(u"a.pdf"_s);
    const QByteArray before = contentOf(source);
    TaskRequest request = requestFor(TaskType::Compress, source, m_output + u"/a.pdf"_s);
    request.options = {{u"compressLevel"_s, 0}, {u"saveOption"_s, 1}};
    const PdfOperationOutcome outcome = run(request);
    QVERIFY2(!outcome.isError(), qPrintable(outcome.message));
    QCOMPARE(outcome.result, m_output + u"/a.pdf"_s);
    QVERIFY(contentOf(outcome.result).size() * 5 < before.size());
    QCOMPARE(contentOf(source), before);
    QVERIFY(distance(render(filePage(source)).image, render(filePage(outcome.result)).image) < 40);
}

void TestTaskJobs::compressedFileTakesTheNextName()
{
    const QString source = m_folder->add(u"a.pdf"_s, PdfFixture::pagesByNumber(2));
    TaskRequest request = requestFor(TaskType::Compress, source, pathOf(u"a(1).pdf"_s));
    request.options = {{u"compressLevel"_s, 1}, {u"saveOption"_s, 1}};
    QCOMPARE(run(request).result, pathOf(u"a(1).pdf"_s));
    QCOMPARE(run(request).result, pathOf(u"a(2).pdf"_s));
    QCOMPARE(numbersIn(pathOf(u"a(2).pdf"_s)), (QList<int>{0, 1}));
}

void TestTaskJobs::compressedFileReplacesItsSource()
{
    const QString source = addPhotograph(u"a.pdf"_s);
    const qint64 before = contentOf(source).size();
    TaskRequest request = requestFor(TaskType::Compress, source, pathOf(u"a(1).pdf"_s));
    request.options = {{u"compressLevel"_s, 0}, {u"saveOption"_s, 0}};
    QCOMPARE(run(request).result, source);
    QVERIFY(contentOf(source).size() * 5 < before);
    QCOMPARE(filesIn(m_folder->path()), QStringList{u"a.pdf"_s});
}

void TestTaskJobs::strongerLevelMakesASmallerFile()
{
    const QString source = addPhotograph(u"a.pdf"_s);
    QList<qint64> sizes;
    for (const int level : {0, 1, 2}) {
        TaskRequest request =
            requestFor(TaskType::Compress, source, m_output + u"/%1.pdf"_s.arg(level));
        request.options = {{u"compressLevel"_s, level}, {u"saveOption"_s, 1}};
        sizes.append(contentOf(run(request).result).size());
    }
    QVERIFY(sizes.at(1) > 0);
    QVERIFY(sizes.at(1) * 3 < sizes.at(0) * 2);
    // All but 0 is strong.
    QVERIFY(qAbs(sizes.at(2) - sizes.at(1)) < 100);
}

QTEST_GUILESS_MAIN(TestTaskJobs)
#include "tst_task_jobs.moc"
