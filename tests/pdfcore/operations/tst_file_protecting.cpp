// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/pdf_file_operations.h"
#include "tests/pdfcore/canonical_form.h"
#include "tests/pdfcore/engine_calls.h"
#include "tests/pdfcore/fidelity/fidelity_fixture.h"
#include "tests/support/pdf_fixture.h"

#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>

using namespace EngineCalls;
using namespace Qt::StringLiterals;

namespace {

/// "Grün", composed and not.
const QString kComposed = u"Gr\u00FCn"_s;
const QString kDecomposed = u"Gru\u0308n"_s;

PdfPlacement newAt(const QString &path)
{
    return PdfPlacement::firstFree(
        [path](int attempt) { return attempt == 0 ? path : path + QString::number(attempt); });
}

PdfOperationOutcome protect(const QString &source, const QString &password, const QString &target)
{
    return PdfFileOperations::protect(source, password, newAt(target), {});
}

PdfOperationOutcome unprotect(const QString &source, const QString &password, const QString &target)
{
    return PdfFileOperations::unprotect(source, password, newAt(target), {});
}

/// What another program says of the protection of a file.
QByteArray protectionOf(const QString &path, const QString &password)
{
    QProcess program;
    program.start(QStandardPaths::findExecutable(u"qpdf"_s),
                  {u"--show-encryption"_s, u"--password="_s + password, path});
    program.waitForFinished();
    return program.readAllStandardOutput() + program.readAllStandardError();
}

QByteArray protectedPages(int count, const QByteArray &user, const QByteArray &owner, int revision)
{
    return PdfFixture::encrypted(PdfFixture::pagesByNumber(count), {user, owner, revision});
}

bool isProtected(const QString &path)
{
    return inspect(path).error == PdfBackendError::PasswordRequired;
}

QList<int> numbersIn(const QString &path, const QString &password)
{
    QList<PdfSourcePage> pages;
    for (qsizetype i = 0; i < inspect(path, password).pageSizes.size(); ++i) {
        pages.append(filePage(path, static_cast<int>(i), 0, password));
    }
    return numbersOf(pages);
}

} // namespace

class TestFileProtecting : public QObject
{
    Q_OBJECT

private slots:
    void passwordIsNeeded();
    void encryptionIsAesOf256Bits();
    void everythingMayBeDone();
    void ownerHasAPasswordOfItsOwn();
    void spellingOfThePasswordDoesNotMatter();
    void emptyPasswordFails();
    void fileThatNeedsAPasswordIsNotProtectedAgain();
    void fileThatAnybodyOpensGetsANewProtection();
    void everythingStaysThroughProtectionAndBack();
    void fileWithoutPagesFails();
    void protectedSourceIsReplaced();
    void failingProtectionLeavesTheSource();

    void protectionIsTakenAway_data();
    void protectionIsTakenAway();
    void wrongPasswordWritesNothing();
    void missingPasswordWritesNothing();
    void unprotectedFileIsCopied();
    void damagedUnprotectedFileIsCopied();
    void unprotectedFileIsNotReplacedByItself();
    void cancelledWorkLeavesNothing();
    void messagesNameNoPassword();
};

void TestFileProtecting::passwordIsNeeded()
{
    Folder folder;
    const QString source = folder.add(u"in.pdf"_s, PdfFixture::pagesByNumber(3));
    const QString target = folder.path(u"out.pdf"_s);
    const PdfOperationOutcome outcome = protect(source, u"secret"_s, target);
    QVERIFY2(!outcome.isError(), qPrintable(outcome.message));
    QCOMPARE(outcome.result, target);
    QCOMPARE(inspect(target).error, PdfBackendError::PasswordRequired);
    QCOMPARE(inspect(target, u"Secret"_s).error, PdfBackendError::InvalidPassword);
    QCOMPARE(numbersIn(target, u"secret"_s), (QList<int>{0, 1, 2}));
    QCOMPARE(numbersIn(source, {}), (QList<int>{0, 1, 2}));
}

void TestFileProtecting::encryptionIsAesOf256Bits()
{
    Folder folder;
    const QString source = folder.add(u"in.pdf"_s, PdfFixture::pagesByNumber(1));
    const QString target = folder.path(u"out.pdf"_s);
    QVERIFY(!protect(source, u"secret"_s, target).isError());
    const QByteArray protection = protectionOf(target, u"secret"_s);
    QVERIFY2(protection.contains("R = 6"), protection.constData());
    for (const QByteArray what : {"stream", "string", "file"}) {
        const QByteArray line = what + " encryption method: AESv3";
        QVERIFY2(protection.contains(line), protection.constData());
    }
}

void TestFileProtecting::everythingMayBeDone()
{
    Folder folder;
    const QString source = folder.add(u"in.pdf"_s, PdfFixture::pagesByNumber(1));
    const QString target = folder.path(u"out.pdf"_s);
    QVERIFY(!protect(source, u"secret"_s, target).isError());
    const QByteArray protection = protectionOf(target, u"secret"_s);
    QVERIFY2(protection.contains("print high resolution: allowed"), protection.constData());
    QVERIFY2(!protection.contains("not allowed"), protection.constData());
}

void TestFileProtecting::ownerHasAPasswordOfItsOwn()
{
    Folder folder;
    const QString source = folder.add(u"in.pdf"_s, PdfFixture::pagesByNumber(1));
    const QString target = folder.path(u"out.pdf"_s);
    QVERIFY(!protect(source, u"secret"_s, target).isError());
    const QByteArray protection = protectionOf(target, u"secret"_s);
    QVERIFY2(protection.contains("Supplied password is user password"), protection.constData());
    QVERIFY2(!protection.contains("Supplied password is owner password"), protection.constData());
    QVERIFY(protectionOf(target, {}).contains("Incorrect password"));
}

void TestFileProtecting::spellingOfThePasswordDoesNotMatter()
{
    Folder folder;
    const QString source = folder.add(u"in.pdf"_s, PdfFixture::pagesByNumber(1));
    const QString target = folder.path(u"out.pdf"_s);
    QVERIFY(!protect(source, kDecomposed, target).isError());
    // Another program takes the bytes that it is given.
    QVERIFY(protectionOf(target, kComposed).contains("Supplied password is user password"));
    QCOMPARE(numbersIn(target, kComposed), QList<int>{0});
    QCOMPARE(numbersIn(target, kDecomposed), QList<int>{0});
}

void TestFileProtecting::emptyPasswordFails()
{
    Folder folder;
    const QString source = folder.add(u"in.pdf"_s, PdfFixture::pagesByNumber(1));
    const QString target = folder.path(u"out.pdf"_s);
    QCOMPARE(protect(source, {}, target).error, PdfOperationError::PasswordRequired);
    QVERIFY(!QFile::exists(target));
}

void TestFileProtecting::fileThatNeedsAPasswordIsNotProtectedAgain()
{
    Folder folder;
    const QString source = folder.add(u"in.pdf"_s, protectedPages(1, "user", "owner", 6));
    const QString target = folder.path(u"out.pdf"_s);
    for (const QString &password : {u"user"_s, u"owner"_s, u"new"_s}) {
        const PdfOperationOutcome outcome = protect(source, password, target);
        QCOMPARE(outcome.error, PdfOperationError::PasswordRequired);
        QCOMPARE(outcome.file, source);
    }
    QVERIFY(!QFile::exists(target));
}

void TestFileProtecting::fileThatAnybodyOpensGetsANewProtection()
{
    Folder folder;
    const QString source = folder.add(u"in.pdf"_s, protectedPages(2, {}, "owner", 4));
    const QString target = folder.path(u"out.pdf"_s);
    QVERIFY(!protect(source, u"new"_s, target).isError());
    QVERIFY(isProtected(target));
    QCOMPARE(inspect(target, u"owner"_s).error, PdfBackendError::InvalidPassword);
    QCOMPARE(numbersIn(target, u"new"_s), (QList<int>{0, 1}));
    QVERIFY(protectionOf(target, u"new"_s).contains("R = 6"));
}

void TestFileProtecting::everythingStaysThroughProtectionAndBack()
{
    Folder folder;
    const QString source = folder.add(u"in.pdf"_s, FidelityFixture::everything("MAIN").file());
    const QString locked = folder.path(u"locked.pdf"_s);
    const QString back = folder.path(u"back.pdf"_s);
    const QString saved = folder.path(u"saved.pdf"_s);
    QVERIFY(!protect(source, u"secret"_s, locked).isError());
    QVERIFY(!unprotect(locked, u"secret"_s, back).isError());
    QList<PdfSourcePage> pages;
    for (int i = 0; i < FidelityFixture::kPages; ++i) {
        pages.append(filePage(source, i));
    }
    QVERIFY(save(pages, saved).ok);
    QVERIFY(canonicalForm(saved).size() > 10'000);
    // What the encryption needed of PDF 1.7 remains.
    const QByteArray extension =
        " /Extensions << /ADBE << /BaseVersion /1.7 /ExtensionLevel 8 >> >>";
    QCOMPARE(canonicalForm(back).replace(extension, ""), canonicalForm(saved));
}

void TestFileProtecting::fileWithoutPagesFails()
{
    Folder folder;
    const QString source = folder.add(
        u"empty.pdf"_s, PdfFixture::fromObjects({"<< /Type /Catalog /Pages 2 0 R >>",
                                                 "<< /Type /Pages /Kids [] /Count 0 >>"}));
    const QString target = folder.path(u"out.pdf"_s);
    const PdfOperationOutcome outcome = protect(source, u"secret"_s, target);
    QCOMPARE(outcome.error, PdfOperationError::InvalidDocument);
    QCOMPARE(outcome.file, source);
    QVERIFY(!QFile::exists(target));
}

void TestFileProtecting::protectedSourceIsReplaced()
{
    Folder folder;
    const QString source = folder.add(u"in.pdf"_s, PdfFixture::pagesByNumber(2));
    const QFileDevice::Permissions permissions = QFileDevice::ReadOwner | QFileDevice::WriteOwner |
                                                 QFileDevice::ReadUser | QFileDevice::WriteUser;
    QVERIFY(QFile::setPermissions(source, permissions));
    const PdfOperationOutcome outcome =
        PdfFileOperations::protect(source, u"secret"_s, PdfPlacement::replacing(source), {});
    QCOMPARE(outcome.result, source);
    QVERIFY(isProtected(source));
    QCOMPARE(QFileInfo(source).permissions(), permissions);
    QCOMPARE(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden), QStringList{u"in.pdf"_s});
    QVERIFY(!PdfFileOperations::unprotect(source, u"secret"_s, PdfPlacement::replacing(source), {})
                 .isError());
    QCOMPARE(numbersIn(source, {}), (QList<int>{0, 1}));
    QCOMPARE(QFileInfo(source).permissions(), permissions);
}

void TestFileProtecting::failingProtectionLeavesTheSource()
{
    Folder folder;
    const QString source = folder.add(u"in.pdf"_s, "no document");
    const PdfOperationOutcome outcome =
        PdfFileOperations::protect(source, u"secret"_s, PdfPlacement::replacing(source), {});
    QCOMPARE(outcome.error, PdfOperationError::InvalidDocument);
    QCOMPARE(contentOf(source), "no document");
    QCOMPARE(folder.leftovers(), QStringList());
}

void TestFileProtecting::protectionIsTakenAway_data()
{
    QTest::addColumn<int>("revision");
    QTest::addColumn<QByteArray>("stored");
    QTest::addColumn<QString>("typed");
    for (const int revision : {3, 4, 5, 6}) {
        const auto row = [&](const char *name) -> QTestData & {
            return QTest::newRow(
                qPrintable(u"revision %1, %2"_s.arg(revision).arg(QString::fromLatin1(name))));
        };
        row("user") << revision << QByteArray("user") << u"user"_s;
        row("owner") << revision << QByteArray("user") << u"owner"_s;
        // Up to revision 4 bytes of PDFDocEncoding, then of UTF-8.
        row("umlaut") << revision << (revision < 5 ? kComposed.toLatin1() : kComposed.toUtf8())
                      << kComposed;
        row("umlaut of two letters")
            << revision << (revision < 5 ? kComposed.toLatin1() : kComposed.toUtf8())
            << kDecomposed;
        row("Chinese") << revision << u"密码"_s.toUtf8() << u"密码"_s;
    }
}

void TestFileProtecting::protectionIsTakenAway()
{
    QFETCH(int, revision);
    QFETCH(QByteArray, stored);
    QFETCH(QString, typed);
    Folder folder;
    const QString source = folder.add(u"in.pdf"_s, protectedPages(2, stored, "owner", revision));
    const QString target = folder.path(u"out.pdf"_s);
    const PdfOperationOutcome outcome = unprotect(source, typed, target);
    QVERIFY2(!outcome.isError(), qPrintable(outcome.message));
    QCOMPARE(numbersIn(target, {}), (QList<int>{0, 1}));
    QVERIFY(protectionOf(target, {}).contains("not encrypted"));
    QVERIFY(isProtected(source));
}

void TestFileProtecting::wrongPasswordWritesNothing()
{
    Folder folder;
    const QString source = folder.add(u"in.pdf"_s, protectedPages(1, "user", "owner", 6));
    const QString target = folder.path(u"out.pdf"_s);
    const PdfOperationOutcome outcome = unprotect(source, u"wrong"_s, target);
    QCOMPARE(outcome.error, PdfOperationError::InvalidPassword);
    QCOMPARE(outcome.file, source);
    QVERIFY(!QFile::exists(target));
    QCOMPARE(folder.leftovers(), QStringList());
}

void TestFileProtecting::missingPasswordWritesNothing()
{
    Folder folder;
    const QString source = folder.add(u"in.pdf"_s, protectedPages(1, "user", "owner", 6));
    const QString target = folder.path(u"out.pdf"_s);
    QCOMPARE(unprotect(source, {}, target).error, PdfOperationError::PasswordRequired);
    QVERIFY(!QFile::exists(target));
}

void TestFileProtecting::unprotectedFileIsCopied()
{
    Folder folder;
    const QString source = folder.add(u"in.pdf"_s, PdfFixture::pagesByNumber(3));
    const QString taken = folder.add(u"out.pdf"_s, "taken");
    const PdfOperationOutcome outcome = unprotect(source, u"any"_s, taken);
    QCOMPARE(outcome.result, taken + u'1');
    QCOMPARE(contentOf(outcome.result), contentOf(source));
    QCOMPARE(contentOf(taken), "taken");
    QCOMPARE(folder.leftovers(), QStringList());
}

void TestFileProtecting::damagedUnprotectedFileIsCopied()
{
    Folder folder;
    // Without its table.
    const QByteArray whole = PdfFixture::pagesByNumber(3);
    const QString source = folder.add(u"in.pdf"_s, whole.left(whole.lastIndexOf("xref")));
    const QString target = folder.path(u"out.pdf"_s);
    QVERIFY(!unprotect(source, {}, target).isError());
    QCOMPARE(contentOf(target), contentOf(source));
}

void TestFileProtecting::unprotectedFileIsNotReplacedByItself()
{
    Folder folder;
    const QString source = folder.add(u"in.pdf"_s, PdfFixture::pagesByNumber(1));
    const QDateTime before = QDateTime::fromSecsSinceEpoch(1'000'000'000);
    QFile file(source);
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(file.setFileTime(before, QFileDevice::FileModificationTime));
    file.close();
    const PdfOperationOutcome outcome =
        PdfFileOperations::unprotect(source, {}, PdfPlacement::replacing(source), {});
    QCOMPARE(outcome.result, source);
    QCOMPARE(QFileInfo(source).lastModified(), before);
}

void TestFileProtecting::cancelledWorkLeavesNothing()
{
    Folder folder;
    const QString plain = folder.add(u"plain.pdf"_s, PdfFixture::pagesByNumber(1));
    const QString locked = folder.add(u"locked.pdf"_s, protectedPages(1, "user", "owner", 6));
    const QString target = folder.path(u"out.pdf"_s);
    const PdfCancelFlag cancel;
    cancel.set();
    for (const PdfOperationOutcome &outcome :
         {PdfFileOperations::protect(plain, u"secret"_s, newAt(target), cancel),
          PdfFileOperations::unprotect(plain, {}, newAt(target), cancel),
          PdfFileOperations::unprotect(locked, u"user"_s, newAt(target), cancel)}) {
        QCOMPARE(outcome.error, PdfOperationError::Cancelled);
    }
    QVERIFY(!QFile::exists(target));
    QCOMPARE(folder.leftovers(), QStringList());
}

void TestFileProtecting::messagesNameNoPassword()
{
    Folder folder;
    const QString locked = folder.add(u"locked.pdf"_s, protectedPages(1, "user", "owner", 6));
    const QString broken = folder.add(u"broken.pdf"_s, "no document");
    const QString password = u"pa55word"_s;
    for (const PdfOperationOutcome &outcome :
         {unprotect(locked, password, folder.path(u"out.pdf"_s)),
          protect(broken, password, folder.path(u"out.pdf"_s)),
          protect(locked, password, folder.path(u"missing/out.pdf"_s))}) {
        QVERIFY(outcome.isError());
        QVERIFY(!outcome.message.isEmpty());
        QVERIFY(!outcome.message.contains(password));
    }
}

QTEST_GUILESS_MAIN(TestFileProtecting)
#include "tst_file_protecting.moc"
