#pragma once

#include <QString>

#include <optional>

namespace Quillmere {

/// What a disk or a volume on it is called: "disk12", "disk12s2". Whoever cuts the last "s" and its digits off a
/// volume's name has the name of its disk. As long as the machine runs, no other disk ever comes to a name.
/// "disk1" belongs to the disk that the system runs from, which is called by no other name of this kind.
struct DiskName
{
    quint64 disk = 0;
    std::optional<quint64> volume; ///< Nothing for the whole disk.

    /// Nothing for any other text.
    [[nodiscard]] static std::optional<DiskName> parse(const QString &text);
    [[nodiscard]] QString text() const;
    [[nodiscard]] DiskName ofWholeDisk() const { return {disk, std::nullopt}; }

    bool operator==(const DiskName &) const = default;
};

} // namespace Quillmere
