#include "Services/TrafficFilterExtensionManager.h"

#include "Fakes/PretendMachine.h"

#include <QCoro/QCoroCore>
#include <QTest>

#include <gmock/gmock.h>

using namespace Quillmere;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using ActivationResult = TrafficFilterExtensionManager::ActivationResult;
using Kind = ActivationResult::Kind;
using Habit = PretendSystemExtensionManager::Habit;

const ActivationResult active = {Kind::Active, {}};
const ActivationResult awaiting = {Kind::AwaitingUserApproval, {}};
const FilePath extension("/Applications/Quillmere.app/Contents/Library/SystemExtensions/"
                         "com.veltrane.quillmere.traffic-filter.systemextension");

class TrafficFilterExtensionManagerTest : public testing::Test
{
protected:
    TrafficFilterExtensionManagerTest() { machine.installTrafficFilter(); }

    /// Starts an activation; what it ends with stands in results then.
    void activate()
    {
        waiting.push_back([](TrafficFilterExtensionManager &manager, QList<ActivationResult> &into) -> QCoro::Task<> {
            const ActivationResult result = co_await manager.activateIfNeeded();
            into.append(result);
        }(manager, results));
    }

    PretendMachine machine;
    QList<ActivationResult> results;
    TrafficFilterExtensionManager manager{machine.bundles, machine.files, machine.extensions};
    std::vector<QCoro::Task<>> waiting;
};

} // namespace

TEST_F(TrafficFilterExtensionManagerTest, IsActiveOnceTheRequestHasFinished)
{
    EXPECT_EQ(QCoro::waitFor(manager.activateIfNeeded()), active);
    EXPECT_THAT(machine.extensions->submitted, ElementsAre(u"com.veltrane.quillmere.traffic-filter"_qs));
}

TEST_F(TrafficFilterExtensionManagerTest, SubmitsARequestAtEveryCall)
{
    EXPECT_EQ(QCoro::waitFor(manager.activateIfNeeded()), active);
    EXPECT_EQ(QCoro::waitFor(manager.activateIfNeeded()), active);

    EXPECT_EQ(machine.extensions->submitted.size(), 2);
}

TEST_F(TrafficFilterExtensionManagerTest, NamesTheApplicationThatLacksTheExtensionAndAsksNobody)
{
    machine.bundles->main = FilePath("/home/ada/Downloads/./Quillmere.app");

    EXPECT_EQ(QCoro::waitFor(manager.activateIfNeeded()),
              (ActivationResult{Kind::Failed,
                                u"The traffic-filter extension is missing from this application copy at "
                                "/home/ada/Downloads/Quillmere.app. Install version 1.3.4 from the signed PKG into "
                                "/Applications and launch that copy."_qs}));
    EXPECT_THAT(machine.extensions->submitted, IsEmpty());
}

struct UnsoundExtension
{
    const char *name;
    std::optional<Bundle> bundle;
    const char *message;
};

constexpr auto invalid = "The bundled traffic-filter extension is invalid or has an unexpected identifier. Reinstall "
                         "Quillmere 1.3.4 from the signed PKG.";
constexpr auto notExecutable = "The bundled traffic-filter executable is missing or cannot be executed. Reinstall "
                               "Quillmere 1.3.4 from the signed PKG.";

class UnsoundExtensionTest : public TrafficFilterExtensionManagerTest,
                             public testing::WithParamInterface<UnsoundExtension>
{
};

TEST_P(UnsoundExtensionTest, FailsAndAsksNobody)
{
    machine.bundles = std::make_shared<PretendBundles>();
    if (GetParam().bundle)
        machine.bundles->add(*GetParam().bundle);
    machine.files->addFile(FilePath("/usr/bin/plain"), 10);
    machine.files->addFile(FilePath("/usr/bin/sound"), 10);
    machine.files->makeExecutable(FilePath("/usr/bin/sound"));
    TrafficFilterExtensionManager unsound(machine.bundles, machine.files, machine.extensions);

    EXPECT_EQ(QCoro::waitFor(unsound.activateIfNeeded()),
              (ActivationResult{Kind::Failed, QString::fromLatin1(GetParam().message)}));
    EXPECT_THAT(machine.extensions->submitted, IsEmpty());
}

const QString rightIdentifier = u"com.veltrane.quillmere.traffic-filter"_qs;

INSTANTIATE_TEST_SUITE_P(
    Bundles, UnsoundExtensionTest,
    testing::Values(UnsoundExtension{"CannotBeOpened", std::nullopt, invalid},
                    UnsoundExtension{"NoIdentifier", Bundle{extension, std::nullopt, FilePath("/usr/bin/sound")},
                                     invalid},
                    UnsoundExtension{"ForeignIdentifierWithASoundExecutable",
                                     Bundle{extension, u"com.example.other"_qs, FilePath("/usr/bin/sound")}, invalid},
                    UnsoundExtension{"IdentifierInOtherCase",
                                     Bundle{extension, rightIdentifier.toUpper(), FilePath("/usr/bin/sound")}, invalid},
                    UnsoundExtension{"NoExecutable", Bundle{extension, rightIdentifier, std::nullopt}, notExecutable},
                    UnsoundExtension{"ExecutableMissing",
                                     Bundle{extension, rightIdentifier, FilePath("/usr/bin/nothing")}, notExecutable},
                    UnsoundExtension{"ExecutableWithoutTheRight",
                                     Bundle{extension, rightIdentifier, FilePath("/usr/bin/plain")}, notExecutable}),
    [](const auto &info) { return info.param.name; });

TEST_F(TrafficFilterExtensionManagerTest, SaysThatTheUserMustAllowIt)
{
    machine.extensions->habit = Habit::NeedApproval;

    EXPECT_EQ(QCoro::waitFor(manager.activateIfNeeded()), awaiting);
}

TEST_F(TrafficFilterExtensionManagerTest, PassesTheSystemsOwnSentenceOn)
{
    machine.extensions->habit = Habit::Fail;
    machine.extensions->reason = u"The signature is broken."_qs;

    EXPECT_EQ(QCoro::waitFor(manager.activateIfNeeded()),
              (ActivationResult{Kind::Failed, u"The signature is broken."_qs}));
}

TEST_F(TrafficFilterExtensionManagerTest, TellsASecondCallerToWaitWhileTheFirstStaysSuspended)
{
    machine.extensions->habit = Habit::Wait;
    activate();
    EXPECT_THAT(results, IsEmpty());

    activate();
    EXPECT_THAT(results, ElementsAre(awaiting));
    EXPECT_EQ(machine.extensions->submitted.size(), 1);

    manager.requestDidFinish(ActivationFinish::Completed);
    EXPECT_THAT(results, ElementsAre(awaiting, active));
}

TEST_F(TrafficFilterExtensionManagerTest, LetsOnlyTheFirstAnswerCount)
{
    machine.extensions->habit = Habit::Wait;
    activate();

    manager.requestNeedsUserApproval();
    manager.requestDidFinish(ActivationFinish::Completed);

    EXPECT_THAT(results, ElementsAre(awaiting));
}

TEST_F(TrafficFilterExtensionManagerTest, TakesAnAnswerThatNobodyWaitsForOnlyAsDone)
{
    EXPECT_FALSE(manager.hasCompletedRequest());

    manager.requestDidFail(u"too late"_qs);

    EXPECT_TRUE(manager.hasCompletedRequest());
    EXPECT_EQ(QCoro::waitFor(manager.activateIfNeeded()), active);
}

TEST_F(TrafficFilterExtensionManagerTest, TakesAFinishThatWaitsForARebootAsActive)
{
    machine.extensions->habit = Habit::Wait;
    activate();

    manager.requestDidFinish(ActivationFinish::WillCompleteAfterReboot);

    EXPECT_THAT(results, ElementsAre(active));
}

TEST_F(TrafficFilterExtensionManagerTest, AlwaysReplacesAnInstalledVersion)
{
    EXPECT_EQ(manager.actionForReplacingExtension(), ReplacementAction::Replace);
}

TEST_F(TrafficFilterExtensionManagerTest, CanBeAskedAgainFromWithinTheAnswer)
{
    machine.extensions->habit = Habit::Wait;
    activate();
    manager.requestNeedsUserApproval();

    activate();
    EXPECT_FALSE(manager.hasCompletedRequest());
    manager.requestDidFinish(ActivationFinish::Completed);

    EXPECT_THAT(results, ElementsAre(awaiting, active));
}
