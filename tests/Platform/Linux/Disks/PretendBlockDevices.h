#pragma once

#include "Platform/Linux/Disks/BlockDevices.h"

#include <QTemporaryDir>

namespace Quillmere {

/// A tree of block devices as the kernel would show it, in a folder of its own.
class PretendBlockDevices
{
public:
    PretendBlockDevices();

    /// Each answers with the device's number.
    quint64 addDisk(const QByteArray &name, const QByteArray &number, qint64 size, quint64 sequence,
                    const QByteArray &bus = "ata1");
    quint64 addPartition(const QByteArray &disk, int partition, const QByteArray &number, qint64 start, qint64 size);
    /// One that stands on @p below: a mapping or an array.
    quint64 addStacked(const QByteArray &name, const QByteArray &number, qint64 size, quint64 sequence,
                       const QList<QByteArray> &below);
    quint64 addLoop(const QByteArray &name, const QByteArray &number, quint64 sequence, const QByteArray &backingFile);
    /// Another medium in the same slot.
    void exchange(const QByteArray &disk, quint64 sequence);
    void resize(const QByteArray &disk, qint64 size);
    void remove(const QByteArray &disk);
    void addNodeLink(const QByteArray &link, const QByteArray &name);
    /// The file system on @p name, as the links beside the nodes tell it. Empty: none is seen.
    void setUuid(const QByteArray &name, const QByteArray &uuid);
    void addBtrfs(const QByteArray &uuid, const QList<QByteArray> &members);

    /// Where the kernel describes @p name.
    [[nodiscard]] QByteArray folderOf(const QByteArray &name) const;
    [[nodiscard]] BlockDevices devices() const { return BlockDevices(sys(), dev()); }

private:
    [[nodiscard]] FilePath sys() const;
    [[nodiscard]] FilePath dev() const;
    quint64 describe(const QByteArray &folder, const QByteArray &name, const QByteArray &number, qint64 size);
    void write(const QByteArray &file, const QByteArray &text) const;

    QTemporaryDir m_root;
};

} // namespace Quillmere
