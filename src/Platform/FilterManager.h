#pragma once

#include <QString>
#include <QVariantMap>

#include <functional>
#include <optional>

namespace Quillmere {

/// What the traffic filter is told.
struct FilterProviderConfiguration
{
    bool filterSockets = false;
    QString filterDataProviderBundleIdentifier;
    QVariantMap vendorConfiguration; ///< Understood by the filter alone.

    bool operator==(const FilterProviderConfiguration &) const = default;
};

/// The system's record of the traffic filter: as it was loaded last, changed here, and handed back by saving.
/// GUI thread only.
class FilterManager
{
public:
    /// Given the system's own sentence when it failed, nothing when it went well. Called once, later, on the GUI
    /// thread.
    using Completion = std::function<void(const std::optional<QString> &error)>;

    virtual ~FilterManager() = default;

    virtual void loadFromPreferences(Completion completion) = 0;
    virtual void saveToPreferences(Completion completion) = 0;

    std::optional<FilterProviderConfiguration> providerConfiguration; ///< Nothing until one was saved.
    QString localizedDescription;
    bool isEnabled = false;
};

} // namespace Quillmere
