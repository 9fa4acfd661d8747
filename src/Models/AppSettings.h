#pragma once

#include "Models/Language.h"

#include <QStringList>

namespace Quillmere {

namespace AppThemes {
Q_NAMESPACE

/// Appearance of the windows. System follows the desktop.
enum class AppTheme { System, Light, Dark };
Q_ENUM_NS(AppTheme)
} // namespace AppThemes

namespace MenuBarDisplayModes {
Q_NAMESPACE

/// What stands beside the program's icon in the menu bar.
enum class MenuBarDisplayMode { IconOnly, Cpu, Traffic, Ram };
Q_ENUM_NS(MenuBarDisplayMode)
} // namespace MenuBarDisplayModes

using AppThemes::AppTheme;
using MenuBarDisplayModes::MenuBarDisplayMode;

template<>
struct RawValues<AppTheme>
{
    static constexpr std::array<RawValueCase<AppTheme>, 3> cases = {{
        {AppTheme::System, u"system"},
        {AppTheme::Light, u"light"},
        {AppTheme::Dark, u"dark"},
    }};
};

template<>
struct RawValues<MenuBarDisplayMode>
{
    static constexpr std::array<RawValueCase<MenuBarDisplayMode>, 4> cases = {{
        {MenuBarDisplayMode::IconOnly, u"iconOnly"},
        {MenuBarDisplayMode::Cpu, u"cpu"},
        {MenuBarDisplayMode::Traffic, u"traffic"},
        {MenuBarDisplayMode::Ram, u"ram"},
    }};
};

/// The persisted settings. The defaults are those of a new record and of any missing key.
struct AppSettings
{
    Language language = Language::System; ///< Carried along; the active language is the Localizer's.
    AppTheme theme = AppTheme::System;
    MenuBarDisplayMode menuBarDisplayMode = MenuBarDisplayMode::IconOnly;
    bool safeMode = true;
    bool advancedMode = false;
    bool alwaysConfirmDangerous = true;
    QStringList excludedPaths;
    QStringList excludedApps;
    bool scanExternalDrives = false;
    bool scanICloudDrive = false;
    bool showHiddenFiles = false;
    bool anonymousDiagnostics = false;
    bool keepAwakeEnabled = false; ///< The wish; whether the machine is kept awake is another matter.

    bool operator==(const AppSettings &) const = default;
};

} // namespace Quillmere
