#include "ViewModels/ApplicationsFixture.h"

#include <QSignalSpy>
#include <QTest>

#include <gmock/gmock.h>

using namespace Quillmere;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// Notes where the applications are whose traffic it is told to change.
class ListeningTrafficControl final : public TrafficControlService
{
public:
    using TrafficControlService::TrafficControlService;

    QCoro::Task<bool> setAppTrafficBlocked(bool blocked, QString name, std::optional<QString> bundleIdentifier,
                                           std::optional<FilePath> applicationPath) override
    {
        paths.append(applicationPath);
        return TrafficControlService::setAppTrafficBlocked(blocked, name, bundleIdentifier, applicationPath);
    }

    QList<std::optional<FilePath>> paths;
};

class ApplicationsTrafficTest : public ApplicationsFixture
{
protected:
    ApplicationsTrafficTest()
    {
        item.name = u"Painter"_qs;
        item.bundleIdentifier = u"com.example.painter"_qs;
        item.path = FilePath("/Applications/Painter.app");
    }

    void toggle() { QCoro::waitFor(model->toggleTrafficBlock(item)); }
    void setEco() { EXPECT_TRUE(QCoro::waitFor(traffic.setEcoTrafficEnabled(true))); }

    AppItem item;
};

} // namespace

TEST_F(ApplicationsTrafficTest, BlocksAndAllowsInTurn)
{
    EXPECT_FALSE(model->isTrafficBlocked(item));

    toggle();
    EXPECT_TRUE(model->isTrafficBlocked(item));
    EXPECT_EQ(traffic.blockedBundleIdentifiers(), QSet<QString>({u"com.example.painter"_qs}));

    toggle();
    EXPECT_FALSE(model->isTrafficBlocked(item));
    EXPECT_THAT(traffic.blockedBundleIdentifiers(), IsEmpty());
    EXPECT_FALSE(model->trafficErrorMessage().has_value());
}

TEST_F(ApplicationsTrafficTest, SaysWhereTheApplicationIs)
{
    ListeningTrafficControl listening(machine.defaults, machine.filter, extension);
    ApplicationsViewModel other({scanner, ApplicationInventory(machine.files, machine.places, machine.applications),
                                 listening, history, machine.workspace, machine.clock});

    QCoro::waitFor(other.toggleTrafficBlock(item));

    EXPECT_THAT(listening.paths, ElementsAre(std::optional(item.path)));
}

TEST_F(ApplicationsTrafficTest, ShowsWhatEcoTrafficHoldsBackAndSetsARuleOfItsOwnOnAClick)
{
    setEco();
    EXPECT_TRUE(model->isTrafficBlocked(item));

    toggle();

    EXPECT_TRUE(model->isTrafficBlocked(item));
    EXPECT_EQ(traffic.blockedBundleIdentifiers(), QSet<QString>({u"com.example.painter"_qs}));
}

TEST_F(ApplicationsTrafficTest, ShowsWhatEcoTrafficLetsThroughAsAllowed)
{
    setEco();
    item.name = u"Microsoft Edge"_qs;

    EXPECT_FALSE(model->isTrafficBlocked(item));
}

TEST_F(ApplicationsTrafficTest, SaysWhyAnApplicationWithoutIdentifierCannotBeBlocked)
{
    item.bundleIdentifier.clear();

    toggle();

    EXPECT_EQ(model->trafficErrorMessage(),
              u"This application has no bundle identifier, so macOS cannot safely create an app-specific outbound "
              u"rule."_qs);
    EXPECT_TRUE(model->showingTrafficError());
    EXPECT_FALSE(model->isTrafficBlocked(item));
    model->dismissTrafficError();
    EXPECT_FALSE(model->showingTrafficError());
}

TEST_F(ApplicationsTrafficTest, SaysWhatTheSystemRefusedAndForgetsItAtTheNextTry)
{
    machine.filter->saveError = u"Not today."_qs;
    toggle();
    EXPECT_EQ(model->trafficErrorMessage(), u"macOS rejected the outbound traffic policy: Not today."_qs);

    machine.filter->saveError.reset();
    toggle();

    EXPECT_FALSE(model->trafficErrorMessage().has_value());
    EXPECT_TRUE(model->isTrafficBlocked(item));
}

TEST_F(ApplicationsTrafficTest, HasTheScreenAskAgainAfterEveryTry)
{
    QSignalSpy changes(model.get(), &ApplicationsViewModel::trafficChanged);
    machine.filter->saveError = u"Not today."_qs;

    toggle();

    EXPECT_EQ(changes.size(), 1);
}

TEST_F(ApplicationsTrafficTest, FollowsRulesThatAreSetElsewhere)
{
    addPainter();
    scan();
    model->select(0);
    QSignalSpy changes(model.get(), &ApplicationsViewModel::trafficChanged);

    setEco();

    EXPECT_FALSE(changes.isEmpty());
    EXPECT_TRUE(model->isSelectedTrafficBlocked());
}

TEST_F(ApplicationsTrafficTest, SaysThatItCouldNotBeChangedWhereTheServiceGivesNoReason)
{
    machine.filter->saveError = u"no"_qs;
    machine.filter->hold();
    // The next change clears the last error, in the same turn as it is set.
    std::optional<QCoro::Task<bool>> next;
    QObject::connect(&traffic, &TrafficControlService::lastErrorChanged, &traffic, [this, &next] {
        if (!next && traffic.lastError())
            next.emplace(traffic.setEcoTrafficEnabled(false));
    });
    const auto toggling = model->toggleTrafficBlock(item);
    QTRY_VERIFY(extension.hasCompletedRequest());
    QCoreApplication::processEvents();
    machine.filter->releaseAll();

    QCoro::waitFor(toggling);

    EXPECT_EQ(model->trafficErrorMessage(), u"Unable to change the application outbound traffic policy."_qs);
    machine.filter->releaseAll();
    QCoro::waitFor(std::move(*next));
}
