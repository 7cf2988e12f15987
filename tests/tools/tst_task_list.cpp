// SPDX-License-Identifier: AGPL-3.0-or-later
#include "res/resources.h"
#include "taskcenter/task_center.h"
#include "tests/tools/row_mouse.h"
#include "tools/common/elided_label.h"
#include "tools/tasks/task_list_item.h"
#include "tools/tasks/task_list_widget.h"
#include "tools/tasks/task_row.h"
#include "widgets/icon_button.h"
#include "widgets/icon_paths.h"

#include <QApplication>
#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QIcon>
#include <QImage>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

/// Takes what is to be opened by other programs.
class Opener final : public QObject
{
    Q_OBJECT

public:
    Opener() { QDesktopServices::setUrlHandler(u"file"_s, this, "open"); }
    ~Opener() override { QDesktopServices::unsetUrlHandler(u"file"_s); }

    [[nodiscard]] QStringList paths() const
    {
        QStringList all;
        for (const QUrl &url : m_opened) {
            all += url.toLocalFile();
        }
        return all;
    }

public slots:
    void open(const QUrl &url) { m_opened.append(url); }

private:
    QList<QUrl> m_opened;
};

bool createFile(const QString &path, const QByteArray &content = "12345")
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

QLabel *label(const TaskListItem &row, const char *name)
{
    return row.findChild<QLabel *>(QString::fromLatin1(name));
}

QPushButton *fileButton(const TaskListItem &row)
{
    return row.findChild<QPushButton *>(u"taskOpenFileButton"_s);
}

QPushButton *folderButton(const TaskListItem &row)
{
    return row.findChild<QPushButton *>(u"taskOpenFolderButton"_s);
}

/// What a row shows, of all that a status decides.
QStringList looks(const TaskListItem &row)
{
    const QLabel *status = label(row, "taskStatus");
    return {status->text(), status->styleSheet(),
            label(row, "taskStateIcon")->isVisible() ? u"icon"_s : QString(),
            fileButton(row)->isVisible() ? u"file"_s : QString(),
            folderButton(row)->isVisible() ? u"folder"_s : QString()};
}

} // namespace

/// The tasks that a page has submitted.
class TestTaskList final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { initResources(); }
    void init();
    void cleanup();

    void statusOfARow_data();
    void statusOfARow();
    void otherNumbersChangeNothing_data();
    void otherNumbersChangeNothing();
    void laterStatusReplacesAnEarlierOne();
    void statusMayBeRepeated();
    void stateIconHasOneColour_data();
    void stateIconHasOneColour();
    void completedFileShowsItsSize();
    void resultThatIsGoneCannotBeOpened();
    void folderOfAGoneResultCanBeOpened();
    void resultThatIsAFolderIsOpenedAsOne();

    void pathDecidesNameAndIcon_data();
    void pathDecidesNameAndIcon();
    void pathIsCleaned();
    void buttonsOpenWhatIsNamed_data();
    void buttonsOpenWhatIsNamed();
    void buttonsOpenTheCleanedPath();
    void buttonsLookAgainBeforeTheyOpen();
    void relativePathIsOpenedWhole();

    void partsOfARowStandInOrder();
    void rowIsMirroredFromRightToLeft();
    void fontsAndColours();
    void buttonsOfARow();
    void buttonsHaveTheirColours();
    void longNameLosesItsMiddle();
    void markupInNamesIsNoMarkup();

    void listShowsRowsAndNothingElse();
    void restartButtonStandsInItsCorner();
    void tasksAreAppended();
    void unknownTaskChangesNothing();
    void sameIdentifierMeansTheLaterRow();
    void restartForgetsTheTasks();
    void failedTaskSaysWhy();
    void completedTaskShowsItsRealResult();

private:
    /// Adds a task, and lays its row out.
    TaskListItem *add(const QString &id, const QString &path);
    [[nodiscard]] QString in(const QString &name) const { return m_folder->filePath(name); }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<TaskListWidget> m_widget;
};

void TestTaskList::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_widget = std::make_unique<TaskListWidget>();
    m_widget->resize(700, 500);
    m_widget->show();
}

void TestTaskList::cleanup()
{
    m_widget.reset();
    m_folder.reset();
    QGuiApplication::setLayoutDirection(Qt::LeftToRight);
}

TaskListItem *TestTaskList::add(const QString &id, const QString &path)
{
    m_widget->addTask({id, 0, path});
    QCoreApplication::processEvents();
    return m_widget->rows().constLast();
}

void TestTaskList::statusOfARow_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("colour");
    QTest::addColumn<bool>("hasIcon");
    QTest::addColumn<bool>("hasButtons");
    QTest::newRow("queued") << 0 << u"处理中..."_s << u"#4F46E5"_s << false << false;
    QTest::newRow("running") << 1 << u"处理中..."_s << u"#4F46E5"_s << false << false;
    QTest::newRow("paused") << 2 << u"已暂停"_s << u"#E89A3C"_s << false << false;
    QTest::newRow("completed") << 3 << u"完成"_s << u"#20A66A"_s << true << true;
    QTest::newRow("failed") << 4 << u"失败"_s << u"#E05252"_s << true << false;
    QTest::newRow("cancelled") << 5 << u"已取消"_s << u"#E05252"_s << true << false;
}

void TestTaskList::statusOfARow()
{
    QFETCH(int, status);
    QFETCH(QString, text);
    QFETCH(QString, colour);
    QFETCH(bool, hasIcon);
    QFETCH(bool, hasButtons);
    QVERIFY(createFile(in(u"a.pdf"_s)));
    const TaskListItem *row = add(u"1"_s, in(u"a.pdf"_s));
    m_widget->updateStatus(u"1"_s, status);
    QCOMPARE(looks(*row),
             QStringList({text, u"QLabel{background-color:transparent;color:%1;}"_s.arg(colour),
                          hasIcon ? u"icon"_s : QString(), hasButtons ? u"file"_s : QString(),
                          hasButtons ? u"folder"_s : QString()}));
    QCOMPARE(label(*row, "taskStatus")->palette().color(QPalette::WindowText), QColor(colour));
    QVERIFY(label(*row, "taskStatus")->isVisible());
}

void TestTaskList::otherNumbersChangeNothing_data()
{
    QTest::addColumn<int>("number");
    for (const int number : {-1, 6, 100}) {
        QTest::addRow("%d", number) << number;
    }
}

void TestTaskList::otherNumbersChangeNothing()
{
    QFETCH(int, number);
    QVERIFY(createFile(in(u"a.pdf"_s)));
    const TaskListItem *row = add(u"1"_s, in(u"a.pdf"_s));
    for (const int status : {0, 3, 4}) {
        m_widget->updateStatus(u"1"_s, status);
        const QStringList before = looks(*row);
        m_widget->updateStatus(u"1"_s, number);
        QCOMPARE(looks(*row), before);
    }
}

void TestTaskList::laterStatusReplacesAnEarlierOne()
{
    QVERIFY(createFile(in(u"a.pdf"_s)));
    const TaskListItem *row = add(u"1"_s, in(u"a.pdf"_s));
    m_widget->updateStatus(u"1"_s, 3);
    QVERIFY(fileButton(*row)->isVisible() && folderButton(*row)->isVisible());
    for (const int status : {4, 1, 2, 5, 0}) {
        m_widget->updateStatus(u"1"_s, 3);
        m_widget->updateStatus(u"1"_s, status);
        QVERIFY(!fileButton(*row)->isVisible() && !folderButton(*row)->isVisible());
        QCOMPARE(label(*row, "taskStateIcon")->isVisible(), status > 3);
    }
}

void TestTaskList::statusMayBeRepeated()
{
    QVERIFY(createFile(in(u"a.pdf"_s)));
    const TaskListItem *row = add(u"1"_s, in(u"a.pdf"_s));
    m_widget->updateStatus(u"1"_s, 3);
    const QStringList once = looks(*row);
    m_widget->updateStatus(u"1"_s, 3);
    QCOMPARE(looks(*row), once);
    QCOMPARE(m_widget->rows().size(), 1);
}

void TestTaskList::stateIconHasOneColour_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("picture");
    QTest::addColumn<QColor>("colour");
    QTest::newRow("completed") << 3 << u":/res/icons/modern/completed.png"_s << QColor(0x20A66A);
    QTest::newRow("failed") << 4 << u":/res/icons/modern/failed.png"_s << QColor(0xE05252);
    QTest::newRow("cancelled") << 5 << u":/res/icons/modern/failed.png"_s << QColor(0xE05252);
}

void TestTaskList::stateIconHasOneColour()
{
    QFETCH(int, status);
    QFETCH(QString, picture);
    QFETCH(QColor, colour);
    const TaskListItem *row = add(u"1"_s, in(u"a.pdf"_s));
    m_widget->updateStatus(u"1"_s, status);
    const QImage shown = label(*row, "taskStateIcon")->pixmap().toImage();
    const QImage source = QIcon(picture).pixmap(QSize(20, 20), 1.0).toImage();
    QCOMPARE(shown.size(), QSize(20, 20));
    QCOMPARE(source.size(), QSize(20, 20));
    int opaque = 0;
    for (int y = 0; y < 20; ++y) {
        for (int x = 0; x < 20; ++x) {
            const QColor pixel = shown.pixelColor(x, y);
            QCOMPARE(pixel.alpha(), source.pixelColor(x, y).alpha());
            if (pixel.alpha() == 255) {
                ++opaque;
                QCOMPARE(pixel, colour);
            }
        }
    }
    QVERIFY(opaque > 10 && opaque < 400);
}

void TestTaskList::completedFileShowsItsSize()
{
    const TaskListItem *row = add(u"1"_s, in(u"a.pdf"_s));
    QVERIFY(!label(*row, "taskSize")->isVisible());
    QCOMPARE(label(*row, "taskSize")->text(), QString());
    QVERIFY(createFile(in(u"a.pdf"_s), QByteArray(2048, 'x')));
    m_widget->updateStatus(u"1"_s, 1);
    QVERIFY(!label(*row, "taskSize")->isVisible());
    m_widget->updateStatus(u"1"_s, 3);
    QVERIFY(label(*row, "taskSize")->isVisible());
    QCOMPARE(label(*row, "taskSize")->text(), u"2 KB"_s);
}

void TestTaskList::resultThatIsGoneCannotBeOpened()
{
    const TaskListItem *row = add(u"1"_s, in(u"none/a.pdf"_s));
    m_widget->updateStatus(u"1"_s, 3);
    QCOMPARE(looks(*row).at(0), u"完成"_s);
    QCOMPARE(looks(*row).mid(2), QStringList({u"icon"_s, QString(), QString()}));
}

void TestTaskList::folderOfAGoneResultCanBeOpened()
{
    QVERIFY(createFile(in(u"a.pdf"_s)));
    const TaskListItem *row = add(u"1"_s, in(u"a.pdf"_s));
    QVERIFY(label(*row, "taskSize")->isVisible());
    QVERIFY(QFile::remove(in(u"a.pdf"_s)));
    m_widget->updateStatus(u"1"_s, 3);
    QCOMPARE(looks(*row).mid(2), QStringList({u"icon"_s, QString(), u"folder"_s}));
    QVERIFY(!label(*row, "taskSize")->isVisible());
    QCOMPARE(label(*row, "taskSize")->text(), QString());
}

void TestTaskList::resultThatIsAFolderIsOpenedAsOne()
{
    const TaskListItem *row = add(u"1"_s, m_folder->path());
    m_widget->updateStatus(u"1"_s, 3);
    QCOMPARE(looks(*row).mid(2), QStringList({u"icon"_s, QString(), u"folder"_s}));
    QVERIFY(!label(*row, "taskSize")->isVisible());
    const Opener opener;
    QTest::mouseClick(folderButton(*row), Qt::LeftButton);
    QCOMPARE(opener.paths(), QStringList(m_folder->path()));
}

void TestTaskList::pathDecidesNameAndIcon_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("isFile");
    QTest::newRow("file") << u"a.txt"_s << u"a.txt"_s << true;
    QTest::newRow("file without suffix") << u"plain"_s << u"plain"_s << true;
    QTest::newRow("folder") << u"folder"_s << u"folder"_s << false;
    QTest::newRow("folder like a file") << u"folder.pdf"_s << u"folder.pdf"_s << false;
    QTest::newRow("pending PDF") << u"new.pdf"_s << u"new.pdf"_s << true;
    QTest::newRow("pending PDF in capitals") << u"new.PdF"_s << u"new.PdF"_s << true;
    QTest::newRow("pending folder") << u"new"_s << u"new"_s << false;
    QTest::newRow("pending picture") << u"new.png"_s << u"new.png"_s << false;
    QTest::newRow("pending like PDF") << u"new.pdfx"_s << u"new.pdfx"_s << false;
    QTest::newRow("trailing separator") << u"new/"_s << u"new"_s << false;
    QTest::newRow("root") << u"root"_s << QDir::cleanPath(QDir::rootPath()) << false;
    QTest::newRow("nothing") << QString() << QString() << false;
}

void TestTaskList::pathDecidesNameAndIcon()
{
    QFETCH(QString, path);
    QFETCH(QString, name);
    QFETCH(bool, isFile);
    QVERIFY(createFile(in(u"a.txt"_s)) && createFile(in(u"plain"_s)));
    const QDir folder(m_folder->path());
    QVERIFY(folder.mkdir(u"folder"_s) && folder.mkdir(u"folder.pdf"_s));
    const QString whole = path == u"root"_s ? QDir::rootPath() : path.isEmpty() ? path : in(path);
    const TaskListItem *row = add(u"1"_s, whole);
    QCOMPARE(row->findChild<ElidedLabel *>()->fullText(), name);
    QCOMPARE(label(*row, "taskName")->text(), name);
    const QIcon icon(isFile ? QString(kPdfFileIcon) : QString(kFolderIcon));
    QCOMPARE(label(*row, "taskIcon")->pixmap().toImage(),
             icon.pixmap(QSize(32, 32), 1.0).toImage());
    QCOMPARE(label(*row, "taskSize")->isVisible(), QFileInfo(whole).isFile());
}

void TestTaskList::pathIsCleaned()
{
    TaskListItem row;
    row.setPath(u"/x//y/../z.pdf"_s);
    QCOMPARE(row.path(), u"/x/z.pdf"_s);
    row.setPath(u"/x/folder/"_s);
    QCOMPARE(row.path(), u"/x/folder"_s);
    row.setPath(QDir::toNativeSeparators(u"/x/./a.pdf"_s));
    QCOMPARE(row.path(), u"/x/a.pdf"_s);
    row.setPath(QString());
    QCOMPARE(row.path(), QString());
}

void TestTaskList::buttonsOpenWhatIsNamed_data()
{
    QTest::addColumn<QString>("name");
    for (const QString &name : {u"a.pdf"_s, u"with spaces.pdf"_s, u"100%41.pdf"_s, u"a#b.pdf"_s,
                                u"报告.pdf"_s, u"a&b;c.pdf"_s}) {
        QTest::newRow(qPrintable(name)) << name;
    }
}

void TestTaskList::buttonsOpenWhatIsNamed()
{
    QFETCH(QString, name);
    // The folder is named like that as well.
    QVERIFY(QDir(m_folder->path()).mkdir(name));
    const QString folder = in(name);
    const QString path = folder + u"/"_s + name;
    QVERIFY(createFile(path));
    const TaskListItem *row = add(u"1"_s, path);
    m_widget->updateStatus(u"1"_s, 3);
    QCoreApplication::processEvents();
    const Opener opener;
    QTest::mouseClick(fileButton(*row), Qt::LeftButton);
    QCOMPARE(opener.paths(), QStringList(path));
    QTest::mouseClick(folderButton(*row), Qt::LeftButton);
    QCOMPARE(opener.paths(), QStringList({path, folder}));
}

void TestTaskList::buttonsOpenTheCleanedPath()
{
    QVERIFY(QDir(m_folder->path()).mkdir(u"one"_s));
    QVERIFY(createFile(in(u"a.pdf"_s)));
    const Opener opener;
    const TaskListItem *file = add(u"1"_s, in(u"one/../a.pdf"_s));
    const TaskListItem *folder = add(u"2"_s, in(u"one//"_s));
    m_widget->updateStatus(u"1"_s, 3);
    m_widget->updateStatus(u"2"_s, 3);
    QCOMPARE(label(*file, "taskName")->text(), u"a.pdf"_s);
    QCOMPARE(label(*folder, "taskName")->text(), u"one"_s);
    QCoreApplication::processEvents();
    QTest::mouseClick(fileButton(*file), Qt::LeftButton);
    QTest::mouseClick(folderButton(*file), Qt::LeftButton);
    QTest::mouseClick(folderButton(*folder), Qt::LeftButton);
    QCOMPARE(opener.paths(), QStringList({in(u"a.pdf"_s), m_folder->path(), in(u"one"_s)}));
}

void TestTaskList::buttonsLookAgainBeforeTheyOpen()
{
    QVERIFY(QDir(m_folder->path()).mkdir(u"one"_s));
    QVERIFY(createFile(in(u"one/a.pdf"_s)));
    const TaskListItem *row = add(u"1"_s, in(u"one/a.pdf"_s));
    m_widget->updateStatus(u"1"_s, 3);
    QVERIFY(fileButton(*row)->isVisible() && folderButton(*row)->isVisible());
    QVERIFY(QDir(in(u"one"_s)).removeRecursively());
    const Opener opener;
    fileButton(*row)->click();
    folderButton(*row)->click();
    QCOMPARE(opener.paths(), QStringList());
}

void TestTaskList::relativePathIsOpenedWhole()
{
    const QString before = QDir::currentPath();
    QVERIFY(createFile(in(u"a.pdf"_s)) && QDir::setCurrent(m_folder->path()));
    const TaskListItem *row = add(u"1"_s, u"a.pdf"_s);
    m_widget->updateStatus(u"1"_s, 3);
    const Opener opener;
    fileButton(*row)->click();
    folderButton(*row)->click();
    const QString current = QDir::currentPath();
    QDir::setCurrent(before);
    QCOMPARE(opener.paths(), QStringList({current + u"/a.pdf"_s, current}));
}

void TestTaskList::partsOfARowStandInOrder()
{
    QVERIFY(createFile(in(u"a.pdf"_s)));
    const TaskListItem *row = add(u"1"_s, in(u"a.pdf"_s));
    m_widget->updateStatus(u"1"_s, 3);
    QCoreApplication::processEvents();
    const QRect icon = label(*row, "taskIcon")->geometry();
    const QRect name = label(*row, "taskName")->geometry();
    const QRect size = label(*row, "taskSize")->geometry();
    const QRect status = label(*row, "taskStatus")->geometry();
    const QRect state = label(*row, "taskStateIcon")->geometry();
    const QRect file = fileButton(*row)->geometry();
    const QRect folder = folderButton(*row)->geometry();
    QCOMPARE(icon.left(), 15);
    QCOMPARE(name.left(), 15 + 32 + 15);
    QCOMPARE(size.left(), name.left());
    QVERIFY(size.top() > name.bottom());
    QCOMPARE(folder.right(), row->width() - 1 - 15);
    QCOMPARE(file.right() + 1 + 5, folder.left());
    QCOMPARE(state.right() + 1 + 5, file.left());
    QCOMPARE(status.right() + 1 + 5, state.left());
    QCOMPARE(state.size(), QSize(20, 20));
    for (const QRect &part : {icon, status, state, file, folder}) {
        QVERIFY(qAbs(part.center().y() - row->rect().center().y()) <= 1);
    }
}

void TestTaskList::rowIsMirroredFromRightToLeft()
{
    QGuiApplication::setLayoutDirection(Qt::RightToLeft);
    QVERIFY(createFile(in(u"a.pdf"_s)));
    const TaskListItem *row = add(u"1"_s, in(u"a.pdf"_s));
    m_widget->updateStatus(u"1"_s, 3);
    QCoreApplication::processEvents();
    const int right = row->width() - 1;
    const QLabel *size = label(*row, "taskSize");
    QCOMPARE(label(*row, "taskIcon")->geometry().right(), right - 15);
    QCOMPARE(label(*row, "taskName")->geometry().right(), right - 15 - 32 - 15);
    QCOMPARE(size->geometry().right(), right - 15 - 32 - 15);
    QVERIFY(size->alignment().testFlag(Qt::AlignRight));
    QVERIFY(size->alignment().testFlag(Qt::AlignAbsolute));
    QCOMPARE(folderButton(*row)->x(), 15);
}

void TestTaskList::fontsAndColours()
{
    const TaskListItem *row = add(u"1"_s, in(u"a.pdf"_s));
    for (const auto &[name, size] :
         {std::pair("taskName", 14), std::pair("taskSize", 12), std::pair("taskStatus", 14)}) {
        QCOMPARE(label(*row, name)->font().families(), QStringList(u"Arial"_s));
        QCOMPARE(label(*row, name)->font().pixelSize(), size);
    }
    for (const char *name : {"taskName", "taskSize"}) {
        QCOMPARE(label(*row, name)->palette().color(QPalette::WindowText), QColor(0x1A1A1A));
    }
}

void TestTaskList::buttonsOfARow()
{
    const TaskListItem *row = add(u"1"_s, in(u"a.pdf"_s));
    const QPushButton *file = fileButton(*row);
    const QPushButton *folder = folderButton(*row);
    for (const QPushButton *button : {file, folder}) {
        QVERIFY(!button->isVisible());
        QCOMPARE(button->size(), QSize(34, 34));
        QCOMPARE(button->iconSize(), QSize(18, 18));
        QCOMPARE(button->cursor().shape(), Qt::PointingHandCursor);
    }
    QCOMPARE(file->toolTip(), u"打开文件"_s);
    QCOMPARE(folder->toolTip(), u"打开所在文件夹"_s);
    QCOMPARE(file->icon().pixmap(18).toImage(),
             QIcon(u":/res/icons/modern/open-file.png"_s).pixmap(18).toImage());
    QCOMPARE(folder->icon().pixmap(18).toImage(),
             QIcon(u":/res/icons/modern/open-folder.png"_s).pixmap(18).toImage());
    QVERIFY(!file->icon().pixmap(18).isNull() && !folder->icon().pixmap(18).isNull());
}

void TestTaskList::buttonsHaveTheirColours()
{
    QVERIFY(createFile(in(u"a.pdf"_s)));
    const TaskListItem *row = add(u"1"_s, in(u"a.pdf"_s));
    m_widget->updateStatus(u"1"_s, 3);
    QPushButton *button = fileButton(*row);
    const auto colours = [button] {
        const QImage image = button->grab().toImage();
        return QList<QColor>{image.pixelColor(17, 0), image.pixelColor(17, 3)};
    };
    QCOMPARE(colours(), QList<QColor>({QColor(0xE5E6EB), QColor(Qt::white)}));
    button->setEnabled(false);
    QCOMPARE(colours(), QList<QColor>({QColor(0xE5E6EB), QColor(0xF2F3F5)}));
    button->setEnabled(true);
    button->setAttribute(Qt::WA_UnderMouse);
    button->setMouseTracking(true);
    sendMouse(*button, QEvent::MouseMove, button->mapToGlobal(QPointF(17, 17)), Qt::NoButton,
              Qt::NoButton);
    QCOMPARE(colours(), QList<QColor>({QColor(0x4080FF), QColor(0xF2F7FF)}));
}

void TestTaskList::longNameLosesItsMiddle()
{
    const QString name = u"long "_s.repeated(40) + u"end.pdf"_s;
    const TaskListItem *row = add(u"1"_s, in(name));
    QTRY_COMPARE(label(*row, "taskName")->toolTip(), name);
    QTRY_VERIFY(label(*row, "taskName")->text().endsWith(u"end.pdf"));
    QVERIFY(label(*row, "taskName")->geometry().right() < label(*row, "taskStatus")->x());
    QVERIFY(row->width() <= 700);
}

void TestTaskList::markupInNamesIsNoMarkup()
{
    const QString path = in(u"<b>x</b> & y.pdf"_s);
    TaskListItem *row = add(u"1"_s, path);
    QCOMPARE(shownToolTip(*row, QPoint(2, 2)), QDir::toNativeSeparators(path));
    QCOMPARE(label(*row, "taskName")->textFormat(), Qt::PlainText);
    m_widget->updateStatus(u"1"_s, 3);
    QCOMPARE(shownToolTip(*row, QPoint(2, 2)), QDir::toNativeSeparators(path));
}

void TestTaskList::listShowsRowsAndNothingElse()
{
    const auto lists = m_widget->findChildren<QListWidget *>();
    QCOMPARE(lists.size(), 1);
    const QListWidget *list = lists.constFirst();
    QCOMPARE(list->frameShape(), QFrame::NoFrame);
    QCOMPARE(list->verticalScrollMode(), QAbstractItemView::ScrollPerPixel);
    QCOMPARE(list->horizontalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
    QCOMPARE(list->selectionMode(), QAbstractItemView::NoSelection);
    QCOMPARE(list->focusPolicy(), Qt::NoFocus);
    QCOMPARE(list->spacing(), 0);
    QVERIFY(list->uniformItemSizes());
    QCOMPARE(list->geometry(), QRect(0, 10 + 40 + 10 + 1, 700, 500 - 71));
    QCOMPARE(m_widget->grab().toImage().pixelColor(300, 60), QColor(0xE5E6EB));
}

void TestTaskList::restartButtonStandsInItsCorner()
{
    auto *restart = m_widget->findChild<IconButton *>(u"taskRestartButton"_s);
    QCOMPARE(restart->text(), u"重来"_s);
    QCOMPARE(restart->geometry(), QRect(700 - 15 - 110, 10, 110, 40));
    const auto colour = [&](int y) {
        return m_widget->grab().toImage().pixelColor(restart->x() + 55, restart->y() + y);
    };
    QCOMPARE(colour(0), QColor(0xE2E7EF));
    QCOMPARE(colour(3), QColor(Qt::white));
    restart->setAttribute(Qt::WA_UnderMouse);
    QCOMPARE(colour(3), QColor(0xF1F3F8));
}

void TestTaskList::tasksAreAppended()
{
    add(u"first"_s, in(u"a.pdf"_s));
    add(u"second"_s, in(u"b.pdf"_s));
    const auto *list = m_widget->findChild<QListWidget *>();
    QCOMPARE(list->count(), 2);
    QCOMPARE(m_widget->rows().at(0)->id(), u"first"_s);
    QCOMPARE(m_widget->rows().at(1)->id(), u"second"_s);
    QCOMPARE(list->item(1)->data(Qt::UserRole).toString(), u"second"_s);
    QCOMPARE(list->item(1)->sizeHint().height(), 80);
    QCOMPARE(looks(*m_widget->rows().at(1)).at(0), u"处理中..."_s);
    QCOMPARE(m_widget->rows().at(1)->mapTo(list->viewport(), QPoint()).y(), 80);
    m_widget->updateStatus(u"first"_s, 5);
    QCOMPARE(looks(*m_widget->rows().at(0)).at(0), u"已取消"_s);
    QCOMPARE(looks(*m_widget->rows().at(1)).at(0), u"处理中..."_s);
}

void TestTaskList::unknownTaskChangesNothing()
{
    const TaskListItem *row = add(u"1"_s, in(u"a.pdf"_s));
    const QStringList before = looks(*row);
    for (const QString &id : {u"2"_s, u"11"_s, QString()}) {
        m_widget->updateStatus(id, 4);
        QCOMPARE(looks(*row), before);
    }
    QCOMPARE(m_widget->rows().size(), 1);
}

void TestTaskList::sameIdentifierMeansTheLaterRow()
{
    add(u"1"_s, in(u"a.pdf"_s));
    add(u"1"_s, in(u"b.pdf"_s));
    QCOMPARE(m_widget->rows().size(), 2);
    m_widget->updateStatus(u"1"_s, 4);
    QCOMPARE(looks(*m_widget->rows().at(0)).at(0), u"处理中..."_s);
    QCOMPARE(looks(*m_widget->rows().at(1)).at(0), u"失败"_s);
}

void TestTaskList::restartForgetsTheTasks()
{
    add(u"1"_s, in(u"a.pdf"_s));
    add(u"2"_s, in(u"b.pdf"_s));
    int rowsThen = -1;
    connect(m_widget.get(), &TaskListWidget::sigRestart, this,
            [&] { rowsThen = static_cast<int>(m_widget->rows().size()); });
    const QSignalSpy restarted(m_widget.get(), &TaskListWidget::sigRestart);
    QTest::mouseClick(m_widget->findChild<IconButton *>(), Qt::LeftButton);
    QCOMPARE(restarted.size(), 1);
    QCOMPARE(rowsThen, 0);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    m_widget->updateStatus(u"1"_s, 3);
    QCOMPARE(m_widget->rows().size(), 0);
    const TaskListItem *row = add(u"3"_s, in(u"c.pdf"_s));
    m_widget->updateStatus(u"2"_s, 4);
    QCOMPARE(looks(*row).at(0), u"处理中..."_s);
    m_widget->updateStatus(u"3"_s, 4);
    QCOMPARE(looks(*row).at(0), u"失败"_s);
}

void TestTaskList::failedTaskSaysWhy()
{
    TaskCenter &service = TaskCenter::instance();
    connect(&service, &TaskCenter::taskStatus, m_widget.get(), &TaskListWidget::updateStatus);
    TaskRequest request;
    request.type = static_cast<qint32>(TaskType::Compress);
    request.inputFile = in(u"<i>none</i>.pdf"_s);
    request.inputFiles = {request.inputFile};
    request.outputPath = in(u"out.pdf"_s);
    const QString id = service.submitTask(request);
    TaskListItem *row = add(id, request.outputPath);
    QTRY_COMPARE(looks(*row).at(0), u"失败"_s);
    QVERIFY(!service.errorMessage(id).isEmpty());
    QCOMPARE(shownToolTip(*row, QPoint(2, 2)), service.errorMessage(id));
}

void TestTaskList::completedTaskShowsItsRealResult()
{
    // A picture becomes a file beside the one that was asked for, whose name is taken.
    const QString picture = in(u"p.png"_s);
    QImage image(20, 20, QImage::Format_RGB32);
    image.fill(Qt::red);
    QVERIFY(image.save(picture) && createFile(in(u"out.pdf"_s)));
    TaskCenter &service = TaskCenter::instance();
    connect(&service, &TaskCenter::taskStatus, m_widget.get(), &TaskListWidget::updateStatus);
    TaskRequest request;
    request.type = static_cast<qint32>(TaskType::ImagesToPdf);
    request.inputFiles = {picture};
    request.outputPath = in(u"out.pdf"_s);
    const QString id = service.submitTask(request);
    TaskListItem *row = add(id, request.outputPath);
    QTRY_COMPARE(looks(*row).at(0), u"完成"_s);
    const QString result = service.resultPath(id);
    QVERIFY(result != request.outputPath);
    QCOMPARE(row->path(), result);
    QTRY_COMPARE(label(*row, "taskName")->text(), QFileInfo(result).fileName());
    QCOMPARE(shownToolTip(*row, QPoint(2, 2)), QDir::toNativeSeparators(result));
    QVERIFY(fileButton(*row)->isVisible());
}

QTEST_MAIN(TestTaskList)
#include "tst_task_list.moc"
