#include "Services/PowerManagementService.h"

#include "Fakes/PretendMachine.h"
#include "Utilities/BackgroundWork.h"

#include <QSignalSpy>

#include <gmock/gmock.h>

using namespace Quillmere;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const QString scriptOn = u"do shell script \"pmset -a disablesleep 1\" with administrator privileges"_qs;
const QString scriptOff = u"do shell script \"pmset -a disablesleep 0\" with administrator privileges"_qs;

class PowerManagementServiceTest : public testing::Test
{
protected:
    QStringList scripts()
    {
        elevationPool().waitForDone();
        return machine.processes->scripts();
    }

    PretendMachine machine;
    AppState state{machine.defaults};
    PowerManagementService power{machine.assertions, machine.processes, false};
};

Command pmset(const QString &value)
{
    return {u"/usr/bin/pmset"_qs, {u"-a"_qs, u"disablesleep"_qs, value}};
}

} // namespace

TEST_F(PowerManagementServiceTest, StartsSwitchedOff)
{
    EXPECT_FALSE(power.isKeepAwakeEnabled());
    EXPECT_EQ(machine.assertions->created, 0);
    EXPECT_THAT(scripts(), IsEmpty());
}

TEST_F(PowerManagementServiceTest, AsksForTheAssertionAndForDisablesleep)
{
    power.setKeepAwake(true, &state);

    EXPECT_TRUE(power.isKeepAwakeEnabled());
    EXPECT_TRUE(state.settings().keepAwakeEnabled);
    EXPECT_THAT(machine.assertions->active.values(),
                ElementsAre(PretendPowerAssertions::Assertion{u"PreventUserIdleSystemSleep"_qs, 255,
                                                              u"Quillmere Keep Awake Mode Active"_qs}));
    EXPECT_THAT(scripts(), ElementsAre(scriptOn));
    EXPECT_THAT(machine.processes->launches(), IsEmpty());
}

TEST_F(PowerManagementServiceTest, GivesBothBack)
{
    power.setKeepAwake(true, &state);
    power.setKeepAwake(false, &state);

    EXPECT_FALSE(power.isKeepAwakeEnabled());
    EXPECT_FALSE(state.settings().keepAwakeEnabled);
    EXPECT_THAT(machine.assertions->active, IsEmpty());
    EXPECT_THAT(scripts(), ElementsAre(scriptOn, scriptOff));
}

TEST_F(PowerManagementServiceTest, MakesOneAssertionAndTwoPmsetRunsWhenSwitchedOnTwice)
{
    power.setKeepAwake(true, &state);
    power.setKeepAwake(true, &state);

    EXPECT_EQ(machine.assertions->created, 1);
    EXPECT_THAT(scripts(), ElementsAre(scriptOn, scriptOn));
}

TEST_F(PowerManagementServiceTest, RunsPmsetWhenSwitchedOffWithoutAnAssertion)
{
    power.setKeepAwake(false, &state);

    EXPECT_THAT(scripts(), ElementsAre(scriptOff));
    EXPECT_EQ(machine.assertions->released, 0);
}

TEST_F(PowerManagementServiceTest, LeavesTheSettingAloneWithoutAState)
{
    const int writes = machine.defaults->writes();

    power.setKeepAwake(true, nullptr);

    EXPECT_TRUE(power.isKeepAwakeEnabled());
    EXPECT_FALSE(state.settings().keepAwakeEnabled);
    EXPECT_EQ(machine.defaults->writes(), writes);
}

TEST_F(PowerManagementServiceTest, StoresTheSettingOnlyWhenItIsAnotherOne)
{
    power.setKeepAwake(true, &state);
    const int writes = machine.defaults->writes();

    power.setKeepAwake(true, &state);

    EXPECT_EQ(machine.defaults->writes(), writes);
}

TEST_F(PowerManagementServiceTest, DoesNothingAtAllWhenSettingAndStateAgree)
{
    QSignalSpy changed(&power, &PowerManagementService::isKeepAwakeEnabledChanged);

    power.syncWithSettings(state);

    EXPECT_EQ(changed.size(), 0);
    EXPECT_EQ(machine.assertions->created, 0);
    EXPECT_THAT(scripts(), IsEmpty());
}

TEST_F(PowerManagementServiceTest, FollowsASettingThatWasOnAtTheStart)
{
    AppSettings settings;
    settings.keepAwakeEnabled = true;
    state.setSettings(settings);

    power.syncWithSettings(state);

    EXPECT_TRUE(power.isKeepAwakeEnabled());
    EXPECT_EQ(machine.assertions->created, 1);
    EXPECT_THAT(scripts(), ElementsAre(scriptOn));
}

TEST_F(PowerManagementServiceTest, ReleasesNothingAfterAFailedAssertion)
{
    machine.assertions->refusal = Failure{Failure::Kind::NotSupported, {}, {}};
    power.setKeepAwake(true, &state);
    EXPECT_TRUE(power.isKeepAwakeEnabled());

    power.setKeepAwake(false, &state);

    EXPECT_EQ(machine.assertions->released, 0);
}

TEST_F(PowerManagementServiceTest, TriesAFailedAssertionAgainAtTheNextSwitchingOn)
{
    machine.assertions->refusal = Failure{Failure::Kind::NotSupported, {}, {}};
    power.setKeepAwake(true, &state);
    machine.assertions->refusal.reset();

    power.setKeepAwake(true, &state);

    EXPECT_EQ(machine.assertions->active.size(), 1);
}

TEST_F(PowerManagementServiceTest, ShowsTheWishAlsoWhenThePasswordWasRefused)
{
    machine.processes->answerScripts(Failure{Failure::Kind::Cancelled, {}, u"User canceled. (-128)"_qs});

    power.setKeepAwake(true, &state);

    EXPECT_THAT(scripts(), ElementsAre(scriptOn));
    EXPECT_TRUE(power.isKeepAwakeEnabled());
    EXPECT_EQ(machine.assertions->active.size(), 1);
}

TEST_F(PowerManagementServiceTest, StartsPmsetItselfAsTheAdministratorAndWaitsForNothing)
{
    PowerManagementService root(machine.assertions, machine.processes, true);

    root.setKeepAwake(true, nullptr);
    root.setKeepAwake(false, nullptr);

    EXPECT_THAT(machine.processes->launches(), ElementsAre(pmset(u"1"_qs), pmset(u"0"_qs)));
    EXPECT_THAT(machine.processes->runs(), IsEmpty());
    EXPECT_THAT(scripts(), IsEmpty());
}
