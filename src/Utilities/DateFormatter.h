#pragma once

#include "Models/Language.h"

#include <QDateTime>
#include <QLocale>
#include <QTimeZone>

namespace Quillmere {

/// Where and in what language dates are written.
struct DateStyle
{
    QLocale locale;
    QTimeZone timeZone = QTimeZone::systemTimeZone();

    /// The user's own, for what leaves the program.
    [[nodiscard]] static DateStyle ofUser();
    /// The language of the screens, with the habits of the user's region where that speaks the same language.
    [[nodiscard]] static DateStyle ofScreens();
    /// The locale of ofScreens() for a user of @p userLocale who reads @p language.
    [[nodiscard]] static QLocale localeOfScreens(Language language, const QLocale &userLocale);
};

/// The locale that the environment names for dates and times: that of LC_ALL, LC_TIME or LANG, the first that is set.
/// American English where there is none, or only "C".
[[nodiscard]] QLocale userDateLocale();

/// Writes dates and times, both in their shortest form: "1/2/24, 3:04 PM", "02.01.2024, 15:04", "02/01/2024 15:04".
/// Made once for many: to look up the habits of a language takes half a millisecond.
class ShortDateFormatter
{
public:
    explicit ShortDateFormatter(const DateStyle &style);

    [[nodiscard]] QString format(const QDateTime &date) const;

private:
    DateStyle m_style;
    QString m_pattern;
};

/// The month in letters, the time to the minute: "Jan 2, 2024 at 3:04 PM", "2 ene 2024, 15:04".
[[nodiscard]] QString formatAbbreviatedDateAndTime(const QDateTime &date,
                                                   const DateStyle &style = DateStyle::ofScreens());
/// The same without the time: "Jan 2, 2024".
[[nodiscard]] QString formatAbbreviatedDate(const QDateTime &date, const DateStyle &style = DateStyle::ofScreens());

} // namespace Quillmere
