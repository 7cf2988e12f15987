// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdfcore/fidelity/fidelity_lists.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace FidelityLists {

namespace {

constexpr qsizetype kLongestList = 20;
constexpr qsizetype kLargestSubset = 10;
constexpr qsizetype kLargestPart = 6;

} // namespace

int setting(const char *name, int usual)
{
    bool isNumber = false;
    const int value = qEnvironmentVariableIntValue(name, &isNumber);
    return isNumber ? value : usual;
}

QStringList smallestFailure(QStringList list,
                            const std::function<bool(const QStringList &list)> &fails)
{
    for (qsizetype i = list.size() - 1; i >= 0 && list.size() > 1; --i) {
        QStringList smaller = list;
        smaller.removeAt(i);
        if (fails(smaller)) {
            list = smaller;
        }
    }
    return list;
}

QString Document::word(int number) const
{
    return QChar::fromLatin1(letter) + QString::number(number);
}

QStringList Document::words() const
{
    QStringList words;
    for (int number = 1; number <= pages; ++number) {
        words.append(word(number));
    }
    return words;
}

Maker::Maker(int seed, const QList<Document> &documents)
    : m_random(static_cast<quint32>(seed))
    , m_documents(documents)
{}

QStringList Maker::make()
{
    return changed(m_documents.at(below(m_documents.size())).words());
}

QStringList Maker::makeOfFirst()
{
    return changed(m_documents.constFirst().words());
}

QStringList Maker::makeSubset()
{
    QStringList list = some(m_documents.constFirst().words(), kLargestSubset);
    list.insert(below(list.size() + 1), list.at(below(list.size())));
    list[below(list.size())] += u'+' + QString::number(90 * (m_random.bounded(3) + 1));
    list.insert(below(list.size() + 1), u"_"_s);
    return list;
}

QStringList Maker::makeMixture()
{
    QStringList list;
    for (const Document &document : m_documents) {
        list += some(document.words(), kLargestPart);
    }
    const QString first = list.takeFirst();
    return QStringList{first} + some(list, list.size());
}

QStringList Maker::changed(QStringList list)
{
    for (int changes = m_random.bounded(12); changes > 0; --changes) {
        change(list);
    }
    return list.mid(0, kLongestList);
}

QString Maker::anyPage()
{
    const Document &document = m_documents.at(below(m_documents.size()));
    return document.word(m_random.bounded(document.pages) + 1);
}

QStringList Maker::some(QStringList words, qsizetype most)
{
    std::shuffle(words.begin(), words.end(), m_random);
    return words.mid(0, std::min(most, words.size()));
}

void Maker::change(QStringList &list)
{
    const auto at = [this, &list] { return below(list.size()); };
    switch (m_random.bounded(8)) {
    case 0:
    case 1:
        if (list.size() > 1) {
            list.removeAt(at());
        }
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
        for (int count = m_random.bounded(3); count >= 0; --count) {
            list.insert(at(), anyPage());
        }
        break;
    case 6: {
        QString &turned = list[at()];
        if (turned != u'_' && !turned.contains(u'+')) {
            turned += u'+' + QString::number(90 * (m_random.bounded(3) + 1));
        }
        break;
    }
    default:
        list = list.mid(at());
        break;
    }
}

} // namespace FidelityLists
