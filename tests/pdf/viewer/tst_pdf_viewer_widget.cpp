#include "pdf/core/pdf_document_model.h"
#include "pdf/viewer/pdf_document_view.h"
#include "pdf/viewer/pdf_viewer_widget.h"
#include "tests/support/pdf_fixture.h"
#include "widgets/modern_message_box.h"

#include <QApplication>
#include <QInputDialog>
#include <QLabel>
#include <QSignalSpy>
#include <QSplitter>
#include <QStackedWidget>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <functional>
#include <memory>

namespace {

const QString kPasswordWanted = QStringLiteral("此 PDF 已加密，请输入密码：");
const QString kPasswordWrong = QStringLiteral("密码错误，请重新输入 PDF 密码：");

/// Answers the modal dialogs that come up while it lives, one after the other.
class DialogAnswers final : public QObject
{
public:
    /// Gives `password` to the next password dialog, or cancels it when that is null.
    void add(const QString &password) { m_passwords.append(password); }

    /// Labels of the password dialogs, and title, text and details of the message boxes.
    [[nodiscard]] QStringList seen() const { return m_seen; }

    DialogAnswers()
    {
        connect(&m_timer, &QTimer::timeout, this, &DialogAnswers::answer);
        m_timer.start(1);
    }

private:
    void answer()
    {
        QWidget *active = QApplication::activeModalWidget();
        if (auto *dialog = qobject_cast<QInputDialog *>(active)) {
            QCOMPARE(dialog->windowTitle(), QStringLiteral("需要密码"));
            QCOMPARE(dialog->textEchoMode(), QLineEdit::Password);
            QCOMPARE(dialog->textValue(), QString());
            m_seen.append(dialog->labelText());
            const QString password = m_passwords.isEmpty() ? QString() : m_passwords.takeFirst();
            if (password.isNull()) {
                dialog->reject();
            } else {
                dialog->setTextValue(password);
                dialog->accept();
            }
        } else if (auto *box = qobject_cast<ModernMessageBox *>(active)) {
            for (const char *name : {"messageBoxTitle", "messageBoxMessage", "messageBoxDetails"}) {
                const auto *label = box->findChild<QLabel *>(QLatin1String(name));
                m_seen.append(label ? label->text() : QString());
            }
            box->accept();
        }
    }

    QTimer m_timer;
    QStringList m_passwords;
    QStringList m_seen;
};

} // namespace

class TestPdfViewerWidget final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void interfaceIsASplitterWithTheViewStack();
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
    void backendErrorsHaveTheirSentences_data();
    void backendErrorsHaveTheirSentences();
    void pageSlotsReachTheDocumentView();
    void zoomSlotsReachTheDocumentView();
    void fitHeightIsFitPage();
    void unmodifiedDocumentMayBeReplaced();
    void firstPagePaintedFollowsTheOpening();
    void deletingTheViewerDuringThePromptIsSafe();

private:
    [[nodiscard]] QString fileWith(const QString &name, const QByteArray &data) const;
    /// A file of two pages with the password "geheim".
    [[nodiscard]] QString secretFile() const;
    [[nodiscard]] PdfDocumentView *view() const { return m_viewer->findChild<PdfDocumentView *>(); }
    [[nodiscard]] PdfDocumentModel *model() const
    {
        return m_viewer->findChild<PdfDocumentModel *>();
    }

    QTemporaryDir m_folder;
    std::unique_ptr<PdfViewerWidget> m_viewer;
};

void TestPdfViewerWidget::initTestCase()
{
    QStandardPaths::setTestModeEnabled(true);
    QVERIFY(m_folder.isValid());
}

void TestPdfViewerWidget::init()
{
    m_viewer = std::make_unique<PdfViewerWidget>();
    m_viewer->resize(700, 500);
    m_viewer->show();
}

void TestPdfViewerWidget::cleanup()
{
    m_viewer.reset();
}

QString TestPdfViewerWidget::fileWith(const QString &name, const QByteArray &data) const
{
    QString path = m_folder.filePath(name);
    return PdfFixture::write(path, data) ? path : QString();
}

QString TestPdfViewerWidget::secretFile() const
{
    PdfFixture::Encryption encryption;
    encryption.userPassword = "geheim";
    return fileWith(QStringLiteral("secret.pdf"),
                    PdfFixture::encrypted(PdfFixture::pagesByNumber(2), encryption));
}

void TestPdfViewerWidget::interfaceIsASplitterWithTheViewStack()
{
    QCOMPARE(m_viewer->objectName(), QStringLiteral("pdfViewerWidget"));
    const auto *splitter = m_viewer->findChild<QSplitter *>(QStringLiteral("pdfViewerSplitter"));
    QVERIFY(splitter);
    QVERIFY(!splitter->childrenCollapsible());
    QCOMPARE(splitter->handleWidth(), 1);
    const auto *stack = m_viewer->findChild<QStackedWidget *>();
    QCOMPARE(stack->widget(0), view());
    QCOMPARE(stack->currentIndex(), 0);
    QCOMPARE(view()->size(), m_viewer->size());
}

void TestPdfViewerWidget::emptyPathIsRefused()
{
    const DialogAnswers answers;
    QVERIFY(!m_viewer->openFile({}, {}));
    QTest::qWait(20);
    QVERIFY(answers.seen().isEmpty());
}

void TestPdfViewerWidget::openedFileIsShownFromItsFirstPageAtFullWidth()
{
    const QString path = fileWith(QStringLiteral("报告 2024.pdf"), PdfFixture::pagesByNumber(7));
    QVERIFY(m_viewer->openFile(path, {}));
    QCOMPARE(model()->rowCount(), 7);
    QCOMPARE(model()->documentPath(), path);
    QCOMPARE(view()->currentPage(), 0);
    QCOMPARE(view()->fitMode(), PdfDocumentView::FitMode::Width);
    QTRY_COMPARE(view()->zoomFactor(), (view()->viewport()->width() - 64) / 200.0);
    QTRY_COMPARE(view()->viewport()->grab().toImage().pixelColor(300, 200),
                 PdfFixture::numberColour(0));
}

void TestPdfViewerWidget::openingEmitsItsSignalsInOrder()
{
    QStringList log;
    connect(m_viewer.get(), &PdfViewerWidget::pageCountChanged, this,
            [&log](int count) { log.append(QStringLiteral("pages %1").arg(count)); });
    connect(m_viewer.get(), &PdfViewerWidget::zoomChanged, this,
            [&log] { log.append(QStringLiteral("zoom")); });
    connect(m_viewer.get(), &PdfViewerWidget::zoomFactorChanged, this,
            [&log] { log.append(QStringLiteral("factor")); });
    connect(m_viewer.get(), &PdfViewerWidget::modifiedChanged, this, [&log](bool modified) {
        log.append(modified ? QStringLiteral("modified") : QStringLiteral("unmodified"));
    });
    connect(m_viewer.get(), &PdfViewerWidget::documentLoaded, this,
            [&log](const QString &path) { log.append(path); });
    const QString path = fileWith(QStringLiteral("order.pdf"), PdfFixture::pagesByNumber(3));
    QVERIFY(m_viewer->openFile(path, {}));
    QCOMPARE(log, QStringList({QStringLiteral("pages 3"), QStringLiteral("unmodified"),
                               QStringLiteral("zoom"), QStringLiteral("factor"),
                               QStringLiteral("pages 3"), path}));
}

void TestPdfViewerWidget::openingAnotherFileReplacesTheDocument()
{
    const QString first = fileWith(QStringLiteral("first.pdf"), PdfFixture::pagesByNumber(9));
    const QString second = fileWith(QStringLiteral("second.pdf"), PdfFixture::pagesByNumber(2));
    QVERIFY(m_viewer->openFile(first, {}));
    m_viewer->goToPage(8);
    m_viewer->setZoomFactor(0.5);
    QVERIFY(m_viewer->openFile(second, {}));
    QCOMPARE(model()->rowCount(), 2);
    QCOMPARE(view()->currentPage(), 0);
    QCOMPARE(view()->fitMode(), PdfDocumentView::FitMode::Width);
}

void TestPdfViewerWidget::encryptedFileAsksForItsPassword()
{
    const QString path = secretFile();
    DialogAnswers answers;
    answers.add(QStringLiteral("geheim"));
    QVERIFY(m_viewer->openFile(path, {}));
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
        answers.add(QStringLiteral("wrong %1").arg(attempt));
        expected.append(kPasswordWrong);
    }
    answers.add(QStringLiteral("geheim"));
    QVERIFY(m_viewer->openFile(path, {}));
    QCOMPARE(answers.seen(), expected);
}

void TestPdfViewerWidget::givenPasswordIsTriedFirst()
{
    const QString path = secretFile();
    const DialogAnswers answers;
    QVERIFY(m_viewer->openFile(path, QStringLiteral("geheim")));
    QVERIFY(answers.seen().isEmpty());
}

void TestPdfViewerWidget::wrongGivenPasswordIsAskedForAgain()
{
    const QString path = secretFile();
    DialogAnswers answers;
    answers.add(QStringLiteral("geheim"));
    QVERIFY(m_viewer->openFile(path, QStringLiteral("wrong")));
    QCOMPARE(answers.seen(), QStringList{kPasswordWrong});
}

void TestPdfViewerWidget::cancelledPasswordLeavesTheDocumentWithoutAMessage()
{
    const QString open = fileWith(QStringLiteral("open.pdf"), PdfFixture::pagesByNumber(3));
    const QString path = secretFile();
    QVERIFY(m_viewer->openFile(open, {}));
    const QSignalSpy loaded(m_viewer.get(), &PdfViewerWidget::documentLoaded);
    DialogAnswers answers;
    answers.add(QString());
    QVERIFY(!m_viewer->openFile(path, {}));
    QTest::qWait(20);
    QCOMPARE(answers.seen(), QStringList{kPasswordWanted});
    QCOMPARE(loaded.size(), 0);
    QCOMPARE(model()->documentPath(), open);
    QCOMPARE(model()->rowCount(), 3);
}

void TestPdfViewerWidget::missingFileIsReported()
{
    const DialogAnswers answers;
    QVERIFY(!m_viewer->openFile(m_folder.filePath(QStringLiteral("missing.pdf")), {}));
    QCOMPARE(answers.seen().mid(0, 2), QStringList({QStringLiteral("无法打开 PDF"),
                                                    QStringLiteral("文件不存在或已被移动。")}));
}

void TestPdfViewerWidget::damagedFileIsReported()
{
    const QString path = fileWith(QStringLiteral("damaged.pdf"), "This is no PDF.");
    const DialogAnswers answers;
    QVERIFY(!m_viewer->openFile(path, {}));
    QCOMPARE(answers.seen().mid(0, 2), QStringList({QStringLiteral("无法打开 PDF"),
                                                    QStringLiteral("PDF 已损坏或格式不受支持。")}));
}

void TestPdfViewerWidget::failedOpeningRendersTheDocumentAgain()
{
    const QString open = fileWith(QStringLiteral("open.pdf"), PdfFixture::pagesByNumber(30));
    QVERIFY(m_viewer->openFile(open, {}));
    m_viewer->goToPage(20);
    // The renders that this asks for are cancelled by the opening of the missing file.
    QCoreApplication::sendPostedEvents(view(), QEvent::MetaCall);
    const DialogAnswers answers;
    QVERIFY(!m_viewer->openFile(m_folder.filePath(QStringLiteral("missing.pdf")), {}));
    QTRY_COMPARE(view()->viewport()->grab().toImage().pixelColor(300, 200),
                 PdfFixture::numberColour(20));
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
    m_viewer->showBackendError(QStringLiteral("标题"), static_cast<PdfBackendError>(error),
                               QStringLiteral("  the reason \n"));
    QCOMPARE(answers.seen(),
             QStringList({QStringLiteral("标题"), sentence, QStringLiteral("the reason")}));
}

void TestPdfViewerWidget::pageSlotsReachTheDocumentView()
{
    QVERIFY(m_viewer->openFile(fileWith(QStringLiteral("pages.pdf"), PdfFixture::pagesByNumber(9)),
                               {}));
    const QSignalSpy current(m_viewer.get(), &PdfViewerWidget::currentPageChanged);
    m_viewer->goToPage(4);
    QCOMPARE(view()->currentPage(), 4);
    m_viewer->setCurrentPage(6);
    QCOMPARE(view()->currentPage(), 6);
    QCOMPARE(current.size(), 2);
    QCOMPARE(current.last().first().toInt(), 6);
}

void TestPdfViewerWidget::zoomSlotsReachTheDocumentView()
{
    QVERIFY(m_viewer->openFile(fileWith(QStringLiteral("pages.pdf"), PdfFixture::pagesByNumber(9)),
                               {}));
    const QSignalSpy zoom(m_viewer.get(), &PdfViewerWidget::zoomChanged);
    const QSignalSpy factor(m_viewer.get(), &PdfViewerWidget::zoomFactorChanged);
    m_viewer->setZoomFactor(1.0);
    QCOMPARE(view()->zoomFactor(), 1.0);
    m_viewer->zoomIn();
    QCOMPARE(view()->zoomFactor(), 1.2);
    m_viewer->zoomOut();
    m_viewer->zoomOut();
    QCOMPARE(view()->zoomFactor(), 1.0 / 1.2);
    QCOMPARE(zoom.size(), 4);
    QCOMPARE(factor.size(), 4);
    QCOMPARE(factor.last().first().toDouble(), 1.0 / 1.2);
    m_viewer->fitWidth();
    QCOMPARE(view()->fitMode(), PdfDocumentView::FitMode::Width);
}

void TestPdfViewerWidget::fitHeightIsFitPage()
{
    QVERIFY(m_viewer->openFile(fileWith(QStringLiteral("pages.pdf"), PdfFixture::pagesByNumber(9)),
                               {}));
    m_viewer->fitPage();
    const double fitted = view()->zoomFactor();
    QCOMPARE(view()->fitMode(), PdfDocumentView::FitMode::Page);
    m_viewer->setZoomFactor(3.0);
    m_viewer->fitHeight();
    QCOMPARE(view()->fitMode(), PdfDocumentView::FitMode::Page);
    QCOMPARE(view()->zoomFactor(), fitted);
}

void TestPdfViewerWidget::unmodifiedDocumentMayBeReplaced()
{
    QVERIFY(m_viewer->maybeSave());
    QVERIFY(m_viewer->openFile(fileWith(QStringLiteral("pages.pdf"), PdfFixture::pagesByNumber(2)),
                               {}));
    QVERIFY(m_viewer->maybeSave());
}

void TestPdfViewerWidget::firstPagePaintedFollowsTheOpening()
{
    const QSignalSpy painted(m_viewer.get(), &PdfViewerWidget::firstPagePainted);
    QTest::qWait(20);
    QCOMPARE(painted.size(), 0);
    QVERIFY(m_viewer->openFile(fileWith(QStringLiteral("pages.pdf"), PdfFixture::pagesByNumber(2)),
                               {}));
    QTRY_COMPARE(painted.size(), 1);
    QCOMPARE(m_viewer->grab().toImage().pixelColor(300, 200), PdfFixture::numberColour(0));
}

void TestPdfViewerWidget::deletingTheViewerDuringThePromptIsSafe()
{
    const QString path = secretFile();
    PdfViewerWidget *viewer = m_viewer.get();
    QTimer::singleShot(0, this, [this] {
        QVERIFY(qobject_cast<QInputDialog *>(QApplication::activeModalWidget()));
        m_viewer.reset();
    });
    QVERIFY(!viewer->openFile(path, {}));
    QVERIFY(!m_viewer);
}

QTEST_MAIN(TestPdfViewerWidget)
#include "tst_pdf_viewer_widget.moc"
