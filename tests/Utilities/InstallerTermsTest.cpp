#include "Utilities/InstallerTerms.h"
#include "Fakes/InstalledLocalizer.h"
#include "Fakes/PretendMachine.h"

#include <gmock/gmock.h>

using namespace Quillmere;
using testing::HasSubstr;

namespace {

class InstallerTermsTest : public testing::Test
{
protected:
    InstalledLocalizer localizer;
    PretendMachine machine;
    InstallerTerms terms{machine.files};
    const FilePath folder = FilePath("/home/ada/Library/Application Support/Quillmere");
    const FilePath file = folder.appending("FINAL_INSTALLATION_CONDITIONS_RULES_DISCLAIMER.md");
};

const QList<QByteArray> lines = {
    "# Quillmere Installation Conditions, Rules, and Disclaimers",
    "## Conditions",
    "Quillmere is provided as a local macOS maintenance utility. By installing or running the app, the user confirms "
    "that they understand the app scans local files, cache folders, logs, startup items, application leftovers, "
    "resource usage, and network traffic counters for maintenance purposes.",
    "The app does not collect, sell, or transmit personal files. Cleanup and monitoring actions are performed locally "
    "on the device.",
    "## Rules",
    "The user should review scan results before deleting files. Quillmere labels risk where applicable, protects known "
    "system paths, and asks for confirmation before destructive actions.",
    "The user is responsible for choosing which files, app data, startup items, applications, and traffic controls to "
    "act on. Application Traffic Control uses a macOS Content Filter system extension to block outbound network flows "
    "for the selected app. macOS requires explicit user approval before the filter becomes active. Local loopback "
    "traffic is not blocked.",
    "Eco Traffic mode is a review filter for the allowed browser and messenger list. It does not silently change "
    "firewall rules; the user applies an app-level rule explicitly.",
    "## Disclaimers",
    "Quillmere is provided \"as is\" without warranty. The developer is not liable for application errors, system "
    "faults, data loss, application interruptions, lost sessions, or other outcomes caused by cleanup, uninstall, "
    "startup, optimization, or traffic-control actions.",
    "macOS may require permissions for some operations. If permissions are not granted, some scans, cleanup actions, "
    "or traffic controls may be limited.",
    "Users should keep backups of important data before deleting files or removing application data.",
};

} // namespace

TEST_F(InstallerTermsTest, WritesTheConditionsIntoTheSupportFolderWhichItMakes)
{
    EXPECT_EQ(terms.writeFinalInstallationFile(), file);

    EXPECT_EQ(machine.files->contentsOfFile(file).valueOr({}), lines.join("\n\n"));
}

TEST_F(InstallerTermsTest, ReplacesAnEarlierFile)
{
    machine.files->addFile(file, 3, "old");

    EXPECT_EQ(terms.writeFinalInstallationFile(), file);

    EXPECT_TRUE(machine.files->contentsOfFile(file).valueOr({}).startsWith("# Quillmere"));
}

TEST_F(InstallerTermsTest, PrintsOneLineAndGoesOnWhenTheFolderCannotBeMade)
{
    machine.files->addFolder(FilePath("/home/ada/Library"));
    machine.files->refuse(FilePath("/home/ada/Library"), Failure::Kind::NoPermission);

    testing::internal::CaptureStdout();
    EXPECT_EQ(terms.writeFinalInstallationFile(), std::nullopt);

    EXPECT_THAT(testing::internal::GetCapturedStdout(),
                testing::StartsWith("Failed to write final installation file: "));
    EXPECT_FALSE(machine.files->contains(file));
}

TEST_F(InstallerTermsTest, PrintsOneLineAndGoesOnWhenTheFileCannotBeWritten)
{
    machine.files->addFolder(folder);
    machine.files->refuse(folder, Failure::Kind::NoSpace);

    testing::internal::CaptureStdout();
    EXPECT_EQ(terms.writeFinalInstallationFile(), std::nullopt);

    EXPECT_THAT(testing::internal::GetCapturedStdout(), HasSubstr("Failed to write final installation file: "));
}
