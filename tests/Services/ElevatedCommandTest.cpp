#include "Services/ElevatedCommand.h"
#include "Fakes/PretendScript.h"

#include <gtest/gtest.h>

using namespace Quillmere;

namespace {

struct HostileWordTest : testing::TestWithParam<QString>
{
};

} // namespace

TEST_P(HostileWordTest, PassesThroughBothLayersOfQuotingUnchanged)
{
    const QString word = GetParam();

    const Command command = elevated({u"/usr/bin/"_qs + word, {u"-x"_qs, word, QString()}});

    EXPECT_EQ(command.launchPath, u"/usr/bin/osascript"_qs);
    ASSERT_EQ(command.arguments.size(), 2);
    EXPECT_EQ(command.arguments.first(), u"-e"_qs);
    EXPECT_EQ(wordsOfScript(command.arguments.last()),
              QStringList({u"/usr/bin/"_qs + word, u"-x"_qs, word, QString()}));
}

INSTANTIATE_TEST_SUITE_P(Words, HostileWordTest,
                         testing::Values(u"plain"_qs, u"it's"_qs, u"two words"_qs, u"a \"quoted\" word"_qs,
                                         u"back\\slash"_qs, u"\\\""_qs, u"'\"'\"'"_qs, u"--leading"_qs, u"$(reboot)"_qs,
                                         u"`reboot`; reboot & reboot | x > y"_qs, u"line\nbreak"_qs, u"\\n"_qs,
                                         u"ends in \\"_qs, u"* ? [a] ~ {b}"_qs, u"Носитель 💾"_qs));

TEST(ElevatedCommandTest, QuotesASingleQuoteByClosingAndOpeningAgain)
{
    const Command command = elevated({u"/bin/x"_qs, {u"it's \\ \"so\""_qs}});

    EXPECT_EQ(command.arguments.last().toStdString(),
              R"(do shell script "'/bin/x' 'it'\"'\"'s \\ \"so\"'" with administrator privileges)");
}
