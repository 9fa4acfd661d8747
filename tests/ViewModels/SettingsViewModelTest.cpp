#include "ViewModels/SettingsViewModel.h"
#include "Fakes/InstalledLocalizer.h"
#include "Fakes/PretendMachine.h"
#include "Utilities/AppSettingsStore.h"
#include "Utilities/BackgroundWork.h"

#include <QSignalSpy>
#include <QTest>

#include <gmock/gmock.h>

using namespace Quillmere;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

namespace {

class SettingsViewModelTest : public testing::Test
{
protected:
    ~SettingsViewModelTest() override { childProcessPool().waitForDone(); }

    [[nodiscard]] AppSettings stored() const { return AppSettingsStore::load(*machine.defaults); }

    PretendMachine machine;
    InstalledLocalizer localizer{machine.defaults};
    AppState state{machine.defaults};
    PowerManagementService power{machine.assertions, machine.processes, true};
    QStringList ended; ///< What the machine had been asked to start when the program was ended, each time.
    SettingsViewModel settings{{
        machine.files,
        machine.workspace,
        power,
        state,
        DiskDriverHelper(machine.files, machine.places, machine.processes),
        SelfRemoval({machine.files, machine.places, machine.bundles, machine.processes, machine.workspace}),
        [this] {
            QStringList launched;
            for (const Command &command : machine.processes->launches())
                launched.append(command.launchPath);
            ended.append(launched.join(u' '));
        },
    }};
};

} // namespace

TEST_F(SettingsViewModelTest, BeginsKnowingNothing)
{
    EXPECT_FALSE(settings.hasFullDiskAccess());
    EXPECT_FALSE(settings.drivers()->areDriversInstalled());
    EXPECT_FALSE(settings.drivers()->isInstallingDrivers());
    EXPECT_EQ(settings.drivers()->driverInstallStatus(), QString());
}

TEST_F(SettingsViewModelTest, OffersTheSystemsLanguageBesideTheThree)
{
    EXPECT_THAT(settings.languages(), ElementsAre(u"System"_qs, u"English"_qs, u"Español"_qs, u"Русский"_qs));
    EXPECT_EQ(settings.languageIndex(), 0);
}

TEST_F(SettingsViewModelTest, ChangesTheLanguageAtOnceAndNotTheSettingsRecord)
{
    const QSignalSpy changed(&settings, &SettingsViewModel::languageChanged);

    settings.setLanguageIndex(2);

    EXPECT_EQ(localizer->language(), Language::Spanish);
    EXPECT_EQ(machine.defaults->string(Localizer::languageKey()), u"es"_qs);
    EXPECT_EQ(settings.languageIndex(), 2);
    EXPECT_EQ(changed.size(), 1);
    EXPECT_EQ(state.settings().language, Language::System);
}

TEST_F(SettingsViewModelTest, IgnoresChoicesThatThereAreNot)
{
    const AppSettings before = state.settings();

    for (const int index : {-1, 4, 100}) {
        settings.setLanguageIndex(index);
        settings.setThemeIndex(index);
        settings.setMenuBarModeIndex(index);
    }

    EXPECT_EQ(localizer->language(), Language::System);
    EXPECT_EQ(state.settings(), before);
}

TEST_F(SettingsViewModelTest, SavesEachChoiceAtOnce)
{
    settings.setThemeIndex(2);
    EXPECT_EQ(stored().theme, AppTheme::Dark);
    EXPECT_EQ(settings.themeIndex(), 2);

    settings.setMenuBarModeIndex(2);
    EXPECT_EQ(stored().menuBarDisplayMode, MenuBarDisplayMode::Traffic);
    EXPECT_EQ(settings.menuBarModeIndex(), 2);

    settings.setConfirmsDangerous(false);
    EXPECT_FALSE(stored().alwaysConfirmDangerous);
    EXPECT_FALSE(settings.confirmsDangerous());
}

TEST_F(SettingsViewModelTest, KeepsWhatItHasNoControlFor)
{
    AppSettings before;
    before.safeMode = false;
    before.advancedMode = true;
    before.excludedPaths = {u"/home/ada/keep"_qs};
    before.excludedApps = {u"org.example.app"_qs};
    before.scanExternalDrives = true;
    before.scanICloudDrive = true;
    before.showHiddenFiles = true;
    before.anonymousDiagnostics = true;
    state.setSettings(before);

    settings.setThemeIndex(1);
    settings.setMenuBarModeIndex(3);
    settings.setConfirmsDangerous(false);

    before.theme = AppTheme::Light;
    before.menuBarDisplayMode = MenuBarDisplayMode::Ram;
    before.alwaysConfirmDangerous = false;
    EXPECT_EQ(stored(), before);
}

TEST_F(SettingsViewModelTest, KeepsTheMachineAwakeThroughItsService)
{
    settings.setKeepAwake(true);

    EXPECT_TRUE(power.isKeepAwakeEnabled());
    EXPECT_TRUE(stored().keepAwakeEnabled);
    EXPECT_TRUE(settings.keepAwake());
}

TEST_F(SettingsViewModelTest, FollowsAChangeMadeElsewhere)
{
    const QSignalSpy changed(&settings, &SettingsViewModel::settingsChanged);

    power.setKeepAwake(true, &state);

    EXPECT_TRUE(settings.keepAwake());
    EXPECT_EQ(changed.size(), 1);
}

TEST_F(SettingsViewModelTest, LooksAtAccessAndDriversOnlyWhenItAppears)
{
    machine.files->addFile(FilePath("/home/ada/Library/Safari/Bookmarks.plist"), 1);
    machine.files->addFile(FilePath("/opt/homebrew/bin/ntfs-3g"), 1);
    EXPECT_FALSE(settings.hasFullDiskAccess());

    settings.appear();
    EXPECT_TRUE(settings.hasFullDiskAccess());
    EXPECT_TRUE(settings.drivers()->areDriversInstalled());

    machine.files->vanish(FilePath("/home/ada/Library/Safari/Bookmarks.plist"));
    EXPECT_TRUE(settings.hasFullDiskAccess());
}

TEST_F(SettingsViewModelTest, OpensTheSystemsSettingsAndTheMakersPage)
{
    settings.openFullDiskAccessSettings();
    ASSERT_TRUE(QTest::qWaitFor([&] { return machine.workspace->opened().size() == 1; }, 10'000));
    settings.openMakerPage();
    ASSERT_TRUE(QTest::qWaitFor([&] { return machine.workspace->opened().size() == 2; }, 10'000));

    EXPECT_THAT(machine.workspace->opened(),
                ElementsAre(QUrl(u"x-apple.systempreferences:com.apple.preference.security?Privacy_AllFiles"_qs),
                            QUrl(u"https://veltrane.example/"_qs)));
}

TEST_F(SettingsViewModelTest, SaysWhichProgramThisIs)
{
    EXPECT_EQ(settings.nameAndVersion(), u"Quillmere 1.3.4"_qs);
    EXPECT_FALSE(settings.makerName().isEmpty());
    EXPECT_FALSE(settings.makerLocation().isEmpty());
    EXPECT_FALSE(settings.leadDeveloper().isEmpty());
    EXPECT_EQ(settings.makerPage(), u"veltrane.example"_qs);
}

TEST_F(SettingsViewModelTest, RemovesTheProgramAndThenEndsIt)
{
    const FilePath history("/home/ada/Library/Application Support/Quillmere/history.json");
    machine.files->addFile(history, 10);
    machine.files->addFolder(FilePath("/tmp"));

    settings.selfUninstall();

    EXPECT_FALSE(machine.files->contains(history));
    EXPECT_THAT(ended, ElementsAre(u"/bin/bash"_qs));
}

TEST_F(SettingsViewModelTest, EndsTheProgramAlsoAfterALaunchThatFailed)
{
    machine.files->addFolder(FilePath("/tmp"));
    machine.processes->answer(u"/bin/bash"_qs, [](const Command &) {
        return Failure{Failure::Kind::NotFound, {}, u"no bash"_qs};
    });

    testing::internal::CaptureStdout();
    settings.selfUninstall();

    EXPECT_EQ(testing::internal::GetCapturedStdout(), "Failed to run self-uninstall background process: no bash\n");
    EXPECT_EQ(ended.size(), 1);
}

TEST_F(SettingsViewModelTest, RemovesNothingBeforeItIsAsked)
{
    settings.appear();

    EXPECT_THAT(machine.files->removed(), IsEmpty());
    EXPECT_THAT(ended, IsEmpty());
}

TEST_F(SettingsViewModelTest, TellsOfTheDriversInstallationInTheProgramsOwnWords)
{
    machine.processes->answer(u"/usr/bin/osascript"_qs, [](const Command &) { return ProcessOutcome{1, {}}; });
    QStringList statuses;
    QObject::connect(settings.drivers(), &DriversViewModel::changed,
                     [&] { statuses.append(settings.drivers()->driverInstallStatus()); });

    QCoro::waitFor(settings.drivers()->runDriverInstallation());

    EXPECT_THAT(statuses,
                testing::AllOf(testing::Contains(u"Starting installation..."_qs),
                               testing::Contains(u"Requesting administrator privileges..."_qs),
                               testing::Contains(u"Installing drivers in the background..."_qs)));
    EXPECT_EQ(statuses.last(), u"Installation failed or was cancelled."_qs);
}

TEST_F(SettingsViewModelTest, LooksForTheDriversBeforeItTellsTheOutcome)
{
    machine.files->addFile(FilePath("/usr/local/bin/ntfs-3g"), 1);
    QStringList statuses; ///< With each change once the drivers are there.
    const DriversViewModel *const drivers = settings.drivers();
    QObject::connect(drivers, &DriversViewModel::changed, drivers, [&] {
        if (drivers->areDriversInstalled())
            statuses.append(drivers->driverInstallStatus());
    });

    QCoro::waitFor(settings.drivers()->runDriverInstallation());

    EXPECT_THAT(statuses, ElementsAre(Not(u"Installation successful!"_qs), u"Installation successful!"_qs));
}
