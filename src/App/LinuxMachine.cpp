#include "App/LinuxMachine.h"

#include "Platform/Linux/LinuxDesktopAppearance.h"
#include "Platform/Linux/LinuxFileManager.h"
#include "Platform/Linux/LinuxPlaces.h"
#include "Platform/Linux/LinuxUserDefaults.h"
#include "Platform/Linux/SystemClock.h"

namespace Quillmere {

Machine makeLinuxMachine()
{
    const auto files = std::make_shared<LinuxFileManager>();
    return {
        files,
        std::make_shared<LinuxPlaces>(files),
        std::make_shared<LinuxUserDefaults>(LinuxUserDefaults::fileOf(files->homeDirectory())),
        std::make_shared<SystemClock>(),
        std::make_shared<LinuxDesktopAppearance>(),
    };
}

} // namespace Quillmere
