#include "App/LinuxMachine.h"

#include "Platform/Linux/LinuxDesktopAppearance.h"
#include "Platform/Linux/LinuxFileManager.h"
#include "Platform/Linux/LinuxPlaces.h"
#include "Platform/Linux/LinuxUserDefaults.h"
#include "Platform/Linux/SystemClock.h"

namespace Quillmere {

namespace {

constexpr auto defaultsFile = "Library/Preferences/com.veltrane.quillmere.plist";

} // namespace

Machine makeLinuxMachine()
{
    const auto files = std::make_shared<LinuxFileManager>();
    return {
        files,
        std::make_shared<LinuxPlaces>(files),
        std::make_shared<LinuxUserDefaults>(files->homeDirectory().appending(defaultsFile)),
        std::make_shared<SystemClock>(),
        std::make_shared<LinuxDesktopAppearance>(),
    };
}

} // namespace Quillmere
