// SPDX-License-Identifier: AGPL-3.0-or-later
#include "res/resources.h"
#include "tools/image_to_pdf_page.h"
#include "tools/office_to_pdf_page.h"
#include "tools/pdf_compress_page.h"
#include "tools/pdf_convert_page.h"
#include "tools/pdf_decry_page.h"
#include "tools/pdf_encry_page.h"
#include "tools/pdf_merge_page.h"
#include "tools/pdf_to_office_page.h"

#include <QIcon>
#include <QLabel>
#include <QListWidget>
#include <QTest>

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <memory>

namespace {

using NewPage = std::function<QWidget *()>;

QImage pictureOf(const QString &path, int side)
{
    return QIcon(path).pixmap(QSize(side, side), 1.0).toImage();
}

QString textOf(const QWidget &page, const QString &label)
{
    const auto *found = page.findChild<QLabel *>(label);
    return found != nullptr ? found->text() : QString();
}

} // namespace

/// What the pages of the tools show before they are used.
class TestToolPages final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { initResources(); }
    void pageSaysWhatItIsFor_data();
    void pageSaysWhatItIsFor();
    void pageIsCentredAndNarrow();
    void filesAreListedByName();
    void listIsSeenOnceThereIsAFile();
};

void TestToolPages::pageSaysWhatItIsFor_data()
{
    QTest::addColumn<NewPage>("newPage");
    QTest::addColumn<QString>("icon");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("description");
    QTest::newRow("compress") << NewPage([] { return new PdfCompressPage; })
                              << QStringLiteral("compress") << QStringLiteral("压缩PDF")
                              << QStringLiteral("减小 PDF 文件的体积，便于发送和保存。");
    QTest::newRow("to Office") << NewPage([] { return new PdfToOfficePage; })
                               << QStringLiteral("convert") << QStringLiteral("PDF转为Office")
                               << QStringLiteral("将 PDF 转换为可编辑的 Office 文档。");
    QTest::newRow("from Office") << NewPage([] { return new OfficeToPdfPage; })
                                 << QStringLiteral("convert") << QStringLiteral("Office转为PDF")
                                 << QStringLiteral("将 Word、PowerPoint 和 Excel 文件转换为 PDF");
    QTest::newRow("from images") << NewPage([] { return new ImageToPdfPage; })
                                 << QStringLiteral("image") << QStringLiteral("图像转PDF")
                                 << QStringLiteral("将图像合成为 PDF 文件。");
    QTest::newRow("to images") << NewPage([] { return new PdfConvertPage; })
                               << QStringLiteral("image") << QStringLiteral("PDF 转为图像")
                               << QStringLiteral("将 PDF 的每一页保存为图像。");
    QTest::newRow("decrypt") << NewPage([] { return new PdfDecryPage; })
                             << QStringLiteral("decrypt") << QStringLiteral("解锁PDF")
                             << QStringLiteral("移除 PDF 文件的密码。");
    QTest::newRow("encrypt") << NewPage([] { return new PdfEncryPage; })
                             << QStringLiteral("encrypt") << QStringLiteral("加密PDF")
                             << QStringLiteral("用密码保护 PDF 文件。");
    QTest::newRow("merge") << NewPage([] { return new PdfMergePage; }) << QStringLiteral("merge")
                           << QStringLiteral("合并PDF")
                           << QStringLiteral("将多个 PDF 文件合并为一个。");
}

void TestToolPages::pageSaysWhatItIsFor()
{
    QFETCH(const NewPage, newPage);
    QFETCH(const QString, icon);
    const std::unique_ptr<QWidget> page(newPage());
    QTEST(textOf(*page, QStringLiteral("toolTitle")), "title");
    QTEST(textOf(*page, QStringLiteral("toolDescription")), "description");
    const QImage picture = pictureOf(QStringLiteral(":/res/icons/modern/%1-big.png").arg(icon), 64);
    QVERIFY(!picture.isNull());
    const auto labels = page->findChildren<QLabel *>();
    QCOMPARE(std::count_if(
                 labels.begin(), labels.end(),
                 [&picture](const QLabel *label) { return label->pixmap().toImage() == picture; }),
             1);
}

void TestToolPages::pageIsCentredAndNarrow()
{
    PdfCompressPage page;
    page.resize(1100, 700);
    page.show();
    QVERIFY(QTest::qWaitForWindowExposed(&page));
    const auto *title = page.findChild<QLabel *>(QStringLiteral("toolTitle"));
    QVERIFY(title->width() <= 520);
    QVERIFY(std::abs(title->mapTo(&page, title->rect().center()).x() - page.rect().center().x()) <=
            1);
    QCOMPARE(title->alignment(), Qt::AlignCenter);
    QVERIFY(title->wordWrap());
}

void TestToolPages::filesAreListedByName()
{
    PdfEncryPage page;
    const auto *list = page.findChild<QListWidget *>(QStringLiteral("toolInputFiles"));
    const QString first = QStringLiteral("/文件/报告 1.pdf");
    const QString second = QStringLiteral("/elsewhere/报告 1.pdf");
    for (const QString &path : {first, QString(), second, first}) {
        page.addInputFile(path);
    }
    QCOMPARE(page.inputFiles(), QStringList({first, second}));
    QCOMPARE(list->count(), 2);
    for (int row = 0; row < list->count(); ++row) {
        QCOMPARE(list->item(row)->text(), QStringLiteral("报告 1.pdf"));
        QCOMPARE(list->item(row)->toolTip(), page.inputFiles().at(row));
        QCOMPARE(list->item(row)->icon().pixmap(QSize(20, 20), 1.0).toImage(),
                 pictureOf(QStringLiteral(":/res/icons/modern/file-pdf.png"), 20));
        QCOMPARE(list->visualItemRect(list->item(row)).height(), 40);
    }
    QCOMPARE(list->iconSize(), QSize(20, 20));
}

void TestToolPages::listIsSeenOnceThereIsAFile()
{
    PdfDecryPage page;
    page.resize(900, 700);
    page.show();
    const auto *list = page.findChild<QListWidget *>(QStringLiteral("toolInputFiles"));
    QVERIFY(!list->isVisible());
    page.addInputFile(QString());
    QVERIFY(!list->isVisible());
    page.addInputFile(QStringLiteral("/files/a.pdf"));
    QVERIFY(list->isVisible());
    QCOMPARE(list->height(), 168);
    QCOMPARE(list->selectionMode(), QAbstractItemView::NoSelection);
    QCOMPARE(list->focusPolicy(), Qt::NoFocus);
}

QTEST_MAIN(TestToolPages)
#include "tst_tool_pages.moc"
