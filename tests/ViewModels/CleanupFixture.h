#pragma once

#include "App/AppState.h"
#include "Fakes/InstalledLocalizer.h"
#include "Fakes/PretendMachine.h"
#include "Services/HistoryService.h"
#include "Services/ScannerService.h"
#include "ViewModels/UnfinishedRuns.h"

#include <gtest/gtest.h>

namespace Quillmere {

/// What both screens of a cleanup stand on, on a pretend machine.
class CleanupFixture : public testing::Test
{
protected:
    CleanupFixture()
    {
        SharedInstance<UnfinishedRuns>::install(&runs);
        AppState::setShared(&state);
    }
    ~CleanupFixture() override
    {
        AppState::setShared(nullptr);
        SharedInstance<UnfinishedRuns>::install(nullptr);
    }

    InstalledLocalizer localizer;
    PretendMachine machine;
    UnfinishedRuns runs{machine.files, machine.clock};
    AppState state{machine.defaults};
    HistoryService history{machine.files};
    std::shared_ptr<ScannerService> scanner = std::make_shared<ScannerService>(machine.files, machine.places);
};

} // namespace Quillmere
