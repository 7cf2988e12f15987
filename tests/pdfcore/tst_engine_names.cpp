// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdfcore/engine_calls.h"
#include "tests/support/pdf_fixture.h"

using namespace EngineCalls;
using namespace Qt::StringLiterals;

namespace {

using Bytes = QByteArray;

/// A document for the given version of PDF with a page that a form fills. The form is called
/// `inResources` in the resources and `inContents` in the contents.
Bytes documentWith(const Bytes &version, const Bytes &inResources, const Bytes &inContents)
{
    Bytes file = PdfFixture::onePage(
        '/' + inContents + " Do", "/XObject << /" + inResources + " 5 0 R >>",
        {PdfFixture::streamBody("/Type /XObject /Subtype /Form /BBox [0 0 200 200] /Resources << "
                                "/XObject << /" +
                                    inResources + " 6 0 R >> >>",
                                '/' + inContents + " Do"),
         PdfFixture::streamBody("/Type /XObject /Subtype /Form /BBox [0 0 200 200]",
                                "1 0 0 rg 0 0 200 200 re f")});
    return file.replace("%PDF-1.7", Bytes("%PDF-" + version));
}

/// All that is packed in a file, one after the other.
Bytes unpacked(const Bytes &file)
{
    Bytes all;
    for (qsizetype at = file.indexOf("\nstream\n"); at >= 0;
         at = file.indexOf("\nstream\n", at + 1)) {
        // It is put behind a guess at its length, which need not be right.
        const Bytes data = Bytes("\0\0\x10\0", 4) + file.mid(at + 8);
        all += qUncompress(data);
    }
    return all;
}

} // namespace

/// Names with a "#" that is no escape, or an odd one.
class TestEngineNames : public QObject
{
    Q_OBJECT

private slots:
    void namesAreFoundAfterASave_data();
    void namesAreFoundAfterASave();
    void strayNamesOfOldFilesAreValidAfterASave_data();
    void strayNamesOfOldFilesAreValidAfterASave();
    void strayNamesAreValidWhereverSomethingIsDrawn_data();
    void strayNamesAreValidWhereverSomethingIsDrawn();
};

void TestEngineNames::namesAreFoundAfterASave_data()
{
    QTest::addColumn<Bytes>("version");
    QTest::addColumn<Bytes>("inResources");
    QTest::addColumn<Bytes>("inContents");
    for (const char *version : {"1.0", "1.1", "1.2", "1.7"}) {
        const auto row = [version](const char *inResources, const char *inContents) {
            QTest::addRow("%s, %s and %s", version, inResources, inContents)
                << Bytes(version) << Bytes(inResources) << Bytes(inContents);
        };
        row("F#zz", "F#zz");
        row("F#", "F#");
        row("F#1", "F#1");
        row("F##", "F##");
        row("F#00", "F#00");
        row("F#00x", "F#00x");
        row("F#41", "FA");
        row("F#20#2fx", "F#20#2Fx");
        row("F#2341", "F#2341");
        // An escape at the end of a name.
        row("FA", "F#41");
        row("F#20", "F#20");
    }
}

void TestEngineNames::namesAreFoundAfterASave()
{
    QFETCH(const Bytes, version);
    QFETCH(const Bytes, inResources);
    QFETCH(const Bytes, inContents);
    Folder folder;
    const QString path = folder.add(u"in.pdf"_s, documentWith(version, inResources, inContents));
    COMPARE_COLOUR(middle(render(filePage(path)).image), QColor(Qt::red), 1);
    const QString target = folder.path(u"out.pdf"_s);
    // As the whole document, and as a page of another one.
    const QString other = folder.add(u"other.pdf"_s, PdfFixture::pagesByNumber(1));
    PdfSourcePage first = filePage(other);
    first.isOfMainDocument = true;
    for (const QList<PdfSourcePage> &pages :
         {QList<PdfSourcePage>{filePage(path)}, QList<PdfSourcePage>{filePage(path), first}}) {
        const Outcome saved = save(pages, target);
        QVERIFY2(saved.ok, qPrintable(saved.message));
        COMPARE_COLOUR(middle(render(filePage(target)).image), QColor(Qt::red), 1);
    }
}

void TestEngineNames::strayNamesOfOldFilesAreValidAfterASave_data()
{
    QTest::addColumn<Bytes>("contents");
    QTest::newRow("contents in one") << Bytes("/Contents 4 0 R ");
    QTest::newRow("contents in parts") << Bytes("/Contents[4 0 R]");
}

void TestEngineNames::strayNamesOfOldFilesAreValidAfterASave()
{
    QFETCH(const Bytes, contents);
    Folder folder;
    const QString path = folder.add(
        u"in.pdf"_s, documentWith("1.1", "F#zz", "F#zz").replace("/Contents 4 0 R ", contents));
    const QString target = folder.path(u"out.pdf"_s);
    const Outcome saved = save({filePage(path)}, target);
    QVERIFY2(saved.ok, qPrintable(saved.message));
    const Bytes content = contentOf(target) + unpacked(contentOf(target));
    QVERIFY(content.contains("/F#23zz Do"));
    QCOMPARE(content.count("/F#23zz "), 4);
    QVERIFY(!content.contains("/F#zz"));
}

void TestEngineNames::strayNamesAreValidWhereverSomethingIsDrawn_data()
{
    QTest::addColumn<Bytes>("content");
    QTest::addColumn<Bytes>("resources");
    QTest::addColumn<QList<Bytes>>("objects");
    // What fills its surroundings, under the name of F#zz, is object 6.
    const Bytes inner = "/Resources << /XObject << /F#zz 6 0 R >> >>";
    const Bytes box = " /BBox [0 0 200 200] ";
    const Bytes red =
        PdfFixture::streamBody("/Type /XObject /Subtype /Form" + box, "1 0 0 rg 0 0 200 200 re f");
    const auto row = [&](const char *name, const Bytes &content, const Bytes &resources,
                         const Bytes &part) {
        QTest::newRow(name) << content << resources << QList<Bytes>{part, red};
    };
    row("tiling pattern", "/Pattern cs /P scn 0 0 200 200 re f", "/Pattern << /P 5 0 R >>",
        PdfFixture::streamBody("/Type /Pattern /PatternType 1 /PaintType 1 /TilingType 1 /XStep "
                               "200 /YStep 200" +
                                   box + inner,
                               "/F#zz Do"));
    row("form", "/P Do", "/XObject << /P 5 0 R >>",
        PdfFixture::streamBody("/Type /XObject /Subtype /Form" + box + inner, "/F#zz Do"));
    QTest::newRow("letter")
        << Bytes("BT /P 200 Tf 0 0 Td (A) Tj ET") << Bytes("/Font << /P 5 0 R >>")
        << QList<Bytes>{"<< /Type /Font /Subtype /Type3 /FontBBox [0 0 1 1] "
                        "/FontMatrix [1 0 0 1 0 0] /CharProcs << /A 7 0 R >> "
                        "/Encoding << /Differences [65 /A] >> /FirstChar 65 "
                        "/LastChar 65 /Widths [1] " +
                            inner + " >>",
                        red, PdfFixture::streamBody({}, "1 0 d0 0.005 0 0 0.005 0 0 cm /F#zz Do")};
}

void TestEngineNames::strayNamesAreValidWhereverSomethingIsDrawn()
{
    QFETCH(const Bytes, content);
    QFETCH(const Bytes, resources);
    QFETCH(const QList<Bytes>, objects);
    Folder folder;
    const QString path = folder.add(
        u"in.pdf"_s,
        PdfFixture::onePage(content, resources, objects).replace("%PDF-1.7", "%PDF-1.1"));
    COMPARE_COLOUR(middle(render(filePage(path)).image), QColor(Qt::red), 1);
    const QString target = folder.path(u"out.pdf"_s);
    const Outcome saved = save({filePage(path)}, target);
    QVERIFY2(saved.ok, qPrintable(saved.message));
    COMPARE_COLOUR(middle(render(filePage(target)).image), QColor(Qt::red), 1);
    const Bytes written = contentOf(target) + unpacked(contentOf(target));
    QVERIFY(written.contains("/F#23zz Do"));
    QVERIFY(!written.contains("/F#zz"));
}

QTEST_GUILESS_MAIN(TestEngineNames)
#include "tst_engine_names.moc"
