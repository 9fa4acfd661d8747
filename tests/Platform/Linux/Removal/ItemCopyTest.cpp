#include "Platform/Linux/ChildProcess.h"
#include "Platform/Linux/Files/LinuxFileManager.h"
#include "Platform/Linux/Need.h"
#include "Platform/Linux/TemporaryHome.h"

#include <gmock/gmock.h>

#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

using namespace Quillmere;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class ItemCopyTest : public testing::Test
{
protected:
    FilePath addBundle() const
    {
        const FilePath program = home.addFile("from/Quillmere.app/Contents/MacOS/quillmere", "program");
        ::chmod(program.bytes().constData(), 0755);
        home.addLink("from/Quillmere.app/Contents/current", "MacOS/quillmere");
        home.addFile("from/Quillmere.app/Contents/Resources/\xff odd", "odd");
        home.addFolder("to");
        return home.path("from/Quillmere.app");
    }

    TemporaryHome home;
    LinuxFileManager files = LinuxFileManager(home.environment());
    const FilePath destination = home.path("to/Quillmere.app");
};

} // namespace

TEST_F(ItemCopyTest, KeepsContentsRightsAndLinks)
{
    const FilePath bundle = addBundle();

    ASSERT_TRUE(files.copyItem(bundle, destination));

    EXPECT_EQ(home.contents("to/Quillmere.app/Contents/MacOS/quillmere"), "program");
    EXPECT_EQ(home.mode("to/Quillmere.app/Contents/MacOS/quillmere"), 0755u);
    EXPECT_EQ(home.contents("to/Quillmere.app/Contents/Resources/\xff odd"), "odd");
    char target[32] = {};
    const FilePath link = destination.appending("Contents/current");
    ASSERT_GT(::readlink(link.bytes().constData(), target, sizeof target - 1), 0);
    EXPECT_STREQ(target, "MacOS/quillmere");
    EXPECT_THAT(home.names("to"), ElementsAre("Quillmere.app"));
    EXPECT_TRUE(home.exists("from/Quillmere.app/Contents/MacOS/quillmere"));
}

TEST_F(ItemCopyTest, KeepsExtendedAttributes)
{
    const FilePath bundle = addBundle();
    const FilePath program = bundle.appending("Contents/MacOS/quillmere");
    const bool isKnown = ::setxattr(program.bytes().constData(), "user.quillmere", "kept", 4, 0) == 0;
    QUILLMERE_NEED(isKnown ? QByteArray() : "This file system knows no extended attributes.");

    ASSERT_TRUE(files.copyItem(bundle, destination));

    char value[8] = {};
    const FilePath copy = destination.appending("Contents/MacOS/quillmere");
    EXPECT_EQ(::getxattr(copy.bytes().constData(), "user.quillmere", value, sizeof value), 4);
    EXPECT_STREQ(value, "kept");
}

TEST_F(ItemCopyTest, RefusesToReplaceAnything)
{
    const FilePath bundle = addBundle();
    home.addLink("to/Quillmere.app", "nowhere");

    const Result<void> copied = files.copyItem(bundle, destination);

    ASSERT_FALSE(copied);
    EXPECT_EQ(copied.failure().kind, Failure::Kind::AlreadyExists);
    EXPECT_THAT(home.names("to"), ElementsAre("Quillmere.app"));
}

TEST_F(ItemCopyTest, NeedsTheFolderOfTheDestination)
{
    const FilePath bundle = addBundle();

    const Result<void> copied = files.copyItem(bundle, home.path("nowhere/Quillmere.app"));

    ASSERT_FALSE(copied);
    EXPECT_EQ(copied.failure().kind, Failure::Kind::NotFound);
    EXPECT_FALSE(home.exists("nowhere"));
}

TEST_F(ItemCopyTest, RefusesToCopyAFolderIntoItself)
{
    const FilePath bundle = addBundle();
    home.addLink("to/inside", "../from/Quillmere.app/Contents");

    for (const FilePath &place : {bundle.appending("copy.app"), home.path("to/inside/copy.app")}) {
        const Result<void> copied = files.copyItem(bundle, place);

        ASSERT_FALSE(copied);
        EXPECT_EQ(copied.failure().kind, Failure::Kind::NotSupported);
    }
    EXPECT_THAT(home.names("from/Quillmere.app"), ElementsAre("Contents"));
}

TEST_F(ItemCopyTest, LeavesNothingOfACopyThatFails)
{
    const FilePath bundle = addBundle();
    const FilePath closed = home.addFile("from/Quillmere.app/Contents/closed");

    inUnprivilegedChild(home.path(), [&] {
        EXPECT_EQ(::chmod(closed.bytes().constData(), 0), 0);
        const Result<void> copied = files.copyItem(bundle, destination);
        ASSERT_FALSE(copied);
        EXPECT_EQ(copied.failure().kind, Failure::Kind::NoPermission);
        EXPECT_THAT(home.names("to"), IsEmpty());
    });
}

TEST_F(ItemCopyTest, ClearsAwayWhatAKilledCopyHasLeft)
{
    const FilePath bundle = addBundle();
    home.addFile("to/.quillmere-unfinished-Quillmere.app/Contents/MacOS/half", "half");

    ASSERT_TRUE(files.copyItem(bundle, destination));

    EXPECT_THAT(home.names("to"), ElementsAre("Quillmere.app"));
    EXPECT_FALSE(home.exists("to/Quillmere.app/Contents/MacOS/half"));
}

TEST_F(ItemCopyTest, TakesABundleAwayWithNothingLeftBesideIt)
{
    addBundle();
    home.addFile("to/Quillmere.app/Contents/MacOS/old");
    home.addFile("to/.quillmere-unfinished-Quillmere.app/Contents/MacOS/half", "half");

    ASSERT_TRUE(files.removeItemAtOnce(destination));
    EXPECT_THAT(home.names("to"), IsEmpty());

    const Result<void> again = files.removeItemAtOnce(destination);
    ASSERT_FALSE(again);
    EXPECT_EQ(again.failure().kind, Failure::Kind::NotFound);
}

TEST_F(ItemCopyTest, TakesNothingAwayAtOnceThatMayNeverGo)
{
    const Result<void> removed = files.removeItemAtOnce(home.path("home"));

    ASSERT_FALSE(removed);
    EXPECT_EQ(removed.failure().kind, Failure::Kind::Protected);
    EXPECT_TRUE(home.exists("home"));
}

TEST_F(ItemCopyTest, LeavesNoHalfUnderTheNameOfABundleThatCannotGoWhole)
{
    QUILLMERE_NEED(whyNoMountNamespace());
    home.addFile("to/Quillmere.app/Contents/MacOS/old");
    home.addFolder("to/Quillmere.app/Contents/disk");
    inMountNamespace([&] {
        ASSERT_TRUE(mountTmpfs(home.path("to/Quillmere.app/Contents/disk"), "size=1m"));

        EXPECT_FALSE(files.removeItemAtOnce(destination));

        EXPECT_FALSE(itemExists(destination));
        EXPECT_THAT(home.names("to"), ElementsAre(".quillmere-unfinished-Quillmere.app"));
    });
}

TEST_F(ItemCopyTest, PutsABundleInThePlaceOfOneOfWhichSomethingCannotGo)
{
    QUILLMERE_NEED(whyNoMountNamespace());
    const FilePath bundle = addBundle();
    home.addFile("to/Quillmere.app/Contents/MacOS/old");
    home.addFolder("to/Quillmere.app/Contents/disk");
    inMountNamespace([&] {
        const FilePath disk = home.path("to/.quillmere-unfinished-Quillmere.app/Contents/disk");
        ASSERT_TRUE(mountTmpfs(home.path("to/Quillmere.app/Contents/disk"), "size=1m"));
        ASSERT_FALSE(files.removeItemAtOnce(destination));

        EXPECT_TRUE(files.copyItem(bundle, destination));
        EXPECT_EQ(home.contents("to/Quillmere.app/Contents/MacOS/quillmere"), "program");
        EXPECT_TRUE(files.removeItemAtOnce(destination));
        EXPECT_THAT(home.names("to"), ElementsAre(".quillmere-unfinished-Quillmere.app"));

        ASSERT_EQ(::umount(disk.bytes().constData()), 0);
        EXPECT_TRUE(files.copyItem(bundle, destination));
        EXPECT_THAT(home.names("to"), ElementsAre("Quillmere.app"));
    });
}

TEST_F(ItemCopyTest, LeavesABundleOfWhichNothingCanGoUnderItsName)
{
    QUILLMERE_NEED(whyNoMountNamespace());
    home.addFolder("to/Quillmere.app/disk");
    inMountNamespace([&] {
        ASSERT_TRUE(mountTmpfs(home.path("to/Quillmere.app/disk"), "size=1m"));

        EXPECT_FALSE(files.removeItemAtOnce(destination));

        EXPECT_THAT(home.names("to"), ElementsAre("Quillmere.app"));
    });
}

TEST_F(ItemCopyTest, NamesTheCopyWhereItIsTheCopyThatCannotBeMade)
{
    QUILLMERE_NEED(whyNoMountNamespace());
    const FilePath bundle = addBundle();
    inMountNamespace([&] {
        ASSERT_TRUE(mountTmpfs(home.path("to"), "size=1m,nr_inodes=4"));

        // Beside the top of the volume, room is for "Quillmere.app", "Contents" and one more.
        const Result<void> copied = files.copyItem(bundle, destination);

        ASSERT_FALSE(copied);
        EXPECT_EQ(copied.failure().kind, Failure::Kind::NoSpace);
        EXPECT_TRUE(copied.failure().path.isWithin(destination.appending("Contents")))
            << copied.failure().path.bytes().constData();
        ASSERT_TRUE(mountTmpfs(home.path("to"), "size=64k"));
        home.addFile("from/Quillmere.app/Contents/big", QByteArray(1 << 20, 'x'));
        const Result<void> cutShort = files.copyItem(bundle, destination);
        EXPECT_EQ(cutShort.failure().kind, Failure::Kind::NoSpace);
        EXPECT_TRUE(cutShort.failure().path.isWithin(destination)) << cutShort.failure().path.bytes().constData();
        ASSERT_TRUE(mountTmpfs(home.path("to"), "size=1m,mode=555"));
        ASSERT_EQ(::mount(nullptr, home.path("to").bytes().constData(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr), 0);
        EXPECT_EQ(files.copyItem(bundle, destination).failure().path, destination);
    });
}

TEST_F(ItemCopyTest, GivesTheGroupOfACopyNoMoreThanEverybodyWhereItChanges)
{
    QUILLMERE_NEED(::geteuid() != 0 ? QByteArray("Only root can give a file to somebody else") : QByteArray());
    const FilePath program = home.addFile("from/item/program");
    const FilePath secret = home.addFile("from/item/secret");
    home.addFolder("to");
    inUnprivilegedChild(home.path(), [] {});
    for (const FilePath &foreign : {program, secret})
        ASSERT_EQ(::chown(foreign.bytes().constData(), 12345, 12345), 0);
    ASSERT_EQ(::chmod(program.bytes().constData(), 04775), 0);
    ASSERT_EQ(::chmod(secret.bytes().constData(), 0664), 0);

    inUnprivilegedChild({}, [&] { EXPECT_TRUE(files.copyItem(home.path("from/item"), home.path("to/item"))); });

    EXPECT_EQ(home.mode("to/item/program"), 0755u);
    EXPECT_EQ(home.mode("to/item/secret"), 0644u);
}

TEST_F(ItemCopyTest, TellsWhatCanBeRead)
{
    const FilePath file = home.addFile("file");
    home.addLink("link", "file");
    home.addLink("dangling", "nowhere");

    EXPECT_TRUE(files.isReadableFile(file));
    EXPECT_TRUE(files.isReadableFile(home.path("link")));
    EXPECT_FALSE(files.isReadableFile(home.path("dangling")));
}
