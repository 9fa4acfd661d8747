#include "Utilities/DiskDriverHelper.h"
#include "Fakes/Gate.h"
#include "Fakes/PretendMachine.h"
#include "Utilities/BackgroundWork.h"

#include <QStringList>

#include <QCoro/QCoroTask>

#include <gtest/gtest.h>

using namespace Quillmere;

namespace {

struct DiskDriverHelperTest : testing::Test
{
    PretendMachine machine;
    DiskDriverHelper drivers{machine.files, machine.places, machine.processes};
    QStringList statuses;

    ~DiskDriverHelperTest() override { childProcessPool().waitForDone(); }

    [[nodiscard]] QCoro::Task<bool> install()
    {
        return drivers.installDrivers([this](const QString &status) { statuses.append(status); });
    }
};

struct DriverPathTest : DiskDriverHelperTest, testing::WithParamInterface<const char *>
{
};

} // namespace

TEST_F(DiskDriverHelperTest, FindsNothingOnAMachineWithoutAnyDriver)
{
    EXPECT_FALSE(drivers.checkDriversInstalled());
    EXPECT_FALSE(drivers.driverExecutable());
}

TEST_P(DriverPathTest, CountsAsInstalledByItself)
{
    machine.files->addFile(FilePath(GetParam()), 1);

    EXPECT_TRUE(drivers.checkDriversInstalled());
}

INSTANTIATE_TEST_SUITE_P(Paths, DriverPathTest,
                         testing::Values("/Library/Filesystems/macfuse.fs", "/Library/Filesystems/osxfuse.fs",
                                         "/usr/local/bin/ntfs-3g", "/opt/homebrew/bin/ntfs-3g"));

TEST_F(DiskDriverHelperTest, TakesTheLayerBelowForADriverAlthoughItHasNoExecutable)
{
    machine.files->addFolder(FilePath("/Library/Filesystems/macfuse.fs"));

    EXPECT_TRUE(drivers.checkDriversInstalled());
    EXPECT_FALSE(drivers.driverExecutable());
}

TEST_F(DiskDriverHelperTest, PrefersTheFirstOfSeveralDriversAndThisPlatformsOwnLast)
{
    const PlaceEntry ownDriver = {{}, FilePath("/usr/bin/ntfs-3g")};

    machine.places->addEntry(u"NTFS Drivers"_qs, ownDriver);
    EXPECT_TRUE(drivers.checkDriversInstalled());
    EXPECT_EQ(drivers.driverExecutable(), ownDriver.path);
    machine.files->addFile(FilePath("/opt/homebrew/bin/ntfs-3g"), 1);
    EXPECT_EQ(drivers.driverExecutable(), FilePath("/opt/homebrew/bin/ntfs-3g"));
    machine.files->addFile(FilePath("/usr/local/bin/ntfs-3g"), 1);
    EXPECT_EQ(drivers.driverExecutable(), FilePath("/usr/local/bin/ntfs-3g"));
}

TEST_F(DiskDriverHelperTest, InstallsByOneScriptWithAdministratorPrivileges)
{
    const bool isInstalled = QCoro::waitFor(install());

    EXPECT_TRUE(isInstalled);
    const QList<Command> starts = machine.processes->starts();
    ASSERT_EQ(starts.size(), 1);
    EXPECT_EQ(starts.first().launchPath, u"/usr/bin/osascript"_qs);
    ASSERT_EQ(starts.first().arguments.size(), 2);
    EXPECT_EQ(starts.first().arguments.first(), u"-e"_qs);
    EXPECT_EQ(
        starts.first().arguments.last().toStdString(),
        "do shell script \"if [ -f /opt/homebrew/bin/brew ]; then /opt/homebrew/bin/brew install --cask macfuse && "
        "/opt/homebrew/bin/brew install ntfs-3g-mac; elif [ -f /usr/local/bin/brew ]; then /usr/local/bin/brew "
        "install --cask macfuse && /usr/local/bin/brew install ntfs-3g-mac; else echo 'Homebrew is required to "
        "download/compile NTFS-3G and macFUSE'; exit 1; fi\" with administrator privileges");
    EXPECT_EQ(statuses,
              QStringList({u"Requesting administrator privileges..."_qs, u"Installing drivers in background..."_qs}));
}

TEST_F(DiskDriverHelperTest, SaysThatItInstallsWhileTheScriptStillRuns)
{
    const Gate gate;
    machine.processes->onEnd([gate] { gate.wait(); });

    QCoro::Task<bool> installation = install();

    EXPECT_EQ(statuses.size(), 2);
    EXPECT_FALSE(installation.isReady());
    gate.open();
    EXPECT_TRUE(QCoro::waitFor(installation));
}

TEST_F(DiskDriverHelperTest, HasNotInstalledWhenTheScriptEndsWithStatusOneAsItDoesWithoutHomebrew)
{
    machine.processes->answer(u"/usr/bin/osascript"_qs, [](const Command &) { return ProcessOutcome{1, {}}; });

    const bool isInstalled = QCoro::waitFor(install());

    EXPECT_FALSE(isInstalled);
    EXPECT_EQ(statuses.size(), 2);
}

TEST_F(DiskDriverHelperTest, SaysOnStandardOutputThatTheInstallationCouldNotBeStarted)
{
    machine.processes->answer(u"/usr/bin/osascript"_qs, [](const Command &) {
        return Failure{Failure::Kind::NotFound, FilePath("/usr/bin/osascript"), u"gone"_qs};
    });

    testing::internal::CaptureStdout();
    const bool isInstalled = QCoro::waitFor(install());
    const std::string said = testing::internal::GetCapturedStdout();

    EXPECT_FALSE(isInstalled);
    EXPECT_EQ(said.rfind("Failed to start driver installation: ", 0), 0U) << said;
    EXPECT_EQ(statuses, QStringList({u"Requesting administrator privileges..."_qs}));
}

TEST_F(DiskDriverHelperTest, MayGoWhileItsInstallationRuns)
{
    const Gate gate;
    machine.processes->onEnd([gate] { gate.wait(); });
    auto passing = std::make_unique<DiskDriverHelper>(machine.files, machine.places, machine.processes);

    QCoro::Task<bool> installation = passing->installDrivers([](const QString &) {});
    passing.reset();
    gate.open();

    EXPECT_TRUE(QCoro::waitFor(installation));
}
