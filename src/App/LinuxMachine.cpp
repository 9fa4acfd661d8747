#include "App/LinuxMachine.h"

#include "Platform/Linux/Applications/DesktopEntry.h"
#include "Platform/Linux/Applications/InstalledApplicationsOnFirstUse.h"
#include "Platform/Linux/Applications/LinuxBundles.h"
#include "Platform/Linux/Applications/LinuxInstalledApplications.h"
#include "Platform/Linux/Desktop/LinuxDesktopAppearance.h"
#include "Platform/Linux/Desktop/LinuxWorkspace.h"
#include "Platform/Linux/Files/LinuxFileManager.h"
#include "Platform/Linux/Files/LinuxUserDefaults.h"
#include "Platform/Linux/Filter/LinuxFilterManager.h"
#include "Platform/Linux/Filter/LinuxSystemExtensionManager.h"
#include "Platform/Linux/Network/LinuxUrlSession.h"
#include "Platform/Linux/Places/LinuxPlaces.h"
#include "Platform/Linux/Places/PlacesOnFirstUse.h"
#include "Platform/Linux/Programs/LinuxProcessRunner.h"
#include "Platform/Linux/Startup/LinuxStartupEntries.h"
#include "Platform/Linux/System/LinuxHostStatistics.h"
#include "Platform/Linux/System/LinuxPowerAssertions.h"
#include "Platform/Linux/System/MemoryReturn.h"
#include "Platform/Linux/System/SystemClock.h"
#include "Platform/Linux/Tray/LinuxStatusBar.h"

#include <unistd.h>

namespace Quillmere {

Machine makeLinuxMachine()
{
    const auto files = std::make_shared<LinuxFileManager>();
    const FilePath home = files->homeDirectory();
    const auto bundles = std::make_shared<LinuxBundles>();
    Machine machine;
    machine.files = files;
    machine.places = std::make_shared<PlacesOnFirstUse>([files] { return std::make_unique<const LinuxPlaces>(files); });
    machine.defaults = std::make_shared<LinuxUserDefaults>(LinuxUserDefaults::fileOf(home));
    machine.clock = std::make_shared<SystemClock>();
    machine.appearance = std::make_shared<LinuxDesktopAppearance>();
    machine.host = std::make_shared<LinuxHostStatistics>();
    machine.processes = std::make_shared<LinuxProcessRunner>(bundles->mainLocation().appending("Contents/Helpers"));
    machine.workspace = std::make_shared<LinuxWorkspace>(home, desktopEntryFolders(home));
    machine.applications = std::make_shared<InstalledApplicationsOnFirstUse>([files, places = machine.places,
                                                                              processes = machine.processes, home] {
        return std::make_unique<const LinuxInstalledApplications>(files, places, processes, desktopEntryFolders(home));
    });
    machine.assertions = std::make_shared<LinuxPowerAssertions>();
    machine.bundles = bundles;
    machine.extensions = std::make_shared<LinuxSystemExtensionManager>();
    machine.filter = std::make_shared<LinuxFilterManager>();
    machine.statusBar = std::make_shared<LinuxStatusBar>();
    machine.startupEntries = std::make_shared<LinuxStartupEntries>(files);
    machine.urls = std::make_shared<LinuxUrlSession>();
    machine.environment = [](const char *name) { return qgetenv(name); };
    machine.returnMemory = returnUnusedMemory;
    machine.isAdministrator = ::getuid() == 0;
    return machine;
}

} // namespace Quillmere
