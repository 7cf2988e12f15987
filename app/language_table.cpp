// SPDX-License-Identifier: AGPL-3.0-or-later
#include "app/language_table.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>

namespace {

constexpr QChar kCodeSeparator(u'_');

constexpr std::array<Language, 7> kLanguages{{
    {kSourceLanguage, QLatin1String(), QLocale::Chinese, QLocale::China, Qt::LeftToRight,
     QT_TRANSLATE_NOOP("LanguageDialog", "简体中文")},
    {kFallbackLanguage, QLatin1String(":/res/translate/plenvo_en.qm"), QLocale::English,
     QLocale::UnitedStates, Qt::LeftToRight, QT_TRANSLATE_NOOP("LanguageDialog", "英语")},
    {QLatin1String("de_DE"), QLatin1String(":/res/translate/de.qm"), QLocale::German,
     QLocale::Germany, Qt::LeftToRight, QT_TRANSLATE_NOOP("LanguageDialog", "德语")},
    {QLatin1String("fr_FR"), QLatin1String(":/res/translate/fr.qm"), QLocale::French,
     QLocale::France, Qt::LeftToRight, QT_TRANSLATE_NOOP("LanguageDialog", "法语")},
    {QLatin1String("es_ES"), QLatin1String(":/res/translate/es.qm"), QLocale::Spanish,
     QLocale::Spain, Qt::LeftToRight, QT_TRANSLATE_NOOP("LanguageDialog", "西班牙语")},
    {QLatin1String("ar_SA"), QLatin1String(":/res/translate/ar.qm"), QLocale::Arabic,
     QLocale::SaudiArabia, Qt::LeftToRight, QT_TRANSLATE_NOOP("LanguageDialog", "阿拉伯语")},
    {QLatin1String("ja_JP"), QLatin1String(":/res/translate/jp.qm"), QLocale::Japanese,
     QLocale::Japan, Qt::LeftToRight, QT_TRANSLATE_NOOP("LanguageDialog", "日语")},
}};

} // namespace

std::span<const Language> languageTable()
{
    return kLanguages;
}

const Language *findLanguage(const QString &code)
{
    const auto language =
        std::find_if(kLanguages.cbegin(), kLanguages.cend(),
                     [&code](const Language &candidate) { return candidate.code == code; });
    return language == kLanguages.cend() ? nullptr : &*language;
}

QString languageTag(const QString &code)
{
    return QString(code).replace(kCodeSeparator, QLatin1Char('-'));
}

QString languageAbbreviation(const QString &code)
{
    return code.section(kCodeSeparator, 0, 0).toUpper();
}
