#include "Fakes/Gate.h"
#include "ViewModels/ApplicationsFixture.h"

#include <QSignalSpy>
#include <QTest>

#include <gmock/gmock.h>

using namespace Quillmere;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

class ApplicationsRunTest : public ApplicationsFixture
{
protected:
    void uninstall(const AppItem &item) { QCoro::waitFor(model->uninstallApp(item)); }
    void clear(const AppItem &item) { QCoro::waitFor(model->clearAppData(item)); }

    /// The one record there is.
    [[nodiscard]] OperationLog record() const
    {
        const QList<OperationLog> logs = history.loadHistory();
        EXPECT_EQ(logs.size(), 1);
        return logs.value(0);
    }

    void expectNoRecord() const { EXPECT_EQ(history.loadHistory().size(), 0); }

    void scanPainter()
    {
        addPainter();
        scan();
        model->select(0);
    }
};

} // namespace

TEST_F(ApplicationsRunTest, MovesTheBundleToTheTrashAndDeletesItsLeftoversForGood)
{
    scanPainter();
    const QList<FilePath> leftovers = app().relatedFiles;

    uninstall(app());

    EXPECT_THAT(machine.files->trashed(), ElementsAre(FilePath("/Applications/Painter.app")));
    EXPECT_EQ(machine.files->removed(), leftovers);
    EXPECT_THAT(apps(), IsEmpty());
    EXPECT_FALSE(model->selectedApp().has_value());
    EXPECT_FALSE(model->isUninstalling());
}

TEST_F(ApplicationsRunTest, RecordsAnUninstallation)
{
    scanPainter();

    uninstall(app());

    EXPECT_EQ(record().operationType, OperationType::SafeCleanup);
    EXPECT_EQ(record().foundSize, 1070);
    EXPECT_EQ(record().cleanedSize, 1070);
    EXPECT_EQ(record().filesRemoved, 5);
    EXPECT_EQ(record().filesSkipped, 0);
    EXPECT_THAT(record().errors, IsEmpty());
    EXPECT_THAT(record().categoriesAffected, IsEmpty());
    EXPECT_EQ(record().status, OperationStatus::Completed);
    EXPECT_EQ(record().date, machine.clock->now());
}

TEST_F(ApplicationsRunTest, StandsUnderTheOverlayWhileItRemoves)
{
    scanPainter();
    const Gate gate;
    machine.files->onRemoval([gate](const FilePath &) { gate.wait(); });

    const auto removing = model->uninstallApp(app());

    EXPECT_TRUE(model->isUninstalling());
    EXPECT_EQ(apps().size(), 1);
    gate.open();
    QCoro::waitFor(removing);
    EXPECT_FALSE(model->isUninstalling());
}

TEST_F(ApplicationsRunTest, CountsALeftoverThatVanishedAsRemovedInAnUninstallation)
{
    scanPainter();
    machine.files->vanish(library("Caches/com.example.painter"));

    uninstall(app());

    EXPECT_EQ(machine.files->removed().size(), 3);
    EXPECT_EQ(record().filesRemoved, 5);
    EXPECT_THAT(apps(), IsEmpty());
}

TEST_F(ApplicationsRunTest, RemovesTheLeftoversAndTheRowOfABundleThatHasGone)
{
    scanPainter();
    machine.files->vanish(FilePath("/Applications/Painter.app"));

    uninstall(app());

    EXPECT_THAT(machine.files->trashed(), IsEmpty());
    EXPECT_EQ(machine.files->removed().size(), 4);
    EXPECT_THAT(apps(), IsEmpty());
    EXPECT_EQ(record().filesRemoved, 5);
}

TEST_F(ApplicationsRunTest, TakesABundleOrALeftoverThatVanishesUnderItsHandsAsGone)
{
    scanPainter();
    machine.files->onRemoval([this](const FilePath &path) {
        if (path == FilePath("/Applications/Painter.app") || path == library("Caches/com.example.painter"))
            machine.files->vanish(path);
    });

    uninstall(app());

    EXPECT_THAT(apps(), IsEmpty());
    EXPECT_EQ(machine.files->removed().size(), 3);
    EXPECT_EQ(record().filesRemoved, 5);
}

TEST_F(ApplicationsRunTest, StopsWhereTheBundleCannotBeTrashed)
{
    scanPainter();
    machine.files->refuse(FilePath("/Applications/Painter.app"), Failure::Kind::NoPermission);
    testing::internal::CaptureStdout();

    uninstall(app());

    EXPECT_THAT(testing::internal::GetCapturedStdout(), HasSubstr("Uninstall error: pretended (/Applications/Painter.app)"));
    EXPECT_THAT(machine.files->removed(), IsEmpty());
    EXPECT_EQ(apps().size(), 1);
    EXPECT_FALSE(model->isUninstalling());
    EXPECT_TRUE(model->selectedApp().has_value());
    expectNoRecord();
}

TEST_F(ApplicationsRunTest, StopsAtTheFirstLeftoverThatCannotBeDeletedAndBringsNothingBack)
{
    scanPainter();
    machine.files->refuse(library("Caches/com.example.painter"), Failure::Kind::Busy);
    testing::internal::CaptureStdout();

    uninstall(app());

    EXPECT_THAT(testing::internal::GetCapturedStdout(), HasSubstr("Uninstall error: "));
    EXPECT_THAT(machine.files->trashed(), ElementsAre(FilePath("/Applications/Painter.app")));
    EXPECT_THAT(machine.files->removed(), ElementsAre(library("Application Support/Painter")));
    EXPECT_EQ(apps().size(), 1);
    expectNoRecord();
}

TEST_F(ApplicationsRunTest, ClearsTheDataAndKeepsTheApplication)
{
    scanPainter();
    const QList<FilePath> leftovers = app().relatedFiles;

    clear(app());

    EXPECT_EQ(machine.files->removed(), leftovers);
    EXPECT_THAT(machine.files->trashed(), IsEmpty());
    EXPECT_EQ(app().size, 1000);
    EXPECT_THAT(app().relatedFiles, IsEmpty());
    EXPECT_EQ(model->selectedApp(), app());
    EXPECT_THAT(model->selectedFileNames(), IsEmpty());
    EXPECT_FALSE(model->isUninstalling());
}

TEST_F(ApplicationsRunTest, RecordsWhatAClearingRemovedAsItIsThen)
{
    scanPainter();
    machine.files->addFile(library("Caches/com.example.painter/more"), 500);
    machine.files->vanish(library("Application Support/Painter"));

    clear(app());

    EXPECT_EQ(record().operationType, OperationType::SafeCleanup);
    EXPECT_EQ(record().foundSize, 560);
    EXPECT_EQ(record().cleanedSize, 560);
    EXPECT_EQ(record().filesRemoved, 3);
    EXPECT_EQ(record().filesSkipped, 0);
    EXPECT_EQ(record().status, OperationStatus::Completed);
}

TEST_F(ApplicationsRunTest, MeasuresAClearingWithAScannerOfItsOwn)
{
    scanPainter();
    scanner->cancelScan();

    clear(app());

    EXPECT_EQ(record().cleanedSize, 70);
    EXPECT_EQ(app().size, 1000);
}

TEST_F(ApplicationsRunTest, ShowsNoSizeOfABundleThatVanishedBeforeItsDataWereCleared)
{
    scanPainter();
    machine.files->vanish(FilePath("/Applications/Painter.app"));

    clear(app());

    EXPECT_EQ(app().size, 0);
    EXPECT_EQ(record().filesRemoved, 4);
}

TEST_F(ApplicationsRunTest, LeavesTheListAloneWhenAClearingFails)
{
    scanPainter();
    const AppItem before = app();
    machine.files->refuse(library("Caches/com.example.painter"), Failure::Kind::NoPermission);
    testing::internal::CaptureStdout();

    clear(app());

    EXPECT_THAT(testing::internal::GetCapturedStdout(), HasSubstr("Clear app data error: pretended (/"));
    EXPECT_EQ(app(), before);
    EXPECT_THAT(machine.files->removed(), ElementsAre(library("Application Support/Painter")));
    EXPECT_FALSE(model->isUninstalling());
    expectNoRecord();
}

TEST_F(ApplicationsRunTest, ChoosesWhatWasClearedOnlyIfItIsInTheList)
{
    scanPainter();
    AppItem stranger = app();
    stranger.id = QUuid::createUuid();

    clear(stranger);

    EXPECT_EQ(app().relatedFiles.size(), 4);
    EXPECT_EQ(record().filesRemoved, 4);
}

TEST_F(ApplicationsRunTest, EndsAndRecordsAnUninstallationWhoseScreenHasGone)
{
    scanPainter();
    const Gate gate;
    machine.files->onRemoval([gate](const FilePath &) { gate.wait(); });
    const auto removing = model->uninstallApp(app());

    model.reset();
    EXPECT_FALSE(runs.isEmpty());
    gate.open();
    QCoro::waitFor(removing);

    EXPECT_EQ(machine.files->removed().size(), 4);
    EXPECT_EQ(record().filesRemoved, 5);
}

TEST_F(ApplicationsRunTest, TakesASecondClickOnAQuestionForNothingNew)
{
    scanPainter();

    model->clearSelected();
    model->clearSelected();
    model->uninstallSelected();
    ASSERT_TRUE(QTest::qWaitFor([this] { return runs.isEmpty(); }));

    EXPECT_EQ(record().filesRemoved, 4);
    EXPECT_THAT(machine.files->trashed(), IsEmpty());
}

TEST_F(ApplicationsRunTest, DoesNothingTheSecondTime)
{
    scanPainter();
    const AppItem item = app();
    uninstall(item);

    uninstall(item);

    EXPECT_EQ(machine.files->trashed().size(), 1);
    EXPECT_EQ(machine.files->removed().size(), 4);
}

TEST_F(ApplicationsRunTest, UninstallsWhatThePlatformAddedInThePlatformsWay)
{
    ListedApplication listed;
    listed.id = "org.example.flat";
    listed.name = u"Flat"_qs;
    listed.location = FilePath("/home/ada/.local/share/flatpak/app/org.example.flat");
    listed.parts = {listed.location};
    listed.removal = ApplicationRemoval::Command;
    const FilePath data("/home/ada/.var/app/org.example.flat");
    machine.files->addFile(data.appending("data/file"), 9);
    machine.files->addFile(listed.location.appending("program"), 90);
    machine.applications->add(listed, {data});
    scan();

    uninstall(app());

    EXPECT_THAT(machine.applications->uninstalled(), ElementsAre("org.example.flat"));
    EXPECT_THAT(machine.files->trashed(), IsEmpty());
    EXPECT_THAT(machine.files->removed(), ElementsAre(data));
    EXPECT_EQ(record().cleanedSize, 99);
    EXPECT_EQ(record().filesRemoved, 2);
}

TEST_F(ApplicationsRunTest, KeepsTheDataOfWhatThePlatformCannotUninstall)
{
    ListedApplication listed;
    listed.id = "org.example.flat";
    listed.name = u"Flat"_qs;
    listed.location = FilePath("/home/ada/flat");
    const FilePath data("/home/ada/.var/app/org.example.flat");
    machine.files->addFile(data.appending("data/file"), 9);
    machine.applications->add(listed, {data});
    machine.applications->refuse(listed.id, {Failure::Kind::Other, listed.location, u"It is pinned."_qs});
    scan();
    testing::internal::CaptureStdout();

    uninstall(app());

    EXPECT_THAT(testing::internal::GetCapturedStdout(), HasSubstr("Uninstall error: It is pinned."));
    EXPECT_THAT(machine.files->removed(), IsEmpty());
    EXPECT_EQ(apps().size(), 1);
    expectNoRecord();
}

TEST_F(ApplicationsRunTest, ShowsWhichApplicationsRunAsTheyStartAndEnd)
{
    scanPainter();
    const auto isMarked
        = [this] { return model->apps()->data(model->apps()->index(0), AppListModel::IsRunning).toBool(); };
    EXPECT_FALSE(isMarked());
    RunningApplication running;
    running.processIdentifier = 7;
    running.bundleIdentifier = u"com.example.painter"_qs;
    machine.workspace->start(running);

    QCoro::waitFor(model->refreshRunning());
    EXPECT_TRUE(isMarked());
    EXPECT_TRUE(model->isSelectedRunning());

    machine.workspace->end(7);
    running.bundleIdentifier.reset();
    running.bundleLocation = FilePath("/Applications/Painter.app/Contents/MacOS/program");
    machine.workspace->start(running);
    QCoro::waitFor(model->refreshRunning());
    EXPECT_TRUE(model->isSelectedRunning());

    machine.workspace->end(7);
    QCoro::waitFor(model->refreshRunning());
    EXPECT_FALSE(model->isSelectedRunning());
}

TEST_F(ApplicationsRunTest, ShowsAnEmptyTextForAVersionThatIsNotToldAndUnknownForNone)
{
    addBundle("/Applications/A.app", 1);
    scan();
    model->select(0);

    EXPECT_EQ(model->selectedVersionText(), u"Version: "_qs);
    localizer->setLanguage(Language::Russian);
    EXPECT_EQ(model->selectedVersionText(), u"Версия: "_qs);
}
