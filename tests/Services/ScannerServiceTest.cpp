#include "Services/ScannerService.h"
#include "Fakes/InstalledLocalizer.h"
#include "Fakes/PretendMachine.h"
#include "Values/CancellationError.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

using namespace Quillmere;
using testing::ElementsAre;
using testing::Pair;

namespace {

class ScannerServiceTest : public testing::Test
{
protected:
    using Reports = std::vector<std::pair<double, QString>>;

    QList<CleanupCategory> scan(const std::stop_token &task = {})
    {
        return scanner.scanSafeCategories(
            [this](double fraction, const QString &text) { reports.emplace_back(fraction, text); }, task);
    }

    /// Folder @p path with one file of @p bytes in it.
    void addTree(const FilePath &path, qint64 bytes) { machine.files->addFile(path.appending("data"), bytes); }

    QStringList names(const CleanupCategory &category) const
    {
        QStringList names;
        for (const CleanupItem &item : category.items)
            names.append(item.name);
        return names;
    }

    InstalledLocalizer localizer;
    PretendMachine machine;
    ScannerService scanner{machine.files, machine.places};
    const FilePath caches{"/home/ada/Library/Caches"};
    const FilePath logs{"/home/ada/Library/Logs"};
    const FilePath containers{"/home/ada/Library/Containers"};
    Reports reports;
};

} // namespace

TEST_F(ScannerServiceTest, ReturnsTheFourCategoriesInOrderEvenWhenEverythingIsEmpty)
{
    machine.files->addFolder(caches);

    const QList<CleanupCategory> categories = scan();

    ASSERT_EQ(categories.size(), 4);
    const struct
    {
        QStringView name, localizedName, description, icon;
    } expected[] = {
        {u"User Cache", u"User Cache", u"Application caches in your user folder", u"folder"},
        {u"User Logs", u"User Logs", u"System and application log files", u"doc.text"},
        {u"Container Cache", u"Container Cache", u"Caches from sandboxed applications", u"shippingbox"},
        {u"Temporary Files", u"Temporary Files", u"System temporary files", u"clock"},
    };
    for (int i = 0; i < 4; ++i) {
        const CleanupCategory &category = categories.at(i);
        EXPECT_EQ(category.name, (expected[i].name));
        EXPECT_EQ(category.localizedName, (expected[i].localizedName));
        EXPECT_EQ(category.description, (expected[i].description));
        EXPECT_EQ(category.icon, (expected[i].icon));
        EXPECT_EQ(category.riskLevel, RiskLevel::Safe);
        EXPECT_EQ(category.totalSize, 0);
        EXPECT_EQ(category.itemCount, 0);
        EXPECT_TRUE(category.items.isEmpty());
        EXPECT_TRUE(category.isSelected);
        EXPECT_TRUE(category.isAvailable);
        EXPECT_FALSE(category.requiresPermission);
    }
}

TEST_F(ScannerServiceTest, MakesOneItemOfEachChildWithTheSizeOfItsWholeTree)
{
    addTree(caches.appending("browser"), 300);
    addTree(caches.appending("browser/.hidden/deep"), 40);
    addTree(caches.appending("editor"), 7);

    const CleanupCategory category = scan().at(0);

    ASSERT_THAT(names(category), ElementsAre(u"browser"_qs, u"editor"_qs));
    const CleanupItem &item = category.items.first();
    EXPECT_EQ(item.path, caches.appending("browser"));
    EXPECT_EQ(item.size, 340);
    EXPECT_EQ(item.category, u"Caches"_qs);
    EXPECT_EQ(item.riskLevel, RiskLevel::Safe);
    EXPECT_TRUE(item.isSelected);
    EXPECT_TRUE(item.isDeletable);
    EXPECT_FALSE(item.requiresPermission);
    EXPECT_FALSE(item.requiresAppClosed);
    EXPECT_FALSE(item.ownerApp.has_value());
    EXPECT_FALSE(item.lastModified.has_value());
    EXPECT_EQ(item.explanation, QString());
    EXPECT_EQ(item.recommendedAction, u"Move to Trash"_qs);
    EXPECT_FALSE(item.id.isNull());
    EXPECT_EQ(category.totalSize, 347);
    EXPECT_EQ(category.itemCount, 2);
}

TEST_F(ScannerServiceTest, GivesNoItemForALooseFileInARoot)
{
    machine.files->addFile(caches.appending("loose.db"), 5000);

    EXPECT_EQ(scan().at(0).itemCount, 0);
}

TEST_F(ScannerServiceTest, GivesNoItemForLinksAloneOrEmptyFoldersAlone)
{
    machine.files->addFile(FilePath("/home/ada/big"), 9000);
    machine.files->addLink(caches.appending("links/one"), FilePath("/home/ada/big"));
    machine.files->addLink(caches.appending("link"), FilePath("/home/ada"));
    machine.files->addFolder(caches.appending("empty/empty"));

    EXPECT_EQ(scan().at(0).itemCount, 0);
}

TEST_F(ScannerServiceTest, SkipsHiddenChildrenButCountsHiddenFilesDeepInside)
{
    addTree(caches.appending(".hidden"), 100);
    machine.files->addFile(caches.appending("shown/.secret"), 11);

    const CleanupCategory category = scan().at(0);

    EXPECT_THAT(names(category), ElementsAre(u"shown"_qs));
    EXPECT_EQ(category.totalSize, 11);
}

TEST_F(ScannerServiceTest, ReportsEveryTenthOfTwentyFiveEntries)
{
    for (int i = 0; i < 25; ++i)
        addTree(caches.appending("c" + QByteArray::number(i)), 1);

    (void)scan();

    ASSERT_EQ(reports.size(), 4U);
    EXPECT_THAT(reports,
                ElementsAre(Pair(testing::DoubleEq(0.0), u"c0"_qs), Pair(testing::DoubleEq(0.1), u"c10"_qs),
                            Pair(testing::DoubleEq(0.2), u"c20"_qs), Pair(1.0, u"Scan Complete"_qs)));
}

TEST_F(ScannerServiceTest, EndsWithScanCompleteEvenWhenEverythingWasEmpty)
{
    (void)scan();

    EXPECT_THAT(reports, ElementsAre(Pair(1.0, u"Scan Complete"_qs)));
}

TEST_F(ScannerServiceTest, GivesEachCategoryItsQuarterOfTheBar)
{
    addTree(caches.appending("a"), 1);
    addTree(logs.appending("b"), 1);
    addTree(containers.appending("c/Data/Library/Caches"), 1);
    addTree(FilePath("/tmp/d"), 1);

    (void)scan();

    EXPECT_THAT(reports,
                ElementsAre(Pair(0.0, u"a"_qs), Pair(0.25, u"b"_qs), Pair(0.5, u"c"_qs), Pair(0.75, u"d"_qs),
                            Pair(1.0, u"Scan Complete"_qs)));
}

TEST_F(ScannerServiceTest, NamesItemsOfLogsAndOfTheTemporaryFolderAfterTheirRoot)
{
    machine.files->setTemporaryDirectory(FilePath("/var/folders/T/"));
    addTree(logs.appending("b"), 1);
    addTree(FilePath("/var/folders/T/d"), 1);

    const QList<CleanupCategory> categories = scan();

    EXPECT_EQ(categories.at(1).items.at(0).category, u"Logs"_qs);
    EXPECT_EQ(categories.at(3).items.at(0).category, u"T"_qs);
}

TEST_F(ScannerServiceTest, OffersTheCacheFolderInsideAContainerUnderTheContainersName)
{
    addTree(containers.appending("org.example.mail/Data/Library/Caches"), 50);
    addTree(containers.appending("org.example.none/Data/Documents"), 70);

    const CleanupCategory category = scan().at(2);

    ASSERT_EQ(category.itemCount, 1);
    EXPECT_EQ(category.items.first().name, u"org.example.mail"_qs);
    EXPECT_EQ(category.items.first().path, containers.appending("org.example.mail/Data/Library/Caches"));
    EXPECT_EQ(category.items.first().category, u"Container Cache"_qs);
}

TEST_F(ScannerServiceTest, TakesAnUnreadableRootForAnEmptyOne)
{
    addTree(caches.appending("a"), 1);
    machine.files->lock(caches);

    EXPECT_EQ(scan().at(0).itemCount, 0);
}

TEST_F(ScannerServiceTest, PassesOverWhatCannotBeReadInsideATree)
{
    machine.files->addFile(caches.appending("a/shown"), 10);
    machine.files->addFile(caches.appending("a/locked"), 100);
    machine.files->lock(caches.appending("a/locked"));
    machine.files->addFile(caches.appending("a/private/file"), 1000);
    machine.files->lock(caches.appending("a/private"));

    EXPECT_EQ(scan().at(0).totalSize, 10);
}

TEST_F(ScannerServiceTest, ThrowsWhenCancelledInsideAWalkAndReturnsNoPart)
{
    addTree(caches.appending("a"), 1);
    addTree(logs.appending("b"), 1);
    machine.files->onMeasure([this](const FilePath &path) {
        if (path.isWithin(logs))
            scanner.cancelScan();
    });

    EXPECT_THROW((void)scan(), CancellationError);
    EXPECT_TRUE(scanner.isCancelled());
}

TEST_F(ScannerServiceTest, LooksAtNoFurtherEntryOnceCancelledAmongLooseFiles)
{
    for (int number = 10; number < 100; ++number)
        machine.files->addFile(caches.appending("loose" + QByteArray::number(number)), 1);
    int reports = 0;

    EXPECT_THROW((void)scanner.scanSafeCategories([&](double, const QString &name) {
        if (!name.startsWith(u"loose"))
            return;
        ++reports;
        scanner.cancelScan();
    }),
                 CancellationError);
    EXPECT_EQ(reports, 1);
}

TEST_F(ScannerServiceTest, ThrowsWhenCancelledAfterTheLastWalkBeforeTheReturn)
{
    addTree(FilePath("/tmp/last"), 1);
    machine.files->onMeasure([this](const FilePath &) { scanner.cancelScan(); });

    EXPECT_THROW((void)scan(), CancellationError);
}

TEST_F(ScannerServiceTest, CanNoLongerBeCancelledOnceTheTestAfterTheFourthWalkHasPassed)
{
    const QList<CleanupCategory> categories = scanner.scanSafeCategories([this](double fraction, const QString &) {
        if (fraction == 1.0)
            scanner.cancelScan();
    });

    EXPECT_EQ(categories.size(), 4);
    EXPECT_TRUE(scanner.isCancelled());
}

TEST_F(ScannerServiceTest, ThrowsWhenItsTaskIsCancelled)
{
    std::stop_source task;
    addTree(caches.appending("a"), 1);
    machine.files->onMeasure([&](const FilePath &) { task.request_stop(); });

    EXPECT_THROW((void)scan(task.get_token()), CancellationError);
    EXPECT_FALSE(scanner.isCancelled());
}

TEST_F(ScannerServiceTest, ThrowsOnASecondRunWithoutResetAndWorksAfterOne)
{
    scanner.cancelScan();
    EXPECT_THROW((void)scan(), CancellationError);
    EXPECT_TRUE(reports.empty());

    scanner.resetCancellation();
    EXPECT_EQ(scan().size(), 4);
}

TEST_F(ScannerServiceTest, PutsThePlatformsPlacesBehindTheTablesOwnAndSharesTheSlice)
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

TEST_F(ScannerServiceTest, LeavesTheWholeSliceToTheOnlyRootThatExists)
{
    for (int i = 0; i < 20; ++i)
        addTree(FilePath("/home/ada/.cache").appending("c" + QByteArray::number(i)), 1);
    machine.places->addRow(PlaceTable::UserCache, {FilePath("/home/ada/.cache"), {}});

    (void)scan();

    EXPECT_THAT(reports, testing::Contains(Pair(testing::DoubleEq(0.125), u"c10"_qs)));
}

TEST_F(ScannerServiceTest, GivesContainerPlacesOfThePlatformTheirOwnSuffix)
{
    addTree(FilePath("/home/ada/.var/app/org.example.Draw/cache"), 3);
    machine.places->addRow(PlaceTable::ContainerCache, {FilePath("/home/ada/.var/app"), "cache"});

    const CleanupCategory category = scan().at(2);

    ASSERT_EQ(category.itemCount, 1);
    EXPECT_EQ(category.items.first().name, u"org.example.Draw"_qs);
    EXPECT_EQ(category.items.first().path, FilePath("/home/ada/.var/app/org.example.Draw/cache"));
    EXPECT_EQ(category.items.first().category, u"Container Cache"_qs);
}

TEST_F(ScannerServiceTest, DoesNotOfferWhatIsKept)
{
    addTree(caches.appending("keyring"), 10);
    addTree(caches.appending("thumbnails"), 20);
    machine.places->keep(caches.appending("keyring"), u"holds passwords"_qs);

    EXPECT_THAT(names(scan().at(0)), ElementsAre(u"thumbnails"_qs));
}

TEST_F(ScannerServiceTest, ThrowsWhenCancelledWhileItLooksWhatIsKept)
{
    addTree(caches.appending("a"), 1);
    bool wasTold = false;
    machine.places->onQuestion([&](const FilePath &, const Cancellation &cancellation) {
        scanner.cancelScan();
        wasTold = cancellation.isRequested();
    });

    EXPECT_THROW((void)scan(), CancellationError);
    EXPECT_TRUE(wasTold);
}

TEST_F(ScannerServiceTest, OffersNeitherWhatIsMountedInARootNorWhatAContainerHasMounted)
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

TEST_F(ScannerServiceTest, ReportsChildrenThatAreNoFoldersLikeAllOthers)
{
    for (int i = 0; i < 10; ++i)
        machine.files->addFile(caches.appending("file" + QByteArray::number(i)), 1);
    machine.files->addLink(caches.appending("link"), FilePath("/home/ada"));

    (void)scan();

    EXPECT_THAT(reports, testing::Contains(Pair(0.0, u"file0"_qs)));
    EXPECT_THAT(reports, testing::Contains(Pair(testing::DoubleEq(0.25 * 10 / 11), u"link"_qs)));
}

TEST_F(ScannerServiceTest, PassesOverARootOfAVolumeThatAnswersNobody)
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

TEST_F(ScannerServiceTest, NamesItemsBelowTheTruePlaceOfARootThatIsALink)
{
    addTree(FilePath("/data/cache/a"), 5);
    machine.files->addLink(FilePath("/home/ada/.cache"), FilePath("/data/cache"));
    machine.places->addRow(PlaceTable::UserCache, {FilePath("/home/ada/.cache"), {}});

    const CleanupCategory category = scan().at(0);

    ASSERT_EQ(category.itemCount, 1);
    EXPECT_EQ(category.items.first().path, FilePath("/data/cache/a"));
    EXPECT_EQ(category.items.first().category, u".cache"_qs);
}

TEST_F(ScannerServiceTest, MeasuresAFolderAndCountsItsRegularFiles)
{
    machine.files->addFile(FilePath("/home/ada/x/a"), 5);
    machine.files->addFile(FilePath("/home/ada/x/y/b"), 6);
    machine.files->addLink(FilePath("/home/ada/x/l"), FilePath("/home/ada/x/a"));

    EXPECT_EQ(scanner.scanDirectory(FilePath("/home/ada/x")), (TreeSize{11, 2}));
    EXPECT_EQ(scanner.scanDirectory(FilePath("/home/ada/x/a")), (TreeSize{0, 0}));
    EXPECT_EQ(scanner.scanDirectory(FilePath("/home/ada/none")), (TreeSize{0, 0}));
}

TEST_F(ScannerServiceTest, GivesZeroForAnEmptyOrMissingFolderEvenAfterACancel)
{
    machine.files->addFolder(FilePath("/home/ada/empty"));
    scanner.cancelScan();

    EXPECT_EQ(scanner.scanDirectory(FilePath("/home/ada/empty")), (TreeSize{0, 0}));
    EXPECT_EQ(scanner.scanDirectory(FilePath("/home/ada/none")), (TreeSize{0, 0}));
}

TEST_F(ScannerServiceTest, NamesTheCacheOfAContainerBehindALinkByItsTruePlace)
{
    addTree(FilePath("/data/Mail/Data/Library/Caches"), 5);
    machine.files->addLink(containers.appending("org.example.mail"), FilePath("/data/Mail"));

    const CleanupCategory category = scan().at(2);

    ASSERT_EQ(category.itemCount, 1);
    EXPECT_EQ(category.items.first().name, u"org.example.mail"_qs);
    EXPECT_EQ(category.items.first().path, FilePath("/data/Mail/Data/Library/Caches"));
}

TEST_F(ScannerServiceTest, PassesOverAContainerWithoutACacheFolder)
{
    addTree(containers.appending("org.example.none/Data"), 5);

    EXPECT_EQ(scan().at(2).itemCount, 0);
}

TEST_F(ScannerServiceTest, MeasuresAloneWhatAFolderOccupies)
{
    addTree(FilePath("/home/ada/x"), 7);

    EXPECT_EQ(scanner.sizeOf(FilePath("/home/ada/x")), 7);
    EXPECT_EQ(scanner.sizeOf(FilePath("/home/ada/none")), 0);
}

TEST_F(ScannerServiceTest, MeasuresNothingOnceItWasStopped)
{
    addTree(FilePath("/home/ada/x"), 7);
    std::stop_source task;
    task.request_stop();

    EXPECT_EQ(scanner.sizeOf(FilePath("/home/ada/x"), task.get_token()), std::nullopt);
    scanner.cancelScan();
    EXPECT_EQ(scanner.sizeOf(FilePath("/home/ada/x")), std::nullopt);
}

TEST_F(ScannerServiceTest, TakesAMeasureThatFailsForNothing)
{
    addTree(FilePath("/home/ada/x"), 7);
    machine.files->onMeasure([](const FilePath &) { throw std::runtime_error("the disk is on fire"); });

    EXPECT_EQ(scanner.sizeOf(FilePath("/home/ada/x")), 0);
}
