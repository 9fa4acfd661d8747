#include "Services/ScannerFixture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Quillmere;
using testing::ElementsAre;
using testing::Pair;

namespace {

using ScannerServiceTest = ScannerFixture;

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

TEST_F(ScannerServiceTest, PassesOverWhatCannotBeReadInsideATree)
{
    machine.files->addFile(caches.appending("a/shown"), 10);
    machine.files->addFile(caches.appending("a/locked"), 100);
    machine.files->lock(caches.appending("a/locked"));
    machine.files->addFile(caches.appending("a/private/file"), 1000);
    machine.files->lock(caches.appending("a/private"));

    EXPECT_EQ(scan().at(0).totalSize, 10);
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
