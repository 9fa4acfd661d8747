#include "Fakes/Gate.h"
#include "ViewModels/DashboardFixture.h"

#include <QCoro/QCoroCore>
#include <QTest>

#include <gmock/gmock.h>

using namespace Quillmere;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class DashboardActionsTest : public DashboardFixture
{
};

} // namespace

TEST_F(DashboardActionsTest, DeletesSafeCachesForGoodAndNothingElse)
{
    addCache("Caches/com.example.player", 4'000'000);
    addCache("Logs/backup", 2'000'000);

    QCoro::waitFor(model->cleanCaches());

    EXPECT_THAT(machine.files->removed(), ElementsAre(FilePath("/home/ada/Library/Caches/com.example.player")));
    EXPECT_THAT(machine.files->trashed(), IsEmpty());
    EXPECT_FALSE(machine.files->fileExists(FilePath("/home/ada/Library/Application Support/Quillmere/history.json")));
}

TEST_F(DashboardActionsTest, TellsHowTheFastCleanupGoesOn)
{
    addCache("Caches/com.example.player", 4'000'000);
    QStringList messages;
    QObject::connect(model.get(), &DashboardViewModel::cleaningMessageChanged,
                     [&] { messages.append(model->cleaningMessage()); });

    QCoro::waitFor(model->cleanCaches());

    EXPECT_THAT(messages,
                ElementsAre(u"Scanning for cache files..."_qs, u"Removing caches and temporary logs..."_qs,
                            u"Caches cleaned successfully: 4 MB"_qs));
    EXPECT_FALSE(model->isCleaning());
}

TEST_F(DashboardActionsTest, LeavesTheOutcomeToBeReadBeforeItGoesOn)
{
    model = made(3s);

    QCoro::Task<> cleaning = model->cleanCaches();
    QTRY_COMPARE(model->cleaningMessage(), u"Caches cleaned successfully: Zero KB"_qs);
    EXPECT_TRUE(model->isCleaning());
    EXPECT_FALSE(model->diskSpace());

    QCoro::waitFor(cleaning);
    EXPECT_FALSE(model->isCleaning());
}

TEST_F(DashboardActionsTest, RefreshesItsFiguresAfterTheFastCleanup)
{
    QCoro::waitFor(model->cleanCaches());

    EXPECT_TRUE(model->diskSpace());
}

TEST_F(DashboardActionsTest, EndsACancelledScanWithALineAndRemovesNothing)
{
    addCache("Caches/com.example.player", 4'000'000);
    machine.files->onMeasure([this](const FilePath &) {
        QMetaObject::invokeMethod(
            model.get(), [this] { model->cancelCleanup(); }, Qt::BlockingQueuedConnection);
    });

    testing::internal::CaptureStdout();
    QCoro::waitFor(model->cleanCaches());

    EXPECT_EQ(testing::internal::GetCapturedStdout(), "Fast cache cleanup error: The scan was cancelled.\n");
    EXPECT_FALSE(model->isCleaning());
    EXPECT_THAT(machine.files->removed(), IsEmpty());
}

TEST_F(DashboardActionsTest, CancelsNothingWhileNothingRuns)
{
    model->cancelCleanup();

    EXPECT_FALSE(model->isCleaning());
}

TEST_F(DashboardActionsTest, IsAnUnfinishedRunWhileItCleans)
{
    const Gate gate;
    addCache("Caches/com.example.player", 4'000'000);
    machine.files->onRemoval([gate](const FilePath &) { gate.wait(); });

    QCoro::Task<> cleaning = model->cleanCaches();
    QTRY_COMPARE(model->cleaningMessage(), u"Removing caches and temporary logs..."_qs);
    EXPECT_FALSE(runs.isEmpty());
    gate.open();
    QCoro::waitFor(cleaning);

    EXPECT_TRUE(runs.isEmpty());
}

TEST_F(DashboardActionsTest, EndsTheFastCleanupBeforeTheDiskHasWrittenAllDown)
{
    const Gate gate;
    addCache("Caches/com.example.player", 4'000'000);
    machine.files->onSynchronization([gate](const QList<FilePath> &) { gate.wait(); });

    const auto cleaning = model->cleanCaches();

    EXPECT_TRUE(QTest::qWaitFor([this] { return !model->isCleaning(); }));
    EXPECT_TRUE(runs.isEmpty());
    EXPECT_EQ(machine.files->synchronizations(), 0);
    gate.open();
    QCoro::waitFor(cleaning);
    EXPECT_TRUE(QTest::qWaitFor([this] { return machine.files->synchronizations() == 1; }));
}

TEST_F(DashboardActionsTest, IsNoUnfinishedRunWhileItScansAndRemovesNothingOnceTheScreenHasGone)
{
    const Gate gate;
    addCache("Caches/com.example.player", 4'000'000);
    machine.files->onMeasure([gate](const FilePath &) { gate.wait(); });
    QCoro::Task<> cleaning = model->cleanCaches();
    EXPECT_TRUE(runs.isEmpty());

    model.reset();
    gate.open();
    QCoro::waitFor(cleaning);

    EXPECT_THAT(machine.files->removed(), IsEmpty());
}

TEST_F(DashboardActionsTest, HasATextOfItsOwnForARefusalWhoseReasonWasForgotten)
{
    machine.filter->hold();
    machine.filter->saveError = u"no"_qs;
    QCoro::Task<> switching = model->switchEcoTraffic();
    QTRY_VERIFY(extension.hasCompletedRequest());
    // The next change clears the last error, in the same turn as it is set.
    std::optional<QCoro::Task<bool>> next;
    QObject::connect(&control, &TrafficControlService::lastErrorChanged, &control, [this, &next] {
        if (!next && control.lastError())
            next.emplace(control.setEcoTrafficEnabled(false));
    });
    QCoreApplication::processEvents();
    machine.filter->releaseAll();
    QCoro::waitFor(switching);

    EXPECT_EQ(model->trafficErrorMessage(), u"Unable to change the outbound traffic policy."_qs);
    EXPECT_FALSE(QCoro::waitFor(*next));
}

TEST_F(DashboardActionsTest, FinishesRemovingWhenTheScreenHasGone)
{
    const Gate gate;
    addCache("Caches/a", 1);
    addCache("Caches/b", 1);
    machine.files->onRemoval([gate](const FilePath &) { gate.wait(); });
    QCoro::Task<> cleaning = model->cleanCaches();
    QTRY_COMPARE(model->cleaningMessage(), u"Removing caches and temporary logs..."_qs);
    model.reset();
    gate.open();

    QCoro::waitFor(cleaning);

    EXPECT_EQ(machine.files->removed().size(), 2);
}

TEST_F(DashboardActionsTest, NeverClosesAnApplicationWhenItBoosts)
{
    RunningApplication busy;
    busy.processIdentifier = 77;
    busy.localizedName = u"Busy"_qs;
    busy.bundleIdentifier = u"org.example.busy"_qs;
    machine.workspace->start(busy);
    machine.processes->answer(u"/bin/ps"_qs, "PID %CPU RSS\n77 390.0 9000000\n");

    QCoro::waitFor(model->optimize());
    QCoreApplication::processEvents();

    EXPECT_EQ(machine.workspace->listings(), 1);
    EXPECT_THAT(machine.workspace->terminated(), IsEmpty());
}

TEST_F(DashboardActionsTest, PurgesMemoryWithoutArgumentsAndWithoutAsking)
{
    QCoro::waitFor(model->optimize());

    EXPECT_TRUE(machine.processes->runs().contains(Command{u"/usr/sbin/purge"_qs, {}}));
    EXPECT_THAT(machine.processes->scripts(), IsEmpty());
    EXPECT_TRUE(model->diskSpace());
    EXPECT_FALSE(model->isOptimizing());
}

TEST_F(DashboardActionsTest, GoesOnWithALineWhenPurgeCannotBeStarted)
{
    machine.processes->answer(u"/usr/sbin/purge"_qs, [](const Command &) {
        return Failure{Failure::Kind::NotFound, FilePath("/usr/sbin/purge"), u"no such file"_qs};
    });

    testing::internal::CaptureStdout();
    QCoro::waitFor(model->optimize());

    EXPECT_EQ(testing::internal::GetCapturedStdout(), "RAM Purge error: no such file (/usr/sbin/purge)\n");
    EXPECT_FALSE(model->isOptimizing());
}

TEST_F(DashboardActionsTest, LetsBothActionsRunAtOnce)
{
    QCoro::Task<> cleaning = model->cleanCaches();
    QCoro::Task<> optimizing = model->optimize();
    EXPECT_TRUE(model->isCleaning());
    EXPECT_TRUE(model->isOptimizing());

    QCoro::waitFor(cleaning);
    QCoro::waitFor(optimizing);
    EXPECT_FALSE(model->isCleaning());
    EXPECT_FALSE(model->isOptimizing());
}

TEST_F(DashboardActionsTest, SwitchesEcoTraffic)
{
    QCoro::waitFor(model->switchEcoTraffic());
    EXPECT_TRUE(model->ecoTrafficEnabled());

    QCoro::waitFor(model->switchEcoTraffic());
    EXPECT_FALSE(model->ecoTrafficEnabled());
    EXPECT_EQ(model->trafficErrorMessage(), QString());
}

TEST_F(DashboardActionsTest, LeavesARefusedEcoSwitchAsItWasAndSaysWhy)
{
    machine.filter->saveError = u"Permission denied."_qs;

    QCoro::waitFor(model->switchEcoTraffic());

    EXPECT_FALSE(model->ecoTrafficEnabled());
    EXPECT_EQ(model->trafficErrorMessage(), u"macOS rejected the outbound traffic policy: Permission denied."_qs);

    model->dismissTrafficError();
    EXPECT_EQ(model->trafficErrorMessage(), QString());
}

TEST_F(DashboardActionsTest, SwitchesKeepAwakeAndFollowsWhoeverElseDoes)
{
    QSignalSpy changed(model.get(), &DashboardViewModel::isKeptAwakeChanged);

    model->toggleKeepAwake();
    EXPECT_TRUE(model->isKeptAwake());
    EXPECT_TRUE(state.settings().keepAwakeEnabled);

    power.setKeepAwake(false, nullptr);
    EXPECT_FALSE(model->isKeptAwake());
    EXPECT_EQ(changed.size(), 2);
}
