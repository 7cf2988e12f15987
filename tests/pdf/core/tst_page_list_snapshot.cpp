// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/core/page_list_snapshot.h"

#include <QRandomGenerator>
#include <QTest>

#include <memory>
#include <vector>

namespace {

using Records = QList<PdfPageRecord>;

/// Records with the identifiers 1 to `count` that all hold on to `path`.
Records recordsOf(int count, const QString &path)
{
    Records records;
    PdfPageRecord record;
    record.sourcePath = path;
    for (int page = 0; page < count; ++page) {
        record.id = static_cast<PdfPageId>(page) + 1;
        record.sourcePageIndex = page;
        records.append(record);
    }
    return records;
}

/// A path that shares its text with nothing else.
QString newPath()
{
    return QStringLiteral("/documents/%1.pdf").arg(1);
}

/// How many strings share the text of `path`, besides itself.
int holdersOf(const QString &path)
{
    QString copy = path;
    return copy.data_ptr().d_ptr()->ref_.loadRelaxed() - 2;
}

} // namespace

class TestPageListSnapshot final : public QObject
{
    Q_OBJECT

private slots:
    void defaultSnapshotIsEmpty();
    void listComesBackAsItWas_data();
    void listComesBackAsItWas();
    void firstSnapshotSharesTheWholeList();
    void commonStretchesAreShared_data();
    void commonStretchesAreShared();
    void partsOfPartsComeBack();
    void similarSnapshotMayGo();
    void repeatedIdentifiersComeBack();
    void randomEditsComeBack();
    void scatteredChangesComeBack();
};

void TestPageListSnapshot::defaultSnapshotIsEmpty()
{
    QVERIFY(PageListSnapshot().pages().isEmpty());
    QVERIFY(PageListSnapshot({}, PageListSnapshot()).pages().isEmpty());
}

void TestPageListSnapshot::listComesBackAsItWas_data()
{
    QTest::addColumn<Records>("similar");
    QTest::addColumn<Records>("list");
    const Records hundred = recordsOf(100, newPath());
    QTest::newRow("from nothing") << Records() << hundred;
    QTest::newRow("to nothing") << hundred << Records();
    QTest::newRow("the same") << hundred << hundred;
    QTest::newRow("reversed") << hundred << Records(hundred.rbegin(), hundred.rend());
    QTest::newRow("second half first") << hundred << hundred.mid(50) + hundred.mid(0, 50);
    QTest::newRow("shorter") << hundred << hundred.mid(10, 3);
    // Long enough to be shared.
    QTest::newRow("beginning") << hundred << hundred.mid(0, 40);
    QTest::newRow("middle") << hundred << hundred.mid(30, 40);
    QTest::newRow("end") << hundred << hundred.mid(60);
    QTest::newRow("longer") << hundred.mid(20, 30) << hundred;

    Records changed = hundred;
    PdfPageRecord &record = changed[40];
    record.rotation = 90;
    record.selected = true;
    record.changed = true;
    record.password = QStringLiteral("secret");
    record.pageSize = QSizeF(100, 200);
    record.origin = PdfPageOrigin::Duplicate;
    QTest::newRow("one changed") << hundred << changed;
}

void TestPageListSnapshot::listComesBackAsItWas()
{
    QFETCH(Records, similar);
    QFETCH(Records, list);
    const PageListSnapshot first(similar, PageListSnapshot());
    const PageListSnapshot second(list, first);
    QCOMPARE(second.pages(), list);
    QCOMPARE(first.pages(), similar);
}

void TestPageListSnapshot::firstSnapshotSharesTheWholeList()
{
    const QString path = newPath();
    const Records list = recordsOf(100, path);
    const int before = holdersOf(path);
    const PageListSnapshot snapshot(list, PageListSnapshot());
    QCOMPARE(holdersOf(path), before);
    QCOMPARE(snapshot.pages().constData(), list.constData());
}

void TestPageListSnapshot::commonStretchesAreShared_data()
{
    QTest::addColumn<int>("edit");
    QTest::addColumn<int>("mostNewRecords");
    QTest::newRow("none") << 0 << 0;
    QTest::newRow("change two") << 1 << 2;
    QTest::newRow("remove two") << 2 << 0;
    QTest::newRow("insert") << 3 << 1;
    QTest::newRow("move") << 4 << 1;
    QTest::newRow("rotate all") << 5 << 1000;
}

void TestPageListSnapshot::commonStretchesAreShared()
{
    QFETCH(int, edit);
    QFETCH(int, mostNewRecords);
    const QString path = newPath();
    Records list = recordsOf(1000, path);
    const PageListSnapshot first(Records(list.cbegin(), list.cend()), PageListSnapshot());
    switch (edit) {
    case 1:
        list[100].rotation = 90;
        list[900].rotation = 90;
        break;
    case 2:
        list.remove(900);
        list.remove(100);
        break;
    case 3: {
        PdfPageRecord record = list.at(500);
        record.id = 2000;
        list.insert(501, record);
        break;
    }
    case 4:
        list.move(100, 800);
        break;
    case 5:
        for (PdfPageRecord &record : list) {
            record.rotation = 90;
        }
        break;
    default:
        break;
    }
    const int before = holdersOf(path);
    const PageListSnapshot second(list, first);
    QVERIFY2(holdersOf(path) - before <= mostNewRecords,
             qPrintable(QString::number(holdersOf(path) - before)));
    QCOMPARE(second.pages(), list);
}

void TestPageListSnapshot::partsOfPartsComeBack()
{
    Records list = recordsOf(100, newPath());
    std::vector<PageListSnapshot> snapshots;
    QList<Records> lists;
    snapshots.emplace_back(list, PageListSnapshot());
    lists.append(list);
    while (list.size() > 20) {
        // From both ends, and what is left stays in one piece.
        list = list.mid(6, list.size() - 13);
        snapshots.emplace_back(list, snapshots.back());
        lists.append(list);
    }
    for (qsizetype i = 0; i < lists.size(); ++i) {
        QCOMPARE(snapshots.at(static_cast<std::size_t>(i)).pages(), lists.at(i));
    }
}

void TestPageListSnapshot::similarSnapshotMayGo()
{
    Records list = recordsOf(100, newPath());
    auto first = std::make_unique<PageListSnapshot>(list, PageListSnapshot());
    list.remove(50);
    const PageListSnapshot second(list, *first);
    first.reset();
    QCOMPARE(second.pages(), list);
}

void TestPageListSnapshot::repeatedIdentifiersComeBack()
{
    const Records list = recordsOf(20, newPath());
    const Records twice = list + list;
    const PageListSnapshot first(twice, PageListSnapshot());
    const PageListSnapshot second(list + twice, first);
    QCOMPARE(first.pages(), twice);
    QCOMPARE(second.pages(), list + twice);
}

void TestPageListSnapshot::randomEditsComeBack()
{
    constexpr int kEdits = 2000;
    QRandomGenerator random(20);
    Records list = recordsOf(300, newPath());
    PdfPageId nextId = 301;
    QList<Records> lists;
    std::vector<PageListSnapshot> snapshots(1);
    for (int edit = 0; edit < kEdits; ++edit) {
        const auto row = static_cast<qsizetype>(random.bounded(static_cast<quint32>(list.size())));
        switch (random.bounded(5)) {
        case 0:
            list[row].rotation += 90;
            break;
        case 1:
            list.move(row, random.bounded(static_cast<int>(list.size())));
            break;
        case 2: {
            PdfPageRecord record = list.at(row);
            record.id = nextId++;
            list.insert(row, record);
            break;
        }
        case 3:
            if (list.size() > 100) {
                list.remove(row);
            }
            break;
        default:
            list[row].selected = !list.at(row).selected;
            break;
        }
        lists.append(list);
        snapshots.emplace_back(list, snapshots.back());
    }
    for (int edit = 0; edit < kEdits; ++edit) {
        QVERIFY(snapshots.at(static_cast<std::size_t>(edit) + 1).pages() == lists.at(edit));
    }
}

void TestPageListSnapshot::scatteredChangesComeBack()
{
    Records list = recordsOf(10000, newPath());
    const PageListSnapshot first(list, PageListSnapshot());
    for (qsizetype row = 0; row < list.size(); row += 6) {
        list[row].rotation = 90;
    }
    const PageListSnapshot second(list, first);
    QVERIFY(second.pages() == list);
    list.remove(5000);
    const PageListSnapshot third(list, second);
    QVERIFY(third.pages() == list);
}

QTEST_GUILESS_MAIN(TestPageListSnapshot)
#include "tst_page_list_snapshot.moc"
