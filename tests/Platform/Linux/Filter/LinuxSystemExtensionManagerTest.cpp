#include "Platform/Linux/Filter/LinuxSystemExtensionManager.h"

#include "Platform/Linux/EventWaiting.h"
#include "Platform/Linux/Filter/PretendSystemBus.h"
#include "Platform/Linux/PrivateBus.h"

#include <gtest/gtest.h>

using namespace Quillmere;

namespace {

const QString filter = u"com.veltrane.quillmere.traffic-filter"_qs;
const QStringList oneOrder = {u"quillmere-filter.service replace interactive"_qs};

/// Writes down what it is told.
class Listener final : public SystemExtensionRequestDelegate
{
public:
    QStringList heard;

    void requestNeedsUserApproval() override { heard.append(u"needs approval"_qs); }
    [[nodiscard]] ReplacementAction actionForReplacingExtension() override { return ReplacementAction::Replace; }
    void requestDidFinish(ActivationFinish finish) override
    {
        heard.append(finish == ActivationFinish::Completed ? u"finished"_qs : u"after reboot"_qs);
    }
    void requestDidFail(const QString &description) override { heard.append(u"failed: "_qs + description); }
};

} // namespace

class LinuxSystemExtensionManagerTest : public testing::Test
{
protected:
    void SetUp() override { ASSERT_TRUE(bus.isRunning()); }

    /// What the listener has heard when it has heard anything.
    QStringList activate(const QString &identifier = filter)
    {
        manager.submitActivation(identifier, listener);
        EXPECT_EQ(listener.heard, QStringList());
        EXPECT_TRUE(comesTrue([this] { return !listener.heard.isEmpty(); }));
        return listener.heard;
    }

    PrivateBus bus;
    PretendSystemBus system{bus};
    Listener listener;
    LinuxSystemExtensionManager manager{bus.connection()};
};

TEST_F(LinuxSystemExtensionManagerTest, FinishesWithoutStartingWhatIsActive)
{
    system.putFilter(true);

    EXPECT_EQ(activate(), QStringList{u"finished"_qs});
    EXPECT_EQ(system.orders, QStringList());
}

TEST_F(LinuxSystemExtensionManagerTest, StartsAFilterThatIsNotThereAndMayAskForAPassword)
{
    EXPECT_EQ(activate(), QStringList{u"finished"_qs});
    EXPECT_EQ(system.orders, oneOrder);
}

TEST_F(LinuxSystemExtensionManagerTest, StartsAFilterThatIsThereButNotActive)
{
    system.putFilter(false);

    EXPECT_EQ(activate(), QStringList{u"finished"_qs});
    EXPECT_EQ(system.orders, oneOrder);
}

TEST_F(LinuxSystemExtensionManagerTest, TakesAJobThatEndsBeforeItsPathIsKnown)
{
    system.habit = PretendSystemBus::Habit::EndJobBeforeAnswering;

    EXPECT_EQ(activate(), QStringList{u"finished"_qs});
}

TEST_F(LinuxSystemExtensionManagerTest, FailsWhereTheStartedFilterIsNotActive)
{
    system.isActiveOnceStarted = false;

    EXPECT_EQ(activate(), QStringList{u"failed: The traffic filter was started but is not active."_qs});
}

TEST_F(LinuxSystemExtensionManagerTest, FailsWithTheResultOfTheJob)
{
    system.jobResult = u"dependency"_qs;

    EXPECT_EQ(activate(),
              QStringList{u"failed: The job that starts quillmere-filter.service ended with the result "
                          "\"dependency\"."_qs});
}

TEST_F(LinuxSystemExtensionManagerTest, FailsWithTheSystemsOwnText)
{
    system.habit = PretendSystemBus::Habit::Refuse;
    system.errorName = u"org.freedesktop.systemd1.NoSuchUnit"_qs;
    system.errorText = u"Unit quillmere-filter.service not found."_qs;

    EXPECT_EQ(activate(), QStringList{u"failed: Unit quillmere-filter.service not found."_qs});
}

TEST_F(LinuxSystemExtensionManagerTest, WaitsForTheUserWhereTheSystemWantsApproval)
{
    system.habit = PretendSystemBus::Habit::Refuse;
    for (const char *name : {"org.freedesktop.DBus.Error.InteractiveAuthorizationRequired",
                             "org.freedesktop.DBus.Error.AccessDenied", "org.freedesktop.PolicyKit1.Error.Cancelled"}) {
        system.errorName = QString::fromLatin1(name);
        listener.heard.clear();

        EXPECT_EQ(activate(), QStringList{u"needs approval"_qs}) << name;
    }
}

TEST_F(LinuxSystemExtensionManagerTest, SaysNothingWhileTheSystemSaysNothing)
{
    system.habit = PretendSystemBus::Habit::Wait;
    manager.submitActivation(filter, listener);
    ASSERT_TRUE(comesTrue([this] { return system.orders == oneOrder; }));

    Listener other;
    manager.submitActivation(u"com.example.other"_qs, other);
    ASSERT_TRUE(comesTrue([&other] { return !other.heard.isEmpty(); }));

    EXPECT_EQ(listener.heard, QStringList());
}

TEST_F(LinuxSystemExtensionManagerTest, AnswersTwoRequestsEach)
{
    Listener second;
    manager.submitActivation(filter, second);

    EXPECT_EQ(activate(), QStringList{u"finished"_qs});
    EXPECT_TRUE(comesTrue([&second] { return second.heard == QStringList{u"finished"_qs}; }));
}

TEST_F(LinuxSystemExtensionManagerTest, KnowsNoOtherExtension)
{
    EXPECT_EQ(activate(u"com.example.other"_qs),
              QStringList{u"failed: This system knows no extension named com.example.other."_qs});
    EXPECT_EQ(system.orders, QStringList());
}

TEST(LinuxSystemExtensionManagerWithoutBusTest, FailsLater)
{
    LinuxSystemExtensionManager manager(QDBusConnection(u"a connection that nobody made"_qs));
    Listener listener;

    manager.submitActivation(filter, listener);

    EXPECT_EQ(listener.heard, QStringList());
    EXPECT_TRUE(comesTrue([&listener] { return !listener.heard.isEmpty(); }));
    EXPECT_EQ(listener.heard, QStringList{u"failed: The system's message bus cannot be reached."_qs});
}
