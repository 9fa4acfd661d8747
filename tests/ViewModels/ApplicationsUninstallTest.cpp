#include "Fakes/Gate.h"
#include "ViewModels/ApplicationsFixture.h"

#include <QTest>

#include <gmock/gmock.h>

using namespace Quillmere;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

class ApplicationsUninstallTest : public ApplicationsFixture
{
};

} // namespace

TEST_F(ApplicationsUninstallTest, MovesTheBundleToTheTrashAndDeletesItsLeftoversForGood)
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

TEST_F(ApplicationsUninstallTest, RecordsAnUninstallation)
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

TEST_F(ApplicationsUninstallTest, StandsUnderTheOverlayWhileItRemoves)
{
    scanPainter();
    const Gate gate;
    machine.files->onRemoval([gate](const FilePath &) { gate.wait(); });

    const auto removing = model->uninstallApp(found(app()));

    EXPECT_TRUE(model->isUninstalling());
    EXPECT_EQ(apps().size(), 1);
    gate.open();
    QCoro::waitFor(removing);
    EXPECT_FALSE(model->isUninstalling());
}

TEST_F(ApplicationsUninstallTest, CountsALeftoverThatVanishedAsRemovedInAnUninstallation)
{
    scanPainter();
    machine.files->vanish(library("Caches/com.example.painter"));

    uninstall(app());

    EXPECT_EQ(machine.files->removed().size(), 3);
    EXPECT_EQ(record().filesRemoved, 5);
    EXPECT_THAT(apps(), IsEmpty());
}

TEST_F(ApplicationsUninstallTest, RemovesTheLeftoversAndTheRowOfABundleThatHasGone)
{
    scanPainter();
    machine.files->vanish(FilePath("/Applications/Painter.app"));

    uninstall(app());

    EXPECT_THAT(machine.files->trashed(), IsEmpty());
    EXPECT_EQ(machine.files->removed().size(), 4);
    EXPECT_THAT(apps(), IsEmpty());
    EXPECT_EQ(record().filesRemoved, 5);
}

TEST_F(ApplicationsUninstallTest, TakesABundleOrALeftoverThatVanishesUnderItsHandsAsGone)
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

TEST_F(ApplicationsUninstallTest, StopsWhereTheBundleCannotBeTrashed)
{
    scanPainter();
    machine.files->refuse(FilePath("/Applications/Painter.app"), Failure::Kind::NoPermission);
    testing::internal::CaptureStdout();

    uninstall(app());

    EXPECT_THAT(testing::internal::GetCapturedStdout(),
                HasSubstr("Uninstall error: pretended (/Applications/Painter.app)"));
    EXPECT_THAT(machine.files->removed(), IsEmpty());
    EXPECT_EQ(apps().size(), 1);
    EXPECT_FALSE(model->isUninstalling());
    EXPECT_TRUE(model->selectedApp().has_value());
    expectNoRecord();
}

TEST_F(ApplicationsUninstallTest, StopsAtTheFirstLeftoverThatCannotBeDeletedAndBringsNothingBack)
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

TEST_F(ApplicationsUninstallTest, WaitsForNoVolumeThatHasFallenSilentSinceTheScan)
{
    scanPainter();
    silenceVolumeAt(library("Caches"));
    testing::internal::CaptureStdout();

    uninstall(app());

    EXPECT_THAT(testing::internal::GetCapturedStdout(), HasSubstr("Uninstall error: "));
    EXPECT_THAT(machine.files->removed(), ElementsAre(library("Application Support/Painter")));
    EXPECT_THAT(machine.files->heldUp(), IsEmpty());
    EXPECT_FALSE(model->isUninstalling());
}

TEST_F(ApplicationsUninstallTest, EndsAndRecordsAnUninstallationWhoseScreenHasGone)
{
    scanPainter();
    const Gate gate;
    machine.files->onRemoval([gate](const FilePath &) { gate.wait(); });
    const auto removing = model->uninstallApp(found(app()));

    model.reset();
    EXPECT_FALSE(runs.isEmpty());
    gate.open();
    QCoro::waitFor(removing);

    EXPECT_EQ(machine.files->removed().size(), 4);
    EXPECT_EQ(record().filesRemoved, 5);
}

TEST_F(ApplicationsUninstallTest, TakesASecondClickOnAQuestionForNothingNew)
{
    scanPainter();
    const Gate gate;
    machine.files->onRemoval([gate](const FilePath &) { gate.wait(); });

    model->clearSelected();
    model->clearSelected();
    model->uninstallSelected();
    gate.open();
    ASSERT_TRUE(QTest::qWaitFor([this] { return runs.isEmpty(); }));

    EXPECT_EQ(record().filesRemoved, 4);
    EXPECT_THAT(machine.files->trashed(), IsEmpty());
}

TEST_F(ApplicationsUninstallTest, DoesNothingTheSecondTime)
{
    scanPainter();
    const AppItem item = app();
    uninstall(item);

    uninstall(item);

    EXPECT_EQ(machine.files->trashed().size(), 1);
    EXPECT_EQ(machine.files->removed().size(), 4);
}

TEST_F(ApplicationsUninstallTest, UninstallsWhatThePlatformAddedInThePlatformsWay)
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

TEST_F(ApplicationsUninstallTest, KeepsTheDataOfWhatThePlatformCannotUninstall)
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
