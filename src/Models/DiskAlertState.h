#pragma once

#include "Models/RawValue.h"

#include <QMetaType>

namespace Quillmere {

namespace DiskAlerts {
Q_NAMESPACE

/// How far an erasure has come: asked for, confirmed once, twice, three times, under way, over. Nothing ever leads to
/// Blocked.
enum class DiskAlert { None, Confirm1, Confirm2, Confirm3, Blocked, Running, Finished };
Q_ENUM_NS(DiskAlert)
} // namespace DiskAlerts

using DiskAlerts::DiskAlert;

template<>
struct RawValues<DiskAlert>
{
    static constexpr std::array<RawValueCase<DiskAlert>, 7> cases = {{
        {DiskAlert::None, u"none"},
        {DiskAlert::Confirm1, u"confirm1"},
        {DiskAlert::Confirm2, u"confirm2"},
        {DiskAlert::Confirm3, u"confirm3"},
        {DiskAlert::Blocked, u"blocked"},
        {DiskAlert::Running, u"running"},
        {DiskAlert::Finished, u"finished"},
    }};
};

/// The same, and how it ended.
struct DiskAlertState
{
    DiskAlert alert = DiskAlert::None;
    bool hasSucceeded = false; ///< Only of Finished.

    /// The case's name; of one that is over also how, as in "finished_true".
    [[nodiscard]] QString id() const
    {
        const QString name = rawValue(alert);
        if (alert != DiskAlert::Finished)
            return name;
        return name + (hasSucceeded ? u"_true"_qs : u"_false"_qs);
    }

    bool operator==(const DiskAlertState &) const = default;
};

} // namespace Quillmere
