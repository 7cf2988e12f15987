// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdfcore/fidelity/fidelity_fields.h"
#include "tests/pdfcore/fidelity/fidelity_pieces.h"
#include "tests/pdfcore/fidelity/fidelity_soundness.h"

using namespace EngineCalls;
using namespace FidelityPieces;
using namespace Qt::StringLiterals;

namespace {

using Bytes = QByteArray;

} // namespace

/// Documents of which one part is very large: a save takes as long as it takes to write it down.
class TestFidelityLargeDocuments : public QObject
{
    Q_OBJECT

private slots:
    void attachmentsOfOneName();
    void copiesOfAFieldOnManyPages_data();
    void copiesOfAFieldOnManyPages();
    void pagesFarBelowTheTop();
};

void TestFidelityLargeDocuments::attachmentsOfOneName()
{
    constexpr int kMany = 20'000;
    FidelityCase test;
    std::set<std::string> wanted;
    for (const Bytes prefix : {"MAIN", "OTHER"}) {
        FidelityAssembly document = FidelityFixture::plain(prefix, 1);
        Bytes names;
        for (int i = 0; i < kMany; ++i) {
            const Bytes number = Bytes::number(i);
            const Bytes text = prefix + ' ' + number;
            document.set("file" + number, "<< /Type /Filespec /F (a.txt) /Desc (" + text + ") >>");
            names += "(a.txt) {file" + number + "} ";
            wanted.insert(text.toStdString());
        }
        document.addEntries("catalogue",
                            "/Names << /EmbeddedFiles << /Names [" + names + "] >> >>");
        test.add(prefix, document.file());
    }
    saveList(test, u"M1 O1"_s);
    if (QTest::currentTestFailed()) {
        return;
    }
    FidelityDocument output(test.output());
    std::set<std::string> found;
    std::set<std::string> names;
    for (auto &[name, file] : output.names("/EmbeddedFiles")) {
        names.insert(name);
        found.insert(file.getKey("/Desc").getUTF8Value());
    }
    QCOMPARE(names.size(), std::size_t{2 * kMany});
    QVERIFY(found == wanted);
    NO_PROBLEMS(FidelitySoundness::problems(test.output(), output));
}

void TestFidelityLargeDocuments::copiesOfAFieldOnManyPages_data()
{
    QTest::addColumn<Bytes>("kind");
    QTest::addColumn<int>("count");
    QTest::newRow("text") << Bytes("/FT /Tx /V (value)") << 6'000;
    QTest::newRow("buttons with an option for each")
        << "/FT /Btn /Ff 32768 /Opt [" + Bytes("(o) ").repeated(2'000) + ']' << 2'000;
}

void TestFidelityLargeDocuments::copiesOfAFieldOnManyPages()
{
    QFETCH(Bytes, kind);
    QFETCH(int, count);
    FidelityAssembly document = withManyPages(count, {});
    document.addEntries("catalogue", "/AcroForm << /Fields [{field}] /CO [{field}] >>");
    document.set("field",
                 "<< /T (field) " + kind + " /Kids [" + references("widget", count) + "] >>");
    for (int i = 0; i < count; ++i) {
        const Bytes number = Bytes::number(i);
        document.set("widget" + number,
                     "<< /Type /Annot /Subtype /Widget /Parent {field} /Rect [0 0 9 9] >>");
        document.addEntries("many" + number, "/Annots [{widget" + number + "}]");
    }
    FidelityCase test;
    test.add("MAIN", document.file());
    saveList(test, u"M1-%1 M1-%1"_s.arg(count));
    if (QTest::currentTestFailed()) {
        return;
    }
    FidelityDocument output(test.output());
    std::set<QPDFObjGen> fields;
    for (qsizetype page = 0; page < output.marks().size(); ++page) {
        const std::vector<QPDFObjectHandle> widgets = output.annotations(page);
        QCOMPARE(widgets.size(), 1U);
        QPDFObjectHandle field = QPDFObjectHandle(widgets.front()).getKey("/Parent");
        fields.insert(field.getObjGen());
        const bool isCopy = page >= count;
        if (!isCopy) {
            QCOMPARE(fidelityText(field.getKey("/T")), u"field"_s);
        } else {
            QVERIFY(fidelityText(field.getKey("/T")).startsWith(u"field_"_s));
        }
        if (isCopy && kind.contains("/Opt")) {
            QCOMPARE(field.getKey("/Opt").getArrayNItems(), field.getKey("/Kids").getArrayNItems());
        }
    }
    QCOMPARE(fields.size(), std::size_t(count) + 1);
    NO_PROBLEMS(FidelitySoundness::problems(test.output(), output));
}

void TestFidelityLargeDocuments::pagesFarBelowTheTop()
{
    // MuPDF counts references to an object in 16 bits and never frees what more pages share.
    constexpr int kMany = 30'000;
    constexpr int kLevels = 500;
    FidelityAssembly document = withManyPages(kMany, {});
    document.replace("pages", "/Type /Pages", "/Type /Pages /Parent {node0}");
    const Bytes count = "/Count " + Bytes::number(kMany);
    for (int level = 0; level < kLevels; ++level) {
        const Bytes kid = level + 1 < kLevels ? "node" + Bytes::number(level + 1) : Bytes("pages");
        document.set("node" + Bytes::number(level),
                     "<< /Type /Pages " + count + " /Kids [{" + kid + "}] " +
                         (level > 0 ? "/Parent {node" + Bytes::number(level - 1) + '}' : Bytes()) +
                         " >>");
    }
    document.addEntries("node0", "/Rotate 90 /Resources << /Font << /F1 {font} >> >>");
    document.replace("pages", "{node0}", "{node" + Bytes::number(kLevels - 1) + '}');
    document.replace("catalogue", "{pages}", "{node0}");
    FidelityCase test;
    test.add("MAIN", document.file());
    saveList(test, u"M1 M2"_s);
    if (QTest::currentTestFailed()) {
        return;
    }
    FidelityDocument output(test.output());
    for (qsizetype page = 0; page < output.marks().size(); ++page) {
        QCOMPARE(output.marks().at(page), u"MAIN-1"_s);
        QCOMPARE(output.attribute(page, "/Rotate").getIntValueAsInt(), 90);
        QPDFObjectHandle resources = output.attribute(page, "/Resources");
        QVERIFY(below(resources, {"/Font", "/F1"}).isDictionary());
    }
    NO_PROBLEMS(FidelitySoundness::problems(test.output(), output));
}

QTEST_GUILESS_MAIN(TestFidelityLargeDocuments)
#include "tst_fidelity_large_documents.moc"
