#pragma once

#include "Platform/Linux/Files/NameList.h"
#include "Platform/Linux/Walk/WalkFolder.h"

#include <memory>

namespace Quillmere {

/// A folder on the way of a walk, with what is still to be done in it.
struct WalkFrame
{
    std::shared_ptr<const WalkFolder> folder; ///< Shared with whoever was given some of its names.
    NameList subfolders; ///< Still to be entered.
    bool isUnread = false; ///< More entries may follow those that were read.

    [[nodiscard]] bool isDone() const { return subfolders.isEmpty() && !isUnread; }
};

} // namespace Quillmere
