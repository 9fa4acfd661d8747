#include "Platform/Linux/Removal/TrashInfo.h"
#include "Platform/Linux/Removal/VolumesTest.h"

#include <cstdio>

#include <sys/stat.h>
#include <unistd.h>

using namespace Quillmere;

namespace {

/// Which Trash takes an item of a volume.
class TrashVolumeTest : public VolumesTest
{
protected:
    QByteArray ownTrash() const { return "volume/.Trash-" + QByteArray::number(::geteuid()); }
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
