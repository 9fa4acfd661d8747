#include "Tools/DialogTurn.h"

#include "Platform/Linux/ChildProcess.h"
#include "Tools/Osascript.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <functional>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Quillmere;

namespace {

constexpr std::chrono::seconds patience{20};

/// Whether @p event comes to be.
bool comesAbout(const std::function<bool()> &event)
{
    const QDeadlineTimer deadline(patience);
    while (!event()) {
        if (deadline.hasExpired())
            return false;
        ::usleep(5'000);
    }
    return true;
}

/// A script, and the verb that it is for the administrator program.
struct Order
{
    QString verb;
    QString shellText;
};

const Order purging{u"purge"_qs, u"/usr/sbin/purge"_qs};
const Order indexing{u"reset-index"_qs, u"'/usr/bin/mdutil' '-E' '/'"_qs};
const Order naming{u"flush-names"_qs, u"'/usr/bin/killall' '-HUP' 'mDNSResponder'"_qs};

/// Several osascript at once, each a process, with a pkexec that waits for an answer and a command that waits to end.
class DialogTurnTest : public testing::Test
{
protected:
    void SetUp() override
    {
        const QString waitFor = u"until [ -s \"$file\" ]; do [ -d '%1' ] || exit 1; sleep 0.02 </dev/null; done\n"_qs;
        const QString wait = waitFor.arg(folder.path());
        settings.pkexec = makeProgram(u"pkexec"_qs,
                                      u"verb=$3; echo $$ >\"asks.$verb.new\"; mv \"asks.$verb.new\" \"asks.$verb\"\n"
                                      "file=\"answer.$verb\"; %1"
                                      "[ \"$(cat \"$file\")\" = approve ] || exit 126\n"
                                      "shift; exec \"$@\"\n"_qs.arg(wait));
        settings.administrator = makeProgram(u"admin"_qs,
                                             u"exec </dev/null\n"
                                             "echo $$ >\"begun.$1\"; file=\"end.$1\"; %1"_qs.arg(wait));
        settings.runtimeFolder = RuntimeFolder(FilePath(QFile::encodeName(folder.path())));
    }

    void TearDown() override
    {
        for (const pid_t process : running)
            killChild(process);
    }

    QString makeProgram(const QString &name, const QString &text) const
    {
        QFile file(folder.filePath(name));
        EXPECT_TRUE(file.open(QFile::WriteOnly));
        file.write((u"#!/bin/sh\ncd '%1' || exit 1\n"_qs.arg(folder.path()) + text).toUtf8());
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        return file.fileName();
    }

    [[nodiscard]] static int runScript(const Order &order, const ElevationSettings &settings)
    {
        const QString script = u"do shell script \"%1\" with administrator privileges"_qs.arg(order.shellText);
        return runOsascript({u"-e"_qs, script}, settings).status;
    }
    pid_t start(const Order &order)
    {
        const pid_t process = startChild([&] { ::_exit(runScript(order, settings)); });
        running.append(process);
        return process;
    }

    [[nodiscard]] bool has(const QString &what, const Order &order) const
    {
        return QFile::exists(folder.filePath(what + u'.' + order.verb));
    }
    [[nodiscard]] bool asks(const Order &order) const { return has(u"asks"_qs, order); }
    [[nodiscard]] bool hasBegun(const Order &order) const { return has(u"begun"_qs, order); }

    void write(const QString &name, const QByteArray &text) const
    {
        QFile file(folder.filePath(name));
        EXPECT_TRUE(file.open(QFile::WriteOnly));
        EXPECT_EQ(file.write(text), text.size());
    }
    void answer(const Order &order, const QByteArray &text) const { write(u"answer."_qs + order.verb, text); }
    void letEnd(const Order &order) const { write(u"end."_qs + order.verb, "now"); }
    void killDialog(const Order &order) const
    {
        QFile file(folder.filePath(u"asks."_qs + order.verb));
        ASSERT_TRUE(file.open(QFile::ReadOnly));
        const pid_t dialog = file.readAll().trimmed().toInt();
        ASSERT_GT(dialog, 1);
        ::kill(dialog, SIGKILL);
    }

    /// How many stand behind whoever has the turn: of them /proc/locks has a line with an arrow.
    [[nodiscard]] qsizetype waiting() const
    {
        struct stat status = {};
        const QString lock = folder.filePath(u"quillmere/dialog.lock"_qs);
        if (::stat(QFile::encodeName(lock).constData(), &status) != 0)
            return 0;
        const QByteArray inode = ':' + QByteArray::number(static_cast<qulonglong>(status.st_ino)) + ' ';
        QFile file(u"/proc/locks"_qs);
        EXPECT_TRUE(file.open(QFile::ReadOnly));
        return std::ranges::count_if(file.readAll().split('\n'), [&inode](const QByteArray &line) {
            return line.contains("-> FLOCK") && line.contains(inode);
        });
    }
    /// True where @p order, which was started behind another, is kept from asking.
    [[nodiscard]] bool hasToWait(const Order &order) const
    {
        EXPECT_TRUE(comesAbout([&] { return waiting() > 0 || asks(order); }));
        return waiting() > 0 && !asks(order);
    }

    [[nodiscard]] static bool isRunning(pid_t process) { return ::waitpid(process, nullptr, WNOHANG) == 0; }
    /// -1 where it does not end.
    [[nodiscard]] int statusOf(pid_t process)
    {
        int status = 0;
        if (!comesAbout([&] { return ::waitpid(process, &status, WNOHANG) == process; }))
            return -1;
        running.removeOne(process);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    /// Whether two that are started together ask together, without a turn to wait for.
    void expectBothToAsk()
    {
        const pid_t first = start(purging);
        const pid_t second = start(indexing);

        EXPECT_TRUE(comesAbout([this] { return asks(purging) && asks(indexing); }));

        for (const Order &order : {purging, indexing}) {
            answer(order, "approve");
            letEnd(order);
        }
        EXPECT_EQ(statusOf(first), 0);
        EXPECT_EQ(statusOf(second), 0);
    }

    QTemporaryDir folder;
    ElevationSettings settings;
    QList<pid_t> running;
};

} // namespace

TEST_F(DialogTurnTest, TheSecondDialogComesOnceTheFirstIsAnsweredWhileTheFirstCommandGoesOn)
{
    const pid_t first = start(purging);
    ASSERT_TRUE(comesAbout([this] { return asks(purging); }));
    const pid_t second = start(indexing);
    ASSERT_TRUE(hasToWait(indexing));

    answer(purging, "approve");

    ASSERT_TRUE(comesAbout([this] { return asks(indexing); }));
    EXPECT_TRUE(hasBegun(purging));
    EXPECT_TRUE(isRunning(first));
    answer(indexing, "approve");
    letEnd(indexing);
    EXPECT_EQ(statusOf(second), 0);
    EXPECT_TRUE(isRunning(first));
    letEnd(purging);
    EXPECT_EQ(statusOf(first), 0);
}

TEST_F(DialogTurnTest, ADismissedDialogLetsTheNextComeUp)
{
    const pid_t first = start(purging);
    ASSERT_TRUE(comesAbout([this] { return asks(purging); }));
    const pid_t second = start(indexing);
    ASSERT_TRUE(hasToWait(indexing));

    answer(purging, "dismiss");

    EXPECT_TRUE(comesAbout([this] { return asks(indexing); }));
    EXPECT_EQ(statusOf(first), 1);
    answer(indexing, "dismiss");
    EXPECT_EQ(statusOf(second), 1);
}

TEST_F(DialogTurnTest, AKilledDialogLetsTheNextComeUp)
{
    const pid_t first = start(purging);
    ASSERT_TRUE(comesAbout([this] { return asks(purging); }));
    const pid_t second = start(indexing);
    ASSERT_TRUE(hasToWait(indexing));

    killDialog(purging);

    EXPECT_TRUE(comesAbout([this] { return asks(indexing); }));
    EXPECT_EQ(statusOf(first), 1);
    answer(indexing, "dismiss");
    EXPECT_EQ(statusOf(second), 1);
}

TEST_F(DialogTurnTest, WhoIsKilledWhileWaitingIsWaitedForByNobody)
{
    const pid_t first = start(purging);
    ASSERT_TRUE(comesAbout([this] { return asks(purging); }));
    const pid_t second = start(indexing);
    ASSERT_TRUE(hasToWait(indexing));
    const pid_t third = start(naming);
    ASSERT_TRUE(comesAbout([this] { return waiting() == 2 || asks(naming); }));
    ASSERT_FALSE(asks(naming));

    ::kill(second, SIGKILL);
    EXPECT_EQ(statusOf(second), -1);
    answer(purging, "dismiss");

    EXPECT_TRUE(comesAbout([this] { return asks(naming); }));
    EXPECT_FALSE(asks(indexing));
    EXPECT_EQ(statusOf(first), 1);
    answer(naming, "dismiss");
    EXPECT_EQ(statusOf(third), 1);
}

TEST_F(DialogTurnTest, ADialogThatCannotBeStartedKeepsNobodyWaiting)
{
    ElevationSettings without = settings;
    without.pkexec = folder.filePath(u"missing"_qs);
    // Not in a process of its own, whose end would give everything back.
    EXPECT_EQ(runScript(purging, without), 1);

    const pid_t next = start(indexing);

    EXPECT_TRUE(comesAbout([this] { return asks(indexing); }));
    answer(indexing, "dismiss");
    EXPECT_EQ(statusOf(next), 1);
}

TEST_F(DialogTurnTest, RootAsksNobodyAndWaitsForNobody)
{
    const FileDescriptor turn = awaitDialogTurn(settings.runtimeFolder);
    ASSERT_TRUE(turn.isOpen());
    settings.isRoot = true;
    letEnd(purging);

    EXPECT_EQ(statusOf(start(purging)), 0);
    EXPECT_FALSE(asks(purging));
}

TEST_F(DialogTurnTest, NobodyWaitsWithoutAFolderOfTheSession)
{
    settings.runtimeFolder = RuntimeFolder(FilePath());
    expectBothToAsk();
}

TEST_F(DialogTurnTest, NobodyWaitsWhereOthersMayWrite)
{
    ASSERT_EQ(::chmod(QFile::encodeName(folder.path()).constData(), 0777), 0);
    expectBothToAsk();
    EXPECT_FALSE(QFile::exists(folder.filePath(u"quillmere"_qs)));
}

TEST_F(DialogTurnTest, NobodyWaitsBehindALink)
{
    ASSERT_EQ(::mkdir(QFile::encodeName(folder.filePath(u"elsewhere"_qs)).constData(), 0700), 0);
    ASSERT_TRUE(QFile::link(folder.filePath(u"elsewhere"_qs), folder.filePath(u"quillmere"_qs)));
    expectBothToAsk();
    EXPECT_FALSE(QFile::exists(folder.filePath(u"elsewhere/dialog.lock"_qs)));
}

TEST_F(DialogTurnTest, ALinkInThePlaceOfTheLockLeadsNowhere)
{
    ASSERT_EQ(::mkdir(QFile::encodeName(folder.filePath(u"quillmere"_qs)).constData(), 0700), 0);
    ASSERT_TRUE(QFile::link(folder.filePath(u"elsewhere"_qs), folder.filePath(u"quillmere/dialog.lock"_qs)));

    EXPECT_FALSE(awaitDialogTurn(settings.runtimeFolder).isOpen());
    EXPECT_FALSE(QFile::exists(folder.filePath(u"elsewhere"_qs)));
}

TEST_F(DialogTurnTest, TheLockIsTheUsersAloneAndEmpty)
{
    const FileDescriptor turn = awaitDialogTurn(settings.runtimeFolder);
    struct stat status = {};
    ASSERT_EQ(::fstat(turn.number(), &status), 0);

    EXPECT_EQ(status.st_mode & 07777, 0600u);
    EXPECT_EQ(status.st_size, 0);
    EXPECT_EQ(::fcntl(turn.number(), F_GETFD), FD_CLOEXEC);
    EXPECT_EQ(::fcntl(turn.number(), F_GETFL) & O_ACCMODE, O_RDONLY);
}
