#include "Platform/Linux/Applications/CgroupApplication.h"

#include <gtest/gtest.h>

using namespace Quillmere;

namespace {

struct CgroupCase
{
    const char *name;
    const char *path;
    const char *desktopId;
};

class CgroupApplicationTest : public testing::TestWithParam<CgroupCase>
{
};

constexpr const char *app = "/user.slice/user-1000.slice/user@1000.service/app.slice/";

} // namespace

TEST_P(CgroupApplicationTest, NamesTheApplication)
{
    const QByteArray path = QByteArray(app) + GetParam().path;

    EXPECT_EQ(parseCgroup("0::" + path + "\n").desktopId, GetParam().desktopId);
    EXPECT_EQ(parseCgroup("9:name=systemd:" + path + "\n8:pids:/app-other-1.scope\n").desktopId, GetParam().desktopId);
    EXPECT_EQ(parseCgroup("8:pids:" + path + "\n").desktopId, "");
}

INSTANTIATE_TEST_SUITE_P(
    Units, CgroupApplicationTest,
    testing::Values(
        CgroupCase{"Scope", "app-org.gnome.Maps-4711.scope", "org.gnome.Maps"},
        CgroupCase{"ScopeOfALauncher", "app-gnome-firefox\\x2desr-4711.scope", "firefox-esr"},
        CgroupCase{"ScopeWithAGroupInside", "app-gnome-gedit-4711.scope/inner", "gedit"},
        CgroupCase{"Service", "app-org.kde.kate@0a1b2c.service", "org.kde.kate"},
        CgroupCase{"ServiceWithoutInstance", "app-code\\x2doss.service", "code-oss"},
        CgroupCase{"ServiceOfALauncher", "app-KDE-org.kde.okular@1.service", "org.kde.okular"},
        CgroupCase{"Flatpak", "app-flatpak-org.mozilla.firefox-4711.scope", "org.mozilla.firefox"},
        CgroupCase{"Snap", "snap.firefox.firefox-3d0b3c2f-52a2-4a34-9c3a-00d1f8f6a9e1.scope", "firefox_firefox"},
        CgroupCase{"OlderSnap", "snap.brave.brave.3d0b3c2f-52a2-4a34-9c3a-00d1f8f6a9e1.scope", "brave_brave"},
        CgroupCase{"SnapWithHyphens",
                   "snap.signal\\x2ddesktop.signal-desktop-3d0b3c2f-52a2-4a34-9c3a-00d1f8f6a9e1.scope",
                   "signal-desktop_signal-desktop"},
        CgroupCase{"SnapHook", "snap.firefox.hook.configure-3d0b3c2f-52a2-4a34-9c3a-00d1f8f6a9e1.scope", ""},
        CgroupCase{"ShellInATerminal", "app-org.gnome.Terminal.slice/vte-spawn-1b2c.scope", ""},
        CgroupCase{"SystemService", "../../system.slice/cups.service", ""},
        CgroupCase{"Session", "../../session-2.scope", ""}, CgroupCase{"TooFewParts", "app-gedit.scope", ""},
        CgroupCase{"TooManyParts", "app-a-b-c-d.scope", ""}, CgroupCase{"NothingBehindThePrefix", "app-.service", ""},
        CgroupCase{"HalfAnEscape", "app-a\\x2-1.scope", "a\\x2"},
        CgroupCase{"EscapeOfNothing", "app-a\\xzz-1.scope", "a\\xzz"}, CgroupCase{"OnlyTheEnding", ".scope", ""}),
    [](const auto &info) { return info.param.name; });

TEST(CgroupTextTest, TellsTwoInstancesApart)
{
    EXPECT_EQ(parseCgroup("0::/app.slice/app-gedit-1.scope\n").unit, "app-gedit-1.scope");
    EXPECT_EQ(parseCgroup("0::/app.slice/app-gedit-2.scope\n").unit, "app-gedit-2.scope");
}

TEST(CgroupTextTest, FindsNothingInNonsense)
{
    for (const char *text : {"", "\n", "0::\n", "0\n", ":::\n", "0::/app-a-1.scope", "\xff\xff:\n"})
        EXPECT_EQ(parseCgroup(text), CgroupApplication()) << text;
}
