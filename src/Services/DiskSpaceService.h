#pragma once

#include "Platform/FileManager.h"

namespace Quillmere {

/// The capacity of a volume, computed when somebody asks. Any thread.
class DiskSpaceService
{
public:
    struct DiskSpaceInfo
    {
        qint64 totalSpace = 0; ///< Bytes.
        qint64 freeSpace = 0; ///< Bytes that a program may still write.
        qint64 usedSpace = 0; ///< Bytes: all that is not free.
        qint64 purgableSpace = 0; ///< Always 0: nobody asks for it.
        double usagePercentage = 0; ///< 0 to 1, in spite of the name.
        QString freeFormatted;
        QString usedFormatted;
        QString totalFormatted;

        bool operator==(const DiskSpaceInfo &) const = default;
    };

    /// Of the volume that holds @p path. What cannot be learnt counts as 0 and is a line on standard output.
    [[nodiscard]] static DiskSpaceInfo getDiskSpace(const FilePath &path, const FileManager &files);
};

} // namespace Quillmere
