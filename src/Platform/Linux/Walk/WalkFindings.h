#pragma once

#include "Platform/FileManager.h"

#include <iterator>
#include <vector>

namespace Quillmere {

/// What a walk, or one thread's part of it, has come to.
struct WalkFindings
{
    TreeSize size; ///< Of the regular files that were asked.
    std::vector<FoundFile> files; ///< In no particular order.
    bool isPart = false; ///< Asked to stop, somebody has left something out.

    WalkFindings &operator+=(WalkFindings other)
    {
        size += other.size;
        isPart = isPart || other.isPart;
        files.insert(files.end(), std::make_move_iterator(other.files.begin()),
                     std::make_move_iterator(other.files.end()));
        return *this;
    }
};

} // namespace Quillmere
