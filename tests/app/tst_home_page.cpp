// SPDX-License-Identifier: AGPL-3.0-or-later
#include "app/home_page.h"
#include "app/language_manager.h"
#include "app/tool_table.h"
#include "recent/recent_file_manager.h"
#include "res/resources.h"
#include "tests/app/app_test.h"
#include "tests/support/dialog_answers.h"
#include "widgets/theme.h"

#include <QApplication>
#include <QFileDialog>
#include <QGridLayout>
#include <QIcon>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QSignalSpy>
#include <QStackedWidget>
#include <QTest>
#include <QTimer>
#include <QToolButton>

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace {

QImage pictureOf(const QIcon &icon, int side)
{
    return icon.pixmap(QSize(side, side), 1.0).toImage();
}

bool showsIcon(const QIcon &icon, const QString &path, int side)
{
    const QImage shown = pictureOf(icon, side);
    return !shown.isNull() && shown == pictureOf(QIcon(path), side);
}

/// How many pixels of the colour there are in the rectangle.
int pixelsOf(const QImage &image, const QRect &rect, const QColor &color)
{
    const QRect inside = rect.intersected(image.rect());
    int count = 0;
    for (int y = inside.top(); y <= inside.bottom(); ++y) {
        for (int x = inside.left(); x <= inside.right(); ++x) {
            count += image.pixelColor(x, y) == color ? 1 : 0;
        }
    }
    return count;
}

} // namespace

class TestHomePage final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void emptyStateSaysWhatToDo();
    void headerShowsTheProgram();
    void cardsStandInTheOrderOfTheTools();
    void cardsShowTheLargeIcons();
    void cardsAreTranslated();
    void existingRecentFilesAreListed();
    void rowShowsNameAboveFolder();
    void longNamesStayInTheirRow();
    void rowUnderThePointerIsLit();
    void recordedFileIsListedAndStoredOnce();
    void recordedFileThatDoesNotExistIsOnlyStored();
    void clickOnARecentFileAsksForIt();
    void clickOnAToolAsksForIt_data();
    void clickOnAToolAsksForIt();
    void cancelledFileDialogAsksForNothing();
    void chosenFileIsAskedFor();

private:
    QString createFile(const QString &name) const;
    QListWidget *list() const { return m_page->findChild<QListWidget *>(); }
    QList<QToolButton *> cards() const;
    /// What is painted in the first row of the list.
    QImage firstRow() const
    {
        QCoreApplication::processEvents();
        return list()->viewport()->grab().toImage().copy(list()->visualItemRect(list()->item(0)));
    }

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

/// The cards, line by line.
QList<QToolButton *> TestHomePage::cards() const
{
    QList<QToolButton *> cards = m_page->findChildren<QToolButton *>();
    std::sort(cards.begin(), cards.end(), [](const QToolButton *a, const QToolButton *b) {
        return std::pair(a->y(), a->x()) < std::pair(b->y(), b->x());
    });
    return cards;
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

void TestHomePage::headerShowsTheProgram()
{
    const auto *title = m_page->findChild<QLabel *>(QStringLiteral("homeTitle"));
    QCOMPARE(title->text(), QStringLiteral("Quillora"));
    const QImage logo = pictureOf(QIcon(QStringLiteral(":/res/icons/modern/logo.png")), 48);
    QVERIFY(!logo.isNull());
    const auto labels = title->parentWidget()->findChildren<QLabel *>();
    QVERIFY(std::any_of(labels.begin(), labels.end(), [&logo](const QLabel *label) {
        return label->pixmap().toImage() == logo && label->size() == QSize(48, 48);
    }));
}

void TestHomePage::cardsStandInTheOrderOfTheTools()
{
    QStringList titles;
    for (const Tool &tool : toolTable()) {
        titles.append(QString::fromUtf8(tool.title));
    }
    QStringList shown;
    for (const QToolButton *card : cards()) {
        shown.append(card->text());
        QVERIFY(card->toolButtonStyle() == Qt::ToolButtonTextUnderIcon);
        QCOMPARE(card->height(), 88);
        QCOMPARE(card->focusPolicy(), Qt::NoFocus);
        QCOMPARE(card->cursor().shape(), Qt::PointingHandCursor);
        QVERIFY(std::abs(card->width() - cards().constFirst()->width()) <= 1);
    }
    QCOMPARE(shown, titles);
    QCOMPARE(cards().at(3)->y(), cards().at(0)->y());
    QVERIFY(cards().at(4)->y() > cards().at(3)->y());
}

void TestHomePage::cardsShowTheLargeIcons()
{
    const QList<QToolButton *> shown = cards();
    const QStringList names{QStringLiteral("compress"), QStringLiteral("convert"),
                            QStringLiteral("convert"),  QStringLiteral("image"),
                            QStringLiteral("image"),    QStringLiteral("decrypt"),
                            QStringLiteral("encrypt"),  QStringLiteral("merge")};
    QCOMPARE(shown.size(), names.size());
    for (qsizetype i = 0; i < names.size(); ++i) {
        const QIcon icon = shown.at(i)->icon();
        QCOMPARE(shown.at(i)->iconSize(), QSize(32, 32));
        QVERIFY(
            showsIcon(icon, QStringLiteral(":/res/icons/modern/%1-big.png").arg(names.at(i)), 32));
        QVERIFY(!showsIcon(icon, QStringLiteral(":/res/icons/modern/%1.png").arg(names.at(i)), 32));
    }
}

void TestHomePage::cardsAreTranslated()
{
    LanguageManager::instance()->setLanguage(QStringLiteral("en_US"));
    const HomePage page;
    LanguageManager::instance()->setLanguage(QStringLiteral("zh_CN"));
    const auto translated = page.findChildren<QToolButton *>();
    QCOMPARE(translated.size(), 8);
    for (const QToolButton *card : translated) {
        const QString text = card->text();
        QVERIFY2(std::all_of(text.begin(), text.end(),
                             [](QChar letter) { return letter.unicode() < 0x80; }),
                 qPrintable(text));
    }
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

void TestHomePage::rowShowsNameAboveFolder()
{
    m_page->recordFile(createFile(QStringLiteral("row.pdf")));
    const QImage row = firstRow();
    QCOMPARE(row.height(), 52);
    QVERIFY(
        showsIcon(list()->item(0)->icon(), QStringLiteral(":/res/icons/modern/file-pdf.png"), 28));
    const QRect icon(12, 12, 28, 28);
    QImage expected = row.copy(icon);
    expected.fill(row.pixelColor(0, 0));
    QVERIFY(row.copy(icon) != expected);
    const QRect upper(52, 8, row.width() - 64, 18);
    const QRect lower(52, 26, row.width() - 64, 18);
    QVERIFY(pixelsOf(row, upper, Theme::ink) > 0);
    QCOMPARE(pixelsOf(row, lower, Theme::ink), 0);
    QVERIFY(pixelsOf(row, lower, Theme::textMuted) > 0);
    QCOMPARE(pixelsOf(row, upper, Theme::textMuted), 0);

    // Another name looks different, in its own line only, and so does another folder.
    m_page->recordFile(createFile(QStringLiteral("other.pdf")));
    QVERIFY(firstRow().copy(upper) != row.copy(upper));
    QCOMPARE(firstRow().copy(lower), row.copy(lower));
    QVERIFY(QDir().mkpath(m_folders->filePath(QStringLiteral("elsewhere"))));
    m_page->recordFile(createFile(QStringLiteral("elsewhere/row.pdf")));
    QCOMPARE(firstRow().copy(upper), row.copy(upper));
    QVERIFY(firstRow().copy(lower) != row.copy(lower));
}

void TestHomePage::longNamesStayInTheirRow()
{
    const QString name = QString(100, u'w');
    QVERIFY(QDir().mkpath(m_folders->filePath(name)));
    m_page->recordFile(createFile(name + u'/' + name + QStringLiteral(".pdf")));
    m_page->resize(600, 517);
    QCoreApplication::processEvents();
    const QImage row = firstRow();
    const QRect margin(row.width() - 12, 0, 12, row.height());
    QCOMPARE(pixelsOf(row, margin, row.pixelColor(0, 0)), margin.width() * margin.height());
    // Shortened in the middle, so that its end is seen.
    m_page->recordFile(createFile(name + u'/' + name + QStringLiteral("2.pdf")));
    QVERIFY(firstRow().copy(0, 8, row.width(), 18) != row.copy(0, 8, row.width(), 18));
    QCOMPARE(firstRow().copy(0, 26, row.width(), 18), row.copy(0, 26, row.width(), 18));
    QVERIFY(pixelsOf(row, QRect(row.width() - 40, 26, 28, 18), Theme::textMuted) > 0);
}

void TestHomePage::rowUnderThePointerIsLit()
{
    m_page->recordFile(createFile(QStringLiteral("lit.pdf")));
    m_page->recordFile(createFile(QStringLiteral("lit as well.pdf")));
    const auto lightOf = [this](int row) {
        const QRect rect = list()->visualItemRect(list()->item(row));
        return pixelsOf(list()->viewport()->grab().toImage(), rect, Theme::hover);
    };
    QTest::mouseMove(list()->viewport(), list()->visualItemRect(list()->item(1)).center());
    QTRY_VERIFY(lightOf(1) > 1000);
    QCOMPARE(lightOf(0), 0);
    QTest::mouseMove(list()->viewport(), list()->visualItemRect(list()->item(0)).center());
    QTRY_VERIFY(lightOf(0) > 1000);
    QCOMPARE(lightOf(1), 0);
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

void TestHomePage::chosenFileIsAskedFor()
{
    const QString path = createFile(QStringLiteral("chosen.pdf"));
    QSignalSpy opened(m_page.get(), &HomePage::openFile);
    QSignalSpy clicked(m_page.get(), &HomePage::fileClicked);
    DialogAnswers answers;
    answers.addFiles({path});
    QTest::mouseClick(m_page->findChild<QPushButton *>(QStringLiteral("homeOpenButton")),
                      Qt::LeftButton);
    QCOMPARE(opened.size(), 1);
    QCOMPARE(opened.at(0).at(0).toString(), path);
    QVERIFY(clicked.isEmpty());
    QCOMPARE(answers.fileDialogs().size(), 1);
    QCOMPARE(answers.fileDialogs().constFirst().title, QStringLiteral("打开 PDF 文件"));
    QCOMPARE(answers.fileDialogs().constFirst().filters,
             QStringList{QStringLiteral("PDF 文件 (*.pdf)")});
}

QTEST_MAIN(TestHomePage)
#include "tst_home_page.moc"
