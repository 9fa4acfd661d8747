#pragma once

#include <QString>

#include <optional>

namespace Quillmere {

/// What a disk or a volume on it is called: "disk512", "disk512s2". Whoever cuts the last "s" and its digits off a
/// volume's name has the name of its disk. As long as the session lasts, no other disk ever comes to a name, nor a
/// volume that is another by now, and before it begins nobody knows the names, so that nobody writes one as the label
/// on a stick. "disk1" belongs to the disk that the system runs from, which is called by no other name of this kind.
struct DiskName
{
    /// Where the numbers of a session may begin: those below are nobody's.
    static constexpr quint64 leastBegin = 100;
    static constexpr quint64 mostBegin = 9100;
    /// The numbers of partitions are below. From here on they are given to whatever comes to the place of a volume that
    /// was shown.
    static constexpr quint64 firstOfReplaced = 256;

    quint64 disk = 0;
    std::optional<quint64> volume; ///< Nothing for the whole disk.

    /// Nothing for any other text.
    [[nodiscard]] static std::optional<DiskName> parse(const QString &text);
    [[nodiscard]] QString text() const;
    [[nodiscard]] DiskName ofWholeDisk() const { return {disk, std::nullopt}; }

    bool operator==(const DiskName &) const = default;
};

} // namespace Quillmere
