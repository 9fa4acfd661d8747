#pragma once

#include "Values/FilePath.h"

#include <QString>

namespace Quillmere {

/// One mounted volume that can be erased.
struct VolumeInfo
{
    QString name; ///< As it is shown.
    FilePath path; ///< Where it is mounted.
    QString bsdName; ///< The device identifier, such as disk4s2.
    bool isInternal = false;
    QString fsType;
    qint64 totalSize = 0; ///< Bytes.
    qint64 freeSize = 0; ///< Bytes.

    bool operator==(const VolumeInfo &) const = default;
    friend size_t qHash(const VolumeInfo &volume, size_t seed = 0) noexcept
    {
        return qHashMulti(seed, volume.name, volume.path, volume.bsdName, volume.isInternal, volume.fsType,
                          volume.totalSize, volume.freeSize);
    }
};

} // namespace Quillmere
