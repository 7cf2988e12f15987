// SPDX-License-Identifier: AGPL-3.0-or-later
#include "res/resources.h"
#include "tests/tools/tool_page_test.h"
#include "tools/options/image_to_pdf_options_panel.h"
#include "tools/options/office_to_pdf_options_panel.h"
#include "tools/options/password_field.h"
#include "tools/options/pdf_compress_options_panel.h"
#include "tools/options/pdf_convert_options_panel.h"
#include "tools/options/pdf_decry_options_panel.h"
#include "tools/options/pdf_encry_options_panel.h"
#include "tools/options/pdf_merge_options_panel.h"
#include "tools/options/pdf_to_office_options_panel.h"
#include "widgets/card_radio_button.h"
#include "widgets/combo_popup.h"
#include "widgets/icon_button.h"
#include "widgets/password_input.h"
#include "widgets/select_button.h"
#include "widgets/switch_button.h"

#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QSignalSpy>

#include <algorithm>
#include <memory>

using namespace ToolPageTest;
using namespace Qt::StringLiterals;

namespace {

using Maker = std::unique_ptr<ToolOptionsPanel> (*)();

template <typename Panel>
std::unique_ptr<ToolOptionsPanel> make()
{
    return std::make_unique<Panel>();
}

/// What stands on a widget of a panel; null for one that says nothing.
QString textOf(const QWidget *widget)
{
    if (const auto *box = qobject_cast<const ModernComboBox *>(widget)) {
        QStringList items;
        for (int index = 0; index < box->count(); ++index) {
            items.append(box->item(index)->text());
        }
        return u'[' + items.join(u'|') + u']';
    }
    if (const auto *card = qobject_cast<const CardRadioButton *>(widget)) {
        const QRadioButton *button = card->radioButton();
        return button->text() + u'/' + button->accessibleDescription();
    }
    if (qobject_cast<const CardRadioButton *>(widget->parentWidget()) != nullptr) {
        return {};
    }
    if (qobject_cast<const PasswordInput *>(widget) != nullptr) {
        return u"****"_s;
    }
    if (const auto *choice = qobject_cast<const SelectButton *>(widget)) {
        return choice->text();
    }
    if (const auto *button = qobject_cast<const QAbstractButton *>(widget)) {
        return button->text();
    }
    if (const auto *label = qobject_cast<const QLabel *>(widget)) {
        const bool isLine = label->text().isEmpty() && label->height() == 1;
        return isLine ? u"-"_s : label->text();
    }
    return {};
}

/// All that a panel says, from top to bottom.
QStringList textsOn(const ToolOptionsPanel &panel)
{
    struct Text
    {
        QPoint position;
        QString text;
    };
    QList<Text> texts;
    for (const QWidget *widget : panel.findChildren<QWidget *>()) {
        const QString text = widget->isVisible() ? textOf(widget) : QString();
        if (!text.isEmpty()) {
            texts.append({widget->mapTo(&panel, QPoint()), text});
        }
    }
    std::sort(texts.begin(), texts.end(), [](const Text &one, const Text &other) {
        return std::pair(one.position.y(), one.position.x()) <
               std::pair(other.position.y(), other.position.x());
    });
    QStringList all;
    for (const Text &text : texts) {
        all.append(text.text);
    }
    return all;
}

const QString kPlaces = u"[原始文件|桌面|Quillora文件|选择位置...]"_s;
const QString kRequired = u"此项目为必填项"_s;
const QString kDiffer = u"两个密码应该匹配"_s;

/// A field of which nothing is said.
const QString kSilent = u"-"_s;
/// The error that the input shows.
const QString kError = u"!"_s;

/// How a password field stands: its message, and a mark when it shows an error.
QString stateOf(const PasswordField &field)
{
    const QString message = field.label()->isHidden() ? kSilent : field.label()->text();
    return field.input()->hasError() ? message + kError : message;
}

void type(const QWidget &panel, const char *field, const QString &text)
{
    part<PasswordField>(panel, field)->input()->lineEdit()->setText(text);
}

} // namespace

/// What the panels of options show, and how their controls go together.
class TestOptionPanels final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void texts_data();
    void texts();
    void fontsAndSizes_data() { addPanels(); }
    void fontsAndSizes();
    void startButtonStarts_data() { addPanels(); }
    void startButtonStarts();
    void places_data() { addPanels(); }
    void places();
    void placesOpenUpwards_data() { addPanels(); }
    void placesOpenUpwards();
    void startStaysInReachOnASmallScreen_data() { addPanels(); }
    void startStaysInReachOnASmallScreen();

    void valuesOfBoxes();
    void noLevelIsChosenAtFirst();
    void levelsExcludeEachOther();
    void sourceIsKeptAtFirst_data();
    void sourceIsKeptAtFirst();
    void orientationsExcludeEachOther();
    void switchesAreOffAtFirst();
    void switchesAreNamed();

    void passwordMessages_data();
    void passwordMessages();
    void passwordMessageOfDecryption();
    void passwordMessageLook_data();
    void passwordMessageLook();
    void passwordsAreHidden();

private:
    static void addPanels();
    [[nodiscard]] std::unique_ptr<ToolOptionsPanel> panel() const
    {
        QFETCH(Maker, maker);
        return maker();
    }
};

void TestOptionPanels::initTestCase()
{
    initResources();
}

void TestOptionPanels::addPanels()
{
    QTest::addColumn<Maker>("maker");
    QTest::newRow("compress") << Maker(make<PdfCompressOptionsPanel>);
    QTest::newRow("images to PDF") << Maker(make<ImageToPdfOptionsPanel>);
    QTest::newRow("PDF to images") << Maker(make<PdfConvertOptionsPanel>);
    QTest::newRow("encrypt") << Maker(make<PdfEncryOptionsPanel>);
    QTest::newRow("decrypt") << Maker(make<PdfDecryOptionsPanel>);
    QTest::newRow("merge") << Maker(make<PdfMergeOptionsPanel>);
    QTest::newRow("Office to PDF") << Maker(make<OfficeToPdfOptionsPanel>);
    QTest::newRow("PDF to Office") << Maker(make<PdfToOfficeOptionsPanel>);
}

void TestOptionPanels::texts_data()
{
    QTest::addColumn<Maker>("maker");
    QTest::addColumn<QStringList>("expected");
    QTest::newRow("compress") << Maker(make<PdfCompressOptionsPanel>)
                              << QStringList{u"压缩PDF"_s,
                                             u"选择压缩等级"_s,
                                             u"基本/文件尺寸适中，质量最"_s,
                                             u"强/文件最小，质量"_s,
                                             u"-"_s,
                                             u"保存选项"_s,
                                             u"替换原始文件"_s,
                                             u"保留原始文件"_s,
                                             u"文件位置"_s,
                                             kPlaces,
                                             u"压缩"_s};
    QTest::newRow("images to PDF") << Maker(make<ImageToPdfOptionsPanel>)
                                   << QStringList{u"图像转PDF"_s,
                                                  u"页面大小"_s,
                                                  u"[A4|Letter(US)]"_s,
                                                  u"页边距选项"_s,
                                                  u"[无|窄|宽]"_s,
                                                  u"页面方向"_s,
                                                  u"纵向"_s,
                                                  u"横向"_s,
                                                  u"更多选项"_s,
                                                  u"转换为单个PDF"_s,
                                                  u"每张图像都将保存为单个PDF"_s,
                                                  u"文件位置"_s,
                                                  kPlaces,
                                                  u"转换"_s};
    QTest::newRow("PDF to images")
        << Maker(make<PdfConvertOptionsPanel>)
        << QStringList{
               u"PDF 转为图像"_s, u"选择图像格式"_s, u"[JPG|PNG]"_s,
               u"更多选项"_s,     u"提取单个图像"_s, u"PDF 中的每张图像都将保存为单张图像"_s,
               u"文件位置"_s,     kPlaces,           u"转换"_s};
    QTest::newRow("encrypt") << Maker(make<PdfEncryOptionsPanel>)
                             << QStringList{u"加密PDF"_s,      u"密码"_s,         u"****"_s,
                                            u"重新输入密码"_s, u"****"_s,         u"保存选项"_s,
                                            u"替换原始文件"_s, u"保留原始文件"_s, u"文件位置"_s,
                                            kPlaces,           u"添加密码"_s};
    QTest::newRow("decrypt") << Maker(make<PdfDecryOptionsPanel>)
                             << QStringList{u"解锁PDF"_s,  u"密码"_s,         u"****"_s,
                                            u"保存选项"_s, u"替换原始文件"_s, u"保留原始文件"_s,
                                            u"文件位置"_s, kPlaces,           u"解锁"_s};
    QTest::newRow("merge") << Maker(make<PdfMergeOptionsPanel>)
                           << QStringList{
                                  u"合并PDF"_s,  u"插入"_s,
                                  u"空白"_s,     u"在合并之前，你可以在文件之间插入空白页"_s,
                                  u"文件位置"_s, u"[桌面|Quillora文件|选择位置...]"_s,
                                  u"合并"_s};
    QTest::newRow("Office to PDF")
        << Maker(make<OfficeToPdfOptionsPanel>)
        << QStringList{u"Office转为PDF"_s, u"将 Word、PowerPoint 和 Excel 文件转换为 PDF"_s,
                       u"文件位置"_s, kPlaces, u"转换"_s};
    QTest::newRow("PDF to Office")
        << Maker(make<PdfToOfficeOptionsPanel>)
        << QStringList{u"PDF转为Office"_s,
                       u"选择文件格式"_s,
                       u"[Word (*.docx)|Excel (*.xlsx)|PowerPoint (*.pptx)]"_s,
                       u"文件位置"_s,
                       kPlaces,
                       u"转换"_s};
}

void TestOptionPanels::texts()
{
    QFETCH(QStringList, expected);
    const auto shown = panel();
    shown->resize(ToolOptionsPanel::kWidth, 900);
    shown->show();
    QVERIFY(QTest::qWaitForWindowExposed(shown.get()));
    QCOMPARE(textsOn(*shown), expected);
}

void TestOptionPanels::fontsAndSizes()
{
    const auto shown = panel();
    QCOMPARE(shown->minimumWidth(), 320);
    QCOMPARE(shown->maximumWidth(), 320);
    QCOMPARE(shown->locationBox()->minimumHeight(), 48);
    QCOMPARE(shown->locationBox()->maximumHeight(), 48);
    const auto hasFont = [](const QLabel &label, int size) {
        const QFont font = label.font();
        return font.families() == QStringList{u"Arial"_s} && font.pixelSize() == size &&
               font.weight() == QFont::Bold;
    };
    QVERIFY(hasFont(*part<QLabel>(*shown, "toolOptionsTitle"), 18));
    const auto headings = shown->findChildren<QLabel *>(u"toolOptionsHeading"_s);
    QVERIFY(!headings.isEmpty());
    for (const QLabel *heading : headings) {
        QVERIFY2(hasFont(*heading, 14), qPrintable(heading->text()));
    }
    const auto *start = part<IconButton>(*shown, "toolStartButton");
    QCOMPARE(start->minimumHeight(), 45);
    QCOMPARE(start->maximumHeight(), 45);
}

void TestOptionPanels::startButtonStarts()
{
    const auto shown = panel();
    const QSignalSpy started(shown.get(), &ToolOptionsPanel::startClicked);
    auto *start = part<IconButton>(*shown, "toolStartButton");
    shown->resize(ToolOptionsPanel::kWidth, 900);
    shown->show();
    // Beside the text in the middle.
    QCOMPARE(start->grab().toImage().pixelColor(20, 22), QColor(0x4F, 0x46, 0xE5));
    QTest::mouseClick(start, Qt::LeftButton);
    QCOMPARE(started.size(), 1);
}

void TestOptionPanels::places()
{
    const auto shown = panel();
    const ModernComboBox *box = shown->locationBox();
    const bool isMerge = qobject_cast<PdfMergeOptionsPanel *>(shown.get()) != nullptr;
    const int first = isMerge ? Desktop : SourceFolder;
    QCOMPARE(box->count(), isMerge ? 3 : 4);
    QCOMPARE(box->currentIndex(), 0);
    QCOMPARE(box->currentItem(), box->item(0));
    for (int index = 0; index < box->count(); ++index) {
        QCOMPARE(box->item(index)->data(kModeRole), QVariant(first + index));
        QCOMPARE(box->item(index)->data(kModeRole).typeId(), int(QMetaType::Int));
    }
    QCOMPARE(box->item(box->count() - 1)->data(kFolderRole), QVariant(u"选择位置..."_s));
}

void TestOptionPanels::placesOpenUpwards()
{
    const auto shown = panel();
    shown->setGeometry(100, 10, ToolOptionsPanel::kWidth, 400);
    shown->show();
    QVERIFY(QTest::qWaitForWindowExposed(shown.get()));
    const ModernComboBox *box = shown->locationBox();
    const int below = box->mapToGlobal(QPoint(0, box->height())).y();
    QVERIFY2(shown->screen()->availableGeometry().bottom() > below + ComboPopup::kHeight + 20,
             "there must be room for a list below");
    QTest::mouseClick(shown->locationBox(), Qt::LeftButton);
    QVERIFY(box->popup()->isVisible());
    QVERIFY(box->popup()->geometry().bottom() < box->mapToGlobal(QPoint()).y());
}

void TestOptionPanels::startStaysInReachOnASmallScreen()
{
    const auto shown = panel();
    shown->resize(ToolOptionsPanel::kWidth, 360);
    shown->show();
    QVERIFY(QTest::qWaitForWindowExposed(shown.get()));
    QCOMPARE(shown->height(), 360);
    const auto *start = part<IconButton>(*shown, "toolStartButton");
    QVERIFY(shown->rect().contains(start->geometry()));
    QVERIFY(shown->rect().contains(shown->locationBox()->geometry()));
    auto *area = part<QScrollArea>(*shown, "toolOptionsScrollArea");
    QVERIFY(area->geometry().bottom() < shown->locationBox()->geometry().top());
    const int hidden = area->widget()->sizeHint().height() - area->viewport()->height();
    QCOMPARE(area->verticalScrollBar()->maximum() > 0, hidden > 0);
}

void TestOptionPanels::valuesOfBoxes()
{
    constexpr int kValueRole = Qt::UserRole + 3;
    const auto valuesOf = [](const QWidget &shown, const char *name) {
        const auto *box = part<ModernComboBox>(shown, name);
        QVariantList values;
        for (int index = 0; index < box->count(); ++index) {
            values.append(box->item(index)->data(kValueRole));
        }
        return box->currentIndex() == 0 ? values : QVariantList();
    };
    const ImageToPdfOptionsPanel images;
    QCOMPARE(valuesOf(images, "pageSizeBox"), (QVariantList{0, 1}));
    QCOMPARE(valuesOf(images, "pageMarginBox"), (QVariantList{0, 1, 2}));
    const PdfConvertOptionsPanel convert;
    QCOMPARE(valuesOf(convert, "imageFormatBox"), (QVariantList{2, 3}));
}

void TestOptionPanels::noLevelIsChosenAtFirst()
{
    const PdfCompressOptionsPanel shown;
    for (const auto *card : shown.findChildren<CardRadioButton *>()) {
        QVERIFY(!card->isChecked());
    }
    QCOMPARE(shown.buildRequest().options.value(u"compressLevel"_s), QVariant(1));
}

void TestOptionPanels::levelsExcludeEachOther()
{
    const PdfCompressOptionsPanel shown;
    const auto *basic = part<CardRadioButton>(shown, "basicLevelCard");
    const auto *strong = part<CardRadioButton>(shown, "strongLevelCard");
    const auto *keep = part<QRadioButton>(shown, "keepSourceButton");
    basic->radioButton()->click();
    QVERIFY(basic->isChecked() && !strong->isChecked() && keep->isChecked());
    strong->radioButton()->click();
    QVERIFY(!basic->isChecked() && strong->isChecked() && keep->isChecked());
    part<QRadioButton>(shown, "replaceSourceButton")->click();
    QVERIFY(strong->isChecked() && !keep->isChecked());
}

void TestOptionPanels::sourceIsKeptAtFirst_data()
{
    QTest::addColumn<Maker>("maker");
    QTest::newRow("compress") << Maker(make<PdfCompressOptionsPanel>);
    QTest::newRow("encrypt") << Maker(make<PdfEncryOptionsPanel>);
    QTest::newRow("decrypt") << Maker(make<PdfDecryOptionsPanel>);
}

void TestOptionPanels::sourceIsKeptAtFirst()
{
    const auto shown = panel();
    auto *replace = part<QRadioButton>(*shown, "replaceSourceButton");
    auto *keep = part<QRadioButton>(*shown, "keepSourceButton");
    const auto option = [&shown] {
        return shown->buildRequest().options.value(u"saveOption"_s).toInt();
    };
    QVERIFY(keep->isChecked() && !replace->isChecked());
    QCOMPARE(option(), 1);
    replace->click();
    QVERIFY(!keep->isChecked() && replace->isChecked());
    QCOMPARE(option(), 0);
    keep->click();
    QVERIFY(keep->isChecked() && !replace->isChecked());
    QCOMPARE(option(), 1);
}

void TestOptionPanels::orientationsExcludeEachOther()
{
    ImageToPdfOptionsPanel shown;
    auto *portrait = part<SelectButton>(shown, "portraitButton");
    auto *landscape = part<SelectButton>(shown, "landscapeButton");
    shown.resize(ToolOptionsPanel::kWidth, 900);
    shown.show();
    QVERIFY(portrait->isSelected() && !landscape->isSelected());
    QTest::mouseClick(portrait, Qt::LeftButton);
    QVERIFY(portrait->isSelected() && !landscape->isSelected());
    QTest::mouseClick(landscape, Qt::LeftButton);
    QVERIFY(!portrait->isSelected() && landscape->isSelected());
    QTest::mouseClick(landscape, Qt::LeftButton);
    QVERIFY(!portrait->isSelected() && landscape->isSelected());
    QTest::mouseClick(portrait, Qt::LeftButton);
    QVERIFY(portrait->isSelected() && !landscape->isSelected());
}

void TestOptionPanels::switchesAreOffAtFirst()
{
    const ImageToPdfOptionsPanel images;
    QVERIFY(!part<SwitchButton>(images, "singlePdfSwitch")->isChecked());
    QVERIFY(!images.isSinglePdf());
    const PdfConvertOptionsPanel convert;
    QVERIFY(!part<SwitchButton>(convert, "extractImagesSwitch")->isChecked());
}

void TestOptionPanels::switchesAreNamed()
{
    const ImageToPdfOptionsPanel images;
    QCOMPARE(part<SwitchButton>(images, "singlePdfSwitch")->accessibleName(), u"转换为单个PDF"_s);
    const PdfConvertOptionsPanel convert;
    QCOMPARE(part<SwitchButton>(convert, "extractImagesSwitch")->accessibleName(),
             u"提取单个图像"_s);
}

void TestOptionPanels::passwordMessages_data()
{
    // The texts of the fields one after the other: 1 is the first field, 2 the second.
    QTest::addColumn<QStringList>("edits");
    QTest::addColumn<QString>("first");
    QTest::addColumn<QString>("second");
    const auto row = [](const char *name, const QStringList &edits, const QString &first,
                        const QString &second) { QTest::newRow(name) << edits << first << second; };
    const QString required = kRequired + kError;
    const QString differ = kDiffer + kError;
    row("untouched", {}, kSilent, kSilent);
    row("first typed", {u"1a"_s}, kSilent, kSilent);
    row("first emptied, second empty", {u"1a"_s, u"1"_s}, required, kSilent);
    row("first typed again", {u"1a"_s, u"1"_s, u"1b"_s}, kSilent, kSilent);
    row("first emptied, others differed", {u"1a"_s, u"2b"_s, u"1"_s}, required, differ);
    row("first emptied, others matched", {u"1a"_s, u"2a"_s, u"1"_s}, required, kDiffer);
    row("first changed after a difference", {u"1a"_s, u"2b"_s, u"1c"_s}, kSilent, differ);
    row("first made equal", {u"1a"_s, u"2b"_s, u"1b"_s}, kSilent, differ);
    row("first made equal to the only one", {u"2b"_s, u"1b"_s}, kSilent, differ);
    row("second equal", {u"1a"_s, u"2a"_s}, kSilent, kSilent);
    row("second different", {u"1a"_s, u"2b"_s}, differ, differ);
    row("second without a first", {u"2b"_s}, differ, differ);
    row("second after a missing first", {u"1a"_s, u"1"_s, u"2b"_s}, differ, differ);
    row("second made equal", {u"1a"_s, u"2b"_s, u"2a"_s}, kSilent, kSilent);
    row("second emptied, first empty", {u"2b"_s, u"2"_s}, kSilent + kError, required);
    row("second emptied, others differed", {u"1a"_s, u"2b"_s, u"2"_s}, differ, required);
    row("second emptied, others matched", {u"1a"_s, u"2a"_s, u"2"_s}, kDiffer, required);
    row("second emptied after an old message", {u"1a"_s, u"1"_s, u"1b"_s, u"2b"_s, u"2"_s},
        kRequired, required);
    row("other case", {u"1Secret"_s, u"2secret"_s}, differ, differ);
    row("blank at the end", {u"1secret"_s, u"2secret "_s}, differ, differ);
    row("other composition", {u"1\u00E9"_s, u"2e\u0301"_s}, differ, differ);
    row("Chinese", {u"1密码🔑"_s, u"2密码🔑"_s}, kSilent, kSilent);
}

void TestOptionPanels::passwordMessages()
{
    QFETCH(QStringList, edits);
    QFETCH(QString, first);
    QFETCH(QString, second);
    const PdfEncryOptionsPanel shown;
    for (const QString &edit : edits) {
        type(shown, edit.startsWith(u'1') ? "firstPassword" : "secondPassword", edit.mid(1));
    }
    QCOMPARE(stateOf(*part<PasswordField>(shown, "firstPassword")), first);
    QCOMPARE(stateOf(*part<PasswordField>(shown, "secondPassword")), second);
}

void TestOptionPanels::passwordMessageOfDecryption()
{
    const PdfDecryOptionsPanel shown;
    const auto *field = part<PasswordField>(shown, "firstPassword");
    QCOMPARE(stateOf(*field), kSilent);
    type(shown, "firstPassword", u"a"_s);
    QCOMPARE(stateOf(*field), kSilent);
    type(shown, "firstPassword", {});
    QCOMPARE(stateOf(*field), kRequired + kError);
    type(shown, "firstPassword", u" "_s);
    QCOMPARE(stateOf(*field), kSilent);
}

void TestOptionPanels::passwordMessageLook_data()
{
    QTest::addColumn<Maker>("maker");
    QTest::addColumn<int>("fields");
    QTest::newRow("encrypt") << Maker(make<PdfEncryOptionsPanel>) << 2;
    QTest::newRow("decrypt") << Maker(make<PdfDecryOptionsPanel>) << 1;
}

void TestOptionPanels::passwordMessageLook()
{
    QFETCH(int, fields);
    const auto shown = panel();
    const auto all = shown->findChildren<PasswordField *>();
    QCOMPARE(all.size(), fields);
    shown->resize(ToolOptionsPanel::kWidth, 900);
    shown->show();
    for (PasswordField *field : all) {
        const QLabel *label = field->label();
        QVERIFY(label->isHidden());
        QCOMPARE(label->font().families(), QStringList{u"Arial"_s});
        QCOMPARE(label->font().pixelSize(), 12);
        QCOMPARE(label->styleSheet(), u"QLabel{background-color:transparent;color:#F53F3F;}"_s);
        field->input()->lineEdit()->setText(u"a"_s);
        field->input()->lineEdit()->clear();
        QVERIFY(label->isVisible());
        QTRY_VERIFY(label->mapTo(shown.get(), QPoint()).y() >=
                    field->input()->mapTo(shown.get(), QPoint()).y() + field->input()->height());
    }
}

void TestOptionPanels::passwordsAreHidden()
{
    const PdfEncryOptionsPanel shown;
    for (const PasswordField *field : shown.findChildren<PasswordField *>()) {
        QCOMPARE(field->input()->lineEdit()->echoMode(), QLineEdit::Password);
    }
}

QTEST_MAIN(TestOptionPanels)
#include "tst_option_panels.moc"
