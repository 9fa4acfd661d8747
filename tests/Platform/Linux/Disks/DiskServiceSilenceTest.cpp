#include "Platform/Linux/Disks/DiskServiceSilence.h"
#include "Platform/Linux/Disks/MountedVolumes.h"
#include "Platform/Linux/Disks/PretendBlockDevices.h"
#include "Platform/Linux/PrivateBus.h"

#include <QCoreApplication>
#include <QDBusVirtualObject>
#include <QFile>

#include <gtest/gtest.h>

#include <ctime>

#include <fcntl.h>
#include <sys/stat.h>

using namespace Quillmere;

namespace {

/// A udisks2 that hears all questions and answers none.
class SilentDisks final : public QDBusVirtualObject
{
public:
    explicit SilentDisks(const PrivateBus &bus)
        : m_bus(QDBusConnection::connectToBus(bus.address(), name))
    {
        m_bus.registerVirtualObject(u"/org/freedesktop/UDisks2"_qs, this, QDBusConnection::SubPath);
        m_bus.registerService(u"org.freedesktop.UDisks2"_qs);
    }
    ~SilentDisks() override { QDBusConnection::disconnectFromBus(name); }
    Q_DISABLE_COPY_MOVE(SilentDisks)

    bool handleMessage(const QDBusMessage &, const QDBusConnection &) override
    {
        ++m_questions;
        return true;
    }
    [[nodiscard]] QString introspect(const QString &) const override { return {}; }
    [[nodiscard]] int questions() const
    {
        QCoreApplication::processEvents();
        return m_questions;
    }

private:
    static inline const QString name = u"silent disks"_qs;

    QDBusConnection m_bus;
    int m_questions = 0;
};

class DiskServiceSilenceTest : public testing::Test
{
protected:
    static constexpr int shortPatience = 50;

    void SetUp() override { ASSERT_TRUE(bus.isRunning()); }

    /// As another program of this user has it.
    [[nodiscard]] DiskService toShow() const
    {
        return DiskService::toShow(bus.connection(), shortPatience, DiskServiceSilence(RuntimeFolder(runtimeFolder())));
    }
    [[nodiscard]] FilePath runtimeFolder() const { return FilePath(QFile::encodeName(folder.path())); }
    /// As if what is remembered had been written down @p seconds ago.
    void age(int seconds) const
    {
        const timespec then = {::time(nullptr) - seconds, 0};
        const std::array times = {then, then};
        const QByteArray file = QFile::encodeName(folder.filePath(u"quillmere/udisks2-silent"_qs));
        ASSERT_EQ(::utimensat(AT_FDCWD, file.constData(), times.data(), 0), 0);
    }

    PrivateBus bus;
    QTemporaryDir folder;
};

} // namespace

TEST_F(DiskServiceSilenceTest, OneQuestionWaitsInVainForAllThatComeAtOnce)
{
    const SilentDisks disks(bus);

    const Result<DiskObjects> first = toShow().objects();
    const Result<DiskObjects> second = toShow().objects();

    for (const Result<DiskObjects> &answer : {first, second}) {
        ASSERT_FALSE(answer);
        EXPECT_EQ(answer.failure().kind, Failure::Kind::NotSupported);
        EXPECT_TRUE(answer.failure().detail.startsWith(u"udisks2 does not answer: "_qs));
    }
    EXPECT_FALSE(toShow().missingToFormat(u"ext4"_qs));
    EXPECT_EQ(disks.questions(), 1);
}

TEST_F(DiskServiceSilenceTest, IsAskedAgainOnceThatWasAWhileAgo)
{
    const SilentDisks disks(bus);
    EXPECT_FALSE(toShow().objects());

    age(DiskServiceSilence::seconds + 2);
    EXPECT_FALSE(toShow().objects());
    EXPECT_EQ(disks.questions(), 2);
    // By a clock that was put back since.
    age(-3600);
    EXPECT_FALSE(toShow().objects());
    EXPECT_EQ(disks.questions(), 3);
}

TEST_F(DiskServiceSilenceTest, WhoeverErasesAsksAllTheSame)
{
    const SilentDisks disks(bus);
    EXPECT_FALSE(toShow().objects());

    EXPECT_FALSE(DiskService(bus.connection(), shortPatience).objects());

    EXPECT_EQ(disks.questions(), 2);
}

TEST_F(DiskServiceSilenceTest, IsNotRememberedWhereOthersMayWriteOrThereIsNoFolder)
{
    const SilentDisks disks(bus);
    ASSERT_EQ(::chmod(runtimeFolder().bytes().constData(), 0777), 0);

    EXPECT_FALSE(toShow().objects());
    EXPECT_FALSE(toShow().objects());

    EXPECT_EQ(disks.questions(), 2);
    for (const char *nowhere : {"", "relative", "/nowhere/at/all"}) {
        const DiskServiceSilence silence{RuntimeFolder(FilePath(QByteArray(nowhere)))};
        silence.remember();
        EXPECT_FALSE(silence.isRecent()) << nowhere;
    }
}

TEST_F(DiskServiceSilenceTest, ThatItIsNotThereAtAllIsNoSilence)
{
    EXPECT_FALSE(toShow().objects());

    EXPECT_FALSE(DiskServiceSilence(RuntimeFolder(runtimeFolder())).isRecent());
}

TEST_F(DiskServiceSilenceTest, AListingOfManyVolumesWaitsOnceAndTakesTheKernelsWord)
{
    const SilentDisks disks(bus);
    PretendBlockDevices machine;
    SystemPlaces system;
    system.program = FilePath("/usr/bin/program");
    machine.addDisk("sda", "8:0", 1 << 30, 1);
    system.mounts.append({FilePath("/"), "ext4", "8:0", FilePath("/")});
    for (int stick = 1; stick <= 5; ++stick) {
        const QByteArray name = "sd" + QByteArray(1, static_cast<char>('a' + stick));
        const QByteArray number = "8:" + QByteArray::number(16 * stick);
        machine.addDisk(name, number, 1 << 30, static_cast<quint64>(stick + 1), "usb1");
        system.mounts.append({FilePath("/media/" + name), "vfat", number, FilePath("/")});
    }
    const MountedVolumes volumes([&] { return system; }, machine.devices());

    const QList<FilePath> places = volumes.places(toShow());

    EXPECT_EQ(places.size(), 6);
    for (const FilePath &place : places) {
        const Result<VolumeValues> values = volumes.values(place, toShow());
        ASSERT_TRUE(values);
        EXPECT_EQ(values.value().isInternal, place == FilePath("/"));
    }
    EXPECT_EQ(disks.questions(), 1);
    // A whole screen waits that long.
    EXPECT_LE(DiskService::patienceToShow, 2'000);
}
