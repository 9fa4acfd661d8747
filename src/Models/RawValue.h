#pragma once

#include <QList>
#include <QString>

#include <array>
#include <optional>
#include <utility>

namespace Quillmere {

/// The stored texts of an enumeration's cases, in declaration order. Specialised beside each enumeration that is
/// written to disk or forms part of a key, with a static constexpr array `cases`.
template<typename Enumeration>
struct RawValues;

/// Pairs a case with its stored text.
template<typename Enumeration>
using RawValueCase = std::pair<Enumeration, QStringView>;

template<typename Enumeration>
[[nodiscard]] QString rawValue(Enumeration value)
{
    for (const auto &[candidate, text] : RawValues<Enumeration>::cases) {
        if (candidate == value)
            return text.toString();
    }
    Q_UNREACHABLE();
}

/// Nothing for any text that is no case's. Exact, case included.
template<typename Enumeration>
[[nodiscard]] std::optional<Enumeration> fromRawValue(QStringView text)
{
    for (const auto &[candidate, candidateText] : RawValues<Enumeration>::cases) {
        if (candidateText == text)
            return candidate;
    }
    return std::nullopt;
}

/// In declaration order.
template<typename Enumeration>
[[nodiscard]] QList<Enumeration> allCases()
{
    QList<Enumeration> values;
    for (const auto &[value, text] : RawValues<Enumeration>::cases)
        values.append(value);
    return values;
}

/// The @p index-th in declaration order; nothing for an index without one.
template<typename Enumeration>
[[nodiscard]] std::optional<Enumeration> caseAt(int index)
{
    const auto &cases = RawValues<Enumeration>::cases;
    if (index < 0 || index >= int(cases.size()))
        return std::nullopt;
    return cases[size_t(index)].first;
}

} // namespace Quillmere
