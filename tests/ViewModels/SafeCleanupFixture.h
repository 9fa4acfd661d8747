#pragma once

#include "App/AppState.h"
#include "Fakes/InstalledLocalizer.h"
#include "Fakes/PretendMachine.h"
#include "ViewModels/SafeCleanupViewModel.h"
#include "ViewModels/UnfinishedRuns.h"

#include <gtest/gtest.h>

namespace Quillmere {

/// The Safe Cleanup screen on a pretend machine.
class SafeCleanupFixture : public testing::Test
{
protected:
    SafeCleanupFixture()
    {
        SharedInstance<UnfinishedRuns>::install(&runs);
        AppState::setShared(&state);
    }
    ~SafeCleanupFixture() override
    {
        AppState::setShared(nullptr);
        SharedInstance<UnfinishedRuns>::install(nullptr);
    }

    void addTree(const QByteArray &path, qint64 bytes)
    {
        machine.files->addFile(FilePath("/home/ada/Library").appending(path).appending("data"), bytes);
    }

    QStringList shownNames()
    {
        QStringList names;
        for (const CleanupCategory &category : model->categories()->categories())
            names.append(category.name);
        return names;
    }

    QVariant role(int row, CleanupCategoryListModel::Role role)
    {
        return model->categories()->data(model->categories()->index(row), role);
    }

    InstalledLocalizer localizer;
    PretendMachine machine;
    UnfinishedRuns runs;
    AppState state{machine.defaults};
    HistoryService history{machine.files};
    std::shared_ptr<ScannerService> scanner = std::make_shared<ScannerService>(machine.files, machine.places);
    std::unique_ptr<SafeCleanupViewModel> model = std::make_unique<SafeCleanupViewModel>(
        scanner, CleanupService(machine.files, machine.places), history, machine.clock);
};

} // namespace Quillmere
