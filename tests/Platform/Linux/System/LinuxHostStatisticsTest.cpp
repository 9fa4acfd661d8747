#include "Platform/Linux/System/LinuxHostStatistics.h"

#include "Platform/Linux/ChildProcess.h"
#include "Services/SystemMetricsSampler.h"

#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <cstdlib>
#include <memory>
#include <vector>

#include <arpa/inet.h>
#include <sched.h>
#include <sys/mman.h>
#include <unistd.h>

using namespace Quillmere;

namespace {

QByteArray contentsOf(const char *path)
{
    QFile file(QString::fromUtf8(path));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// Busy and all ticks since the machine's start, by the first line of /proc/stat.
std::pair<double, double> ticksByHand()
{
    const QByteArray line = contentsOf("/proc/stat").split('\n').first().simplified();
    double all = 0;
    double idle = 0;
    const QList<QByteArray> fields = line.split(' ');
    for (int column = 1; column <= 8; ++column) {
        all += fields.at(column).toDouble();
        if (column == 4 || column == 5)
            idle += fields.at(column).toDouble();
    }
    return {all - idle, all};
}

double usageBetween(const std::pair<double, double> &before, const std::pair<double, double> &now)
{
    return (now.first - before.first) / (now.second - before.second) * 100;
}

void writeProc(const QTemporaryDir &proc, const char *name, const QByteArray &text)
{
    QFile file(proc.filePath(QString::fromUtf8(name)));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(text);
}

/// Sends datagrams of @p bytes in all to @p address, which need not be listening.
void send(const char *address, qsizetype bytes)
{
    constexpr qsizetype sizeOfEach = 1000;
    const FileDescriptor socket(::socket(AF_INET, SOCK_DGRAM, 0));
    sockaddr_in target = {};
    target.sin_family = AF_INET;
    target.sin_port = htons(9);
    ::inet_pton(AF_INET, address, &target.sin_addr);
    const QByteArray block(sizeOfEach, 'x');
    for (qsizetype sent = 0; sent < bytes; sent += sizeOfEach)
        ::sendto(socket.number(), block.constData(), sizeOfEach, 0, reinterpret_cast<sockaddr *>(&target),
                 sizeof target);
}

quint64 sentBy(const LinuxHostStatistics &statistics)
{
    quint64 sum = 0;
    for (const InterfaceCounters &each : statistics.interfaces().valueOr({}))
        sum += each.isUp && !each.isLoopback ? each.sent : 0;
    return sum;
}

/// What a child does in a network of its own. Nothing leaves it: both ends of the pair are in there.
std::string trafficInOwnNetwork()
{
    if (::unshare(CLONE_NEWNET) != 0)
        return "no network namespace";
    const LinuxHostStatistics statistics;
    if (std::system("ip link set lo up && ip link add name here type veth peer name there && ip link set here up"
                    " && ip link set there up && ip address add 192.0.2.1/24 dev here"
                    " && ip neigh add 192.0.2.2 lladdr 02:00:00:00:00:01 dev here")
        != 0)
        return "no pair of interfaces";

    constexpr qsizetype amount = 1'000'000;
    const quint64 before = sentBy(statistics);
    send("127.0.0.1", amount);
    const quint64 afterLoopback = sentBy(statistics);
    send("192.0.2.2", amount);
    const quint64 afterPair = sentBy(statistics);
    std::ignore = std::system("ip link set here down");
    const quint64 afterDown = sentBy(statistics);

    // The kernel speaks a little itself on an interface that has just come up.
    constexpr quint64 chatter = amount / 10;
    if (afterLoopback - before > chatter)
        return "the loopback counts: " + std::to_string(afterLoopback - before);
    if (afterPair - afterLoopback < amount)
        return "the pair does not count: " + std::to_string(afterPair - afterLoopback);
    return afterDown > chatter ? "an interface that is down counts: " + std::to_string(afterDown) : "";
}

} // namespace

TEST(LinuxHostStatisticsTest, AgreesWithTheKernelsOwnFiguresAboutABusySecond)
{
    SystemMetricsSampler sampler(std::make_shared<LinuxHostStatistics>());
    EXPECT_EQ(sampler.cpuUsage(), 0);
    const auto before = ticksByHand();
    const pid_t spinner = startChild([] {
        for (;;)
            std::ignore = ::getppid();
    });
    ::usleep(1'000'000);
    killChild(spinner);

    const double usage = sampler.cpuUsage();

    // The two readings are not of the same instant.
    EXPECT_NEAR(usage, usageBetween(before, ticksByHand()), 5);
    EXPECT_GT(usage, 0);
}

TEST(LinuxHostStatisticsTest, SeesMemoryThatAProgramTakes)
{
    constexpr size_t size = 256 << 20;
    constexpr int mostBlocks = 6;
    const SystemMetricsSampler sampler(std::make_shared<LinuxHostStatistics>());
    const quint64 before = sampler.memoryUsage().usedBytes;
    std::vector<void *> blocks;

    // Each processor keeps a stock of pages that another program has just given back and that still count as used:
    // a first block may come out of it.
    bool isSeen = false;
    while (!isSeen && blocks.size() < mostBlocks) {
        blocks.push_back(
            ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_POPULATE, -1, 0));
        ASSERT_NE(blocks.back(), MAP_FAILED);
        isSeen = sampler.memoryUsage().usedBytes > before + size * 3 / 4;
    }
    for (void *block : blocks)
        ::munmap(block, size);

    EXPECT_TRUE(isSeen);
}

TEST(LinuxHostStatisticsTest, TellsTheMachinesPhysicalMemory)
{
    const LinuxHostStatistics statistics;
    const QByteArray total = contentsOf("/proc/meminfo").split('\n').first().simplified().split(' ').at(1);

    EXPECT_EQ(statistics.physicalMemory(), total.toULongLong() * 1024);
    EXPECT_EQ(statistics.pageSize(), static_cast<quint64>(::getpagesize()));
}

TEST(LinuxHostStatisticsTest, ReadsTheFolderItIsGiven)
{
    const QTemporaryDir proc;
    writeProc(proc, "stat", "cpu 1 2 3 4\n");
    writeProc(proc, "meminfo", "MemTotal: 4096 kB\nMemFree: 1024 kB\n");
    const LinuxHostStatistics statistics(FilePath(proc.path().toUtf8()));

    EXPECT_EQ(statistics.cpuLoad().value(), (CpuTicks{1, 3, 4, 2}));
    EXPECT_EQ(statistics.virtualMemory().value(), (VmStatistics{1024 * 1024 / statistics.pageSize(), 0, 0}));
    EXPECT_EQ(statistics.physicalMemory(), 4096u * 1024);
}

TEST(LinuxHostStatisticsTest, FailsWhereThereIsNothingToReadAndWhereItMakesNoSense)
{
    const QTemporaryDir proc;
    const LinuxHostStatistics statistics(FilePath(proc.path().toUtf8()));

    EXPECT_EQ(statistics.cpuLoad().failure().kind, Failure::Kind::NotFound);
    EXPECT_EQ(statistics.virtualMemory().failure().kind, Failure::Kind::NotFound);
    EXPECT_EQ(statistics.interfaces().failure().kind, Failure::Kind::NotFound);
    EXPECT_EQ(statistics.physicalMemory(), 0u);

    writeProc(proc, "stat", "nonsense\n");
    writeProc(proc, "meminfo", "nonsense\n");
    EXPECT_EQ(statistics.cpuLoad().failure().kind, Failure::Kind::Malformed);
    EXPECT_EQ(statistics.virtualMemory().failure().kind, Failure::Kind::Malformed);
    EXPECT_EQ(statistics.physicalMemory(), 0u);
}

TEST(LinuxHostStatisticsTest, CountsTrafficOfAnInterfaceThatIsUpAndNoneOfTheLoopback)
{
    inChild([] { EXPECT_EQ(trafficInOwnNetwork(), ""); });
}
