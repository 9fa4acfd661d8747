#pragma once

#include "Values/Result.h"

#include <QByteArray>
#include <QHash>
#include <QMap>
#include <QString>
#include <QStringList>

#include <optional>

namespace Quillmere {

/// Texts by key, then by the language's stored code ("en", "es", "ru"). Immutable once built; any thread may read it.
class LocalizationTable
{
public:
    /// The texts of the screens. Built once, on first use, whichever thread that is.
    [[nodiscard]] static const LocalizationTable &strings();
    /// The texts of our own controls: window buttons, names for screen readers, reasons of failures, the promotion that
    /// is always there. Built like strings().
    [[nodiscard]] static const LocalizationTable &controls();
    /// The texts of the setup wizard, which has a language of its own. Built like strings().
    [[nodiscard]] static const LocalizationTable &setup();

    /// Reads {"key": {"en": "text", ...}, ...}. Fails with Malformed when anything in it is not of that form.
    [[nodiscard]] static Result<LocalizationTable> fromJson(const QByteArray &json);

    /// Two probes. Exact and case-sensitive; nothing when there is no such row or no entry of that language.
    [[nodiscard]] std::optional<QString> text(const QString &key, const QString &language) const;
    /// As text(), but a row without an entry of that language answers in English.
    [[nodiscard]] std::optional<QString> textOrEnglish(const QString &key, const QString &language) const;

    /// In no particular order.
    [[nodiscard]] QStringList keys() const;
    /// The codes that the row of @p key has entries for, in no particular order.
    [[nodiscard]] QStringList languages(const QString &key) const;

private:
    QHash<QString, QMap<QString, QString>> m_rows; ///< A hash of its own would cost each row two kilobytes.
};

} // namespace Quillmere
