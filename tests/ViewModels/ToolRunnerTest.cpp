#include "Fakes/Gate.h"
#include "Fakes/PretendScript.h"
#include "ViewModels/ToolsFixture.h"

using namespace Quillmere;

namespace {

struct ToolRunnerTest : ToolsFixture
{
};

struct ToolCase
{
    const char *name;
    QCoro::Task<> (ToolsViewModel::*run)();
    const char *consoleName;
    Command command;
};

struct ToolCommandTest : ToolsFixture, testing::WithParamInterface<ToolCase>
{
};

} // namespace

TEST_P(ToolCommandTest, RunsItsCommandAndSaysWhatItPrinted)
{
    answer(GetParam().command.launchPath, 0, "done\n");

    QCoro::waitFor((tools.get()->*GetParam().run)());

    EXPECT_EQ(machine.processes->joinedRuns(), QList({GetParam().command}));
    EXPECT_EQ(machine.processes->runs(), QList({GetParam().command}));
    EXPECT_EQ(console(),
              std::string("Executing ") + GetParam().consoleName
                  + "...\ndone\n\nSUCCESS: Command completed successfully.\n");
    EXPECT_EQ(tools->currentToolName().toStdString(), GetParam().consoleName);
    EXPECT_FALSE(tools->isRunning());
}

INSTANTIATE_TEST_SUITE_P(
    Tools, ToolCommandTest,
    testing::Values(
        ToolCase{"Spotlight", &ToolsViewModel::resetSpotlightIndex, "Reset Spotlight Indexing",
                 privileged(u"'/usr/bin/mdutil' '-E' '/'"_qs)},
        ToolCase{"LaunchServices",
                 &ToolsViewModel::rebuildLaunchServices,
                 "Rebuild Launch Services",
                 {u"/System/Library/Frameworks/CoreServices.framework/Frameworks/LaunchServices.framework/Support/"
                  "lsregister"_qs,
                  {u"-kill"_qs, u"-r"_qs, u"-domain"_qs, u"local"_qs, u"-domain"_qs, u"system"_qs, u"-domain"_qs,
                   u"user"_qs}}},
        ToolCase{"Memory", &ToolsViewModel::reclaimMemory, "Reclaim Memory", privileged(u"'/usr/sbin/purge'"_qs)}),
    [](const auto &info) { return info.param.name; });

TEST_F(ToolRunnerTest, BeginsWithAnEmptyConsoleAndNothingRunning)
{
    EXPECT_EQ(console(), "");
    EXPECT_FALSE(tools->isRunning());
    EXPECT_EQ(tools->currentToolName(), QString());
    EXPECT_FALSE(tools->showDiskUtility());
    EXPECT_TRUE(tools->connectedVolumes().isEmpty());
}

TEST_F(ToolRunnerTest, SaysWhatItExecutesWhileItRuns)
{
    const Gate gate;
    machine.processes->answer(osascript(), [gate](const Command &) {
        gate.wait();
        return ProcessOutcome{0, "all of it\n"};
    });

    QCoro::Task<> run = tools->reclaimMemory();

    EXPECT_TRUE(tools->isRunning());
    EXPECT_EQ(tools->currentToolName(), u"Reclaim Memory"_qs);
    EXPECT_EQ(console(), "Executing Reclaim Memory...\n");
    gate.open();
    QCoro::waitFor(run);
    EXPECT_FALSE(tools->isRunning());
    EXPECT_EQ(console(), "Executing Reclaim Memory...\nall of it\n\nSUCCESS: Command completed successfully.\n");
}

TEST_F(ToolRunnerTest, SaysThatRightsMayBeMissingWhenACommandFailsWithoutAWord)
{
    answer(osascript(), 77, " \n\t\n");

    QCoro::waitFor(tools->resetSpotlightIndex());

    EXPECT_EQ(console(),
              "Executing Reset Spotlight Indexing...\nERROR: The command failed. Administrator privileges or Full Disk "
              "Access may be required. (77)\n");
    EXPECT_FALSE(tools->isRunning());
}

TEST_F(ToolRunnerTest, SaysTheStatusAheadOfWhatAFailedCommandPrinted)
{
    answer(osascript(), 1, "\n  execution error: User canceled. (-128)\n\n");

    QCoro::waitFor(tools->reclaimMemory());

    EXPECT_EQ(console(), "Executing Reclaim Memory...\nERROR: ERROR 1:\nexecution error: User canceled. (-128)\n");
}

TEST_F(ToolRunnerTest, TakesOutputThatIsNoTextForNoneAndStatusZeroForSuccess)
{
    answer(osascript(), 0, "half \xff a text");

    QCoro::waitFor(tools->reclaimMemory());

    EXPECT_EQ(console(), "Executing Reclaim Memory...\n\nSUCCESS: Command completed successfully.\n");
}

TEST_F(ToolRunnerTest, TakesOutputThatIsNoTextForNoneWhenTheCommandFails)
{
    answer(osascript(), 2, "half \xff a text");

    QCoro::waitFor(tools->reclaimMemory());

    EXPECT_NE(console().find("may be required. (2)\n"), std::string::npos);
}

TEST_F(ToolRunnerTest, SaysWhyACommandCouldNotBeStarted)
{
    machine.processes->answer(osascript(), [](const Command &) {
        return Failure{Failure::Kind::NotFound, FilePath("/usr/bin/osascript"), u"gone"_qs};
    });

    QCoro::waitFor(tools->reclaimMemory());

    EXPECT_EQ(console().rfind("Executing Reclaim Memory...\nERROR: ", 0), 0U) << console();
    EXPECT_GT(console().size(), std::string("Executing Reclaim Memory...\nERROR: \n").size());
    EXPECT_FALSE(tools->isRunning());
}

TEST_F(ToolRunnerTest, SpeaksTheUsersLanguageButForTheNameOfTheTool)
{
    localizer->setLanguage(Language::Spanish);
    answer(osascript(), 3, "no");

    QCoro::waitFor(tools->reclaimMemory());

    EXPECT_EQ(console(), "Ejecutando Reclaim Memory...\nERROR: ERROR 3:\nno\n");
}

TEST_F(ToolRunnerTest, WipesTheTextOfACommandThatStillRunsWhenAnotherBegins)
{
    const Gate first;
    const Gate second;
    machine.processes->answer(osascript(), [=](const Command &command) {
        const bool isFirst = command.arguments.last().contains(u"mdutil");
        (isFirst ? first : second).wait();
        return ProcessOutcome{0, isFirst ? "first" : "second"};
    });

    QCoro::Task<> spotlight = tools->resetSpotlightIndex();
    QCoro::Task<> memory = tools->reclaimMemory();

    EXPECT_EQ(console(), "Executing Reclaim Memory...\n");
    second.open();
    QCoro::waitFor(memory);
    EXPECT_FALSE(tools->isRunning()) << "the first to end ends it";
    first.open();
    QCoro::waitFor(spotlight);
    EXPECT_EQ(console(),
              "Executing Reclaim Memory...\nsecond\nSUCCESS: Command completed successfully.\n"
              "first\nSUCCESS: Command completed successfully.\n");
}

TEST_F(ToolRunnerTest, GoesWithoutAWordWhileACommandRuns)
{
    const Gate gate;
    machine.processes->answer(osascript(), [gate](const Command &) {
        gate.wait();
        return ProcessOutcome{};
    });
    QCoro::Task<> run = tools->reclaimMemory();

    tools.reset();
    gate.open();
    QCoro::waitFor(run);

    EXPECT_EQ(machine.processes->runs().size(), 1);
}

TEST_F(ToolRunnerTest, FlushesTheDnsCacheAndThenRestartsTheResolverWithRights)
{
    answer(u"/usr/bin/dscacheutil"_qs, 0, "not shown");
    answer(osascript(), 0, "not shown either");

    QCoro::waitFor(tools->flushDNS());

    EXPECT_EQ(machine.processes->joinedRuns(),
              QList({Command{u"/usr/bin/dscacheutil"_qs, {u"-flushcache"_qs}},
                     privileged(u"'/usr/bin/killall' '-HUP' 'mDNSResponder'"_qs)}));
    EXPECT_EQ(console(),
              "Starting DNS cache flush...\nDNS cache flushed.\nmDNSResponder restarted successfully.\n"
              "SUCCESS: Command completed successfully.\n");
    EXPECT_EQ(tools->currentToolName(), u"Flush DNS Cache"_qs);
    EXPECT_FALSE(tools->isRunning());
}

TEST_F(ToolRunnerTest, LeavesTheFlushAboveTheErrorWhenThePasswordIsRefused)
{
    answer(osascript(), 1, "User canceled. (-128)");

    QCoro::waitFor(tools->flushDNS());

    EXPECT_EQ(console(), "Starting DNS cache flush...\nDNS cache flushed.\nERROR: ERROR 1:\nUser canceled. (-128)\n");
    EXPECT_FALSE(tools->isRunning());
}

TEST_F(ToolRunnerTest, RestartsNothingWhenTheFlushFails)
{
    answer(u"/usr/bin/dscacheutil"_qs, 5, "no such cache");

    QCoro::waitFor(tools->flushDNS());

    EXPECT_EQ(machine.processes->runs().size(), 1);
    EXPECT_EQ(console(), "Starting DNS cache flush...\nERROR: ERROR 5:\nno such cache\n");
    EXPECT_FALSE(tools->isRunning());
}
