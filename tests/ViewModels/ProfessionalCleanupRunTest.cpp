#include "Fakes/Gate.h"
#include "ViewModels/ProfessionalCleanupFixture.h"

#include <QCoro/QCoroCore>
#include <QTest>

#include <gmock/gmock.h>

#include <stdexcept>

using namespace Quillmere;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

namespace {

class ProfessionalCleanupRunTest : public ProfessionalCleanupFixture
{
};

} // namespace

TEST_F(ProfessionalCleanupRunTest, TrashesTheSelectedCategoriesAndRecordsASafeCleanup)
{
    addEverything();
    QCoro::waitFor(model->scan());
    model->categories()->setSelected(1, true);

    QCoro::waitFor(model->clean());

    EXPECT_THAT(machine.files->trashed(),
                ElementsAre(FilePath("/home/ada/Library/Application Support/Code/Cache"),
                            FilePath("/home/ada/.gradle/caches")));
    ASSERT_EQ(history.loadHistory().size(), 1);
    const OperationLog log = history.loadHistory().first();
    EXPECT_EQ(log.operationType, OperationType::SafeCleanup);
    EXPECT_EQ(log.status, OperationStatus::Completed);
    EXPECT_EQ(log.date, machine.clock->now());
    EXPECT_EQ(log.foundSize, 136); // The inventory's 100 among them.
    EXPECT_EQ(log.cleanedSize, 12);
    EXPECT_EQ(log.filesRemoved, 2);
    EXPECT_EQ(log.filesSkipped, 0);
    EXPECT_THAT(log.categoriesAffected,
                ElementsAre(u"Visual Studio Code Caches"_qs, u"Java Gradle and Maven Caches"_qs));
    EXPECT_EQ(model->cleanupResultWrapper()->result, (CleanupResult{2, 12, 0, {}}));
}

TEST_F(ProfessionalCleanupRunTest, LeavesTheDatesOfTheSharedStateAlone)
{
    addEverything();
    QCoro::waitFor(model->scan());

    QCoro::waitFor(model->clean());

    EXPECT_TRUE(model->hasReport());
    EXPECT_FALSE(state.lastScanDate().isValid());
    EXPECT_FALSE(state.lastCleanupDate().isValid());
}

TEST_F(ProfessionalCleanupRunTest, ReportsOneLineWhereTheTrashRefusesTheSystemsCaches)
{
    addTree("/Library/Caches/com.example.daemon", 11);
    machine.files->refuse(systemCaches, Failure::Kind::NoPermission);
    QCoro::waitFor(model->scan());
    model->selectAll();

    QCoro::waitFor(model->clean());

    ASSERT_TRUE(model->hasReport());
    const CleanupResult &result = model->cleanupResultWrapper()->result;
    EXPECT_EQ(result.filesRemoved, 0);
    EXPECT_EQ(result.filesSkipped, 1);
    ASSERT_EQ(result.errors.size(), 1);
    EXPECT_THAT(result.errors.first().toStdString(), StartsWith("Failed to clean System Caches"));
    EXPECT_EQ(model->report().filesSkipped(), u"1"_qs);
    EXPECT_EQ(model->report().errors(), result.errors);
}

TEST_F(ProfessionalCleanupRunTest, MovesTheMailsDownloadsAsAWhole)
{
    addTree("Library/Containers/com.apple.mail/Data/Library/Mail Downloads/one", 13);
    QCoro::waitFor(model->scan());
    model->selectAll();

    QCoro::waitFor(model->clean());

    EXPECT_THAT(machine.files->trashed(),
                ElementsAre(FilePath("/home/ada/Library/Containers/com.apple.mail/Data/Library/Mail Downloads")));
}

TEST_F(ProfessionalCleanupRunTest, NeverTouchesTheInventoryEvenIfItWereSelected)
{
    addTree(".nvm", 100);
    QCoro::waitFor(model->scan());
    QList<CleanupCategory> categories = found();
    categories[0].isSelected = true;
    model->categories()->setCategories(categories);

    QCoro::waitFor(model->clean());

    EXPECT_THAT(machine.files->trashed(), IsEmpty());
    EXPECT_TRUE(machine.files->contains(FilePath("/home/ada/.nvm/data")));
    EXPECT_EQ(model->cleanupResultWrapper()->result, CleanupResult());
}

TEST_F(ProfessionalCleanupRunTest, KeepsItsOverlayBehindACancelUntilTheEnd)
{
    addEverything();
    QCoro::waitFor(model->scan());
    const Gate gate;
    machine.files->onRemoval([gate](const FilePath &) { gate.wait(); });
    const auto cleaning = model->clean();

    model->cancel();

    EXPECT_TRUE(model->isCleaning());
    gate.open();
    QCoro::waitFor(cleaning);
    EXPECT_FALSE(model->isCleaning());
    EXPECT_EQ(machine.files->trashed().size(), 1);
    EXPECT_TRUE(model->hasReport());
}

TEST_F(ProfessionalCleanupRunTest, PutsTheReportAwayAndScansTheDiskAsItNowIs)
{
    addTree("Library/Application Support/Code/Cache", 5);
    QCoro::waitFor(model->scan());
    QCoro::waitFor(model->clean());
    addTree(".gradle/caches", 7);
    const Gate gate;
    machine.files->onMeasure([gate](const FilePath &) { gate.wait(); });

    model->dismissReport();

    EXPECT_FALSE(model->hasReport());
    EXPECT_TRUE(model->isScanning());
    gate.open();
    ASSERT_TRUE(QTest::qWaitFor([this] { return !model->isScanning(); }));
    EXPECT_THAT(foundNames(), ElementsAre(u"Java Gradle and Maven Caches"_qs));
}

TEST_F(ProfessionalCleanupRunTest, PrintsWhyACleanupFailedAndRecordsNothing)
{
    addEverything();
    QCoro::waitFor(model->scan());
    machine.files->onRemoval([](const FilePath &) { throw std::runtime_error("the disk is on fire"); });
    testing::internal::CaptureStdout();

    QCoro::waitFor(model->clean());

    EXPECT_EQ(testing::internal::GetCapturedStdout(), "Professional Cleanup error: the disk is on fire\n");
    EXPECT_FALSE(model->isCleaning());
    EXPECT_FALSE(model->hasReport());
    EXPECT_THAT(history.loadHistory(), IsEmpty());
}

TEST_F(ProfessionalCleanupRunTest, BringsARunToItsRecordWhenTheScreenHasGone)
{
    addEverything();
    QCoro::waitFor(model->scan());
    const Gate gate;
    machine.files->onRemoval([gate](const FilePath &) { gate.wait(); });
    const auto cleaning = model->clean();

    model.reset();
    gate.open();
    QCoro::waitFor(cleaning);

    ASSERT_EQ(history.loadHistory().size(), 1);
    EXPECT_EQ(history.loadHistory().first().filesRemoved, 1);
    EXPECT_TRUE(runs.isEmpty());
}
