#include "Platform/Linux/LinuxFileManager.h"
#include "Platform/Linux/TemporaryHome.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdio>
#include <thread>

#include <fcntl.h>

using namespace Quillmere;

namespace {

constexpr int filesInItem = 6;
constexpr int filesOutside = 7;

int rounds()
{
    return qEnvironmentVariableIsSet("QUILLMERE_LONG_TESTS") ? 10'000 : 200;
}

struct RaceCase
{
    const char *name;
    const char *swapped;  ///< Changes places with a link all the time.
    const char *leadsTo;  ///< Where the link leads: to something that looks the same, outside.
};

/// An item that is removed while another thread keeps exchanging something for a link that leads outside.
class RemovalRaceTest : public testing::TestWithParam<RaceCase>
{
protected:
    void SetUp() override
    {
        addItem("outside/parent/item");
        home.addFile("outside/parent/canary");
    }

    void addItem(const QByteArray &relative) const
    {
        for (const char *file : {"/a", "/b", "/folder/a", "/folder/b", "/folder/sub/a", "/other/a"})
            home.addFile(relative + file);
    }

    /// Runs @p act while the exchange goes on, once; answers how often things changed places.
    int race(const std::function<void()> &act) const
    {
        const QByteArray swapped = home.path(GetParam().swapped).bytes();
        const QByteArray link = home.path("link").bytes();
        std::atomic<bool> stop = false;
        std::atomic<int> exchanges = 0;
        std::jthread swapper([&] {
            while (!stop) {
                if (::renameat2(AT_FDCWD, swapped.constData(), AT_FDCWD, link.constData(), RENAME_EXCHANGE) == 0)
                    ++exchanges;
            }
        });
        while (exchanges == 0)
            std::this_thread::yield();
        act();
        stop = true;
        swapper.join();
        return exchanges;
    }

    qint64 countFiles(const QByteArray &relative) const
    {
        return files.measureTree(home.path(relative), {}).value().fileCount;
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

    TemporaryHome home;
    LinuxFileManager files = LinuxFileManager(home.environment());
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Swapped, RemovalRaceTest,
                         testing::Values(RaceCase{"InnerFolder", "world/parent/item/folder", "outside/parent/item/folder"},
                                         RaceCase{"Item", "world/parent/item", "outside/parent/item"},
                                         RaceCase{"Parent", "world/parent", "outside/parent"}),
                         [](const auto &info) { return info.param.name; });

TEST_P(RemovalRaceTest, DeletesNothingBehindALinkThatIsSwappedIn)
{
    int removed = 0;
    for (int round = 0; round < rounds(); ++round) {
        addItem("world/parent/item");
        home.addLink("link", home.path(GetParam().leadsTo).bytes());

        race([&] { removed += files.removeItem(home.path("world/parent/item")).isOk() ? 1 : 0; });

        ASSERT_EQ(countFiles("outside"), filesOutside) << "in round " << round;
        clear();
    }
    EXPECT_GT(removed, 0);
}

TEST_P(RemovalRaceTest, TrashesNothingBehindALinkThatIsSwappedInAndLosesNothing)
{
    int trashed = 0;
    for (int round = 0; round < rounds(); ++round) {
        addItem("world/parent/item");
        home.addLink("link", home.path(GetParam().leadsTo).bytes());

        race([&] { trashed += files.trashItem(home.path("world/parent/item")).isOk() ? 1 : 0; });

        ASSERT_EQ(countFiles("outside"), filesOutside) << "in round " << round;
        // Wherever the exchange has left it: in its place, in the link's, or in the trash.
        ASSERT_EQ(countFiles("world") + countFiles("link") + countFiles("home/.local/share/Trash/files"), filesInItem)
            << "in round " << round;
        ASSERT_EQ(home.names("home/.local/share/Trash/files").size(),
                  home.names("home/.local/share/Trash/info").size());
        clear();
    }
    EXPECT_GT(trashed, 0);
}
