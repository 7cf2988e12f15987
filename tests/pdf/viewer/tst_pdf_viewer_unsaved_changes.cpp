// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdf/viewer/page_numbers.h"
#include "tests/pdf/viewer/shown_viewer.h"
#include "tests/support/dialog_answers.h"
#include "widgets/modern_message_box.h"

#include <QApplication>
#include <QPushButton>
#include <QSemaphore>
#include <QTest>
#include <QTimer>

#include <atomic>
#include <memory>

using namespace Qt::StringLiterals;
using PageNumbers::numbersIn;

/// The question about changes that were not saved, and what follows from its answers.
class TestPdfViewerUnsavedChanges final : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void unmodifiedDocumentIsNotAskedAbout();
    void questionAboutChanges();
    void viewerMayGoDuringTheQuestion();
    void viewerMayGoDuringTheSaveBeforeOpening();
    void savingAnswerSaves();
    void savingAnswerThatFailsKeepsTheDocument();
    void discardingAnswerGoesOnWithoutSaving();
    void cancellingAnswerKeepsTheDocument();
    void closedQuestionKeepsTheDocument();
    void openingAsksAboutChangesFirst_data();
    void openingAsksAboutChangesFirst();

private:
    std::unique_ptr<ShownViewer> m_shown;
};

void TestPdfViewerUnsavedChanges::init()
{
    m_shown = std::make_unique<ShownViewer>();
}

void TestPdfViewerUnsavedChanges::cleanup()
{
    m_shown.reset();
}

void TestPdfViewerUnsavedChanges::unmodifiedDocumentIsNotAskedAbout()
{
    const DialogAnswers answers;
    QVERIFY(m_shown->viewer->maybeSave());
    QVERIFY(m_shown->openPages(2));
    QVERIFY(m_shown->viewer->maybeSave());
    QVERIFY(answers.seen().isEmpty());
}

void TestPdfViewerUnsavedChanges::questionAboutChanges()
{
    QVERIFY(m_shown->openPages(2));
    emit m_shown->grid().deletePageRequested(m_shown->idAt(0));
    QStringList texts;
    QTimer timer;
    connect(&timer, &QTimer::timeout, this, [&texts] {
        auto *box = qobject_cast<ModernMessageBox *>(QApplication::activeModalWidget());
        if (box && texts.isEmpty()) {
            for (const char *name :
                 {"messageBoxConfirmButton", "messageBoxDiscardButton", "messageBoxCancelButton"}) {
                texts.append(box->findChild<QPushButton *>(QLatin1String(name))->text());
            }
        }
    });
    timer.start(0);
    DialogAnswers answers;
    answers.addButton(u"messageBoxCancelButton"_s);
    QVERIFY(!m_shown->viewer->maybeSave());
    QCOMPARE(answers.seen(),
             (QStringList{u"保存修改"_s, u"当前 PDF 已修改，是否保存？"_s, QString()}));
    QCOMPARE(answers.kinds(), QList<int>{ModernMessageBox::Warning});
    QCOMPARE(texts, (QStringList{u"保存"_s, u"不保存"_s, u"取消"_s}));
}

void TestPdfViewerUnsavedChanges::viewerMayGoDuringTheQuestion()
{
    QVERIFY(m_shown->openPages(2));
    emit m_shown->grid().deletePageRequested(m_shown->idAt(0));
    QTimer::singleShot(0, this, [this] {
        QVERIFY(qobject_cast<ModernMessageBox *>(QApplication::activeModalWidget()));
        m_shown->viewer.reset();
    });
    QVERIFY(!m_shown->viewer->maybeSave());
    QVERIFY(!m_shown->viewer);
    QVERIFY(!QApplication::activeModalWidget());
    QCOMPARE(numbersIn(m_shown->path(u"report.pdf"_s)), (QList<int>{0, 1}));
}

void TestPdfViewerUnsavedChanges::viewerMayGoDuringTheSaveBeforeOpening()
{
    QVERIFY(m_shown->openPages(2));
    const QString second = m_shown->add(u"second.pdf"_s, PageNumbers::documentOf({30, 31}));
    emit m_shown->grid().deletePageRequested(m_shown->idAt(0));
    std::atomic<bool> writing{false};
    QSemaphore deleted;
    m_shown->viewer->setSaveFunction(
        [&](const auto &, const QString &, PdfBackendError *, QString *) {
            writing = true;
            deleted.acquire();
            return true;
        });
    QTimer timer;
    connect(&timer, &QTimer::timeout, this, [&] {
        if (writing) {
            timer.stop();
            m_shown->viewer.reset();
            deleted.release();
        }
    });
    timer.start(1);
    const DialogAnswers answers({u"messageBoxConfirmButton"_s});
    PdfViewerWidget *viewer = m_shown->viewer.get();
    QVERIFY(!viewer->openFile(second, {}));
    QVERIFY(!m_shown->viewer);
    QVERIFY(answers.allGiven());
}

void TestPdfViewerUnsavedChanges::savingAnswerSaves()
{
    QVERIFY(m_shown->openPages(2));
    emit m_shown->grid().deletePageRequested(m_shown->idAt(0));
    DialogAnswers answers;
    answers.addButton(u"messageBoxConfirmButton"_s);
    QVERIFY(m_shown->viewer->maybeSave());
    QVERIFY(!m_shown->viewer->isModified());
    QCOMPARE(numbersIn(m_shown->path(u"report.pdf"_s)), QList<int>{1});
}

void TestPdfViewerUnsavedChanges::savingAnswerThatFailsKeepsTheDocument()
{
    QVERIFY(m_shown->openPages(2));
    emit m_shown->grid().deletePageRequested(m_shown->idAt(0));
    m_shown->viewer->setSaveFunction(
        [](const auto &, const QString &, PdfBackendError *reason, QString *) {
            *reason = PdfBackendError::WriteFailed;
            return false;
        });
    DialogAnswers answers;
    answers.addButton(u"messageBoxConfirmButton"_s);
    QVERIFY(!m_shown->viewer->maybeSave());
    QVERIFY(m_shown->viewer->isModified());
    QVERIFY(answers.seen().contains(u"保存 PDF 失败"_s));
}

void TestPdfViewerUnsavedChanges::discardingAnswerGoesOnWithoutSaving()
{
    QVERIFY(m_shown->openPages(2));
    emit m_shown->grid().deletePageRequested(m_shown->idAt(0));
    DialogAnswers answers;
    answers.addButton(u"messageBoxDiscardButton"_s);
    QVERIFY(m_shown->viewer->maybeSave());
    QVERIFY(m_shown->viewer->isModified());
    QCOMPARE(numbersIn(m_shown->path(u"report.pdf"_s)), (QList<int>{0, 1}));
}

void TestPdfViewerUnsavedChanges::cancellingAnswerKeepsTheDocument()
{
    QVERIFY(m_shown->openPages(2));
    emit m_shown->grid().deletePageRequested(m_shown->idAt(0));
    DialogAnswers answers;
    answers.addButton(u"messageBoxCancelButton"_s);
    QVERIFY(!m_shown->viewer->maybeSave());
    QVERIFY(m_shown->viewer->isModified());
    QCOMPARE(numbersIn(m_shown->path(u"report.pdf"_s)), (QList<int>{0, 1}));
}

void TestPdfViewerUnsavedChanges::closedQuestionKeepsTheDocument()
{
    QVERIFY(m_shown->openPages(2));
    emit m_shown->grid().deletePageRequested(m_shown->idAt(0));
    QTimer timer;
    connect(&timer, &QTimer::timeout, this, [] {
        if (QWidget *box = QApplication::activeModalWidget()) {
            QTest::keyClick(box, Qt::Key_Escape);
        }
    });
    timer.start(1);
    QVERIFY(!m_shown->viewer->maybeSave());
    QVERIFY(m_shown->viewer->isModified());
}

void TestPdfViewerUnsavedChanges::openingAsksAboutChangesFirst_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<bool>("opened");
    QTest::addColumn<QList<int>>("firstFile");
    QTest::newRow("save") << u"messageBoxConfirmButton"_s << true << QList<int>{1};
    QTest::newRow("discard") << u"messageBoxDiscardButton"_s << true << QList<int>{0, 1};
    QTest::newRow("cancel") << u"messageBoxCancelButton"_s << false << QList<int>{0, 1};
}

void TestPdfViewerUnsavedChanges::openingAsksAboutChangesFirst()
{
    QFETCH(QString, button);
    QFETCH(bool, opened);
    QFETCH(QList<int>, firstFile);
    QVERIFY(m_shown->openPages(2));
    const QString second = m_shown->add(u"second.pdf"_s, PageNumbers::documentOf({30, 31, 32}));
    emit m_shown->grid().deletePageRequested(m_shown->idAt(0));
    DialogAnswers answers;
    answers.addButton(button);
    QCOMPARE(m_shown->viewer->openFile(second, {}), opened);
    QCOMPARE(m_shown->numbers(), opened ? QList<int>({30, 31, 32}) : QList<int>{1});
    QCOMPARE(m_shown->viewer->isModified(), !opened);
    QCOMPARE(numbersIn(m_shown->path(u"report.pdf"_s)), firstFile);
}

QTEST_MAIN(TestPdfViewerUnsavedChanges)
#include "tst_pdf_viewer_unsaved_changes.moc"
