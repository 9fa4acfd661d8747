#include "Platform/Linux/Places/PlacesData.h"
#include "Services/BundleInstaller.h"
#include "Services/PowerManagementService.h"
#include "Tools/AdministratorRequest.h"
#include "Tools/Osascript.h"
#include "Tools/ScriptText.h"
#include "ViewModels/ToolsFixture.h"

using namespace Quillmere;

namespace {

/// What the administrator is asked to do for @p script.
std::optional<AdministratorRequest> requestOf(const QString &script)
{
    const std::optional<QString> text = shellTextOfScript(script);
    return text ? requestFor(*text) : std::nullopt;
}

/// The script of each command among @p commands that runs one.
QStringList scriptsIn(const QList<Command> &commands)
{
    QStringList scripts;
    for (const Command &command : commands) {
        if (command.launchPath == osascript() && command.arguments.value(0) == u"-e" && command.arguments.size() == 2)
            scripts.append(command.arguments.last());
    }
    return scripts;
}

/// What the program has run by scripts, read as the program reads it that carries scripts out.
struct ElevatedScriptsTest : ToolsFixture
{
    [[nodiscard]] QStringList run() const { return scriptsIn(machine.processes->runs()); }
    [[nodiscard]] QStringList launched() const { return scriptsIn(machine.processes->launches()); }

    void expectTheOnly(const QStringList &scripts, const AdministratorRequest &request) const
    {
        ASSERT_EQ(scripts.size(), 1);
        const auto recognised = requestOf(scripts.first());
        ASSERT_TRUE(recognised) << qPrintable(scripts.first());
        EXPECT_EQ(recognised->verb, request.verb);
        EXPECT_EQ(recognised->arguments, request.arguments);
    }
    /// Has an NTFS disk come that is mounted at @p place and can only be read.
    void bringNtfs(const QByteArray &place)
    {
        PretendVolume disk = volume(place, u"disk508s1"_qs, u"NTFS"_qs);
        disk.values.value().isReadOnly = true;
        plugIn(disk);
        disks.handleVolumeMounted({FilePath(place)});
        settle();
    }
};

/// A driver that NTFS disks may be mounted by.
struct DriverScriptTest : ElevatedScriptsTest, testing::WithParamInterface<std::string>
{
};

std::vector<std::string> driverPlaces()
{
    std::vector<std::string> places = {"/usr/local/bin/ntfs-3g", "/opt/homebrew/bin/ntfs-3g"};
    for (const PlacesData::ListRow &row : PlacesData::builtIn().lists.value(u"NTFS Drivers"_qs))
        places.push_back((row.place.base + '/' + row.place.names.join('/')).toStdString());
    return places;
}

} // namespace

TEST_F(ElevatedScriptsTest, AResetOfTheIndexIsThatVerb)
{
    QCoro::waitFor(tools->resetSpotlightIndex());

    expectTheOnly(run(), {u"reset-index"_qs, {}});
}

TEST_F(ElevatedScriptsTest, ReclaimingMemoryIsThePurge)
{
    QCoro::waitFor(tools->reclaimMemory());

    expectTheOnly(run(), {u"purge"_qs, {}});
}

TEST_F(ElevatedScriptsTest, TheSecondStepOfFlushingNamesIsThatVerb)
{
    QCoro::waitFor(tools->flushDNS());

    expectTheOnly(run(), {u"flush-names"_qs, {}});
}

TEST_F(ElevatedScriptsTest, AQuickFormatIsTheErasingOfThatVolume)
{
    VolumeInfo stick;
    stick.bsdName = u"disk508s2"_qs;
    stick.fsType = u"msdos"_qs;

    QCoro::waitFor(tools->quickFormat(stick));

    expectTheOnly(run(), {u"erase-volume"_qs, {u"JHFS+"_qs, u"CleanDisk"_qs, u"disk508s2"_qs}});
}

TEST_F(ElevatedScriptsTest, AQuickFormatOfTheSystemRowIsAnOrderTooAndIsRefusedLater)
{
    tools->loadVolumes();

    QCoro::waitFor(tools->quickFormat(tools->connectedVolumes().first()));

    expectTheOnly(run(), {u"erase-volume"_qs, {u"APFS"_qs, u"CleanDisk"_qs, u"disk1s1s1"_qs}});
}

TEST_F(ElevatedScriptsTest, AVolumeOfAHostileNameIsAnOrderForThatNameAndNothingMore)
{
    VolumeInfo stick;
    stick.bsdName = u"it's \"one\" \\ && $(id)"_qs;

    QCoro::waitFor(tools->quickFormat(stick));

    expectTheOnly(run(), {u"erase-volume"_qs, {u"JHFS+"_qs, u"CleanDisk"_qs, stick.bsdName}});
}

TEST_F(ElevatedScriptsTest, ASecureOverwriteIsTheErasingOfTheWholeDisk)
{
    VolumeInfo stick;
    stick.path = FilePath("/media/stick");
    stick.bsdName = u"disk508s2"_qs;

    QCoro::waitFor(tools->secureOverwrite(stick));

    expectTheOnly(run(), {u"secure-erase"_qs, {u"disk508"_qs}});
}

TEST_F(ElevatedScriptsTest, TheSheetReadsTheNewNameOfWhatItHasErasedAndOrdersByThatNext)
{
    plugIn(volume("/media/stick", u"disk508s1"_qs, u"MS-DOS"_qs));
    machine.processes->answer(diskutil(), [this](const Command &) {
        const bool isErased = !run().isEmpty();
        return ProcessOutcome{0, isErased ? "Device Identifier: disk508s256\n" : "Device Identifier: disk508s1\n"};
    });
    machine.processes->answer(osascript(), "");
    DiskUtilityState sheet(*tools);
    const auto eraseStick = [&] {
        sheet.selectRow(2);
        sheet.run();
        sheet.proceed();
        EXPECT_TRUE(QTest::qWaitFor([&] { return sheet.alert() == DiskAlert::Finished; }, 10'000));
        EXPECT_TRUE(sheet.hasSucceeded());
        sheet.dismiss();
    };
    sheet.appear();

    eraseStick();
    EXPECT_TRUE(sheet.volumeTexts().last().contains(u"(disk508s256)"_qs)) << qPrintable(sheet.volumeTexts().last());
    eraseStick();

    const QStringList scripts = run();
    ASSERT_EQ(scripts.size(), 2);
    EXPECT_EQ(requestOf(scripts.first())->arguments.last(), u"disk508s1");
    EXPECT_EQ(requestOf(scripts.last())->arguments.last(), u"disk508s256");
}

TEST_F(ElevatedScriptsTest, StayingAwakeAndNoLongerAreTheTwoWordsOfOneVerb)
{
    AppState state{machine.defaults};
    PowerManagementService power{machine.assertions, machine.processes, false};

    power.setKeepAwake(true, &state);
    elevationPool().waitForDone();
    power.setKeepAwake(false, &state);
    elevationPool().waitForDone();

    const QStringList scripts = machine.processes->scripts();
    ASSERT_EQ(scripts.size(), 2);
    EXPECT_EQ(requestOf(scripts.first()), (AdministratorRequest{u"keep-awake"_qs, {u"on"_qs}}));
    EXPECT_EQ(requestOf(scripts.last()), (AdministratorRequest{u"keep-awake"_qs, {u"off"_qs}}));
}

TEST_F(ElevatedScriptsTest, InstallingForAllUsersIsTheCopyOfThisBundle)
{
    const FilePath bundle("/home/o'brien/My Programs/Quillmere.app");
    machine.bundles->main = bundle;
    machine.bundles->add({bundle, u"com.veltrane.quillmere"_qs, std::nullopt, u"1.3.4"_qs, u"1"_qs});
    machine.files->addFile(bundle.appending("Contents/MacOS/quillmere"), 1000, "program");
    machine.files->addFolder(FilePath("/Applications"));
    machine.files->refuse(FilePath("/Applications"), Failure::Kind::NoPermission);
    const SetupReceipt receipt(machine.defaults, machine.bundles, machine.clock, InstallerTerms(machine.files));
    const BundleInstaller installer({machine.files, machine.places, machine.bundles, machine.processes,
                                     machine.workspace, receipt, InstallerTerms(machine.files)});

    testing::internal::CaptureStdout();
    const std::optional<FilePath> installed = installer.copyToApplications();
    testing::internal::GetCapturedStdout();

    EXPECT_EQ(installed, FilePath("/Applications/Quillmere.app"));
    expectTheOnly(run(), {u"install-bundle"_qs, {u"/home/o'brien/My Programs/Quillmere.app"_qs}});
}

TEST_F(ElevatedScriptsTest, InstallingDriversIsThatVerb)
{
    const DiskDriverHelper drivers(machine.files, machine.places, machine.processes);

    EXPECT_TRUE(QCoro::waitFor(drivers.installDrivers([](const QString &) {})));

    expectTheOnly(scriptsIn(machine.processes->starts()), {u"install-drivers"_qs, {}});
}

TEST_P(DriverScriptTest, MountsAnNtfsDiskWhereItWas)
{
    const FilePath driver(GetParam().c_str());
    machine.files->addFile(driver, 1);
    machine.places->addEntry(u"NTFS Drivers"_qs, {{}, driver});

    bringNtfs("/media/anna/My Disk");

    expectTheOnly(launched(), {u"mount-ntfs"_qs, {u"/media/anna/My Disk"_qs, u"disk508s1"_qs}});
}

INSTANTIATE_TEST_SUITE_P(Places, DriverScriptTest, testing::ValuesIn(driverPlaces()), [](const auto &info) {
    std::string name = info.param;
    std::erase_if(name, [](char character) { return !std::isalnum(static_cast<unsigned char>(character)); });
    return name;
});

TEST_F(ElevatedScriptsTest, AnNtfsDiskWhosePathHoldsAQuotationMarkIsMountedByNobodyAndNothingIsStarted)
{
    machine.files->addFile(FilePath("/usr/local/bin/ntfs-3g"), 1);
    const QTemporaryDir folder;
    QFile pretended(folder.filePath(u"program"_qs));
    ASSERT_TRUE(pretended.open(QFile::WriteOnly));
    pretended.write("#!/bin/sh\ntouch \"$0.started\"\n");
    pretended.close();
    pretended.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    ElevationSettings settings;
    settings.pkexec = pretended.fileName();
    settings.administrator = pretended.fileName();

    for (const char *place : {"/media/a\"b", "/media/\" && /usr/sbin/purge && \"", "/media/a\\\"b"})
        bringNtfs(place);

    ASSERT_EQ(launched().size(), 3);
    for (const QString &script : launched())
        EXPECT_EQ(runOsascript({u"-e"_qs, script}, settings).status, 1) << qPrintable(script);
    EXPECT_FALSE(QFile::exists(pretended.fileName() + u".started"_qs));

    bringNtfs("/media/a b");
    EXPECT_EQ(runOsascript({u"-e"_qs, launched().last()}, settings), ToolEnd());
    EXPECT_TRUE(QFile::exists(pretended.fileName() + u".started"_qs));
}
