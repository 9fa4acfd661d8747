#include "Tools/Osascript.h"
#include "Tools/AdministratorRequest.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace Quillmere;

namespace {

QString scriptOf(const QString &shellText)
{
    return u"do shell script \"%1\" with administrator privileges"_qs.arg(shellText);
}

/// Programs that only write down what they are told.
class OsascriptTest : public testing::Test
{
protected:
    void SetUp() override
    {
        settings.pkexec = makeProgram(u"pkexec"_qs, u"exit 0"_qs);
        settings.administrator = makeProgram(u"admin"_qs, u"exit 0"_qs);
    }

    QString makeProgram(const QString &name, const QString &end) const
    {
        QFile file(folder.filePath(name));
        const QString text
            = u"#!/bin/sh\n{ printf '<%s>' \"${0##*/}\" \"$@\"; echo; } >>'%1'\n%2\n"_qs.arg(record(), end);
        EXPECT_TRUE(file.open(QFile::WriteOnly | QFile::Truncate));
        file.write(text.toUtf8());
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        return file.fileName();
    }
    QString record() const { return folder.filePath(u"record"_qs); }
    QByteArray started() const
    {
        QFile file(record());
        return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
    }
    ToolEnd run(const QString &shellText) const { return runOsascript({u"-e"_qs, scriptOf(shellText)}, settings); }
    QByteArray toPkexec(const QByteArray &words) const
    {
        return "<pkexec><--disable-internal-agent><" + settings.administrator.toUtf8() + '>' + words + '\n';
    }

    QTemporaryDir folder;
    ElevationSettings settings;
};

struct KnownCommand
{
    const char *name;
    const char *shellText;
    const char *words;
};

class KnownCommandTest : public OsascriptTest, public testing::WithParamInterface<KnownCommand>
{
};

struct UnknownCommand
{
    const char *name;
    const char *shellText;
};

class UnknownCommandTest : public OsascriptTest, public testing::WithParamInterface<UnknownCommand>
{
};

} // namespace

TEST_P(KnownCommandTest, AsksPkexecForTheVerb)
{
    EXPECT_EQ(run(QString::fromUtf8(GetParam().shellText)), (ToolEnd{0, {}}));
    EXPECT_EQ(started(), toPkexec(GetParam().words));
}

TEST_P(KnownCommandTest, StartsTheAdministratorProgramItselfAsRoot)
{
    settings.isRoot = true;
    settings.mayAskUser = false;

    EXPECT_EQ(run(QString::fromUtf8(GetParam().shellText)), (ToolEnd{0, {}}));
    EXPECT_EQ(started(), "<admin>" + QByteArray(GetParam().words) + '\n');
}

INSTANTIATE_TEST_SUITE_P(Commands, KnownCommandTest,
                         testing::Values(KnownCommand{"StayAwake", "pmset -a disablesleep 1", "<keep-awake><on>"},
                                         KnownCommand{"Sleep", "pmset -a disablesleep 0", "<keep-awake><off>"},
                                         KnownCommand{"Purge", "purge", "<purge>"},
                                         KnownCommand{"PurgeByPath", "/usr/sbin/purge", "<purge>"},
                                         KnownCommand{"PurgeQuoted", "'/usr/sbin/purge'", "<purge>"}),
                         [](const auto &info) { return info.param.name; });

TEST_P(UnknownCommandTest, IsRefusedWithNothingStarted)
{
    for (const bool isRoot : {false, true}) {
        settings.isRoot = isRoot;

        const ToolEnd end = run(QString::fromUtf8(GetParam().shellText));

        EXPECT_EQ(end.status, 1);
        EXPECT_EQ(end.message,
                  u"execution error: This script is none of those that can be carried out here; nothing was done. (1)");
    }
    EXPECT_EQ(started(), "");
}

INSTANTIATE_TEST_SUITE_P(
    Commands, UnknownCommandTest,
    testing::Values(UnknownCommand{"Nothing", ""}, UnknownCommand{"OtherProgram", "id"},
                    UnknownCommand{"OtherValue", "pmset -a disablesleep 2"},
                    UnknownCommand{"EmptyValue", "pmset -a disablesleep ''"},
                    UnknownCommand{"ValueWithBlank", "pmset -a disablesleep ' 1'"},
                    UnknownCommand{"MissingValue", "pmset -a disablesleep"},
                    UnknownCommand{"FurtherWord", "pmset -a disablesleep 1 sleep"},
                    UnknownCommand{"OtherSetting", "pmset -a sleep 0"},
                    UnknownCommand{"ElsewhereInThePath", "/tmp/pmset -a disablesleep 1"},
                    UnknownCommand{"ClimbingPath", "/usr/sbin/../../tmp/purge"},
                    UnknownCommand{"PurgeWithArgument", "purge --help"},
                    UnknownCommand{"PurgeWithEmptyArgument", "purge ''"}, UnknownCommand{"OtherCase", "Purge"},
                    UnknownCommand{"Chained", "purge && purge"}, UnknownCommand{"ChainedWithAnother", "purge && id"},
                    UnknownCommand{"AnotherBefore", "id && purge"}, UnknownCommand{"Semicolon", "purge; id"},
                    UnknownCommand{"Line", "purge\nid"}, UnknownCommand{"TrailingLine", "purge\n"},
                    UnknownCommand{"Substitution", "pmset -a disablesleep $(id)"},
                    UnknownCommand{"SubstitutionInQuotes", "pmset -a disablesleep '$(id)'"},
                    UnknownCommand{"Redirection", "purge >/tmp/a"}, UnknownCommand{"QuotedLine", "'purge\n'"},
                    UnknownCommand{"QuotedWhole", "'pmset -a disablesleep 1'"},
                    UnknownCommand{"VerbOfTheAdministrator", "keep-awake on"}, UnknownCommand{"OpenQuote", "'purge"},
                    UnknownCommand{"QuoteThatEndsTheScript", "purge\" with administrator privileges"},
                    UnknownCommand{"Backslashes", "purge\\\\\\\\"}),
    [](const auto &info) { return info.param.name; });

TEST_F(OsascriptTest, SaysThatTheUserHasDismissedTheDialog)
{
    settings.pkexec = makeProgram(u"pkexec"_qs, u"echo 'Request dismissed' >&2; exit 126"_qs);

    EXPECT_EQ(run(u"purge"_qs), (ToolEnd{1, u"execution error: User canceled. (-128)"_qs}));
}

TEST_F(OsascriptTest, SaysWhyRightsWereNotGiven)
{
    settings.pkexec = makeProgram(u"pkexec"_qs, u"echo 'Not authorized' >&2; exit 127"_qs);

    EXPECT_EQ(run(u"purge"_qs), (ToolEnd{1, u"execution error: Not authorized (127)"_qs}));
}

TEST_F(OsascriptTest, SaysWhatTheAdministratorProgramFailedOf)
{
    settings.isRoot = true;
    settings.administrator = makeProgram(u"admin"_qs, u"echo 'No logind.' >&2; exit 1"_qs);
    EXPECT_EQ(run(u"purge"_qs), (ToolEnd{1, u"execution error: No logind. (1)"_qs}));

    settings.administrator = makeProgram(u"admin"_qs, u"kill -9 $$"_qs);
    EXPECT_EQ(run(u"purge"_qs), (ToolEnd{1, u"execution error: The command failed. (137)"_qs}));
}

TEST_F(OsascriptTest, FailsWherePkexecIsMissing)
{
    settings.pkexec = folder.filePath(u"missing"_qs);

    const ToolEnd end = run(u"purge"_qs);

    EXPECT_EQ(end.status, 1);
    EXPECT_TRUE(end.message.startsWith(u"execution error: "_qs)) << qPrintable(end.message);
    EXPECT_EQ(started(), "");
}

TEST_F(OsascriptTest, AsksNobodyOnAMachineThatIsNotTheOneThatItRunsFor)
{
    settings.mayAskUser = false;

    EXPECT_EQ(run(u"purge"_qs).status, 1);
    EXPECT_EQ(started(), "");
}

TEST_F(OsascriptTest, TakesOneScriptAndNothingElse)
{
    const QString script = scriptOf(u"purge"_qs);
    for (const QStringList &arguments : QList<QStringList>{{},
                                                           {u"-e"_qs},
                                                           {script},
                                                           {u"-e"_qs, script, u"more"_qs},
                                                           {u"-e"_qs, script, u"-e"_qs, script},
                                                           {u"-l"_qs, script}})
        EXPECT_EQ(runOsascript(arguments, settings).status, 64);
    EXPECT_EQ(started(), "");
}
