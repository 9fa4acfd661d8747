#include "Platform/Linux/ChildProcess.h"
#include "Platform/Linux/Removal/TracedProgram.h"
#include "Platform/Linux/Removal/TrashCan.h"
#include "Platform/Linux/Removal/TrashInfo.h"
#include "Platform/Linux/TemporaryHome.h"

#include <gtest/gtest.h>

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

class TrashVolumeTest : public testing::Test
{
protected:
    void SetUp() override
    {
        QUILLMERE_NEED(whyNoMountNamespace());
        home.addFolder("backing");
    }

    UserEnvironment environment() const
    {
        UserEnvironment environment = home.environment();
        environment.user = ::geteuid(); // Inside a namespace of its own it may be another number.
        return environment;
    }
    Result<FilePath> trash(const FilePath &path) const { return TrashCan(environment()).trash(path); }
    /// With an empty volume on "volume".
    void onVolume(const std::function<void()> &body) const
    {
        inMountNamespace([&] {
            if (mountVolume(home.path("volume"), home.path("backing")))
                body();
        });
    }
    /// With memory as a volume on "memory", where there is never a trash.
    void onMemory(const char *options, const std::function<void()> &body) const
    {
        inMountNamespace([&] {
            if (mountTmpfs(home.path("memory"), options))
                body();
        });
    }
    QByteArray ownTrash() const { return "volume/.Trash-" + QByteArray::number(::geteuid()); }

    TemporaryHome home;
};

} // namespace

TEST_F(TrashVolumeTest, UsesTheVolumesOwnTrashAndRemembersTheRelativePath)
{
    onVolume([&] {
        const FilePath item = home.addFile("volume/folder/a b", "text");

        const auto trashed = trash(item);

        ASSERT_TRUE(trashed) << qPrintable(trashed.failure().detail);
        EXPECT_EQ(trashed.value(), home.path(ownTrash() + "/files/a b"));
        EXPECT_EQ(contentsOf(trashed.value()), "text");
        EXPECT_FALSE(itemExists(item));
        EXPECT_EQ(home.mode(ownTrash()), 0700u);
        EXPECT_EQ(TrashInfo::fromText(home.contents(ownTrash() + "/info/a b.trashinfo"))->path, "folder/a b");
    });
}

TEST_F(TrashVolumeTest, PrefersTheStickySharedTrash)
{
    onVolume([&] {
        ::mkdir(home.path("volume/.Trash").bytes().constData(), 0777);
        ::chmod(home.path("volume/.Trash").bytes().constData(), 01777);
        const QByteArray own = "volume/.Trash/" + QByteArray::number(::geteuid());

        const auto trashed = trash(home.addFile("volume/a"));

        ASSERT_TRUE(trashed) << qPrintable(trashed.failure().detail);
        EXPECT_EQ(trashed.value(), home.path(own + "/files/a"));
        EXPECT_EQ(home.mode(own), 0700u);
        EXPECT_EQ(TrashInfo::fromText(home.contents(own + "/info/a.trashinfo"))->path, "a");
    });
}

TEST_F(TrashVolumeTest, TakesNoSharedTrashThatIsNotStickyOrALink)
{
    onVolume([&] {
        ::mkdir(home.path("volume/.Trash").bytes().constData(), 0777);
        ::chmod(home.path("volume/.Trash").bytes().constData(), 0777);
        EXPECT_EQ(trash(home.addFile("volume/a")).value(), home.path(ownTrash() + "/files/a"));

        ::rmdir(home.path("volume/.Trash").bytes().constData());
        ::mkdir(home.path("volume/elsewhere").bytes().constData(), 0777);
        ::chmod(home.path("volume/elsewhere").bytes().constData(), 01777);
        home.addLink("volume/.Trash", "elsewhere");
        EXPECT_EQ(trash(home.addFile("volume/b")).value(), home.path(ownTrash() + "/files/b"));
        EXPECT_EQ(home.names("volume/elsewhere"), QList<QByteArray>());
    });
}

TEST_F(TrashVolumeTest, MakesItsOwnTrashPrivateBeforeUse)
{
    onVolume([&] {
        home.addFolder(ownTrash());
        ::chmod(home.path(ownTrash()).bytes().constData(), 0777);

        ASSERT_TRUE(trash(home.addFile("volume/a")));

        EXPECT_EQ(home.mode(ownTrash()), 0700u);
    });
}

TEST_F(TrashVolumeTest, TakesTheHomeTrashWhereTheOwnTrashIsALinkOrSomebodyElses)
{
    onVolume([&] {
        home.addFolder("volume/elsewhere");
        home.addLink(ownTrash(), "elsewhere");
        EXPECT_EQ(trash(home.addFile("volume/a", "A")).value(), home.trash().appending("files/a"));
        EXPECT_EQ(home.names("volume/elsewhere"), QList<QByteArray>());

        ::unlink(home.path(ownTrash()).bytes().constData());
        home.addFolder(ownTrash());
        if (::chown(home.path(ownTrash()).bytes().constData(), 12345, 12345) == 0) {
            EXPECT_EQ(trash(home.addFile("volume/b", "B")).value(), home.trash().appending("files/b"));
            EXPECT_EQ(home.contents("home/.local/share/Trash/files/b"), "B");
        }
    });
}

TEST_F(TrashVolumeTest, CopiesFromMemoryIntoTheHomeTrash)
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

TEST_F(TrashVolumeTest, KeepsHolesTimesAndExtendedAttributesOfACopy)
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

TEST_F(TrashVolumeTest, CopiesAFolderDeeperThanDescriptorsReach)
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

TEST_F(TrashVolumeTest, LeavesEverythingAsItWasWhenTheHomeHasNoRoom)
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

TEST_F(TrashVolumeTest, TakesTheCopyBackWhenTheDiskFillsUpHalfWay)
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

TEST_F(TrashVolumeTest, LeavesTheItemWhenNotEvenItsInfoCanBeWritten)
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

TEST_F(TrashVolumeTest, NamesAReadOnlyHomeAndLeavesTheItem)
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

TEST_F(TrashVolumeTest, NeitherCopiesNorDeletesWhatCannotBeTakenAway)
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

TEST_F(TrashVolumeTest, DeletesNothingThatWasWrittenAfterItWasCopied)
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

TEST_F(TrashVolumeTest, TakesNoFileThatHasTakenTheItemsPlaceBeforeTheCopy)
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

TEST_F(TrashVolumeTest, GivesUpTheCopyOfAFileThatIsBeingWritten)
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

TEST_F(TrashVolumeTest, LeavesAnItemInAStickyFolderThatIsNotOursToDelete)
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

TEST_F(TrashVolumeTest, CopiesBetweenTwoMountsOfTheHomesFileSystem)
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

TEST_F(TrashVolumeTest, RefusesAMountPointAndWhatHoldsOne)
{
    onVolume([&] {
        home.addFile("volume/kept");
        home.addFolder("home/holder/mounted");
        ASSERT_TRUE(mountTmpfs(home.path("home/holder/mounted"), "size=1m"));

        EXPECT_EQ(trash(home.path("volume")).failure().kind, Failure::Kind::Protected);
        EXPECT_EQ(trash(home.path("home/holder/mounted")).failure().kind, Failure::Kind::Protected);
        EXPECT_EQ(trash(home.path("home/holder")).failure().kind, Failure::Kind::Busy);
        EXPECT_TRUE(home.exists("volume/kept"));
        EXPECT_TRUE(home.exists("home/holder/mounted"));
    });
}

TEST_F(TrashVolumeTest, RefusesTheTrashesOfAVolumeAndTheirParts)
{
    onVolume([&] {
        ASSERT_TRUE(trash(home.addFile("volume/a")));
        const QByteArray shared = "volume/.Trash/" + QByteArray::number(::geteuid());
        home.addFile(shared + "/files/b/c");
        home.addFolder(shared + "/info");

        for (const QByteArray &part : {ownTrash(), ownTrash() + "/files", ownTrash() + "/info",
                                       QByteArray("volume/.Trash"), shared, shared + "/files", shared + "/info"})
            EXPECT_EQ(trash(home.path(part)).failure().kind, Failure::Kind::Protected) << part.constData();
        EXPECT_TRUE(home.exists(ownTrash() + "/files/a"));
        EXPECT_TRUE(trash(home.path(shared + "/files/b")));
        EXPECT_TRUE(trash(home.addFile("volume/below/.Trash/a")));
        EXPECT_TRUE(trash(home.path("volume/below/.Trash")));
    });
}

TEST_F(TrashVolumeTest, ClearsAwayWhatAKilledCopyHasLeftAlsoWhenItMerelyMoves)
{
    home.addFile("home/.local/share/Trash/quillmere-incoming/dead/item/part");

    ASSERT_TRUE(trash(home.addFile("home/a")));

    EXPECT_EQ(home.names("home/.local/share/Trash"), (QList<QByteArray>{"files", "info"}));
}

TEST_F(TrashVolumeTest, ClearsAwayWhatAKilledCopyHasLeftButNotACopyUnderWay)
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
