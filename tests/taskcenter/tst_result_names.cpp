// SPDX-License-Identifier: AGPL-3.0-or-later
#include "taskcenter/result_names.h"

#include <QDir>
#include <QTest>

using namespace Qt::StringLiterals;

class TestResultNames : public QObject
{
    Q_OBJECT

private slots:
    void names_data();
    void names();
    void namesInAFolder();
    void folderMayBeSpelledNatively();
    void noPathGivesNoName();
    void noFolderGivesNoName();
};

void TestResultNames::names_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("base");
    QTest::addColumn<QStringList>("names");
    QTest::newRow("plain") << u"/f/a.pdf"_s << u"a"_s
                           << QStringList{u"/f/a.pdf"_s, u"/f/a(1).pdf"_s, u"/f/a(2).pdf"_s};
    QTest::newRow("counted") << u"/f/a(3).pdf"_s << u"a"_s
                             << QStringList{u"/f/a(3).pdf"_s, u"/f/a(4).pdf"_s, u"/f/a(5).pdf"_s};
    QTest::newRow("count of its own")
        << u"/f/a(3).pdf"_s << u"a(3)"_s
        << QStringList{u"/f/a(3).pdf"_s, u"/f/a(3)(1).pdf"_s, u"/f/a(3)(2).pdf"_s};
    QTest::newRow("another base") << u"/f/a(3).pdf"_s << u"b"_s
                                  << QStringList{u"/f/a(3).pdf"_s, u"/f/a(3)(1).pdf"_s};
    QTest::newRow("no number") << u"/f/a(x).pdf"_s << u"a"_s
                               << QStringList{u"/f/a(x).pdf"_s, u"/f/a(x)(1).pdf"_s};
    QTest::newRow("not closed") << u"/f/a(3.pdf"_s << u"a"_s
                                << QStringList{u"/f/a(3.pdf"_s, u"/f/a(3(1).pdf"_s};
    QTest::newRow("several dots") << u"/f/a.b.pdf"_s << u"a.b"_s
                                  << QStringList{u"/f/a.b.pdf"_s, u"/f/a.b(1).pdf"_s};
    QTest::newRow("place marks") << u"/f/%1 %2.pdf"_s << u"%1 %2"_s
                                 << QStringList{u"/f/%1 %2.pdf"_s, u"/f/%1 %2(1).pdf"_s};
    QTest::newRow("other letters")
        << u"/f/文 🎉.PDF"_s << u"文 🎉"_s << QStringList{u"/f/文 🎉.PDF"_s, u"/f/文 🎉(1).PDF"_s};
    QTest::newRow("no suffix") << u"/f/a"_s << u"a"_s << QStringList{u"/f/a"_s, u"/f/a(1)"_s};
}

void TestResultNames::names()
{
    QFETCH(QString, path);
    QFETCH(QString, base);
    QFETCH(QStringList, names);
    const PdfPlacement placement = ResultNames::newFile(path, base);
    QVERIFY(!placement.isReplacing());
    QCOMPARE(placement.path(), QDir(names.constFirst()).absolutePath());
    for (int i = 0; i < names.size(); ++i) {
        QCOMPARE(placement.pathAt(i), QDir(names.at(i)).absolutePath());
    }
}

void TestResultNames::namesInAFolder()
{
    const PdfPlacement placement = ResultNames::newFileIn(u"/f/g"_s, u"a(2)"_s);
    QCOMPARE(placement.path(), QDir(u"/f/g/a(2).pdf"_s).absolutePath());
    QCOMPARE(placement.pathAt(1), QDir(u"/f/g/a(2)(1).pdf"_s).absolutePath());
}

void TestResultNames::folderMayBeSpelledNatively()
{
    const QString folder = QDir::toNativeSeparators(u"/f/g"_s);
    QCOMPARE(ResultNames::newFileIn(folder, u"a"_s).path(), QDir(u"/f/g/a.pdf"_s).absolutePath());
    QCOMPARE(ResultNames::newFile(QDir::toNativeSeparators(u"/f/g/a.pdf"_s), u"a"_s).path(),
             QDir(u"/f/g/a.pdf"_s).absolutePath());
}

void TestResultNames::noPathGivesNoName()
{
    QVERIFY(ResultNames::newFile({}, u"a"_s).path().isEmpty());
}

/// Not one in whatever folder the program was started in.
void TestResultNames::noFolderGivesNoName()
{
    QVERIFY(ResultNames::newFileIn({}, u"a"_s).path().isEmpty());
}

QTEST_GUILESS_MAIN(TestResultNames)
#include "tst_result_names.moc"
