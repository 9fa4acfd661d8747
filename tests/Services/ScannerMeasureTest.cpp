#include "Services/ScannerFixture.h"

#include <gtest/gtest.h>

#include <stdexcept>

using namespace Quillmere;

namespace {

using ScannerMeasureTest = ScannerFixture;

} // namespace

TEST_F(ScannerMeasureTest, MeasuresAFolderAndCountsItsRegularFiles)
{
    machine.files->addFile(FilePath("/home/ada/x/a"), 5);
    machine.files->addFile(FilePath("/home/ada/x/y/b"), 6);
    machine.files->addLink(FilePath("/home/ada/x/l"), FilePath("/home/ada/x/a"));

    EXPECT_EQ(scanner.scanDirectory(FilePath("/home/ada/x")), (TreeSize{11, 2}));
    EXPECT_EQ(scanner.scanDirectory(FilePath("/home/ada/x/a")), (TreeSize{0, 0}));
    EXPECT_EQ(scanner.scanDirectory(FilePath("/home/ada/none")), (TreeSize{0, 0}));
}

TEST_F(ScannerMeasureTest, GivesZeroForAnEmptyOrMissingFolderEvenAfterACancel)
{
    machine.files->addFolder(FilePath("/home/ada/empty"));
    scanner.cancelScan();

    EXPECT_EQ(scanner.scanDirectory(FilePath("/home/ada/empty")), (TreeSize{0, 0}));
    EXPECT_EQ(scanner.scanDirectory(FilePath("/home/ada/none")), (TreeSize{0, 0}));
}

TEST_F(ScannerMeasureTest, MeasuresAloneWhatAFolderOccupies)
{
    addTree(FilePath("/home/ada/x"), 7);

    EXPECT_EQ(scanner.sizeOf(FilePath("/home/ada/x")), 7);
    EXPECT_EQ(scanner.sizeOf(FilePath("/home/ada/none")), 0);
}

TEST_F(ScannerMeasureTest, MeasuresNothingOnceItWasStopped)
{
    addTree(FilePath("/home/ada/x"), 7);
    std::stop_source task;
    task.request_stop();

    EXPECT_EQ(scanner.sizeOf(FilePath("/home/ada/x"), task.get_token()), std::nullopt);
    scanner.cancelScan();
    EXPECT_EQ(scanner.sizeOf(FilePath("/home/ada/x")), std::nullopt);
}

TEST_F(ScannerMeasureTest, TakesAMeasureThatFailsForNothing)
{
    addTree(FilePath("/home/ada/x"), 7);
    machine.files->onMeasure([](const FilePath &) { throw std::runtime_error("the disk is on fire"); });

    EXPECT_EQ(scanner.sizeOf(FilePath("/home/ada/x")), 0);
}
