#include "Platform/Linux/Disks/MountedVolumes.h"
#include "Platform/Linux/Disks/PretendBlockDevices.h"
#include "Platform/Linux/Files/FileDescriptor.h"

#include <gmock/gmock.h>

#include <sys/inotify.h>
#include <unistd.h>

using namespace Quillmere;
using testing::ElementsAre;
using testing::UnorderedElementsAre;

namespace {

constexpr qint64 gigabyte = 1 << 30;

class BlockDevicesTest : public testing::Test
{
protected:
    BlockDevicesTest()
    {
        stick = machine.addDisk("sda", "8:0", 16 * gigabyte, 7, "usb1");
        first = machine.addPartition("sda", 1, "8:1", gigabyte, 5 * gigabyte);
        second = machine.addPartition("sda", 2, "8:2", 6 * gigabyte, 10 * gigabyte);
        other = machine.addDisk("sdb", "8:16", 16 * gigabyte, 8);
        opened = machine.addStacked("dm-0", "253:0", 9 * gigabyte, 9, {"sda2"});
    }

    PretendBlockDevices machine;
    quint64 stick = 0, first = 0, second = 0, other = 0, opened = 0;
};

MountEntry entry(const char *place, const QByteArray &device, const QByteArray &type = "ext4",
                 const QByteArray &source = {})
{
    return {FilePath(place), type, device, FilePath("/"), source};
}

} // namespace

TEST_F(BlockDevicesTest, DescribesPartitionsByTheirDisk)
{
    const std::optional<BlockDevice> device = machine.devices().device(first);

    ASSERT_TRUE(device);
    EXPECT_EQ(device->name, "sda1");
    EXPECT_EQ(device->size, 5 * gigabyte);
    EXPECT_EQ(device->start, gigabyte);
    EXPECT_EQ(device->partition, 1);
    EXPECT_EQ(device->disk, stick);
    EXPECT_EQ(device->sequence, 7u);
    EXPECT_TRUE(device->isPluggable);
    EXPECT_FALSE(device->isReadOnly);
    EXPECT_FALSE(machine.devices().device(other)->isPluggable);
    EXPECT_EQ(machine.devices().device(12345), std::nullopt);
}

TEST_F(BlockDevicesTest, FindsTheWholeDiskBelowPartitionsAndWhatStandsOnOne)
{
    const BlockDevices devices = machine.devices();
    for (const quint64 number : {stick, first, second, opened})
        EXPECT_EQ(devices.wholeDisk(number)->number, stick);
    const quint64 array = machine.addStacked("md0", "9:0", gigabyte, 10, {"sda1", "sdb"});
    EXPECT_EQ(devices.wholeDisk(array)->number, array);
    EXPECT_EQ(devices.wholeDisk(12345), std::nullopt);
}

TEST_F(BlockDevicesTest, ListsWhatStandsOnADiskWithTheTopmostFirst)
{
    const QList<quint64> stack = machine.devices().withAllAbove(stick);

    EXPECT_THAT(stack, UnorderedElementsAre(stick, first, second, opened));
    EXPECT_LT(stack.indexOf(opened), stack.indexOf(second));
    EXPECT_EQ(stack.last(), stick);
    EXPECT_THAT(machine.devices().withAllAbove(opened), ElementsAre(opened));
    EXPECT_THAT(machine.devices().foundations(opened), ElementsAre(opened, second, stick));
}

TEST_F(BlockDevicesTest, ReadsNumbersAsTheKernelWritesThemAlone)
{
    EXPECT_EQ(deviceNumberOf("8:17"), deviceNumberOf("8:17"));
    EXPECT_EQ(textOfDeviceNumber(*deviceNumberOf("259:70000")), "259:70000");
    for (const char *text : {"", ":", "8", "8:", ":1", "08:1", "8: 1", "8:1 ", "-8:1", "8:1:1", "a:b", "99999999999:1"})
        EXPECT_EQ(deviceNumberOf(text), std::nullopt) << text;
}

TEST_F(BlockDevicesTest, TakesNoNameThatLeadsElsewhere)
{
    for (const char *name : {"", ".", "..", "../sda", "sda/sda1", "nothing"})
        EXPECT_EQ(machine.devices().numberOf(name), std::nullopt) << name;
    EXPECT_EQ(machine.devices().numberOf("sda1"), first);
    machine.addNodeLink("mapper/secret", "dm-0");
    EXPECT_EQ(machine.devices().numberOfNode(FilePath("/dev/mapper/secret")), opened);
    EXPECT_EQ(machine.devices().numberOfNode(FilePath("/etc/sda1")), std::nullopt);
}

TEST_F(BlockDevicesTest, AVolumeMountedAtSeveralPlacesIsOneVolumeAtTheFirst)
{
    const QList<MountEntry> table = {entry("/", "8:16"),
                                     entry("/proc", "0:5", "proc", "proc"),
                                     entry("/media/stick", "8:1", "vfat"),
                                     entry("/srv/again", "8:1"),
                                     entry("/snap/core", "7:0", "squashfs"),
                                     entry("/boot", "8:2"),
                                     entry("/bind", "8:16"),
                                     entry("/pool", "0:44", "btrfs", "/dev/dm-0"),
                                     entry("/share", "0:45", "nfs4", "server:/share")};

    EXPECT_THAT(volumesIn(table, machine.devices()),
                ElementsAre(MountedVolume{FilePath("/"), other, 8, false, "ext4"},
                            MountedVolume{FilePath("/media/stick"), first, 7, false, "vfat"},
                            MountedVolume{FilePath("/pool"), opened, 9, false, "btrfs"}));
}

TEST_F(BlockDevicesTest, TheKernelIsAskedOnceForADeviceHoweverOftenItIsMounted)
{
    QList<MountEntry> table = {entry("/media/stick", "8:1", "vfat")};
    for (int place = 0; place < 300; ++place)
        table.append(entry("/srv/again", "8:1"));
    // One event for each opening of a file in there.
    const FileDescriptor watch(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC));
    ASSERT_GE(::inotify_add_watch(watch.number(), machine.folderOf("sda1").constData(), IN_OPEN), 0);

    EXPECT_EQ(volumesIn(table, machine.devices()).size(), 1);

    QByteArray events(1 << 16, '\0');
    const ssize_t length = ::read(watch.number(), events.data(), static_cast<size_t>(events.size()));
    ASSERT_GT(length, 0);
    EXPECT_EQ(events.first(length).count("start"), 1);
}

TEST_F(BlockDevicesTest, FindsTheUuidOfAFileSystemByItsLink)
{
    machine.setUuid("sda1", "1234-ABCD");
    machine.setUuid("dm-0", "8f0c");

    EXPECT_EQ(machine.devices().fileSystemUuid(first), "1234-ABCD");
    EXPECT_EQ(machine.devices().fileSystemUuid(opened), "8f0c");
    EXPECT_EQ(machine.devices().fileSystemUuid(second), QByteArray());
}

TEST(DiskObjectsTest, WhatIsPluggedInIsToldByTheDriveAndWithoutOneByTheHint)
{
    DiskObjects objects;
    objects.drives = {{u"/stick"_qs, {false, false, u"usb"_qs, {}}},
                      {u"/card"_qs, {false, false, u"sdio"_qs, {}}},
                      {u"/removable"_qs, {true, false, u"ata"_qs, {}}},
                      {u"/tray"_qs, {false, true, {}, {}}},
                      {u"/internal"_qs, {false, false, u"ata"_qs, {}}}};
    const auto isExternal = [&](const QString &drive, bool isOfSystem) {
        DiskBlock block;
        block.drive = drive;
        block.isOfSystem = isOfSystem;
        return objects.isExternal(block);
    };

    for (const QString &drive : {u"/stick"_qs, u"/card"_qs, u"/removable"_qs, u"/tray"_qs})
        EXPECT_TRUE(isExternal(drive, true)) << qPrintable(drive);
    EXPECT_FALSE(isExternal(u"/internal"_qs, false));
    EXPECT_TRUE(isExternal(QString(), false));
    EXPECT_FALSE(isExternal(QString(), true));
}
