#include "Platform/Linux/Applications/InstalledApplicationsFixture.h"

using namespace Quillmere;
using testing::ElementsAre;

namespace {

class InstalledApplicationsTest : public InstalledApplicationsFixture
{
};

} // namespace

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
                                         SharedProgramCase{"ToolChain", "home/.local/share/cargo/bin/tool", false},
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

TEST_F(InstalledApplicationsTest, LeavesAProgramThatTwoEntriesStart)
{
    const FilePath program = addProgram("home/.local/bin/foo");
    const FilePath entry = addOwnEntry("foo", program.bytes());
    const FilePath setup = addOwnEntry("foo-setup", program.bytes() + " --setup");

    EXPECT_THAT(application("foo").parts, ElementsAre(entry));
    EXPECT_THAT(application("foo-setup").parts, ElementsAre(setup));
    ASSERT_TRUE(installed().uninstall(application("foo-setup")).isOk());

    EXPECT_TRUE(itemExists(program));
    EXPECT_THAT(application("foo").parts, ElementsAre(program, entry));
}

TEST_F(InstalledApplicationsTest, LeavesACollectionOfProgramsInTheFolderForData)
{
    const FilePath program = addProgram("home/.local/share/collection/bin/one");
    const FilePath alone = addProgram("home/.local/share/alone/bin/alone");
    addProgram("home/.local/share/collection/bin/two");
    disk.addFile("home/.local/share/alone/bin/notes", "no program");
    const FilePath entry = addOwnEntry("one", program.bytes());
    const FilePath entryOfAlone = addOwnEntry("alone", alone.bytes());

    EXPECT_THAT(application("one").parts, ElementsAre(entry));
    EXPECT_THAT(application("alone").parts, ElementsAre(disk.path("home/.local/share/alone"), entryOfAlone));
}
