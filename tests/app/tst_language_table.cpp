// SPDX-License-Identifier: AGPL-3.0-or-later
#include "app/language_table.h"
#include "res/translate/translations.h"

#include <QDir>
#include <QTest>

class TestLanguageTable final : public QObject
{
    Q_OBJECT

private slots:
    void everyCatalogueBelongsToOneLanguage();
    void languagesAreFoundByTheirCode();
    void codesAreShownAsTagsAndAbbreviations();
};

void TestLanguageTable::everyCatalogueBelongsToOneLanguage()
{
    initTranslations();
    const QDir folder(QStringLiteral(":/res/translate"));
    QStringList catalogues;
    for (const Language &language : languageTable()) {
        if (language.code != kSourceLanguage) {
            catalogues.append(folder.relativeFilePath(language.catalogue));
        }
    }
    catalogues.sort();
    QCOMPARE(catalogues, folder.entryList(QDir::Files, QDir::Name));
    QVERIFY(languageTable().front().catalogue.isEmpty());
}

void TestLanguageTable::languagesAreFoundByTheirCode()
{
    for (const Language &language : languageTable()) {
        QCOMPARE(findLanguage(language.code), &language);
    }
    QVERIFY(findLanguage(kFallbackLanguage) != nullptr);
    QVERIFY(findLanguage(QStringLiteral("de")) == nullptr);
    QVERIFY(findLanguage(QString()) == nullptr);
}

void TestLanguageTable::codesAreShownAsTagsAndAbbreviations()
{
    QCOMPARE(languageTag(QStringLiteral("ja_JP")), QStringLiteral("ja-JP"));
    QCOMPARE(languageAbbreviation(QStringLiteral("ja_JP")), QStringLiteral("JA"));
    QCOMPARE(languageAbbreviation(QString()), QString());
}

QTEST_GUILESS_MAIN(TestLanguageTable)

#include "tst_language_table.moc"
