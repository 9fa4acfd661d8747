#include "Fakes/Gate.h"
#include "ViewModels/ProfessionalCleanupFixture.h"

#include <QCoro/QCoroCore>
#include <QSignalSpy>
#include <QTest>

#include <gmock/gmock.h>

#include <stdexcept>

using namespace Quillmere;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class ProfessionalCleanupScanTest : public ProfessionalCleanupFixture
{
};

} // namespace

TEST_F(ProfessionalCleanupScanTest, StartsWithNothingButTheInvitationToScan)
{
    EXPECT_TRUE(model->showsStart());
    EXPECT_FALSE(model->showsList());
    EXPECT_FALSE(model->isScanning());
    EXPECT_FALSE(model->isCleaning());
    EXPECT_EQ(model->scanProgress(), 0);
    EXPECT_EQ(model->cleanupProgress(), 0);
    EXPECT_FALSE(model->hasReport());
    EXPECT_FALSE(model->canClean());
}

TEST_F(ProfessionalCleanupScanTest, FindsTheGroupsTheInventoryAndTheTwoFoldersInTheirOrder)
{
    addEverything();

    QCoro::waitFor(model->scan());

    EXPECT_THAT(foundNames(),
                ElementsAre(u"Visual Studio Code Caches"_qs, u"Java Gradle and Maven Caches"_qs,
                            u"Installed Developer Tools and SDKs"_qs, u"System Caches"_qs, u"Mail Downloads"_qs));
    EXPECT_FALSE(model->isScanning());
    EXPECT_EQ(model->scanProgress(), 1.0);
    EXPECT_TRUE(model->showsList());
    EXPECT_FALSE(state.lastScanDate().isValid());
}

TEST_F(ProfessionalCleanupScanTest, SelectsTheSafeGroupsAlone)
{
    addEverything();
    addTree("Library/Android/sdk/temp", 3);

    QCoro::waitFor(model->scan());

    EXPECT_THAT(selectedNames(), ElementsAre(u"Visual Studio Code Caches"_qs, u"Android SDK Temporary Files"_qs));
    EXPECT_EQ(model->totalSelectedSize(), 8);
}

TEST_F(ProfessionalCleanupScanTest, MakesTheSystemsCachesACategoryWithItselfAsItsOnlyItem)
{
    addTree("/Library/Caches/a", 11);
    addTree("/Library/Caches/b", 12);

    QCoro::waitFor(model->scan());

    ASSERT_EQ(found().size(), 1);
    const CleanupCategory &category = found().first();
    EXPECT_EQ(category.name, u"System Caches"_qs);
    EXPECT_EQ(category.localizedName, u"System Caches"_qs);
    EXPECT_EQ(category.description, u"Global system caches. Clearing requires Full Disk Access."_qs);
    EXPECT_EQ(category.riskLevel, RiskLevel::High);
    EXPECT_EQ(category.totalSize, 23);
    EXPECT_EQ(category.itemCount, 1);
    EXPECT_FALSE(category.isSelected);
    EXPECT_TRUE(category.isAvailable);
    EXPECT_FALSE(category.requiresPermission);
    EXPECT_EQ(category.icon, u"folder.badge.gearshape"_qs);
    ASSERT_EQ(category.items.size(), 1);
    const CleanupItem &item = category.items.first();
    EXPECT_EQ(item.name, u"System Caches"_qs);
    EXPECT_EQ(item.category, u"System Caches"_qs);
    EXPECT_EQ(item.path, systemCaches);
    EXPECT_EQ(item.size, 23);
    EXPECT_EQ(item.riskLevel, RiskLevel::Safe);
    EXPECT_TRUE(item.isSelected);
    EXPECT_TRUE(item.isDeletable);
    EXPECT_FALSE(item.requiresPermission);
    EXPECT_FALSE(item.requiresAppClosed);
    EXPECT_EQ(item.ownerApp, std::nullopt);
    EXPECT_EQ(item.lastModified, std::nullopt);
    EXPECT_EQ(item.explanation, QString());
    EXPECT_EQ(item.recommendedAction, u"Move to Trash"_qs);
}

TEST_F(ProfessionalCleanupScanTest, MakesTheMailsDownloadsACategoryWithItselfAsItsOnlyItem)
{
    addTree("Library/Containers/com.apple.mail/Data/Library/Mail Downloads/one", 13);

    QCoro::waitFor(model->scan());

    ASSERT_EQ(found().size(), 1);
    const CleanupCategory &category = found().first();
    EXPECT_EQ(category.name, u"Mail Downloads"_qs);
    EXPECT_EQ(category.localizedName, u"Mail Downloads"_qs);
    EXPECT_EQ(category.description, u"Local copies of files downloaded through Mail."_qs);
    EXPECT_EQ(category.riskLevel, RiskLevel::High);
    EXPECT_EQ(category.totalSize, 13);
    EXPECT_EQ(category.itemCount, 1);
    EXPECT_FALSE(category.isSelected);
    EXPECT_TRUE(category.isAvailable);
    EXPECT_EQ(category.icon, u"envelope.open"_qs);
    const CleanupItem &item = category.items.first();
    EXPECT_EQ(item.name, u"Mail Downloads"_qs);
    EXPECT_EQ(item.category, u"Mail Downloads"_qs);
    EXPECT_EQ(item.path, FilePath("/home/ada/Library/Containers/com.apple.mail/Data/Library/Mail Downloads"));
    EXPECT_EQ(item.riskLevel, RiskLevel::Safe);
    EXPECT_TRUE(item.isSelected);
    EXPECT_TRUE(item.isDeletable);
}

TEST_F(ProfessionalCleanupScanTest, InvitesAgainOnAMachineWithoutToolsAndWithoutAccessToTheSystemsCaches)
{
    addTree("/Library/Caches/a", 11);
    machine.files->lock(systemCaches);

    QCoro::waitFor(model->scan());

    EXPECT_THAT(foundNames(), IsEmpty());
    EXPECT_TRUE(model->showsStart());
    EXPECT_EQ(model->scanProgress(), 1.0);
}

TEST_F(ProfessionalCleanupScanTest, ShowsTheInventoryAloneWhereThereIsNothingElse)
{
    addTree(".nvm", 100);

    QCoro::waitFor(model->scan());

    EXPECT_THAT(foundNames(), ElementsAre(u"Installed Developer Tools and SDKs"_qs));
    EXPECT_FALSE(model->canClean());
}

TEST_F(ProfessionalCleanupScanTest, RaisesTheOverlayAtOnceWithOneSentenceForTheWholeScan)
{
    addEverything();
    QList<double> fractions;
    QStringList sentences;
    QObject::connect(model.get(), &CleanupViewModel::progressChanged, [&] {
        fractions.append(model->scanProgress());
        sentences.append(model->scanStatus());
    });
    const Gate gate;
    machine.files->onMeasure([gate](const FilePath &) { gate.wait(); });

    const auto scanning = model->scan();
    EXPECT_TRUE(model->isScanning());
    EXPECT_FALSE(model->showsStart());
    gate.open();
    QCoro::waitFor(scanning);

    EXPECT_THAT(fractions, ElementsAre(0, 0.75, 1.0));
    EXPECT_THAT(sentences, testing::Each(u"Scanning professional categories..."_qs));
}

TEST_F(ProfessionalCleanupScanTest, ShowsTheGroupsWhileTheRestIsStillLookedFor)
{
    addEverything();
    const Gate gate;
    machine.files->onMeasure([gate](const FilePath &path) {
        if (path.isWithin(FilePath("/home/ada/.nvm")))
            gate.wait();
    });
    const QSignalSpy resets(model->categories(), &QAbstractItemModel::modelReset);

    const auto scanning = model->scan();
    ASSERT_TRUE(QTest::qWaitFor([this] { return model->scanProgress() == 0.75; }));

    EXPECT_THAT(foundNames(), ElementsAre(u"Visual Studio Code Caches"_qs, u"Java Gradle and Maven Caches"_qs));
    EXPECT_TRUE(model->isScanning());
    EXPECT_TRUE(model->showsList());
    model->categories()->toggleExpanded(0);
    gate.open();
    QCoro::waitFor(scanning);
    EXPECT_EQ(found().size(), 5);
    EXPECT_EQ(resets.count(), 1);
    EXPECT_TRUE(
        model->categories()->data(model->categories()->index(0), CleanupCategoryListModel::IsExpandedRole).toBool());
}

TEST_F(ProfessionalCleanupScanTest, CountsAFolderThatCannotBeMeasuredAsNothing)
{
    addEverything();
    machine.files->onMeasure([](const FilePath &path) {
        if (path.isWithin(FilePath("/Library/Caches")))
            throw std::runtime_error("the disk is on fire");
    });

    QCoro::waitFor(model->scan());

    EXPECT_EQ(found().size(), 4);
    EXPECT_EQ(found().last().name, u"Mail Downloads"_qs);
    EXPECT_EQ(model->scanProgress(), 1.0);
}

TEST_F(ProfessionalCleanupScanTest, LeavesTheInventoryWhenAllIsSelectedAndTouchesEachRowWhenNothingIs)
{
    addEverything();
    QCoro::waitFor(model->scan());

    model->selectAll();
    EXPECT_THAT(selectedNames(),
                ElementsAre(u"Visual Studio Code Caches"_qs, u"Java Gradle and Maven Caches"_qs, u"System Caches"_qs,
                            u"Mail Downloads"_qs));
    EXPECT_EQ(model->totalSelectedSize(), 36);

    QList<CleanupCategory> categories = found();
    categories[2].isSelected = true;
    model->categories()->setCategories(categories);
    model->selectAll();
    EXPECT_TRUE(found().at(2).isSelected);
    model->deselectAll();
    EXPECT_THAT(selectedNames(), IsEmpty());
    EXPECT_FALSE(model->canClean());
}
