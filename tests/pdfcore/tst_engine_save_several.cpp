// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/base/atomic_file.h"
#include "tests/pdfcore/engine_calls.h"
#include "tests/support/pdf_fixture.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include <algorithm>

using namespace EngineCalls;
using namespace Qt::StringLiterals;

namespace {

/// So many that the file is divided more than once.
constexpr int kMany = 60;

QString nameOf(int i)
{
    return u"part%1.pdf"_s.arg(i);
}

/// A file of each page.
QList<PdfOutputFile> everyPage(const Folder &folder, const QString &source, int count)
{
    QList<PdfOutputFile> files;
    for (int i = 0; i < count; ++i) {
        files.append({{filePage(source, i)}, folder.path(nameOf(i))});
    }
    return files;
}

qsizetype failures(const QList<PdfSaveOutcome> &outcomes)
{
    return std::count_if(outcomes.begin(), outcomes.end(), [](const PdfSaveOutcome &outcome) {
        return outcome.error != PdfBackendError::None;
    });
}

QStringList namesIn(const Folder &folder)
{
    return QDir(folder.path()).entryList(QDir::Files | QDir::Hidden | QDir::System);
}

} // namespace

/// Several files written together; tst_fidelity_several looks at what they hold.
class TestEngineSaveSeveral : public QObject
{
    Q_OBJECT

private slots:
    void everyFileHoldsItsPages();
    void filesOfTwoSourcesHoldThePagesOfBoth();
    void noFilesAreNoWork();
    void failingSourceStopsNoOtherFile();
    void missingPageStopsNoOtherFile();
    void targetThatCannotBeWrittenStopsNoOtherFile();
    void filesWithoutPagesFail();
    void wrongPasswordFailsEveryFile();
    void changedSourceFailsEveryFile();
    void existingFilesAreReplaced();
    void readOnlyTargetIsRefused();
    void sourceMayBeATarget();
    void newFileIsLeftToTheCallerToFlush();
    void existingFileIsNot();
};

void TestEngineSaveSeveral::everyFileHoldsItsPages()
{
    Folder folder;
    const QString source = folder.add(u"in.pdf"_s, PdfFixture::pagesByNumber(kMany));
    const QList<PdfSaveOutcome> outcomes =
        PdfEditorBackend::saveDocuments(everyPage(folder, source, kMany));
    QCOMPARE(outcomes.size(), kMany);
    QCOMPARE(failures(outcomes), 0);
    for (int i = 0; i < kMany; ++i) {
        QCOMPARE(numbersIn(folder.path(nameOf(i))), QList<int>{i});
    }
    QVERIFY(folder.leftovers().isEmpty());
}

void TestEngineSaveSeveral::filesOfTwoSourcesHoldThePagesOfBoth()
{
    Folder folder;
    const QString source = folder.add(u"in.pdf"_s, PdfFixture::pagesByNumber(kMany));
    QList<PdfSourcePage> backwards;
    for (int i = kMany - 1; i >= 0; --i) {
        backwards.append(filePage(source, i));
    }
    const QString other = folder.path(u"other.pdf"_s);
    QVERIFY(save(backwards, other).ok);
    QList<PdfOutputFile> files = everyPage(folder, source, kMany);
    for (int i = 0; i < kMany; ++i) {
        files[i].pages.append(filePage(other, i));
    }
    QCOMPARE(failures(PdfEditorBackend::saveDocuments(files)), 0);
    for (int i = 0; i < kMany; ++i) {
        QCOMPARE(numbersIn(folder.path(nameOf(i))), (QList<int>{i, kMany - 1 - i}));
    }
}

void TestEngineSaveSeveral::noFilesAreNoWork()
{
    QVERIFY(PdfEditorBackend::saveDocuments({}).isEmpty());
}

void TestEngineSaveSeveral::failingSourceStopsNoOtherFile()
{
    Folder folder;
    const QString source = folder.add(u"in.pdf"_s, PdfFixture::pagesByNumber(kMany));
    const QString damaged = folder.add(u"damaged.pdf"_s, "no document");
    QList<PdfOutputFile> files = everyPage(folder, source, kMany);
    files[7].pages = {filePage(folder.path(u"missing.pdf"_s), 0)};
    files[20].pages = {filePage(damaged, 0)};
    files[21].pages = {filePage(damaged, 1)};
    files[40].pages.append(filePage(damaged, 0));
    const QList<PdfSaveOutcome> outcomes = PdfEditorBackend::saveDocuments(files);
    for (int i = 0; i < kMany; ++i) {
        const PdfSaveOutcome &outcome = outcomes.at(i);
        const Outcome alone = save(files.at(i).pages, folder.path(u"alone.pdf"_s));
        QCOMPARE(outcome.error, alone.error);
        QCOMPARE(outcome.message, alone.message);
        QCOMPARE(QFile::exists(files.at(i).path), alone.ok);
    }
    QCOMPARE(failures(outcomes), 4);
    QVERIFY(folder.leftovers().isEmpty());
}

void TestEngineSaveSeveral::missingPageStopsNoOtherFile()
{
    Folder folder;
    const QString source = folder.add(u"in.pdf"_s, PdfFixture::pagesByNumber(30));
    const QList<PdfOutputFile> files = everyPage(folder, source, 32);
    const QList<PdfSaveOutcome> outcomes = PdfEditorBackend::saveDocuments(files);
    QCOMPARE(failures(outcomes), 2);
    QCOMPARE(outcomes.at(30).error, PdfBackendError::InvalidDocument);
    QCOMPARE(outcomes.at(31).error, PdfBackendError::InvalidDocument);
    QCOMPARE(outcomes.at(31).message, save(files.at(31).pages, files.at(31).path).message);
    QCOMPARE(numbersIn(files.at(29).path), QList<int>{29});
}

void TestEngineSaveSeveral::targetThatCannotBeWrittenStopsNoOtherFile()
{
    Folder folder;
    const QString source = folder.add(u"in.pdf"_s, PdfFixture::pagesByNumber(kMany));
    QList<PdfOutputFile> files = everyPage(folder, source, kMany);
    files[10].path = folder.path(u"no such folder/part.pdf"_s);
    files[30].path = folder.path();
    files[50].path.clear();
    const QList<PdfSaveOutcome> outcomes = PdfEditorBackend::saveDocuments(files);
    QCOMPARE(failures(outcomes), 3);
    for (const int i : {10, 30, 50}) {
        QCOMPARE(outcomes.at(i).error, PdfBackendError::WriteFailed);
        QVERIFY(!outcomes.at(i).message.isEmpty());
    }
    QCOMPARE(numbersIn(files.at(31).path), QList<int>{31});
    QVERIFY(folder.leftovers().isEmpty());
}

void TestEngineSaveSeveral::filesWithoutPagesFail()
{
    Folder folder;
    const QString source = folder.add(u"in.pdf"_s, PdfFixture::pagesByNumber(20));
    QList<PdfOutputFile> files = everyPage(folder, source, 20);
    files[3].pages.clear();
    const QList<PdfSaveOutcome> outcomes = PdfEditorBackend::saveDocuments(files);
    QCOMPARE(failures(outcomes), 1);
    QCOMPARE(outcomes.at(3).error, PdfBackendError::WriteFailed);
}

void TestEngineSaveSeveral::wrongPasswordFailsEveryFile()
{
    Folder folder;
    const QString source = folder.add(
        u"in.pdf"_s, PdfFixture::encrypted(PdfFixture::pagesByNumber(20), {"user", "owner", 6}));
    QList<PdfOutputFile> files = everyPage(folder, source, 20);
    for (PdfOutputFile &file : files) {
        file.pages[0].password = u"wrong"_s;
    }
    const QStringList before = namesIn(folder);
    const QList<PdfSaveOutcome> outcomes = PdfEditorBackend::saveDocuments(files);
    for (const PdfSaveOutcome &outcome : outcomes) {
        QCOMPARE(outcome.error, PdfBackendError::InvalidPassword);
        QVERIFY(!outcome.message.contains(u"wrong"_s));
    }
    QCOMPARE(namesIn(folder), before);
}

void TestEngineSaveSeveral::changedSourceFailsEveryFile()
{
    Folder folder;
    const QString source = folder.add(u"in.pdf"_s, PdfFixture::pagesByNumber(20));
    PdfDocumentInfo info;
    QVERIFY(PdfEditorBackend::inspectDocument(source, {}, &info, nullptr, nullptr));
    QList<PdfOutputFile> files = everyPage(folder, source, 20);
    for (PdfOutputFile &file : files) {
        file.pages[0].revision = info.revision;
    }
    folder.add(u"in.pdf"_s, PdfFixture::pagesByNumber(21));
    const QStringList before = namesIn(folder);
    const QList<PdfSaveOutcome> outcomes = PdfEditorBackend::saveDocuments(files);
    for (const PdfSaveOutcome &outcome : outcomes) {
        QCOMPARE(outcome.error, PdfBackendError::FileNotFound);
    }
    QCOMPARE(namesIn(folder), before);
}

void TestEngineSaveSeveral::existingFilesAreReplaced()
{
    Folder folder;
    const QString source = folder.add(u"in.pdf"_s, PdfFixture::pagesByNumber(20));
    for (const int i : {0, 13}) {
        folder.add(nameOf(i), "something else");
        QVERIFY(QFile::setPermissions(folder.path(nameOf(i)),
                                      QFileDevice::ReadOwner | QFileDevice::WriteOwner));
    }
    const QFileDevice::Permissions before = QFile::permissions(folder.path(nameOf(13)));
    QCOMPARE(failures(PdfEditorBackend::saveDocuments(everyPage(folder, source, 20))), 0);
    QCOMPARE(numbersIn(folder.path(nameOf(0))), QList<int>{0});
    QCOMPARE(numbersIn(folder.path(nameOf(13))), QList<int>{13});
    QCOMPARE(QFile::permissions(folder.path(nameOf(13))), before);
}

void TestEngineSaveSeveral::readOnlyTargetIsRefused()
{
    Folder folder;
    const QString source = folder.add(u"in.pdf"_s, PdfFixture::pagesByNumber(20));
    const QString kept = folder.add(nameOf(5), "kept");
    QVERIFY(QFile::setPermissions(kept, QFileDevice::ReadOwner));
    const QList<PdfSaveOutcome> outcomes =
        PdfEditorBackend::saveDocuments(everyPage(folder, source, 20));
    QCOMPARE(failures(outcomes), 1);
    QCOMPARE(outcomes.at(5).error, PdfBackendError::WriteFailed);
    QCOMPARE(contentOf(kept), "kept");
}

/// Whatever is read after the source was replaced is still read from its superseded content.
void TestEngineSaveSeveral::sourceMayBeATarget()
{
    Folder folder;
    const QString source = folder.add(u"in.pdf"_s, PdfFixture::pagesByNumber(kMany));
    PdfDocumentInfo info;
    QVERIFY(PdfEditorBackend::inspectDocument(source, {}, &info, nullptr, nullptr));
    QList<PdfOutputFile> files = everyPage(folder, source, kMany);
    for (PdfOutputFile &file : files) {
        file.pages[0].revision = info.revision;
    }
    files[0].path = source;
    QCOMPARE(failures(PdfEditorBackend::saveDocuments(files)), 0);
    QCOMPARE(numbersIn(source), QList<int>{0});
    for (int i = 1; i < kMany; ++i) {
        QCOMPARE(numbersIn(folder.path(nameOf(i))), QList<int>{i});
    }
}

void TestEngineSaveSeveral::newFileIsLeftToTheCallerToFlush()
{
    const Folder folder;
    pdfcore::AtomicFile file(folder.path(u"new.pdf"_s), pdfcore::AtomicFile::Flush::Caller);
    QString reason;
    QVERIFY(file.open(&reason));
    QVERIFY(file.isForCallerToFlush());
    QCOMPARE(file.device().write("new"), 3);
    QVERIFY(file.finishWriting(&reason));
    QCOMPARE(contentOf(file.temporaryPath()), "new");
    QVERIFY(file.commit(&reason));
    QCOMPARE(contentOf(file.target()), "new");
}

/// What a crash would leave in its place is worth more than the time.
void TestEngineSaveSeveral::existingFileIsNot()
{
    Folder folder;
    pdfcore::AtomicFile file(folder.add(u"old.pdf"_s, "old"), pdfcore::AtomicFile::Flush::Caller);
    QString reason;
    QVERIFY(file.open(&reason));
    QVERIFY(!file.isForCallerToFlush());
}

QTEST_GUILESS_MAIN(TestEngineSaveSeveral)
#include "tst_engine_save_several.moc"
