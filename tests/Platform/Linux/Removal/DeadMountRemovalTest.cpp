#include "Fakes/InstalledLocalizer.h"
#include "Platform/Linux/ChildProcess.h"
#include "Platform/Linux/DeadMount.h"
#include "Platform/Linux/Files/LinuxFileManager.h"
#include "Platform/Linux/Places/LinuxPlaces.h"
#include "Platform/Linux/TemporaryHome.h"
#include "Services/CleanupService.h"
#include "Services/ScannerService.h"

#include <gmock/gmock.h>

#include <unistd.h>

using namespace Quillmere;
using testing::SizeIs;

namespace {

QByteArray noVariable(const char *)
{
    return {};
}

/// A home that has lost a server since somebody last looked.
class DeadMountRemovalTest : public testing::Test
{
protected:
    void SetUp() override { QUILLMERE_NEED(whyNoDeadMount()); }

    /// Each way to remove @p item, which is left if it is there.
    static void expectBusy(const LinuxFileManager &files, const FilePath &item)
    {
        const Result<FilePath> trashed = files.trashItem(item);
        const Result<void> removed = files.removeItem(item);
        const Result<void> removedAtOnce = files.removeItemAtOnce(item);

        ASSERT_FALSE(trashed) << item.bytes().constData();
        EXPECT_EQ(trashed.failure().kind, Failure::Kind::NotAnswering) << item.bytes().constData();
        ASSERT_FALSE(removed) << item.bytes().constData();
        EXPECT_EQ(removed.failure().kind, Failure::Kind::NotAnswering) << item.bytes().constData();
        ASSERT_FALSE(removedAtOnce) << item.bytes().constData();
        EXPECT_EQ(removedAtOnce.failure().kind, Failure::Kind::NotAnswering) << item.bytes().constData();
    }

    InstalledLocalizer localizer;
    TemporaryHome home;
};

struct TrashCase
{
    const char *name;
    QByteArray mountPoint;
    QByteArray link = {}; ///< Leads to the mount point.
};

/// Where the home trash lies, or would lie, on that server.
class DeadTrashTest : public DeadMountRemovalTest, public testing::WithParamInterface<TrashCase>
{
};

} // namespace

TEST_F(DeadMountRemovalTest, PassesOverWhatDiedAfterTheScanAndCleansTheRest)
{
    for (const char *item : {"home/.cache/a", "home/.cache/b", "home/Library/Caches/sound", "home/Library/Logs/log"})
        home.addFile(QByteArray(item) + "/data/file", QByteArray(9000, 'x'));
    inMountNamespace([&] {
        ::alarm(DeadMount::secondsUntilGivenUp);
        const auto files = std::make_shared<LinuxFileManager>(home.environment(), DeadMount::patience);
        const auto places = std::make_shared<LinuxPlaces>(files, noVariable);
        QList<CleanupItem> items;
        for (const CleanupCategory &category :
             ScannerService(files, places).scanSafeCategories([](double, const QString &) {}))
            items += category.items;
        ASSERT_THAT(items, SizeIs(4));
        const DeadMount gone(home.path("home/.cache"));

        const CleanupResult result = CleanupService(files, places).cleanItems(items, true, [](double) {});

        EXPECT_EQ(result.filesRemoved, 2);
        EXPECT_EQ(result.filesSkipped, 2);
        EXPECT_THAT(result.errors, SizeIs(2));
        EXPECT_FALSE(home.exists("home/Library/Caches/sound"));
        EXPECT_FALSE(home.exists("home/Library/Logs/log"));
    });
}

TEST_F(DeadMountRemovalTest, EndsAtOnceForWhoeverRemovesOfIt)
{
    home.addFolder("mnt/nas");
    home.addLink("home/link", home.path("mnt").bytes());
    inMountNamespace([&] {
        ::alarm(DeadMount::secondsUntilGivenUp);
        const LinuxFileManager files(home.environment(), DeadMount::patience);
        const DeadMount gone(home.path("mnt/nas"));

        for (const char *item : {"mnt/nas", "mnt/nas/item", "mnt/nas/folder/item", "home/link/nas/item"})
            expectBusy(files, home.path(item));
    });
}

TEST_F(DeadMountRemovalTest, HoldsNobodyUpWhoSeesItsItemsOntoDisk)
{
    home.addFolder("mnt/nas");
    home.addFile("home/item");
    inMountNamespace([&] {
        ::alarm(DeadMount::secondsUntilGivenUp);
        const LinuxFileManager files(home.environment(), DeadMount::patience);
        const DeadMount gone(home.path("mnt/nas"));

        files.synchronizeVolumes({home.path("mnt/nas/item"), home.path("home/item")});
    });
}

TEST_F(DeadMountRemovalTest, LetsALinkToItGo)
{
    home.addFolder("mnt/nas");
    home.addLink("home/link", home.path("mnt/nas").bytes());
    inMountNamespace([&] {
        ::alarm(DeadMount::secondsUntilGivenUp);
        const LinuxFileManager files(home.environment(), DeadMount::patience);
        const DeadMount gone(home.path("mnt/nas"));

        EXPECT_TRUE(files.removeItem(home.path("home/link")));

        EXPECT_FALSE(home.exists("home/link"));
    });
}

TEST_P(DeadTrashTest, HoldsNoRemovalUp)
{
    const FilePath item = home.addFile("home/item");
    home.addFolder(GetParam().mountPoint);
    if (!GetParam().link.isEmpty())
        home.addLink(GetParam().link, home.path(GetParam().mountPoint).bytes());
    inMountNamespace([&] {
        ::alarm(DeadMount::secondsUntilGivenUp);
        const LinuxFileManager files(home.environment(), DeadMount::patience);
        const DeadMount gone(home.path(GetParam().mountPoint));

        expectBusy(files, item);

        EXPECT_TRUE(itemExists(item));
    });
}

INSTANTIATE_TEST_SUITE_P(Places, DeadTrashTest,
                         testing::Values(TrashCase{"DataHome", "home/.local/share"},
                                         TrashCase{"Trash", "home/.local/share/Trash"},
                                         TrashCase{"LinkForTheDataHome", "mnt/nas", "home/.local/share"},
                                         TrashCase{"LinkForTheTrash", "mnt/nas", "home/.local/share/Trash"}),
                         [](const auto &info) { return info.param.name; });
