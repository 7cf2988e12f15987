// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdfcore/fidelity/fidelity_case.h"
#include "tests/pdfcore/fidelity/fidelity_lists.h"
#include "tests/support/pdf_fixture.h"

#include <QRandomGenerator>

using namespace EngineCalls;
using FidelityLists::setting;
using namespace Qt::StringLiterals;

namespace {

constexpr int kDefaultRuns = 120;
constexpr int kPictures = 2;

/// Enough pictures for all pages of a list.
constexpr int kAllPictures = 1000;

} // namespace

/// Whatever the page list is, what its documents carry comes along.
///
/// QUILLORA_FIDELITY_RUNS sets the number of lists, QUILLORA_FIDELITY_SEED the first one.
class TestFidelityRandom : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void listsOfEveryKind();

private:
    QStringList problemsOf(const QStringList &list, int pictures);

    FidelityCase m_case;
    /// The same without signatures, for pictures: fields that are no longer signed look different.
    FidelityCase m_unsigned;
};

void TestFidelityRandom::initTestCase()
{
    for (const char *prefix : {"MAIN", "OTHER", "THIRD"}) {
        m_case.add(prefix, FidelityFixture::everything(prefix).file());
        m_unsigned.add(prefix, FidelityFixture::unsignedEverything(prefix).file());
    }
    m_case.add("THIRD",
               PdfFixture::encrypted(FidelityFixture::everything("THIRD").file(), {"", "owner"}));
    for (FidelityCase *test : {&m_case, &m_unsigned}) {
        test->add("PLAIN", FidelityFixture::plain("PLAIN", FidelityFixture::kPages).file());
    }
}

void TestFidelityRandom::listsOfEveryKind()
{
    const int first = setting("QUILLORA_FIDELITY_SEED", 1);
    const int runs = setting("QUILLORA_FIDELITY_RUNS", kDefaultRuns);
    QList<FidelityLists::Document> documents;
    for (const char letter : {'M', 'O', 'T', 'P'}) {
        documents.append({letter, FidelityFixture::kPages});
    }
    for (int seed = first; seed < first + runs; ++seed) {
        const QStringList list = FidelityLists::Maker(seed, documents).make();
        const QStringList problems = problemsOf(list, kPictures);
        if (problems.isEmpty()) {
            continue;
        }
        const QStringList smallest =
            FidelityLists::smallestFailure(list, [this](const QStringList &smaller) {
                return !problemsOf(smaller, kAllPictures).isEmpty();
            });
        QFAIL(qPrintable(QStringLiteral("seed %1, list \"%2\":\n%3\nas small as \"%4\":\n%5")
                             .arg(seed)
                             .arg(list.join(u' '), problems.join(u'\n'), smallest.join(u' '),
                                  problemsOf(smallest, kAllPictures).join(u'\n'))));
    }
}

/// What is wrong with a saved list, with pictures of some of its pages.
QStringList TestFidelityRandom::problemsOf(const QStringList &list, int pictures)
{
    const QString words = list.join(u' ');
    QStringList problems = m_case.save(words)->problems();
    const QList<PdfSourcePage> pages = m_unsigned.pages(words);
    QRandomGenerator random(qChecksum(words.toLatin1()));
    const bool isWhole = pages.size() <= pictures;
    for (int i = 0; problems.isEmpty() && i < (isWhole ? pages.size() : pictures); ++i) {
        const int index = isWhole ? i : random.bounded(static_cast<int>(pages.size()));
        if (!m_case.looksLike(index, pages.at(index))) {
            problems.append(QStringLiteral("page %1 looks different").arg(index + 1));
        }
    }
    return problems;
}

QTEST_GUILESS_MAIN(TestFidelityRandom)
#include "tst_fidelity_random.moc"
