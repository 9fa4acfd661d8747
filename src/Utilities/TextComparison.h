#pragma once

#include "Models/Language.h"

#include <QLocale>
#include <QString>

namespace Quillmere {

/// The locale whose alphabet a language of the screens is sorted by. @p language is never Language::System.
[[nodiscard]] QLocale collationLocale(Language language);

/// Negative, zero or positive, as people expect names to be sorted: digit runs as numbers, case and accents only where
/// all else is equal, and zero only for the same text. Any thread.
[[nodiscard]] int localizedStandardCompare(const QString &left, const QString &right, const QLocale &locale);

/// Case does not matter, accents do, however they are written. Nothing contains an empty @p needle. Any thread.
[[nodiscard]] bool localizedCaseInsensitiveContains(const QString &haystack, const QString &needle);

} // namespace Quillmere
