#include "tests/pdfcore/fidelity_case.h"
#include "tests/support/pdf_fixture.h"

#include <QRandomGenerator>

using namespace EngineCalls;
using namespace Qt::StringLiterals;

namespace {

constexpr int kDefaultRuns = 120;
constexpr int kLongestList = 20;
constexpr int kPictures = 2;

/// A number from the environment.
int setting(const char *name, int usual)
{
    bool isNumber = false;
    const int value = qEnvironmentVariableIntValue(name, &isNumber);
    return isNumber ? value : usual;
}

/// Page lists as they come out of editing: a document from which pages were taken, moved, turned
/// and repeated, with blank pages and pages of other documents put in. Page words are those of
/// FidelityCase.
class ListMaker
{
public:
    explicit ListMaker(int seed)
        : m_random(static_cast<quint32>(seed))
    {}

    QStringList make()
    {
        static constexpr std::array kMain{'M', 'O', 'T', 'P'};
        const char main = kMain.at(static_cast<std::size_t>(m_random.bounded(4)));
        QStringList list;
        for (int number = 1; number <= FidelityFixture::kPages; ++number)
            list.append(word(main, number));
        for (int changes = m_random.bounded(12); changes > 0; --changes)
            change(list);
        return list.mid(0, kLongestList);
    }

private:
    static QString word(char document, int number)
    {
        return QChar::fromLatin1(document) + QString::number(number);
    }

    QString anyPage()
    {
        static constexpr std::array kDocuments{'M', 'O', 'T', 'P'};
        return word(kDocuments.at(static_cast<std::size_t>(m_random.bounded(4))),
                    m_random.bounded(FidelityFixture::kPages) + 1);
    }

    void change(QStringList &list)
    {
        const auto at = [this, &list] { return m_random.bounded(static_cast<int>(list.size())); };
        switch (m_random.bounded(8)) {
        case 0:
        case 1:
            if (list.size() > 1)
                list.removeAt(at());
            break;
        case 2:
            list.move(at(), at());
            break;
        case 3:
            list.insert(at(), list.at(at()));
            break;
        case 4:
            list.insert(at(), u"_"_s);
            break;
        case 5:
            for (int count = m_random.bounded(3); count >= 0; --count)
                list.insert(at(), anyPage());
            break;
        case 6: {
            QString &turned = list[at()];
            if (turned != u'_' && !turned.contains(u'+'))
                turned += u'+' + QString::number(90 * (m_random.bounded(3) + 1));
            break;
        }
        default:
            list = list.mid(at());
            break;
        }
    }

    QRandomGenerator m_random;
};

} // namespace

/// Whatever the page list is, what its documents carry comes along.
///
/// QUILLORA_FIDELITY_RUNS sets the number of lists, QUILLORA_FIDELITY_SEED the first one.
class FidelityRandomTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void listsOfEveryKind();

private:
    QStringList problemsOf(const QStringList &list, int pictures);
    QStringList smallestFailure(QStringList list);

    FidelityCase m_case;
    /// The same without signatures, for pictures: fields that are no longer signed look different.
    FidelityCase m_unsigned;
};

void FidelityRandomTest::initTestCase()
{
    for (const char *prefix : {"MAIN", "OTHER", "THIRD"}) {
        m_case.add(prefix, FidelityFixture::everything(prefix).file());
        m_unsigned.add(prefix, FidelityFixture::unsignedEverything(prefix).file());
    }
    m_case.add("THIRD",
               PdfFixture::encrypted(FidelityFixture::everything("THIRD").file(), {"third", "o"}),
               u"third"_s);
    for (FidelityCase *test : {&m_case, &m_unsigned})
        test->add("PLAIN", FidelityFixture::plain("PLAIN", FidelityFixture::kPages).file());
}

void FidelityRandomTest::listsOfEveryKind()
{
    const int first = setting("QUILLORA_FIDELITY_SEED", 1);
    const int runs = setting("QUILLORA_FIDELITY_RUNS", kDefaultRuns);
    for (int seed = first; seed < first + runs; ++seed) {
        const QStringList list = ListMaker(seed).make();
        const QStringList problems = problemsOf(list, kPictures);
        if (problems.isEmpty())
            continue;
        const QStringList smallest = smallestFailure(list);
        QFAIL(qPrintable(QStringLiteral("seed %1, list \"%2\":\n%3\nas small as \"%4\":\n%5")
                             .arg(seed)
                             .arg(list.join(u' '), problems.join(u'\n'), smallest.join(u' '),
                                  problemsOf(smallest, kLongestList).join(u'\n'))));
    }
}

/// What is wrong with a saved list, with pictures of some of its pages.
QStringList FidelityRandomTest::problemsOf(const QStringList &list, int pictures)
{
    const QString words = list.join(u' ');
    QStringList problems = m_case.save(words)->problems();
    const QList<PdfSourcePage> pages = m_unsigned.pages(words);
    QRandomGenerator random(qChecksum(words.toLatin1()));
    const bool isWhole = pages.size() <= pictures;
    for (int i = 0; problems.isEmpty() && i < (isWhole ? pages.size() : pictures); ++i) {
        const int index = isWhole ? i : random.bounded(static_cast<int>(pages.size()));
        if (!m_case.looksLike(index, pages.at(index)))
            problems.append(QStringLiteral("page %1 looks different").arg(index + 1));
    }
    return problems;
}

/// Takes pages away from a list for as long as something is wrong with what comes of it.
QStringList FidelityRandomTest::smallestFailure(QStringList list)
{
    for (qsizetype i = list.size() - 1; i >= 0 && list.size() > 1; --i) {
        QStringList smaller = list;
        smaller.removeAt(i);
        if (!problemsOf(smaller, kLongestList).isEmpty())
            list = smaller;
    }
    return list;
}

QTEST_GUILESS_MAIN(FidelityRandomTest)
#include "tst_fidelity_random.moc"
