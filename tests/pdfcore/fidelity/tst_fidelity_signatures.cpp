// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdfcore/fidelity/fidelity_case.h"
#include "tests/pdfcore/fidelity/fidelity_fields.h"
#include "tests/pdfcore/fidelity/fidelity_soundness.h"

using namespace EngineCalls;
using namespace Qt::StringLiterals;

namespace {

void addLists()
{
    QTest::addColumn<QString>("list");
    QTest::newRow("unchanged") << u"M1-8"_s;
    QTest::newRow("reversed") << u"M8-1"_s;
    QTest::newRow("page of the signature") << u"M7"_s;
    QTest::newRow("two documents") << u"M7 O7"_s;
    QTest::newRow("copy") << u"M7 M1 M7"_s;
    QTest::newRow("foreign signature") << u"M1 O7"_s;
    QTest::newRow("without the page of the signature") << u"M1-6 M8"_s;
}

/// Signature dictionaries in the file.
int signaturesIn(FidelityDocument &document)
{
    int count = 0;
    for (QPDFObjectHandle object : document.pdf().getAllObjects()) {
        if (object.isDictionary() && object.getKey("/Type").unparse() == "/Sig") {
            ++count;
        }
    }
    return count;
}

} // namespace

/// A changed document is no longer what was signed, and must not claim to be.
class TestFidelitySignatures : public QObject
{
    Q_OBJECT

private slots:
    void valuesAreCleared_data() { addLists(); }
    void valuesAreCleared();
    void fieldsAndTheirLooksStay();
    void permissionsAreRemoved_data() { addLists(); }
    void permissionsAreRemoved();
    void flagsAreRemoved_data() { addLists(); }
    void flagsAreRemoved();
    void valueInTheParent();
    void usageRightsAreRemoved();
    void otherFieldsKeepTheirValues();
};

void TestFidelitySignatures::valuesAreCleared()
{
    QFETCH(QString, list);
    FidelityCase test({"MAIN", "OTHER"});
    const auto saved = test.save(list);
    NO_PROBLEMS(saved->pageProblems());
    for (qsizetype i = 0; i < saved->output().marks().size(); ++i) {
        for (const FidelityWidget &widget : FidelityFields::onPage(saved->output(), i)) {
            if (widget.kind.startsWith("/Sig")) {
                QCOMPARE(widget.value, QByteArray("null"));
            }
        }
    }
    QCOMPARE(signaturesIn(saved->output()), 0);
}

void TestFidelitySignatures::fieldsAndTheirLooksStay()
{
    FidelityCase test({"MAIN"});
    const auto saved = test.save(u"M7 M1"_s);
    NO_PROBLEMS(saved->pageProblems());
    const QList<FidelityWidget> widgets = FidelityFields::onPage(saved->output(), 0);
    QCOMPARE(widgets.size(), 1);
    QCOMPARE(widgets.constFirst().fullName, u"signed"_s);
    QVERIFY(widgets.constFirst().kind.startsWith("/Sig"));
    QVERIFY(widgets.constFirst().appearance.contains("(signed by MAIN) Tj"));
    NO_PROBLEMS(FidelityFields::problems(saved->output()));
}

void TestFidelitySignatures::permissionsAreRemoved()
{
    QFETCH(QString, list);
    FidelityCase test({"MAIN", "OTHER"});
    const auto saved = test.save(list);
    NO_PROBLEMS(saved->pageProblems());
    QVERIFY(!saved->output().catalogue().hasKey("/Perms"));
}

void TestFidelitySignatures::flagsAreRemoved()
{
    QFETCH(QString, list);
    FidelityCase test({"MAIN", "OTHER"});
    const auto saved = test.save(list);
    NO_PROBLEMS(saved->pageProblems());
    QPDFObjectHandle form = saved->output().catalogue().getKey("/AcroForm");
    QVERIFY(form.isDictionary());
    QVERIFY(!form.hasKey("/SigFlags"));
}

void TestFidelitySignatures::valueInTheParent()
{
    FidelityAssembly document = FidelityFixture::plain("MAIN", 2);
    document.addEntries("catalogue", "/AcroForm << /Fields [{top}] /SigFlags 3 >>");
    document.addEntries("page1", "/Annots [{widget}]");
    document.set("top", "<< /FT /Sig /T (top) /V {signature} /Kids [{widget}] >>");
    document.set("widget", "<< /Type /Annot /Subtype /Widget /Rect [1 2 3 4] /Parent {top} >>");
    document.set("signature", "<< /Type /Sig /Filter /F /ByteRange [0 0 0 0] /Contents <00> >>");
    FidelityCase test;
    test.add("MAIN", document.file());
    for (const QString &list : {u"M1 M2"_s, u"M2 M1"_s, u"M1 M1"_s}) {
        const auto saved = test.save(list);
        NO_PROBLEMS(saved->fieldProblems());
        NO_PROBLEMS(saved->signatureProblems());
        QCOMPARE(signaturesIn(saved->output()), 0);
    }
}

void TestFidelitySignatures::usageRightsAreRemoved()
{
    FidelityAssembly document = FidelityFixture::plain("MAIN", 2);
    document.addEntries("catalogue", "/Perms << /UR3 {signature} /DocMDP {signature} >>");
    document.set("signature", "<< /Type /Sig /Filter /F /ByteRange [0 0 0 0] /Contents <00> >>");
    FidelityCase test;
    test.add("MAIN", document.file());
    for (const QString &list : {u"M1 M2"_s, u"M2"_s}) {
        const auto saved = test.save(list);
        NO_PROBLEMS(saved->problems());
        QVERIFY(!saved->output().catalogue().hasKey("/Perms"));
        QCOMPARE(signaturesIn(saved->output()), 0);
    }
}

void TestFidelitySignatures::otherFieldsKeepTheirValues()
{
    FidelityCase test({"MAIN"});
    NO_PROBLEMS(test.save(u"M1-8"_s)->fieldProblems());
}

QTEST_GUILESS_MAIN(TestFidelitySignatures)
#include "tst_fidelity_signatures.moc"
