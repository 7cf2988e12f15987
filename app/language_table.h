// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QLatin1String>
#include <QLocale>
#include <QString>

#include <span>

/// One language of the interface.
struct Language
{
    /// The code as it stands in the settings, such as "de_DE".
    QLatin1String code;
    /// Resource path of the catalogue; empty for the language of the source texts.
    QLatin1String catalogue;
    QLocale::Language language;
    QLocale::Territory territory;
    /// From left to right for all of them, Arabic too.
    Qt::LayoutDirection layoutDirection;
    /// What the language is called, to be translated in the context "LanguageDialog".
    const char *name;
};

/// The language of the source texts.
inline constexpr QLatin1String kSourceLanguage("zh_CN");
/// The language for users of all systems that are not Chinese.
inline constexpr QLatin1String kFallbackLanguage("en_US");

/// The languages in the order in which they are offered, the one of the source texts first.
[[nodiscard]] std::span<const Language> languageTable();

/// The language with the code `code`, or null for a code that is none.
[[nodiscard]] const Language *findLanguage(const QString &code);

/// How a language is tagged where people read it, such as "de-DE" for "de_DE".
[[nodiscard]] QString languageTag(const QString &code);

/// How a language is told in two letters, such as "DE" for "de_DE".
[[nodiscard]] QString languageAbbreviation(const QString &code);
