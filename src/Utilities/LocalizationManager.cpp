#include "Utilities/LocalizationManager.h"

#include <QLocale>

namespace Quillmere {

namespace {

Language storedLanguage(const UserDefaults &defaults)
{
    const std::optional<QString> stored = defaults.string(Localizer::languageKey());
    return stored ? fromRawValue<Language>(*stored).value_or(Language::System) : Language::System;
}

} // namespace

Localizer::Localizer(std::shared_ptr<UserDefaults> defaults, SystemLanguageCode systemLanguageCode, QObject *parent)
    : QObject(parent)
    , m_defaults(std::move(defaults))
    , m_systemLanguageCode(std::move(systemLanguageCode))
    , m_language(storedLanguage(*m_defaults))
{
}

QString Localizer::desktopLanguageCode()
{
    return QLocale::system().uiLanguages().value(0);
}

void Localizer::setLanguage(Language language)
{
    if (language == m_language)
        return;
    m_language = language;
    Q_EMIT languageChanged();
    m_defaults->setString(languageKey(), rawValue(language));
}

Language Localizer::effectiveLanguage() const
{
    const Language chosen = m_language;
    if (chosen != Language::System)
        return chosen;
    const QString code = m_systemLanguageCode();
    if (code.startsWith(u"es"))
        return Language::Spanish;
    if (code.startsWith(u"ru"))
        return Language::Russian;
    return Language::English;
}

QString Localizer::localized(const QString &key) const
{
    const QString language = rawValue(effectiveLanguage());
    for (const LocalizationTable *table : {&LocalizationTable::strings(), &LocalizationTable::controls()}) {
        if (const std::optional<QString> text = table->text(key, language))
            return *text;
        if (const std::optional<QString> english = table->text(key, rawValue(Language::English)))
            return *english;
    }
    return key;
}

} // namespace Quillmere
