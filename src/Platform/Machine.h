#pragma once

#include "Platform/Clock.h"
#include "Platform/DesktopAppearance.h"
#include "Platform/FileManager.h"
#include "Platform/Places.h"
#include "Platform/UserDefaults.h"

#include <memory>

namespace Quillmere {

/// The whole seam to the machine, handed to the composition root: the real one, or the pretend one of the tests.
struct Machine
{
    std::shared_ptr<const FileManager> files;
    std::shared_ptr<const Places> places;
    std::shared_ptr<UserDefaults> defaults;
    std::shared_ptr<const Clock> clock;
    std::shared_ptr<DesktopAppearance> appearance;
};

} // namespace Quillmere
