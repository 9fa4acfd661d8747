#include "Platform/Linux/Startup/AutostartEntries.h"
#include "Platform/Linux/Files/LinuxFileManager.h"
#include "Platform/Linux/TemporaryHome.h"

#include <gmock/gmock.h>

#include <QCryptographicHash>

#include <sys/stat.h>

using namespace Quillmere;

namespace {

class AutostartEntriesTest : public testing::Test
{
protected:
    AutostartEntriesTest()
    {
        home.addFolder("home/.config/autostart");
        variables = {{"XDG_CONFIG_DIRS", home.path("first").bytes() + ':' + home.path("second").bytes()},
                     {"XDG_CURRENT_DESKTOP", "Calm:GNOME"},
                     {"PATH", home.path("bin").bytes()}};
        home.addFile("bin/there");
        ::chmod(home.path("bin/there").bytes().constData(), 0755);
    }

    static QByteArray entry(const QByteArray &more = {})
    {
        return "# Made by hand\n[Desktop Entry]\nType=Application\nName=Clock\nName[de]=Uhr\nExec=clock\n" + more
            + "\n[Desktop Action a]\nName=b\n";
    }

    /// What stands for an entry with @p more while it is switched, with the sum that `sha256sum` tells.
    static QByteArray markedCopy(const QByteArray &more)
    {
        const QByteArray sum = QCryptographicHash::hash(entry(more), QCryptographicHash::Sha256).toHex();
        return entry(more + "X-Quillmere-Copy=" + sum + '\n');
    }

    FilePath own(const QByteArray &name, const QByteArray &text) const { return home.addFile(ownFolder + name, text); }
    FilePath system(const QByteArray &name, const QByteArray &text) const
    {
        return home.addFile("first/autostart/" + name, text);
    }

    [[nodiscard]] AutostartEntries autostart() const
    {
        const auto environment = [this](const char *name) { return variables.value(name); };
        return {std::make_shared<LinuxFileManager>(home.environment()), environment, {"de_DE", "de"}};
    }
    [[nodiscard]] QList<StartupEntry> entries() const { return autostart().entries(); }
    [[nodiscard]] bool isEnabled() const
    {
        const QList<StartupEntry> found = entries();
        EXPECT_EQ(found.size(), 1);
        return found.value(0).isEnabled;
    }
    void setEnabled(const FilePath &path, bool enabled) const
    {
        EXPECT_TRUE(autostart().owns(path));
        EXPECT_TRUE(autostart().setEnabled(path, enabled));
    }

    const QByteArray ownFolder = "home/.config/autostart/";
    TemporaryHome home;
    QHash<QByteArray, QByteArray> variables;
};

struct ConditionCase
{
    const char *name;
    const char *lines;
    bool isListed;
    bool isEnabled;
};

class AutostartConditionTest : public AutostartEntriesTest, public testing::WithParamInterface<ConditionCase>
{
};

} // namespace

TEST_P(AutostartConditionTest, IsHonoured)
{
    own("a.desktop", entry(GetParam().lines));

    const QList<StartupEntry> found = entries();

    ASSERT_EQ(found.size(), GetParam().isListed ? 1 : 0);
    if (GetParam().isListed) {
        EXPECT_EQ(found.first().isEnabled, GetParam().isEnabled);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Conditions, AutostartConditionTest,
    testing::Values(
        ConditionCase{"None", "", true, true}, ConditionCase{"OnlyShowInThis", "OnlyShowIn=KDE;GNOME;\n", true, true},
        ConditionCase{"OnlyShowInOther", "OnlyShowIn=KDE;\n", false, false},
        ConditionCase{"OnlyShowInNone", "OnlyShowIn=\n", false, false},
        ConditionCase{"NotShowInThis", "NotShowIn=GNOME;\n", false, false},
        ConditionCase{"NotShowInOther", "NotShowIn=KDE;\n", true, true},
        ConditionCase{"TheDearerNameOfTheDesktopDecides", "OnlyShowIn=Calm;\nNotShowIn=GNOME;\n", true, true},
        ConditionCase{"Hidden", "Hidden=true\n", true, false}, ConditionCase{"NotHidden", "Hidden=false\n", true, true},
        ConditionCase{"SwitchedOffByGnome", "X-GNOME-Autostart-enabled=false\n", true, false},
        ConditionCase{"SwitchedOnByGnome", "X-GNOME-Autostart-enabled=true\n", true, true},
        ConditionCase{"TryExecThere", "TryExec=there\n", true, true},
        ConditionCase{"TryExecNotThere", "TryExec=elsewhere\n", false, false},
        ConditionCase{"TryExecNotThereByItsPath", "TryExec=/nowhere/there\n", false, false},
        ConditionCase{"NoDisplay", "NoDisplay=true\n", true, true},
        ConditionCase{"NoApplication", "Type=Link\n", false, false},
        ConditionCase{"NoCommand", "Exec=\n", false, false}),
    [](const auto &info) { return info.param.name; });

TEST_F(AutostartEntriesTest, AreNamedInTheUsersLanguageAndComeFromTheUserFirst)
{
    const FilePath brought = system("b.desktop", entry());
    const FilePath second = own("z.desktop", "[Desktop Entry]\nType=Application\nExec=z\n");
    const FilePath first = own("c.desktop", entry());
    own("notes.txt", entry());
    own(".hidden.desktop", entry());
    own("D.DESKTOP", entry());

    EXPECT_EQ(entries(),
              (QList<StartupEntry>{{first, u"Uhr"_qs, StartupEntry::Scope::User, true},
                                   {second, u"z"_qs, StartupEntry::Scope::User, true},
                                   {brought, u"Uhr"_qs, StartupEntry::Scope::AllUsers, true}}));
}

TEST_F(AutostartEntriesTest, LeavesAnEquivalentFileWhenTurnedOffAndOnAgain)
{
    const FilePath file = own("a.desktop", entry("X-Odd=1\n"));
    ::chmod(file.bytes().constData(), 0640);

    setEnabled(file, false);
    EXPECT_FALSE(isEnabled());
    EXPECT_EQ(home.contents(ownFolder + "a.desktop"), entry("X-Odd=1\nHidden=true\n"));

    setEnabled(file, true);
    EXPECT_TRUE(isEnabled());
    EXPECT_EQ(home.contents(ownFolder + "a.desktop"), entry("X-Odd=1\nHidden=false\n"));
    EXPECT_EQ(home.mode(ownFolder + "a.desktop"), 0640u);
}

TEST_F(AutostartEntriesTest, TurnsOnWhatGnomeHasTurnedOff)
{
    const FilePath file = own("a.desktop", entry("X-GNOME-Autostart-enabled=false\n"));

    setEnabled(file, true);

    EXPECT_TRUE(isEnabled());
    EXPECT_EQ(home.contents(ownFolder + "a.desktop"), entry("X-GNOME-Autostart-enabled=true\n"));
}

TEST_F(AutostartEntriesTest, SwitchesTheSystemsByACopyThatGoesAgain)
{
    const FilePath file = system("a.desktop", entry("X-Odd=1\n"));

    setEnabled(file, false);
    EXPECT_FALSE(isEnabled());
    EXPECT_EQ(entries().first().path, file);
    EXPECT_EQ(home.contents("first/autostart/a.desktop"), entry("X-Odd=1\n"));
    EXPECT_EQ(home.contents(ownFolder + "a.desktop"), markedCopy("X-Odd=1\nHidden=true\n"));

    setEnabled(file, true);
    EXPECT_TRUE(isEnabled());
    EXPECT_FALSE(home.exists(ownFolder + "a.desktop"));
    EXPECT_EQ(home.contents("first/autostart/a.desktop"), entry("X-Odd=1\n"));
}

TEST_F(AutostartEntriesTest, LetsTheSystemsEntryCountAgainThatAnUpdateChangedMeanwhile)
{
    const FilePath file = system("a.desktop", entry("X-Version=1\n"));
    setEnabled(file, false);
    system("a.desktop", entry("X-Version=2\n"));
    EXPECT_FALSE(isEnabled());

    setEnabled(file, true);

    EXPECT_TRUE(isEnabled());
    EXPECT_FALSE(home.exists(ownFolder + "a.desktop"));
}

TEST_F(AutostartEntriesTest, TakesItsCopyOfAnEntryWithoutALastLineEndAwayAgain)
{
    const FilePath file = system("a.desktop", "[Desktop Entry]\nType=Application\nExec=clock\nHidden=true");

    setEnabled(file, true);
    EXPECT_TRUE(isEnabled());
    setEnabled(file, false);

    EXPECT_FALSE(isEnabled());
    EXPECT_FALSE(home.exists(ownFolder + "a.desktop"));
}

TEST_F(AutostartEntriesTest, RenewsItsCopyOfAnEntryThatAnUpdateTurnedAround)
{
    const FilePath file = system("a.desktop", entry("Hidden=true\n"));
    setEnabled(file, true);
    system("a.desktop", entry("X-Version=2\n"));
    EXPECT_TRUE(isEnabled());

    setEnabled(file, false);

    EXPECT_FALSE(isEnabled());
    EXPECT_EQ(home.contents(ownFolder + "a.desktop"), markedCopy("X-Version=2\nHidden=true\n"));
}

TEST_F(AutostartEntriesTest, KeepsWhatTheUserAddedToACopy)
{
    const FilePath file = system("a.desktop", entry());
    setEnabled(file, false);
    own("a.desktop", home.contents(ownFolder + "a.desktop") + "# Mine\n");

    setEnabled(file, true);

    EXPECT_TRUE(isEnabled());
    EXPECT_TRUE(home.contents(ownFolder + "a.desktop").endsWith("# Mine\n"));
}

TEST_F(AutostartEntriesTest, KeepsTheUsersOwnVersionOfWhatTheSystemBrings)
{
    const FilePath file = system("a.desktop", entry());
    own("a.desktop", entry("X-Mine=1\n"));

    setEnabled(file, false);
    setEnabled(file, true);

    EXPECT_TRUE(isEnabled());
    EXPECT_EQ(home.contents(ownFolder + "a.desktop"), entry("X-Mine=1\nHidden=false\n"));
}

TEST_F(AutostartEntriesTest, TurnsOnWhatAMereHiddenHasTurnedOff)
{
    const FilePath file = system("a.desktop", entry());
    own("a.desktop", "[Desktop Entry]\nHidden=true\n");
    EXPECT_FALSE(isEnabled());

    setEnabled(file, true);

    EXPECT_TRUE(isEnabled());
    EXPECT_FALSE(home.exists(ownFolder + "a.desktop"));
}

TEST_F(AutostartEntriesTest, KeepsTheLinesOfAnOwnEntryThatOnlyHidesTheSystems)
{
    const FilePath file = system("a.desktop", entry());
    own("a.desktop", "# Too loud.\n[Desktop Entry]\nHidden=true\nX-Mine=1\n");

    setEnabled(file, true);
    EXPECT_TRUE(isEnabled());
    const QByteArray on = home.contents(ownFolder + "a.desktop");
    EXPECT_TRUE(on.startsWith("# Too loud.\n[Desktop Entry]\nHidden=false\nX-Mine=1\n"));
    EXPECT_TRUE(on.contains("Exec=clock\n"));

    setEnabled(file, false);
    EXPECT_FALSE(isEnabled());
    EXPECT_TRUE(home.contents(ownFolder + "a.desktop").startsWith("# Too loud.\n[Desktop Entry]\nHidden=true\nX-Mine"));
}

TEST_F(AutostartEntriesTest, KeepsTheUsersOwnFileThatSaysWhatTheSystemsSays)
{
    const FilePath file = system("a.desktop", entry());
    own("a.desktop", entry());

    setEnabled(file, false);
    setEnabled(file, true);

    EXPECT_TRUE(isEnabled());
    EXPECT_EQ(home.contents(ownFolder + "a.desktop"), entry("Hidden=false\n"));
}

TEST_F(AutostartEntriesTest, FailsForAnOwnFileThatCannotBeReadAndLeavesIt)
{
    const FilePath file = system("a.desktop", entry());
    const FilePath huge = own("a.desktop", entry());
    ASSERT_EQ(::truncate(huge.bytes().constData(), 2LL << 20), 0);
    EXPECT_FALSE(autostart().setEnabled(file, false));
    EXPECT_FALSE(autostart().setEnabled(file, true));
    EXPECT_TRUE(home.exists(ownFolder + "a.desktop"));

    own("a.desktop", "not an entry\n");
    EXPECT_FALSE(autostart().setEnabled(file, true));
    EXPECT_EQ(home.contents(ownFolder + "a.desktop"), "not an entry\n");
}

TEST_F(AutostartEntriesTest, SwitchesTheSystemsWhereTheUsersFolderIsALink)
{
    ASSERT_EQ(::rmdir(home.path("home/.config/autostart").bytes().constData()), 0);
    home.addFolder("dotfiles/autostart");
    home.addLink("home/.config/autostart", home.path("dotfiles/autostart").bytes());
    const FilePath file = system("a.desktop", entry());

    setEnabled(file, false);
    EXPECT_FALSE(isEnabled());
    setEnabled(file, true);

    EXPECT_TRUE(isEnabled());
    EXPECT_FALSE(home.exists("dotfiles/autostart/a.desktop"));
}

TEST_F(AutostartEntriesTest, TurnsOnWhatTheSystemBringsTurnedOff)
{
    const FilePath file = system("a.desktop", entry("Hidden=true\n"));
    EXPECT_FALSE(isEnabled());

    setEnabled(file, true);
    EXPECT_TRUE(isEnabled());
    EXPECT_EQ(home.contents(ownFolder + "a.desktop"), markedCopy("Hidden=false\n"));

    setEnabled(file, false);
    EXPECT_FALSE(isEnabled());
    EXPECT_FALSE(home.exists(ownFolder + "a.desktop"));
}

TEST_F(AutostartEntriesTest, TakesTheMoreImportantOfTwoFoldersOfTheSystem)
{
    const FilePath file = system("a.desktop", entry());
    home.addFile("second/autostart/a.desktop", entry("Hidden=true\n"));

    EXPECT_EQ(entries(), (QList<StartupEntry>{{file, u"Uhr"_qs, StartupEntry::Scope::AllUsers, true}}));
}

TEST_F(AutostartEntriesTest, MakesTheUsersFolderWhereThereIsNone)
{
    ASSERT_EQ(::rmdir(home.path("home/.config/autostart").bytes().constData()), 0);
    ASSERT_EQ(::rmdir(home.path("home/.config").bytes().constData()), 0);
    const FilePath file = system("a.desktop", entry());

    setEnabled(file, false);

    EXPECT_FALSE(isEnabled());
}

TEST_F(AutostartEntriesTest, NeverWritesThroughALink)
{
    const QByteArray installed = entry();
    home.addFile("installed.desktop", installed);
    home.addLink(ownFolder + "a.desktop", home.path("installed.desktop").bytes());

    setEnabled(home.path(ownFolder + "a.desktop"), false);

    EXPECT_FALSE(isEnabled());
    EXPECT_EQ(home.contents("installed.desktop"), installed);
}

TEST_F(AutostartEntriesTest, FollowsTheFolderForSettingsThatTheEnvironmentNames)
{
    variables["XDG_CONFIG_HOME"] = home.path("settings").bytes();
    const FilePath file = home.addFile("settings/autostart/a.desktop", entry());
    own("b.desktop", entry());

    EXPECT_EQ(entries().size(), 1);
    EXPECT_EQ(entries().value(0).path, file);
    EXPECT_FALSE(autostart().owns(home.path(ownFolder + "b.desktop")));
}

TEST_F(AutostartEntriesTest, NeverWaitsForWhatIsNoFile)
{
    ASSERT_EQ(::mkfifo(home.path(ownFolder + "pipe.desktop").bytes().constData(), 0600), 0);
    home.addFolder(ownFolder + "folder.desktop");
    home.addLink(ownFolder + "loop.desktop", "loop.desktop");
    own("broken.desktop", "\xFF\xFE");
    const FilePath huge = own("huge.desktop", entry());
    ASSERT_EQ(::truncate(huge.bytes().constData(), 1LL << 30), 0);

    EXPECT_TRUE(entries().isEmpty());
    EXPECT_FALSE(autostart().setEnabled(home.path(ownFolder + "pipe.desktop"), false));
    EXPECT_FALSE(autostart().setEnabled(home.path(ownFolder + "nothing.desktop"), false));
}
