#include "Platform/Linux/Files/LinuxFileManager.h"
#include "Platform/Linux/ChildProcess.h"
#include "Platform/Linux/Removal/TracedProgram.h"
#include "Platform/Linux/TemporaryHome.h"

#include <gmock/gmock.h>

#include <map>

#include <fcntl.h>
#include <pwd.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Quillmere;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class LinuxFileManagerTest : public testing::Test
{
protected:
    TemporaryHome home;
    LinuxFileManager files = LinuxFileManager(home.environment());
};

UserEnvironment environmentWith(const std::map<QByteArray, QByteArray> &variables, uid_t user)
{
    return UserEnvironment::of(user, [&](const char *name) {
        const auto found = variables.find(name);
        return found == variables.end() ? QByteArray() : found->second;
    });
}

dev_t volumeOf(const FilePath &path)
{
    struct stat status = {};
    return ::stat(path.bytes().constData(), &status) == 0 ? status.st_dev : 0;
}

} // namespace

TEST(UserEnvironmentTest, TakesAbsoluteLocationsFromItsVariables)
{
    const auto environment
        = environmentWith({{"HOME", "/h/ada/"}, {"XDG_DATA_HOME", "/data//x"}, {"TMPDIR", "/scratch"}}, 7);

    EXPECT_EQ(environment.home, FilePath("/h/ada"));
    EXPECT_EQ(environment.dataHome, FilePath("/data/x"));
    EXPECT_EQ(environment.temporary, FilePath("/scratch"));
    EXPECT_EQ(environment.user, 7u);
}

TEST(UserEnvironmentTest, TakesEmptyAndRelativeLocationsForNotSet)
{
    for (const QByteArray &value : {QByteArray(), QByteArray("relative/folder")}) {
        const auto environment = environmentWith({{"HOME", value}, {"XDG_DATA_HOME", value}, {"TMPDIR", value}}, 0);

        EXPECT_EQ(environment.home, FilePath(::getpwuid(0)->pw_dir));
        EXPECT_EQ(environment.dataHome, environment.home.appending(".local/share"));
        EXPECT_EQ(environment.temporary, FilePath("/tmp"));
    }
}

TEST_F(LinuxFileManagerTest, WorksForNoHomeThatIsNotThereOrIsTheRoot)
{
    home.addLink("link", "home");
    home.addLink("dangling", "nowhere");
    home.addFile("file");
    const auto isHome = [](const FilePath &folder) { return environmentWith({{"HOME", folder.bytes()}}, 0).hasHome(); };

    EXPECT_TRUE(isHome(home.path("home")));
    EXPECT_TRUE(isHome(home.path("link")));
    for (const FilePath &none : {home.path("nowhere"), home.path("nowhere/at/all"), home.path("dangling"),
                                 home.path("file"), FilePath("/"), FilePath("//.")})
        EXPECT_FALSE(isHome(none)) << none.bytes().constData();
}

TEST_F(LinuxFileManagerTest, NamesTheStandardFolders)
{
    EXPECT_EQ(files.homeDirectory(), home.path("home"));
    EXPECT_EQ(files.temporaryDirectory(), home.path("tmp"));
    EXPECT_EQ(files.applicationSupportDirectory(), home.path("home/Library/Application Support"));
}

TEST_F(LinuxFileManagerTest, FollowsLinksToSeeWhetherSomethingExists)
{
    home.addFile("folder/file");
    home.addLink("good", "folder/file");
    home.addLink("dangling", "nowhere");
    home.addLink("loop", "loop");
    home.addLink("above", "folder");

    EXPECT_TRUE(files.fileExists(home.path("folder")));
    EXPECT_TRUE(files.fileExists(home.path("good")));
    EXPECT_TRUE(files.fileExists(home.path("above/file")));
    EXPECT_TRUE(files.fileExists(FilePath("/")));
    for (const char *missing : {"dangling", "loop", "none", "folder/file/below"})
        EXPECT_FALSE(files.fileExists(home.path(missing))) << missing;
    EXPECT_FALSE(files.fileExists(FilePath()));
    EXPECT_FALSE(files.fileExists(home.path(QByteArray("folder\0x", 8))));
}

TEST_F(LinuxFileManagerTest, DescribesTheItemItselfAndNotALinksTarget)
{
    home.addFile("file", "12345");
    home.addLink("link", "file");
    ::mkfifo(home.path("fifo").bytes().constData(), 0600);

    EXPECT_EQ(files.attributesOfItem(home.path("file")).value().type, EntryKind::Regular);
    EXPECT_EQ(files.attributesOfItem(home.path("file")).value().size, 5);
    EXPECT_EQ(files.attributesOfItem(home.path("link")).value().type, EntryKind::SymbolicLink);
    EXPECT_EQ(files.attributesOfItem(home.path("home")).value().type, EntryKind::Directory);
    EXPECT_EQ(files.attributesOfItem(home.path("fifo")).value().type, EntryKind::Other);
    EXPECT_EQ(files.attributesOfItem(FilePath("/")).value().type, EntryKind::Directory);
    EXPECT_EQ(files.attributesOfItem(home.path("none")).failure().kind, Failure::Kind::NotFound);
}

TEST_F(LinuxFileManagerTest, KeepsTheSizeOnDiskApartFromTheLength)
{
    const QByteArray sparse = home.addFile("sparse", "x").bytes();
    ASSERT_EQ(::truncate(sparse.constData(), 1 << 30), 0);

    const auto attributes = files.attributesOfItem(FilePath(sparse)).value();

    EXPECT_EQ(attributes.size, 1 << 30);
    EXPECT_LT(attributes.allocatedSize, 1 << 20);
}

TEST_F(LinuxFileManagerTest, GivesTheTimeOfTheLastChangeInUtc)
{
    const FilePath file = home.addFile("file");
    const timespec times[2] = {{0, 0}, {1'700'000'000, 250'000'000}};
    ASSERT_EQ(::utimensat(AT_FDCWD, file.bytes().constData(), times, 0), 0);

    const QDateTime modified = files.attributesOfItem(file).value().modified;

    EXPECT_EQ(modified.toMSecsSinceEpoch(), 1'700'000'000'250);
    EXPECT_EQ(modified.timeSpec(), Qt::UTC);
}

TEST_F(LinuxFileManagerTest, TellsTheUsersOwnFromOthers)
{
    UserEnvironment other = home.environment();
    other.user = home.environment().user + 1;
    const FilePath file = home.addFile("file");

    EXPECT_TRUE(files.attributesOfItem(file).value().isOwnedByUser);
    EXPECT_FALSE(LinuxFileManager(other).attributesOfItem(file).value().isOwnedByUser);
}

TEST_F(LinuxFileManagerTest, ResolvesEveryLinkOfALocation)
{
    home.addFile("d/e/f");
    home.addLink("absolute", home.path("d").bytes());
    home.addLink("relative", "d/../d/./e");
    home.addLink("d/up", "../absolute/e");
    home.addLink("bytes\xff", "d");

    EXPECT_EQ(files.resolvingSymlinks(home.path("absolute/e/f")), home.path("d/e/f"));
    EXPECT_EQ(files.resolvingSymlinks(home.path("relative/f")), home.path("d/e/f"));
    EXPECT_EQ(files.resolvingSymlinks(home.path("d/up")), home.path("d/e"));
    EXPECT_EQ(files.resolvingSymlinks(home.path("bytes\xff/e")), home.path("d/e"));
    EXPECT_EQ(files.resolvingSymlinks(home.path("d/e/f/")), home.path("d/e/f"));
    EXPECT_EQ(files.resolvingSymlinks(FilePath("/")), FilePath("/"));
    EXPECT_EQ(files.resolvingSymlinks(FilePath("/..")), FilePath("/"));
}

TEST_F(LinuxFileManagerTest, TakesTheFolderAboveALinksTargetForItsParent)
{
    home.addFolder("a/b/c");
    home.addLink("link", "a/b/c");

    EXPECT_EQ(files.resolvingSymlinks(home.path("link/..")), home.path("a/b"));
}

TEST_F(LinuxFileManagerTest, ResolvesNothingWhereAComponentIsMissing)
{
    home.addFolder("d");
    home.addLink("link", "d");
    home.addLink("dangling", "none");

    EXPECT_EQ(files.resolvingSymlinks(home.path("link//none")), home.path("link/none"));
    EXPECT_EQ(files.resolvingSymlinks(home.path("link/../dangling/")), home.path("dangling"));
    EXPECT_EQ(files.resolvingSymlinks(FilePath("relative/./x")), FilePath("relative/x"));
}

TEST_F(LinuxFileManagerTest, ResolvesNothingInALoop)
{
    home.addLink("l1", "l2");
    home.addLink("l2", "l3");
    home.addLink("l3", "l1");

    EXPECT_EQ(files.resolvingSymlinks(home.path("l1")), home.path("l1"));
}

TEST_F(LinuxFileManagerTest, FollowsThirtyTwoLinksAndNoMore)
{
    home.addFile("link0");
    for (int link = 1; link <= 33; ++link)
        home.addLink("link" + QByteArray::number(link), "link" + QByteArray::number(link - 1));

    EXPECT_EQ(files.resolvingSymlinks(home.path("link32")), home.path("link0"));
    EXPECT_EQ(files.resolvingSymlinks(home.path("link33")), home.path("link33"));
}

TEST_F(LinuxFileManagerTest, MakesAFolderWithThoseAboveIt)
{
    const FilePath folder = home.path("new/a/b");

    EXPECT_EQ(files.createDirectory(folder, Intermediates::MustExist).failure().kind, Failure::Kind::NotFound);
    EXPECT_TRUE(files.createDirectory(folder, Intermediates::Create));
    EXPECT_TRUE(home.exists("new/a/b"));
    EXPECT_TRUE(files.createDirectory(folder, Intermediates::Create));
    EXPECT_EQ(files.createDirectory(folder, Intermediates::MustExist).failure().kind, Failure::Kind::AlreadyExists);
    EXPECT_TRUE(files.createDirectory(home.path("new/c"), Intermediates::MustExist));
}

TEST_F(LinuxFileManagerTest, TakesALinkToAFolderForAFolderButNoFile)
{
    home.addFolder("folder");
    home.addLink("link", "folder");
    home.addFile("file");

    EXPECT_TRUE(files.createDirectory(home.path("link"), Intermediates::Create));
    EXPECT_TRUE(files.createDirectory(home.path("link/below"), Intermediates::Create));
    EXPECT_EQ(files.createDirectory(home.path("file"), Intermediates::Create).failure().kind,
              Failure::Kind::AlreadyExists);
    EXPECT_FALSE(files.createDirectory(home.path("file/below"), Intermediates::Create));
    EXPECT_TRUE(home.exists("folder/below"));
}

TEST_F(LinuxFileManagerTest, ReadsFilesWholeWhateverTheirSize)
{
    const QByteArray large(300'000, 'x');

    EXPECT_EQ(files.contentsOfFile(home.addFile("large", large)).value(), large);
    EXPECT_EQ(files.contentsOfFile(home.addFile("empty", "")).value(), QByteArray());
    EXPECT_FALSE(files.contentsOfFile(FilePath("/proc/self/status")).value().isEmpty());
}

TEST_F(LinuxFileManagerTest, ReadsNeitherFoldersNorWhatWouldWait)
{
    ::mkfifo(home.path("fifo").bytes().constData(), 0600);

    EXPECT_EQ(files.contentsOfFile(home.path("home")).failure().kind, Failure::Kind::NotSupported);
    EXPECT_EQ(files.contentsOfFile(home.path("fifo")).failure().kind, Failure::Kind::NotSupported);
    EXPECT_EQ(files.contentsOfFile(home.path("none")).failure().kind, Failure::Kind::NotFound);
}

TEST_F(LinuxFileManagerTest, WritesInPlaceThroughLinksAndKeepsTheFile)
{
    const FilePath file = home.addFile("file", "old and longer");
    const FilePath link = home.addLink("link", "file");
    ::chmod(file.bytes().constData(), 0640);
    struct stat before = {};
    ::stat(file.bytes().constData(), &before);

    ASSERT_TRUE(files.writeFile(link, "new", WriteMode::InPlace));

    struct stat after = {};
    ::stat(file.bytes().constData(), &after);
    EXPECT_EQ(home.contents("file"), "new");
    EXPECT_EQ(after.st_ino, before.st_ino);
    EXPECT_EQ(home.mode("file"), 0640u);
    EXPECT_EQ(files.attributesOfItem(link).value().type, EntryKind::SymbolicLink);
}

TEST_F(LinuxFileManagerTest, ReplacesAtomicallyAndKeepsTheRights)
{
    const FilePath file = home.addFile("file", "old");
    ::chmod(file.bytes().constData(), 0640);
    ASSERT_EQ(::link(file.bytes().constData(), home.path("second").bytes().constData()), 0);

    ASSERT_TRUE(files.writeFile(file, "new", WriteMode::Atomic));

    EXPECT_EQ(home.contents("file"), "new");
    EXPECT_EQ(home.mode("file"), 0640u);
    EXPECT_EQ(home.contents("second"), "old");
    EXPECT_EQ(home.names({}), (QList<QByteArray>{"file", "home", "second"}));
}

TEST_F(LinuxFileManagerTest, ReplacesALinkByAFileWhenItWritesAtomically)
{
    home.addFile("file", "kept");
    const FilePath link = home.addLink("link", "file");

    ASSERT_TRUE(files.writeFile(link, "new", WriteMode::Atomic));

    EXPECT_EQ(files.attributesOfItem(link).value().type, EntryKind::Regular);
    EXPECT_EQ(home.contents("link"), "new");
    EXPECT_EQ(home.contents("file"), "kept");
}

TEST_F(LinuxFileManagerTest, MakesNewFilesWithTheUsualRights)
{
    const mode_t mask = ::umask(027);

    EXPECT_TRUE(files.writeFile(home.path("atomic"), "x", WriteMode::Atomic));
    EXPECT_TRUE(files.writeFile(home.path("inPlace"), "x", WriteMode::InPlace));

    ::umask(mask);
    EXPECT_EQ(home.mode("atomic"), 0640u);
    EXPECT_EQ(home.mode("inPlace"), 0640u);
}

TEST_F(LinuxFileManagerTest, NamesWhyAFileCannotBeWrittenAndLeavesNothingBehind)
{
    home.addFolder("folder");
    for (const WriteMode mode : {WriteMode::InPlace, WriteMode::Atomic}) {
        EXPECT_EQ(files.writeFile(home.path("none/file"), "x", mode).failure().kind, Failure::Kind::NotFound);
        EXPECT_FALSE(files.writeFile(home.path("folder"), "x", mode));
    }
    EXPECT_EQ(home.names({}), (QList<QByteArray>{"folder", "home"}));
}

TEST_F(LinuxFileManagerTest, KeepsTheOldFileAndNoTemporaryOneOnAFullDisk)
{
    QUILLMERE_NEED(whyNoMountNamespace());
    inMountNamespace([&] {
        ASSERT_TRUE(mountTmpfs(home.path("small"), "size=64k"));
        const FilePath file = home.addFile("small/file", "old");

        const auto written = files.writeFile(file, QByteArray(1 << 20, 'x'), WriteMode::Atomic);

        ASSERT_FALSE(written);
        EXPECT_EQ(written.failure().kind, Failure::Kind::NoSpace);
        EXPECT_EQ(home.contents("small/file"), "old");
        EXPECT_EQ(home.names("small"), QList<QByteArray>{"file"});
    });
}

TEST_F(LinuxFileManagerTest, MeasuresAndListsThroughTheSameSeam)
{
    home.addFile("tree/a", "x");
    home.addFile("tree/.b/c", "x");

    EXPECT_EQ(files.measureTree(home.path("tree"), {}).value().fileCount, 2);
    EXPECT_EQ(files.contentsOfDirectory(home.path("tree"), HiddenFiles::Skip).value(),
              (QList<DirectoryEntry>{{home.path("tree/a"), EntryKind::Regular}}));
}

TEST_F(LinuxFileManagerTest, RemovesForGoodAndFindsNothingTheSecondTime)
{
    home.addFile("home/.cache/item/file");

    EXPECT_TRUE(files.removeItem(home.path("home/.cache/item")));
    EXPECT_EQ(files.removeItem(home.path("home/.cache/item")).failure().kind, Failure::Kind::NotFound);
    EXPECT_FALSE(home.exists("home/.local"));
}

TEST_F(LinuxFileManagerTest, RefusesToRemoveBelowALink)
{
    home.addFile("kept/file");
    home.addLink("home/link", home.path("kept").bytes());

    EXPECT_EQ(files.removeItem(home.path("home/link/file")).failure().kind, Failure::Kind::LinkInPath);
    EXPECT_TRUE(home.exists("kept/file"));
    EXPECT_TRUE(files.removeItem(home.path("home/link")));
    EXPECT_TRUE(home.exists("kept/file"));
}

TEST_F(LinuxFileManagerTest, SynchronizesEachVolumeOnceAndAlsoThatOfWhatIsGone)
{
    QUILLMERE_NEED(whyNoMountNamespace());
    inMountNamespace([&] {
        ASSERT_TRUE(mountTmpfs(home.path("memory"), "size=1m"));
        ASSERT_TRUE(mountTmpfs(home.path("other"), "size=1m"));
        const dev_t ofHome = volumeOf(home.path("home"));
        const dev_t ofMemory = volumeOf(home.path("memory"));

        EXPECT_THAT(volumesSynchronized(home,
                                        {home.path("gone/folder/item").bytes(), home.path("home/item").bytes(),
                                         home.path("memory/a").bytes(), home.path("home/other").bytes(),
                                         home.path("memory/gone/b").bytes()}),
                    ElementsAre(ofHome, ofMemory));
        EXPECT_THAT(volumesSynchronized(home, {home.path("memory/a").bytes()}), ElementsAre(ofMemory));
    });
}

TEST_F(LinuxFileManagerTest, SynchronizesTheVolumeOnWhichAnItemStoodRatherThanTheItemsOwn)
{
    QUILLMERE_NEED(whyNoMountNamespace());
    inMountNamespace([&] {
        ASSERT_TRUE(mountTmpfs(home.path("memory"), "size=1m"));
        home.addLink("home/link", home.path("memory").bytes());

        EXPECT_THAT(volumesSynchronized(home, {home.path("home/link").bytes()}),
                    ElementsAre(volumeOf(home.path("home"))));
        EXPECT_THAT(volumesSynchronized(home, {home.path("home/link/item").bytes()}),
                    ElementsAre(volumeOf(home.path("memory"))));
    });
}

TEST_F(LinuxFileManagerTest, SynchronizesNothingForNothing)
{
    EXPECT_THAT(volumesSynchronized(home, {}), IsEmpty());
    EXPECT_THAT(volumesSynchronized(home, {"relative/item", ""}), IsEmpty());
}
