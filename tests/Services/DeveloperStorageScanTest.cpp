#include "Services/DeveloperStorageFixture.h"

#include <gmock/gmock.h>

#include <stdexcept>

using namespace Quillmere;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class DeveloperStorageScanTest : public DeveloperStorageFixture
{
};

} // namespace

TEST_F(DeveloperStorageScanTest, FindsNothingOnAMachineWithoutDevelopmentTools)
{
    EXPECT_THAT(scan(), IsEmpty());
}

TEST_F(DeveloperStorageScanTest, MakesAnItemOfEachPlaceInWhichThereIsSomething)
{
    addTree(home.appending(".gradle/caches"), 300);
    addTree(home.appending(".m2/repository"), 40);
    machine.files->addFolder(home.appending(".gradle/daemon"));

    const QList<CleanupCategory> categories = scan();

    ASSERT_EQ(categories.size(), 1);
    const CleanupCategory &category = categories.first();
    EXPECT_EQ(category.name, u"Java Gradle and Maven Caches"_qs);
    EXPECT_EQ(category.localizedName, u"Java, Gradle and Maven caches"_qs);
    EXPECT_EQ(
        category.description,
        u"Build dependencies, Gradle distributions and daemon data; these will be downloaded or rebuilt again."_qs);
    EXPECT_EQ(category.riskLevel, RiskLevel::Medium);
    EXPECT_EQ(category.totalSize, 340);
    EXPECT_EQ(category.itemCount, 2);
    EXPECT_FALSE(category.isSelected);
    EXPECT_TRUE(category.isAvailable);
    EXPECT_FALSE(category.requiresPermission);
    EXPECT_EQ(category.icon, u"cup.and.saucer.fill"_qs);
    ASSERT_THAT(itemNames(category), ElementsAre(u"caches"_qs, u"repository"_qs));
    const CleanupItem &item = category.items.first();
    EXPECT_EQ(item.path, home.appending(".gradle/caches"));
    EXPECT_EQ(item.size, 300);
    EXPECT_EQ(item.category, category.name);
    EXPECT_EQ(item.riskLevel, RiskLevel::Medium);
    EXPECT_FALSE(item.isSelected);
    EXPECT_TRUE(item.isDeletable);
    EXPECT_FALSE(item.requiresPermission);
    EXPECT_TRUE(item.requiresAppClosed);
    EXPECT_EQ(item.ownerApp, std::nullopt);
    EXPECT_EQ(item.lastModified, std::nullopt);
    EXPECT_EQ(item.explanation, category.description);
    EXPECT_EQ(item.recommendedAction, u"Move to Trash"_qs);
}

TEST_F(DeveloperStorageScanTest, SelectsTheSafeGroupsAloneAndKeepsTheirOrder)
{
    for (const char *folder :
         {"Library/Caches/com.apple.FinalCut", "Library/Developer/Xcode/Archives", ".gradle/caches", ".npm/_cacache",
          "Library/Android/sdk/temp", ".android/avd", "Library/Caches/JetBrains/Rider2026.1",
          "Library/Application Support/Code/Cache", "Library/Developer/Xcode/DerivedData"})
        addTree(home.appending(folder), 7);

    const QList<CleanupCategory> categories = scan();

    EXPECT_THAT(names(categories),
                ElementsAre(u"Xcode Build Caches"_qs, u"Visual Studio Code Caches"_qs,
                            u"Xcode Device Support and Archives"_qs, u"Android Studio and JetBrains Caches"_qs,
                            u"Java Gradle and Maven Caches"_qs, u"Language and Package Manager Caches"_qs,
                            u"Android SDK Temporary Files"_qs, u"Smartphone Simulators and System Images"_qs,
                            u"Media and Game Development Caches"_qs));
    for (const CleanupCategory &category : categories) {
        const bool isSafe = category.riskLevel == RiskLevel::Safe;
        EXPECT_EQ(category.isSelected, isSafe) << category.name.toStdString();
        EXPECT_EQ(category.items.first().isSelected, isSafe) << category.name.toStdString();
    }
}

TEST_F(DeveloperStorageScanTest, GivesNoCategoryForAGroupInWhichThereIsNothing)
{
    machine.files->addFolder(home.appending(".gradle/caches/empty"));
    machine.files->addFile(home.appending(".npm/_cacache/index"), 0);
    machine.files->addFile(home.appending(".cargo/git/db"), 900);

    EXPECT_THAT(scan(), IsEmpty());
}

TEST_F(DeveloperStorageScanTest, MeasuresAnSdkOnceThatAllVariablesName)
{
    const FilePath sdk = library.appending("Android/sdk");
    addTree(sdk.appending(".temp"), 10);
    addTree(sdk.appending("system-images"), 20);
    machine.variables->insert("ANDROID_HOME", sdk.bytes());
    machine.variables->insert("ANDROID_SDK_ROOT", sdk.bytes());

    const QList<CleanupCategory> categories = scan();

    ASSERT_EQ(categories.size(), 2);
    EXPECT_THAT(paths(categories.at(0)), ElementsAre(sdk.appending(".temp")));
    EXPECT_THAT(paths(categories.at(1)), ElementsAre(sdk.appending("system-images")));
}

TEST_F(DeveloperStorageScanTest, NamesAnItemBelowNoLinkSinceRemovalRefusesThose)
{
    addTree(FilePath("/data/m2/repository"), 30);
    machine.files->addLink(home.appending(".m2"), FilePath("/data/m2"));

    const QList<CleanupCategory> categories = scan();

    ASSERT_EQ(categories.size(), 1);
    EXPECT_THAT(paths(categories.first()), ElementsAre(FilePath("/data/m2/repository")));
    EXPECT_TRUE(machine.files->trashItem(categories.first().items.first().path).isOk());
}

TEST_F(DeveloperStorageScanTest, GivesNothingForAPlaceThatIsItselfALink)
{
    addTree(FilePath("/data/npm"), 30);
    machine.files->addLink(home.appending(".npm/_cacache"), FilePath("/data/npm"));

    EXPECT_THAT(scan(), IsEmpty());
}

TEST_F(DeveloperStorageScanTest, LosesTheGroupThatWasCancelledAndKeepsThoseBefore)
{
    addTree(library.appending("Developer/Xcode/DerivedData"), 5);
    addTree(home.appending(".gradle/caches"), 6);
    addTree(home.appending(".gradle/daemon"), 7);
    addTree(home.appending(".m2/repository"), 8);
    addTree(home.appending(".npm/_cacache"), 9);
    machine.files->onMeasure([this](const FilePath &path) {
        if (path.isWithin(home.appending(".gradle/daemon")))
            scanner.cancelScan();
    });

    EXPECT_THAT(names(scan()), ElementsAre(u"Xcode Build Caches"_qs));
}

TEST_F(DeveloperStorageScanTest, LosesAGroupThatWasCancelledInItsLastPlace)
{
    addTree(library.appending("Developer/Xcode/DerivedData"), 5);
    addTree(home.appending(".gradle/caches"), 6);
    addTree(home.appending(".m2/repository"), 8);
    machine.files->onMeasure([this](const FilePath &path) {
        if (path.isWithin(home.appending(".m2/repository")))
            scanner.cancelScan();
    });

    EXPECT_THAT(names(scan()), ElementsAre(u"Xcode Build Caches"_qs));
}

TEST_F(DeveloperStorageScanTest, FindsNothingWhenItWasCancelledBefore)
{
    addTree(home.appending(".gradle/caches"), 6);
    scanner.cancelScan();

    EXPECT_THAT(scan(), IsEmpty());
    EXPECT_EQ(service().scanInstalledTools(scanner), std::nullopt);
}

TEST_F(DeveloperStorageScanTest, PassesOverAPlaceThatCannotBeMeasured)
{
    addTree(home.appending(".gradle/caches"), 6);
    addTree(home.appending(".m2/repository"), 8);
    machine.files->onMeasure([this](const FilePath &path) {
        if (path.isWithin(home.appending(".gradle/caches")))
            throw std::runtime_error("the disk is on fire");
    });

    const QList<CleanupCategory> categories = scan();

    ASSERT_EQ(categories.size(), 1);
    EXPECT_THAT(itemNames(categories.first()), ElementsAre(u"repository"_qs));
}

TEST_F(DeveloperStorageScanTest, PassesOverAPlaceThatVanishesWhileItLooks)
{
    addTree(home.appending(".gradle/caches"), 6);
    addTree(home.appending(".m2/repository"), 8);
    machine.files->onMeasure([this](const FilePath &) { machine.files->vanish(home.appending(".m2")); });

    const QList<CleanupCategory> categories = scan();

    ASSERT_EQ(categories.size(), 1);
    EXPECT_THAT(itemNames(categories.first()), ElementsAre(u"caches"_qs));
}

TEST_F(DeveloperStorageScanTest, OffersWhatThePlatformAddsBehindAGroupUnderItsName)
{
    addTree(home.appending(".cache/pip"), 5);
    addTree(home.appending(".cache/uv"), 6);
    addTree(home.appending(".cache/gopls"), 7);
    const QString group = u"Language and Package Manager Caches"_qs;
    machine.places->addEntry(group, {u"uv"_qs, home.appending(".cache/uv")});
    machine.places->addEntry(group, {{}, home.appending(".cache/gopls")});

    const QList<CleanupCategory> categories = scan();

    ASSERT_EQ(categories.size(), 1);
    EXPECT_THAT(itemNames(categories.first()), ElementsAre(u"pip"_qs, u"uv"_qs, u"gopls"_qs));
    EXPECT_EQ(categories.first().totalSize, 18);
}

TEST_F(DeveloperStorageScanTest, DoesNotCountTwiceWhereThePlatformsPlacesLieInOneAnother)
{
    addTree(home.appending(".cache/pip/http"), 5);
    addTree(home.appending(".gradle/caches"), 6);
    addTree(home.appending(".gradle/wrapper/dists"), 7);
    const QString languages = u"Language and Package Manager Caches"_qs;
    const QString java = u"Java Gradle and Maven Caches"_qs;
    machine.places->addEntry(languages, {{}, home.appending(".cache/pip/http")});
    machine.places->addEntry(java, {{}, home.appending(".gradle/caches")});
    machine.places->addEntry(java, {{}, home.appending(".gradle/wrapper")});

    const QList<CleanupCategory> categories = scan();

    ASSERT_EQ(categories.size(), 2);
    EXPECT_THAT(itemNames(categories.at(0)), ElementsAre(u"caches"_qs, u"dists"_qs));
    EXPECT_THAT(itemNames(categories.at(1)), ElementsAre(u"pip"_qs));
}

TEST_F(DeveloperStorageScanTest, OffersWhatAKeptPlaceHoldsWhereThatIsAPlaceByItself)
{
    addTree(home.appending(".cache/ccache/0"), 5);
    const QString group = u"Language and Package Manager Caches"_qs;
    machine.places->addEntry(group, {{}, home.appending(".cache/ccache")});
    machine.places->addEntry(group, {{}, home.appending(".cache/ccache/0")});
    machine.places->keep(home.appending(".cache/ccache"), u"Holds settings."_qs);

    const QList<CleanupCategory> categories = scan();

    ASSERT_EQ(categories.size(), 1);
    EXPECT_THAT(paths(categories.first()), ElementsAre(home.appending(".cache/ccache/0")));
}

TEST_F(DeveloperStorageScanTest, OffersNothingThatHasToBeKept)
{
    addTree(home.appending("temp"), 5);
    machine.variables->insert("ANDROID_HOME", home.bytes());
    machine.places->keep(home.appending("temp"), u"A whole area of the user's."_qs);

    EXPECT_THAT(scan(), IsEmpty());
}

TEST_F(DeveloperStorageScanTest, IsHeldUpByNothingOnAVolumeThatAnswersNobody)
{
    addTree(home.appending(".npm/_cacache"), 1);
    addTree(home.appending(".nvm"), 1);
    for (const FilePath &gone : {home.appending(".m2"), home.appending("go"), library.appending("Caches/JetBrains"),
                                 home.appending(".cargo"), home.appending(".rustup")}) {
        addTree(gone.appending("repository"), 1);
        machine.files->addVolume(gone);
        machine.files->fallSilent(gone);
    }

    EXPECT_THAT(names(scan()), ElementsAre(u"Language and Package Manager Caches"_qs));
    EXPECT_THAT(inventory(), ElementsAre(u"Node.js versions"_qs));
    EXPECT_THAT(machine.files->heldUp(), IsEmpty());
}
