#include "Platform/Linux/Disks/SystemDisks.h"
#include "Platform/Linux/Disks/IdleMounts.h"
#include "Platform/Linux/Disks/PretendBlockDevices.h"

#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>

using namespace Quillmere;
using testing::UnorderedElementsAre;

namespace {

constexpr qint64 gibibyte = 1 << 30;

/// A laptop: one disk with its system, two sticks.
class SystemDisksTest : public testing::Test
{
protected:
    SystemDisksTest()
    {
        disk = machine.addDisk("nvme0n1", "259:0", 500 * gibibyte, 1);
        first = machine.addPartition("nvme0n1", 1, "259:1", gibibyte, gibibyte);
        second = machine.addPartition("nvme0n1", 2, "259:2", 2 * gibibyte, 400 * gibibyte);
        stick = machine.addDisk("sda", "8:0", 16 * gibibyte, 7, "usb1");
        onStick = machine.addPartition("sda", 1, "8:1", gibibyte, 15 * gibibyte);
        other = machine.addDisk("sdb", "8:16", 16 * gibibyte, 8, "usb2");
        places.program = FilePath("/usr/bin/program");
    }

    void mount(const char *location, const QByteArray &device, const QByteArray &type = "ext4",
               const QByteArray &source = {}, const QByteArray &options = "rw")
    {
        places.mounts.append({FilePath(location), type, device, FilePath("/"), source, options});
    }
    Result<QSet<quint64>> needed() const { return systemDevices(places, machine.devices()); }
    void expectUnknown(const char *what) const
    {
        const Result<QSet<quint64>> answer = needed();
        ASSERT_FALSE(answer);
        EXPECT_EQ(answer.failure().path, FilePath(what));
    }

    PretendBlockDevices machine;
    SystemPlaces places;
    quint64 disk = 0, first = 0, second = 0, stick = 0, onStick = 0, other = 0;
};

} // namespace

TEST_F(SystemDisksTest, ThePartitionOfTheRootAndItsWholeDiskButNoStickThatIsMountedElsewhere)
{
    mount("/", "259:2");
    mount("/media/user/stick", "8:1", "vfat");

    ASSERT_TRUE(needed());
    EXPECT_THAT(needed().value(), UnorderedElementsAre(disk, second));
}

TEST_F(SystemDisksTest, EachFolderOfTheSystemCounts)
{
    mount("/", "259:2");
    for (const char *place : {"/boot", "/boot/efi", "/home", "/home/user", "/usr", "/usr/local", "/var", "/var/lib",
                              "/var/log/journal", "/etc", "/opt", "/root"}) {
        mount(place, "8:1");
        EXPECT_TRUE(needed().value().contains(stick)) << place;
        places.mounts.removeLast();
    }
    for (const char *place : {"/home/user/stick", "/mnt", "/srv", "/media/home", "/bootleg", "/various", "/usr2"}) {
        mount(place, "8:1");
        EXPECT_FALSE(needed().value().contains(stick)) << place;
        places.mounts.removeLast();
    }
}

TEST_F(SystemDisksTest, TheDiskOfTheCallersHomeCountsWhereverThatIs)
{
    mount("/", "259:2");
    mount("/data", "8:1");
    mount("/media/user/other", "8:16");
    EXPECT_FALSE(needed().value().contains(stick));

    places.homes = {FilePath("/home/anna"), FilePath("/data/homes/anna")};

    EXPECT_THAT(needed().value(), UnorderedElementsAre(disk, second, onStick, stick));
}

TEST_F(SystemDisksTest, TheHomeIsLookedForWhereItsLinksLead)
{
    const QTemporaryDir folder;
    const FilePath home(QFile::encodeName(folder.filePath(u"home"_qs)));
    ASSERT_TRUE(QFile::link(u"/usr"_qs, folder.filePath(u"home"_qs)));

    EXPECT_THAT(SystemPlaces::ofThisMachine(home).value().homes, UnorderedElementsAre(home, FilePath("/usr")));
    EXPECT_THAT(SystemPlaces::ofThisMachine(FilePath("/nowhere/at/all")).value().homes,
                testing::Each(FilePath("/nowhere/at/all")));
    EXPECT_TRUE(SystemPlaces::ofThisMachine(FilePath()).value().homes.isEmpty());
}

TEST_F(SystemDisksTest, WhatIsOnNoKnownDiskBelowVarKeepsNoDiskFromBeingFree)
{
    mount("/", "259:2");
    mount("/var/lib/lxcfs", "0:50", "fuse.lxcfs", "lxcfs");
    mount("/var/lib/nfs/rpc_pipefs", "0:51", "rpc_pipefs", "sunrpc");
    mount("/var/lib/containers/merged", "0:52", "overlay", "overlay", "rw,lowerdir=l/1:l/2,upperdir=/hidden");
    EXPECT_THAT(needed().value(), UnorderedElementsAre(disk, second));

    mount("/var/lib/containers/volume", "8:16");
    EXPECT_THAT(needed().value(), UnorderedElementsAre(disk, second, other));
    mount("/var", "0:53", "fuse.unknown", "unknown");
    expectUnknown("/var");
}

TEST_F(SystemDisksTest, EncryptionAndVolumeGroupsAreLookedThrough)
{
    const quint64 crypt = machine.addStacked("dm-1", "253:1", gibibyte, 21, {"sda1"});
    const quint64 volume = machine.addStacked("dm-2", "253:2", gibibyte, 22, {"dm-1"});
    mount("/", "253:2");

    EXPECT_THAT(needed().value(), UnorderedElementsAre(volume, crypt, onStick, stick));
}

TEST_F(SystemDisksTest, AllPartsOfAnArrayCount)
{
    const quint64 array = machine.addStacked("md0", "9:0", gibibyte, 30, {"sda1", "sdb"});
    mount("/", "259:2");
    mount("/home", "9:0");

    EXPECT_THAT(needed().value(), UnorderedElementsAre(disk, second, array, onStick, stick, other));
}

TEST_F(SystemDisksTest, AnImageInAFileCountsForTheDiskThatTheFileLiesOn)
{
    const quint64 image = machine.addLoop("loop0", "7:0", 40, "/media/user/stick/images/system.img");
    mount("/", "259:2");
    mount("/media/user/stick", "8:1");
    mount("/home", "7:0");

    EXPECT_THAT(needed().value(), UnorderedElementsAre(disk, second, image, onStick, stick));
}

TEST_F(SystemDisksTest, AFileSystemOfSeveralDisksIsFoundByItsSource)
{
    machine.addBtrfs("1234", {"nvme0n1p2", "sdb"});
    machine.addNodeLink("mapper/root", "nvme0n1p2");
    mount("/", "0:31", "btrfs", "/dev/mapper/root");

    EXPECT_THAT(needed().value(), UnorderedElementsAre(disk, second, other));
}

TEST_F(SystemDisksTest, TheLayersOfALiveSystemAreLookedFor)
{
    const quint64 packed = machine.addLoop("loop0", "7:0", 40, "/run/live/medium/system.squashfs");
    mount("/run/live/medium", "8:1", "iso9660");
    mount("/run/live/rootfs", "7:0", "squashfs");
    mount("/", "0:40", "overlay", "overlay", "rw,lowerdir=/run/live/rootfs,upperdir=/run/live/medium/rw");

    EXPECT_THAT(needed().value(), UnorderedElementsAre(packed, onStick, stick));
}

TEST_F(SystemDisksTest, SwapCountsOnAPartitionAndInAFile)
{
    mount("/", "0:20", "nfs4", "server:/root");
    mount("/mnt/big", "8:16");
    const QByteArray header = "Filename\t\t\t\tType\t\tSize\t\tUsed\t\tPriority\n";
    places.swaps = header + "/dev/sda1                               partition\t1\t0\t-2\n";
    EXPECT_THAT(needed().value(), UnorderedElementsAre(onStick, stick));

    places.swaps = header + "/mnt/big/swap\\040file                   file\t1\t0\t-2\n";
    EXPECT_THAT(needed().value(), UnorderedElementsAre(other));
}

TEST_F(SystemDisksTest, TheDiskOfTheRunningProgramCounts)
{
    mount("/", "259:2");
    mount("/media/user/stick", "8:1");
    places.program = FilePath("/media/user/stick/Quillmere.app/Contents/Helpers/quillmere-admin");

    EXPECT_THAT(needed().value(), UnorderedElementsAre(disk, second, onStick, stick));
}

TEST_F(SystemDisksTest, WhatIsInMemoryOrOnOtherMachinesNeedsNoDisk)
{
    mount("/", "0:20", "nfs4", "server:/root");
    mount("/var", "0:21", "tmpfs", "tmpfs");

    ASSERT_TRUE(needed());
    EXPECT_TRUE(needed().value().isEmpty());
}

TEST_F(SystemDisksTest, WhatMountsAtTheFirstTouchCountsAsWhatWasMounted)
{
    mount("/", "259:2");
    mount("/home", "0:40", "autofs", "auto.home");
    expectUnknown("/home");

    mount("/home/user", "0:41", "nfs4", "server:/home/user");
    ASSERT_TRUE(needed());
    EXPECT_THAT(needed().value(), UnorderedElementsAre(disk, second));

    places.homes = {FilePath("/home/another")};
    expectUnknown("/home/another");
    places.homes = {FilePath("/home/user")};

    mount("/boot", "0:42", "autofs", "systemd-1");
    expectUnknown("/boot");
    mount("/boot", "8:1", "vfat");
    ASSERT_TRUE(needed());
    EXPECT_THAT(needed().value(), UnorderedElementsAre(disk, second, stick, onStick));
}

TEST_F(SystemDisksTest, AFolderOfMapsThatNobodyHasTouchedYetNeedsNoDisk)
{
    mount("/", "259:2");
    mount("/opt", "0:51", "autofs", "/etc/auto.opt", "rw,fd=6,indirect,pipe_ino=1");
    ASSERT_TRUE(needed());
    EXPECT_THAT(needed().value(), UnorderedElementsAre(disk, second));

    places.homes = {FilePath("/opt/user")};
    expectUnknown("/opt/user");
    places.homes = {};

    mount("/boot", "0:52", "autofs", "/etc/auto.boot", "rw,fd=6,indirect,pipe_ino=1");
    expectUnknown("/boot");
}

TEST_F(SystemDisksTest, WhatIsMountedBelowAFolderThatMountsAtTheFirstTouchCounts)
{
    mount("/", "259:2");
    mount("/home", "0:40", "autofs", "/etc/auto.home");
    expectUnknown("/home");

    mount("/home/staff/user", "8:16");
    mount("/home/staff/user/elsewhere", "0:50", "fuse.sshfs", "server:");

    ASSERT_TRUE(needed());
    EXPECT_THAT(needed().value(), UnorderedElementsAre(disk, second, other));
}

TEST_F(SystemDisksTest, WhatIsMountedBelowASystemFolderCounts)
{
    mount("/", "259:2");
    for (const char *place : {"/opt/suite", "/nix/store", "/etc/keys", "/efi/loader"}) {
        mount(place, "8:16");
        EXPECT_THAT(needed().value(), UnorderedElementsAre(disk, second, other)) << place;
        places.mounts.removeLast();
    }
    mount("/opt/remote", "0:50", "fuse.sshfs", "server:");
    EXPECT_THAT(needed().value(), UnorderedElementsAre(disk, second));

    mount("/opt", "0:51", "autofs", "auto.opt");
    mount("/opt/suite", "8:16");
    EXPECT_THAT(needed().value(), UnorderedElementsAre(disk, second, other));
}

TEST_F(SystemDisksTest, FoldersOfTheBootLoaderAreIdleUntilSomethingIsMountedThere)
{
    mount("/", "259:2");
    EXPECT_FALSE(wakeBootFolders(places.mounts));
    for (const char *place : {"/boot", "/boot/efi", "/efi", "/home", "/media/stick"})
        mount(place, "0:42", "autofs", "systemd-1");
    EXPECT_EQ(idleBootFolders(places.mounts),
              (QList<FilePath>{FilePath("/boot"), FilePath("/boot/efi"), FilePath("/efi")}));

    mount("/boot/efi", "8:1", "vfat");
    mount("/efi", "8:1", "vfat");
    EXPECT_EQ(idleBootFolders(places.mounts), QList<FilePath>{FilePath("/boot")});
}

TEST_F(SystemDisksTest, NoDiskIsFreeWhereItCannotBeToldWhereTheSystemLives)
{
    mount("/", "0:28", "zfs", "pool/root");
    expectUnknown("/");

    places.mounts.clear();
    mount("/", "0:28", "overlay", "overlay", "rw,lowerdir=/hidden/1:/hidden/2,upperdir=/hidden/3");
    expectUnknown("/");

    places.mounts.clear();
    mount("/", "259:9");
    expectUnknown("/dev/block/259:9");

    places.mounts.clear();
    mount("/", "259:2");
    places.swaps = "Filename\n/dev/mapper/unknown partition 1 0 -2\n";
    expectUnknown("/dev/mapper/unknown");

    places.swaps.clear();
    places.mounts.clear();
    expectUnknown("/usr/bin/program");
}

TEST_F(SystemDisksTest, ARingOfImagesEnds)
{
    const quint64 image = machine.addLoop("loop0", "7:0", 40, "/home/image");
    mount("/", "259:2");
    mount("/home", "7:0");

    EXPECT_THAT(needed().value(), UnorderedElementsAre(disk, second, image));
}
