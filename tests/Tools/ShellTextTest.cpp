#include "Tools/ShellText.h"
#include "Tools/ScriptText.h"

#include <gtest/gtest.h>

using namespace Quillmere;

namespace {

/// Quotes as those do who write the scripts.
QString quoted(QString word)
{
    return u"'"_qs + word.replace(u'\'', u"'\"'\"'"_qs) + u"'"_qs;
}

QString escaped(QString text)
{
    return text.replace(u'\\', u"\\\\"_qs).replace(u'"', u"\\\""_qs);
}

QString scriptThatRuns(const QString &shellText)
{
    return u"do shell script \"%1\" with administrator privileges"_qs.arg(shellText);
}

struct RefusedText
{
    const char *name;
    const char *text;
};

} // namespace

class RefusedShellTextTest : public testing::TestWithParam<RefusedText>
{
};

TEST_P(RefusedShellTextTest, IsNothingOfOurs)
{
    EXPECT_EQ(parseShellText(QString::fromUtf8(GetParam().text)), std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, RefusedShellTextTest,
    testing::Values(RefusedText{"Nothing", ""}, RefusedText{"BlanksAlone", "  "}, RefusedText{"Semicolon", "purge; id"},
                    RefusedText{"Pipe", "purge | id"}, RefusedText{"Background", "purge &"},
                    RefusedText{"BackgroundAndAnother", "purge & id"}, RefusedText{"Or", "purge || id"},
                    RefusedText{"AndWithoutFirst", "&& purge"}, RefusedText{"AndWithoutSecond", "purge &&"},
                    RefusedText{"AndTwice", "purge && && id"}, RefusedText{"Line", "purge\nid"},
                    RefusedText{"TrailingLine", "purge\n"}, RefusedText{"Tab", "pmset\t-a"},
                    RefusedText{"Substitution", "$(purge)"}, RefusedText{"SubstitutionBetweenQuotes", "\"$(id)\""},
                    RefusedText{"Backticks", "`purge`"}, RefusedText{"BackticksBetweenQuotes", "\"`id`\""},
                    RefusedText{"Variable", "$HOME"}, RefusedText{"VariableBetweenQuotes", "\"$HOME\""},
                    RefusedText{"Pattern", "rm *"}, RefusedText{"QuestionMark", "rm ?"},
                    RefusedText{"Brackets", "rm [a]"}, RefusedText{"Braces", "rm {a,b}"}, RefusedText{"Home", "rm ~"},
                    RefusedText{"Redirection", "purge > /etc/passwd"}, RefusedText{"Input", "purge < a"},
                    RefusedText{"Subshell", "(purge)"}, RefusedText{"Comment", "purge # now"},
                    RefusedText{"Assignment", "LD_PRELOAD=a purge"}, RefusedText{"Negation", "! purge"},
                    RefusedText{"OpenSingleQuote", "purge 'a"}, RefusedText{"OpenDoubleQuote", "purge \"a"},
                    RefusedText{"BackslashAtTheEnd", "purge \\"}, RefusedText{"BackslashBeforeALine", "pur\\\nge"},
                    RefusedText{"NoBreakSpace", "pmset\u00a0-a"}, RefusedText{"NotAscii", "p\u0443rge"}),
    [](const auto &info) { return info.param.name; });

TEST(ShellTextTest, UndoesEachKindOfQuoting)
{
    EXPECT_EQ(parseShellText(u"a  b "_qs), ShellCommands({{u"a"_qs, u"b"_qs}}));
    EXPECT_EQ(parseShellText(u"'a b'\"c d\"e"_qs), ShellCommands({{u"a bc de"_qs}}));
    EXPECT_EQ(parseShellText(u"'' \"\""_qs), ShellCommands({{QString(), QString()}}));
    EXPECT_EQ(parseShellText(u"a\\ b \\$c"_qs), ShellCommands({{u"a b"_qs, u"$c"_qs}}));
    EXPECT_EQ(parseShellText(u"\"\\\"\\$\\`\\\\\\a\""_qs), ShellCommands({{u"\"$`\\\\a"_qs}}));
    EXPECT_EQ(parseShellText(u"'$(id) `id` \\ \n'"_qs), ShellCommands({{u"$(id) `id` \\ \n"_qs}}));
    EXPECT_EQ(parseShellText(u"a && b c"_qs), ShellCommands({{u"a"_qs}, {u"b"_qs, u"c"_qs}}));
    EXPECT_EQ(parseShellText(u"a '&&' b"_qs), ShellCommands({{u"a"_qs, u"&&"_qs, u"b"_qs}}));
}

TEST(ShellTextTest, BringsEveryWordUnchangedThroughBothQuotings)
{
    const QStringList words = {u"/Volumes/It's"_qs,
                               u"a \"b\" c"_qs,
                               u"back\\slash\\"_qs,
                               u"'"_qs,
                               u"$(id) `id`"_qs,
                               u"two\nlines"_qs,
                               u"\u0414\u0438\u0441\u043a"_qs,
                               QString()};
    QStringList shellWords;
    for (const QString &word : words)
        shellWords.append(quoted(word));

    const auto shellText = shellTextOfScript(scriptThatRuns(escaped(shellWords.join(u' '))));

    ASSERT_TRUE(shellText);
    EXPECT_EQ(parseShellText(*shellText), ShellCommands({words}));
}

class RefusedScriptTest : public testing::TestWithParam<RefusedText>
{
};

TEST_P(RefusedScriptTest, IsNothingOfOurs)
{
    EXPECT_EQ(shellTextOfScript(QString::fromUtf8(GetParam().text)), std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(
    Scripts, RefusedScriptTest,
    testing::Values(
        RefusedText{"Nothing", ""}, RefusedText{"NoScriptAtAll", "purge"},
        RefusedText{"WithoutPrivileges", R"(do shell script "purge")"},
        RefusedText{"OpenQuote", R"(do shell script "purge)"},
        RefusedText{"QuoteEscapedAtTheEnd", R"(do shell script "purge\" with administrator privileges)"},
        RefusedText{"BackslashAtTheEnd", "do shell script \"purge\\"},
        RefusedText{"OtherEscape", R"(do shell script "purge\n" with administrator privileges)"},
        RefusedText{"TrailingText",
                    R"(do shell script "purge" with administrator privileges without altering line endings)"},
        RefusedText{"TrailingBlank", "do shell script \"purge\" with administrator privileges "},
        RefusedText{"TrailingLine", "do shell script \"purge\" with administrator privileges\n"},
        RefusedText{"LeadingBlank", " do shell script \"purge\" with administrator privileges"},
        RefusedText{"SecondScript", "do shell script \"purge\" with administrator privileges\ndo shell script \"id\""},
        RefusedText{"Joined", R"(do shell script "pur" & "ge" with administrator privileges)"},
        RefusedText{"QuoteInside", R"(do shell script "a" b" with administrator privileges)"},
        RefusedText{"OtherCase", R"(Do Shell Script "purge" with administrator privileges)"}),
    [](const auto &info) { return info.param.name; });

TEST(ScriptTextTest, LetsABackslashBeforeASingleQuoteStandForItself)
{
    const auto shellText = shellTextOfScript(scriptThatRuns(u"ditto 'It'\\''s' '\\\"'"_qs));

    EXPECT_EQ(shellText, u"ditto 'It'\\''s' '\"'"_qs);
    EXPECT_EQ(parseShellText(*shellText), ShellCommands({{u"ditto"_qs, u"It's"_qs, u"\""_qs}}));
}
