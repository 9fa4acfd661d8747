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
    Machine machine;
    machine.files = files;
    machine.places = std::make_shared<LinuxPlaces>(files);
    machine.defaults = std::make_shared<LinuxUserDefaults>(LinuxUserDefaults::fileOf(files->homeDirectory()));
    machine.clock = std::make_shared<SystemClock>();
    machine.appearance = std::make_shared<LinuxDesktopAppearance>();
    return machine;
}

} // namespace Quillmere
