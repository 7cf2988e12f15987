// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdfcore/engine_calls.h"
#include "tests/pdfcore/fidelity/fidelity_case.h"
#include "tests/pdfcore/fidelity/fidelity_comparison.h"
#include "tests/pdfcore/fidelity/fidelity_fields.h"
#include "tests/pdfcore/fidelity/fidelity_fixture.h"
#include "tests/pdfcore/fidelity/fidelity_outline.h"
#include "tests/pdfcore/fidelity/fidelity_soundness.h"
#include "tests/support/pdf_fixture.h"

#include <qpdf/QPDFWriter.hh>

#include <QFile>

#include <functional>

using namespace EngineCalls;
using namespace Qt::StringLiterals;

namespace {

using Change = std::function<void(QPDF &pdf)>;

QByteArray unsignedEverything()
{
    return FidelityFixture::unsignedEverything("MAIN").file();
}

/// Copies a file with QPDF, changed on the way.
void copyFile(const QString &from, const QString &to, const Change &change = {})
{
    // QPDF keeps the pointer to the name of what it writes.
    const QByteArray source = QFile::encodeName(from);
    const QByteArray target = QFile::encodeName(to);
    QPDF pdf;
    pdf.processFile(source.constData());
    if (change) {
        change(pdf);
    }
    QPDFWriter writer(pdf, target.constData());
    writer.setObjectStreamMode(qpdf_o_generate);
    writer.write();
}

QList<PdfSourcePage> allPages(const QString &path)
{
    QList<PdfSourcePage> pages;
    for (int i = 0; i < FidelityFixture::kPages; ++i) {
        pages.append(filePage(path, i));
    }
    return pages;
}

QPDFObjectHandle object(const std::string &text)
{
    return QPDFObjectHandle::parse(text);
}

QPDFObjectHandle pageOf(QPDF &pdf, std::size_t index)
{
    return pdf.getAllPages().at(index);
}

QPDFObjectHandle annotation(QPDF &pdf, std::size_t page, int index)
{
    return pageOf(pdf, page).getKey("/Annots").getArrayItem(index);
}

/// The first annotation of a kind on a page.
QPDFObjectHandle firstOf(QPDF &pdf, std::size_t page, const std::string &kind)
{
    for (QPDFObjectHandle &item : pageOf(pdf, page).getKey("/Annots").getArrayAsVector()) {
        if (item.getKey("/Subtype").getName() == kind) {
            return item;
        }
    }
    return QPDFObjectHandle::newNull();
}

QPDFObjectHandle field(QPDF &pdf, int index)
{
    return pdf.getRoot().getKey("/AcroForm").getKey("/Fields").getArrayItem(index);
}

} // namespace

/// The documents of the other tests, and whether the checks see what is wrong with a file.
class TestFidelityFixture : public QObject
{
    Q_OBJECT

private slots:
    void fixturesAreSound_data();
    void fixturesAreSound();
    void everythingIsThere();
    void plainCopyIsTheSame();
    void checksSeeWhatIsWrong_data();
    void checksSeeWhatIsWrong();
    void marksOfPages();
    void missingFileIsAProblem();
};

void TestFidelityFixture::fixturesAreSound_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::newRow("everything") << FidelityFixture::everything("MAIN").file();
    QTest::newRow("another") << FidelityFixture::everything("OTHER").file();
    QTest::newRow("unsigned") << unsignedEverything();
    QTest::newRow("plain") << FidelityFixture::plain("PLAIN", 3).file();
}

void TestFidelityFixture::fixturesAreSound()
{
    QFETCH(QByteArray, file);
    Folder folder;
    NO_PROBLEMS(FidelitySoundness::problems(folder.add(u"in.pdf"_s, file)));
}

void TestFidelityFixture::everythingIsThere()
{
    Folder folder;
    FidelityDocument document(folder.add(u"in.pdf"_s, FidelityFixture::everything("MAIN").file()));
    QCOMPARE(document.marks().size(), FidelityFixture::kPages);
    QCOMPARE(document.marks().constFirst(), u"MAIN-1"_s);
    QCOMPARE(document.marks().constLast(), u"MAIN-8"_s);
    QCOMPARE(
        FidelityOutline::titles(FidelityOutline::read(document)),
        QStringList({u"Über @MAIN-1"_s, u"Part one"_s, u"  Chapter @MAIN-2"_s,
                     u"    Section @MAIN-3"_s, u"    Section @MAIN-4"_s, u"  Chapter @MAIN-5"_s,
                     u"    Section @MAIN-6"_s, u"    Web"_s, u"Part two"_s, u"  Chapter @MAIN-7"_s,
                     u"  Chapter @MAIN-8"_s, u"Elsewhere"_s}));
    QCOMPARE(document.labels(), QStringList({u"i"_s, u"ii"_s, u"A-5"_s, u"A-6"_s, u"A-7"_s, u"A"_s,
                                             u"B"_s, u"End"_s}));
    QCOMPARE(document.names("/EmbeddedFiles").size(), 2U);
    QCOMPARE(document.names("/Dests").size(), 16U);
    QCOMPARE(FidelityFields::calculationOrder(document),
             QStringList({u"total"_s, u"person.first"_s}));
    int links = 0;
    for (qsizetype i = 0; i < document.marks().size(); ++i) {
        for (QPDFObjectHandle item : document.annotations(i)) {
            const QString wanted =
                FidelityFixture::markInText(fidelityText(item.getKey("/Contents")));
            if (!wanted.isEmpty()) {
                QCOMPARE(document.targetOf(item).mark, wanted);
                ++links;
            }
        }
    }
    QCOMPARE(links, 8 * FidelityFixture::kPages);
}

void TestFidelityFixture::plainCopyIsTheSame()
{
    Folder folder;
    const QString path = folder.add(u"in.pdf"_s, unsignedEverything());
    const QString copy = folder.path(u"copy.pdf"_s);
    copyFile(path, copy);
    NO_PROBLEMS(FidelityComparison(allPages(path), copy).problems());
}

void TestFidelityFixture::checksSeeWhatIsWrong_data()
{
    QTest::addColumn<Change>("change");
    QTest::addColumn<QString>("complaint");
    const auto row = [](const char *name, const QString &complaint, const Change &change) {
        QTest::newRow(name) << change << complaint;
    };
    row("no outline", u"outline"_s, [](QPDF &pdf) { pdf.getRoot().removeKey("/Outlines"); });
    row("outline entry to another page", u"Über"_s, [](QPDF &pdf) {
        pdf.getRoot()
            .getKey("/Outlines")
            .getKey("/First")
            .getKey("/Dest")
            .setArrayItem(0, pageOf(pdf, 4));
    });
    row("outline entry closed", u"Part one"_s, [](QPDF &pdf) {
        pdf.getRoot()
            .getKey("/Outlines")
            .getKey("/First")
            .getKey("/Next")
            .replaceKey("/Count", object("-4"));
    });
    row("wrong count", u"has the count"_s, [](QPDF &pdf) {
        pdf.getRoot().getKey("/Outlines").getKey("/Last").replaceKey("/Count", object("2"));
    });
    row("outline in a ring", u"comes twice"_s, [](QPDF &pdf) {
        QPDFObjectHandle outline = pdf.getRoot().getKey("/Outlines");
        outline.getKey("/Last").replaceKey("/Next", outline.getKey("/First"));
    });
    row("link to another page", u"annotations of page 1"_s,
        [](QPDF &pdf) { annotation(pdf, 0, 1).getKey("/Dest").setArrayItem(0, pageOf(pdf, 3)); });
    row("named destination lost", u"leads to no page"_s,
        [](QPDF &pdf) { pdf.getRoot().getKey("/Dests").removeKey("/ch3"); });
    row("names out of order", u"out of order"_s, [](QPDF &pdf) {
        QPDFObjectHandle files =
            pdf.getRoot().getKey("/Names").getKey("/EmbeddedFiles").getKey("/Names");
        files.setArrayItem(0, QPDFObjectHandle::newString("zebra"));
    });
    row("page left behind", u"outside the page tree"_s, [](QPDF &pdf) {
        pdf.getRoot().replaceKey("/Old",
                                 pdf.makeIndirectObject(object("<< /Type /Page /Annots [] >>")));
    });
    row("shared annotation", u"share an annotation"_s,
        [](QPDF &pdf) { pageOf(pdf, 1).getKey("/Annots").appendItem(annotation(pdf, 0, 0)); });
    row("annotation of another page", u"/P is not the page"_s,
        [](QPDF &pdf) { annotation(pdf, 0, 0).replaceKey("/P", pageOf(pdf, 1)); });
    row("pop-up lost", u"/Popup is not on the page"_s, [](QPDF &pdf) {
        QPDFObjectHandle all = pageOf(pdf, 0).getKey("/Annots");
        for (int i = 0; i < all.getArrayNItems(); ++i) {
            if (all.getArrayItem(i).getKey("/Subtype").getName() == "/Popup") {
                all.eraseItem(i);
            }
        }
    });
    row("reply on its own", u"annotations of page 1"_s, [](QPDF &pdf) {
        for (QPDFObjectHandle &item : pageOf(pdf, 0).getKey("/Annots").getArrayAsVector()) {
            item.removeKey("/IRT");
        }
    });
    row("form lost", u"belongs to no field"_s,
        [](QPDF &pdf) { pdf.getRoot().removeKey("/AcroForm"); });
    row("field lost", u"belongs to no field"_s,
        [](QPDF &pdf) { pdf.getRoot().getKey("/AcroForm").getKey("/Fields").eraseItem(0); });
    row("field without a page", u"stands on 0 pages"_s, [](QPDF &pdf) {
        pdf.getRoot()
            .getKey("/AcroForm")
            .getKey("/Fields")
            .appendItem(pdf.makeIndirectObject(object("<< /FT /Tx /T (lost) >>")));
    });
    row("another value", u"fields of page 1"_s,
        [](QPDF &pdf) { field(pdf, 0).replaceKey("/V", object("(other)")); });
    row("another look", u"fields of page 1"_s, [](QPDF &pdf) {
        field(pdf, 0).getKey("/AP").getKey("/N").replaceStreamData("0 g", object("null"),
                                                                   object("null"));
    });
    row("another font", u"fields of page 1"_s, [](QPDF &pdf) {
        QPDFObjectHandle fonts =
            field(pdf, 0).getKey("/AP").getKey("/N").getDict().getKey("/Resources").getKey("/Font");
        fonts.replaceKey("/Fa", object("<< /Type /Font /Subtype /Type1 /BaseFont /Symbol >>"));
    });
    row("another name", u"was renamed"_s,
        [](QPDF &pdf) { field(pdf, 0).replaceKey("/T", object("(other)")); });
    row("equal names", u"two fields are called"_s,
        [](QPDF &pdf) { field(pdf, 1).replaceKey("/T", object("(name)")); });
    row("font of a field lost", u"no font"_s,
        [](QPDF &pdf) { pdf.getRoot().getKey("/AcroForm").removeKey("/DR"); });
    row("still signed", u"/SigFlags is still there"_s,
        [](QPDF &pdf) { pdf.getRoot().getKey("/AcroForm").replaceKey("/SigFlags", object("3")); });
    row("permissions", u"/Perms is still there"_s,
        [](QPDF &pdf) { pdf.getRoot().replaceKey("/Perms", object("<< >>")); });
    row("calculation order turned", u"calculation order"_s, [](QPDF &pdf) {
        QPDFObjectHandle order = pdf.getRoot().getKey("/AcroForm").getKey("/CO");
        order.appendItem(order.getArrayItem(0));
        order.eraseItem(0);
    });
    row("labels", u"labels"_s, [](QPDF &pdf) {
        pdf.getRoot().replaceKey("/PageLabels", object("<< /Nums [0 << /S /D >>] >>"));
    });
    row("attachment", u"attachments"_s,
        [](QPDF &pdf) { pdf.getRoot().getKey("/Names").removeKey("/EmbeddedFiles"); });
    row("title", u"/Info /Title"_s, [](QPDF &pdf) {
        pdf.getTrailer().getKey("/Info").replaceKey("/Title", object("(other)"));
    });
    row("metadata", u"/Metadata"_s, [](QPDF &pdf) {
        pdf.getRoot()
            .getKey("/Metadata")
            .replaceStreamData("other", object("null"), object("null"));
    });
    row("open action", u"/OpenAction"_s,
        [](QPDF &pdf) { pdf.getRoot().getKey("/OpenAction").setArrayItem(0, pageOf(pdf, 0)); });
    row("group shown", u"optional content"_s,
        [](QPDF &pdf) { pdf.getRoot().getKey("/OCProperties").getKey("/D").removeKey("/OFF"); });
    row("optional content lost", u"names the group"_s,
        [](QPDF &pdf) { pdf.getRoot().removeKey("/OCProperties"); });
    row("structure of a page lost", u"page 3 (MAIN-3) structure: nothing instead of"_s,
        [](QPDF &pdf) { pageOf(pdf, 2).removeKey("/StructParents"); });
    row("structure lost", u"the document no structure"_s,
        [](QPDF &pdf) { pdf.getRoot().removeKey("/StructTreeRoot"); });
    row("parent of an element", u"has another parent"_s, [](QPDF &pdf) {
        QPDFObjectHandle root = pdf.getRoot().getKey("/StructTreeRoot");
        root.getKey("/K").getArrayItem(0).getKey("/K").getArrayItem(0).replaceKey("/P", root);
    });
    row("element of a page that is gone", u"belongs to a page that is gone"_s, [](QPDF &pdf) {
        QPDFObjectHandle body =
            pdf.getRoot().getKey("/StructTreeRoot").getKey("/K").getArrayItem(0);
        body.getKey("/K").getArrayItem(1).replaceKey("/Pg", object("null"));
        body.getKey("/K").getArrayItem(1).replaceKey("/Pg", pdf.makeIndirectObject(object("<<>>")));
    });
    row("page turned", u"/Rotate"_s,
        [](QPDF &pdf) { pageOf(pdf, 0).replaceKey("/Rotate", object("90")); });
    row("user unit", u"/UserUnit"_s, [](QPDF &pdf) { pageOf(pdf, 2).removeKey("/UserUnit"); });
    row("pages swapped", u"pages: "_s, [](QPDF &pdf) {
        QPDFObjectHandle last = pageOf(pdf, 7);
        pdf.removePage(last);
        pdf.addPage(last, true);
    });
    row("catalogue entry lost", u"/MarkInfo is lost"_s,
        [](QPDF &pdf) { pdf.getRoot().removeKey("/MarkInfo"); });
    row("widget without a page", u"without page"_s,
        [](QPDF &pdf) { firstOf(pdf, 0, "/Widget").removeKey("/P"); });
}

void TestFidelityFixture::checksSeeWhatIsWrong()
{
    QFETCH(Change, change);
    QFETCH(QString, complaint);
    Folder folder;
    const QString path = folder.add(u"in.pdf"_s, unsignedEverything());
    const QString copy = folder.path(u"copy.pdf"_s);
    copyFile(path, copy, change);
    const QString problems = FidelityComparison(allPages(path), copy).problems().join(u'\n');
    QVERIFY2(problems.contains(complaint), qPrintable(problems));
}

void TestFidelityFixture::marksOfPages()
{
    QCOMPARE(FidelityFixture::markInText(u"Chapter @MAIN-12"_s), u"MAIN-12"_s);
    QCOMPARE(FidelityFixture::markInText(u"Part one"_s), QString());
}

void TestFidelityFixture::missingFileIsAProblem()
{
    Folder folder;
    const QString path = folder.add(u"in.pdf"_s, unsignedEverything());
    QVERIFY(!FidelityComparison(allPages(path), folder.path(u"none.pdf"_s)).problems().isEmpty());
}

QTEST_GUILESS_MAIN(TestFidelityFixture)
#include "tst_fidelity_fixture.moc"
