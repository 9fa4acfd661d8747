#include "Platform/Linux/System/LinuxPowerAssertions.h"

#include "Platform/Linux/MockedService.h"

#include <QTemporaryDir>

#include <gmock/gmock.h>

using namespace Quillmere;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const QString type = u"PreventUserIdleSystemSleep"_qs;
const QString name = u"Quillmere Keep Awake Mode Active"_qs;
const QString listed = u"idle|Quillmere|Quillmere Keep Awake Mode Active|block"_qs;

QDBusConnection noBus()
{
    return QDBusConnection(u"a connection that nobody made"_qs);
}

class LinuxPowerAssertionsTest : public testing::Test
{
protected:
    void SetUp() override { ASSERT_TRUE(systemBus.isRunning() && sessionBus.isRunning()); }

    std::unique_ptr<MockedService> startLogind()
    {
        auto service = MockedService::logind(systemBus);
        EXPECT_TRUE(service->isRunning());
        return service;
    }
    /// A logind that answers Inhibit with what @p python leaves.
    std::unique_ptr<MockedService> startLogindThat(const QString &python)
    {
        auto service
            = std::make_unique<MockedService>(systemBus, u"org.freedesktop.login1"_qs, u"/org/freedesktop/login1"_qs,
                                              u"org.freedesktop.login1.Manager"_qs);
        EXPECT_TRUE(service->isRunning());
        service->addMethod(u"Inhibit"_qs, u"ssss"_qs, u"u"_qs, python);
        return service;
    }
    std::unique_ptr<MockedService> startSessionManager(const QString &python = u"ret = dbus.UInt32(71)"_qs)
    {
        auto service = std::make_unique<MockedService>(sessionBus, u"org.gnome.SessionManager"_qs,
                                                       u"/org/gnome/SessionManager"_qs, u"org.gnome.SessionManager"_qs);
        EXPECT_TRUE(service->isRunning());
        service->addMethod(u"Inhibit"_qs, u"susu"_qs, u"u"_qs, python);
        service->addMethod(u"Uninhibit"_qs, u"u"_qs, QString(), QString());
        return service;
    }
    std::unique_ptr<MockedService> startPowerManagement()
    {
        auto service = std::make_unique<MockedService>(sessionBus, u"org.freedesktop.PowerManagement"_qs,
                                                       u"/org/freedesktop/PowerManagement/Inhibit"_qs,
                                                       u"org.freedesktop.PowerManagement.Inhibit"_qs);
        EXPECT_TRUE(service->isRunning());
        service->addMethod(u"Inhibit"_qs, u"ss"_qs, u"u"_qs, u"ret = dbus.UInt32(9)"_qs);
        service->addMethod(u"UnInhibit"_qs, u"u"_qs, QString(), QString());
        return service;
    }

    PrivateBus systemBus;
    PrivateBus sessionBus;
};

} // namespace

TEST_F(LinuxPowerAssertionsTest, IsListedByLogindUntilItIsReleased)
{
    const auto logind = startLogind();
    LinuxPowerAssertions assertions(systemBus.connection(), sessionBus.connection());

    const auto created = assertions.create(type, PowerAssertions::on, name);

    ASSERT_TRUE(created) << qPrintable(created.failure().detail);
    EXPECT_NE(created.value(), 0u);
    EXPECT_THAT(inhibitorsOn(systemBus), ElementsAre(listed));

    assertions.release(created.value());

    EXPECT_TRUE(comesTrueSoon([&] { return inhibitorsOn(systemBus).isEmpty(); }));
}

TEST_F(LinuxPowerAssertionsTest, KeepsEachAssertionApart)
{
    const auto logind = startLogind();
    LinuxPowerAssertions assertions(systemBus.connection(), sessionBus.connection());
    const auto first = assertions.create(type, PowerAssertions::on, u"one"_qs);
    const auto second = assertions.create(type, PowerAssertions::on, u"two"_qs);
    ASSERT_TRUE(first && second);
    ASSERT_NE(first.value(), second.value());

    assertions.release(first.value() + second.value() + 1);
    assertions.release(first.value());
    assertions.release(first.value());

    EXPECT_TRUE(comesTrueSoon([&] { return inhibitorsOn(systemBus).size() == 1; }));
    EXPECT_THAT(inhibitorsOn(systemBus), ElementsAre(u"idle|Quillmere|two|block"_qs));
}

TEST_F(LinuxPowerAssertionsTest, EndsWithTheObjectAtTheLatest)
{
    const auto logind = startLogind();
    {
        LinuxPowerAssertions assertions(systemBus.connection(), sessionBus.connection());
        ASSERT_TRUE(assertions.create(type, PowerAssertions::on, name));
        EXPECT_THAT(inhibitorsOn(systemBus), ElementsAre(listed));
    }
    EXPECT_TRUE(comesTrueSoon([&] { return inhibitorsOn(systemBus).isEmpty(); }));
}

TEST_F(LinuxPowerAssertionsTest, EndsWithTheProcessEvenIfThatIsKilled)
{
    const auto logind = startLogind();
    QProcess process;
    process.setProgram(QStringLiteral(QUILLMERE_ASSERTING));
    process.setArguments({systemBus.address()});
    process.start();
    ASSERT_TRUE(process.waitForReadyRead(20000)) << process.readAllStandardError().constData();
    EXPECT_THAT(inhibitorsOn(systemBus), ElementsAre(listed));

    process.kill();
    ASSERT_TRUE(process.waitForFinished(20000));

    EXPECT_TRUE(comesTrueSoon([&] { return inhibitorsOn(systemBus).isEmpty(); }));
}

TEST_F(LinuxPowerAssertionsTest, AsksTheDesktopsManagersAsWellAndGivesBackTheirNumbers)
{
    const auto logind = startLogind();
    const auto sessionManager = startSessionManager();
    const auto powerManagement = startPowerManagement();
    LinuxPowerAssertions assertions(systemBus.connection(), sessionBus.connection());

    const auto created = assertions.create(type, PowerAssertions::on, name);

    ASSERT_TRUE(created);
    EXPECT_TRUE(comesTrueSoon([&] { return sessionManager->calls().size() == 1; }));
    EXPECT_TRUE(comesTrueSoon([&] { return powerManagement->calls().size() == 1; }));
    EXPECT_THAT(sessionManager->calls(), ElementsAre(u"Inhibit Quillmere 0 %1 4"_qs.arg(name)));
    EXPECT_THAT(powerManagement->calls(), ElementsAre(u"Inhibit Quillmere %1"_qs.arg(name)));

    assertions.release(created.value());

    EXPECT_TRUE(comesTrueSoon([&] { return sessionManager->calls().value(1) == u"Uninhibit 71"; }));
    EXPECT_TRUE(comesTrueSoon([&] { return powerManagement->calls().value(1) == u"UnInhibit 9"; }));
    EXPECT_TRUE(comesTrueSoon([&] { return inhibitorsOn(systemBus).isEmpty(); }));
}

TEST_F(LinuxPowerAssertionsTest, IsNotSupportedWhereNobodyCanBeAsked)
{
    LinuxPowerAssertions onEmptyBuses(systemBus.connection(), sessionBus.connection());
    LinuxPowerAssertions onNone(noBus(), noBus());

    for (LinuxPowerAssertions *assertions : {&onEmptyBuses, &onNone}) {
        const auto created = assertions->create(type, PowerAssertions::on, name);

        ASSERT_FALSE(created);
        EXPECT_EQ(created.failure().kind, Failure::Kind::NotSupported);
    }
}

TEST_F(LinuxPowerAssertionsTest, IsEnoughWhenADesktopAloneGrants)
{
    const auto sessionManager = startSessionManager();
    LinuxPowerAssertions assertions(systemBus.connection(), sessionBus.connection());

    EXPECT_TRUE(assertions.create(type, PowerAssertions::on, name));
}

TEST_F(LinuxPowerAssertionsTest, FailsWhenLogindRefusesAndTriesAnewNextTime)
{
    auto logind = startLogindThat(
        u"raise dbus.exceptions.DBusException('no', name='org.freedesktop.DBus.Error.AccessDenied')"_qs);
    LinuxPowerAssertions assertions(systemBus.connection(), sessionBus.connection());

    const auto refused = assertions.create(type, PowerAssertions::on, name);

    ASSERT_FALSE(refused);
    EXPECT_EQ(refused.failure().kind, Failure::Kind::NotSupported);

    logind->addMethod(u"Inhibit"_qs, u"ssss"_qs, u"u"_qs, u"ret = 1"_qs);
    EXPECT_TRUE(assertions.create(type, PowerAssertions::on, name));
}

TEST_F(LinuxPowerAssertionsTest, AsksNobodyForATypeOrALevelItDoesNotKnow)
{
    const auto logind = startLogind();
    LinuxPowerAssertions assertions(systemBus.connection(), sessionBus.connection());

    EXPECT_FALSE(assertions.create(u"PreventUserIdleDisplaySleep"_qs, PowerAssertions::on, name));
    EXPECT_FALSE(assertions.create(type, 0, name));

    EXPECT_THAT(inhibitorsOn(systemBus), IsEmpty());
}

TEST_F(LinuxPowerAssertionsTest, IsNotHeldUpByAServiceThatHangsBesideOneThatGrants)
{
    const auto logind = startLogind();
    // As good as never: nothing here waits for it.
    const auto sessionManager = startSessionManager(u"import time; time.sleep(3600)"_qs);
    LinuxPowerAssertions assertions(systemBus.connection(), sessionBus.connection(), std::chrono::hours(1));

    const auto created = assertions.create(type, PowerAssertions::on, name);

    EXPECT_TRUE(created);
    EXPECT_THAT(inhibitorsOn(systemBus), ElementsAre(listed));
}

TEST_F(LinuxPowerAssertionsTest, GivesUpOnALogindThatHangs)
{
    const auto logind = startLogindThat(u"import time; time.sleep(3600)"_qs);
    LinuxPowerAssertions assertions(systemBus.connection(), noBus(), std::chrono::milliseconds(50));

    const auto created = assertions.create(type, PowerAssertions::on, name);

    ASSERT_FALSE(created);
    EXPECT_EQ(created.failure().kind, Failure::Kind::NotSupported);
}

TEST_F(LinuxPowerAssertionsTest, GivesBackWhatWasGrantedTooLate)
{
    QTemporaryDir folder;
    const QString gate = folder.filePath(u"gate"_qs);
    const auto sessionManager = startSessionManager(
        u"import os, time\nwhile not os.path.exists('%1'): time.sleep(0.01)\nret = dbus.UInt32(5)"_qs.arg(gate));
    LinuxPowerAssertions assertions(noBus(), sessionBus.connection(), std::chrono::milliseconds(50));
    ASSERT_FALSE(assertions.create(type, PowerAssertions::on, name));

    ASSERT_TRUE(QFile(gate).open(QFile::WriteOnly));

    EXPECT_TRUE(comesTrueSoon([&] { return sessionManager->calls().contains(u"Uninhibit 5"_qs); }));
}
