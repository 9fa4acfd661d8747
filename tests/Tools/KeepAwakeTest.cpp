#include "Tools/KeepAwake.h"

#include "Platform/Linux/ForkedProcess.h"
#include "Platform/Linux/MockedService.h"
#include "Tools/HolderLock.h"
#include "Tools/LockedHolder.h"
#include "Tools/SleepSetting.h"
#include "Tools/SystemdHolder.h"

#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <fstream>

#include <signal.h>
#include <unistd.h>

using namespace Quillmere;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const QString listed = u"sleep:handle-lid-switch|Quillmere|Keep Awake Mode|block"_qs;

/// Programs find the bus by the environment.
class KeepAwakeTest : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(bus.isRunning());
        qputenv("DBUS_SYSTEM_BUS_ADDRESS", bus.address().toUtf8());
    }
    void TearDown() override
    {
        EXPECT_TRUE(LockedHolder(program, folder).stop());
        qunsetenv("DBUS_SYSTEM_BUS_ADDRESS");
    }

    KeepAwake keepAwake(std::chrono::milliseconds patience = std::chrono::seconds(20)) const
    {
        return {LidInhibitors(bus.connection()), std::make_unique<LockedHolder>(program, folder), patience};
    }
    void startLogind() { logind = MockedService::logind(bus); }
    void startLogindThatRefuses()
    {
        logind = std::make_unique<MockedService>(bus, u"org.freedesktop.login1"_qs, u"/org/freedesktop/login1"_qs,
                                                 u"org.freedesktop.login1.Manager"_qs);
        logind->addMethod(u"ListInhibitors"_qs, QString(), u"a(ssssuu)"_qs, u"ret = []"_qs);
        logind->addMethod(
            u"Inhibit"_qs, u"ssss"_qs, u"h"_qs,
            u"raise dbus.exceptions.DBusException('not here', name='org.freedesktop.DBus.Error.AccessDenied')"_qs);
    }
    QByteArray numberInFile() const
    {
        QFile file(QFile::decodeName(folder.appending("keepawake.pid").bytes()));
        return file.open(QFile::ReadOnly) ? file.readAll().trimmed() : QByteArray();
    }

    PrivateBus bus;
    std::unique_ptr<MockedService> logind;
    QTemporaryDir temporary;
    const QString program = QStringLiteral(QUILLMERE_KEEPAWAKE);
    const FilePath folder = FilePath(QFile::encodeName(temporary.path())).appending("run");
};

} // namespace

TEST_F(KeepAwakeTest, IsListedByLogindFromOnToOff)
{
    startLogind();
    EXPECT_FALSE(keepAwake().isOn().value());

    ASSERT_TRUE(keepAwake().switchOn());

    EXPECT_THAT(inhibitorsOn(bus), ElementsAre(listed));
    EXPECT_TRUE(keepAwake().isOn().value());

    ASSERT_TRUE(keepAwake().switchOff());

    EXPECT_THAT(inhibitorsOn(bus), IsEmpty());
    EXPECT_FALSE(keepAwake().isOn().value());
}

TEST_F(KeepAwakeTest, OutlivesTheProgramThatSwitchedItOn)
{
    startLogind();
    const std::string answer = answerOfChild([&] {
        // Nothing of Qt's that has threads works in a child; the holder is started by system calls alone.
        return LockedHolder(program, folder).start() ? std::string() : std::string("not started");
    });
    EXPECT_EQ(answer, "");

    EXPECT_THAT(inhibitorsOn(bus), ElementsAre(listed));
    EXPECT_TRUE(keepAwake().isOn().value());
}

TEST_F(KeepAwakeTest, KeepsTheOneThatIsOnAtASecondOn)
{
    startLogind();
    ASSERT_TRUE(keepAwake().switchOn());
    const QByteArray before = numberInFile();

    ASSERT_TRUE(keepAwake().switchOn());

    EXPECT_THAT(inhibitorsOn(bus), ElementsAre(listed));
    EXPECT_EQ(numberInFile(), before);
    EXPECT_NE(before, "");
}

TEST_F(KeepAwakeTest, IsOffAtOnceWhereNothingWasOn)
{
    startLogind();

    EXPECT_TRUE(keepAwake().switchOff());
    EXPECT_TRUE(keepAwake().switchOff());
}

TEST_F(KeepAwakeTest, EndsItsOwnHolderAndNobodyElses)
{
    startLogind();
    const pid_t bystander = startChild([] { ::pause(); });
    // Another program's, listed under the same words.
    const auto foreign = LidInhibitors(bus.connection()).take();
    ASSERT_TRUE(foreign);
    EXPECT_FALSE(keepAwake().isOn().value());
    ASSERT_TRUE(HolderLock::open(folder));
    QFile file(QFile::decodeName(folder.appending("keepawake.pid").bytes()));
    ASSERT_TRUE(file.open(QFile::WriteOnly));
    file.write(QByteArray::number(bystander));
    file.close();

    EXPECT_TRUE(keepAwake().switchOff());

    EXPECT_EQ(::kill(bystander, 0), 0);
    EXPECT_THAT(inhibitorsOn(bus), ElementsAre(listed));
    killChild(bystander);
}

TEST_F(KeepAwakeTest, StartsNothingWithoutALogind)
{
    const auto done = keepAwake().switchOn();

    ASSERT_FALSE(done);
    EXPECT_EQ(done.failure().kind, Failure::Kind::NotSupported);
    EXPECT_FALSE(LockedHolder(program, folder).isRunning().value());
}

TEST_F(KeepAwakeTest, TellsWhyLogindRefusesAndLeavesNoHolder)
{
    startLogindThatRefuses();

    const auto done = keepAwake().switchOn();

    ASSERT_FALSE(done);
    EXPECT_EQ(done.failure().detail, u"not here");
    EXPECT_FALSE(LockedHolder(program, folder).isRunning().value());
}

TEST_F(KeepAwakeTest, EndsAHolderThatLogindDoesNotList)
{
    startLogindThatRefuses();
    logind->addMethod(u"Inhibit"_qs, u"ssss"_qs, u"h"_qs,
                      u"import os; ret = dbus.types.UnixFd(os.open('/dev/null', 0))"_qs);

    const auto done = keepAwake(std::chrono::milliseconds(50)).switchOn();

    ASSERT_FALSE(done);
    EXPECT_EQ(done.failure().detail, u"logind does not list it.");
    EXPECT_FALSE(LockedHolder(program, folder).isRunning().value());
}

TEST_F(KeepAwakeTest, IsSwitchedOffWhereLogindHasGone)
{
    startLogind();
    ASSERT_TRUE(keepAwake().switchOn());
    logind.reset();

    EXPECT_TRUE(keepAwake().switchOff());

    EXPECT_FALSE(LockedHolder(program, folder).isRunning().value());
}

TEST_F(KeepAwakeTest, FailsWhereTheHolderCannotBeStarted)
{
    startLogind();
    const KeepAwake broken(LidInhibitors(bus.connection()),
                           std::make_unique<LockedHolder>(temporary.filePath(u"missing"_qs), folder));

    EXPECT_FALSE(broken.switchOn());
    EXPECT_THAT(inhibitorsOn(bus), IsEmpty());
}

TEST_F(KeepAwakeTest, IsWhatPmsetSwitches)
{
    startLogind();

    EXPECT_EQ(runPmset({u"-a"_qs, u"disablesleep"_qs, u"1"_qs}, keepAwake(), true), ToolEnd());
    EXPECT_THAT(inhibitorsOn(bus), ElementsAre(listed));
    EXPECT_EQ(runPmset({u"-a"_qs, u"disablesleep"_qs, u"0"_qs}, keepAwake(), true), ToolEnd());
    EXPECT_THAT(inhibitorsOn(bus), IsEmpty());
}

TEST_F(KeepAwakeTest, IsNotSwitchedByPmsetForAnOrdinaryUserOrByOtherWords)
{
    startLogind();

    EXPECT_EQ(runPmset({u"-a"_qs, u"disablesleep"_qs, u"1"_qs}, keepAwake(), false).status, 77);
    for (const QStringList &words : QList<QStringList>{{},
                                                       {u"-a"_qs, u"disablesleep"_qs},
                                                       {u"-a"_qs, u"disablesleep"_qs, u"2"_qs},
                                                       {u"-a"_qs, u"disablesleep"_qs, u"01"_qs},
                                                       {u"-b"_qs, u"disablesleep"_qs, u"1"_qs},
                                                       {u"-a"_qs, u"sleep"_qs, u"1"_qs},
                                                       {u"-a"_qs, u"disablesleep"_qs, u"1"_qs, u"1"_qs}})
        EXPECT_EQ(runPmset(words, keepAwake(), true).status, 64);
    EXPECT_THAT(inhibitorsOn(bus), IsEmpty());
}

namespace {

/// Systemd's three programs, of which systemd-inhibit is the real one; a unit is a process group.
class SystemdHolderTest : public KeepAwakeTest
{
protected:
    void SetUp() override
    {
        KeepAwakeTest::SetUp();
        programs.run = makeProgram(u"systemd-run"_qs,
                                   u"while [ \"$1\" != -- ]; do shift; done; shift\n"
                                   "setsid \"$@\" >/dev/null 2>&1 </dev/null & echo $! >\"$unit\"\n"_qs);
        programs.control = makeProgram(u"systemctl"_qs,
                                       u"case $1 in\n"
                                       "is-active) [ -f \"$unit\" ] && kill -0 \"$(cat \"$unit\")\" 2>/dev/null ;;\n"
                                       "stop) kill -- \"-$(cat \"$unit\")\"; rm \"$unit\" ;;\n"
                                       "esac\n"_qs);
    }
    void TearDown() override
    {
        EXPECT_TRUE(SystemdHolder(programs).stop());
        KeepAwakeTest::TearDown();
    }

    QString makeProgram(const QString &name, const QString &body) const
    {
        QFile file(temporary.filePath(name));
        EXPECT_TRUE(file.open(QFile::WriteOnly));
        file.write(u"#!/bin/bash\nunit='%1'\necho \"${0##*/} $*\" >>'%2'\n"_qs
                       .arg(temporary.filePath(u"unit"_qs), temporary.filePath(u"record"_qs))
                       .toUtf8());
        file.write(body.toUtf8());
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        return file.fileName();
    }
    std::vector<std::string> started() const
    {
        std::vector<std::string> lines;
        std::ifstream file(temporary.filePath(u"record"_qs).toStdString());
        for (std::string line; std::getline(file, line);)
            lines.push_back(line);
        return lines;
    }
    KeepAwake ofUnits() const
    {
        return {LidInhibitors(bus.connection()), std::make_unique<SystemdHolder>(programs), std::chrono::seconds(20)};
    }

    SystemdPrograms programs;
};

} // namespace

TEST_F(SystemdHolderTest, IsAUnitThatIsListedFromOnToOff)
{
    startLogind();

    ASSERT_TRUE(ofUnits().switchOn());

    EXPECT_THAT(inhibitorsOn(bus), ElementsAre(listed));
    EXPECT_THAT(started(),
                testing::Contains("systemd-run --quiet --collect --unit=quillmere-keepawake.service -- "
                                  "/usr/bin/systemd-inhibit --what=sleep:handle-lid-switch --who=Quillmere "
                                  "--why=Keep Awake Mode --mode=block /usr/bin/sleep infinity"));

    ASSERT_TRUE(ofUnits().switchOff());

    EXPECT_THAT(started(), testing::Contains("systemctl stop quillmere-keepawake.service"));
    EXPECT_THAT(inhibitorsOn(bus), IsEmpty());
}

TEST_F(SystemdHolderTest, KeepsTheUnitThatRunsAndStopsNoneThatDoesNot)
{
    startLogind();
    ASSERT_TRUE(ofUnits().switchOff());
    EXPECT_THAT(started(), testing::Not(testing::Contains("systemctl stop quillmere-keepawake.service")));

    ASSERT_TRUE(ofUnits().switchOn());
    ASSERT_TRUE(ofUnits().switchOn());

    EXPECT_THAT(inhibitorsOn(bus), ElementsAre(listed));
    EXPECT_THAT(started(), testing::Contains(testing::StartsWith("systemd-run")).Times(1));
}

TEST_F(SystemdHolderTest, TellsWhatSystemdFailedOf)
{
    startLogind();
    programs.run = makeProgram(u"systemd-run-2"_qs, u"echo 'No room.' >&2; exit 1\n"_qs);

    const auto done = ofUnits().switchOn();

    ASSERT_FALSE(done);
    EXPECT_EQ(done.failure().detail, u"No room.");
}
