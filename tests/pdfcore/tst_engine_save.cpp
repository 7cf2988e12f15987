// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/base/atomic_file.h"
#include "tests/pdfcore/engine_calls.h"
#include "tests/support/pdf_fixture.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QRandomGenerator>
#include <QStandardPaths>

#include <atomic>
#include <cmath>
#include <limits>
#include <thread>
#include <vector>

using namespace EngineCalls;
using namespace Qt::StringLiterals;

namespace {

constexpr QFileDevice::Permissions kOwnerOnly = QFileDevice::ReadOwner | QFileDevice::WriteOwner;
constexpr QFileDevice::Permissions kFileModes =
    QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner |
    QFileDevice::ReadGroup | QFileDevice::WriteGroup | QFileDevice::ExeGroup |
    QFileDevice::ReadOther | QFileDevice::WriteOther | QFileDevice::ExeOther;

/// The permissions as the file has them, without what they mean for the user who asks.
QFileDevice::Permissions modeOf(const QString &path)
{
    return QFileInfo(path).permissions() & kFileModes;
}

/// A page whose content takes more than `bytes` bytes however it is compressed.
QByteArray bulkyDocument(qsizetype bytes)
{
    QRandomGenerator random(7);
    PdfFixture::Page page = PdfFixture::plain({100, 100}, Qt::red);
    page.content += "%";
    for (qsizetype i = 0; i < bytes; ++i) {
        page.content += static_cast<char>('!' + random.bounded(90));
    }
    page.content += '\n';
    return PdfFixture::document({page});
}

} // namespace

/// The files that the engine writes.
class TestEngineSave : public QObject
{
    Q_OBJECT

private slots:
    void pagesComeInOrder();
    void pagesOfSeveralSources();
    void sourcesWithTheirPasswordsGiveAnUnencryptedFile();
    void rotationsAreApplied();
    void duplicatesOfOnePageTurnOnTheirOwn();
    void duplicatesOfAPageWithItsOwnRotation();
    void blankPages_data();
    void blankPages();
    void blankPagesBetweenFilePages();
    void thousandPages();
    void thousandCopiesOfOnePage();
    void successClearsErrorAndMessage();
    void sourceIsOnlyRead();
    void targetMayBeASource();
    void targetMayBeASourceUnderAnotherSpelling();
    void targetMayBeAProtectedSource();
    void linkAsTargetStaysALink();
    void linkToNothingCreatesItsTarget();
    void linkToItselfIsRefused();
    void permissionsAreKept_data();
    void permissionsAreKept();
    void permissionsAreKeptWhileWriting();
    void newFileHasTheUsualPermissions();
    void readOnlyTargetIsRefused();
    void readOnlyFolderIsRefused();
    void targetNames_data();
    void targetNames();
    void tooLongNameFails();
    void targetsThatCannotBeWritten_data();
    void targetsThatCannotBeWritten();
    void nothingToWriteFails();
    void badSourcesLeaveTheTargetAlone_data();
    void badSourcesLeaveTheTargetAlone();
    void vanishedSourceLeavesTheTargetAlone();
    void savesOnSeveralThreads();
    // Other programs are started last: ThreadSanitizer wants no new threads afterwards.
    void outputsAreSound();
    void fullDiskLeavesTheTargetAlone();
};

void TestEngineSave::pagesComeInOrder()
{
    Folder folder;
    const QString path = folder.add(u"in.pdf"_s, PdfFixture::pagesByNumber(6));
    const QString target = folder.path(u"out.pdf"_s);
    const QList<int> order{5, 0, 3, 1};
    QList<PdfSourcePage> pages;
    for (const int index : order) {
        pages.append(filePage(path, index));
    }
    const Outcome saved = save(pages, target);
    QVERIFY2(saved.ok, qPrintable(saved.message));
    QCOMPARE(numbersIn(target), order);
}

void TestEngineSave::pagesOfSeveralSources()
{
    Folder folder;
    const QString many = folder.add(u"many.pdf"_s, PdfFixture::pagesByNumber(20));
    const QString few = folder.add(u"few.pdf"_s, PdfFixture::pagesByNumber(3));
    const QString target = folder.path(u"out.pdf"_s);
    QVERIFY(
        save({filePage(many, 17), filePage(few, 2), filePage(many, 0), filePage(few, 1)}, target)
            .ok);
    QCOMPARE(numbersIn(target), (QList<int>{17, 2, 0, 1}));
}

void TestEngineSave::sourcesWithTheirPasswordsGiveAnUnencryptedFile()
{
    Folder folder;
    QList<PdfSourcePage> pages;
    for (const int revision : {3, 4, 6}) {
        const QByteArray password = "password-" + QByteArray::number(revision);
        const QString path = folder.add(
            QString::number(revision) + u".pdf"_s,
            PdfFixture::encrypted(PdfFixture::pagesByNumber(9), {password, "boss", revision}));
        pages.append(filePage(path, revision, 0, QString::fromLatin1(password)));
    }
    const QString target = folder.path(u"out.pdf"_s);
    const Outcome saved = save(pages, target);
    QVERIFY2(saved.ok, qPrintable(saved.message));
    QVERIFY(!contentOf(target).contains("/Encrypt"));
    QCOMPARE(numbersIn(target), (QList<int>{3, 4, 6}));
}

void TestEngineSave::rotationsAreApplied()
{
    Folder folder;
    const QString path =
        folder.add(u"in.pdf"_s, PdfFixture::document({PdfFixture::quartered({200, 300})}));
    const QString target = folder.path(u"out.pdf"_s);
    QVERIFY(save({filePage(path, 0, 0), filePage(path, 0, 90)}, target).ok);
    QCOMPARE(inspect(target).pageSizes, (QList<QSizeF>{QSizeF(200, 300), QSizeF(300, 200)}));
    QCOMPARE(distance(render(filePage(target, 1), {30, 20}).image,
                      render(filePage(path, 0, 90), {30, 20}).image),
             0);
}

void TestEngineSave::duplicatesOfOnePageTurnOnTheirOwn()
{
    Folder folder;
    const QString path =
        folder.add(u"in.pdf"_s, PdfFixture::document({PdfFixture::quartered({200, 300})}));
    const QString target = folder.path(u"out.pdf"_s);
    const QList<int> turns{90, 0, 180, 90, 270, 0};
    QList<PdfSourcePage> pages;
    for (const int turn : turns) {
        pages.append(filePage(path, 0, turn));
    }
    QVERIFY(save(pages, target).ok);
    for (int i = 0; i < turns.size(); ++i) {
        const QSizeF size = inspect(target).pageSizes.value(i);
        QCOMPARE(size, turns.at(i) % 180 == 0 ? QSizeF(200, 300) : QSizeF(300, 200));
        QCOMPARE(distance(render(filePage(target, i)).image,
                          render(filePage(path, 0, turns.at(i))).image),
                 0);
    }
}

void TestEngineSave::duplicatesOfAPageWithItsOwnRotation()
{
    Folder folder;
    PdfFixture::Page page = PdfFixture::quartered({200, 300});
    page.rotate = 270;
    const QString path = folder.add(u"in.pdf"_s, PdfFixture::document({page}));
    const QString target = folder.path(u"out.pdf"_s);
    QVERIFY(save({filePage(path, 0, 90), filePage(path), filePage(path, 0, 180)}, target).ok);
    const QList<int> turns{90, 0, 180};
    for (int i = 0; i < turns.size(); ++i) {
        QCOMPARE(distance(render(filePage(target, i)).image,
                          render(filePage(path, 0, turns.at(i))).image),
                 0);
    }
}

void TestEngineSave::blankPages_data()
{
    QTest::addColumn<QSizeF>("size");
    QTest::addColumn<int>("rotation");
    QTest::addColumn<QSizeF>("expected");
    const QSizeF a4(595, 842);
    QTest::newRow("A4") << a4 << 0 << a4;
    QTest::newRow("turned") << QSizeF(100, 200) << 90 << QSizeF(200, 100);
    QTest::newRow("upside down") << QSizeF(100, 200) << 180 << QSizeF(100, 200);
    QTest::newRow("turned back") << QSizeF(100, 200) << 270 << QSizeF(200, 100);
    QTest::newRow("fractions") << QSizeF(595.276, 841.89) << 0 << QSizeF(595.276, 841.89);
    QTest::newRow("tiny") << QSizeF(1, 1) << 0 << QSizeF(1, 1);
    QTest::newRow("large") << QSizeF(14'400, 14'400) << 0 << QSizeF(14'400, 14'400);
    QTest::newRow("no size") << QSizeF() << 0 << a4;
    QTest::newRow("no height") << QSizeF(100, 0) << 0 << a4;
    QTest::newRow("negative") << QSizeF(-100, 200) << 0 << a4;
    QTest::newRow("not a number") << QSizeF(std::nan(""), 200) << 0 << a4;
    QTest::newRow("infinite") << QSizeF(100, std::numeric_limits<double>::infinity()) << 0 << a4;
}

void TestEngineSave::blankPages()
{
    QFETCH(const QSizeF, size);
    QFETCH(const int, rotation);
    QFETCH(const QSizeF, expected);
    const Folder folder;
    const QString target = folder.path(u"out.pdf"_s);
    const Outcome saved = save({blankPage(size, rotation)}, target);
    QVERIFY2(saved.ok, qPrintable(saved.message));
    const QList<QSizeF> sizes = inspect(target).pageSizes;
    QCOMPARE(sizes.size(), 1);
    QVERIFY(qAbs(sizes.first().width() - expected.width()) < 0.01);
    QVERIFY(qAbs(sizes.first().height() - expected.height()) < 0.01);
    COMPARE_COLOUR(middle(render(filePage(target)).image), Qt::white, 0);
}

void TestEngineSave::blankPagesBetweenFilePages()
{
    Folder folder;
    const QString path = folder.add(u"in.pdf"_s, PdfFixture::pagesByNumber(3));
    const QString target = folder.path(u"out.pdf"_s);
    QVERIFY(save({blankPage({100, 100}), filePage(path, 1), blankPage({100, 100}, 90),
                  blankPage({300, 100}), filePage(path, 2)},
                 target)
                .ok);
    QCOMPARE(inspect(target).pageSizes,
             (QList<QSizeF>{QSizeF(100, 100), QSizeF(200, 300), QSizeF(100, 100), QSizeF(300, 100),
                            QSizeF(200, 300)}));
    COMPARE_COLOUR(middle(render(filePage(target, 0)).image), Qt::white, 0);
    COMPARE_COLOUR(middle(render(filePage(target, 1)).image), PdfFixture::numberColour(1), 1);
    COMPARE_COLOUR(middle(render(filePage(target, 4)).image), PdfFixture::numberColour(2), 1);
}

void TestEngineSave::thousandPages()
{
    constexpr int kPages = 1000;
    Folder folder;
    const QString path = folder.add(u"in.pdf"_s, PdfFixture::pagesByNumber(kPages));
    const QString target = folder.path(u"out.pdf"_s);
    QList<PdfSourcePage> pages;
    for (int i = 0; i < kPages; ++i) {
        pages.append(filePage(path, kPages - 1 - i, (i % 4) * 90));
    }
    const Outcome saved = save(pages, target);
    QVERIFY2(saved.ok, qPrintable(saved.message));
    const QList<QSizeF> sizes = inspect(target).pageSizes;
    QCOMPARE(sizes.size(), kPages);
    for (const int i : {0, 1, 2, 3, 499, 998, 999}) {
        QCOMPARE(sizes.at(i), i % 2 == 0 ? QSizeF(200, 300) : QSizeF(300, 200));
        COMPARE_COLOUR(middle(render(filePage(target, i), {4, 4}).image),
                       PdfFixture::numberColour(kPages - 1 - i), 1);
    }
}

void TestEngineSave::thousandCopiesOfOnePage()
{
    constexpr int kPages = 1000;
    Folder folder;
    const QString path = folder.add(u"in.pdf"_s, bulkyDocument(20'000));
    const QString target = folder.path(u"out.pdf"_s);
    const Outcome saved = save(QList<PdfSourcePage>(kPages, filePage(path)), target);
    QVERIFY2(saved.ok, qPrintable(saved.message));
    QCOMPARE(inspect(target).pageSizes.size(), kPages);
    COMPARE_COLOUR(middle(render(filePage(target, kPages - 1)).image), Qt::red, 1);
    // The copies share the page's content.
    QVERIFY2(QFileInfo(target).size() < 200'000,
             qPrintable(QString::number(QFileInfo(target).size())));
}

void TestEngineSave::outputsAreSound()
{
    const QString checker = QStandardPaths::findExecutable(u"qpdf"_s);
    if (checker.isEmpty()) {
        QSKIP("The program that checks files is not installed.");
    }
    Folder folder;
    const QString plain = folder.add(u"plain.pdf"_s, PdfFixture::pagesByNumber(4));
    const QString locked =
        folder.add(u"locked.pdf"_s,
                   PdfFixture::encrypted(PdfFixture::document({PdfFixture::quartered({200, 300})}),
                                         {"user", "owner", 6}));
    const QString direct = folder.add(
        u"direct.pdf"_s,
        PdfFixture::fromObjects({"<< /Type /Catalog /Pages 2 0 R >>",
                                 "<< /Count 9 /Kids [ null << /MediaBox [0 0 9 9] >> 2 0 R ] >>"}));
    const QString target = folder.path(u"out.pdf"_s);
    const PdfSourcePage lockedPage = filePage(locked, 0, 90, u"owner"_s);
    const QList<QList<PdfSourcePage>> outputs{
        {filePage(plain)},
        {blankPage({100, 100}, 90)},
        {filePage(plain, 3), filePage(plain, 3, 90), lockedPage, filePage(plain, 3)},
        {filePage(direct), blankPage({}), filePage(direct)},
    };
    for (const QList<PdfSourcePage> &pages : outputs) {
        const Outcome saved = save(pages, target);
        QVERIFY2(saved.ok, qPrintable(saved.message));
        QProcess check;
        check.setProcessChannelMode(QProcess::MergedChannels);
        check.start(checker, {u"--check"_s, target});
        QVERIFY(check.waitForFinished());
        const QByteArray report = check.readAll();
        QVERIFY2(check.exitCode() == 0 && !report.contains("WARNING"), report.constData());
        QVERIFY2(report.contains("not encrypted"), report.constData());
    }
}

void TestEngineSave::successClearsErrorAndMessage()
{
    const Folder folder;
    PdfBackendError error = PdfBackendError::RenderFailed;
    QString message = u"from before"_s;
    QVERIFY(PdfEditorBackend::saveDocument({blankPage({9, 9})}, folder.path(u"out.pdf"_s), &error,
                                           &message));
    QCOMPARE(error, PdfBackendError::None);
    QVERIFY(message.isEmpty());
}

void TestEngineSave::sourceIsOnlyRead()
{
    Folder folder;
    const QByteArray content = PdfFixture::pagesByNumber(3);
    const QString path = folder.add(u"in.pdf"_s, content);
    QVERIFY(QFile::setPermissions(path, QFileDevice::ReadOwner));
    QVERIFY(save({filePage(path, 2, 90), filePage(path, 0)}, folder.path(u"out.pdf"_s)).ok);
    QCOMPARE(contentOf(path), content);
}

void TestEngineSave::targetMayBeASource()
{
    Folder folder;
    const QString path = folder.add(u"file.pdf"_s, PdfFixture::pagesByNumber(5));
    const QString other = folder.add(u"other.pdf"_s, PdfFixture::pagesByNumber(9));
    QVERIFY(render(filePage(path)).ok);
    const Outcome saved =
        save({filePage(path, 4), filePage(other, 8), filePage(path, 1), filePage(path, 1)}, path);
    QVERIFY2(saved.ok, qPrintable(saved.message));
    QCOMPARE(numbersIn(path), (QList<int>{4, 8, 1, 1}));
    QVERIFY(save({filePage(path, 3), filePage(path, 0)}, path).ok);
    QCOMPARE(numbersIn(path), (QList<int>{1, 4}));
    QVERIFY(folder.leftovers().isEmpty());
}

void TestEngineSave::targetMayBeASourceUnderAnotherSpelling()
{
    Folder folder;
    const QString path = folder.add(u"file.pdf"_s, PdfFixture::pagesByNumber(3));
    const QString detour =
        folder.path() + u"/../"_s + QFileInfo(folder.path()).fileName() + u"/./file.pdf"_s;
    QVERIFY(render(filePage(path)).ok);
    QVERIFY(save({filePage(path, 2), filePage(detour, 1)}, detour).ok);
    QCOMPARE(numbersIn(path), (QList<int>{2, 1}));
}

void TestEngineSave::targetMayBeAProtectedSource()
{
    Folder folder;
    const QString path = folder.add(
        u"file.pdf"_s, PdfFixture::encrypted(PdfFixture::pagesByNumber(3), {"user", "owner", 4}));
    QVERIFY(save({filePage(path, 2, 0, u"user"_s)}, path).ok);
    QCOMPARE(numbersOf({filePage(path, 0, 0, u"user"_s)}), QList<int>{2});
}

void TestEngineSave::linkAsTargetStaysALink()
{
    Folder folder;
    const QString file = folder.add(u"file.pdf"_s, PdfFixture::pagesByNumber(3));
    QVERIFY(QDir(folder.path()).mkdir(u"elsewhere"_s));
    const QString link = folder.path(u"elsewhere/link.pdf"_s);
    const QString linkToLink = folder.path(u"chain.pdf"_s);
    if (!QFile::link(u"../file.pdf"_s, link) || !QFile::link(link, linkToLink) ||
        !QFileInfo(link).isSymbolicLink()) {
        QSKIP("This file system has no symbolic links.");
    }
    QVERIFY(save({filePage(linkToLink, 2)}, linkToLink).ok);
    QVERIFY(QFileInfo(link).isSymbolicLink());
    QVERIFY(QFileInfo(linkToLink).isSymbolicLink());
    QVERIFY(!QFileInfo(file).isSymbolicLink());
    QCOMPARE(numbersIn(file), QList<int>{2});
    QCOMPARE(numbersIn(linkToLink), QList<int>{2});
    QVERIFY(folder.leftovers().isEmpty());
}

void TestEngineSave::linkToNothingCreatesItsTarget()
{
    const Folder folder;
    const QString link = folder.path(u"link.pdf"_s);
    if (!QFile::link(u"later.pdf"_s, link) || !QFileInfo(link).isSymbolicLink()) {
        QSKIP("This file system has no symbolic links.");
    }
    QVERIFY(save({blankPage({9, 9})}, link).ok);
    QVERIFY(QFileInfo(link).isSymbolicLink());
    QCOMPARE(inspect(folder.path(u"later.pdf"_s)).pageSizes.size(), 1);
}

void TestEngineSave::linkToItselfIsRefused()
{
    const Folder folder;
    const QString link = folder.path(u"link.pdf"_s);
    if (!QFile::link(u"link.pdf"_s, link) || !QFileInfo(link).isSymbolicLink()) {
        QSKIP("This file system has no symbolic links.");
    }
    const Outcome saved = save({blankPage({9, 9})}, link);
    QVERIFY(!saved.ok);
    QCOMPARE(saved.error, PdfBackendError::WriteFailed);
    QVERIFY(QFileInfo(link).isSymbolicLink());
    QVERIFY(folder.leftovers().isEmpty());
}

void TestEngineSave::permissionsAreKept_data()
{
    QTest::addColumn<QFileDevice::Permissions>("mode");
    QTest::newRow("0600") << QFileDevice::Permissions(kOwnerOnly);
    QTest::newRow("0644") << (kOwnerOnly | QFileDevice::ReadGroup | QFileDevice::ReadOther);
    QTest::newRow("0666") << (kOwnerOnly | QFileDevice::ReadGroup | QFileDevice::WriteGroup |
                              QFileDevice::ReadOther | QFileDevice::WriteOther);
    QTest::newRow("0750") << (kOwnerOnly | QFileDevice::ExeOwner | QFileDevice::ReadGroup |
                              QFileDevice::ExeGroup);
}

void TestEngineSave::permissionsAreKept()
{
    QFETCH(const QFileDevice::Permissions, mode);
    Folder folder;
    const QString path = folder.add(u"file.pdf"_s, PdfFixture::pagesByNumber(2));
    QVERIFY(QFile::setPermissions(path, mode));
    const QFileDevice::Permissions before = modeOf(path);
    QVERIFY(save({filePage(path, 1)}, path).ok);
    QCOMPARE(modeOf(path), before);
    QCOMPARE(numbersIn(path), QList<int>{1});
}

void TestEngineSave::permissionsAreKeptWhileWriting()
{
    Folder folder;
    const QString path = folder.add(u"file.pdf"_s, "content");
    QVERIFY(QFile::setPermissions(path, kOwnerOnly));
    const QFileDevice::Permissions before = modeOf(path);
    pdfcore::AtomicFile file(path);
    QString reason;
    QVERIFY2(file.open(&reason), qPrintable(reason));
    QCOMPARE(modeOf(file.temporaryPath()), before);
    QCOMPARE(QFileInfo(file.temporaryPath()).absolutePath(), QFileInfo(path).absolutePath());
    QCOMPARE(file.device().write("new"), 3);
    QVERIFY(file.finishWriting(&reason));
    QCOMPARE(contentOf(path), "content");
    QCOMPARE(modeOf(file.temporaryPath()), before);
    QVERIFY(file.commit(&reason));
    QCOMPARE(contentOf(path), "new");
    QCOMPARE(modeOf(path), before);
    QVERIFY(folder.leftovers().isEmpty());
}

void TestEngineSave::newFileHasTheUsualPermissions()
{
    Folder folder;
    const QString usual = folder.add(u"usual.txt"_s, "content");
    const QString target = folder.path(u"out.pdf"_s);
    QVERIFY(save({blankPage({9, 9})}, target).ok);
    QCOMPARE(modeOf(target), modeOf(usual));
}

void TestEngineSave::readOnlyTargetIsRefused()
{
    Folder folder;
    const QByteArray content = PdfFixture::pagesByNumber(2);
    const QString path = folder.add(u"file.pdf"_s, content);
    QVERIFY(QFile::setPermissions(path, QFileDevice::ReadOwner | QFileDevice::ReadGroup |
                                            QFileDevice::ReadOther));
    const QDateTime modified = QFileInfo(path).lastModified();
    const Outcome saved = save({filePage(path, 1)}, path);
    QVERIFY(!saved.ok);
    QCOMPARE(saved.error, PdfBackendError::WriteFailed);
    QVERIFY(!saved.message.isEmpty());
    QCOMPARE(contentOf(path), content);
    QCOMPARE(QFileInfo(path).lastModified(), modified);
    QVERIFY(folder.leftovers().isEmpty());
}

void TestEngineSave::readOnlyFolderIsRefused()
{
    Folder folder;
    const QString path = folder.add(u"file.pdf"_s, PdfFixture::pagesByNumber(2));
    QVERIFY(QFile::setPermissions(folder.path(), QFileDevice::ReadOwner | QFileDevice::ExeOwner));
    const bool mayWriteAnyway = QFile(folder.path(u"probe"_s)).open(QIODevice::WriteOnly);
    const Outcome saved = save({filePage(path)}, folder.path(u"out.pdf"_s));
    QVERIFY(QFile::setPermissions(folder.path(), kOwnerOnly | QFileDevice::ExeOwner));
    if (mayWriteAnyway) {
        QSKIP("This user may write into every folder.");
    }
    QVERIFY(!saved.ok);
    QCOMPARE(saved.error, PdfBackendError::WriteFailed);
    QVERIFY(!saved.message.isEmpty());
}

void TestEngineSave::targetNames_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("space") << u"two words.pdf"_s;
    QTest::newRow("quotes") << u"it's \"quoted\".pdf"_s;
    QTest::newRow("emoji") << u"😀👩‍👩‍👧.pdf"_s;
    QTest::newRow("Chinese") << u"合同（最终版）.pdf"_s;
    QTest::newRow("accent, decomposed") << u"Re\u0301sume\u0301.pdf"_s;
    QTest::newRow("leading dot") << u".hidden"_s;
    QTest::newRow("percent") << u"100%1 %2.pdf"_s;
    QTest::newRow("255 bytes") << QString(QString(251, u'n') + u".pdf"_s);
    QTest::newRow("255 bytes of Chinese") << QString(85, QChar(0x6587));
}

void TestEngineSave::targetNames()
{
    QFETCH(const QString, name);
    Folder folder;
    if (folder.add(name, "probe").isEmpty()) {
        QSKIP("This file system does not take the name.");
    }
    const QString target = folder.path(name);
    QVERIFY(QFile::remove(target));
    for (int i = 0; i < 2; ++i) {
        const Outcome saved = save({blankPage({100.0 + i, 50})}, target);
        QVERIFY2(saved.ok, qPrintable(saved.message));
        QCOMPARE(inspect(target).pageSizes, QList<QSizeF>{QSizeF(100.0 + i, 50)});
    }
    QCOMPARE(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden), QStringList{name});
}

void TestEngineSave::tooLongNameFails()
{
    const Folder folder;
    const Outcome saved = save({blankPage({9, 9})}, folder.path(QString(300, u'n')));
    QVERIFY(!saved.ok);
    QCOMPARE(saved.error, PdfBackendError::WriteFailed);
    QVERIFY(!saved.message.isEmpty());
    QVERIFY(QDir(folder.path()).isEmpty(QDir::Files | QDir::Hidden));
}

void TestEngineSave::targetsThatCannotBeWritten_data()
{
    QTest::addColumn<QString>("target");
    QTest::newRow("folder does not exist") << u"absent/out.pdf"_s;
    QTest::newRow("folder is a file") << u"file.txt/out.pdf"_s;
    QTest::newRow("target is a folder") << u"sub"_s;
    QTest::newRow("target is a folder, with a slash") << u"sub/"_s;
    QTest::newRow("target is the folder itself") << u"."_s;
}

void TestEngineSave::targetsThatCannotBeWritten()
{
    QFETCH(const QString, target);
    Folder folder;
    folder.add(u"file.txt"_s, "content");
    QVERIFY(QDir(folder.path()).mkdir(u"sub"_s));
    const Outcome saved = save({blankPage({9, 9})}, folder.path(target));
    QVERIFY(!saved.ok);
    QCOMPARE(saved.error, PdfBackendError::WriteFailed);
    QVERIFY(!saved.message.isEmpty());
    QVERIFY(QFileInfo(folder.path(u"sub"_s)).isDir());
    QVERIFY(QDir(folder.path(u"sub"_s)).isEmpty());
    QVERIFY(!QFileInfo::exists(folder.path(u"absent"_s)));
    QCOMPARE(contentOf(folder.path(u"file.txt"_s)), "content");
    QVERIFY(folder.leftovers().isEmpty());
}

void TestEngineSave::nothingToWriteFails()
{
    Folder folder;
    const QString target = folder.add(u"out.pdf"_s, "what was there before");
    const Outcome noPages = save({}, target);
    QVERIFY(!noPages.ok);
    QCOMPARE(noPages.error, PdfBackendError::WriteFailed);
    QVERIFY(!noPages.message.isEmpty());
    QCOMPARE(contentOf(target), "what was there before");
    const Outcome noPath = save({blankPage({9, 9})}, {});
    QVERIFY(!noPath.ok);
    QCOMPARE(noPath.error, PdfBackendError::WriteFailed);
    QVERIFY(!noPath.message.isEmpty());
}

void TestEngineSave::badSourcesLeaveTheTargetAlone_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<int>("index");
    QTest::addColumn<PdfBackendError>("error");
    QTest::newRow("missing") << u"absent.pdf"_s << 0 << PdfBackendError::FileNotFound;
    QTest::newRow("folder") << u"."_s << 0 << PdfBackendError::FileNotFound;
    QTest::newRow("text") << u"text.pdf"_s << 0 << PdfBackendError::InvalidDocument;
    QTest::newRow("empty") << u"empty.pdf"_s << 0 << PdfBackendError::InvalidDocument;
    QTest::newRow("no password") << u"locked.pdf"_s << 0 << PdfBackendError::PasswordRequired;
    QTest::newRow("page past the end") << u"good.pdf"_s << 2 << PdfBackendError::InvalidDocument;
    QTest::newRow("negative page") << u"good.pdf"_s << -1 << PdfBackendError::InvalidDocument;
    QTest::newRow("largest page") << u"good.pdf"_s << std::numeric_limits<int>::max()
                                  << PdfBackendError::InvalidDocument;
}

void TestEngineSave::badSourcesLeaveTheTargetAlone()
{
    QFETCH(const QString, source);
    QFETCH(const int, index);
    QFETCH(const PdfBackendError, error);
    Folder folder;
    const QString good = folder.add(u"good.pdf"_s, PdfFixture::pagesByNumber(2));
    folder.add(u"text.pdf"_s, "no document");
    folder.add(u"empty.pdf"_s, {});
    folder.add(u"locked.pdf"_s,
               PdfFixture::encrypted(PdfFixture::pagesByNumber(2), {"user", "owner", 3}));
    const QString old = folder.add(u"old.pdf"_s, "what was there before");
    const QString fresh = folder.path(u"fresh.pdf"_s);
    const QStringList before = QDir(folder.path()).entryList(QDir::Files | QDir::Hidden);
    for (const QString &target : {old, fresh, good}) {
        const QByteArray content = contentOf(target);
        const Outcome saved = save({filePage(good), filePage(folder.path(source), index)}, target);
        QVERIFY(!saved.ok);
        QCOMPARE(saved.error, error);
        QVERIFY(!saved.message.trimmed().isEmpty());
        QCOMPARE(contentOf(target), content);
        QCOMPARE(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden), before);
    }
}

void TestEngineSave::vanishedSourceLeavesTheTargetAlone()
{
    Folder folder;
    const QString path = folder.add(u"in.pdf"_s, PdfFixture::pagesByNumber(2));
    const QString target = folder.add(u"out.pdf"_s, "what was there before");
    QVERIFY(inspect(path).ok);
    QVERIFY(render(filePage(path)).ok);
    QVERIFY(QFile::remove(path));
    const Outcome saved = save({filePage(path)}, target);
    QVERIFY(!saved.ok);
    QCOMPARE(saved.error, PdfBackendError::FileNotFound);
    QCOMPARE(contentOf(target), "what was there before");
    QVERIFY(folder.leftovers().isEmpty());
}

void TestEngineSave::fullDiskLeavesTheTargetAlone()
{
    Folder folder;
    const QString path = folder.add(u"in.pdf"_s, bulkyDocument(400'000));
    QVERIFY(QDir(folder.path()).mkdir(u"disk"_s));
    const QString disk = folder.path(u"disk"_s);
    if (QProcess::execute(
            u"sh"_s, {u"-c"_s, u"mount -t tmpfs -o size=128k none \"$0\" 2>/dev/null"_s, disk}) !=
        0) {
        QSKIP("This user cannot mount a small disk.");
    }
    const QString target = QDir(disk).filePath(u"out.pdf"_s);
    const bool prepared = PdfFixture::write(target, "what was there before");
    const Outcome saved = save({filePage(path)}, target);
    const QByteArray content = contentOf(target);
    const QStringList files = QDir(disk).entryList(QDir::Files | QDir::Hidden);
    const Outcome small = save({blankPage({9, 9})}, target);
    QCOMPARE(QProcess::execute(u"umount"_s, {disk}), 0);

    QVERIFY(prepared);
    QVERIFY(!saved.ok);
    QCOMPARE(saved.error, PdfBackendError::WriteFailed);
    QVERIFY(!saved.message.isEmpty());
    QCOMPARE(content, "what was there before");
    QCOMPARE(files, QStringList{u"out.pdf"_s});
    QVERIFY2(small.ok, qPrintable(small.message));
}

void TestEngineSave::savesOnSeveralThreads()
{
    constexpr int kThreads = 4;
    constexpr int kRounds = 6;
    Folder folder;
    const QString path = folder.add(u"in.pdf"_s, PdfFixture::pagesByNumber(10));
    const QString shared = folder.path(u"shared.pdf"_s);
    std::atomic<int> failures{0};
    std::vector<std::thread> threads;
    for (int thread = 0; thread < kThreads; ++thread) {
        threads.emplace_back([&, thread] {
            const QString own = folder.path(QString::number(thread));
            for (int round = 0; round < kRounds; ++round) {
                const QList<PdfSourcePage> pages(thread + 1, filePage(path, thread));
                if (!save(pages, own).ok || !save(pages, shared).ok) {
                    ++failures;
                }
                if (inspect(own).pageSizes.size() != thread + 1) {
                    ++failures;
                }
            }
        });
    }
    for (std::thread &thread : threads) {
        thread.join();
    }
    QCOMPARE(failures.load(), 0);
    const QList<int> winner = numbersIn(shared);
    QVERIFY(!winner.isEmpty());
    QCOMPARE(winner, QList<int>(winner.first() + 1, winner.first()));
    QVERIFY(folder.leftovers().isEmpty());
}

QTEST_GUILESS_MAIN(TestEngineSave)
#include "tst_engine_save.moc"
