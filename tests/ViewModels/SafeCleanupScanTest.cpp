#include "Fakes/Gate.h"
#include "Fakes/HeldCalls.h"
#include "Utilities/BackgroundWork.h"
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

class SafeCleanupScanTest : public SafeCleanupFixture
{
};

} // namespace

TEST_F(SafeCleanupScanTest, StartsWithNothingButTheInvitationToScan)
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

TEST_F(SafeCleanupScanTest, RaisesTheOverlayAtOnceAndTellsThatItStarts)
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

TEST_F(SafeCleanupScanTest, ShowsTheCategoriesThatHoldAnythingInTheirOrder)
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

TEST_F(SafeCleanupScanTest, DoesNotInviteAgainAfterAScanThatFoundNothing)
{
    QCoro::waitFor(model->scan());

    EXPECT_TRUE(model->isScanComplete());
    EXPECT_THAT(shownNames(), IsEmpty());
    EXPECT_FALSE(model->canClean());
    EXPECT_FALSE(model->showsStart());
}

TEST_F(SafeCleanupScanTest, ScansWithoutASharedState)
{
    AppState::setShared(nullptr);
    addTree("Caches/app", 7);

    QCoro::waitFor(model->scan());
    QCoro::waitFor(model->clean());

    EXPECT_FALSE(state.lastScanDate().isValid());
    EXPECT_FALSE(state.lastCleanupDate().isValid());
    EXPECT_TRUE(model->hasReport());
}

TEST_F(SafeCleanupScanTest, InvitesAgainAfterACancelledScanAndScansAnew)
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

TEST_F(SafeCleanupScanTest, TakesTheOverlayAwayAtOnceWhenCancelled)
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

TEST_F(SafeCleanupScanTest, IsNotDisturbedByACancelledScanThatEndsLate)
{
    addTree("Caches/app", 7);
    const HeldCalls held(2);
    machine.files->onMeasure([held](const FilePath &) { held.pass(); });
    const auto cancelled = model->scan();
    EXPECT_TRUE(QTest::qWaitFor([&held] { return held.arrived() == 1; }));
    model->cancel();
    const auto second = model->scan();
    EXPECT_TRUE(QTest::qWaitFor([&held] { return held.arrived() == 2; }));

    held.release(0);
    QCoro::waitFor(cancelled);
    EXPECT_TRUE(model->isScanning());
    EXPECT_FALSE(model->isScanComplete());

    held.release(1);
    QCoro::waitFor(second);
    EXPECT_TRUE(model->isScanComplete());
    EXPECT_THAT(shownNames(), ElementsAre(u"User Cache"_qs));
}

TEST_F(SafeCleanupScanTest, SelectsAndDeselectsEveryCategory)
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

TEST_F(SafeCleanupScanTest, SelectsEvenACategoryThatIsNotAvailable)
{
    CleanupCategory category;
    category.isAvailable = false;
    category.isSelected = false;
    model->categories()->setCategories({category});

    model->selectAll();

    EXPECT_TRUE(model->categories()->categories().first().isSelected);
}

TEST_F(SafeCleanupScanTest, PrintsWhyAScanFailedThatEndsAfterTheNextHasBegun)
{
    addTree("Caches/a", 7);
    const HeldCalls held(2);
    machine.files->onMeasure([held](const FilePath &) {
        held.pass();
        throw std::runtime_error("the disk is on fire");
    });
    const auto cancelled = model->scan();
    EXPECT_TRUE(QTest::qWaitFor([&held] { return held.arrived() == 1; }));
    model->cancel();
    const auto second = model->scan();
    EXPECT_TRUE(QTest::qWaitFor([&held] { return held.arrived() == 2; }));

    testing::internal::CaptureStdout();
    held.release(0);
    QCoro::waitFor(cancelled);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "Scan error: the disk is on fire\n");

    held.release(1);
    QCoro::waitFor(second);
}

TEST_F(SafeCleanupScanTest, PrintsWhyAScanFailedAndInvitesAgain)
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

TEST_F(SafeCleanupScanTest, PrintsNothingOfACancelledScan)
{
    addTree("Caches/app", 7);
    machine.files->onMeasure([this](const FilePath &) { scanner->cancelScan(); });
    testing::internal::CaptureStdout();

    QCoro::waitFor(model->scan());

    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

TEST_F(SafeCleanupScanTest, LetsAScanEndAndDatesItWhenTheScreenHasGone)
{
    addTree("Caches/a", 7);
    const Gate gate;
    machine.files->onMeasure([gate](const FilePath &) { gate.wait(); });
    const auto scanning = model->scan();

    model.reset();
    gate.open();
    QCoro::waitFor(scanning);

    EXPECT_EQ(state.lastScanDate(), machine.clock->now());
}

TEST_F(SafeCleanupScanTest, PrintsWhyAScanFailedWhenTheScreenHasGone)
{
    addTree("Caches/a", 7);
    const Gate gate;
    machine.files->onMeasure([gate](const FilePath &) {
        gate.wait();
        throw std::runtime_error("the disk is on fire");
    });
    const auto scanning = model->scan();
    testing::internal::CaptureStdout();

    model.reset();
    gate.open();
    QCoro::waitFor(scanning);

    EXPECT_EQ(testing::internal::GetCapturedStdout(), "Scan error: the disk is on fire\n");
    EXPECT_FALSE(state.lastScanDate().isValid());
}

TEST_F(SafeCleanupScanTest, ShowsNothingOfAScanThatIsCancelledOnceItHasFoundEverything)
{
    addTree("Caches/a", 7);
    const Gate gate;
    machine.files->onMeasure([gate](const FilePath &) { gate.wait(); });
    const auto scanning = model->scan();
    gate.open();
    backgroundPool().waitForDone();

    model->cancel();
    QCoro::waitFor(scanning);

    EXPECT_TRUE(model->showsStart());
    EXPECT_FALSE(state.lastScanDate().isValid());
}

TEST_F(SafeCleanupScanTest, DatesNoScanThatAnotherHasFollowedWhenTheScreenHasGone)
{
    addTree("Caches/a", 7);
    const HeldCalls held(2);
    machine.files->onMeasure([held](const FilePath &) { held.pass(); });
    const auto first = model->scan();
    ASSERT_TRUE(QTest::qWaitFor([&held] { return held.arrived() == 1; }));
    held.release(0);
    backgroundPool().waitForDone();
    const auto second = model->scan();

    model.reset();
    QCoro::waitFor(first);
    EXPECT_FALSE(state.lastScanDate().isValid());

    held.release(1);
    QCoro::waitFor(second);
    EXPECT_TRUE(state.lastScanDate().isValid());
}

TEST_F(SafeCleanupScanTest, DatesNoCancelledScanWhenTheScreenHasGone)
{
    addTree("Caches/a", 7);
    const Gate gate;
    machine.files->onMeasure([gate](const FilePath &) { gate.wait(); });
    const auto scanning = model->scan();

    model->cancel();
    model.reset();
    gate.open();
    QCoro::waitFor(scanning);

    EXPECT_FALSE(state.lastScanDate().isValid());
}

TEST_F(SafeCleanupScanTest, ShowsTheFirstFiveItemsOfARowAndCountsTheRest)
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

TEST_F(SafeCleanupScanTest, CountsNoRestWhenFiveItemsAreAll)
{
    for (int i = 0; i < 5; ++i)
        addTree("Caches/c" + QByteArray::number(i), 1);
    QCoro::waitFor(model->scan());

    EXPECT_EQ(role(0, CleanupCategoryListModel::MoreTextRole).toString(), QString());
}

TEST_F(SafeCleanupScanTest, ExpandsARowAndClosesItAgain)
{
    addTree("Caches/a", 1);
    QCoro::waitFor(model->scan());
    EXPECT_FALSE(role(0, CleanupCategoryListModel::IsExpandedRole).toBool());

    model->categories()->toggleExpanded(0);
    EXPECT_TRUE(role(0, CleanupCategoryListModel::IsExpandedRole).toBool());
    model->categories()->toggleExpanded(0);
    EXPECT_FALSE(role(0, CleanupCategoryListModel::IsExpandedRole).toBool());
}

TEST_F(SafeCleanupScanTest, KeepsTheNamesOfAScanButTurnsItsFiguresWhenTheLanguageChanges)
{
    addTree("Caches/a", 1'500'000);
    QCoro::waitFor(model->scan());
    const QSignalSpy changed(model->categories(), &QAbstractItemModel::dataChanged);

    localizer->setLanguage(Language::Spanish);

    EXPECT_EQ(role(0, CleanupCategoryListModel::NameRole).toString(), u"User Cache"_qs);
    EXPECT_EQ(role(0, CleanupCategoryListModel::SizeTextRole).toString(), u"1,5 MB"_qs);
    EXPECT_GE(changed.count(), 1);
}
