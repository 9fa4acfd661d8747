#include "Platform/Linux/LinuxDesktopAppearance.h"

#include "Platform/Linux/PrivateBus.h"

#include <QCoreApplication>
#include <QDBusMessage>
#include <QDeadlineTimer>
#include <QGuiApplication>
#include <QPalette>

#include <gtest/gtest.h>

using namespace Quillmere;

namespace {

constexpr int patience = 20000;
const QString appearance = u"org.freedesktop.appearance"_qs;
const QString scheme = u"color-scheme"_qs;
const QString interface = u"org.gnome.desktop.interface"_qs;
const QString animations = u"enable-animations"_qs;

/// Answers each of the two questions with a value wrapped twice, as portals do.
QString answering(int colorScheme, bool enableAnimations)
{
    return u"ret = dbus.UInt32(%1, variant_level=2) if args[1] == 'color-scheme' else dbus.Boolean(%2, variant_level=2)"_qs
        .arg(colorScheme)
        .arg(enableAnimations ? u"True"_qs : u"False"_qs);
}

/// True as soon as @p condition holds, with events handled meanwhile.
template<typename Condition>
bool comesTrue(const Condition &condition)
{
    const QDeadlineTimer deadline(patience);
    while (!condition()) {
        if (deadline.hasExpired())
            return false;
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 100);
    }
    return true;
}

QDBusConnection noBus()
{
    return QDBusConnection(u"a connection that nobody made"_qs);
}

} // namespace

TEST(DesktopAppearanceWithoutBusTest, TakesAThemeNamedDarkForADarkDesktop)
{
    EXPECT_EQ(LinuxDesktopAppearance(noBus(), "Adwaita:dark").colorScheme(), ColorScheme::Dark);
    EXPECT_EQ(LinuxDesktopAppearance(noBus(), "Breeze-dark").colorScheme(), ColorScheme::Dark);
    EXPECT_EQ(LinuxDesktopAppearance(noBus(), "Adwaita").colorScheme(), ColorScheme::Light);
}

TEST(DesktopAppearanceWithoutBusTest, LooksAtThePaletteWhereNoThemeIsNamed)
{
    const QPalette before = QGuiApplication::palette();
    QGuiApplication::setPalette(QPalette(Qt::black));
    EXPECT_EQ(LinuxDesktopAppearance(noBus(), "").colorScheme(), ColorScheme::Dark);

    QGuiApplication::setPalette(QPalette(Qt::white));
    EXPECT_EQ(LinuxDesktopAppearance(noBus(), "").colorScheme(), ColorScheme::Light);
    EXPECT_FALSE(LinuxDesktopAppearance(noBus(), "").prefersReducedMotion());
    QGuiApplication::setPalette(before);
}

class LinuxDesktopAppearanceTest : public testing::Test
{
protected:
    void SetUp() override { ASSERT_TRUE(bus.isRunning()); }

    PrivateBus bus;
};

TEST_F(LinuxDesktopAppearanceTest, KeepsTheFallBackWhereTheBusHasNoPortal)
{
    LinuxDesktopAppearance desktop(bus.connection(), "Adwaita:dark");
    int changes = 0;
    desktop.observe([&] { ++changes; });

    // The bus refuses the questions before it answers this one, which is asked later.
    QDBusMessage ping
        = QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_qs, u"/"_qs, u"org.freedesktop.DBus"_qs, u"GetId"_qs);
    bus.connection().call(ping);
    QCoreApplication::processEvents();

    EXPECT_EQ(desktop.colorScheme(), ColorScheme::Dark);
    EXPECT_FALSE(desktop.prefersReducedMotion());
    EXPECT_EQ(changes, 0);
}

TEST_F(LinuxDesktopAppearanceTest, TakesThePortalsAnswersWhenTheyComeAndDoesNotWaitForThem)
{
    ASSERT_TRUE(bus.startPortal(answering(1, false)));
    LinuxDesktopAppearance desktop(bus.connection(), "Adwaita");
    int changes = 0;
    desktop.observe([&] { ++changes; });
    EXPECT_EQ(desktop.colorScheme(), ColorScheme::Light);

    EXPECT_TRUE(
        comesTrue([&] { return desktop.colorScheme() == ColorScheme::Dark && desktop.prefersReducedMotion(); }));
    EXPECT_EQ(changes, 2);
}

TEST_F(LinuxDesktopAppearanceTest, IsLightWhereThePortalKnowsNoPreference)
{
    ASSERT_TRUE(bus.startPortal(answering(0, true)));
    LinuxDesktopAppearance desktop(bus.connection(), "Adwaita:dark");

    EXPECT_TRUE(comesTrue([&] { return desktop.colorScheme() == ColorScheme::Light; }));
    EXPECT_FALSE(desktop.prefersReducedMotion());
}

TEST_F(LinuxDesktopAppearanceTest, FollowsChangesWhileItRuns)
{
    ASSERT_TRUE(bus.startPortal(answering(2, true)));
    LinuxDesktopAppearance desktop(bus.connection(), "Adwaita:dark");
    ASSERT_TRUE(comesTrue([&] { return desktop.colorScheme() == ColorScheme::Light; }));
    int changes = 0;
    desktop.observe([&] { ++changes; });

    bus.emitSettingChanged(appearance, scheme, 1u);
    EXPECT_TRUE(comesTrue([&] { return desktop.colorScheme() == ColorScheme::Dark; }));
    bus.emitSettingChanged(interface, animations, false);
    EXPECT_TRUE(comesTrue([&] { return desktop.prefersReducedMotion(); }));
    bus.emitSettingChanged(appearance, scheme, 2u);
    EXPECT_TRUE(comesTrue([&] { return desktop.colorScheme() == ColorScheme::Light; }));

    EXPECT_EQ(changes, 3);
}

TEST_F(LinuxDesktopAppearanceTest, TellsNothingWhenASettingStaysOrBelongsToOthers)
{
    ASSERT_TRUE(bus.startPortal(answering(1, true)));
    LinuxDesktopAppearance desktop(bus.connection(), "Adwaita");
    ASSERT_TRUE(comesTrue([&] { return desktop.colorScheme() == ColorScheme::Dark; }));
    int changes = 0;
    desktop.observe([&] { ++changes; });

    bus.emitSettingChanged(appearance, scheme, 1u);
    bus.emitSettingChanged(appearance, u"accent-color"_qs, 2u);
    bus.emitSettingChanged(interface, scheme, 2u);
    bus.emitSettingChanged(interface, animations, u"false"_qs);
    bus.emitSettingChanged(interface, animations, false);

    EXPECT_TRUE(comesTrue([&] { return desktop.prefersReducedMotion(); }));
    EXPECT_EQ(desktop.colorScheme(), ColorScheme::Dark);
    EXPECT_EQ(changes, 1);
}

TEST_F(LinuxDesktopAppearanceTest, KeepsTheFallBackWhereThePortalRefuses)
{
    ASSERT_TRUE(
        bus.startPortal(u"raise dbus.exceptions.DBusException('no', name='org.freedesktop.portal.Error.NotFound')"_qs));
    LinuxDesktopAppearance desktop(bus.connection(), "Adwaita:dark");

    bus.emitSettingChanged(interface, animations, false);

    EXPECT_TRUE(comesTrue([&] { return desktop.prefersReducedMotion(); }));
    EXPECT_EQ(desktop.colorScheme(), ColorScheme::Dark);
}
