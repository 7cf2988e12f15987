// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdfcore/fidelity/fidelity_case.h"
#include "tests/pdfcore/fidelity/fidelity_soundness.h"
#include "tests/support/pdf_fixture.h"

#include <qpdf/Buffer.hh>
#include <qpdf/QPDFWriter.hh>

using namespace EngineCalls;
using namespace Qt::StringLiterals;

namespace {

using Bytes = QByteArray;

constexpr int kPages = 6;

Bytes sound()
{
    return FidelityFixture::plain("MAIN", kPages).file();
}

/// The same document with its objects in compressed streams.
Bytes withObjectStreams(const Bytes &file)
{
    QPDF pdf;
    pdf.processMemoryFile("fixture", file.constData(), static_cast<size_t>(file.size()));
    QPDFWriter writer(pdf);
    writer.setOutputMemory();
    writer.setObjectStreamMode(qpdf_o_generate);
    writer.write();
    const std::shared_ptr<Buffer> buffer = writer.getBufferSharedPointer();
    return {reinterpret_cast<const char *>(buffer->getBuffer()),
            static_cast<qsizetype>(buffer->getSize())};
}

Bytes replaced(Bytes file, const Bytes &before, const Bytes &after)
{
    if (!file.contains(before)) {
        qFatal("The file has no %s", before.constData());
    }
    return file.replace(before, after);
}

/// Files with a few bytes changed, always the same ones.
QList<Bytes> damagedFiles()
{
    constexpr int kOfEachKind = 60;
    quint32 state = 12345;
    const auto next = [&state](qsizetype below) {
        state = state * 1664525U + 1013904223U;
        return static_cast<qsizetype>(state >> 8) % below;
    };
    QList<Bytes> files;
    for (const Bytes &file : {sound(), withObjectStreams(sound())}) {
        for (int run = 0; run < kOfEachKind; ++run) {
            Bytes damaged = file;
            for (int i = 0; i < 3; ++i) {
                damaged[next(damaged.size())] = static_cast<char>(next(256));
            }
            files.append(damaged);
        }
    }
    return files;
}

/// A plain document whose page tree has the given entries besides its type.
Bytes withTree(const Bytes &entries)
{
    FidelityAssembly document = FidelityFixture::plain("MAIN", kPages);
    document.set("pages", "<< /Type /Pages " + entries + " >>");
    return document.file();
}

} // namespace

/// Damaged files that open must have the same pages for everyone.
class TestFidelityDamage : public QObject
{
    Q_OBJECT

private slots:
    void inspectionAndSaveAgree_data();
    void inspectionAndSaveAgree();
    void truncatedFilesAgree();
    void damagedBytesNeverGiveOtherPages();
    void damagedBytesCanBeSaved();
    void damagedDocumentsKeepTheirFeatures_data();
    void damagedDocumentsKeepTheirFeatures();

private:
    static QString disagreement(const QString &path, const QString &output);
    static QString difference(const QString &path, const QString &output);
};

/// Why the engine's operations do not agree about a file; empty when they do.
QString TestFidelityDamage::disagreement(const QString &path, const QString &output)
{
    const Inspection found = inspect(path);
    if (!found.ok || found.pageSizes.isEmpty()) {
        return {};
    }
    QList<PdfSourcePage> pages;
    for (int i = 0; i < found.pageSizes.size(); ++i) {
        pages.append(filePage(path, i));
    }
    const Outcome saved = save(pages, output);
    if (!saved.ok) {
        return u"%1 pages, but the save fails: %2"_s.arg(pages.size()).arg(saved.message);
    }
    const Inspection again = inspect(output);
    if (again.pageSizes.size() != found.pageSizes.size()) {
        return u"%1 pages, %2 in the saved file"_s.arg(pages.size()).arg(again.pageSizes.size());
    }
    if (save({filePage(path, static_cast<int>(pages.size()))}, output).ok) {
        return u"there is a page number %1"_s.arg(pages.size() + 1);
    }
    return {};
}

/// How the pages of the saved file differ from those that it was made from.
QString TestFidelityDamage::difference(const QString &path, const QString &output)
{
    const QList<QSizeF> sizes = inspect(path).pageSizes;
    QList<PdfSourcePage> pages;
    for (int i = 0; i < sizes.size(); ++i) {
        pages.append(filePage(path, i));
    }
    if (pages.isEmpty() || !save(pages, output).ok) {
        return {};
    }
    const QList<QSizeF> again = inspect(output).pageSizes;
    for (int i = 0; i < pages.size(); ++i) {
        if (std::abs(again.at(i).width() - sizes.at(i).width()) > 0.5 ||
            std::abs(again.at(i).height() - sizes.at(i).height()) > 0.5) {
            return u"page %1 has another size"_s.arg(i + 1);
        }
        const QImage before = render(pages.at(i), {60, 80}).image;
        const QImage after = render(filePage(output, i), {60, 80}).image;
        if (!before.isNull() && distance(before, after) > 2) {
            return u"page %1 looks different"_s.arg(i + 1);
        }
    }
    return {};
}

void TestFidelityDamage::inspectionAndSaveAgree_data()
{
    QTest::addColumn<Bytes>("file");
    QTest::addColumn<int>("pages"); // -1 where it is not clear what the file has
    const Bytes file = sound();
    const Bytes streams = withObjectStreams(file);
    const auto row = [](const char *name, const Bytes &content, int pages) {
        QTest::newRow(name) << content << pages;
    };
    row("sound", file, kPages);
    row("object streams", streams, kPages);
    row("no trailer", file.left(file.indexOf("trailer")), kPages);
    row("no cross-reference table", file.left(file.indexOf("xref\n")), kPages);
    row("no end", file.left(file.indexOf("startxref")), kPages);
    row("wrong start of the table", replaced(file, "startxref\n", "startxref\n1"), kPages);
    row("start of the table at 0", file.left(file.indexOf("startxref")) + "startxref\n0\n%%EOF\n",
        kPages);
    row("bytes before the header", "junk\njunk\n" + file, kPages);
    row("bytes after the end", file + Bytes(3000, '\n') + "junk", kPages);
    row("moved offsets", replaced(file, "%PDF-1.7\n", "%PDF-1.7\n%moved by a few bytes\n"), kPages);
    row("wrong object numbers", replaced(file, "\n3 0 obj", "\n33 0 obj"), -1);
    row("no header", file.mid(9), -1);
    row("object streams without a table", streams.left(streams.lastIndexOf("startxref")), kPages);
    row("object streams, wrong start", replaced(streams, "startxref\n", "startxref\n7"), kPages);
    row("lengths of streams", replaced(file, "/Length ", "/Length 9"), -1);
    row("ends of objects", replaced(file, "endobj", "endobi"), -1);
    row("too many lines", replaced(file, "\n", "\r\n"), -1);
    const Bytes six = "{page1} {page2} {page3} {page4} {page5} {page6}";
    row("no count", withTree("/Kids [" + six + ']'), kPages);
    row("count too small", withTree("/Count 2 /Kids [" + six + ']'), kPages);
    row("count too large", withTree("/Count 99 /Kids [" + six + ']'), kPages);
    row("negative count", withTree("/Count -5 /Kids [" + six + ']'), kPages);
    row("count of another kind", withTree("/Count (six) /Kids [" + six + ']'), kPages);
    row("nulls among the kids", withTree("/Count 6 /Kids [null " + six + " null]"), -1);
    row("numbers among the kids", withTree("/Count 6 /Kids [5 " + six + " (a) /b]"), -1);
    row("missing objects among the kids", withTree("/Count 7 /Kids [99 0 R " + six + ']'), -1);
    row("page twice", withTree("/Count 7 /Kids [{page1} " + six + ']'), 7);
    row("tree in itself", withTree("/Count 6 /Kids [{pages} " + six + ']'), -1);
    row("page in the tree itself",
        withTree("/Count 7 /Kids [<< /Type /Page /MediaBox [0 0 300 400] /Contents {content1} "
                 "/Resources << /Font << /F1 {font} >> >> >> " +
                 six + ']'),
        7);
    row("no kids", withTree("/Count 6"), -1);
    row("catalogue among the kids", withTree("/Count 7 /Kids [{catalogue} " + six + ']'), -1);
    FidelityAssembly types = FidelityFixture::plain("MAIN", kPages);
    types.replace("page2", "/Type /Page ", {});
    types.replace("page3", "/Type /Page ", "/Type /Pages ");
    types.replace("page4", "/Type /Page ", "/Type /Seite ");
    row("types of pages", types.file(), -1);
    FidelityAssembly boxes = FidelityFixture::plain("MAIN", kPages);
    boxes.replace("page2", "/MediaBox [0 0 300 400]", {});
    boxes.replace("page3", "[0 0 300 400]", "[300 400 0 0]");
    boxes.replace("page4", "[0 0 300 400]", "[0 0 0 0]");
    boxes.replace("page5", "[0 0 300 400]", "[0 0 (a)]");
    boxes.replace("page6", "[0 0 300 400]", "[0 0 300 400] /Rotate 45 /CropBox [900 900 950 950]");
    row("boxes of pages", boxes.file(), kPages);
    FidelityAssembly contents = FidelityFixture::plain("MAIN", kPages);
    contents.replace("page1", "{content1}", "99 0 R");
    contents.replace("page2", "{content2}", "[null 99 0 R {content2} {page1}]");
    contents.replace("page3", "/Contents {content3}", {});
    contents.replace("page4", "/Resources <<", "/Resources 5 /Old <<");
    row("contents of pages", contents.file(), kPages);
    FidelityAssembly parents = FidelityFixture::plain("MAIN", kPages);
    parents.replace("page1", "/Parent {pages}", {});
    parents.replace("page2", "/Parent {pages}", "/Parent {page2}");
    row("parents of pages", parents.file(), kPages);
    FidelityAssembly loop = FidelityFixture::plain("MAIN", kPages);
    loop.set("pages", "<< /Type /Pages /Count 6 /Kids [{inner} {page5} {page6}] >>");
    loop.set("inner", "<< /Type /Pages /Count 4 /Parent {pages} /Kids [{page1} {page2} {pages} "
                      "{inner} {page3} {page4}] >>");
    row("branches in a ring", loop.file(), -1);
}

void TestFidelityDamage::inspectionAndSaveAgree()
{
    QFETCH(Bytes, file);
    QFETCH(int, pages);
    FidelityCase test;
    const QString path = test.add("MAIN", file);
    if (pages >= 0) {
        QCOMPARE(inspect(path).pageSizes.size(), pages);
    }
    QString problem = disagreement(path, test.output());
    if (problem.isEmpty()) {
        problem = difference(path, test.output());
    }
    QVERIFY2(problem.isEmpty(), qPrintable(problem));
}

void TestFidelityDamage::truncatedFilesAgree()
{
    const Bytes file = sound();
    FidelityCase test;
    for (qsizetype size = 20; size < file.size(); size += 61) {
        const QString problem = disagreement(test.add("MAIN", file.left(size)), test.output());
        QVERIFY2(problem.isEmpty(), qPrintable(u"after %1 bytes: %2"_s.arg(size).arg(problem)));
    }
}

void TestFidelityDamage::damagedBytesNeverGiveOtherPages()
{
    FidelityCase test;
    QStringList problems;
    const QList<Bytes> files = damagedFiles();
    for (qsizetype i = 0; i < files.size(); ++i) {
        const QString path = test.add("MAIN", files.at(i));
        const qsizetype pages = inspect(path).pageSizes.size();
        for (int number = 1; pages > 0 && number <= kPages + 1; ++number) {
            const bool isSaved = save({filePage(path, number - 1)}, test.output()).ok;
            if (isSaved && number > pages) {
                problems.append(
                    u"file %1 has %2 pages, and a page %3"_s.arg(i).arg(pages).arg(number));
            } else if (isSaved && inspect(test.output()).pageSizes.size() != 1) {
                problems.append(u"page %1 becomes several"_s.arg(number));
            }
        }
    }
    NO_PROBLEMS(problems);
}

void TestFidelityDamage::damagedBytesCanBeSaved()
{
    FidelityCase test;
    QStringList problems;
    const QList<Bytes> files = damagedFiles();
    for (qsizetype i = 0; i < files.size(); ++i) {
        const QString problem = disagreement(test.add("MAIN", files.at(i)), test.output());
        if (!problem.isEmpty()) {
            problems.append(u"file %1: %2"_s.arg(i).arg(problem));
        }
    }
    NO_PROBLEMS(problems);
}

void TestFidelityDamage::damagedDocumentsKeepTheirFeatures_data()
{
    const Bytes file = FidelityFixture::everything("MAIN").file();
    QTest::addColumn<Bytes>("file");
    QTest::newRow("wrong start of the table") << replaced(file, "startxref\n", "startxref\n1");
    QTest::newRow("no end") << file.left(file.indexOf("startxref"));
    QTest::newRow("bytes before the header") << "junk\n" + file;
    QTest::newRow("object streams") << withObjectStreams(file);
}

void TestFidelityDamage::damagedDocumentsKeepTheirFeatures()
{
    QFETCH(Bytes, file);
    FidelityCase test;
    test.add("MAIN", file);
    NO_PROBLEMS(test.save(u"M8-1"_s)->problems());
}

QTEST_GUILESS_MAIN(TestFidelityDamage)
#include "tst_fidelity_damage.moc"
