#include "Fakes/Gate.h"
#include "ViewModels/BrowsersFixture.h"

#include <QSignalSpy>
#include <QTest>

#include <gmock/gmock.h>

#include <stdexcept>

using namespace Quillmere;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class BrowsersCleaningTest : public BrowsersFixture
{
};

} // namespace

TEST_F(BrowsersCleaningTest, CleansTheCacheForGoodAndRecordsIt)
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

TEST_F(BrowsersCleaningTest, RecordsBeforeTheDiskHasWrittenAllDown)
{
    detect();
    const Gate gate;
    machine.files->onSynchronization([gate](const QList<FilePath> &) { gate.wait(); });

    const auto cleaning = model->cleanBrowserData(profile(1));

    EXPECT_TRUE(QTest::qWaitFor([this] { return !model->isCleaning(); }));
    EXPECT_EQ(records().size(), 1);
    EXPECT_TRUE(runs.isEmpty());
    EXPECT_EQ(machine.files->synchronizations(), 0);
    gate.open();
    QCoro::waitFor(cleaning);
    EXPECT_TRUE(QTest::qWaitFor([this] { return machine.files->synchronizations() == 1; }));
}

TEST_F(BrowsersCleaningTest, EndsACleaningWithAFreshDetection)
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

TEST_F(BrowsersCleaningTest, ShowsATenthWhileItCollectsAndAHalfWhileItCleans)
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

TEST_F(BrowsersCleaningTest, StaysCleaningUntilTheDetectionAtItsEndIsDone)
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

TEST_F(BrowsersCleaningTest, AsksNothingWhenTheCacheAloneIsChosen)
{
    detect();

    model->clean(1);

    EXPECT_FALSE(model->showingWarningSheet());
    EXPECT_TRUE(QTest::qWaitFor([this] { return !model->isCleaning(); }));
    EXPECT_THAT(machine.files->removed(), ElementsAre(chromeCache));
}

TEST_F(BrowsersCleaningTest, AsksFirstWithTheHistoryChosenAndLeavesItOnDiskAllTheSame)
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

TEST_F(BrowsersCleaningTest, LeavesCookiesOnDiskWithoutAnError)
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

TEST_F(BrowsersCleaningTest, CountsCookiesAndHistoryThatAreNotThereAsSkipped)
{
    detect();
    model->setCleanCookies(true);
    model->setCleanHistory(true);

    cleanChrome();

    EXPECT_EQ(records().value(0).filesSkipped, 2);
}

TEST_F(BrowsersCleaningTest, CleansNothingWhenTheQuestionIsDismissed)
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

TEST_F(BrowsersCleaningTest, RecordsARunThatTakesNothingWithAllThreeSwitchesOff)
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

TEST_F(BrowsersCleaningTest, RecordsWhatCouldNotBeRemovedAndSaysNothingElseOfIt)
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

TEST_F(BrowsersCleaningTest, PrintsWhyACleaningFailedAndRecordsNothing)
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

TEST_F(BrowsersCleaningTest, RecordsACleaningWhoseScreenHasGone)
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
