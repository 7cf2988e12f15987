// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdfcore/fidelity/fidelity_case.h"
#include "tests/pdfcore/fidelity/fidelity_soundness.h"

#include <QDir>
#include <QFileInfo>
#include <QRandomGenerator>

#include <qpdf/QPDFJob.hh>

using namespace EngineCalls;
using namespace Qt::StringLiterals;

namespace {

using Bytes = QByteArray;

constexpr int kPages = 8;
constexpr int kImageBytes = 300'000;
constexpr double kLargestRatio = 1.3;
constexpr QSize kSize(120, 160);

/// Bytes that no filter makes smaller.
Bytes noise(int seed, int size)
{
    QRandomGenerator random(static_cast<quint32>(seed));
    Bytes data(size, '\0');
    for (char &byte : data) {
        byte = static_cast<char>(random.bounded(256));
    }
    return data;
}

/// Pages that have one dictionary of resources in common: a picture and a font for each page.
FidelityAssembly withSharedResources(const Bytes &prefix)
{
    FidelityAssembly document = FidelityFixture::plain(prefix, kPages);
    Bytes fonts;
    Bytes images;
    for (int n = 1; n <= kPages; ++n) {
        const Bytes k = Bytes::number(n);
        fonts += " /F" + k + " {font" + k + '}';
        images += " /Im" + k + " {image" + k + '}';
        document.set("font" + k, "<< /Type /Font /Subtype /Type1 /BaseFont /" +
                                     Bytes(n % 2 == 0 ? "Times-Roman" : "Helvetica") +
                                     " /FontDescriptor {descriptor" + k + "} >>");
        document.set("descriptor" + k, "<< /Type /FontDescriptor /FontName /Embedded" + k +
                                           " /Flags 32 /FontFile2 {program" + k + "} >>");
        document.setStream("program" + k, {}, noise(100 + n, kImageBytes / 10));
        document.setStream("image" + k,
                           "/Type /XObject /Subtype /Image /Width 500 /Height 600 /ColorSpace "
                           "/DeviceGray /BitsPerComponent 8",
                           noise(n, kImageBytes));
        document.replace("page" + k, "/Resources << /Font << /F1 {font} >> >>",
                         "/Resources {resources}");
        document.setStream("content" + k, {},
                           "BT /F" + k + " 24 Tf 30 250 Td (" + prefix + '-' + k +
                               ") Tj ET q 200 0 0 200 30 30 cm /Im" + k + " Do Q");
    }
    document.set("resources", "<< /Font <<" + fonts + " >> /XObject <<" + images + " >> >>");
    return document;
}

/// Total size of the parts that qpdf makes of a file, one for each page.
qint64 sizeOfPeerParts(const QString &path, const QString &folder)
{
    const std::string input = path.toStdString();
    const std::string output = QString(folder + u"/peer-%d.pdf"_s).toStdString();
    const std::vector<const char *> arguments{"qpdf", "--split-pages", input.c_str(),
                                              output.c_str(), nullptr};
    QPDFJob job;
    job.initializeFromArgv(arguments.data());
    job.run();
    qint64 size = 0;
    for (const QFileInfo &part : QDir(folder).entryInfoList({u"peer-*.pdf"_s})) {
        size += part.size();
    }
    return size;
}

/// A page whose content finds pictures in roundabout ways, with its dictionary of resources shared.
FidelityAssembly withHiddenUses()
{
    FidelityAssembly document = withSharedResources("MAIN");
    // A form without resources of its own takes those of the page.
    document.addEntries("resources", "/Pattern << /P1 {pattern} >> /ExtGState << /G1 {state} >> "
                                     "/Shading << /S1 "
                                     "{shading} >>");
    document.replace("resources", "/Im1 {image1}",
                     "/Im1 {image1} /Form {form} /Own {ownForm} /Nested {nested}");
    document.setStream("form", "/Type /XObject /Subtype /Form /BBox [0 0 300 400]",
                       "q 100 0 0 100 0 0 cm /Im2 Do Q");
    document.setStream("ownForm",
                       "/Type /XObject /Subtype /Form /BBox [0 0 300 400] /Resources << /XObject "
                       "<< /Im3 {image3} >> >>",
                       "q 100 0 0 100 100 0 cm /Im3 Do Q");
    document.setStream("nested", "/Type /XObject /Subtype /Form /BBox [0 0 300 400]", "/Form Do");
    document.setStream("pattern",
                       "/Type /Pattern /PatternType 1 /PaintType 1 /TilingType 1 /BBox [0 0 20 20] "
                       "/XStep 20 /YStep 20 /Resources << /XObject << /Im4 {image4} >> >>",
                       "q 20 0 0 20 0 0 cm /Im4 Do Q");
    document.set("state", "<< /ca 0.5 /SMask << /S /Luminosity /G {mask} >> >>");
    document.setStream("mask",
                       "/Type /XObject /Subtype /Form /BBox [0 0 300 400] /Group << /S "
                       "/Transparency /CS /DeviceGray >>",
                       "q 300 0 0 400 0 0 cm /Im5 Do Q");
    document.set("shading", "<< /ShadingType 2 /ColorSpace /DeviceRGB /Coords [0 0 100 0] "
                            "/Function << /FunctionType 2 /Domain [0 1] /C0 [1 0 0] /C1 [0 0 1] "
                            "/N 1 >> >>");
    document.set("look", "<< /N {lookForm} >>");
    document.setStream("lookForm",
                       "/Type /XObject /Subtype /Form /BBox [0 0 50 50] /Resources {resources}",
                       "q 50 0 0 50 0 0 cm /Im6 Do Q");
    document.set("stamp", "<< /Type /Annot /Subtype /Stamp /Rect [200 300 250 350] /AP {look} /F 4 "
                          ">>");
    const QList<Bytes> contents{
        "/Form Do",
        "/Own Do",
        "/Nested Do",
        "/Pattern cs /P1 scn 0 0 200 200 re f",
        "/G1 gs 0 1 0 rg 0 0 300 400 re f",
        "q 0 0 100 100 re W n /S1 sh Q q 50 0 0 50 99 9 cm /#49m7 Do Q",
        "q 50 0 0 50 9 9 cm BI /W 4 /H 2 /BPC 8 /CS /G ID \x01/Im8 Do EI Q",
        "% /Im2 Do\nBT /F8 9 Tf (/Im3 Do) Tj ET q 90 0 0 90 9 9 cm /Im8 Do Q"};
    for (int n = 1; n <= kPages; ++n) {
        const Bytes k = Bytes::number(n);
        document.setStream("content" + k, {},
                           "BT /F" + k + " 24 Tf 30 350 Td (MAIN-" + k +
                               ") Tj ET q 1 0 0 1 10 10 cm " + contents.at(n - 1) + " Q");
    }
    document.addEntries("page8", "/Annots [{stamp}]");
    return document;
}

} // namespace

/// Parts of a document must be as small as they can be, and show all that they showed.
class TestFidelitySplit : public QObject
{
    Q_OBJECT

private slots:
    void partsAreSmall();
    void partsLookAsBefore();
    void halvesAreSmall();
    void foreignPagesBringOnlyWhatTheyUse();
    void hiddenUsesLookAsBefore();
    void partsOfEverythingAreSound();
    void copiesShareTheirPictures();
    void partsOfADocumentWithAttachmentsKeepThem();
};

void TestFidelitySplit::partsAreSmall()
{
    FidelityCase test;
    const QString path = test.add("MAIN", withSharedResources("MAIN").file());
    qint64 size = 0;
    for (int n = 1; n <= kPages; ++n) {
        const Outcome outcome = save(test.pages(u"M%1"_s.arg(n)), test.output());
        QVERIFY2(outcome.ok, qPrintable(outcome.message));
        size += QFileInfo(test.output()).size();
    }
    const qint64 peer = sizeOfPeerParts(path, test.folder().path());
    QVERIFY(peer > qint64{kPages} * kImageBytes);
    QVERIFY2(static_cast<double>(size) <= kLargestRatio * static_cast<double>(peer),
             qPrintable(u"%1 instead of %2 bytes"_s.arg(size).arg(peer)));
}

void TestFidelitySplit::partsLookAsBefore()
{
    FidelityCase test;
    const QString path = test.add("MAIN", withSharedResources("MAIN").file());
    for (int n = 1; n <= kPages; ++n) {
        const auto saved = test.save(u"M%1"_s.arg(n));
        NO_PROBLEMS(saved->problems());
        QCOMPARE(distance(render(filePage(path, n - 1), kSize).image,
                          render(filePage(test.output(), 0), kSize).image),
                 0);
    }
}

void TestFidelitySplit::halvesAreSmall()
{
    FidelityCase test;
    test.add("MAIN", withSharedResources("MAIN").file());
    const Outcome outcome = save(test.pages(u"M5-8"_s), test.output());
    QVERIFY2(outcome.ok, qPrintable(outcome.message));
    QVERIFY(QFileInfo(test.output()).size() <
            static_cast<qint64>(kLargestRatio * 1.1 * kImageBytes * kPages / 2));
}

void TestFidelitySplit::foreignPagesBringOnlyWhatTheyUse()
{
    FidelityCase test;
    test.add("MAIN", FidelityFixture::plain("MAIN", 2).file());
    test.add("OTHER", withSharedResources("OTHER").file());
    const auto saved = test.save(u"M1 O3 M2"_s);
    NO_PROBLEMS(saved->problems());
    QVERIFY(QFileInfo(test.output()).size() < 2 * kImageBytes);
}

void TestFidelitySplit::hiddenUsesLookAsBefore()
{
    FidelityCase test;
    const QString path = test.add("MAIN", withHiddenUses().file());
    NO_PROBLEMS(FidelitySoundness::problems(path));
    for (int n = 1; n <= kPages; ++n) {
        const Outcome outcome = save(test.pages(u"M%1"_s.arg(n)), test.output());
        QVERIFY2(outcome.ok, qPrintable(outcome.message));
        const int difference = distance(render(filePage(path, n - 1), kSize).image,
                                        render(filePage(test.output(), 0), kSize).image);
        QVERIFY2(difference == 0, qPrintable(u"page %1 looks different"_s.arg(n)));
    }
}

void TestFidelitySplit::partsOfEverythingAreSound()
{
    FidelityCase test({"MAIN"});
    for (int n = 1; n <= FidelityFixture::kPages; ++n) {
        NO_PROBLEMS(test.save(u"M%1"_s.arg(n))->problems());
    }
}

void TestFidelitySplit::copiesShareTheirPictures()
{
    FidelityCase test;
    test.add("MAIN", withSharedResources("MAIN").file());
    const auto saved = test.save(u"M2 M2+90 M2 M2"_s);
    NO_PROBLEMS(saved->problems());
    QVERIFY(QFileInfo(test.output()).size() < 2 * kImageBytes);
}

void TestFidelitySplit::partsOfADocumentWithAttachmentsKeepThem()
{
    FidelityCase test({"MAIN"});
    NO_PROBLEMS(test.save(u"M2"_s)->attachmentProblems());
}

QTEST_GUILESS_MAIN(TestFidelitySplit)
#include "tst_fidelity_split.moc"
