#pragma once

#include "Values/FilePath.h"

#include <QList>

#include <optional>

namespace Quillmere {

/// A disk, a part of one, or what the kernel makes out of others, as the kernel describes it. Numbers are dev_t.
struct BlockDevice
{
    quint64 number = 0;
    QByteArray name; ///< The kernel's own: "sda1", "dm-0".
    qint64 size = 0; ///< Bytes.
    qint64 start = 0; ///< Of a partition: bytes from the beginning of its disk.
    int partition = 0; ///< Its number on its disk; 0 for what is no partition.
    /// Of the disk: a number that no other disk has had since the machine was started, nor the same one before its
    /// medium was changed. 0 where the kernel gives none.
    quint64 sequence = 0;
    bool isReadOnly = false;
    bool isPluggable = false; ///< Itself or its medium can be taken out while the machine runs.
    std::optional<quint64> disk; ///< Of a partition: what it is a part of.
    QList<quint64> below; ///< What it is made of, such as the partition under an unlocked volume.
    FilePath backingFile; ///< Of a loop device: the file that it shows as a disk.

    bool operator==(const BlockDevice &) const = default;
};

/// The kernel's tree of block devices. Reads it anew at each call.
class BlockDevices
{
public:
    /// @p dev the folder of device nodes.
    explicit BlockDevices(FilePath sys = FilePath("/sys"), FilePath dev = FilePath("/dev"));

    [[nodiscard]] std::optional<BlockDevice> device(quint64 number) const;
    /// Nothing for a name that no device has.
    [[nodiscard]] std::optional<quint64> numberOf(const QByteArray &name) const;
    /// Of a location below "/dev", which may be a link to a node.
    [[nodiscard]] std::optional<quint64> numberOfNode(const FilePath &node) const;
    /// Of the file system on it, as its makers' tools wrote it there. Empty where it has none, or none was seen yet.
    [[nodiscard]] QByteArray fileSystemUuid(quint64 number) const;
    /// What a mount shows, of which the table of mounts says @p device and @p source. Nothing for what is on no disk.
    [[nodiscard]] std::optional<quint64> numberOfMount(const QByteArray &device, const FilePath &source) const;
    /// The disk that @p number lies on: below partitions and below what stands on one device alone. What is made out of
    /// several devices is a disk of its own.
    [[nodiscard]] std::optional<BlockDevice> wholeDisk(quint64 number) const;
    /// @p number and all that it stands on, down to the disks.
    [[nodiscard]] QList<quint64> foundations(quint64 number) const;
    /// All that stands on @p number, partitions too and the topmost first, and then itself.
    [[nodiscard]] QList<quint64> withAllAbove(quint64 number) const;
    /// The file systems of btrfs may reach over several devices: those of the one that @p number belongs to.
    [[nodiscard]] QList<quint64> btrfsMembers(quint64 number) const;

private:
    [[nodiscard]] QByteArray folderOf(quint64 number) const;
    [[nodiscard]] QList<quint64> directlyAbove(quint64 number) const;

    FilePath m_sys;
    FilePath m_dev;
};

/// "8:17" as a number. Nothing for any other text.
[[nodiscard]] std::optional<quint64> deviceNumberOf(const QByteArray &text);
[[nodiscard]] QByteArray textOfDeviceNumber(quint64 number);
/// Where the node of the device is that the kernel calls @p name.
[[nodiscard]] FilePath nodeOf(const QByteArray &name);

} // namespace Quillmere
