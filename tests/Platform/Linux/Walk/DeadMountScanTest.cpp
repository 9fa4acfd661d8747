#include "Fakes/InstalledLocalizer.h"
#include "Platform/Linux/ChildProcess.h"
#include "Platform/Linux/DeadMount.h"
#include "Platform/Linux/Files/LinuxFileManager.h"
#include "Platform/Linux/Places/LinuxPlaces.h"
#include "Platform/Linux/TemporaryHome.h"
#include "Services/ScannerService.h"

#include <gmock/gmock.h>

#include <sys/mount.h>

using namespace Quillmere;
using testing::IsSupersetOf;
using testing::UnorderedElementsAreArray;

namespace {

struct MountCase
{
    const char *name;
    QByteArray mountPoint;
    QByteArray link = {}; ///< Leads to the mount point.
};

/// A home with something to clean in each place, and a server that has gone.
class DeadMountScanTest : public testing::TestWithParam<MountCase>
{
protected:
    void SetUp() override
    {
        QUILLMERE_NEED(whyNoDeadMount());
        for (const char *item : {"home/.cache/good", "home/Library/Caches/sound", "home/Library/Logs/log", "tmp/work",
                                 "home/.var/app/org.good/cache", "home/Library/Containers/box/Data/Library/Caches"})
            home.addFile(QByteArray(item) + "/data/file", QByteArray(9000, 'x'));
    }

    [[nodiscard]] static QByteArray noVariable(const char *) { return {}; }

    [[nodiscard]] QStringList scan() const
    {
        const auto files = std::make_shared<LinuxFileManager>(home.environment(), DeadMount::patience);
        const auto places = std::make_shared<LinuxPlaces>(files, noVariable);
        ScannerService scanner(files, places);
        QStringList names;
        for (const CleanupCategory &category : scanner.scanSafeCategories([](double, const QString &) {})) {
            for (const CleanupItem &item : category.items)
                names.append(item.name);
        }
        return names;
    }

    InstalledLocalizer localizer;
    TemporaryHome home;
    const QStringList all = {u"good"_qs, u"sound"_qs, u"log"_qs, u"work"_qs, u"org.good"_qs, u"box"_qs};
};

/// Where only the items behind the dead mount itself may be missing.
class DeadRootScanTest : public DeadMountScanTest
{
};

} // namespace

TEST_P(DeadMountScanTest, NeitherStopsNorHangsTheScanAndIsNoItem)
{
    home.addFolder(GetParam().mountPoint);
    if (!GetParam().link.isEmpty())
        home.addLink(GetParam().link, home.path(GetParam().mountPoint).bytes());

    inMountNamespace([&] {
        ::alarm(DeadMount::secondsUntilGivenUp);
        const DeadMount gone(home.path(GetParam().mountPoint));

        EXPECT_THAT(scan(), UnorderedElementsAreArray(all));
    });
}

INSTANTIATE_TEST_SUITE_P(
    Places, DeadMountScanTest,
    testing::Values(MountCase{"ChildOfTheCaches", "home/.cache/nas"},
                    MountCase{"ChildOfTheLibraryCaches", "home/Library/Caches/nas"},
                    MountCase{"ChildOfTheTemporaryFolder", "tmp/nas"},
                    MountCase{"GrandchildOfTheCaches", "home/.cache/good/nas"},
                    MountCase{"GrandchildOfTheTemporaryFolder", "tmp/work/nas"},
                    MountCase{"DeepInTheTemporaryFolder", "tmp/work/data/nas"},
                    MountCase{"LinkInTheCaches", "mnt/nas", "home/.cache/link"},
                    MountCase{"LinkInTheTemporaryFolder", "mnt/nas", "tmp/link"},
                    MountCase{"LinkInAnItem", "mnt/nas", "home/.cache/good/link"},
                    MountCase{"LinkInATemporaryItem", "mnt/nas", "tmp/work/link"},
                    MountCase{"Container", "home/Library/Containers/nas"},
                    MountCase{"LinkInTheContainers", "mnt/nas", "home/Library/Containers/link"},
                    MountCase{"CacheOfAContainer", "home/Library/Containers/nas/Data/Library/Caches"},
                    MountCase{"LinkForTheCacheOfAContainer", "mnt/nas",
                              "home/Library/Containers/nas/Data/Library/Caches"},
                    MountCase{"SandboxedApplication", "home/.var/app/org.nas"},
                    MountCase{"LinkForTheCacheOfAnApplication", "mnt/nas", "home/.var/app/org.nas/cache"},
                    MountCase{"LogsOfAnEditor", "home/.config/Code/logs"},
                    MountCase{"LinkForTheSettingsOfAnEditor", "mnt/nas", "home/.config/Code"},
                    MountCase{"LinkForTheUserFolders", "mnt/nas", "home/.config/user-dirs.dirs"},
                    MountCase{"Music", "home/Music"}, MountCase{"LinkForTheDocuments", "mnt/nas", "home/Documents"}),
    [](const auto &info) { return info.param.name; });

TEST_F(DeadMountScanTest, HoldsNoLookForAPlaceInAnItemUp)
{
    home.addFolder("home/.cache/good/nas");
    home.addFile("home/.config/user-dirs.dirs", "XDG_MUSIC_DIR=\"$HOME/.cache/good/nas/music\"\n");

    inMountNamespace([&] {
        ::alarm(DeadMount::secondsUntilGivenUp);
        const DeadMount gone(home.path("home/.cache/good/nas"));

        EXPECT_THAT(scan(), UnorderedElementsAreArray(all));
    });
}

TEST_P(DeadRootScanTest, LeavesTheOtherPlacesToTheScan)
{
    home.addFolder(GetParam().mountPoint);
    inMountNamespace([&] {
        ::alarm(DeadMount::secondsUntilGivenUp);
        const DeadMount gone(home.path(GetParam().mountPoint));

        EXPECT_THAT(scan(), IsSupersetOf({u"log"_qs, u"work"_qs, u"box"_qs}));
    });
}

INSTANTIATE_TEST_SUITE_P(Roots, DeadRootScanTest,
                         testing::Values(MountCase{"Caches", "home/.cache"}, MountCase{"Settings", "home/.config"},
                                         MountCase{"LibraryCaches", "home/Library/Caches"},
                                         MountCase{"Applications", "home/.var/app"}),
                         [](const auto &info) { return info.param.name; });

TEST_F(DeadMountScanTest, IsNotWalkedWhenItIsAliveEither)
{
    home.addFolder("home/.cache/nas");
    home.addFolder("tmp/nas");

    inMountNamespace([&] {
        ASSERT_TRUE(mountTmpfs(home.path("home/.cache/nas"), "size=1m"));
        ASSERT_TRUE(mountTmpfs(home.path("tmp/nas"), "size=1m"));
        home.addFile("home/.cache/nas/folder/file", QByteArray(9000, 'x'));
        home.addFile("tmp/nas/folder/file", QByteArray(9000, 'x'));

        EXPECT_THAT(scan(), UnorderedElementsAreArray(all));
    });
}

TEST_F(DeadMountScanTest, StillScansARootThatIsAMountOfItsOwn)
{
    inMountNamespace([&] {
        ASSERT_TRUE(mountTmpfs(home.path("home/.cache"), "size=1m"));
        home.addFile("home/.cache/good/data/file", QByteArray(9000, 'x'));

        EXPECT_THAT(scan(), UnorderedElementsAreArray(all));
    });
}

TEST_F(DeadMountScanTest, IsEmptyForWhoeverMeasuresOrSearchesItOrWhatIsBehindIt)
{
    home.addFolder("mnt/nas");
    home.addFolder("home/Documents");
    home.addLink("home/link", home.path("mnt/nas").bytes());

    inMountNamespace([&] {
        ::alarm(DeadMount::secondsUntilGivenUp);
        const DeadMount gone(home.path("mnt/nas"));
        const DeadMount other(home.path("home/Documents"));
        const auto files = std::make_shared<LinuxFileManager>(home.environment(), DeadMount::patience);
        ScannerService scanner(files, std::make_shared<LinuxPlaces>(files, noVariable));

        for (const char *folder : {"home/Documents", "home/Documents/below", "home/link/below", "home/link"}) {
            EXPECT_EQ(scanner.scanDirectory(home.path(folder)).allocatedSize, 0) << folder;
            EXPECT_TRUE(files->findFiles(home.path(folder), {}, {}).value().isEmpty()) << folder;
        }
        EXPECT_FALSE(files->areOnSameVolume(home.path("home/link/below"), home.path("home")));
        EXPECT_TRUE(files->areOnSameVolume(home.path("home/.cache"), home.path("home")));
    });
}

namespace {

/// Where the places of the platform's own lists are.
class DeadMountListsTest : public DeadMountScanTest
{
};

} // namespace

TEST_P(DeadMountListsTest, HoldsNoListUpAndIsKeptWhereItLies)
{
    home.addFolder(GetParam().mountPoint);

    inMountNamespace([&] {
        ::alarm(DeadMount::secondsUntilGivenUp);
        const DeadMount gone(home.path(GetParam().mountPoint));
        const auto files = std::make_shared<LinuxFileManager>(home.environment(), DeadMount::patience);
        const LinuxPlaces places(files, noVariable);

        for (const QString &list : PlacesData::builtIn().lists.keys()) {
            for (const PlaceEntry &entry : places.entriesBehind(list))
                EXPECT_FALSE(entry.path.isWithin(home.path(GetParam().mountPoint))) << qPrintable(list);
        }
        EXPECT_TRUE(places.reasonToKeep(home.path(GetParam().mountPoint + "/item")));
    });
}

INSTANTIATE_TEST_SUITE_P(Folders, DeadMountListsTest,
                         testing::Values(MountCase{"Settings", "home/.config"}, MountCase{"Caches", "home/.cache"},
                                         MountCase{"Data", "home/.local/share"}, MountCase{"Crates", "home/.cargo"},
                                         MountCase{"Documents", "home/Documents"},
                                         MountCase{"AnEditor", "home/.config/Code"}),
                         [](const auto &info) { return info.param.name; });
