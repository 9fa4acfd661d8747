#include "Tools/Disks/Diskutil.h"
#include "Platform/Linux/Disks/MountedVolumes.h"
#include "Tools/Disks/DiskRequests.h"
#include "Tools/Disks/DisksFixture.h"

#include <QFile>

using namespace Quillmere;
using testing::Contains;
using testing::ElementsAre;
using testing::Not;

namespace {

class DiskutilTest : public DisksTest
{
protected:
    void SetUp() override
    {
        DisksTest::SetUp();
        mount("/media/first", "8:17");
        mount("/media/second", "8:18");
    }

    void mount(const char *place, const QByteArray &number)
    {
        table.append({FilePath(place), "ext4", number, FilePath("/")});
    }
    ToolEnd diskutil(const QString &verb, const QString &what)
    {
        said.clear();
        const Diskutil command(
            DiskService(bus.connection()), machine.devices(), listed, [this] { return table; },
            [this](const QString &line) { said.append(line); });
        return command.run({verb, what});
    }
    /// What `info` says that the volume at @p place is called.
    QString nameOf(const QString &place)
    {
        EXPECT_EQ(diskutil(u"info"_qs, place), ToolEnd());
        return said.value(0).section(u':', 1).trimmed();
    }
    /// What the first volume of the stick is called while it is what it was at first.
    [[nodiscard]] QString firstName() const { return DiskName{listed.numbersBegin() + 7, 1}.text(); }
    /// An order to erase, as it comes to the administrator.
    ToolEnd eraseBy(const QString &name)
    {
        const auto whole = withIdentity({u"erase-volume"_qs, {u"JHFS+"_qs, u"CleanDisk"_qs, name}}, listed, {});
        return whole ? carryOut(whole.value().verb, whole.value().arguments) : ToolEnd{-1, whole.failure().detail};
    }
    void formatElsewhere(const char *name, const QString &uuid) const
    {
        mock(u"Reformat"_qs, {QString::fromLatin1(name), uuid});
    }

    QTemporaryDir runtime;
    ListedDisks listed = ListedDisks(RuntimeFolder(FilePath(QFile::encodeName(runtime.path()))));
    QList<MountEntry> table;
};

} // namespace

TEST_F(DiskutilTest, TellsOfAVolumeUnderItsDisksNumberAndItsOwn)
{
    EXPECT_EQ(nameOf(u"/media/first"_qs), firstName());

    EXPECT_THAT(
        said,
        ElementsAre(u"   Device Identifier:        "_qs + firstName(), u"   Device Node:              /dev/sdb1"_qs,
                    u"   Part of Whole:            "_qs + firstName().chopped(2),
                    u"   File System Personality:  MS-DOS"_qs, u"   Disk Size:                8388608 Bytes"_qs));
}

TEST_F(DiskutilTest, WhatWasFormattedSinceItWasShownIsToldOfUnderAnotherName)
{
    ASSERT_EQ(nameOf(u"/media/first"_qs), firstName());
    formatElsewhere("sdb1", u"second"_qs);

    const QString later = nameOf(u"/media/first"_qs);

    EXPECT_EQ(later, firstName().chopped(1) + u"256"_qs);
    EXPECT_EQ(nameOf(u"/media/first"_qs), later);
    EXPECT_EQ(nameOf(later), later);
    formatElsewhere("sdb1", u"third"_qs);
    EXPECT_EQ(nameOf(u"/media/first"_qs), firstName().chopped(1) + u"257"_qs);
    // Its neighbour stays what it was.
    EXPECT_EQ(nameOf(u"/media/second"_qs), firstName().chopped(1) + u'2');
}

TEST_F(DiskutilTest, ARowThatWasShownNeverPassesForWhatIsThereLater)
{
    const QString row = nameOf(u"/media/first"_qs);
    formatElsewhere("sdb1", u"second"_qs);
    // Whoever asks meanwhile, such as a list that is shown elsewhere.
    const QString later = nameOf(u"/media/first"_qs);

    EXPECT_EQ(eraseBy(row),
              (ToolEnd{1,
                       row
                           + u" is no longer the disk that was chosen: it was changed or exchanged since then. Nothing "
                             "was erased."_qs}));
    EXPECT_EQ(diskutil(u"info"_qs, row).message, u"diskutil: There is no disk %1."_qs.arg(row));
    EXPECT_EQ(diskutil(u"unmount"_qs, row).status, 1);
    expectNothingDone();

    EXPECT_EQ(eraseBy(later), ToolEnd());
    EXPECT_EQ(describe("sdb1"), u"ext4 CleanDisk");
    EXPECT_EQ(eraseBy(later).status, 1);
}

TEST_F(DiskutilTest, OrdersByTheNewNameMeanThatVolume)
{
    static_cast<void>(nameOf(u"/media/first"_qs));
    formatElsewhere("sdb1", u"second"_qs);
    const QString later = nameOf(u"/media/first"_qs);

    EXPECT_EQ(diskutil(u"unmount"_qs, later), ToolEnd());
    EXPECT_EQ(describe("sdb1"), u"vfat First");
    EXPECT_EQ(diskutil(u"mount"_qs, later), ToolEnd());
    EXPECT_EQ(describe("sdb1"), u"vfat First /media/new");
}

TEST_F(DiskutilTest, SaysOfWhatCannotBeKeptThatItCannotBeErased)
{
    const QString notErasable = u"   Erasable:                 No"_qs;
    static_cast<void>(nameOf(u"/media/first"_qs));
    EXPECT_THAT(said, Not(Contains(notErasable)));
    ASSERT_TRUE(QFile::setPermissions(runtime.path(), QFile::Permissions(0x7777)));

    EXPECT_EQ(diskutil(u"info"_qs, u"/media/second"_qs), ToolEnd());
    EXPECT_THAT(said, Contains(notErasable));
}

TEST_F(DiskutilTest, ADiskThatIsAnotherUnderItsNumberCannotBeErasedAsAWhole)
{
    static_cast<void>(nameOf(u"/media/first"_qs));
    const DiskName whole{listed.numbersBegin() + 7, std::nullopt};
    const Result<DiskIdentity> before = listed.find(whole);
    machine.resize("sdb", stickSize / 2);

    static_cast<void>(nameOf(u"/media/first"_qs));

    EXPECT_THAT(said, Contains(u"   Erasable:                 No"_qs));
    EXPECT_EQ(listed.find(whole).value(), before.value());
    EXPECT_EQ(overwrite(before.value().words()).status, 1);
    expectNothingDone();
}

TEST_F(DiskutilTest, ListsAVolumeWhoseLabelIs255BytesLong)
{
    const QString label = QString(127, u'ж') + u'x';
    ASSERT_EQ(label.toUtf8().size(), 255);
    addPartition("sdb", 3, "8:19", u"stick"_qs, u"ext4"_qs, label, {});
    mount("/media/long", "8:19");

    EXPECT_EQ(nameOf(u"/media/long"_qs), firstName().chopped(1) + u'3');
    EXPECT_TRUE(said.filter(u"ж"_qs).isEmpty());
    SystemPlaces system;
    system.mounts = table;
    system.program = FilePath("/media/second/program");
    const MountedVolumes volumes([&] { return system; }, machine.devices());
    const DiskService service(bus.connection());
    EXPECT_THAT(volumes.places(service), Contains(FilePath("/media/long")));
    EXPECT_EQ(volumes.values(FilePath("/media/long"), service).value().name, label);
}
