#include "Platform/Linux/Startup/UserUnits.h"
#include "Platform/Linux/Files/LinuxFileManager.h"
#include "Platform/Linux/MockedService.h"
#include "Platform/Linux/TemporaryHome.h"

#include <gmock/gmock.h>

#include <filesystem>

using namespace Quillmere;

namespace {

const QByteArray install = "[Unit]\n[Install]\nWantedBy=default.target\n";

/// A manager of units in Python's words, whose files are switched for real. OWN and SYSTEM are its two folders.
const QString listing = uR"(
if not hasattr(self, 'units'):
    self.units = {
        'SYSTEM/music.service': 'enabled',
        'SYSTEM/backup.timer': 'disabled',
        'OWN/own.service': 'enabled',
        'SYSTEM/each@.service': 'disabled',
        'SYSTEM/bus.service': 'static',
        'SYSTEM/never.service': 'masked',
        '/run/user/1000/systemd/generator/app-a@autostart.service': 'generated',
        'SYSTEM/alias.service': 'alias',
        'SYSTEM/agent.socket': 'enabled',
    }
ret = dbus.Array(list(self.units.items()), signature='(ss)')
)"_qs;

/// Nobody but the administrator disables what is enabled for all users.
QString switching(const char *state)
{
    return uR"(
for path in self.units:
    name = path.rsplit('/', 1)[1]
    if name in args[0] and name != 'agent.socket':
        self.units[path] = '%1'
)"_qs.arg(QLatin1String(state));
}

const QString masking = uR"(
import os
for name in args[0]:
    os.symlink('/dev/null', 'OWN/' + name)
    del self.units['SYSTEM/' + name]
    self.units['OWN/' + name] = 'masked'
)"_qs;

const QString unmasking = uR"(
import os
for name in args[0]:
    os.unlink('OWN/' + name)
    del self.units['OWN/' + name]
    self.units['SYSTEM/' + name] = 'enabled'
)"_qs;

const QString telling = uR"(
ret = ''
for path, state in self.units.items():
    if path.rsplit('/', 1)[1] == args[0]:
        ret = state
)"_qs;

/// As systemd does it: one that nothing leads to any more is not known.
const QString tellingOfLink = uR"(
import os
state = 'enabled' if getattr(self, 'is_wanted', True) else 'linked'
if not os.path.islink('OWN/linked.service'):
    state = ''
)"_qs;

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
        manager->addProperty(u"UnitPath"_qs, QStringList{textOf(own), textOf(system)});
        home.addFolder("home/.config/systemd/user");
        for (const char *unit : {"agent.socket", "backup.timer", "music.service"})
            home.addFile(QByteArray("system/") + unit, install);
    }
    void add(const QString &method, const QString &in, const QString &out, QString python)
    {
        python.replace(u"OWN"_qs, textOf(own)).replace(u"SYSTEM"_qs, textOf(system));
        manager->addMethod(method, in, out, python);
    }
    void answer()
    {
        add(u"ListUnitFiles"_qs, {}, u"a(ss)"_qs, listing);
        add(u"EnableUnitFiles"_qs, u"asbb"_qs, u"ba(sss)"_qs,
            switching("enabled") + u"ret = (True, %1)"_qs.arg(changes));
        add(u"DisableUnitFiles"_qs, u"asb"_qs, u"a(sss)"_qs, switching("disabled") + u"ret = "_qs + changes);
        add(u"MaskUnitFiles"_qs, u"asbb"_qs, u"a(sss)"_qs, masking + u"ret = "_qs + changes);
        add(u"UnmaskUnitFiles"_qs, u"asb"_qs, u"a(sss)"_qs, unmasking + u"ret = "_qs + changes);
        add(u"GetUnitFileState"_qs, u"s"_qs, u"s"_qs, telling);
    }
    /// A manager of one unit, which is a link of the user's.
    void answerForLink()
    {
        add(u"ListUnitFiles"_qs, {}, u"a(ss)"_qs,
            tellingOfLink + u"ret = dbus.Array([('OWN/linked.service', state)] if state else [], signature='(ss)')"_qs);
        add(u"GetUnitFileState"_qs, u"s"_qs, u"s"_qs, tellingOfLink + u"ret = state"_qs);
        add(u"EnableUnitFiles"_qs, u"asbb"_qs, u"ba(sss)"_qs,
            u"self.is_wanted = True\nret = (True, %1)"_qs.arg(changes));
        add(u"DisableUnitFiles"_qs, u"asb"_qs, u"a(sss)"_qs,
            u"import os\nos.unlink('OWN/linked.service')\nself.is_wanted = False\nret = "_qs + changes);
    }
    [[nodiscard]] QStringList methodsCalled() const
    {
        QStringList methods;
        for (const QString &call : manager->calls())
            methods.append(call.section(u' ', 0, 0));
        methods.removeAll(u"GetUnitFileState"_qs);
        return methods;
    }
    [[nodiscard]] static QString textOf(const FilePath &path) { return QString::fromUtf8(path.bytes()); }
    [[nodiscard]] UserUnits unitsOn(const QDBusConnection &connection) const
    {
        const auto files = std::make_shared<LinuxFileManager>(home.environment());
        return {{files, own, {system}}, home.path("home"), connection};
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
    TemporaryHome home;
    const FilePath own = home.path("home/.config/systemd/user");
    const FilePath system = home.path("system");
    const UserUnits units = unitsOn(bus.connection());
    const FilePath music = system.appending("music.service");
    const FilePath agent = system.appending("agent.socket");
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

    EXPECT_EQ(methodsCalled(), (QStringList{u"ListUnitFiles"_qs, u"DisableUnitFiles"_qs, u"EnableUnitFiles"_qs}));
}

TEST_F(UserUnitsTest, TellsWhyAUnitWasNotSwitched)
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

TEST_F(UserUnitsTest, AreNoneWhereTheManagerAnswersSomethingElse)
{
    manager->addMethod(u"ListUnitFiles"_qs, {}, u"as"_qs, u"ret = dbus.Array(['a', 'b'], signature='s')"_qs);
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

TEST_F(UserUnitsTest, SwitchesOffForOneUserWhatIsEnabledForAll)
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

TEST_F(UserUnitsTest, KeepTheirPathWhereTheManagerNamesTheirFolderByALink)
{
    home.addLink("by another name", system.bytes());
    QString renamed = listing;
    add(u"ListUnitFiles"_qs, {}, u"a(ss)"_qs, renamed.replace(u"SYSTEM"_qs, textOf(home.path("by another name"))));

    EXPECT_TRUE(isEnabled(music));
}

TEST_F(UserUnitsTest, KeepTheLinkThatTheUserHasInThePlaceOfOne)
{
    const QByteArray target = "../../../dotfiles/linked.service";
    home.addFile("home/dotfiles/linked.service", install);
    home.addLink("home/.config/systemd/user/linked.service", target);
    answerForLink();
    const FilePath linked = own.appending("linked.service");
    ASSERT_TRUE(isEnabled(linked));

    EXPECT_TRUE(units.setEnabled(linked, false));
    EXPECT_EQ(std::filesystem::read_symlink(linked.bytes().constData()), target.constData());
    EXPECT_FALSE(isEnabled(linked));

    EXPECT_TRUE(units.setEnabled(linked, true));
    EXPECT_TRUE(isEnabled(linked));
}

TEST_F(UserUnitsTest, LeaveOutALinkedOneThatNothingWouldStart)
{
    home.addFile("home/dotfiles/linked.service", "[Service]\nExecStart=/bin/true\n");
    home.addLink("home/.config/systemd/user/linked.service", "../../../dotfiles/linked.service");
    add(u"ListUnitFiles"_qs, {}, u"a(ss)"_qs,
        u"ret = dbus.Array([('OWN/linked.service', 'linked')], signature='(ss)')"_qs);

    EXPECT_TRUE(units.entries().isEmpty());
}

TEST_F(UserUnitsTest, TakeOneThatIsGoneAfterwardsForNoSuccess)
{
    answer();
    (void)units.entries();
    add(u"DisableUnitFiles"_qs, u"asb"_qs, u"a(sss)"_qs,
        u"del self.units['SYSTEM/music.service']; ret = "_qs + changes);

    EXPECT_FALSE(units.setEnabled(music, false));
}

TEST_F(UserUnitsTest, AreMaskedWhereTheManagerWouldNotEnableThemAgain)
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

TEST_F(UserUnitsTest, AreLeftOnWhereTheyAreTheUsersAndTheManagerWouldNotEnableThemAgain)
{
    answer();
    home.addFile("home/.config/systemd/user/own.service", "[Service]\nExecStart=/bin/true\n");
    ASSERT_TRUE(isEnabled(own.appending("own.service")));

    const Result<void> result = units.setEnabled(own.appending("own.service"), false);

    ASSERT_FALSE(result);
    EXPECT_EQ(result.failure().kind, Failure::Kind::NotSupported);
    EXPECT_TRUE(isEnabled(own.appending("own.service")));
}

TEST_F(UserUnitsTest, FailsWhereTheManagerLeavesAUnitAsItWas)
{
    answer();
    (void)units.entries();
    add(u"MaskUnitFiles"_qs, u"asbb"_qs, u"a(sss)"_qs, u"ret = "_qs + changes);

    EXPECT_FALSE(units.setEnabled(agent, false));
    EXPECT_TRUE(isEnabled(agent));
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

TEST(UnitFilesTest, AreTheUsersOwnAndWhatTheFoldersOfLinksStart)
{
    const TemporaryHome home;
    const QByteArray own = "home/.config/systemd/user/";
    const FilePath off = home.addFile(own + "off.timer", install);
    const FilePath on = home.addFile(own + "on.service", install);
    home.addFile(own + "static.service", "[Unit]\n");
    home.addFile(own + "each@.service", install);
    home.addFile(own + "notes.txt", install);
    home.addLink(own + "default.target.wants/on.service", on.bytes());
    const FilePath agent = home.addFile("lib/agent.socket", install);
    const FilePath music = home.addFile("lib/music.service", install);
    home.addFile("lib/unlinked.service", install);
    const FilePath changed = home.addFile("etc/changed.service", install);
    home.addFile("lib/changed.service", install);
    for (const char *name : {"agent.socket", "changed.service", "gone.service"})
        home.addLink(QByteArray("etc/sockets.target.wants/") + name, home.path("lib").appending(name).bytes());
    home.addLink("lib/music.target.requires/music.service", "../music.service");
    home.addLink(own + "music.service", "/dev/null");
    const UnitFiles files(std::make_shared<LinuxFileManager>(home.environment()),
                          home.path("home/.config/systemd/user"), {home.path("etc"), home.path("lib")});

    EXPECT_EQ(files.entries(),
              (QList<StartupEntry>{{off, u"off.timer"_qs, StartupEntry::Scope::User, false},
                                   {on, u"on.service"_qs, StartupEntry::Scope::User, true},
                                   {agent, u"agent.socket"_qs, StartupEntry::Scope::AllUsers, true},
                                   {changed, u"changed.service"_qs, StartupEntry::Scope::AllUsers, true},
                                   {music, u"music.service"_qs, StartupEntry::Scope::AllUsers, false}}));
    EXPECT_TRUE(
        UnitFiles(std::make_shared<LinuxFileManager>(home.environment()), home.path("none"), {}).entries().isEmpty());
}
