// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/side_panel/page_output_plan.h"
#include "tests/pdf/signal_signatures.h"
#include "tests/pdf/viewer/shown_side_panel.h"
#include "tests/pdf/viewer/shown_view.h"
#include "tools/file_location_selector.h"

#include <QCheckBox>
#include <QDir>
#include <QListWidget>
#include <QPushButton>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTest>
#include <QTranslator>

#include <numeric>

using LocationMode = FileLocationSelector::LocationMode;

namespace {

constexpr int kExtract = ShownSidePanel::kExtract;
constexpr int kSplit = ShownSidePanel::kSplit;

} // namespace

/// The panel with the options for extracting and splitting.
class TestPdfOperationSidePanel final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void signalsInOrder();
    void startsHidden();
    void workspaceModeChoosesThePage();

    void extractionNeedsASelection();
    void eachSelectedPageIsAFile();
    void combinedPagesAreOneFile();
    void singlePageIsNeverCombined();
    void extractPreviewFollowsTheSelection();
    void extractPreviewFollowsMovedPages();

    void splittingNeedsACut();
    void splitPreviewShowsTheParts();
    void splitPreviewIgnoresUselessCuts();
    void everyPageIsAPart();
    void everyPageIsReportedBeforeAnythingElse();
    void chosenCutsComeBackAfterEveryPage();
    void splitPreviewFollowsInsertedAndRemovedPages();
    void singlePageCannotBeSplit();

    void previewNamesTheFilesThatAreWritten();
    void previewNamesThemInEveryLanguage();
    void namesMayHoldPlaceMarkersAndLineFeeds();

    void extractAsksWithItsOptions();
    void splitAsksWithItsOptions();
    void splitAsksWithThePointsAsTheyWereSent();
    void disabledButtonsAskForNothing();

    void outputGoesBesideTheDocument();
    void outputGoesNowhereWithoutADocument();
    void chosenFolderCountsForBothOperations();
    void resetForgetsFolderAndCuts();
    void saveUnderAnotherNameIsFollowed();
    void chosenFolderSurvivesASaveElsewhere();

    void anotherModelTakesOver();
    void worksWithoutAModel();
    void largeDocumentIsPreviewedOncePerChange();

private:
    QString m_desktop;
};

void TestPdfOperationSidePanel::initTestCase()
{
    m_desktop = QDir::cleanPath(QStandardPaths::writableLocation(QStandardPaths::DesktopLocation));
    QVERIFY(!m_desktop.isEmpty());
}

void TestPdfOperationSidePanel::signalsInOrder()
{
    QCOMPARE(
        signalSignatures(PdfOperationSidePanel::staticMetaObject),
        (QByteArrayList{"extractRequested(bool,QString)", "splitRequested(bool,QList<int>,QString)",
                        "everyPageSplitToggled(bool)"}));
}

void TestPdfOperationSidePanel::startsHidden()
{
    QWidget window;
    auto *panel = new PdfOperationSidePanel(&window);
    window.show();
    QVERIFY(!panel->isVisible());
}

void TestPdfOperationSidePanel::workspaceModeChoosesThePage()
{
    ShownSidePanel shown(5);
    shown.panel.setWorkspaceMode(kExtract);
    QVERIFY(shown.panel.isVisible());
    QVERIFY(shown.extractButton().isVisible());
    QVERIFY(!shown.splitButton().isVisible());
    shown.panel.setWorkspaceMode(kSplit);
    QVERIFY(shown.panel.isVisible());
    QVERIFY(shown.splitButton().isVisible());
    QVERIFY(!shown.extractButton().isVisible());
    for (const int mode : {0, 1, 4, -1}) {
        shown.panel.setWorkspaceMode(kSplit);
        shown.panel.setWorkspaceMode(mode);
        QVERIFY(!shown.panel.isVisible());
    }
}

void TestPdfOperationSidePanel::extractionNeedsASelection()
{
    const ShownSidePanel shown(5);
    QCOMPARE(shown.extractTexts(), ShownSidePanel::kExtractHint);
    QVERIFY(!shown.extractButton().isEnabled());
    QVERIFY(!shown.combine().isEnabled());
}

void TestPdfOperationSidePanel::eachSelectedPageIsAFile()
{
    ShownSidePanel shown(5);
    shown.select({4, 1});
    QCOMPARE(shown.extractTexts(), (QStringList{QStringLiteral("report-2.pdf\n第 2 页"),
                                                QStringLiteral("report-5.pdf\n第 5 页")}));
    QVERIFY(shown.extractButton().isEnabled());
    QVERIFY(shown.combine().isEnabled());
    QVERIFY(!shown.combine().isChecked());
}

void TestPdfOperationSidePanel::combinedPagesAreOneFile()
{
    ShownSidePanel shown(5);
    shown.select({1, 4});
    shown.combine().click();
    QCOMPARE(shown.extractTexts(), QStringList{QStringLiteral("report-extracted.pdf\n页面 2, 5")});
    shown.combine().click();
    QCOMPARE(shown.extractTexts().size(), 2);
}

void TestPdfOperationSidePanel::singlePageIsNeverCombined()
{
    ShownSidePanel shown(5);
    shown.select({1, 4});
    shown.combine().click();
    shown.select({4});
    QVERIFY(!shown.combine().isEnabled());
    QVERIFY(!shown.combine().isChecked());
    QCOMPARE(shown.extractTexts(), QStringList{QStringLiteral("report-5.pdf\n第 5 页")});
    QVERIFY(shown.extractButton().isEnabled());
    shown.select({1, 4});
    QVERIFY(!shown.combine().isChecked());
}

void TestPdfOperationSidePanel::extractPreviewFollowsTheSelection()
{
    ShownSidePanel shown(5);
    shown.model.selectAll();
    QCOMPARE(shown.extractTexts().size(), 5);
    shown.model.setPageSelected(shown.model.pageAt(0)->id, false);
    QCOMPARE(shown.extractTexts().constFirst(), QStringLiteral("report-2.pdf\n第 2 页"));
    shown.model.clearSelection();
    QCOMPARE(shown.extractTexts(), ShownSidePanel::kExtractHint);
    QVERIFY(!shown.extractButton().isEnabled());
}

void TestPdfOperationSidePanel::extractPreviewFollowsMovedPages()
{
    ShownSidePanel shown(5);
    shown.select({1});
    QVERIFY(shown.model.moveRows({}, 1, 1, {}, 5));
    QCOMPARE(shown.extractTexts(), QStringList{QStringLiteral("report-5.pdf\n第 5 页")});
    shown.model.insertBlankPage(0, {});
    QCOMPARE(shown.extractTexts(), QStringList{QStringLiteral("report-6.pdf\n第 6 页")});
}

void TestPdfOperationSidePanel::splittingNeedsACut()
{
    ShownSidePanel shown(5);
    QCOMPARE(shown.splitTexts(), ShownSidePanel::kSplitHint);
    QVERIFY(!shown.splitButton().isEnabled());
    shown.panel.setSplitPoints({2});
    QVERIFY(shown.splitButton().isEnabled());
    shown.panel.setSplitPoints({});
    QVERIFY(!shown.splitButton().isEnabled());
    QCOMPARE(shown.splitTexts(), ShownSidePanel::kSplitHint);
}

void TestPdfOperationSidePanel::splitPreviewShowsTheParts()
{
    ShownSidePanel shown(5);
    shown.panel.setSplitPoints({3, 1});
    QCOMPARE(shown.splitTexts(), (QStringList{QStringLiteral("report-1.pdf\n页面 1-1"),
                                              QStringLiteral("report-2.pdf\n页面 2-3"),
                                              QStringLiteral("report-3.pdf\n页面 4-5")}));
}

void TestPdfOperationSidePanel::splitPreviewIgnoresUselessCuts()
{
    ShownSidePanel shown(5);
    shown.panel.setSplitPoints({0, 3, 5, 3, -2, 1});
    QCOMPARE(shown.splitTexts().size(), 3);
    shown.panel.setSplitPoints({0, 5, 7});
    QCOMPARE(shown.splitTexts(), ShownSidePanel::kSplitHint);
    QVERIFY(!shown.splitButton().isEnabled());
}

void TestPdfOperationSidePanel::everyPageIsAPart()
{
    ShownSidePanel shown(3);
    QSignalSpy toggled(&shown.panel, &PdfOperationSidePanel::everyPageSplitToggled);
    shown.everyPage().click();
    QCOMPARE(toggled.size(), 1);
    QCOMPARE(toggled.at(0).at(0).toBool(), true);
    QCOMPARE(shown.splitTexts(), (QStringList{QStringLiteral("report-1.pdf\n页面 1-1"),
                                              QStringLiteral("report-2.pdf\n页面 2-2"),
                                              QStringLiteral("report-3.pdf\n页面 3-3")}));
    QVERIFY(shown.splitButton().isEnabled());
    shown.everyPage().click();
    QCOMPARE(toggled.size(), 2);
    QCOMPARE(toggled.at(1).at(0).toBool(), false);
    QCOMPARE(shown.splitTexts(), ShownSidePanel::kSplitHint);
}

void TestPdfOperationSidePanel::everyPageIsReportedBeforeAnythingElse()
{
    // Whoever listens may send the split points at once.
    ShownSidePanel shown(5);
    connect(&shown.panel, &PdfOperationSidePanel::everyPageSplitToggled, &shown.panel,
            [&](bool enabled) {
                shown.panel.setSplitPoints(enabled ? QList<int>{1, 2, 3, 4} : QList<int>{2});
            });
    shown.everyPage().click();
    QCOMPARE(shown.splitTexts().size(), 5);
    shown.everyPage().click();
    QCOMPARE(shown.splitTexts().size(), 2);
}

void TestPdfOperationSidePanel::chosenCutsComeBackAfterEveryPage()
{
    ShownSidePanel shown(5);
    shown.panel.setSplitPoints({2});
    shown.everyPage().click();
    QCOMPARE(shown.splitTexts().size(), 5);
    shown.everyPage().click();
    QCOMPARE(shown.splitTexts(), (QStringList{QStringLiteral("report-1.pdf\n页面 1-2"),
                                              QStringLiteral("report-2.pdf\n页面 3-5")}));
}

void TestPdfOperationSidePanel::splitPreviewFollowsInsertedAndRemovedPages()
{
    ShownSidePanel shown(5);
    shown.panel.setSplitPoints({4});
    shown.model.insertBlankPage(-1, {});
    QCOMPARE(shown.splitTexts().constLast(), QStringLiteral("report-2.pdf\n页面 5-6"));
    shown.model.removePages({1, 2});
    QCOMPARE(shown.splitTexts(), ShownSidePanel::kSplitHint);
    QVERIFY(!shown.splitButton().isEnabled());
}

void TestPdfOperationSidePanel::singlePageCannotBeSplit()
{
    ShownSidePanel shown(1);
    shown.everyPage().click();
    shown.panel.setSplitPoints({0, 1});
    QCOMPARE(shown.splitTexts(), ShownSidePanel::kSplitHint);
    QVERIFY(!shown.splitButton().isEnabled());
}

void TestPdfOperationSidePanel::previewNamesTheFilesThatAreWritten()
{
    ShownSidePanel shown(9, QStringLiteral("/files/archive.2024.pdf"));
    const QString base = QStringLiteral("archive.2024");
    const auto names = [](const QStringList &texts) {
        QStringList firstLines;
        for (const QString &text : texts) {
            firstLines << text.section(u'\n', 0, 0);
        }
        return firstLines;
    };
    const auto planned = [](const QList<PageOutputFile> &files) {
        QStringList fileNames;
        for (const PageOutputFile &file : files) {
            fileNames << file.fileName;
        }
        return fileNames;
    };
    shown.select({0, 3, 8});
    QCOMPARE(names(shown.extractTexts()), planned(planExtract(base, {0, 3, 8}, false)));
    shown.combine().click();
    QCOMPARE(names(shown.extractTexts()), planned(planExtract(base, {0, 3, 8}, true)));
    shown.panel.setSplitPoints({7, 2});
    QCOMPARE(names(shown.splitTexts()), planned(planSplit(base, 9, false, {7, 2})));
}

void TestPdfOperationSidePanel::previewNamesThemInEveryLanguage()
{
    class Translated final : public QTranslator
    {
    public:
        QString translate(const char *, const char *source, const char *, int) const override
        {
            const QLatin1String combined("%1-extracted.pdf");
            return QString::fromUtf8(source).startsWith(combined)
                       ? QStringLiteral("%1-extrahiert.pdf\nSeiten %2")
                       : QString();
        }
        bool isEmpty() const override { return false; }
    };
    Translated translator;
    QVERIFY(QCoreApplication::installTranslator(&translator));
    ShownSidePanel shown(5);
    shown.select({1, 4});
    shown.combine().click();
    QCOMPARE(shown.extractTexts(),
             QStringList{QStringLiteral("report-extracted.pdf\nSeiten 2, 5")});
}

void TestPdfOperationSidePanel::namesMayHoldPlaceMarkersAndLineFeeds()
{
    ShownSidePanel shown(3, QStringLiteral("/files/100%2 of\n%1.pdf"));
    shown.select({0});
    QCOMPARE(shown.extractTexts(), QStringList{QStringLiteral("100%2 of\n%1-1.pdf\n第 1 页")});
    shown.panel.setSplitPoints({1});
    QCOMPARE(shown.splitTexts().constFirst(), QStringLiteral("100%2 of\n%1-1.pdf\n页面 1-1"));
}

void TestPdfOperationSidePanel::extractAsksWithItsOptions()
{
    ShownSidePanel shown(5);
    QSignalSpy requested(&shown.panel, &PdfOperationSidePanel::extractRequested);
    shown.select({1, 4});
    shown.extractButton().click();
    QCOMPARE(requested.takeFirst(), (QVariantList{false, ShownSidePanel::kFolder}));
    shown.combine().click();
    shown.extractButton().click();
    QCOMPARE(requested.takeFirst(), (QVariantList{true, ShownSidePanel::kFolder}));
}

void TestPdfOperationSidePanel::splitAsksWithItsOptions()
{
    ShownSidePanel shown(5);
    QSignalSpy requested(&shown.panel, &PdfOperationSidePanel::splitRequested);
    shown.panel.setSplitPoints({2});
    shown.splitButton().click();
    QCOMPARE(requested.size(), 1);
    QCOMPARE(requested.at(0).at(0).toBool(), false);
    QCOMPARE(requested.at(0).at(1).value<QList<int>>(), QList<int>{2});
    QCOMPARE(requested.at(0).at(2).toString(), ShownSidePanel::kFolder);
    shown.everyPage().click();
    shown.splitButton().click();
    QCOMPARE(requested.at(1).at(0).toBool(), true);
}

void TestPdfOperationSidePanel::splitAsksWithThePointsAsTheyWereSent()
{
    ShownSidePanel shown(5);
    QSignalSpy requested(&shown.panel, &PdfOperationSidePanel::splitRequested);
    shown.panel.setSplitPoints({3, 1, 9, 3});
    shown.splitButton().click();
    QCOMPARE(requested.at(0).at(1).value<QList<int>>(), (QList<int>{3, 1, 9, 3}));
}

void TestPdfOperationSidePanel::disabledButtonsAskForNothing()
{
    ShownSidePanel shown(5);
    QSignalSpy extract(&shown.panel, &PdfOperationSidePanel::extractRequested);
    QSignalSpy split(&shown.panel, &PdfOperationSidePanel::splitRequested);
    shown.extractButton().click();
    shown.splitButton().click();
    QVERIFY(extract.isEmpty());
    QVERIFY(split.isEmpty());
}

void TestPdfOperationSidePanel::outputGoesBesideTheDocument()
{
    ShownSidePanel shown(5, QStringLiteral("relative.pdf"));
    QSignalSpy requested(&shown.panel, &PdfOperationSidePanel::extractRequested);
    shown.select({0});
    shown.extractButton().click();
    QCOMPARE(requested.at(0).at(1).toString(), QDir::currentPath());
    QCOMPARE(shown.extractLocation().directory(), QDir::currentPath());
    QCOMPARE(shown.splitLocation().directory(), QDir::currentPath());
}

void TestPdfOperationSidePanel::outputGoesNowhereWithoutADocument()
{
    ShownSidePanel shown(5, QString());
    QSignalSpy requested(&shown.panel, &PdfOperationSidePanel::extractRequested);
    shown.select({0});
    shown.extractButton().click();
    QCOMPARE(requested.at(0).at(1).toString(), QString());
    QCOMPARE(shown.extractLocation().directory(), QString());
}

void TestPdfOperationSidePanel::chosenFolderCountsForBothOperations()
{
    ShownSidePanel shown(5);
    QSignalSpy extract(&shown.panel, &PdfOperationSidePanel::extractRequested);
    QSignalSpy split(&shown.panel, &PdfOperationSidePanel::splitRequested);
    shown.select({0});
    shown.panel.setSplitPoints({1});

    shown.extractLocation().setMode(LocationMode::Desktop);
    QCOMPARE(shown.splitLocation().mode(), LocationMode::Desktop);
    shown.extractButton().click();
    shown.splitButton().click();
    QCOMPARE(extract.at(0).at(1).toString(), m_desktop);
    QCOMPARE(split.at(0).at(2).toString(), m_desktop);

    shown.splitLocation().setMode(LocationMode::Custom, QStringLiteral("/chosen"));
    QCOMPARE(shown.extractLocation().directory(), QStringLiteral("/chosen"));
    shown.extractButton().click();
    shown.splitButton().click();
    QCOMPARE(extract.at(1).at(1).toString(), QStringLiteral("/chosen"));
    QCOMPARE(split.at(1).at(2).toString(), QStringLiteral("/chosen"));

    shown.splitLocation().setMode(LocationMode::SourceFolder);
    QCOMPARE(shown.extractLocation().mode(), LocationMode::SourceFolder);
    shown.splitButton().click();
    QCOMPARE(split.at(2).at(2).toString(), ShownSidePanel::kFolder);
}

void TestPdfOperationSidePanel::resetForgetsFolderAndCuts()
{
    ShownSidePanel shown(5);
    shown.extractLocation().setMode(LocationMode::Custom, QStringLiteral("/chosen"));
    shown.panel.setSplitPoints({2});
    shown.select({1, 2});
    QCOMPARE(shown.extractTexts().size(), 2);
    shown.setPages(7);
    QCOMPARE(shown.splitTexts(), ShownSidePanel::kSplitHint);
    QCOMPARE(shown.extractTexts(), ShownSidePanel::kExtractHint);
    QCOMPARE(shown.extractLocation().mode(), LocationMode::SourceFolder);
    QCOMPARE(shown.splitLocation().mode(), LocationMode::SourceFolder);

    QSignalSpy requested(&shown.panel, &PdfOperationSidePanel::extractRequested);
    shown.select({0});
    shown.extractButton().click();
    QCOMPARE(requested.at(0).at(1).toString(), ShownSidePanel::kFolder);
}

void TestPdfOperationSidePanel::saveUnderAnotherNameIsFollowed()
{
    ShownSidePanel shown(5);
    shown.panel.setWorkspaceMode(kExtract);
    shown.select({0});
    shown.panel.setSplitPoints({1});
    shown.model.markSaved(QStringLiteral("/other/copy.pdf"));
    QCOMPARE(shown.extractTexts(), QStringList{QStringLiteral("copy-1.pdf\n第 1 页")});
    QCOMPARE(shown.splitTexts().constFirst(), QStringLiteral("copy-1.pdf\n页面 1-1"));
    QCOMPARE(shown.extractLocation().directory(), QStringLiteral("/other"));
    QCOMPARE(shown.splitLocation().directory(), QStringLiteral("/other"));
    QSignalSpy requested(&shown.panel, &PdfOperationSidePanel::extractRequested);
    shown.extractButton().click();
    QCOMPARE(requested.at(0).at(1).toString(), QStringLiteral("/other"));
}

void TestPdfOperationSidePanel::chosenFolderSurvivesASaveElsewhere()
{
    ShownSidePanel shown(5);
    shown.select({0});
    QSignalSpy requested(&shown.panel, &PdfOperationSidePanel::extractRequested);
    for (const LocationMode mode : {LocationMode::Custom, LocationMode::SourceFolder}) {
        shown.model.markSaved(ShownSidePanel::kPath);
        shown.extractLocation().setMode(LocationMode::Desktop);
        shown.extractLocation().setMode(mode, QStringLiteral("/chosen"));
        const QString chosen = shown.extractLocation().directory();
        shown.model.markSaved(QStringLiteral("/other/copy.pdf"));
        shown.extractButton().click();
        // What is shown is where the files go.
        QCOMPARE(requested.takeFirst().at(1).toString(), chosen);
        QCOMPARE(shown.extractLocation().directory(), chosen);
        QCOMPARE(shown.splitLocation().directory(), chosen);
    }
}

void TestPdfOperationSidePanel::anotherModelTakesOver()
{
    ShownSidePanel shown(5);
    PdfDocumentModel other;
    other.setPages(recordsOfSizes(a4Pages(2)), false);
    other.markSaved(QStringLiteral("/other/letter.pdf"));
    shown.panel.setModel(&other);
    QCOMPARE(shown.extractLocation().directory(), QStringLiteral("/other"));
    other.selectAll();
    QCOMPARE(shown.extractTexts().size(), 2);
    shown.model.selectAll();
    QCOMPARE(shown.extractTexts().constFirst(), QStringLiteral("letter-1.pdf\n第 1 页"));
    QCOMPARE(shown.extractTexts().size(), 2);
}

void TestPdfOperationSidePanel::worksWithoutAModel()
{
    ShownSidePanel shown(5);
    shown.select({0});
    shown.panel.setModel(nullptr);
    QCOMPARE(shown.extractTexts(), ShownSidePanel::kExtractHint);
    shown.panel.setWorkspaceMode(kSplit);
    shown.everyPage().click();
    QCOMPARE(shown.splitTexts(), ShownSidePanel::kSplitHint);
    {
        PdfDocumentModel shortLived;
        shortLived.setPages(recordsOfSizes(a4Pages(2)), false);
        shown.panel.setModel(&shortLived);
        QCOMPARE(shown.splitTexts().size(), 2);
    }
    shown.panel.setWorkspaceMode(kSplit);
    QCOMPARE(shown.splitTexts(), ShownSidePanel::kSplitHint);
}

void TestPdfOperationSidePanel::largeDocumentIsPreviewedOncePerChange()
{
    ShownSidePanel shown(10000);
    shown.panel.setWorkspaceMode(kSplit);
    shown.everyPage().click();
    QCOMPARE(shown.splitTexts().size(), 10000);
    QList<PdfPageId> ids(5000);
    std::iota(ids.begin(), ids.end(), 1);
    shown.model.removePages(ids);
    // Not after each of the removals.
    QCOMPARE(shown.splitList().count(), 10000);
    QTRY_COMPARE(shown.splitList().count(), 5000);

    shown.model.selectAll();
    shown.panel.setWorkspaceMode(kExtract);
    QCOMPARE(shown.extractList().count(), 5000);
    shown.model.clearSelection();
    QCOMPARE(shown.extractList().count(), 5000);
    QTRY_COMPARE(shown.extractTexts(), ShownSidePanel::kExtractHint);
    QVERIFY(!shown.extractButton().isEnabled());
}

QTEST_MAIN(TestPdfOperationSidePanel)
#include "tst_pdf_operation_side_panel.moc"
