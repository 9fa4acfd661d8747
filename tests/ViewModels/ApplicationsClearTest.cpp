#include "ViewModels/ApplicationsFixture.h"

#include <gmock/gmock.h>

using namespace Quillmere;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

class ApplicationsClearTest : public ApplicationsFixture
{
};

} // namespace

TEST_F(ApplicationsClearTest, ClearsTheDataAndKeepsTheApplication)
{
    scanPainter();
    const QList<FilePath> leftovers = app().relatedFiles;

    clear(app());

    EXPECT_EQ(machine.files->removed(), leftovers);
    EXPECT_THAT(machine.files->trashed(), IsEmpty());
    EXPECT_EQ(app().size, 1000);
    EXPECT_THAT(app().relatedFiles, IsEmpty());
    EXPECT_EQ(model->selectedApp(), app());
    EXPECT_THAT(model->selected().fileNames(), IsEmpty());
    EXPECT_FALSE(model->isUninstalling());
}

TEST_F(ApplicationsClearTest, RecordsWhatAClearingRemovedAsItIsThen)
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

TEST_F(ApplicationsClearTest, MeasuresAClearingWithAScannerOfItsOwn)
{
    scanPainter();
    scanner->cancelScan();

    clear(app());

    EXPECT_EQ(record().cleanedSize, 70);
    EXPECT_EQ(app().size, 1000);
}

TEST_F(ApplicationsClearTest, ShowsNoSizeOfABundleThatVanishedBeforeItsDataWereCleared)
{
    scanPainter();
    machine.files->vanish(FilePath("/Applications/Painter.app"));

    clear(app());

    EXPECT_EQ(app().size, 0);
    EXPECT_EQ(record().filesRemoved, 4);
}

TEST_F(ApplicationsClearTest, LeavesTheListAloneWhenAClearingFails)
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

TEST_F(ApplicationsClearTest, WaitsForNoVolumeThatHasFallenSilentSinceTheScan)
{
    scanPainter();
    silenceVolumeAt(library("Caches"));
    testing::internal::CaptureStdout();

    clear(app());

    EXPECT_THAT(testing::internal::GetCapturedStdout(), HasSubstr("Clear app data error: "));
    EXPECT_THAT(machine.files->removed(), ElementsAre(library("Application Support/Painter")));
    EXPECT_THAT(machine.files->heldUp(), IsEmpty());
    EXPECT_FALSE(model->isUninstalling());
}

TEST_F(ApplicationsClearTest, ChoosesWhatWasClearedOnlyIfItIsInTheList)
{
    scanPainter();
    AppItem stranger = app();
    stranger.id = QUuid::createUuid();

    clear(stranger);

    EXPECT_EQ(app().relatedFiles.size(), 4);
    EXPECT_EQ(record().filesRemoved, 4);
}

TEST_F(ApplicationsClearTest, PassesOverALeftoverThatVanishedAfterTheScan)
{
    scanPainter();
    machine.files->vanish(library("Caches/com.example.painter"));

    clear(app());

    EXPECT_FALSE(machine.files->removed().contains(library("Caches/com.example.painter")));
    EXPECT_EQ(record().filesRemoved, 3);
    EXPECT_TRUE(app().relatedFiles.isEmpty());
}

TEST_F(ApplicationsClearTest, PassesOverALeftoverThatHasBecomeALinkToNothing)
{
    scanPainter();
    const FilePath link = library("Caches/com.example.painter");
    machine.files->vanish(link);
    machine.files->addLink(link, FilePath("/nowhere"));

    clear(app());

    EXPECT_FALSE(machine.files->removed().contains(link));
    EXPECT_EQ(record().filesRemoved, 3);
}
