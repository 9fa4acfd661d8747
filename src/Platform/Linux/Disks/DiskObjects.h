#pragma once

#include "Values/FilePath.h"

#include <QHash>
#include <QList>
#include <QString>

#include <optional>

namespace Quillmere {

/// The thing that somebody buys: it holds media, of which the machine sees block devices.
struct DiskDrive
{
    bool isRemovable = false;
    bool isEjectable = false;
    QString bus; ///< "usb", "sdio", "ata"; empty where that is not known.
    QString serial; ///< Or its world-wide name. Empty where it has none.
};

/// One block device as udisks2 describes it.
struct DiskBlock
{
    QString object; ///< Where on the bus it is spoken to.
    quint64 number = 0; ///< dev_t.
    bool isOfSystem = false; ///< By a hint that only counts where there is no drive.
    bool isIgnored = false; ///< Not to be shown to anybody.
    QString type; ///< Of what was found on it: "ext4", "vfat", "crypto_LUKS". Empty when nothing was.
    QString label;
    QString uuid;
    QString drive; ///< Empty when there is none.
    bool isFileSystem = false;
    QList<FilePath> mountPoints;
    bool isEncrypted = false;
    QString unlocked; ///< The object of what it is when unlocked; empty while it is not.
};

/// All that udisks2 knows at one moment.
struct DiskObjects
{
    QList<DiskBlock> blocks;
    QHash<QString, DiskDrive> drives; ///< By object.

    [[nodiscard]] const DiskBlock *block(quint64 number) const;
    /// Nothing for a block without a drive.
    [[nodiscard]] const DiskDrive *driveOf(const DiskBlock &block) const;
    /// Something that is plugged into the machine and not a part of it.
    [[nodiscard]] bool isExternal(const DiskBlock &block) const;
};

} // namespace Quillmere
