#pragma once

#include "Models/Language.h"
#include "Platform/UserDefaults.h"
#include "Utilities/LocalizationTable.h"
#include "Values/SharedInstance.h"

#include <QObject>

#include <atomic>
#include <functional>
#include <memory>

namespace Quillmere {

/// Turns a key into the text of the active language, and holds the user's choice of language.
class Localizer final : public QObject
{
    Q_OBJECT
    Q_PROPERTY(Quillmere::Languages::Language language READ language WRITE setLanguage NOTIFY languageChanged)

public:
    /// Code of the language that the desktop speaks, such as "es" or "ru_RU"; may be empty.
    using SystemLanguageCode = std::function<QString()>;

    /// Reads the stored choice once, without writing it back. An absent or unknown one is Language::System.
    /// Asks for the desktop's language once too: it does not change under a running program.
    explicit Localizer(std::shared_ptr<UserDefaults> defaults,
                       const SystemLanguageCode &systemLanguageCode = desktopLanguageCode, QObject *parent = nullptr);

    [[nodiscard]] static Localizer &shared() { return SharedInstance<Localizer>::get(); }
    /// Where the choice is stored.
    [[nodiscard]] static QString languageKey() { return u"app.language"_qs; }
    /// Every text of the screens by key, then by the language's stored code. Immutable, built on first use.
    [[nodiscard]] static const LocalizationTable &strings() { return LocalizationTable::strings(); }
    /// The code of the language in which the desktop shows its own texts.
    [[nodiscard]] static QString desktopLanguageCode();

    [[nodiscard]] Language language() const { return m_language; }
    /// Publishes a change, then stores the choice. What it already was is stored too, which replaces an unknown code.
    /// GUI thread only.
    void setLanguage(Language language);
    /// Never Language::System. Any thread.
    [[nodiscard]] Language effectiveLanguage() const;

    /// The text of @p key in the effective language, else in English, else the key itself. Any thread.
    Q_INVOKABLE [[nodiscard]] QString localized(const QString &key) const;

Q_SIGNALS:
    void languageChanged();

private:
    std::shared_ptr<UserDefaults> m_defaults;
    const Language m_systemLanguage; ///< Never Language::System.
    std::atomic<Language> m_language;
};

/// The text of @p key as the shared localizer has it.
[[nodiscard]] QString localized(const QString &key);

} // namespace Quillmere
