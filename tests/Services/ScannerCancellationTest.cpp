#include "Services/ScannerFixture.h"
#include "Values/CancellationError.h"

#include <gtest/gtest.h>

using namespace Quillmere;

namespace {

using ScannerCancellationTest = ScannerFixture;

} // namespace

TEST_F(ScannerCancellationTest, ThrowsWhenCancelledInsideAWalkAndReturnsNoPart)
{
    addTree(caches.appending("a"), 1);
    addTree(logs.appending("b"), 1);
    machine.files->onMeasure([this](const FilePath &path) {
        if (path.isWithin(logs))
            scanner.cancelScan();
    });

    EXPECT_THROW((void)scan(), CancellationError);
    EXPECT_TRUE(scanner.isCancelled());
}

TEST_F(ScannerCancellationTest, LooksAtNoFurtherEntryOnceCancelledAmongLooseFiles)
{
    for (int number = 10; number < 100; ++number)
        machine.files->addFile(caches.appending("loose" + QByteArray::number(number)), 1);
    int reports = 0;

    EXPECT_THROW((void)scanner.scanSafeCategories([&](double, const QString &name) {
        if (!name.startsWith(u"loose"))
            return;
        ++reports;
        scanner.cancelScan();
    }),
                 CancellationError);
    EXPECT_EQ(reports, 1);
}

TEST_F(ScannerCancellationTest, ThrowsWhenCancelledAfterTheLastWalkBeforeTheReturn)
{
    addTree(FilePath("/tmp/last"), 1);
    machine.files->onMeasure([this](const FilePath &) { scanner.cancelScan(); });

    EXPECT_THROW((void)scan(), CancellationError);
}

TEST_F(ScannerCancellationTest, CanNoLongerBeCancelledOnceTheTestAfterTheFourthWalkHasPassed)
{
    const QList<CleanupCategory> categories = scanner.scanSafeCategories([this](double fraction, const QString &) {
        if (fraction == 1.0)
            scanner.cancelScan();
    });

    EXPECT_EQ(categories.size(), 4);
    EXPECT_TRUE(scanner.isCancelled());
}

TEST_F(ScannerCancellationTest, ThrowsWhenItsTaskIsCancelled)
{
    std::stop_source task;
    addTree(caches.appending("a"), 1);
    machine.files->onMeasure([&](const FilePath &) { task.request_stop(); });

    EXPECT_THROW((void)scan(task.get_token()), CancellationError);
    EXPECT_FALSE(scanner.isCancelled());
}

TEST_F(ScannerCancellationTest, ThrowsOnASecondRunWithoutResetAndWorksAfterOne)
{
    scanner.cancelScan();
    EXPECT_THROW((void)scan(), CancellationError);
    EXPECT_TRUE(reports.empty());

    scanner.resetCancellation();
    EXPECT_EQ(scan().size(), 4);
}

TEST_F(ScannerCancellationTest, ThrowsWhenCancelledWhileItLooksWhatIsKept)
{
    addTree(caches.appending("a"), 1);
    bool wasTold = false;
    machine.places->onQuestion([&](const FilePath &, const Cancellation &cancellation) {
        scanner.cancelScan();
        wasTold = cancellation.isRequested();
    });

    EXPECT_THROW((void)scan(), CancellationError);
    EXPECT_TRUE(wasTold);
}
