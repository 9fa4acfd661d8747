#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

#include <optional>

namespace Quillmere {

/// Texts by key, then by the language's stored code ("en", "es", "ru"). Immutable; any thread.
class LocalizationTable
{
public:
    /// The texts of the screens. Built once, on first use.
    [[nodiscard]] static const LocalizationTable &strings();
    /// The texts of our own controls: window buttons, names for screen readers, reasons of failures. Built like strings().
    [[nodiscard]] static const LocalizationTable &controls();

    /// Exact and case-sensitive; nothing when there is no such row or no entry of that language.
    [[nodiscard]] std::optional<QString> text(const QString &key, const QString &language) const;
    [[nodiscard]] QStringList keys() const;
    /// The codes that the row of @p key has entries for.
    [[nodiscard]] QStringList languages(const QString &key) const;

private:
    explicit LocalizationTable(const QStringList &files);

    QHash<QString, QHash<QString, QString>> m_rows;
};

} // namespace Quillmere
