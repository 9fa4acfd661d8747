#pragma once

#include "Fakes/InstalledLocalizer.h"
#include "Fakes/PretendMachine.h"
#include "ViewModels/DashboardViewModel.h"
#include "ViewModels/UnfinishedRuns.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

namespace Quillmere {

/// A dashboard on a pretend machine that has the traffic filter.
class DashboardFixture : public testing::Test
{
protected:
    DashboardFixture()
    {
        SharedInstance<UnfinishedRuns>::install(&runs);
        machine.installTrafficFilter();
    }
    ~DashboardFixture() override { SharedInstance<UnfinishedRuns>::install(nullptr); }

    std::unique_ptr<DashboardViewModel> made(std::chrono::milliseconds readingTime = {})
    {
        return std::make_unique<DashboardViewModel>(DashboardViewModel::Parts{
            machine.files,
            machine.host,
            machine.processes,
            CleanupService(machine.files, machine.places),
            [this] { return std::make_shared<ScannerService>(machine.files, machine.places); },
            [this] { return std::make_unique<ResourceMonitorService>(machine.workspace, machine.processes, control); },
            traffic,
            control,
            power,
            state,
            readingTime,
        });
    }

    /// A first refresh, and all that follows from it.
    void refresh()
    {
        QSignalSpy refreshed(model.get(), &DashboardViewModel::statsChanged);
        model->startAutoRefresh();
        ASSERT_TRUE(refreshed.wait());
        model->stopAutoRefresh();
    }

    void addCache(const QByteArray &path, qint64 bytes)
    {
        machine.files->addFile(FilePath("/home/ada/Library").appending(path).appending("data"), bytes);
    }

    InstalledLocalizer localizer;
    PretendMachine machine;
    UnfinishedRuns runs{machine.files, machine.clock};
    AppState state{machine.defaults};
    TrafficMonitorService traffic{machine.host, machine.clock};
    TrafficFilterExtensionManager extension{machine.bundles, machine.files, machine.extensions};
    TrafficControlService control{machine.defaults, machine.filter, extension};
    PowerManagementService power{machine.assertions, machine.processes, false};
    std::unique_ptr<DashboardViewModel> model = made();
};

} // namespace Quillmere
