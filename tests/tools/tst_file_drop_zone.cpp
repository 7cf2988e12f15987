// SPDX-License-Identifier: AGPL-3.0-or-later
#include "res/resources.h"
#include "tests/support/dialog_answers.h"
#include "tools/files/file_drop_zone_widget.h"
#include "widgets/icon_button.h"

#include <QApplication>
#include <QDragEnterEvent>
#include <QFile>
#include <QIcon>
#include <QImage>
#include <QLabel>
#include <QMimeData>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr Qt::DropActions kAll = Qt::CopyAction | Qt::MoveAction | Qt::LinkAction;

constexpr QColor kLine{0xCB, 0xD3, 0xDF};
constexpr QColor kFill{0xFA, 0xFB, 0xFC};
constexpr QColor kAimedLine{0x4F, 0x46, 0xE5};

/// Data that names the files.
std::unique_ptr<QMimeData> dataOf(const QStringList &paths)
{
    QList<QUrl> urls;
    for (const QString &path : paths) {
        urls.append(QUrl::fromLocalFile(path));
    }
    auto data = std::make_unique<QMimeData>();
    data->setUrls(urls);
    return data;
}

struct Answer
{
    bool accepted;
    Qt::DropAction action;
};

template <typename Event>
Answer send(QWidget &widget, const QMimeData &data, Qt::DropActions offered,
            Qt::KeyboardModifiers keys)
{
    Event event({200, 200}, offered, &data, Qt::LeftButton, keys);
    event.setAccepted(false);
    QCoreApplication::sendEvent(&widget, &event);
    return {event.isAccepted(), event.dropAction()};
}

Answer enter(QWidget &widget, const QMimeData &data, Qt::DropActions offered = kAll,
             Qt::KeyboardModifiers keys = Qt::NoModifier)
{
    return send<QDragEnterEvent>(widget, data, offered, keys);
}

Answer drop(QWidget &widget, const QMimeData &data, Qt::DropActions offered = kAll,
            Qt::KeyboardModifiers keys = Qt::NoModifier)
{
    QDropEvent event(QPointF(200, 200), offered, &data, Qt::LeftButton, keys);
    event.setAccepted(false);
    QCoreApplication::sendEvent(&widget, &event);
    return {event.isAccepted(), event.dropAction()};
}

bool contains(const QImage &image, const QRect &part, const QColor &color)
{
    for (int y = part.top(); y <= part.bottom(); ++y) {
        for (int x = part.left(); x <= part.right(); ++x) {
            if (image.pixelColor(x, y) == color) {
                return true;
            }
        }
    }
    return false;
}

} // namespace

/// What a tool page shows while no file is chosen.
class TestFileDropZone final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup() { m_zone.reset(); }

    void texts();
    void looks();
    void partsStandInTheMiddle();
    void longTextIsWrapped();
    void textIsPlain();
    void frameIsDashed();

    void buttonOpensTheDialog();
    void pageSetsTheDialog();
    void cancelledDialogChoosesNothing();

    void filesAreTaken();
    void dragOfSomethingElseIsNotTaken();
    void dropsAreCopies_data();
    void dropsAreCopies();
    void whatCanOnlyBeMovedIsNotTaken();
    void dropIsNotChecked();
    void addressOfTheWebIsAnEmptyPath();
    void dropWithoutAddressesIsNoChoice();

    void frameShowsThatADropWouldBeTaken();
    void frameIsAsBeforeOnceTheDragIsOver();
    void frameStaysAsItIsForARefusedDrag();

private:
    [[nodiscard]] QImage picture() const { return m_zone->grab().toImage(); }
    [[nodiscard]] QStringList chosen(const QSignalSpy &spy) const
    {
        return spy.size() == 1 ? spy.at(0).at(0).toStringList() : QStringList(u"not once"_s);
    }

    std::unique_ptr<FileDropZoneWidget> m_zone;
};

void TestFileDropZone::initTestCase()
{
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    initResources();
}

void TestFileDropZone::init()
{
    m_zone = std::make_unique<FileDropZoneWidget>();
    m_zone->resize(700, 600);
    m_zone->show();
}

void TestFileDropZone::texts()
{
    QCOMPARE(m_zone->filter, u"PDF 文件 (*.pdf)"_s);
    QCOMPARE(m_zone->caption, u"选择 PDF"_s);
    QCOMPARE(m_zone->text(), u"从你的桌面上添加或拖放PDF文件，开始转换。"_s);
    QCOMPARE(m_zone->findChild<IconButton *>()->text(), u"添加文件"_s);
    m_zone->setText(u"另一段文字"_s);
    QCOMPARE(m_zone->text(), u"另一段文字"_s);
    QCOMPARE(m_zone->findChild<QLabel *>(u"dropZoneText"_s)->text(), u"另一段文字"_s);
}

void TestFileDropZone::looks()
{
    QVERIFY(m_zone->acceptDrops());
    QCOMPARE(m_zone->minimumSize(), QSize(700, 600));
    const auto *text = m_zone->findChild<QLabel *>(u"dropZoneText"_s);
    QCOMPARE(text->font().families(), QStringList(u"Arial"_s));
    QCOMPARE(text->font().pixelSize(), 16);
    QCOMPARE(text->alignment(), Qt::AlignCenter);
    QCOMPARE(text->palette().color(QPalette::WindowText), QColor(0x1A1A1A));
    const auto *icon = m_zone->findChild<QLabel *>(u"dropZoneIcon"_s);
    QCOMPARE(icon->pixmap().toImage(),
             QIcon(u":/res/icons/modern/pdf.png"_s).pixmap(QSize(128, 128), 1.0).toImage());
    QCOMPARE(icon->size(), QSize(128, 128));

    const auto *add = m_zone->findChild<IconButton *>(u"dropZoneAddButton"_s);
    QCOMPARE(add->height(), 40);
    QCOMPARE(add->minimumWidth(), 120);
    QCOMPARE(add->sizePolicy(), QSizePolicy(QSizePolicy::Minimum, QSizePolicy::Fixed));
    QCOMPARE(picture().pixelColor(add->geometry().left() + 60, add->geometry().top() + 3),
             QColor(0x4F46E5));
}

void TestFileDropZone::partsStandInTheMiddle()
{
    const QRect icon = m_zone->findChild<QLabel *>(u"dropZoneIcon"_s)->geometry();
    const QRect text = m_zone->findChild<QLabel *>(u"dropZoneText"_s)->geometry();
    const QRect add = m_zone->findChild<IconButton *>()->geometry();
    for (const QRect &part : {icon, text, add}) {
        QVERIFY(qAbs(part.center().x() - 350) <= 1);
    }
    QCOMPARE(text.top() - icon.bottom() - 1, 20);
    QCOMPARE(add.top() - text.bottom() - 1, 20);
    QVERIFY(qAbs(icon.top() - (599 - add.bottom())) <= 1);
}

void TestFileDropZone::longTextIsWrapped()
{
    const auto *text = m_zone->findChild<QLabel *>(u"dropZoneText"_s);
    const int line = text->height();
    m_zone->setText(u"many words "_s.repeated(30));
    QTRY_VERIFY(text->height() > 2 * line);
    QVERIFY(text->geometry().left() > 40 && text->geometry().right() < 660);
}

void TestFileDropZone::textIsPlain()
{
    QCOMPARE(m_zone->findChild<QLabel *>(u"dropZoneText"_s)->textFormat(), Qt::PlainText);
}

void TestFileDropZone::frameIsDashed()
{
    const QImage image = picture();
    QCOMPARE(image.pixelColor(5, 5), QColor(Qt::white));
    QCOMPARE(image.pixelColor(36, 300), QColor(Qt::white));
    QCOMPARE(image.pixelColor(663, 300), QColor(Qt::white));
    QCOMPARE(image.pixelColor(43, 300), kFill);
    QCOMPARE(image.pixelColor(350, 43), kFill);
    QCOMPARE(image.pixelColor(655, 300), kFill);
    QCOMPARE(image.pixelColor(350, 555), kFill);
    // Lines with gaps between them.
    for (const QRect &side : {QRect(100, 39, 500, 2), QRect(100, 559, 500, 2),
                              QRect(39, 100, 2, 400), QRect(659, 100, 2, 400)}) {
        QVERIFY(contains(image, side, kLine));
    }
    int changes = 0;
    for (int x = 100; x < 600; ++x) {
        changes += static_cast<int>((image.pixelColor(x, 40) == kLine) !=
                                    (image.pixelColor(x - 1, 40) == kLine));
    }
    // Round caps lengthen the dashes by the width of the line: a dash of 5.6 and a gap of 3.
    QVERIFY2(changes >= 80 && changes <= 140, qPrintable(QString::number(changes)));
}

void TestFileDropZone::buttonOpensTheDialog()
{
    const QTemporaryDir folder;
    QStringList files;
    for (const char *name : {"b.pdf", "a.pdf"}) {
        files += folder.filePath(QString::fromLatin1(name));
        QFile file(files.last());
        QVERIFY(file.open(QIODevice::WriteOnly));
    }
    DialogAnswers answers;
    answers.addFiles(files);
    const QSignalSpy selected(m_zone.get(), &FileDropZoneWidget::fileSelected);
    QTest::mouseClick(m_zone->findChild<IconButton *>(), Qt::LeftButton);
    QVERIFY(answers.allGiven());
    QCOMPARE(chosen(selected), files);
    QCOMPARE(answers.fileDialogs().size(), 1);
    const DialogAnswers::FileDialog dialog = answers.fileDialogs().constFirst();
    QCOMPARE(dialog.title, u"选择 PDF"_s);
    QCOMPARE(dialog.filters, QStringList(u"PDF 文件 (*.pdf)"_s));
    QCOMPARE(dialog.mode, QFileDialog::ExistingFiles);
}

void TestFileDropZone::pageSetsTheDialog()
{
    m_zone->filter = u"Pictures (*.png)"_s;
    m_zone->caption = u"Choose"_s;
    const DialogAnswers answers;
    m_zone->chooseFile();
    QCOMPARE(answers.fileDialogs().size(), 1);
    QCOMPARE(answers.fileDialogs().at(0).title, u"Choose"_s);
    QCOMPARE(answers.fileDialogs().at(0).filters, QStringList(u"Pictures (*.png)"_s));
}

void TestFileDropZone::cancelledDialogChoosesNothing()
{
    const DialogAnswers answers;
    const QSignalSpy selected(m_zone.get(), &FileDropZoneWidget::fileSelected);
    m_zone->chooseFile();
    QCOMPARE(answers.fileDialogs().size(), 1);
    QCOMPARE(selected.size(), 0);
}

void TestFileDropZone::filesAreTaken()
{
    const QStringList files{u"/x/b.pdf"_s, u"/x/名 %41#1.pdf"_s, u"/x/a.pdf"_s};
    const auto data = dataOf(files);
    const QSignalSpy selected(m_zone.get(), &FileDropZoneWidget::fileSelected);
    QVERIFY(enter(*m_zone, *data).accepted);
    QVERIFY(send<QDragMoveEvent>(*m_zone, *data, kAll, Qt::NoModifier).accepted);
    QCOMPARE(selected.size(), 0);
    QVERIFY(drop(*m_zone, *data).accepted);
    QCOMPARE(chosen(selected), files);
}

void TestFileDropZone::dragOfSomethingElseIsNotTaken()
{
    QMimeData data;
    data.setText(u"/x/a.pdf"_s);
    QVERIFY(!enter(*m_zone, data).accepted);
}

void TestFileDropZone::dropsAreCopies_data()
{
    QTest::addColumn<Qt::KeyboardModifiers>("keys");
    QTest::addColumn<Qt::DropActions>("offered");
    QTest::newRow("plain") << Qt::KeyboardModifiers() << kAll;
    QTest::newRow("moving key") << Qt::KeyboardModifiers(Qt::ShiftModifier) << kAll;
    QTest::newRow("linking keys") << Qt::KeyboardModifiers(Qt::ShiftModifier | Qt::ControlModifier)
                                  << kAll;
    QTest::newRow("copy only") << Qt::KeyboardModifiers() << Qt::DropActions(Qt::CopyAction);
}

void TestFileDropZone::dropsAreCopies()
{
    QFETCH(Qt::KeyboardModifiers, keys);
    QFETCH(Qt::DropActions, offered);
    const auto data = dataOf({u"/x/a.pdf"_s});
    const QSignalSpy selected(m_zone.get(), &FileDropZoneWidget::fileSelected);
    for (const Answer &answer :
         {enter(*m_zone, *data, offered, keys), send<QDragMoveEvent>(*m_zone, *data, offered, keys),
          drop(*m_zone, *data, offered, keys)}) {
        QVERIFY(answer.accepted);
        QCOMPARE(answer.action, Qt::CopyAction);
    }
    QCOMPARE(selected.size(), 1);
}

void TestFileDropZone::whatCanOnlyBeMovedIsNotTaken()
{
    const auto data = dataOf({u"/x/a.pdf"_s});
    const QSignalSpy selected(m_zone.get(), &FileDropZoneWidget::fileSelected);
    QVERIFY(!enter(*m_zone, *data, Qt::MoveAction).accepted);
    QVERIFY(!send<QDragMoveEvent>(*m_zone, *data, Qt::MoveAction, Qt::NoModifier).accepted);
    QVERIFY(enter(*m_zone, *data).accepted);
    QVERIFY(!drop(*m_zone, *data, Qt::MoveAction).accepted);
    QCOMPARE(selected.size(), 0);
}

void TestFileDropZone::dropIsNotChecked()
{
    const QTemporaryDir folder;
    const QStringList files{folder.path(), u"/nowhere/x.docx"_s, u"/x/a.pdf"_s, u"/x/a.pdf"_s};
    const QSignalSpy selected(m_zone.get(), &FileDropZoneWidget::fileSelected);
    const auto data = dataOf(files);
    enter(*m_zone, *data);
    drop(*m_zone, *data);
    QCOMPARE(chosen(selected), files);
}

void TestFileDropZone::addressOfTheWebIsAnEmptyPath()
{
    QMimeData data;
    data.setUrls({QUrl(u"https://example.org/a.pdf"_s), QUrl::fromLocalFile(u"/x/a.pdf"_s)});
    const QSignalSpy selected(m_zone.get(), &FileDropZoneWidget::fileSelected);
    enter(*m_zone, data);
    drop(*m_zone, data);
    QCOMPARE(chosen(selected), QStringList({QString(), u"/x/a.pdf"_s}));
}

void TestFileDropZone::dropWithoutAddressesIsNoChoice()
{
    QMimeData data;
    data.setText(u"text"_s);
    const QSignalSpy selected(m_zone.get(), &FileDropZoneWidget::fileSelected);
    // A drop reaches only what has let the drag in.
    QVERIFY(enter(*m_zone, *dataOf({u"/x/a.pdf"_s})).accepted);
    drop(*m_zone, data);
    QCOMPARE(selected.size(), 0);
}

void TestFileDropZone::frameShowsThatADropWouldBeTaken()
{
    enter(*m_zone, *dataOf({u"/x/a.pdf"_s}));
    const QImage image = picture();
    QVERIFY(contains(image, QRect(100, 39, 500, 2), kAimedLine));
    QVERIFY(!contains(image, QRect(100, 39, 500, 2), kLine));
    QVERIFY(image.pixelColor(43, 300) != kFill);
}

void TestFileDropZone::frameIsAsBeforeOnceTheDragIsOver()
{
    const QImage before = picture();
    const auto data = dataOf({u"/x/a.pdf"_s});
    enter(*m_zone, *data);
    QVERIFY(picture() != before);
    QDragLeaveEvent leave;
    QCoreApplication::sendEvent(m_zone.get(), &leave);
    QCOMPARE(picture(), before);
    enter(*m_zone, *data);
    QVERIFY(picture() != before);
    drop(*m_zone, *data);
    QCOMPARE(picture(), before);
}

void TestFileDropZone::frameStaysAsItIsForARefusedDrag()
{
    const QImage before = picture();
    QMimeData text;
    text.setText(u"text"_s);
    enter(*m_zone, text);
    QCOMPARE(picture(), before);
    enter(*m_zone, *dataOf({u"/x/a.pdf"_s}), Qt::MoveAction);
    QCOMPARE(picture(), before);
}

QTEST_MAIN(TestFileDropZone)
#include "tst_file_drop_zone.moc"
