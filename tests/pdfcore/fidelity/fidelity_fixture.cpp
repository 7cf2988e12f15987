// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdfcore/fidelity/fidelity_fixture.h"

#include <QList>

namespace FidelityFixture {

namespace {

using Bytes = QByteArray;

Bytes num(int number)
{
    return Bytes::number(number);
}

/// The number of the page `steps` after page `number`, from the start again after the last.
int after(int number, int steps)
{
    return (number - 1 + steps) % kPages + 1;
}

Bytes pageName(int number)
{
    return "page" + num(number);
}

Bytes reference(const Bytes &name)
{
    return '{' + name + '}';
}

Bytes page(int number)
{
    return reference(pageName(number));
}

/// Something that only the document `prefix` has in this place.
bool isMain(const Bytes &prefix)
{
    return prefix == "MAIN";
}

/// The pages of everything(), before their annotations are known.
void addPages(FidelityAssembly &document, const Bytes &prefix)
{
    document.set("pages", "<< /Type /Pages /Count 8 /Kids [{left} {right}] "
                          "/MediaBox [0 0 300 400] /Resources {resources} >>");
    document.set("left", "<< /Type /Pages /Parent {pages} /Count 4 "
                         "/Kids [{page1} {page2} {page3} {page4}] >>");
    document.set("right", "<< /Type /Pages /Parent {pages} /Count 4 /Rotate 90 "
                          "/Kids [{page5} {page6} {page7} {page8}] >>");
    document.set("resources",
                 "<< /Font << /F1 {font} >> /XObject << /Im {image} >> "
                 "/Properties << /L1 {groupOn} /L2 {groupOff} /L3 {contentGroups} >> >>");
    document.set("font", "<< /Type /Font /Subtype /Type1 /BaseFont /" +
                             Bytes(isMain(prefix) ? "Helvetica" : "Times-Roman") + " >>");
    document.setStream("image",
                       "/Type /XObject /Subtype /Image /Width 2 /Height 2 /BitsPerComponent 8 "
                       "/ColorSpace /DeviceGray",
                       isMain(prefix) ? Bytes("\x10\x50\x90\xd0") : Bytes("\xd0\x90\x50\x10"));
    const QList<Bytes> own{{},
                           "/Rotate 270 /CropBox [20 20 280 380]",
                           "/UserUnit 2",
                           "/BleedBox [5 5 295 395] /TrimBox [10 10 290 390] "
                           "/ArtBox [30 30 270 370]",
                           {},
                           "/MediaBox [-10 -10 290 390]",
                           "/Rotate 0 /Dur 5",
                           "/PieceInfo << /Maker << /LastModified (D:20200101) /Private 8 >> >>"};
    for (int n = 1; n <= kPages; ++n) {
        document.set(pageName(n), "<< /Type /Page /Parent " + Bytes(n <= 4 ? "{left}" : "{right}") +
                                      " /Contents " + reference("content" + num(n)) + " /Annots " +
                                      reference("annots" + num(n)) + " /Tabs /S /StructParents " +
                                      num(n - 1) + ' ' + own.at(n - 1) + " >>");
        document.setStream("content" + num(n), {}, markedContent(prefix, n));
        document.set("annots" + num(n), "[]");
    }
}

/// Named destinations of every kind, for every page: /ch3 and /dd3 in the catalogue, (sec.3) and
/// (dict.3) in the name tree.
void addDestinations(FidelityAssembly &document)
{
    Bytes old = "<<";
    Bytes arrays = "[";
    Bytes dictionaries = "[";
    for (int n = 1; n <= kPages; ++n) {
        old += " /ch" + num(n) + " [" + page(n) + " /XYZ 10 " + num(300 + n) + " 1.5]";
        old += " /dd" + num(n) + " << /D [" + page(n) + " /FitV " + num(n) + "] >>";
        arrays += " (sec." + num(n) + ") [" + page(n) + " /FitH " + num(200 + n) + ']';
        dictionaries += " (dict." + num(n) + ") << /D [" + page(n) + " /FitB] >>";
    }
    document.set("oldNames", old + " >>");
    document.set("destinations", "<< /Kids [{dictionaryNames} {arrayNames}] >>");
    document.set("dictionaryNames",
                 "<< /Limits [(dict.1) (dict.8)] /Names " + dictionaries + "] >>");
    document.set("arrayNames", "<< /Limits [(sec.1) (sec.8)] /Names " + arrays + "] >>");
}

void addAnnotation(FidelityAssembly &document, int number, const Bytes &name, const Bytes &body)
{
    document.set(name, "<< /Type /Annot /P " + page(number) + " /F 4 " + body + " >>");
    document.addElements("annots" + num(number), reference(name));
}

/// Links of every kind on every page.
void addLinks(FidelityAssembly &document, const Bytes &prefix)
{
    for (int n = 1; n <= kPages; ++n) {
        const auto target = [n](int steps) { return num(after(n, steps)); };
        const QList<Bytes> ways{
            "/Dest [" + page(n) + " /Fit]",
            "/Dest [" + page(after(n, 1)) + " /XYZ 10 200 1.5]",
            "/Dest /ch" + target(2),
            "/Dest (sec." + target(3) + ')',
            "/A << /S /GoTo /D (dict." + target(4) + ") >>",
            "/A << /Type /Action /S /GoTo /D /dd" + target(5) + " >>",
            "/A << /S /GoTo /D [" + page(after(n, 6)) + " /FitR 1 2 30 40] >>",
            "/Dest [" + num(after(n, 7) - 1) + " /Fit]",
        };
        for (int way = 0; way < ways.size(); ++way) {
            addAnnotation(document, n, "link" + num(n) + '.' + num(way),
                          "/Subtype /Link /Border [0 0 1] /Rect [10 " + num(100 + 20 * way) +
                              " 60 " + num(115 + 20 * way) + "] /Contents (to @" +
                              mark(prefix, after(n, way)) + ") " + ways.at(way));
        }
        document.addEntries("link" + num(n) + ".1", "/StructParent " + num(100 + n));
    }
    const Bytes box = "/Subtype /Link /Rect [70 100 120 115] ";
    addAnnotation(document, 1, "linkWeb",
                  box + "/Contents (web) /A << /S /URI /URI (https://example.org/" + prefix +
                      ") >>");
    addAnnotation(document, 1, "linkFile",
                  box + "/Contents (other file) /A << /S /GoToR /F (other.pdf) /D [4 /Fit] >>");
    addAnnotation(document, 5, "linkNamed",
                  box + "/Contents (next) /A << /S /Named /N /NextPage >>");
}

/// Notes with pop-ups and replies, a highlight and an attached file.
void addNotes(FidelityAssembly &document, const Bytes &prefix)
{
    for (const int n : {1, 4, 8}) {
        const Bytes k = num(n);
        const Bytes place = "/Rect [200 300 220 320] ";
        addAnnotation(document, n, "note" + k,
                      "/Subtype /Text " + place + "/Contents (" + mark(prefix, n) +
                          " note) /NM (note) /Popup {popup" + k + "}");
        addAnnotation(document, n, "popup" + k,
                      "/Subtype /Popup " + place + "/Parent {note" + k + '}');
        addAnnotation(document, n, "reply" + k,
                      "/Subtype /Text " + place + "/Contents (" + mark(prefix, n) +
                          " reply) /NM (reply) /IRT {note" + k + "} /RT /R");
        // Not to be viewed: newer releases of the renderer keep the icons of notes upright when the
        // page says that it is turned, but not when the renderer is told to turn it.
        document.replace("note" + k, "/F 4", "/F 32");
        document.replace("reply" + k, "/F 4", "/F 32");
        addAnnotation(document, n, "marker" + k,
                      "/Subtype /Highlight /C [1 1 0] /Rect [30 245 200 275] /QuadPoints "
                      "[30 275 200 275 30 245 200 245] /Contents (" +
                          mark(prefix, n) + " marker)");
    }
    addAnnotation(document, 6, "attached",
                  "/Subtype /FileAttachment /Rect [200 200 220 220] /Contents (attached) /FS "
                  "{noteFile}");
    document.set("noteFile", "<< /Type /Filespec /F (note.txt) /EF << /F {noteData} >> >>");
    document.setStream("noteData", "/Type /EmbeddedFile", prefix + " data of a note");
}

void addOutline(FidelityAssembly &document, const Bytes &prefix)
{
    const auto at = [&prefix](int number) -> Bytes { return '@' + mark(prefix, number) + ')'; };
    // The cover has a title in UTF-16.
    Bytes cover("\xFE\xFF\x00\xDC", 4);
    const Bytes rest = "ber @" + mark(prefix, 1);
    for (const char ch : rest) {
        cover += '\0';
        cover += ch;
    }
    document.set("outline", "<< /Type /Outlines /First {coverItem} /Last {elsewhere} /Count 8 >>");
    document.set("coverItem",
                 "<< /Title <" + cover.toHex() +
                     "> /Parent {outline} /Next {partOne} /Dest [{page1} /XYZ 0 400 0] /F 2 "
                     "/C [1 0 0] /SE {paragraph1} >>");
    document.set("partOne",
                 "<< /Title (Part one) /Parent {outline} /Prev {coverItem} /Next {partTwo} /First "
                 "{chapter2} /Last {chapter5} /Count 4 /F 1 >>");
    document.set("chapter2", "<< /Title (Chapter " + at(2) +
                                 " /Parent {partOne} /Next {chapter5} /First {section3} /Last "
                                 "{section4} /Count -2 /Dest /ch2 /C [0 0.5 1] >>");
    document.set("section3", "<< /Title (Section " + at(3) +
                                 " /Parent {chapter2} /Next {section4} /Dest (sec.3) >>");
    document.set("section4", "<< /Title (Section " + at(4) +
                                 " /Parent {chapter2} /Prev {section3} /A << /S /GoTo /D (dict.4) "
                                 ">> /F 3 >>");
    document.set("chapter5", "<< /Title (Chapter " + at(5) +
                                 " /Parent {partOne} /Prev {chapter2} /First {section6} /Last "
                                 "{webItem} /Count 2 /A << /S /GoTo /D [{page5} /FitB] >> >>");
    document.set("section6", "<< /Title (Section " + at(6) +
                                 " /Parent {chapter5} /Next {webItem} /Dest [{page6} /FitH 77] >>");
    document.set("webItem", "<< /Title (Web) /Parent {chapter5} /Prev {section6} /A << /S /URI "
                            "/URI (https://example.org/" +
                                prefix + ") >> >>");
    document.set("partTwo",
                 "<< /Title (Part two) /Parent {outline} /Prev {partOne} /Next {elsewhere} /First "
                 "{chapter7} /Last {chapter8} /Count -2 >>");
    document.set("chapter7", "<< /Title (Chapter " + at(7) +
                                 " /Parent {partTwo} /Next {chapter8} /Dest /dd7 >>");
    document.set("chapter8", "<< /Title (Chapter " + at(8) +
                                 " /Parent {partTwo} /Prev {chapter7} /Dest [7 /Fit] >>");
    document.set("elsewhere", "<< /Title (Elsewhere) /Parent {outline} /Prev {partTwo} /A << /S "
                              "/GoToR /F (other.pdf) /D [3 /Fit] >> >>");
}

/// A widget on page `number`. `appearance` is the text that it shows.
void addWidget(FidelityAssembly &document, int number, const Bytes &name, const Bytes &entries,
               const Bytes &appearance)
{
    document.setStream(name + ".look",
                       "/Type /XObject /Subtype /Form /BBox [0 0 100 20] /Resources << /Font << "
                       "/Fa {formFont} >> >>",
                       "/Tx BMC BT /Fa 12 Tf 2 5 Td (" + appearance + ") Tj ET EMC");
    addAnnotation(document, number, name,
                  "/Subtype /Widget /Rect [150 " + num(60 + 7 * number) + " 250 " +
                      num(80 + 7 * number) + "] /AP << /N {" + name + ".look} >> " + entries);
}

/// A button of a group or a check box, on in the state `state`.
void addButton(FidelityAssembly &document, int number, const Bytes &name, const Bytes &state,
               const Bytes &current, const Bytes &entries)
{
    addWidget(document, number, name, "/AS /" + current + ' ' + entries, name);
    document.setStream(name + ".off", "/Type /XObject /Subtype /Form /BBox [0 0 20 20]",
                       "0 0 20 20 re S");
    document.replace(name, "/N {" + name + ".look}",
                     "/N << /" + state + " {" + name + ".look} /Off {" + name + ".off} >>");
}

void addForm(FidelityAssembly &document, const Bytes &prefix)
{
    const Bytes look = "/DA (/Fa 12 Tf 0 g) ";
    document.set("formFont", "<< /Type /Font /Subtype /Type1 /Encoding /WinAnsiEncoding /BaseFont "
                             "/" +
                                 Bytes(isMain(prefix) ? "Helvetica-Bold" : "Courier") + " >>");
    document.set("form",
                 "<< /Fields [{name} {total} {person} {shared} {choice} {agree} {colour} {signed} "
                 "{jump}] /CO [{total} {person.first}] /DR << /Font << /Fa {formFont} >> >> /DA "
                 "(/Fa 0 Tf 0 g) /SigFlags 3 /XFA {hybrid} >>");
    document.setStream("hybrid", {}, "<xdp/>");
    addWidget(document, 1, "name", "/FT /Tx /T (name) /V (" + prefix + " name) " + look,
              prefix + " name");
    addWidget(document, 2, "total",
              "/FT /Tx /T (total) /V (42) /DV (0) /AA << /C << /S /JavaScript /JS (sum();) >> >> " +
                  look,
              "42");
    document.set("person", "<< /T (person) /FT /Tx /Kids [{person.first} {person.last}] >>");
    addWidget(document, 2, "person.first",
              "/Parent {person} /T (first) /V (" + prefix + " first) " + look, prefix + " first");
    addWidget(document, 3, "person.last",
              "/Parent {person} /T (last) /V (" + prefix + " last) " + look, prefix + " last");
    document.set("shared", "<< /T (shared) /FT /Tx /V (" + prefix + " shared) " + look +
                               "/Kids [{shared.1} {shared.4} {shared.6}] >>");
    for (const int n : {1, 4, 6}) {
        addWidget(document, n, "shared." + num(n), "/Parent {shared}", prefix + " shared");
    }
    document.set("choice", "<< /T (choice) /FT /Btn /Ff 49152 /V /Two "
                           "/Kids [{choice.1} {choice.2} {choice.3}] >>");
    addButton(document, 3, "choice.1", "One", "Off", "/Parent {choice}");
    addButton(document, 3, "choice.2", "Two", "Two", "/Parent {choice}");
    addButton(document, 5, "choice.3", "Three", "Off", "/Parent {choice}");
    addButton(document, 4, "agree", "Yes", "Yes", "/FT /Btn /T (agree) /V /Yes");
    addWidget(document, 5, "colour",
              "/FT /Ch /T (colour) /Ff 131072 /Opt [(red) (green)] /V (green) /I [1] " + look,
              "green");
    addWidget(document, 7, "signed",
              "/FT /Sig /T (signed) /V {signature} /Lock << /Type /SigFieldLock /Action /All >>",
              "signed by " + prefix);
    document.set("signature",
                 "<< /Type /Sig /Filter /Adobe.PPKLite /SubFilter /adbe.pkcs7.detached /Name (" +
                     prefix +
                     ") /ByteRange [0 0 0 0] /Contents <00> /Reference [<< /Type /SigRef "
                     "/TransformMethod /DocMDP /Data {catalogue} >>] >>");
    addWidget(document, 8, "jump",
              "/FT /Btn /T (jump) /Ff 65536 /MK << /CA (jump) >> /A << /S /GoTo /D [{page2} /Fit] "
              ">>",
              "jump");
}

/// One paragraph for each page with a link in it, and a part that spans pages 3 and 4.
void addStructure(FidelityAssembly &document, const Bytes &prefix)
{
    Bytes paragraphs;
    Bytes parents;
    Bytes linkParents;
    Bytes identifiers;
    for (int n = 1; n <= kPages; ++n) {
        const Bytes k = num(n);
        const bool isSpread = n == 3 || n == 4;
        paragraphs += " {paragraph" + k + '}';
        parents += ' ' + num(n - 1) + " [{paragraph" + k + '}' +
                   (isSpread ? Bytes(" {spread}") : Bytes()) + ']';
        linkParents += ' ' + num(100 + n) + " {reference" + k + '}';
        identifiers += " (" + k + ") {paragraph" + k + '}';
        document.set("paragraph" + k, "<< /Type /StructElem /S /P /P {body} /Pg " + page(n) +
                                          " /ID (" + k + ") /Alt (" + mark(prefix, n) +
                                          ") /K [0 {reference" + k + "}] >>");
        document.set("reference" + k, "<< /Type /StructElem /S /Link /P {paragraph" + k + "} /Pg " +
                                          page(n) + " /K << /Type /OBJR /Obj {link" + k +
                                          ".1} /Pg " + page(n) + " >> >>");
    }
    document.set("spread", "<< /Type /StructElem /S /Div /P {body} /K [<< /Type /MCR /Pg {page3} "
                           "/MCID 1 >> << /Type /MCR /Pg {page4} /MCID 1 >>] >>");
    document.set("body", "<< /Type /StructElem /S /Document /P {structure} /K [" + paragraphs +
                             " {spread}] >>");
    document.set("structure", "<< /Type /StructTreeRoot /K [{body}] /ParentTree {parentTree} "
                              "/ParentTreeNextKey 109 /RoleMap << /Para /P >> /IDTree << /Names [" +
                                  identifiers + "] >> >>");
    document.set("parentTree", "<< /Kids [{pageParents} {annotationParents}] >>");
    document.set("pageParents", "<< /Limits [0 7] /Nums [" + parents + "] >>");
    document.set("annotationParents", "<< /Limits [101 108] /Nums [" + linkParents + "] >>");
}

void addContentGroups(FidelityAssembly &document, const Bytes &prefix)
{
    document.set("groupOn", "<< /Type /OCG /Name (" + prefix + " shown) >>");
    document.set("groupOff", "<< /Type /OCG /Name (" + prefix + " hidden) >>");
    document.set("contentGroups", "<< /Type /OCMD /OCGs [{groupOff}] /P /AllOn >>");
    document.set("contentGroupSettings",
                 "<< /OCGs [{groupOn} {groupOff}] /D << /Name (usual) /Order "
                 "[{groupOn} {groupOff}] /ON [{groupOn}] /OFF [{groupOff}] >> >>");
}

void addAttachments(FidelityAssembly &document, const Bytes &prefix)
{
    document.set("files",
                 "<< /Names [(data.csv) {dataFile} (only-" + prefix + ".txt) {onlyFile}] >>");
    document.set("dataFile", "<< /Type /Filespec /F (data.csv) /UF (data.csv) /Desc (" + prefix +
                                 " figures) /EF << /F {data} >> >>");
    document.setStream("data", "/Type /EmbeddedFile /Subtype /text#2Fcsv", prefix + ",1,2,3\n");
    document.set("onlyFile",
                 "<< /Type /Filespec /F (only-" + prefix + ".txt) /EF << /F {onlyData} >> >>");
    document.setStream("onlyData", "/Type /EmbeddedFile", "only in " + prefix + '\n');
}

void addCatalogue(FidelityAssembly &document, const Bytes &prefix)
{
    document.set("catalogue",
                 "<< /Type /Catalog /Pages {pages} /Outlines {outline} /Dests {oldNames} /Names << "
                 "/Dests {destinations} /EmbeddedFiles {files} >> /AcroForm {form} "
                 "/StructTreeRoot {structure} /MarkInfo << /Marked true >> /OCProperties "
                 "{contentGroupSettings} /Metadata {metadata} /Lang (en-" +
                     prefix +
                     ") /ViewerPreferences << /DisplayDocTitle true /Direction /R2L >> /PageMode "
                     "/UseOutlines /PageLayout /TwoColumnLeft /OutputIntents [<< /Type "
                     "/OutputIntent /S /GTS_PDFX /OutputConditionIdentifier (" +
                     prefix +
                     ") >>] /OpenAction [{page3} /Fit] /Perms << /DocMDP {signature} >> "
                     "/PageLabels << /Nums [0 << /S /r >> 2 << /S /D /P (A-) /St 5 >> 5 << /S /A "
                     ">> 7 << /P (End) >>] >> >>");
    document.setStream("metadata", "/Type /Metadata /Subtype /XML",
                       "<x:xmpmeta xmlns:x='adobe:ns:meta/'><!-- " + prefix + " --></x:xmpmeta>");
    document.set("info", "<< /Title (" + prefix + " title) /Author (" + prefix +
                             " author) /Subject (subject) /Keywords (one two) /Creator (maker) "
                             "/CreationDate (D:20200102030405Z) /Project (" +
                             prefix + " project) /Trapped /False >>");
    document.setTrailer("/Info {info}");
}

} // namespace

QByteArray mark(const QByteArray &prefix, int number)
{
    return prefix + '-' + num(number);
}

QByteArray markedContent(const QByteArray &prefix, int number)
{
    const Bytes grey = Bytes::number(0.1 * number);
    return "/P << /MCID 0 >> BDC BT /F1 24 Tf 30 250 Td (" + mark(prefix, number) +
           ") Tj ET EMC\n" + grey + ' ' + (isMain(prefix) ? "0.2 0.8" : "0.9 0.1") +
           " rg 20 40 60 60 re f\n"
           "/Div << /MCID 1 >> BDC 0 0 1 rg 100 40 10 10 re f EMC\n"
           "/OC /L1 BDC 0 1 0 rg 100 60 30 30 re f EMC\n"
           "/OC /L2 BDC 1 0 0 rg 140 60 30 30 re f EMC\n"
           "/OC /L3 BDC 1 0 1 rg 180 60 30 30 re f EMC\n"
           "q 40 0 0 40 200 120 cm /Im Do Q\n";
}

FidelityAssembly plain(const QByteArray &prefix, int count)
{
    FidelityAssembly document;
    document.set("catalogue", "<< /Type /Catalog /Pages {pages} >>");
    document.set("font", "<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica >>");
    Bytes kids;
    for (int n = 1; n <= count; ++n) {
        kids += page(n) + ' ';
        document.set(pageName(n),
                     "<< /Type /Page /Parent {pages} /MediaBox [0 0 300 400] /Resources << /Font "
                     "<< /F1 {font} >> >> /Contents {content" +
                         num(n) + "} >>");
        document.setStream("content" + num(n), {},
                           "BT /F1 24 Tf 30 250 Td (" + mark(prefix, n) + ") Tj ET\n");
    }
    document.set("pages", "<< /Type /Pages /Count " + num(count) + " /Kids [" + kids + "] >>");
    return document;
}

FidelityAssembly everything(const QByteArray &prefix)
{
    FidelityAssembly document;
    addCatalogue(document, prefix);
    addPages(document, prefix);
    addDestinations(document);
    addLinks(document, prefix);
    addNotes(document, prefix);
    addOutline(document, prefix);
    addForm(document, prefix);
    addStructure(document, prefix);
    addContentGroups(document, prefix);
    addAttachments(document, prefix);
    return document;
}

FidelityAssembly unsignedEverything(const QByteArray &prefix)
{
    FidelityAssembly document = everything(prefix);
    document.replace("catalogue", "/Perms << /DocMDP {signature} >>", {});
    document.replace("form", "/SigFlags 3 /XFA {hybrid}", {});
    document.replace("signed", "/V {signature}", {});
    return document;
}

QString markInText(const QString &text)
{
    const qsizetype sign = text.indexOf(u'@');
    return sign < 0 ? QString() : text.mid(sign + 1);
}

} // namespace FidelityFixture
