#include "Platform/Linux/Startup/UserUnitsFixture.h"

using namespace Quillmere;

namespace {

class UserUnitsSwitchingTest : public UserUnitsFixture
{
};

} // namespace

TEST_F(UserUnitsSwitchingTest, AreSwitchedByTheManagerForGood)
{
    answer();
    ASSERT_TRUE(isEnabled(music));

    EXPECT_TRUE(units.setEnabled(music, false));
    EXPECT_FALSE(isEnabled(music));
    EXPECT_TRUE(units.setEnabled(music, true));
    EXPECT_TRUE(isEnabled(music));

    EXPECT_TRUE(UserUnits::owns(music));
    EXPECT_FALSE(UserUnits::owns(FilePath("/Library/LaunchAgents/a.plist")));
}

TEST_F(UserUnitsSwitchingTest, NeitherStartsNorStopsNorReloadsAnything)
{
    answer();
    (void)units.entries();
    EXPECT_TRUE(units.setEnabled(music, false));
    EXPECT_TRUE(units.setEnabled(music, true));

    EXPECT_EQ(methodsCalled(), (QStringList{u"ListUnitFiles"_qs, u"DisableUnitFiles"_qs, u"EnableUnitFiles"_qs}));
}

TEST_F(UserUnitsSwitchingTest, TellsWhyAUnitWasNotSwitched)
{
    answer();
    manager->addMethod(
        u"DisableUnitFiles"_qs, u"asb"_qs, u"a(sss)"_qs,
        u"raise dbus.exceptions.DBusException('No.', name='org.freedesktop.DBus.Error.AccessDenied')"_qs);

    const Result<void> result = units.setEnabled(music, false);

    ASSERT_FALSE(result);
    EXPECT_EQ(result.failure().kind, Failure::Kind::NoPermission);
    EXPECT_EQ(result.failure().path, music);
}

TEST_F(UserUnitsSwitchingTest, SwitchesOffForOneUserWhatIsEnabledForAll)
{
    answer();
    ASSERT_TRUE(isEnabled(agent));

    EXPECT_TRUE(units.setEnabled(agent, false));
    EXPECT_FALSE(isEnabled(agent));
    EXPECT_EQ(units.entries().size(), 4);

    EXPECT_TRUE(units.setEnabled(agent, true));
    EXPECT_TRUE(isEnabled(agent));
    EXPECT_FALSE(home.exists("home/.config/systemd/user/agent.socket"));
}

TEST_F(UserUnitsSwitchingTest, TakeOneThatIsGoneAfterwardsForNoSuccess)
{
    answer();
    (void)units.entries();
    add(u"DisableUnitFiles"_qs, u"asb"_qs, u"a(sss)"_qs,
        u"del self.units['SYSTEM/music.service']; ret = "_qs + noChanges);

    EXPECT_FALSE(units.setEnabled(music, false));
}

TEST_F(UserUnitsSwitchingTest, AreMaskedWhereTheManagerWouldNotEnableThemAgain)
{
    answer();
    home.addFile("system/music.service", "[Service]\nExecStart=/bin/true\n");
    ASSERT_TRUE(isEnabled(music));

    EXPECT_TRUE(units.setEnabled(music, false));
    EXPECT_FALSE(isEnabled(music));
    EXPECT_FALSE(methodsCalled().contains(u"DisableUnitFiles"_qs));

    EXPECT_TRUE(units.setEnabled(music, true));
    EXPECT_TRUE(isEnabled(music));
}

TEST_F(UserUnitsSwitchingTest, AreLeftOnWhereTheyAreTheUsersAndTheManagerWouldNotEnableThemAgain)
{
    answer();
    home.addFile("home/.config/systemd/user/own.service", "[Service]\nExecStart=/bin/true\n");
    ASSERT_TRUE(isEnabled(own.appending("own.service")));

    const Result<void> result = units.setEnabled(own.appending("own.service"), false);

    ASSERT_FALSE(result);
    EXPECT_EQ(result.failure().kind, Failure::Kind::NotSupported);
    EXPECT_TRUE(isEnabled(own.appending("own.service")));
}

TEST_F(UserUnitsSwitchingTest, AreLeftOnWhereNothingWouldShowThemOnceTheyAreMasked)
{
    answer();
    const FilePath far = home.addFile("elsewhere/far.service", "[Service]\nExecStart=/bin/true\n");
    const FilePath wide = home.addFile("elsewhere/wide.service", install);
    QString python = u"self.units = {'%1': 'enabled', '%2': 'enabled'}\n"_qs.arg(textOf(far), textOf(wide));
    add(u"ListUnitFiles"_qs, {}, u"a(ss)"_qs,
        u"if not hasattr(self, 'units'):\n    "_qs + python
            + u"ret = dbus.Array(list(self.units.items()), signature='(ss)')"_qs);
    add(u"DisableUnitFiles"_qs, u"asb"_qs, u"a(sss)"_qs, u"ret = "_qs + noChanges);

    for (const FilePath &unit : {far, wide}) {
        ASSERT_TRUE(isEnabled(unit));
        const Result<void> result = units.setEnabled(unit, false);
        ASSERT_FALSE(result);
        EXPECT_EQ(result.failure().kind, Failure::Kind::NotSupported);
        EXPECT_TRUE(isEnabled(unit));
    }
    EXPECT_FALSE(methodsCalled().contains(u"MaskUnitFiles"_qs));
}

TEST_F(UserUnitsSwitchingTest, FailsWhereTheManagerLeavesAUnitAsItWas)
{
    answer();
    (void)units.entries();
    add(u"MaskUnitFiles"_qs, u"asbb"_qs, u"a(sss)"_qs, u"ret = "_qs + noChanges);

    EXPECT_FALSE(units.setEnabled(agent, false));
    EXPECT_TRUE(isEnabled(agent));
}
