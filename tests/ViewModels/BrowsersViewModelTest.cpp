#include "Fakes/Gate.h"
#include "Fakes/HeldCalls.h"
#include "ViewModels/BrowsersFixture.h"

#include <QSignalSpy>
#include <QTest>

#include <gmock/gmock.h>

#include <atomic>

using namespace Quillmere;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class BrowsersViewModelTest : public BrowsersFixture
{
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
    const HeldCalls held(2);
    machine.files->onMeasure([held](const FilePath &) { held.pass(); });
    const auto first = model->detectBrowsers();
    EXPECT_TRUE(QTest::qWaitFor([&held] { return held.arrived() == 1; }));
    const auto second = model->detectBrowsers();
    EXPECT_TRUE(QTest::qWaitFor([&held] { return held.arrived() == 2; }));

    testing::internal::CaptureStdout();
    held.release(0);
    QCoro::waitFor(first);
    testing::internal::GetCapturedStdout();
    EXPECT_TRUE(model->isScanning());
    EXPECT_EQ(model->profiles()->rowCount(), 0);

    held.release(1);
    QCoro::waitFor(second);
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
