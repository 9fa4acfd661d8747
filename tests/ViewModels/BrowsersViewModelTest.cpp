#include "ViewModels/BrowsersViewModel.h"

#include "Fakes/Gate.h"
#include "Fakes/InstalledLocalizer.h"
#include "Fakes/PretendMachine.h"
#include "ViewModels/UnfinishedRuns.h"

#include <QCoro/QCoroCore>
#include <QSignalSpy>
#include <QTest>

#include <gmock/gmock.h>

#include <atomic>
#include <stdexcept>

using namespace Quillmere;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const FilePath home("/home/ada");
const FilePath chromeCache = home.appending("Library/Caches/Google/Chrome");

/// The Browsers screen on a pretend machine with two browsers.
class BrowsersViewModelTest : public testing::Test
{
protected:
    BrowsersViewModelTest()
    {
        SharedInstance<UnfinishedRuns>::install(&runs);
        machine.workspace->install(u"com.apple.Safari"_qs);
        machine.workspace->install(u"com.google.Chrome"_qs);
        machine.files->addFile(chromeCache.appending("data"), 1'500'000);
    }
    ~BrowsersViewModelTest() override { SharedInstance<UnfinishedRuns>::install(nullptr); }

    void detect() { QCoro::waitFor(model->detectBrowsers()); }
    /// Cleans the second row, Google Chrome, and waits until that has ended.
    void cleanChrome() { QCoro::waitFor(model->cleanBrowserData(profile(1))); }

    void quit(int row) { QCoro::waitFor(model->quitBrowser(profile(row))); }

    BrowserProfile profile(int row) { return model->profiles()->profiles().value(row); }

    void runChrome(qint32 pid = 7)
    {
        RunningApplication application;
        application.processIdentifier = pid;
        application.bundleIdentifier = u"com.google.Chrome"_qs;
        machine.workspace->start(application);
    }

    QList<OperationLog> records() { return history.loadHistory(); }

    InstalledLocalizer localizer;
    PretendMachine machine;
    UnfinishedRuns runs;
    HistoryService history{machine.files};
    std::shared_ptr<ScannerService> scanner = std::make_shared<ScannerService>(machine.files, machine.places);
    std::unique_ptr<BrowsersViewModel> model
        = std::make_unique<BrowsersViewModel>(scanner, BrowserService(machine.files, machine.places, machine.workspace),
                                              CleanupService(machine.files, machine.places), history, machine.clock);
};

} // namespace

TEST_F(BrowsersViewModelTest, StartsWithNothingDetectedAndTheCacheAloneChosen)
{
    EXPECT_TRUE(model->isEmpty());
    EXPECT_FALSE(model->isScanning());
    EXPECT_FALSE(model->isCleaning());
    EXPECT_EQ(model->scanProgress(), 0);
    EXPECT_EQ(model->cleanProgress(), 0);
    EXPECT_TRUE(model->cleanCache());
    EXPECT_FALSE(model->cleanCookies());
    EXPECT_FALSE(model->cleanHistory());
    EXPECT_FALSE(model->cleanLocalStorage());
    EXPECT_FALSE(model->needsWarning());
    EXPECT_FALSE(model->showingWarningSheet());
}

TEST_F(BrowsersViewModelTest, ShowsATenthWhileItDetectsAndTheWholeAtTheEnd)
{
    const Gate gate;
    machine.files->onMeasure([gate](const FilePath &) { gate.wait(); });
    const auto detecting = model->detectBrowsers();
    EXPECT_TRUE(model->isScanning());
    EXPECT_EQ(model->scanProgress(), 0.1);

    gate.open();
    QCoro::waitFor(detecting);

    EXPECT_FALSE(model->isScanning());
    EXPECT_EQ(model->scanProgress(), 1.0);
    ASSERT_EQ(model->profiles()->rowCount(), 2);
    EXPECT_EQ(profile(0).browserName, u"Safari"_qs);
    EXPECT_EQ(profile(1).cacheSize, 1'500'000);
}

TEST_F(BrowsersViewModelTest, IsEmptyWithNoBrowserInstalled)
{
    machine.workspace->uninstall(u"com.apple.Safari"_qs);
    machine.workspace->uninstall(u"com.google.Chrome"_qs);

    detect();

    EXPECT_TRUE(model->isEmpty());
    EXPECT_FALSE(model->isScanning());
}

TEST_F(BrowsersViewModelTest, KeepsWhatItShowsAndPrintsWhyWhenADetectionFails)
{
    detect();
    const QUuid shown = profile(0).id;
    machine.files->onMeasure([this](const FilePath &) { scanner->cancelScan(); });
    testing::internal::CaptureStdout();

    detect();

    EXPECT_EQ(testing::internal::GetCapturedStdout(), "Browser detection failed: The scan was cancelled.\n");
    EXPECT_EQ(profile(0).id, shown);
    EXPECT_EQ(model->scanProgress(), 1.0);
    EXPECT_FALSE(model->isScanning());
}

TEST_F(BrowsersViewModelTest, DetectsAnewAfterOneThatWasCancelled)
{
    scanner->cancelScan();

    detect();

    EXPECT_EQ(model->profiles()->rowCount(), 2);
}

TEST_F(BrowsersViewModelTest, TakesTheResultOfTheLatestDetectionAlone)
{
    const Gate gate;
    const auto isFirst = std::make_shared<std::atomic<bool>>(true);
    machine.files->onMeasure([gate, isFirst](const FilePath &) {
        if (isFirst->exchange(false))
            gate.wait();
    });
    const auto first = model->detectBrowsers();
    QTest::qWait(1);
    const auto second = model->detectBrowsers();
    testing::internal::CaptureStdout();
    gate.open();
    QCoro::waitFor(first);
    QCoro::waitFor(second);
    testing::internal::GetCapturedStdout();

    EXPECT_FALSE(model->isScanning());
    EXPECT_EQ(model->profiles()->rowCount(), 2);
}

TEST_F(BrowsersViewModelTest, EndsADetectionWithTheScreen)
{
    const Gate gate;
    machine.files->onMeasure([gate](const FilePath &) { gate.wait(); });
    const auto detecting = model->detectBrowsers();
    testing::internal::CaptureStdout();

    model.reset();
    gate.open();
    QCoro::waitFor(detecting);

    EXPECT_EQ(testing::internal::GetCapturedStdout(), "Browser detection failed: The scan was cancelled.\n");
}

TEST_F(BrowsersViewModelTest, ShowsABrowserAsNotRunningOnceItWasAskedToQuitEvenIfItStays)
{
    runChrome();
    machine.workspace->letStay(7);
    detect();
    ASSERT_TRUE(profile(1).isBrowserRunning);
    const QSignalSpy changed(model->profiles(), &QAbstractItemModel::dataChanged);

    quit(1);

    EXPECT_THAT(machine.workspace->askedToQuit(), ElementsAre(7));
    EXPECT_THAT(machine.workspace->terminated(), IsEmpty());
    EXPECT_FALSE(profile(1).isBrowserRunning);
    EXPECT_EQ(changed.count(), 1);

    detect();
    EXPECT_TRUE(profile(1).isBrowserRunning);
}

TEST_F(BrowsersViewModelTest, KeepsNobodyWaitingWhileABrowserIsAskedToQuit)
{
    runChrome();
    detect();
    const Gate gate;
    machine.workspace->onListing([gate](int) { gate.wait(); });

    const auto quitting = model->quitBrowser(profile(1));

    EXPECT_TRUE(profile(1).isBrowserRunning);
    gate.open();
    QCoro::waitFor(quitting);
    EXPECT_FALSE(profile(1).isBrowserRunning);
}

TEST_F(BrowsersViewModelTest, DoesNothingForARowThatIsNotThere)
{
    runChrome();
    detect();
    for (const int row : {-1, int(model->profiles()->profiles().size())}) {
        model->quit(row);
        model->clean(row);
    }

    EXPECT_THAT(machine.workspace->askedToQuit(), IsEmpty());
    EXPECT_FALSE(model->isCleaning());
}

TEST_F(BrowsersViewModelTest, KeepsABrowserShownAsRunningThatCannotBeAskedToQuit)
{
    runChrome();
    machine.workspace->protect(7);
    detect();

    quit(1);

    EXPECT_TRUE(profile(1).isBrowserRunning);
}

TEST_F(BrowsersViewModelTest, CleansTheCacheForGoodAndRecordsIt)
{
    detect();

    cleanChrome();

    EXPECT_THAT(machine.files->removed(), ElementsAre(chromeCache));
    EXPECT_THAT(machine.files->trashed(), IsEmpty());
    const QList<OperationLog> made = records();
    ASSERT_EQ(made.size(), 1);
    EXPECT_EQ(made[0].operationType, OperationType::BrowserCleanup);
    EXPECT_EQ(made[0].status, OperationStatus::Completed);
    EXPECT_EQ(made[0].date, machine.clock->now());
    EXPECT_EQ(made[0].foundSize, 1'500'000);
    EXPECT_EQ(made[0].cleanedSize, 1'500'000);
    EXPECT_EQ(made[0].filesRemoved, 1);
    EXPECT_EQ(made[0].filesSkipped, 0);
    EXPECT_THAT(made[0].errors, IsEmpty());
    EXPECT_THAT(made[0].categoriesAffected, ElementsAre(u"Google Chrome"_qs));
}

TEST_F(BrowsersViewModelTest, EndsACleaningWithAFreshDetection)
{
    detect();
    const QUuid before = profile(1).id;

    cleanChrome();

    EXPECT_EQ(profile(1).cacheSize, 0);
    EXPECT_NE(profile(1).id, before);
    EXPECT_FALSE(model->isCleaning());
    EXPECT_FALSE(model->isScanning());
    EXPECT_EQ(model->cleanProgress(), 1.0);
}

TEST_F(BrowsersViewModelTest, ShowsATenthWhileItCollectsAndAHalfWhileItCleans)
{
    detect();
    const Gate collecting;
    const Gate removing;
    machine.files->onMeasure([collecting](const FilePath &) { collecting.wait(); });
    machine.files->onRemoval([removing](const FilePath &) { removing.wait(); });

    const auto cleaning = model->cleanBrowserData(profile(1));
    EXPECT_TRUE(model->isCleaning());
    EXPECT_EQ(model->cleanProgress(), 0.1);
    collecting.open();
    EXPECT_TRUE(QTest::qWaitFor([this] { return model->cleanProgress() == 0.5; }));
    EXPECT_TRUE(model->isCleaning());

    removing.open();
    QCoro::waitFor(cleaning);
    EXPECT_EQ(model->cleanProgress(), 1.0);
}

TEST_F(BrowsersViewModelTest, StaysCleaningUntilTheDetectionAtItsEndIsDone)
{
    detect();
    QList<bool> cleaningWhileScanning;
    QObject::connect(model.get(), &BrowsersViewModel::phaseChanged, model.get(), [&] {
        if (model->isScanning())
            cleaningWhileScanning.append(model->isCleaning());
    });

    cleanChrome();

    EXPECT_THAT(cleaningWhileScanning, ElementsAre(true));
}

TEST_F(BrowsersViewModelTest, AsksNothingWhenTheCacheAloneIsChosen)
{
    detect();

    model->clean(1);

    EXPECT_FALSE(model->showingWarningSheet());
    EXPECT_TRUE(QTest::qWaitFor([this] { return !model->isCleaning(); }));
    EXPECT_THAT(machine.files->removed(), ElementsAre(chromeCache));
}

TEST_F(BrowsersViewModelTest, AsksFirstWithTheHistoryChosenAndLeavesItOnDiskAllTheSame)
{
    const FilePath visits = home.appending("Library/Safari/History.db");
    machine.files->addFile(visits, 40'000);
    detect();
    model->setCleanHistory(true);

    model->clean(0);
    EXPECT_TRUE(model->showingWarningSheet());
    EXPECT_EQ(model->profileToClean()->browserName, u"Safari"_qs);
    EXPECT_FALSE(model->isCleaning());

    model->confirmCleaning();
    EXPECT_FALSE(model->showingWarningSheet());
    EXPECT_TRUE(QTest::qWaitFor([this] { return !model->isCleaning(); }));
    EXPECT_TRUE(machine.files->contains(visits));
    ASSERT_EQ(records().size(), 1);
    EXPECT_EQ(records().value(0).filesSkipped, 1);
    EXPECT_EQ(records().value(0).filesRemoved, 0);
    EXPECT_THAT(records().value(0).errors, IsEmpty());
}

TEST_F(BrowsersViewModelTest, LeavesCookiesOnDiskWithoutAnError)
{
    const FilePath cookies = home.appending("Library/Application Support/Google/Chrome/Cookies");
    machine.files->addFile(cookies, 20'000);
    detect();
    model->setCleanCookies(true);
    EXPECT_TRUE(model->needsWarning());

    cleanChrome();

    EXPECT_TRUE(machine.files->contains(cookies));
    EXPECT_EQ(records().value(0).filesRemoved, 1);
    EXPECT_EQ(records().value(0).filesSkipped, 1);
    EXPECT_THAT(records().value(0).errors, IsEmpty());
}

TEST_F(BrowsersViewModelTest, CountsCookiesAndHistoryThatAreNotThereAsSkipped)
{
    detect();
    model->setCleanCookies(true);
    model->setCleanHistory(true);

    cleanChrome();

    EXPECT_EQ(records().value(0).filesSkipped, 2);
}

TEST_F(BrowsersViewModelTest, CleansNothingWhenTheQuestionIsDismissed)
{
    detect();
    model->setCleanCookies(true);
    model->clean(1);

    model->dismissCleaning();

    EXPECT_FALSE(model->showingWarningSheet());
    EXPECT_EQ(model->profileToClean(), std::nullopt);
    EXPECT_FALSE(model->isCleaning());
    EXPECT_THAT(records(), IsEmpty());
}

TEST_F(BrowsersViewModelTest, RecordsARunThatTakesNothingWithAllThreeSwitchesOff)
{
    detect();
    model->setCleanCache(false);

    model->clean(1);

    EXPECT_FALSE(model->showingWarningSheet());
    EXPECT_TRUE(QTest::qWaitFor([this] { return !model->isCleaning(); }));
    ASSERT_EQ(records().size(), 1);
    EXPECT_EQ(records().value(0).cleanedSize, 0);
    EXPECT_EQ(records().value(0).filesRemoved, 0);
    EXPECT_EQ(records().value(0).filesSkipped, 0);
    EXPECT_EQ(records().value(0).foundSize, 1'500'000);
    EXPECT_TRUE(machine.files->contains(chromeCache));
}

TEST_F(BrowsersViewModelTest, RecordsWhatCouldNotBeRemovedAndSaysNothingElseOfIt)
{
    machine.files->refuse(chromeCache, Failure::Kind::NoPermission);
    detect();

    cleanChrome();

    ASSERT_EQ(records().size(), 1);
    EXPECT_THAT(records().value(0).errors, ElementsAre(testing::Truly([](const QString &line) {
                    return line.startsWith(u"Failed to clean Chrome: "_qs);
                })));
    EXPECT_EQ(records().value(0).status, OperationStatus::Completed);
    EXPECT_EQ(profile(1).cacheSize, 1'500'000);
}

TEST_F(BrowsersViewModelTest, PrintsWhyACleaningFailedAndRecordsNothing)
{
    detect();
    const QUuid shown = profile(1).id;
    machine.files->onRemoval([](const FilePath &) { throw std::runtime_error("the disk is on fire"); });
    testing::internal::CaptureStdout();

    cleanChrome();

    EXPECT_EQ(testing::internal::GetCapturedStdout(), "Failed to clean browser data: the disk is on fire\n");
    EXPECT_THAT(records(), IsEmpty());
    EXPECT_EQ(profile(1).id, shown);
    EXPECT_FALSE(model->isCleaning());
    EXPECT_EQ(model->cleanProgress(), 1.0);
}

TEST_F(BrowsersViewModelTest, RecordsACleaningWhoseScreenHasGone)
{
    detect();
    const Gate gate;
    machine.files->onRemoval([gate](const FilePath &) { gate.wait(); });
    const auto cleaning = model->cleanBrowserData(profile(1));
    EXPECT_TRUE(QTest::qWaitFor([this] { return model->cleanProgress() == 0.5; }));
    EXPECT_FALSE(runs.isEmpty());

    model.reset();
    gate.open();
    QCoro::waitFor(cleaning);

    EXPECT_EQ(records().size(), 1);
    EXPECT_THAT(machine.files->removed(), ElementsAre(chromeCache));
    EXPECT_TRUE(runs.isEmpty());
}

TEST_F(BrowsersViewModelTest, TurnsItsFiguresWhenTheLanguageChanges)
{
    detect();
    const auto size = [this] {
        return model->profiles()
            ->data(model->profiles()->index(1), BrowserProfileListModel::CacheSizeTextRole)
            .toString();
    };
    EXPECT_EQ(size(), u"1.5 MB"_qs);
    const QSignalSpy changed(model->profiles(), &QAbstractItemModel::dataChanged);

    localizer->setLanguage(Language::Spanish);

    EXPECT_EQ(size(), u"1,5 MB"_qs);
    EXPECT_EQ(changed.count(), 1);
}
