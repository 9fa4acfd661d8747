#include "Platform/Linux/Places/LinuxPlaces.h"
#include "Fakes/PretendFileManager.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Quillmere;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

namespace {

/// A disk with a home, and the places as a program with these variables sees them.
struct PlacesWorld
{
    std::shared_ptr<PretendFileManager> disk = std::make_shared<PretendFileManager>(pretendHome);
    QHash<QByteArray, QByteArray> variables;

    PlacesWorld() { disk->addFolder(pretendHome.appending("Library/Caches")); }

    [[nodiscard]] LinuxPlaces places() const
    {
        return LinuxPlaces(disk, [this](const char *name) { return variables.value(name); });
    }
    [[nodiscard]] QList<PlaceRow> caches() const { return places().rowsBehind(PlaceTable::UserCache); }
    [[nodiscard]] bool keeps(const FilePath &item) const { return places().reasonToKeep(item).has_value(); }
};

/// Gives the user folders of their own below ~/Own for documents, music and the like.
void nameUserFolders(PretendFileManager &disk)
{
    QByteArray text;
    for (const char *kind : {"desktop", "documents", "download", "music", "pictures", "videos"})
        text += "XDG_" + QByteArray(kind).toUpper() + "_DIR=\"$HOME/Own/" + kind + "\"\n";
    disk.addFile(pretendHome.appending(".config/user-dirs.dirs"), text.size(), text);
}

PlaceRow row(const char *root, const QByteArray &suffix = {})
{
    return {FilePath(root), suffix};
}

/// Where such a place would be in this home, once for each folder that it may be in.
QList<FilePath> examples(const PlacesData::Place &place)
{
    const QHash<QByteArray, QList<FilePath>> bases = {
        {"", {FilePath("/")}},
        {"~", {pretendHome}},
        {"$cache",
         {pretendHome.appending(".cache"), pretendHome.appending(".var/app/org.example.App/cache"),
          pretendHome.appending("snap/example/common/.cache")}},
        {"$config", {pretendHome.appending(".config")}},
        {"$data", {pretendHome.appending(".local/share")}},
        {"$state", {pretendHome.appending(".local/state")}},
        {"$temporary", {FilePath("/tmp")}},
    };
    const QList<FilePath> unnamed = {pretendHome.appending("Own").appending(place.base.mid(1))};
    QList<FilePath> found;
    for (const FilePath &base : bases.value(place.base, unnamed))
        found.append(base.appending(place.names.join('/').replace("*", "any")).standardized());
    return found;
}

} // namespace

TEST(LinuxPlacesTest, LooksThroughAnItemOnceAndNoLongerThanItMatters)
{
    const PlacesWorld world;
    const FilePath flat = pretendHome.appending(".cache/flat");
    for (int i = 0; i < 50; ++i)
        world.disk->addFile(flat.appending("f" + QByteArray::number(i)), 1);
    const FilePath told = pretendHome.appending(".cache/told");
    world.disk->addFile(told.appending("history"), 1);
    world.disk->addFile(told.appending("more"), 1);
    QList<FilePath> shown;
    world.disk->onLook([&](const FilePath &entry) { shown.append(entry); });
    const LinuxPlaces places = world.places();

    EXPECT_EQ(places.reasonToKeep(flat), std::nullopt);
    EXPECT_EQ(shown.size(), 50);
    shown.clear();
    EXPECT_NE(places.reasonToKeep(told), std::nullopt);
    EXPECT_THAT(shown, ElementsAre(told.appending("history")));
}

TEST(LinuxPlacesTest, BreaksTheLookOffWhenCancelledAndThenOffersNothing)
{
    const PlacesWorld world;
    const FilePath flat = pretendHome.appending(".cache/flat");
    for (int i = 0; i < 50; ++i)
        world.disk->addFile(flat.appending("f" + QByteArray::number(i)), 1);
    std::stop_source stop;
    int shown = 0;
    world.disk->onLook([&](const FilePath &) {
        if (++shown == 3)
            stop.request_stop();
    });

    EXPECT_NE(world.places().reasonToKeep(flat, Cancellation(stop.get_token())), std::nullopt);
    EXPECT_EQ(shown, 3);
}

TEST(LinuxPlacesTest, GivesTheReasonThatStandsFirstHoweverLateItsPlaceIsFound)
{
    PlacesWorld world;
    PlacesData data;
    const FilePath item = pretendHome.appending(".cache/item");
    data.keep = {{PlacesData::Place::parse("$cache/*/z*"), u"first"_qs},
                 {PlacesData::Place::parse("$cache/*/a*"), u"second"_qs}};
    world.disk->addFile(item.appending("a"), 1);
    world.disk->addSocket(item.appending("m"));
    world.disk->addFile(item.appending("zz"), 1);
    const auto nothingSet = [](const char *) { return QByteArray(); };

    EXPECT_EQ(LinuxPlaces(world.disk, nothingSet, data).reasonToKeep(item), u"first"_qs);
    world.disk->vanish(item.appending("zz"));
    EXPECT_EQ(LinuxPlaces(world.disk, nothingSet, data).reasonToKeep(item), u"second"_qs);
    world.disk->vanish(item.appending("a"));
    EXPECT_EQ(LinuxPlaces(world.disk, nothingSet, data).reasonToKeep(item),
              u"A running program is reached through a socket or pipe in it."_qs);
}

TEST(LinuxPlacesTest, OffersTheCacheFolderOfTheHome)
{
    const PlacesWorld world;
    EXPECT_THAT(world.caches(), ElementsAre(row("/home/ada/.cache")));
}

TEST(LinuxPlacesTest, TakesTheCacheFolderFromTheEnvironment)
{
    PlacesWorld world;
    world.variables["XDG_CACHE_HOME"] = "/data/cache/";
    EXPECT_THAT(world.caches(), ElementsAre(row("/data/cache")));
}

TEST(LinuxPlacesTest, PassesOverAnEmptyOrRelativeCacheFolder)
{
    PlacesWorld world;
    for (const char *value : {"", "cache", "./cache"}) {
        world.variables["XDG_CACHE_HOME"] = value;
        EXPECT_THAT(world.caches(), ElementsAre(row("/home/ada/.cache"))) << value;
    }
}

TEST(LinuxPlacesTest, TakesNoHomeAndNoDocumentsForACacheFolder)
{
    PlacesWorld world;
    for (const char *value : {"/", "/home", "/home/ada", "/home/ada/Documents", "/home/ada/Pictures/../Music",
                              "/home/ada/.config", "/home/ada/.local", "/home/ada/.local/share", "/var/tmp"}) {
        world.variables["XDG_CACHE_HOME"] = value;
        EXPECT_THAT(world.caches(), ElementsAre(row("/home/ada/.cache"))) << value;
    }
}

TEST(LinuxPlacesTest, TakesNoHomeAndNoDocumentsForTheFoldersOfSettingsAndData)
{
    PlacesWorld world;
    world.disk->addFolder(pretendHome.appending("Code/logs/today"));
    world.disk->addFolder(pretendHome.appending("Documents/Code/logs/today"));
    for (const char *value : {"/", "/home", "/home/ada", "/home/ada/Documents", "/home/ada/Documents/settings"}) {
        world.variables["XDG_CONFIG_HOME"] = value;
        EXPECT_THAT(world.places().rowsBehind(PlaceTable::UserLogs), Contains(row("/home/ada/.config/Code/logs")))
            << value;
    }
}

TEST(LinuxPlacesTest, FollowsALinkToTheCacheFolder)
{
    PlacesWorld world;
    world.disk->addFolder(FilePath("/data/cache/rclone/vfs"));
    world.disk->addFolder(FilePath("/data/cache/thumbnails"));
    world.disk->addLink(pretendHome.appending(".cache"), FilePath("/data/cache"));

    EXPECT_THAT(world.caches(), ElementsAre(row("/home/ada/.cache")));
    EXPECT_TRUE(world.keeps(FilePath("/data/cache/rclone")));
    EXPECT_TRUE(world.keeps(pretendHome.appending(".cache/rclone")));
    EXPECT_FALSE(world.keeps(FilePath("/data/cache/thumbnails")));
}

TEST(LinuxPlacesTest, FollowsALinkToTheHome)
{
    PlacesWorld world;
    world.disk = std::make_shared<PretendFileManager>(FilePath("/data/ada"));
    world.disk->addFolder(FilePath("/data/ada/.cache/rclone/vfs"));
    auto linked = std::make_shared<PretendFileManager>(pretendHome);
    linked->vanish(pretendHome);
    linked->addFolder(FilePath("/data/ada/.cache/rclone/vfs"));
    linked->addLink(pretendHome, FilePath("/data/ada"));
    world.disk = linked;

    EXPECT_THAT(world.caches(), ElementsAre(row("/home/ada/.cache")));
    EXPECT_TRUE(world.keeps(FilePath("/data/ada/.cache/rclone")));
    EXPECT_TRUE(world.keeps(pretendHome.appending(".cache/rclone")));
}

TEST(LinuxPlacesTest, OffersNothingThroughALinkFromTheCacheFolderToTheDocuments)
{
    PlacesWorld world;
    world.disk->addFolder(pretendHome.appending("Documents/letters"));
    world.disk->addLink(pretendHome.appending(".cache"), pretendHome.appending("Documents"));

    EXPECT_THAT(world.caches(), IsEmpty());
    EXPECT_TRUE(world.keeps(pretendHome.appending(".cache/letters")));
}

TEST(LinuxPlacesTest, OffersNoFolderTwiceWhenTheCacheFolderIsTheProgramsOwn)
{
    PlacesWorld world;
    world.variables["XDG_CACHE_HOME"] = "/home/ada/Library/Caches";
    EXPECT_THAT(world.caches(), IsEmpty());
}

TEST(LinuxPlacesTest, OffersNoFolderTwiceWhenTheCacheFolderIsALinkToTheProgramsOwn)
{
    PlacesWorld world;
    world.disk->addLink(pretendHome.appending(".cache"), pretendHome.appending("Library/Caches"));
    EXPECT_THAT(world.caches(), IsEmpty());
}

TEST(LinuxPlacesTest, OffersATemporaryDirectoryInsideTheCacheFolderOnlyByItself)
{
    PlacesWorld world;
    world.disk->setTemporaryDirectory(pretendHome.appending(".cache/build/tmp"));
    world.disk->addFolder(pretendHome.appending(".cache/build/tmp/leftover"));
    world.disk->addFolder(pretendHome.appending(".cache/builds"));

    EXPECT_TRUE(world.keeps(pretendHome.appending(".cache/build")));
    EXPECT_FALSE(world.keeps(pretendHome.appending(".cache/builds")));
    EXPECT_FALSE(world.keeps(pretendHome.appending(".cache/build/tmp/leftover")));
}

TEST(LinuxPlacesTest, OffersACacheFolderInsideTheTemporaryDirectoryOnlyByItself)
{
    PlacesWorld world;
    world.variables["XDG_CACHE_HOME"] = "/tmp/cache";
    world.disk->addFolder(FilePath("/tmp/cache/thumbnails"));

    EXPECT_TRUE(world.keeps(FilePath("/tmp/cache")));
    EXPECT_FALSE(world.keeps(FilePath("/tmp/cache/thumbnails")));
}

TEST(LinuxPlacesTest, OffersContainersWithTheFolderThatEachKeepsItsCacheIn)
{
    const PlacesWorld world;
    EXPECT_THAT(world.places().rowsBehind(PlaceTable::ContainerCache),
                ElementsAre(row("/home/ada/.var/app", "cache"), row("/home/ada/snap", "common/.cache")));
}

TEST(LinuxPlacesTest, OffersLogsWhereTheBaseDirectoriesAre)
{
    PlacesWorld world;
    world.variables["XDG_CONFIG_HOME"] = "/data/config";
    world.variables["XDG_STATE_HOME"] = "/data/state";

    const auto logs = world.places().rowsBehind(PlaceTable::UserLogs);
    EXPECT_THAT(logs, Contains(row("/data/config/Code/logs")));
    EXPECT_THAT(logs, Contains(row("/data/state", "log")));
    EXPECT_THAT(logs, Not(Contains(row("/home/ada/.config/Code/logs"))));
}

TEST(LinuxPlacesTest, AddsNothingBehindTheTemporaryDirectory)
{
    const PlacesWorld world;
    EXPECT_THAT(world.places().rowsBehind(PlaceTable::TemporaryFiles), IsEmpty());
}

TEST(LinuxPlacesTest, KeepsWhatDoesNotComeBackAndOffersWhatStandsBesideIt)
{
    PlacesWorld world;
    world.disk->addFolder(pretendHome.appending(".cache/rclone/vfs/drive"));
    world.disk->addFolder(pretendHome.appending(".cache/thumbnails/large"));
    world.disk->addFolder(pretendHome.appending(".cache/rclone2/vfs"));

    EXPECT_EQ(world.places().reasonToKeep(pretendHome.appending(".cache/rclone")),
              u"Files written through a mount wait here until they are uploaded."_qs);
    EXPECT_FALSE(world.keeps(pretendHome.appending(".cache/thumbnails")));
    EXPECT_FALSE(world.keeps(pretendHome.appending(".cache/rclone2")));
}

TEST(LinuxPlacesTest, OffersAFolderWhoseKeptPartIsNotThere)
{
    PlacesWorld world;
    world.disk->addFolder(pretendHome.appending(".cache/rclone/webgui"));
    EXPECT_FALSE(world.keeps(pretendHome.appending(".cache/rclone")));
}

TEST(LinuxPlacesTest, KeepsTheSamePlacesInFlatpaksAndSnaps)
{
    PlacesWorld world;
    world.disk->addFolder(pretendHome.appending(".var/app/org.rclone.Rclone/cache/rclone/vfs"));
    world.disk->addFolder(pretendHome.appending(".var/app/org.example.Viewer/cache/thumbnails"));
    world.disk->addFolder(pretendHome.appending("snap/rclone/common/.cache/rclone/vfs"));
    world.disk->addFolder(pretendHome.appending("snap/viewer/common/.cache/thumbnails"));

    EXPECT_TRUE(world.keeps(pretendHome.appending(".var/app/org.rclone.Rclone/cache")));
    EXPECT_FALSE(world.keeps(pretendHome.appending(".var/app/org.example.Viewer/cache")));
    EXPECT_TRUE(world.keeps(pretendHome.appending("snap/rclone/common/.cache")));
    EXPECT_FALSE(world.keeps(pretendHome.appending("snap/viewer/common/.cache")));
}

TEST(LinuxPlacesTest, OffersTheProgramsOwnTablesAsTheyStand)
{
    PlacesWorld world;
    world.disk->addFolder(pretendHome.appending("Library/Caches/rclone/vfs"));
    world.disk->addSocket(pretendHome.appending("Library/Caches/rclone/socket"));

    EXPECT_FALSE(world.keeps(pretendHome.appending("Library/Caches/rclone")));
}

TEST(LinuxPlacesTest, KeepsWhatARunningProgramListensIn)
{
    PlacesWorld world;
    world.disk->addSocket(FilePath("/tmp/anything-17/socket"));
    world.disk->addSocket(pretendHome.appending(".cache/anything/bus"));
    world.disk->addFile(FilePath("/tmp/leftover/file"), 10);

    EXPECT_TRUE(world.keeps(FilePath("/tmp/anything-17")));
    EXPECT_TRUE(world.keeps(pretendHome.appending(".cache/anything")));
    EXPECT_FALSE(world.keeps(FilePath("/tmp/leftover")));
}

TEST(LinuxPlacesTest, KeepsWhatBelongsToOthersInTheTemporaryDirectoryAlone)
{
    PlacesWorld world;
    for (const FilePath &item : {FilePath("/tmp/of-eve"), pretendHome.appending(".cache/of-root")}) {
        world.disk->addFolder(item);
        world.disk->giveAway(item);
    }
    world.disk->addFolder(FilePath("/tmp/of-ada"));

    EXPECT_TRUE(world.keeps(FilePath("/tmp/of-eve")));
    EXPECT_FALSE(world.keeps(FilePath("/tmp/of-ada")));
    EXPECT_FALSE(world.keeps(pretendHome.appending(".cache/of-root")));
}

TEST(LinuxPlacesTest, KeepsTheWholeHomeWhenTheTemporaryDirectoryHoldsIt)
{
    PlacesWorld world;
    world.disk->setTemporaryDirectory(FilePath("/home"));
    EXPECT_TRUE(world.keeps(pretendHome));

    world.disk->setTemporaryDirectory(pretendHome);
    EXPECT_TRUE(world.keeps(pretendHome.appending("Documents")));
    EXPECT_TRUE(world.keeps(pretendHome.appending("anything")));
}

TEST(LinuxPlacesTest, JudgesALinkByItsOwnPlace)
{
    PlacesWorld world;
    world.disk->addFolder(pretendHome.appending(".cache/rclone/vfs"));
    world.disk->addLink(FilePath("/tmp/shortcut"), pretendHome.appending(".cache/rclone"));

    EXPECT_FALSE(world.keeps(FilePath("/tmp/shortcut")));
    EXPECT_TRUE(world.keeps(FilePath("/tmp/shortcut/vfs")));
}

TEST(LinuxPlacesTest, ComparesNamesThatAreNoText)
{
    PlacesWorld world;
    world.variables["XDG_CACHE_HOME"] = "/data/\xff";
    world.disk->addFolder(FilePath(QByteArray("/data/\xff/rclone/vfs")));
    world.disk->addFolder(FilePath(QByteArray("/data/\xfe/rclone/vfs")));

    EXPECT_TRUE(world.keeps(FilePath(QByteArray("/data/\xff/rclone"))));
    EXPECT_FALSE(world.keeps(FilePath(QByteArray("/data/\xfe/rclone"))));
}

TEST(LinuxPlacesTest, OffersNoKeptPlaceByItselfNorAnythingAboveIt)
{
    for (const PlacesData::ReasonedPlace &kept : PlacesData::builtIn().keep) {
        const QList<FilePath> places = examples(kept.place);
        ASSERT_FALSE(places.isEmpty());
        for (const FilePath &place : places) {
            PlacesWorld world;
            nameUserFolders(*world.disk);
            world.disk->addFolder(place);
            const LinuxPlaces judge = world.places();
            for (FilePath item = place; item != FilePath("/"); item = item.deletingLastPathComponent())
                EXPECT_TRUE(judge.reasonToKeep(item).has_value()) << item.bytes().constData();
        }
    }
}

TEST(LinuxPlacesTest, GivesTheReasonOfTheKeptPlace)
{
    for (const PlacesData::ReasonedPlace &kept : PlacesData::builtIn().keep) {
        PlacesData alone;
        alone.keep = {kept};
        const auto disk = std::make_shared<PretendFileManager>(pretendHome);
        const FilePath place = examples(kept.place).constFirst();
        nameUserFolders(*disk);
        disk->addFolder(place);
        const auto nothingSet = [](const char *) { return QByteArray(); };

        EXPECT_EQ(LinuxPlaces(disk, nothingSet, alone).reasonToKeep(place), kept.reason) << place.bytes().constData();
        EXPECT_EQ(LinuxPlaces(disk, nothingSet, PlacesData()).reasonToKeep(place), std::nullopt);
    }
}
