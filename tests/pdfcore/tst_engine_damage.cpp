// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdfcore/engine_calls.h"
#include "tests/support/pdf_fixture.h"

#include <QDir>
#include <QSet>

using namespace EngineCalls;
using namespace Qt::StringLiterals;

namespace {

using Bytes = QByteArray;

const Bytes kCatalogue = "<< /Type /Catalog /Pages 2 0 R >>";
const Bytes kRed = "1 0 0 rg 0 0 200 200 re f ";
const Bytes kGreen = "0 1 0 rg 0 0 200 200 re f ";
const Bytes kBlue = "0 0 1 rg 0 0 200 200 re f ";

Bytes treeOf(const Bytes &kids, int count)
{
    return "<< /Type /Pages /Kids [" + kids + "] /Count " + Bytes::number(count) + " >>";
}

Bytes pageShowing(const Bytes &contents)
{
    return "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 200 200] /Contents " + contents +
           " /Resources << >> >>";
}

Bytes stream(const Bytes &data)
{
    return PdfFixture::streamBody({}, data);
}

Bytes endless(const Bytes &data)
{
    return stream(data).replace("\nendstream", "");
}

/// The same file with a table that cannot be found.
Bytes withoutTable(Bytes file)
{
    return file.replace("startxref\n", "startxref\n1");
}

/// The same file with objects that begin in the middle of a line: QPDF does not find them when it
/// has to look for them, and MuPDF does.
Bytes inTheMiddleOfLines(Bytes file, const QList<Bytes> &numbers)
{
    for (const Bytes &number : numbers) {
        file.replace(Bytes('\n' + number + " 0 obj"), Bytes(' ' + number + " 0 obj"));
    }
    return file;
}

/// Three pages in red, green and blue, of which MuPDF finds none: it takes all that follows the
/// first stream for a part of it.
Bytes hiddenPages()
{
    return withoutTable(PdfFixture::fromObjects(
        {kCatalogue, treeOf("7 0 R 8 0 R 9 0 R", 3), endless(kRed), "(between)", endless(kGreen),
         endless(kBlue), pageShowing("3 0 R"), pageShowing("5 0 R"), pageShowing("6 0 R")}));
}

/// The colours of all pages of a file, as inspecting it counts them.
QStringList coloursIn(const QString &path, const QString &password = {})
{
    QStringList colours;
    for (int i = 0; i < inspect(path, password).pageSizes.size(); ++i) {
        colours.append(middle(render(filePage(path, i, 0, password)).image).name());
    }
    return colours;
}

QList<PdfSourcePage> allPages(const QString &path, const QString &password = {})
{
    QList<PdfSourcePage> pages;
    for (int i = 0; i < inspect(path, password).pageSizes.size(); ++i) {
        pages.append(filePage(path, i, 0, password));
        pages.last().isOfMainDocument = true;
    }
    return pages;
}

const QString kRedName = u"#ff0000"_s;
const QString kGreenName = u"#00ff00"_s;
const QString kBlueName = u"#0000ff"_s;

} // namespace

/// Files that one of the two libraries reads better than the other.
class TestEngineDamage : public QObject
{
    Q_OBJECT

private slots:
    void filesThatMuPdfGivesUp_data();
    void filesThatMuPdfGivesUp();
    void pagesOfAHiddenTreeKeepTheirPlaces();
    void hiddenPagesOutliveASaveOverTheirFile();
    void hiddenPagesOfAProtectedFileTakeItsPassword();
    void copiesGoWithTheirSessions();
    void savesHaveWhatIsShown_data();
    void savesHaveWhatIsShown();
    void repairedFilesKeepTheirProtection_data();
    void repairedFilesKeepTheirProtection();
    void partsOfRepairedFilesKeepTheirProtection_data();
    void partsOfRepairedFilesKeepTheirProtection();
    void aWrongLengthOfKeyIsPutRight_data();
    void aWrongLengthOfKeyIsPutRight();
};

void TestEngineDamage::filesThatMuPdfGivesUp_data()
{
    QTest::addColumn<Bytes>("file");
    QTest::addColumn<QStringList>("colours");
    const auto row = [](const char *name, const Bytes &file, const QStringList &colours) {
        QTest::newRow(name) << file << colours;
    };
    row("page tree behind a stream without an end", hiddenPages(),
        {kRedName, kGreenName, kBlueName});
    row("page behind a stream without an end",
        withoutTable(PdfFixture::fromObjects({kCatalogue, treeOf("5 0 R", 1), endless(kRed),
                                              "(between)", pageShowing("3 0 R"), stream({})})),
        {kRedName});
    row("contents behind a stream without an end",
        withoutTable(PdfFixture::fromObjects(
            {kCatalogue, treeOf("3 0 R", 1), pageShowing("[4 0 R 5 0 R]"), endless(kRed),
             PdfFixture::streamBody("/Filter /ASCIIHexDecode", kGreen.toHex()), stream({})})),
        {kGreenName});
    row("catalogue with a stray reference",
        PdfFixture::fromObjects({"<< /Type /Catalog /X 1 0 R 0 R /Pages 2 0 R >>",
                                 treeOf("3 0 R", 1), pageShowing("4 0 R"), stream(kRed)}),
        {kRedName});
    row("catalogue without a type and with a stray reference",
        PdfFixture::fromObjects({"<< /X 1 0 R 0 R /Pages 2 0 R >>", treeOf("3 0 R", 1),
                                 pageShowing("4 0 R"), stream(kRed)}),
        {kRedName});
    row("page tree with a stray reference",
        PdfFixture::fromObjects({kCatalogue, "<< /Type /Pages /Kids [3 0 R /X 1 0 R 0 R] >>",
                                 pageShowing("4 0 R"), stream(kBlue)}),
        {kBlueName});
}

void TestEngineDamage::filesThatMuPdfGivesUp()
{
    QFETCH(const Bytes, file);
    QFETCH(const QStringList, colours);
    Folder folder;
    const QString path = folder.add(u"in.pdf"_s, file);
    QCOMPARE(coloursIn(path), colours);
    const QString target = folder.path(u"out.pdf"_s);
    const Outcome saved = save(allPages(path), target);
    QVERIFY2(saved.ok, qPrintable(saved.message));
    QCOMPARE(coloursIn(target), colours);
}

void TestEngineDamage::pagesOfAHiddenTreeKeepTheirPlaces()
{
    Folder folder;
    const QString path = folder.add(u"in.pdf"_s, hiddenPages());
    const QString target = folder.path(u"out.pdf"_s);
    const Outcome saved = save({filePage(path, 2), filePage(path, 0)}, target);
    QVERIFY2(saved.ok, qPrintable(saved.message));
    QCOMPARE(coloursIn(target), (QStringList{kBlueName, kRedName}));
    QCOMPARE(save({filePage(path, 3)}, target).error, PdfBackendError::InvalidDocument);
}

void TestEngineDamage::hiddenPagesOutliveASaveOverTheirFile()
{
    Folder folder;
    const QString path = folder.add(u"in.pdf"_s, hiddenPages());
    PdfDocumentInfo before;
    QVERIFY(PdfEditorBackend::inspectDocument(path, {}, &before, nullptr, nullptr));
    QList<PdfSourcePage> pages = allPages(path);
    QCOMPARE(pages.size(), 3);
    for (PdfSourcePage &page : pages) {
        page.revision = before.revision;
    }
    const Outcome saved = save({pages.at(1)}, path);
    QVERIFY2(saved.ok, qPrintable(saved.message));
    QCOMPARE(coloursIn(path), QStringList{kGreenName});
    for (int i = 0; i < 3; ++i) {
        const QString shown = middle(render(pages.at(i)).image).name();
        QCOMPARE(shown, (QStringList{kRedName, kGreenName, kBlueName}.at(i)));
    }
    const QString target = folder.path(u"out.pdf"_s);
    QVERIFY(save(pages, target).ok);
    QCOMPARE(coloursIn(target), (QStringList{kRedName, kGreenName, kBlueName}));
}

void TestEngineDamage::hiddenPagesOfAProtectedFileTakeItsPassword()
{
    // The encryption dictionary is hidden too.
    Bytes file = PdfFixture::encrypted(PdfFixture::pagesByNumber(2), {"user", "owner", 6});
    file = withoutTable(file.replace("endstream", "         "));
    Folder folder;
    const QString path = folder.add(u"in.pdf"_s, file);
    QCOMPARE(inspect(path).error, PdfBackendError::PasswordRequired);
    QCOMPARE(inspect(path, u"wrong"_s).error, PdfBackendError::InvalidPassword);
    QCOMPARE(inspect(path, u"user"_s).pageSizes.size(), 2);
    const QString target = folder.path(u"out.pdf"_s);
    const Outcome saved = save(allPages(path, u"user"_s), target);
    QVERIFY2(saved.ok, qPrintable(saved.message));
    QCOMPARE(inspect(target).error, PdfBackendError::PasswordRequired);
    for (const QString &password : {u"user"_s, u"owner"_s}) {
        COMPARE_COLOUR(middle(render(filePage(target, 1, 0, password)).image),
                       PdfFixture::numberColour(1), 1);
    }
}

void TestEngineDamage::copiesGoWithTheirSessions()
{
    const auto copies = [] {
        const QString own = QCoreApplication::applicationName() + u".*"_s;
        const QStringList names = QDir::temp().entryList({own}, QDir::Files);
        return QSet<QString>(names.begin(), names.end());
    };
    Folder folder;
    const QSet<QString> before = copies();
    const QString path = folder.add(u"in.pdf"_s, hiddenPages());
    QCOMPARE(inspect(path).pageSizes.size(), 3);
    const QSet<QString> added = copies() - before;
    QCOMPARE(added.size(), 1);
    // Further sessions share it.
    QVERIFY(render(filePage(path, 2)).ok);
    QVERIFY((copies() - before - added).isEmpty());
    // Saving over the file closes its sessions.
    QVERIFY(save(allPages(path), path).ok);
    QVERIFY((copies() & added).isEmpty());
}

void TestEngineDamage::savesHaveWhatIsShown_data()
{
    QTest::addColumn<Bytes>("file");
    QTest::addColumn<QString>("colour");
    QTest::newRow("contents that begin in the middle of a line")
        << inTheMiddleOfLines(
               withoutTable(PdfFixture::fromObjects(
                   {kCatalogue, treeOf("3 0 R", 1), pageShowing("4 0 R"), stream(kRed)})),
               {"4"})
        << kRedName;
    QTest::newRow("contents without an end, and without a table")
        << withoutTable(
               PdfFixture::fromObjects({kCatalogue, treeOf("3 0 R", 1), pageShowing("4 0 R"),
                                        endless(kGreen).replace("/Length", "/Size")}))
               .replace("endobj", {})
        << kGreenName;
    QTest::newRow("page that is a stream")
        << PdfFixture::fromObjects(
               {kCatalogue, treeOf("3 0 R", 1),
                "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 200 200] /Contents 4 0 R /Length 0 >>"
                "\nstream\n\nendstream",
                stream(kGreen)})
        << kGreenName;
    QTest::newRow("page instead of a tree, with a box above it")
        << PdfFixture::fromObjects(
               {"<< /Type /Catalog /Pages 3 0 R >>",
                "<< /Type /Pages /Kids [3 0 R] /Count 1 /MediaBox [0 0 200 200] >>",
                "<< /Type /Page /Parent 2 0 R /Contents 4 0 R >>", stream(kBlue)})
        << kBlueName;
}

void TestEngineDamage::savesHaveWhatIsShown()
{
    QFETCH(const Bytes, file);
    QFETCH(const QString, colour);
    Folder folder;
    const QString path = folder.add(u"in.pdf"_s, file);
    QCOMPARE(coloursIn(path), QStringList{colour});
    const QString target = folder.path(u"out.pdf"_s);
    const Outcome saved = save(allPages(path), target);
    QVERIFY2(saved.ok, qPrintable(saved.message));
    QCOMPARE(coloursIn(target), QStringList{colour});
    QCOMPARE(inspect(target).pageSizes, inspect(path).pageSizes);
}

void TestEngineDamage::repairedFilesKeepTheirProtection_data()
{
    QTest::addColumn<int>("revision");
    QTest::addColumn<QString>("opened");
    for (const int revision : {3, 4, 6}) {
        for (const char *password : {"user", "owner"}) {
            QTest::addRow("revision %d, %s password", revision, password)
                << revision << QString::fromLatin1(password);
        }
    }
}

void TestEngineDamage::repairedFilesKeepTheirProtection()
{
    QFETCH(const int, revision);
    QFETCH(const QString, opened);
    Bytes file = PdfFixture::encrypted(PdfFixture::pagesByNumber(3), {"user", "owner", revision});
    // QPDF finds no trailer, which MuPDF recognises by what is in it.
    file = withoutTable(file.replace("trailer", "tralier"));
    Folder folder;
    const QString path = folder.add(u"in.pdf"_s, file);
    QCOMPARE(inspect(path).error, PdfBackendError::PasswordRequired);
    QList<PdfSourcePage> pages = allPages(path, opened);
    QCOMPARE(pages.size(), 3);
    pages.removeAt(1);
    const QString target = folder.path(u"out.pdf"_s);
    const Outcome saved = save(pages, target);
    QVERIFY2(saved.ok, qPrintable(saved.message));
    QCOMPARE(inspect(target).error, PdfBackendError::PasswordRequired);
    QCOMPARE(inspect(target, u"wrong"_s).error, PdfBackendError::InvalidPassword);
    for (const QString &password : {u"user"_s, u"owner"_s}) {
        QCOMPARE(numbersOf(allPages(target, password)), (QList<int>{0, 2}));
    }
}

void TestEngineDamage::partsOfRepairedFilesKeepTheirProtection_data()
{
    QTest::addColumn<int>("revision");
    QTest::addColumn<Bytes>("trailer");
    for (const int revision : {3, 4, 6}) {
        QTest::addRow("revision %d, no trailer", revision) << revision << Bytes();
        // QPDF takes the pages for unprotected.
        QTest::addRow("revision %d, one that says nothing of it", revision)
            << revision << Bytes("\ntrailer << /Size 40 /Root 1 0 R >>\n");
    }
}

void TestEngineDamage::partsOfRepairedFilesKeepTheirProtection()
{
    QFETCH(const int, revision);
    QFETCH(const Bytes, trailer);
    // So many that several are made of one extract.
    constexpr int kParts = 20;
    Bytes file =
        PdfFixture::encrypted(PdfFixture::pagesByNumber(kParts), {"user", "owner", revision});
    file = withoutTable(file.replace("trailer", "tralier"));
    file += trailer;
    Folder folder;
    const QString path = folder.add(u"in.pdf"_s, file);
    QCOMPARE(inspect(path).error, PdfBackendError::PasswordRequired);
    QList<PdfOutputFile> files;
    for (const PdfSourcePage &page : allPages(path, u"user"_s)) {
        files.append({{page}, folder.path(u"part%1.pdf"_s.arg(files.size()))});
    }
    QCOMPARE(files.size(), kParts);
    for (const PdfSaveOutcome &outcome : PdfEditorBackend::saveDocuments(files)) {
        QVERIFY2(outcome.error == PdfBackendError::None, qPrintable(outcome.message));
    }
    for (int i = 0; i < kParts; ++i) {
        const QString part = files.at(i).path;
        QCOMPARE(inspect(part).error, PdfBackendError::PasswordRequired);
        for (const QString &password : {u"user"_s, u"owner"_s}) {
            QCOMPARE(numbersOf(allPages(part, password)), QList<int>{i});
        }
    }
}

void TestEngineDamage::aWrongLengthOfKeyIsPutRight_data()
{
    QTest::addColumn<int>("revision");
    QTest::addColumn<Bytes>("entry");
    for (const int revision : {3, 4}) {
        // QPDF takes 128 bits for such a length, and MuPDF gives up.
        QTest::addRow("revision %d, no whole bytes", revision) << revision << Bytes("/Length 132 ");
        QTest::addRow("revision %d, in bytes", revision) << revision << Bytes("/Length 16 ");
        QTest::addRow("revision %d, too long", revision) << revision << Bytes("/Length 256 ");
    }
    // Before revision 4, that would mean 40 bits.
    QTest::newRow("revision 4, none") << 4 << Bytes("/Lenght 128 ");
}

void TestEngineDamage::aWrongLengthOfKeyIsPutRight()
{
    QFETCH(const int, revision);
    QFETCH(const Bytes, entry);
    Bytes file = PdfFixture::encrypted(PdfFixture::pagesByNumber(2), {"user", "owner", revision});
    QVERIFY(file.contains("/Length 128 "));
    file.replace("/Length 128 ", entry);
    Folder folder;
    const QString path = folder.add(u"in.pdf"_s, file);
    const QString target = folder.path(u"out.pdf"_s);
    QCOMPARE(inspect(path).error, PdfBackendError::PasswordRequired);
    const Outcome saved = save(allPages(path, u"user"_s), target);
    QVERIFY2(saved.ok, qPrintable(saved.message));
    QCOMPARE(numbersOf(allPages(target, u"owner"_s)), (QList<int>{0, 1}));
}

QTEST_GUILESS_MAIN(TestEngineDamage)
#include "tst_engine_damage.moc"
