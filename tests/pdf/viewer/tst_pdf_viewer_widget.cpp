// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdf/viewer/page_numbers.h"
#include "tests/pdf/viewer/shown_viewer.h"
#include "tests/support/dialog_answers.h"
#include "tests/support/pdf_fixture.h"
#include "widgets/modern_message_box.h"
#include "widgets/theme.h"

#include <QApplication>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScopeGuard>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <algorithm>
#include <memory>

namespace {

const QString kPasswordWanted = QStringLiteral("此 PDF 已加密，请输入密码：");
const QString kPasswordWrong = QStringLiteral("密码错误，请重新输入 PDF 密码：");

} // namespace

class TestPdfViewerWidget final : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void emptyPathIsRefused();
    void openedFileIsShownFromItsFirstPageAtFullWidth();
    void openingEmitsItsSignalsInOrder();
    void openingAnotherFileReplacesTheDocument();
    void encryptedFileAsksForItsPassword();
    void wrongPasswordIsAskedForAgainWithoutEnd();
    void givenPasswordIsTriedFirst();
    void wrongGivenPasswordIsAskedForAgain();
    void cancelledPasswordLeavesTheDocumentWithoutAMessage();
    void missingFileIsReported();
    void damagedFileIsReported();
    void failedOpeningRendersTheDocumentAgain();
    void cancelledOpeningRendersTheDocumentAgain();
    void failedOpeningKeepsModeAndHistory();
    void thumbnailsOfTheNewDocumentReplaceTheOldOnes();
    void backendErrorsHaveTheirSentences_data();
    void backendErrorsHaveTheirSentences();
    void pageSlotsReachTheDocumentView();
    void zoomSlotsReachTheDocumentView();
    void fitHeightIsFitPage();
    void unmodifiedDocumentMayBeReplaced();
    void firstPagePaintedFollowsTheOpening();
    void passwordPromptLooksLikeTheOtherBoxes();
    void passwordPromptStandsWhereItsFieldBegins_data();
    void passwordPromptStandsWhereItsFieldBegins();
    void deletingTheViewerDuringThePromptIsSafe();

private:
    [[nodiscard]] QString fileWith(const QString &name, const QByteArray &data) const
    {
        return m_shown->add(name, data);
    }
    /// A file of two pages with the password "geheim".
    [[nodiscard]] QString secretFile() const;
    [[nodiscard]] PdfViewerWidget *viewer() const { return m_shown->viewer.get(); }
    [[nodiscard]] PdfDocumentView *view() const { return &m_shown->view(); }
    [[nodiscard]] PdfDocumentModel *model() const { return &m_shown->model(); }
    /// The number of the page in the middle of the document view.
    [[nodiscard]] int shownNumber() const;

    std::unique_ptr<ShownViewer> m_shown;
};

void TestPdfViewerWidget::init()
{
    m_shown = std::make_unique<ShownViewer>();
}

void TestPdfViewerWidget::cleanup()
{
    m_shown.reset();
}

int TestPdfViewerWidget::shownNumber() const
{
    QWidget *viewport = view()->viewport();
    return PageNumbers::numberOf(viewport->grab().toImage().pixelColor(viewport->rect().center()));
}

QString TestPdfViewerWidget::secretFile() const
{
    PdfFixture::Encryption encryption;
    encryption.userPassword = "geheim";
    encryption.ownerPassword = "owner";
    return fileWith(QStringLiteral("secret.pdf"),
                    PdfFixture::encrypted(PdfFixture::pagesByNumber(2), encryption));
}

void TestPdfViewerWidget::emptyPathIsRefused()
{
    const DialogAnswers answers;
    QVERIFY(!viewer()->openFile({}, {}));
    QTest::qWait(20);
    QVERIFY(answers.seen().isEmpty());
}

void TestPdfViewerWidget::openedFileIsShownFromItsFirstPageAtFullWidth()
{
    const QString path = fileWith(QStringLiteral("报告 2024.pdf"), PdfFixture::pagesByNumber(7));
    QVERIFY(viewer()->openFile(path, {}));
    QCOMPARE(model()->rowCount(), 7);
    QCOMPARE(model()->documentPath(), path);
    QCOMPARE(view()->currentPage(), 0);
    QCOMPARE(view()->fitMode(), PdfDocumentView::FitMode::Width);
    QTRY_COMPARE(view()->zoomFactor(), (view()->viewport()->width() - 64) / 200.0);
    QTRY_COMPARE(shownNumber(), 0);
}

void TestPdfViewerWidget::openingEmitsItsSignalsInOrder()
{
    QStringList log;
    connect(viewer(), &PdfViewerWidget::pageCountChanged, this,
            [&log](int count) { log.append(QStringLiteral("pages %1").arg(count)); });
    connect(viewer(), &PdfViewerWidget::zoomChanged, this,
            [&log] { log.append(QStringLiteral("zoom")); });
    connect(viewer(), &PdfViewerWidget::zoomFactorChanged, this,
            [&log] { log.append(QStringLiteral("factor")); });
    connect(viewer(), &PdfViewerWidget::modifiedChanged, this, [&log](bool modified) {
        log.append(modified ? QStringLiteral("modified") : QStringLiteral("unmodified"));
    });
    connect(viewer(), &PdfViewerWidget::documentLoaded, this,
            [&log](const QString &path) { log.append(path); });
    const QString path = fileWith(QStringLiteral("order.pdf"), PdfFixture::pagesByNumber(3));
    QVERIFY(viewer()->openFile(path, {}));
    QCOMPARE(log, QStringList({QStringLiteral("pages 3"), QStringLiteral("unmodified"),
                               QStringLiteral("zoom"), QStringLiteral("factor"),
                               QStringLiteral("pages 3"), path}));
}

void TestPdfViewerWidget::openingAnotherFileReplacesTheDocument()
{
    const QString first = fileWith(QStringLiteral("first.pdf"), PdfFixture::pagesByNumber(9));
    const QString second = fileWith(QStringLiteral("second.pdf"), PdfFixture::pagesByNumber(2));
    QVERIFY(viewer()->openFile(first, {}));
    viewer()->goToPage(8);
    viewer()->setZoomFactor(0.5);
    QVERIFY(viewer()->openFile(second, {}));
    QCOMPARE(model()->rowCount(), 2);
    QCOMPARE(view()->currentPage(), 0);
    QCOMPARE(view()->fitMode(), PdfDocumentView::FitMode::Width);
}

void TestPdfViewerWidget::encryptedFileAsksForItsPassword()
{
    const QString path = secretFile();
    DialogAnswers answers;
    answers.addPassword(QStringLiteral("geheim"));
    QVERIFY(viewer()->openFile(path, {}));
    QCOMPARE(answers.seen(), QStringList{kPasswordWanted});
    QCOMPARE(model()->rowCount(), 2);
    QCOMPARE(model()->documentPassword(), QStringLiteral("geheim"));
}

void TestPdfViewerWidget::wrongPasswordIsAskedForAgainWithoutEnd()
{
    const QString path = secretFile();
    DialogAnswers answers;
    QStringList expected{kPasswordWanted};
    for (int attempt = 0; attempt < 12; ++attempt) {
        answers.addPassword(QStringLiteral("wrong %1").arg(attempt));
        expected.append(kPasswordWrong);
    }
    answers.addPassword(QStringLiteral("geheim"));
    QVERIFY(viewer()->openFile(path, {}));
    QCOMPARE(answers.seen(), expected);
}

void TestPdfViewerWidget::givenPasswordIsTriedFirst()
{
    const QString path = secretFile();
    const DialogAnswers answers;
    QVERIFY(viewer()->openFile(path, QStringLiteral("geheim")));
    QVERIFY(answers.seen().isEmpty());
}

void TestPdfViewerWidget::wrongGivenPasswordIsAskedForAgain()
{
    const QString path = secretFile();
    DialogAnswers answers;
    answers.addPassword(QStringLiteral("geheim"));
    QVERIFY(viewer()->openFile(path, QStringLiteral("wrong")));
    QCOMPARE(answers.seen(), QStringList{kPasswordWrong});
}

void TestPdfViewerWidget::cancelledPasswordLeavesTheDocumentWithoutAMessage()
{
    const QString open = fileWith(QStringLiteral("open.pdf"), PdfFixture::pagesByNumber(3));
    const QString path = secretFile();
    QVERIFY(viewer()->openFile(open, {}));
    const QSignalSpy loaded(viewer(), &PdfViewerWidget::documentLoaded);
    DialogAnswers answers;
    answers.addPassword(QString());
    QVERIFY(!viewer()->openFile(path, {}));
    QTest::qWait(20);
    QCOMPARE(answers.seen(), QStringList{kPasswordWanted});
    QCOMPARE(loaded.size(), 0);
    QCOMPARE(model()->documentPath(), open);
    QCOMPARE(model()->rowCount(), 3);
}

void TestPdfViewerWidget::missingFileIsReported()
{
    const DialogAnswers answers;
    QVERIFY(!viewer()->openFile(m_shown->path(QStringLiteral("missing.pdf")), {}));
    QCOMPARE(answers.seen().mid(0, 2), QStringList({QStringLiteral("无法打开 PDF"),
                                                    QStringLiteral("文件不存在或已被移动。")}));
    QCOMPARE(answers.kinds(), QList<int>{ModernMessageBox::Danger});
}

void TestPdfViewerWidget::damagedFileIsReported()
{
    const QString path = fileWith(QStringLiteral("damaged.pdf"), "This is no PDF.");
    const DialogAnswers answers;
    QVERIFY(!viewer()->openFile(path, {}));
    QCOMPARE(answers.seen().mid(0, 2), QStringList({QStringLiteral("无法打开 PDF"),
                                                    QStringLiteral("PDF 已损坏或格式不受支持。")}));
    QCOMPARE(answers.kinds(), QList<int>{ModernMessageBox::Danger});
}

void TestPdfViewerWidget::failedOpeningRendersTheDocumentAgain()
{
    const QString open = fileWith(QStringLiteral("open.pdf"), PdfFixture::pagesByNumber(30));
    QVERIFY(viewer()->openFile(open, {}));
    viewer()->goToPage(20);
    // The renders that this asks for are cancelled by the opening of the missing file.
    QCoreApplication::sendPostedEvents(view(), QEvent::MetaCall);
    const DialogAnswers answers;
    QVERIFY(!viewer()->openFile(m_shown->path(QStringLiteral("missing.pdf")), {}));
    QTRY_COMPARE(shownNumber(), 20);
}

void TestPdfViewerWidget::cancelledOpeningRendersTheDocumentAgain()
{
    const QString open = fileWith(QStringLiteral("open.pdf"), PdfFixture::pagesByNumber(30));
    const QString secret = secretFile();
    QVERIFY(viewer()->openFile(open, {}));
    viewer()->goToPage(20);
    QCoreApplication::sendPostedEvents(view(), QEvent::MetaCall);
    DialogAnswers answers;
    answers.addPassword(QString());
    QVERIFY(!viewer()->openFile(secret, {}));
    QTRY_COMPARE(shownNumber(), 20);
}

void TestPdfViewerWidget::backendErrorsHaveTheirSentences_data()
{
    QTest::addColumn<int>("error");
    QTest::addColumn<QString>("sentence");
    QTest::newRow("none") << 0 << QStringLiteral("操作未完成。");
    QTest::newRow("missing") << 1 << QStringLiteral("文件不存在或已被移动。");
    QTest::newRow("password") << 2 << QStringLiteral("PDF 需要密码。");
    QTest::newRow("wrong password") << 3 << QStringLiteral("PDF 密码错误。");
    QTest::newRow("damaged") << 4 << QStringLiteral("PDF 已损坏或格式不受支持。");
    QTest::newRow("rendering") << 5 << QStringLiteral("页面渲染失败。");
    QTest::newRow("writing") << 6 << QStringLiteral("无法写入目标文件，请检查权限和磁盘空间。");
    QTest::newRow("unknown") << 77 << QStringLiteral("操作未完成。");
}

void TestPdfViewerWidget::backendErrorsHaveTheirSentences()
{
    QFETCH(int, error);
    QFETCH(QString, sentence);
    const DialogAnswers answers;
    viewer()->showBackendError(QStringLiteral("标题"), static_cast<PdfBackendError>(error),
                               QStringLiteral("  the reason \n"));
    QCOMPARE(answers.seen(),
             QStringList({QStringLiteral("标题"), sentence, QStringLiteral("the reason")}));
    QCOMPARE(answers.kinds(), QList<int>{ModernMessageBox::Danger});
}

void TestPdfViewerWidget::pageSlotsReachTheDocumentView()
{
    QVERIFY(viewer()->openFile(fileWith(QStringLiteral("pages.pdf"), PdfFixture::pagesByNumber(9)),
                               {}));
    const QSignalSpy current(viewer(), &PdfViewerWidget::currentPageChanged);
    viewer()->goToPage(4);
    QCOMPARE(view()->currentPage(), 4);
    viewer()->setCurrentPage(6);
    QCOMPARE(view()->currentPage(), 6);
    QCOMPARE(current.size(), 2);
    QCOMPARE(current.last().first().toInt(), 6);
}

void TestPdfViewerWidget::zoomSlotsReachTheDocumentView()
{
    QVERIFY(viewer()->openFile(fileWith(QStringLiteral("pages.pdf"), PdfFixture::pagesByNumber(9)),
                               {}));
    const QSignalSpy zoom(viewer(), &PdfViewerWidget::zoomChanged);
    const QSignalSpy factor(viewer(), &PdfViewerWidget::zoomFactorChanged);
    viewer()->setZoomFactor(1.0);
    QCOMPARE(view()->zoomFactor(), 1.0);
    viewer()->zoomIn();
    QCOMPARE(view()->zoomFactor(), 1.2);
    viewer()->zoomOut();
    viewer()->zoomOut();
    QCOMPARE(view()->zoomFactor(), 1.0 / 1.2);
    QCOMPARE(zoom.size(), 4);
    QCOMPARE(factor.size(), 4);
    QCOMPARE(factor.last().first().toDouble(), 1.0 / 1.2);
    viewer()->fitWidth();
    QCOMPARE(view()->fitMode(), PdfDocumentView::FitMode::Width);
}

void TestPdfViewerWidget::fitHeightIsFitPage()
{
    QVERIFY(viewer()->openFile(fileWith(QStringLiteral("pages.pdf"), PdfFixture::pagesByNumber(9)),
                               {}));
    viewer()->fitPage();
    const double fitted = view()->zoomFactor();
    QCOMPARE(view()->fitMode(), PdfDocumentView::FitMode::Page);
    viewer()->setZoomFactor(3.0);
    viewer()->fitHeight();
    QCOMPARE(view()->fitMode(), PdfDocumentView::FitMode::Page);
    QCOMPARE(view()->zoomFactor(), fitted);
    QVERIFY(!m_shown->button("pdfFitToggleButton").property("fitWidth").toBool());
    viewer()->fitWidth();
    QVERIFY(m_shown->button("pdfFitToggleButton").property("fitWidth").toBool());
    viewer()->fitHeight();
    QVERIFY(!m_shown->button("pdfFitToggleButton").property("fitWidth").toBool());
}

void TestPdfViewerWidget::unmodifiedDocumentMayBeReplaced()
{
    QVERIFY(viewer()->maybeSave());
    QVERIFY(viewer()->openFile(fileWith(QStringLiteral("pages.pdf"), PdfFixture::pagesByNumber(2)),
                               {}));
    QVERIFY(viewer()->maybeSave());
}

void TestPdfViewerWidget::firstPagePaintedFollowsTheOpening()
{
    const QSignalSpy painted(viewer(), &PdfViewerWidget::firstPagePainted);
    QTest::qWait(20);
    QCOMPARE(painted.size(), 0);
    QVERIFY(viewer()->openFile(fileWith(QStringLiteral("pages.pdf"), PdfFixture::pagesByNumber(2)),
                               {}));
    QTRY_COMPARE(painted.size(), 1);
    QCOMPARE(shownNumber(), 0);
}

void TestPdfViewerWidget::failedOpeningKeepsModeAndHistory()
{
    QVERIFY(m_shown->openPages(3));
    emit m_shown->grid().rotatePageRequested(m_shown->idAt(1));
    m_shown->button("pdfSplitButton").click();
    DialogAnswers answers;
    answers.addButton(QStringLiteral("messageBoxDiscardButton"));
    QVERIFY(!viewer()->openFile(m_shown->path(QStringLiteral("missing.pdf")), {}));
    QVERIFY(m_shown->button("pdfSplitButton").isChecked());
    QCOMPARE(m_shown->gridMode(), PdfWorkspaceMode::SplitMode);
    QCOMPARE(m_shown->rotations(), (QList<int>{0, 90, 0}));
    QCOMPARE(m_shown->history().count(), 1);
    QVERIFY(viewer()->isModified());
}

void TestPdfViewerWidget::thumbnailsOfTheNewDocumentReplaceTheOldOnes()
{
    QVERIFY(m_shown->openPages(3));
    const auto thumbnailNumber = [this] {
        const QImage *image = m_shown->thumbnails().thumbnails().image(*model()->pageAt(0));
        return image ? PageNumbers::numberOf(image->pixelColor(image->rect().center()))
                     : PageNumbers::kUnknown;
    };
    QTRY_COMPARE(thumbnailNumber(), 0);
    QVERIFY(viewer()->openFile(
        fileWith(QStringLiteral("other.pdf"), PageNumbers::documentOf({33, 34})), {}));
    QTRY_COMPARE(thumbnailNumber(), 33);
    QTRY_COMPARE(shownNumber(), 33);
}

void TestPdfViewerWidget::passwordPromptLooksLikeTheOtherBoxes()
{
    const QString path = secretFile();
    QColor confirm;
    bool plain = false;
    bool roomy = false;
    QTimer::singleShot(0, this, [&] {
        auto *dialog = qobject_cast<QInputDialog *>(QApplication::activeModalWidget());
        QVERIFY(dialog);
        const QList<QPushButton *> buttons = dialog->findChildren<QPushButton *>();
        plain =
            buttons.size() == 2 && buttons.at(0)->icon().isNull() && buttons.at(1)->icon().isNull();
        for (QPushButton *button : buttons) {
            if (button->isDefault()) {
                confirm = button->grab().toImage().pixelColor(8, button->height() / 2);
            }
        }
        const auto *edit = dialog->findChild<QLineEdit *>();
        roomy = edit->height() >= 36 && edit->x() >= 20;
        dialog->reject();
    });
    QVERIFY(!viewer()->openFile(path, {}));
    QVERIFY(plain);
    QVERIFY(roomy);
    QCOMPARE(confirm, Theme::accent);
}

void TestPdfViewerWidget::passwordPromptStandsWhereItsFieldBegins_data()
{
    QTest::addColumn<Qt::LayoutDirection>("direction");
    QTest::newRow("left to right") << Qt::LeftToRight;
    QTest::newRow("right to left") << Qt::RightToLeft;
}

void TestPdfViewerWidget::passwordPromptStandsWhereItsFieldBegins()
{
    QFETCH(Qt::LayoutDirection, direction);
    const auto restore = qScopeGuard([] { QApplication::setLayoutDirection(Qt::LeftToRight); });
    QApplication::setLayoutDirection(direction);
    QImage prompt;
    QTimer::singleShot(0, this, [&] {
        auto *dialog = qobject_cast<QInputDialog *>(QApplication::activeModalWidget());
        QVERIFY(dialog);
        const auto *label = dialog->findChild<QLabel *>();
        prompt = dialog->grab(QRect(label->mapTo(dialog, QPoint()), label->size())).toImage();
        dialog->reject();
    });
    QVERIFY(!viewer()->openFile(secretFile(), {}));

    int first = prompt.width();
    int last = -1;
    for (int x = 0; x < prompt.width(); ++x) {
        for (int y = 0; y < prompt.height(); ++y) {
            if (prompt.pixelColor(x, y).lightness() < 128) {
                first = std::min(first, x);
                last = x;
            }
        }
    }
    QVERIFY(last >= first);
    const int leftGap = first;
    const int rightGap = prompt.width() - 1 - last;
    QVERIFY2(std::max(leftGap, rightGap) > 40, "the prompt fills its label");
    // A colon ends the prompt; its glyph may be wider than its dots.
    QVERIFY((direction == Qt::LeftToRight ? leftGap : rightGap) < 20);
}

void TestPdfViewerWidget::deletingTheViewerDuringThePromptIsSafe()
{
    const QString path = secretFile();
    PdfViewerWidget *doomed = viewer();
    QTimer::singleShot(0, this, [this] {
        QVERIFY(qobject_cast<QInputDialog *>(QApplication::activeModalWidget()));
        m_shown->viewer.reset();
    });
    QVERIFY(!doomed->openFile(path, {}));
    QVERIFY(!m_shown->viewer);
}

QTEST_MAIN(TestPdfViewerWidget)
#include "tst_pdf_viewer_widget.moc"
