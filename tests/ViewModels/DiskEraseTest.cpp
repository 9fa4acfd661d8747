#include "Fakes/Gate.h"
#include "ViewModels/ToolsFixture.h"

using namespace Quillmere;

namespace {

struct DiskEraseTest : ToolsFixture
{
    /// The rows as the name, device and file system of each.
    [[nodiscard]] QStringList rows() const
    {
        QStringList texts;
        for (const VolumeInfo &each : tools->connectedVolumes())
            texts.append(each.name + u'|' + each.bsdName + u'|' + each.fsType);
        return texts;
    }
    [[nodiscard]] VolumeInfo loaded(qsizetype row) const
    {
        tools->loadVolumes();
        return tools->connectedVolumes().at(row);
    }
    [[nodiscard]] QList<Command> scripts() const
    {
        QList<Command> found;
        for (const Command &command : machine.processes->joinedRuns()) {
            if (command.launchPath == osascript())
                found.append(command);
        }
        return found;
    }

    const QString systemRow = u"Macintosh HD (System)|disk1s1s1|APFS"_qs;
};

struct WholeDiskCase
{
    const char *name;
    const char *device;
    const char *disk;
};

struct WholeDiskTest : DiskEraseTest, testing::WithParamInterface<WholeDiskCase>
{
};

} // namespace

TEST_F(DiskEraseTest, ListsTheSystemDiskAloneWhenNothingElseIsMounted)
{
    machine.files->setCapacity(VolumeCapacity{500, 200, 200});

    tools->loadVolumes();

    ASSERT_EQ(tools->connectedVolumes().size(), 1);
    EXPECT_EQ(tools->connectedVolumes().first(),
              (VolumeInfo{u"Macintosh HD (System)"_qs, FilePath("/"), u"disk1s1s1"_qs, true, u"APFS"_qs, 500, 200}));
}

TEST_F(DiskEraseTest, ListsWhatIsMountedBehindTheSystemDiskInTheOrderOfTheSystem)
{
    plugIn(volume("/Volumes/ZULU", u"disk5s1"_qs, u"NTFS"_qs));
    plugIn(volume("/Volumes/ALPHA", u"disk4s2"_qs, u"ExFAT"_qs));

    tools->loadVolumes();

    EXPECT_EQ(rows(), QStringList({systemRow, u"STICK|disk5s1|ntfs"_qs, u"STICK|disk4s2|msdos"_qs}));
    EXPECT_EQ(tools->connectedVolumes().at(1),
              (VolumeInfo{u"STICK"_qs, FilePath("/Volumes/ZULU"), u"disk5s1"_qs, false, u"ntfs"_qs, 64'000'000'000,
                          40'000'000'000}));
}

TEST_F(DiskEraseTest, NeverListsTheRootASecondTime)
{
    plugIn(volume("/", u"disk1s1s1"_qs, {}));
    plugInStick();

    tools->loadVolumes();

    EXPECT_EQ(rows(), QStringList({systemRow, u"STICK|disk4s2|msdos"_qs}));
    EXPECT_TRUE(tools->connectedVolumes().first().isInternal);
}

TEST_F(DiskEraseTest, ListsNothingBelowPrivateAndVarWhateverItIs)
{
    plugIn(volume("/private/var/vm", u"disk1s4"_qs, {}));
    plugIn(volume("/var/lib/machines", u"disk6s1"_qs, u"NTFS"_qs));
    plugIn(volume("/variety", u"disk7s1"_qs, {}));
    plugIn(volume("/Volumes/var", u"disk4s2"_qs, {}));

    tools->loadVolumes();

    EXPECT_EQ(rows(), QStringList({systemRow, u"STICK|disk4s2|Unknown"_qs}));
}

TEST_F(DiskEraseTest, ShowsTheFolderAndUnknownForAVolumeThatTheDiskCommandDoesNotKnow)
{
    PretendVolume share = volume("/Volumes/share", {}, {});
    share.values = Failure{Failure::Kind::NotSupported, share.mountPoint, {}};
    plugIn(share);

    const VolumeInfo listed = loaded(1);

    EXPECT_EQ(listed.name, u"share"_qs);
    EXPECT_EQ(listed.bsdName, u"share"_qs);
    EXPECT_EQ(listed.fsType, u"Unknown"_qs);
    EXPECT_FALSE(listed.isInternal);
}

TEST_F(DiskEraseTest, PassesTheFolderOfSuchAVolumeToTheDiskCommandWhichFails)
{
    plugIn(volume("/Volumes/share", {}, {}));

    const bool isFormatted = QCoro::waitFor(tools->quickFormat(loaded(1)));

    EXPECT_FALSE(isFormatted);
    EXPECT_EQ(scripts(), QList({privileged(u"'/usr/sbin/diskutil' 'eraseVolume' 'JHFS+' 'CleanDisk' 'share'"_qs)}));
    EXPECT_EQ(console(), "Starting quick format: STICK (share)...\nERROR: ERROR 1:\nUnable to find disk for share\n");
    EXPECT_FALSE(tools->isRunning());
}

TEST_F(DiskEraseTest, CountsAVolumeAsExternalOfWhichNobodyKnows)
{
    PretendVolume unknown = volume("/Volumes/STICK", u"disk4s2"_qs, {});
    unknown.values = VolumeValues{};
    plugIn(unknown);

    EXPECT_FALSE(loaded(1).isInternal);
    EXPECT_EQ(loaded(1).name, u"STICK"_qs) << "its folder, since it has no name";
}

TEST_F(DiskEraseTest, ListsAnInternalVolumeAsInternal)
{
    PretendVolume internal = volume("/Volumes/Data", u"disk1s5"_qs, {});
    internal.values.value().isInternal = true;
    plugIn(internal);

    EXPECT_TRUE(loaded(1).isInternal);
}

TEST_F(DiskEraseTest, ShowsNoControlCharactersOfAName)
{
    PretendVolume odd = volume("/Volumes/odd", u"disk4s2"_qs, {});
    odd.values = VolumeValues{u"a\nSUCCESS: no\u202e"_qs, true, false, {}};
    plugIn(odd);

    EXPECT_EQ(loaded(1).name, u"a\ufffdSUCCESS: no\ufffd"_qs);
}

TEST_F(DiskEraseTest, FormatsAnExternalVolumeWhichIsThenCalledCleanDisk)
{
    plugInStick();

    const bool isFormatted = QCoro::waitFor(tools->quickFormat(loaded(1)));

    EXPECT_TRUE(isFormatted);
    EXPECT_EQ(scripts(), QList({privileged(u"'/usr/sbin/diskutil' 'eraseVolume' 'JHFS+' 'CleanDisk' 'disk4s2'"_qs)}));
    EXPECT_EQ(console(),
              "Starting quick format: STICK (disk4s2)...\nStarted erase on disk4s2\nUnmounting disk\nErasing\n"
              "Formatting disk4s2 as JHFS+ with name CleanDisk\nMounting disk\nFinished erase on disk4s2\n\n"
              "SUCCESS: Quick format completed.\n");
    EXPECT_EQ(tools->currentToolName(), u"Quick Format STICK"_qs);
    EXPECT_FALSE(tools->isRunning());
    EXPECT_EQ(rows(), QStringList({systemRow, u"CleanDisk|disk4s2|Unknown"_qs}));
}

TEST_F(DiskEraseTest, FormatsAnExternalApfsVolumeAsMacOsExtended)
{
    plugIn(volume("/Volumes/STICK", u"disk4s2"_qs, u"APFS"_qs));

    const VolumeInfo listed = loaded(1);
    QCoro::waitFor(tools->quickFormat(listed));

    EXPECT_EQ(listed.fsType, u"Unknown"_qs);
    EXPECT_EQ(scripts(), QList({privileged(u"'/usr/sbin/diskutil' 'eraseVolume' 'JHFS+' 'CleanDisk' 'disk4s2'"_qs)}));
}

TEST_F(DiskEraseTest, FormatsTheSystemRowAsApfsAndGuardsNothingHere)
{
    const bool isFormatted = QCoro::waitFor(tools->quickFormat(loaded(0)));

    EXPECT_FALSE(isFormatted) << "the pretend machine knows no such disk";
    EXPECT_EQ(scripts(), QList({privileged(u"'/usr/sbin/diskutil' 'eraseVolume' 'APFS' 'CleanDisk' 'disk1s1s1'"_qs)}));
}

TEST_F(DiskEraseTest, TakesApfsInAnyCaseForApfs)
{
    VolumeInfo volume;
    volume.fsType = u"my apfs (Encrypted)"_qs;
    volume.bsdName = u"disk4s2"_qs;

    QCoro::waitFor(tools->quickFormat(volume));

    EXPECT_EQ(scripts(), QList({privileged(u"'/usr/sbin/diskutil' 'eraseVolume' 'APFS' 'CleanDisk' 'disk4s2'"_qs)}));
}

TEST_F(DiskEraseTest, LeavesTheListAsItWasWhenFormattingFails)
{
    plugInStick();
    const VolumeInfo listed = loaded(1);
    answer(osascript(), 1, "User canceled. (-128)");
    machine.files->disks().pullOut(FilePath("/Volumes/STICK"));

    const bool isFormatted = QCoro::waitFor(tools->quickFormat(listed));

    EXPECT_FALSE(isFormatted);
    EXPECT_EQ(console(), "Starting quick format: STICK (disk4s2)...\nERROR: ERROR 1:\nUser canceled. (-128)\n");
    EXPECT_EQ(tools->connectedVolumes().size(), 2);
    EXPECT_FALSE(tools->isRunning());
}

TEST_F(DiskEraseTest, OverwritesTheWholeDiskWithAllItsVolumes)
{
    plugInStick();
    plugIn(volume("/Volumes/OTHER", u"disk4s3"_qs, u"NTFS"_qs));
    plugIn(volume("/Volumes/ELSEWHERE", u"disk5s1"_qs, u"NTFS"_qs));

    const bool isErased = QCoro::waitFor(tools->secureOverwrite(loaded(1)));

    EXPECT_TRUE(isErased);
    EXPECT_EQ(scripts(), QList({privileged(u"'/usr/sbin/diskutil' 'secureErase' '0' '/dev/disk4'"_qs)}));
    EXPECT_EQ(console(),
              "Starting secure overwrite (zero fill, one pass): STICK (disk4s2)...\nStarted erase on /dev/disk4\n"
              "Finished erase on /dev/disk4\n\nSUCCESS: Secure overwrite completed.\n");
    EXPECT_EQ(tools->currentToolName(), u"Secure Overwrite STICK"_qs);
    EXPECT_EQ(rows(), QStringList({systemRow, u"STICK|disk5s1|ntfs"_qs}));
    EXPECT_FALSE(tools->isRunning());
}

TEST_P(WholeDiskTest, IsWhatRemainsWithoutTheFirstPartition)
{
    VolumeInfo volume;
    volume.path = FilePath("/Volumes/X");
    volume.bsdName = QString::fromUtf8(GetParam().device);

    QCoro::waitFor(tools->secureOverwrite(volume));

    EXPECT_EQ(scripts(),
              QList({privileged(
                  u"'/usr/sbin/diskutil' 'secureErase' '0' '/dev/%1'"_qs.arg(QString::fromUtf8(GetParam().disk)))}));
}

INSTANTIATE_TEST_SUITE_P(Names, WholeDiskTest,
                         testing::Values(WholeDiskCase{"Partition", "disk4s2", "disk4"},
                                         WholeDiskCase{"TwoDigits", "disk12s10", "disk12"},
                                         WholeDiskCase{"Nested", "disk4s2s1", "disk4s1"},
                                         WholeDiskCase{"NoPartition", "disk4", "disk4"},
                                         WholeDiskCase{"AnotherName", "share", "share"},
                                         WholeDiskCase{"Hostile", "a b; $(reboot)", "a b; $(reboot)"}),
                         [](const auto &info) { return info.param.name; });

TEST_F(DiskEraseTest, RefusesToOverwriteAnInternalVolumeWithoutRunningAnything)
{
    QCoro::waitFor(tools->reclaimMemory());
    const std::string before = console();
    const qsizetype runs = machine.processes->runs().size();
    VolumeInfo internal;
    internal.name = u"Data"_qs;
    internal.path = FilePath("/Volumes/Data");
    internal.bsdName = u"disk1s5"_qs;
    internal.isInternal = true;

    const bool isErased = QCoro::waitFor(tools->secureOverwrite(internal));

    EXPECT_FALSE(isErased);
    EXPECT_EQ(machine.processes->runs().size(), runs);
    EXPECT_EQ(console(), before + "\nERROR: Secure overwrite of an internal or system disk is blocked!\n");
    EXPECT_EQ(tools->currentToolName(), u"Reclaim Memory"_qs);
}

TEST_F(DiskEraseTest, RefusesToOverwriteTheRootEvenWhenItPassesForExternal)
{
    VolumeInfo root;
    root.path = FilePath("/");
    root.bsdName = u"disk4s2"_qs;

    const bool isErased = QCoro::waitFor(tools->secureOverwrite(root));

    EXPECT_FALSE(isErased);
    EXPECT_TRUE(machine.processes->runs().isEmpty());
}

TEST_F(DiskEraseTest, LeavesIsRunningUntouchedWhenItRefusesToOverwrite)
{
    const Gate gate;
    machine.processes->answer(osascript(), [gate](const Command &) {
        gate.wait();
        return ProcessOutcome{};
    });
    QCoro::Task<> other = tools->reclaimMemory();

    EXPECT_FALSE(QCoro::waitFor(tools->secureOverwrite(loaded(0))));

    EXPECT_TRUE(tools->isRunning());
    gate.open();
    QCoro::waitFor(other);
}

TEST_F(DiskEraseTest, SaysOfAFailedOverwriteWhatTheDiskCommandSaid)
{
    plugInStick();
    const VolumeInfo listed = loaded(1);
    machine.files->disks().pullOut(FilePath("/Volumes/STICK"));

    const bool isErased = QCoro::waitFor(tools->secureOverwrite(listed));

    EXPECT_FALSE(isErased);
    EXPECT_EQ(console(),
              "Starting secure overwrite (zero fill, one pass): STICK (disk4s2)...\nERROR: ERROR 1:\n"
              "Unable to find disk for /dev/disk4\n");
    EXPECT_FALSE(tools->isRunning());
}
