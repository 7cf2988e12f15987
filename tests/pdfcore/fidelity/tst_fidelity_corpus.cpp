// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdfcore/fidelity/fidelity_baseline.h"
#include "tests/pdfcore/fidelity/fidelity_case.h"
#include "tests/pdfcore/fidelity/fidelity_corpus.h"
#include "tests/pdfcore/fidelity/fidelity_lists.h"

#include <QDirIterator>
#include <QFileInfo>
#include <QMap>

#include <algorithm>

using FidelityLists::Maker;
using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kUsualPages = 60;
constexpr int kPictures = 2;

struct SampleFile
{
    QString name;     ///< Relative to the folder.
    QByteArray main;  ///< With marks that begin with MAIN.
    QByteArray other; ///< With marks that begin with OTHER.
    int pages = 0;
};

/// How often the page that comes most often is in a list.
int mostCopies(const QList<PdfSourcePage> &pages)
{
    QMap<std::pair<QString, int>, int> counts;
    int most = 1;
    for (const PdfSourcePage &page : pages) {
        if (!page.isBlank) {
            most = std::max(most, ++counts[{page.filePath, page.pageIndex}]);
        }
    }
    return most;
}

} // namespace

/// Whatever becomes of the pages of real files, what the files carry comes along.
///
/// QUILLORA_FIDELITY_RUNS sets the number of random lists of each kind, QUILLORA_FIDELITY_SEED the
/// first seed, QUILLORA_FIDELITY_PAGES the most pages that a file may have, QUILLORA_FIDELITY_FILES
/// a text that the names of the files must contain, QUILLORA_FIDELITY_EVERY that only each so many
/// files are looked at.
class TestFidelityCorpus : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void savesKeepWhatFilesCarry_data();
    void savesKeepWhatFilesCarry();
    void cleanupTestCase();

private:
    void addFile(const QString &path, const QString &name);
    QStringList problemsOf(const QString &list, FidelityCase &documents, int pictures);
    QStringList pictureProblems(const QList<PdfSourcePage> &pages, const FidelityCase &documents,
                                const FidelityComparison &comparison, int pictures);
    const FidelityBaseline &baselineOf(const QString &path);
    void count(const QString &what) { ++m_counts[what]; }

    QList<SampleFile> m_files;
    QMap<QString, FidelityBaseline> m_baselines; ///< Of the sources of the present row, by path.
    QMap<QString, int> m_counts;
};

void TestFidelityCorpus::initTestCase()
{
    const QString corpus = qEnvironmentVariable("QUILLORA_CORPUS", QStringLiteral(QUILLORA_CORPUS));
    if (!QFileInfo(corpus).isDir()) {
        QSKIP("The folder with sample files is absent; the test is skipped.");
    }
    QStringList paths;
    QDirIterator it(corpus, {QStringLiteral("*.pdf")}, QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        paths.append(it.next());
    }
    paths.sort();
    const QString wanted = qEnvironmentVariable("QUILLORA_FIDELITY_FILES");
    const int every = std::max(1, FidelityLists::setting("QUILLORA_FIDELITY_EVERY", 1));
    for (qsizetype i = 0; i < paths.size(); i += every) {
        const QString &path = paths.at(i);
        if (path.contains(wanted)) {
            addFile(path, QDir(corpus).relativeFilePath(path));
        }
    }
    QVERIFY(!m_files.isEmpty());
}

void TestFidelityCorpus::addFile(const QString &path, const QString &name)
{
    FidelityDocument document(path);
    if (!document.problem().isEmpty()) {
        count(document.problem().contains(u"invalid password"_s) ? u"files: need a password"_s
                                                                 : u"files: QPDF cannot read"_s);
        return;
    }
    const int most = FidelityLists::setting("QUILLORA_FIDELITY_PAGES", kUsualPages);
    const QStringList features = FidelityCorpus::features(document);
    if (document.marks().isEmpty()) {
        count(u"files: no pages"_s);
    } else if (features.isEmpty()) {
        count(u"files: nothing but pages"_s);
    } else if (document.marks().size() > most) {
        count(u"files: too many pages"_s);
    } else {
        SampleFile file{name, FidelityCorpus::marked(document, "MAIN"), {}, 0};
        FidelityDocument again(path);
        file.other = FidelityCorpus::marked(again, "OTHER");
        file.pages = static_cast<int>(document.marks().size());
        if (file.main.isEmpty() || file.other.isEmpty()) {
            count(u"files: QPDF cannot write"_s);
            return;
        }
        for (const QString &feature : features) {
            count(u"files with "_s + feature);
        }
        m_files.append(file);
    }
}

void TestFidelityCorpus::savesKeepWhatFilesCarry_data()
{
    QTest::addColumn<qsizetype>("index");
    for (qsizetype i = 0; i < m_files.size(); ++i) {
        QTest::newRow(qPrintable(m_files.at(i).name)) << i;
    }
}

void TestFidelityCorpus::savesKeepWhatFilesCarry()
{
    QFETCH(qsizetype, index);
    const SampleFile &file = m_files.at(index);
    const int first = FidelityLists::setting("QUILLORA_FIDELITY_SEED", 1);
    const int runs = FidelityLists::setting("QUILLORA_FIDELITY_RUNS", 1);
    QRandomGenerator random(qChecksum(file.name.toUtf8()));
    FidelityCase documents;
    documents.add("MAIN", file.main);
    m_baselines.clear();

    const FidelityLists::Document main{'M', file.pages};
    QStringList problems;
    const auto check = [&](const QString &list, int pictures = 0) {
        for (const QString &problem : problemsOf(list, documents, pictures)) {
            problems.append(u"\""_s + list + u"\": "_s + problem);
        }
    };
    check(QStringLiteral("M1-%1").arg(file.pages));
    if (file.pages > 1) {
        check(QStringLiteral("M%1-1").arg(file.pages));
    }
    for (int run = first; run < first + runs; ++run) {
        const SampleFile &other = m_files.at(random.bounded(static_cast<int>(m_files.size())));
        m_baselines.remove(documents.add("OTHER", other.other));
        const int seed = static_cast<int>(random.generate() & 0xffffU) + run;
        Maker maker(seed, {main, {'O', other.pages}});
        check(maker.makeSubset().join(u' '), kPictures);
        const qsizetype before = problems.size();
        check(maker.makeMixture().join(u' '), kPictures);
        if (run > first) {
            check(maker.makeOfFirst().join(u' '), kPictures);
        }
        if (problems.size() > before) {
            problems.append(u"(with O from "_s + other.name + u')');
        }
    }
    NO_PROBLEMS(problems);
}

const FidelityBaseline &TestFidelityCorpus::baselineOf(const QString &path)
{
    const auto known = m_baselines.constFind(path);
    return known != m_baselines.constEnd() ? *known
                                           : *m_baselines.insert(path, FidelityBaseline(path));
}

/// What is wrong with a saved list, with pictures of some of its pages.
QStringList TestFidelityCorpus::problemsOf(const QString &list, FidelityCase &documents,
                                           int pictures)
{
    const QList<PdfSourcePage> pages = documents.pages(list);
    FidelityBaseline baseline;
    QStringList sources;
    for (const PdfSourcePage &page : pages) {
        if (!page.isBlank && !sources.contains(page.filePath)) {
            sources.append(page.filePath);
            baseline.add(baselineOf(page.filePath));
        }
    }
    count(u"lists"_s);
    QFile::remove(documents.output());
    const std::unique_ptr<FidelityComparison> comparison = documents.save(pages);
    QStringList problems = comparison->differences();
    problems += baseline.newProblems(documents.output(), comparison->output(), mostCopies(pages));
    if (problems.isEmpty()) {
        problems += pictureProblems(pages, documents, *comparison, pictures);
    }
    return problems;
}

QStringList TestFidelityCorpus::pictureProblems(const QList<PdfSourcePage> &pages,
                                                const FidelityCase &documents,
                                                const FidelityComparison &comparison, int pictures)
{
    QStringList problems;
    QRandomGenerator random(static_cast<quint32>(pages.size()));
    for (int i = 0; i < std::min<int>(pictures, static_cast<int>(pages.size())); ++i) {
        const int index = random.bounded(static_cast<int>(pages.size()));
        const PdfSourcePage &page = pages.at(index);
        FidelityDocument *source = comparison.source(index);
        // What is no longer signed may look different.
        if (source != nullptr && FidelityCorpus::isSigned(*source, page.pageIndex)) {
            count(u"pictures: left out, signed"_s);
            continue;
        }
        // The picture of the page is turned as a whole, the page in the file is not.
        if (source != nullptr && page.rotation != 0 &&
            FidelityCorpus::hasUpright(*source, page.pageIndex)) {
            count(u"pictures: left out, something stays upright"_s);
            continue;
        }
        if (FidelityDocument fresh(page.filePath);
            source != nullptr && FidelityCorpus::hasLooseParts(fresh, page.pageIndex)) {
            count(u"pictures: left out, values were missing"_s);
            continue;
        }
        switch (documents.likeness(index, page)) {
        case FidelityCase::Likeness::NoPicture:
            count(u"pictures: left out, the source has none"_s);
            break;
        case FidelityCase::Likeness::Same:
        case FidelityCase::Likeness::Similar:
            count(u"pictures"_s);
            break;
        case FidelityCase::Likeness::Different:
            problems.append(QStringLiteral("page %1 looks different").arg(index + 1));
            break;
        }
    }
    return problems;
}

void TestFidelityCorpus::cleanupTestCase()
{
    for (auto it = m_counts.cbegin(); it != m_counts.cend(); ++it) {
        qInfo().noquote() << QStringLiteral("%1 %2").arg(it.value(), 6).arg(it.key());
    }
}

QTEST_GUILESS_MAIN(TestFidelityCorpus)
#include "tst_fidelity_corpus.moc"
