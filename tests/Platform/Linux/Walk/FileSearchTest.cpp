#include "Platform/Linux/Files/FolderOpening.h"
#include "Platform/Linux/Need.h"
#include "Platform/Linux/TemporaryTree.h"
#include "Platform/Linux/Walk/TreeWalk.h"

#include <gmock/gmock.h>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <thread>

using namespace Quillmere;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

constexpr qint64 threshold = 65536;

FileSearch searchFor(qint64 bytes)
{
    FileSearch search;
    search.leastAllocatedSize = bytes;
    search.closedFolder = "Library";
    return search;
}

/// What is found below a folder of @p tree, named relative to the tree.
QList<QByteArray> found(const TemporaryTree &tree, const QByteArray &folder = {}, qint64 bytes = threshold)
{
    QList<QByteArray> names;
    for (const FoundFile &file :
         findFiles(tree.path(folder), searchFor(bytes), {}).valueOr({{FilePath("?"), 0, {}, {}}}))
        names.append(file.path.bytes().sliced(tree.path().bytes().size() + 1));
    return names;
}

struct Report
{
    qint64 number;
    QByteArray name;
};

/// The reports of a search below @p folder.
QList<Report> reportsOf(const FilePath &folder)
{
    QList<Report> reports;
    FileSearch search = searchFor(threshold);
    search.progress = [&](qint64 number, const QByteArray &name) { reports.append({number, name}); };
    WalkPool alone(0, 0);
    EXPECT_TRUE(findFiles(folder, search, {}, alone).isOk());
    return reports;
}

QList<qint64> numbersOf(const QList<Report> &reports)
{
    QList<qint64> numbers;
    for (const Report &report : reports)
        numbers.append(report.number);
    return numbers;
}

} // namespace

TEST(FileSearchTest, FindsWhatOccupiesAtLeastTheThresholdAndNothingSmaller)
{
    TemporaryTree tree;
    tree.allocate("exact", threshold);
    tree.allocate("folder/more", threshold + 4096);
    tree.allocate("less", threshold - 4096);

    EXPECT_THAT(found(tree), ElementsAre("exact", "folder/more"));
    EXPECT_THAT(found(tree, {}, threshold + 1), ElementsAre("folder/more"));
}

TEST(FileSearchTest, JudgesAFileByItsBlocksAndNotByItsLength)
{
    TemporaryTree tree;
    tree.addFile("sparse", 1);
    ASSERT_EQ(::truncate(tree.path("sparse").bytes().constData(), qint64(1) << 40), 0);
    tree.allocate("long on the disk alone", threshold);
    ASSERT_EQ(::truncate(tree.path("long on the disk alone").bytes().constData(), 10), 0);
    tree.allocate("reserved", threshold, FALLOC_FL_KEEP_SIZE);

    EXPECT_THAT(found(tree), ElementsAre("reserved"));
}

TEST(FileSearchTest, TellsWhatEachFileOccupiesAndWhenItWasReadAndChanged)
{
    TemporaryTree tree;
    tree.allocate("file", threshold);
    const timespec times[] = {{1'600'000'000, 250'000'000}, {1'500'000'000, 0}};
    ASSERT_EQ(::utimensat(AT_FDCWD, tree.path("file").bytes().constData(), times, 0), 0);

    const auto files = findFiles(tree.path(), searchFor(threshold), {}).valueOr({});

    const FoundFile expected{tree.path("file"), threshold, QDateTime::fromMSecsSinceEpoch(1'600'000'000'250, Qt::UTC),
                             QDateTime::fromMSecsSinceEpoch(1'500'000'000'000, Qt::UTC)};
    EXPECT_THAT(files, ElementsAre(expected));
}

TEST(FileSearchTest, OrdersPathsNameByNameWhateverTheDiskDoes)
{
    TemporaryTree tree;
    for (const char *name : {"b/z", "a.b/c", "a/b", "b!", "a/B", "a", "\xff", "b", "c/a", "a-/x"})
        tree.addFolder(QByteArray("in ") + name);
    for (const char *name : {"b/z/f", "a.b/c/f", "a/b/f", "b!/f", "a/B/f", "a/f", "\xff/f", "b/f", "c/a/f", "a-/x/f"})
        tree.allocate(QByteArray("in ") + name, threshold);

    EXPECT_THAT(found(tree),
                ElementsAre("in a/B/f", "in a/b/f", "in a/f", "in a-/x/f", "in a.b/c/f", "in b/f", "in b/z/f",
                            "in b!/f", "in c/a/f", "in \xff/f"));
}

TEST(FileSearchTest, PassesOverWhatIsHidden)
{
    TemporaryTree tree;
    tree.allocate(".hidden", threshold);
    tree.allocate(".folder/file", threshold);
    tree.allocate("..two", threshold);
    tree.allocate("seen.", threshold);
    tree.allocate("seen~", threshold);

    EXPECT_THAT(found(tree), ElementsAre("seen.", "seen~"));
    EXPECT_THAT(found(tree, ".folder"), ElementsAre(".folder/file")) << "The folder asked for may itself be hidden.";
}

TEST(FileSearchTest, LooksIntoNoPackage)
{
    TemporaryTree tree;
    for (const char *name : {"Tool.app", "Tool.APP", "Photos.photoslibrary", "x.Bundle", "Old.mpkg", "a.b.xcodeproj"})
        tree.allocate(QByteArray(name) + "/Contents/file", threshold);
    for (const char *name : {"app", ".app", "Tool.app.old", "Some.framework", "Tool.application", "folder.", "2.5"})
        tree.allocate(QByteArray("in/") + name + "/file", threshold);
    tree.allocate("plain file.app", threshold);

    EXPECT_THAT(found(tree),
                ElementsAre("in/2.5/file", "in/Some.framework/file", "in/Tool.app.old/file", "in/Tool.application/file",
                            "in/app/file", "in/folder./file", "plain file.app"));
    EXPECT_THAT(found(tree, "Tool.app"), ElementsAre("Tool.app/Contents/file"))
        << "The folder asked for may itself be a package.";
}

TEST(FileSearchTest, FindsNothingBelowAClosedFolder)
{
    TemporaryTree tree;
    tree.allocate("Library/file", threshold);
    tree.allocate("Library/deeper/file", threshold);
    tree.allocate("folder/Library/a/b/file", threshold);
    tree.allocate("library/file", threshold);
    tree.allocate("My Library/file", threshold);
    tree.allocate("Library 2/file", threshold);
    tree.allocate("other/Library", threshold);

    EXPECT_THAT(found(tree), ElementsAre("Library 2/file", "My Library/file", "library/file", "other/Library"));
    EXPECT_THAT(found(tree, "Library"), IsEmpty());
    EXPECT_THAT(found(tree, "Library/deeper"), IsEmpty());
}

TEST(FileSearchTest, FollowsNoLinks)
{
    TemporaryTree tree;
    tree.allocate("folder/file", threshold);
    tree.addLink("folder/up", "..");
    tree.addLink("folder/self", "self");
    tree.addLink("again", "folder");
    tree.addLink("file", "folder/file");
    tree.addLink("nowhere", "missing");

    EXPECT_THAT(found(tree), ElementsAre("folder/file"));
    EXPECT_THAT(found(tree, "again"), IsEmpty());
}

TEST(FileSearchTest, FindsAFileUnderEachOfItsNames)
{
    TemporaryTree tree;
    tree.allocate("one", threshold);
    ASSERT_EQ(::link(tree.path("one").bytes().constData(), tree.path("two").bytes().constData()), 0);

    EXPECT_THAT(found(tree), ElementsAre("one", "two"));
}

TEST(FileSearchTest, TakesNamesOfAnyBytes)
{
    TemporaryTree tree;
    const QByteArray longest(255, 'n');
    tree.allocate("\xff\xfe/not\x80utf8", threshold);
    tree.allocate("new\nline/a\nb", threshold);
    tree.allocate(longest + '/' + longest, threshold);

    EXPECT_THAT(found(tree), ElementsAre("new\nline/a\nb", longest + '/' + longest, "\xff\xfe/not\x80utf8"));
}

TEST(FileSearchTest, PassesOverOddEntriesWithoutTouchingThem)
{
    TemporaryTree tree;
    tree.allocate("file", threshold);
    ASSERT_EQ(::mkfifo(tree.path("fifo").bytes().constData(), 0600), 0);
    ASSERT_EQ(::mknod(tree.path("socket").bytes().constData(), S_IFSOCK | 0600, 0), 0);

    EXPECT_THAT(found(tree), ElementsAre("file"));
    EXPECT_THAT(found(tree, "fifo"), IsEmpty());
    EXPECT_THAT(found(tree, "file"), IsEmpty());
    EXPECT_THAT(found(tree, "missing"), IsEmpty());
}

TEST(FileSearchTest, ReachesTheEndOfAChainLongerThanAnyPath)
{
    TemporaryTree tree;
    tree.addChain("a folder with a name", 1000, 20'000);

    const auto files = findFiles(tree.path(), searchFor(20'000), {}).valueOr({});

    ASSERT_THAT(files, SizeIs(1000));
    EXPECT_EQ(files.at(999).path.lastPathComponent(), "file");
    EXPECT_EQ(files.at(0).path.bytes().size(), tree.path().bytes().size() + 1000 * 21 + 5) << "the deepest is first";
    EXPECT_EQ(files.at(999).path, tree.path("a folder with a name/file"));
}

TEST(FileSearchTest, FindsTheSameInTheSameOrderWithAnyNumberOfThreads)
{
    TemporaryTree tree;
    tree.addBush("bush", 3, 10, 3);
    WalkPool alone(0, 0);
    const auto expected = findFiles(tree.path(), searchFor(1), {}, alone).valueOr({});
    ASSERT_THAT(expected, SizeIs(3000));

    for (const int helpers : {1, 2, 7, 15}) {
        WalkPool pool(helpers, helpers);
        for (int round = 0; round < 5; ++round)
            EXPECT_EQ(findFiles(tree.path(), searchFor(1), {}, pool).valueOr({}), expected) << helpers << " helpers";
    }
}

TEST(FileSearchTest, LosesNothingWhenDescriptorsAreFew)
{
    TemporaryTree tree;
    tree.addBush("bush", 3, 6, 2);
    // Without threads, of which a forked child would have the locks alone.
    WalkPool alone(0, 0);
    const auto expected = findFiles(tree.path(), searchFor(1), {}, alone).valueOr({});
    rlimit before = {};
    ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &before), 0);
    const int next = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
    const rlimit few = {static_cast<rlim_t>(next), static_cast<rlim_t>(next)};
    ::close(next);

    const auto walkInAChild = [&] {
        ::setrlimit(RLIMIT_NOFILE, &few);
        const auto files = findFiles(tree.path(), searchFor(1), {}).valueOr({});
        ::_exit(!expected.isEmpty() && files == expected ? 0 : 1);
    };

    EXPECT_EXIT(walkInAChild(), testing::ExitedWithCode(0), "");
}

TEST(FileSearchTest, TellsOfEveryHundredthItemOfAnyKindThatIsNotHidden)
{
    TemporaryTree tree;
    for (int i = 0; i < 90; ++i)
        tree.addFile("file " + QByteArray::number(i));
    for (int i = 0; i < 60; ++i)
        tree.addFolder("folder " + QByteArray::number(i));
    for (int i = 0; i < 49; ++i)
        tree.addLink("link " + QByteArray::number(i), "missing");
    for (int i = 0; i < 300; ++i)
        tree.addFile(".hidden " + QByteArray::number(i));
    EXPECT_THAT(numbersOf(reportsOf(tree.path())), ElementsAre(100));

    tree.addFile("the two hundredth");

    const QList<Report> reports = reportsOf(tree.path());
    EXPECT_THAT(numbersOf(reports), ElementsAre(100, 200));
    for (const Report &report : reports)
        EXPECT_TRUE(tree.path(report.name).lastPathComponent() == report.name && !report.name.contains('/'));
}

TEST(FileSearchTest, CountsTheEntriesOfAClosedFolderButNothingOfAPackageOrDeeper)
{
    TemporaryTree tree;
    for (int i = 0; i < 150; ++i) {
        tree.addFile("Library/" + QByteArray::number(i));
        tree.addFile("Tool.app/" + QByteArray::number(i));
        tree.addFile("Library/deep/" + QByteArray::number(i));
    }

    // Two folders, and in the closed one 150 files and a folder.
    EXPECT_THAT(numbersOf(reportsOf(tree.path())), ElementsAre(100));
    tree.addBush("bush", 0, 0, 46);
    EXPECT_THAT(numbersOf(reportsOf(tree.path())), ElementsAre(100, 200));
}

TEST(FileSearchTest, TellsOfRisingNumbersEachOnceWithManyThreads)
{
    TemporaryTree tree;
    tree.addBush("bush", 3, 10, 3);
    WalkPool pool(7, 7);
    for (int round = 0; round < 5; ++round) {
        QList<qint64> numbers;
        FileSearch search = searchFor(threshold);
        search.itemsPerReport = 10;
        search.progress = [&](qint64 number, const QByteArray &) { numbers.append(number); };

        EXPECT_TRUE(findFiles(tree.path(), search, {}, pool).isOk());

        EXPECT_TRUE(std::ranges::is_sorted(numbers, std::less_equal<>()));
        EXPECT_TRUE(std::ranges::all_of(numbers, [](qint64 number) { return number % 10 == 0; }));
        EXPECT_LE(numbers.value(numbers.size() - 1), 4110);
    }
}

TEST(FileSearchTest, StopsAtTheNextItemAndAnswersCancelled)
{
    TemporaryTree tree;
    tree.addBush("bush", 3, 10, 3);
    for (const int helpers : {0, 3}) {
        WalkPool pool(helpers, helpers);
        std::stop_source source;
        std::atomic<qint64> last = 0;
        FileSearch search = searchFor(1);
        search.progress = [&](qint64 number, const QByteArray &) {
            last = number;
            source.request_stop();
        };

        const auto files = findFiles(tree.path(), search, Cancellation(source.get_token()), pool);

        ASSERT_FALSE(files.isOk());
        EXPECT_EQ(files.failure().kind, Failure::Kind::Cancelled);
        EXPECT_LT(last, 3000);
    }
}

TEST(FileSearchTest, PassesOverWhatVanishesOrChangesMeanwhile)
{
    TemporaryTree tree;
    tree.addBush("bush", 2, 20, 5);
    tree.allocate("always", threshold);
    std::atomic<bool> ended = false;
    std::jthread vandal([&] {
        for (int i = 0; !ended; i = (i + 1) % 20) {
            const FilePath branch = tree.path("bush/branch" + QByteArray::number(i));
            const QByteArray away = branch.bytes() + " away";
            ::rename(branch.bytes().constData(), away.constData());
            ::symlink("/", branch.bytes().constData());
            ::unlink(branch.bytes().constData());
            ::rename(away.constData(), branch.bytes().constData());
        }
    });

    for (int round = 0; round < 50; ++round)
        EXPECT_THAT(found(tree), ElementsAre("always"));
    ended = true;
}

TEST(FileSearchTest, PassesOverFoldersThatMayNotBeRead)
{
    TemporaryTree tree;
    tree.allocate("file", threshold);
    tree.allocate("locked/file", threshold);
    ASSERT_EQ(::chmod(tree.path("locked").bytes().constData(), 0), 0);
    const auto walkAsNobody = [&] {
        constexpr uid_t nobody = 65534;
        if (::chmod(tree.path().bytes().constData(), 0755) != 0 || ::setuid(nobody) != 0)
            ::_exit(2);
        ::_exit(found(tree) == QList<QByteArray>{"file"} ? 0 : 1);
    };
    QUILLMERE_NEED(::geteuid() != 0 ? QByteArray("Only root can become somebody who may not read.") : QByteArray());

    EXPECT_EXIT(walkAsNobody(), testing::ExitedWithCode(0), "");
    ::chmod(tree.path("locked").bytes().constData(), 0755);
}
