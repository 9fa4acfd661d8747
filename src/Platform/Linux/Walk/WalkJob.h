#pragma once

#include "Platform/Linux/Files/DirectoryBuffer.h"
#include "Platform/Linux/Walk/WalkFrame.h"

namespace Quillmere {

class Walk;

/// A piece of a walk that one thread hands to another: sub-folders to enter, entries to take in, or both.
struct WalkJob
{
    Walk *walk = nullptr;
    WalkFrame frame;
    DirectoryBuffer entries = {}; ///< Of the frame's folder; mostly empty.
};

} // namespace Quillmere
