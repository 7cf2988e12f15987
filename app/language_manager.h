// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QObject>
#include <QString>

#include <memory>

class QLocale;
class QTranslator;

/// Owns the language of the interface: the installed translator, the default locale and the
/// user's saved choice (settings key "appearance/language").
///
/// The languages are those of the language table; the one of the source texts needs no translator.
/// Lives on the user-interface thread; needs the application object.
class LanguageManager final : public QObject
{
    Q_OBJECT

public:
    /// Returns the one language manager, which is created by the first call.
    [[nodiscard]] static LanguageManager *instance();
    ~LanguageManager() override;

    /// The code of the language for a user who has not chosen one: Chinese on a Chinese system,
    /// English on any other.
    [[nodiscard]] static QString defaultLanguage(const QLocale &systemLocale);

    /// The code applied last, such as "de_DE"; empty until initialize().
    [[nodiscard]] QString currentLanguage() const;

    /// Applies the saved language, or the default one. Call it once, before the first widget.
    ///
    /// A saved value that is unknown or cannot be loaded gives Chinese and stays in the settings.
    void initialize();

    /// Switches to the language `code`, saves the choice and emits languageChanged().
    ///
    /// Returns true when the language is in force, also if it was already; nothing is saved or
    /// emitted then. Returns false, with nothing changed, for an unknown code or a translation
    /// that cannot be loaded.
    bool setLanguage(const QString &code);

signals:
    /// The user has switched to the language `languageCode`, which is in force and saved.
    void languageChanged(const QString &languageCode);

private:
    LanguageManager();

    bool applyLanguage(const QString &code);

    std::unique_ptr<QTranslator> m_translator;
    QString m_currentLanguage;
};
