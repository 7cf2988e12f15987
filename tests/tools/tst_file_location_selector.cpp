// SPDX-License-Identifier: AGPL-3.0-or-later
#include "res/resources.h"
#include "tests/support/menu_click.h"
#include "tests/tools/row_mouse.h"
#include "tools/file_location_selector.h"
#include "widgets/theme.h"

#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QImage>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <functional>
#include <memory>

using LocationMode = FileLocationSelector::LocationMode;
Q_DECLARE_METATYPE(LocationMode)

namespace {

constexpr QSize kSize{300, 62};

QString desktopFolder()
{
    return QDir::cleanPath(QStandardPaths::writableLocation(QStandardPaths::DesktopLocation));
}

QString documentsFolder()
{
    return QDir::cleanPath(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation));
}

QString otherCase(const QString &text)
{
    return text == text.toUpper() ? text.toLower() : text.toUpper();
}

/// Calls `answer` with the first widget that `find` returns, while an event loop is running.
class Answer final
{
public:
    template <typename Find, typename Handler>
    Answer(Find find, Handler handler)
    {
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this, find, handler] {
            if (auto *widget = find()) {
                m_timer.stop();
                m_given = true;
                handler(*widget);
            }
        });
        m_timer.start(5);
    }

    [[nodiscard]] bool isGiven() const { return m_given; }

private:
    QTimer m_timer;
    bool m_given = false;
};

QMenu *openMenu()
{
    return qobject_cast<QMenu *>(QApplication::activePopupWidget());
}

QFileDialog *openFileDialog()
{
    return qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
}

void chooseAction(QMenu &menu, int index)
{
    clickMenuEntry(menu, menu.actions().at(index));
}

void acceptFolder(QFileDialog &dialog, const QString &folder)
{
    dialog.findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))->setText(folder);
    static_cast<QDialog &>(dialog).accept();
}

} // namespace

/// The button that shows and chooses a folder to save to.
class TestFileLocationSelector final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void hasItsShape();
    void everyNewSelectorStartsWithTheSourceFolder();
    void modeValuesAreStable();
    void directoryOfEachMode();
    void unknownModeHasNoDirectory();

    void sourceFolderIsNormalized_data();
    void sourceFolderIsNormalized();
    void settingTheSourceFolderIsSilent();
    void equalSourceFolderChangesNothing();
    void sourceFolderInOtherCaseIsTaken();

    void setDirectoryFindsTheMode_data();
    void setDirectoryFindsTheMode();
    void desktopInOtherSpellingIsTheDesktop();
    void sourceFolderComesBeforeTheDesktop();
    void desktopComesBeforeCustom();
    void setDirectoryIsSilent();

    void chosenModeIsReported();
    void sameModeIsNotReported();
    void otherModeOfTheSameFolderIsReported();
    void otherCustomFolderIsReported();
    void sameCustomFolderIsNotReported();
    void customFolderIsNormalized();
    void blankCustomFolderKeepsTheMode();
    void blankCustomFolderAfterAnotherEmptiesIt();

    void textsOfEachMode_data();
    void textsOfEachMode();
    void textsFollowTheSourceFolder();
    void folderLikeMarkupIsShownAsItIs();

    void menuEntries();
    void menuChecksTheMode_data();
    void menuChecksTheMode();
    void checkedEntryLooksChecked();
    void menuColours();
    void menuOpensBelowTheButton();
    void menuChoiceSetsTheMode_data();
    void menuChoiceSetsTheMode();
    void choosingTheDesktopTwiceIsReportedOnce();
    void cancelledMenuChangesNothing();
    void keysOpenTheMenu_data();
    void keysOpenTheMenu();
    void heldKeysOpenTheMenuOnce_data() { keysOpenTheMenu_data(); }
    void heldKeysOpenTheMenuOnce();

    void otherFolderIsChosenInADialog();
    void cancelledDialogChangesNothing();
    void mayBeDeletedWhileTheMenuIsOpen();

private:
    std::unique_ptr<FileLocationSelector> m_selector;
};

void TestFileLocationSelector::initTestCase()
{
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    initResources();
    QVERIFY(!desktopFolder().isEmpty());
    QVERIFY(!documentsFolder().isEmpty());
    QVERIFY(desktopFolder() != documentsFolder());
}

void TestFileLocationSelector::init()
{
    m_selector = std::make_unique<FileLocationSelector>();
    m_selector->resize(kSize);
}

void TestFileLocationSelector::cleanup()
{
    m_selector.reset();
}

void TestFileLocationSelector::hasItsShape()
{
    QCOMPARE(m_selector->objectName(), QStringLiteral("fileLocationSelector"));
    QCOMPARE(m_selector->accessibleName(), QStringLiteral("文件保存位置"));
    QCOMPARE(m_selector->cursor().shape(), Qt::PointingHandCursor);
    QCOMPARE(m_selector->focusPolicy(), Qt::StrongFocus);
    QCOMPARE(m_selector->minimumHeight(), 62);
    QCOMPARE(m_selector->maximumHeight(), 62);
    QCOMPARE(m_selector->sizePolicy().horizontalPolicy(), QSizePolicy::Expanding);
    QCOMPARE(m_selector->sizePolicy().verticalPolicy(), QSizePolicy::Fixed);
}

void TestFileLocationSelector::everyNewSelectorStartsWithTheSourceFolder()
{
    QCOMPARE(m_selector->mode(), LocationMode::SourceFolder);
    QCOMPARE(m_selector->directory(), QString());
    m_selector->setSourceFolder(QStringLiteral("/source"));
    m_selector->setMode(LocationMode::Custom, QStringLiteral("/somewhere"));
    m_selector->show();
    const Answer answer(openMenu, [](QMenu &menu) { chooseAction(menu, 1); });
    QTest::mouseClick(m_selector.get(), Qt::LeftButton);
    QVERIFY(answer.isGiven());
    QCOMPARE(m_selector->mode(), LocationMode::Desktop);

    // Whatever the last one might have kept for the next is kept by now.
    m_selector.reset();
    m_selector = std::make_unique<FileLocationSelector>();
    QCOMPARE(m_selector->mode(), LocationMode::SourceFolder);
    QCOMPARE(m_selector->sourceFolder(), QString());
    QCOMPARE(m_selector->directory(), QString());
}

void TestFileLocationSelector::modeValuesAreStable()
{
    QCOMPARE(static_cast<int>(LocationMode::SourceFolder), 0);
    QCOMPARE(static_cast<int>(LocationMode::Desktop), 1);
    QCOMPARE(static_cast<int>(LocationMode::Documents), 2);
    QCOMPARE(static_cast<int>(LocationMode::Custom), 3);
}

void TestFileLocationSelector::directoryOfEachMode()
{
    m_selector->setSourceFolder(QStringLiteral("/files/reports"));
    QCOMPARE(m_selector->directory(), QStringLiteral("/files/reports"));
    m_selector->setMode(LocationMode::Desktop);
    QCOMPARE(m_selector->directory(), desktopFolder());
    m_selector->setMode(LocationMode::Documents);
    QCOMPARE(m_selector->directory(), documentsFolder());
    m_selector->setMode(LocationMode::Custom, QStringLiteral("/elsewhere"));
    QCOMPARE(m_selector->directory(), QStringLiteral("/elsewhere"));
}

void TestFileLocationSelector::unknownModeHasNoDirectory()
{
    m_selector->setSourceFolder(QStringLiteral("/files"));
    m_selector->setMode(static_cast<LocationMode>(7));
    QCOMPARE(m_selector->directory(), QString());
    QCOMPARE(m_selector->accessibleDescription(), QStringLiteral(": "));
}

void TestFileLocationSelector::sourceFolderIsNormalized_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QString>("kept");
    QTest::newRow("empty") << QString() << QString();
    QTest::newRow("blank") << QStringLiteral(" \t ") << QString();
    QTest::newRow("plain") << QStringLiteral("/a/b") << QStringLiteral("/a/b");
    QTest::newRow("slash at the end") << QStringLiteral("/a/b/") << QStringLiteral("/a/b");
    QTest::newRow("needless parts") << QStringLiteral("/a//x/.././b") << QStringLiteral("/a/b");
#ifdef Q_OS_WIN
    QTest::newRow("back-slashes") << QStringLiteral("C:\\a\\b") << QStringLiteral("C:/a/b");
#else
    // They separate nothing here.
    QTest::newRow("back-slashes") << QStringLiteral("/a\\b/") << QStringLiteral("/a\\b");
#endif
    QTest::newRow("spaces around") << QStringLiteral("/a/b ") << QStringLiteral("/a/b ");
}

void TestFileLocationSelector::sourceFolderIsNormalized()
{
    QFETCH(QString, folder);
    QFETCH(QString, kept);
    m_selector->setSourceFolder(QStringLiteral("/before"));
    m_selector->setSourceFolder(folder);
    QCOMPARE(m_selector->sourceFolder(), kept);
    QCOMPARE(m_selector->directory(), kept);
}

void TestFileLocationSelector::settingTheSourceFolderIsSilent()
{
    QSignalSpy changed(m_selector.get(), &FileLocationSelector::directoryChanged);
    m_selector->setSourceFolder(QStringLiteral("/files"));
    QCOMPARE(m_selector->directory(), QStringLiteral("/files"));
    QVERIFY(changed.isEmpty());
}

void TestFileLocationSelector::equalSourceFolderChangesNothing()
{
    m_selector->setSourceFolder(QStringLiteral("/files"));
    m_selector->setToolTip(QStringLiteral("left alone"));
    m_selector->setSourceFolder(QStringLiteral("/files/"));
    QCOMPARE(m_selector->toolTip(), QStringLiteral("left alone"));
}

void TestFileLocationSelector::sourceFolderInOtherCaseIsTaken()
{
    m_selector->setSourceFolder(QStringLiteral("/files"));
    m_selector->setSourceFolder(QStringLiteral("/Files"));
    QCOMPARE(m_selector->directory(), QStringLiteral("/Files"));
    QCOMPARE(m_selector->toolTip(), QDir::toNativeSeparators(QStringLiteral("/Files")));
}

void TestFileLocationSelector::setDirectoryFindsTheMode_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<LocationMode>("mode");
    QTest::addColumn<QString>("directory");
    const QString source = QStringLiteral("/files/source");
    QTest::newRow("empty") << QString() << LocationMode::SourceFolder << source;
    QTest::newRow("blank") << QStringLiteral("  ") << LocationMode::SourceFolder << source;
    QTest::newRow("source") << source << LocationMode::SourceFolder << source;
    QTest::newRow("source in other case")
        << QStringLiteral("/FILES/source/") << LocationMode::SourceFolder << source;
    QTest::newRow("desktop") << desktopFolder() << LocationMode::Desktop << desktopFolder();
    QTest::newRow("documents") << documentsFolder() << LocationMode::Documents << documentsFolder();
    QTest::newRow("documents in other case")
        << otherCase(documentsFolder()) << LocationMode::Documents << documentsFolder();
    QTest::newRow("other") << QStringLiteral("/other//folder/") << LocationMode::Custom
                           << QStringLiteral("/other/folder");
    QTest::newRow("below the desktop")
        << desktopFolder() + QStringLiteral("/x") << LocationMode::Custom
        << desktopFolder() + QStringLiteral("/x");
}

void TestFileLocationSelector::setDirectoryFindsTheMode()
{
    QFETCH(QString, folder);
    QFETCH(LocationMode, mode);
    QFETCH(QString, directory);
    m_selector->setSourceFolder(QStringLiteral("/files/source"));
    for (const QString &before : {QStringLiteral("/custom"), desktopFolder(), QString()}) {
        m_selector->setDirectory(before);
        m_selector->setDirectory(folder);
        QCOMPARE(m_selector->mode(), mode);
        QCOMPARE(m_selector->directory(), directory);
        QCOMPARE(m_selector->toolTip(), QDir::toNativeSeparators(directory));
    }
}

void TestFileLocationSelector::desktopInOtherSpellingIsTheDesktop()
{
    const QStringList spellings{otherCase(desktopFolder()), desktopFolder() + QStringLiteral("//"),
                                desktopFolder() + QStringLiteral("/x/.."),
                                otherCase(QDir::toNativeSeparators(desktopFolder()))};
    for (const QString &spelling : spellings) {
        m_selector->setDirectory(QStringLiteral("/custom"));
        m_selector->setDirectory(spelling);
        QCOMPARE(m_selector->mode(), LocationMode::Desktop);
    }
    QCOMPARE(m_selector->directory(), desktopFolder());
}

void TestFileLocationSelector::sourceFolderComesBeforeTheDesktop()
{
    m_selector->setSourceFolder(desktopFolder());
    m_selector->setDirectory(desktopFolder());
    QCOMPARE(m_selector->mode(), LocationMode::SourceFolder);
}

void TestFileLocationSelector::desktopComesBeforeCustom()
{
    m_selector->setMode(LocationMode::Custom, desktopFolder());
    QCOMPARE(m_selector->mode(), LocationMode::Custom);
    m_selector->setDirectory(m_selector->directory());
    QCOMPARE(m_selector->mode(), LocationMode::Desktop);
}

void TestFileLocationSelector::setDirectoryIsSilent()
{
    QSignalSpy changed(m_selector.get(), &FileLocationSelector::directoryChanged);
    m_selector->setDirectory(desktopFolder());
    m_selector->setDirectory(QStringLiteral("/other"));
    m_selector->setDirectory(QString());
    QVERIFY(changed.isEmpty());
}

void TestFileLocationSelector::chosenModeIsReported()
{
    QSignalSpy changed(m_selector.get(), &FileLocationSelector::directoryChanged);
    m_selector->setMode(LocationMode::Documents);
    QCOMPARE(changed.size(), 1);
    QCOMPARE(changed.at(0).at(0).toString(), documentsFolder());
}

void TestFileLocationSelector::sameModeIsNotReported()
{
    m_selector->setMode(LocationMode::Desktop);
    QSignalSpy changed(m_selector.get(), &FileLocationSelector::directoryChanged);
    m_selector->setMode(LocationMode::Desktop);
    QVERIFY(changed.isEmpty());
}

void TestFileLocationSelector::otherModeOfTheSameFolderIsReported()
{
    m_selector->setSourceFolder(desktopFolder());
    QSignalSpy changed(m_selector.get(), &FileLocationSelector::directoryChanged);
    m_selector->setMode(LocationMode::Desktop);
    QCOMPARE(changed.size(), 1);
    QCOMPARE(changed.at(0).at(0).toString(), desktopFolder());
}

void TestFileLocationSelector::otherCustomFolderIsReported()
{
    m_selector->setMode(LocationMode::Custom, QStringLiteral("/one"));
    QSignalSpy changed(m_selector.get(), &FileLocationSelector::directoryChanged);
    m_selector->setMode(LocationMode::Custom, QStringLiteral("/One"));
    QCOMPARE(changed.size(), 1);
    QCOMPARE(changed.at(0).at(0).toString(), QStringLiteral("/One"));
}

void TestFileLocationSelector::sameCustomFolderIsNotReported()
{
    m_selector->setMode(LocationMode::Custom, QStringLiteral("/one"));
    QSignalSpy changed(m_selector.get(), &FileLocationSelector::directoryChanged);
    m_selector->setMode(LocationMode::Custom, QStringLiteral("/one/"));
    QVERIFY(changed.isEmpty());
}

void TestFileLocationSelector::customFolderIsNormalized()
{
    QSignalSpy changed(m_selector.get(), &FileLocationSelector::directoryChanged);
    m_selector->setMode(LocationMode::Custom, QStringLiteral("/one//two/../three/"));
    QCOMPARE(m_selector->directory(), QStringLiteral("/one/three"));
    QCOMPARE(changed.at(0).at(0).toString(), QStringLiteral("/one/three"));
}

void TestFileLocationSelector::blankCustomFolderKeepsTheMode()
{
    m_selector->setMode(LocationMode::Desktop);
    QSignalSpy changed(m_selector.get(), &FileLocationSelector::directoryChanged);
    m_selector->setMode(LocationMode::Custom, QStringLiteral("  "));
    QCOMPARE(m_selector->mode(), LocationMode::Desktop);
    QCOMPARE(m_selector->directory(), desktopFolder());
    QVERIFY(changed.isEmpty());
}

void TestFileLocationSelector::blankCustomFolderAfterAnotherEmptiesIt()
{
    m_selector->setMode(LocationMode::Custom, QStringLiteral("/one"));
    QSignalSpy changed(m_selector.get(), &FileLocationSelector::directoryChanged);
    m_selector->setMode(LocationMode::Custom);
    QCOMPARE(m_selector->mode(), LocationMode::Custom);
    QCOMPARE(changed.size(), 1);
    QCOMPARE(changed.at(0).at(0).toString(), QString());
}

void TestFileLocationSelector::textsOfEachMode_data()
{
    QTest::addColumn<LocationMode>("mode");
    QTest::addColumn<QString>("label");
    QTest::addColumn<QString>("folder");
    QTest::newRow("source") << LocationMode::SourceFolder << QStringLiteral("原始文件夹")
                            << QStringLiteral("/files/source");
    QTest::newRow("desktop") << LocationMode::Desktop << QStringLiteral("桌面") << desktopFolder();
    QTest::newRow("documents") << LocationMode::Documents << QStringLiteral("文档")
                               << documentsFolder();
    QTest::newRow("custom") << LocationMode::Custom << QStringLiteral("自定义文件夹")
                            << QStringLiteral("/files/custom");
}

void TestFileLocationSelector::textsOfEachMode()
{
    QFETCH(LocationMode, mode);
    QFETCH(QString, label);
    QFETCH(QString, folder);
    m_selector->setSourceFolder(QStringLiteral("/files/source"));
    m_selector->setMode(LocationMode::Desktop);
    m_selector->setMode(mode, QStringLiteral("/files/custom"));
    const QString path = QDir::toNativeSeparators(folder);
    QCOMPARE(m_selector->toolTip(), path);
    QCOMPARE(m_selector->accessibleDescription(), QString(label + QStringLiteral(": ") + path));
}

void TestFileLocationSelector::textsFollowTheSourceFolder()
{
    m_selector->setSourceFolder(QStringLiteral("/files/other"));
    const QString path = QDir::toNativeSeparators(QStringLiteral("/files/other"));
    QCOMPARE(m_selector->toolTip(), path);
    QCOMPARE(m_selector->accessibleDescription(), QString(QStringLiteral("原始文件夹: ") + path));
}

void TestFileLocationSelector::folderLikeMarkupIsShownAsItIs()
{
    const QString folder = QStringLiteral("/files/<b>R&amp;D</b>");
    m_selector->setSourceFolder(folder);
    m_selector->show();
    QCOMPARE(shownToolTip(*m_selector, QPoint(5, 5)), QDir::toNativeSeparators(folder));
}

void TestFileLocationSelector::menuEntries()
{
    m_selector->show();
    const Answer answer(openMenu, [](QMenu &menu) {
        QCOMPARE(menu.objectName(), QStringLiteral("fileLocationMenu"));
        const QList<QAction *> actions = menu.actions();
        QCOMPARE(actions.size(), 5);
        QCOMPARE(actions.at(0)->text(), QStringLiteral("原始文件夹"));
        QCOMPARE(actions.at(1)->text(), QStringLiteral("桌面"));
        QCOMPARE(actions.at(2)->text(), QStringLiteral("文档"));
        QVERIFY(actions.at(3)->isSeparator());
        QCOMPARE(actions.at(4)->text(), QStringLiteral("选择其他文件夹…"));
        const QImage folder = QIcon(QStringLiteral(":/res/icons/modern/folder.png"))
                                  .pixmap(QSize(32, 32), 1.0)
                                  .toImage();
        QVERIFY(!folder.isNull());
        for (const int row : {0, 1, 2, 4}) {
            QCOMPARE(actions.at(row)->isCheckable(), row != 4);
            QCOMPARE(actions.at(row)->icon().pixmap(QSize(32, 32), 1.0).toImage(), folder);
            QVERIFY(menu.actionGeometry(actions.at(row)).height() >= 32);
        }
        menu.close();
    });
    QTest::mouseClick(m_selector.get(), Qt::LeftButton);
    QVERIFY(answer.isGiven());
}

void TestFileLocationSelector::menuChecksTheMode_data()
{
    QTest::addColumn<LocationMode>("mode");
    QTest::addColumn<int>("checked");
    QTest::newRow("source") << LocationMode::SourceFolder << 0;
    QTest::newRow("desktop") << LocationMode::Desktop << 1;
    QTest::newRow("documents") << LocationMode::Documents << 2;
    QTest::newRow("custom") << LocationMode::Custom << -1;
}

void TestFileLocationSelector::menuChecksTheMode()
{
    QFETCH(LocationMode, mode);
    QFETCH(int, checked);
    m_selector->setMode(mode, QStringLiteral("/custom"));
    m_selector->show();
    const Answer answer(openMenu, [checked](QMenu &menu) {
        for (int row = 0; row < 3; ++row) {
            QCOMPARE(menu.actions().at(row)->isChecked(), row == checked);
        }
        menu.close();
    });
    QTest::mouseClick(m_selector.get(), Qt::LeftButton);
    QVERIFY(answer.isGiven());
}

void TestFileLocationSelector::checkedEntryLooksChecked()
{
    m_selector->setMode(LocationMode::Desktop);
    m_selector->show();
    for (const Qt::LayoutDirection direction : {Qt::LeftToRight, Qt::RightToLeft}) {
        m_selector->setLayoutDirection(direction);
        const Answer answer(openMenu, [direction](QMenu &menu) {
            const QImage image = menu.grab().toImage();
            const auto hasMark = [&](int row) {
                const QRect item = menu.actionGeometry(menu.actions().at(row));
                const int left =
                    direction == Qt::LeftToRight ? item.left() + 10 : item.right() - 23;
                for (int x = left; x < left + 14; ++x) {
                    if (image.pixelColor(x, item.center().y() + 2) != QColor(Qt::white)) {
                        return true;
                    }
                }
                return false;
            };
            QVERIFY(!hasMark(0));
            QVERIFY(hasMark(1));
            QVERIFY(!hasMark(2));
            menu.close();
        });
        QTest::mouseClick(m_selector.get(), Qt::LeftButton);
        QVERIFY(answer.isGiven());
    }
}

void TestFileLocationSelector::menuColours()
{
    m_selector->show();
    QImage image;
    QList<QRect> items;
    const Answer answer(openMenu, [&](QMenu &menu) {
        menu.setActiveAction(menu.actions().at(1));
        image = menu.grab().toImage();
        for (QAction *action : menu.actions()) {
            items.append(menu.actionGeometry(action));
        }
        menu.close();
    });
    QTest::mouseClick(m_selector.get(), Qt::LeftButton);
    QVERIFY(answer.isGiven());
    QCOMPARE(items.size(), 5);

    const QPoint middle = image.rect().center();
    QCOMPARE(image.pixelColor(middle.x(), 0), QColor(0xE2E7EF));
    QCOMPARE(image.pixelColor(0, middle.y()), QColor(0xE2E7EF));
    QCOMPARE(image.pixelColor(image.width() - 1, middle.y()), QColor(0xE2E7EF));
    QCOMPARE(image.pixelColor(3, middle.y()), QColor(0xFFFFFF));
    QCOMPARE(image.pixelColor(middle.x(), 3), QColor(0xFFFFFF));

    // Within the right padding of an entry, where there is no text.
    const auto besideText = [&](int row) {
        return image.pixelColor(items.at(row).right() - 6, items.at(row).center().y());
    };
    QCOMPARE(besideText(1), QColor(0xEEF2FF));
    QCOMPARE(besideText(0), QColor(0xFFFFFF));
    QCOMPARE(besideText(2), QColor(0xFFFFFF));

    const QRect separator = items.at(3);
    const auto hasLine = [&](int x, int y) { return image.pixelColor(x, y) == QColor(0xEDF0F5); };
    QCOMPARE(separator.height(), 5 + 1 + 5);
    const int line = separator.top() + 5;
    for (const int x : {separator.left() + 8, middle.x(), separator.right() - 8}) {
        QVERIFY(hasLine(x, line) && !hasLine(x, line - 1) && !hasLine(x, line + 1));
    }
    QVERIFY(!hasLine(separator.left() + 7, line) && !hasLine(separator.right() - 7, line));
}

void TestFileLocationSelector::menuOpensBelowTheButton()
{
    m_selector->show();
    const QPoint expected = m_selector->mapToGlobal(QPoint(0, 62 + 4));
    const Answer answer(openMenu, [expected](QMenu &menu) {
        QCOMPARE(menu.pos(), expected);
        menu.close();
    });
    QTest::mouseClick(m_selector.get(), Qt::LeftButton);
    QVERIFY(answer.isGiven());
}

void TestFileLocationSelector::menuChoiceSetsTheMode_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<LocationMode>("mode");
    QTest::newRow("source") << 0 << LocationMode::SourceFolder;
    QTest::newRow("desktop") << 1 << LocationMode::Desktop;
    QTest::newRow("documents") << 2 << LocationMode::Documents;
}

void TestFileLocationSelector::menuChoiceSetsTheMode()
{
    QFETCH(int, row);
    QFETCH(LocationMode, mode);
    m_selector->setSourceFolder(QStringLiteral("/source"));
    m_selector->setMode(LocationMode::Custom, QStringLiteral("/custom"));
    m_selector->show();
    QSignalSpy changed(m_selector.get(), &FileLocationSelector::directoryChanged);
    const Answer answer(openMenu, [row](QMenu &menu) { chooseAction(menu, row); });
    QTest::mouseClick(m_selector.get(), Qt::LeftButton);
    QVERIFY(answer.isGiven());
    QCOMPARE(m_selector->mode(), mode);
    QCOMPARE(changed.size(), 1);
    QCOMPARE(changed.at(0).at(0).toString(), m_selector->directory());
}

void TestFileLocationSelector::choosingTheDesktopTwiceIsReportedOnce()
{
    m_selector->show();
    QSignalSpy changed(m_selector.get(), &FileLocationSelector::directoryChanged);
    for (int time = 0; time < 2; ++time) {
        const Answer answer(openMenu, [](QMenu &menu) { chooseAction(menu, 1); });
        QTest::mouseClick(m_selector.get(), Qt::LeftButton);
        QVERIFY(answer.isGiven());
        QCOMPARE(m_selector->mode(), LocationMode::Desktop);
    }
    QCOMPARE(changed.size(), 1);
}

void TestFileLocationSelector::cancelledMenuChangesNothing()
{
    m_selector->setMode(LocationMode::Documents);
    m_selector->show();
    QSignalSpy changed(m_selector.get(), &FileLocationSelector::directoryChanged);
    const Answer answer(openMenu, [](QMenu &menu) { QTest::keyClick(&menu, Qt::Key_Escape); });
    QTest::mouseClick(m_selector.get(), Qt::LeftButton);
    QVERIFY(answer.isGiven());
    QCOMPARE(m_selector->mode(), LocationMode::Documents);
    QVERIFY(changed.isEmpty());
    QVERIFY(!m_selector->findChild<QMenu *>());
}

void TestFileLocationSelector::keysOpenTheMenu_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::newRow("space") << Qt::Key_Space;
    QTest::newRow("return") << Qt::Key_Return;
    QTest::newRow("enter") << Qt::Key_Enter;
    QTest::newRow("down") << Qt::Key_Down;
}

void TestFileLocationSelector::keysOpenTheMenu()
{
    QFETCH(Qt::Key, key);
    m_selector->show();
    const Answer answer(openMenu, [](QMenu &menu) {
        menu.setActiveAction(menu.actions().at(2));
        QTest::keyClick(&menu, Qt::Key_Return);
    });
    QTest::keyClick(m_selector.get(), key);
    QVERIFY(answer.isGiven());
    QCOMPARE(m_selector->mode(), LocationMode::Documents);
}

void TestFileLocationSelector::heldKeysOpenTheMenuOnce()
{
    QFETCH(Qt::Key, key);
    m_selector->show();
    int menus = 0;
    QTimer closing;
    connect(&closing, &QTimer::timeout, this, [&menus] {
        if (QMenu *menu = openMenu()) {
            ++menus;
            QTest::keyClick(menu, Qt::Key_Escape);
        }
    });
    closing.start(5);
    // The key is still down from whatever was done before.
    for (int i = 0; i < 3; ++i) {
        QKeyEvent repeated(QEvent::KeyPress, key, Qt::NoModifier, {}, true);
        QCoreApplication::sendEvent(m_selector.get(), &repeated);
        QTest::qWait(20);
    }
    QCOMPARE(menus, 0);
    QTest::keyClick(m_selector.get(), key);
    QCOMPARE(menus, 1);
}

void TestFileLocationSelector::otherFolderIsChosenInADialog()
{
    const QTemporaryDir folder;
    QVERIFY(QDir(folder.path()).mkdir(QStringLiteral("目标")));
    const QString target = folder.filePath(QStringLiteral("目标"));
    m_selector->setSourceFolder(folder.path());
    m_selector->show();
    QSignalSpy changed(m_selector.get(), &FileLocationSelector::directoryChanged);
    const Answer choice(openMenu, [](QMenu &menu) { chooseAction(menu, 4); });
    const Answer answer(openFileDialog, [&](QFileDialog &dialog) {
        QCOMPARE(dialog.windowTitle(), QStringLiteral("选择文件保存位置"));
        QCOMPARE(dialog.parentWidget(), m_selector.get());
        QCOMPARE(dialog.directory().path(), folder.path());
        QCOMPARE(dialog.fileMode(), QFileDialog::Directory);
        QVERIFY(dialog.testOption(QFileDialog::ShowDirsOnly));
        acceptFolder(dialog, target);
    });
    QTest::mouseClick(m_selector.get(), Qt::LeftButton);
    QVERIFY(choice.isGiven());
    QVERIFY(answer.isGiven());
    QCOMPARE(m_selector->mode(), LocationMode::Custom);
    QCOMPARE(m_selector->directory(), target);
    QCOMPARE(changed.size(), 1);
    QCOMPARE(changed.at(0).at(0).toString(), target);
}

void TestFileLocationSelector::cancelledDialogChangesNothing()
{
    m_selector->setMode(LocationMode::Documents);
    m_selector->show();
    QSignalSpy changed(m_selector.get(), &FileLocationSelector::directoryChanged);
    const Answer choice(openMenu, [](QMenu &menu) { chooseAction(menu, 4); });
    const Answer answer(openFileDialog, [](QFileDialog &dialog) { dialog.reject(); });
    QTest::mouseClick(m_selector.get(), Qt::LeftButton);
    QVERIFY(answer.isGiven());
    QCOMPARE(m_selector->mode(), LocationMode::Documents);
    QCOMPARE(m_selector->directory(), documentsFolder());
    QVERIFY(changed.isEmpty());
}

void TestFileLocationSelector::mayBeDeletedWhileTheMenuIsOpen()
{
    m_selector->show();
    const Answer answer(openMenu, [this](QMenu &) { m_selector.reset(); });
    m_selector->click();
    QVERIFY(answer.isGiven());
    QVERIFY(!QApplication::activePopupWidget());
}

QTEST_MAIN(TestFileLocationSelector)
#include "tst_file_location_selector.moc"
