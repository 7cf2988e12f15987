// SPDX-License-Identifier: AGPL-3.0-or-later
#include "app/home_page.h"
#include "app/language_manager.h"
#include "app/tool_table.h"
#include "recent/recent_file_manager.h"
#include "res/resources.h"
#include "tests/app/app_test.h"

#include <QApplication>
#include <QFileDialog>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QSignalSpy>
#include <QStackedWidget>
#include <QTest>
#include <QTimer>
#include <QToolButton>

class TestHomePage final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void emptyStateSaysWhatToDo();
    void existingRecentFilesAreListed();
    void recordedFileIsListedAndStoredOnce();
    void recordedFileThatDoesNotExistIsOnlyStored();
    void clickOnARecentFileAsksForIt();
    void clickOnAToolAsksForIt_data();
    void clickOnAToolAsksForIt();
    void cancelledFileDialogAsksForNothing();

private:
    QString createFile(const QString &name) const;
    QListWidget *list() const { return m_page->findChild<QListWidget *>(); }

    std::unique_ptr<AppTestFolders> m_folders;
    std::unique_ptr<HomePage> m_page;
};

void TestHomePage::initTestCase()
{
    initResources();
    m_folders = std::make_unique<AppTestFolders>(QStringLiteral("tst_home_page"));
    LanguageManager::instance()->setLanguage(QStringLiteral("zh_CN"));
}

void TestHomePage::init()
{
    m_page = std::make_unique<HomePage>();
    m_page->resize(938, 517);
    m_page->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_page.get()));
}

void TestHomePage::cleanup()
{
    m_page.reset();
}

QString TestHomePage::createFile(const QString &name) const
{
    const QString path = m_folders->filePath(name);
    QFile file(path);
    return file.open(QIODevice::WriteOnly) ? path : QString();
}

// Comes first: the store of this process is still empty.
void TestHomePage::emptyStateSaysWhatToDo()
{
    const auto *stack = m_page->findChild<QStackedWidget *>();
    QVERIFY(stack->currentWidget() != list());
    const auto *title =
        stack->currentWidget()->findChild<QLabel *>(QStringLiteral("homeEmptyTitle"));
    QCOMPARE(title->text(), QStringLiteral("暂无最近文件"));

    m_page->recordFile(createFile(QStringLiteral("first.pdf")));
    QCOMPARE(stack->currentWidget(), list());
}

void TestHomePage::existingRecentFilesAreListed()
{
    const QString older = createFile(QStringLiteral("older.pdf"));
    const QString gone = createFile(QStringLiteral("gone.pdf"));
    const QString newer = createFile(QStringLiteral("newer.pdf"));
    for (const QString &path : {older, gone, newer}) {
        RecentFileManager::instance()->addFile(path);
    }
    QVERIFY(QFile::remove(gone));

    const HomePage page;
    const auto *files = page.findChild<QListWidget *>();
    QStringList paths;
    for (int row = 0; row < files->count(); ++row) {
        paths.append(files->item(row)->data(Qt::UserRole).toString());
    }
    QCOMPARE(paths.first(2), QStringList({newer, older}));
    QVERIFY(!paths.contains(gone));
    QVERIFY(RecentFileManager::instance()->contains(gone));
    QCOMPARE(files->item(0)->text(), QStringLiteral("newer.pdf"));
    QCOMPARE(files->item(0)->toolTip(), QDir::toNativeSeparators(newer));
}

void TestHomePage::recordedFileIsListedAndStoredOnce()
{
    const QString path = createFile(QStringLiteral("once.pdf"));
    const int before = list()->count();
    m_page->recordFile(path);
    m_page->recordFile(path);
    QCOMPARE(list()->count(), before + 1);
    QCOMPARE(list()->item(0)->data(Qt::UserRole).toString(), path);
    QCOMPARE(RecentFileManager::instance()->files().count(path), 1);
}

void TestHomePage::recordedFileThatDoesNotExistIsOnlyStored()
{
    const QString path = m_folders->filePath(QStringLiteral("never.pdf"));
    const int before = list()->count();
    m_page->recordFile(path);
    QCOMPARE(list()->count(), before);
    QVERIFY(RecentFileManager::instance()->contains(path));
}

void TestHomePage::clickOnARecentFileAsksForIt()
{
    const QString path = createFile(QStringLiteral("clicked.pdf"));
    m_page->recordFile(path);
    QSignalSpy clicked(m_page.get(), &HomePage::fileClicked);
    QSignalSpy opened(m_page.get(), &HomePage::openFile);
    const QRect row = list()->visualItemRect(list()->item(0));
    QTest::mouseClick(list()->viewport(), Qt::LeftButton, {}, row.center());
    QCOMPARE(clicked.size(), 1);
    QCOMPARE(clicked.at(0).at(0).toString(), path);
    QVERIFY(opened.isEmpty());
}

void TestHomePage::clickOnAToolAsksForIt_data()
{
    QTest::addColumn<int>("type");
    for (int type = 1; type <= 8; ++type) {
        QTest::addRow("%d", type) << type;
    }
}

void TestHomePage::clickOnAToolAsksForIt()
{
    QFETCH(int, type);
    QSignalSpy clicked(m_page.get(), &HomePage::toolClicked);
    const QString title = QString::fromUtf8(findTool(type)->title);
    const auto cards = m_page->findChildren<QToolButton *>();
    QCOMPARE(cards.size(), 8);
    for (QToolButton *card : cards) {
        if (card->text() == title) {
            QTest::mouseClick(card, Qt::LeftButton);
        }
    }
    QCOMPARE(clicked.size(), 1);
    QCOMPARE(clicked.at(0).at(0).toInt(), type);
}

void TestHomePage::cancelledFileDialogAsksForNothing()
{
    QSignalSpy opened(m_page.get(), &HomePage::openFile);
    bool asked = false;
    QTimer watch;
    connect(&watch, &QTimer::timeout, &watch, [&asked, &watch] {
        if (auto *dialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget())) {
            asked = true;
            watch.stop();
            dialog->reject();
        }
    });
    watch.start(5);
    QTest::mouseClick(m_page->findChild<QPushButton *>(QStringLiteral("homeOpenButton")),
                      Qt::LeftButton);
    QVERIFY(asked);
    QVERIFY(opened.isEmpty());
}

QTEST_MAIN(TestHomePage)
#include "tst_home_page.moc"
