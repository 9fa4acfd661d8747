#include "Services/TrafficControlService.h"

#include "Fakes/PretendMachine.h"

#include <QCoro/QCoroCore>
#include <QSignalSpy>
#include <QTest>

#include <gmock/gmock.h>

using namespace Quillmere;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using Habit = PretendSystemExtensionManager::Habit;

const QString editor = u"org.example.editor"_qs;
const QString player = u"org.example.player"_qs;

class TrafficControlServiceTest : public testing::Test
{
protected:
    TrafficControlServiceTest() { machine.installTrafficFilter(); }

    bool setBlocked(bool blocked, const QString &name, const std::optional<QString> &identifier)
    {
        return QCoro::waitFor(service.setAppTrafficBlocked(blocked, name, identifier, FilePath("/opt/app")));
    }
    bool setEco(bool enabled) { return QCoro::waitFor(service.setEcoTrafficEnabled(enabled)); }

    /// Nothing was changed, stored or handed over.
    void expectUntouched()
    {
        EXPECT_FALSE(service.ecoTrafficEnabled());
        EXPECT_THAT(service.blockedBundleIdentifiers(), IsEmpty());
        EXPECT_EQ(machine.defaults->writes(), 0);
        EXPECT_THAT(machine.filter->saves, IsEmpty());
    }

    QVariantMap savedPolicy() { return machine.filter->saves.last().configuration->vendorConfiguration; }

    PretendMachine machine;
    TrafficFilterExtensionManager extension{machine.bundles, machine.files, machine.extensions};
    TrafficControlService service{machine.defaults, machine.filter, extension};
};

} // namespace

TEST_F(TrafficControlServiceTest, StartsWithTheStoredRulesAndSendsNothing)
{
    machine.defaults->setBoolean(TrafficControlService::ecoTrafficKey(), true);
    machine.defaults->setStringArray(TrafficControlService::blockedBundleIdentifiersKey(), {player, editor});
    machine.defaults->setStringArray(TrafficControlService::blockedAppNamesKey(), {u"Old Player"_qs});

    const TrafficControlService stored(machine.defaults, machine.filter, extension);

    EXPECT_TRUE(stored.ecoTrafficEnabled());
    EXPECT_EQ(stored.blockedBundleIdentifiers(), QSet<QString>({editor, player}));
    EXPECT_EQ(stored.blockedAppNames(), QSet<QString>({u"Old Player"_qs}));
    EXPECT_EQ(stored.lastError(), std::nullopt);
    EXPECT_THAT(machine.filter->saves, IsEmpty());
    EXPECT_THAT(machine.extensions->submitted, IsEmpty());
}

TEST_F(TrafficControlServiceTest, StoresUnderItsThreeKeys)
{
    EXPECT_EQ(TrafficControlService::ecoTrafficKey(), u"trafficControl.ecoTrafficEnabled"_qs);
    EXPECT_EQ(TrafficControlService::blockedBundleIdentifiersKey(), u"trafficControl.blockedBundleIdentifiers"_qs);
    EXPECT_EQ(TrafficControlService::blockedAppNamesKey(), u"trafficControl.blockedAppNames"_qs);
}

TEST_F(TrafficControlServiceTest, StartsWithoutRulesWhereNoneAreStored)
{
    expectUntouched();
    EXPECT_THAT(service.blockedAppNames(), IsEmpty());
}

TEST_F(TrafficControlServiceTest, BlocksAnApplicationOnceTheSystemHasTakenTheRule)
{
    EXPECT_TRUE(setBlocked(true, u"Editor"_qs, editor));

    EXPECT_TRUE(service.isExplicitlyBlocked(u"Editor"_qs, editor));
    EXPECT_EQ(machine.defaults->stringArray(TrafficControlService::blockedBundleIdentifiersKey()),
              QStringList({editor}));
    EXPECT_EQ(service.lastError(), std::nullopt);
    EXPECT_EQ(machine.extensions->submitted.size(), 1);
}

TEST_F(TrafficControlServiceTest, HandsTheWholePolicyOverAtEachChange)
{
    EXPECT_TRUE(setBlocked(true, u"Player"_qs, player));
    EXPECT_TRUE(setBlocked(true, u"Editor"_qs, editor));

    const PretendFilterManager::Saved &saved = machine.filter->saves.last();
    EXPECT_TRUE(saved.isEnabled);
    EXPECT_EQ(saved.localizedDescription, u"Quillmere outbound application traffic filter"_qs);
    ASSERT_TRUE(saved.configuration);
    EXPECT_TRUE(saved.configuration->filterSockets);
    EXPECT_EQ(saved.configuration->filterDataProviderBundleIdentifier, u"com.veltrane.quillmere.traffic-filter"_qs);
    const QStringList allowed = {
        u"com.apple.Safari"_qs,
        u"com.brave.Browser"_qs,
        u"com.duckduckgo.macos.browser"_qs,
        u"com.facebook.archon"_qs,
        u"com.google.Chrome"_qs,
        u"com.microsoft.edgemac"_qs,
        u"com.tdesktop.Telegram"_qs,
        u"net.whatsapp.WhatsApp"_qs,
        u"org.mozilla.firefox"_qs,
        u"org.telegram.desktop"_qs,
        u"org.whispersystems.signal-desktop"_qs,
        u"ru.keepcoder.Telegram"_qs,
    };
    EXPECT_EQ(savedPolicy(),
              (QVariantMap{{u"blockedBundleIdentifiers"_qs, QStringList({editor, player})},
                           {u"ecoTrafficEnabled"_qs, false},
                           {u"ecoAllowedBundleIdentifiers"_qs, allowed}}));
}

TEST_F(TrafficControlServiceTest, GivesEqualRecordsForEqualPolicies)
{
    EXPECT_TRUE(setBlocked(true, u"Player"_qs, player));
    EXPECT_TRUE(setBlocked(true, u"Editor"_qs, editor));
    const QVariantMap first = savedPolicy();
    EXPECT_TRUE(setBlocked(false, u"Player"_qs, player));
    EXPECT_TRUE(setBlocked(true, u"Player"_qs, player));

    EXPECT_EQ(savedPolicy(), first);
}

TEST_F(TrafficControlServiceTest, KeepsAConfigurationThatIsThereAndChangesIt)
{
    FilterProviderConfiguration older;
    older.vendorConfiguration = {{u"left from before"_qs, 1}};
    machine.filter->saves.append({older, u"old"_qs, false});

    EXPECT_TRUE(setEco(true));

    EXPECT_EQ(machine.filter->saves.size(), 2);
    EXPECT_EQ(savedPolicy().size(), 3);
    EXPECT_TRUE(savedPolicy().value(u"ecoTrafficEnabled"_qs).toBool());
}

TEST_F(TrafficControlServiceTest, SavesAnEmptyPolicyWithTheFilterStillOn)
{
    EXPECT_TRUE(setEco(false));

    EXPECT_TRUE(machine.filter->saves.last().isEnabled);
    EXPECT_THAT(savedPolicy().value(u"blockedBundleIdentifiers"_qs).toStringList(), IsEmpty());
}

TEST_F(TrafficControlServiceTest, AppliesThePolicyAlsoForARuleThatWasNeverSet)
{
    EXPECT_TRUE(setBlocked(false, u"Editor"_qs, editor));

    EXPECT_EQ(machine.extensions->submitted.size(), 1);
    EXPECT_EQ(machine.filter->saves.size(), 1);
}

TEST_F(TrafficControlServiceTest, SwitchesEcoTrafficAndStoresIt)
{
    EXPECT_TRUE(setEco(true));
    EXPECT_TRUE(service.ecoTrafficEnabled());
    EXPECT_TRUE(machine.defaults->boolean(TrafficControlService::ecoTrafficKey()));

    EXPECT_TRUE(setEco(false));
    EXPECT_FALSE(service.ecoTrafficEnabled());
    EXPECT_FALSE(machine.defaults->boolean(TrafficControlService::ecoTrafficKey()));
}

TEST_F(TrafficControlServiceTest, CannotBlockAnApplicationWithoutAnIdentifierAndAsksNobody)
{
    const QString message = u"This application has no bundle identifier, so macOS cannot safely create an app-specific "
                            "outbound rule."_qs;

    EXPECT_FALSE(setBlocked(true, u"Editor"_qs, std::nullopt));
    EXPECT_EQ(service.lastError(), message);

    EXPECT_FALSE(setBlocked(true, u"Editor"_qs, QString()));
    EXPECT_EQ(service.lastError(), message);
    EXPECT_THAT(machine.extensions->submitted, IsEmpty());
    expectUntouched();
}

TEST_F(TrafficControlServiceTest, ChangesNothingWhileTheUserHasToAllowTheExtension)
{
    machine.extensions->habit = Habit::NeedApproval;

    EXPECT_FALSE(setEco(true));

    EXPECT_EQ(service.lastError(),
              u"Allow the Quillmere Traffic Filter in System Settings, then try again. No "
              "application traffic was changed."_qs);
    expectUntouched();
}

TEST_F(TrafficControlServiceTest, ChangesNothingWhenTheExtensionCannotBeActivated)
{
    machine.extensions->habit = Habit::Fail;
    machine.extensions->reason = u"It is not signed."_qs;

    EXPECT_FALSE(setBlocked(true, u"Editor"_qs, editor));

    EXPECT_EQ(service.lastError(), u"macOS could not activate the Quillmere Traffic Filter: It is not signed."_qs);
    expectUntouched();
}

TEST_F(TrafficControlServiceTest, ChangesNothingWhenTheFilterCannotBeLoaded)
{
    machine.filter->loadError = u"No such configuration."_qs;

    EXPECT_FALSE(setEco(true));

    EXPECT_EQ(service.lastError(), u"macOS could not load the outbound traffic filter: No such configuration."_qs);
    expectUntouched();
}

TEST_F(TrafficControlServiceTest, ChangesNothingWhenThePolicyIsRejected)
{
    machine.filter->saveError = u"Permission denied."_qs;

    EXPECT_FALSE(setBlocked(true, u"Editor"_qs, editor));

    EXPECT_EQ(service.lastError(), u"macOS rejected the outbound traffic policy: Permission denied."_qs);
    expectUntouched();
}

TEST_F(TrafficControlServiceTest, ForgetsTheLastErrorAtTheNextChange)
{
    machine.filter->saveError = u"Permission denied."_qs;
    EXPECT_FALSE(setEco(true));
    machine.filter->saveError.reset();

    EXPECT_TRUE(setEco(true));

    EXPECT_EQ(service.lastError(), std::nullopt);
}

TEST_F(TrafficControlServiceTest, ClearsANameOfEarlierVersionsWhicheverWayTheRuleGoes)
{
    machine.defaults->setStringArray(TrafficControlService::blockedAppNamesKey(), {u"Editor"_qs, u"Alpha"_qs});
    TrafficControlService stored(machine.defaults, machine.filter, extension);
    EXPECT_TRUE(stored.isExplicitlyBlocked(u"Editor"_qs, std::nullopt));

    EXPECT_TRUE(QCoro::waitFor(stored.setAppTrafficBlocked(false, u"Editor"_qs, editor, std::nullopt)));

    EXPECT_FALSE(stored.isExplicitlyBlocked(u"Editor"_qs, std::nullopt));
    EXPECT_EQ(machine.defaults->stringArray(TrafficControlService::blockedAppNamesKey()), QStringList({u"Alpha"_qs}));
}

TEST_F(TrafficControlServiceTest, GoesByTheIdentifierWhereThereIsOneAndByTheNameOtherwise)
{
    machine.defaults->setStringArray(TrafficControlService::blockedBundleIdentifiersKey(), {editor});
    machine.defaults->setStringArray(TrafficControlService::blockedAppNamesKey(), {u"Player"_qs});
    const TrafficControlService stored(machine.defaults, machine.filter, extension);

    EXPECT_TRUE(stored.isExplicitlyBlocked(u"Any name"_qs, editor));
    EXPECT_FALSE(stored.isExplicitlyBlocked(u"Player"_qs, player));
    EXPECT_TRUE(stored.isExplicitlyBlocked(u"Player"_qs, std::nullopt));
    EXPECT_TRUE(stored.isExplicitlyBlocked(u"Player"_qs, QString()));
    EXPECT_FALSE(stored.isExplicitlyBlocked(u"player"_qs, std::nullopt));
}

TEST_F(TrafficControlServiceTest, ComputesEachChangeFromTheRulesAtItsOwnStart)
{
    machine.filter->hold();
    QCoro::Task<bool> first = service.setAppTrafficBlocked(true, u"Editor"_qs, editor, std::nullopt);
    QCoro::Task<bool> second = service.setEcoTrafficEnabled(true);
    // The second call is told to wait for the user, since the first has its request still open.
    EXPECT_FALSE(QCoro::waitFor(second));
    QTRY_COMPARE(machine.extensions->submitted.size(), 1);
    QCoreApplication::processEvents();
    machine.filter->releaseAll();

    EXPECT_TRUE(QCoro::waitFor(first));
    EXPECT_TRUE(service.isExplicitlyBlocked(u"Editor"_qs, editor));
    EXPECT_FALSE(service.ecoTrafficEnabled());
}

TEST_F(TrafficControlServiceTest, LetsTheLaterOfTwoRuleChangesWinForTheSystem)
{
    machine.filter->hold();
    QCoro::Task<bool> first = service.setAppTrafficBlocked(true, u"Editor"_qs, editor, std::nullopt);
    QTRY_VERIFY(extension.hasCompletedRequest());
    QCoro::Task<bool> second = service.setAppTrafficBlocked(true, u"Player"_qs, player, std::nullopt);
    QTRY_COMPARE(machine.extensions->submitted.size(), 2);
    QCoreApplication::processEvents();
    machine.filter->releaseAll();

    EXPECT_TRUE(QCoro::waitFor(first));
    EXPECT_TRUE(QCoro::waitFor(second));
    EXPECT_EQ(savedPolicy().value(u"blockedBundleIdentifiers"_qs).toStringList(), QStringList({player}));
}

TEST_F(TrafficControlServiceTest, PublishesWhatWasAccepted)
{
    QSignalSpy eco(&service, &TrafficControlService::ecoTrafficEnabledChanged);
    QSignalSpy apps(&service, &TrafficControlService::blockedAppsChanged);

    EXPECT_TRUE(setEco(true));
    EXPECT_TRUE(setBlocked(true, u"Editor"_qs, editor));
    machine.filter->saveError = u"no"_qs;
    EXPECT_FALSE(setEco(false));

    EXPECT_EQ(eco.size(), 1);
    EXPECT_EQ(apps.size(), 1);
}

struct EcoCase
{
    const char *test;
    QString name;
    std::optional<QString> identifier;
    bool isAllowed;
};

class EcoAllowanceTest : public testing::TestWithParam<EcoCase>
{
};

TEST_P(EcoAllowanceTest, GoesByIdentifierThenByPartsOfTheName)
{
    EXPECT_EQ(TrafficControlService::isEcoAllowed(GetParam().name, GetParam().identifier), GetParam().isAllowed);
}

INSTANTIATE_TEST_SUITE_P(
    Applications, EcoAllowanceTest,
    testing::Values(EcoCase{"KnownIdentifier", u"Surfer"_qs, u"org.mozilla.firefox"_qs, true},
                    EcoCase{"IdentifierInOtherCase", u"Surfer"_qs, u"org.mozilla.Firefox"_qs, false},
                    EcoCase{"NameAlone", u"Firefox Developer Edition"_qs, std::nullopt, true},
                    EcoCase{"BetaWithAnUnknownIdentifier", u"Brave Beta"_qs, u"com.brave.Browser.beta"_qs, true},
                    EcoCase{"NameInCapitals", u"TELEGRAM"_qs, u"x"_qs, true},
                    EcoCase{"NameThatMerelyHoldsTheLetters", u"Knowledge Base"_qs, u"x"_qs, true},
                    EcoCase{"Neither", u"Editor"_qs, editor, false}, EcoCase{"Nothing", QString(), QString(), false}),
    [](const auto &info) { return info.param.test; });
