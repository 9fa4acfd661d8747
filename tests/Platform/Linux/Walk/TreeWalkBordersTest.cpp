#include "Platform/Linux/Need.h"
#include "Platform/Linux/RestrictedThread.h"
#include "Platform/Linux/SpawnedProgram.h"
#include "Platform/Linux/TemporaryTree.h"
#include "Platform/Linux/Walk/Measuring.h"
#include "Platform/Linux/Walk/TreeWalk.h"

#include <gtest/gtest.h>

#include <sys/mount.h>
#include <sys/stat.h>

using namespace Quillmere;

namespace {

bool bindMount(const FilePath &source, const FilePath &target)
{
    return ::mount(source.bytes().constData(), target.bytes().constData(), nullptr, MS_BIND, nullptr) == 0;
}

} // namespace

TEST(TreeWalkBordersTest, PassesOverAFolderThatMayNotBeRead)
{
    TemporaryTree tree;
    tree.addFile("open/file", 3000);
    tree.addFile("locked/file", 3000);
    tree.addFile("listed/file", 3000);
    ASSERT_EQ(::chmod(tree.path("locked").bytes().constData(), 0000), 0);
    ASSERT_EQ(::chmod(tree.path("listed").bytes().constData(), 0444), 0);

    withoutOverridingModes([&] {
        WalkPool alone(0, 0);
        EXPECT_EQ(measureTree(tree.path(), {}, alone).valueOr({}).fileCount, 1);
        EXPECT_EQ(measureTree(tree.path("locked"), {}, alone).valueOr({-1, -1}), (TreeSize{0, 0}));
    });
    ::chmod(tree.path("locked").bytes().constData(), 0755);
    ::chmod(tree.path("listed").bytes().constData(), 0755);

    EXPECT_EQ(measure(tree.path()).fileCount, 3);
}

TEST(TreeWalkBordersTest, EntersNoOtherFileSystemBelowItsRoot)
{
    TemporaryTree tree;
    tree.addFile("own/file", 3000);
    tree.addFile("covered/hidden below the mount", 3000);

    const bool isPermitted = withPrivateMounts([&] {
        const QByteArray covered = tree.path("covered").bytes();
        ASSERT_EQ(::mount("tmpfs", covered.constData(), "tmpfs", 0, nullptr), 0);
        tree.addFile("covered/folder/on the other file system", 3000);

        EXPECT_EQ(measure(tree.path()).fileCount, 1);
        EXPECT_EQ(measure(tree.path("covered")).fileCount, 1) << "The root itself may be a mount point.";
    });
    QUILLMERE_NEED(!isPermitted ? QByteArray("This user may not mount.") : QByteArray());
}

TEST(TreeWalkBordersTest, EntersNeitherFoldersNorFilesMountedFromTheSameFileSystem)
{
    TemporaryTree tree;
    tree.addFile("own/file", 3000);
    tree.addFolder("own/mirror");
    tree.addFile("own/mask", 0);

    const bool isPermitted = withPrivateMounts([&] {
        ASSERT_TRUE(bindMount(tree.path(), tree.path("own/mirror")));
        ASSERT_TRUE(bindMount(tree.path("own/file"), tree.path("own/mask")));

        EXPECT_EQ(measure(tree.path()).fileCount, 1);
    });
    QUILLMERE_NEED(!isPermitted ? QByteArray("This user may not mount.") : QByteArray());
    EXPECT_EQ(measure(tree.path()).fileCount, 2);
}

TEST(TreeWalkBordersTest, CountsAllWhereTheEndOfAFolderIsNotMarked)
{
    TemporaryTree tree;
    tree.addFolder("memory");

    const bool isPermitted = withPrivateMounts([&] {
        const FilePath memory = tree.path("memory");
        ASSERT_EQ(::mount("tmpfs", memory.bytes().constData(), "tmpfs", 0, nullptr), 0);
        for (int i = 0; i < 3'000; ++i)
            tree.addFile("memory/folder" + QByteArray::number(i % 7) + "/file" + QByteArray::number(i), i);

        EXPECT_EQ(measure(memory).fileCount, 3'000);
        EXPECT_EQ(measure(memory), sizeByFind(memory));
    });
    QUILLMERE_NEED(!isPermitted ? QByteArray("This user may not mount.") : QByteArray());
}

TEST(TreeWalkBordersTest, AsksForTheTypeWhereTheFileSystemDoesNotTellIt)
{
    TemporaryTree tree;
    tree.addFolder("mounted");
    const QString image = QString::fromUtf8(tree.path("image").bytes());
    ASSERT_EQ(runProgram(u"truncate"_qs, {u"-s"_qs, u"8M"_qs, image}), 0);
    QUILLMERE_NEED(runProgram(u"mkfs.ext4"_qs, {u"-q"_qs, u"-O"_qs, u"^filetype,^has_journal"_qs, image}) != 0
                       ? QByteArray("No program makes such a file system here.")
                       : QByteArray());

    bool isMounted = false;
    const bool isPermitted = withPrivateMounts([&] {
        const FilePath mounted = tree.path("mounted");
        isMounted = runProgram(u"mount"_qs, {u"-o"_qs, u"loop"_qs, image, QString::fromUtf8(mounted.bytes())}) == 0;
        if (!isMounted)
            return;
        tree.addFile("mounted/folder/file", 3000);
        tree.addFile("mounted/file", 3000);
        tree.addLink("mounted/link", "folder");
        ASSERT_EQ(::mkfifo(tree.path("mounted/fifo").bytes().constData(), 0600), 0);

        EXPECT_EQ(measure(mounted).fileCount, 2);
        EXPECT_EQ(measure(mounted), sizeByFind(mounted));
    });
    QUILLMERE_NEED(!isPermitted || !isMounted ? QByteArray("This user may not mount an image.") : QByteArray());
}
