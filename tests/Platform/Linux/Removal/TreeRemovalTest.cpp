#include "Platform/Linux/Removal/TreeRemoval.h"
#include "Platform/Linux/ChildProcess.h"
#include "Platform/Linux/Files/LinuxFileManager.h"
#include "Platform/Linux/Files/OpenAt.h"
#include "Platform/Linux/TemporaryHome.h"

#include <gtest/gtest.h>

#include <latch>
#include <thread>

#include <fcntl.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Quillmere;

namespace {

/// Every test runs with one thread and with several: the answer is the same.
class TreeRemovalTest : public testing::TestWithParam<int>
{
protected:
    Result<void> remove(const FilePath &path, RemovalRecord *record = nullptr) const
    {
        const auto place = ItemPlace::open(path, LinksAbove::Refuse);
        const auto item = openAt(place.value().folder.number(), place.value().name, O_PATH | O_NOFOLLOW);
        RemovalRecord own;
        RemovalRecord &used = record ? *record : own;
        TreeRemoval(GetParam()).remove(place.value(), item, used);
        if (const auto failure = used.failure())
            return *failure;
        return {};
    }

    /// 4 levels, 4 folders and 5 files in each folder; 341 folders and 1,705 files.
    void addTree(const QByteArray &relative, int levels = 4) const
    {
        for (int child = 0; child < 5; ++child)
            home.addFile(relative + "/file" + QByteArray::number(child));
        for (int child = 0; levels > 0 && child < 4; ++child)
            addTree(relative + "/folder" + QByteArray::number(child), levels - 1);
    }

    /// Put together from short pieces: some file systems make a folder the slower, the deeper it lies.
    void addChain(const QByteArray &relative, int pieces, bool withSiblings) const
    {
        const QByteArray bottom = QByteArray("/down").repeated(piece - 1);
        for (int made = 0; made < pieces; ++made) {
            const QByteArray top = "piece" + QByteArray::number(made);
            home.addFolder(top + bottom);
            for (int level = 0; withSiblings && level < piece; ++level) {
                home.addFolder(top + bottom.first(level * 5) + "/a");
                home.addFile(top + bottom.first(level * 5) + "/z/file");
            }
            const QByteArray below = top + bottom + "/down";
            if (made > 0) {
                ASSERT_EQ(::rename(home.path("chain").bytes().constData(), home.path(below).bytes().constData()), 0);
            }
            ASSERT_EQ(::rename(home.path(top).bytes().constData(), home.path("chain").bytes().constData()), 0);
        }
        ASSERT_EQ(::rename(home.path("chain").bytes().constData(), home.path(relative).bytes().constData()), 0);
    }

    static constexpr int piece = 100;
    TemporaryHome home;
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Threads, TreeRemovalTest, testing::Values(1, 4));

TEST_P(TreeRemovalTest, DeletesATreeWithAllThatIsInIt)
{
    addTree("item");
    home.addFile("item/.hidden/.file");
    home.addFile("beside");
    ::mkfifo(home.path("item/fifo").bytes().constData(), 0600);
    RemovalRecord record;

    ASSERT_TRUE(remove(home.path("item"), &record));

    EXPECT_EQ(home.names({}), (QList<QByteArray>{"beside", "home"}));
    EXPECT_EQ(record.removed(), 341 + 1705 + 3);
}

TEST_P(TreeRemovalTest, DeletesAFileAndALinkThemselves)
{
    home.addFile("kept/file", "kept");
    const FilePath file = home.addFile("file");
    const FilePath link = home.addLink("link", "kept");
    const FilePath dangling = home.addLink("dangling", "nowhere");

    for (const FilePath &item : {file, link, dangling})
        EXPECT_TRUE(remove(item));

    EXPECT_EQ(home.names({}), (QList<QByteArray>{"home", "kept"}));
    EXPECT_EQ(home.contents("kept/file"), "kept");
}

TEST_P(TreeRemovalTest, DeletesLinksInsideAndNeverWhatTheyLeadTo)
{
    home.addFile("kept/file", "kept");
    home.addLink("item/toFolder", home.path("kept").bytes());
    home.addLink("item/folder/toFile", "../../kept/file");
    home.addLink("item/loop", ".");

    ASSERT_TRUE(remove(home.path("item")));

    EXPECT_FALSE(home.exists("item"));
    EXPECT_EQ(home.contents("kept/file"), "kept");
}

TEST_P(TreeRemovalTest, DeletesNamesOfEveryKind)
{
    for (const QByteArray &name : {QByteArray("\xff\xfe"), QByteArray("line\nbreak"), QByteArray("100%"),
                                   QByteArray(255, 'x'), QByteArray("שלום"), QByteArray("-rf"), QByteArray("...")}) {
        home.addFile("item/" + name);
        home.addFile("item/folder/" + name + "/file");
    }

    ASSERT_TRUE(remove(home.path("item")));

    EXPECT_FALSE(home.exists("item"));
}

TEST_P(TreeRemovalTest, DeletesAThousandAndTenThousandNestedFolders)
{
    addChain("item", GetParam() == 1 ? 10 : 10'000 / piece, false);

    ASSERT_TRUE(remove(home.path("item")));

    EXPECT_FALSE(home.exists("item"));
}

TEST_P(TreeRemovalTest, DeletesADeepTreeWithSiblingsOnEveryLevelWithFewDescriptors)
{
    addChain("item", 5, true);
    inChild([&] {
        const rlimit few = {300, 300};
        ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &few), 0);

        ASSERT_TRUE(remove(home.path("item")));
    });

    EXPECT_FALSE(home.exists("item"));
}

TEST_P(TreeRemovalTest, DeletesAFolderWithMoreEntriesThanOneReadingGives)
{
    for (int file = 0; file < 5000; ++file)
        home.addFile("item/" + QByteArray::number(file), "");
    for (int folder = 0; folder < 500; ++folder)
        home.addFolder("item/folder" + QByteArray::number(folder));

    ASSERT_TRUE(remove(home.path("item")));

    EXPECT_FALSE(home.exists("item"));
}

TEST_P(TreeRemovalTest, OpensFoldersOfOursThatWeMayNotReadOrWrite)
{
    home.addFile("item/unreadable/deep/file");
    home.addFile("item/unwritable/folder/file");
    home.addFile("item/unsearchable/folder/file");
    inUnprivilegedChild(home.path(), [&] {
        ::chmod(home.path("item/unreadable/deep").bytes().constData(), 0);
        ::chmod(home.path("item/unreadable").bytes().constData(), 0);
        ::chmod(home.path("item/unwritable").bytes().constData(), 0555);
        ::chmod(home.path("item/unsearchable").bytes().constData(), 0666);
        ::chmod(home.path("item").bytes().constData(), 0);

        const auto removed = remove(home.path("item"));

        EXPECT_TRUE(removed) << qPrintable(removed.failure().detail);
        EXPECT_FALSE(home.exists("item"));
    });
}

TEST_P(TreeRemovalTest, LeavesTheFolderAboveTheItemAsItIs)
{
    home.addFile("home/locked/item/file");
    inUnprivilegedChild(home.path(), [&] {
        ::chmod(home.path("home/locked").bytes().constData(), 0500);

        const auto removed = remove(home.path("home/locked/item"));

        ASSERT_FALSE(removed);
        EXPECT_EQ(removed.failure().kind, Failure::Kind::NoPermission);
        EXPECT_EQ(removed.failure().path, home.path("home/locked/item"));
        EXPECT_EQ(home.mode("home/locked"), 0500u);
    });
}

TEST_P(TreeRemovalTest, NamesTheFirstThatStaysAndDeletesEverythingBesideIt)
{
    QUILLMERE_NEED(::geteuid() != 0 ? QByteArray("Only root can give folders to somebody else") : QByteArray());
    for (const char *folder : {"item/a", "item/b/foreign", "item/c/foreign", "item/d"})
        home.addFile(QByteArray(folder) + "/file");
    inUnprivilegedChild(home.path(), [] {});
    for (const char *foreign : {"item/b/foreign", "item/c/foreign"})
        ASSERT_EQ(::chown(home.path(foreign).bytes().constData(), 12345, 12345), 0);
    inUnprivilegedChild({}, [&] {
        const auto removed = remove(home.path("item"));

        ASSERT_FALSE(removed);
        EXPECT_EQ(removed.failure().kind, Failure::Kind::NoPermission);
        EXPECT_EQ(removed.failure().path, home.path("item/b/foreign/file"));
    });
    EXPECT_EQ(home.names("item"), (QList<QByteArray>{"b", "c"}));
    EXPECT_EQ(home.contents("item/b/foreign/file"), "contents");
}

TEST_P(TreeRemovalTest, StaysOutOfWhatIsMountedInsideAndDeletesTheRest)
{
    QUILLMERE_NEED(whyNoMountNamespace());
    home.addFile("item/a/file");
    home.addFile("item/z/file");
    home.addFile("bound/kept");
    home.addFolder("item/m/memory");
    home.addFolder("item/n/bound");
    home.addFile("item/o/file");
    inMountNamespace([&] {
        ASSERT_TRUE(mountTmpfs(home.path("item/m/memory"), "size=1m"));
        home.addFile("item/m/memory/kept");
        ASSERT_EQ(::mount(home.path("bound").bytes().constData(), home.path("item/n/bound").bytes().constData(),
                          nullptr, MS_BIND, nullptr),
                  0);
        ASSERT_EQ(::mount(home.path("bound/kept").bytes().constData(), home.path("item/o/file").bytes().constData(),
                          nullptr, MS_BIND, nullptr),
                  0);

        const auto removed = remove(home.path("item"));

        ASSERT_FALSE(removed);
        EXPECT_EQ(removed.failure().kind, Failure::Kind::Busy);
        EXPECT_EQ(removed.failure().path, home.path("item/m/memory"));
        EXPECT_TRUE(home.exists("item/m/memory/kept"));
        EXPECT_TRUE(home.exists("bound/kept"));
        EXPECT_EQ(home.names("item"), (QList<QByteArray>{"m", "n", "o"}));
    });
}

TEST_P(TreeRemovalTest, DeletesOnlyWhatItIsAllowedTo)
{
    home.addFile("item/goes/file");
    home.addFile("item/stays/file", "longer contents");
    const auto place = ItemPlace::open(home.path("item"), LinksAbove::Refuse);
    const auto item = openAt(place.value().folder.number(), place.value().name, O_PATH | O_NOFOLLOW);
    RemovalRecord record;

    TreeRemoval(GetParam()).remove(place.value(), item, record, [](const struct stat &status) {
        return status.st_size < 10;
    });

    ASSERT_TRUE(record.failure());
    EXPECT_EQ(record.failure()->kind, Failure::Kind::Busy);
    EXPECT_EQ(record.failure()->path, home.path("item/stays/file"));
    EXPECT_EQ(home.names("item"), QList<QByteArray>{"stays"});
    EXPECT_EQ(record.removed(), 2);
}

TEST_P(TreeRemovalTest, EmptiesOnlyTheFolderThatWasLookedAt)
{
    home.addFile("item/file");
    home.addFile("other/kept");
    const auto place = ItemPlace::open(home.path("item"), LinksAbove::Refuse);
    const auto item = openAt(place.value().folder.number(), place.value().name, O_PATH | O_NOFOLLOW);
    ASSERT_EQ(::renameat2(AT_FDCWD, home.path("item").bytes().constData(), AT_FDCWD,
                          home.path("other").bytes().constData(), RENAME_EXCHANGE),
              0);
    RemovalRecord record;

    TreeRemoval(GetParam()).remove(place.value(), item, record);

    EXPECT_TRUE(record.failure());
    EXPECT_EQ(home.names("item"), QList<QByteArray>{"kept"});
}

TEST_P(TreeRemovalTest, RemovesATreeThatSomebodyKeepsWritingTo)
{
    addTree("item", 2);
    std::atomic<bool> stop = false;
    std::jthread writer([&] {
        // A few late files, as a program writes them that is just ending.
        for (int file = 0; file < 20 && !stop; ++file) {
            writeFile(home.path("item/folder3/late" + QByteArray::number(file)), "x");
            std::this_thread::yield();
        }
    });

    const auto removed = remove(home.path("item"));
    stop = true;
    writer.join();

    // Either the folder was gone before the last late file, or what is left is named; never a crash, never silence.
    EXPECT_EQ(removed.isOk(), !home.exists("item"));
}

TEST_P(TreeRemovalTest, LetsTwoDeleteOneTreeAtOnce)
{
    const std::array<TemporaryHome, 2> unrelated;
    for (int round = 0; round < 20; ++round) {
        addTree("item", 2);
        std::latch start(2);
        std::array<Result<void>, 2> answers;
        {
            const auto run = [&](size_t who) {
                start.arrive_and_wait();
                answers[who] = LinuxFileManager(unrelated[who].environment()).removeItem(home.path("item"));
            };
            const std::jthread first(run, 0);
            const std::jthread second(run, 1);
        }
        ASSERT_FALSE(home.exists("item"));
        ASSERT_NE(answers[0].isOk(), answers[1].isOk());
        const auto &refused = answers[0] ? answers[1] : answers[0];
        ASSERT_EQ(refused.failure().kind, Failure::Kind::NotFound) << qPrintable(refused.failure().detail);
    }
}
