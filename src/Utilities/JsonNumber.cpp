#include "Utilities/JsonNumber.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace Quillmere {

namespace {

// A 64-bit number has at most 19 digits.
constexpr qsizetype mostDigitsOfAnInteger = 19;

template<typename Number>
std::optional<Number> parsed(QByteArrayView text)
{
    Number number = 0;
    const std::from_chars_result result = std::from_chars(text.begin(), text.end(), number);
    if (result.ec != std::errc() || result.ptr != text.end())
        return std::nullopt;
    return number;
}

/// A number as its significant digits, times a power of ten.
struct Decimal
{
    bool negative = false;
    QByteArray digits; ///< Without zeros at either end; empty for zero.
    qsizetype exponent = 0;
};

/// Nothing when the exponent itself is beyond all bounds.
std::optional<Decimal> decimal(QByteArrayView number)
{
    Decimal result;
    result.negative = number.startsWith('-');
    if (result.negative)
        number = number.sliced(1);

    const qsizetype mark = std::max(number.indexOf('e'), number.indexOf('E'));
    const QByteArrayView mantissa = mark < 0 ? number : number.first(mark);
    const qsizetype point = mantissa.indexOf('.');
    const QByteArray written = mantissa.toByteArray().replace('.', "");
    const auto significant = std::ranges::find_if(written, [](char digit) { return digit != '0'; });
    result.digits = written.sliced(significant - written.begin());
    if (result.digits.isEmpty())
        return result;

    qsizetype power = 0;
    if (mark >= 0) {
        QByteArrayView exponent = number.sliced(mark + 1);
        if (exponent.startsWith('+'))
            exponent = exponent.sliced(1);
        const std::optional<int> value = parsed<int>(exponent);
        if (!value)
            return std::nullopt;
        power = *value;
    }
    result.exponent = power - (point < 0 ? 0 : mantissa.size() - point - 1);
    while (result.digits.endsWith('0')) {
        result.digits.chop(1);
        ++result.exponent;
    }
    return result;
}

} // namespace

std::optional<qint64> integerFromJson(QByteArrayView number)
{
    if (const std::optional<qint64> plain = parsed<qint64>(number))
        return plain;
    const std::optional<Decimal> value = decimal(number);
    if (!value || value->exponent < 0 || value->digits.size() + value->exponent > mostDigitsOfAnInteger)
        return std::nullopt;
    if (value->digits.isEmpty())
        return 0;
    const QByteArray whole = value->digits + QByteArray(value->exponent, '0');
    return parsed<qint64>(value->negative ? '-' + whole : whole);
}

std::optional<double> doubleFromJson(QByteArrayView number)
{
    return parsed<double>(number);
}

QByteArray jsonFromDouble(double value)
{
    // Between these bounds numbers are written out, beyond them with an exponent.
    const double magnitude = std::abs(value);
    const bool writtenOut = magnitude == 0 || (magnitude >= 1e-4 && magnitude < 1e16);
    std::array<char, 64> text{};
    const std::to_chars_result result = std::to_chars(
        text.begin(), text.end(), value, writtenOut ? std::chars_format::fixed : std::chars_format::scientific);
    return QByteArray(text.data(), result.ptr - text.data());
}

} // namespace Quillmere
