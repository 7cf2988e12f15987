// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/pdf_file_revision.h"
#include "pdfcore/src/base/atomic_file.h"
#include "pdfcore/src/session/engine.h"
#include "tests/pdfcore/engine_calls.h"
#include "tests/support/pdf_fixture.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QStorageInfo>
#include <QTemporaryDir>

#include <atomic>
#include <thread>

using namespace EngineCalls;
using namespace Qt::StringLiterals;

namespace {

/// The pages of a file as an open document holds them.
QList<PdfSourcePage> openedPages(const QString &path, const QString &password = {})
{
    PdfDocumentInfo info;
    QList<PdfSourcePage> pages;
    if (!PdfEditorBackend::inspectDocument(path, password, &info, nullptr, nullptr)) {
        return pages;
    }
    for (qsizetype i = 0; i < info.pageSizes.size(); ++i) {
        PdfSourcePage page = filePage(path, static_cast<int>(i), 0, password);
        page.pageSize = info.pageSizes.at(i);
        page.revision = info.revision;
        pages.append(page);
    }
    return pages;
}

QString supersededRoot()
{
    return QStandardPaths::writableLocation(QStandardPaths::CacheLocation) + u"/quillora-sources"_s;
}

QStringList keptFiles()
{
    QStringList files;
    QDirIterator entries(supersededRoot(), {u"*.pdf"_s}, QDir::Files, QDirIterator::Subdirectories);
    while (entries.hasNext()) {
        files.append(entries.next());
    }
    return files;
}

} // namespace

class TestFileRevisions : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();
    void pagesStayTheSameWhenTheirFileIsReplaced();
    void pagesOfAProtectedFileStayTheSame();
    void savingAgainWritesTheOldPages();
    void theFileItselfHasTheNewPages();
    void pagesOfEachStateStayTheirOwn();
    void keptContentGoesWithItsLastUser();
    void keptContentIsClosedWithItsLastUser();
    void contentThatNobodyUsesIsNotKept();
    void aFailedSaveKeepsThePages();
    void rendersUnderWayDuringASaveShowTheOldPages();
    void pagesOfAFileChangedByAnotherProgramFail();
    void savingPagesOfAFileChangedByAnotherProgramFails();
    void pagesOfAFileReplacedByAnotherProgramFail();
    void pagesOfAFileWrittenAnewInPlaceFail();
    void pagesOfAMissingFileFail();
    void pagesWithoutAStateFollowTheFile();
    void inspectingTheSameStateAgainGivesTheSameOne();
    void leftOversOfEndedProcessesAreRemoved();
    void contentOfLivingProcessesStays();
    void folderWithoutALockIsRemovedOnceItIsOld();
    void freshFolderWithoutALockStays();
    void whatALinkLeadsToStays();
    void savingGoesOnAfterTheFolderWasRemoved();
    void contentOnAnotherDiskIsCopied();
    void aFailedReplacementLeavesTheStateInItsFile();
    void anExpectedStateIsReplacedOnly();
    void statesBehindOneLinkHaveNumbersOfTheirOwn();
    void enginesHaveSessionsAndRevisionsOfTheirOwn();
    void aRevisionMayOutliveItsEngine();
};

void TestFileRevisions::initTestCase()
{
    QStandardPaths::setTestModeEnabled(true);
    QDir(supersededRoot()).removeRecursively();
}

void TestFileRevisions::cleanup()
{
    QCOMPARE(keptFiles(), QStringList());
}

void TestFileRevisions::pagesStayTheSameWhenTheirFileIsReplaced()
{
    Folder folder;
    const QString path = folder.add(u"four.pdf"_s, PdfFixture::pagesByNumber(4));
    const QList<PdfSourcePage> pages = openedPages(path);
    QVERIFY(save({pages.at(3), pages.at(1)}, path).ok);
    QCOMPARE(numbersOf(pages), (QList<int>{0, 1, 2, 3}));
}

void TestFileRevisions::pagesOfAProtectedFileStayTheSame()
{
    Folder folder;
    PdfFixture::Encryption encryption;
    encryption.userPassword = "secret";
    encryption.ownerPassword = "owner";
    const QString path = folder.add(
        u"protected.pdf"_s, PdfFixture::encrypted(PdfFixture::pagesByNumber(3), encryption));
    const QList<PdfSourcePage> pages = openedPages(path, u"secret"_s);
    QVERIFY(save({pages.at(2)}, path).ok);
    QCOMPARE(numbersOf(pages), (QList<int>{0, 1, 2}));
    QVERIFY(save({pages.at(1), pages.at(0)}, path).ok);
    QCOMPARE(numbersOf(openedPages(path, u"secret"_s)), (QList<int>{1, 0}));
}

void TestFileRevisions::savingAgainWritesTheOldPages()
{
    Folder folder;
    const QString path = folder.add(u"four.pdf"_s, PdfFixture::pagesByNumber(4));
    const QString other = folder.path(u"other.pdf"_s);
    const QList<PdfSourcePage> pages = openedPages(path);
    QVERIFY(save({pages.at(3)}, path).ok);
    QVERIFY(save({pages.at(2), pages.at(0)}, path).ok);
    QVERIFY(save({pages.at(1)}, other).ok);
    QCOMPARE(numbersOf(openedPages(path)), (QList<int>{2, 0}));
    QCOMPARE(numbersOf(openedPages(other)), QList<int>{1});
}

void TestFileRevisions::theFileItselfHasTheNewPages()
{
    Folder folder;
    const QString path = folder.add(u"four.pdf"_s, PdfFixture::pagesByNumber(4));
    const QList<PdfSourcePage> pages = openedPages(path);
    QVERIFY(save({pages.at(3), pages.at(1)}, path).ok);
    QCOMPARE(numbersOf({filePage(path, 0), filePage(path, 1)}), (QList<int>{3, 1}));
}

void TestFileRevisions::pagesOfEachStateStayTheirOwn()
{
    Folder folder;
    const QString path = folder.add(u"four.pdf"_s, PdfFixture::pagesByNumber(4));
    const QList<PdfSourcePage> first = openedPages(path);
    QVERIFY(save({first.at(3), first.at(2)}, path).ok);
    const QList<PdfSourcePage> second = openedPages(path);
    QVERIFY(save({second.at(1)}, path).ok);
    const QList<PdfSourcePage> third = openedPages(path);
    QCOMPARE(numbersOf(first), (QList<int>{0, 1, 2, 3}));
    QCOMPARE(numbersOf(second), (QList<int>{3, 2}));
    QCOMPARE(numbersOf(third), QList<int>{2});
    QVERIFY(first.at(0).revision->generation() < second.at(0).revision->generation());
    QVERIFY(second.at(0).revision->generation() < third.at(0).revision->generation());
    QCOMPARE(first.at(0).revision->path(), path);
}

void TestFileRevisions::keptContentGoesWithItsLastUser()
{
    Folder folder;
    const QString path = folder.add(u"four.pdf"_s, PdfFixture::pagesByNumber(4));
    QList<PdfSourcePage> pages = openedPages(path);
    QVERIFY(save({pages.at(3)}, path).ok);
    QCOMPARE(keptFiles().size(), 1);
    const QList<PdfSourcePage> history{pages.at(1)};
    pages.clear();
    QCOMPARE(keptFiles().size(), 1);
    QCOMPARE(numbersOf(history), QList<int>{1});
}

void TestFileRevisions::keptContentIsClosedWithItsLastUser()
{
    Folder folder;
    const QString path = folder.add(u"four.pdf"_s, PdfFixture::pagesByNumber(4));
    pdfcore::SessionPool &sessions = pdfcore::Engine::instance().sessions();
    QList<PdfSourcePage> pages = openedPages(path);
    QVERIFY(save({pages.at(3)}, path).ok);
    sessions.closeIdle();
    QCOMPARE(numbersOf({pages.at(1)}), QList<int>{1});
    QCOMPARE(sessions.idleCount(), 1);
    pages.clear();
    QCOMPARE(sessions.idleCount(), 0);
}

void TestFileRevisions::contentThatNobodyUsesIsNotKept()
{
    Folder folder;
    const QString path = folder.add(u"four.pdf"_s, PdfFixture::pagesByNumber(4));
    const QString other = folder.add(u"other.pdf"_s, PdfFixture::pagesByNumber(2));
    openedPages(other);
    const QList<PdfSourcePage> pages = openedPages(path);
    QVERIFY(save(pages, other).ok);
    QCOMPARE(keptFiles(), QStringList());
}

void TestFileRevisions::aFailedSaveKeepsThePages()
{
    Folder folder;
    const QString path = folder.add(u"four.pdf"_s, PdfFixture::pagesByNumber(4));
    const QByteArray before = contentOf(path);
    QList<PdfSourcePage> pages = openedPages(path);
    QVERIFY(!save({pages.at(0), filePage(folder.path(u"missing.pdf"_s))}, path).ok);
    QCOMPARE(contentOf(path), before);
    QCOMPARE(numbersOf(pages), (QList<int>{0, 1, 2, 3}));
}

void TestFileRevisions::rendersUnderWayDuringASaveShowTheOldPages()
{
    Folder folder;
    const QString path = folder.add(u"four.pdf"_s, PdfFixture::pagesByNumber(4));
    const QList<PdfSourcePage> pages = openedPages(path);
    std::atomic<bool> stopping{false};
    std::atomic<int> wrong{0};
    std::atomic<int> rendered{0};
    std::thread reader([&] {
        while (!stopping || rendered < 20) {
            if (numbersOf(pages) != QList<int>{0, 1, 2, 3}) {
                ++wrong;
            }
            ++rendered;
        }
    });
    for (int i = 0; i < 10; ++i) {
        QVERIFY(save({pages.at(3 - i % 4), pages.at(0)}, path).ok);
    }
    stopping = true;
    reader.join();
    QCOMPARE(wrong.load(), 0);
}

void TestFileRevisions::pagesOfAFileChangedByAnotherProgramFail()
{
    Folder folder;
    const QString path = folder.add(u"four.pdf"_s, PdfFixture::pagesByNumber(4));
    const QList<PdfSourcePage> pages = openedPages(path);
    folder.add(u"four.pdf"_s, PdfFixture::pagesByNumber(5));
    const Rendering rendering = render(pages.at(0));
    QVERIFY(!rendering.ok);
    QVERIFY(rendering.image.isNull());
    QVERIFY2(rendering.message.contains(u"changed"_s), qPrintable(rendering.message));
}

void TestFileRevisions::savingPagesOfAFileChangedByAnotherProgramFails()
{
    Folder folder;
    const QString path = folder.add(u"four.pdf"_s, PdfFixture::pagesByNumber(4));
    const QString target = folder.add(u"target.pdf"_s, PdfFixture::pagesByNumber(1));
    const QList<PdfSourcePage> pages = openedPages(path);
    folder.add(u"four.pdf"_s, PdfFixture::pagesByNumber(5));
    for (const QString &where : {target, path}) {
        const QByteArray before = contentOf(where);
        const Outcome outcome = save(pages, where);
        QVERIFY(!outcome.ok);
        QCOMPARE(outcome.error, PdfBackendError::FileNotFound);
        QVERIFY2(outcome.message.contains(u"changed"_s), qPrintable(outcome.message));
        QCOMPARE(contentOf(where), before);
    }
    QCOMPARE(folder.leftovers(), QStringList());
}

void TestFileRevisions::pagesOfAFileReplacedByAnotherProgramFail()
{
    // A file of the same size and time, as a program makes it that keeps the times of what it puts
    // back.
    Folder folder;
    const QByteArray content = PdfFixture::pagesByNumber(4);
    const QString path = folder.add(u"four.pdf"_s, content);
    const QDateTime modified = QFileInfo(path).lastModified();
    const QList<PdfSourcePage> pages = openedPages(path);
    const QString other = folder.add(u"other.pdf"_s, content);
    {
        QFile file(other);
        QVERIFY(file.open(QIODevice::ReadWrite));
        QVERIFY(file.setFileTime(modified, QFileDevice::FileModificationTime));
    }
#ifdef Q_OS_WIN
    QSKIP("Files are told apart by size and time alone.");
#endif
    QVERIFY(QFile::rename(path, folder.path(u"away.pdf"_s)));
    QVERIFY(QFile::rename(other, path));
    QCOMPARE(QFileInfo(path).lastModified(), modified);
    QVERIFY(!render(pages.at(0)).ok);
}

void TestFileRevisions::pagesOfAFileWrittenAnewInPlaceFail()
{
    // It is the same file with as many bytes, and yet not what was opened.
    Folder folder;
    const auto content = [](const QByteArray &colour) {
        return PdfFixture::onePage(colour + " rg 0 0 200 200 re f", {}, {});
    };
    const QString path = folder.add(u"in.pdf"_s, content("1 0 0"));
    const QDateTime modified = QFileInfo(path).lastModified();
    const QList<PdfSourcePage> pages = openedPages(path);
    QVERIFY(render(pages.at(0)).ok);
    {
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadWrite));
        const QByteArray other = content("0 0 1");
        QCOMPARE(file.write(other), other.size());
        QVERIFY(file.flush());
        QVERIFY(file.setFileTime(modified.addSecs(5), QFileDevice::FileModificationTime));
    }
    QVERIFY(!render(pages.at(0)).ok);
    QVERIFY(!save(pages, folder.path(u"out.pdf"_s)).ok);
    COMPARE_COLOUR(middle(render(filePage(path)).image), QColor(Qt::blue), 1);
    QVERIFY(openedPages(path).at(0).revision != pages.at(0).revision);
}

void TestFileRevisions::pagesOfAMissingFileFail()
{
    Folder folder;
    const QString path = folder.add(u"four.pdf"_s, PdfFixture::pagesByNumber(4));
    const QList<PdfSourcePage> pages = openedPages(path);
    QVERIFY(QFile::remove(path));
    const Rendering rendering = render(pages.at(0));
    QVERIFY(!rendering.ok);
    const Outcome outcome = save(pages, path);
    QCOMPARE(outcome.error, PdfBackendError::FileNotFound);
    QVERIFY(!QFile::exists(path));
}

void TestFileRevisions::pagesWithoutAStateFollowTheFile()
{
    Folder folder;
    const QString path = folder.add(u"two.pdf"_s, PdfFixture::pagesByNumber(2));
    QCOMPARE(numbersOf({filePage(path, 1)}), QList<int>{1});
    folder.add(u"two.pdf"_s, PdfFixture::document({PdfFixture::plain({200, 300}, Qt::white),
                                                   PdfFixture::plain({200, 300}, Qt::red)}));
    COMPARE_COLOUR(middle(render(filePage(path, 1)).image), QColor(Qt::red), 1);
}

void TestFileRevisions::inspectingTheSameStateAgainGivesTheSameOne()
{
    Folder folder;
    const QString path = folder.add(u"two.pdf"_s, PdfFixture::pagesByNumber(2));
    const QList<PdfSourcePage> first = openedPages(path);
    const QList<PdfSourcePage> second = openedPages(path);
    QVERIFY(first.at(0).revision);
    QCOMPARE(second.at(0).revision, first.at(0).revision);
}

void TestFileRevisions::leftOversOfEndedProcessesAreRemoved()
{
    const QString folder = supersededRoot() + u"/ended"_s;
    QVERIFY(QDir().mkpath(folder));
    QVERIFY(PdfFixture::write(folder + u"/1.pdf"_s, "old content"));
    // A lock of a process that does not run any more, as QLockFile writes it.
    QProcess process;
    process.start(QCoreApplication::applicationFilePath(), {u"-functions"_s});
    QVERIFY(process.waitForStarted());
    const qint64 ended = process.processId();
    QVERIFY(process.waitForFinished());
    QVERIFY(PdfFixture::write(folder + u"/in-use.lock"_s,
                              QByteArray::number(ended) + "\ntst_file_revisions\n" +
                                  QSysInfo::machineHostName().toUtf8() + '\n'));
    PdfFileRevision::removeLeftOvers();
    QVERIFY(!QFileInfo::exists(folder));
}

void TestFileRevisions::contentOfLivingProcessesStays()
{
    Folder folder;
    const QString path = folder.add(u"four.pdf"_s, PdfFixture::pagesByNumber(4));
    const QList<PdfSourcePage> pages = openedPages(path);
    QVERIFY(save({pages.at(3)}, path).ok);
    PdfFileRevision::removeLeftOvers();
    QCOMPARE(keptFiles().size(), 1);
    QCOMPARE(numbersOf(pages), (QList<int>{0, 1, 2, 3}));
}

void TestFileRevisions::folderWithoutALockIsRemovedOnceItIsOld()
{
    const QString folder = supersededRoot() + u"/old"_s;
    QVERIFY(QDir().mkpath(folder));
    QVERIFY(PdfFixture::write(folder + u"/1.pdf"_s, "old content"));
    QVERIFY(PdfFixture::write(folder + u"/in-use.lock"_s, {}));
    QProcess touch;
    touch.start(u"touch"_s, {u"-d"_s, u"2 hours ago"_s, folder});
    if (!touch.waitForFinished() || touch.exitCode() != 0) {
        QSKIP("The time of a folder cannot be set.");
    }
    PdfFileRevision::removeLeftOvers();
    QVERIFY(!QFileInfo::exists(folder));
}

void TestFileRevisions::freshFolderWithoutALockStays()
{
    const QString folder = supersededRoot() + u"/fresh"_s;
    QVERIFY(QDir().mkpath(folder));
    PdfFileRevision::removeLeftOvers();
    QVERIFY(QFileInfo::exists(folder));
    QVERIFY(QDir().rmdir(folder));
}

void TestFileRevisions::whatALinkLeadsToStays()
{
    const QTemporaryDir other;
    const QString file = other.filePath(u"1.pdf"_s);
    QVERIFY(PdfFixture::write(file, "of somebody else"));
    const QString link = supersededRoot() + u"/link"_s;
    QVERIFY(QDir().mkpath(supersededRoot()));
    if (!QFile::link(other.path(), link)) {
        QSKIP("There are no links here.");
    }
    QProcess touch;
    touch.start(u"touch"_s, {u"-d"_s, u"2 hours ago"_s, other.path()});
    const bool isOld = touch.waitForFinished() && touch.exitCode() == 0;
    PdfFileRevision::removeLeftOvers();
    QVERIFY(QFile::remove(link));
    if (!isOld) {
        QSKIP("The time of a folder cannot be set.");
    }
    QVERIFY(QFileInfo::exists(file));
}

void TestFileRevisions::savingGoesOnAfterTheFolderWasRemoved()
{
    Folder folder;
    const QString path = folder.add(u"four.pdf"_s, PdfFixture::pagesByNumber(4));
    {
        const QList<PdfSourcePage> pages = openedPages(path);
        QVERIFY(save({pages.at(3), pages.at(1)}, path).ok);
    }
    QVERIFY(QDir(supersededRoot()).removeRecursively());
    const QList<PdfSourcePage> pages = openedPages(path);
    QVERIFY(save({pages.at(1)}, path).ok);
    QCOMPARE(numbersOf(pages), (QList<int>{3, 1}));
}

void TestFileRevisions::contentOnAnotherDiskIsCopied()
{
    const QString memory = u"/dev/shm"_s;
    if (!QFileInfo(memory).isWritable() ||
        QStorageInfo(memory).device() == QStorageInfo(supersededRoot()).device() ||
        QStorageInfo(memory).device() == QStorageInfo(QDir::tempPath()).device()) {
        QSKIP("There is no other disk.");
    }
    QTemporaryDir folder(memory + u"/tst_file_revisions-XXXXXX"_s);
    const QString path = folder.filePath(u"four.pdf"_s);
    QVERIFY(PdfFixture::write(path, PdfFixture::pagesByNumber(4)));
    const QList<PdfSourcePage> pages = openedPages(path);
    QVERIFY(save({pages.at(3)}, path).ok);
    QCOMPARE(numbersOf(pages), (QList<int>{0, 1, 2, 3}));
    const QStringList kept = keptFiles();
    QCOMPARE(kept.size(), 1);
    constexpr QFileDevice::Permissions kOthers = QFileDevice::ReadGroup | QFileDevice::WriteGroup |
                                                 QFileDevice::ReadOther | QFileDevice::WriteOther;
    QVERIFY(!(QFileInfo(kept.constFirst()).permissions() & kOthers));
}

void TestFileRevisions::aFailedReplacementLeavesTheStateInItsFile()
{
    Folder folder;
    const QString path = folder.add(u"four.pdf"_s, PdfFixture::pagesByNumber(4));
    const QList<PdfSourcePage> pages = openedPages(path);
    pdfcore::AtomicFile file(path);
    QString reason;
    QVERIFY(file.open(&reason));
    QVERIFY(file.finishWriting(&reason));
    QVERIFY(QFile::remove(file.temporaryPath()));
    QVERIFY(!pdfcore::Engine::instance().revisions().replaceTarget(file, &reason));
    QVERIFY(!reason.isEmpty());
    QCOMPARE(keptFiles(), QStringList());
    QCOMPARE(numbersOf(pages), (QList<int>{0, 1, 2, 3}));
    QCOMPARE(openedPages(path).constFirst().revision, pages.constFirst().revision);
}

void TestFileRevisions::anExpectedStateIsReplacedOnly()
{
    Folder folder;
    const QString path = folder.add(u"four.pdf"_s, PdfFixture::pagesByNumber(4));
    const QList<PdfSourcePage> pages = openedPages(path);
    pdfcore::FileRevisions &revisions = pdfcore::Engine::instance().revisions();
    const auto replace = [&](const QByteArray &content, const PdfFileRevisionPtr &expected) {
        pdfcore::AtomicFile file(path);
        QString reason;
        return file.open(&reason) && file.device().write(content) == content.size() &&
               file.finishWriting(&reason) && revisions.replaceTarget(file, &reason, expected);
    };
    QVERIFY(replace(PdfFixture::pagesByNumber(3), pages.constFirst().revision));
    // What the pages are of is kept elsewhere by now.
    QVERIFY(!replace(PdfFixture::pagesByNumber(2), pages.constFirst().revision));
    QCOMPARE(openedPages(path).size(), 3);
    QVERIFY(replace(PdfFixture::pagesByNumber(2), openedPages(path).constFirst().revision));
    QCOMPARE(openedPages(path).size(), 2);
    QCOMPARE(numbersOf(pages), (QList<int>{0, 1, 2, 3}));
}

void TestFileRevisions::statesBehindOneLinkHaveNumbersOfTheirOwn()
{
    Folder folder;
    const QString first = folder.add(u"first.pdf"_s, PdfFixture::pagesByNumber(2));
    const QString second = folder.add(u"second.pdf"_s, PdfFixture::pagesByNumber(3));
    const QString link = folder.path(u"link.pdf"_s);
    if (!QFile::link(first, link)) {
        QSKIP("There are no links here.");
    }
    const QList<PdfSourcePage> before = openedPages(link);
    QVERIFY(QFile::remove(link));
    QVERIFY(QFile::link(second, link));
    const QList<PdfSourcePage> after = openedPages(link);
    QCOMPARE(after.size(), 3);
    QVERIFY(before.constFirst().revision->generation() !=
            after.constFirst().revision->generation());
}

void TestFileRevisions::enginesHaveSessionsAndRevisionsOfTheirOwn()
{
    Folder folder;
    const QString path = folder.add(u"two.pdf"_s, PdfFixture::pagesByNumber(2));
    const pdfcore::FileIdentity file = pdfcore::FileIdentity::of(path);
    pdfcore::Engine first;
    pdfcore::Engine second;
    pdfcore::EngineError outcome;
    QVERIFY(first.sessions().acquire(path, {}, &outcome));
    QCOMPARE(first.sessions().idleCount(), 1);
    QCOMPARE(second.sessions().idleCount(), 0);
    const PdfFileRevisionPtr revision = first.revisions().use(file);
    QCOMPARE(first.revisions().use(file), revision);
    QVERIFY(second.revisions().use(file) != revision);
}

void TestFileRevisions::aRevisionMayOutliveItsEngine()
{
    Folder folder;
    const QString path = folder.add(u"two.pdf"_s, PdfFixture::pagesByNumber(2));
    PdfSourcePage page = filePage(path);
    {
        pdfcore::Engine engine;
        page.revision = engine.revisions().use(pdfcore::FileIdentity::of(path));
        pdfcore::AtomicFile file(path);
        QString reason;
        QVERIFY(file.open(&reason));
        file.device().write(PdfFixture::pagesByNumber(1));
        QVERIFY(file.finishWriting(&reason));
        QVERIFY2(engine.revisions().replaceTarget(file, &reason), qPrintable(reason));
        pdfcore::EngineError outcome;
        const QString kept = engine.revisions().locate(page, &outcome);
        QCOMPARE(keptFiles(), QStringList{kept});
        QVERIFY(engine.sessions().acquire(kept, {}, &outcome));
        QCOMPARE(engine.sessions().idleCount(), 1);
    }
    QCOMPARE(keptFiles(), QStringList());
    QCOMPARE(render(page).error, PdfBackendError::FileNotFound);
    page.revision.reset();
    QVERIFY(render(page).ok);
}

QTEST_GUILESS_MAIN(TestFileRevisions)
#include "tst_file_revisions.moc"
