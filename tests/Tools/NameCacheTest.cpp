#include "Tools/NameCache.h"

#include "Platform/Linux/MockedService.h"
#include "Tools/PretendPrograms.h"

using namespace Quillmere;

namespace {

const QString flushed = u"The DNS cache of systemd-resolved was flushed."_qs;

class NameCacheTest : public testing::Test
{
protected:
    void SetUp() override { ASSERT_TRUE(bus.isRunning()); }

    [[nodiscard]] NameCache cache(bool isRoot = true) const
    {
        return NameCache(bus.connection(), isRoot, programs.folders(),
                         FilePath(QFile::encodeName(programs.path(u"socket"_qs))));
    }
    [[nodiscard]] ToolEnd flush(bool isRoot = true) const { return runDscacheutil({u"-flushcache"_qs}, cache(isRoot)); }
    [[nodiscard]] ToolEnd restart() const { return runKillall({u"-HUP"_qs, u"mDNSResponder"_qs}, cache()); }

    void startResolved(const QString &python)
    {
        resolved = std::make_unique<MockedService>(bus, u"org.freedesktop.resolve1"_qs, u"/org/freedesktop/resolve1"_qs,
                                                   u"org.freedesktop.resolve1.Manager"_qs);
        ASSERT_TRUE(resolved->isRunning());
        resolved->addMethod(u"FlushCaches"_qs, QString(), QString(), python);
    }
    void startNscd(const QString &end = u"exit 0"_qs)
    {
        programs.add(u"nscd"_qs, end);
        QFile socket(programs.path(u"socket"_qs));
        ASSERT_TRUE(socket.open(QFile::WriteOnly));
    }

    PrivateBus bus;
    std::unique_ptr<MockedService> resolved;
    PretendPrograms programs;
};

} // namespace

TEST_F(NameCacheTest, IsNothingToDoAndNoSuccessWhereThereIsNone)
{
    EXPECT_EQ(flush(), (ToolEnd{69, u"This machine keeps no cache of names from the network: nothing to do here."_qs}));
    EXPECT_EQ(restart(),
              (ToolEnd{69, u"Neither a cache nor a finder of names runs on this machine: nothing to do here."_qs}));
}

TEST_F(NameCacheTest, FlushesResolvedOnce)
{
    startResolved(u""_qs);

    EXPECT_EQ(flush(), (ToolEnd{0, {}, flushed}));
    EXPECT_EQ(resolved->calls(), QStringList{u"FlushCaches"_qs});
    EXPECT_EQ(restart(), (ToolEnd{0, {}, flushed}));
    EXPECT_EQ(resolved->calls().size(), 2);
}

TEST_F(NameCacheTest, SaysWhyResolvedDidNot)
{
    startResolved(u"raise dbus.exceptions.DBusException('not now', name='org.freedesktop.DBus.Error.Failed')"_qs);

    EXPECT_EQ(flush(), (ToolEnd{1, u"The DNS cache of systemd-resolved was not flushed: not now"_qs}));
}

TEST_F(NameCacheTest, FlushesTheHostsOfNscdOnlyWhileItRuns)
{
    programs.add(u"nscd"_qs);
    EXPECT_EQ(flush().status, 69);
    EXPECT_EQ(programs.calls(), "");

    startNscd();
    EXPECT_EQ(flush(), (ToolEnd{0, {}, u"The host cache of nscd was flushed."_qs}));
    EXPECT_EQ(programs.calls(), "nscd -i hosts\n");

    startNscd(u"echo 'Only root is allowed' >&2; exit 4"_qs);
    EXPECT_EQ(flush(), (ToolEnd{1, u"The host cache of nscd was not flushed: Only root is allowed"_qs}));
}

TEST_F(NameCacheTest, LeavesNscdBesideResolvedToRoot)
{
    startNscd(u"echo 'Only root is allowed' >&2; exit 4"_qs);
    EXPECT_EQ(flush(false), (ToolEnd{1, u"The host cache of nscd was not flushed: Only root is allowed"_qs}));

    startNscd();
    startResolved(u""_qs);
    EXPECT_EQ(flush(false), (ToolEnd{0, {}, flushed}));
    EXPECT_EQ(programs.calls(), "nscd -i hosts\n");
    EXPECT_EQ(restart(), (ToolEnd{0, {}, flushed + u"\nThe host cache of nscd was flushed."_qs}));
}

TEST_F(NameCacheTest, ReloadsAvahiOnlyWhileItRunsAndOnlyForARestart)
{
    programs.add(u"avahi-daemon"_qs);
    EXPECT_EQ(flush().status, 69);
    EXPECT_EQ(programs.calls(), "");

    EXPECT_EQ(restart(), (ToolEnd{0, {}, u"Avahi was reloaded."_qs}));
    EXPECT_EQ(programs.calls(), "avahi-daemon --check\navahi-daemon --reload\n");

    programs.add(u"avahi-daemon"_qs, u"exit 255"_qs);
    EXPECT_EQ(restart().status, 69);
    programs.add(u"avahi-daemon"_qs, u"[ \"$1\" = --check ] || { echo 'gone' >&2; exit 1; }"_qs);
    EXPECT_EQ(restart(), (ToolEnd{1, u"Avahi was not reloaded: gone"_qs}));
}

TEST_F(NameCacheTest, TakesTheseWordsAloneAndHangsUpForRootAlone)
{
    startResolved(u""_qs);

    for (const QStringList &words : QList<QStringList>{{}, {u"-q"_qs}, {u"-flushcache"_qs, u"-q"_qs}})
        EXPECT_EQ(runDscacheutil(words, cache()).status, 64);
    for (const QStringList &words : QList<QStringList>{{},
                                                       {u"mDNSResponder"_qs},
                                                       {u"-HUP"_qs, u"sshd"_qs},
                                                       {u"-KILL"_qs, u"mDNSResponder"_qs},
                                                       {u"-HUP"_qs, u"mDNSResponder"_qs, u"sshd"_qs}})
        EXPECT_EQ(runKillall(words, cache()).status, 64);
    EXPECT_EQ(runKillall({u"-HUP"_qs, u"mDNSResponder"_qs}, cache(false)).status, 77);
    EXPECT_EQ(resolved->calls(), QStringList());
}
