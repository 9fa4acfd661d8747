#include "Services/CleanupService.h"
#include "Fakes/InstalledLocalizer.h"
#include "Fakes/PretendMachine.h"
#include "Utilities/FailureDescription.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Quillmere;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class CleanupServiceTest : public testing::Test
{
protected:
    CleanupItem addItem(const QByteArray &name, qint64 size = 10, const QString &category = u"Caches"_qs)
    {
        CleanupItem item;
        item.name = QString::fromUtf8(name);
        item.path = caches.appending(name);
        item.size = size;
        item.category = category;
        machine.files->addFile(item.path.appending("data"), size);
        return item;
    }

    CleanupItem itemAt(const char *path)
    {
        CleanupItem item;
        item.name = FilePath::displayText(FilePath(path).lastPathComponent());
        item.path = FilePath(path);
        item.category = u"Caches"_qs;
        return item;
    }

    CleanupResult clean(const QList<CleanupItem> &items, bool moveToTrash)
    {
        progress.clear();
        return cleaner.cleanItems(items, moveToTrash, [this](double fraction) { progress.push_back(fraction); });
    }

    InstalledLocalizer localizer;
    PretendMachine machine;
    CleanupService cleaner{machine.files, machine.places};
    const FilePath caches{"/home/ada/Library/Caches"};
    std::vector<double> progress;
};

} // namespace

TEST_F(CleanupServiceTest, MovesEveryItemToTheTrashWhateverItsRiskOrCategory)
{
    CleanupItem risky = addItem("risky", 5, u"Anything"_qs);
    risky.riskLevel = RiskLevel::Dangerous;

    const CleanupResult result = clean({addItem("a", 10), risky}, true);

    EXPECT_EQ(result, (CleanupResult{2, 15, 0, {}}));
    EXPECT_THAT(machine.files->trashed(), ElementsAre(caches.appending("a"), caches.appending("risky")));
    EXPECT_THAT(progress, ElementsAre(0.5, 1.0));
}

TEST_F(CleanupServiceTest, CountsTheSizeAsScannedEvenOfAFileThatGrew)
{
    const CleanupItem item = addItem("a", 10);
    machine.files->addFile(item.path.appending("data"), 9999);

    EXPECT_EQ(clean({item}, true).sizeCleaned, 10);
}

TEST_F(CleanupServiceTest, GivesZerosAndNoProgressWhenAllItemsAreRefused)
{
    machine.files->addFolder(FilePath("/usr"));
    machine.files->addFolder(FilePath("/home/ada/Documents"));

    const CleanupResult result
        = clean({itemAt("/usr/"), itemAt("/home/ada"), itemAt("/home/ada/Documents"), itemAt("/")}, true);

    EXPECT_EQ(result, CleanupResult());
    EXPECT_THAT(progress, IsEmpty());
    EXPECT_THAT(machine.files->trashed(), IsEmpty());
}

TEST_F(CleanupServiceTest, GivesZerosAndNoProgressForAnEmptyList)
{
    EXPECT_EQ(clean({}, false), CleanupResult());
    EXPECT_THAT(progress, IsEmpty());
}

TEST_F(CleanupServiceTest, DropsAnItemThatIsNotDeletableBeforeItLooksAtItsPath)
{
    CleanupItem item = addItem("a");
    item.isDeletable = false;
    const int before = machine.files->questionsForTheHome();

    EXPECT_EQ(clean({item}, true), CleanupResult());

    EXPECT_TRUE(machine.files->contains(item.path));
    // Every other item is compared with the home.
    EXPECT_EQ(machine.files->questionsForTheHome(), before);
    EXPECT_EQ(cleaner.validateBeforeCleanup({itemAt("/home/ada/Library/Caches/a")}).size(), 1);
    EXPECT_GT(machine.files->questionsForTheHome(), before);
}

TEST_F(CleanupServiceTest, KeepsTheOrderOfWhatMayBeTouched)
{
    const CleanupItem first = addItem("z");
    const CleanupItem second = addItem("a");

    EXPECT_THAT(cleaner.validateBeforeCleanup({first, itemAt("/bin"), second}), ElementsAre(first, second));
}

TEST_F(CleanupServiceTest, RefusesALinkToTheDocumentsOfTheHome)
{
    machine.files->addFolder(FilePath("/home/ada/Documents"));
    machine.files->addLink(caches.appending("link"), FilePath("/home/ada/Documents"));

    EXPECT_THAT(cleaner.validateBeforeCleanup({itemAt("/home/ada/Library/Caches/link")}), IsEmpty());
}

TEST_F(CleanupServiceTest, RefusesTheDocumentsOfAHomeThatIsALinkByEitherName)
{
    PretendMachine elsewhere;
    elsewhere.files = std::make_shared<PretendFileManager>(FilePath("/disk/ada"));
    elsewhere.files->setHome(FilePath("/home/ada"));
    elsewhere.files->addLink(FilePath("/home/ada"), FilePath("/disk/ada"));
    elsewhere.files->addFolder(FilePath("/disk/ada/Documents"));
    const FilePath cache("/disk/ada/Library/Caches");
    elsewhere.files->addLink(cache.appending("documents"), FilePath("/home/ada/Documents"));
    elsewhere.files->addLink(cache.appending("home"), FilePath("/home/ada"));
    elsewhere.files->addFile(cache.appending("mere/data"), 1);
    const CleanupService careful(elsewhere.files, elsewhere.places);

    const QList<CleanupItem> valid = careful.validateBeforeCleanup(
        {itemAt("/disk/ada"), itemAt("/disk/ada/Documents"), itemAt("/home/ada/Documents"),
         itemAt("/disk/ada/Library/Caches/documents"), itemAt("/disk/ada/Library/Caches/home"),
         itemAt("/disk/ada/Library/Caches/mere")});

    ASSERT_EQ(valid.size(), 1);
    EXPECT_EQ(valid.first().path, cache.appending("mere"));
}

TEST_F(CleanupServiceTest, RefusesALinkToTheHomeOrToASystemFolder)
{
    machine.files->addFolder(FilePath("/private/etc"));
    machine.files->addLink(FilePath("/etc"), FilePath("/private/etc"));
    machine.files->addLink(caches.appending("home"), FilePath("/home/ada"));

    EXPECT_THAT(cleaner.validateBeforeCleanup({itemAt("/etc"), itemAt("/home/ada/Library/Caches/home")}), IsEmpty());
}

TEST_F(CleanupServiceTest, TrashesALinkToElsewhereAsTheLinkItself)
{
    machine.files->addFile(FilePath("/home/ada/Documents/deep/letter"), 5);
    machine.files->addLink(caches.appending("link"), FilePath("/home/ada/Documents/deep"));

    const CleanupResult result = clean({itemAt("/home/ada/Library/Caches/link")}, true);

    EXPECT_EQ(result.filesRemoved, 1);
    EXPECT_FALSE(machine.files->contains(caches.appending("link")));
    EXPECT_TRUE(machine.files->contains(FilePath("/home/ada/Documents/deep/letter")));
}

struct DeletionCase
{
    const char *name;
    RiskLevel risk;
    QStringView category;
    bool isDeleted;
};

class DeletionRuleTest : public CleanupServiceTest, public testing::WithParamInterface<DeletionCase>
{
};

TEST_P(DeletionRuleTest, DecidesByRiskAndByTheWordInTheCategory)
{
    CleanupItem item = addItem("item", 10, GetParam().category.toString());
    item.riskLevel = GetParam().risk;

    const CleanupResult result = clean({item}, false);

    EXPECT_EQ(result, GetParam().isDeleted ? (CleanupResult{1, 10, 0, {}}) : (CleanupResult{0, 0, 1, {}}));
    EXPECT_EQ(machine.files->contains(item.path), !GetParam().isDeleted);
    EXPECT_EQ(progress.size(), GetParam().isDeleted ? 1U : 0U);
    EXPECT_THAT(machine.files->trashed(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Rows, DeletionRuleTest,
                         testing::Values(DeletionCase{"Caches", RiskLevel::Safe, u"Caches", true},
                                         DeletionCase{"ContainerCache", RiskLevel::Safe, u"Container Cache", true},
                                         DeletionCase{"LinuxCache", RiskLevel::Safe, u".cache", true},
                                         DeletionCase{"UpperCase", RiskLevel::Safe, u"MY CACHE", true},
                                         DeletionCase{"LettersOfTemp", RiskLevel::Safe, u"Attempts", true},
                                         DeletionCase{"MediumCaches", RiskLevel::Medium, u"Caches", false},
                                         DeletionCase{"DangerousCaches", RiskLevel::Dangerous, u"Caches", false},
                                         DeletionCase{"Logs", RiskLevel::Safe, u"Logs", false},
                                         DeletionCase{"TemporaryFolder", RiskLevel::Safe, u"tmp", false}),
                         [](const auto &info) { return info.param.name; });

TEST_F(CleanupServiceTest, StaysBelowTheEndOfTheBarWhenTheLastItemsAreSkippedInSilence)
{
    (void)clean({addItem("a"), addItem("b", 1, u"Logs"_qs), addItem("c", 1, u"Logs"_qs)}, false);

    ASSERT_EQ(progress.size(), 1U);
    EXPECT_DOUBLE_EQ(progress.back(), 1.0 / 3.0);
}

TEST_F(CleanupServiceTest, AdvancesPastAMissingThirdOfTenItems)
{
    QList<CleanupItem> items;
    for (int i = 0; i < 10; ++i)
        items.append(addItem("c" + QByteArray::number(i), 1));
    machine.files->vanish(items.at(2).path);

    const CleanupResult result = clean(items, true);

    EXPECT_EQ(result, (CleanupResult{9, 9, 1, {}}));
    ASSERT_EQ(progress.size(), 10U);
    EXPECT_DOUBLE_EQ(progress.at(2), 0.3);
}

TEST_F(CleanupServiceTest, AdvancesPastAMissingItemThatItWouldNotHaveDeleted)
{
    const CleanupItem item = addItem("log", 10, u"Logs"_qs);
    machine.files->vanish(item.path);

    const CleanupResult result = clean({item}, false);

    EXPECT_EQ(result, (CleanupResult{0, 0, 1, {}}));
    EXPECT_THAT(progress, ElementsAre(1.0));
}

TEST_F(CleanupServiceTest, TurnsEachFailureIntoALineAndGoesOn)
{
    const CleanupItem locked = addItem("session-lock");
    machine.files->refuse(locked.path, Failure::Kind::NoPermission);

    const CleanupResult result = clean({locked, addItem("b", 3)}, true);

    EXPECT_EQ(result.filesRemoved, 1);
    EXPECT_EQ(result.filesSkipped, 1);
    EXPECT_EQ(result.sizeCleaned, 3);
    ASSERT_EQ(result.errors.size(), 1);
    EXPECT_THAT(result.errors.first().toStdString(), testing::StartsWith("Failed to clean session-lock: "));
    EXPECT_GT(result.errors.first().size(), u"Failed to clean session-lock: "_qs.size());
    EXPECT_THAT(progress, ElementsAre(0.5, 1.0));
}

TEST_F(CleanupServiceTest, PassesOverAVolumeThatDoesNotAnswerAndAsksNothingOfIt)
{
    machine.files->addVolume(caches.appending("nas"));
    const QList<CleanupItem> items = {addItem("nas/a"), addItem("b", 3), addItem("nas/c", 1, u"Logs"_qs)};
    machine.files->fallSilent(caches.appending("nas"));

    for (const bool moveToTrash : {true, false}) {
        machine.files->addFile(items.at(1).path.appending("data"), 3);
        const CleanupResult result = clean(items, moveToTrash);

        EXPECT_EQ(result.filesRemoved, 1);
        EXPECT_EQ(result.sizeCleaned, 3);
        EXPECT_EQ(result.filesSkipped, 2);
        ASSERT_EQ(result.errors.size(), 2);
        EXPECT_EQ(result.errors.first(),
                  u"Failed to clean nas/a: "_qs + localizedDescription({Failure::Kind::NotAnswering, {}, {}}));
        EXPECT_THAT(progress, ElementsAre(1.0 / 3.0, 2.0 / 3.0, 1.0));
    }
    EXPECT_THAT(machine.files->heldUp(), IsEmpty());
    EXPECT_TRUE(machine.files->contains(items.first().path));
}

TEST_F(CleanupServiceTest, RefusesALinkToTheDocumentsThatLieOnAVolumeThatDoesNotAnswer)
{
    machine.files->addVolume(FilePath("/home/ada/Documents"));
    machine.files->addLink(caches.appending("link"), FilePath("/home/ada/Documents"));
    machine.files->fallSilent(FilePath("/home/ada/Documents"));

    EXPECT_EQ(clean({itemAt("/home/ada/Library/Caches/link")}, true), CleanupResult());
    EXPECT_THAT(machine.files->heldUp(), IsEmpty());
}

TEST_F(CleanupServiceTest, FindsNothingLeftOnASecondRunAndCountsSkips)
{
    const QList<CleanupItem> items = {addItem("a"), addItem("b")};
    (void)clean(items, true);

    EXPECT_EQ(clean(items, true), (CleanupResult{0, 0, 2, {}}));
}

TEST_F(CleanupServiceTest, RefusesAnItemWhoseFolderHasBecomeALinkSinceTheScan)
{
    const CleanupItem item = addItem("parent/item");
    machine.files->addFile(FilePath("/home/ada/Documents/item/letter"), 1);
    machine.files->vanish(caches.appending("parent"));
    machine.files->addLink(caches.appending("parent"), FilePath("/home/ada/Documents"));

    const CleanupResult result = clean({item}, true);

    EXPECT_EQ(result.filesSkipped, 1);
    EXPECT_EQ(result.errors.size(), 1);
    EXPECT_TRUE(machine.files->contains(FilePath("/home/ada/Documents/item/letter")));
}

TEST_F(CleanupServiceTest, SeesTheVolumesOntoDiskOnceARunAndNotBeforeItIsAsked)
{
    const QList<CleanupItem> items = {addItem("a"), addItem("b"), addItem("c")};
    QList<FilePath> paths;
    machine.files->onSynchronization([&](const QList<FilePath> &seen) { paths = seen; });

    const CleanupResult result = clean(items, true);
    EXPECT_EQ(machine.files->synchronizations(), 0);
    cleaner.synchronize(items, result);

    EXPECT_EQ(machine.files->synchronizations(), 1);
    EXPECT_THAT(paths, ElementsAre(caches.appending("a"), caches.appending("b"), caches.appending("c")));
}

TEST_F(CleanupServiceTest, SeesNothingOntoDiskWhereNothingHasGone)
{
    const QList<CleanupItem> items = {addItem("a")};
    machine.files->refuse(items.first().path, Failure::Kind::NoPermission);

    cleaner.synchronize(items, clean(items, true));

    EXPECT_EQ(machine.files->synchronizations(), 0);
}

TEST_F(CleanupServiceTest, CountsADanglingLinkAndALoopOfLinksAsSkipped)
{
    machine.files->addLink(caches.appending("dangling"), FilePath("/nowhere"));
    machine.files->addLink(caches.appending("one"), caches.appending("two"));
    machine.files->addLink(caches.appending("two"), caches.appending("one"));

    const CleanupResult result
        = clean({itemAt("/home/ada/Library/Caches/dangling"), itemAt("/home/ada/Library/Caches/one")}, true);

    EXPECT_EQ(result, (CleanupResult{0, 0, 2, {}}));
    EXPECT_TRUE(machine.files->contains(caches.appending("dangling")));
}

TEST_F(CleanupServiceTest, LeavesWhatHasComeToBeKeptSinceTheScan)
{
    const CleanupItem item = addItem("mounted");
    machine.places->keep(item.path, u"unsent files wait in it"_qs);

    const CleanupResult result = clean({item}, true);

    EXPECT_EQ(result.filesSkipped, 1);
    EXPECT_EQ(result.errors.size(), 1);
    EXPECT_TRUE(machine.files->contains(item.path));
}
