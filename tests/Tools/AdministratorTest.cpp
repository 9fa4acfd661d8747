#include "Tools/Administrator.h"

#include "Tools/Purge.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

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
        return {KeepAwake(LidInhibitors(noBus), std::make_unique<PretendHolder>(state)),
                FilePath(QFile::encodeName(dropCaches())), isRoot};
    }
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

    for (const QStringList &words :
         QList<QStringList>{{}, {u"purge"_qs}, {u"keep-awake"_qs, u"on"_qs}, {u"keep-awake"_qs, u"off"_qs}})
        EXPECT_EQ(ordinary.carryOut(words), (ToolEnd{77, u"quillmere-admin: Only root can use this."_qs}));
    EXPECT_TRUE(state.isRunning);
    EXPECT_EQ(dropped(), "");
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
