// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdfcore/fidelity/fidelity_case.h"
#include "tests/pdfcore/fidelity/fidelity_soundness.h"
#include "tests/support/pdf_fixture.h"

using namespace EngineCalls;
using namespace Qt::StringLiterals;

namespace {

using Bytes = QByteArray;

constexpr QSize kSize(150, 150);

/// Compares the pictures of a saved list of pages of everything() with those of its sources. Fields
/// that are no longer signed look different, so the sources are taken without signatures.
QStringList pictureProblems(const FidelityCase &test, const QString &list)
{
    FidelityCase sources;
    for (const char *prefix : {"MAIN", "OTHER"}) {
        sources.add(prefix, FidelityFixture::unsignedEverything(prefix).file());
    }
    const QList<PdfSourcePage> pages = sources.pages(list);
    QStringList problems;
    for (int i = 0; i < pages.size(); ++i) {
        if (!test.looksLike(i, pages.at(i))) {
            problems.append(QStringLiteral("page %1 looks different").arg(i + 1));
        }
    }
    return problems;
}

} // namespace

/// The pages themselves after a save.
class TestFidelityPages : public QObject
{
    Q_OBJECT

private slots:
    void pagesStayAsTheyAre_data() { FidelityCase::addLists(); }
    void pagesStayAsTheyAre();
    void pagesLookAsBefore_data() { FidelityCase::addLists(); }
    void pagesLookAsBefore();
    void boxesStay();
    void inheritedEntriesStay();
    void pagesWithoutResourcesSayThatTheyHaveNone();
    void otherEntriesOfPagesStay();
    void copiesTurnAlone();
    void contentInParts();
    void protectedDocuments();
    void wholeResultIsSound_data() { FidelityCase::addLists(); }
    void wholeResultIsSound();
    void savedAgainAndAgain();
};

void TestFidelityPages::pagesStayAsTheyAre()
{
    QFETCH(QString, list);
    FidelityCase test({"MAIN", "OTHER"});
    const auto saved = test.save(list);
    NO_PROBLEMS(saved->pageProblems());
    NO_PROBLEMS(FidelitySoundness::pageProblems(saved->output()));
}

void TestFidelityPages::pagesLookAsBefore()
{
    QFETCH(QString, list);
    FidelityCase test({"MAIN", "OTHER"});
    const auto saved = test.save(list);
    NO_PROBLEMS(saved->pageProblems());
    NO_PROBLEMS(pictureProblems(test, list));
}

void TestFidelityPages::boxesStay()
{
    FidelityCase test({"MAIN"});
    const auto saved = test.save(u"M4 M2+90 M3"_s);
    NO_PROBLEMS(saved->pageProblems());
    const auto box = [&](int page, const char *key) {
        return saved->output().describe(saved->output().attribute(page, key));
    };
    QCOMPARE(box(0, "/MediaBox"), Bytes("[0 0 300 400]"));
    QCOMPARE(box(0, "/BleedBox"), Bytes("[5 5 295 395]"));
    QCOMPARE(box(0, "/TrimBox"), Bytes("[10 10 290 390]"));
    QCOMPARE(box(0, "/ArtBox"), Bytes("[30 30 270 370]"));
    QCOMPARE(box(1, "/CropBox"), Bytes("[20 20 280 380]"));
    QCOMPARE(box(1, "/Rotate"), Bytes("null"));
    QCOMPARE(box(2, "/UserUnit"), Bytes("2"));
}

void TestFidelityPages::inheritedEntriesStay()
{
    FidelityCase test({"MAIN"});
    const auto saved = test.save(u"M8 M1 M5+90"_s);
    NO_PROBLEMS(saved->pageProblems());
    const QList<QSizeF> sizes = inspect(test.output()).pageSizes;
    QCOMPARE(sizes, QList<QSizeF>({QSizeF(400, 300), QSizeF(300, 400), QSizeF(300, 400)}));
}

void TestFidelityPages::pagesWithoutResourcesSayThatTheyHaveNone()
{
    FidelityAssembly document = FidelityFixture::plain("MAIN", 3);
    document.replace("page2", "/Resources << /Font << /F1 {font} >> >>", "");
    document.replace("page3", "/Resources << /Font << /F1 {font} >> >>", "/Resources null");
    FidelityCase test;
    test.add("MAIN", document.file());
    for (const QString &list : {u"M1 M2 M3"_s, u"M3 M2 M2 M1"_s}) {
        const auto saved = test.save(list);
        const qsizetype count = saved->output().marks().size();
        for (int page = 0; page < count; ++page) {
            const bool hasFonts = saved->output().marks().at(page).endsWith(u'1');
            const Bytes resources =
                saved->output().describe(saved->output().attribute(page, "/Resources"));
            QCOMPARE(resources.contains("/Font"), hasFonts);
            QVERIFY2(hasFonts || resources == "<<>>", resources.constData());
        }
    }
}

void TestFidelityPages::otherEntriesOfPagesStay()
{
    FidelityAssembly document = FidelityFixture::plain("MAIN", 3);
    const Bytes entries = "/Group << /S /Transparency /CS /DeviceRGB /I true >> /Trans << /S "
                          "/Wipe /D 2 >> /Dur 7 /Metadata {metadata} /LastModified (D:2020) /Tabs "
                          "/R /Thumb {thumb} /AA << /O << /S /JavaScript /JS (opened();) >> >> "
                          "/VP [<< /Type /Viewport /BBox [0 0 9 9] >>] /MakerData (kept) ";
    document.addEntries("page1", entries);
    document.setStream("metadata", "/Type /Metadata /Subtype /XML", "<x/>");
    document.setStream("thumb",
                       "/Type /XObject /Subtype /Image /Width 1 /Height 1 /ColorSpace /DeviceGray "
                       "/BitsPerComponent 8",
                       "\x80");
    FidelityCase test;
    test.add("MAIN", document.file());
    test.add("OTHER", FidelityFixture::plain("OTHER", 1).file());
    FidelityDocument source(test.path('M'));
    for (const QString &list : {u"M1 M3"_s, u"M3 M1"_s, u"O1 M1"_s, u"M2 M1 M1+90"_s}) {
        const auto saved = test.save(list);
        NO_PROBLEMS(saved->pageProblems());
        for (qsizetype i = 0; i < saved->output().marks().size(); ++i) {
            if (saved->output().marks().at(i) != u"MAIN-1") {
                continue;
            }
            for (const char *key : {"/Group", "/Trans", "/Dur", "/Metadata", "/LastModified",
                                    "/Tabs", "/Thumb", "/AA", "/VP", "/MakerData"}) {
                QCOMPARE(saved->output().describe(saved->output().page(i).getKey(key)),
                         source.describe(source.page(0).getKey(key)));
            }
        }
    }
}

void TestFidelityPages::copiesTurnAlone()
{
    FidelityCase test({"MAIN"});
    const auto saved = test.save(u"M5 M5+90 M5+180 M5 M5+270"_s);
    NO_PROBLEMS(saved->pageProblems());
    NO_PROBLEMS(pictureProblems(test, u"M5 M5+90 M5+180 M5 M5+270"_s));
}

void TestFidelityPages::contentInParts()
{
    FidelityAssembly document = FidelityFixture::plain("MAIN", 2);
    document.replace("page1", "/Contents {content1}", "/Contents [{part1} {part2} {part1}]");
    document.setStream("part1", {}, "BT /F1 24 Tf 30 250 Td (MAIN-1)");
    document.setStream("part2", {}, "Tj ET 1 0 0 rg 9 9 90 90 re f");
    FidelityCase test;
    test.add("MAIN", document.file());
    const auto saved = test.save(u"M2 M1 M1"_s);
    NO_PROBLEMS(saved->pageProblems());
    for (int i = 0; i < 3; ++i) {
        QCOMPARE(distance(render(filePage(test.output(), i), kSize).image,
                          render(filePage(test.path('M'), i == 0 ? 1 : 0), kSize).image),
                 0);
    }
    NO_PROBLEMS(FidelitySoundness::syntaxProblems(test.output()));
}

void TestFidelityPages::protectedDocuments()
{
    FidelityCase test;
    test.add("MAIN",
             PdfFixture::encrypted(FidelityFixture::everything("MAIN").file(), {"one", "owner", 6}),
             u"one"_s);
    test.add("OTHER",
             PdfFixture::encrypted(FidelityFixture::everything("OTHER").file(), {"", "owner", 4}));
    const auto saved = test.save(u"M8-1 _ O1-8 M1"_s);
    NO_PROBLEMS(saved->problems());
    NO_PROBLEMS(pictureProblems(test, u"M8-1"_s));
    QVERIFY(!saved->output().pdf().isEncrypted());
}

void TestFidelityPages::wholeResultIsSound()
{
    QFETCH(QString, list);
    FidelityCase test({"MAIN", "OTHER"});
    NO_PROBLEMS(test.save(list)->problems());
}

void TestFidelityPages::savedAgainAndAgain()
{
    FidelityCase test({"MAIN", "OTHER"});
    QString list = u"M1-4 O1-8 M5-8"_s;
    NO_PROBLEMS(test.save(list)->problems());
    // Each save takes the result of the one before; what it says of the first must stay true.
    qsizetype smallest = contentOf(test.output()).size();
    for (int run = 0; run < 4; ++run) {
        const Bytes before = contentOf(test.output());
        FidelityCase again;
        again.add("MAIN", before);
        const auto saved = again.save(u"M1-16"_s);
        NO_PROBLEMS(saved->problems());
        const qsizetype size = contentOf(again.output()).size();
        QVERIFY2(size < smallest + smallest / 20, "the file grows with every save");
        QVERIFY(PdfFixture::write(test.output(), contentOf(again.output())));
    }
}

QTEST_GUILESS_MAIN(TestFidelityPages)
#include "tst_fidelity_pages.moc"
