#include "Fakes/Gate.h"
#include "ViewModels/SafeCleanupFixture.h"

#include <QCoro/QCoroCore>
#include <QSignalSpy>
#include <QTest>

#include <gmock/gmock.h>

#include <atomic>
#include <stdexcept>

using namespace Quillmere;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class SafeCleanupRunTest : public SafeCleanupFixture
{
};

} // namespace

TEST_F(SafeCleanupRunTest, TrashesEveryItemOfTheSelectedCategoriesAndRecordsTheRun)
{
    addTree("Caches/a", 7);
    addTree("Caches/b", 3);
    addTree("Logs/app", 5);
    QCoro::waitFor(model->scan());
    model->categories()->setSelected(1, false);

    QCoro::waitFor(model->clean());

    const FilePath library("/home/ada/Library");
    EXPECT_THAT(machine.files->trashed(), ElementsAre(library.appending("Caches/a"), library.appending("Caches/b")));
    const QList<OperationLog> logs = history.loadHistory();
    ASSERT_EQ(logs.size(), 1);
    const OperationLog &log = logs.first();
    EXPECT_EQ(log.operationType, OperationType::SafeCleanup);
    EXPECT_EQ(log.status, OperationStatus::Completed);
    EXPECT_EQ(log.foundSize, 15);
    EXPECT_EQ(log.cleanedSize, 10);
    EXPECT_EQ(log.filesRemoved, 2);
    EXPECT_EQ(log.filesSkipped, 0);
    EXPECT_THAT(log.errors, IsEmpty());
    EXPECT_THAT(log.categoriesAffected, ElementsAre(u"User Cache"_qs));
    EXPECT_EQ(log.date, machine.clock->now());
    EXPECT_EQ(state.lastCleanupDate(), machine.clock->now());
    ASSERT_TRUE(model->cleanupResultWrapper().has_value());
    EXPECT_EQ(model->cleanupResultWrapper()->result, (CleanupResult{2, 10, 0, {}}));
    EXPECT_FALSE(model->isCleaning());
    EXPECT_TRUE(QTest::qWaitFor([this] { return model->cleanupProgress() == 1.0; }));
}

TEST_F(SafeCleanupRunTest, CountsADeselectedCategoryTowardsTheSizeFound)
{
    addTree("Caches/a", 7);
    addTree("Logs/app", 5);
    QCoro::waitFor(model->scan());
    model->categories()->setSelected(0, false);

    QCoro::waitFor(model->clean());

    EXPECT_EQ(history.loadHistory().first().foundSize, 12);
    EXPECT_EQ(history.loadHistory().first().cleanedSize, 5);
}

TEST_F(SafeCleanupRunTest, KeepsTheOverlayOfALaterRunWhenAnEarlierOneEnds)
{
    addTree("Caches/a", 7);
    QCoro::waitFor(model->scan());
    const Gate firstGate;
    const Gate secondGate;
    const auto arrivals = std::make_shared<std::atomic<int>>(0);
    machine.files->onRemoval(
        [firstGate, secondGate, arrivals](const FilePath &) { (++*arrivals == 1 ? firstGate : secondGate).wait(); });
    const auto first = model->clean();
    ASSERT_TRUE(QTest::qWaitFor([&] { return *arrivals == 1; }));
    model->cancel();
    const auto second = model->clean();
    ASSERT_TRUE(QTest::qWaitFor([&] { return *arrivals == 2; }));

    firstGate.open();
    QCoro::waitFor(first);
    EXPECT_TRUE(model->isCleaning());
    secondGate.open();
    QCoro::waitFor(second);

    EXPECT_FALSE(model->isCleaning());
    EXPECT_EQ(history.loadHistory().size(), 2);
}

TEST_F(SafeCleanupRunTest, RecordsCompletedEvenWhenSomeItemsFailed)
{
    addTree("Caches/a", 7);
    QCoro::waitFor(model->scan());
    machine.files->refuse(FilePath("/home/ada/Library/Caches/a"), Failure::Kind::NoPermission);

    QCoro::waitFor(model->clean());

    const OperationLog log = history.loadHistory().first();
    EXPECT_EQ(log.status, OperationStatus::Completed);
    EXPECT_EQ(log.filesSkipped, 1);
    EXPECT_EQ(log.errors, model->cleanupResultWrapper()->result.errors);
    EXPECT_EQ(log.errors.size(), 1);
}

TEST_F(SafeCleanupRunTest, PrintsWhyACleanupFailedAndRecordsNothing)
{
    addTree("Caches/app", 7);
    QCoro::waitFor(model->scan());
    machine.files->onRemoval([](const FilePath &) { throw std::runtime_error("the disk is on fire"); });
    testing::internal::CaptureStdout();

    QCoro::waitFor(model->clean());

    EXPECT_EQ(testing::internal::GetCapturedStdout(), "Cleanup error: the disk is on fire\n");
    EXPECT_FALSE(model->isCleaning());
    EXPECT_FALSE(model->hasReport());
    EXPECT_FALSE(state.lastCleanupDate().isValid());
    EXPECT_THAT(history.loadHistory(), IsEmpty());
}

TEST_F(SafeCleanupRunTest, DoesNothingWhenNoCategoryIsSelected)
{
    addTree("Caches/a", 7);
    QCoro::waitFor(model->scan());
    model->deselectAll();
    const QSignalSpy phases(model.get(), &SafeCleanupViewModel::phaseChanged);

    QCoro::waitFor(model->clean());

    EXPECT_EQ(phases.count(), 0);
    EXPECT_FALSE(model->hasReport());
    EXPECT_THAT(history.loadHistory(), IsEmpty());
}

TEST_F(SafeCleanupRunTest, ReportsZerosWhenEverySelectedItemIsRefused)
{
    addTree("Caches/a", 7);
    QCoro::waitFor(model->scan());
    QList<CleanupCategory> categories = model->categories()->categories();
    categories[0].items[0].isDeletable = false;
    model->categories()->setCategories(categories);

    QCoro::waitFor(model->clean());

    ASSERT_TRUE(model->hasReport());
    EXPECT_EQ(model->cleanupResultWrapper()->result, CleanupResult());
    EXPECT_EQ(history.loadHistory().size(), 1);
}

TEST_F(SafeCleanupRunTest, CleansItemsOfASelectedCategoryWhateverTheyThemselvesSay)
{
    addTree("Caches/a", 7);
    QCoro::waitFor(model->scan());
    QList<CleanupCategory> categories = model->categories()->categories();
    categories[0].items[0].isSelected = false;
    model->categories()->setCategories(categories);

    QCoro::waitFor(model->clean());

    EXPECT_EQ(machine.files->trashed().size(), 1);
}

TEST_F(SafeCleanupRunTest, GoesOnCleaningBehindACancelAndReportsAllTheSame)
{
    addTree("Caches/a", 7);
    addTree("Caches/b", 3);
    QCoro::waitFor(model->scan());
    const Gate gate;
    machine.files->onRemoval([gate](const FilePath &) { gate.wait(); });
    const auto cleaning = model->clean();
    EXPECT_TRUE(model->isCleaning());

    model->cancel();

    EXPECT_FALSE(model->isCleaning());
    gate.open();
    QCoro::waitFor(cleaning);
    EXPECT_EQ(machine.files->trashed().size(), 2);
    EXPECT_TRUE(model->hasReport());
}

TEST_F(SafeCleanupRunTest, RecordsWhatWasSelectedWhenTheRunBegan)
{
    addTree("Caches/a", 7);
    addTree("Logs/b", 3);
    QCoro::waitFor(model->scan());
    const Gate gate;
    machine.files->onRemoval([gate](const FilePath &) { gate.wait(); });
    const auto cleaning = model->clean();

    model->cancel();
    model->deselectAll();
    gate.open();
    QCoro::waitFor(cleaning);

    const OperationLog log = history.loadHistory().first();
    EXPECT_THAT(log.categoriesAffected, ElementsAre(u"User Cache"_qs, u"User Logs"_qs));
    EXPECT_EQ(log.foundSize, 10);
}

TEST_F(SafeCleanupRunTest, BringsARunToItsEndAndItsRecordWhenTheScreenHasGone)
{
    addTree("Caches/a", 7);
    addTree("Caches/b", 3);
    QCoro::waitFor(model->scan());
    const Gate gate;
    machine.files->onRemoval([gate](const FilePath &) { gate.wait(); });
    const auto cleaning = model->clean();
    EXPECT_FALSE(runs.isEmpty());

    model.reset();
    gate.open();
    QCoro::waitFor(cleaning);

    EXPECT_EQ(machine.files->trashed().size(), 2);
    ASSERT_EQ(history.loadHistory().size(), 1);
    EXPECT_EQ(history.loadHistory().first().filesRemoved, 2);
    EXPECT_EQ(state.lastCleanupDate(), machine.clock->now());
    EXPECT_TRUE(runs.isEmpty());
}

TEST_F(SafeCleanupRunTest, RecordsAndReportsBeforeTheDiskHasWrittenAllDown)
{
    addTree("Caches/a", 7);
    QCoro::waitFor(model->scan());
    const Gate gate;
    const auto logsBefore = std::make_shared<std::atomic<qsizetype>>(-1);
    machine.files->onSynchronization([gate, logsBefore, history = &history](const QList<FilePath> &) {
        *logsBefore = history->loadHistory().size();
        gate.wait();
    });

    const auto cleaning = model->clean();

    EXPECT_TRUE(QTest::qWaitFor([&] { return *logsBefore >= 0 && model->hasReport(); }));
    EXPECT_EQ(*logsBefore, 1);
    EXPECT_EQ(machine.files->synchronizations(), 0);
    EXPECT_FALSE(model->isCleaning());
    EXPECT_TRUE(runs.isEmpty());
    gate.open();
    QCoro::waitFor(cleaning);
    EXPECT_TRUE(QTest::qWaitFor([this] { return machine.files->synchronizations() == 1; }));
}

TEST_F(SafeCleanupRunTest, PutsTheReportAwayAndScansTheDiskAsItNowIs)
{
    addTree("Caches/a", 7);
    QCoro::waitFor(model->scan());
    QCoro::waitFor(model->clean());
    addTree("Logs/b", 3);
    const Gate gate;
    machine.files->onMeasure([gate](const FilePath &) { gate.wait(); });

    model->dismissReport();

    EXPECT_FALSE(model->hasReport());
    EXPECT_TRUE(model->isScanning());
    gate.open();
    ASSERT_TRUE(QTest::qWaitFor([this] { return model->isScanComplete(); }));
    EXPECT_THAT(shownNames(), ElementsAre(u"User Logs"_qs));
}

TEST_F(SafeCleanupRunTest, GivesEachRunsReportAnIdentityOfItsOwn)
{
    addTree("Caches/a", 7);
    QCoro::waitFor(model->scan());
    QCoro::waitFor(model->clean());
    const QUuid first = model->cleanupResultWrapper()->id;

    QCoro::waitFor(model->clean());

    EXPECT_NE(model->cleanupResultWrapper()->id, first);
}
