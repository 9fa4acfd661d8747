#include "Platform/Linux/Removal/TracedProgram.h"
#include "Platform/Linux/Removal/TrashInfo.h"
#include "Platform/Linux/Removal/VolumesTest.h"

#include <cstdio>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/xattr.h>
#include <unistd.h>

using namespace Quillmere;

namespace {

/// What no Trash of its own volume can take is copied into the one of the home.
class TrashByCopyTest : public VolumesTest
{
};

} // namespace

TEST_F(TrashByCopyTest, CopiesFromMemoryIntoTheHomeTrash)
{
    onMemory("size=64m", [&] {
        home.addFile("memory/tree/folder/file", "text");
        home.addLink("memory/tree/link", "folder/file");
        home.addFolder("memory/tree/empty");
        ::mkfifo(home.path("memory/tree/fifo").bytes().constData(), 0640);
        ::chmod(home.path("memory/tree/folder/file").bytes().constData(), 0751);
        ::chmod(home.path("memory/tree/empty").bytes().constData(), 0500);

        const auto trashed = trash(home.path("memory/tree"));

        ASSERT_TRUE(trashed) << qPrintable(trashed.failure().detail);
        EXPECT_EQ(trashed.value(), home.trash().appending("files/tree"));
        EXPECT_FALSE(home.exists("memory/tree"));
        const QByteArray copy = "home/.local/share/Trash/files/tree";
        EXPECT_EQ(home.names(copy), (QList<QByteArray>{"empty", "fifo", "folder", "link"}));
        EXPECT_EQ(home.contents(copy + "/link"), "text");
        EXPECT_EQ(home.mode(copy + "/folder/file"), 0751u);
        EXPECT_EQ(home.mode(copy + "/empty"), 0500u);
        EXPECT_EQ(TrashInfo::fromText(home.contents("home/.local/share/Trash/info/tree.trashinfo"))->path,
                  home.path("memory/tree").bytes());
        EXPECT_EQ(home.names("home/.local/share/Trash"), (QList<QByteArray>{"files", "info"}));
    });
}

TEST_F(TrashByCopyTest, KeepsHolesTimesAndExtendedAttributesOfACopy)
{
    onMemory("size=64m", [&] {
        const QByteArray file = home.addFile("memory/sparse", "start").bytes();
        ASSERT_EQ(::truncate(file.constData(), 512 * 1024 * 1024), 0);
        const timespec times[2] = {{1000, 0}, {2000, 123456789}};
        // Attributes of the user on memory came late to the kernel; what the machine keeps must be there afterwards.
        const bool keepsAttributes = ::setxattr(file.constData(), "user.quillmere", "x", 1, 0) == 0
            && ::setxattr(home.path("home").bytes().constData(), "user.quillmere", "x", 1, 0) == 0;
        ASSERT_EQ(::utimensat(AT_FDCWD, file.constData(), times, 0), 0);

        const auto trashed = trash(FilePath(file));

        ASSERT_TRUE(trashed) << qPrintable(trashed.failure().detail);
        struct stat copy = {};
        ASSERT_EQ(::stat(trashed.value().bytes().constData(), &copy), 0);
        EXPECT_EQ(copy.st_size, 512 * 1024 * 1024);
        EXPECT_LT(copy.st_blocks * 512, 1024 * 1024);
        EXPECT_EQ(copy.st_mtim.tv_sec, 2000);
        EXPECT_EQ(copy.st_mtim.tv_nsec, 123456789);
        char value = 0;
        if (keepsAttributes) {
            EXPECT_EQ(::getxattr(trashed.value().bytes().constData(), "user.quillmere", &value, 1), 1);
        }
    });
}

TEST_F(TrashByCopyTest, CopiesAFolderDeeperThanDescriptorsReach)
{
    onMemory("size=256m,nr_inodes=100000", [&] {
        home.addFolder("memory/deep");
        ASSERT_EQ(::chdir(home.path("memory/deep").bytes().constData()), 0);
        for (int level = 0; level < 10'000; ++level) {
            ASSERT_EQ(::mkdir("d", 0777), 0);
            ASSERT_EQ(::chdir("d"), 0);
        }
        writeFile(FilePath("file"), "bottom");
        ASSERT_EQ(::chdir("/"), 0);

        const auto trashed = trash(home.path("memory/deep"));

        ASSERT_TRUE(trashed) << qPrintable(trashed.failure().detail);
        EXPECT_FALSE(home.exists("memory/deep"));
        ASSERT_EQ(::chdir(trashed.value().bytes().constData()), 0);
        for (int level = 0; level < 10'000; ++level)
            ASSERT_EQ(::chdir("d"), 0);
        EXPECT_EQ(contentsOf(FilePath("file")), "bottom");
        ASSERT_EQ(::chdir("/"), 0);
    });
}

TEST_F(TrashByCopyTest, LeavesEverythingAsItWasWhenTheHomeHasNoRoom)
{
    onMemory("size=64m", [&] {
        ASSERT_TRUE(mountTmpfs(home.path("home"), "size=1m"));
        const FilePath file = home.addFile("memory/item/big", QByteArray(4 * 1024 * 1024, 'x'));

        const auto trashed = trash(home.path("memory/item"));

        ASSERT_FALSE(trashed);
        EXPECT_EQ(trashed.failure().kind, Failure::Kind::NoSpace);
        // Seen before the copying, so it is the item, and no file of it, that has no room.
        EXPECT_EQ(trashed.failure().path, home.path("memory/item"));
        EXPECT_EQ(contentsOf(file).size(), 4 * 1024 * 1024);
        EXPECT_EQ(home.names("home/.local/share/Trash/files"), QList<QByteArray>());
        EXPECT_EQ(home.names("home/.local/share/Trash/info"), QList<QByteArray>());
    });
}

TEST_F(TrashByCopyTest, TakesTheCopyBackWhenTheDiskFillsUpHalfWay)
{
    onMemory("size=64m", [&] {
        // Room for the bytes by the volume's own count, but not for so many files.
        ASSERT_TRUE(mountTmpfs(home.path("home"), "size=32m,nr_inodes=40"));
        for (int file = 0; file < 100; ++file)
            home.addFile("memory/many/" + QByteArray::number(file), "x");

        const auto trashed = trash(home.path("memory/many"));

        ASSERT_FALSE(trashed);
        EXPECT_EQ(trashed.failure().kind, Failure::Kind::NoSpace);
        EXPECT_EQ(home.names("memory/many").size(), 100);
        EXPECT_EQ(home.names("home/.local/share/Trash/files"), QList<QByteArray>());
        EXPECT_EQ(home.names("home/.local/share/Trash/info"), QList<QByteArray>());
        EXPECT_EQ(home.names("home/.local/share/Trash"), (QList<QByteArray>{"files", "info"}));
    });
}

TEST_F(TrashByCopyTest, LeavesTheItemWhenNotEvenItsInfoCanBeWritten)
{
    inMountNamespace([&] {
        ASSERT_TRUE(mountTmpfs(home.path("home"), "size=64k"));
        const FilePath item = home.addFile("home/a", "x");
        home.addFolder("home/.local/share/Trash/files");
        home.addFolder("home/.local/share/Trash/info");
        home.addFile("home/filler", QByteArray(1024 * 1024, 'x'));

        const auto trashed = trash(item);

        ASSERT_FALSE(trashed);
        EXPECT_EQ(trashed.failure().kind, Failure::Kind::NoSpace);
        EXPECT_TRUE(itemExists(item));
        EXPECT_EQ(home.names("home/.local/share/Trash/info"), QList<QByteArray>());
    });
}

TEST_F(TrashByCopyTest, NamesAReadOnlyHomeAndLeavesTheItem)
{
    onMemory("size=1m", [&] {
        ASSERT_TRUE(mountTmpfs(home.path("home"), "size=1m"));
        const FilePath inHome = home.addFile("home/a", "x");
        ASSERT_EQ(::mount(nullptr, home.path("home").bytes().constData(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr), 0);
        const FilePath inMemory = home.addFile("memory/b", "x");

        for (const FilePath &item : {inHome, inMemory}) {
            const auto trashed = trash(item);
            ASSERT_FALSE(trashed);
            EXPECT_EQ(trashed.failure().kind, Failure::Kind::ReadOnly);
            EXPECT_TRUE(itemExists(item));
        }
    });
}

TEST_F(TrashByCopyTest, NeitherCopiesNorDeletesWhatCannotBeTakenAway)
{
    onMemory("size=1m", [&] {
        // Too large for the home, which nobody notices who does not even try to copy.
        ASSERT_TRUE(mountTmpfs(home.path("home"), "size=256k"));
        const FilePath item = home.addFile("memory/a", QByteArray(512 * 1024, 'x'));
        ASSERT_EQ(::mount(nullptr, home.path("memory").bytes().constData(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr),
                  0);

        const auto trashed = trash(item);

        ASSERT_FALSE(trashed);
        EXPECT_EQ(trashed.failure().kind, Failure::Kind::ReadOnly);
        EXPECT_TRUE(itemExists(item));
        EXPECT_EQ(home.names("home/.local/share/Trash/files"), QList<QByteArray>());
    });
}

TEST_F(TrashByCopyTest, DeletesNothingThatWasWrittenAfterItWasCopied)
{
    onMemory("size=1m", [&] {
        home.addFile("memory/item/changed", "old");
        home.addFile("memory/item/folder/untouched", "text");

        const Ending ending = runHeld(home, {"trash", home.path("memory/item").bytes()}, [&](int, long number) {
            if (number == SYS_syncfs) {
                home.addFile("memory/item/changed", "new contents");
                home.addFile("memory/item/folder/added", "added");
            }
            return true;
        });

        EXPECT_EQ(ending, Ending::Failed);
        EXPECT_EQ(home.contents("memory/item/changed"), "new contents");
        EXPECT_EQ(home.contents("memory/item/folder/added"), "added");
        EXPECT_FALSE(home.exists("memory/item/folder/untouched"));
        EXPECT_EQ(home.contents("home/.local/share/Trash/files/item/changed"), "old");
        EXPECT_EQ(home.contents("home/.local/share/Trash/files/item/folder/untouched"), "text");
    });
}

TEST_F(TrashByCopyTest, TakesNoFileThatHasTakenTheItemsPlaceBeforeTheCopy)
{
    onMemory("size=1m", [&] {
        const FilePath item = home.addFile("memory/item", "item");
        const FilePath other = home.addFile("memory/other", "other");
        bool exchanged = false;

        const Ending ending = runHeld(home, {"trash", item.bytes()}, [&](int, long number) {
            // The place of the copy is made right before it.
            if (number == SYS_mkdirat && home.exists("home/.local/share/Trash/quillmere-incoming") && !exchanged)
                exchanged = ::renameat2(AT_FDCWD, item.bytes().constData(), AT_FDCWD, other.bytes().constData(),
                                        RENAME_EXCHANGE)
                    == 0;
            return true;
        });

        ASSERT_TRUE(exchanged);
        EXPECT_EQ(ending, Ending::Failed);
        EXPECT_EQ(contentsOf(item), "other");
        EXPECT_EQ(contentsOf(other), "item");
        EXPECT_EQ(home.names("home/.local/share/Trash/files"), QList<QByteArray>());
        EXPECT_EQ(home.names("home/.local/share/Trash/info"), QList<QByteArray>());
    });
}

TEST_F(TrashByCopyTest, GivesUpTheCopyOfAFileThatIsBeingWritten)
{
    onMemory("size=8m", [&] {
        const FilePath file = home.addFile("memory/item/file", QByteArray(1024 * 1024, 'x'));
        home.addFile("memory/item/other", "text");
        int reads = 0;

        const Ending ending = runHeld(home, {"trash", home.path("memory/item").bytes()}, [&](int, long number) {
            if (number == SYS_pread64 && ++reads == 2)
                writeFile(file, QByteArray(1024 * 1024, 'y'));
            return true;
        });

        EXPECT_GE(reads, 2);
        EXPECT_EQ(ending, Ending::Failed);
        EXPECT_EQ(home.contents("memory/item/other"), "text");
        EXPECT_EQ(contentsOf(file), QByteArray(1024 * 1024, 'y'));
        EXPECT_EQ(home.names("home/.local/share/Trash/files"), QList<QByteArray>());
        EXPECT_EQ(home.names("home/.local/share/Trash/info"), QList<QByteArray>());
    });
}

TEST_F(TrashByCopyTest, LeavesAnItemInAStickyFolderThatIsNotOursToDelete)
{
    QUILLMERE_NEED(::geteuid() != 0 ? QByteArray("Only root can give a file to somebody else") : QByteArray());
    onMemory("size=1m,mode=1777", [&] {
        const FilePath item = home.addFile("memory/a", "x");
        inUnprivilegedChild(home.path(), [] {});
        for (const FilePath &foreign : {home.path("memory"), item})
            ASSERT_EQ(::chown(foreign.bytes().constData(), 12345, 12345), 0);
        inUnprivilegedChild({}, [&] {
            ASSERT_TRUE(itemExists(item));
            UserEnvironment nobody = home.environment();
            nobody.user = ::geteuid();

            const auto trashed = TrashCan(nobody).trash(item);

            ASSERT_FALSE(trashed);
            EXPECT_EQ(trashed.failure().kind, Failure::Kind::NoPermission);
            EXPECT_EQ(home.names("home/.local/share/Trash/files"), QList<QByteArray>());
        });
        EXPECT_TRUE(itemExists(item));
    });
}

TEST_F(TrashByCopyTest, CopiesBetweenTwoMountsOfTheHomesFileSystem)
{
    inMountNamespace([&] {
        home.addFile("other/a", "text");
        home.addFolder("bound");
        ASSERT_EQ(::mount(home.path("other").bytes().constData(), home.path("bound").bytes().constData(), nullptr,
                          MS_BIND, nullptr),
                  0);

        const auto trashed = trash(home.path("bound/a"));

        ASSERT_TRUE(trashed) << qPrintable(trashed.failure().detail);
        EXPECT_EQ(trashed.value(), home.trash().appending("files/a"));
        EXPECT_EQ(contentsOf(trashed.value()), "text");
        EXPECT_EQ(home.names("other"), QList<QByteArray>());
    });
}

TEST_F(TrashByCopyTest, ClearsAwayWhatAKilledCopyHasLeftAlsoWhenItMerelyMoves)
{
    home.addFile("home/.local/share/Trash/quillmere-incoming/dead/item/part");

    ASSERT_TRUE(trash(home.addFile("home/a")));

    EXPECT_EQ(home.names("home/.local/share/Trash"), (QList<QByteArray>{"files", "info"}));
}

TEST_F(TrashByCopyTest, ClearsAwayWhatAKilledCopyHasLeftButNotACopyUnderWay)
{
    onMemory("size=1m", [&] {
        home.addFile("home/.local/share/Trash/quillmere-incoming/dead/item/part");
        home.addFolder("home/.local/share/Trash/quillmere-incoming/alive");
        const int alive = ::open(home.path("home/.local/share/Trash/quillmere-incoming/alive").bytes().constData(),
                                 O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        ASSERT_EQ(::flock(alive, LOCK_EX), 0);

        ASSERT_TRUE(trash(home.addFile("memory/a")));

        EXPECT_EQ(home.names("home/.local/share/Trash/quillmere-incoming"), QList<QByteArray>{"alive"});
        ::close(alive);
    });
}
