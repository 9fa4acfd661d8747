#include "Tools/SearchIndex.h"

#include "Platform/Linux/Need.h"
#include "Tools/PretendPrograms.h"

#include <sys/stat.h>
#include <unistd.h>

using namespace Quillmere;

namespace {

constexpr uid_t nobody = 65534;

class SearchIndexTest : public testing::Test
{
protected:
    [[nodiscard]] static Caller self() { return Caller::ofUser(::geteuid()).valueOr({}); }
    [[nodiscard]] ToolEnd run(const Caller &caller = self()) const
    {
        return SearchIndex(programs.folders()).run(caller);
    }

    PretendPrograms programs;
};

} // namespace

TEST_F(SearchIndexTest, IsNothingToDoWhereThereIsNone)
{
    EXPECT_EQ(run(), (ToolEnd{69, u"This machine keeps no index of its files: nothing to do here."_qs}));
}

TEST_F(SearchIndexTest, ResetsEachThatIsHere)
{
    for (const char16_t *name : {u"tracker3", u"tracker-miner-fs-3", u"balooctl", u"baloo_file", u"updatedb"})
        programs.add(QString::fromUtf16(name));
    const QString user = QString::fromUtf8(self().name);

    EXPECT_EQ(run(),
              (ToolEnd{0,
                       {},
                       u"The index of Tracker for %1 was reset.\n"
                       "The index of Baloo for %1 was reset.\n"
                       "The index of file names was rebuilt."_qs.arg(user)}));
    EXPECT_EQ(programs.calls(), "tracker3 reset --filesystem\nbalooctl purge\nupdatedb\n");
}

TEST_F(SearchIndexTest, LeavesAToolAloneWhoseIndexNobodyKeeps)
{
    programs.add(u"tracker3"_qs);
    programs.add(u"balooctl"_qs);

    EXPECT_TRUE(run().message.contains(u"nothing to do here"_qs));
    EXPECT_EQ(programs.calls(), "");
}

TEST_F(SearchIndexTest, SaysWhatFailedBesideWhatWasDone)
{
    programs.add(u"tracker3"_qs, u"echo 'No session'; echo 'is here' >&2; exit 3"_qs);
    programs.add(u"tracker-miner-fs-3"_qs);
    programs.add(u"updatedb"_qs);
    const QString user = QString::fromUtf8(self().name);

    EXPECT_EQ(run(),
              (ToolEnd{1, u"The index of Tracker for %1 was not reset: No session\nis here"_qs.arg(user),
                       u"The index of file names was rebuilt."_qs}));

    programs.add(u"updatedb"_qs, u"kill -9 $$"_qs);
    EXPECT_TRUE(run().message.endsWith(u"The index of file names was not rebuilt: status 137"_qs));
}

TEST_F(SearchIndexTest, LeavesNoOutputOpenInAServiceThatIsStartedAnew)
{
    programs.add(u"baloo_file"_qs);
    programs.add(u"balooctl"_qs,
                 u"outputs=$(readlink /proc/$$/fd/1 /proc/$$/fd/2); echo \"$outputs\" >'%1'"_qs.arg(
                     programs.path(u"outputs"_qs)));

    EXPECT_EQ(run().status, 0);

    QFile outputs(programs.path(u"outputs"_qs));
    ASSERT_TRUE(outputs.open(QFile::ReadOnly));
    const QByteArray file = "/memfd:quillmere-output (deleted)\n";
    EXPECT_EQ(outputs.readAll(), file + file);
}

TEST_F(SearchIndexTest, ActsForAUserWithThatUsersRightsAloneAndForAllNamesAsRoot)
{
    QUILLMERE_NEED(::geteuid() == 0 ? "" : "Only root can act for somebody else");
    ASSERT_EQ(::chmod(qPrintable(programs.path(u"."_qs)), 0777), 0);
    const QString told
        = u"{ id -u; id -G; echo $HOME $USER $PATH $SECRET; grep -E 'CapEff|NoNewPrivs' /proc/self/status; "
          "cut -d' ' -f6 /proc/$$/stat | grep -q \"^$$\\$\" && echo leads; } >'%1'"_qs;
    programs.add(u"tracker3"_qs, told.arg(programs.path(u"user"_qs)));
    programs.add(u"tracker-miner-fs-3"_qs);
    programs.add(u"updatedb"_qs, u"id -u >'%1'"_qs.arg(programs.path(u"root"_qs)));
    QFile record(programs.path(u"record"_qs));
    ASSERT_TRUE(record.open(QFile::WriteOnly));
    record.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ReadOther | QFile::WriteOther);
    qputenv("SECRET", "of the administrator");

    const ToolEnd end = run(Caller::ofUser(nobody).valueOr({}));

    qunsetenv("SECRET");
    EXPECT_EQ(end.status, 0) << qPrintable(end.message);
    QFile user(programs.path(u"user"_qs));
    ASSERT_TRUE(user.open(QFile::ReadOnly));
    EXPECT_EQ(user.readAll(),
              "65534\n65534\n/nonexistent nobody /usr/local/bin:/usr/bin:/bin\nCapEff:\t0000000000000000\n"
              "NoNewPrivs:\t0\nleads\n");
    QFile root(programs.path(u"root"_qs));
    ASSERT_TRUE(root.open(QFile::ReadOnly));
    EXPECT_EQ(root.readAll(), "0\n");
}

TEST_F(SearchIndexTest, IsMdutilForRootAndThisOneUse)
{
    programs.add(u"updatedb"_qs);
    const SearchIndex index(programs.folders());
    const Result<Caller> caller = self();

    EXPECT_EQ(runMdutil({u"-E"_qs, u"/"_qs}, index, caller, false).status, 77);
    for (const QStringList &words : QList<QStringList>{
             {}, {u"-E"_qs}, {u"/"_qs}, {u"-E"_qs, u"/home"_qs}, {u"-E"_qs, u"/"_qs, u"/"_qs}, {u"-i"_qs, u"off"_qs}})
        EXPECT_EQ(runMdutil(words, index, caller, true).status, 64);
    EXPECT_EQ(programs.calls(), "");
    EXPECT_EQ(runMdutil({u"-E"_qs, u"/"_qs}, index, caller, true).status, 0);
    EXPECT_EQ(programs.calls(), "updatedb\n");
}

TEST_F(SearchIndexTest, KnowsItsCallerByPkexecsWordAlone)
{
    EXPECT_EQ(Caller::ofThisProcess().valueOr({}).user, ::getuid());
    qputenv("PKEXEC_UID", "65534");
    EXPECT_EQ(Caller::ofThisProcess().valueOr({}).user, nobody);
    for (const char *text : {"4294967295", "-1", "1000x", " ", "99999999999", "4000000000"}) {
        qputenv("PKEXEC_UID", text);
        EXPECT_FALSE(Caller::ofThisProcess()) << text;
    }
    qunsetenv("PKEXEC_UID");
}
