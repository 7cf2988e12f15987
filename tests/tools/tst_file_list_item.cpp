// SPDX-License-Identifier: AGPL-3.0-or-later
#include "res/resources.h"
#include "tests/tools/row_mouse.h"
#include "tools/common/elided_label.h"
#include "tools/files/file_list_item.h"
#include "widgets/icon_paths.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QIcon>
#include <QImage>
#include <QLabel>
#include <QMetaMethod>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr QSize kRowSize(600, 80);
constexpr QPoint kStart(200, 40);

QLabel *label(const QWidget &row, const char *name)
{
    return row.findChild<QLabel *>(QString::fromLatin1(name));
}

} // namespace

/// A row of the list of files.
class TestFileListItem final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { initResources(); }
    void init();
    void cleanup();

    void showsNameAndSize();
    void sizeHasUnits();
    void missingFileHasNoBytes();
    void pathIsKeptAsItIs();
    void everyFileHasTheIconOfPdfFiles();
    void fontsAndColours();
    void partsStandInOrder();
    void partsAreMirroredFromRightToLeft();
    void labelsLetTheMouseThrough();
    void handleSaysWhatItIsFor();
    void rowSaysWhereTheFileIs();
    void longNameLosesItsMiddle();
    void markupInNamesIsNoMarkup();

    void closeButtonAsksToClose();
    void pressOnTheCloseButtonIsNoDrag();
    void closeButtonStandsOutUnderTheMouse();

    void signalsAreDeclaredInOrder();
    void shortMoveIsNoDrag();
    void dragBeginsAtItsDistance_data();
    void dragBeginsAtItsDistance();
    void pressPositionIsRounded();
    void everyMoveOfADragIsReported();
    void positionsAreRounded();
    void signalsOfADragComeInOrder();
    void rowIsDraggingUntilItHasSaidThatItIsNot();
    void secondDragBeginsAfresh();
    void otherButtonsAreNotTaken();
    void movesWithoutAPressAreNotTaken();
    void movesWithoutTheLeftButtonAreNotTaken();
    void releaseOfAnotherButtonEndsNothing();
    void releaseWithoutAPressIsNotTaken();
    void releaseWithoutADragIsNotTaken();
    void cursorIsAHandThatCloses();
    void draggedRowLooksDragged();

private:
    [[nodiscard]] QPointF global(QPoint local) const { return m_row->mapToGlobal(local); }
    [[nodiscard]] QColor pixel(int x, int y) const;

    std::unique_ptr<FileListItem> m_row;
};

void TestFileListItem::init()
{
    m_row = std::make_unique<FileListItem>();
    m_row->setStyleSheet(FileListItem::rowStyleSheet());
    m_row->setPath(u"/nowhere/a.pdf"_s);
    m_row->resize(kRowSize);
    m_row->show();
}

void TestFileListItem::cleanup()
{
    m_row.reset();
    QGuiApplication::setLayoutDirection(Qt::LeftToRight);
}

QColor TestFileListItem::pixel(int x, int y) const
{
    QImage image(m_row->size(), QImage::Format_RGB32);
    image.fill(Qt::white);
    m_row->render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
    return image.pixelColor(x, y);
}

void TestFileListItem::showsNameAndSize()
{
    const QTemporaryDir folder;
    QFile file(folder.filePath(u"报告 1.PDF"_s));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write("1234567") == 7);
    file.close();
    m_row->setPath(file.fileName());
    QTRY_COMPARE(label(*m_row, "fileName")->text(), u"报告 1.PDF"_s);
    QCOMPARE(label(*m_row, "fileSize")->text(), u"7 B"_s);
}

void TestFileListItem::sizeHasUnits()
{
    const QTemporaryDir folder;
    QFile file(folder.filePath(u"a.pdf"_s));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.resize(3 * 1024 * 1024 / 2));
    m_row->setPath(file.fileName());
    QCOMPARE(label(*m_row, "fileSize")->text(), u"1.50 MB"_s);
}

void TestFileListItem::missingFileHasNoBytes()
{
    QCOMPARE(label(*m_row, "fileName")->text(), u"a.pdf"_s);
    QCOMPARE(label(*m_row, "fileSize")->text(), u"0 B"_s);
}

void TestFileListItem::pathIsKeptAsItIs()
{
    const QString path = u"/nowhere//x/../b.pdf"_s;
    m_row->setPath(path);
    QCOMPARE(m_row->path(), path);
    QTRY_COMPARE(label(*m_row, "fileName")->text(), u"b.pdf"_s);
}

void TestFileListItem::everyFileHasTheIconOfPdfFiles()
{
    const QImage expected = QIcon(kPdfFileIcon).pixmap(QSize(32, 32), 1.0).toImage();
    QVERIFY(!expected.isNull());
    for (const QString &path : {u"/x/a.pdf"_s, u"/x/a.txt"_s, QDir::tempPath()}) {
        m_row->setPath(path);
        QCOMPARE(label(*m_row, "fileIcon")->pixmap().toImage(), expected);
    }
}

void TestFileListItem::fontsAndColours()
{
    for (const auto &[name, size] : {std::pair("fileName", 14), std::pair("fileSize", 12)}) {
        const QLabel *text = label(*m_row, name);
        QCOMPARE(text->font().families(), QStringList(u"Arial"_s));
        QCOMPARE(text->font().pixelSize(), size);
        QCOMPARE(text->palette().color(QPalette::WindowText), QColor(0x1A1A1A));
    }
    QCOMPARE(label(*m_row, "fileDragHandle")->palette().color(QPalette::WindowText),
             QColor(0x8490A3));
}

void TestFileListItem::partsStandInOrder()
{
    const QRect handle = label(*m_row, "fileDragHandle")->geometry();
    const QRect icon = label(*m_row, "fileIcon")->geometry();
    const QRect name = label(*m_row, "fileName")->geometry();
    const QRect size = label(*m_row, "fileSize")->geometry();
    const auto *closeButton = m_row->findChild<QPushButton *>();
    QCOMPARE(handle.left(), 15);
    QCOMPARE(handle.width(), 14);
    QCOMPARE(icon.left(), 15 + 14 + 8);
    QCOMPARE(icon.size(), QSize(32, 32));
    QCOMPARE(name.left(), 15 + 14 + 8 + 32 + 15);
    QCOMPARE(size.left(), name.left());
    QVERIFY(size.top() > name.bottom());
    QCOMPARE(closeButton->geometry(), QRect(600 - 15 - 28, 26, 28, 28));
    QCOMPARE(icon.top(), 24);
    QVERIFY(qAbs(handle.center().y() - 40) <= 1);
    // Name and size together are in the middle.
    QVERIFY(qAbs(name.top() - (79 - size.bottom())) <= 1);
}

void TestFileListItem::partsAreMirroredFromRightToLeft()
{
    m_row.reset();
    QGuiApplication::setLayoutDirection(Qt::RightToLeft);
    init();
    QCOMPARE(label(*m_row, "fileDragHandle")->geometry().right(), 599 - 15);
    QCOMPARE(label(*m_row, "fileIcon")->geometry().right(), 599 - 15 - 14 - 8);
    const QLabel *name = label(*m_row, "fileName");
    const QLabel *size = label(*m_row, "fileSize");
    QCOMPARE(name->geometry().right(), 599 - 15 - 14 - 8 - 32 - 15);
    QCOMPARE(size->geometry().right(), name->geometry().right());
    for (const QLabel *text : {name, size}) {
        QVERIFY(text->alignment().testFlag(Qt::AlignRight));
        QVERIFY(text->alignment().testFlag(Qt::AlignAbsolute));
    }
    QCOMPARE(m_row->findChild<QPushButton *>()->x(), 15);
}

void TestFileListItem::labelsLetTheMouseThrough()
{
    const QList<QLabel *> labels = m_row->findChildren<QLabel *>();
    QCOMPARE(labels.size(), 4);
    for (const QLabel *part : labels) {
        QVERIFY2(m_row->childAt(part->geometry().center()) == nullptr,
                 qPrintable(part->objectName()));
    }
}

void TestFileListItem::handleSaysWhatItIsFor()
{
    QLabel *handle = label(*m_row, "fileDragHandle");
    QCOMPARE(handle->text(), QString(QChar(0x283F)));
    QCOMPARE(handle->alignment(), Qt::AlignCenter);
    QCOMPARE(handle->toolTip(), u"拖动排序"_s);
    QCOMPARE(shownToolTip(*m_row, handle->geometry().center()), u"拖动排序"_s);
}

void TestFileListItem::rowSaysWhereTheFileIs()
{
    QCOMPARE(shownToolTip(*m_row, QPoint(400, 40)), QDir::toNativeSeparators(u"/nowhere/a.pdf"_s));
    m_row->setPath(u"/other/b.pdf"_s);
    QCOMPARE(shownToolTip(*m_row, QPoint(400, 40)), QDir::toNativeSeparators(u"/other/b.pdf"_s));
}

void TestFileListItem::longNameLosesItsMiddle()
{
    const QString name = u"A "_s.repeated(100) + u"end.pdf"_s;
    m_row->setPath(u"/x/"_s + name);
    auto *shown = m_row->findChild<ElidedLabel *>();
    QTRY_COMPARE(shown->toolTip(), name);
    QCOMPARE(shown->fullText(), name);
    QTRY_VERIFY(shown->text().startsWith(u"A A ") && shown->text().endsWith(u"end.pdf"));
    QVERIFY(shown->text().contains(QChar(0x2026)));
    QVERIFY(shown->geometry().right() < m_row->findChild<QPushButton *>()->x());
    QVERIFY(m_row->minimumSizeHint().width() < 300);
    m_row->resize(5000, 80);
    QTRY_COMPARE(shown->text(), name);
    QCOMPARE(shown->toolTip(), QString());
}

void TestFileListItem::markupInNamesIsNoMarkup()
{
    const QString path = u"/x/<b>R&amp;D</b> &lt;i>.pdf"_s;
    m_row->setPath(path);
    QCOMPARE(shownToolTip(*m_row, QPoint(400, 40)), QDir::toNativeSeparators(path));
    QCOMPARE(label(*m_row, "fileName")->textFormat(), Qt::PlainText);

    // The name alone, where it is elided.
    auto *name = m_row->findChild<ElidedLabel *>();
    name->setFullText(u"<i>x</i>"_s + u"y"_s.repeated(200));
    name->resize(100, 20);
    QCOMPARE(shownToolTip(*name, QPoint(5, 5)), name->fullText());
}

void TestFileListItem::closeButtonAsksToClose()
{
    auto *closeButton = m_row->findChild<QPushButton *>(u"fileCloseButton"_s);
    QCOMPARE(closeButton->iconSize(), QSize(24, 24));
    QCOMPARE(closeButton->icon().pixmap(24).toImage(),
             QIcon(u":/res/icons/modern/close.png"_s).pixmap(24).toImage());
    QVERIFY(!closeButton->icon().pixmap(24).isNull());
    QCOMPARE(closeButton->cursor().shape(), Qt::PointingHandCursor);
    const QSignalSpy closed(m_row.get(), &FileListItem::close);
    QTest::mouseClick(closeButton, Qt::LeftButton);
    QCOMPARE(closed.size(), 1);
    QVERIFY(m_row->isVisible());
}

void TestFileListItem::pressOnTheCloseButtonIsNoDrag()
{
    auto *closeButton = m_row->findChild<QPushButton *>();
    const QSignalSpy started(m_row.get(), &FileListItem::dragStarted);
    pressLeft(*closeButton, closeButton->mapToGlobal(QPointF(10, 10)));
    moveLeft(*closeButton, closeButton->mapToGlobal(QPointF(-200, 10)));
    releaseLeft(*closeButton, closeButton->mapToGlobal(QPointF(-200, 10)));
    QCOMPARE(started.size(), 0);
}

void TestFileListItem::closeButtonStandsOutUnderTheMouse()
{
    auto *closeButton = m_row->findChild<QPushButton *>();
    const QPoint corner = closeButton->geometry().topLeft() + QPoint(14, 1);
    QCOMPARE(pixel(corner.x(), corner.y()), QColor(Qt::white));
    closeButton->setAttribute(Qt::WA_UnderMouse);
    closeButton->setMouseTracking(true);
    const QPointF middle = closeButton->mapToGlobal(QPointF(14, 14));
    sendMouse(*closeButton, QEvent::MouseMove, middle, Qt::NoButton, Qt::NoButton);
    QCOMPARE(pixel(corner.x(), corner.y()), QColor(0xF0F0F1));
}

void TestFileListItem::signalsAreDeclaredInOrder()
{
    const QMetaObject &meta = FileListItem::staticMetaObject;
    QStringList names;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        if (meta.method(i).methodType() == QMetaMethod::Signal) {
            names.append(QString::fromLatin1(meta.method(i).methodSignature()));
        }
    }
    QCOMPARE(names, QStringList({u"close()"_s, u"dragStarted()"_s, u"dragMoved(QPoint)"_s,
                                 u"dragFinished()"_s}));
}

void TestFileListItem::shortMoveIsNoDrag()
{
    const QSignalSpy started(m_row.get(), &FileListItem::dragStarted);
    const QSignalSpy moved(m_row.get(), &FileListItem::dragMoved);
    const QSignalSpy finished(m_row.get(), &FileListItem::dragFinished);
    const int less = QApplication::startDragDistance() - 1;
    QVERIFY(pressLeft(*m_row, global(kStart)));
    moveLeft(*m_row, global(kStart + QPoint(less, 0)));
    moveLeft(*m_row, global(kStart + QPoint(0, -less)));
    releaseLeft(*m_row, global(kStart));
    QCOMPARE(started.size() + moved.size() + finished.size(), 0);
    QVERIFY(!m_row->isDragging());
}

void TestFileListItem::dragBeginsAtItsDistance_data()
{
    QTest::addColumn<QPoint>("way");
    const int distance = QApplication::startDragDistance();
    QTest::newRow("down") << QPoint(0, distance);
    QTest::newRow("up") << QPoint(0, -distance);
    QTest::newRow("aside") << QPoint(-distance, 0);
    QTest::newRow("both") << QPoint(distance - distance / 2, -(distance / 2));
}

void TestFileListItem::dragBeginsAtItsDistance()
{
    QFETCH(QPoint, way);
    const QSignalSpy started(m_row.get(), &FileListItem::dragStarted);
    const QSignalSpy moved(m_row.get(), &FileListItem::dragMoved);
    pressLeft(*m_row, global(kStart));
    QVERIFY(moveLeft(*m_row, global(kStart + way)));
    QCOMPARE(started.size(), 1);
    QCOMPARE(moved.size(), 1);
    QCOMPARE(moved.at(0).at(0).toPoint(), global(kStart + way).toPoint());
}

void TestFileListItem::pressPositionIsRounded()
{
    const QSignalSpy started(m_row.get(), &FileListItem::dragStarted);
    const int distance = QApplication::startDragDistance();
    pressLeft(*m_row, global(kStart) + QPointF(0.5, 0));
    moveLeft(*m_row, global(kStart) + QPointF(distance + 0.4, 0));
    QCOMPARE(started.size(), 0);
    moveLeft(*m_row, global(kStart) + QPointF(distance + 0.5, 0));
    QCOMPARE(started.size(), 1);
}

void TestFileListItem::everyMoveOfADragIsReported()
{
    const QSignalSpy started(m_row.get(), &FileListItem::dragStarted);
    const QSignalSpy moved(m_row.get(), &FileListItem::dragMoved);
    pressLeft(*m_row, global(kStart));
    // Back to where it began as well.
    for (const int y : {30, 31, 0, -500}) {
        QVERIFY(moveLeft(*m_row, global(kStart + QPoint(0, y))));
        QCOMPARE(moved.last().at(0).toPoint(), global(kStart + QPoint(0, y)).toPoint());
    }
    QCOMPARE(moved.size(), 4);
    QCOMPARE(started.size(), 1);
}

void TestFileListItem::positionsAreRounded()
{
    const QSignalSpy moved(m_row.get(), &FileListItem::dragMoved);
    pressLeft(*m_row, global(kStart));
    moveLeft(*m_row, QPointF(310.5, -90.5));
    QCOMPARE(moved.last().at(0).toPoint(), QPoint(311, -91));
    moveLeft(*m_row, QPointF(310.4, -90.4));
    QCOMPARE(moved.last().at(0).toPoint(), QPoint(310, -90));
}

void TestFileListItem::signalsOfADragComeInOrder()
{
    QStringList order;
    connect(m_row.get(), &FileListItem::dragStarted, this, [&] { order += u"started"_s; });
    connect(m_row.get(), &FileListItem::dragMoved, this, [&] { order += u"moved"_s; });
    connect(m_row.get(), &FileListItem::dragFinished, this, [&] { order += u"finished"_s; });
    connect(m_row.get(), &FileListItem::close, this, [&] { order += u"close"_s; });
    pressLeft(*m_row, global(kStart));
    moveLeft(*m_row, global(kStart + QPoint(0, 50)));
    moveLeft(*m_row, global(kStart + QPoint(0, 60)));
    QVERIFY(releaseLeft(*m_row, global(kStart + QPoint(0, 60))));
    QCOMPARE(order, QStringList({u"started"_s, u"moved"_s, u"moved"_s, u"finished"_s}));
}

void TestFileListItem::rowIsDraggingUntilItHasSaidThatItIsNot()
{
    QList<bool> dragging;
    const auto note = [&] { dragging += m_row->property("dragging").toBool(); };
    connect(m_row.get(), &FileListItem::dragStarted, this, note);
    connect(m_row.get(), &FileListItem::dragMoved, this, note);
    connect(m_row.get(), &FileListItem::dragFinished, this, note);
    note();
    pressLeft(*m_row, global(kStart));
    note();
    moveLeft(*m_row, global(kStart + QPoint(0, 50)));
    releaseLeft(*m_row, global(kStart));
    note();
    QCOMPARE(dragging, QList<bool>({false, false, true, true, true, false}));
}

void TestFileListItem::secondDragBeginsAfresh()
{
    const QSignalSpy started(m_row.get(), &FileListItem::dragStarted);
    const QSignalSpy finished(m_row.get(), &FileListItem::dragFinished);
    for (int drag = 1; drag <= 2; ++drag) {
        pressLeft(*m_row, global(kStart));
        moveLeft(*m_row, global(kStart + QPoint(1, 0)));
        QCOMPARE(started.size(), drag - 1);
        moveLeft(*m_row, global(kStart + QPoint(0, 50)));
        QCOMPARE(started.size(), drag);
        releaseLeft(*m_row, global(kStart));
        QCOMPARE(finished.size(), drag);
    }
}

void TestFileListItem::otherButtonsAreNotTaken()
{
    const QSignalSpy started(m_row.get(), &FileListItem::dragStarted);
    for (const Qt::MouseButton button : {Qt::RightButton, Qt::MiddleButton}) {
        QVERIFY(!sendMouse(*m_row, QEvent::MouseButtonPress, global(kStart), button, button));
        QVERIFY(!sendMouse(*m_row, QEvent::MouseMove, global(kStart + QPoint(0, 50)), Qt::NoButton,
                           button | Qt::LeftButton));
        QVERIFY(
            !sendMouse(*m_row, QEvent::MouseButtonRelease, global(kStart), button, Qt::NoButton));
    }
    QCOMPARE(started.size(), 0);
}

void TestFileListItem::movesWithoutAPressAreNotTaken()
{
    const QSignalSpy started(m_row.get(), &FileListItem::dragStarted);
    QVERIFY(!moveLeft(*m_row, global(kStart)));
    QVERIFY(!moveLeft(*m_row, global(kStart + QPoint(0, 50))));
    QCOMPARE(started.size(), 0);
}

void TestFileListItem::movesWithoutTheLeftButtonAreNotTaken()
{
    const QSignalSpy started(m_row.get(), &FileListItem::dragStarted);
    pressLeft(*m_row, global(kStart));
    QVERIFY(!sendMouse(*m_row, QEvent::MouseMove, global(kStart + QPoint(0, 50)), Qt::NoButton,
                       Qt::RightButton));
    QCOMPARE(started.size(), 0);
}

void TestFileListItem::releaseOfAnotherButtonEndsNothing()
{
    const QSignalSpy finished(m_row.get(), &FileListItem::dragFinished);
    pressLeft(*m_row, global(kStart));
    moveLeft(*m_row, global(kStart + QPoint(0, 50)));
    QVERIFY(!sendMouse(*m_row, QEvent::MouseButtonRelease, global(kStart), Qt::RightButton,
                       Qt::LeftButton));
    QCOMPARE(finished.size(), 0);
    QVERIFY(m_row->isDragging());
    releaseLeft(*m_row, global(kStart));
    QCOMPARE(finished.size(), 1);
}

void TestFileListItem::releaseWithoutAPressIsNotTaken()
{
    const QSignalSpy finished(m_row.get(), &FileListItem::dragFinished);
    QVERIFY(!releaseLeft(*m_row, global(kStart)));
    QCOMPARE(finished.size(), 0);
}

void TestFileListItem::releaseWithoutADragIsNotTaken()
{
    const QSignalSpy moved(m_row.get(), &FileListItem::dragMoved);
    pressLeft(*m_row, global(kStart));
    releaseLeft(*m_row, global(kStart));
    // The press is over.
    QVERIFY(!moveLeft(*m_row, global(kStart + QPoint(0, 50))));
    QCOMPARE(moved.size(), 0);
}

void TestFileListItem::cursorIsAHandThatCloses()
{
    QCOMPARE(m_row->cursor().shape(), Qt::OpenHandCursor);
    pressLeft(*m_row, global(kStart));
    QCOMPARE(m_row->cursor().shape(), Qt::OpenHandCursor);
    moveLeft(*m_row, global(kStart + QPoint(0, 50)));
    QCOMPARE(m_row->cursor().shape(), Qt::ClosedHandCursor);
    releaseLeft(*m_row, global(kStart));
    QCOMPARE(m_row->cursor().shape(), Qt::OpenHandCursor);
}

void TestFileListItem::draggedRowLooksDragged()
{
    QCOMPARE(pixel(300, 10), QColor(Qt::white));
    QCOMPARE(pixel(0, 40), QColor(Qt::white));
    m_row->setDragging(true);
    QCOMPARE(pixel(300, 10), QColor(0xEEF2FF));
    QCOMPARE(pixel(0, 40), QColor(0xC7D2FE));
    QCOMPARE(pixel(599, 40), QColor(0xC7D2FE));
    QCOMPARE(pixel(300, 79), QColor(0xC7D2FE));
    QCOMPARE(pixel(1, 40), QColor(0xEEF2FF));
    // A radius of 6 leaves the corner out.
    QCOMPARE(pixel(0, 0), QColor(Qt::white));
    m_row->setDragging(false);
    QCOMPARE(pixel(300, 10), QColor(Qt::white));
    QCOMPARE(pixel(0, 40), QColor(Qt::white));
}

QTEST_MAIN(TestFileListItem)
#include "tst_file_list_item.moc"
