#include "Utilities/LocalizationManager.h"

#include <QLocale>

namespace Quillmere {

namespace {

Language storedLanguage(const UserDefaults &defaults)
{
    const std::optional<QString> stored = defaults.string(Localizer::languageKey());
    return stored ? fromRawValue<Language>(*stored).value_or(Language::System) : Language::System;
}

/// Only what the code begins with counts: "es_MX" and "es-419" are Spanish.
Language languageOfCode(const QString &code)
{
    if (code.startsWith(u"es"))
        return Language::Spanish;
    if (code.startsWith(u"ru"))
        return Language::Russian;
    return Language::English;
}

} // namespace

Localizer::Localizer(std::shared_ptr<UserDefaults> defaults, const SystemLanguageCode &systemLanguageCode,
                     QObject *parent)
    : QObject(parent)
    , m_defaults(std::move(defaults))
    , m_systemLanguage(languageOfCode(systemLanguageCode()))
    , m_language(storedLanguage(*m_defaults))
{
}

QString Localizer::desktopLanguageCode()
{
    return QLocale::system().uiLanguages().value(0);
}

void Localizer::setLanguage(Language language)
{
    if (m_language.exchange(language) != language)
        Q_EMIT languageChanged();
    // An observer of the change may have chosen again.
    m_defaults->setString(languageKey(), rawValue<Language>(m_language));
}

Language Localizer::effectiveLanguage() const
{
    const Language chosen = m_language;
    return chosen == Language::System ? m_systemLanguage : chosen;
}

QString Localizer::localized(const QString &key) const
{
    const QString language = rawValue(effectiveLanguage());
    if (const std::optional<QString> text = strings().textOrEnglish(key, language))
        return *text;
    return LocalizationTable::controls().textOrEnglish(key, language).value_or(key);
}

QString localized(const QString &key)
{
    return Localizer::shared().localized(key);
}

} // namespace Quillmere
