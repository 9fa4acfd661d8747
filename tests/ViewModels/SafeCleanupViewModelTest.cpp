#include "ViewModels/SafeCleanupViewModel.h"
#include "App/AppState.h"
#include "Fakes/Gate.h"
#include "Fakes/InstalledLocalizer.h"
#include "Fakes/PretendMachine.h"
#include "ViewModels/UnfinishedRuns.h"

#include <QCoro/QCoroCore>
#include <QSignalSpy>
#include <QTest>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <stdexcept>

using namespace Quillmere;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class SafeCleanupViewModelTest : public testing::Test
{
protected:
    SafeCleanupViewModelTest()
    {
        SharedInstance<UnfinishedRuns>::install(&runs);
        AppState::setShared(&state);
    }
    ~SafeCleanupViewModelTest() override
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

} // namespace

TEST_F(SafeCleanupViewModelTest, StartsWithNothingButTheInvitationToScan)
{
    EXPECT_TRUE(model->showsStart());
    EXPECT_FALSE(model->isScanning());
    EXPECT_FALSE(model->isScanComplete());
    EXPECT_FALSE(model->isCleaning());
    EXPECT_EQ(model->scanProgress(), 0);
    EXPECT_EQ(model->cleanupProgress(), 0);
    EXPECT_FALSE(model->cleanupResultWrapper().has_value());
    EXPECT_FALSE(model->canClean());
}

TEST_F(SafeCleanupViewModelTest, RaisesTheOverlayAtOnceAndTellsThatItStarts)
{
    addTree("Caches/app", 7);
    const Gate gate;
    machine.files->onMeasure([gate](const FilePath &) { gate.wait(); });
    const auto scanning = model->scan();

    EXPECT_TRUE(model->isScanning());
    EXPECT_EQ(model->scanProgress(), 0);
    EXPECT_EQ(model->scanStatus(), u"Starting scan..."_qs);
    gate.open();
    QCoro::waitFor(scanning);
    EXPECT_FALSE(model->isScanning());
}

TEST_F(SafeCleanupViewModelTest, ShowsTheCategoriesThatHoldAnythingInTheirOrder)
{
    addTree("Logs/app", 5);
    addTree("Caches/app", 7);

    QCoro::waitFor(model->scan());

    EXPECT_THAT(shownNames(), ElementsAre(u"User Cache"_qs, u"User Logs"_qs));
    EXPECT_TRUE(model->isScanComplete());
    EXPECT_EQ(model->totalSelectedSize(), 12);
    EXPECT_TRUE(QTest::qWaitFor([this] { return model->scanProgress() == 1.0; }));
    EXPECT_EQ(model->scanStatus(), u"Scan Complete"_qs);
    EXPECT_EQ(state.lastScanDate(), machine.clock->now());
}

TEST_F(SafeCleanupViewModelTest, DoesNotInviteAgainAfterAScanThatFoundNothing)
{
    QCoro::waitFor(model->scan());

    EXPECT_TRUE(model->isScanComplete());
    EXPECT_THAT(shownNames(), IsEmpty());
    EXPECT_FALSE(model->canClean());
    EXPECT_FALSE(model->showsStart());
}

TEST_F(SafeCleanupViewModelTest, ScansWithoutASharedState)
{
    AppState::setShared(nullptr);
    addTree("Caches/app", 7);

    QCoro::waitFor(model->scan());
    QCoro::waitFor(model->clean());

    EXPECT_FALSE(state.lastScanDate().isValid());
    EXPECT_FALSE(state.lastCleanupDate().isValid());
    EXPECT_TRUE(model->hasReport());
}

TEST_F(SafeCleanupViewModelTest, InvitesAgainAfterACancelledScanAndScansAnew)
{
    addTree("Caches/app", 7);
    machine.files->onMeasure([this](const FilePath &) { scanner->cancelScan(); });
    QCoro::waitFor(model->scan());
    EXPECT_TRUE(model->showsStart());
    EXPECT_FALSE(model->isScanning());
    EXPECT_FALSE(state.lastScanDate().isValid());

    machine.files->onMeasure({});
    QCoro::waitFor(model->scan());

    EXPECT_THAT(shownNames(), ElementsAre(u"User Cache"_qs));
}

TEST_F(SafeCleanupViewModelTest, TakesTheOverlayAwayAtOnceWhenCancelled)
{
    addTree("Caches/app", 7);
    const Gate gate;
    machine.files->onMeasure([gate](const FilePath &) { gate.wait(); });
    const auto scanning = model->scan();

    model->cancel();

    EXPECT_FALSE(model->isScanning());
    EXPECT_TRUE(scanner->isCancelled());
    gate.open();
    QCoro::waitFor(scanning);
    EXPECT_TRUE(model->showsStart());
}

TEST_F(SafeCleanupViewModelTest, IsNotDisturbedByACancelledScanThatEndsLate)
{
    addTree("Caches/app", 7);
    const Gate gate;
    const auto isFirst = std::make_shared<std::atomic<bool>>(true);
    machine.files->onMeasure([gate, isFirst](const FilePath &) {
        if (isFirst->exchange(false))
            gate.wait();
    });
    const auto cancelled = model->scan();
    QTest::qWait(1);
    model->cancel();

    const auto second = model->scan();
    gate.open();
    QCoro::waitFor(cancelled);
    QCoro::waitFor(second);

    EXPECT_TRUE(model->isScanComplete());
    EXPECT_THAT(shownNames(), ElementsAre(u"User Cache"_qs));
}

TEST_F(SafeCleanupViewModelTest, SelectsAndDeselectsEveryCategory)
{
    addTree("Caches/app", 7);
    addTree("Logs/app", 5);
    QCoro::waitFor(model->scan());
    const QSignalSpy changed(model.get(), &SafeCleanupViewModel::selectionChanged);

    model->deselectAll();
    EXPECT_EQ(model->totalSelectedSize(), 0);
    EXPECT_FALSE(model->canClean());
    model->selectAll();
    EXPECT_EQ(model->totalSelectedSize(), 12);
    model->categories()->setSelected(0, false);
    EXPECT_EQ(model->totalSelectedSize(), 5);
    EXPECT_EQ(changed.count(), 3);
}

TEST_F(SafeCleanupViewModelTest, TrashesEveryItemOfTheSelectedCategoriesAndRecordsTheRun)
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

TEST_F(SafeCleanupViewModelTest, CountsADeselectedCategoryTowardsTheSizeFound)
{
    addTree("Caches/a", 7);
    addTree("Logs/app", 5);
    QCoro::waitFor(model->scan());
    model->categories()->setSelected(0, false);

    QCoro::waitFor(model->clean());

    EXPECT_EQ(history.loadHistory().first().foundSize, 12);
    EXPECT_EQ(history.loadHistory().first().cleanedSize, 5);
}

TEST_F(SafeCleanupViewModelTest, KeepsTheOverlayOfALaterRunWhenAnEarlierOneEnds)
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

TEST_F(SafeCleanupViewModelTest, RecordsCompletedEvenWhenSomeItemsFailed)
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

TEST_F(SafeCleanupViewModelTest, PrintsWhyAScanFailedAndInvitesAgain)
{
    addTree("Caches/app", 7);
    machine.files->onMeasure([](const FilePath &) { throw std::runtime_error("the disk is on fire"); });
    testing::internal::CaptureStdout();

    QCoro::waitFor(model->scan());

    EXPECT_EQ(testing::internal::GetCapturedStdout(), "Scan error: the disk is on fire\n");
    EXPECT_FALSE(model->isScanning());
    EXPECT_TRUE(model->showsStart());
    EXPECT_FALSE(state.lastScanDate().isValid());
}

TEST_F(SafeCleanupViewModelTest, PrintsNothingOfACancelledScan)
{
    addTree("Caches/app", 7);
    machine.files->onMeasure([this](const FilePath &) { scanner->cancelScan(); });
    testing::internal::CaptureStdout();

    QCoro::waitFor(model->scan());

    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

TEST_F(SafeCleanupViewModelTest, PrintsWhyACleanupFailedAndRecordsNothing)
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

TEST_F(SafeCleanupViewModelTest, DoesNothingWhenNoCategoryIsSelected)
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

TEST_F(SafeCleanupViewModelTest, ReportsZerosWhenEverySelectedItemIsRefused)
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

TEST_F(SafeCleanupViewModelTest, CleansItemsOfASelectedCategoryWhateverTheyThemselvesSay)
{
    addTree("Caches/a", 7);
    QCoro::waitFor(model->scan());
    QList<CleanupCategory> categories = model->categories()->categories();
    categories[0].items[0].isSelected = false;
    model->categories()->setCategories(categories);

    QCoro::waitFor(model->clean());

    EXPECT_EQ(machine.files->trashed().size(), 1);
}

TEST_F(SafeCleanupViewModelTest, GoesOnCleaningBehindACancelAndReportsAllTheSame)
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

TEST_F(SafeCleanupViewModelTest, BringsARunToItsEndAndItsRecordWhenTheScreenHasGone)
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

TEST_F(SafeCleanupViewModelTest, LetsAScanEndQuietlyWhenTheScreenHasGone)
{
    addTree("Caches/a", 7);
    const Gate gate;
    machine.files->onMeasure([gate](const FilePath &) { gate.wait(); });
    const auto scanning = model->scan();

    model.reset();
    gate.open();
    QCoro::waitFor(scanning);

    EXPECT_FALSE(state.lastScanDate().isValid());
}

TEST_F(SafeCleanupViewModelTest, PutsTheReportAwayAndScansTheDiskAsItNowIs)
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

TEST_F(SafeCleanupViewModelTest, GivesEachRunsReportAnIdentityOfItsOwn)
{
    addTree("Caches/a", 7);
    QCoro::waitFor(model->scan());
    QCoro::waitFor(model->clean());
    const QUuid first = model->cleanupResultWrapper()->id;

    QCoro::waitFor(model->clean());

    EXPECT_NE(model->cleanupResultWrapper()->id, first);
}

TEST_F(SafeCleanupViewModelTest, ShowsTheFirstFiveItemsOfARowAndCountsTheRest)
{
    for (int i = 0; i < 7; ++i)
        addTree("Caches/c" + QByteArray::number(i), 1'500'000);
    QCoro::waitFor(model->scan());

    const QVariantList items = role(0, CleanupCategoryListModel::ShownItemsRole).toList();

    ASSERT_EQ(items.size(), 5);
    EXPECT_EQ(items.first().toMap().value(u"name"_qs).toString(), u"c0"_qs);
    EXPECT_EQ(items.first().toMap().value(u"size"_qs).toString(), u"1.5MB"_qs);
    EXPECT_EQ(role(0, CleanupCategoryListModel::MoreTextRole).toString(), u"2 more..."_qs);
    EXPECT_EQ(role(0, CleanupCategoryListModel::CountTextRole).toString(), u"7 items"_qs);
    EXPECT_EQ(role(0, CleanupCategoryListModel::SizeTextRole).toString(), u"10.5 MB"_qs);
}

TEST_F(SafeCleanupViewModelTest, CountsNoRestWhenFiveItemsAreAll)
{
    for (int i = 0; i < 5; ++i)
        addTree("Caches/c" + QByteArray::number(i), 1);
    QCoro::waitFor(model->scan());

    EXPECT_EQ(role(0, CleanupCategoryListModel::MoreTextRole).toString(), QString());
}

TEST_F(SafeCleanupViewModelTest, ExpandsARowAndClosesItAgain)
{
    addTree("Caches/a", 1);
    QCoro::waitFor(model->scan());
    EXPECT_FALSE(role(0, CleanupCategoryListModel::IsExpandedRole).toBool());

    model->categories()->toggleExpanded(0);
    EXPECT_TRUE(role(0, CleanupCategoryListModel::IsExpandedRole).toBool());
    model->categories()->toggleExpanded(0);
    EXPECT_FALSE(role(0, CleanupCategoryListModel::IsExpandedRole).toBool());
}

TEST_F(SafeCleanupViewModelTest, KeepsTheNamesOfAScanButTurnsItsFiguresWhenTheLanguageChanges)
{
    addTree("Caches/a", 1'500'000);
    QCoro::waitFor(model->scan());
    const QSignalSpy changed(model->categories(), &QAbstractItemModel::dataChanged);

    localizer->setLanguage(Language::Spanish);

    EXPECT_EQ(role(0, CleanupCategoryListModel::NameRole).toString(), u"User Cache"_qs);
    EXPECT_EQ(role(0, CleanupCategoryListModel::SizeTextRole).toString(), u"1,5 MB"_qs);
    EXPECT_GE(changed.count(), 1);
}

TEST(CleanupReportTest, ShowsSkippedFilesOnlyWhenThereAreAny)
{
    const InstalledLocalizer localizer;

    EXPECT_EQ(CleanupReport(CleanupResult{203, 4'610'000'000, 0, {}}).filesSkipped(), QString());
    EXPECT_EQ(CleanupReport(CleanupResult{203, 4'610'000'000, 1, {}}).filesSkipped(), u"1"_qs);
    EXPECT_EQ(CleanupReport(CleanupResult{203, 4'610'000'000, 1, {}}).spaceFreed(), u"4.61 GB"_qs);
    EXPECT_EQ(CleanupReport(CleanupResult{203, 4'610'000'000, 1, {}}).filesRemoved(), u"203"_qs);
}

TEST(CleanupReportTest, ShowsTheFirstFiveErrors)
{
    const QStringList lines = {u"1"_qs, u"2"_qs, u"3"_qs, u"4"_qs, u"5"_qs, u"6"_qs};

    EXPECT_EQ(CleanupReport(CleanupResult{0, 0, 6, lines}).errors(), lines.first(5));
    EXPECT_EQ(CleanupReport(CleanupResult{0, 0, 2, lines.first(2)}).errors(), lines.first(2));
}
