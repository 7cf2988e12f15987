// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/pdf_file_revision.h"
#include "tests/pdfcore/engine_calls.h"
#include "tests/support/pdf_fixture.h"

#include <QCoreApplication>
#include <QDirIterator>
#include <QProcess>
#include <QRandomGenerator>
#include <QStandardPaths>

#include <algorithm>

using namespace EngineCalls;
using namespace Qt::StringLiterals;

namespace {

constexpr int kPages = 40;
constexpr int kRounds = 60;

/// What the killed process does: it turns the order of the pages over and over again, in place.
int saveForever(const QString &path)
{
    for (;;) {
        PdfDocumentInfo info;
        if (!PdfEditorBackend::inspectDocument(path, {}, &info, nullptr, nullptr)) {
            return 1;
        }
        QList<PdfSourcePage> pages;
        for (qsizetype i = info.pageSizes.size(); i > 0; --i) {
            pages.append(filePage(path, static_cast<int>(i) - 1));
            pages.last().revision = info.revision;
        }
        if (!save(pages, path).ok) {
            return 2;
        }
    }
}

} // namespace

class TestEngineKill : public QObject
{
    Q_OBJECT

private slots:
    void aKilledSaveLeavesTheOldFileOrTheNewOne();
};

void TestEngineKill::aKilledSaveLeavesTheOldFileOrTheNewOne()
{
    Folder folder;
    const QString path = folder.add(u"report.pdf"_s, PdfFixture::pagesByNumber(kPages));
    const QList<int> forwards = numbersIn(path);
    QList<int> backwards = forwards;
    std::reverse(backwards.begin(), backwards.end());

    QRandomGenerator random(11);
    bool sawForwards = false;
    bool sawBackwards = false;
    bool wasAtWork = false;
    for (int round = 0; round < kRounds; ++round) {
        QProcess process;
        process.start(QCoreApplication::applicationFilePath(), {u"--save"_s, path});
        QVERIFY(process.waitForStarted());
        // A slow machine gets more and more time, until it has finished a save.
        const int longest = sawForwards && sawBackwards ? 60 : 60 * (1 + round / 8);
        QVERIFY2(!process.waitForFinished(30 + static_cast<int>(random.bounded(longest))),
                 qPrintable(u"ended with %1"_s.arg(process.exitCode())));
        process.kill();
        QVERIFY(process.waitForFinished());
        // A temporary file shows that it was in the middle of a save.
        for (const QString &leftover : folder.leftovers()) {
            wasAtWork = true;
            QVERIFY(QFile::remove(folder.path(leftover)));
        }
        const QList<int> found = numbersIn(path);
        sawForwards = sawForwards || found == forwards;
        sawBackwards = sawBackwards || found == backwards;
        QVERIFY(found == forwards || found == backwards);
    }
    QVERIFY(wasAtWork);
    QVERIFY(sawForwards && sawBackwards);

    // What the killed processes had kept of superseded files goes with the next start.
    PdfFileRevision::removeLeftOvers();
    QDirIterator kept(QStandardPaths::writableLocation(QStandardPaths::CacheLocation) +
                          u"/quillora-sources"_s,
                      {u"*.pdf"_s}, QDir::Files, QDirIterator::Subdirectories);
    QVERIFY2(!kept.hasNext(), qPrintable(kept.next()));
}

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    QStandardPaths::setTestModeEnabled(true);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == u"--save"_s) {
        return saveForever(arguments.value(2));
    }
    TestEngineKill test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_engine_kill.moc"
