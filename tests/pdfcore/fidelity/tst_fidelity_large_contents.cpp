// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdfcore/fidelity/fidelity_pieces.h"
#include "tests/pdfcore/fidelity/fidelity_soundness.h"

using namespace EngineCalls;
using namespace FidelityPieces;
using namespace Qt::StringLiterals;

namespace {

using Bytes = QByteArray;

} // namespace

/// Content and resources of which there is very much, or that very many pages share.
class TestFidelityLargeContents : public QObject
{
    Q_OBJECT

private slots:
    void contentThatUnfolds_data();
    void contentThatUnfolds();
    void contentOfManyPages();
    void resourcesOfManyPages();
};

namespace {

/// A zlib stream of `count` times 1,548 blanks, with `tail` at its end.
Bytes manyBlanks(quint64 count, const Bytes &tail)
{
    constexpr quint64 kModulus = 65'521;
    constexpr quint64 kBlanks = 1'548;
    // A first blank as it stands, a block that repeats what is in front of it six times 258 times,
    // and the rest as it stands.
    const auto asItStands = [](const Bytes &data, bool isLast) -> Bytes {
        const auto size = static_cast<quint16>(data.size());
        Bytes block;
        block += isLast ? '\1' : '\0';
        for (const quint16 word : {size, static_cast<quint16>(~size)}) {
            block += static_cast<char>(word & 0xFF);
            block += static_cast<char>(word >> 8);
        }
        return block + data;
    };
    const Bytes block = Bytes::fromHex("1A05A360148C8251300A00");
    quint64 sum = 1;
    quint64 sumOfSums = 0;
    const auto add = [&](quint64 byte, quint64 times) {
        const quint64 n = times % (2 * kModulus);
        const quint64 pairs = n * (n + 1) / 2 % kModulus;
        sumOfSums = (sumOfSums + times % kModulus * sum + byte * pairs) % kModulus;
        sum = (sum + times % kModulus * byte) % kModulus;
    };
    add(' ', 1 + count * kBlanks);
    for (const char byte : tail) {
        add(static_cast<uchar>(byte), 1);
    }
    Bytes data = Bytes::fromHex("7801") + asItStands(" ", false);
    data += block.repeated(static_cast<qsizetype>(count)) + asItStands(tail, true);
    for (const quint64 part : {sumOfSums, sum}) {
        data += static_cast<char>(part >> 8);
        data += static_cast<char>(part & 0xFF);
    }
    return data;
}

/// The data with a filter more.
Bytes deflated(const Bytes &data)
{
    return qCompress(data, 9).mid(4);
}

} // namespace

namespace {

/// Two pages that share their resources, which the first one uses at the end of much white space
/// in one place. A stream of it is behind two filters.
FidelityAssembly withWhiteSpace(const Bytes &place, quint64 blocks)
{
    FidelityAssembly document = FidelityFixture::plain("MAIN", 2);
    for (const char *page : {"page1", "page2"}) {
        document.replace(page, "<< /Font << /F1 {font} >> >>", "{shared}");
    }
    document.set("shared", "<< /Font << /F1 {font} /Glyphs {glyphs} >> /XObject << /Form {form} >> "
                           "/ExtGState << /Used << /ca 0.5 >> /Unused << /ca 0.7 >> >> >>");
    document.set("glyphs", "<< /Type /Font /Subtype /Type3 /FontBBox [0 0 9 9] /FontMatrix [1 0 0 "
                           "1 0 0] /CharProcs << /a {glyph} >> /Encoding << /Differences [97 /a] "
                           ">> /FirstChar 97 /LastChar 97 /Widths [9] >>");
    document.set("stamp", "<< /Type /Annot /Subtype /Stamp /Rect [0 0 9 9] /AP << /N {look} >> >>");
    document.addEntries("page1", "/Annots [{stamp}]");
    const Bytes form = "/Type /XObject /Subtype /Form /BBox [0 0 300 400] ";
    for (const auto &[name, entries, content] :
         {std::tuple<Bytes, Bytes, Bytes>{"content1", {}, "/Form Do BT /Glyphs 9 Tf (a) Tj ET"},
          {"form", form, "0 0 9 9 re f"},
          {"look", form, "0 0 9 9 re f"},
          {"glyph", {}, "9 0 d0 0 0 9 9 re f"}}) {
        if (name == place) {
            document.setStream(name, entries + "/Filter [/FlateDecode /FlateDecode]",
                               deflated(manyBlanks(blocks, '\n' + content + "\n/Used gs\n")));
        } else {
            document.setStream(name, entries, content);
        }
    }
    return document;
}

/// Thousands of bytes in the file, a hundred million behind the filters.
constexpr quint64 kVeryManyBlocks = 70'000;

} // namespace

void TestFidelityLargeContents::contentThatUnfolds_data()
{
    QTest::addColumn<Bytes>("place");
    for (const char *place : {"content1", "form", "look", "glyph"}) {
        QTest::newRow(place) << Bytes(place);
    }
}

void TestFidelityLargeContents::contentThatUnfolds()
{
    QFETCH(Bytes, place);
    const auto statesWith = [&](quint64 blocks) {
        FidelityCase test;
        test.add("MAIN", withWhiteSpace(place, blocks).file());
        saveList(test, u"M1"_s);
        QPDF output;
        output.processFile(test.output().toLocal8Bit().constData());
        QPDFObjectHandle page = output.getAllPages().front();
        return below(page.getKey("/Resources"), {"/ExtGState"}).getKeys();
    };
    QCOMPARE(statesWith(100), std::set<std::string>{"/Used"});
    // What is too much to be read may use anything.
    QCOMPARE(statesWith(kVeryManyBlocks), (std::set<std::string>{"/Unused", "/Used"}));
}

void TestFidelityLargeContents::contentOfManyPages()
{
    constexpr int kKept = 300;
    constexpr int kGone = 100;
    constexpr int kLines = 50'000;
    FidelityAssembly document = withManyPages(kKept + kGone, "/Resources {shared}");
    document.set("shared", "<< /Font << /F1 {font} >> /ExtGState << /Used {state} /Unused {state} "
                           "/OfForm {state} /UnusedToo {state} >> /XObject << /Form {form} >> >>");
    document.set("state", "<< /ca 0.5 >>");
    document.setStream("form", "/Type /XObject /Subtype /Form /BBox [0 0 300 400]",
                       Bytes("/OfForm gs 1 1 1 1 re f\n").repeated(kLines));
    document.setStream("content1", {},
                       FidelityFixture::markedContent("MAIN", 1) + "/Form Do\n" +
                           Bytes("/Used gs 0 0 1 1 re f\n").repeated(kLines));
    FidelityCase test;
    test.add("MAIN", document.file());
    test.add("PLAIN", FidelityFixture::plain("PLAIN", 1).file());
    for (const QString &list : {u"M1-%1"_s.arg(kKept), u"P1 M%1-1"_s.arg(kKept)}) {
        saveList(test, list);
        if (QTest::currentTestFailed()) {
            return;
        }
        QPDF output;
        output.processFile(test.output().toLocal8Bit().constData());
        const std::vector<QPDFObjectHandle> &pages = output.getAllPages();
        for (std::size_t page = list.startsWith(u'P') ? 1 : 0; page < pages.size(); ++page) {
            QPDFObjectHandle resources = QPDFObjectHandle(pages[page]).getKey("/Resources");
            QCOMPARE(below(resources, {"/ExtGState"}).getKeys(),
                     (std::set<std::string>{"/OfForm", "/Used"}));
        }
    }
}

void TestFidelityLargeContents::resourcesOfManyPages()
{
    // None of them is a page's that is gone, so nothing has to be sorted out.
    constexpr int kKept = 8'000;
    constexpr int kMany = 25'000;
    FidelityAssembly document = withManyPages(2 * kKept + 1, {});
    for (int i = 0; i < kKept; ++i) {
        document.addEntries("many" + Bytes::number(i), "/Resources {shared}");
    }
    Bytes states;
    for (int i = 0; i < kMany; ++i) {
        const Bytes number = Bytes::number(i);
        document.set("state" + number, "<< /ca 0.5 >>");
        states += "/G" + number + " {state" + number + "} ";
    }
    document.set("shared", "<< /Font << /F1 {font} >> /ExtGState << " + states + ">> >>");
    FidelityCase test;
    test.add("MAIN", document.file());
    saveList(test, u"M1-%1"_s.arg(kKept));
    if (QTest::currentTestFailed()) {
        return;
    }
    QPDF output;
    output.processFile(test.output().toLocal8Bit().constData());
    QPDFObjectHandle resources = QPDFObjectHandle(output.getAllPages().back()).getKey("/Resources");
    QCOMPARE(below(resources, {"/ExtGState"}).getKeys().size(), std::size_t{kMany});
}

QTEST_GUILESS_MAIN(TestFidelityLargeContents)
#include "tst_fidelity_large_contents.moc"
