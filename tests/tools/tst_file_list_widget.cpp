// SPDX-License-Identifier: AGPL-3.0-or-later
#include "res/resources.h"
#include "tests/support/dialog_answers.h"
#include "tests/tools/row_mouse.h"
#include "tools/files/file_list_item.h"
#include "tools/files/file_list_widget.h"
#include "widgets/icon_button.h"

#include <QApplication>
#include <QDragEnterEvent>
#include <QElapsedTimer>
#include <QFile>
#include <QImage>
#include <QLabel>
#include <QListWidget>
#include <QMimeData>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

QStringList numbered(int count)
{
    QStringList paths;
    for (int i = 0; i < count; ++i) {
        paths += u"/x/%1.pdf"_s.arg(i);
    }
    return paths;
}

} // namespace

/// The files that were chosen for a tool, but for dragging them.
class TestFileListWidget final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup() { m_widget.reset(); }

    void texts();
    void buttonsAndLinesStandInPlace();
    void buttonsHaveTheirColours();
    void listShowsRowsAndNothingElse();
    void rowsHaveTheirColours();
    void takesNoDrops();

    void filesAreAppendedInOrder();
    void entryKeepsItsPath();
    void addingIsSilent();
    void fileIsListedOnce();
    void otherSpellingIsAnotherFile();
    void buttonAddsFilesOfTheDialog();
    void pageSetsTheDialog();
    void cancelledDialogAddsNothing();
    void fileOfTheDialogIsListedOnce();

    void closedRowLeaves();
    void lastRowLeavesNone();
    void clearButtonEmptiesTheList();
    void emptyListIsClearedToo();
    void takenFilesAreGone();
    void filesPutBackAreWhereTheyWere();
    void manyFilesAreAddedAtOnce();

private:
    [[nodiscard]] FileListItem *row(int index) const
    {
        return qobject_cast<FileListItem *>(m_list->itemWidget(m_list->item(index)));
    }
    [[nodiscard]] IconButton *button(const char *name) const
    {
        return m_widget->findChild<IconButton *>(QString::fromLatin1(name));
    }

    std::unique_ptr<FileListWidget> m_widget;
    QListWidget *m_list = nullptr;
};

void TestFileListWidget::initTestCase()
{
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    initResources();
}

void TestFileListWidget::init()
{
    m_widget = std::make_unique<FileListWidget>();
    m_list = m_widget->findChild<QListWidget *>();
    m_widget->resize(600, 500);
    m_widget->show();
}

void TestFileListWidget::texts()
{
    QCOMPARE(m_widget->filter, u"PDF 文件 (*.pdf)"_s);
    QCOMPARE(m_widget->caption, u"选择 PDF"_s);
    QCOMPARE(button("fileListAddButton")->text(), u"添加文件"_s);
    QCOMPARE(button("fileListClearButton")->text(), u"清除全部"_s);
}

void TestFileListWidget::buttonsAndLinesStandInPlace()
{
    const IconButton *add = button("fileListAddButton");
    const IconButton *clear = button("fileListClearButton");
    QCOMPARE(add->pos(), QPoint(15, 10));
    QCOMPARE(add->size(), QSize(qMax(120, add->sizeHint().width()), 40));
    QCOMPARE(clear->geometry().right(), 599 - 15);
    QCOMPARE(clear->size(), QSize(qMax(110, clear->sizeHint().width()), 35));
    const auto *separator = m_widget->findChild<QLabel *>(QString(), Qt::FindDirectChildrenOnly);
    QCOMPARE(separator->geometry(), QRect(0, 10 + 40 + 10, 600, 1));
    QCOMPARE(separator->styleSheet(), u"QLabel{background-color:#E5E6EB;}"_s);
    QCOMPARE(m_widget->grab().toImage().pixelColor(300, 60), QColor(0xE5E6EB));
    QCOMPARE(m_list->geometry(), QRect(0, 61, 600, 500 - 61 - 10));
}

void TestFileListWidget::buttonsHaveTheirColours()
{
    const auto colour = [&](const IconButton *of, int x, int y) {
        return m_widget->grab().toImage().pixelColor(of->pos() + QPoint(x, y));
    };
    IconButton *add = button("fileListAddButton");
    IconButton *clear = button("fileListClearButton");
    QCOMPARE(colour(add, 60, 3), QColor(0x4F46E5));
    QCOMPARE(colour(clear, 60, 3), QColor(Qt::white));
    QCOMPARE(colour(clear, 60, 0), QColor(0xE2E7EF));
    for (IconButton *hovered : {add, clear}) {
        hovered->setAttribute(Qt::WA_UnderMouse);
    }
    QCOMPARE(colour(add, 60, 3), QColor(0x6366F1));
    QCOMPARE(colour(clear, 60, 3), QColor(0xF1F3F8));
}

void TestFileListWidget::listShowsRowsAndNothingElse()
{
    QCOMPARE(m_widget->findChildren<QListWidget *>().size(), 1);
    QCOMPARE(m_list->frameShape(), QFrame::NoFrame);
    QCOMPARE(m_list->verticalScrollMode(), QAbstractItemView::ScrollPerPixel);
    QCOMPARE(m_list->horizontalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
    QCOMPARE(m_list->selectionMode(), QAbstractItemView::NoSelection);
    QCOMPARE(m_list->focusPolicy(), Qt::NoFocus);
    QCOMPARE(m_list->spacing(), 0);
    QVERIFY(m_list->uniformItemSizes());
    QVERIFY(m_list->hasAutoScroll());
    QCOMPARE(m_list->autoScrollMargin(), 32);
}

void TestFileListWidget::rowsHaveTheirColours()
{
    m_widget->onAddFile(numbered(20));
    QCoreApplication::processEvents();
    const QImage image = m_list->grab().toImage();
    QCOMPARE(image.pixelColor(300, 10), QColor(Qt::white));
    QCOMPARE(image.pixelColor(300, 79), QColor(0xEBEDF0));
    QCOMPARE(image.pixelColor(300, 159), QColor(0xEBEDF0));
    QCOMPARE(image.pixelColor(15, 79), QColor(0xEBEDF0));
    QCOMPARE(image.pixelColor(14, 79), QColor(Qt::white));
    const QScrollBar *bar = m_list->verticalScrollBar();
    QVERIFY(bar->isVisible());
    QCOMPARE(bar->width(), 8);
    QCOMPARE(image.pixelColor(596, 15), QColor(0xC9CDD4));
    QCOMPARE(m_list->viewport()->width(), 592);
    QCOMPARE(image.pixelColor(576, 79), QColor(0xEBEDF0));
    QCOMPARE(image.pixelColor(577, 79), QColor(Qt::white));
}

void TestFileListWidget::takesNoDrops()
{
    m_widget->onAddFile(numbered(2));
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(u"/x/a.pdf"_s)});
    for (QWidget *part : {static_cast<QWidget *>(m_widget.get()), m_list->viewport(),
                          static_cast<QWidget *>(row(0))}) {
        QVERIFY(!part->acceptDrops());
        QDragEnterEvent enter({20, 20}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        enter.setAccepted(false);
        QCoreApplication::sendEvent(part, &enter);
        QVERIFY(!enter.isAccepted());
    }
}

void TestFileListWidget::filesAreAppendedInOrder()
{
    m_widget->onAddFile({u"/x/b.pdf"_s, u"/x/a.pdf"_s});
    m_widget->onAddFile({});
    m_widget->onAddFile({u"/x/0.pdf"_s});
    QCOMPARE(m_widget->files(), QStringList({u"/x/b.pdf"_s, u"/x/a.pdf"_s, u"/x/0.pdf"_s}));
    for (int i = 0; i < 3; ++i) {
        QCOMPARE(row(i)->path(), m_widget->files().at(i));
    }
    QTRY_COMPARE(row(2)->mapTo(m_list->viewport(), QPoint()).y(), 160);
}

void TestFileListWidget::entryKeepsItsPath()
{
    const QString path = u"/x//y/../名 %41.pdf/"_s;
    m_widget->onAddFile({path});
    const QListWidgetItem *entry = m_list->item(0);
    QCOMPARE(entry->data(Qt::UserRole).toString(), path);
    QCOMPARE(entry->text(), QString());
    QCOMPARE(entry->sizeHint().height(), 80);
    QCOMPARE(row(0)->path(), path);
    QCOMPARE(m_widget->takeFiles(), QStringList(path));
}

void TestFileListWidget::addingIsSilent()
{
    const QSignalSpy counted(m_widget.get(), &FileListWidget::fileCountChange);
    const QSignalSpy ordered(m_widget.get(), &FileListWidget::fileOrderChanged);
    m_widget->onAddFile(numbered(3));
    m_widget->onAddFile(numbered(4));
    QCOMPARE(counted.size() + ordered.size(), 0);
}

void TestFileListWidget::fileIsListedOnce()
{
    m_widget->onAddFile({u"/x/a.pdf"_s, u"/x/b.pdf"_s, u"/x/a.pdf"_s});
    m_widget->onAddFile({u"/x/b.pdf"_s, u"/x/c.pdf"_s});
    QCOMPARE(m_widget->files(), QStringList({u"/x/a.pdf"_s, u"/x/b.pdf"_s, u"/x/c.pdf"_s}));
    QCOMPARE(m_list->count(), 3);
    m_widget->clearFiles();
    m_widget->onAddFile({u"/x/a.pdf"_s});
    QCOMPARE(m_list->count(), 1);
}

void TestFileListWidget::otherSpellingIsAnotherFile()
{
    const QStringList spellings{u"/x/a.pdf"_s, u"/x/A.pdf"_s, u"/x//a.pdf"_s, u"\\x\\a.pdf"_s,
                                u"/x/./a.pdf"_s};
    m_widget->onAddFile(spellings);
    m_widget->onAddFile(spellings);
    QCOMPARE(m_widget->files(), spellings);
}

void TestFileListWidget::buttonAddsFilesOfTheDialog()
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
    QTest::mouseClick(button("fileListAddButton"), Qt::LeftButton);
    QVERIFY(answers.allGiven());
    QCOMPARE(m_widget->files(), files);
    QCOMPARE(answers.fileDialogs().size(), 1);
    QCOMPARE(answers.fileDialogs().at(0).title, u"选择 PDF"_s);
    QCOMPARE(answers.fileDialogs().at(0).filters, QStringList(u"PDF 文件 (*.pdf)"_s));
    QCOMPARE(answers.fileDialogs().at(0).mode, QFileDialog::ExistingFiles);
}

void TestFileListWidget::pageSetsTheDialog()
{
    m_widget->filter = u"Pictures (*.png)"_s;
    m_widget->caption = u"Choose"_s;
    const DialogAnswers answers;
    QTest::mouseClick(button("fileListAddButton"), Qt::LeftButton);
    QCOMPARE(answers.fileDialogs().size(), 1);
    QCOMPARE(answers.fileDialogs().at(0).title, u"Choose"_s);
    QCOMPARE(answers.fileDialogs().at(0).filters, QStringList(u"Pictures (*.png)"_s));
}

void TestFileListWidget::cancelledDialogAddsNothing()
{
    const QSignalSpy counted(m_widget.get(), &FileListWidget::fileCountChange);
    const DialogAnswers answers;
    QTest::mouseClick(button("fileListAddButton"), Qt::LeftButton);
    QCOMPARE(answers.fileDialogs().size(), 1);
    QCOMPARE(m_list->count(), 0);
    QCOMPARE(counted.size(), 0);
}

void TestFileListWidget::fileOfTheDialogIsListedOnce()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"a.pdf"_s);
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    m_widget->onAddFile({path});
    DialogAnswers answers;
    answers.addFiles({path});
    QTest::mouseClick(button("fileListAddButton"), Qt::LeftButton);
    QVERIFY(answers.allGiven());
    QCOMPARE(m_widget->files(), QStringList(path));
}

void TestFileListWidget::closedRowLeaves()
{
    m_widget->onAddFile(numbered(3));
    const QSignalSpy counted(m_widget.get(), &FileListWidget::fileCountChange);
    const QSignalSpy ordered(m_widget.get(), &FileListWidget::fileOrderChanged);
    const QPointer<FileListItem> middle = row(1);
    QTest::mouseClick(middle->findChild<QPushButton *>(), Qt::LeftButton);
    QCOMPARE(m_widget->files(), QStringList({u"/x/0.pdf"_s, u"/x/2.pdf"_s}));
    QCOMPARE(counted.size(), 1);
    QCOMPARE(counted.at(0).at(0).toInt(), 2);
    QCOMPARE(ordered.size(), 0);
    QTRY_VERIFY(middle == nullptr);
    QCOMPARE(row(1)->path(), u"/x/2.pdf"_s);
    // It may come again.
    m_widget->onAddFile({u"/x/1.pdf"_s});
    QCOMPARE(m_list->count(), 3);
}

void TestFileListWidget::lastRowLeavesNone()
{
    m_widget->onAddFile(numbered(1));
    const QSignalSpy counted(m_widget.get(), &FileListWidget::fileCountChange);
    QTest::mouseClick(row(0)->findChild<QPushButton *>(), Qt::LeftButton);
    QCOMPARE(counted.size(), 1);
    QCOMPARE(counted.at(0).at(0).toInt(), 0);
    QCOMPARE(m_widget->files(), QStringList());
}

void TestFileListWidget::clearButtonEmptiesTheList()
{
    m_widget->onAddFile(numbered(3));
    const QSignalSpy counted(m_widget.get(), &FileListWidget::fileCountChange);
    const QSignalSpy ordered(m_widget.get(), &FileListWidget::fileOrderChanged);
    QTest::mouseClick(button("fileListClearButton"), Qt::LeftButton);
    QCOMPARE(m_list->count(), 0);
    QCOMPARE(counted.size(), 1);
    QCOMPARE(counted.at(0).at(0).toInt(), 0);
    QCOMPARE(ordered.size(), 0);
}

void TestFileListWidget::emptyListIsClearedToo()
{
    const QSignalSpy counted(m_widget.get(), &FileListWidget::fileCountChange);
    m_widget->clearFiles();
    QCOMPARE(counted.size(), 1);
    QCOMPARE(counted.at(0).at(0).toInt(), 0);
}

void TestFileListWidget::takenFilesAreGone()
{
    m_widget->onAddFile(numbered(3));
    const QSignalSpy counted(m_widget.get(), &FileListWidget::fileCountChange);
    const QSignalSpy ordered(m_widget.get(), &FileListWidget::fileOrderChanged);
    QCOMPARE(m_widget->takeFiles(), numbered(3));
    QCOMPARE(m_list->count(), 0);
    QCOMPARE(m_widget->takeFiles(), QStringList());
    QCOMPARE(counted.size() + ordered.size(), 0);
}

void TestFileListWidget::filesPutBackAreWhereTheyWere()
{
    m_widget->onAddFile(numbered(30));
    QCoreApplication::processEvents();
    m_list->verticalScrollBar()->setValue(777);
    const QSignalSpy counted(m_widget.get(), &FileListWidget::fileCountChange);
    const QStringList taken = m_widget->takeFiles();
    // The empty list is laid out, and has nothing to scroll.
    QCoreApplication::processEvents();
    QCOMPARE(m_list->verticalScrollBar()->maximum(), 0);
    m_widget->putBack(taken);
    QCOMPARE(m_widget->files(), numbered(30));
    QCOMPARE(m_list->verticalScrollBar()->value(), 777);
    QCoreApplication::processEvents();
    QCOMPARE(m_list->verticalScrollBar()->value(), 777);
    QCOMPARE(counted.size(), 0);
}

void TestFileListWidget::manyFilesAreAddedAtOnce()
{
    QElapsedTimer timer;
    timer.start();
    m_widget->onAddFile(numbered(500));
    qInfo("500 files in %lld ms", static_cast<long long>(timer.elapsed()));
    QCOMPARE(m_list->count(), 500);

    // The list goes through all of its rows each time that it hears of a change.
    QCoreApplication::processEvents();
    const QSignalSpy inserted(m_list->model(), &QAbstractItemModel::rowsInserted);
    const QSignalSpy changed(m_list->model(), &QAbstractItemModel::dataChanged);
    QStringList more = numbered(600);
    m_widget->onAddFile(more);
    QCOMPARE(inserted.size(), 1);
    QCOMPARE(changed.size(), 0);
    QCOMPARE(m_widget->files(), more);
    QTRY_COMPARE(m_list->visualItemRect(m_list->item(599)).height(), 80);
}

QTEST_MAIN(TestFileListWidget)
#include "tst_file_list_widget.moc"
