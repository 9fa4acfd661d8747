#include "Tools/ChildProgram.h"

#include "Platform/Linux/Files/FileDescriptor.h"
#include "Platform/Linux/Programs/LastOutput.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Quillmere;

namespace {

ChildEnd run(const QString &text)
{
    return runChild({u"/bin/sh"_qs, {u"-c"_qs, text}}).valueOr({-1, {}});
}

ChildEnd runForCaller(const QString &text)
{
    const Caller self = Caller::ofUser(::geteuid()).valueOr({});
    return runChildAs(self, {u"/bin/sh"_qs, {u"-c"_qs, text}}).valueOr({-1, {}});
}

const QString flood = u"yes 1234567 | head -c 16000000 >&2; echo 'the end' >&2; exit 3"_qs;

void expectEndOfFlood(const ChildEnd &end)
{
    EXPECT_EQ(end.status, 3);
    EXPECT_TRUE(end.said.startsWith("[")) << end.said.left(40).constData();
    EXPECT_TRUE(end.said.endsWith("1234567\nthe end\n"));
    EXPECT_LT(end.said.size(), LastOutput::mostBytes + 100);
}

} // namespace

TEST(ChildProgramTest, GivesTheStatusAndWhatWasSaidOnStandardError)
{
    const ChildEnd end = run(u"echo one >&2; echo two >&2; exit 7"_qs);

    EXPECT_EQ(end.status, 7);
    EXPECT_EQ(end.said, "one\ntwo\n");
    EXPECT_EQ(run(u"echo begun >&2; kill -KILL $$"_qs).status, 128 + 9);
}

TEST(ChildProgramTest, ReadsNothing)
{
    EXPECT_EQ(run(u"readlink /proc/$$/fd/0 >&2"_qs).said, "/dev/null\n");
    EXPECT_EQ(runForCaller(u"readlink /proc/$$/fd/0 >&2"_qs).said, "/dev/null\n");
}

TEST(ChildProgramTest, HandsAnInputOverAsStandardInputAndAsNothingElse)
{
    const QTemporaryDir folder;
    const QByteArray path = QFile::encodeName(folder.filePath(u"input"_qs));
    FileDescriptor input(::open(path.constData(), O_RDONLY | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR));
    ASSERT_TRUE(input.isOpen());
    const int number = input.number();

    const auto end = runChild({u"/bin/sh"_qs, {u"-c"_qs, u"readlink /proc/$$/fd/* >&2; exit 0"_qs}}, std::move(input));

    ASSERT_TRUE(end);
    EXPECT_TRUE(end.value().said.startsWith(path + '\n')) << end.value().said.constData();
    EXPECT_EQ(end.value().said.count(path), 1) << end.value().said.constData();
    EXPECT_LT(::fcntl(number, F_GETFD), 0);
}

TEST(ChildProgramTest, KeepsTheEndOfAFloodOnStandardError)
{
    expectEndOfFlood(run(flood));
    expectEndOfFlood(runForCaller(flood));
}

TEST(ChildProgramTest, GivesAllThatWasSaidInACallersPlace)
{
    const ChildEnd end = runForCaller(u"echo one; echo two >&2; exit 7"_qs);

    EXPECT_EQ(end.status, 7);
    EXPECT_EQ(end.said, "one\ntwo\n");
}

TEST(ChildProgramTest, DoesNoHarmToWhatIsLeftBehindAndGoesOnToWrite)
{
    const QTemporaryDir folder;
    const QString service = u"cd '%1'; while [ -e . ] && [ ! -e go ]; do sleep 0.02; done; "
                            "echo late >&2 && echo grew >alive || echo refused >alive"_qs.arg(folder.path());
    QFile alive(folder.filePath(u"alive"_qs));

    const ChildEnd end = runForCaller(u"echo early; (%1) & exit 0"_qs.arg(service));

    EXPECT_EQ(end.said, "early\n");
    QFile go(folder.filePath(u"go"_qs));
    ASSERT_TRUE(go.open(QFile::WriteOnly));
    for (int turn = 0; turn < 1000 && alive.size() == 0; ++turn)
        ::usleep(10'000);
    ASSERT_TRUE(alive.open(QFile::ReadOnly));
    EXPECT_EQ(alive.readAll(), "refused\n");
}
