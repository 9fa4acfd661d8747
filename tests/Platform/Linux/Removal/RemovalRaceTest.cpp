#include "Platform/Linux/Files/LinuxFileManager.h"
#include "Platform/Linux/Need.h"
#include "Platform/Linux/Removal/TracedProgram.h"
#include "Platform/Linux/TemporaryHome.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdio>
#include <thread>

#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

using namespace Quillmere;

namespace {

constexpr int filesInItem = 8;
constexpr int filesOutside = 9;

bool isLongRun()
{
    return qEnvironmentVariableIsSet("QUILLMERE_LONG_TESTS");
}

/// Where the item and its trash lie. A round in memory takes a fortieth of one on disk.
struct Medium
{
    const char *name;
    const char *folder; ///< Null for the one of temporary files.
    int rounds;
    int roundsOfALongRun;
};

constexpr Medium inMemory = {"InMemory", "/dev/shm", 500, 10'000};
constexpr Medium onDisk = {"OnDisk", nullptr, 10, 500};

QByteArray reasonWhyNot(const Medium &medium)
{
    const bool isThere = !medium.folder || ::access(medium.folder, W_OK | X_OK) == 0;
    return isThere ? QByteArray() : QByteArray("there is no folder in memory at ") + medium.folder;
}

/// Only calls that take a name can be misled by what the name stands for; the long run tries the others as well.
bool isWorthAnExchange(long number)
{
    return isLongRun() || number == SYS_openat2 || number == SYS_openat || number == SYS_unlinkat
        || number == SYS_renameat2 || number == SYS_newfstatat;
}

struct RaceCase
{
    const char *name;
    QByteArray swapped; ///< Changes places with a link: relative to "world".
};

/// Deeper than the levels that threads share.
const QByteArray deepFolder = "parent/item" + QByteArray("/down").repeated(40) + "/folder";

/// An item that is removed while somebody exchanges something of it for a link that leads outside.
class RemovalRaceTest : public testing::TestWithParam<std::tuple<Medium, RaceCase>>
{
protected:
    static const Medium &medium() { return std::get<Medium>(GetParam()); }
    static const QByteArray &swapped() { return std::get<RaceCase>(GetParam()).swapped; }
    static int rounds() { return isLongRun() ? medium().roundsOfALongRun : medium().rounds; }

    void SetUp() override
    {
        QUILLMERE_NEED(reasonWhyNot(medium()));
        addItem("outside/parent/item");
        home.addFile("outside/parent/canary");
    }

    void addItem(const QByteArray &relative) const
    {
        for (const char *file : {"/a", "/b", "/folder/a", "/folder/b", "/folder/sub/a", "/other/a"})
            home.addFile(relative + file);
        const QByteArray deep = relative + QByteArray("/down").repeated(40) + "/folder";
        home.addFile(deep + "/a");
        home.addFile(deep + "/sub/b");
    }

    /// The item, and a link that leads, once in the place of what is swapped, to its like outside.
    FilePath addItemAndLink() const
    {
        addItem("world/parent/item");
        const QByteArray up = QByteArray("../").repeated(swapped().count('/') + 1);
        home.addLink("link", up + "outside/" + swapped());
        return home.path("world/parent/item");
    }

    bool exchange() const
    {
        return ::renameat2(AT_FDCWD, home.path("world/" + swapped()).bytes().constData(), AT_FDCWD,
                           home.path("link").bytes().constData(), RENAME_EXCHANGE)
            == 0;
    }

    /// Runs @p act while the two keep changing places.
    void race(const std::function<void()> &act) const
    {
        std::atomic<bool> stop = false;
        std::atomic<int> exchanges = 0;
        std::jthread swapper([&] {
            while (!stop)
                exchanges += exchange() ? 1 : 0;
        });
        while (exchanges == 0)
            std::this_thread::yield();
        act();
        stop = true;
    }

    /// Runs the program once for each of its system calls, with one exchange right before that call.
    void exchangeAtEachCall(const char *verb, const std::function<void(Ending)> &look) const
    {
        int exchangeAt = 1;
        for (bool reached = true; reached; ++exchangeAt) {
            const FilePath item = addItemAndLink();
            int passed = 0;
            const Ending ending = runHeld(home, {verb, item.bytes()}, [&](int, long number) {
                // It may find nothing to exchange any more, but the call was reached.
                if (isWorthAnExchange(number) && ++passed == exchangeAt)
                    static_cast<void>(exchange());
                return true;
            });
            reached = passed >= exchangeAt;
            ASSERT_EQ(countFiles("outside"), filesOutside) << "exchanged before call " << exchangeAt;
            look(ending);
            clear();
        }
        EXPECT_GT(exchangeAt, 15);
    }

    qint64 countFiles(const QByteArray &relative) const
    {
        return files.measureTree(home.path(relative), {}).value().fileCount;
    }

    void expectNothingLost() const
    {
        // Wherever the exchange has left it: in its place, in the link's, or in the trash.
        EXPECT_EQ(countFiles("world") + countFiles("link") + countFiles("home/.local/share/Trash/files"), filesInItem);
        EXPECT_EQ(home.names("home/.local/share/Trash/files").size(),
                  home.names("home/.local/share/Trash/info").size());
    }

    void clear() const
    {
        for (const char *left : {"world", "link", "home/.local/share/Trash/files", "home/.local/share/Trash/info"}) {
            // The trash is emptied from inside; it is not the engine's to remove.
            const FilePath path = home.path(left);
            if (!QByteArray(left).startsWith("home")) {
                static_cast<void>(files.removeItem(path));
                continue;
            }
            for (const QByteArray &name : namesIn(path)) {
                const FilePath item = path.appending(name);
                ASSERT_TRUE(files.removeItem(item)) << item.bytes().constData();
            }
        }
    }

    TemporaryHome home = TemporaryHome(medium().folder ? QString::fromLatin1(medium().folder) : QDir::tempPath());
    LinuxFileManager files = LinuxFileManager(home.environment());
};

/// The same with one exchange, at a call of the test's choosing.
class RemovalExchangeTest : public RemovalRaceTest
{
};

const auto swappedCases
    = testing::Values(RaceCase{"InnerFolder", "parent/item/folder"}, RaceCase{"DeepFolder", deepFolder},
                      RaceCase{"Item", "parent/item"}, RaceCase{"Parent", "parent"});

std::string nameOf(const testing::TestParamInfo<std::tuple<Medium, RaceCase>> &info)
{
    return std::string(std::get<RaceCase>(info.param).name) + std::get<Medium>(info.param).name;
}

} // namespace

INSTANTIATE_TEST_SUITE_P(Swapped, RemovalRaceTest, testing::Combine(testing::Values(inMemory, onDisk), swappedCases),
                         nameOf);
INSTANTIATE_TEST_SUITE_P(Swapped, RemovalExchangeTest, testing::Combine(testing::Values(onDisk), swappedCases), nameOf);

TEST_P(RemovalRaceTest, DeletesNothingBehindALinkThatKeepsBeingSwappedIn)
{
    int removed = 0;
    for (int round = 0; round < rounds(); ++round) {
        const FilePath item = addItemAndLink();

        race([&] { removed += files.removeItem(item).isOk() ? 1 : 0; });

        ASSERT_EQ(countFiles("outside"), filesOutside) << "in round " << round;
        clear();
    }
    EXPECT_GT(removed, 0);
}

TEST_P(RemovalExchangeTest, DeletesNothingBehindALinkThatIsSwappedInBeforeAnyCall)
{
    exchangeAtEachCall("remove", [&](Ending ending) {
        // Inside the item, whatever stands in the place of a folder goes itself.
        if (swapped().startsWith("parent/item/")) {
            EXPECT_EQ(ending, Ending::Succeeded);
            EXPECT_FALSE(home.exists("world/parent/item"));
        }
    });
}

TEST_P(RemovalRaceTest, TrashesNothingBehindALinkThatKeepsBeingSwappedInAndLosesNothing)
{
    int trashed = 0;
    for (int round = 0; round < rounds(); ++round) {
        const FilePath item = addItemAndLink();

        race([&] { trashed += files.trashItem(item).isOk() ? 1 : 0; });

        ASSERT_EQ(countFiles("outside"), filesOutside) << "in round " << round;
        expectNothingLost();
        clear();
    }
    EXPECT_GT(trashed, 0);
}

TEST_P(RemovalExchangeTest, TrashesTheItemAndNothingElseWheneverALinkIsSwappedIn)
{
    exchangeAtEachCall("trash", [&](Ending ending) {
        expectNothingLost();
        // A link that was swapped in early may itself be what was asked for; one that came later is put back.
        const bool itemIsInTrash = countFiles("home/.local/share/Trash/files") > 0;
        const bool linkIsInTrash = !itemIsInTrash && !home.names("home/.local/share/Trash/files").isEmpty();
        EXPECT_TRUE(!linkIsInTrash || ending == Ending::Succeeded);
        EXPECT_EQ(itemIsInTrash || linkIsInTrash, ending == Ending::Succeeded);
    });
}

TEST_P(RemovalExchangeTest, PutsBackWhatTookTheItemsPlaceAtTheLastMoment)
{
    const FilePath item = addItemAndLink();
    bool exchanged = false;

    const Ending ending = runHeld(home, {"trash", item.bytes()}, [&](int, long number) {
        if (number == SYS_renameat2 && !exchanged)
            exchanged = exchange();
        return true;
    });

    ASSERT_TRUE(exchanged);
    expectNothingLost();
    const bool isAnotherItem = swapped() == "parent/item";
    EXPECT_EQ(ending, isAnotherItem ? Ending::Failed : Ending::Succeeded);
    EXPECT_EQ(home.names("home/.local/share/Trash/files").isEmpty(), isAnotherItem);
    if (isAnotherItem) {
        EXPECT_EQ(files.attributesOfItem(item).value().type, EntryKind::SymbolicLink);
    }
}

/// A bundle that is replaced while somebody puts another folder in its place at the last moment.
class ReplacementExchangeTest : public testing::Test
{
protected:
    void SetUp() override
    {
        home.addFile("from/Quillmere.app/new");
        home.addFile("to/Quillmere.app/old");
        home.addFile("to/other/canary");
    }

    /// Calls @p before ahead of each move, with its number from 1.
    Ending replace(const std::function<void(int move)> &before) const
    {
        int moves = 0;
        const QList<QByteArray> arguments
            = {"replace", home.path("from/Quillmere.app").bytes(), home.path("to/Quillmere.app").bytes()};
        return runHeld(home, arguments, [&](int, long number) {
            if (number == SYS_renameat2)
                before(++moves);
            return true;
        });
    }

    bool exchange() const
    {
        return ::renameat2(AT_FDCWD, home.path("to/Quillmere.app").bytes().constData(), AT_FDCWD,
                           home.path("to/other").bytes().constData(), RENAME_EXCHANGE)
            == 0;
    }

    TemporaryHome home;
};

TEST_F(ReplacementExchangeTest, PutsTheOtherFolderBack)
{
    bool exchanged = false;

    const Ending ending = replace([&](int move) { exchanged = move == 1 ? exchange() : exchanged; });

    ASSERT_TRUE(exchanged);
    EXPECT_EQ(ending, Ending::Failed);
    EXPECT_EQ(home.names("to"), (QList<QByteArray>{"Quillmere.app", "other"}));
    EXPECT_TRUE(home.exists("to/Quillmere.app/canary"));
    EXPECT_TRUE(home.exists("to/other/old"));
}

TEST_F(ReplacementExchangeTest, PutsTheOtherFolderBesideWhatHasTakenItsNameMeanwhile)
{
    bool exchanged = false;

    const Ending ending = replace([&](int move) {
        if (move == 1)
            exchanged = exchange();
        else if (move == 2)
            home.addFile("to/Quillmere.app/third");
    });

    ASSERT_TRUE(exchanged);
    EXPECT_EQ(ending, Ending::Failed);
    EXPECT_EQ(home.names("to"), (QList<QByteArray>{"Quillmere.2.app", "Quillmere.app", "other"}));
    EXPECT_TRUE(home.exists("to/Quillmere.2.app/canary"));
    EXPECT_TRUE(home.exists("to/Quillmere.app/third"));
    EXPECT_TRUE(home.exists("to/other/old"));
}

class LateWriterTest : public testing::TestWithParam<int>
{
protected:
    /// Removes an item in whose deepest folder something new appears @p times before it is to go.
    Ending removeWhileWriting(int times) const
    {
        const QByteArray deepest = "home/item" + QByteArray("/down").repeated(GetParam());
        home.addFolder(deepest);
        int written = 0;
        return runHeld(home, {"remove", home.path("home/item").bytes()}, [&](int, long number) {
            if (number == SYS_unlinkat && written < times && home.names(deepest).isEmpty())
                home.addFile(deepest + "/late" + QByteArray::number(written++));
            return true;
        });
    }

    TemporaryHome home;
};

INSTANTIATE_TEST_SUITE_P(Depths, LateWriterTest, testing::Values(0, 1, 50));

TEST_P(LateWriterTest, IsWaitedForWhenItSoonEnds)
{
    EXPECT_EQ(removeWhileWriting(3), Ending::Succeeded);
    EXPECT_FALSE(home.exists("home/item"));
}

TEST_P(LateWriterTest, IsNotWaitedForForever)
{
    EXPECT_EQ(removeWhileWriting(1000), Ending::Failed);
    EXPECT_TRUE(home.exists("home/item"));
}
