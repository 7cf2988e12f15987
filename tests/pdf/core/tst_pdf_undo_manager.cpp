// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/core/pdf_document_model.h"
#include "pdf/core/pdf_undo_manager.h"
#include "tests/pdf/core/model_signal_log.h"
#include "tests/support/pdf_fixture.h"

#include <QMimeData>
#include <QSet>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QUndoCommand>
#include <QUndoStack>

#include <functional>
#include <memory>

namespace {

using Ids = QList<PdfPageId>;
using Records = QList<PdfPageRecord>;

const QString kPassword = QStringLiteral("secret");
const QString kInsertPdf = QStringLiteral("插入 PDF");
const QString kInsertBlank = QStringLiteral("插入空白页");
const QString kDuplicate = QStringLiteral("复制页面");
const QString kDelete = QStringLiteral("删除页面");
const QString kRotateLeft = QStringLiteral("向左旋转页面");
const QString kRotateRight = QStringLiteral("向右旋转页面");
const QString kMove = QStringLiteral("移动页面");

QByteArray documentOf(int pageCount)
{
    QList<PdfFixture::Page> pages;
    pages.fill(PdfFixture::plain(QSizeF(200, 300), Qt::white), pageCount);
    return PdfFixture::document(pages);
}

} // namespace

class TestPdfUndoManager final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void newHistoryIsEmptyAndClean();
    void everyEditIsOneNamedStep_data();
    void everyEditIsOneNamedStep();
    void editsReturnWhatTheModelReturns();
    void pushingTheStepDoesNotEditAgain();
    void undoAndRedoInstallTheListsAsTheyWere();
    void undoAndRedoRaiseTheRevision();
    void undoAndRedoResetTheDocument();
    void rotateLeftIsUndoneAndThePageKeepsItsIdentifier();
    void zeroRotationCountsAsRight();
    void deletingEveryPageIsUndoneWhole();
    void blankPageOfAnUndoneDeletionKeepsItsIdentifier();
    void undoRestoresTheCheckStatesOfTheTime();
    void editsThatChangeNothingMakeNoStep_data();
    void editsThatChangeNothingMakeNoStep();
    void selectingPagesMakesNoStep();
    void fullTurnIsAnEditAllTheSame();
    void failedInsertOfAProtectedFileMakesNoStep();
    void failedInsertLeavesTheRedoableSteps();
    void newEditDropsTheUndoneSteps();

    void undoingToTheSavedStateClearsModified();
    void undoingPastTheSavedStateIsModified();
    void editInsteadOfRedoNeverReachesTheSavedState();
    void markCleanClearsModifiedWithoutAStep();
    void noStepIsSavedAfterMarkUnsaved();
    void modifiedIsReportedOncePerChangeOfIt();

    void dragMakesExactlyOneMoveStep();
    void moveIsRecordedOnlyWhenTheModelHasFinishedIt();
    void refusedDropMakesNoStep();
    void movesOfOneEventAreOneStep();
    void moveComesBeforeTheEditThatFollowsIt();
    void moveBeforeASaveIsSaved();
    void undoOfAMoveIsNotObserved();

    void resetForgetsStepsAndUnfinishedMoves();
    void resetOfAnEmptyHistoryClearsModified();
    void undoIsUnavailableAfterOpeningAnotherDocument();
    void everyStepOfALongHistoryIsKept();
    void stepsOfOthersAreKeptApart();
    void modelMayGoFirst();
    void historyOfALargeDocumentStaysSmall();

private:
    /// Runs what the observed move has posted.
    static void finishMove() { QCoreApplication::processEvents(); }
    [[nodiscard]] QUndoStack *stack() const { return m_manager->undoStack(); }
    [[nodiscard]] PdfDocumentModel &model() const { return m_observed->model; }
    bool dropPage(PdfPageId id, int row);

    QTemporaryDir m_folder;
    QString m_twoPages;
    QString m_protected;
    std::unique_ptr<ObservedModel> m_observed;
    std::unique_ptr<PdfUndoManager> m_manager;
};

void TestPdfUndoManager::initTestCase()
{
    QVERIFY(m_folder.isValid());
    m_twoPages = m_folder.filePath(QStringLiteral("两页.pdf"));
    m_protected = m_folder.filePath(QStringLiteral("protected.pdf"));
    PdfFixture::Encryption encryption;
    encryption.userPassword = kPassword.toUtf8();
    encryption.ownerPassword = QByteArrayLiteral("owner");
    QVERIFY(PdfFixture::write(m_twoPages, documentOf(2)));
    QVERIFY(PdfFixture::write(m_protected, PdfFixture::encrypted(documentOf(1), encryption)));
}

void TestPdfUndoManager::init()
{
    m_observed = std::make_unique<ObservedModel>();
    m_manager = std::make_unique<PdfUndoManager>(&m_observed->model, nullptr);
    showPages(*m_observed, {1, 2, 3, 4});
}

void TestPdfUndoManager::cleanup()
{
    m_manager.reset();
    m_observed.reset();
}

bool TestPdfUndoManager::dropPage(PdfPageId id, int row)
{
    const std::unique_ptr<QMimeData> data(
        model().mimeData({model().index(model().rowForPageId(id))}));
    return model().dropMimeData(data.get(), Qt::MoveAction, row, 0, {});
}

void TestPdfUndoManager::newHistoryIsEmptyAndClean()
{
    QCOMPARE(stack()->parent(), m_manager.get());
    QCOMPARE(stack()->count(), 0);
    QCOMPARE(stack()->undoLimit(), 0);
    QVERIFY(stack()->isClean());
    QVERIFY(!stack()->canUndo());
    QVERIFY(!stack()->canRedo());
    QVERIFY(!model().isModified());
}

void TestPdfUndoManager::everyEditIsOneNamedStep_data()
{
    using Edit = std::function<void(PdfUndoManager &, const QString &)>;
    QTest::addColumn<Edit>("edit");
    QTest::addColumn<QString>("text");
    QTest::addColumn<Ids>("idsAfter");
    QTest::newRow("insert PDF") << Edit([](PdfUndoManager &manager, const QString &file) {
        manager.insertPdf(file, 1, QString(), nullptr, nullptr);
    }) << kInsertPdf << Ids{1, 5, 6, 2, 3, 4};
    QTest::newRow("insert blank page")
        << Edit([](PdfUndoManager &manager, const QString &) { manager.insertBlankPage(2, {}); })
        << kInsertBlank << Ids{1, 2, 5, 3, 4};
    QTest::newRow("duplicate") << Edit([](PdfUndoManager &manager, const QString &) {
        manager.duplicatePages({3, 1});
    }) << kDuplicate << Ids{1, 5, 2, 3, 6, 4};
    QTest::newRow("delete") << Edit([](PdfUndoManager &manager, const QString &) {
        manager.deletePages({4, 2});
    }) << kDelete << Ids{1, 3};
    QTest::newRow("rotate left") << Edit([](PdfUndoManager &manager, const QString &) {
        manager.rotatePages({1, 2}, -90);
    }) << kRotateLeft << Ids{1, 2, 3, 4};
    QTest::newRow("rotate right") << Edit([](PdfUndoManager &manager, const QString &) {
        manager.rotatePages({1, 2}, 90);
    }) << kRotateRight << Ids{1, 2, 3, 4};
}

void TestPdfUndoManager::everyEditIsOneNamedStep()
{
    using Edit = std::function<void(PdfUndoManager &, const QString &)>;
    QFETCH(Edit, edit);
    QFETCH(QString, text);
    QFETCH(Ids, idsAfter);
    const Records before = model().pages();
    edit(*m_manager, m_twoPages);
    const Records after = model().pages();
    QVERIFY(before != after);
    QCOMPARE(idsOf(model()), idsAfter);
    QCOMPARE(stack()->count(), 1);
    QCOMPARE(stack()->undoText(), text);
    QVERIFY(model().isModified());

    stack()->undo();
    QCOMPARE(model().pages(), before);
    QVERIFY(!model().isModified());
    QCOMPARE(stack()->redoText(), text);

    stack()->redo();
    QCOMPARE(model().pages(), after);
    QVERIFY(model().isModified());
}

void TestPdfUndoManager::editsReturnWhatTheModelReturns()
{
    QCOMPARE(m_manager->insertBlankPage(-1, QSizeF(300, 200)), 5U);
    QCOMPARE(model().pageAt(4)->pageSize, QSizeF(300, 200));
    QCOMPARE(m_manager->duplicatePages({2, 1}), (Ids{6, 7}));

    PdfBackendError error = PdfBackendError::WriteFailed;
    QString message = QStringLiteral("stale");
    QVERIFY(m_manager->insertPdf(m_twoPages, 0, QString(), &error, &message));
    QCOMPARE(error, PdfBackendError::None);
    QCOMPARE(message, QString());
    QVERIFY(m_manager->insertPdf(m_protected, 0, kPassword, &error, &message));
    QCOMPARE(model().pageAt(0)->password, kPassword);

    const QString missing = m_folder.filePath(QStringLiteral("missing.pdf"));
    for (const QString &file : {missing, m_protected}) {
        PdfBackendError modelError = PdfBackendError::None;
        QString modelMessage;
        QVERIFY(!model().insertDocument(file, 0, QString(), &modelError, &modelMessage));
        QVERIFY(!modelMessage.isEmpty());
        QVERIFY(!m_manager->insertPdf(file, 0, QString(), &error, &message));
        QCOMPARE(error, modelError);
        QCOMPARE(message, modelMessage);
    }
    QCOMPARE(error, PdfBackendError::PasswordRequired);
}

void TestPdfUndoManager::pushingTheStepDoesNotEditAgain()
{
    m_manager->rotatePages({1}, 90);
    QCOMPARE(m_observed->log.take(), (QStringList{QStringLiteral("dataChanged 0-0 (260 262 264)"),
                                                  QStringLiteral("modifiedChanged true")}));
    QCOMPARE(model().pageAt(0)->rotation, 90);
}

void TestPdfUndoManager::undoAndRedoInstallTheListsAsTheyWere()
{
    QList<Records> states{model().pages()};
    m_manager->rotatePages({2, 3}, 90);
    states << model().pages();
    m_manager->duplicatePages({2});
    states << model().pages();
    m_manager->deletePages({1, 5});
    states << model().pages();
    m_manager->insertBlankPage(0, {});
    states << model().pages();

    for (int step = 3; step >= 0; --step) {
        stack()->undo();
        QCOMPARE(model().pages(), states.at(step));
    }
    for (int step = 1; step <= 4; ++step) {
        stack()->redo();
        QCOMPARE(model().pages(), states.at(step));
    }
    stack()->setIndex(2);
    QCOMPARE(model().pages(), states.at(2));
}

void TestPdfUndoManager::undoAndRedoRaiseTheRevision()
{
    m_manager->rotatePages({1}, 90);
    const quint64 revision = model().documentRevision();
    stack()->undo();
    QCOMPARE(model().documentRevision(), revision + 1);
    stack()->redo();
    QCOMPARE(model().documentRevision(), revision + 2);
}

void TestPdfUndoManager::undoAndRedoResetTheDocument()
{
    m_manager->rotatePages({1}, 90);
    m_manager->rotatePages({1}, 90);
    m_observed->log.take();
    const QStringList reset{QStringLiteral("modelReset"), QStringLiteral("selectionChanged"),
                            QStringLiteral("modifiedChanged true"),
                            QStringLiteral("documentReset")};
    stack()->undo();
    QCOMPARE(m_observed->log.take(), reset);
    stack()->redo();
    QCOMPARE(m_observed->log.take(), reset);
    stack()->setIndex(1);
    m_observed->log.take();
    stack()->undo();
    QCOMPARE(m_observed->log.take(), reset + QStringList{QStringLiteral("modifiedChanged false")});
}

void TestPdfUndoManager::rotateLeftIsUndoneAndThePageKeepsItsIdentifier()
{
    m_manager->rotatePages({3}, 180);
    m_manager->rotatePages({3}, -90);
    QCOMPARE(stack()->count(), 2);
    QCOMPARE(stack()->undoText(), kRotateLeft);
    QCOMPARE(model().pageAt(2)->rotation, 90);
    stack()->undo();
    QCOMPARE(model().pageAt(2)->id, 3U);
    QCOMPARE(model().pageAt(2)->rotation, 180);
}

void TestPdfUndoManager::zeroRotationCountsAsRight()
{
    m_manager->rotatePages({3}, 0);
    QCOMPARE(stack()->undoText(), kRotateRight);
}

void TestPdfUndoManager::deletingEveryPageIsUndoneWhole()
{
    model().rotatePages({2}, 90);
    const Records before = model().pages();
    m_manager->deletePages({1, 2, 3, 4});
    QCOMPARE(idsOf(model()), (Ids{5}));
    QCOMPARE(model().pageAt(0)->origin, PdfPageOrigin::Blank);
    QCOMPARE(stack()->count(), 1);

    stack()->undo();
    QCOMPARE(model().pages(), before);
    QCOMPARE(m_manager->insertBlankPage(-1, {}), 6U);
    QCOMPARE(m_manager->duplicatePages({1}), (Ids{7}));
}

void TestPdfUndoManager::blankPageOfAnUndoneDeletionKeepsItsIdentifier()
{
    m_manager->deletePages({1, 2, 3, 4});
    stack()->undo();
    stack()->redo();
    QCOMPARE(idsOf(model()), (Ids{5}));
    QCOMPARE(m_manager->insertBlankPage(-1, {}), 6U);
}

void TestPdfUndoManager::undoRestoresTheCheckStatesOfTheTime()
{
    model().setSelectedPageIds({2, 3});
    m_manager->deletePages({2, 3});
    model().setSelectedPageIds({1});
    m_manager->rotatePages({1}, 90);

    stack()->undo();
    QCOMPARE(model().selectedPageIds(), (QSet<PdfPageId>{1}));
    stack()->undo();
    QCOMPARE(model().selectedPageIds(), (QSet<PdfPageId>{2, 3}));
    stack()->redo();
    QCOMPARE(model().selectedPageIds(), QSet<PdfPageId>());
}

void TestPdfUndoManager::editsThatChangeNothingMakeNoStep_data()
{
    using Edit = std::function<void(PdfUndoManager &)>;
    QTest::addColumn<Edit>("edit");
    QTest::newRow("delete unknown") << Edit([](PdfUndoManager &manager) {
        manager.deletePages({77, 0});
    });
    QTest::newRow("delete none") << Edit([](PdfUndoManager &manager) { manager.deletePages({}); });
    QTest::newRow("duplicate unknown")
        << Edit([](PdfUndoManager &manager) { manager.duplicatePages({77}); });
    QTest::newRow("rotate unknown")
        << Edit([](PdfUndoManager &manager) { manager.rotatePages({77}, 90); });
    QTest::newRow("insert missing file") << Edit([](PdfUndoManager &manager) {
        manager.insertPdf(QStringLiteral("missing.pdf"), 0, QString(), nullptr, nullptr);
    });
}

void TestPdfUndoManager::editsThatChangeNothingMakeNoStep()
{
    QFETCH(std::function<void(PdfUndoManager &)>, edit);
    edit(*m_manager);
    QCOMPARE(stack()->count(), 0);
    QVERIFY(!model().isModified());
    QCOMPARE(m_observed->log.take(), QStringList());
}

void TestPdfUndoManager::selectingPagesMakesNoStep()
{
    model().selectAll();
    QCOMPARE(stack()->count(), 0);
    QVERIFY(!model().isModified());
}

void TestPdfUndoManager::fullTurnIsAnEditAllTheSame()
{
    const quint64 revision = model().documentRevision();
    m_manager->rotatePages({1}, 360);
    QVERIFY(model().documentRevision() > revision);
    QCOMPARE(stack()->count(), 1);
}

void TestPdfUndoManager::failedInsertOfAProtectedFileMakesNoStep()
{
    PdfBackendError error = PdfBackendError::None;
    QVERIFY(!m_manager->insertPdf(m_protected, 0, QString(), &error, nullptr));
    QCOMPARE(error, PdfBackendError::PasswordRequired);
    QVERIFY(!m_manager->insertPdf(m_protected, 0, QStringLiteral("guess"), &error, nullptr));
    QCOMPARE(error, PdfBackendError::InvalidPassword);
    QCOMPARE(stack()->count(), 0);
    QVERIFY(stack()->isClean());
    QVERIFY(!model().isModified());

    QVERIFY(m_manager->insertPdf(m_protected, 0, kPassword, &error, nullptr));
    QCOMPARE(stack()->count(), 1);
}

void TestPdfUndoManager::failedInsertLeavesTheRedoableSteps()
{
    m_manager->rotatePages({1}, 90);
    stack()->undo();
    QVERIFY(!m_manager->insertPdf(m_protected, 0, QString(), nullptr, nullptr));
    QVERIFY(stack()->canRedo());
}

void TestPdfUndoManager::newEditDropsTheUndoneSteps()
{
    m_manager->rotatePages({1}, 90);
    m_manager->deletePages({1});
    stack()->undo();
    m_manager->insertBlankPage(0, {});
    QVERIFY(!stack()->canRedo());
    QCOMPARE(stack()->count(), 2);
    QCOMPARE(stack()->undoText(), kInsertBlank);
}

void TestPdfUndoManager::undoingToTheSavedStateClearsModified()
{
    m_manager->deletePages({4});
    model().markSaved(QString());
    m_manager->markClean();
    m_manager->rotatePages({1}, 90);
    QVERIFY(model().isModified());
    stack()->undo();
    QVERIFY(!model().isModified());
    stack()->redo();
    QVERIFY(model().isModified());
}

void TestPdfUndoManager::undoingPastTheSavedStateIsModified()
{
    m_manager->rotatePages({1}, 90);
    m_manager->markClean();
    stack()->undo();
    QVERIFY(model().isModified());
    stack()->redo();
    QVERIFY(!model().isModified());
}

void TestPdfUndoManager::editInsteadOfRedoNeverReachesTheSavedState()
{
    m_manager->rotatePages({1}, 90);
    m_manager->markClean();
    stack()->undo();
    m_manager->rotatePages({1}, 90);
    QVERIFY(model().isModified());
    stack()->undo();
    QVERIFY(model().isModified());
}

void TestPdfUndoManager::markCleanClearsModifiedWithoutAStep()
{
    model().setModified(true);
    m_manager->markClean();
    QVERIFY(!model().isModified());
    QCOMPARE(stack()->count(), 0);

    m_manager->rotatePages({1}, 90);
    m_manager->markClean();
    QVERIFY(stack()->isClean());
    QVERIFY(!model().isModified());
    QVERIFY(stack()->canUndo());
}

void TestPdfUndoManager::noStepIsSavedAfterMarkUnsaved()
{
    m_manager->rotatePages({1}, 90);
    m_manager->markUnsaved();
    QVERIFY(model().isModified());
    // The document as it was opened is not what was saved either.
    stack()->undo();
    QVERIFY(model().isModified());
    QVERIFY(!stack()->isClean());
    stack()->redo();
    QVERIFY(model().isModified());
    m_manager->markClean();
    QVERIFY(!model().isModified());
}

void TestPdfUndoManager::modifiedIsReportedOncePerChangeOfIt()
{
    const QSignalSpy modified(&model(), &PdfDocumentModel::modifiedChanged);
    m_manager->rotatePages({1}, 90);
    m_manager->rotatePages({1}, 90);
    m_manager->markClean();
    m_manager->rotatePages({1}, 90);
    QCOMPARE(modified.size(), 3);
    QCOMPARE(modified.at(0).at(0).toBool(), true);
    QCOMPARE(modified.at(1).at(0).toBool(), false);
    QCOMPARE(modified.at(2).at(0).toBool(), true);
}

void TestPdfUndoManager::dragMakesExactlyOneMoveStep()
{
    const Records before = model().pages();
    QVERIFY(dropPage(4, 1));
    const Records after = model().pages();
    QTRY_COMPARE(stack()->count(), 1);
    QCOMPARE(stack()->undoText(), kMove);
    finishMove();
    QCOMPARE(stack()->count(), 1);
    QCOMPARE(idsOf(model()), (Ids{1, 4, 2, 3}));

    stack()->undo();
    QCOMPARE(model().pages(), before);
    QVERIFY(!model().isModified());
    stack()->redo();
    QCOMPARE(model().pages(), after);

    QVERIFY(dropPage(1, 4));
    QTRY_COMPARE(stack()->count(), 2);
    QCOMPARE(idsOf(model()), (Ids{4, 2, 3, 1}));
}

void TestPdfUndoManager::moveIsRecordedOnlyWhenTheModelHasFinishedIt()
{
    int countInSignal = -1;
    connect(&model(), &PdfDocumentModel::pageOrderChanged, m_manager.get(),
            [this, &countInSignal] { countInSignal = stack()->count(); });
    QVERIFY(dropPage(4, 1));
    QCOMPARE(countInSignal, 0);
    QCOMPARE(stack()->count(), 0);
    QVERIFY(model().isModified());
    finishMove();
    QCOMPARE(stack()->count(), 1);
    QVERIFY(model().isModified());
}

void TestPdfUndoManager::refusedDropMakesNoStep()
{
    QVERIFY(!dropPage(2, 1));
    QVERIFY(!dropPage(2, 2));
    QMimeData stranger;
    stranger.setData(QStringLiteral("application/x-plenvo-page-id"),
                     QByteArray::fromHex("0000000000000063"));
    QVERIFY(!model().dropMimeData(&stranger, Qt::MoveAction, 0, 0, {}));
    finishMove();
    QCOMPARE(stack()->count(), 0);
    QVERIFY(!model().isModified());
}

void TestPdfUndoManager::movesOfOneEventAreOneStep()
{
    const Records before = model().pages();
    QVERIFY(dropPage(4, 0));
    QVERIFY(dropPage(3, 0));
    finishMove();
    QCOMPARE(stack()->count(), 1);
    QCOMPARE(idsOf(model()), (Ids{3, 4, 1, 2}));
    stack()->undo();
    QCOMPARE(model().pages(), before);
}

void TestPdfUndoManager::moveComesBeforeTheEditThatFollowsIt()
{
    QVERIFY(dropPage(4, 0));
    m_manager->rotatePages({4}, 90);
    finishMove();
    QCOMPARE(stack()->count(), 2);
    QCOMPARE(stack()->text(0), kMove);
    QCOMPARE(stack()->text(1), kRotateRight);
    stack()->undo();
    QCOMPARE(idsOf(model()), (Ids{4, 1, 2, 3}));
    QCOMPARE(model().pageAt(0)->rotation, 0);
    stack()->undo();
    QCOMPARE(idsOf(model()), (Ids{1, 2, 3, 4}));
}

void TestPdfUndoManager::moveBeforeASaveIsSaved()
{
    QVERIFY(dropPage(4, 0));
    m_manager->markClean();
    finishMove();
    QVERIFY(!model().isModified());
    QCOMPARE(stack()->undoText(), kMove);
    stack()->undo();
    QVERIFY(model().isModified());
}

void TestPdfUndoManager::undoOfAMoveIsNotObserved()
{
    QVERIFY(dropPage(4, 0));
    finishMove();
    stack()->undo();
    finishMove();
    QCOMPARE(stack()->count(), 1);
    QVERIFY(stack()->canRedo());
}

void TestPdfUndoManager::resetForgetsStepsAndUnfinishedMoves()
{
    m_manager->rotatePages({1}, 90);
    QVERIFY(dropPage(4, 0));
    QVERIFY(model().isModified());
    m_manager->reset();
    QVERIFY(!model().isModified());
    finishMove();
    QCOMPARE(stack()->count(), 0);
    QVERIFY(stack()->isClean());
    QVERIFY(!model().isModified());

    QVERIFY(dropPage(1, 0));
    finishMove();
    QCOMPARE(stack()->count(), 1);
    QCOMPARE(stack()->undoText(), kMove);
    stack()->undo();
    QCOMPARE(idsOf(model()), (Ids{4, 1, 2, 3}));
}

void TestPdfUndoManager::resetOfAnEmptyHistoryClearsModified()
{
    model().setModified(true);
    m_manager->reset();
    QVERIFY(!model().isModified());
}

void TestPdfUndoManager::undoIsUnavailableAfterOpeningAnotherDocument()
{
    m_manager->rotatePages({1}, 90);
    m_manager->deletePages({2});
    stack()->undo();
    const QSignalSpy canUndo(stack(), &QUndoStack::canUndoChanged);
    const QSignalSpy canRedo(stack(), &QUndoStack::canRedoChanged);

    QVERIFY(model().loadDocument(m_twoPages, QString(), nullptr, nullptr));
    m_manager->reset();
    QVERIFY(!stack()->canUndo());
    QVERIFY(!stack()->canRedo());
    QCOMPARE(canUndo.last().at(0).toBool(), false);
    QCOMPARE(canRedo.last().at(0).toBool(), false);
    stack()->undo();
    QCOMPARE(model().rowCount(), 2);
    QVERIFY(!model().isModified());
}

void TestPdfUndoManager::everyStepOfALongHistoryIsKept()
{
    constexpr int kSteps = 1000;
    const Records before = model().pages();
    for (int step = 0; step < kSteps; ++step) {
        m_manager->rotatePages({1}, 90);
    }
    QCOMPARE(stack()->count(), kSteps);
    stack()->setIndex(0);
    QCOMPARE(model().pages(), before);
}

void TestPdfUndoManager::stepsOfOthersAreKeptApart()
{
    const Records before = model().pages();
    stack()->push(new QUndoCommand(QStringLiteral("foreign")));
    m_manager->rotatePages({1}, 90);
    const Records rotated = model().pages();
    QCOMPARE(stack()->count(), 2);
    stack()->undo();
    QCOMPARE(model().pages(), before);
    stack()->redo();
    QCOMPARE(model().pages(), rotated);

    // With the foreign step ahead instead of behind.
    stack()->setIndex(0);
    m_manager->deletePages({2});
    QCOMPARE(stack()->count(), 1);
    QCOMPARE(idsOf(model()), (Ids{1, 3, 4}));
    stack()->undo();
    QCOMPARE(model().pages(), before);
}

void TestPdfUndoManager::modelMayGoFirst()
{
    m_manager->rotatePages({1}, 90);
    QVERIFY(dropPage(4, 0));
    m_observed.reset();
    // The move's turn comes now.
    finishMove();
    QCOMPARE(stack()->count(), 1);
    QCOMPARE(stack()->undoText(), kRotateRight);
    m_manager.reset();
    finishMove();
}

void TestPdfUndoManager::historyOfALargeDocumentStaysSmall()
{
    constexpr int kPages = 10000;
    constexpr int kEdits = 200;
    PdfDocumentModel large;
    PdfUndoManager manager(&large, nullptr);
    PdfPageRecord record;
    record.sourcePath = QStringLiteral("/documents/%1.pdf").arg(kPages);
    record.pageSize = QSizeF(595, 842);
    Records records;
    for (int page = 0; page < kPages; ++page) {
        record.id = static_cast<PdfPageId>(page) + 1;
        record.sourcePageIndex = page;
        records.append(record);
    }
    records.first().selected = true;
    records[kPages - 2].selected = true;
    large.setPages(records, false);

    for (int edit = 0; edit < kEdits; ++edit) {
        const auto page = static_cast<PdfPageId>(edit) * 40 + 1;
        switch (edit % 5) {
        case 0:
            large.setSelectedPageIds({page, kPages - page});
            manager.rotatePages({page, kPages - page}, 90);
            break;
        case 1:
            manager.insertBlankPage(edit * 40, {});
            break;
        case 2:
            manager.duplicatePages({page});
            break;
        case 3:
            large.moveRow({}, edit * 40, {}, kPages / 2);
            finishMove();
            break;
        default:
            manager.deletePages({page, kPages - page});
            break;
        }
    }
    QUndoStack *stack = manager.undoStack();
    QCOMPARE(stack->count(), kEdits);
    const Records edited = large.pages();

    // Every record that is kept anywhere holds on to the path.
    const int keptRecords = record.sourcePath.data_ptr().d_ptr()->ref_.loadRelaxed();
    QVERIFY2(keptRecords < 4 * kPages, qPrintable(QString::number(keptRecords)));

    stack->setIndex(0);
    QVERIFY(large.pages() == records);
    stack->setIndex(kEdits);
    QVERIFY(large.pages() == edited);
}

QTEST_GUILESS_MAIN(TestPdfUndoManager)
#include "tst_pdf_undo_manager.moc"
