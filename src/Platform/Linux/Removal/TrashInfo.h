#pragma once

#include <QByteArray>
#include <QDateTime>

#include <optional>

namespace Quillmere {

/// What a trash remembers of an item, in the form of the freedesktop Trash 1.0.
struct TrashInfo
{
    QByteArray path; ///< Where the item was: absolute, or relative to the top folder of the trash's volume.
    QDateTime deletionDate; ///< Local time, to the second. Invalid where the text has none.

    bool operator==(const TrashInfo &) const = default;

    /// The content of the info file, every byte of the path that is not plain percent-encoded.
    [[nodiscard]] QByteArray toText() const;
    /// Nothing when @p text is no such content.
    [[nodiscard]] static std::optional<TrashInfo> fromText(const QByteArray &text);
};

/// The name under which the item @p name goes into a trash that takes names of @p longest bytes: the name itself, with
/// @p number before the extension from the second of that name on, cut so that ".trashinfo" still fits behind it.
[[nodiscard]] QByteArray nameInTrash(const QByteArray &name, int number, qsizetype longest);

} // namespace Quillmere
