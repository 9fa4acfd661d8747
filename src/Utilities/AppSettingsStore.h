#pragma once

#include "Models/AppSettings.h"
#include "Platform/UserDefaults.h"

namespace Quillmere {

/// Where the settings record lies between two runs. Reports nothing to anybody. GUI thread only.
class AppSettingsStore
{
public:
    /// The record's place in the user defaults, as JSON.
    [[nodiscard]] static QString key() { return u"appSettings"_qs; }

    /// A field that is missing has its default; one that holds anything it should not makes the whole record the
    /// default one, as does a record that is missing or damaged.
    [[nodiscard]] static AppSettings load(const UserDefaults &defaults);
    static void save(const AppSettings &settings, UserDefaults &defaults);
};

} // namespace Quillmere
