#include "Tools/KeepAwakeFixture.h"

#include "Platform/Linux/ChildProcess.h"
#include "Tools/HolderLock.h"
#include "Tools/SleepSetting.h"

#include <gmock/gmock.h>

#include <signal.h>
#include <unistd.h>

using namespace Quillmere;
using testing::ElementsAre;
using testing::IsEmpty;

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
    // Nothing of Qt's that has threads works in a child; the holder is started by system calls alone.
    inChild([&] { EXPECT_TRUE(LockedHolder(program, folder).start()); });

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
