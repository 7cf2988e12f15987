// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/core/page_image_cache.h"

#include <QTest>

#include <atomic>
#include <thread>
#include <vector>

namespace {

/// An image of `kib` KiB, which carries `name` as its text of that name.
QImage imageOfKib(int kib, const QString &name = QString())
{
    QImage image(256, kib, QImage::Format_RGB32);
    image.fill(Qt::white);
    image.setText(QStringLiteral("name"), name);
    // 256 pixels of 4 bytes make one KiB per line.
    return image;
}

QString nameIn(PageImageCache &cache, const QString &key)
{
    return cache.find(key).text(QStringLiteral("name"));
}

} // namespace

class TestPageImageCache final : public QObject
{
    Q_OBJECT

private slots:
    void costIsTheSizeInKibRoundedDownButAtLeastOne_data();
    void costIsTheSizeInKibRoundedDownButAtLeastOne();
    void boundIs256MiB();
    void unknownKeyGivesANullImage();
    void leastRecentlyInsertedGoesFirst();
    void lookingUpKeepsAnImageFromGoing();
    void imagesThatFillTheBoundExactlyAllStay();
    void oneLargeImageMakesSeveralSmallOnesGo();
    void imageBeyondTheBoundIsNotKept();
    void replacingAnImageCountsItOnce();
    void replacingAnImageLeavesTheOthersAlone();
    void clearForgetsEverything();
    void severalThreadsMayUseItAtOnce();
};

void TestPageImageCache::costIsTheSizeInKibRoundedDownButAtLeastOne_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<qsizetype>("cost");
    QTest::newRow("one pixel") << QSize(1, 1) << qsizetype(1);
    QTest::newRow("just below 2 KiB") << QSize(511, 1) << qsizetype(1);
    QTest::newRow("2 KiB") << QSize(512, 1) << qsizetype(2);
    QTest::newRow("A4 at 96 dpi") << QSize(794, 1123) << qsizetype(794 * 1123 * 4 / 1024);
}

void TestPageImageCache::costIsTheSizeInKibRoundedDownButAtLeastOne()
{
    QFETCH(QSize, size);
    QFETCH(qsizetype, cost);
    QCOMPARE(PageImageCache::costOf(QImage(size, QImage::Format_RGB32)), cost);
}

void TestPageImageCache::boundIs256MiB()
{
    QCOMPARE(PageImageCache::kMaxCost * 1024, qsizetype(256) * 1024 * 1024);
}

void TestPageImageCache::unknownKeyGivesANullImage()
{
    PageImageCache cache;
    QVERIFY(cache.find(QStringLiteral("a")).isNull());
}

void TestPageImageCache::leastRecentlyInsertedGoesFirst()
{
    PageImageCache cache(30);
    cache.insert(QStringLiteral("a"), imageOfKib(10));
    cache.insert(QStringLiteral("b"), imageOfKib(10));
    cache.insert(QStringLiteral("c"), imageOfKib(10));
    cache.insert(QStringLiteral("d"), imageOfKib(10));
    QVERIFY(cache.find(QStringLiteral("a")).isNull());
    QVERIFY(!cache.find(QStringLiteral("b")).isNull());
    QVERIFY(!cache.find(QStringLiteral("c")).isNull());
    QVERIFY(!cache.find(QStringLiteral("d")).isNull());
}

void TestPageImageCache::lookingUpKeepsAnImageFromGoing()
{
    PageImageCache cache(30);
    cache.insert(QStringLiteral("a"), imageOfKib(10));
    cache.insert(QStringLiteral("b"), imageOfKib(10));
    cache.insert(QStringLiteral("c"), imageOfKib(10));
    QVERIFY(!cache.find(QStringLiteral("a")).isNull());
    cache.insert(QStringLiteral("d"), imageOfKib(10));
    QVERIFY(!cache.find(QStringLiteral("a")).isNull());
    QVERIFY(cache.find(QStringLiteral("b")).isNull());
}

void TestPageImageCache::imagesThatFillTheBoundExactlyAllStay()
{
    PageImageCache cache(30);
    cache.insert(QStringLiteral("a"), imageOfKib(10));
    cache.insert(QStringLiteral("b"), imageOfKib(20));
    QVERIFY(!cache.find(QStringLiteral("a")).isNull());
    QVERIFY(!cache.find(QStringLiteral("b")).isNull());
    cache.insert(QStringLiteral("c"), imageOfKib(30));
    QVERIFY(!cache.find(QStringLiteral("c")).isNull());
}

void TestPageImageCache::oneLargeImageMakesSeveralSmallOnesGo()
{
    PageImageCache cache(30);
    for (const char name : {'a', 'b', 'c'}) {
        cache.insert(QString(QLatin1Char(name)), imageOfKib(10));
    }
    cache.insert(QStringLiteral("large"), imageOfKib(15));
    QVERIFY(cache.find(QStringLiteral("a")).isNull());
    QVERIFY(cache.find(QStringLiteral("b")).isNull());
    QVERIFY(!cache.find(QStringLiteral("c")).isNull());
    QVERIFY(!cache.find(QStringLiteral("large")).isNull());
}

void TestPageImageCache::imageBeyondTheBoundIsNotKept()
{
    PageImageCache cache(30);
    cache.insert(QStringLiteral("a"), imageOfKib(10));
    cache.insert(QStringLiteral("large"), imageOfKib(31));
    QVERIFY(cache.find(QStringLiteral("large")).isNull());
    QVERIFY(!cache.find(QStringLiteral("a")).isNull());
}

void TestPageImageCache::replacingAnImageCountsItOnce()
{
    PageImageCache cache(30);
    for (int i = 0; i < 10; ++i) {
        cache.insert(QStringLiteral("a"), imageOfKib(10, QString::number(i)));
    }
    QCOMPARE(nameIn(cache, QStringLiteral("a")), QStringLiteral("9"));
    cache.insert(QStringLiteral("b"), imageOfKib(20));
    QVERIFY(!cache.find(QStringLiteral("a")).isNull());
    QVERIFY(!cache.find(QStringLiteral("b")).isNull());
}

void TestPageImageCache::replacingAnImageLeavesTheOthersAlone()
{
    PageImageCache cache(30);
    cache.insert(QStringLiteral("oldest"), imageOfKib(10));
    cache.insert(QStringLiteral("a"), imageOfKib(20, QStringLiteral("first")));
    cache.insert(QStringLiteral("a"), imageOfKib(20, QStringLiteral("second")));
    QVERIFY(!cache.find(QStringLiteral("oldest")).isNull());
    QCOMPARE(nameIn(cache, QStringLiteral("a")), QStringLiteral("second"));
}

void TestPageImageCache::clearForgetsEverything()
{
    PageImageCache cache(30);
    cache.insert(QStringLiteral("a"), imageOfKib(10));
    cache.clear();
    QVERIFY(cache.find(QStringLiteral("a")).isNull());
    cache.insert(QStringLiteral("b"), imageOfKib(30));
    QVERIFY(!cache.find(QStringLiteral("b")).isNull());
}

void TestPageImageCache::severalThreadsMayUseItAtOnce()
{
    PageImageCache cache(64);
    std::vector<std::thread> threads;
    std::atomic<int> wrongImages{0};
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&cache, &wrongImages, t] {
            for (int i = 0; i < 200; ++i) {
                const int kib = 1 + (i + t) % 20;
                const QString key = QString::number(kib);
                cache.insert(key, imageOfKib(kib));
                const QImage found = cache.find(key);
                if (!found.isNull() && found.height() != kib) {
                    ++wrongImages;
                }
                if (i % 50 == 49) {
                    cache.clear();
                }
            }
        });
    }
    for (std::thread &thread : threads) {
        thread.join();
    }
    QCOMPARE(wrongImages.load(), 0);
}

QTEST_GUILESS_MAIN(TestPageImageCache)
#include "tst_page_image_cache.moc"
