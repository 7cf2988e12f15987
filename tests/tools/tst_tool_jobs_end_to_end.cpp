// SPDX-License-Identifier: AGPL-3.0-or-later
#include "taskcenter/task_center.h"
#include "tests/pdfcore/engine_calls.h"
#include "tests/support/pdf_fixture.h"
#include "tests/tools/tool_page_test.h"
#include "tools/files/file_drop_zone_widget.h"
#include "tools/image_to_pdf_page.h"
#include "tools/pdf_compress_page.h"
#include "tools/pdf_convert_page.h"
#include "tools/pdf_decry_page.h"
#include "tools/pdf_encry_page.h"
#include "tools/pdf_merge_page.h"
#include "tools/tasks/task_list_item.h"
#include "tools/tasks/task_list_widget.h"
#include "widgets/card_radio_button.h"
#include "widgets/switch_button.h"

#include <QBuffer>
#include <QDirIterator>
#include <QImage>
#include <QLineEdit>
#include <QProcess>
#include <QRadioButton>
#include <QRandomGenerator>
#include <QStackedWidget>

#include <algorithm>
#include <memory>

using namespace EngineCalls;
using namespace ToolPageTest;
using namespace Qt::StringLiterals;

namespace {

/// How long tasks may take in all, in milliseconds.
constexpr int kPatience = 30'000;

/// What another program says of a file; unknown where it is not installed.
struct Answer
{
    bool known = false;
    int code = -1;
    QString text;
};

Answer ask(const QString &program, const QStringList &arguments)
{
    const QString path = QStandardPaths::findExecutable(program);
    if (path.isEmpty()) {
        qInfo("%s is not installed, so it is not asked.", qPrintable(program));
        return {};
    }
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(path, arguments);
    if (!process.waitForFinished(kPatience)) {
        return {};
    }
    return {true, process.exitCode(), QString::fromUtf8(process.readAll())};
}

/// A picture that can hardly be compressed.
QImage noise(QSize size)
{
    QImage image(size, QImage::Format_RGB32);
    QRandomGenerator random(7);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            image.setPixel(x, y, random.generate() | 0xFF000000U);
        }
    }
    return image;
}

QByteArray encodedAs(const char *format, const QImage &image)
{
    QByteArray data;
    QBuffer buffer(&data);
    return buffer.open(QIODevice::WriteOnly) && image.save(&buffer, format, 90) ? data
                                                                                : QByteArray();
}

/// A page of 200 × 200 points with one JPEG picture of such a size.
QByteArray photograph(QSize size)
{
    const QByteArray entries = "/Type /XObject /Subtype /Image /ColorSpace /DeviceRGB "
                               "/BitsPerComponent 8 /Filter /DCTDecode /Width " +
                               QByteArray::number(size.width()) + " /Height " +
                               QByteArray::number(size.height());
    return PdfFixture::onePage("q 200 0 0 200 0 0 cm /P Do Q", "/XObject << /P 5 0 R >>",
                               {PdfFixture::streamBody(entries, encodedAs("JPG", noise(size)))});
}

QStringList filesIn(const QString &folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot,
                                  QDir::Name);
}

} // namespace

/// The tools from dropped files to their results.
class TestToolJobsEndToEnd final : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void cleanupTestCase();

    void merge();
    void encryptAndDecrypt();
    void imagesBecomeOnePdf();
    void imagesBecomeAPdfEach();
    void chainedImagesFailAndSayWhy();
    void pagesBecomeImages_data();
    void pagesBecomeImages();
    void imagesAreExtracted();
    void compress();
    void sourceIsReplaced_data();
    void sourceIsReplaced();
    void brokenSourceFailsTheMerge_data();
    void brokenSourceFailsTheMerge();
    void wrongPasswordFails();
    void resultOfATakenNameIsNamed();

private:
    template <typename Page>
    Page *open(int place = SourceFolder)
    {
        auto page = std::make_unique<Page>();
        Page *opened = page.get();
        m_page = std::move(page);
        m_page->resize(1000, 700);
        m_page->show();
        const bool found =
            choosePlace(*m_page->optionsPanel(), place, place == Chosen ? output() : QString());
        return found ? opened : nullptr;
    }
    /// Drops the files on the page, starts and waits until every task is over; false if none began
    /// or one does not end.
    [[nodiscard]] bool run(const QStringList &files);
    [[nodiscard]] QList<TaskListItem *> rows() const
    {
        return m_page->findChild<TaskListWidget *>()->rows();
    }
    [[nodiscard]] QString status(int row = 0) const
    {
        return part<QLabel>(*rows().at(row), "taskStatus")->text();
    }
    [[nodiscard]] QString output(const QString &name = {}) const
    {
        return m_home->path(name.isEmpty() ? u"output"_s : u"output/"_s + name);
    }
    void typePassword(const QString &password) const
    {
        for (const char *field : {"firstPassword", "secondPassword"}) {
            if (const auto *input = m_page->findChild<QWidget *>(QLatin1String(field))) {
                input->findChild<QLineEdit *>()->setText(password);
            }
        }
    }

    std::unique_ptr<ToolTestHome> m_home;
    std::unique_ptr<FileToolPage> m_page;
};

/// Whether a file is a PDF without fault also to another program.
#define VERIFY_SOUND(...)                                                                          \
    do {                                                                                           \
        const Answer answer = ask(u"qpdf"_s, {u"--check"_s, __VA_ARGS__});                         \
        QVERIFY2(!answer.known || answer.code == 0, qPrintable(answer.text));                      \
    } while (false)

void TestToolJobsEndToEnd::init()
{
    m_home.reset();
    m_home = std::make_unique<ToolTestHome>();
    QVERIFY(QDir().mkpath(output()));
}

void TestToolJobsEndToEnd::cleanup()
{
    m_page.reset();
    // No half-made file is left, wherever a task worked.
    QDirIterator left(m_home->path(u"."_s), {u".quillora-*"_s},
                      QDir::Files | QDir::Hidden | QDir::System, QDirIterator::Subdirectories);
    QCOMPARE(left.hasNext() ? left.next() : QString(), QString());
    QCOMPARE(TaskCenter::instance().unfinishedTasks(), 0);
}

void TestToolJobsEndToEnd::cleanupTestCase()
{
    TaskCenter::instance().shutdown();
}

bool TestToolJobsEndToEnd::run(const QStringList &files)
{
    if (dropFiles(*m_page->findChild<FileDropZoneWidget *>(), files) != Qt::CopyAction ||
        !QTest::qWaitFor([this, &files] { return m_page->inputFiles() == files; })) {
        return false;
    }
    QTest::mouseClick(part<QWidget>(*m_page, "toolStartButton"), Qt::LeftButton);
    const auto isOver = [](const TaskListItem *row) {
        return part<QLabel>(*row, "taskStatus")->text() != u"处理中...";
    };
    const QList<TaskListItem *> all = rows();
    return !all.isEmpty() &&
           QTest::qWaitFor([&all, &isOver] { return std::all_of(all.begin(), all.end(), isOver); },
                           kPatience);
}

void TestToolJobsEndToEnd::merge()
{
    const QString two = m_home->add(u"in/b 二.pdf"_s, PdfFixture::pagesByNumber(2));
    const QString one = m_home->add(u"in/a.pdf"_s, PdfFixture::pagesByNumber(1));
    QVERIFY(open<PdfMergePage>(Chosen));
    QVERIFY(run({two, one}));
    QCOMPARE(status(), u"完成"_s);
    QCOMPARE(filesIn(output()), QStringList{u"pdf_merge.pdf"_s});
    const QString result = output(u"pdf_merge.pdf"_s);
    QCOMPARE(numbersIn(result), (QList<int>{0, 1, 0}));
    QCOMPARE(rows().constFirst()->path(), result);
    QVERIFY(part<QWidget>(*rows().constFirst(), "taskOpenFileButton")->isVisible());
    VERIFY_SOUND(result);
    const Answer pages = ask(u"qpdf"_s, {u"--show-npages"_s, result});
    QVERIFY(!pages.known || pages.text.trimmed() == u"3");
    // Once more: the first result stays.
    QTest::mouseClick(part<QWidget>(*m_page, "taskRestartButton"), Qt::LeftButton);
    QVERIFY(run({one, two}));
    QCOMPARE(filesIn(output()), (QStringList{u"pdf_merge(1).pdf"_s, u"pdf_merge.pdf"_s}));
    QCOMPARE(numbersIn(output(u"pdf_merge(1).pdf"_s)), (QList<int>{0, 0, 1}));
}

void TestToolJobsEndToEnd::encryptAndDecrypt()
{
    const QString password = u"密码 key"_s;
    const QString source = m_home->add(u"in/报告.v2.pdf"_s, PdfFixture::pagesByNumber(2));
    QVERIFY(open<PdfEncryPage>(Chosen));
    typePassword(password);
    QVERIFY(run({source}));
    QCOMPARE(status(), u"完成"_s);
    const QString locked = output(u"报告.v2.pdf"_s);
    QCOMPARE(rows().constFirst()->path(), locked);
    QCOMPARE(inspect(locked).error, PdfBackendError::PasswordRequired);
    QCOMPARE(inspect(locked, password).pageSizes.size(), 2);
    VERIFY_SOUND(u"--password="_s + password, locked);
    const Answer asked = ask(u"qpdf"_s, {u"--requires-password"_s, locked});
    QVERIFY(!asked.known || asked.code == 0);

    QVERIFY(open<PdfDecryPage>());
    typePassword(password);
    QVERIFY(run({locked}));
    QCOMPARE(status(), u"完成"_s);
    const QString unlocked = output(u"报告.v2(1).pdf"_s);
    QCOMPARE(rows().constFirst()->path(), unlocked);
    QCOMPARE(numbersIn(unlocked), (QList<int>{0, 1}));
    QVERIFY(inspect(locked).error == PdfBackendError::PasswordRequired);
    const Answer info = ask(u"pdfinfo"_s, {unlocked});
    QVERIFY2(!info.known || QRegularExpression(u"Encrypted:\\s+no"_s).match(info.text).hasMatch(),
             qPrintable(info.text));
}

void TestToolJobsEndToEnd::imagesBecomeOnePdf()
{
    QImage red(60, 40, QImage::Format_RGB32);
    red.fill(Qt::red);
    QImage blue(40, 60, QImage::Format_RGB32);
    blue.fill(Qt::blue);
    const QString first = m_home->add(u"in/x.png"_s, encodedAs("PNG", red));
    const QString second = m_home->add(u"in/y.jpg"_s, encodedAs("JPG", blue));
    QVERIFY(open<ImageToPdfPage>(Chosen));
    part<SwitchButton>(*m_page, "singlePdfSwitch")->setChecked(true);
    QVERIFY(chooseText(*part<ModernComboBox>(*m_page, "pageSizeBox"), u"Letter(US)"_s));
    QVERIFY(run({first, second}));
    QCOMPARE(rows().size(), 1);
    QCOMPARE(status(), u"完成"_s);
    const QString result = output(u"x.pdf"_s);
    const QList<QSizeF> sizes = inspect(result).pageSizes;
    QCOMPARE(sizes, (QList<QSizeF>{QSizeF(612, 792), QSizeF(612, 792)}));
    COMPARE_COLOUR(middle(render(filePage(result, 0)).image), QColor(Qt::red), 4);
    COMPARE_COLOUR(middle(render(filePage(result, 1)).image), QColor(Qt::blue), 4);
    VERIFY_SOUND(result);
}

void TestToolJobsEndToEnd::imagesBecomeAPdfEach()
{
    const QByteArray picture = encodedAs("PNG", noise({30, 20}));
    const QString first = m_home->add(u"one/x.png"_s, picture);
    const QString second = m_home->add(u"two/y.png"_s, picture);
    QVERIFY(open<ImageToPdfPage>());
    QVERIFY(run({first, second}));
    QCOMPARE(rows().size(), 2);
    for (int row = 0; row < 2; ++row) {
        QCOMPARE(status(row), u"完成"_s);
        QCOMPARE(inspect(rows().at(row)->path()).pageSizes.size(), 1);
        VERIFY_SOUND(rows().at(row)->path());
    }
    QCOMPARE(filesIn(m_home->path(u"one"_s)), (QStringList{u"x.pdf"_s, u"x.png"_s}));
    QCOMPARE(filesIn(m_home->path(u"two"_s)), (QStringList{u"y.pdf"_s, u"y.png"_s}));
}

void TestToolJobsEndToEnd::chainedImagesFailAndSayWhy()
{
    const QByteArray picture = encodedAs("PNG", noise({30, 20}));
    const QString first = m_home->add(u"in/x.png"_s, picture);
    const QString second = m_home->add(u"in/y.png"_s, picture);
    QVERIFY(open<ImageToPdfPage>(Chosen));
    QVERIFY(run({first, second}));
    QCOMPARE(status(0), u"完成"_s);
    QCOMPARE(status(1), u"失败"_s);
    QVERIFY(!rows().at(1)->toolTip().isEmpty());
    QCOMPARE(filesIn(output()), QStringList{u"x.pdf"_s});
    QCOMPARE(inspect(output(u"x.pdf"_s)).pageSizes.size(), 1);
}

void TestToolJobsEndToEnd::pagesBecomeImages_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<QString>("suffix");
    QTest::newRow("JPG") << u"JPG"_s << u"jpg"_s;
    QTest::newRow("PNG") << u"PNG"_s << u"png"_s;
}

void TestToolJobsEndToEnd::pagesBecomeImages()
{
    QFETCH(QString, format);
    QFETCH(QString, suffix);
    const QString source = m_home->add(
        u"in/doc.pdf"_s, PdfFixture::document({PdfFixture::plain({100, 200}, Qt::green),
                                               PdfFixture::plain({200, 100}, Qt::blue)}));
    QVERIFY(open<PdfConvertPage>());
    QVERIFY(chooseText(*part<ModernComboBox>(*m_page, "imageFormatBox"), format));
    for (const QString &folder : {u"in/doc"_s, u"in/doc (1)"_s}) {
        QVERIFY(run({source}));
        QCOMPARE(status(), u"完成"_s);
        QCOMPARE(rows().constFirst()->path(), m_home->path(folder));
        QVERIFY(!part<QWidget>(*rows().constFirst(), "taskOpenFileButton")->isVisible());
        QVERIFY(part<QWidget>(*rows().constFirst(), "taskOpenFolderButton")->isVisible());
        const QStringList files = filesIn(m_home->path(folder));
        QCOMPARE(files.size(), 2);
        const QColor colours[]{Qt::green, Qt::blue};
        for (int page = 0; page < 2; ++page) {
            QVERIFY2(files[page].endsWith(u'.' + suffix), qPrintable(files[page]));
            const QString path = m_home->path(folder + u'/' + files[page]);
            QVERIFY(contentOf(path).startsWith(suffix == u"png" ? "\x89PNG" : "\xFF\xD8\xFF"));
            const QImage image(path);
            QVERIFY(page == 0 ? image.height() > image.width() : image.width() > image.height());
            COMPARE_COLOUR(middle(image), colours[page], 4);
        }
        QTest::mouseClick(part<QWidget>(*m_page, "taskRestartButton"), Qt::LeftButton);
    }
}

void TestToolJobsEndToEnd::imagesAreExtracted()
{
    const QString source = m_home->add(u"in/photo.pdf"_s, photograph({80, 60}));
    QVERIFY(open<PdfConvertPage>());
    part<SwitchButton>(*m_page, "extractImagesSwitch")->setChecked(true);
    QVERIFY(run({source}));
    QCOMPARE(status(), u"完成"_s);
    const QStringList files = filesIn(m_home->path(u"in/photo"_s));
    QCOMPARE(files.size(), 1);
    QCOMPARE(QImage(m_home->path(u"in/photo/"_s + files[0])).size(), QSize(80, 60));
    const Answer images = ask(u"pdfimages"_s, {u"-list"_s, source});
    QVERIFY(!images.known || images.text.contains(QRegularExpression(u"80\\s+60"_s)));
}

void TestToolJobsEndToEnd::compress()
{
    const QString source = m_home->add(u"in/photo.pdf"_s, photograph({900, 900}));
    const QByteArray before = contentOf(source);
    QVERIFY(open<PdfCompressPage>());
    QList<qint64> sizes;
    for (const char *level : {"basicLevelCard", "strongLevelCard"}) {
        part<CardRadioButton>(*m_page, level)->radioButton()->click();
        QVERIFY(run({source}));
        QCOMPARE(status(), u"完成"_s);
        const QString result = rows().constFirst()->path();
        QCOMPARE(result, m_home->path(u"in/photo(%1).pdf"_s.arg(sizes.size() + 1)));
        QCOMPARE(inspect(result).pageSizes.size(), 1);
        VERIFY_SOUND(result);
        sizes.append(QFileInfo(result).size());
        QTest::mouseClick(part<QWidget>(*m_page, "taskRestartButton"), Qt::LeftButton);
    }
    QVERIFY2(sizes[0] < before.size(), qPrintable(QString::number(sizes[0])));
    QVERIFY2(sizes[1] < sizes[0], qPrintable(QString::number(sizes[1])));
    QCOMPARE(contentOf(source), before);
}

void TestToolJobsEndToEnd::sourceIsReplaced_data()
{
    QTest::addColumn<int>("tool");
    QTest::newRow("compress") << 6;
    QTest::newRow("encrypt") << 2;
    QTest::newRow("decrypt") << 3;
}

void TestToolJobsEndToEnd::sourceIsReplaced()
{
    QFETCH(int, tool);
    const QByteArray plain = photograph({300, 300});
    const QString source = m_home->add(
        u"in/a.pdf"_s, tool == 3 ? PdfFixture::encrypted(plain, {"secret", "owner", 6}) : plain);
    const QByteArray before = contentOf(source);
    if (tool == 6) {
        QVERIFY(open<PdfCompressPage>(Chosen));
    } else if (tool == 2) {
        QVERIFY(open<PdfEncryPage>(Chosen));
    } else {
        QVERIFY(open<PdfDecryPage>(Chosen));
    }
    typePassword(u"secret"_s);
    part<QRadioButton>(*m_page, "replaceSourceButton")->click();
    QVERIFY(run({source}));
    QCOMPARE(status(), u"完成"_s);
    QCOMPARE(rows().constFirst()->path(), source);
    QCOMPARE(filesIn(output()), QStringList());
    QCOMPARE(filesIn(m_home->path(u"in"_s)), QStringList{u"a.pdf"_s});
    QVERIFY(contentOf(source) != before);
    QCOMPARE(inspect(source).error == PdfBackendError::PasswordRequired, tool == 2);
    QCOMPARE(inspect(source, tool == 2 ? u"secret"_s : QString()).pageSizes.size(), 1);
}

void TestToolJobsEndToEnd::brokenSourceFailsTheMerge_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("reason");
    QTest::newRow("damaged") << QByteArray("this is no PDF") << u"文件已损坏或不受支持。"_s;
    QTest::newRow("protected") << PdfFixture::encrypted(PdfFixture::pagesByNumber(1),
                                                        {"user", "owner", 6})
                               << u"需要密码。"_s;
    QTest::newRow("missing") << QByteArray() << u"找不到文件或无法打开文件。"_s;
}

void TestToolJobsEndToEnd::brokenSourceFailsTheMerge()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, reason);
    const QString sound = m_home->add(u"in/sound.pdf"_s, PdfFixture::pagesByNumber(1));
    const QString broken = m_home->add(u"in/年报 broken.pdf"_s, content);
    if (content.isEmpty()) {
        QVERIFY(QFile::remove(broken));
    }
    QVERIFY(open<PdfMergePage>(Chosen));
    QVERIFY(run({sound, broken}));
    QCOMPARE(status(), u"失败"_s);
    const QString toolTip = rows().constFirst()->toolTip();
    QVERIFY2(toolTip.contains(u"年报 broken.pdf"_s), qPrintable(toolTip));
    QVERIFY2(toolTip.contains(reason), qPrintable(toolTip));
    QVERIFY(!part<QWidget>(*rows().constFirst(), "taskOpenFileButton")->isVisible());
    QVERIFY(!part<QWidget>(*rows().constFirst(), "taskOpenFolderButton")->isVisible());
    QCOMPARE(filesIn(output()), QStringList());
}

void TestToolJobsEndToEnd::wrongPasswordFails()
{
    const QString source = m_home->add(
        u"in/a.pdf"_s, PdfFixture::encrypted(PdfFixture::pagesByNumber(1), {"user", "owner", 6}));
    const QByteArray before = contentOf(source);
    QVERIFY(open<PdfDecryPage>());
    typePassword(u"guessed"_s);
    part<QRadioButton>(*m_page, "replaceSourceButton")->click();
    QVERIFY(run({source}));
    QCOMPARE(status(), u"失败"_s);
    const QString toolTip = rows().constFirst()->toolTip();
    QVERIFY2(toolTip.contains(u"密码不正确。"_s) && toolTip.contains(u"a.pdf"_s),
             qPrintable(toolTip));
    QVERIFY(!toolTip.contains(u"guessed"_s));
    QCOMPARE(contentOf(source), before);
}

void TestToolJobsEndToEnd::resultOfATakenNameIsNamed()
{
    // Both files are to be saved under one name.
    const QString one = m_home->add(u"one/a.pdf"_s, PdfFixture::pagesByNumber(1));
    const QString two = m_home->add(u"two/a.pdf"_s, PdfFixture::pagesByNumber(2));
    QVERIFY(open<PdfCompressPage>(Chosen));
    QVERIFY(run({one, two}));
    QCOMPARE(filesIn(output()), (QStringList{u"a(1).pdf"_s, u"a.pdf"_s}));
    for (int row = 0; row < 2; ++row) {
        QCOMPARE(status(row), u"完成"_s);
        QCOMPARE(inspect(rows().at(row)->path()).pageSizes.size(), row + 1);
    }
}

QTEST_MAIN(TestToolJobsEndToEnd)
#include "tst_tool_jobs_end_to_end.moc"
