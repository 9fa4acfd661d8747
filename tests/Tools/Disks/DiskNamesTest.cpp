#include "Tools/Disks/DiskRequests.h"
#include "Tools/Disks/VolumeFormat.h"

#include <QDir>
#include <QFile>
#include <QSet>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace Quillmere;

namespace {

const DiskIdentity stick{{8, 1}, "sdb1", 2065, 8 << 20, 1 << 20, 7, u"0951 «1666»"_qs, u"1234-ABCD"_qs};

class DiskRequestsTest : public testing::Test
{
protected:
    AdministratorRequest erasing(const QString &name) const
    {
        return {u"erase-volume"_qs, {u"JHFS+"_qs, u"CleanDisk"_qs, name}};
    }
    QString folder() const { return runtime.path() + u"/quillmere/disks"_qs; }

    QTemporaryDir runtime;
    ListedDisks listed = ListedDisks(RuntimeFolder(FilePath(QFile::encodeName(runtime.path()))));
};

} // namespace

TEST(DiskNameTest, IsWhatItSaysAndNothingElse)
{
    for (const QString &text : {u"disk2"_qs, u"disk12s0"_qs, u"disk12s3"_qs, u"disk123456789012345678s1"_qs})
        EXPECT_EQ(DiskName::parse(text)->text(), text);
    for (const QString &text :
         {u""_qs, u"disk"_qs, u"disk0"_qs, u"disk02"_qs, u"disk2s"_qs, u"disk2s01"_qs, u"disk2s1s1"_qs, u" disk2"_qs,
          u"disk2\n"_qs, u"Disk2"_qs, u"disk-2"_qs, u"disk٢"_qs, u"/dev/disk2"_qs, u"disk1234567890123456789"_qs})
        EXPECT_EQ(DiskName::parse(text), std::nullopt) << qPrintable(text);
}

TEST(DiskIdentityTest, GoesThroughArgumentsUnchangedAndNothingElseIsOne)
{
    EXPECT_EQ(DiskIdentity::parse(stick.words()), stick);
    const QList<std::pair<int, QString>> spoilt
        = {{0, u"disk"_qs}, {1, u"../sdb"_qs}, {1, u"sdb/1"_qs},        {1, QString()},   {1, u".."_qs},
           {2, u"8-1"_qs},  {3, u"+1"_qs},     {3, u"-1"_qs},           {3, u" 1"_qs},    {4, u"1e3"_qs},
           {5, u"07"_qs},   {6, u"a\nb"_qs},   {6, QString(300, u'a')}, {7, u"\u0007"_qs}};
    for (const auto &[at, word] : spoilt) {
        QStringList words = stick.words();
        words[at] = word;
        EXPECT_EQ(DiskIdentity::parse(words), std::nullopt) << at << qPrintable(word);
    }
    EXPECT_EQ(DiskIdentity::parse(stick.words() + QStringList{QString()}), std::nullopt);
    EXPECT_EQ(DiskIdentity::parse(stick.words().mid(1)), std::nullopt);
}

TEST_F(DiskRequestsTest, BindsAnOrderToWhatWasListed)
{
    ASSERT_TRUE(listed.keep(stick));

    const Result<AdministratorRequest> whole = withIdentity(erasing(u"disk8s1"_qs), listed, {});

    ASSERT_TRUE(whole);
    EXPECT_EQ(whole.value().arguments, QStringList({u"JHFS+"_qs, u"CleanDisk"_qs}) + stick.words());
    const AdministratorRequest other{u"purge"_qs, {}};
    EXPECT_EQ(withIdentity(other, listed, {}).value(), other);
}

TEST_F(DiskRequestsTest, RefusesTheSystemDiskAndWhatIsNoDisk)
{
    ASSERT_TRUE(listed.keep(stick));
    for (const QString &name : {u"disk1s1s1"_qs, u"disk1s1"_qs, u"disk1"_qs}) {
        const Result<AdministratorRequest> answer = withIdentity(erasing(name), listed, {});
        ASSERT_FALSE(answer);
        EXPECT_EQ(answer.failure().detail,
                  name + u" is the disk that the running system needs, and is never erased here."_qs);
    }
    for (const QString &name : {u"Macintosh HD"_qs, QString(), u"disk8"_qs, u"../disk8s1"_qs, u"disk8s2"_qs})
        EXPECT_FALSE(withIdentity(erasing(name), listed, {})) << qPrintable(name);
    EXPECT_FALSE(withIdentity({u"secure-erase"_qs, {u"disk8s1"_qs}}, listed, {}));
    EXPECT_FALSE(withIdentity({u"secure-erase"_qs, {}}, listed, {}));
}

TEST_F(DiskRequestsTest, TakesNoFolderForADisk)
{
    ASSERT_TRUE(listed.keep(stick));
    DiskIdentity whole = stick;
    whole.name.volume.reset();
    ASSERT_TRUE(listed.keep(whole));
    const AdministratorRequest overwriting{u"secure-erase"_qs, {u"disk8"_qs}};
    const auto mountedAt = [](const char *place) {
        MountEntry mount;
        mount.location = FilePath(place);
        return QList<MountEntry>{MountEntry(), mount};
    };
    ASSERT_TRUE(withIdentity(erasing(u"disk8s1"_qs), listed, mountedAt("/media/anna/disk8")));
    ASSERT_TRUE(withIdentity(overwriting, listed, mountedAt("/media/anna/disk88s1")));

    const auto answer = withIdentity(erasing(u"disk8s1"_qs), listed, mountedAt("/media/anna/disk8s1"));
    ASSERT_FALSE(answer);
    EXPECT_EQ(answer.failure().detail,
              u"A volume is mounted in a folder that has the name of the disk disk8s1. Nothing was done.");
    // What is cut off a name to find its disk is cut off a folder's too.
    for (const char *place :
         {"/media/anna/disk8", "/media/anna/disk8s1", "/disk8s2", "/media/dis77sk8", "/mnt/diss0k8"})
        EXPECT_FALSE(withIdentity(overwriting, listed, mountedAt(place))) << place;
}

TEST_F(DiskRequestsTest, BeginsTheNumbersOfASessionWhereNobodyKnows)
{
    const quint64 begin = listed.numbersBegin();
    EXPECT_GE(begin, DiskName::leastBegin);
    EXPECT_LE(begin, DiskName::mostBegin);
    EXPECT_EQ(listed.numbersBegin(), begin);
    EXPECT_EQ(ListedDisks(RuntimeFolder(FilePath(QFile::encodeName(runtime.path())))).numbersBegin(), begin);

    QSet<quint64> begins;
    for (int session = 0; session < 20; ++session) {
        const QTemporaryDir other;
        begins.insert(ListedDisks(RuntimeFolder(FilePath(QFile::encodeName(other.path())))).numbersBegin());
    }
    // One chance in 10 to the 75th is all that twenty equal ones have.
    EXPECT_GT(begins.size(), 1);
    EXPECT_EQ(ListedDisks(RuntimeFolder(FilePath("/nowhere/at/all"))).numbersBegin(), DiskName::leastBegin);
}

TEST_F(DiskRequestsTest, BeginsNoNumbersWhereSomethingElseStandsInTheirPlace)
{
    const QString place = folder() + u"/numbers-begin"_qs;
    for (const QString &target : {u"1"_qs, u"99"_qs, u"9101"_qs, u"many"_qs, QString(400, u'9')}) {
        ASSERT_TRUE(QDir().mkpath(folder()));
        QFile::remove(place);
        ASSERT_TRUE(QFile::link(target, place));
        EXPECT_EQ(listed.numbersBegin(), DiskName::leastBegin) << qPrintable(target);
    }
}

TEST_F(DiskRequestsTest, KeepsNothingWhereOthersMayWrite)
{
    ASSERT_TRUE(listed.keep(stick));
    const auto everybody = QFile::Permissions(0x7777);
    for (const QString &open : {runtime.path(), folder()}) {
        const QFile::Permissions before = QFile::permissions(open);
        ASSERT_TRUE(QFile::setPermissions(open, everybody));
        EXPECT_FALSE(listed.keep(stick));
        EXPECT_FALSE(listed.find(stick.name));
        ASSERT_TRUE(QFile::setPermissions(open, before));
    }
    EXPECT_TRUE(listed.find(stick.name));
    for (const char *nowhere : {"", "relative", "/nowhere/at/all"})
        EXPECT_FALSE(ListedDisks(RuntimeFolder(FilePath(QByteArray(nowhere)))).keep(stick)) << nowhere;
}

TEST_F(DiskRequestsTest, AnotherNeverComesToANameThatWasShown)
{
    DiskIdentity another = stick;
    another.uuid = u"another"_qs;
    ASSERT_TRUE(listed.keep(stick));

    EXPECT_EQ(listed.keep(another).failure().kind, Failure::Kind::AlreadyExists);
    EXPECT_TRUE(listed.keep(stick));
    EXPECT_EQ(listed.find(stick.name).value(), stick);
    DiskIdentity whole = stick;
    whole.name.volume.reset();
    ASSERT_TRUE(listed.keep(whole));
    whole.size *= 2;
    EXPECT_EQ(listed.keep(whole).failure().kind, Failure::Kind::AlreadyExists);
    // Nothing is left of what could not be kept.
    EXPECT_EQ(QDir(folder()).entryList(QDir::Files), QStringList({u"disk8"_qs, u"disk8s1"_qs}));
}

TEST_F(DiskRequestsTest, AVolumeThatComesToThePlaceOfAnotherHasTheNextNumber)
{
    QList<DiskIdentity> volumes(4, stick);
    for (int at = 0; at < 4; ++at) {
        volumes[at].uuid = QString::number(at);
        volumes[at] = listed.keepVolume(volumes.at(at)).value();
    }

    QStringList names;
    for (const DiskIdentity &volume : volumes) {
        names.append(volume.name.text());
        EXPECT_EQ(listed.find(volume.name).value(), volume);
        DiskIdentity again = volume;
        again.name = stick.name;
        EXPECT_EQ(listed.keepVolume(again).value(), volume);
    }
    EXPECT_EQ(names, QStringList({u"disk8s1"_qs, u"disk8s256"_qs, u"disk8s257"_qs, u"disk8s258"_qs}));
}

TEST_F(DiskRequestsTest, ANumberUnderWhichSomethingElseIsWrittenIsPassedOver)
{
    ASSERT_TRUE(listed.keep(stick));
    for (const char16_t *name : {u"/disk8s256", u"/disk8s257"}) {
        QFile file(folder() + QString::fromUtf16(name));
        ASSERT_TRUE(file.open(QFile::WriteOnly));
        file.write("nothing that is known");
    }
    DiskIdentity another = stick;
    another.uuid = u"another"_qs;

    EXPECT_EQ(listed.keepVolume(another).value().name.text(), u"disk8s258");
}

TEST_F(DiskRequestsTest, BelievesNoFileThatSaysSomethingElse)
{
    ASSERT_TRUE(listed.keep(stick));
    ASSERT_TRUE(QFile::copy(folder() + u"/disk8s1"_qs, folder() + u"/disk9s1"_qs));

    EXPECT_EQ(listed.find({9, 1}).failure().kind, Failure::Kind::Malformed);
    EXPECT_EQ(listed.find({10, 1}).failure().kind, Failure::Kind::NotFound);
}

TEST(DiskCommandsTest, AreKnownWordByWord)
{
    const auto request = [](const QString &shellText) { return diskRequestFor(parseShellText(shellText).value()); };
    EXPECT_EQ(request(u"'/usr/sbin/diskutil' 'eraseVolume' 'JHFS+' 'CleanDisk' 'disk8s1'"_qs),
              (AdministratorRequest{u"erase-volume"_qs, {u"JHFS+"_qs, u"CleanDisk"_qs, u"disk8s1"_qs}}));
    EXPECT_EQ(request(u"'/usr/sbin/diskutil' 'secureErase' '0' '/dev/disk8'"_qs),
              (AdministratorRequest{u"secure-erase"_qs, {u"disk8"_qs}}));
    const QString mount = u"mkdir -p \"%1\" && %2 /dev/disk8s1 \"%3\" -o local,allow_other"_qs;
    const QString driver = u"/usr/local/bin/ntfs-3g"_qs;
    EXPECT_EQ(request(mount.arg(u"/media/a b"_qs, driver, u"/media/a b"_qs)),
              (AdministratorRequest{u"mount-ntfs"_qs, {u"/media/a b"_qs, u"disk8s1"_qs}}));
    EXPECT_EQ(request(u"'/usr/sbin/diskutil' 'eraseVolume' 'APFS' 'CleanDisk' 'disk8s1'"_qs)->verb, u"erase-volume");
    for (const QString &text :
         {mount.arg(u"/media/a"_qs, driver, u"/etc"_qs), mount.arg(u"/media/a"_qs, u"/tmp/ntfs-3g"_qs, u"/media/a"_qs),
          u"mkdir -p /media/a"_qs, u"/usr/sbin/diskutil eraseDisk JHFS+ CleanDisk disk8"_qs,
          u"/usr/sbin/diskutil secureErase 1 /dev/disk8"_qs, u"/usr/sbin/diskutil secureErase 0 disk8"_qs,
          u"/usr/sbin/diskutil eraseVolume JHFS+ CleanDisk disk8s1 && purge"_qs, u"/usr/sbin/diskutil list"_qs,
          u"/usr/sbin/diskutil eraseVolume ExFAT CleanDisk disk8s1"_qs,
          u"/usr/sbin/diskutil eraseVolume JHFS+ Mine disk8s1"_qs, u"/usr/sbin/diskutil eraseVolume '' '' disk8s1"_qs,
          u"diskutil eraseVolume JHFS+ CleanDisk disk8s1"_qs})
        EXPECT_EQ(request(text), std::nullopt) << qPrintable(text);
}

TEST(VolumeFormatTest, KnowsWhatALabelMayBe)
{
    EXPECT_EQ(fileSystemFor(u"APFS"_qs), u"ext4"_qs);
    EXPECT_EQ(fileSystemFor(u"JHFS+"_qs), u"ext4"_qs);
    EXPECT_EQ(fileSystemFor(u"apfs"_qs), std::nullopt);
    for (const QString &type : {u"ext4"_qs, u"vfat"_qs, u"exfat"_qs, u"ntfs"_qs}) {
        EXPECT_EQ(whyNotLabel(type, u"CleanDisk"_qs), QString());
        for (const QString &label : {QString(), u" "_qs, QString(255, u'a'), u"a\nb"_qs})
            EXPECT_NE(whyNotLabel(type, label), QString()) << qPrintable(type + label);
    }
    EXPECT_EQ(whyNotLabel(u"ext4"_qs, QString(16, u'a')), QString());
    EXPECT_NE(whyNotLabel(u"ext4"_qs, QString(17, u'a')), QString());
    EXPECT_NE(whyNotLabel(u"ext4"_qs, QString(9, u'ж')), QString());
    EXPECT_EQ(whyNotLabel(u"vfat"_qs, QString(11, u'a')), QString());
    EXPECT_NE(whyNotLabel(u"vfat"_qs, QString(12, u'a')), QString());
    EXPECT_NE(whyNotLabel(u"vfat"_qs, u"a/b"_qs), QString());
    EXPECT_EQ(whyNotLabel(u"ntfs"_qs, QString(32, u'ж')), QString());
}
