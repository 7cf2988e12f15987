// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/core/gap_list.h"

#include <QTest>

#include <numeric>

namespace {

/// An item that counts how often any of its kind is moved or copied.
struct CountedItem
{
    static inline qint64 transfers = 0;
    int value = 0;

    CountedItem() = default;
    explicit CountedItem(int number)
        : value(number)
    {}
    CountedItem(const CountedItem &other)
        : value(other.value)
    {
        ++transfers;
    }
    CountedItem(CountedItem &&other) noexcept
        : value(other.value)
    {
        ++transfers;
    }
    CountedItem &operator=(const CountedItem &other)
    {
        value = other.value;
        ++transfers;
        return *this;
    }
    CountedItem &operator=(CountedItem &&other) noexcept
    {
        value = other.value;
        ++transfers;
        return *this;
    }
    ~CountedItem() = default;
};

QList<int> numbers(int count)
{
    QList<int> list(count);
    std::iota(list.begin(), list.end(), 0);
    return list;
}

template <typename T>
QList<T> itemByItem(const GapList<T> &list)
{
    QList<T> items;
    for (qsizetype i = 0; i < list.size(); ++i) {
        items.append(list.at(i));
    }
    return items;
}

} // namespace

class TestGapList final : public QObject
{
    Q_OBJECT

private slots:
    void emptyListHasNoItems();
    void behavesLikeAPlainListUnderRandomChanges();
    void writingThroughTheGapReachesTheRightItem();
    void copiesTakenEarlierStayAsTheyWere();
    void closedListIsHandedOutWithoutCopying();
    void descendingRemovalsMoveEachItemAFewTimesAtMost();
    void ascendingInsertionsMoveEachItemAFewTimesAtMost();
};

void TestGapList::emptyListHasNoItems()
{
    GapList<int> list;
    QVERIFY(list.isEmpty());
    QCOMPARE(list.toList(), QList<int>());
    list.insert(0, 7);
    QCOMPARE(list.takeAt(0), 7);
    QVERIFY(list.isEmpty());
}

void TestGapList::behavesLikeAPlainListUnderRandomChanges()
{
    QList<int> expected = numbers(20);
    GapList<int> list(expected);
    quint32 state = 12345;
    const auto random = [&state](qsizetype bound) {
        state = state * 1664525U + 1013904223U;
        return static_cast<qsizetype>((state >> 8) % static_cast<quint32>(bound));
    };
    for (int step = 0; step < 2000; ++step) {
        switch (random(3)) {
        case 0: {
            const qsizetype at = random(expected.size() + 1);
            expected.insert(at, step);
            list.insert(at, step);
            break;
        }
        case 1:
            if (!expected.isEmpty()) {
                const qsizetype at = random(expected.size());
                QCOMPARE(list.takeAt(at), expected.takeAt(at));
            }
            break;
        default:
            list.close();
        }
        QCOMPARE(list.size(), expected.size());
        QCOMPARE(itemByItem(list), expected);
        QCOMPARE(list.toList(), expected);
    }
}

void TestGapList::writingThroughTheGapReachesTheRightItem()
{
    GapList<int> list(numbers(5));
    list.insert(2, 50);
    list[1] = 10;
    list[4] = 40;
    QCOMPARE(list.toList(), (QList<int>{0, 10, 50, 2, 40, 4}));
    list.close();
    QCOMPARE(list.toList(), (QList<int>{0, 10, 50, 2, 40, 4}));
}

void TestGapList::copiesTakenEarlierStayAsTheyWere()
{
    GapList<int> list(numbers(4));
    const QList<int> before = list.toList();
    list[0] = 9;
    list.takeAt(2);
    list.insert(0, 8);
    list.close();
    QCOMPARE(before, numbers(4));
    QCOMPARE(list.toList(), (QList<int>{8, 9, 1, 3}));
}

void TestGapList::closedListIsHandedOutWithoutCopying()
{
    GapList<int> list(numbers(100));
    list.takeAt(50);
    list.close();
    const QList<int> first = list.toList();
    const QList<int> second = list.toList();
    QCOMPARE(first.constData(), second.constData());
}

void TestGapList::descendingRemovalsMoveEachItemAFewTimesAtMost()
{
    constexpr int kItems = 10000;
    GapList<CountedItem> list(QList<CountedItem>(kItems, CountedItem(1)));
    CountedItem::transfers = 0;
    for (int i = kItems - 2; i >= 0; i -= 2) {
        list.takeAt(i);
    }
    list.close();
    QCOMPARE(list.size(), qsizetype(kItems / 2));
    QVERIFY2(CountedItem::transfers <= 12 * kItems,
             qPrintable(QString::number(CountedItem::transfers)));
}

void TestGapList::ascendingInsertionsMoveEachItemAFewTimesAtMost()
{
    constexpr int kItems = 10000;
    constexpr int kInsertions = 1000;
    GapList<CountedItem> list(QList<CountedItem>(kItems, CountedItem(1)));
    CountedItem::transfers = 0;
    for (int i = 0; i < kInsertions; ++i) {
        list.insert(i * 11, CountedItem(2));
    }
    list.close();
    QCOMPARE(list.size(), qsizetype(kItems + kInsertions));
    QVERIFY2(CountedItem::transfers <= 12 * (kItems + kInsertions),
             qPrintable(QString::number(CountedItem::transfers)));
}

QTEST_GUILESS_MAIN(TestGapList)
#include "tst_gap_list.moc"
