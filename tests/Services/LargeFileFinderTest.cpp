#include "Services/LargeFileFinder.h"
#include "Fakes/PretendMachine.h"

#include <gtest/gtest.h>

using namespace Quillmere;

namespace {

class LargeFileFinderTest : public testing::Test
{
protected:
    std::optional<QList<FileItem>> find(const Cancellation &cancellation = {})
    {
        const auto progress = [](double, const QString &) {};
        return LargeFileFinder(machine.files, machine.places, progress, cancellation).find();
    }

    PretendMachine machine;
};

} // namespace

TEST_F(LargeFileFinderTest, FindsTheLargeFilesOfItsFoldersInTheirOrder)
{
    machine.files->addFile(FilePath("/home/ada/Pictures/late.tif"), 50'000'000);
    machine.files->addFile(FilePath("/home/ada/Downloads/early.iso"), 60'000'000);
    machine.files->addFile(FilePath("/home/ada/Downloads/small.iso"), 49'999'999);
    machine.files->addFile(FilePath("/home/ada/Elsewhere/other.iso"), 60'000'000);

    const std::optional<QList<FileItem>> found = find();

    ASSERT_TRUE(found);
    ASSERT_EQ(found->size(), 2);
    EXPECT_EQ(found->first().path, FilePath("/home/ada/Downloads/early.iso"));
    EXPECT_EQ(found->first().size, 60'000'000);
    EXPECT_EQ(found->last().path, FilePath("/home/ada/Pictures/late.tif"));
}

TEST_F(LargeFileFinderTest, LooksAtAFolderOnceHoweverManyWaysLeadThere)
{
    machine.files->addFile(FilePath("/home/ada/Downloads/early.iso"), 60'000'000);
    machine.files->addLink(FilePath("/home/ada/Documents"), FilePath("/home/ada/Downloads"));

    const std::optional<QList<FileItem>> found = find();

    ASSERT_TRUE(found);
    EXPECT_EQ(found->size(), 1);
}

TEST_F(LargeFileFinderTest, FindsNothingOnceItWasStopped)
{
    machine.files->addFile(FilePath("/home/ada/Downloads/early.iso"), 60'000'000);
    std::stop_source task;
    machine.files->onMeasure([&task](const FilePath &) { task.request_stop(); });

    EXPECT_EQ(find(Cancellation(task.get_token())), std::nullopt);
}
