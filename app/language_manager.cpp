// SPDX-License-Identifier: AGPL-3.0-or-later
#include "app/language_manager.h"

#include "res/translate/translations.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QLocale>
#include <QSettings>
#include <QTranslator>

#include <algorithm>
#include <array>

namespace {

struct Language
{
    QLatin1String code;
    QLatin1String resource; ///< Empty for the language of the source texts.
    QLocale::Language language;
    QLocale::Territory territory;
    Qt::LayoutDirection layoutDirection;
};

constexpr QLatin1String kSourceLanguage("zh_CN");
constexpr QLatin1String kEnglish("en_US");
constexpr QLatin1String kSettingsKey("appearance/language");

constexpr std::array<Language, 7> kLanguages{{
    {kSourceLanguage, QLatin1String(), QLocale::Chinese, QLocale::China, Qt::LeftToRight},
    {kEnglish, QLatin1String(":/res/translate/plenvo_en.qm"), QLocale::English,
     QLocale::UnitedStates, Qt::LeftToRight},
    {QLatin1String("de_DE"), QLatin1String(":/res/translate/de.qm"), QLocale::German,
     QLocale::Germany, Qt::LeftToRight},
    {QLatin1String("fr_FR"), QLatin1String(":/res/translate/fr.qm"), QLocale::French,
     QLocale::France, Qt::LeftToRight},
    {QLatin1String("es_ES"), QLatin1String(":/res/translate/es.qm"), QLocale::Spanish,
     QLocale::Spain, Qt::LeftToRight},
    {QLatin1String("ar_SA"), QLatin1String(":/res/translate/ar.qm"), QLocale::Arabic,
     QLocale::SaudiArabia, Qt::LeftToRight},
    {QLatin1String("ja_JP"), QLatin1String(":/res/translate/jp.qm"), QLocale::Japanese,
     QLocale::Japan, Qt::LeftToRight},
}};

} // namespace

LanguageManager *LanguageManager::instance()
{
    static LanguageManager manager;
    return &manager;
}

LanguageManager::LanguageManager()
{
    initTranslations();
}

LanguageManager::~LanguageManager() = default;

QString LanguageManager::defaultLanguage(const QLocale &systemLocale)
{
    return systemLocale.language() == QLocale::Chinese ? kSourceLanguage : kEnglish;
}

QString LanguageManager::currentLanguage() const
{
    return m_currentLanguage;
}

void LanguageManager::initialize()
{
    const QString code =
        QSettings().value(kSettingsKey, defaultLanguage(QLocale::system())).toString();
    if (!applyLanguage(code)) {
        applyLanguage(kSourceLanguage);
    }
}

bool LanguageManager::setLanguage(const QString &code)
{
    if (code == m_currentLanguage) {
        return true;
    }
    if (!applyLanguage(code)) {
        return false;
    }
    QSettings().setValue(kSettingsKey, code);
    emit languageChanged(code);
    return true;
}

bool LanguageManager::applyLanguage(const QString &code)
{
    const auto language =
        std::find_if(kLanguages.cbegin(), kLanguages.cend(),
                     [&code](const Language &candidate) { return candidate.code == code; });
    if (language == kLanguages.cend()) {
        return false;
    }

    std::unique_ptr<QTranslator> translator;
    if (!language->resource.isEmpty()) {
        translator = std::make_unique<QTranslator>();
        if (!translator->load(language->resource)) {
            return false;
        }
    }

    m_currentLanguage = code;
    if (m_translator) {
        QCoreApplication::removeTranslator(m_translator.get());
    }
    m_translator = std::move(translator);
    QLocale::setDefault(QLocale(language->language, language->territory));
    QGuiApplication::setLayoutDirection(language->layoutDirection);
    if (m_translator) {
        QCoreApplication::installTranslator(m_translator.get());
    }
    return true;
}
