#pragma once

#include "ViewModels/CleanupFixture.h"
#include "ViewModels/SafeCleanupViewModel.h"

namespace Quillmere {

/// The Safe Cleanup screen on a pretend machine.
class SafeCleanupFixture : public CleanupFixture
{
protected:
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

    std::unique_ptr<SafeCleanupViewModel> model = std::make_unique<SafeCleanupViewModel>(
        scanner, CleanupService(machine.files, machine.places), history, machine.clock);
};

} // namespace Quillmere
