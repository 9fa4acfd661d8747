#include "Tools/Administrator.h"

#include "Tools/Purge.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <random>

#include <unistd.h>

using namespace Quillmere;

namespace {

/// What became of the one switch.
struct Switch
{
    bool isRunning = false;
    int starts = 0;
    int stops = 0;
};

/// Never to be listed: nothing here asks a logind.
class PretendHolder final : public KeepAwakeHolder
{
public:
    explicit PretendHolder(Switch &state)
        : m_state(state)
    {
    }

    [[nodiscard]] Result<bool> isRunning() const override { return m_state.isRunning; }
    [[nodiscard]] Result<void> start() const override
    {
        ++m_state.starts;
        m_state.isRunning = true;
        return {};
    }
    [[nodiscard]] Result<void> stop() const override
    {
        m_state.stops += m_state.isRunning ? 1 : 0;
        m_state.isRunning = false;
        return {};
    }

private:
    Switch &m_state;
};

class AdministratorTest : public testing::Test
{
protected:
    void SetUp() override
    {
        QFile file(dropCaches());
        ASSERT_TRUE(file.open(QFile::WriteOnly));
    }

    Administrator administrator(bool isRoot = true)
    {
        const QDBusConnection noBus(u"a connection that nobody made"_qs);
        const ProgramFolders programs({folder.filePath(u"programs"_qs)});
        return {
            AdministratorMeans{KeepAwake(LidInhibitors(noBus), std::make_unique<PretendHolder>(state)),
                               FilePath(QFile::encodeName(dropCaches())), SearchIndex(programs),
                               NameCache(noBus, true, programs, FilePath("/no/socket")),
                               BundleInstallation(FilePath(QFile::encodeName(applications()))),
                               DriverInstallation(noBus, folder.filePath(u"driver"_qs)),
                               DiskAdministrator(DiskTools{DiskService(noBus), BlockDevices(), nullptr, {}, {}, {}}),
                               FilterPolicy(FilePath(QFile::encodeName(folder.filePath(u"policy"_qs))))},
            Caller::ofUser(::geteuid()), isRoot};
    }
    QString applications() const { return folder.filePath(u"Applications"_qs); }
    QString dropCaches() const { return folder.filePath(u"drop_caches"_qs); }
    QByteArray dropped() const
    {
        QFile file(dropCaches());
        return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
    }

    QTemporaryDir folder;
    Switch state;
};

} // namespace

TEST_F(AdministratorTest, DropsTheCaches)
{
    EXPECT_EQ(administrator().carryOut({u"purge"_qs}), ToolEnd());
    EXPECT_EQ(dropped(), "3");
}

TEST_F(AdministratorTest, SwitchesOff)
{
    state.isRunning = true;

    EXPECT_EQ(administrator().carryOut({u"keep-awake"_qs, u"off"_qs}), ToolEnd());
    EXPECT_EQ(state.stops, 1);
}

TEST_F(AdministratorTest, SaysWhyItCannotSwitchOn)
{
    const ToolEnd end = administrator().carryOut({u"keep-awake"_qs, u"on"_qs});

    EXPECT_EQ(end, (ToolEnd{1, u"Sleep cannot be held back: There is no system bus."_qs}));
    EXPECT_EQ(state.starts, 0);
}

TEST_F(AdministratorTest, DoesNothingForAnybodyButRoot)
{
    state.isRunning = true;
    const Administrator ordinary = administrator(false);

    for (const QStringList &words : QList<QStringList>{{},
                                                       {u"purge"_qs},
                                                       {u"keep-awake"_qs, u"on"_qs},
                                                       {u"keep-awake"_qs, u"off"_qs},
                                                       {u"reset-index"_qs},
                                                       {u"flush-names"_qs},
                                                       {u"install-bundle"_qs, u"/"_qs},
                                                       {u"install-drivers"_qs},
                                                       {u"filter-policy"_qs}})
        EXPECT_EQ(ordinary.carryOut(words), (ToolEnd{77, u"quillmere-admin: Only root can use this."_qs}));
    EXPECT_TRUE(state.isRunning);
    EXPECT_EQ(dropped(), "");
}

TEST_F(AdministratorTest, SaysWhatThisMachineHasNothingOf)
{
    EXPECT_EQ(administrator().carryOut({u"reset-index"_qs}),
              (ToolEnd{69, u"This machine keeps no index of its files: nothing to do here."_qs}));
    EXPECT_EQ(administrator().carryOut({u"flush-names"_qs}),
              (ToolEnd{69, u"Neither a cache nor a finder of names runs on this machine: nothing to do here."_qs}));
    EXPECT_EQ(administrator().carryOut({u"install-drivers"_qs}),
              (ToolEnd{1,
                       u"PackageKit does not answer on this machine (There is no system bus.). Install the package "
                       "ntfs-3g with its own tools."_qs}));
}

TEST_F(AdministratorTest, InstallsABundle)
{
    const QString bundle = folder.filePath(u"bundle"_qs);
    ASSERT_TRUE(QDir().mkpath(bundle + u"/Contents"_qs));
    QFile information(bundle + u"/Contents/Info.plist"_qs);
    ASSERT_TRUE(information.open(QFile::WriteOnly));

    EXPECT_EQ(administrator().carryOut({u"install-bundle"_qs, bundle}), ToolEnd());
    EXPECT_TRUE(QFile::exists(applications() + u"/Quillmere.app/Contents/Info.plist"_qs));
}

TEST_F(AdministratorTest, SurvivesAThousandRandomCallsOfEachVerbAndDoesNothingForThem)
{
    std::mt19937 chance(20261121);
    const QStringList words = {u"on"_qs,
                               u"off"_qs,
                               QString(),
                               u"/"_qs,
                               u"/etc"_qs,
                               u"/proc/self/exe"_qs,
                               u".."_qs,
                               u"-f"_qs,
                               u"--"_qs,
                               u"/root"_qs,
                               u"/dev/sda"_qs,
                               u"/proc/self/fd/1"_qs,
                               u"$(id)"_qs,
                               u"; rm -rf /"_qs,
                               u"disk4s2"_qs,
                               u"%n%s"_qs,
                               u"a\nb"_qs,
                               u"0"_qs,
                               QString(70000, u'/'),
                               QString(5000, u'a'),
                               QString(QChar(0xd800)),
                               u"\u202eevil"_qs};
    state.isRunning = true;

    for (const char *verb : {"keep-awake", "purge", "reset-index", "flush-names", "install-bundle", "install-drivers",
                             "filter-policy", ""}) {
        for (int call = 0; call < 1000; ++call) {
            QStringList said = {QString::fromUtf8(verb)};
            for (auto count = 1 + chance() % 4; count > 0; --count)
                said.append(words.at(static_cast<qsizetype>(chance() % static_cast<unsigned>(words.size()))));
            if (said == QStringList{u"keep-awake"_qs, u"on"_qs} || said == QStringList{u"keep-awake"_qs, u"off"_qs})
                continue;

            const ToolEnd end = administrator().carryOut(said);

            ASSERT_TRUE(end.status == 64 || end.status == 1) << verb << ": " << end.status;
            ASSERT_FALSE(end.message.isEmpty());
        }
    }
    EXPECT_TRUE(state.isRunning);
    EXPECT_EQ(state.starts, 0);
    EXPECT_EQ(dropped(), "");
    EXPECT_FALSE(QFile::exists(applications()));
    EXPECT_FALSE(QFile::exists(folder.filePath(u"policy"_qs)));
}

TEST_F(AdministratorTest, HasAnActionInPolkitForEachVerbAndNoOther)
{
    QFile policy(QStringLiteral(QUILLMERE_POLICY));
    ASSERT_TRUE(policy.open(QFile::ReadOnly));
    const auto matchesIn = [](const QString &text, const QString &pattern) {
        QStringList found;
        for (const QRegularExpressionMatch &match : QRegularExpression(pattern).globalMatch(text))
            found.append(match.captured(1));
        found.sort();
        return found;
    };

    const QStringList verbs = matchesIn(administrator().carryOut({}).message, u"quillmere-admin ([a-z-]+)"_qs);

    EXPECT_EQ(verbs.size(), 10);
    EXPECT_EQ(matchesIn(QString::fromUtf8(policy.readAll()), u"exec\\.argv1\">([^<]*)<"_qs), verbs);
}

TEST_F(AdministratorTest, KnowsItsVerbsAndNothingElse)
{
    state.isRunning = true;

    for (const QStringList &words : QList<QStringList>{{},
                                                       {QString()},
                                                       {u"--help"_qs},
                                                       {u"purge"_qs, u"now"_qs},
                                                       {u"purge"_qs, QString()},
                                                       {u"purge "_qs},
                                                       {u"reset-index"_qs, u"/"_qs},
                                                       {u"flush-names"_qs, u"mDNSResponder"_qs},
                                                       {u"install-drivers"_qs, u"ntfs-3g"_qs},
                                                       {u"install-bundle"_qs},
                                                       {u"keep-awake"_qs},
                                                       {u"keep-awake"_qs, u"ON"_qs},
                                                       {u"keep-awake"_qs, u"on\n"_qs},
                                                       {u"keep-awake"_qs, u"off"_qs, u"off"_qs},
                                                       {u"pmset"_qs, u"-a"_qs, u"disablesleep"_qs, u"1"_qs}})
        EXPECT_EQ(administrator().carryOut(words).status, 64);
    EXPECT_TRUE(state.isRunning);
    EXPECT_EQ(state.starts, 0);
    EXPECT_EQ(dropped(), "");
}

TEST_F(AdministratorTest, PurgesNeitherWithArgumentsNorThroughALink)
{
    const FilePath file(QFile::encodeName(dropCaches()));
    EXPECT_EQ(runPurge({u"-f"_qs}, file).status, 64);
    ASSERT_TRUE(QFile::link(dropCaches(), folder.filePath(u"link"_qs)));
    EXPECT_EQ(runPurge({}, FilePath(QFile::encodeName(folder.filePath(u"link"_qs)))).status, 1);
    EXPECT_EQ(runPurge({}, FilePath(QFile::encodeName(folder.filePath(u"missing"_qs)))).status, 1);
    EXPECT_EQ(dropped(), "");
}
