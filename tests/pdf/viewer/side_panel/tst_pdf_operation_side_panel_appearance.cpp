// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdf/viewer/shown_side_panel.h"
#include "tools/file_location_selector.h"
#include "widgets/theme.h"

#include <QCheckBox>
#include <QHelpEvent>
#include <QImage>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QScrollBar>
#include <QSplitter>
#include <QStackedWidget>
#include <QTest>
#include <QToolTip>
#include <QTranslator>

namespace {

constexpr int kExtract = ShownSidePanel::kExtract;
constexpr int kSplit = ShownSidePanel::kSplit;

/// Makes every text half as long again.
class LongTexts final : public QTranslator
{
public:
    QString translate(const char *, const char *source, const char *, int) const override
    {
        const QString text = QString::fromUtf8(source);
        return text.contains(u'%') ? text : text + u' ' + text.left((text.size() + 1) / 2);
    }
    bool isEmpty() const override { return false; }
};

/// Makes every text a word that runs from right to left.
class ArabicTexts final : public QTranslator
{
public:
    QString translate(const char *, const char *, const char *, int) const override
    {
        return QStringLiteral("استخراج");
    }
    bool isEmpty() const override { return false; }
};

/// The first column of pixels with another colour than the first pixel; the width if there is none.
int firstInkColumn(const QImage &image)
{
    for (int x = 0; x < image.width(); ++x) {
        for (int y = 0; y < image.height(); ++y) {
            if (image.pixel(x, y) != image.pixel(0, 0)) {
                return x;
            }
        }
    }
    return image.width();
}

/// Rests the mouse on the first row of a list.
void askForToolTip(const QListWidget &list)
{
    const QPoint point = list.visualItemRect(list.item(0)).center();
    QHelpEvent help(QEvent::ToolTip, point, list.viewport()->mapToGlobal(point));
    QCoreApplication::sendEvent(list.viewport(), &help);
}

} // namespace

/// How the panel with the options for extracting and splitting looks.
class TestPdfOperationSidePanelAppearance final : public QObject
{
    Q_OBJECT

private slots:
    void hasItsShape();
    void textsOfThePages_data();
    void textsOfThePages();
    void partsStandBelowEachOther_data();
    void partsStandBelowEachOther();
    void hintIsGrey();
    void longNamesAreElidedWithAToolTip();
    void markupInANameIsShownAsItIs();
    void longTextsFitIntoTheNarrowPanel_data();
    void longTextsFitIntoTheNarrowPanel();
    void titlesBeginAtTheLeftInEveryScript_data();
    void titlesBeginAtTheLeftInEveryScript();
    void rowsAreMirrored();
    void splitterKeepsItInItsWidth();
    void extractPreviewKeepsItsScrollPosition();
};

void TestPdfOperationSidePanelAppearance::hasItsShape()
{
    ShownSidePanel shown(5);
    QCOMPARE(shown.panel.objectName(), QStringLiteral("pdfOperationSidePanel"));
    QCOMPARE(shown.panel.findChildren<QPushButton *>(QStringLiteral("pdfPrimaryAction")).size(), 2);
    QCOMPARE(shown.panel.findChildren<QListWidget *>().size(), 2);
    QCOMPARE(shown.panel.findChild<QStackedWidget *>()->count(), 2);
    shown.panel.setWorkspaceMode(kExtract);
    QCOMPARE(shown.panel.grab().toImage().pixelColor(2, 2), Theme::white);
}

void TestPdfOperationSidePanelAppearance::textsOfThePages_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QStringList>("sections");
    QTest::addColumn<QString>("option");
    QTest::newRow("extract") << kExtract << QStringLiteral("提取")
                             << QStringList{QStringLiteral("文件提取选项"),
                                            QStringLiteral("将选定页面另存为"),
                                            QStringLiteral("文件位置")}
                             << QStringLiteral("将选定页面提取为单个文件");
    QTest::newRow("split") << kSplit << QStringLiteral("拆分")
                           << QStringList{QStringLiteral("文件拆分选项"),
                                          QStringLiteral("输出预览"), QStringLiteral("文件位置")}
                           << QStringLiteral("将每个页面拆分为单个文件");
}

void TestPdfOperationSidePanelAppearance::textsOfThePages()
{
    QFETCH(int, mode);
    QFETCH(QString, title);
    QFETCH(QStringList, sections);
    QFETCH(QString, option);
    ShownSidePanel shown(5);
    shown.panel.setWorkspaceMode(mode);
    const QWidget *page = &shown.page();
    QCOMPARE(page->findChild<QLabel *>(QStringLiteral("pdfOptionTitle"))->text(), title);
    QStringList found;
    for (const QLabel *label :
         page->findChildren<QLabel *>(QStringLiteral("pdfOptionSectionTitle"))) {
        found << label->text();
    }
    QCOMPARE(found, sections);
    QCOMPARE(page->findChild<QCheckBox *>()->text(), option);
    QCOMPARE(page->findChild<QPushButton *>(QStringLiteral("pdfPrimaryAction"))->text(), title);
}

void TestPdfOperationSidePanelAppearance::partsStandBelowEachOther_data()
{
    QTest::addColumn<int>("mode");
    QTest::newRow("extract") << kExtract;
    QTest::newRow("split") << kSplit;
}

void TestPdfOperationSidePanelAppearance::partsStandBelowEachOther()
{
    QFETCH(int, mode);
    ShownSidePanel shown(5);
    shown.panel.setWorkspaceMode(mode);
    QCoreApplication::processEvents();
    const QWidget *page = &shown.page();
    const auto sections = page->findChildren<QLabel *>(QStringLiteral("pdfOptionSectionTitle"));
    const QList<const QWidget *> parts{
        page->findChild<QLabel *>(QStringLiteral("pdfOptionTitle")),
        sections.at(0),
        page->findChild<QCheckBox *>(),
        sections.at(1),
        page->findChild<QListWidget *>(),
        sections.at(2),
        page->findChild<FileLocationSelector *>(),
        page->findChild<QPushButton *>(QStringLiteral("pdfPrimaryAction"))};
    for (qsizetype i = 1; i < parts.size(); ++i) {
        QVERIFY(parts.at(i)->geometry().top() > parts.at(i - 1)->geometry().bottom());
    }
    // The list takes the room that is left.
    QVERIFY(parts.at(4)->height() > 300);
}

void TestPdfOperationSidePanelAppearance::hintIsGrey()
{
    ShownSidePanel shown(5);
    QCOMPARE(shown.extractList().item(0)->foreground().color(), QColor(132, 144, 163));
    QCOMPARE(shown.splitList().item(0)->foreground().color(), QColor(132, 144, 163));
    shown.select({0});
    QVERIFY(shown.extractList().item(0)->foreground().color() != QColor(132, 144, 163));
    shown.model.clearSelection();
    QCOMPARE(shown.extractList().item(0)->foreground().color(), QColor(132, 144, 163));
}

void TestPdfOperationSidePanelAppearance::longNamesAreElidedWithAToolTip()
{
    const QString name = QString(120, u'm');
    ShownSidePanel shown(60, QString(QStringLiteral("/files/") + name + QStringLiteral(".pdf")));
    shown.panel.setWorkspaceMode(kExtract);
    shown.select({4});
    askForToolTip(shown.extractList());
    QVERIFY(QToolTip::text().contains(QString(name + QStringLiteral("-5.pdf"))));
    shown.model.markSaved(ShownSidePanel::kPath);
    askForToolTip(shown.extractList());
    QTRY_COMPARE(QToolTip::text(), QString());
    shown.model.selectAll();
    shown.combine().click();
    askForToolTip(shown.extractList());
    QVERIFY(QToolTip::text().contains(QStringLiteral("58, 59, 60")));
    shown.model.clearSelection();
    askForToolTip(shown.extractList());
    QTRY_COMPARE(QToolTip::text(), QString());
}

void TestPdfOperationSidePanelAppearance::markupInANameIsShownAsItIs()
{
    ShownSidePanel shown(
        1, QString(QStringLiteral("/files/<b>") + QString(100, u'm') + QStringLiteral("<b>.pdf")));
    shown.panel.setWorkspaceMode(kExtract);
    shown.select({0});
    askForToolTip(shown.extractList());
    QVERIFY(QToolTip::text().contains(QStringLiteral("&lt;b&gt;mmm")));
    QToolTip::hideText();
}

void TestPdfOperationSidePanelAppearance::longTextsFitIntoTheNarrowPanel_data()
{
    partsStandBelowEachOther_data();
}

void TestPdfOperationSidePanelAppearance::longTextsFitIntoTheNarrowPanel()
{
    QFETCH(int, mode);
    LongTexts translator;
    QVERIFY(QCoreApplication::installTranslator(&translator));
    ShownSidePanel shown(5);
    shown.panel.resize(shown.panel.minimumWidth(), 640);
    shown.panel.setWorkspaceMode(mode);
    QCoreApplication::processEvents();
    const QWidget *page = &shown.page();
    QCOMPARE(page->width(), 240);
    for (const QLabel *label : page->findChildren<QLabel *>()) {
        QVERIFY(label->height() >= label->heightForWidth(label->width()));
    }
    const auto *option = page->findChild<QCheckBox *>();
    QVERIFY(option->height() >= option->heightForWidth(option->width()));
    const auto *action = page->findChild<QPushButton *>(QStringLiteral("pdfPrimaryAction"));
    QVERIFY(action->width() >= action->sizeHint().width());
    QVERIFY(action->geometry().bottom() < page->height());
    const auto *list = page->findChild<QListWidget *>();
    QVERIFY(list->visualItemRect(list->item(0)).bottom() < list->viewport()->height());
}

void TestPdfOperationSidePanelAppearance::titlesBeginAtTheLeftInEveryScript_data()
{
    QTest::addColumn<int>("mode");
    QTest::newRow("extract") << kExtract;
    QTest::newRow("split") << kSplit;
}

void TestPdfOperationSidePanelAppearance::titlesBeginAtTheLeftInEveryScript()
{
    QFETCH(int, mode);
    ArabicTexts translator;
    QVERIFY(QCoreApplication::installTranslator(&translator));
    ShownSidePanel shown(5);
    shown.panel.setWorkspaceMode(mode);
    const QList<QLabel *> titles = shown.page().findChildren<QLabel *>();
    QCOMPARE(titles.size(), 4);
    for (QLabel *title : titles) {
        QVERIFY(title->width() > 200);
        QVERIFY(firstInkColumn(title->grab().toImage()) < 10);
    }
}

void TestPdfOperationSidePanelAppearance::rowsAreMirrored()
{
    ShownSidePanel shown(5);
    shown.select({0});
    shown.panel.setWorkspaceMode(kExtract);
    const auto iconSides = [&] {
        QListWidget &list = shown.extractList();
        const QRect item = list.visualItemRect(list.item(0));
        const QImage row = list.viewport()->grab(item).toImage();
        const auto isRed = [](const QColor &color) {
            return color.red() > 200 && color.green() < 120;
        };
        bool left = false;
        bool right = false;
        for (int y = 0; y < row.height(); ++y) {
            for (int x = 0; x < 40; ++x) {
                left |= isRed(row.pixelColor(x, y));
                right |= isRed(row.pixelColor(row.width() - 1 - x, y));
            }
        }
        return QList<bool>{left, right};
    };
    QCOMPARE(iconSides(), (QList<bool>{true, false}));
    shown.panel.setLayoutDirection(Qt::RightToLeft);
    QCoreApplication::processEvents();
    QCOMPARE(iconSides(), (QList<bool>{false, true}));
}

void TestPdfOperationSidePanelAppearance::splitterKeepsItInItsWidth()
{
    QSplitter splitter;
    splitter.setChildrenCollapsible(false);
    splitter.addWidget(new QWidget);
    auto *panel = new PdfOperationSidePanel;
    splitter.addWidget(panel);
    splitter.setStretchFactor(0, 1);
    splitter.setStretchFactor(1, 0);
    splitter.setSizes({1000, 340});
    splitter.resize(1341, 600);
    splitter.show();
    panel->setWorkspaceMode(kExtract);
    QTRY_COMPARE(panel->width(), 340);
    splitter.setSizes({1300, 10});
    QCOMPARE(panel->width(), 240);
}

void TestPdfOperationSidePanelAppearance::extractPreviewKeepsItsScrollPosition()
{
    ShownSidePanel shown(100);
    shown.panel.setWorkspaceMode(kExtract);
    shown.model.selectAll();
    QCoreApplication::processEvents();
    QScrollBar &bar = *shown.extractList().verticalScrollBar();
    bar.setValue(bar.maximum() / 2);
    const int before = bar.value();
    QVERIFY(before > 0);
    shown.model.setPageSelected(shown.model.pageAt(99)->id, false);
    QCoreApplication::processEvents();
    QCOMPARE(shown.extractTexts().size(), 99);
    QCOMPARE(bar.value(), before);
}

QTEST_MAIN(TestPdfOperationSidePanelAppearance)
#include "tst_pdf_operation_side_panel_appearance.moc"
