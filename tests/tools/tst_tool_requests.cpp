// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/support/dialog_answers.h"
#include "tests/tools/tool_page_test.h"
#include "tools/image_to_pdf_page.h"
#include "tools/pdf_compress_page.h"
#include "tools/pdf_convert_page.h"
#include "tools/pdf_decry_page.h"
#include "tools/pdf_encry_page.h"
#include "tools/pdf_merge_page.h"
#include "widgets/card_radio_button.h"
#include "widgets/password_input.h"
#include "widgets/switch_button.h"

#include <QLineEdit>
#include <QRadioButton>

#include <functional>
#include <memory>

using namespace ToolPageTest;
using namespace Qt::StringLiterals;

namespace {

/// A place for the results, and what was chosen there.
struct Place
{
    const char *name;
    int mode;
    bool folderChosen;
};

constexpr Place kPlaces[] = {
    {"source folder", SourceFolder, false},     {"desktop", Desktop, false},
    {"program's folder", ProgramFolder, false}, {"chosen folder", Chosen, true},
    {"no chosen folder", Chosen, false},
};

/// What the result of a file is called beside what exists already; a folder ends with a slash.
struct Naming
{
    const char *name;
    QString file;
    QStringList existing;
    QString expected;
};

void addNamings(std::initializer_list<Naming> namings)
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QStringList>("existing");
    QTest::addColumn<QString>("expected");
    for (const Naming &naming : namings) {
        QTest::newRow(naming.name) << naming.file << naming.existing << naming.expected;
    }
}

} // namespace

/// What each page asks of the task service.
class TestToolRequests final : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void compress_data();
    void compress();
    void imagesToPdf_data();
    void imagesToPdf();
    void pdfToImages_data();
    void pdfToImages();
    void encrypt_data();
    void encrypt();
    void decrypt_data();
    void decrypt();
    void merge_data();
    void merge();

    void newFileTakesAFreeName_data();
    void newFileTakesAFreeName();
    void newFolderTakesAFreeName_data();
    void newFolderTakesAFreeName();
    void mergedFileTakesAFreeName();
    void outputsOfImagesAreChained();
    void outputsOfImagesBesideTheirImages();
    void singlePdfIsNamedLikeTheFirstImage();
    void filesOfOneNameGetFoldersOfTheirOwn();
    void programFolderIsMadeWithTheRequest();
    void programFolderThatCannotBeMadeIsAskedForAllTheSame();
    void folderOfTheDialogIsTaken();
    void folderIsTakenAsItStands();
    void requestOfNoPlaceIsEmpty();

private:
    static void addPlaces(const std::function<void(const QByteArray &name, const Place &)> &add,
                          bool sourceFolder = true);
    void choose(const FileToolPage &page, const Place &place) const;
    /// Where the results of a file are to go.
    [[nodiscard]] QString folderFor(const Place &place, const QString &file) const;
    [[nodiscard]] QString chosen() const { return m_home->path(u"chosen 文件夹"_s); }
    /// A path as the pages hand it on.
    static QString native(const QString &path) { return QDir::toNativeSeparators(path); }
    static QString in(const QString &folder, const QString &name)
    {
        return native(folder + QDir::separator() + name);
    }
    static QStringList expectedLines(int type, const QStringList &inputFiles,
                                     const QString &outputPath, const QString &inputFile,
                                     const Place &place, const QStringList &options)
    {
        return QStringList{
                   u"id \"\""_s,
                   u"type %1"_s.arg(type),
                   u"inputFiles (%1)"_s.arg(inputFiles.join(u'|')),
                   u"outputPath \"%1\""_s.arg(outputPath),
                   u"inputFile \"%1\""_s.arg(inputFile),
                   u"useSourceFolder %1"_s.arg(place.mode == SourceFolder ? 1 : 0),
               } +
               options;
    }
    void passwordRequest(FileToolPage &page, int type, bool listsTheFile) const;

    std::unique_ptr<ToolTestHome> m_home;
    /// Files in two folders; those beside them are taken for names of results.
    QStringList m_files;
    QStringList m_images;
};

void TestToolRequests::init()
{
    m_home.reset();
    m_home = std::make_unique<ToolTestHome>();
    if (!m_home->isWhole()) {
        QSKIP("The desktop cannot be moved for a test here.");
    }
    m_files = {m_home->add(u"one/报告.v2 📄.pdf"_s), m_home->add(u"two/a.pdf"_s)};
    m_images = {m_home->add(u"one/x.y.png"_s), m_home->add(u"two/图像.JPG"_s)};
}

void TestToolRequests::addPlaces(
    const std::function<void(const QByteArray &name, const Place &)> &add, bool sourceFolder)
{
    for (const Place &place : kPlaces) {
        if (sourceFolder || place.mode != SourceFolder) {
            add(place.name, place);
        }
    }
}

void TestToolRequests::choose(const FileToolPage &page, const Place &place) const
{
    QVERIFY(
        choosePlace(*page.optionsPanel(), place.mode, place.folderChosen ? chosen() : QString()));
}

QString TestToolRequests::folderFor(const Place &place, const QString &file) const
{
    switch (place.mode) {
    case SourceFolder:
        return QFileInfo(file).absolutePath();
    case Desktop:
        return ToolTestHome::desktop();
    case ProgramFolder:
        return ToolTestHome::documents() + u"/Quillora"_s;
    default:
        return place.folderChosen ? chosen() : u"选择位置..."_s;
    }
}

void TestToolRequests::compress_data()
{
    QTest::addColumn<Place>("place");
    QTest::addColumn<int>("level");
    QTest::addColumn<bool>("replaces");
    addPlaces([](const QByteArray &name, const Place &place) {
        for (const int level : {-1, 0, 1}) {
            for (const bool replaces : {false, true}) {
                QTest::addRow("%s, level %d, %s", name.constData(), level,
                              replaces ? "replace" : "keep")
                    << place << level << replaces;
            }
        }
    });
}

void TestToolRequests::compress()
{
    QFETCH(Place, place);
    QFETCH(int, level);
    QFETCH(bool, replaces);
    const PdfCompressPage page;
    choose(page, place);
    if (level >= 0) {
        part<CardRadioButton>(page, level == 0 ? "basicLevelCard" : "strongLevelCard")
            ->radioButton()
            ->click();
    }
    if (replaces) {
        part<QRadioButton>(page, "replaceSourceButton")->click();
    }
    const bool beside = place.mode == SourceFolder;
    const QStringList names{beside ? u"报告.v2 📄(1).pdf"_s : u"报告.v2 📄.pdf"_s,
                            beside ? u"a(1).pdf"_s : u"a.pdf"_s};
    QStringList expected;
    for (int i = 0; i < 2; ++i) {
        expected += expectedLines(6, {}, in(folderFor(place, m_files[i]), names[i]),
                                  native(m_files[i]), place,
                                  {u"compressLevel: int %1"_s.arg(level == 0 ? 0 : 1),
                                   u"saveOption: int %1"_s.arg(replaces ? 0 : 1)});
    }
    QCOMPARE(linesOf(page.requestsFor(m_files)), expected);
}

void TestToolRequests::imagesToPdf_data()
{
    QTest::addColumn<Place>("place");
    QTest::addColumn<int>("size");
    QTest::addColumn<int>("margin");
    QTest::addColumn<int>("orientation");
    QTest::addColumn<bool>("single");
    addPlaces([](const QByteArray &name, const Place &place) {
        for (int choice = 0; choice < 2 * 3 * 2 * 2; ++choice) {
            const int size = choice % 2;
            const int margin = choice / 2 % 3;
            const int orientation = choice / 6 % 2;
            const bool single = choice / 12 == 1;
            QTest::addRow("%s, size %d, margin %d, orientation %d, %s", name.constData(), size,
                          margin, orientation, single ? "single" : "each")
                << place << size << margin << orientation << single;
        }
    });
}

void TestToolRequests::imagesToPdf()
{
    QFETCH(Place, place);
    QFETCH(int, size);
    QFETCH(int, margin);
    QFETCH(int, orientation);
    QFETCH(bool, single);
    ImageToPdfPage page;
    choose(page, place);
    QVERIFY(chooseText(*part<ModernComboBox>(page, "pageSizeBox"),
                       QStringList{u"A4"_s, u"Letter(US)"_s}.at(size)));
    QVERIFY(chooseText(*part<ModernComboBox>(page, "pageMarginBox"),
                       QStringList{u"无"_s, u"窄"_s, u"宽"_s}.at(margin)));
    if (orientation == 1 || single) {
        page.resize(900, 700);
        page.show();
    }
    if (orientation == 1) {
        QTest::mouseClick(part<QWidget>(page, "landscapeButton"), Qt::LeftButton);
    }
    if (single) {
        QTest::mouseClick(part<QWidget>(page, "singlePdfSwitch"), Qt::LeftButton);
    }
    const QStringList options{u"pageMargin: int %1"_s.arg(margin),
                              u"pageOrientation: int %1"_s.arg(orientation),
                              u"pageSize: int %1"_s.arg(size),
                              u"singlePdf: bool %1"_s.arg(single ? u"true"_s : u"false"_s)};
    const QString first = in(folderFor(place, m_images[0]), u"x.y.pdf"_s);
    QStringList expected;
    if (single) {
        expected = expectedLines(5, m_images, first, {}, place, options);
    } else {
        const QString second =
            in(place.mode == SourceFolder ? QFileInfo(m_images[1]).absolutePath() : first,
               u"图像.pdf"_s);
        expected = expectedLines(5, {native(m_images[0])}, first, {}, place, options) +
                   expectedLines(5, {native(m_images[1])}, second, {}, place, options);
    }
    QCOMPARE(linesOf(page.requestsFor(m_images)), expected);
}

void TestToolRequests::pdfToImages_data()
{
    QTest::addColumn<Place>("place");
    QTest::addColumn<QString>("format");
    QTest::addColumn<bool>("extract");
    addPlaces([](const QByteArray &name, const Place &place) {
        for (const QString &format : {u"JPG"_s, u"PNG"_s}) {
            for (const bool extract : {false, true}) {
                QTest::addRow("%s, %s, %s", name.constData(), qPrintable(format),
                              extract ? "extract" : "pages")
                    << place << format << extract;
            }
        }
    });
}

void TestToolRequests::pdfToImages()
{
    QFETCH(Place, place);
    QFETCH(QString, format);
    QFETCH(bool, extract);
    PdfConvertPage page;
    choose(page, place);
    QVERIFY(chooseText(*part<ModernComboBox>(page, "imageFormatBox"), format));
    if (extract) {
        page.resize(900, 700);
        page.show();
        QTest::mouseClick(part<QWidget>(page, "extractImagesSwitch"), Qt::LeftButton);
    }
    const QStringList names{u"报告.v2 📄"_s, u"a"_s};
    QStringList folders;
    QStringList expected;
    for (int i = 0; i < 2; ++i) {
        folders.append(folderFor(place, m_files[i]) + u'/' + names[i]);
        QVERIFY(!QFileInfo::exists(folders[i]));
        expected += expectedLines(
            4, {native(m_files[i])}, folders[i], {}, place,
            {u"format: int %1"_s.arg(format == u"JPG" ? 2 : 3),
             u"saveAsSeparateFiles: bool %1"_s.arg(extract ? u"true"_s : u"false"_s)});
    }
    QCOMPARE(linesOf(page.requestsFor(m_files)), expected);
    for (const QString &folder : folders) {
        QVERIFY2(QFileInfo(folder).isDir(), qPrintable(folder));
    }
}

void TestToolRequests::encrypt_data()
{
    QTest::addColumn<Place>("place");
    QTest::addColumn<QString>("first");
    QTest::addColumn<QString>("second");
    QTest::addColumn<bool>("replaces");
    addPlaces([](const QByteArray &name, const Place &place) {
        for (const bool replaces : {false, true}) {
            const auto row = [&](const char *kind, const QString &first, const QString &second) {
                QTest::addRow("%s, %s, %s", name.constData(), kind, replaces ? "replace" : "keep")
                    << place << first << second << replaces;
            };
            row("equal", u"secret"_s, u"secret"_s);
            row("different", u" 密码 🔑 "_s, u"other"_s);
            row("empty", QString(), u"other"_s);
        }
    });
}

void TestToolRequests::passwordRequest(FileToolPage &page, int type, bool listsTheFile) const
{
    QFETCH(Place, place);
    QFETCH(QString, first);
    QFETCH(bool, replaces);
    choose(page, place);
    part<QWidget>(page, "firstPassword")->findChild<QLineEdit *>()->setText(first);
    if (replaces) {
        part<QRadioButton>(page, "replaceSourceButton")->click();
    }
    QStringList expected;
    for (const QString &file : m_files) {
        expected += expectedLines(
            type, listsTheFile ? QStringList{file} : QStringList(), native(folderFor(place, file)),
            native(file), place,
            {u"password: QString %1"_s.arg(first), u"saveOption: int %1"_s.arg(replaces ? 0 : 1)});
    }
    QCOMPARE(linesOf(page.requestsFor(m_files)), expected);
}

void TestToolRequests::encrypt()
{
    QFETCH(QString, second);
    PdfEncryPage page;
    part<QWidget>(page, "secondPassword")->findChild<QLineEdit *>()->setText(second);
    passwordRequest(page, 2, true);
}

void TestToolRequests::decrypt_data()
{
    encrypt_data();
}

void TestToolRequests::decrypt()
{
    PdfDecryPage page;
    passwordRequest(page, 3, false);
}

void TestToolRequests::merge_data()
{
    QTest::addColumn<Place>("place");
    addPlaces([](const QByteArray &name,
                 const Place &place) { QTest::newRow(name.constData()) << place; },
              false);
}

void TestToolRequests::merge()
{
    QFETCH(Place, place);
    const PdfMergePage page;
    choose(page, place);
    // In the order of the list, whatever their names.
    const QStringList files{m_files[1], m_files[0], m_home->path(u"0.pdf"_s)};
    QCOMPARE(linesOf(page.requestsFor(files)),
             expectedLines(0, files, in(folderFor(place, {}), u"pdf_merge.pdf"_s), {}, place, {}));
}

void TestToolRequests::newFileTakesAFreeName_data()
{
    addNamings({
        {"free", u"a.pdf"_s, {}, u"a.pdf"_s},
        {"taken", u"a.pdf"_s, {u"a.pdf"_s}, u"a(1).pdf"_s},
        {"taken twice", u"a.pdf"_s, {u"a.pdf"_s, u"a(1).pdf"_s}, u"a(2).pdf"_s},
        {"gap", u"a.pdf"_s, {u"a.pdf"_s, u"a(2).pdf"_s}, u"a(1).pdf"_s},
        {"only the next", u"a.pdf"_s, {u"a(1).pdf"_s}, u"a.pdf"_s},
        {"next of the next", u"a(1).pdf"_s, {u"a(1).pdf"_s}, u"a(1)(1).pdf"_s},
        {"by a folder", u"a.pdf"_s, {u"a.pdf/"_s}, u"a(1).pdf"_s},
        {"several dots", u"a.b.tar.pdf"_s, {u"a.pdf"_s, u"a.b.pdf"_s}, u"a.b.tar.pdf"_s},
        {"several dots taken", u"a.b.pdf"_s, {u"a.b.pdf"_s}, u"a.b(1).pdf"_s},
        {"no suffix", u"scan"_s, {u"scan"_s}, u"scan.pdf"_s},
        {"other suffix", u"scan.jpeg"_s, {u"scan.pdf"_s}, u"scan(1).pdf"_s},
        {"only a suffix", u".pdf"_s, {}, u".pdf"_s},
        {"place holders", u"%1 %2.pdf"_s, {u"%1 %2.pdf"_s}, u"%1 %2(1).pdf"_s},
        {"Chinese", u"年度报告.pdf"_s, {u"年度报告.pdf"_s}, u"年度报告(1).pdf"_s},
        {"emoji", u"📄🔒.pdf"_s, {u"📄🔒.pdf"_s}, u"📄🔒(1).pdf"_s},
        {"blanks", u"a  b .pdf"_s, {u"a  b .pdf"_s}, u"a  b (1).pdf"_s},
    });
}

void TestToolRequests::newFileTakesAFreeName()
{
    QFETCH(QString, file);
    QFETCH(QStringList, existing);
    QFETCH(QString, expected);
    QVERIFY(QDir().mkpath(chosen()));
    for (const QString &name : existing) {
        const QString path = chosen() + u'/' + name;
        QVERIFY(name.endsWith(u'/') ? QDir().mkpath(path) : QFile(path).open(QIODevice::WriteOnly));
    }
    const QString source = m_home->path(u"elsewhere/"_s + file);
    const PdfCompressPage compress;
    QVERIFY(choosePlace(*compress.optionsPanel(), Chosen, chosen()));
    QCOMPARE(compress.requestsFor({source}).constFirst().outputPath, in(chosen(), expected));
    const ImageToPdfPage images;
    QVERIFY(choosePlace(*images.optionsPanel(), Chosen, chosen()));
    QCOMPARE(images.requestsFor({source}).constFirst().outputPath, in(chosen(), expected));
    // Nothing is made before the task is done.
    QCOMPARE(
        QDir(chosen()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot).size(),
        existing.size());
}

void TestToolRequests::newFolderTakesAFreeName_data()
{
    addNamings({
        {"free", u"doc.pdf"_s, {u"doc.pdf"_s}, u"doc"_s},
        {"taken", u"doc.pdf"_s, {u"doc/"_s}, u"doc (1)"_s},
        {"taken twice", u"doc.pdf"_s, {u"doc/"_s, u"doc (1)/"_s}, u"doc (2)"_s},
        {"by a file", u"doc.pdf"_s, {u"doc"_s}, u"doc (1)"_s},
        {"several dots", u"doc.v1.2.pdf"_s, {u"doc/"_s, u"doc.v1/"_s}, u"doc.v1.2"_s},
        {"no suffix", u"scan"_s, {u"scan"_s}, u"scan (1)"_s},
        {"place holders", u"%1 %2.pdf"_s, {u"%1 %2/"_s}, u"%1 %2 (1)"_s},
        {"the folder itself", u"..pdf"_s, {}, u". (1)"_s},
        {"the folder above", u"...pdf"_s, {}, u".. (1)"_s},
        {"Chinese", u"年度报告.pdf"_s, {u"年度报告/"_s}, u"年度报告 (1)"_s},
        {"emoji", u"📄🔒.pdf"_s, {u"📄🔒/"_s}, u"📄🔒 (1)"_s},
    });
}

void TestToolRequests::newFolderTakesAFreeName()
{
    QFETCH(QString, file);
    QFETCH(QStringList, existing);
    QFETCH(QString, expected);
    QVERIFY(QDir().mkpath(chosen()));
    for (const QString &name : existing) {
        const QString path = chosen() + u'/' + name;
        QVERIFY(name.endsWith(u'/') ? QDir().mkpath(path) : QFile(path).open(QIODevice::WriteOnly));
    }
    const PdfConvertPage page;
    QVERIFY(choosePlace(*page.optionsPanel(), Chosen, chosen()));
    const TaskRequest request =
        page.requestsFor({m_home->path(u"elsewhere/"_s + file)}).constFirst();
    QCOMPARE(request.outputPath, chosen() + u'/' + expected);
    QVERIFY(QFileInfo(request.outputPath).isDir());
    QVERIFY(QDir(request.outputPath).isEmpty());
}

void TestToolRequests::mergedFileTakesAFreeName()
{
    const PdfMergePage page;
    for (const QString &name : {u"pdf_merge.pdf"_s, u"pdf_merge(1).pdf"_s, u"pdf_merge(2).pdf"_s}) {
        const TaskRequest request = page.requestsFor(m_files).constFirst();
        QCOMPARE(request.outputPath, in(ToolTestHome::desktop(), name));
        QVERIFY(!m_home->add(u"Desktop/"_s + name).isEmpty());
    }
}

void TestToolRequests::outputsOfImagesAreChained()
{
    QVERIFY(!m_home->add(u"Desktop/x.pdf"_s).isEmpty());
    const ImageToPdfPage page;
    QVERIFY(choosePlace(*page.optionsPanel(), Desktop));
    QStringList outputs;
    for (const TaskRequest &request : page.requestsFor({u"/x.png"_s, u"/y.png"_s, u"/z/x.jpg"_s})) {
        outputs.append(request.outputPath);
    }
    const QString first = in(ToolTestHome::desktop(), u"x(1).pdf"_s);
    const QString second = in(first, u"y.pdf"_s);
    QCOMPARE(outputs, (QStringList{first, second, in(second, u"x.pdf"_s)}));
}

void TestToolRequests::outputsOfImagesBesideTheirImages()
{
    const ImageToPdfPage page;
    QStringList outputs;
    for (const TaskRequest &request : page.requestsFor(m_images)) {
        QVERIFY(request.useSourceFolder);
        outputs.append(request.outputPath);
    }
    QCOMPARE(outputs, (QStringList{native(m_home->path(u"one/x.y.pdf"_s)),
                                   native(m_home->path(u"two/图像.pdf"_s))}));
}

void TestToolRequests::singlePdfIsNamedLikeTheFirstImage()
{
    const ImageToPdfPage page;
    QVERIFY(choosePlace(*page.optionsPanel(), Chosen, chosen()));
    part<SwitchButton>(page, "singlePdfSwitch")->setChecked(true);
    const QStringList images{u"/b/x.png"_s, u"/a/y.jpg"_s};
    const QList<TaskRequest> requests = page.requestsFor(images);
    QCOMPARE(requests.size(), 1);
    QCOMPARE(requests.constFirst().inputFiles, images);
    QCOMPARE(requests.constFirst().outputPath, in(chosen(), u"x.pdf"_s));
}

void TestToolRequests::filesOfOneNameGetFoldersOfTheirOwn()
{
    const PdfConvertPage page;
    QVERIFY(choosePlace(*page.optionsPanel(), Desktop));
    QStringList outputs;
    for (const TaskRequest &request : page.requestsFor({u"/a/doc.pdf"_s, u"/b/doc.pdf"_s})) {
        outputs.append(request.outputPath);
    }
    QCOMPARE(outputs, (QStringList{ToolTestHome::desktop() + u"/doc"_s,
                                   ToolTestHome::desktop() + u"/doc (1)"_s}));
}

void TestToolRequests::programFolderIsMadeWithTheRequest()
{
    const QString folder = ToolTestHome::documents() + u"/Quillora"_s;
    const PdfCompressPage page;
    QVERIFY(choosePlace(*page.optionsPanel(), Desktop));
    QCOMPARE(page.requestsFor(m_files).size(), 2);
    QVERIFY(choosePlace(*page.optionsPanel(), ProgramFolder));
    QVERIFY(!QFileInfo::exists(folder));
    const TaskRequest request = page.optionsPanel()->buildRequest();
    QVERIFY(QFileInfo(folder).isDir());
    QCOMPARE(request.outputPath, folder);
    QVERIFY(!request.useSourceFolder);
}

void TestToolRequests::programFolderThatCannotBeMadeIsAskedForAllTheSame()
{
    const QString folder = ToolTestHome::documents() + u"/Quillora"_s;
    QVERIFY(QDir().mkpath(ToolTestHome::documents()));
    QVERIFY(QFile(folder).open(QIODevice::WriteOnly));
    const PdfEncryPage page;
    QVERIFY(choosePlace(*page.optionsPanel(), ProgramFolder));
    QCOMPARE(page.requestsFor(m_files).constFirst().outputPath, native(folder));
}

void TestToolRequests::folderOfTheDialogIsTaken()
{
    QVERIFY(QDir().mkpath(chosen()));
    PdfCompressPage page;
    page.show();
    ModernComboBox *box = page.optionsPanel()->locationBox();
    DialogAnswers answers;
    answers.addFiles({});
    answers.addFiles({chosen()});
    // Without a folder the caption is used as it stands.
    box->onItemClicked(box->item(3));
    QCOMPARE(page.optionsPanel()->buildRequest().outputPath, u"选择位置..."_s);
    box->onItemClicked(box->item(3));
    QVERIFY(answers.allGiven());
    QCOMPARE(page.optionsPanel()->buildRequest().outputPath, chosen());
    QVERIFY(!page.optionsPanel()->buildRequest().useSourceFolder);
    // Another place forgets the folder.
    box->onItemClicked(box->item(1));
    QCOMPARE(page.optionsPanel()->buildRequest().outputPath, ToolTestHome::desktop());
    answers.addFiles({});
    box->onItemClicked(box->item(3));
    QCOMPARE(page.optionsPanel()->buildRequest().outputPath, u"选择位置..."_s);
}

void TestToolRequests::folderIsTakenAsItStands()
{
    const PdfCompressPage page;
    for (const QString &folder : {QString(chosen() + u'/'), u"relative"_s, u""_s}) {
        QVERIFY(choosePlace(*page.optionsPanel(), Chosen, folder));
        QCOMPARE(page.requestsFor({u"/x/a.pdf"_s}).constFirst().outputPath, in(folder, u"a.pdf"_s));
    }
}

void TestToolRequests::requestOfNoPlaceIsEmpty()
{
    const PdfMergePage page;
    ModernComboBox *box = page.optionsPanel()->locationBox();
    box->currentItem()->setData(kModeRole, 7);
    const TaskRequest unknown = page.optionsPanel()->buildRequest();
    QVERIFY(unknown.outputPath.isEmpty() && !unknown.useSourceFolder);
    box->setCurrentItem(nullptr);
    const TaskRequest none = page.optionsPanel()->buildRequest();
    QVERIFY(none.outputPath.isEmpty() && !none.useSourceFolder);
    QCOMPARE(none.type, 0);
    QVERIFY(none.inputFiles.isEmpty() && none.inputFile.isEmpty() && none.options.isEmpty());
}

QTEST_MAIN(TestToolRequests)
#include "tst_tool_requests.moc"
