#pragma once

#include "Platform/FilterManager.h"

#include <QByteArray>

#include <optional>

namespace Quillmere {

/// The filter's record as it is handed over and stored: one JSON object with exactly these members, arrays in the order
/// given.
///
///     filterSockets               Boolean
///     identifier                  text, the filter's own identifier
///     description                 text for people
///     enabled                     Boolean
///     blockedBundleIdentifiers    array of texts
///     ecoTrafficEnabled           Boolean
///     ecoAllowedBundleIdentifiers array of texts
struct FilterPolicyRecord
{
    FilterProviderConfiguration configuration;
    QString localizedDescription;
    bool isEnabled = false;

    bool operator==(const FilterPolicyRecord &) const = default;
};

/// One line. A member that @p record does not hold as its type asks is written as false or empty.
[[nodiscard]] QByteArray written(const FilterPolicyRecord &record);

/// Nothing when a member is missing, of another type, or not one of these.
[[nodiscard]] std::optional<FilterPolicyRecord> readFilterPolicyRecord(const QByteArray &json);

} // namespace Quillmere
