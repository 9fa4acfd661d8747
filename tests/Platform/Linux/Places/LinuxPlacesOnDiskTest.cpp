#include "Platform/Linux/Files/LinuxFileManager.h"
#include "Platform/Linux/Need.h"
#include "Platform/Linux/Places/LinuxPlaces.h"
#include "Platform/Linux/TemporaryHome.h"

#include <gtest/gtest.h>

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

using namespace Quillmere;

namespace {

/// The places of a home that really stands on a disk, with a temporary folder beside it.
struct DiskWorld
{
    TemporaryHome disk;

    [[nodiscard]] LinuxPlaces places() const
    {
        UserEnvironment environment = disk.environment();
        environment.temporary = disk.path("tmp");
        return LinuxPlaces(std::make_shared<LinuxFileManager>(environment), [](const char *) { return QByteArray(); });
    }
    [[nodiscard]] bool keeps(const QByteArray &relative) const
    {
        return places().reasonToKeep(disk.path(relative)).has_value();
    }
};

/// Relative to the world, once for each folder that it may be in; nothing for what is nowhere in it.
QList<QByteArray> exampleBytes(const PlacesData::Place &place)
{
    const QHash<QByteArray, QList<QByteArray>> bases = {
        {"~", {"home/"}},
        {"$cache", {"home/.cache/", "home/.var/app/org.example.App/cache/", "home/snap/example/common/.cache/"}},
        {"$config", {"home/.config/"}},
        {"$data", {"home/.local/share/"}},
        {"$state", {"home/.local/state/"}},
        {"$temporary", {"tmp/"}},
    };
    QList<QByteArray> found;
    for (const QByteArray &base : bases.value(place.base))
        found.append(base + place.names.join('/').replace("*", "any"));
    return found;
}

bool makeSocket(const FilePath &path)
{
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    if (path.bytes().size() >= qsizetype(sizeof(address.sun_path)))
        return false;
    memcpy(address.sun_path, path.bytes().constData(), size_t(path.bytes().size()));
    const int listener = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const bool made = bind(listener, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0;
    close(listener);
    return made;
}

} // namespace

TEST(LinuxPlacesOnDiskTest, KeepsWhateverHoldsAKeptPlace)
{
    for (const PlacesData::ReasonedPlace &kept : PlacesData::builtIn().keep) {
        for (const QByteArray &place : exampleBytes(kept.place)) {
            const DiskWorld world;
            world.disk.addFolder(place);
            const LinuxPlaces judge = world.places();
            for (qsizetype end = place.size(); end > 0; end = place.lastIndexOf('/', end - 1))
                EXPECT_TRUE(judge.reasonToKeep(world.disk.path(place.first(end)))) << place.first(end).constData();
        }
    }
}

TEST(LinuxPlacesOnDiskTest, OffersWhatHoldsNone)
{
    const DiskWorld world;
    for (const char *item : {"home/.cache/thumbnails", "home/.var/app/org.example.App/cache", "tmp/leftover"}) {
        world.disk.addFile(QByteArray(item) + "/data/file");
        EXPECT_FALSE(world.keeps(item)) << item;
    }
}

TEST(LinuxPlacesOnDiskTest, KeepsWhatARunningProgramListensIn)
{
    const DiskWorld world;
    world.disk.addFolder("tmp/a");
    ASSERT_TRUE(makeSocket(world.disk.path("tmp/a/s")));
    world.disk.addFolder("tmp/b");
    ASSERT_EQ(mkfifo(world.disk.path("tmp/b/pipe").bytes().constData(), 0600), 0);

    EXPECT_TRUE(world.keeps("tmp/a"));
    EXPECT_TRUE(world.keeps("tmp/b"));
}

TEST(LinuxPlacesOnDiskTest, KeepsWhatBelongsToAnotherUserInTheTemporaryFolder)
{
    QUILLMERE_NEED(geteuid() != 0 ? QByteArray("only root can give a folder away") : QByteArray());
    const DiskWorld world;
    world.disk.addFolder("tmp/of another");
    ASSERT_EQ(chown(world.disk.path("tmp/of another").bytes().constData(), 65534, 65534), 0);

    EXPECT_TRUE(world.keeps("tmp/of another"));
}

TEST(LinuxPlacesOnDiskTest, FollowsALinkToTheCacheFolder)
{
    const DiskWorld world;
    world.disk.addFolder("data/cache/rclone/vfs");
    world.disk.addFolder("data/cache/thumbnails");
    world.disk.addLink("home/.cache", world.disk.path("data/cache").bytes());

    EXPECT_EQ(world.places().rowsBehind(PlaceTable::UserCache),
              QList<PlaceRow>({{world.disk.path("home/.cache"), {}}}));
    EXPECT_TRUE(world.keeps("data/cache/rclone"));
    EXPECT_TRUE(world.keeps("home/.cache/rclone"));
    EXPECT_FALSE(world.keeps("data/cache/thumbnails"));
}
