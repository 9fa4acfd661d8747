#pragma once

#include "Fakes/InstalledLocalizer.h"
#include "Fakes/PretendMachine.h"
#include "ViewModels/LargeFilesViewModel.h"
#include "ViewModels/UnfinishedRuns.h"

#include <QCoro/QCoroCore>

#include <gtest/gtest.h>

namespace Quillmere {

/// The Large Files screen on a pretend machine.
class LargeFilesFixture : public testing::Test
{
protected:
    static constexpr qint64 least = 50'000'000;
    using SortField = LargeFilesViewModel::SortField;

    LargeFilesFixture() { SharedInstance<UnfinishedRuns>::install(&runs); }
    ~LargeFilesFixture() override { SharedInstance<UnfinishedRuns>::install(nullptr); }

    static FilePath inHome(const QByteArray &path) { return FilePath("/home/ada").appending(path); }
    void addFile(const QByteArray &path, qint64 bytes = least) { machine.files->addFile(inHome(path), bytes); }
    void addChanged(const QByteArray &path, const QDateTime &modified)
    {
        addFile(path);
        machine.files->setTimes(inHome(path), std::nullopt, modified);
    }
    void scan() { QCoro::waitFor(model->scan()); }

    static QStringList names(const QList<FileItem> &files)
    {
        QStringList names;
        for (const FileItem &file : files)
            names.append(file.name);
        return names;
    }
    QStringList found() const { return names(model->files()); }
    QStringList shown() const { return names(model->filteredFiles()); }
    QVariant role(int row, LargeFilesListModel::Role role) const
    {
        return model->rows()->data(model->rows()->index(row), role);
    }

    InstalledLocalizer localizer;
    PretendMachine machine;
    UnfinishedRuns runs{machine.files, machine.clock};
    std::unique_ptr<LargeFilesViewModel> model
        = std::make_unique<LargeFilesViewModel>(machine.files, machine.places, machine.workspace);
};

} // namespace Quillmere
