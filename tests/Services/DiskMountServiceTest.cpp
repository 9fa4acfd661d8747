#include "Services/DiskMountService.h"
#include "Fakes/Gate.h"
#include "Fakes/PretendMachine.h"
#include "Utilities/BackgroundWork.h"

#include <gtest/gtest.h>

using namespace Quillmere;

namespace {

constexpr const char *stick = "/Volumes/STICK";

struct DiskMountServiceTest : testing::Test
{
    PretendMachine machine;
    DiskMountService service{machine.workspace, machine.files, machine.places, machine.processes};

    DiskMountServiceTest() { machine.connectDisks(); }
    ~DiskMountServiceTest() override { childProcessPool().waitForDone(); }

    static PretendVolume externalVolume(const QString &fileSystem, const FilePath &mountPoint = FilePath(stick))
    {
        PretendVolume volume;
        volume.mountPoint = mountPoint;
        volume.device = u"disk4s2"_qs;
        volume.fileSystem = fileSystem;
        volume.values = VolumeValues{{}, true, false, {}};
        return volume;
    }

    /// Plugs it in and has it announced; what was said on standard output meanwhile.
    std::string arrive(const PretendVolume &volume)
    {
        machine.files->disks().plugIn(volume);
        testing::internal::CaptureStdout();
        service.handleVolumeMounted({volume.mountPoint});
        childProcessPool().waitForDone();
        return testing::internal::GetCapturedStdout();
    }

    [[nodiscard]] QList<Command> runs() const { return machine.processes->runs(); }
    [[nodiscard]] QList<Command> launches() const { return machine.processes->launches(); }

    static Command diskutil(const QStringList &arguments) { return {u"/usr/sbin/diskutil"_qs, arguments}; }
};

const QString stickPath = QString::fromLatin1(stick);

} // namespace

TEST_F(DiskMountServiceTest, HasAFatDiskMountedWithoutWaitingForIt)
{
    const std::string said = arrive(externalVolume(u"MS-DOS FAT32"_qs));

    EXPECT_EQ(runs(), QList({diskutil({u"info"_qs, stickPath}), diskutil({u"info"_qs, stickPath})}));
    EXPECT_EQ(launches(), QList({diskutil({u"mount"_qs, u"disk4s2"_qs})}));
    EXPECT_EQ(said, "Auto-mounting FAT/exFAT disk: /Volumes/STICK (disk4s2)\n");
}

TEST_F(DiskMountServiceTest, TreatsAnExfatDiskAsAFatDisk)
{
    const std::string said = arrive(externalVolume(u"ExFAT"_qs));

    EXPECT_EQ(launches(), QList({diskutil({u"mount"_qs, u"disk4s2"_qs})}));
    EXPECT_EQ(said, "Auto-mounting FAT/exFAT disk: /Volumes/STICK (disk4s2)\n");
}

TEST_F(DiskMountServiceTest, UnmountsAnNtfsDiskWithoutADriverAndMountsItAgain)
{
    const std::string said = arrive(externalVolume(u"NTFS"_qs));

    EXPECT_EQ(said, "Auto-mounting NTFS disk: /Volumes/STICK (disk4s2)\n");
    EXPECT_EQ(runs().mid(2), QList({diskutil({u"unmount"_qs, stickPath}), diskutil({u"mount"_qs, u"disk4s2"_qs})}));
    EXPECT_TRUE(launches().isEmpty());
    EXPECT_EQ(machine.files->disks().mountPoints(), QList({FilePath(stick)}));
}

TEST_F(DiskMountServiceTest, RemountsAnNtfsDiskThroughTheDriverWithAdministratorPrivileges)
{
    machine.files->addFile(FilePath("/opt/homebrew/bin/ntfs-3g"), 1);

    arrive(externalVolume(u"Windows NT File System (NTFS)"_qs, FilePath("/Volumes/My Disk")));

    EXPECT_EQ(runs().mid(2), QList({diskutil({u"unmount"_qs, u"/Volumes/My Disk"_qs})}));
    ASSERT_EQ(launches().size(), 1);
    EXPECT_EQ(launches().first().launchPath, u"/usr/bin/osascript"_qs);
    ASSERT_EQ(launches().first().arguments.size(), 2);
    EXPECT_EQ(launches().first().arguments.first(), u"-e"_qs);
    EXPECT_EQ(launches().first().arguments.last().toStdString(),
              R"(do shell script "mkdir -p \"/Volumes/My Disk\" && /opt/homebrew/bin/ntfs-3g /dev/disk4s2 )"
              R"(\"/Volumes/My Disk\" -o local,allow_other" with administrator privileges)");
}

TEST_F(DiskMountServiceTest, TakesTheFirstDriverThatThereIs)
{
    machine.files->addFile(FilePath("/opt/homebrew/bin/ntfs-3g"), 1);
    machine.files->addFile(FilePath("/usr/local/bin/ntfs-3g"), 1);

    arrive(externalVolume(u"NTFS"_qs));

    ASSERT_EQ(launches().size(), 1);
    EXPECT_TRUE(launches().first().arguments.last().contains(u" && /usr/local/bin/ntfs-3g /dev/disk4s2 "));
}

TEST_F(DiskMountServiceTest, TakesTheLayerBelowForNoDriver)
{
    machine.files->addFolder(FilePath("/Library/Filesystems/macfuse.fs"));

    arrive(externalVolume(u"NTFS"_qs));

    EXPECT_TRUE(launches().isEmpty());
}

TEST_F(DiskMountServiceTest, RemountsAlthoughUnmountingFails)
{
    machine.files->addFile(FilePath("/usr/local/bin/ntfs-3g"), 1);
    machine.processes->answer(u"/usr/sbin/diskutil"_qs, [this](const Command &command) -> Result<ProcessOutcome> {
        if (command.arguments.first() == u"unmount")
            return Failure{Failure::Kind::Other, {}, u"could not be started"_qs};
        return machine.files->disks().diskutil(command.arguments, false);
    });

    arrive(externalVolume(u"NTFS"_qs));

    EXPECT_EQ(launches().size(), 1);
}

TEST_F(DiskMountServiceTest, LeavesAnNtfsDiskAloneThatTheMachineSaysIsWritableAlready)
{
    PretendVolume volume = externalVolume(u"NTFS"_qs);
    volume.values.value().isReadOnly = false;

    const std::string said = arrive(volume);

    EXPECT_EQ(runs().size(), 2);
    EXPECT_TRUE(launches().isEmpty());
    EXPECT_EQ(said, "");
}

TEST_F(DiskMountServiceTest, LeavesAnNtfsDiskMountedThatIsProtectedAgainstWriting)
{
    PretendVolume volume = externalVolume(u"NTFS"_qs);
    volume.values.value().isReadOnly = true;
    volume.values.value().isWriteProtected = true;

    const std::string said = arrive(volume);

    EXPECT_EQ(runs().size(), 2);
    EXPECT_TRUE(launches().isEmpty());
    EXPECT_EQ(said, "");
}

TEST_F(DiskMountServiceTest, RemountsAnNtfsDiskThatTheMachineSaysIsReadOnly)
{
    PretendVolume volume = externalVolume(u"NTFS"_qs);
    volume.values.value().isReadOnly = true;

    arrive(volume);

    EXPECT_EQ(runs().mid(2, 1), QList({diskutil({u"unmount"_qs, stickPath})}));
}

TEST_F(DiskMountServiceTest, NeverRemountsAnInternalNtfsPartition)
{
    PretendVolume volume = externalVolume(u"NTFS"_qs);
    volume.values.value().isInternal = true;

    arrive(volume);

    EXPECT_TRUE(runs().isEmpty());
    EXPECT_TRUE(launches().isEmpty());
}

TEST_F(DiskMountServiceTest, LeavesADiskAloneOfWhichNobodyKnowsWhetherItIsInternal)
{
    PretendVolume volume = externalVolume(u"NTFS"_qs);
    volume.values.value().isInternal.reset();

    arrive(volume);

    EXPECT_TRUE(runs().isEmpty());
}

TEST_F(DiskMountServiceTest, LeavesADiskAloneWhoseValuesCannotBeRead)
{
    PretendVolume volume = externalVolume(u"NTFS"_qs);
    volume.values = Failure{Failure::Kind::Other, volume.mountPoint, {}};

    arrive(volume);

    EXPECT_TRUE(runs().isEmpty());
}

TEST_F(DiskMountServiceTest, LeavesADiskAloneThatTheDiskCommandDoesNotKnow)
{
    PretendVolume volume = externalVolume(u"NTFS"_qs);
    volume.device.clear();

    arrive(volume);

    EXPECT_EQ(runs(), QList({diskutil({u"info"_qs, stickPath})}));
}

TEST_F(DiskMountServiceTest, LeavesDisksOfAllOtherFileSystemsAlone)
{
    const std::string said = arrive(externalVolume(u"APFS"_qs));

    EXPECT_EQ(runs().size(), 2);
    EXPECT_TRUE(launches().isEmpty());
    EXPECT_EQ(said, "");
}

TEST_F(DiskMountServiceTest, DoesNothingForANotificationThatNamesNoVolume)
{
    service.start();

    machine.workspace->announceMount({});
    childProcessPool().waitForDone();

    EXPECT_TRUE(machine.processes->runs().isEmpty());
}

TEST_F(DiskMountServiceTest, HandlesADiskOnceMoreEachTimeItComesUp)
{
    machine.files->disks().plugIn(externalVolume(u"ExFAT"_qs));
    service.start();
    childProcessPool().waitForDone();

    machine.workspace->announceMount({FilePath(stick)});
    childProcessPool().waitForDone();
    machine.workspace->announceMount({FilePath(stick)});
    childProcessPool().waitForDone();

    EXPECT_EQ(launches().size(), 3);
}

TEST_F(DiskMountServiceTest, HandlesTheDisksThatAreThereAlreadyOneAfterTheOther)
{
    machine.files->disks().plugIn(externalVolume(u"ExFAT"_qs, FilePath("/Volumes/ONE")));
    machine.files->disks().plugIn(externalVolume(u"APFS"_qs, FilePath("/Volumes/TWO")));
    PretendVolume third = externalVolume(u"MS-DOS"_qs, FilePath("/Volumes/THREE"));
    third.device = u"disk5s1"_qs;
    machine.files->disks().plugIn(third);

    service.start();
    childProcessPool().waitForDone();

    EXPECT_EQ(machine.processes->launches(),
              QList({diskutil({u"mount"_qs, u"disk4s2"_qs}), diskutil({u"mount"_qs, u"disk5s1"_qs})}));
}

TEST_F(DiskMountServiceTest, StartsOnce)
{
    machine.files->disks().plugIn(externalVolume(u"ExFAT"_qs));

    service.start();
    service.start();
    childProcessPool().waitForDone();

    EXPECT_EQ(machine.processes->launches().size(), 1);
}

TEST_F(DiskMountServiceTest, HandlesNoDiskBeforeItIsStarted)
{
    machine.files->disks().plugIn(externalVolume(u"ExFAT"_qs));

    machine.workspace->announceMount({FilePath(stick)});
    childProcessPool().waitForDone();

    EXPECT_TRUE(machine.processes->runs().isEmpty());
}

TEST_F(DiskMountServiceTest, HandlesASecondDiskWhileTheFirstKeepsItWaiting)
{
    const Gate gate;
    machine.processes->answer(u"/usr/sbin/diskutil"_qs, [this, gate](const Command &command) {
        if (command.arguments.last() == u"/Volumes/SLOW")
            gate.wait();
        return machine.files->disks().diskutil(command.arguments, false);
    });
    PretendVolume slow = externalVolume(u"ExFAT"_qs, FilePath("/Volumes/SLOW"));
    slow.device = u"disk7s1"_qs;
    service.start();
    machine.files->disks().plugIn(slow);
    machine.files->disks().plugIn(externalVolume(u"ExFAT"_qs));

    machine.workspace->announceMount({slow.mountPoint});
    machine.workspace->announceMount({FilePath(stick)});
    while (machine.processes->launches().isEmpty())
        std::this_thread::yield();

    EXPECT_EQ(machine.processes->launches(), QList({diskutil({u"mount"_qs, u"disk4s2"_qs})}));
    gate.open();
}

TEST_F(DiskMountServiceTest, PutsAHostilePathIntoTheScriptAsItStands)
{
    machine.files->addFile(FilePath("/usr/local/bin/ntfs-3g"), 1);
    const QString path = u"/Volumes/-rf $(reboot) \\ \" 'x'\n`y`"_qs;

    arrive(externalVolume(u"NTFS"_qs, FilePath(path.toUtf8())));

    EXPECT_EQ(runs().first(), diskutil({u"info"_qs, path}));
    EXPECT_EQ(runs().at(2), diskutil({u"unmount"_qs, path}));
    ASSERT_EQ(launches().size(), 1);
    EXPECT_EQ(launches().first().arguments,
              QStringList({u"-e"_qs,
                           u"do shell script \"mkdir -p \\\""_qs + path
                               + u"\\\" && /usr/local/bin/ntfs-3g /dev/disk4s2 "
                                 u"\\\""_qs
                               + path + u"\\\" -o local,allow_other\" with administrator privileges"_qs}));
}

TEST_F(DiskMountServiceTest, LeavesADiskAloneWhosePathIsNoText)
{
    const FilePath path(QByteArray("/Volumes/\xff"));

    arrive(externalVolume(u"ExFAT"_qs, path));

    EXPECT_TRUE(runs().isEmpty());
    EXPECT_EQ(service.getBSDName(path), QString());
    EXPECT_EQ(service.getFilesystemType(path), QString());
}

namespace {

struct InfoCase
{
    const char *name;
    const char *output;
    const char *bsdName;
    const char *type;
};

struct DiskInfoTest : DiskMountServiceTest, testing::WithParamInterface<InfoCase>
{
};

} // namespace

TEST_P(DiskInfoTest, IsReadLineByLine)
{
    machine.processes->answer(u"/usr/sbin/diskutil"_qs, QByteArray(GetParam().output));

    EXPECT_EQ(service.getBSDName(FilePath(stick)).toStdString(), GetParam().bsdName);
    EXPECT_EQ(service.getFilesystemType(FilePath(stick)).toStdString(), GetParam().type);
    EXPECT_EQ(machine.processes->runs(), QList({diskutil({u"info"_qs, stickPath}), diskutil({u"info"_qs, stickPath})}));
}

INSTANTIATE_TEST_SUITE_P(
    Outputs, DiskInfoTest,
    testing::Values(
        InfoCase{"Nothing", "", "", ""},
        InfoCase{"Identifier", "   Device Identifier:         disk4s2\n   Device Node: /dev/disk4s2\n", "disk4s2", ""},
        InfoCase{"NodeFirst", "Device Node:  /dev/disk4s2 \nDevice Identifier: disk9\n", "/dev/disk4s2", ""},
        InfoCase{"NothingBehindTheColon", "Device Node:\nDevice Identifier: disk4s2\n", "", ""},
        InfoCase{"SecondColon", "Device Identifier: disk4s2: really\n", "disk4s2", ""},
        InfoCase{"LabelBehindAnotherColon", "Note: Device Node: disk4\n", "Device Node", ""},
        InfoCase{"NoLineOfEither", "   Volume Name: STICK\n", "", ""},
        InfoCase{"Exfat", "   Type (Bundle):             exfat\n", "", "msdos"},
        InfoCase{"Fat", "   File System Personality:   MS-DOS FAT32\n", "", "msdos"},
        InfoCase{"MsDosAlone", "   File System Personality:   MS-DOS\n", "", "msdos"},
        InfoCase{"Ntfs", "   File System Personality:   Windows NTFS\n", "", "ntfs"},
        InfoCase{"NtfsBeforeFat", "Type (Bundle): fatntfs\n", "", "ntfs"},
        InfoCase{"UnknownLineThenKnown", "Type (Bundle): apfs\nFile System Personality: NTFS\n", "", "ntfs"},
        InfoCase{"Apfs", "   Type (Bundle):             apfs\n", "", ""},
        InfoCase{"NotText", "   Device Identifier: disk4s2\xff\n   Type (Bundle): ntfs\n", "", ""}),
    [](const auto &info) { return info.param.name; });

TEST_F(DiskMountServiceTest, KnowsNothingWhenTheDiskCommandCannotBeStarted)
{
    machine.processes->answer(u"/usr/sbin/diskutil"_qs, [](const Command &) {
        return Failure{Failure::Kind::NotFound, {}, {}};
    });

    EXPECT_EQ(service.getBSDName(FilePath(stick)), QString());
    EXPECT_EQ(service.getFilesystemType(FilePath(stick)), QString());
}
