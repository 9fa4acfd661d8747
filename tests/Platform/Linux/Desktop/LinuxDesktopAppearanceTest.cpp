#include "Platform/Linux/Desktop/LinuxDesktopAppearance.h"

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
constexpr std::chrono::milliseconds longPatience{patience};
const QString appearance = u"org.freedesktop.appearance"_qs;
const QString scheme = u"color-scheme"_qs;
const QString interface = u"org.gnome.desktop.interface"_qs;
const QString animations = u"enable-animations"_qs;
const QString theme = u"gtk-theme"_qs;

/// Answers each of the questions with a value wrapped twice, as portals do.
QString answering(int colorScheme, bool enableAnimations, const QString &gtkTheme = u"Adwaita"_qs)
{
    return u"ret = {'color-scheme': dbus.UInt32(%1, variant_level=2), 'gtk-theme': dbus.String('%3', variant_level=2), "
           u"'enable-animations': dbus.Boolean(%2, variant_level=2)}[args[1]]"_qs.arg(colorScheme)
               .arg(enableAnimations ? u"True"_qs : u"False"_qs, gtkTheme);
}

/// Answers so, but only after a while.
QString late(const QString &answer)
{
    return u"import time; time.sleep(0.3); "_qs + answer;
}

/// A palette of the application, until it goes.
class PaletteOfTheApplication
{
public:
    explicit PaletteOfTheApplication(Qt::GlobalColor colour) { QGuiApplication::setPalette(QPalette(colour)); }
    ~PaletteOfTheApplication() { QGuiApplication::setPalette(m_before); }
    Q_DISABLE_COPY_MOVE(PaletteOfTheApplication)

private:
    QPalette m_before = QGuiApplication::palette();
};

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
    EXPECT_EQ(LinuxDesktopAppearance(noBus(), "Mint-Y-Dark-Aqua").colorScheme(), ColorScheme::Dark);
    EXPECT_EQ(LinuxDesktopAppearance(noBus(), "Arc-Darker").colorScheme(), ColorScheme::Light);
    EXPECT_EQ(LinuxDesktopAppearance(noBus(), "Adwaita").colorScheme(), ColorScheme::Light);
}

TEST(DesktopAppearanceWithoutBusTest, LooksAtThePaletteWhereNoThemeIsNamed)
{
    const PaletteOfTheApplication black(Qt::black);
    EXPECT_EQ(LinuxDesktopAppearance(noBus(), "").colorScheme(), ColorScheme::Dark);

    const PaletteOfTheApplication white(Qt::white);
    EXPECT_EQ(LinuxDesktopAppearance(noBus(), "").colorScheme(), ColorScheme::Light);
    EXPECT_FALSE(LinuxDesktopAppearance(noBus(), "").prefersReducedMotion());
}

TEST(DesktopAppearanceWithoutBusTest, FollowsThePaletteWhileItRuns)
{
    const PaletteOfTheApplication white(Qt::white);
    LinuxDesktopAppearance desktop(noBus(), "");
    LinuxDesktopAppearance namedLight(noBus(), "Adwaita");
    QList<ColorScheme> told;
    desktop.observe([&] { told.append(desktop.colorScheme()); });
    namedLight.observe([] { FAIL() << "its theme decides"; });

    {
        const PaletteOfTheApplication black(Qt::black);
        ASSERT_TRUE(comesTrue([&] { return !told.isEmpty(); }));
    }

    EXPECT_TRUE(comesTrue([&] { return told.size() == 2; }));
    EXPECT_EQ(told, (QList{ColorScheme::Dark, ColorScheme::Light}));
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

TEST_F(LinuxDesktopAppearanceTest, KeepsTheThemeOfTheEnvironmentWhereThePortalKnowsNoPreference)
{
    ASSERT_TRUE(bus.startPortal(answering(0, false)));
    LinuxDesktopAppearance dark(bus.connection(), "Adwaita:dark");
    LinuxDesktopAppearance light(bus.connection(), "Adwaita");

    dark.awaitAnswers(longPatience);
    light.awaitAnswers(longPatience);

    ASSERT_TRUE(dark.prefersReducedMotion() && light.prefersReducedMotion());
    EXPECT_EQ(dark.colorScheme(), ColorScheme::Dark);
    EXPECT_EQ(light.colorScheme(), ColorScheme::Light);
}

TEST_F(LinuxDesktopAppearanceTest, FollowsTheThemeOfTheDesktopWhereThePortalKnowsNoPreference)
{
    const PaletteOfTheApplication white(Qt::white);
    ASSERT_TRUE(bus.startPortal(answering(0, true, u"Greybird-dark"_qs)));
    LinuxDesktopAppearance desktop(bus.connection(), "");
    EXPECT_EQ(desktop.colorScheme(), ColorScheme::Light);
    EXPECT_TRUE(comesTrue([&] { return desktop.colorScheme() == ColorScheme::Dark; }));

    bus.emitSettingChanged(interface, theme, u"Greybird"_qs);
    EXPECT_TRUE(comesTrue([&] { return desktop.colorScheme() == ColorScheme::Light; }));
    bus.emitSettingChanged(interface, theme, u"Mint-Y-Dark"_qs);
    EXPECT_TRUE(comesTrue([&] { return desktop.colorScheme() == ColorScheme::Dark; }));
    bus.emitSettingChanged(appearance, scheme, 2u);
    EXPECT_TRUE(comesTrue([&] { return desktop.colorScheme() == ColorScheme::Light; }));
    bus.emitSettingChanged(appearance, scheme, 0u);
    EXPECT_TRUE(comesTrue([&] { return desktop.colorScheme() == ColorScheme::Dark; }));
}

TEST_F(LinuxDesktopAppearanceTest, FollowsTheEnvironmentsThemeRatherThanTheDesktops)
{
    ASSERT_TRUE(bus.startPortal(answering(0, false, u"Greybird-dark"_qs)));
    LinuxDesktopAppearance desktop(bus.connection(), "Adwaita");

    desktop.awaitAnswers(longPatience);

    ASSERT_TRUE(desktop.prefersReducedMotion());
    EXPECT_EQ(desktop.colorScheme(), ColorScheme::Light);
}

TEST_F(LinuxDesktopAppearanceTest, HasTheAnswersOfALatePortalOnceTheyWereAwaited)
{
    ASSERT_TRUE(bus.startPortal(late(answering(1, false))));
    LinuxDesktopAppearance desktop(bus.connection(), "Adwaita");
    int changes = 0;
    desktop.observe([&] { ++changes; });

    desktop.awaitAnswers(longPatience);

    EXPECT_EQ(desktop.colorScheme(), ColorScheme::Dark);
    EXPECT_TRUE(desktop.prefersReducedMotion());
    EXPECT_EQ(changes, 2);
    // What came in the meantime is not taken again.
    QCoreApplication::processEvents();
    EXPECT_EQ(changes, 2);
}

TEST_F(LinuxDesktopAppearanceTest, GoesOnWithoutAnswersThatComeTooLateAndTakesThemThen)
{
    ASSERT_TRUE(bus.startPortal(late(answering(1, false))));
    LinuxDesktopAppearance desktop(bus.connection(), "Adwaita");

    desktop.awaitAnswers(std::chrono::milliseconds(1));

    EXPECT_EQ(desktop.colorScheme(), ColorScheme::Light);
    EXPECT_TRUE(
        comesTrue([&] { return desktop.colorScheme() == ColorScheme::Dark && desktop.prefersReducedMotion(); }));
}

TEST_F(LinuxDesktopAppearanceTest, GoesOnWithoutAPortalThatNeverAnswers)
{
    ASSERT_TRUE(bus.startPortal(u"import time; time.sleep(3600)"_qs));
    LinuxDesktopAppearance desktop(bus.connection(), "Adwaita:dark");

    desktop.awaitAnswers(std::chrono::milliseconds(50));

    EXPECT_EQ(desktop.colorScheme(), ColorScheme::Dark);
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
