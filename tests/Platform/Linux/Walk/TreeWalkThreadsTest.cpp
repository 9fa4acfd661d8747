#include "Platform/Linux/ChildProcess.h"
#include "Platform/Linux/Files/FolderOpening.h"
#include "Platform/Linux/RestrictedThread.h"
#include "Platform/Linux/TemporaryTree.h"
#include "Platform/Linux/Walk/FileFinder.h"
#include "Platform/Linux/Walk/ScarceWalk.h"
#include "Platform/Linux/Walk/TreeMeasurer.h"
#include "Platform/Linux/Walk/TreeWalk.h"
#include "Platform/Linux/Walk/Walk.h"
#include "Platform/Linux/Walk/WalkWorker.h"

#include <QDir>
#include <QFile>
#include <QProcess>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <semaphore>
#include <thread>

using namespace Quillmere;

namespace {

/// A tree that is well worth sharing: 1,111 folders, 3,000 files.
class TreeWalkThreadsTest : public testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        // With the first thread the thread sanitizer makes one of its own, which is not to be counted.
        std::thread([] {}).join();
        s_tree = std::make_unique<TemporaryTree>();
        s_tree->addBush("bush", 3, 10, 3);
        s_size = sizeByFind(s_tree->path());
    }
    static void TearDownTestSuite() { s_tree.reset(); }

    static inline std::unique_ptr<TemporaryTree> s_tree;
    static inline TreeSize s_size;
};

QStringList threadsOfThisProcess()
{
    return QDir(u"/proc/self/task"_qs).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
}

QByteArray readThreadFile(const QString &thread, const QString &name)
{
    QFile file(u"/proc/self/task/%1/%2"_qs.arg(thread, name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// How often the thread was given a core, which does not happen to a sleeping one.
QByteArray timesRun(const QString &thread)
{
    return readThreadFile(thread, u"schedstat"_qs).split(' ').value(2);
}

bool restsForAWhile(const QString &thread)
{
    const QByteArray before = timesRun(thread);
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    return !before.isEmpty() && timesRun(thread) == before;
}

/// Counts how often it is brought entries, which it leaves.
class CountingReader final : public FolderReader
{
public:
    explicit CountingReader(int &count)
        : m_count(count)
    {
    }
    bool takeIn(const DirectoryBuffer &, const WalkFolder &, NameList &) override
    {
        ++m_count;
        return true;
    }

private:
    int &m_count;
};

/// Says when it is brought entries, and then waits until it may go on.
class WaitingReader final : public FolderReader
{
public:
    WaitingReader(std::counting_semaphore<> &arrivals, const std::atomic<bool> &mayGoOn)
        : m_arrivals(arrivals)
        , m_mayGoOn(mayGoOn)
    {
    }
    bool takeIn(const DirectoryBuffer &, const WalkFolder &, NameList &) override
    {
        m_arrivals.release();
        m_mayGoOn.wait(false);
        return true;
    }

private:
    std::counting_semaphore<> &m_arrivals;
    const std::atomic<bool> &m_mayGoOn;
};

bool comesToRest(const QString &thread)
{
    for (int attempt = 0; attempt < 100; ++attempt) {
        if (restsForAWhile(thread))
            return true;
    }
    return false;
}

/// The threads that this process has and had not before.
QStringList threadsSince(const QStringList &before)
{
    QStringList threads = threadsOfThisProcess();
    for (const QString &thread : before)
        threads.removeAll(thread);
    return threads;
}

void expectRestBelowTheProgram(const QStringList &helpers)
{
    const int own = ::getpriority(PRIO_PROCESS, 0);
    EXPECT_FALSE(helpers.isEmpty());
    for (const QString &helper : helpers) {
        EXPECT_TRUE(comesToRest(helper));
        EXPECT_EQ(::getpriority(PRIO_PROCESS, helper.toUInt()), std::min(own + 5, 19));
    }
}

} // namespace

TEST_F(TreeWalkThreadsTest, FindsTheSameWithAnyNumberOfThreads)
{
    ASSERT_EQ(s_size.fileCount, 3000);
    for (const int helpers : {0, 1, 2, 3, 7, 15, 40}) {
        WalkPool pool(helpers, helpers);
        for (int round = 0; round < 5; ++round)
            EXPECT_EQ(measureTree(s_tree->path(), {}, pool).valueOr({}), s_size) << helpers << " helpers";
    }
}

TEST_F(TreeWalkThreadsTest, FindsTheSameInManyWalksAtOnce)
{
    WalkPool pool(3, 3);
    std::atomic<int> right = 0;
    std::vector<std::jthread> callers;
    for (int caller = 0; caller < 6; ++caller) {
        callers.emplace_back([&] {
            for (int round = 0; round < 5; ++round)
                right += measureTree(s_tree->path(), {}, pool).valueOr({}) == s_size ? 1 : 0;
        });
    }
    callers.clear();

    EXPECT_EQ(right, 30);
}

TEST_F(TreeWalkThreadsTest, WakesNobodyForASmallFolder)
{
    WalkPool pool(3, 3);
    const QStringList before = threadsOfThisProcess();

    EXPECT_EQ(measureTree(s_tree->path("bush/branch1/branch1"), {}, pool).valueOr({}).fileCount, 30);
    EXPECT_EQ(threadsSince(before), QStringList());

    EXPECT_EQ(measureTree(s_tree->path(), {}, pool).valueOr({}), s_size);
    EXPECT_FALSE(threadsSince(before).isEmpty());
    EXPECT_LE(threadsSince(before).size(), 3);
}

TEST_F(TreeWalkThreadsTest, LetsItsThreadsSleepBelowTheRestOfTheProgramWhenNobodyWalks)
{
    WalkPool pool(3, 3);
    const QStringList before = threadsOfThisProcess();
    EXPECT_EQ(measureTree(s_tree->path(), {}, pool).valueOr({}), s_size);

    expectRestBelowTheProgram(threadsSince(before));
}

TEST_F(TreeWalkThreadsTest, WorksEquallyFarBelowThePriorityOfTheProgramWhoeverMadeTheHelper)
{
    WalkPool pool(2, 2);
    const QStringList before = threadsOfThisProcess();
    // Whoever gives a job away while nobody waits makes a helper, which begins with the niceness of its maker.
    std::thread([&] {
        ::setpriority(PRIO_PROCESS, 0, std::min(::getpriority(PRIO_PROCESS, 0) + 3, 19));
        EXPECT_EQ(measureTree(s_tree->path(), {}, pool).valueOr({}), s_size);
    }).join();

    expectRestBelowTheProgram(threadsSince(before));
}

TEST_F(TreeWalkThreadsTest, HasAnotherThreadTakeWhatWasKeptReadyOnceTheDiskIsSlow)
{
    const Cancellation never;
    std::counting_semaphore<> arrivals(0);
    std::atomic<bool> mayGoOn = false;
    Walk walk(never, [&] { return std::make_unique<WaitingReader>(arrivals, mayGoOn); });
    WalkPool pool(1, 2);
    pool.share(walk);
    for (const char *folder : {"bush/branch1", "bush/branch2"})
        pool.give({&walk,
                   {std::make_shared<const WalkFolder>(openFolderForReading(s_tree->path(folder), FinalLink::Refuse)),
                    {},
                    true}});

    EXPECT_TRUE(arrivals.try_acquire_for(std::chrono::minutes(1)));
    pool.noteWaitForDisk(walk);
    EXPECT_TRUE(arrivals.try_acquire_for(std::chrono::minutes(1))) << "The second job waits for the first.";

    mayGoOn = true;
    mayGoOn.notify_all();
    WalkWorker owner(walk, pool);
    while (std::optional<WalkJob> job = pool.next(walk))
        owner.run(std::move(*job));
}

TEST_F(TreeWalkThreadsTest, AnswersCancelledWhenAskedToStopBeforeItStarts)
{
    std::stop_source source;
    source.request_stop();

    for (const Cancellation &cancellation : {Cancellation(source.get_token()), Cancellation({}, source.get_token())}) {
        for (const char *folder : {"bush", "bush/branch1/branch1/branch1"}) {
            const Result<TreeSize> result = measureTree(s_tree->path(folder), cancellation);
            ASSERT_FALSE(result);
            EXPECT_EQ(result.failure().kind, Failure::Kind::Cancelled);
            EXPECT_EQ(result.failure().path, s_tree->path(folder));
        }
    }
}

TEST_F(TreeWalkThreadsTest, TakesInNoEntryOnceAskedToStop)
{
    std::stop_source source;
    const Cancellation cancellation(source.get_token());
    TreeMeasurer measurer(cancellation);
    FileSearch search;
    SearchCounter counter(search);
    FileFinder finder(search, counter, cancellation);
    const WalkFolder folder{openFolderForReading(s_tree->path("bush/branch1/branch1/branch1"), FinalLink::Refuse),
                            "branch"};
    DirectoryBuffer entries;
    ASSERT_TRUE(entries.read(folder.number()));
    source.request_stop();

    NameList subfolders;
    measurer.takeIn(entries, folder, subfolders);
    finder.takeIn(entries, folder, subfolders);

    EXPECT_EQ(measurer.size(), TreeSize());
    EXPECT_EQ(finder.size(), TreeSize());
}

TEST_F(TreeWalkThreadsTest, EntersNoFolderThatItIsGivenOnceAskedToStop)
{
    std::stop_source source;
    source.request_stop();
    const Cancellation cancellation(source.get_token());
    int brought = 0;
    Walk walk(cancellation, [&] { return std::make_unique<CountingReader>(brought); });
    WalkPool alone(0, 0);
    WalkWorker worker(walk, alone);
    NameList given;
    given.append("branch1");
    given.append("branch2");

    worker.run({&walk,
                {std::make_shared<const WalkFolder>(openFolderForReading(s_tree->path("bush"), FinalLink::Refuse)),
                 std::move(given), false}});

    EXPECT_EQ(brought, 0);
    EXPECT_TRUE(worker.takeFindings().isPart);
}

TEST_F(TreeWalkThreadsTest, StopsOnTheWay)
{
    WalkPool alone(0, 0);
    bool hasStoppedOnTheWay = false;
    for (int attempt = 0; attempt < 1000 && !hasStoppedOnTheWay; ++attempt) {
        std::stop_source source;
        const Cancellation cancellation({}, source.get_token());
        Walk walk(cancellation, [&] { return std::make_unique<TreeMeasurer>(cancellation); });
        WalkWorker worker(walk, alone);
        auto root = std::make_shared<const WalkFolder>(openFolderForReading(s_tree->path(), FinalLink::Refuse));
        std::atomic<bool> isWalking = false;
        std::jthread stopper([&] {
            while (!isWalking)
                std::this_thread::yield();
            source.request_stop();
        });
        isWalking = true;
        worker.run({&walk, {std::move(root), {}, true}});
        const qint64 fileCount = worker.takeFindings().size.fileCount;
        hasStoppedOnTheWay = fileCount > 0 && fileCount < s_size.fileCount;
    }

    EXPECT_TRUE(hasStoppedOnTheWay);
}

TEST_F(TreeWalkThreadsTest, AnswersCancelledWhenStoppedWithAllThreadsAtWork)
{
    WalkPool pool(3, 3);
    for (int round = 0; round < 20; ++round) {
        std::stop_source source;
        std::atomic<int> walks = 0;
        std::atomic<bool> isCancelled = false;
        std::jthread caller([&] {
            for (;; ++walks) {
                const Result<TreeSize> result = measureTree(s_tree->path(), Cancellation(source.get_token()), pool);
                if (!result) {
                    isCancelled = result.failure().kind == Failure::Kind::Cancelled;
                    return;
                }
            }
        });
        while (walks < 1 + round % 3)
            std::this_thread::yield();
        source.request_stop();
        caller.join();
        EXPECT_TRUE(isCancelled);
    }
    EXPECT_EQ(measureTree(s_tree->path(), {}, pool).valueOr({}), s_size) << "The pool is as good as before.";
}

TEST_F(TreeWalkThreadsTest, MeasuresTheSameWithTwoFoldersOpenAtATime)
{
    TemporaryTree chain;
    chain.addChain("n", 300, 10);
    chain.addBush("n/n/n/n/bush", 2, 3, 2);

    const Cancellation never;
    const Walk walk(never, [&] { return std::make_unique<TreeMeasurer>(never); });
    EXPECT_EQ(ScarceWalk::of(s_tree->path(), {}, walk).size, s_size);
    EXPECT_EQ(ScarceWalk::of(chain.path(), {}, walk).size, sizeByFind(chain.path()));
    EXPECT_EQ(ScarceWalk::of(chain.path("n/file"), {}, walk).size, TreeSize());
    const WalkFolder root{openFolderForReading(s_tree->path(), FinalLink::Refuse), {}};
    EXPECT_EQ(ScarceWalk::below(root, "bush", walk).size, s_size);
    EXPECT_EQ(ScarceWalk::below(root, "missing", walk).size, TreeSize());
}

TEST_F(TreeWalkThreadsTest, KeepsTheProgramsOwnDescriptorsOpenWhenThereIsNoMemoryForOthers)
{
    inChild([] {
        const FileDescriptor own(::open("/dev/null", O_RDONLY | O_CLOEXEC));
        const WalkFolder root{openFolderForReading(s_tree->path(), FinalLink::Refuse), {}};
        ASSERT_LT(own.number(), root.number());
        std::stop_source stop;
        const Cancellation cancellation(stop.get_token());
        const Walk walk(cancellation, [&] { return std::make_unique<TreeMeasurer>(cancellation); });
        bool isPart = false;

        const bool isPermitted = withoutOwnDescriptors([&] {
            std::jthread stopping([&] {
                std::this_thread::sleep_for(std::chrono::milliseconds(20));
                stop.request_stop();
            });
            isPart = ScarceWalk::below(root, "bush", walk).isPart;
        });

        ASSERT_TRUE(isPermitted);
        EXPECT_NE(::fcntl(own.number(), F_GETFD), -1);
        EXPECT_TRUE(isPart);
    });
}

TEST_F(TreeWalkThreadsTest, LosesNothingWhenDescriptorsAreFew)
{
    TemporaryTree comb;
    QByteArray folder = "tooth";
    for (int level = 0; level < 40; ++level, folder += "/tooth") {
        comb.addFile(folder + "/before/file", 10);
        comb.addFile(folder + "/behind/file", 10);
    }
    for (const FilePath &root : {comb.path(), s_tree->path()}) {
        for (const rlim_t descriptors : {5, 6, 8, 16}) {
            QProcess child;
            child.setChildProcessModifier([descriptors] {
                const rlimit limit{descriptors, descriptors};
                ::setrlimit(RLIMIT_NOFILE, &limit);
            });
            child.start(QStringLiteral(WALK_CHILD), {QFile::decodeName(root.bytes())});
            ASSERT_TRUE(child.waitForFinished(-1));

            const TreeSize size = sizeByFind(root);
            const QByteArray expected
                = QByteArray::number(size.fileCount) + " files, " + QByteArray::number(size.allocatedSize) + " bytes\n";
            EXPECT_EQ(child.readAllStandardOutput(), expected) << descriptors << " descriptors";
        }
    }
}

TEST_F(TreeWalkThreadsTest, TakesMoreDescriptorsWhereTheSystemGrantsThem)
{
    TemporaryTree tree;
    tree.addFile("folder/file", 10);
    rlimit before = {};
    ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &before), 0);
    const rlimit few{3, before.rlim_max};
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &few), 0);

    const TreeSize size = measureTree(tree.path(), {}).valueOr({});
    rlimit after = {};
    ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &after), 0);
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &before), 0);

    EXPECT_EQ(size.fileCount, 1);
    EXPECT_EQ(after.rlim_cur, before.rlim_max);
}

TEST_F(TreeWalkThreadsTest, SurvivesEntriesThatComeAndGoMeanwhile)
{
    TemporaryTree tree;
    tree.addBush("stays", 2, 12, 2);
    const TreeSize staying = sizeByFind(tree.path());
    std::jthread disturber([&](const std::stop_token &stop) {
        const QByteArray folder = tree.path("stays/goes").bytes();
        const QByteArray file = tree.path("stays/branch1/goes").bytes();
        while (!stop.stop_requested()) {
            ::mkdir(folder.constData(), 0755);
            ::close(::open(file.constData(), O_WRONLY | O_CREAT | O_CLOEXEC, 0644));
            ::rmdir(folder.constData());
            ::unlink(file.constData());
        }
    });

    for (int round = 0; round < 50; ++round) {
        const TreeSize size = measureTree(tree.path(), {}).valueOr({});
        EXPECT_GE(size.fileCount, staying.fileCount);
        EXPECT_LE(size.fileCount, staying.fileCount + 1);
        EXPECT_EQ(size.allocatedSize, staying.allocatedSize);
    }
}
