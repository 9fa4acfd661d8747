#include "Fakes/PretendFileManager.h"
#include "Platform/Linux/Places/LinuxPlaces.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Quillmere;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const FilePath home("/home/ada");

/// A disk, a list of places of one's own making, and the places as a program with these variables sees them.
struct World
{
    std::shared_ptr<PretendFileManager> disk = std::make_shared<PretendFileManager>(home);
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
    World world;
    world.add("~/.zeta", {}, u"Zeta"_qs);
    world.add("~/.missing");
    world.add("/opt/alpha");
    world.disk->addFolder(FilePath("/opt/alpha"));
    world.disk->addFolder(home.appending(".zeta"));

    const LinuxPlaces places(
        world.disk, [](const char *) { return QByteArray(); }, world.data);
    EXPECT_THAT(places.entriesBehind(u"Mine"_qs),
                ElementsAre(PlaceEntry{u"Zeta"_qs, home.appending(".zeta")}, PlaceEntry{{}, FilePath("/opt/alpha")}));
    EXPECT_THAT(places.entriesBehind(u"Nobody's"_qs), IsEmpty());
}

TEST(PlaceListsTest, FillsInAnAsteriskInTheOrderOfTheNames)
{
    World world;
    world.add("~/tools/*/cache*");
    for (const char *name : {"b/cache", "a/cache-2", "a/cache-1", "a/other"})
        world.disk->addFolder(home.appending("tools").appending(name));

    EXPECT_THAT(world.folders(),
                ElementsAre(home.appending("tools/a/cache-1"), home.appending("tools/a/cache-2"),
                            home.appending("tools/b/cache")));
}

TEST(PlaceListsTest, FillsInNoLinkThatLeadsElsewhere)
{
    World world;
    world.add("~/tools/*/cache");
    world.add("~/tools/*");
    world.disk->addFolder(FilePath("/outside/cache"));
    world.disk->addLink(home.appending("tools/link"), FilePath("/outside"));
    world.disk->addFolder(home.appending("tools/real/cache"));

    EXPECT_THAT(
        world.folders(),
        ElementsAre(home.appending("tools/real/cache"), home.appending("tools/link"), home.appending("tools/real")));
}

TEST(PlaceListsTest, PassesOverAFolderWithoutWhatItHasToHold)
{
    World world;
    world.add("~/build", "trim.txt");
    world.disk->addFolder(home.appending("build"));
    EXPECT_THAT(world.folders(), IsEmpty());

    world.disk->addFile(home.appending("build/trim.txt"), 10);
    EXPECT_THAT(world.folders(), ElementsAre(home.appending("build")));
}

TEST(PlaceListsTest, NamesAFolderOnceWhateverLinksLeadToIt)
{
    World world;
    world.add("~/real");
    world.add("~/link");
    world.disk->addFolder(home.appending("real"));
    world.disk->addLink(home.appending("link"), home.appending("real"));
    EXPECT_THAT(world.folders(), ElementsAre(home.appending("real")));
}

TEST(PlaceListsTest, FollowsAVariableAndTakesItsUsualPlaceWithoutIt)
{
    World world;
    world.addVariable("$TOOL_HOME", "~/.tool");
    world.add("$TOOL_HOME/cache");
    world.disk->addFolder(home.appending(".tool/cache"));
    world.disk->addFolder(FilePath("/data/tool/cache"));
    EXPECT_THAT(world.folders(), ElementsAre(home.appending(".tool/cache")));

    world.variables["TOOL_HOME"] = "/data/tool";
    EXPECT_THAT(world.folders(), ElementsAre(FilePath("/data/tool/cache")));
}

TEST(PlaceListsTest, TakesTheUsualPlaceForAVariableThatIsEmptyRelativeOrTooWide)
{
    World world;
    world.addVariable("$TOOL_HOME", "~/.tool");
    world.add("$TOOL_HOME/cache");
    world.disk->addFolder(home.appending(".tool/cache"));
    world.disk->addFolder(home.appending("Documents/cache"));
    world.disk->addFolder(home.appending("cache"));
    world.disk->addFolder(FilePath("/cache"));
    world.disk->addLink(home.appending("to-root"), FilePath("/"));
    world.disk->addLink(home.appending("one"), home.appending("two"));
    world.disk->addLink(home.appending("two"), home.appending("one"));

    for (const char *value : {"", "tool", "./tool", "/", "/home", "/home/ada", "/home/ada/Documents",
                              "/home/ada/to-root", "/home/ada/.tool/../Documents"}) {
        world.variables["TOOL_HOME"] = value;
        EXPECT_THAT(world.folders(), ElementsAre(home.appending(".tool/cache"))) << value;
    }
    world.variables["TOOL_HOME"] = "/home/ada/one";
    EXPECT_THAT(world.folders(), IsEmpty());
}

TEST(PlaceListsTest, LeavesOutARowWhoseBaseIsNowhere)
{
    World world;
    world.data.variables.append({"$NOWHERE", std::nullopt});
    world.add("$NOWHERE/cache");
    world.add("$music");
    world.disk->addFolder(FilePath("/cache"));
    EXPECT_THAT(world.folders(), IsEmpty());
}

TEST(PlaceListsTest, KnowsTheUsersOwnFoldersUnderTheirNames)
{
    World world;
    const QByteArray text = "XDG_MUSIC_DIR=\"$HOME/Lieder\"\n";
    world.disk->addFile(home.appending(".config/user-dirs.dirs"), text.size(), text);
    world.disk->addFolder(home.appending("Lieder/Bach"));
    world.add("$music");

    EXPECT_THAT(world.folders(), ElementsAre(home.appending("Lieder")));
    const LinuxPlaces places(world.disk, [](const char *) { return QByteArray(); });
    EXPECT_TRUE(places.reasonToKeep(home.appending("Lieder/Bach")).has_value());
}

TEST(PlaceListsTest, KnowsTheDriverForNtfsDisksByEitherOfItsNames)
{
    const auto disk = std::make_shared<PretendFileManager>(home);
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
