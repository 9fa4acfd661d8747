#include "Services/ScannerFixture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Quillmere;
using testing::ElementsAre;
using testing::Pair;

namespace {

using ScannerRootsTest = ScannerFixture;

} // namespace

TEST_F(ScannerRootsTest, NamesItemsOfLogsAndOfTheTemporaryFolderAfterTheirRoot)
{
    machine.files->setTemporaryDirectory(FilePath("/var/folders/T/"));
    addTree(logs.appending("b"), 1);
    addTree(FilePath("/var/folders/T/d"), 1);

    const QList<CleanupCategory> categories = scan();

    EXPECT_EQ(categories.at(1).items.at(0).category, u"Logs"_qs);
    EXPECT_EQ(categories.at(3).items.at(0).category, u"T"_qs);
}

TEST_F(ScannerRootsTest, OffersTheCacheFolderInsideAContainerUnderTheContainersName)
{
    addTree(containers.appending("org.example.mail/Data/Library/Caches"), 50);
    addTree(containers.appending("org.example.none/Data/Documents"), 70);

    const CleanupCategory category = scan().at(2);

    ASSERT_EQ(category.itemCount, 1);
    EXPECT_EQ(category.items.first().name, u"org.example.mail"_qs);
    EXPECT_EQ(category.items.first().path, containers.appending("org.example.mail/Data/Library/Caches"));
    EXPECT_EQ(category.items.first().category, u"Container Cache"_qs);
}

TEST_F(ScannerRootsTest, TakesAnUnreadableRootForAnEmptyOne)
{
    addTree(caches.appending("a"), 1);
    machine.files->lock(caches);

    EXPECT_EQ(scan().at(0).itemCount, 0);
}

TEST_F(ScannerRootsTest, PutsThePlatformsPlacesBehindTheTablesOwnAndSharesTheSlice)
{
    addTree(caches.appending("own"), 1);
    addTree(FilePath("/home/ada/.cache/theirs"), 2);
    machine.places->addRow(PlaceTable::UserCache, {FilePath("/home/ada/.cache"), {}});

    const CleanupCategory category = scan().at(0);

    EXPECT_THAT(names(category), ElementsAre(u"own"_qs, u"theirs"_qs));
    EXPECT_EQ(category.items.at(1).category, u".cache"_qs);
    EXPECT_THAT(reports, testing::Contains(Pair(0.0, u"own"_qs)));
    EXPECT_THAT(reports, testing::Contains(Pair(0.125, u"theirs"_qs)));
}

TEST_F(ScannerRootsTest, LeavesTheWholeSliceToTheOnlyRootThatExists)
{
    for (int i = 0; i < 20; ++i)
        addTree(FilePath("/home/ada/.cache").appending("c" + QByteArray::number(i)), 1);
    machine.places->addRow(PlaceTable::UserCache, {FilePath("/home/ada/.cache"), {}});

    (void)scan();

    EXPECT_THAT(reports, testing::Contains(Pair(testing::DoubleEq(0.125), u"c10"_qs)));
}

TEST_F(ScannerRootsTest, GivesContainerPlacesOfThePlatformTheirOwnSuffix)
{
    addTree(FilePath("/home/ada/.var/app/org.example.Draw/cache"), 3);
    machine.places->addRow(PlaceTable::ContainerCache, {FilePath("/home/ada/.var/app"), "cache"});

    const CleanupCategory category = scan().at(2);

    ASSERT_EQ(category.itemCount, 1);
    EXPECT_EQ(category.items.first().name, u"org.example.Draw"_qs);
    EXPECT_EQ(category.items.first().path, FilePath("/home/ada/.var/app/org.example.Draw/cache"));
    EXPECT_EQ(category.items.first().category, u"Container Cache"_qs);
}

TEST_F(ScannerRootsTest, DoesNotOfferWhatIsKept)
{
    addTree(caches.appending("keyring"), 10);
    addTree(caches.appending("thumbnails"), 20);
    machine.places->keep(caches.appending("keyring"), u"holds passwords"_qs);

    EXPECT_THAT(names(scan().at(0)), ElementsAre(u"thumbnails"_qs));
}

TEST_F(ScannerRootsTest, OffersNeitherWhatIsMountedInARootNorWhatAContainerHasMounted)
{
    addTree(caches.appending("own"), 1);
    addTree(caches.appending("mounted"), 2);
    machine.files->addVolume(caches.appending("mounted"));
    addTree(containers.appending("org.example.mail/Data/Library/Caches"), 3);
    machine.files->addVolume(containers.appending("org.example.mail/Data/Library/Caches"));

    const QList<CleanupCategory> categories = scan();

    EXPECT_THAT(names(categories.at(0)), ElementsAre(u"own"_qs));
    EXPECT_EQ(categories.at(0).totalSize, 1);
    EXPECT_EQ(categories.at(2).itemCount, 0);
}

TEST_F(ScannerRootsTest, PassesOverARootOfAVolumeThatAnswersNobody)
{
    addTree(caches.appending("own"), 1);
    addTree(FilePath("/mnt/nas/a"), 2);
    machine.files->addVolume(FilePath("/mnt/nas"));
    machine.files->addLink(FilePath("/home/ada/.cache"), FilePath("/mnt/nas"));
    machine.files->fallSilent(FilePath("/mnt/nas"));
    machine.places->addRow(PlaceTable::UserCache, {FilePath("/home/ada/.cache"), {}});

    EXPECT_THAT(names(scan().at(0)), ElementsAre(u"own"_qs));
    EXPECT_THAT(reports, testing::Contains(Pair(0.0, u"own"_qs)));
}

TEST_F(ScannerRootsTest, NamesItemsBelowTheTruePlaceOfARootThatIsALink)
{
    addTree(FilePath("/data/cache/a"), 5);
    machine.files->addLink(FilePath("/home/ada/.cache"), FilePath("/data/cache"));
    machine.places->addRow(PlaceTable::UserCache, {FilePath("/home/ada/.cache"), {}});

    const CleanupCategory category = scan().at(0);

    ASSERT_EQ(category.itemCount, 1);
    EXPECT_EQ(category.items.first().path, FilePath("/data/cache/a"));
    EXPECT_EQ(category.items.first().category, u".cache"_qs);
}

TEST_F(ScannerRootsTest, NamesTheCacheOfAContainerBehindALinkByItsTruePlace)
{
    addTree(FilePath("/data/Mail/Data/Library/Caches"), 5);
    machine.files->addLink(containers.appending("org.example.mail"), FilePath("/data/Mail"));

    const CleanupCategory category = scan().at(2);

    ASSERT_EQ(category.itemCount, 1);
    EXPECT_EQ(category.items.first().name, u"org.example.mail"_qs);
    EXPECT_EQ(category.items.first().path, FilePath("/data/Mail/Data/Library/Caches"));
}

TEST_F(ScannerRootsTest, PassesOverAContainerWithoutACacheFolder)
{
    addTree(containers.appending("org.example.none/Data"), 5);

    EXPECT_EQ(scan().at(2).itemCount, 0);
}
