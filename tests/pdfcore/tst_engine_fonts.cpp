// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/pdf_editor_backend.h"
#include "tests/support/pdf_fixture.h"

#include <QDirIterator>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

namespace {

/// One page with a line of text in a font that is named but not embedded.
QByteArray textIn(const QByteArray &font)
{
    const QByteArray content = "BT /F 40 Tf 20 40 Td (Quills 123) Tj ET";
    const QList<QByteArray> objects = {
        "<</Type/Catalog/Pages 2 0 R>>",
        "<</Type/Pages/Kids[3 0 R]/Count 1>>",
        "<</Type/Page/Parent 2 0 R/MediaBox[0 0 300 100]/Contents 4 0 R"
        "/Resources<</Font<</F 5 0 R>>>>>>",
        "<</Length " + QByteArray::number(content.size()) + ">>stream\n" + content + "\nendstream",
        "<</Type/Font/Subtype/TrueType/BaseFont/" + font +
            "/Encoding/WinAnsiEncoding/FontDescriptor 6 0 R>>",
        "<</Type/FontDescriptor/FontName/" + font +
            "/Flags 32/Ascent 900/Descent -200/CapHeight 700/ItalicAngle 0/StemV 80"
            "/MissingWidth 0/FontBBox[0 0 1000 1000]>>",
    };
    QByteArray pdf = "%PDF-1.4\n";
    QList<qsizetype> offsets;
    for (const QByteArray &object : objects) {
        offsets.append(pdf.size());
        pdf += QByteArray::number(offsets.size()) + " 0 obj\n" + object + "\nendobj\n";
    }
    const qsizetype table = pdf.size();
    pdf += "xref\n0 7\n0000000000 65535 f \n";
    for (const qsizetype offset : offsets) {
        pdf += QByteArray::number(offset).rightJustified(10, '0') + " 00000 n \n";
    }
    return pdf + "trailer<</Size 7/Root 1 0 R>>\nstartxref\n" + QByteArray::number(table) +
           "\n%%EOF\n";
}

bool isInstalled(const QString &fileName)
{
    const QStringList folders = QStandardPaths::standardLocations(QStandardPaths::FontsLocation);
    for (const QString &folder : folders) {
        if (QDirIterator(folder, {fileName}, QDir::Files, QDirIterator::Subdirectories).hasNext()) {
            return true;
        }
    }
    return false;
}

} // namespace

/// Fonts that a document names without embedding them.
class TestEngineFonts : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void installedFontIsUsedByItsName();
    void installedFontIsUsedByFamilyAndStyle();
    void unknownFontIsReplaced();

private:
    QImage picture(const QByteArray &font);

    QTemporaryDir m_folder;
};

void TestEngineFonts::initTestCase()
{
    QVERIFY(m_folder.isValid());
    if (!isInstalled(QStringLiteral("DejaVuSerif.ttf")) ||
        !isInstalled(QStringLiteral("DejaVuSerif-Bold.ttf"))) {
        QSKIP("The fonts that are looked for are not installed.");
    }
}

QImage TestEngineFonts::picture(const QByteArray &font)
{
    const QString path = m_folder.filePath(QString::fromLatin1(font) + QStringLiteral(".pdf"));
    if (!PdfFixture::write(path, textIn(font))) {
        return {};
    }
    PdfSourcePage page;
    page.filePath = path;
    page.pageIndex = 0;
    return PdfEditorBackend::renderPage(page, {600, 200}, nullptr, nullptr);
}

void TestEngineFonts::installedFontIsUsedByItsName()
{
    const QImage serif = picture("DejaVuSerif");
    QVERIFY(!serif.isNull());
    QVERIFY(serif != picture("NoSuchFontAnywhere"));
    QVERIFY(serif != picture("DejaVuSerif-Bold"));
}

void TestEngineFonts::installedFontIsUsedByFamilyAndStyle()
{
    // "DejaVuSerif,Bold" is no font's own name: the family and the style lead to the same file.
    QCOMPARE(picture("DejaVuSerif,Bold"), picture("DejaVuSerif-Bold"));
}

void TestEngineFonts::unknownFontIsReplaced()
{
    const QImage replaced = picture("NoSuchFontAnywhere");
    QVERIFY(!replaced.isNull());
    QImage white(replaced.size(), replaced.format());
    white.fill(Qt::white);
    QVERIFY(replaced != white);
    QCOMPARE(replaced, picture("NeitherThisFont"));
}

QTEST_GUILESS_MAIN(TestEngineFonts)
#include "tst_engine_fonts.moc"
