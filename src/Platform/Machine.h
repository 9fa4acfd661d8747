#pragma once

#include "Platform/Bundle.h"
#include "Platform/Clock.h"
#include "Platform/DesktopAppearance.h"
#include "Platform/FileManager.h"
#include "Platform/FilterManager.h"
#include "Platform/HostStatistics.h"
#include "Platform/InstalledApplications.h"
#include "Platform/Places.h"
#include "Platform/PowerAssertions.h"
#include "Platform/ProcessRunner.h"
#include "Platform/StartupEntries.h"
#include "Platform/StatusItem.h"
#include "Platform/SystemExtensionManager.h"
#include "Platform/UrlSession.h"
#include "Platform/UserDefaults.h"
#include "Platform/Workspace.h"

#include <QByteArray>

#include <functional>
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
    std::shared_ptr<const HostStatistics> host;
    std::shared_ptr<const ProcessRunner> processes;
    std::shared_ptr<Workspace> workspace;
    std::shared_ptr<const InstalledApplications> applications;
    std::shared_ptr<PowerAssertions> assertions;
    std::shared_ptr<const Bundles> bundles;
    std::shared_ptr<SystemExtensionManager> extensions;
    std::shared_ptr<FilterManager> filter;
    std::shared_ptr<StatusBar> statusBar;
    std::shared_ptr<const StartupEntries> startupEntries;
    std::shared_ptr<UrlSession> urls;
    /// Gives the value of a variable of the process's environment; empty when it is not set. Any thread.
    std::function<QByteArray(const char *name)> environment;
    /// Gives memory that the program no longer uses back to the system. Null where that needs no asking.
    std::function<void()> returnMemory;
    bool isAdministrator = false; ///< The program itself may do what otherwise needs the system's password dialog.
};

} // namespace Quillmere
