#include "Tools/ChildProgram.h"

#include "Platform/Linux/LastOutput.h"

#include <gtest/gtest.h>

using namespace Quillmere;

namespace {

ChildEnd run(const QString &text)
{
    return runChild({u"/bin/sh"_qs, {u"-c"_qs, text}}).valueOr({-1, {}});
}

} // namespace

TEST(ChildProgramTest, GivesTheStatusAndWhatWasSaidOnStandardError)
{
    const ChildEnd end = run(u"echo one >&2; echo two >&2; exit 7"_qs);

    EXPECT_EQ(end.status, 7);
    EXPECT_EQ(end.standardError, "one\ntwo\n");
    EXPECT_EQ(run(u"echo begun >&2; kill -KILL $$"_qs).status, 128 + 9);
}

TEST(ChildProgramTest, KeepsTheEndOfAFloodOnStandardError)
{
    const ChildEnd end = run(u"yes 1234567 | head -c 16000000 >&2; echo 'the end' >&2; exit 3"_qs);

    EXPECT_EQ(end.status, 3);
    EXPECT_TRUE(end.standardError.startsWith("[")) << end.standardError.left(40).constData();
    EXPECT_TRUE(end.standardError.endsWith("1234567\nthe end\n"));
    EXPECT_LT(end.standardError.size(), LastOutput::mostBytes + 100);
}
