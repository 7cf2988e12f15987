// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/core/pdf_document_model.h"
#include "tests/pdf/core/model_signal_log.h"
#include "tests/support/pdf_fixture.h"

#include <QTemporaryDir>
#include <QTest>

namespace {

using Ids = QList<PdfPageId>;

const QList<QSizeF> kThreePages{QSizeF(595, 842), QSizeF(842, 595), QSizeF(300, 400)};
const QString kPassword = QStringLiteral("secret");

QByteArray documentOf(const QList<QSizeF> &pageSizes)
{
    QList<PdfFixture::Page> pages;
    for (const QSizeF &size : pageSizes) {
        pages.append(PdfFixture::plain(size, Qt::white));
    }
    return PdfFixture::document(pages);
}

/// What the engine itself says about a file that it cannot open.
QString messageOfTheEngine(const QString &path, const QString &password)
{
    PdfDocumentInfo info;
    PdfBackendError error = PdfBackendError::None;
    QString message;
    PdfEditorBackend::inspectDocument(path, password, &info, &error, &message);
    return message;
}

/// Which pages are marked as those of the document that was opened.
QList<bool> marksOf(const PdfDocumentModel &model)
{
    QList<bool> marks;
    for (const PdfSourcePage &page : model.sourcePages()) {
        marks.append(page.isOfMainDocument);
    }
    return marks;
}

/// Everything of a model that a failed operation must leave alone.
struct ModelState
{
    explicit ModelState(const PdfDocumentModel &model)
        : pages(model.pages())
        , path(model.documentPath())
        , password(model.documentPassword())
        , revision(model.documentRevision())
        , modified(model.isModified())
    {}

    friend bool operator==(const ModelState &, const ModelState &) = default;

    QList<PdfPageRecord> pages;
    QString path;
    QString password;
    quint64 revision;
    bool modified;
};

} // namespace

/// Opening files into the model and inserting files.
class TestPdfDocumentModelFiles final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void loadEffects();
    void loadedPagesAreOriginalAndUnchanged();
    void loadReplacesTheDocumentAndItsState();
    void resetShowsTheLoadedDocument();
    void identifiersGoOnAcrossDocuments();
    void failedLoadChangesNothing_data();
    void failedLoadChangesNothing();
    void protectedFileOpensWithItsPassword();
    void outArgumentsMayBeLeftOut();

    void insertEffects();
    void insertGoesToTheClampedRow_data();
    void insertGoesToTheClampedRow();
    void insertedPagesCarryTheirFileAndPassword();
    void insertOfAFileWithoutPagesIsAnEditAllTheSame();
    void failedInsertChangesNothing_data();
    void failedInsertChangesNothing();
    void pagesOfTheOpenedFileAreMarked();
    void savingElsewhereLeavesTheMarks();

private:
    void addFailures();

    QTemporaryDir m_folder;
    QString m_threePages;
    QString m_twoPages;
    QString m_protected;
    QString m_broken;
    QString m_missing;
};

void TestPdfDocumentModelFiles::initTestCase()
{
    QVERIFY(m_folder.isValid());
    m_threePages = m_folder.filePath(QStringLiteral("三页 ü.pdf"));
    m_twoPages = m_folder.filePath(QStringLiteral("two.pdf"));
    m_protected = m_folder.filePath(QStringLiteral("protected.pdf"));
    m_broken = m_folder.filePath(QStringLiteral("broken.pdf"));
    m_missing = m_folder.filePath(QStringLiteral("missing.pdf"));

    PdfFixture::Encryption encryption;
    encryption.userPassword = kPassword.toUtf8();
    encryption.ownerPassword = QByteArrayLiteral("owner");
    QVERIFY(PdfFixture::write(m_threePages, documentOf(kThreePages)));
    QVERIFY(PdfFixture::write(m_twoPages, documentOf({QSizeF(100, 200), QSizeF(200, 100)})));
    QVERIFY(PdfFixture::write(m_protected,
                              PdfFixture::encrypted(documentOf({QSizeF(500, 600)}), encryption)));
    QVERIFY(PdfFixture::write(m_broken, QByteArrayLiteral("not a document")));
}

void TestPdfDocumentModelFiles::loadEffects()
{
    ObservedModel observed;
    PdfBackendError error = PdfBackendError::WriteFailed;
    QString message = QStringLiteral("stale");
    for (const quint64 revision : {1U, 2U}) {
        QVERIFY(observed.model.loadDocument(m_threePages, QString(), &error, &message));
        QCOMPARE(error, PdfBackendError::None);
        QVERIFY(message.isEmpty());
        QCOMPARE(observed.log.take(),
                 (QStringList{QStringLiteral("modelReset"), QStringLiteral("selectionChanged"),
                              QStringLiteral("modifiedChanged false"),
                              QStringLiteral("documentReset")}));
        QCOMPARE(observed.model.documentRevision(), revision);
        QVERIFY(!observed.model.isModified());
    }
}

void TestPdfDocumentModelFiles::loadedPagesAreOriginalAndUnchanged()
{
    ObservedModel observed;
    QVERIFY(observed.model.loadDocument(m_threePages, QString(), nullptr, nullptr));
    QCOMPARE(observed.model.documentPath(), m_threePages);
    QCOMPARE(observed.model.rowCount(), 3);
    for (int row = 0; row < 3; ++row) {
        PdfPageRecord expected;
        expected.id = static_cast<PdfPageId>(row) + 1;
        expected.sourcePath = m_threePages;
        expected.sourcePageIndex = row;
        expected.pageSize = kThreePages.at(row);
        expected.revision = observed.model.pageAt(0)->revision;
        QCOMPARE(*observed.model.pageAt(row), expected);
        QCOMPARE(expected.revision->path(), m_threePages);
    }
}

void TestPdfDocumentModelFiles::loadReplacesTheDocumentAndItsState()
{
    ObservedModel observed;
    QVERIFY(observed.model.loadDocument(m_threePages, QString(), nullptr, nullptr));
    observed.model.selectAll();
    observed.model.rotatePages({1}, 90);
    const quint64 revision = observed.model.documentRevision();
    QVERIFY(observed.model.loadDocument(m_twoPages, QString(), nullptr, nullptr));
    QCOMPARE(observed.model.rowCount(), 2);
    QCOMPARE(observed.model.documentPath(), m_twoPages);
    QVERIFY(observed.model.selectedRows().isEmpty());
    QVERIFY(!observed.model.isModified());
    QCOMPARE(observed.model.documentRevision(), revision + 1);
}

void TestPdfDocumentModelFiles::resetShowsTheLoadedDocument()
{
    ObservedModel observed;
    PdfDocumentModel &model = observed.model;
    QVERIFY(model.loadDocument(m_protected, kPassword, nullptr, nullptr));
    model.rotatePages({1}, 90);
    const quint64 revision = model.documentRevision();
    int resets = 0;
    connect(&model, &QAbstractItemModel::modelReset, this, [&] {
        ++resets;
        QCOMPARE(model.rowCount(), 2);
        QCOMPARE(model.documentPath(), m_twoPages);
        QCOMPARE(model.documentPassword(), QString());
        QCOMPARE(model.documentRevision(), revision + 1);
        QVERIFY(!model.isModified());
    });
    QVERIFY(model.loadDocument(m_twoPages, QString(), nullptr, nullptr));
    QCOMPARE(resets, 1);
}

void TestPdfDocumentModelFiles::identifiersGoOnAcrossDocuments()
{
    ObservedModel observed;
    for (PdfPageId id = 1; id <= 5; ++id) {
        QCOMPARE(observed.model.insertBlankPage(-1, {}), id);
    }
    QVERIFY(observed.model.loadDocument(m_threePages, QString(), nullptr, nullptr));
    QCOMPARE(idsOf(observed.model), (Ids{6, 7, 8}));
}

void TestPdfDocumentModelFiles::pagesOfTheOpenedFileAreMarked()
{
    PdfDocumentModel model;
    QVERIFY(model.loadDocument(m_threePages, {}, nullptr, nullptr));
    QVERIFY(model.insertDocument(m_twoPages, 0, {}, nullptr, nullptr));
    model.insertBlankPage(0, {});
    // A copy of a page of the opened file is one of its pages as well.
    model.duplicatePages({model.pageAt(3)->id});
    QCOMPARE(marksOf(model), (QList<bool>{false, false, false, true, true, true, true}));

    QVERIFY(model.loadDocument(m_twoPages, {}, nullptr, nullptr));
    QVERIFY(model.insertDocument(m_threePages, 2, {}, nullptr, nullptr));
    QCOMPARE(marksOf(model), (QList<bool>{true, true, false, false, false}));
}

void TestPdfDocumentModelFiles::savingElsewhereLeavesTheMarks()
{
    PdfDocumentModel model;
    QVERIFY(model.loadDocument(m_threePages, {}, nullptr, nullptr));
    QVERIFY(model.insertDocument(m_twoPages, 3, {}, nullptr, nullptr));
    const QList<bool> marks{true, true, true, false, false};
    // Under a new name, and over the file that pages were taken from.
    for (const QString &target : {m_folder.filePath(QStringLiteral("copy.pdf")), m_twoPages}) {
        model.markSaved(target);
        QCOMPARE(model.documentPath(), target);
        QCOMPARE(marksOf(model), marks);
    }
}

void TestPdfDocumentModelFiles::addFailures()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("password");
    QTest::addColumn<PdfBackendError>("expected");
    QTest::newRow("missing file") << m_missing << QString() << PdfBackendError::FileNotFound;
    QTest::newRow("broken file") << m_broken << QString() << PdfBackendError::InvalidDocument;
    QTest::newRow("password needed")
        << m_protected << QString() << PdfBackendError::PasswordRequired;
    QTest::newRow("password wrong")
        << m_protected << QStringLiteral("guess") << PdfBackendError::InvalidPassword;
}

void TestPdfDocumentModelFiles::failedLoadChangesNothing_data()
{
    addFailures();
}

void TestPdfDocumentModelFiles::failedLoadChangesNothing()
{
    QFETCH(QString, path);
    QFETCH(QString, password);
    QFETCH(PdfBackendError, expected);
    ObservedModel observed;
    QVERIFY(observed.model.loadDocument(m_threePages, QString(), nullptr, nullptr));
    observed.model.rotatePages({2}, 90);
    observed.log.take();
    const ModelState before(observed.model);

    PdfBackendError error = PdfBackendError::None;
    QString message = QStringLiteral("stale");
    QVERIFY(!observed.model.loadDocument(path, password, &error, &message));
    QCOMPARE(error, expected);
    QCOMPARE(message, messageOfTheEngine(path, password));
    QVERIFY(ModelState(observed.model) == before);
    QCOMPARE(observed.log.take(), QStringList());
    QCOMPARE(observed.model.insertBlankPage(-1, {}), 4U);
}

void TestPdfDocumentModelFiles::protectedFileOpensWithItsPassword()
{
    ObservedModel observed;
    PdfBackendError error = PdfBackendError::None;
    QString message;
    QVERIFY2(observed.model.loadDocument(m_protected, kPassword, &error, &message),
             qPrintable(message));
    QCOMPARE(observed.model.documentPassword(), kPassword);
    QCOMPARE(observed.model.rowCount(), 1);
    QCOMPARE(observed.model.pageAt(0)->password, kPassword);
    QCOMPARE(observed.model.pageAt(0)->pageSize, QSizeF(500, 600));
    QCOMPARE(observed.model.sourcePages().at(0).password, kPassword);
}

void TestPdfDocumentModelFiles::outArgumentsMayBeLeftOut()
{
    ObservedModel observed;
    QVERIFY(!observed.model.loadDocument(m_missing, QString(), nullptr, nullptr));
    QVERIFY(!observed.model.insertDocument(m_missing, 0, QString(), nullptr, nullptr));
    QVERIFY(observed.model.insertDocument(m_twoPages, 0, QString(), nullptr, nullptr));
}

void TestPdfDocumentModelFiles::insertEffects()
{
    ObservedModel observed;
    QVERIFY(observed.model.loadDocument(m_twoPages, QString(), nullptr, nullptr));
    observed.log.take();
    const quint64 revision = observed.model.documentRevision();
    QVERIFY(observed.model.insertDocument(m_threePages, 1, QString(), nullptr, nullptr));
    QCOMPARE(observed.log.take(), (QStringList{QStringLiteral("rowsInserted 1-3"),
                                               QStringLiteral("modifiedChanged true"),
                                               QStringLiteral("pageOrderChanged")}));
    QCOMPARE(observed.model.documentRevision(), revision + 1);
    QVERIFY(observed.model.isModified());
    QCOMPARE(idsOf(observed.model), (Ids{1, 3, 4, 5, 2}));
    QCOMPARE(observed.model.documentPath(), m_twoPages);

    QVERIFY(observed.model.insertDocument(m_threePages, -1, QString(), nullptr, nullptr));
    QCOMPARE(observed.log.take(),
             (QStringList{QStringLiteral("rowsInserted 5-7"), QStringLiteral("pageOrderChanged")}));
    QCOMPARE(observed.model.documentRevision(), revision + 2);
}

void TestPdfDocumentModelFiles::insertGoesToTheClampedRow_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<QList<PdfPageId>>("order");
    QTest::newRow("-3") << -3 << Ids{1, 2, 3, 4, 5};
    QTest::newRow("-1") << -1 << Ids{1, 2, 3, 4, 5};
    QTest::newRow("0") << 0 << Ids{4, 5, 1, 2, 3};
    QTest::newRow("2") << 2 << Ids{1, 2, 4, 5, 3};
    QTest::newRow("at the end") << 3 << Ids{1, 2, 3, 4, 5};
    QTest::newRow("beyond the end") << 1000 << Ids{1, 2, 3, 4, 5};
}

void TestPdfDocumentModelFiles::insertGoesToTheClampedRow()
{
    QFETCH(int, row);
    QFETCH(QList<PdfPageId>, order);
    ObservedModel observed;
    QVERIFY(observed.model.loadDocument(m_threePages, QString(), nullptr, nullptr));
    QVERIFY(observed.model.insertDocument(m_twoPages, row, QString(), nullptr, nullptr));
    QCOMPARE(idsOf(observed.model), order);
}

void TestPdfDocumentModelFiles::insertedPagesCarryTheirFileAndPassword()
{
    ObservedModel observed;
    QVERIFY(observed.model.loadDocument(m_twoPages, QString(), nullptr, nullptr));
    QVERIFY(observed.model.insertDocument(m_protected, 1, kPassword, nullptr, nullptr));
    PdfPageRecord expected;
    expected.id = 3;
    expected.sourcePath = m_protected;
    expected.password = kPassword;
    expected.sourcePageIndex = 0;
    expected.pageSize = QSizeF(500, 600);
    expected.origin = PdfPageOrigin::Inserted;
    expected.changed = true;
    expected.revision = observed.model.pageAt(1)->revision;
    QCOMPARE(*observed.model.pageAt(1), expected);
    QCOMPARE(expected.revision->path(), m_protected);
    QVERIFY(observed.model.documentPassword().isEmpty());
}

void TestPdfDocumentModelFiles::insertOfAFileWithoutPagesIsAnEditAllTheSame()
{
    const QString noPages = m_folder.filePath(QStringLiteral("none.pdf"));
    QVERIFY(PdfFixture::write(noPages, documentOf({})));
    ObservedModel observed;
    QVERIFY(observed.model.loadDocument(m_twoPages, QString(), nullptr, nullptr));
    observed.log.take();
    const quint64 revision = observed.model.documentRevision();
    QVERIFY(observed.model.insertDocument(noPages, 1, QString(), nullptr, nullptr));
    QCOMPARE(observed.log.take(), (QStringList{QStringLiteral("modifiedChanged true"),
                                               QStringLiteral("pageOrderChanged")}));
    QCOMPARE(idsOf(observed.model), (Ids{1, 2}));
    QCOMPARE(observed.model.documentRevision(), revision + 1);
    QVERIFY(observed.model.isModified());
}

void TestPdfDocumentModelFiles::failedInsertChangesNothing_data()
{
    addFailures();
}

void TestPdfDocumentModelFiles::failedInsertChangesNothing()
{
    QFETCH(QString, path);
    QFETCH(QString, password);
    QFETCH(PdfBackendError, expected);
    ObservedModel observed;
    QVERIFY(observed.model.loadDocument(m_threePages, QString(), nullptr, nullptr));
    observed.log.take();
    const ModelState before(observed.model);

    PdfBackendError error = PdfBackendError::None;
    QString message = QStringLiteral("stale");
    QVERIFY(!observed.model.insertDocument(path, 1, password, &error, &message));
    QCOMPARE(error, expected);
    QCOMPARE(message, messageOfTheEngine(path, password));
    QVERIFY(ModelState(observed.model) == before);
    QCOMPARE(observed.log.take(), QStringList());
    QCOMPARE(observed.model.insertBlankPage(-1, {}), 4U);
}

QTEST_GUILESS_MAIN(TestPdfDocumentModelFiles)
#include "tst_pdf_document_model_files.moc"
