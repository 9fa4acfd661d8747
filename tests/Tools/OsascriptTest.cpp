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

constexpr const char *driverText
    = "if [ -f /opt/homebrew/bin/brew ]; then /opt/homebrew/bin/brew install --cask macfuse && /opt/homebrew/bin/brew "
      "install ntfs-3g-mac; elif [ -f /usr/local/bin/brew ]; then /usr/local/bin/brew install --cask macfuse && "
      "/usr/local/bin/brew install ntfs-3g-mac; else echo 'Homebrew is required to download/compile NTFS-3G and "
      "macFUSE'; exit 1; fi";

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
                                         KnownCommand{"PurgeByPath", "/usr/sbin/purge", "<purge>"},
                                         KnownCommand{"PurgeQuoted", "'/usr/sbin/purge'", "<purge>"},
                                         KnownCommand{"Index", "'/usr/bin/mdutil' '-E' '/'", "<reset-index>"},
                                         KnownCommand{"Names", "'/usr/bin/killall' '-HUP' 'mDNSResponder'",
                                                      "<flush-names>"},
                                         KnownCommand{"Bundle",
                                                      "rm -rf '/Applications/Quillmere.app' && /usr/bin/ditto "
                                                      "'/home/anna/My Quillmere.app' '/Applications/Quillmere.app'",
                                                      "<install-bundle></home/anna/My Quillmere.app>"},
                                         KnownCommand{"BundleInAFolderWithAQuote",
                                                      "rm -rf '/Applications/Quillmere.app' && /usr/bin/ditto "
                                                      "'/home/o'\\''brien/Quillmere.app' '/Applications/Quillmere.app'",
                                                      "<install-bundle></home/o'brien/Quillmere.app>"},
                                         KnownCommand{"Drivers", driverText, "<install-drivers>"}),
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
    testing::Values(
        UnknownCommand{"Nothing", ""}, UnknownCommand{"PurgeWithoutPath", "purge"},
        UnknownCommand{"OtherProgram", "id"}, UnknownCommand{"OtherValue", "pmset -a disablesleep 2"},
        UnknownCommand{"EmptyValue", "pmset -a disablesleep ''"},
        UnknownCommand{"ValueWithBlank", "pmset -a disablesleep ' 1'"},
        UnknownCommand{"MissingValue", "pmset -a disablesleep"},
        UnknownCommand{"FurtherWord", "pmset -a disablesleep 1 sleep"},
        UnknownCommand{"OtherSetting", "pmset -a sleep 0"},
        UnknownCommand{"ElsewhereInThePath", "/tmp/pmset -a disablesleep 1"},
        UnknownCommand{"ClimbingPath", "/usr/sbin/../../tmp/purge"},
        UnknownCommand{"PurgeWithArgument", "/usr/sbin/purge --help"},
        UnknownCommand{"PurgeWithEmptyArgument", "/usr/sbin/purge ''"}, UnknownCommand{"OtherCase", "Purge"},
        UnknownCommand{"Chained", "/usr/sbin/purge && /usr/sbin/purge"},
        UnknownCommand{"ChainedWithAnother", "/usr/sbin/purge && id"},
        UnknownCommand{"AnotherBefore", "id && /usr/sbin/purge"}, UnknownCommand{"Semicolon", "/usr/sbin/purge; id"},
        UnknownCommand{"Line", "/usr/sbin/purge\nid"}, UnknownCommand{"TrailingLine", "/usr/sbin/purge\n"},
        UnknownCommand{"Substitution", "pmset -a disablesleep $(id)"},
        UnknownCommand{"SubstitutionInQuotes", "pmset -a disablesleep '$(id)'"},
        UnknownCommand{"Redirection", "/usr/sbin/purge >/tmp/a"}, UnknownCommand{"QuotedLine", "'/usr/sbin/purge\n'"},
        UnknownCommand{"QuotedWhole", "'pmset -a disablesleep 1'"},
        UnknownCommand{"IndexOfAnotherDisk", "'/usr/bin/mdutil' '-E' '/Volumes'"},
        UnknownCommand{"IndexWithoutPath", "mdutil -E /"},
        UnknownCommand{"AnotherProcess", "'/usr/bin/killall' '-HUP' 'sshd'"},
        UnknownCommand{"AnotherSignal", "'/usr/bin/killall' '-KILL' 'mDNSResponder'"},
        UnknownCommand{"BundleElsewhere", "rm -rf '/home/anna' && /usr/bin/ditto '/tmp/Quillmere.app' '/home/anna'"},
        UnknownCommand{"BundleInTwoPlaces", "rm -rf '/home' && /usr/bin/ditto '/tmp/a' '/Applications/Quillmere.app'"},
        UnknownCommand{"BundleToAnotherPlace",
                       "rm -rf '/Applications/Quillmere.app' && /usr/bin/ditto '/tmp/a' '/Applications/b'"},
        UnknownCommand{"BundleInTheFolderAbove",
                       "rm -rf '/Applications/Quillmere.app/..' && /usr/bin/ditto '/tmp/a' "
                       "'/Applications/Quillmere.app/..'"},
        UnknownCommand{"BundleWithAThird",
                       "rm -rf '/Applications/Quillmere.app' && /usr/bin/ditto '/tmp/a' '/tmp/b' "
                       "'/Applications/Quillmere.app'"},
        UnknownCommand{"BundleAndMore",
                       "rm -rf '/Applications/Quillmere.app' && /usr/bin/ditto '/tmp/a' "
                       "'/Applications/Quillmere.app' && id"},
        UnknownCommand{"RemovalAlone", "rm -rf '/Applications/Quillmere.app'"},
        UnknownCommand{"CopyAlone", "/usr/bin/ditto '/tmp/a' '/Applications/Quillmere.app'"},
        UnknownCommand{"DriversAndMore", "if [ -f /opt/homebrew/bin/brew ]; then /opt/homebrew/bin/brew install; fi"},
        UnknownCommand{"VerbOfTheAdministrator", "keep-awake on"}, UnknownCommand{"OpenQuote", "'/usr/sbin/purge"},
        UnknownCommand{"QuoteThatEndsTheScript", "/usr/sbin/purge\" with administrator privileges"},
        UnknownCommand{"Backslashes", "/usr/sbin/purge\\\\\\\\"}),
    [](const auto &info) { return info.param.name; });

TEST_F(OsascriptTest, SaysThatTheUserHasDismissedTheDialog)
{
    settings.pkexec = makeProgram(u"pkexec"_qs, u"echo 'Request dismissed' >&2; exit 126"_qs);

    EXPECT_EQ(run(u"/usr/sbin/purge"_qs), (ToolEnd{1, u"execution error: User canceled. (-128)"_qs}));
}

TEST_F(OsascriptTest, TellsWhoeverPutsThingsBackWhatWasNotCarriedOutAndWhy)
{
    QList<NotCarriedOut> reasons;
    settings.notCarriedOut = [&](const AdministratorRequest &request, NotCarriedOut why, const QString &reason) {
        reasons.append(why);
        return request.verb + u": "_qs + reason;
    };
    EXPECT_EQ(run(u"/usr/sbin/purge"_qs), ToolEnd());

    settings.pkexec = makeProgram(u"pkexec"_qs, u"exit 126"_qs);
    EXPECT_EQ(run(u"/usr/sbin/purge"_qs).report, u"purge: User canceled.");
    settings.pkexec = makeProgram(u"pkexec"_qs, u"echo 'Windows is asleep' >&2; exit 1"_qs);
    EXPECT_EQ(run(u"/usr/sbin/purge"_qs).report, u"purge: Windows is asleep");
    settings.pkexec = makeProgram(u"pkexec"_qs, u"echo 'Not authorized' >&2; exit 127"_qs);
    EXPECT_EQ(run(u"/usr/sbin/purge"_qs).report, u"purge: Not authorized");
    settings.pkexec = makeProgram(u"pkexec"_qs, u"echo 'It is in use.' >&2; exit 75"_qs);
    EXPECT_EQ(run(u"/usr/sbin/purge"_qs).report, u"purge: It is in use.");
    settings.pkexec = folder.filePath(u"missing"_qs);
    EXPECT_FALSE(run(u"/usr/sbin/purge"_qs).report.isEmpty());
    settings.complete = [](const AdministratorRequest &) { return Failure{{}, {}, u"unknown"_qs}; };
    EXPECT_EQ(run(u"/usr/sbin/purge"_qs).report, u"purge: unknown");
    const auto failed = NotCarriedOut::Failed;
    EXPECT_EQ(reasons, (QList{NotCarriedOut::Dismissed, failed, failed, NotCarriedOut::NotBegun, failed, failed}));
}

TEST_F(OsascriptTest, AVolumeWhosePathHoldsAQuotationMarkIsMountedByNobody)
{
    const QString script
        = u"mkdir -p \\\"%1\\\" && /usr/local/bin/ntfs-3g /dev/disk508s1 \\\"%1\\\" -o local,allow_other"_qs;
    for (const QString &place : {u"/media/a\"b"_qs, u"/media/\" && purge && \""_qs, u"/media/a\\\"b"_qs})
        EXPECT_EQ(run(script.arg(place)).status, 1) << qPrintable(place);
    EXPECT_EQ(started(), "");

    EXPECT_EQ(run(script.arg(u"/media/a b"_qs)), ToolEnd());
    EXPECT_EQ(started(), toPkexec("<mount-ntfs></media/a b><disk508s1>"));
}

TEST_F(OsascriptTest, SaysAReasonAsItIsWhateverSignsAreInIt)
{
    settings.pkexec = makeProgram(u"pkexec"_qs, u"echo '/media/100%2 %1 %n' >&2; exit 3"_qs);

    EXPECT_EQ(run(u"/usr/sbin/purge"_qs), (ToolEnd{1, u"execution error: /media/100%2 %1 %n (3)"_qs}));
}

TEST_F(OsascriptTest, SaysWhyRightsWereNotGiven)
{
    settings.pkexec = makeProgram(u"pkexec"_qs, u"echo 'Not authorized' >&2; exit 127"_qs);

    EXPECT_EQ(run(u"/usr/sbin/purge"_qs), (ToolEnd{1, u"execution error: Not authorized (127)"_qs}));
}

TEST_F(OsascriptTest, SaysWhatTheAdministratorProgramFailedOf)
{
    settings.isRoot = true;
    settings.administrator = makeProgram(u"admin"_qs, u"echo 'No logind.' >&2; exit 1"_qs);
    EXPECT_EQ(run(u"/usr/sbin/purge"_qs), (ToolEnd{1, u"execution error: No logind. (1)"_qs}));

    settings.administrator = makeProgram(u"admin"_qs, u"kill -9 $$"_qs);
    EXPECT_EQ(run(u"/usr/sbin/purge"_qs), (ToolEnd{1, u"execution error: The command failed. (137)"_qs}));
}

TEST_F(OsascriptTest, FailsWherePkexecIsMissing)
{
    settings.pkexec = folder.filePath(u"missing"_qs);

    const ToolEnd end = run(u"/usr/sbin/purge"_qs);

    EXPECT_EQ(end.status, 1);
    EXPECT_TRUE(end.message.startsWith(u"execution error: "_qs)) << qPrintable(end.message);
    EXPECT_EQ(started(), "");
}

TEST_F(OsascriptTest, AsksNobodyOnAMachineThatIsNotTheOneThatItRunsFor)
{
    settings.mayAskUser = false;

    EXPECT_EQ(run(u"/usr/sbin/purge"_qs).status, 1);
    EXPECT_EQ(started(), "");
}

TEST_F(OsascriptTest, TakesOneScriptAndNothingElse)
{
    const QString script = scriptOf(u"/usr/sbin/purge"_qs);
    for (const QStringList &arguments : QList<QStringList>{{},
                                                           {u"-e"_qs},
                                                           {script},
                                                           {u"-e"_qs, script, u"more"_qs},
                                                           {u"-e"_qs, script, u"-e"_qs, script},
                                                           {u"-l"_qs, script}})
        EXPECT_EQ(runOsascript(arguments, settings).status, 64);
    EXPECT_EQ(started(), "");
}
