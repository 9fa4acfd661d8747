#include "Platform/Linux/Need.h"
#include "Platform/Linux/TemporaryTree.h"
#include "Platform/Linux/Walk/Measuring.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <limits.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

using namespace Quillmere;

namespace {

constexpr TreeSize nothing{0, 0};

} // namespace

TEST(TreeWalkTest, FindsNothingInAnEmptyFolderOrInOneOfFoldersAlone)
{
    TemporaryTree tree;
    EXPECT_EQ(measure(tree.path()), nothing);

    tree.addFolder("a/b/c");
    tree.addFolder("d");

    EXPECT_EQ(measure(tree.path()), nothing);
}

TEST(TreeWalkTest, MeasuresNeitherAFileNorALinkNorNothingAsItsRoot)
{
    TemporaryTree tree;
    tree.addFile("folder/file", 5000);
    tree.addLink("link", "folder");
    ASSERT_EQ(::mkfifo(tree.path("fifo").bytes().constData(), 0600), 0);

    EXPECT_EQ(measure(tree.path("folder/file")), nothing);
    EXPECT_EQ(measure(tree.path("link")), nothing);
    EXPECT_EQ(measure(FilePath(tree.path("link").bytes() + "/")), nothing);
    EXPECT_EQ(measure(FilePath(tree.path("link").bytes() + "//")), nothing);
    EXPECT_EQ(measure(tree.path("fifo")), nothing);
    EXPECT_EQ(measure(tree.path("missing")), nothing);
    EXPECT_EQ(measure(FilePath()), nothing);
    EXPECT_EQ(measure(FilePath(tree.path("folder").bytes() + QByteArray("\0x", 2))), nothing);
    EXPECT_EQ(measure(FilePath(tree.path("folder").bytes() + "/")), sizeByFind(tree.path("folder")));
}

TEST(TreeWalkTest, FollowsLinksAboveItsRoot)
{
    TemporaryTree tree;
    tree.addFile("real/folder/file", 5000);
    tree.addLink("link", "real");

    EXPECT_EQ(measure(tree.path("link/folder")).fileCount, 1);
}

TEST(TreeWalkTest, CountsBytesOnDiskAndNotLengths)
{
    TemporaryTree tree;
    tree.addFile("small", 1);
    tree.addFile("empty", 0);
    tree.addFile("sparse", 4096);
    ASSERT_EQ(::truncate(tree.path("sparse").bytes().constData(), 1 << 30), 0);

    const TreeSize size = measure(tree.path());

    EXPECT_EQ(size, sizeByFind(tree.path()));
    EXPECT_EQ(size.fileCount, 3);
    EXPECT_GT(size.allocatedSize, 0);
    EXPECT_LT(size.allocatedSize, 1 << 20);
}

TEST(TreeWalkTest, CountsAFileOnceForEachOfItsNames)
{
    TemporaryTree tree;
    tree.addFile("file", 50'000);
    tree.addFolder("folder");
    const TreeSize one = measure(tree.path());
    ASSERT_EQ(::link(tree.path("file").bytes().constData(), tree.path("folder/again").bytes().constData()), 0);

    const TreeSize two = measure(tree.path());

    EXPECT_EQ(two.fileCount, 2);
    EXPECT_EQ(two.allocatedSize, 2 * one.allocatedSize);
}

TEST(TreeWalkTest, EntersHiddenFoldersAndPackages)
{
    TemporaryTree tree;
    tree.addFile(".hidden/.file", 3000);
    tree.addFile("Some.app/Contents/MacOS/Some", 3000);
    tree.addFile("..almost/...", 3000);

    EXPECT_EQ(measure(tree.path()).fileCount, 3);
    EXPECT_EQ(measure(tree.path()), sizeByFind(tree.path()));
}

TEST(TreeWalkTest, TakesNamesOfAnyBytes)
{
    TemporaryTree tree;
    const QByteArray longest(255, 'n');
    tree.addFile("\xff\xfe/not\x80utf8", 3000);
    tree.addFile("new\nline/a\nb", 3000);
    tree.addFile(longest + '/' + longest, 3000);
    tree.addFile(" / ", 3000);
    tree.addFile("\x01/\x7f", 3000);

    EXPECT_EQ(measure(tree.path()).fileCount, 5);
    EXPECT_EQ(measure(tree.path()), sizeByFind(tree.path()));
    EXPECT_EQ(measure(tree.path("\xff\xfe")).fileCount, 1);
}

TEST(TreeWalkTest, CountsNoLinksFifosOrSockets)
{
    TemporaryTree tree;
    tree.addFile("folder/file", 3000);
    tree.addLink("folder/up", "..");
    tree.addLink("folder/self", "self");
    tree.addLink("there", "back");
    tree.addLink("back", "there");
    tree.addLink("toFile", "folder/file");
    ASSERT_EQ(::mkfifo(tree.path("fifo").bytes().constData(), 0600), 0);
    ASSERT_EQ(::mknod(tree.path("socket").bytes().constData(), S_IFSOCK | 0600, 0), 0);

    EXPECT_EQ(measure(tree.path()), sizeByFind(tree.path()));
    EXPECT_EQ(measure(tree.path()).fileCount, 1);
}

TEST(TreeWalkTest, CountsNoDevices)
{
    TemporaryTree tree;
    tree.addFile("file", 3000);
    QUILLMERE_NEED(::mknod(tree.path("tape").bytes().constData(), S_IFCHR | 0600, makedev(9, 0)) != 0
                       ? QByteArray("This user may not make devices.")
                       : QByteArray());
    ASSERT_EQ(::mknod(tree.path("disk").bytes().constData(), S_IFBLK | 0600, makedev(7, 200)), 0);

    EXPECT_EQ(measure(tree.path()), sizeByFind(tree.path()));
    EXPECT_EQ(measure(tree.path()).fileCount, 1);
}

TEST(TreeWalkTest, ReachesTheEndOfAChainLongerThanAnyPath)
{
    TemporaryTree tree;
    tree.addChain("a folder with a name", 3000, 2000);

    EXPECT_EQ(measure(tree.path()).fileCount, 3000);
    EXPECT_EQ(measure(tree.path()), sizeByFind(tree.path()));
}

TEST(TreeWalkTest, ReachesTheEndOfTenThousandNestedFolders)
{
    TemporaryTree tree;
    tree.addChain("n", 10'000, 10);

    EXPECT_EQ(measure(tree.path()).fileCount, 10'000);
    EXPECT_EQ(measure(tree.path()), sizeByFind(tree.path()));
}

TEST(TreeWalkTest, StartsAtARootWhosePathIsLongerThanTheKernelTakes)
{
    TemporaryTree tree;
    const QByteArray name(100, 'n');
    tree.addChain(name, 200, 2000);
    QByteArray deep = name;
    for (int level = 1; level < 150; ++level)
        deep += '/' + name;
    const FilePath root = tree.path(deep);
    ASSERT_GT(root.bytes().size(), 3 * PATH_MAX);

    EXPECT_EQ(measure(root).fileCount, 51);
    EXPECT_EQ(measure(FilePath(QByteArray(root.bytes()).replace("nn/nn", "nn///nn"))).fileCount, 51);
    EXPECT_EQ(measure(root.appending("missing")), nothing);
    EXPECT_EQ(measure(FilePath(QByteArray(10'000, 'n'))), nothing);
}

TEST(TreeWalkTest, CountsAHugeFolderToItsLastEntry)
{
    TemporaryTree tree;
    const QByteArray name(100, 'n');
    for (int i = 0; i < 6'000; ++i)
        tree.addFile(name + QByteArray::number(i), i % 3);

    EXPECT_EQ(measure(tree.path()).fileCount, 6'000);
    EXPECT_EQ(measure(tree.path()), sizeByFind(tree.path()));
}

TEST(TreeWalkTest, EntersEachOfMoreSubfoldersThanItKeepsNamesOf)
{
    TemporaryTree tree;
    const QByteArray name(200, 'n');
    for (int i = 0; i < 1'500; ++i)
        tree.addFile(name + QByteArray::number(i) + "/file", i % 2);

    EXPECT_EQ(measure(tree.path()).fileCount, 1'500);
    EXPECT_EQ(measure(tree.path()), sizeByFind(tree.path()));
}
