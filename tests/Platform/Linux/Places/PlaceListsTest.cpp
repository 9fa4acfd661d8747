#include "Fakes/PretendFileManager.h"
#include "Platform/Linux/Places/LinuxPlaces.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Quillmere;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// A disk, a list of places of one's own making, and the places as a program with these variables sees them.
struct ListsWorld
{
    std::shared_ptr<PretendFileManager> disk = std::make_shared<PretendFileManager>(pretendHome);
    QHash<QByteArray, QByteArray> variables;
    PlacesData data = PlacesData::builtIn();

    void add(const QByteArray &place, const QByteArray &holds = {}, const QString &name = {})
    {
        data.lists[u"Mine"_qs].append({PlacesData::Place::parse(place), name, holds, u"For this test."_qs});
    }

    void addVariable(const QByteArray &name, const QByteArray &usual)
    {
        data.variables.append({name, PlacesData::Place::parse(usual)});
    }

    [[nodiscard]] QList<FilePath> folders() const
    {
        const LinuxPlaces places(
            disk, [this](const char *name) { return variables.value(name); }, data);
        QList<FilePath> found;
        for (const PlaceEntry &entry : places.entriesBehind(u"Mine"_qs))
            found.append(entry.path);
        return found;
    }
};

} // namespace

TEST(PlaceListsTest, GivesWhatExistsInItsOrderAndUnderItsName)
{
    ListsWorld world;
    world.add("~/.zeta", {}, u"Zeta"_qs);
    world.add("~/.missing");
    world.add("/opt/alpha");
    world.disk->addFolder(FilePath("/opt/alpha"));
    world.disk->addFolder(pretendHome.appending(".zeta"));

    const LinuxPlaces places(
        world.disk, [](const char *) { return QByteArray(); }, world.data);
    EXPECT_THAT(
        places.entriesBehind(u"Mine"_qs),
        ElementsAre(PlaceEntry{u"Zeta"_qs, pretendHome.appending(".zeta")}, PlaceEntry{{}, FilePath("/opt/alpha")}));
    EXPECT_THAT(places.entriesBehind(u"Nobody's"_qs), IsEmpty());
}

TEST(PlaceListsTest, FillsInAnAsteriskInTheOrderOfTheNames)
{
    ListsWorld world;
    world.add("~/tools/*/cache*");
    for (const char *name : {"b/cache", "a/cache-2", "a/cache-1", "a/other"})
        world.disk->addFolder(pretendHome.appending("tools").appending(name));

    EXPECT_THAT(world.folders(),
                ElementsAre(pretendHome.appending("tools/a/cache-1"), pretendHome.appending("tools/a/cache-2"),
                            pretendHome.appending("tools/b/cache")));
}

TEST(PlaceListsTest, FillsInNoLinkThatLeadsElsewhere)
{
    ListsWorld world;
    world.add("~/tools/*/cache");
    world.add("~/tools/*");
    world.disk->addFolder(FilePath("/outside/cache"));
    world.disk->addLink(pretendHome.appending("tools/link"), FilePath("/outside"));
    world.disk->addFolder(pretendHome.appending("tools/real/cache"));

    EXPECT_THAT(world.folders(),
                ElementsAre(pretendHome.appending("tools/real/cache"), pretendHome.appending("tools/link"),
                            pretendHome.appending("tools/real")));
}

TEST(PlaceListsTest, PassesOverAFolderWithoutWhatItHasToHold)
{
    ListsWorld world;
    world.add("~/build", "trim.txt");
    world.disk->addFolder(pretendHome.appending("build"));
    EXPECT_THAT(world.folders(), IsEmpty());

    world.disk->addFile(pretendHome.appending("build/trim.txt"), 10);
    EXPECT_THAT(world.folders(), ElementsAre(pretendHome.appending("build")));
}

TEST(PlaceListsTest, NamesAFolderOnceWhateverLinksLeadToIt)
{
    ListsWorld world;
    world.add("~/real");
    world.add("~/link");
    world.disk->addFolder(pretendHome.appending("real"));
    world.disk->addLink(pretendHome.appending("link"), pretendHome.appending("real"));
    EXPECT_THAT(world.folders(), ElementsAre(pretendHome.appending("real")));
}

TEST(PlaceListsTest, FollowsAVariableAndTakesItsUsualPlaceWithoutIt)
{
    ListsWorld world;
    world.addVariable("$TOOL_HOME", "~/.tool");
    world.add("$TOOL_HOME/cache");
    world.disk->addFolder(pretendHome.appending(".tool/cache"));
    world.disk->addFolder(FilePath("/data/tool/cache"));
    EXPECT_THAT(world.folders(), ElementsAre(pretendHome.appending(".tool/cache")));

    world.variables["TOOL_HOME"] = "/data/tool";
    EXPECT_THAT(world.folders(), ElementsAre(FilePath("/data/tool/cache")));
}

TEST(PlaceListsTest, TakesTheUsualPlaceForAVariableThatIsEmptyRelativeOrTooWide)
{
    ListsWorld world;
    world.addVariable("$TOOL_HOME", "~/.tool");
    world.add("$TOOL_HOME/cache");
    world.disk->addFolder(pretendHome.appending(".tool/cache"));
    world.disk->addFolder(pretendHome.appending("Documents/cache"));
    world.disk->addFolder(pretendHome.appending("cache"));
    world.disk->addFolder(FilePath("/cache"));
    world.disk->addLink(pretendHome.appending("to-root"), FilePath("/"));
    world.disk->addLink(pretendHome.appending("one"), pretendHome.appending("two"));
    world.disk->addLink(pretendHome.appending("two"), pretendHome.appending("one"));

    for (const char *value : {"", "tool", "./tool", "/", "/home", "/home/ada", "/home/ada/Documents",
                              "/home/ada/to-root", "/home/ada/.tool/../Documents"}) {
        world.variables["TOOL_HOME"] = value;
        EXPECT_THAT(world.folders(), ElementsAre(pretendHome.appending(".tool/cache"))) << value;
    }
    world.variables["TOOL_HOME"] = "/home/ada/one";
    EXPECT_THAT(world.folders(), IsEmpty());
}

TEST(PlaceListsTest, LeavesOutARowWhoseBaseIsNowhere)
{
    ListsWorld world;
    world.data.variables.append({"$NOWHERE", std::nullopt});
    world.add("$NOWHERE/cache");
    world.add("$music");
    world.disk->addFolder(FilePath("/cache"));
    EXPECT_THAT(world.folders(), IsEmpty());
}

TEST(PlaceListsTest, KnowsTheUsersOwnFoldersUnderTheirNames)
{
    ListsWorld world;
    const QByteArray text = "XDG_MUSIC_DIR=\"$HOME/Lieder\"\n";
    world.disk->addFile(pretendHome.appending(".config/user-dirs.dirs"), text.size(), text);
    world.disk->addFolder(pretendHome.appending("Lieder/Bach"));
    world.add("$music");

    EXPECT_THAT(world.folders(), ElementsAre(pretendHome.appending("Lieder")));
    const LinuxPlaces places(world.disk, [](const char *) { return QByteArray(); });
    EXPECT_TRUE(places.reasonToKeep(pretendHome.appending("Lieder/Bach")).has_value());
}

TEST(PlaceListsTest, KnowsTheDriverForNtfsDisksByEitherOfItsNames)
{
    const auto disk = std::make_shared<PretendFileManager>(pretendHome);
    const LinuxPlaces places(
        disk, [](const char *) { return QByteArray(); }, PlacesData::builtIn());

    EXPECT_THAT(places.entriesBehind(u"NTFS Drivers"_qs), IsEmpty());
    disk->addFile(FilePath("/sbin/mount.ntfs-3g"), 1);
    EXPECT_THAT(places.entriesBehind(u"NTFS Drivers"_qs), ElementsAre(PlaceEntry{{}, FilePath("/sbin/mount.ntfs-3g")}));
    disk->addFile(FilePath("/usr/bin/ntfs-3g"), 1);
    EXPECT_THAT(
        places.entriesBehind(u"NTFS Drivers"_qs),
        ElementsAre(PlaceEntry{{}, FilePath("/usr/bin/ntfs-3g")}, PlaceEntry{{}, FilePath("/sbin/mount.ntfs-3g")}));
}
