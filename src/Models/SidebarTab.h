#pragma once

#include "Models/RawValue.h"

#include <QMetaType>

namespace Quillmere {

namespace SidebarTabs {
Q_NAMESPACE

/// The destinations of the main window.
enum class SidebarTab {
    Dashboard,
    SafeCleanup,
    ProfessionalCleanup,
    LargeFiles,
    Browsers,
    SystemData,
    Startup,
    Applications,
    Tools,
    History,
    Settings,
};
Q_ENUM_NS(SidebarTab)
} // namespace SidebarTabs

using SidebarTabs::SidebarTab;

template<>
struct RawValues<SidebarTab>
{
    static constexpr std::array<RawValueCase<SidebarTab>, 11> cases = {{
        {SidebarTab::Dashboard, u"dashboard"},
        {SidebarTab::SafeCleanup, u"safeCleanup"},
        {SidebarTab::ProfessionalCleanup, u"professionalCleanup"},
        {SidebarTab::LargeFiles, u"largeFiles"},
        {SidebarTab::Browsers, u"browsers"},
        {SidebarTab::SystemData, u"systemData"},
        {SidebarTab::Startup, u"startup"},
        {SidebarTab::Applications, u"applications"},
        {SidebarTab::Tools, u"tools"},
        {SidebarTab::History, u"history"},
        {SidebarTab::Settings, u"settings"},
    }};
};

/// Name of the destination's symbol.
[[nodiscard]] inline QString icon(SidebarTab tab)
{
    switch (tab) {
    case SidebarTab::Dashboard:
        return u"gauge.medium"_qs;
    case SidebarTab::SafeCleanup:
        return u"checkmark.shield"_qs;
    case SidebarTab::ProfessionalCleanup:
        return u"wrench.and.screwdriver"_qs;
    case SidebarTab::LargeFiles:
        return u"doc.text.magnifyingglass"_qs;
    case SidebarTab::Browsers:
        return u"globe"_qs;
    case SidebarTab::SystemData:
        return u"internaldrive"_qs;
    case SidebarTab::Startup:
        return u"power"_qs;
    case SidebarTab::Applications:
        return u"square.grid.2x2"_qs;
    case SidebarTab::Tools:
        return u"hammer"_qs;
    case SidebarTab::History:
        return u"clock.arrow.circlepath"_qs;
    case SidebarTab::Settings:
        return u"gear"_qs;
    }
    Q_UNREACHABLE();
}

/// Key of the destination's title.
[[nodiscard]] inline QString titleKey(SidebarTab tab)
{
    return u"nav."_qs + rawValue(tab);
}

} // namespace Quillmere
