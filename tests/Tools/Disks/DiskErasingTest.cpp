#include "Tools/Disks/DisksFixture.h"

#include <random>

using namespace Quillmere;
using testing::Contains;
using testing::ElementsAre;

namespace {

using DiskErasingTest = DisksTest;

} // namespace

TEST_F(DiskErasingTest, NamesVolumesSoThatTheirDiskStandsBeforeTheS)
{
    EXPECT_EQ(catalogue().volume(second)->name.text(), u"disk508s2");
    EXPECT_EQ(catalogue().wholeDisk(second)->name.text(), u"disk508");
    EXPECT_EQ(catalogue().volume(stick)->name.text(), u"disk508s0");
    EXPECT_EQ(catalogue().named({508, 2})->number, second);
    EXPECT_EQ(catalogue().named({508, std::nullopt})->number, stick);
    EXPECT_EQ(catalogue().named({508, 3}), std::nullopt);
}

TEST_F(DiskErasingTest, NamesWhatIsUnlockedAfterTheDiskThatItLiesOn)
{
    const quint64 opened = machine.addStacked("dm-0", "253:0", 1 << 20, 12, {"sdb2"});

    EXPECT_EQ(catalogue().volume(opened)->name.ofWholeDisk(), (DiskName{508, std::nullopt}));
    EXPECT_EQ(catalogue().volume(opened)->name.text(), u"disk508s4072");
}

TEST_F(DiskErasingTest, KnowsAVolumeByWhatItIsUnderWhateverNumberItWasShown)
{
    QStringList words = volumeWords(second);
    words[0] = u"disk508s256"_qs;

    EXPECT_EQ(erase(words), ToolEnd());

    EXPECT_EQ(describe("sdb2"), u"ext4 CleanDisk");
    EXPECT_THAT(said, Contains(u"Formatted disk508s256 with ext4. Its name is CleanDisk."_qs));
}

TEST_F(DiskErasingTest, GivesNoNamesWhereTheKernelDoesNotNumberItsDisks)
{
    machine.exchange("sdb", 0);

    EXPECT_EQ(catalogue().volume(first), std::nullopt);
    EXPECT_EQ(catalogue().wholeDisk(first), std::nullopt);
}

TEST_F(DiskErasingTest, FormatsTheVolumeAndNoOtherAndGivesItToTheUser)
{
    EXPECT_EQ(erase(volumeWords(second)), ToolEnd());

    EXPECT_EQ(describe("sdb2"), u"ext4 CleanDisk");
    EXPECT_EQ(describe("sdb1"), u"vfat First /media/first");
    EXPECT_THAT(given, ElementsAre("sdb2 ext4"));
    EXPECT_THAT(said,
                ElementsAre(u"Unmounted /media/second."_qs, u"Unmounted /srv/second."_qs,
                            u"Formatted disk508s2 with ext4. Its name is CleanDisk."_qs));
}

TEST_F(DiskErasingTest, OverwritesTheWholeDiskAndReadsItBack)
{
    EXPECT_EQ(overwrite(diskWords(first)), ToolEnd());

    EXPECT_EQ(devices->devices["sdb"].contents, QByteArray(stickSize, '\0'));
    EXPECT_EQ(devices->devices["sdb"].partitionSearches, 1);
    EXPECT_EQ(describe("sdb1"), u"vfat First");
    EXPECT_THAT(said, Contains(u"50 % of disk508"_qs));
    EXPECT_EQ(said.last(),
              u"Overwrote all 33554432 bytes of disk508 with zeros, once. Read back 256 places: all zero.");
}

TEST_F(DiskErasingTest, LocksWhatWasUnlocked)
{
    addVolume("sdc", machine.addDisk("sdc", "8:32", stickSize, 9), u"stick"_qs, u"crypto_LUKS"_qs, u"dm-1"_qs, {});
    const quint64 opened = machine.addStacked("dm-1", "253:1", 1 << 20, 13, {"sdc"});
    addVolume("dm-1", opened, {}, u"ext4"_qs, u"Secret"_qs, {u"/media/secret"_qs});
    devices->devices["sdc"] = {{*deviceNumberOf("8:32"), stickSize, 9, false}, QByteArray(stickSize, 'x')};

    EXPECT_EQ(overwrite(diskWords(opened)), ToolEnd());

    EXPECT_THAT(said, Contains(u"Unmounted /media/secret."_qs));
    EXPECT_EQ(DiskService(bus.connection()).objects().value().block(*deviceNumberOf("8:32"))->unlocked, QString());
}

TEST_F(DiskErasingTest, RefusesWhatTheSystemNeedsWhateverWasConfirmed)
{
    const QString reason = u"disk504%1 lies on a disk that the running system needs, and is never erased here."_qs;
    EXPECT_EQ(erase(volumeWords(*deviceNumberOf("8:1"))), (ToolEnd{1, reason.arg(u"s1")}));
    EXPECT_EQ(overwrite(diskWords(system)), (ToolEnd{1, reason.arg(QString())}));
    systemDevices = QSet<quint64>{stick};
    EXPECT_EQ(erase(volumeWords(first)).status, 1);
    systemDevices = Failure{Failure::Kind::NotSupported, FilePath("/home"), {}};
    EXPECT_EQ(erase(volumeWords(first)),
              (ToolEnd{1, u"It cannot be told which disks the running system needs (/home). Nothing was erased."_qs}));
    EXPECT_EQ(overwrite(diskWords(first)).status, 1);
    expectNothingDone();
    EXPECT_TRUE(said.isEmpty());
}

TEST_F(DiskErasingTest, RefusesWhatStandsOnADiskOfTheSystem)
{
    const quint64 data = machine.addStacked("dm-0", "253:0", 1 << 20, 12, {"sda1"});
    addVolume("dm-0", data, {}, u"ext4"_qs, u"Data"_qs, {});
    devices->devices["dm-0"] = {{data, 1 << 20, 12, false}, {}};

    EXPECT_THAT(erase(volumeWords(data)).message.toStdString(), testing::HasSubstr("running system needs"));
    expectNothingDone();
}

TEST_F(DiskErasingTest, RefusesADiskThatWasExchangedAHundredTimes)
{
    int refusals = 0;
    for (quint64 sequence = 8; sequence < 108; ++sequence) {
        const QStringList volume = volumeWords(first);
        const QStringList disk = diskWords(first);
        machine.exchange("sdb", sequence);
        for (const char *node : {"sdb", "sdb1"})
            devices->devices[node].facts.sequence = sequence;
        refusals += erase(volume).status + overwrite(disk).status;
    }

    EXPECT_EQ(refusals, 200);
    expectNothingDone();
}

TEST_F(DiskErasingTest, BelievesTheOpenDeviceAndNoTable)
{
    const QStringList volume = volumeWords(first);
    const QStringList disk = diskWords(first);
    const QHash<QByteArray, PretendDevice> before = devices->devices;
    const QList<std::function<void(DeviceFacts &)>> changes
        = {[](DeviceFacts &facts) { ++facts.sequence; }, [](DeviceFacts &facts) { facts.sequence = 0; },
           [](DeviceFacts &facts) { facts.size -= 512; }, [](DeviceFacts &facts) { ++facts.number; },
           [](DeviceFacts &facts) { facts.isReadOnly = true; }};
    for (const auto &change : changes) {
        devices->devices = before;
        change(devices->devices["sdb"].facts);
        change(devices->devices["sdb1"].facts);
        EXPECT_EQ(erase(volume).status, 1);
        EXPECT_EQ(overwrite(disk).status, 1);
    }
    expectNothingDone();
}

TEST_F(DiskErasingTest, StopsWhenTheDiskIsExchangedWhileItIsOverwritten)
{
    devices->onWrite = [this] {
        PretendDevice &device = devices->devices["sdb"];
        device.facts.sequence = device.writes == 2 ? 99 : 7;
    };

    const ToolEnd end = overwrite(diskWords(first));

    EXPECT_EQ(end,
              (ToolEnd{1,
                       u"disk508 was not overwritten: It was exchanged meanwhile. Only the first 12582912 of 33554432 "
                       "bytes were."_qs}));
    EXPECT_EQ(devices->devices["sdb"].writes, 3);
}

TEST_F(DiskErasingTest, SaysHowFarItCameWhereADiskFails)
{
    devices->devices["sdb"].failsFrom = 9 << 20;

    EXPECT_EQ(overwrite(diskWords(first)),
              (ToolEnd{1,
                       u"disk508 was not overwritten: Input/output error. Only the first 8388608 of 33554432 bytes "
                       "were."_qs}));
    EXPECT_THAT(
        said,
        testing::Not(Contains(testing::Truly([](const QString &line) { return line.startsWith(u"Overwrote"_qs); }))));
}

TEST_F(DiskErasingTest, DoesNotSayThatItIsOverwrittenWhereSomethingIsReadBack)
{
    devices->devices["sdb"].forgets = stickSize - 1;

    const ToolEnd end = overwrite(diskWords(first));

    EXPECT_EQ(end.status, 1);
    EXPECT_TRUE(end.message.startsWith(u"disk508 was overwritten, but what is read back at byte "_qs));
}

TEST_F(DiskErasingTest, LeavesAloneWhatSomebodyElseUses)
{
    devices->devices["sdb"].isClaimed = true;
    devices->devices["sdb1"].isClaimed = true;
    EXPECT_THAT(erase(volumeWords(first)).message.toStdString(), testing::HasSubstr("is in use"));
    EXPECT_THAT(overwrite(diskWords(first)).message.toStdString(), testing::HasSubstr("is in use"));
    expectNothingDone();
}

TEST_F(DiskErasingTest, LeavesAloneWhatCannotBeUnmounted)
{
    const quint64 busy = addPartition("sdb", 3, "8:19", u"stick"_qs, u"ext4"_qs, u"Busy"_qs, {u"/busy/volume"_qs});

    EXPECT_EQ(erase(volumeWords(busy)),
              (ToolEnd{ToolEnd::notBegun, u"disk508s3 is in use (target is busy). Nothing was erased."_qs}));
    EXPECT_EQ(overwrite(diskWords(busy)).status, ToolEnd::notBegun);
    expectNothingDone();
}

TEST_F(DiskErasingTest, SaysWhatMayBeLostWhereFormattingFails)
{
    const quint64 worn = addPartition("sdb", 3, "8:19", u"stick"_qs, u"ext4"_qs, u"Worn"_qs, {});
    const quint64 stubborn = addPartition("sdb", 4, "8:20", u"stick"_qs, u"ext4"_qs, u"Stubborn"_qs, {});

    EXPECT_EQ(erase(volumeWords(worn)),
              (ToolEnd{1, u"disk508s3 could not be formatted: mkfs ended with 1. What was on it may be lost."_qs}));
    EXPECT_THAT(erase(volumeWords(stubborn)).message.toStdString(),
                testing::HasSubstr("What is on it now is something else than was ordered."));
    expectNothingDone();
}

TEST_F(DiskErasingTest, NamesTheProgramThatIsMissing)
{
    EXPECT_EQ(erase(volumeWords(first), u"NTFS"_qs),
              (ToolEnd{1, u"ntfs cannot be made here: mkntfs is missing. Nothing was erased."_qs}));
    expectNothingDone();
}

TEST_F(DiskErasingTest, AVolumeIsNoWholeDiskAndAWholeDiskNoVolume)
{
    EXPECT_EQ(overwrite(volumeWords(first)).status, ToolEnd::wrongUse);
    EXPECT_EQ(erase(diskWords(first)).status, ToolEnd::wrongUse);
    QStringList lie = volumeWords(first);
    lie[0] = u"disk508"_qs;
    EXPECT_EQ(overwrite(lie).status, 1);
    expectNothingDone();
}

TEST_F(DiskErasingTest, AThousandMadeUpOrdersOfEachVerbDoNothing)
{
    std::mt19937 chance(20261121);
    const auto upTo = [&](qsizetype count) { return static_cast<qsizetype>(chance() % static_cast<unsigned>(count)); };
    const QStringList odd
        = {QString(),           u"0"_qs,     u"-1"_qs,         u"8:0"_qs,     u"../sda"_qs,   u"sda"_qs,   u"sda1"_qs,
           u"/dev/sda"_qs,      u"disk4"_qs, u"disk4s1"_qs,    u"disk8s9"_qs, u"$(id)"_qs,    u"a b\n"_qs, u"%1"_qs,
           QString(5000, u'9'), u"/etc"_qs,  u"/home/user"_qs, u"--help"_qs,  u"disk8s1 "_qs, u"\u202e"_qs};
    for (const QString &verb : {u"erase-volume"_qs, u"secure-erase"_qs, u"mount-ntfs"_qs}) {
        QStringList whole = verb == u"secure-erase" ? diskWords(first) : volumeWords(first);
        const QStringList lead
            = verb == u"erase-volume" ? QStringList{u"JHFS+"_qs, u"CleanDisk"_qs} : QStringList{u"/media/user/x"_qs};
        whole = (verb == u"secure-erase" ? QStringList() : lead) + whole;
        for (int order = 0; order < 1000; ++order) {
            QStringList words = whole;
            // Behind the words that may be anything.
            const qsizetype from = whole.size() - 8;
            words[from + upTo(8)] = odd.at(upTo(odd.size()));
            if (upTo(4) == 0)
                words.removeAt(upTo(words.size()));
            if (upTo(8) == 0)
                words.append(odd.at(upTo(odd.size())));
            if (words == whole)
                continue;
            const int status = carryOut(verb, words).status;
            EXPECT_TRUE(status == 1 || status == ToolEnd::wrongUse) << qPrintable(words.join(u'|'));
        }
    }
    expectNothingDone();
    EXPECT_THAT(devices->opened, testing::Not(Contains("../sda")));
}

TEST_F(DiskErasingTest, WithoutUdisksNothingIsDone)
{
    const QStringList volume = volumeWords(first);
    const QStringList disk = diskWords(first);
    udisks.reset();

    for (const ToolEnd &end : {erase(volume), overwrite(disk)}) {
        EXPECT_EQ(end.status, 1);
        EXPECT_TRUE(end.message.startsWith(u"udisks2 does not answer: "_qs)) << qPrintable(end.message);
    }
    EXPECT_EQ(writes(), 0);
}
