// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/qpdf/password_candidates.h"

#include <QTest>

using namespace Qt::StringLiterals;

/// The spellings under which a typed password is tried.
class TestPasswordCandidates : public QObject
{
    Q_OBJECT

private slots:
    void spellings_data();
    void spellings();
    void theTypedSpellingComesFirst_data();
    void theTypedSpellingComesFirst();
    void noSpellingIsTriedTwice_data();
    void noSpellingIsTriedTwice();
    void plainPasswordIsTriedOnce();
};

void TestPasswordCandidates::spellings_data()
{
    QTest::addColumn<QString>("password");
    QTest::addColumn<QByteArray>("spelling");
    QTest::newRow("plain") << u"secret"_s << QByteArray("secret");
    QTest::newRow("e acute as UTF-8") << u"caf\u00e9"_s << QByteArray("caf\xC3\xA9");
    QTest::newRow("e acute as Latin-1") << u"caf\u00e9"_s << QByteArray("caf\xE9");
    QTest::newRow("e acute, decomposed, as UTF-8") << u"caf\u00e9"_s << QByteArray("cafe\xCC\x81");
    QTest::newRow("typed decomposed, stored composed")
        << u"cafe\u0301"_s << QByteArray("caf\xC3\xA9");
    QTest::newRow("typed decomposed, stored as Latin-1")
        << u"cafe\u0301"_s << QByteArray("caf\xE9");
    QTest::newRow("u umlaut as Latin-1") << u"m\u00fcde"_s
                                         << QByteArray("m\xFC"
                                                       "de");
    QTest::newRow("euro as PDFDocEncoding") << u"5\u20ac"_s << QByteArray("5\xA0");
    QTest::newRow("euro as Windows-1252") << u"5\u20ac"_s << QByteArray("5\x80");
    QTest::newRow("euro as UTF-8") << u"5\u20ac"_s << QByteArray("5\xE2\x82\xAC");
    QTest::newRow("Chinese") << u"\u4e2d\u6587"_s << QByteArray("\xE4\xB8\xAD\xE6\x96\x87");
    QTest::newRow("emoji") << u"\U0001F600"_s << QByteArray("\xF0\x9F\x98\x80");
    QTest::newRow("full width letters, normalised") << u"\uff21\uff22"_s << QByteArray("AB");
    QTest::newRow("ligature, normalised") << u"\ufb01x"_s << QByteArray("fix");
}

void TestPasswordCandidates::spellings()
{
    QFETCH(const QString, password);
    QFETCH(const QByteArray, spelling);
    const QList<QByteArray> candidates = pdfcore::qpdfPasswordCandidates(password);
    QVERIFY2(candidates.contains(spelling), candidates.join(' ').toHex(' ').constData());
}

void TestPasswordCandidates::theTypedSpellingComesFirst_data()
{
    spellings_data();
}

void TestPasswordCandidates::theTypedSpellingComesFirst()
{
    QFETCH(const QString, password);
    QCOMPARE(pdfcore::qpdfPasswordCandidates(password).first(), password.toUtf8());
    QCOMPARE(pdfcore::mupdfPasswordCandidates(password).first(), password.toUtf8());
}

void TestPasswordCandidates::noSpellingIsTriedTwice_data()
{
    spellings_data();
}

void TestPasswordCandidates::noSpellingIsTriedTwice()
{
    QFETCH(const QString, password);
    for (const QList<QByteArray> &candidates :
         {pdfcore::qpdfPasswordCandidates(password), pdfcore::mupdfPasswordCandidates(password)}) {
        const QSet<QByteArray> different(candidates.begin(), candidates.end());
        QCOMPARE(different.size(), candidates.size());
        QVERIFY(candidates.size() < 30);
    }
}

void TestPasswordCandidates::plainPasswordIsTriedOnce()
{
    QCOMPARE(pdfcore::qpdfPasswordCandidates(u"secret"_s), QList<QByteArray>{"secret"});
    QCOMPARE(pdfcore::mupdfPasswordCandidates(u"secret"_s), QList<QByteArray>{"secret"});
    QCOMPARE(pdfcore::qpdfPasswordCandidates({}), QList<QByteArray>{QByteArray()});
}

QTEST_GUILESS_MAIN(TestPasswordCandidates)
#include "tst_password_candidates.moc"
