#include "Platform/Linux/Files/LinuxFileManager.h"
#include "Platform/Linux/TemporaryHome.h"

#include <gtest/gtest.h>

using namespace Quillmere;

namespace {

class DiskStepsTest : public testing::Test
{
protected:
    /// How many steps @p work takes.
    template<typename Work>
    quint64 stepsOf(const Work &work)
    {
        const quint64 before = files.stepsTaken();
        EXPECT_TRUE(work().isOk());
        return files.stepsTaken() - before;
    }

    void addTree(const QByteArray &name) const
    {
        for (int i = 0; i < 10; ++i)
            home.addFile(name + '/' + QByteArray::number(i) + "/file");
    }

    TemporaryHome home;
    LinuxFileManager files = LinuxFileManager(home.environment());
};

} // namespace

TEST_F(DiskStepsTest, AreTakenForEachItemThatIsRemoved)
{
    addTree("home/.cache/item");

    EXPECT_GE(stepsOf([this] { return files.removeItem(home.path("home/.cache/item")); }), 21u);
}

TEST_F(DiskStepsTest, AreTakenForAnItemThatIsMovedToTheTrash)
{
    home.addFile("home/Library/Caches/item");

    EXPECT_GE(stepsOf([this] { return files.trashItem(home.path("home/Library/Caches/item")); }), 1u);
}

TEST_F(DiskStepsTest, AreTakenForEachNameThatIsNotFreeInTheTrash)
{
    home.addFile("home/item");
    for (int number = 2; number < 20; ++number)
        home.addFile("home/.local/share/Trash/info/item." + QByteArray::number(number) + ".trashinfo");
    home.addFile("home/.local/share/Trash/info/item.trashinfo");

    EXPECT_GE(stepsOf([this] { return files.trashItem(home.path("home/item")); }), 20u);
}

TEST_F(DiskStepsTest, AreTakenForEachFolderThatIsRead)
{
    addTree("tree");

    EXPECT_GE(stepsOf([this] { return files.measureTree(home.path("tree"), {}); }), 11u);
}

TEST_F(DiskStepsTest, AreTakenForEachItemThatIsCopied)
{
    addTree("tree");

    EXPECT_GE(stepsOf([this] { return files.copyItem(home.path("tree"), home.path("copy")); }), 21u);
}

TEST_F(DiskStepsTest, AreTakenManyTimesInTheCopyOfOneLongFile)
{
    const qsizetype megabytes = 8;
    home.addFile("file", QByteArray(megabytes << 20, 'x'));

    EXPECT_GE(stepsOf([this] { return files.copyItem(home.path("file"), home.path("copy")); }), quint64(megabytes));
}
