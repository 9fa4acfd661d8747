#pragma once

#include "Fakes/InstalledLocalizer.h"
#include "Fakes/PretendMachine.h"
#include "Utilities/BackgroundWork.h"
#include "Utilities/PropertyList.h"
#include "ViewModels/ApplicationsViewModel.h"
#include "ViewModels/UnfinishedRuns.h"

#include <QCoro/QCoroCore>

#include <gtest/gtest.h>

namespace Quillmere {

/// The Applications screen on a pretend machine, whose user is Ada.
class ApplicationsFixture : public testing::Test
{
protected:
    ApplicationsFixture()
    {
        SharedInstance<UnfinishedRuns>::install(&runs);
        // The program itself is none of the applications listed.
        machine.bundles->main = FilePath("/opt/Quillmere.app");
        machine.installTrafficFilter();
    }
    ~ApplicationsFixture() override
    {
        // Whatever is still under way comes to its end, and finds the screen gone.
        model.reset();
        backgroundPool().waitForDone();
        QCoreApplication::processEvents();
        SharedInstance<UnfinishedRuns>::install(nullptr);
    }

    /// A bundle with information where it has an identifier.
    FilePath addBundle(const QByteArray &path, qint64 bytes, const QString &identifier = {},
                       const QString &version = {})
    {
        const FilePath bundle(path);
        machine.addBundle(bundle, bytes, identifier, version);
        return bundle;
    }

    /// A folder in Ada's Library.
    FilePath addLeftover(const QByteArray &path, qint64 bytes)
    {
        const FilePath folder = library(path);
        machine.files->addFile(folder.appending("data"), bytes);
        return folder;
    }

    [[nodiscard]] static FilePath library(const QByteArray &path)
    {
        return FilePath("/home/ada/Library").appending(path);
    }

    /// Whatever is asked there from now on waits without end.
    void silenceVolumeAt(const FilePath &folder)
    {
        machine.files->addVolume(folder);
        machine.files->fallSilent(folder);
    }

    /// Painter, with one leftover of each kind.
    void addPainter()
    {
        addBundle("/Applications/Painter.app", 1000, u"com.example.painter"_qs, u"4.2"_qs);
        addLeftover("Application Support/Painter", 10);
        addLeftover("Caches/com.example.painter", 20);
        machine.files->addFile(library("Preferences/com.example.painter.plist"), 3);
        addLeftover("Containers/com.example.painter", 40);
    }

    void uninstall(const AppItem &item) { QCoro::waitFor(model->uninstallApp(found(item))); }
    void clear(const AppItem &item) { QCoro::waitFor(model->clearAppData(found(item))); }
    /// With what the list knows of it.
    [[nodiscard]] FoundApplication found(const AppItem &item) const
    {
        const int row = model->apps()->rowOf(item.id);
        return {item, row >= 0 ? model->apps()->apps().at(row).listed : std::nullopt};
    }

    /// The one record there is.
    [[nodiscard]] OperationLog record() const
    {
        const QList<OperationLog> logs = history.loadHistory();
        EXPECT_EQ(logs.size(), 1);
        return logs.value(0);
    }
    void expectNoRecord() const { EXPECT_EQ(history.loadHistory().size(), 0); }

    /// Chooses Painter of a list in which it is alone.
    void scanPainter()
    {
        addPainter();
        scan();
        model->select(0);
    }
    void scan() { QCoro::waitFor(model->scanApplications()); }
    [[nodiscard]] QList<AppItem> apps() const
    {
        QList<AppItem> items;
        for (const FoundApplication &each : model->apps()->apps())
            items.append(each.item);
        return items;
    }
    [[nodiscard]] AppItem app(qsizetype row = 0) const { return apps().value(row); }

    [[nodiscard]] QStringList names() const
    {
        QStringList names;
        for (const AppItem &each : apps())
            names.append(each.name);
        return names;
    }

    InstalledLocalizer localizer;
    PretendMachine machine;
    UnfinishedRuns runs{machine.files, machine.clock};
    HistoryService history{machine.files};
    TrafficFilterExtensionManager extension{machine.bundles, machine.files, machine.extensions};
    TrafficControlService traffic{machine.defaults, machine.filter, extension};
    std::shared_ptr<ScannerService> scanner = std::make_shared<ScannerService>(machine.files, machine.places);
    std::unique_ptr<ApplicationsViewModel> model = std::make_unique<ApplicationsViewModel>(
        ApplicationsViewModel::Parts{scanner, ApplicationInventory(machine.files, machine.places, machine.applications),
                                     traffic, history, machine.workspace, machine.clock});
};

} // namespace Quillmere
