#include "Fakes/PretendMachine.h"
#include "Platform/Linux/Need.h"
#include "Platform/Linux/LinuxFileManager.h"
#include "Platform/Linux/LinuxInstalledApplications.h"
#include "Platform/Linux/LinuxPlaces.h"
#include "Platform/Linux/LinuxProcessRunner.h"
#include "Platform/Linux/SystemPackages.h"
#include "Platform/Linux/TemporaryHome.h"
#include "Platform/Linux/UserFlatpaks.h"

#include <gmock/gmock.h>

#include <algorithm>

#include <sys/stat.h>

using namespace Quillmere;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

namespace {

const auto noVariables = [](const char *) { return QByteArray(); };

/// A home with applications on a real disk, and programs that answer as they are told.
class InstalledApplicationsTest : public testing::Test
{
protected:
    FilePath addProgram(const QByteArray &place) const
    {
        const FilePath program = disk.addFile(place, "#!/bin/sh\n");
        EXPECT_EQ(::chmod(program.bytes().constData(), 0755), 0);
        return program;
    }

    FilePath addEntry(const QByteArray &folder, const QByteArray &id, const QByteArray &exec) const
    {
        return disk.addFile(folder + "/applications/" + id + ".desktop",
                            "[Desktop Entry]\nType=Application\nName=The " + id + "\nIcon=" + id + "\nExec=" + exec
                                + '\n');
    }
    FilePath addOwnEntry(const QByteArray &id, const QByteArray &exec) const
    {
        return addEntry("home/.local/share", id, exec);
    }

    [[nodiscard]] LinuxInstalledApplications installed() const
    {
        const auto places = std::make_shared<LinuxPlaces>(files, noVariables);
        return {files,
                places,
                processes,
                {disk.path("home/.local/share/applications"), disk.path("system/applications")},
                noVariables};
    }

    [[nodiscard]] ListedApplication application(const QByteArray &id) const
    {
        const QList<ListedApplication> all = installed().applications();
        const auto found = std::ranges::find(all, id, &ListedApplication::id);
        EXPECT_NE(found, all.end()) << id.toStdString();
        return found == all.end() ? ListedApplication() : *found;
    }

    [[nodiscard]] QList<FilePath> leftoversOf(const QByteArray &id) const
    {
        ListedApplication application;
        application.id = id;
        return installed().leftoversOf(application);
    }

    TemporaryHome disk;
    std::shared_ptr<LinuxFileManager> files = std::make_shared<LinuxFileManager>(disk.environment());
    std::shared_ptr<PretendProcessRunner> processes = std::make_shared<PretendProcessRunner>();
};

} // namespace

TEST_F(InstalledApplicationsTest, ListsAppImagesOfTheUsualFoldersWhereTheyAreFilesThemselves)
{
    const FilePath one = addProgram("home/Applications/Sketch-1.2.AppImage");
    const FilePath two = addProgram("home/.local/bin/tool.appimage");
    addProgram("home/bin/Three.AppImage");
    addProgram("home/Downloads/Fresh.AppImage");
    addProgram("home/Applications/games/Deep.AppImage");
    addProgram("home/Applications/.Hidden.AppImage");
    disk.addFolder("home/Applications/Folder.AppImage");
    disk.addLink("home/bin/Link.AppImage", one.bytes());

    const QList<ListedApplication> found = installed().applications();

    ASSERT_EQ(found.size(), 3);
    EXPECT_EQ(found.at(0).name, u"Sketch-1.2"_qs);
    EXPECT_THAT(found.at(0).parts, ElementsAre(one));
    EXPECT_EQ(found.at(1).location, two);
    EXPECT_EQ(found.at(2).id, "Three");
}

TEST_F(InstalledApplicationsTest, KnowsAnAppImageByItsEntryAndTrashesBoth)
{
    const FilePath program = addProgram("home/Applications/Sketch-1.2.AppImage");
    const FilePath entry = addOwnEntry("org.example.sketch", program.bytes() + " %U");

    const QList<ListedApplication> found = installed().applications();

    ASSERT_EQ(found.size(), 1);
    EXPECT_EQ(found.first().name, u"The org.example.sketch"_qs);
    EXPECT_EQ(found.first().icon, u"org.example.sketch"_qs);
    EXPECT_THAT(found.first().parts, ElementsAre(program, entry));
    ASSERT_TRUE(installed().uninstall(found.first()).isOk());
    EXPECT_FALSE(disk.exists("home/Applications/Sketch-1.2.AppImage"));
    EXPECT_THAT(disk.names("home/.local/share/Trash/files"),
                UnorderedElementsAre("Sketch-1.2.AppImage", "org.example.sketch.desktop"));
    EXPECT_THAT(installed().applications(), IsEmpty());
}

TEST_F(InstalledApplicationsTest, TrashesTheOwnFolderOfAnEntrysProgramWithTheEntry)
{
    const FilePath program = addProgram("home/.local/opt/studio/bin/studio");
    disk.addFile("home/.local/opt/studio/lib/core");
    disk.addFile("home/.local/opt/other/data");
    const FilePath entry = addOwnEntry("studio", program.bytes());

    EXPECT_THAT(application("studio").parts, ElementsAre(disk.path("home/.local/opt/studio"), entry));
    ASSERT_TRUE(installed().uninstall(application("studio")).isOk());

    EXPECT_FALSE(disk.exists("home/.local/opt/studio"));
    EXPECT_TRUE(disk.exists("home/.local/opt/other/data"));
}

struct SharedProgramCase
{
    const char *name;
    const char *program;
    bool isPart; ///< The program's file goes, and nothing around it.
};

class SharedProgramTest : public InstalledApplicationsTest, public testing::WithParamInterface<SharedProgramCase>
{
};

TEST_P(SharedProgramTest, TakesNothingThatIsNotTheEntrysAlone)
{
    const FilePath program = addProgram(GetParam().program);
    const FilePath entry = addOwnEntry("tool", program.bytes());

    const QList<FilePath> expected = GetParam().isPart ? QList<FilePath>{program, entry} : QList<FilePath>{entry};
    EXPECT_EQ(application("tool").parts, expected);
}

INSTANTIATE_TEST_SUITE_P(Places, SharedProgramTest,
                         testing::Values(SharedProgramCase{"Document", "home/Documents/tool", false},
                                         SharedProgramCase{"Project", "home/projects/tool/run", false},
                                         SharedProgramCase{"Home", "home/tool", false},
                                         SharedProgramCase{"Programs", "home/.local/bin/tool", true},
                                         SharedProgramCase{"OldPrograms", "home/bin/tool", true},
                                         SharedProgramCase{"Elsewhere", "system/bin/tool", false},
                                         SharedProgramCase{"SharedFolder", "home/.local/share/icons/tool", false},
                                         SharedProgramCase{"TooDeep", "home/.local/share/suite/tools/tool/run", false},
                                         SharedProgramCase{"Interpreter", "home/.local/opt/python/python3", false}),
                         [](const auto &info) { return info.param.name; });

TEST_F(InstalledApplicationsTest, LeavesAFolderThatTwoApplicationsShare)
{
    const FilePath one = addProgram("home/.local/opt/suite/writer");
    const FilePath two = addProgram("home/.local/opt/suite/painter");
    const FilePath entry = addOwnEntry("writer", one.bytes());
    addOwnEntry("painter", two.bytes());

    EXPECT_THAT(application("writer").parts, ElementsAre(entry));
}

TEST_F(InstalledApplicationsTest, PassesOverPartsThatHaveGone)
{
    const FilePath program = addProgram("home/.local/bin/tool");
    const FilePath entry = addOwnEntry("tool", program.bytes());
    const ListedApplication tool = application("tool");
    ASSERT_TRUE(files->removeItem(program).isOk());

    EXPECT_TRUE(installed().uninstall(tool).isOk());
    EXPECT_FALSE(itemExists(entry));
    EXPECT_TRUE(installed().uninstall(tool).isOk());
}

TEST_F(InstalledApplicationsTest, FindsTheLeftoversOfTheExactNameInTheirOrder)
{
    for (const char *folder : {".config", ".local/share", ".local/state", ".cache", ".var/app"}) {
        disk.addFile(QByteArray("home/") + folder + "/org.example.a/file");
        disk.addFile(QByteArray("home/") + folder + "/org.example.a-helper/file");
    }
    disk.addFile("home/.config/autostart/org.example.a.desktop");
    disk.addFile("home/.local/share/applications/org.example.a.desktop", "no entry");

    EXPECT_THAT(leftoversOf("org.example.a"),
                ElementsAre(disk.path("home/.config/org.example.a"), disk.path("home/.local/share/org.example.a"),
                            disk.path("home/.local/state/org.example.a"), disk.path("home/.cache/org.example.a"),
                            disk.path("home/.var/app/org.example.a"),
                            disk.path("home/.config/autostart/org.example.a.desktop"),
                            disk.path("home/.local/share/applications/org.example.a.desktop")));
}

TEST_F(InstalledApplicationsTest, CountsNoPartOfTheApplicationAmongItsLeftovers)
{
    const FilePath program = addProgram("home/.local/share/studio/studio");
    addOwnEntry("studio", program.bytes());
    disk.addFile("home/.config/studio/settings");

    EXPECT_THAT(installed().leftoversOf(application("studio")), ElementsAre(disk.path("home/.config/studio")));
}

struct HostileNameCase
{
    const char *name;
    QByteArray id;
};

class HostileNameTest : public InstalledApplicationsTest, public testing::WithParamInterface<HostileNameCase>
{
};

TEST_P(HostileNameTest, ReachesNothingThatIsNotItsOwn)
{
    for (const char *file : {"Documents/thesis", ".config/autostart/other.desktop", ".config/systemd/user/unit",
                             ".config/gtk-3.0/settings", ".config/file", ".local/share/applications/other.desktop",
                             ".local/share/keyrings/login", ".local/share/Trash/files/old", ".local/share/file",
                             ".cache/file", ".var/app/file", ".local/state/file"})
        disk.addFile(QByteArray("home/") + file);

    EXPECT_THAT(leftoversOf(GetParam().id), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Names, HostileNameTest,
                         testing::Values(HostileNameCase{"Empty", ""}, HostileNameCase{"FolderItself", "."},
                                         HostileNameCase{"FolderAbove", ".."},
                                         HostileNameCase{"Document", "../../Documents"},
                                         HostileNameCase{"Absolute", "/home"}, HostileNameCase{"Slash", "/"},
                                         HostileNameCase{"Nul", QByteArray("file\0", 5)},
                                         HostileNameCase{"Autostart", "autostart"},
                                         HostileNameCase{"Applications", "applications"},
                                         HostileNameCase{"Trash", "Trash"}, HostileNameCase{"Keyrings", "keyrings"},
                                         HostileNameCase{"Services", "systemd"}, HostileNameCase{"Toolkit", "gtk-3.0"}),
                         [](const auto &info) { return info.param.name; });

TEST_F(InstalledApplicationsTest, LooksWhereTheUserHasMovedTheFoldersButNeverTakesTheHome)
{
    disk.addFile("home/settings/org.example.a/file");
    const auto variables = [this](const char *name) -> QByteArray {
        if (QByteArray(name) == "XDG_CONFIG_HOME")
            return disk.path("home/settings").bytes();
        // The folder above the home: its child of the user's name is the home itself.
        return QByteArray(name) == "XDG_DATA_HOME" ? disk.path().bytes() : QByteArray();
    };
    const ApplicationLeftovers leftovers(files, std::make_shared<LinuxPlaces>(files, noVariables), variables);

    EXPECT_THAT(leftovers.of("org.example.a"), ElementsAre(disk.path("home/settings/org.example.a")));
    EXPECT_THAT(leftovers.of("home"), IsEmpty());
}

TEST_F(InstalledApplicationsTest, ListsTheUsersFlatpaksAndHasTheirToolRemoveThem)
{
    processes->answer(u"/usr/bin/flatpak"_qs, "org.example.Draw\tDraw\t3.1\norg.example.Read\tReader\t\n");
    disk.addFile("home/.local/share/flatpak/app/org.example.Draw/current/files/draw");
    disk.addFile("home/.var/app/org.example.Draw/data/file");

    const QList<ListedApplication> found = installed().applications();

    ASSERT_EQ(found.size(), 2);
    EXPECT_EQ(found.first().name, u"Draw"_qs);
    EXPECT_EQ(found.first().version, u"3.1"_qs);
    EXPECT_EQ(found.first().removal, ApplicationRemoval::Command);
    EXPECT_EQ(found.first().location, disk.path("home/.local/share/flatpak/app/org.example.Draw"));
    EXPECT_THAT(installed().leftoversOf(found.first()), ElementsAre(disk.path("home/.var/app/org.example.Draw")));
    ASSERT_TRUE(installed().uninstall(found.first()).isOk());
    EXPECT_EQ(processes->runs().last(),
              (Command{u"/usr/bin/flatpak"_qs,
                       {u"uninstall"_qs, u"--user"_qs, u"--app"_qs, u"--assumeyes"_qs, u"--noninteractive"_qs,
                        u"org.example.Draw"_qs}}));
}

TEST_F(InstalledApplicationsTest, SaysWhatTheFlatpakToolSaidWhenItFails)
{
    processes->answer(u"/usr/bin/flatpak"_qs, [](const Command &) {
        return ProcessOutcome{1, "error: org.example.Draw is pinned\n"};
    });
    ListedApplication draw;
    draw.id = "org.example.Draw";
    draw.removal = ApplicationRemoval::Command;

    const Result<void> result = installed().uninstall(draw);

    ASSERT_FALSE(result.isOk());
    EXPECT_EQ(result.failure().detail, u"error: org.example.Draw is pinned"_qs);
}

TEST_F(InstalledApplicationsTest, HandsTheFlatpakToolNothingButIdentifiers)
{
    for (const char *id : {"--all", "", "..", "org.example", "org.example.a/b", "org..a", "org.example.a b"}) {
        ListedApplication application;
        application.id = id;
        application.removal = ApplicationRemoval::Command;
        EXPECT_FALSE(installed().uninstall(application).isOk()) << id;
    }
    EXPECT_THAT(processes->runs(), IsEmpty());
    EXPECT_THAT(parseFlatpaks("--all\tAll\t1\norg.example.a\n\n../x.y.z\tX\t1\norg.example.b\t\t\n", FilePath("/d")),
                testing::SizeIs(1));
}

TEST_F(InstalledApplicationsTest, ListsWhatPackagesBringAndRefusesToRemoveIt)
{
    const FilePath owned = addEntry("system", "writer", "/bin/true");
    addEntry("system", "stray", "/bin/true");
    processes->answer(u"/usr/bin/dpkg-query"_qs, [owned](const Command &command) -> Result<ProcessOutcome> {
        if (command.arguments.first() == u"--search"_qs)
            return ProcessOutcome{1, "office-writer:amd64: " + owned.bytes() + "\ndpkg-query: no path found\n"};
        return ProcessOutcome{0, "office-writer\t1:7.4\t2048\n"};
    });

    const QList<ListedApplication> found = installed().applications();

    ASSERT_EQ(found.size(), 1);
    EXPECT_EQ(found.first().name, u"The writer"_qs);
    EXPECT_EQ(found.first().version, u"1:7.4"_qs);
    EXPECT_EQ(found.first().size, 2048 * 1024);
    EXPECT_EQ(found.first().removal, ApplicationRemoval::System);
    const Result<void> refusal = installed().uninstall(found.first());
    ASSERT_FALSE(refusal.isOk());
    EXPECT_EQ(refusal.failure().kind, Failure::Kind::NotSupported);
    EXPECT_TRUE(itemExists(owned));
}

TEST_F(InstalledApplicationsTest, PrefersTheUsersOwnEntryToOneOfTheSystem)
{
    addEntry("system", "writer", "/bin/true");
    const FilePath own = addOwnEntry("writer", "/bin/true");

    EXPECT_THAT(application("writer").parts, ElementsAre(own));
}

TEST_F(InstalledApplicationsTest, ListsNothingWhereToolsAreMissingOrHang)
{
    addEntry("system", "writer", "/bin/true");
    processes->hang(u"/usr/bin/flatpak"_qs);
    processes->answer(u"/usr/bin/dpkg-query"_qs, [](const Command &) -> Result<ProcessOutcome> {
        return Failure{Failure::Kind::NotFound, {}, {}};
    });

    EXPECT_THAT(installed().applications(), IsEmpty());
}

TEST(SystemPackagesTest, LearnsFromTheMachinesOwnManagerWhatAPackageBrings)
{
    const FilePath owned("/usr/share/doc/dpkg/copyright");
    const bool hasManager = itemExists(FilePath("/usr/bin/dpkg-query")) && itemExists(owned);
    QUILLMERE_NEED(hasManager ? QByteArray() : "This machine has no such package manager.");
    const LinuxProcessRunner processes(FilePath("/nonexistent"));

    const QList<ListedApplication> found
        = systemApplications(processes,
                             {{"dpkg", owned, u"Package"_qs, {}, {}, false},
                              {"stray", FilePath("/nonexistent/stray.desktop"), u"Stray"_qs, {}, {}, false}});

    ASSERT_EQ(found.size(), 1);
    EXPECT_EQ(found.first().id, "dpkg");
    EXPECT_THAT(found.first().version.toStdString(), testing::MatchesRegex("[0-9].*"));
    EXPECT_GT(found.first().size, 1024 * 1024);
}

TEST(SystemPackagesTest, ReadsOwnersWithTheirArchitecturesAndPassesOverDiversions)
{
    const auto owners = parseOwners("a: /usr/a\nb:amd64: /usr/b\nc, d: /usr/c\ndiversion by x from: /usr/e\n: /usr/f\n"
                                    "nonsense\n");

    EXPECT_EQ(owners,
              (QHash<FilePath, QString>{
                  {FilePath("/usr/a"), u"a"_qs}, {FilePath("/usr/b"), u"b"_qs}, {FilePath("/usr/c"), u"c"_qs}}));
}

TEST(SystemPackagesTest, TakesASizeThatIsNoneOrTooLargeAsNothing)
{
    const auto packages = parsePackages("a\t1\t10\nb\t2\t\nc\t3\t9223372036854775807\nd\t4\t-5\ne\t5\n");

    EXPECT_EQ(packages.value(u"a"_qs), (SystemPackage{u"1"_qs, 10240}));
    EXPECT_EQ(packages.value(u"b"_qs), (SystemPackage{u"2"_qs, 0}));
    EXPECT_EQ(packages.value(u"c"_qs), (SystemPackage{u"3"_qs, 0}));
    EXPECT_EQ(packages.value(u"d"_qs), (SystemPackage{u"4"_qs, 0}));
    EXPECT_FALSE(packages.contains(u"e"_qs));
}
