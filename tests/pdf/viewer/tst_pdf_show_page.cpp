// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/pdf_show_page.h"
#include "pdf/viewer/pdf_viewer_widget.h"
#include "pdf/viewer/reading/pdf_document_view.h"
#include "tests/support/pdf_fixture.h"

#include <QLayout>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

class TestPdfShowPage final : public QObject
{
    Q_OBJECT

private slots:
    void viewerFillsThePage();
    void keyboardFocusGoesToTheDocument();
    void openFileOpensInTheViewer();
    void externalToolsAreTranslated_data();
    void externalToolsAreTranslated();
    void conversionToOfficeIsToolTwo();
};

void TestPdfShowPage::viewerFillsThePage()
{
    PdfShowPage page;
    page.resize(500, 400);
    page.show();
    QVERIFY(page.viewer());
    QCOMPARE(page.viewer()->parentWidget(), &page);
    QCOMPARE(page.viewer()->geometry(), page.rect());
}

void TestPdfShowPage::keyboardFocusGoesToTheDocument()
{
    PdfShowPage page;
    page.show();
    page.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&page));
    page.setFocus();
    const auto *document = page.findChild<PdfDocumentView *>();
    QVERIFY(document != nullptr);
    QTRY_VERIFY(document->hasFocus());
}

void TestPdfShowPage::openFileOpensInTheViewer()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("pages.pdf"));
    QVERIFY(PdfFixture::write(path, PdfFixture::pagesByNumber(2)));
    PdfShowPage page;
    const QSignalSpy loaded(page.viewer(), &PdfViewerWidget::documentLoaded);
    QVERIFY(page.openFile(path));
    QCOMPARE(loaded.size(), 1);
    QCOMPARE(loaded.first().first().toString(), path);
    QVERIFY(!page.openFile(QString()));
}

void TestPdfShowPage::externalToolsAreTranslated_data()
{
    QTest::addColumn<QString>("toolId");
    QTest::addColumn<QList<int>>("toolTypes");
    QTest::newRow("compress") << QStringLiteral("compress") << QList<int>{1};
    QTest::newRow("images") << QStringLiteral("images") << QList<int>{5};
    QTest::newRow("decrypt") << QStringLiteral("decrypt") << QList<int>{6};
    QTest::newRow("encrypt") << QStringLiteral("encrypt") << QList<int>{7};
    QTest::newRow("page number") << QStringLiteral("page-number") << QList<int>{};
    QTest::newRow("search") << QStringLiteral("search") << QList<int>{};
    QTest::newRow("empty") << QString() << QList<int>{};
}

void TestPdfShowPage::externalToolsAreTranslated()
{
    QFETCH(QString, toolId);
    QFETCH(QList<int>, toolTypes);
    PdfShowPage page;
    const QSignalSpy requested(&page, &PdfShowPage::toolRequested);
    emit page.viewer()->externalToolRequested(toolId, QStringLiteral("/documents/report.pdf"));
    QCOMPARE(requested.size(), toolTypes.size());
    if (!toolTypes.isEmpty()) {
        QCOMPARE(requested.first().at(0).toInt(), toolTypes.first());
        QCOMPARE(requested.first().at(1).toString(), QStringLiteral("/documents/report.pdf"));
    }
}

void TestPdfShowPage::conversionToOfficeIsToolTwo()
{
    PdfShowPage page;
    const QSignalSpy requested(&page, &PdfShowPage::toolRequested);
    emit page.viewer()->convertPdfToOfficeRequested(QStringLiteral("/documents/report.pdf"));
    QCOMPARE(requested.size(), 1);
    QCOMPARE(requested.first().at(0).toInt(), 2);
    QCOMPARE(requested.first().at(1).toString(), QStringLiteral("/documents/report.pdf"));
}

QTEST_MAIN(TestPdfShowPage)
#include "tst_pdf_show_page.moc"
