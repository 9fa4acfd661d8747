#include "Utilities/ByteCountFormatter.h"

#include "Utilities/LocalizationManager.h"

#include <algorithm>
#include <array>
#include <limits>

namespace Quillmere {

namespace {

/// How a language writes numbers and units.
struct Notation
{
    QChar decimalPoint;
    QStringView groupSeparator;
    quint64 leastGrouped; ///< Smaller numbers are written without a separator.
    QStringView zero;
    std::array<QStringView, 6> units; ///< From the thousands on.
};

/// A magnitude in one unit, in steps of one tenth for each digit behind the point.
struct Scaled
{
    quint64 steps = 0;
    int digits = 0;
    std::size_t unit = 0; ///< Index into Notation::units.
};

constexpr std::array<QStringView, 6> latinUnits = {u"KB", u"MB", u"GB", u"TB", u"PB", u"EB"};
constexpr Notation english = {u'.', u",", 1000, u"Zero KB", latinUnits};
constexpr Notation spanish = {u',', u".", 10000, u"Cero KB", latinUnits};
constexpr Notation russian = {u',', u"\u00A0", 1000, u"Ноль КБ", {u"КБ", u"МБ", u"ГБ", u"ТБ", u"ПБ", u"ЭБ"}};

constexpr const Notation &notationOf(Language language)
{
    switch (language) {
    case Language::Spanish:
        return spanish;
    case Language::Russian:
        return russian;
    default:
        return english;
    }
}

constexpr int mostDigits(std::size_t unit)
{
    return unit == 0 ? 0 : unit == 1 ? 1 : 2;
}

constexpr quint64 powerOfTen(int exponent)
{
    return exponent == 0 ? 1 : 10 * powerOfTen(exponent - 1);
}

/// Rounds half away from zero. Divides digit by digit, since a remainder in the largest unit leaves room for one only.
constexpr quint64 roundedSteps(quint64 magnitude, quint64 unitBytes, int digits)
{
    quint64 steps = magnitude / unitBytes;
    quint64 remainder = magnitude % unitBytes;
    for (int digit = 0; digit < digits; ++digit) {
        remainder *= 10;
        steps = steps * 10 + remainder / unitBytes;
        remainder %= unitBytes;
    }
    return remainder >= unitBytes - remainder ? steps + 1 : steps;
}

/// The smallest unit in which the rounded number stays below @p base.
constexpr Scaled scaled(quint64 magnitude, quint64 base)
{
    quint64 unitBytes = base;
    for (std::size_t unit = 0;; ++unit, unitBytes *= base) {
        const int digits = mostDigits(unit);
        const quint64 steps = roundedSteps(magnitude, unitBytes, digits);
        if (steps < base * powerOfTen(digits) || unit + 1 == latinUnits.size())
            return {steps, digits, unit};
    }
}

QString grouped(quint64 number, const Notation &notation)
{
    QString text = QString::number(number);
    if (number < notation.leastGrouped)
        return text;
    for (qsizetype position = text.size() - 3; position > 0; position -= 3)
        text.insert(position, notation.groupSeparator.toString());
    return text;
}

QString numberText(const Scaled &value, const Notation &notation)
{
    const quint64 one = powerOfTen(value.digits);
    const QString whole = grouped(value.steps / one, notation);
    QString fraction = QString::number(value.steps % one).rightJustified(value.digits, u'0');
    while (fraction.endsWith(u'0'))
        fraction.chop(1);
    return value.digits == 0 || fraction.isEmpty() ? whole : whole + notation.decimalPoint + fraction;
}

QString russianBytes(quint64 count)
{
    const quint64 lastTwo = count % 100;
    const quint64 last = count % 10;
    const bool few = last >= 2 && last <= 4 && (lastTwo < 12 || lastTwo > 14);
    return few ? u"байта"_qs : u"байт"_qs;
}

QString bytesWord(quint64 count, Language language)
{
    if (language == Language::Russian)
        return russianBytes(count);
    return count == 1 ? u"byte"_qs : u"bytes"_qs;
}

} // namespace

QString formatByteCount(qint64 bytes, ByteCountStyle style, Language language)
{
    const Notation &notation = notationOf(language);
    if (bytes == 0)
        return notation.zero.toString();

    const quint64 base = style == ByteCountStyle::File ? 1000 : 1024;
    // Negated as unsigned: the most negative count has no positive counterpart.
    const quint64 magnitude = bytes < 0 ? -static_cast<quint64>(bytes) : static_cast<quint64>(bytes);
    const QString sign = bytes < 0 ? u"-"_qs : QString();
    if (magnitude < base)
        return sign + grouped(magnitude, notation) + u' ' + bytesWord(magnitude, language);
    const Scaled value = scaled(magnitude, base);
    return sign + numberText(value, notation) + u' ' + notation.units.at(value.unit).toString();
}

QString formatCompactByteCount(qint64 bytes, Language language)
{
    return formatByteCount(bytes, ByteCountStyle::File, language).remove(u' ');
}

QString formatByteCount(qint64 bytes)
{
    return formatByteCount(bytes, ByteCountStyle::File, Localizer::shared().effectiveLanguage());
}

QString formatByteRate(quint64 bytesPerSecond)
{
    constexpr auto most = static_cast<quint64>(std::numeric_limits<qint64>::max());
    return formatByteCount(static_cast<qint64>(std::min(bytesPerSecond, most))) + u"/s"_qs;
}

QString formatMemoryByteCount(qint64 bytes)
{
    return formatByteCount(bytes, ByteCountStyle::Memory, Localizer::shared().effectiveLanguage());
}

QString formatCompactByteCount(qint64 bytes)
{
    return formatCompactByteCount(bytes, Localizer::shared().effectiveLanguage());
}

} // namespace Quillmere
