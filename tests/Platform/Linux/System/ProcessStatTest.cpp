#include "Platform/Linux/System/ProcessStat.h"

#include "Platform/Linux/ChildProcess.h"
#include "Platform/Linux/System/ProcessTable.h"

#include <gmock/gmock.h>

#include <csignal>

#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Quillmere;
using testing::Contains;
using testing::Not;

namespace {

QByteArray textWithName(const QByteArray &name)
{
    return "4711 (" + name
        + ") S 17 4711 4711 0 -1 4194560 1 2 3 4 250 50 7 8 20 0 1 0 98765 2895872 321 18446744073709551615 1 1 0 0\n";
}

ProcessStat statWithName(const QByteArray &name)
{
    return {4711, name, 'S', 17, false, 300, 98765, 321};
}

} // namespace

TEST(ProcessStatTest, ReadsTheFieldsBehindTheName)
{
    EXPECT_EQ(parseProcessStat(textWithName("cat")), statWithName("cat"));
}

TEST(ProcessStatTest, TakesAnyNameForAName)
{
    for (const QByteArray &name : {QByteArray(") ("), QByteArray(") R 1 2 3 ("), QByteArray("a\nb"), QByteArray(")\n"),
                                   QByteArray(), QByteArray("\xff\xfe"), QByteArray("((("), QByteArray("a b")})
        EXPECT_EQ(parseProcessStat(textWithName(name)), statWithName(name)) << name.toPercentEncoding().constData();
}

TEST(ProcessStatTest, AnswersNothingForTextThatIsCutAnywhere)
{
    const QByteArray text = textWithName("a) b");

    for (qsizetype length = 0; length < text.size(); ++length)
        EXPECT_EQ(parseProcessStat(text.first(length)), std::nullopt) << length;
}

TEST(ProcessStatTest, AnswersNothingForNumbersThatAreNone)
{
    EXPECT_EQ(parseProcessStat(textWithName("x").replace("98765", "98765x")), std::nullopt);
    EXPECT_EQ(parseProcessStat(textWithName("x").replace("98765", "98765000000000000000000")), std::nullopt);
    EXPECT_EQ(parseProcessStat(textWithName("x").replace(" 17 ", " -17 ")), std::nullopt);
    EXPECT_EQ(parseProcessStat(textWithName("x").replace("4711 (", "99999999 (")), std::nullopt);
    EXPECT_EQ(parseProcessStat("\n"), std::nullopt);
}

TEST(ProcessTableTest, KnowsARealProcessWithAnUglyName)
{
    std::array<int, 2> ready{};
    ASSERT_EQ(::pipe(ready.data()), 0);
    const pid_t child = startChild([&] {
        ::prctl(PR_SET_NAME, ") R (\n9 9");
        std::ignore = ::write(ready[1], "r", 1);
        ::pause();
    });
    char byte = 0;
    ASSERT_EQ(::read(ready[0], &byte, 1), 1);
    const ProcessTable table;

    const std::optional<ProcessStat> stat = table.stat(child);

    ASSERT_TRUE(stat.has_value());
    EXPECT_EQ(stat->name, ") R (\n9 9");
    EXPECT_EQ(stat->parent, ::getpid());
    EXPECT_EQ(table.user(child), ::geteuid());
    EXPECT_THAT(table.processes(), Contains(child));
    EXPECT_EQ(table.link(child, "exe"), table.link(::getpid(), "exe"));
    killChild(child);
    EXPECT_EQ(table.stat(child), std::nullopt);
    EXPECT_EQ(table.user(child), std::nullopt);
    EXPECT_EQ(table.link(child, "exe"), "");
    EXPECT_THAT(table.processes(), Not(Contains(child)));
    ::close(ready[0]);
    ::close(ready[1]);
}

TEST(ProcessTableTest, SeesThatAProcessHasEndedBeforeItsParentTookNotice)
{
    const pid_t child = startChild([] {});
    siginfo_t information = {};
    ASSERT_EQ(::waitid(P_PID, static_cast<id_t>(child), &information, WEXITED | WNOWAIT), 0);

    const std::optional<ProcessStat> stat = ProcessTable().stat(child);

    ASSERT_TRUE(stat.has_value());
    EXPECT_TRUE(stat->hasEnded());
    killChild(child);
}

TEST(ProcessTableTest, IsEmptyWhereThereIsNoSuchFolder)
{
    EXPECT_TRUE(ProcessTable(FilePath("/nonexistent")).processes().isEmpty());
    EXPECT_EQ(ProcessTable(FilePath("/nonexistent")).stat(1), std::nullopt);
}
