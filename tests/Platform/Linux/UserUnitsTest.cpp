#include "Platform/Linux/UserUnits.h"
#include "Platform/Linux/MockedService.h"

#include <gmock/gmock.h>

using namespace Quillmere;

namespace {

const FilePath home("/home/ada");
const FilePath config("/home/ada/.config");

/// A manager of units in Python's words, whose files are switched for real.
const QString listing = uR"(
if not hasattr(self, 'units'):
    self.units = {
        '/usr/lib/systemd/user/music.service': 'enabled',
        '/usr/lib/systemd/user/backup.timer': 'disabled',
        '/home/ada/.config/systemd/user/own.service': 'enabled',
        '/usr/lib/systemd/user/each@.service': 'disabled',
        '/usr/lib/systemd/user/bus.service': 'static',
        '/usr/lib/systemd/user/never.service': 'masked',
        '/run/user/1000/systemd/generator/app-a@autostart.service': 'generated',
        '/usr/lib/systemd/user/alias.service': 'alias',
    }
ret = dbus.Array(list(self.units.items()), signature='(ss)')
)"_qs;

QString switching(const char *state)
{
    return uR"(
for path in self.units:
    if path.rsplit('/', 1)[1] in args[0]:
        self.units[path] = '%1'
)"_qs.arg(QLatin1String(state));
}

const QString changes = u"dbus.Array([], signature='(sss)')"_qs;

class UserUnitsTest : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(bus.isRunning());
        manager = std::make_unique<MockedService>(bus, u"org.freedesktop.systemd1"_qs, u"/org/freedesktop/systemd1"_qs,
                                                  u"org.freedesktop.systemd1.Manager"_qs);
        ASSERT_TRUE(manager->isRunning());
        manager->addProperty(u"UnitPath"_qs,
                             QStringList{u"/home/ada/.config/systemd/user"_qs, u"/etc/systemd/user"_qs});
    }
    void answer()
    {
        manager->addMethod(u"ListUnitFiles"_qs, {}, u"a(ss)"_qs, listing);
        manager->addMethod(u"EnableUnitFiles"_qs, u"asbb"_qs, u"ba(sss)"_qs,
                           switching("enabled") + u"ret = (True, %1)"_qs.arg(changes));
        manager->addMethod(u"DisableUnitFiles"_qs, u"asb"_qs, u"a(sss)"_qs,
                           switching("disabled") + u"ret = "_qs + changes);
    }
    [[nodiscard]] bool isEnabled(const FilePath &path) const
    {
        for (const StartupEntry &entry : units.entries()) {
            if (entry.path == path)
                return entry.isEnabled;
        }
        ADD_FAILURE() << "not listed: " << path.bytes().constData();
        return false;
    }

    PrivateBus bus;
    std::unique_ptr<MockedService> manager;
    const UserUnits units{home, config, bus.connection()};
    const FilePath music{"/usr/lib/systemd/user/music.service"};
};

} // namespace

TEST_F(UserUnitsTest, AreThoseThatCanBeSwitchedTheUsersOwnFirst)
{
    answer();

    EXPECT_EQ(units.entries(),
              (QList<StartupEntry>{{FilePath("/home/ada/.config/systemd/user/own.service"), u"own.service"_qs,
                                    StartupEntry::Scope::User, true},
                                   {FilePath("/usr/lib/systemd/user/backup.timer"), u"backup.timer"_qs,
                                    StartupEntry::Scope::AllUsers, false},
                                   {music, u"music.service"_qs, StartupEntry::Scope::AllUsers, true}}));
}

TEST_F(UserUnitsTest, AreSwitchedByTheManagerForGood)
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

TEST_F(UserUnitsTest, NeitherStartsNorStopsNorReloadsAnything)
{
    answer();
    (void)units.entries();
    EXPECT_TRUE(units.setEnabled(music, false));
    EXPECT_TRUE(units.setEnabled(music, true));

    QStringList methods;
    for (const QString &call : manager->calls())
        methods.append(call.section(u' ', 0, 0));
    EXPECT_EQ(methods, (QStringList{u"ListUnitFiles"_qs, u"DisableUnitFiles"_qs, u"EnableUnitFiles"_qs}));
}

TEST_F(UserUnitsTest, TellsWhyAUnitWasNotSwitched)
{
    manager->addMethod(
        u"DisableUnitFiles"_qs, u"asb"_qs, u"a(sss)"_qs,
        u"raise dbus.exceptions.DBusException('No.', name='org.freedesktop.DBus.Error.AccessDenied')"_qs);

    const Result<void> result = units.setEnabled(music, false);

    ASSERT_FALSE(result);
    EXPECT_EQ(result.failure().kind, Failure::Kind::NoPermission);
    EXPECT_EQ(result.failure().path, music);
}

TEST_F(UserUnitsTest, AreNoneWhereTheManagerAnswersSomethingElse)
{
    manager->addMethod(u"ListUnitFiles"_qs, {}, u"as"_qs, u"ret = dbus.Array(['a', 'b'], signature='s')"_qs);
    EXPECT_TRUE(units.entries().isEmpty());
}

TEST_F(UserUnitsTest, LeavesTheManagerOfAnotherHomeAlone)
{
    answer();
    const UserUnits others(FilePath("/tmp/made-up"), FilePath("/tmp/made-up/.config"), bus.connection());

    EXPECT_TRUE(others.entries().isEmpty());
    EXPECT_FALSE(others.setEnabled(music, false));
    EXPECT_TRUE(isEnabled(music));
}

TEST(UserUnitsWithoutManagerTest, AreNone)
{
    const PrivateBus bus;
    ASSERT_TRUE(bus.isRunning());
    const UserUnits units(home, config, bus.connection());

    EXPECT_TRUE(units.entries().isEmpty());
    EXPECT_FALSE(units.setEnabled(FilePath("/usr/lib/systemd/user/a.service"), true));

    const UserUnits withoutBus(home, config, QDBusConnection(u"no such connection"_qs));
    EXPECT_TRUE(withoutBus.entries().isEmpty());
    EXPECT_FALSE(withoutBus.setEnabled(FilePath("/usr/lib/systemd/user/a.service"), true));
}
