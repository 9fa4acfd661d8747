#include "Utilities/DateFormatter.h"

#include "Utilities/LocalizationManager.h"

#include <unicode/udatpg.h>

namespace Quillmere {

namespace {

QLocale::Language languageOfLocale(Language language)
{
    switch (language) {
    case Language::Spanish:
        return QLocale::Spanish;
    case Language::Russian:
        return QLocale::Russian;
    default:
        return QLocale::English;
    }
}

/// The time to the minute. English has a narrow blank that does not break before AM and PM, where Qt has a plain one.
QString timePattern(const QLocale &locale)
{
    QString pattern = locale.timeFormat(QLocale::ShortFormat);
    if (locale.language() == QLocale::English)
        pattern.replace(u' ', u'\u202F');
    return pattern;
}

/// How the language puts the shortest date, {1}, and time, {0}, together: "{1}, {0}", in some without the comma, in
/// some the time first.
QString jointPattern(const QLocale &locale)
{
    UErrorCode error = U_ZERO_ERROR;
    UDateTimePatternGenerator *generator = udatpg_open(locale.name().toLatin1().constData(), &error);
    int32_t length = 0;
    const char16_t *joint = udatpg_getDateTimeFormatForStyle(generator, UDAT_SHORT, &length, &error);
    QString pattern = U_SUCCESS(error) ? QString::fromUtf16(joint, length) : u"{1}, {0}"_qs;
    udatpg_close(generator);
    return pattern;
}

QString abbreviatedDatePattern(const QLocale &locale)
{
    switch (locale.language()) {
    case QLocale::English:
        return locale.dateFormat(QLocale::ShortFormat).startsWith(u'M') ? u"MMM d, yyyy"_qs : u"d MMM yyyy"_qs;
    case QLocale::Spanish:
        return u"d MMM yyyy"_qs;
    case QLocale::Russian:
        return u"d MMM yyyy\u202F'г.'"_qs;
    default:
        return locale.dateFormat(QLocale::ShortFormat);
    }
}

/// English words are the same in every region: Qt has "Sept" for the British.
QLocale wordsOf(const QLocale &locale)
{
    return locale.language() == QLocale::English ? QLocale(QLocale::English, QLocale::UnitedStates) : locale;
}

QString formatted(const QDateTime &date, const DateStyle &style, const QString &pattern)
{
    return wordsOf(style.locale).toString(date.toTimeZone(style.timeZone), pattern);
}

} // namespace

DateStyle DateStyle::ofUser()
{
    return {userDateLocale()};
}

DateStyle DateStyle::ofScreens()
{
    return {localeOfScreens(Localizer::shared().effectiveLanguage(), userDateLocale())};
}

QLocale DateStyle::localeOfScreens(Language language, const QLocale &userLocale)
{
    const QLocale::Language wanted = languageOfLocale(language);
    return userLocale.language() == wanted ? userLocale : QLocale(wanted);
}

QLocale userDateLocale()
{
    for (const char *variable : {"LC_ALL", "LC_TIME", "LANG"}) {
        const QString name = qEnvironmentVariable(variable);
        if (name.isEmpty())
            continue;
        const QLocale locale(name);
        if (locale.language() != QLocale::C)
            return locale;
        break;
    }
    return QLocale(QLocale::English, QLocale::UnitedStates);
}

ShortDateFormatter::ShortDateFormatter(const DateStyle &style)
    : m_style(style)
    , m_pattern(jointPattern(style.locale))
{
    m_pattern.replace(u"{1}"_qs, style.locale.dateFormat(QLocale::ShortFormat));
    m_pattern.replace(u"{0}"_qs, timePattern(style.locale));
}

QString ShortDateFormatter::format(const QDateTime &date) const
{
    return formatted(date, m_style, m_pattern);
}

QString formatAbbreviatedDateAndTime(const QDateTime &date, const DateStyle &style)
{
    const QString separator = style.locale.language() == QLocale::English ? u" 'at' "_qs : u", "_qs;
    return formatted(date, style, abbreviatedDatePattern(style.locale) + separator + timePattern(style.locale));
}

QString formatAbbreviatedDate(const QDateTime &date, const DateStyle &style)
{
    return formatted(date, style, abbreviatedDatePattern(style.locale));
}

} // namespace Quillmere
