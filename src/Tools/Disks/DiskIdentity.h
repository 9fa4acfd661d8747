#pragma once

#include "Tools/Disks/DiskName.h"

#include <QByteArray>
#include <QStringList>

namespace Quillmere {

/// A disk or a volume as it was when it was shown to the user. What differs in anything is another one.
struct DiskIdentity
{
    DiskName name;
    QByteArray node; ///< The kernel's name: "sdb1".
    quint64 number = 0; ///< dev_t.
    qint64 size = 0; ///< Bytes.
    qint64 start = 0; ///< Of a partition: bytes from the beginning of its disk.
    quint64 sequence = 0; ///< The kernel's number of the disk, or of the device itself where it is no part of one.
    QString serial; ///< Of the drive. Empty where it has none.
    QString uuid; ///< Of what was found on it. Empty when nothing was.

    /// Nothing for words that say anything else.
    [[nodiscard]] static std::optional<DiskIdentity> parse(const QStringList &words);
    /// As arguments of a program. None holds a control character.
    [[nodiscard]] QStringList words() const;

    bool operator==(const DiskIdentity &) const = default;
};

} // namespace Quillmere
