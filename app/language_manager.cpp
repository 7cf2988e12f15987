// SPDX-License-Identifier: AGPL-3.0-or-later
#include "app/language_manager.h"

#include "app/language_table.h"
#include "res/translate/translations.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QLocale>
#include <QSettings>
#include <QTranslator>

namespace {

constexpr QLatin1String kSettingsKey("appearance/language");

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
    return systemLocale.language() == QLocale::Chinese ? kSourceLanguage : kFallbackLanguage;
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
    const Language *language = findLanguage(code);
    if (language == nullptr) {
        return false;
    }

    std::unique_ptr<QTranslator> translator;
    if (!language->catalogue.isEmpty()) {
        translator = std::make_unique<QTranslator>();
        if (!translator->load(language->catalogue)) {
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
