// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdfcore/engine_calls.h"
#include "tests/support/pdf_fixture.h"

#include <QProcess>
#include <QStandardPaths>
#include <QTest>

using namespace EngineCalls;
using namespace Qt::StringLiterals;

namespace {

const QString kUser = u"user"_s;
const QString kOwner = u"owner"_s;

QByteArray protectedPages(int count, const QByteArray &user, const QByteArray &owner, int revision)
{
    return PdfFixture::encrypted(PdfFixture::pagesByNumber(count), {user, owner, revision});
}

/// What another program says of the protection of a file: method, permissions and passwords.
QByteArray protectionOf(const QString &path, const QString &password)
{
    QProcess program;
    program.start(QStandardPaths::findExecutable(u"qpdf"_s),
                  {u"--show-encryption"_s, u"--password="_s + password, path});
    program.waitForFinished();
    return program.readAllStandardOutput();
}

bool isProtected(const QString &path)
{
    return inspect(path).error == PdfBackendError::PasswordRequired;
}

const QByteArray kAttached = "what is attached";

/// The whole of the object that holds `text`, between its number and its end.
QByteArray objectWith(const QByteArray &file, const QByteArray &text)
{
    const qsizetype within = file.indexOf(text);
    const qsizetype start = file.lastIndexOf(" 0 obj\n", within) + 7;
    return file.mid(start, file.indexOf("\nendobj", within) - start);
}

/// How it is said that the rest is not encrypted.
const QByteArray kIdentity = "/StmF /Identity /StrF /Identity";

/// A document of one page whose attachment alone is encrypted, as other programs write it. Its key
/// is that of a document that is encrypted as a whole, and depends on no object's number.
QByteArray protectedAttachment(bool withAttachment, const QByteArray &filters = kIdentity)
{
    const QByteArray whole = PdfFixture::encrypted(
        PdfFixture::fromObjects({"<< /Type /Catalog /Pages 2 0 R /Attached 4 0 R >>",
                                 "<< /Type /Pages /Kids [3 0 R] /Count 1 >>",
                                 "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 9 9] >>",
                                 PdfFixture::streamBody("/Type /EmbeddedFile", kAttached)}),
        {"user", "owner", 6});
    QByteArray encryption = objectWith(whole, "/Filter /Standard");
    encryption.replace("/DocOpen", "/EFOpen")
        .replace("/StmF /StdCF /StrF /StdCF", QByteArray(filters + " /EFF /StdCF"));
    QByteArray attachment = objectWith(whole, "/EmbeddedFile");
    attachment.replace("/Filter /FlateDecode",
                       "/Filter [/Crypt /FlateDecode] /DecodeParms [<< /Name /StdCF >> null]");
    const QByteArray names =
        withAttachment ? "/Names << /EmbeddedFiles << /Names [(a.txt) 6 0 R] >> >>" : "";
    return PdfFixture::fromObjects(
        {"<< /Type /Catalog /Pages 2 0 R " + names + " >>",
         "<< /Type /Pages /Kids [3 0 R] /Count 1 >>",
         "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 200 300] /Contents 4 0 R >>",
         PdfFixture::streamBody({},
                                PdfFixture::fill({0, 0, 200, 300}, PdfFixture::numberColour(1))),
         encryption, "<< /Type /Filespec /F (a.txt) /UF (a.txt) /EF << /F 7 0 R >> >>",
         withAttachment ? attachment : "null"},
        "/Encrypt 5 0 R /ID [<00112233> <00112233>]");
}

/// What another program reads of the attachment.
QByteArray attachmentIn(const QString &path, const QString &password)
{
    QProcess program;
    program.start(QStandardPaths::findExecutable(u"qpdf"_s),
                  {u"--password="_s + password, u"--show-attachment=a.txt"_s, path});
    program.waitForFinished();
    return program.readAllStandardOutput();
}

QList<PdfSourcePage> pagesOf(const QString &path, const QList<int> &numbers,
                             const QString &password = {}, bool areOfMain = false)
{
    QList<PdfSourcePage> pages;
    for (const int number : numbers) {
        pages.append(filePage(path, number, 0, password));
        pages.last().isOfMainDocument = areOfMain;
    }
    return pages;
}

QList<int> numbersIn(const QString &path, const QString &password)
{
    const qsizetype count = inspect(path, password).pageSizes.size();
    QList<int> all;
    for (int i = 0; i < count; ++i) {
        all.append(i);
    }
    return numbersOf(pagesOf(path, all, password));
}

} // namespace

/// What becomes of the protection of documents that are saved.
class TestEngineProtection : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void saveKeepsTheProtection_data();
    void saveKeepsTheProtection();
    void documentWithoutAnIdentityKeepsItsProtection();
    void saveOverTheFileKeepsTheProtection();
    void partsOfTheDocumentKeepTheProtection();
    void pagesOfOthersAreProtectedToo();
    void protectedPagesComeIntoAnUnprotectedDocument();
    void pagesOfAnotherProtectedDocumentEndTheProtection();
    void bothPasswordsOfOneFileAreOneProtection();
    void blankPagesAloneAreNotProtected();
    void protectedAttachmentsLeaveThePagesOpen_data();
    void protectedAttachmentsLeaveThePagesOpen();
    void protectedAttachmentsAreNotLost_data();
    void protectedAttachmentsAreNotLost();
    void protectedStreamsOrStringsNeedThePassword_data();
    void protectedStreamsOrStringsNeedThePassword();
    void filterThatAsksAtOnceNeedsThePassword_data();
    void filterThatAsksAtOnceNeedsThePassword();
    void attachmentsOfDamagedFilesAreNotLost();
    void attachmentsThatAreNotThereAreNotMissed();
};

void TestEngineProtection::initTestCase()
{
    if (QStandardPaths::findExecutable(u"qpdf"_s).isEmpty()) {
        QSKIP("The program that looks at protections is not installed.");
    }
}

void TestEngineProtection::saveKeepsTheProtection_data()
{
    QTest::addColumn<int>("revision");
    QTest::addColumn<QString>("user");
    QTest::addColumn<QString>("opened");
    for (const int revision : {3, 4, 6}) {
        QTest::addRow("revision %d, user password", revision) << revision << kUser << kUser;
        QTest::addRow("revision %d, owner password", revision) << revision << kUser << kOwner;
        QTest::addRow("revision %d, empty user password", revision)
            << revision << QString() << QString();
    }
}

void TestEngineProtection::saveKeepsTheProtection()
{
    QFETCH(const int, revision);
    QFETCH(const QString, user);
    QFETCH(const QString, opened);
    Folder folder;
    const QString path =
        folder.add(u"in.pdf"_s, protectedPages(5, user.toUtf8(), kOwner.toUtf8(), revision));
    const QString target = folder.path(u"out.pdf"_s);
    const Outcome saved = save(pagesOf(path, {4, 0, 2}, opened), target);
    QVERIFY2(saved.ok, qPrintable(saved.message));
    const QByteArray method = "R = " + QByteArray::number(revision);
    QVERIFY(protectionOf(target, kOwner).contains(method));
    for (const QString &password : {user, kOwner}) {
        QCOMPARE(protectionOf(target, password), protectionOf(path, password));
        QCOMPARE(numbersIn(target, password), (QList<int>{4, 0, 2}));
    }
    QCOMPARE(isProtected(target), !user.isEmpty());
    if (!user.isEmpty()) {
        QCOMPARE(inspect(target, u"wrong"_s).error, PdfBackendError::InvalidPassword);
    }
}

void TestEngineProtection::documentWithoutAnIdentityKeepsItsProtection()
{
    // Revision 6 makes its keys without it.
    QByteArray data = protectedPages(3, "user", "owner", 6);
    const qsizetype identity = data.lastIndexOf("/ID");
    QVERIFY(identity > 0);
    data.replace(identity, 3, "/XY");
    Folder folder;
    const QString path = folder.add(u"in.pdf"_s, data);
    const QString target = folder.path(u"out.pdf"_s);
    const Outcome saved = save(pagesOf(path, {2, 1}, kUser), target);
    QVERIFY2(saved.ok, qPrintable(saved.message));
    QVERIFY(isProtected(target));
    QCOMPARE(numbersIn(target, kUser), (QList<int>{2, 1}));
}

void TestEngineProtection::saveOverTheFileKeepsTheProtection()
{
    Folder folder;
    const QString path = folder.add(u"in.pdf"_s, protectedPages(4, "user", "owner", 4));
    const QByteArray before = protectionOf(path, kOwner);
    for (int round = 0; round < 3; ++round) {
        const Outcome saved = save(pagesOf(path, {3, 2, 1, 0}, kUser), path);
        QVERIFY2(saved.ok, qPrintable(saved.message));
        QCOMPARE(protectionOf(path, kOwner), before);
    }
    QCOMPARE(numbersIn(path, kUser), (QList<int>{3, 2, 1, 0}));
}

void TestEngineProtection::partsOfTheDocumentKeepTheProtection()
{
    Folder folder;
    const QString path = folder.add(u"in.pdf"_s, protectedPages(4, "user", "owner", 6));
    for (int number = 0; number < 4; ++number) {
        const QString part = folder.path(u"part-%1.pdf"_s.arg(number));
        QVERIFY(save(pagesOf(path, {number}, kUser, true), part).ok);
        QVERIFY(isProtected(part));
        QCOMPARE(numbersIn(part, kUser), QList<int>{number});
    }
}

void TestEngineProtection::pagesOfOthersAreProtectedToo()
{
    Folder folder;
    const QString path = folder.add(u"in.pdf"_s, protectedPages(4, "user", "owner", 6));
    const QString open = folder.add(u"open.pdf"_s, PdfFixture::pagesByNumber(9));
    const QString target = folder.path(u"out.pdf"_s);
    const Outcome saved =
        save(pagesOf(open, {8}) + pagesOf(path, {0, 1}, kUser, true) + pagesOf(open, {7}), target);
    QVERIFY2(saved.ok, qPrintable(saved.message));
    QVERIFY(isProtected(target));
    QCOMPARE(numbersIn(target, kUser), (QList<int>{8, 0, 1, 7}));
}

void TestEngineProtection::protectedPagesComeIntoAnUnprotectedDocument()
{
    Folder folder;
    const QString path = folder.add(u"in.pdf"_s, protectedPages(4, "user", "owner", 6));
    const QString open = folder.add(u"open.pdf"_s, PdfFixture::pagesByNumber(9));
    const QString target = folder.path(u"out.pdf"_s);
    QVERIFY(save(pagesOf(path, {0, 1}, kUser) + pagesOf(open, {7}, {}, true), target).ok);
    QVERIFY(!isProtected(target));
    QCOMPARE(numbersIn(target, {}), (QList<int>{0, 1, 7}));
}

void TestEngineProtection::pagesOfAnotherProtectedDocumentEndTheProtection()
{
    Folder folder;
    const QString path = folder.add(u"in.pdf"_s, protectedPages(4, "user", "owner", 6));
    const QString other = folder.add(u"other.pdf"_s, protectedPages(9, "user", "owner", 6));
    const QString target = folder.path(u"out.pdf"_s);
    QVERIFY(save(pagesOf(path, {0, 1}, kUser, true) + pagesOf(other, {7}, kUser), target).ok);
    QVERIFY(!isProtected(target));
    QCOMPARE(numbersIn(target, {}), (QList<int>{0, 1, 7}));
}

void TestEngineProtection::bothPasswordsOfOneFileAreOneProtection()
{
    Folder folder;
    const QString path = folder.add(u"in.pdf"_s, protectedPages(4, "user", "owner", 6));
    const QString target = folder.path(u"out.pdf"_s);
    QVERIFY(save(pagesOf(path, {0}, kUser, true) + pagesOf(path, {3}, kOwner), target).ok);
    QVERIFY(isProtected(target));
    QCOMPARE(numbersIn(target, kUser), (QList<int>{0, 3}));
}

void TestEngineProtection::blankPagesAloneAreNotProtected()
{
    const Folder folder;
    const QString target = folder.path(u"out.pdf"_s);
    QVERIFY(save({blankPage({100, 100})}, target).ok);
    QVERIFY(!isProtected(target));
}

void TestEngineProtection::protectedAttachmentsLeaveThePagesOpen_data()
{
    QTest::addColumn<QByteArray>("filters");
    QTest::newRow("named") << kIdentity;
    // That is what a missing entry stands for.
    QTest::newRow("for streams only") << QByteArray("/StmF /Identity");
    QTest::newRow("for strings only") << QByteArray("/StrF /Identity");
    QTest::newRow("left out") << QByteArray();
}

void TestEngineProtection::protectedAttachmentsLeaveThePagesOpen()
{
    QFETCH(const QByteArray, filters);
    Folder folder;
    const QString path = folder.add(u"in.pdf"_s, protectedAttachment(true, filters));
    QCOMPARE(attachmentIn(path, kUser), kAttached);
    QVERIFY(attachmentIn(path, {}).isEmpty());
    for (const QString &password : {QString(), kUser, kOwner, u"wrong"_s}) {
        QCOMPARE(numbersIn(path, password), QList<int>{1});
    }
}

void TestEngineProtection::protectedAttachmentsAreNotLost_data()
{
    protectedAttachmentsLeaveThePagesOpen_data();
}

void TestEngineProtection::protectedAttachmentsAreNotLost()
{
    QFETCH(const QByteArray, filters);
    Folder folder;
    const QString path = folder.add(u"in.pdf"_s, protectedAttachment(true, filters));
    const QString plain = folder.add(u"plain.pdf"_s, PdfFixture::pagesByNumber(2));
    const QString target = folder.path(u"out.pdf"_s);
    for (const QString &password : {QString(), u"wrong"_s}) {
        const Outcome refused = save(pagesOf(path, {0}, password), target);
        QCOMPARE(refused.error, PdfBackendError::PasswordRequired);
        QVERIFY2(refused.message.contains(u"attachments"_s), qPrintable(refused.message));
        QVERIFY(!QFile::exists(target));
    }
    const Outcome joined = save(pagesOf(plain, {0}, {}, true) + pagesOf(path, {0}), target);
    QCOMPARE(joined.error, PdfBackendError::PasswordRequired);
    for (const QString &password : {kUser, kOwner}) {
        const Outcome saved = save(pagesOf(path, {0}, password), target);
        QVERIFY2(saved.ok, qPrintable(saved.message));
        for (const QString &other : {kUser, kOwner}) {
            QCOMPARE(attachmentIn(target, other), kAttached);
            QCOMPARE(numbersIn(target, other), QList<int>{1});
        }
        QVERIFY(attachmentIn(target, {}).isEmpty());
    }
}

void TestEngineProtection::protectedStreamsOrStringsNeedThePassword_data()
{
    QTest::addColumn<QByteArray>("filters");
    QTest::newRow("streams") << QByteArray("/StmF /StdCF /StrF /Identity");
    QTest::newRow("strings") << QByteArray("/StmF /Identity /StrF /StdCF");
    QTest::newRow("streams, strings left out") << QByteArray("/StmF /StdCF");
    QTest::newRow("strings, streams left out") << QByteArray("/StrF /StdCF");
}

void TestEngineProtection::protectedStreamsOrStringsNeedThePassword()
{
    QFETCH(const QByteArray, filters);
    Folder folder;
    const QString path = folder.add(u"in.pdf"_s, protectedAttachment(true, filters));
    QCOMPARE(inspect(path).error, PdfBackendError::PasswordRequired);
    QCOMPARE(inspect(path, u"wrong"_s).error, PdfBackendError::InvalidPassword);
    QVERIFY(inspect(path, kUser).ok);
}

void TestEngineProtection::filterThatAsksAtOnceNeedsThePassword_data()
{
    QTest::addColumn<QByteArray>("filter");
    QTest::addColumn<bool>("opens");
    const QByteArray same = "/CFM /AESV3 /Length 32";
    QTest::newRow("when an attachment is opened")
        << QByteArray("/Other << /AuthEvent /EFOpen " + same + " >>") << true;
    QTest::newRow("when the document is opened")
        << QByteArray("/Other << /AuthEvent /DocOpen " + same + " >>") << false;
    QTest::newRow("nothing is said") << QByteArray("/Other << " + same + " >>") << false;
    QTest::newRow("no filter") << QByteArray("/Other 9") << false;
}

void TestEngineProtection::filterThatAsksAtOnceNeedsThePassword()
{
    QFETCH(const QByteArray, filter);
    QFETCH(const bool, opens);
    QByteArray data = protectedAttachment(true);
    QCOMPARE(data.count("/CF <<"), 1);
    data.replace("/CF <<", QByteArray("/CF << " + filter));
    Folder folder;
    const QString path = folder.add(u"in.pdf"_s, data);
    QCOMPARE(inspect(path).ok, opens);
    QVERIFY(inspect(path, kUser).ok);
}

void TestEngineProtection::attachmentsOfDamagedFilesAreNotLost()
{
    // QPDF finds no trailer, which MuPDF recognises by what is in it.
    QByteArray data = protectedAttachment(true);
    data.replace("trailer", "tralier").replace("startxref\n", "startxref\n1");
    Folder folder;
    const QString path = folder.add(u"in.pdf"_s, data);
    const QString target = folder.path(u"out.pdf"_s);
    QCOMPARE(numbersIn(path, {}), QList<int>{1});
    for (const QString &password : {QString(), u"wrong"_s}) {
        const Outcome refused = save(pagesOf(path, {0}, password), target);
        // It is the file that is at fault, before anything is written.
        QCOMPARE(refused.error, PdfBackendError::InvalidDocument);
        QVERIFY(!QFile::exists(target));
    }
}

void TestEngineProtection::attachmentsThatAreNotThereAreNotMissed()
{
    Folder folder;
    const QString path = folder.add(u"in.pdf"_s, protectedAttachment(false));
    const QString target = folder.path(u"out.pdf"_s);
    const Outcome saved = save(pagesOf(path, {0}), target);
    QVERIFY2(saved.ok, qPrintable(saved.message));
    QCOMPARE(numbersIn(target, {}), QList<int>{1});
}

QTEST_GUILESS_MAIN(TestEngineProtection)
#include "tst_engine_protection.moc"
