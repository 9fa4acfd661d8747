#include "Platform/Linux/Desktop/UrlOpening.h"

#undef signals
#include <gio/gdesktopappinfo.h>

#include <array>
#include <memory>

namespace Quillmere {

namespace {

constexpr auto settingsScheme = u"x-apple.systempreferences";

// One for each desktop; each says itself on which it is shown.
constexpr std::array settingsPrograms = {
    "org.gnome.Settings.desktop",    "gnome-control-center.desktop",  "systemsettings.desktop",
    "xfce-settings-manager.desktop", "cinnamon-settings.desktop",     "matecc.desktop",
    "lxqt-config.desktop",           "budgie-control-center.desktop",
};

struct Unref
{
    void operator()(void *object) const { g_object_unref(object); }
};

void openSettings()
{
    for (const char *id : settingsPrograms) {
        const std::unique_ptr<GDesktopAppInfo, Unref> program(g_desktop_app_info_new(id));
        if (program && g_desktop_app_info_get_show_in(program.get(), nullptr) != 0
            && g_app_info_launch(G_APP_INFO(program.get()), nullptr, nullptr, nullptr) != 0)
            return;
    }
}

} // namespace

void openURL(const QUrl &url)
{
    if (url.scheme() == settingsScheme)
        openSettings();
    else
        g_app_info_launch_default_for_uri(url.toEncoded().constData(), nullptr, nullptr);
}

} // namespace Quillmere
