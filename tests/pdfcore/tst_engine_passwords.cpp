// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdfcore/engine_calls.h"
#include "tests/support/pdf_fixture.h"

using namespace EngineCalls;
using namespace Qt::StringLiterals;

namespace {

const QString kUser = u"user-password-7"_s;
const QString kOwner = u"owner-password-8"_s;
const QString kWrong = u"wrong-password-9"_s;

/// A document of two pages that is encrypted with the bytes given.
QByteArray protectedDocument(const QByteArray &user, const QByteArray &owner, int revision)
{
    return PdfFixture::encrypted(PdfFixture::pagesByNumber(2), {user, owner, revision});
}

/// What inspecting, rendering and saving say about a file, which must be the same.
struct Answers
{
    Inspection inspection;
    Rendering rendering;
    Outcome saving;
    QString target;
    QString password;
};

Answers ask(const Folder &folder, const QString &path, const QString &password)
{
    Answers answers;
    answers.target = folder.path(u"out.pdf"_s);
    answers.password = password;
    QFile::remove(answers.target);
    answers.inspection = inspect(path, password);
    answers.rendering = render(filePage(path, 1, 0, password));
    answers.saving = save({filePage(path, 1, 0, password)}, answers.target);
    return answers;
}

} // namespace

#define VERIFY_OPENS(answers)                                                                      \
    do {                                                                                           \
        const Answers given = (answers);                                                           \
        QVERIFY2(given.inspection.ok, qPrintable(given.inspection.message));                       \
        QCOMPARE(given.inspection.pageSizes.size(), 2);                                            \
        QVERIFY2(given.rendering.ok, qPrintable(given.rendering.message));                         \
        COMPARE_COLOUR(middle(given.rendering.image), PdfFixture::numberColour(1), 1);             \
        QVERIFY2(given.saving.ok, qPrintable(given.saving.message));                               \
        const Rendering copy = render(filePage(given.target, 0, 0, given.password));               \
        QVERIFY2(copy.ok, qPrintable(copy.message));                                               \
        COMPARE_COLOUR(middle(copy.image), PdfFixture::numberColour(1), 1);                        \
    } while (false)

#define VERIFY_REFUSES(answers, code)                                                              \
    do {                                                                                           \
        const Answers given = (answers);                                                           \
        QVERIFY(!given.inspection.ok);                                                             \
        QCOMPARE(given.inspection.error, code);                                                    \
        QVERIFY(!given.inspection.message.isEmpty());                                              \
        QVERIFY(given.rendering.image.isNull());                                                   \
        QCOMPARE(given.rendering.error, code);                                                     \
        QVERIFY(!given.rendering.message.isEmpty());                                               \
        QVERIFY(!given.saving.ok);                                                                 \
        QCOMPARE(given.saving.error, code);                                                        \
        QVERIFY(!given.saving.message.isEmpty());                                                  \
        QVERIFY(!QFile::exists(given.target));                                                     \
    } while (false)

/// Encrypted files, opened by every operation of the engine.
class TestEnginePasswords : public QObject
{
    Q_OBJECT

private slots:
    void passwordsOfEachRevision_data();
    void passwordsOfEachRevision();
    void emptyUserPasswordNeedsNoPassword_data();
    void emptyUserPasswordNeedsNoPassword();
    void emptyOwnerPasswordNeedsNoPassword_data();
    void emptyOwnerPasswordNeedsNoPassword();
    void unencryptedFileIgnoresThePassword();
    void anotherPasswordIsTriedAfterAWrongOne();
    void theRightPasswordDoesNotOpenTheFileForOthers();
    void nonAsciiPasswords_data();
    void nonAsciiPasswords();
    void longPasswordsAreCutAsTheRevisionAsks_data();
    void longPasswordsAreCutAsTheRevisionAsks();
    void certificateEncryptionIsNotSupported();
    void unknownHandlerIsNotSupported();
    void messagesNeverShowThePassword();
    void pagesOfTwoProtectedFilesInOneOutput();
    void wrongPasswordOfOneSourceSpoilsTheSave();
    void oneBatchWithSeveralPasswords();
};

void TestEnginePasswords::passwordsOfEachRevision_data()
{
    QTest::addColumn<int>("revision");
    for (const int revision : {3, 4, 6}) {
        QTest::addRow("revision %d", revision) << revision;
    }
}

void TestEnginePasswords::passwordsOfEachRevision()
{
    QFETCH(const int, revision);
    Folder folder;
    const QString path =
        folder.add(u"locked.pdf"_s, protectedDocument(kUser.toUtf8(), kOwner.toUtf8(), revision));
    VERIFY_REFUSES(ask(folder, path, {}), PdfBackendError::PasswordRequired);
    VERIFY_REFUSES(ask(folder, path, kWrong), PdfBackendError::InvalidPassword);
    QCOMPARE(inspect(path, kUser.toUpper()).error, PdfBackendError::InvalidPassword);
    QCOMPARE(inspect(path, kUser + u' ').error, PdfBackendError::InvalidPassword);
    VERIFY_OPENS(ask(folder, path, kUser));
    VERIFY_OPENS(ask(folder, path, kOwner));
}

void TestEnginePasswords::emptyUserPasswordNeedsNoPassword_data()
{
    passwordsOfEachRevision_data();
}

void TestEnginePasswords::emptyUserPasswordNeedsNoPassword()
{
    QFETCH(const int, revision);
    Folder folder;
    const QString path =
        folder.add(u"owned.pdf"_s, protectedDocument({}, kOwner.toUtf8(), revision));
    VERIFY_OPENS(ask(folder, path, {}));
    VERIFY_OPENS(ask(folder, path, kOwner));
    VERIFY_OPENS(ask(folder, path, kWrong));
}

void TestEnginePasswords::emptyOwnerPasswordNeedsNoPassword_data()
{
    QTest::addColumn<int>("revision");
    // Up to revision 4 an empty owner password means that it is the user's.
    QTest::newRow("revision 5") << 5;
    QTest::newRow("revision 6") << 6;
}

void TestEnginePasswords::emptyOwnerPasswordNeedsNoPassword()
{
    QFETCH(const int, revision);
    Folder folder;
    const QString path = folder.add(u"user.pdf"_s, protectedDocument(kUser.toUtf8(), {}, revision));
    VERIFY_OPENS(ask(folder, path, {}));
    VERIFY_OPENS(ask(folder, path, kUser));
    VERIFY_OPENS(ask(folder, path, kWrong));
}

void TestEnginePasswords::unencryptedFileIgnoresThePassword()
{
    Folder folder;
    const QString path = folder.add(u"open.pdf"_s, PdfFixture::pagesByNumber(2));
    VERIFY_OPENS(ask(folder, path, kWrong));
}

void TestEnginePasswords::anotherPasswordIsTriedAfterAWrongOne()
{
    Folder folder;
    const QString path =
        folder.add(u"locked.pdf"_s, protectedDocument(kUser.toUtf8(), kOwner.toUtf8(), 6));
    for (int i = 0; i < 2; ++i) {
        QCOMPARE(inspect(path, kWrong).error, PdfBackendError::InvalidPassword);
        QVERIFY(inspect(path, kUser).ok);
        QCOMPARE(inspect(path).error, PdfBackendError::PasswordRequired);
    }
}

void TestEnginePasswords::theRightPasswordDoesNotOpenTheFileForOthers()
{
    Folder folder;
    const QString path =
        folder.add(u"locked.pdf"_s, protectedDocument(kUser.toUtf8(), kOwner.toUtf8(), 4));
    QVERIFY(render(filePage(path, 0, 0, kUser)).ok);
    QCOMPARE(render(filePage(path, 0, 0, kWrong)).error, PdfBackendError::InvalidPassword);
    QCOMPARE(render(filePage(path)).error, PdfBackendError::PasswordRequired);
}

void TestEnginePasswords::nonAsciiPasswords_data()
{
    QTest::addColumn<QByteArray>("stored");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<int>("revision");
    const QString composed = u"caf\u00e9"_s;
    const QString decomposed = u"cafe\u0301"_s;
    for (const int revision : {3, 4, 6}) {
        const auto row = [revision](const char *name, const QByteArray &stored,
                                    const QString &typed) {
            QTest::addRow("revision %d, %s", revision, name) << stored << typed << revision;
        };
        row("e acute", composed.toUtf8(), composed);
        row("e acute, typed decomposed", composed.toUtf8(), decomposed);
        row("e acute, stored decomposed", decomposed.toUtf8(), composed);
        row("u umlaut",
            "m\xC3\xBC"
            "de",
            u"m\u00fcde"_s);
        row("euro", "5\xE2\x82\xAC", u"5\u20ac"_s);
        row("Chinese", "\xE4\xB8\xAD\xE6\x96\x87", u"\u4e2d\u6587"_s);
        row("emoji", "\xF0\x9F\x98\x80", u"\U0001F600"_s);
        row("full width, stored normalised", "AB12", u"\uff21\uff22\uff11\uff12"_s);
    }
    for (const int revision : {3, 4}) {
        const auto row = [revision](const char *name, const QByteArray &stored,
                                    const QString &typed) {
            QTest::addRow("revision %d, %s", revision, name) << stored << typed << revision;
        };
        row("e acute as Latin-1", "caf\xE9", composed);
        row("e acute as Latin-1, typed decomposed", "caf\xE9", decomposed);
        row("u umlaut as Latin-1",
            "m\xFC"
            "de",
            u"m\u00fcde"_s);
        row("euro as PDFDocEncoding", "5\xA0", u"5\u20ac"_s);
        row("euro as Windows-1252", "5\x80", u"5\u20ac"_s);
    }
}

void TestEnginePasswords::nonAsciiPasswords()
{
    QFETCH(const QByteArray, stored);
    QFETCH(const QString, typed);
    QFETCH(const int, revision);
    Folder folder;
    const QString asUser =
        folder.add(u"user.pdf"_s, protectedDocument(stored, kOwner.toUtf8(), revision));
    VERIFY_OPENS(ask(folder, asUser, typed));
    if (revision == 6) {
        return; // Slow by design, and the owner password goes the same way.
    }
    const QString asOwner =
        folder.add(u"owner.pdf"_s, protectedDocument(kUser.toUtf8(), stored, revision));
    VERIFY_OPENS(ask(folder, asOwner, typed));
    VERIFY_REFUSES(ask(folder, asUser, typed + u'x'), PdfBackendError::InvalidPassword);
}

void TestEnginePasswords::longPasswordsAreCutAsTheRevisionAsks_data()
{
    QTest::addColumn<int>("revision");
    QTest::addColumn<int>("length");
    QTest::newRow("revision 3") << 3 << 32;
    QTest::newRow("revision 4") << 4 << 32;
    QTest::newRow("revision 6") << 6 << 127;
}

void TestEnginePasswords::longPasswordsAreCutAsTheRevisionAsks()
{
    QFETCH(const int, revision);
    QFETCH(const int, length);
    Folder folder;
    const QString password(length + 8, u'p');
    const QString path =
        folder.add(u"long.pdf"_s,
                   protectedDocument(password.left(length).toLatin1(), kOwner.toUtf8(), revision));
    VERIFY_OPENS(ask(folder, path, password.left(length)));
    VERIFY_OPENS(ask(folder, path, password));
    VERIFY_REFUSES(ask(folder, path, password.left(length - 1)), PdfBackendError::InvalidPassword);
    const QString huge(100'000, u'p');
    QCOMPARE(inspect(path, u'x' + huge).error, PdfBackendError::InvalidPassword);
}

void TestEnginePasswords::certificateEncryptionIsNotSupported()
{
    Folder folder;
    const QString path = folder.add(
        u"certificates.pdf"_s,
        PdfFixture::fromObjects(
            {"<< /Type /Catalog /Pages 2 0 R >>", "<< /Type /Pages /Kids [3 0 R] /Count 1 >>",
             "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 9 9] >>",
             "<< /Filter /Adobe.PubSec /SubFilter /adbe.pkcs7.s4 /V 2 /Length 128 /P -1 "
             "/Recipients [<3003020100>] >>"},
            "/Encrypt 4 0 R /ID [<00112233> <00112233>]"));
    for (const QString &password : {QString(), kUser}) {
        const Answers answers = ask(folder, path, password);
        VERIFY_REFUSES(answers, PdfBackendError::InvalidDocument);
        QVERIFY2(answers.inspection.message.contains(u"certificate"_s),
                 qPrintable(answers.inspection.message));
    }
}

void TestEnginePasswords::unknownHandlerIsNotSupported()
{
    Folder folder;
    const QString path =
        folder.add(u"handler.pdf"_s,
                   PdfFixture::fromObjects({"<< /Type /Catalog /Pages 2 0 R >>",
                                            "<< /Type /Pages /Kids [3 0 R] /Count 1 >>",
                                            "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 9 9] >>",
                                            "<< /Filter /Special /V 4 /R 4 /P -1 >>"},
                                           "/Encrypt 4 0 R /ID [<00112233> <00112233>]"));
    VERIFY_REFUSES(ask(folder, path, {}), PdfBackendError::InvalidDocument);
}

void TestEnginePasswords::messagesNeverShowThePassword()
{
    Folder folder;
    const QByteArray locked = protectedDocument(kUser.toUtf8(), kOwner.toUtf8(), 6);
    const QStringList paths{folder.add(u"locked.pdf"_s, locked),
                            folder.add(u"cut.pdf"_s, locked.left(locked.size() / 2)),
                            folder.add(u"text.pdf"_s, "no document"), folder.path(u"absent.pdf"_s)};
    for (const QString &path : paths) {
        for (const QString &password : {kUser, kOwner, kWrong}) {
            const Answers answers = ask(folder, path, password);
            QStringList errors;
            PdfEditorBackend::renderPages({filePage(path, 7, 0, password)}, {QSize(9, 9)}, &errors);
            const QString said = answers.inspection.message + answers.rendering.message +
                                 answers.saving.message + errors.join(u' ');
            QVERIFY2(!said.contains(password), qPrintable(said));
        }
    }
}

void TestEnginePasswords::pagesOfTwoProtectedFilesInOneOutput()
{
    Folder folder;
    const QString first = folder.add(u"first.pdf"_s, protectedDocument("one", "boss", 3));
    const QString second = folder.add(u"second.pdf"_s, protectedDocument("two", "boss", 6));
    const QString target = folder.path(u"out.pdf"_s);
    const Outcome saved = save({filePage(second, 1, 0, u"two"_s), filePage(first, 0, 0, u"one"_s),
                                filePage(first, 1, 0, u"boss"_s), filePage(second, 0, 0, u"two"_s)},
                               target);
    QVERIFY2(saved.ok, qPrintable(saved.message));
    QVERIFY(!contentOf(target).contains("/Encrypt"));
    QCOMPARE(inspect(target).pageSizes.size(), 4);
    const QList<int> expected{1, 0, 1, 0};
    for (int i = 0; i < expected.size(); ++i) {
        COMPARE_COLOUR(middle(render(filePage(target, i)).image),
                       PdfFixture::numberColour(expected.at(i)), 1);
    }
}

void TestEnginePasswords::wrongPasswordOfOneSourceSpoilsTheSave()
{
    Folder folder;
    const QString first = folder.add(u"first.pdf"_s, protectedDocument("one", "boss", 3));
    const QString second = folder.add(u"second.pdf"_s, protectedDocument("two", "boss", 6));
    const QString target = folder.add(u"out.pdf"_s, "what was there before");
    const Outcome wrong =
        save({filePage(first, 0, 0, u"one"_s), filePage(second, 0, 0, u"one"_s)}, target);
    QCOMPARE(wrong.error, PdfBackendError::InvalidPassword);
    const Outcome missing = save({filePage(first, 0, 0, u"one"_s), filePage(second)}, target);
    QCOMPARE(missing.error, PdfBackendError::PasswordRequired);
    QCOMPARE(contentOf(target), "what was there before");
    QVERIFY(folder.leftovers().isEmpty());
}

void TestEnginePasswords::oneBatchWithSeveralPasswords()
{
    Folder folder;
    const QString path = folder.add(u"locked.pdf"_s, protectedDocument("one", "boss", 4));
    QStringList errors;
    const QList<QImage> images =
        PdfEditorBackend::renderPages({filePage(path, 0, 0, u"one"_s), filePage(path, 1, 0, kWrong),
                                       filePage(path, 1), filePage(path, 1, 0, u"boss"_s)},
                                      QList<QSize>(4, QSize(20, 20)), &errors);
    QCOMPARE(images.size(), 4);
    QVERIFY(!images.at(0).isNull());
    QVERIFY(images.at(1).isNull());
    QVERIFY(images.at(2).isNull());
    QVERIFY(!images.at(3).isNull());
    QVERIFY(errors.at(0).isEmpty());
    QVERIFY(!errors.at(1).isEmpty());
    QVERIFY(!errors.at(2).isEmpty());
    QVERIFY(errors.at(1) != errors.at(2));
    QVERIFY(errors.at(3).isEmpty());
}

QTEST_GUILESS_MAIN(TestEnginePasswords)
#include "tst_engine_passwords.moc"
