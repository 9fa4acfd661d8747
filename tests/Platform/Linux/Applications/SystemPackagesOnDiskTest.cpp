#include "Platform/Linux/Applications/InstalledApplicationsFixture.h"
#include "Platform/Linux/Applications/SystemPackages.h"
#include "Platform/Linux/Need.h"
#include "Platform/Linux/Programs/LinuxProcessRunner.h"

using namespace Quillmere;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class SystemPackagesTest : public InstalledApplicationsFixture
{
};

} // namespace

TEST_F(SystemPackagesTest, ListsWhatPackagesBringAndRefusesToRemoveIt)
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

TEST_F(SystemPackagesTest, KeepsTheDataOfAPackageWhoseEntryTheUserChanged)
{
    const FilePath owned = addEntry("system", "writer", "/bin/true");
    const FilePath own = addOwnEntry("writer", "/bin/true --my-way");
    packageOwns(owned);

    const QList<ListedApplication> found = installed().applications();

    ASSERT_EQ(found.size(), 1);
    EXPECT_EQ(found.first().removal, ApplicationRemoval::System);
    EXPECT_EQ(found.first().version, u"7.4"_qs);
    EXPECT_EQ(found.first().size, 2048 * 1024);
    EXPECT_EQ(found.first().location, owned);
    EXPECT_THAT(found.first().parts, IsEmpty());
    EXPECT_FALSE(installed().uninstall(found.first()).isOk());
    EXPECT_THAT(installed().leftoversOf(found.first()), IsEmpty());
    EXPECT_TRUE(itemExists(own));
}

TEST_F(SystemPackagesTest, TakesAnOwnEntryOfAPackagesProgramForThePackages)
{
    const FilePath program = addProgram("system/bin/browser");
    const FilePath own = addOwnEntry("browser-at-work", program.bytes() + " --profile=work");
    disk.addFile("home/.config/browser-at-work/settings");
    packageOwns(program);

    const ListedApplication application = this->application("browser-at-work");

    EXPECT_EQ(application.removal, ApplicationRemoval::System);
    EXPECT_EQ(application.version, u"7.4"_qs);
    EXPECT_THAT(installed().leftoversOf(application), ElementsAre(disk.path("home/.config/browser-at-work")));
    EXPECT_TRUE(itemExists(own));
}

TEST_F(SystemPackagesTest, ListsNoCopyOfAnEntryOfTheSystemThatNoPackageOwns)
{
    addEntry("system", "writer", "/bin/true");
    addOwnEntry("writer", "/bin/true");

    EXPECT_THAT(installed().applications(), IsEmpty());
}

TEST_F(SystemPackagesTest, ListsNothingWhereToolsAreMissingOrHang)
{
    addEntry("system", "writer", "/bin/true");
    disk.addFolder("home/.local/share/flatpak/app");
    processes->hang(u"/usr/bin/flatpak"_qs);
    processes->answer(u"/usr/bin/dpkg-query"_qs, [](const Command &) -> Result<ProcessOutcome> {
        return Failure{Failure::Kind::NotFound, {}, {}};
    });

    EXPECT_THAT(installed().applications(), IsEmpty());
}

TEST_F(SystemPackagesTest, LearnsFromTheMachinesOwnManagerWhatAPackageBrings)
{
    const FilePath owned("/usr/share/doc/dpkg/copyright");
    const bool hasManager = itemExists(FilePath("/usr/bin/dpkg-query")) && itemExists(owned);
    QUILLMERE_NEED(hasManager ? QByteArray() : "This machine has no such package manager.");
    const LinuxProcessRunner processes(FilePath("/nonexistent"));
    const FilePath stray("/nonexistent/stray.desktop");
    const FilePath shell("/usr/bin/dash"); // The package still calls it /bin/dash.

    const QList<ListedApplication> found = systemApplications(processes,
                                                              {{{"dpkg", owned, u"Package"_qs, {}, {}, false}, owned},
                                                               {{"stray", stray, u"Stray"_qs, {}, {}, false}, stray},
                                                               {{"shell", stray, u"Shell"_qs, {}, {}, false}, shell}});

    ASSERT_EQ(found.size(), 2);
    EXPECT_EQ(found.first().id, "dpkg");
    EXPECT_EQ(found.last().id, "shell");
    EXPECT_THAT(found.first().version.toStdString(), testing::MatchesRegex("[0-9].*"));
    EXPECT_GT(found.first().size, 1024 * 1024);
}

TEST_F(SystemPackagesTest, ReadsOwnersWithTheirArchitecturesAndPassesOverDiversions)
{
    const auto owners = parseOwners("a: /usr/a\nb:amd64: /usr/b\nc, d: /usr/c\ndiversion by x from: /usr/e\n: /usr/f\n"
                                    "nonsense\n");

    EXPECT_EQ(owners,
              (QHash<FilePath, QString>{
                  {FilePath("/usr/a"), u"a"_qs}, {FilePath("/usr/b"), u"b"_qs}, {FilePath("/usr/c"), u"c"_qs}}));
}

TEST_F(SystemPackagesTest, TakesASizeThatIsNoneOrTooLargeAsNothing)
{
    const auto packages = parsePackages("a\t1\t10\nb\t2\t\nc\t3\t9223372036854775807\nd\t4\t-5\ne\t5\n");

    EXPECT_EQ(packages.value(u"a"_qs), (SystemPackage{u"1"_qs, 10240}));
    EXPECT_EQ(packages.value(u"b"_qs), (SystemPackage{u"2"_qs, 0}));
    EXPECT_EQ(packages.value(u"c"_qs), (SystemPackage{u"3"_qs, 0}));
    EXPECT_EQ(packages.value(u"d"_qs), (SystemPackage{u"4"_qs, 0}));
    EXPECT_FALSE(packages.contains(u"e"_qs));
}
