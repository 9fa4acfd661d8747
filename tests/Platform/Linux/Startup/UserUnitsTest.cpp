#include "Platform/Linux/Files/LinuxFileManager.h"
#include "Platform/Linux/Startup/UserUnitsFixture.h"

using namespace Quillmere;

namespace {

class UserUnitsTest : public UserUnitsFixture
{
};

} // namespace

TEST_F(UserUnitsTest, AreThoseThatCanBeSwitchedTheUsersOwnFirst)
{
    answer();

    EXPECT_EQ(units.entries(),
              (QList<StartupEntry>{
                  {own.appending("own.service"), u"own.service"_qs, StartupEntry::Scope::User, true},
                  {agent, u"agent.socket"_qs, StartupEntry::Scope::AllUsers, true},
                  {system.appending("backup.timer"), u"backup.timer"_qs, StartupEntry::Scope::AllUsers, false},
                  {music, u"music.service"_qs, StartupEntry::Scope::AllUsers, true}}));
}

TEST_F(UserUnitsTest, AreNoneWhereTheManagerAnswersSomethingElse)
{
    manager->addMethod(u"ListUnitFiles"_qs, {}, u"as"_qs, u"ret = dbus.Array(['a', 'b'], signature='s')"_qs);
    EXPECT_TRUE(units.entries().isEmpty());
}

TEST_F(UserUnitsTest, KeepTheirPathWhereTheManagerNamesTheirFolderByALink)
{
    home.addLink("by another name", system.bytes());
    QString renamed = listingOfSeveral();
    add(u"ListUnitFiles"_qs, {}, u"a(ss)"_qs, renamed.replace(u"SYSTEM"_qs, textOf(home.path("by another name"))));

    EXPECT_TRUE(isEnabled(music));
}

TEST_F(UserUnitsTest, LeaveOutALinkedOneThatNothingWouldStart)
{
    home.addFile("home/dotfiles/linked.service", "[Service]\nExecStart=/bin/true\n");
    home.addLink("home/.config/systemd/user/linked.service", "../../../dotfiles/linked.service");
    add(u"ListUnitFiles"_qs, {}, u"a(ss)"_qs,
        u"ret = dbus.Array([('OWN/linked.service', 'linked')], signature='(ss)')"_qs);

    EXPECT_TRUE(units.entries().isEmpty());
}

TEST_F(UserUnitsTest, LeavesTheManagerOfAnotherHomeAlone)
{
    answer();
    const TemporaryHome elsewhere;
    const auto files = std::make_shared<LinuxFileManager>(elsewhere.environment());
    const UserUnits others({files, elsewhere.path("home/.config/systemd/user"), {}}, elsewhere.path("home"),
                           bus.connection());

    EXPECT_TRUE(others.entries().isEmpty());
    EXPECT_FALSE(others.setEnabled(music, false));
    EXPECT_TRUE(isEnabled(music));
}

TEST(UserUnitsWithoutManagerTest, AreReadFromDiskAndCannotBeSwitched)
{
    const PrivateBus bus;
    ASSERT_TRUE(bus.isRunning());
    const TemporaryHome home;
    const FilePath own = home.path("home/.config/systemd/user");
    const FilePath mine
        = home.addFile("home/.config/systemd/user/mine.service", "[Install]\nWantedBy=default.target\n");
    home.addLink("home/.config/systemd/user/default.target.wants/mine.service", mine.bytes());
    const auto files = std::make_shared<LinuxFileManager>(home.environment());
    const QList<StartupEntry> expected = {{mine, u"mine.service"_qs, StartupEntry::Scope::User, true}};

    for (const QDBusConnection &connection : {bus.connection(), QDBusConnection(u"no such connection"_qs)}) {
        const UserUnits units({files, own, {}}, home.path("home"), connection);
        EXPECT_EQ(units.entries(), expected);
        EXPECT_FALSE(units.setEnabled(mine, false));
        EXPECT_EQ(units.entries(), expected);
    }
}
