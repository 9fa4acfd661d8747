#pragma once

#include "Platform/Linux/Files/FileDescriptor.h"
#include "Values/FilePath.h"
#include "Values/Result.h"

namespace Quillmere {

enum class LinksAbove { Follow, Refuse };

/// Opens @p folder with @p access (O_PATH, O_RDONLY), however long its location is. With LinksAbove::Refuse no
/// component may be a link, @p folder itself included: LinkInPath.
[[nodiscard]] Result<FileDescriptor> openFolder(const FilePath &folder, LinksAbove links, int access);

/// Where an item stands: its folder held open, so that whatever happens to the folders above, it stays this one.
struct ItemPlace
{
    FileDescriptor folder; ///< O_PATH.
    QByteArray name; ///< Of the item in there; "." for the root.
    FilePath path; ///< The whole location, for reports.

    /// The item need not exist. With LinksAbove::Refuse the location is standardized first.
    [[nodiscard]] static Result<ItemPlace> open(const FilePath &path, LinksAbove links);
};

} // namespace Quillmere
