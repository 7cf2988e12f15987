// SPDX-License-Identifier: AGPL-3.0-or-later
#include "taskcenter/task_error_text.h"
#include "taskcenter/task_job.h"
#include "tests/pdfcore/engine_calls.h"
#include "tests/support/full_disk.h"
#include "tests/support/pdf_fixture.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QImage>

#include <memory>

using namespace EngineCalls;
using namespace Qt::StringLiterals;

namespace {

const TaskType kTypes[] = {TaskType::Merge,       TaskType::Encrypt,     TaskType::Decrypt,
                           TaskType::PdfToImages, TaskType::ImagesToPdf, TaskType::Compress};

const char *nameOf(TaskType type)
{
    switch (type) {
    case TaskType::Merge:
        return "merge";
    case TaskType::Encrypt:
        return "encrypt";
    case TaskType::Decrypt:
        return "decrypt";
    case TaskType::PdfToImages:
        return "PDF to images";
    case TaskType::ImagesToPdf:
        return "images to PDF";
    case TaskType::Compress:
        return "compress";
    }
    return "";
}

/// What compresses badly, so that it takes room whatever is done to it.
QByteArray largeDocument()
{
    return PdfFixture::pagesByNumber(60);
}

QByteArray noisePicture()
{
    QImage image(300, 300, QImage::Format_RGB32);
    quint32 state = 1;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            state = state * 1664525 + 1013904223;
            image.setPixel(x, y, 0xFF000000 | (state >> 8));
        }
    }
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes;
}

} // namespace

/// Tasks of every type on disks, in folders and with names that make trouble: each ends with a
/// sentence, leaves nothing half-written and its source whole.
class TestHostileTasks final : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void fullDisk_data() { addEveryType(); }
    void fullDisk();
    void missingTargetFolder_data() { addEveryType(); }
    void missingTargetFolder();
    void targetFolderIsAFile_data() { addEveryType(); }
    void targetFolderIsAFile();
    void longestName_data() { addEveryType(); }
    void longestName();
    void anyLetters_data() { addEveryType(); }
    void anyLetters();
    void emptySource_data() { addEveryType(); }
    void emptySource();
    void folderAsSource_data() { addEveryType(); }
    void folderAsSource();

private:
    static void addEveryType();
    /// Adds a source for the type under that name; its suffix is chosen here.
    QString addSource(TaskType type, const QString &baseName);
    [[nodiscard]] TaskRequest requestFor(TaskType type, bool replaces, const QString &source,
                                         const QString &folder) const;
    [[nodiscard]] QStringList everything() const;
    void verifyFailure(const PdfOperationOutcome &outcome, const QStringList &before);

    std::unique_ptr<Folder> m_folder;
};

void TestHostileTasks::init()
{
    m_folder = std::make_unique<Folder>();
    QVERIFY(QDir(m_folder->path()).mkdir(u"output"_s));
}

void TestHostileTasks::addEveryType()
{
    QTest::addColumn<TaskType>("type");
    QTest::addColumn<bool>("replaces");
    for (const TaskType type : kTypes) {
        const bool mayReplace =
            type == TaskType::Encrypt || type == TaskType::Decrypt || type == TaskType::Compress;
        QTest::addRow("%s", nameOf(type)) << type << false;
        if (mayReplace) {
            QTest::addRow("%s, replacing", nameOf(type)) << type << true;
        }
    }
}

QString TestHostileTasks::addSource(TaskType type, const QString &baseName)
{
    if (type == TaskType::ImagesToPdf) {
        return m_folder->add(baseName + u".png"_s, noisePicture());
    }
    const QByteArray document = largeDocument();
    return m_folder->add(baseName + u".pdf"_s,
                         type == TaskType::Decrypt
                             ? PdfFixture::encrypted(document, {"secret", "owner", 6})
                             : document);
}

TaskRequest TestHostileTasks::requestFor(TaskType type, bool replaces, const QString &source,
                                         const QString &folder) const
{
    TaskRequest request;
    request.type = static_cast<qint32>(type);
    request.inputFile = source;
    request.inputFiles = {source};
    const bool namesFolder =
        type == TaskType::Encrypt || type == TaskType::Decrypt || type == TaskType::PdfToImages;
    request.outputPath = namesFolder ? folder : folder + u"/result.pdf"_s;
    request.options = {{u"saveOption"_s, replaces ? 0 : 1},
                       {u"password"_s, u"secret"_s},
                       {u"compressLevel"_s, 0},
                       {u"format"_s, 3}};
    return request;
}

QStringList TestHostileTasks::everything() const
{
    const QString path = m_folder->path();
    QStringList names = QDir(path).entryList(QDir::Files | QDir::Hidden, QDir::Name);
    names += QDir(path + u"/output"_s).entryList(QDir::Files | QDir::Hidden, QDir::Name);
    return names;
}

void TestHostileTasks::verifyFailure(const PdfOperationOutcome &outcome, const QStringList &before)
{
    QVERIFY(outcome.isError());
    QVERIFY(outcome.error != PdfOperationError::Cancelled);
    QVERIFY(!taskErrorText(outcome).isEmpty());
    QVERIFY(!taskErrorText(outcome).contains(u"secret"_s));
    QCOMPARE(everything(), before);
}

void TestHostileTasks::fullDisk()
{
    QFETCH(TaskType, type);
    QFETCH(bool, replaces);
    const QString source = addSource(type, u"source"_s);
    const QByteArray content = contentOf(source);
    const QStringList before = everything();
    PdfOperationOutcome outcome;
    {
        const FullDisk disk(600);
        if (!disk.isActive()) {
            QSKIP("The system does not limit the size of files.");
        }
        outcome = runTaskJob(requestFor(type, replaces, source, m_folder->path(u"output"_s)), {});
    }
    verifyFailure(outcome, before);
    QCOMPARE(outcome.error, PdfOperationError::WriteFailed);
    QCOMPARE(contentOf(source), content);
}

void TestHostileTasks::missingTargetFolder()
{
    QFETCH(TaskType, type);
    QFETCH(bool, replaces);
    if (replaces) {
        return;
    }
    const QString source = addSource(type, u"source"_s);
    const QStringList before = everything();
    verifyFailure(runTaskJob(requestFor(type, replaces, source, m_folder->path(u"nowhere"_s)), {}),
                  before);
    QVERIFY(!QFile::exists(m_folder->path(u"nowhere"_s)));
}

void TestHostileTasks::targetFolderIsAFile()
{
    QFETCH(TaskType, type);
    QFETCH(bool, replaces);
    if (replaces) {
        return;
    }
    const QString source = addSource(type, u"source"_s);
    const QString file = m_folder->add(u"file"_s, "some bytes");
    const QStringList before = everything();
    verifyFailure(runTaskJob(requestFor(type, replaces, source, file), {}), before);
    QCOMPARE(contentOf(file), "some bytes");
}

void TestHostileTasks::longestName()
{
    QFETCH(TaskType, type);
    QFETCH(bool, replaces);
    // As long as common file systems allow; there is no room for a number.
    const QString source = addSource(type, QString(251, u'n'));
    const QByteArray content = contentOf(source);
    const QStringList before = everything();
    const PdfOperationOutcome outcome =
        runTaskJob(requestFor(type, replaces, source, m_folder->path(u"output"_s)), {});
    if (outcome.isError()) {
        verifyFailure(outcome, before);
        QCOMPARE(contentOf(source), content);
    } else {
        QVERIFY(QFile::exists(outcome.result));
        QVERIFY(everything().filter(u".tmp"_s).isEmpty());
    }
    // Only numbered names are longer than the source's.
    QCOMPARE(outcome.isError(), type == TaskType::PdfToImages);
}

void TestHostileTasks::anyLetters()
{
    QFETCH(TaskType, type);
    QFETCH(bool, replaces);
    const QString source = addSource(type, u"发票 فاتورة 😀 'quoted' 100 % #1; x.y"_s);
    const PdfOperationOutcome outcome =
        runTaskJob(requestFor(type, replaces, source, m_folder->path(u"output"_s)), {});
    QVERIFY2(!outcome.isError(), qPrintable(outcome.message));
    QVERIFY(QFile::exists(outcome.result));
    QCOMPARE(outcome.result == source, replaces);
}

void TestHostileTasks::emptySource()
{
    QFETCH(TaskType, type);
    QFETCH(bool, replaces);
    const QString source = m_folder->add(u"empty.pdf"_s, {});
    const QStringList before = everything();
    verifyFailure(runTaskJob(requestFor(type, replaces, source, m_folder->path(u"output"_s)), {}),
                  before);
    QCOMPARE(contentOf(source), QByteArray());
}

void TestHostileTasks::folderAsSource()
{
    QFETCH(TaskType, type);
    QFETCH(bool, replaces);
    const QString source = m_folder->path(u"folder.pdf"_s);
    QVERIFY(QDir().mkdir(source));
    const QStringList before = everything();
    verifyFailure(runTaskJob(requestFor(type, replaces, source, m_folder->path(u"output"_s)), {}),
                  before);
    QVERIFY(QFileInfo(source).isDir());
}

QTEST_GUILESS_MAIN(TestHostileTasks)
#include "tst_hostile_tasks.moc"
