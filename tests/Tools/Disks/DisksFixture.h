#pragma once

#include "Platform/Linux/Disks/PretendBlockDevices.h"
#include "Platform/Linux/MockedService.h"
#include "Tools/Disks/DiskAdministrator.h"
#include "Tools/Disks/DiskCatalogue.h"
#include "Tools/Disks/PretendDevices.h"

#include <gmock/gmock.h>

namespace Quillmere {

/// A machine with its system on sda, and a stick of two volumes on sdb.
class DisksTest : public testing::Test
{
protected:
    static constexpr qint64 stickSize = 32 << 20;
    static constexpr quint64 numbersBegin = 501; ///< So that the stick is disk508.

    void SetUp() override
    {
        ASSERT_TRUE(bus.isRunning());
        udisks = MockedService::udisks(bus, QStringLiteral(QUILLMERE_PRETEND_UDISKS));
        ASSERT_TRUE(udisks->isRunning());
        addDrive(u"disk"_qs, u"ata"_qs, u"INTERNAL"_qs, false);
        addDrive(u"stick"_qs, u"usb"_qs, u"0951-1666"_qs, true);
        system = addDisk("sda", "8:0", 3, u"disk"_qs);
        addPartition("sda", 1, "8:1", u"disk"_qs, u"ext4"_qs, u"System"_qs, {u"/"_qs});
        stick = addDisk("sdb", "8:16", 7, u"stick"_qs);
        first = addPartition("sdb", 1, "8:17", u"stick"_qs, u"vfat"_qs, u"First"_qs, {u"/media/first"_qs});
        second = addPartition("sdb", 2, "8:18", u"stick"_qs, u"ext4"_qs, u"Second"_qs,
                              {u"/media/second"_qs, u"/srv/second"_qs});
        systemDevices = QSet<quint64>{system, *deviceNumberOf("8:1")};
    }

    void addDrive(const QString &name, const QString &connection, const QString &serial, bool isRemovable)
    {
        mock(u"AddDrive"_qs, {name, connection, serial, isRemovable});
    }
    void addVolume(const QByteArray &name, quint64 number, const QString &drive, const QString &type,
                   const QString &label, const QStringList &places)
    {
        mock(u"AddVolume"_qs,
             {QString::fromLatin1(name), QVariant::fromValue(static_cast<qlonglong>(number)), drive, type, label,
              places});
    }
    quint64 addDisk(const QByteArray &name, const QByteArray &number, quint64 sequence, const QString &drive)
    {
        const quint64 added = machine.addDisk(name, number, stickSize, sequence);
        addVolume(name, added, drive, {}, {}, {});
        devices->devices[name] = {{added, stickSize, sequence, false}, QByteArray(stickSize, 'x')};
        return added;
    }
    quint64 addPartition(const QByteArray &disk, int partition, const QByteArray &number, const QString &drive,
                         const QString &type, const QString &label, const QStringList &places)
    {
        const QByteArray name = disk + QByteArray::number(partition);
        const quint64 added = machine.addPartition(disk, partition, number, 1 << 20, 8 << 20);
        addVolume(name, added, drive, type, label, places);
        const quint64 sequence = devices->devices[disk].facts.sequence;
        devices->devices[name] = {{added, 8 << 20, sequence, false}, QByteArray(8 << 20, 'x')};
        return added;
    }
    /// Type, label and mount points.
    QString describe(const char *name) const
    {
        return mock(u"Describe"_qs, {QString::fromLatin1(name)}).arguments().value(0).toString();
    }
    QDBusMessage mock(const QString &method, const QVariantList &arguments) const
    {
        const QDBusMessage answer = udisks->call(u"org.freedesktop.UDisks2.Mock"_qs, method, arguments);
        EXPECT_EQ(answer.type(), QDBusMessage::ReplyMessage) << qPrintable(answer.errorMessage());
        return answer;
    }

    DiskTools tools()
    {
        return {DiskService(bus.connection()),
                machine.devices(),
                devices,
                [this] { return systemDevices; },
                [this](const QByteArray &node, const QString &type) {
                    given.append(node + ' ' + type.toLatin1());
                    return Result<void>();
                },
                [this](const QString &line) { said.append(line); }};
    }
    DiskCatalogue catalogue() const
    {
        return {machine.devices(), DiskService(bus.connection()).objects().valueOr({}), numbersBegin};
    }
    QStringList volumeWords(quint64 number) const { return catalogue().volume(number).value().words(); }
    QStringList diskWords(quint64 number) const { return catalogue().wholeDisk(number).value().words(); }
    ToolEnd carryOut(const QString &verb, const QStringList &arguments)
    {
        return DiskAdministrator(tools()).carryOut(verb, arguments).value();
    }
    ToolEnd erase(const QStringList &words, const QString &format = u"JHFS+"_qs, const QString &label = u"CleanDisk"_qs)
    {
        return carryOut(u"erase-volume"_qs, QStringList{format, label} + words);
    }
    ToolEnd overwrite(const QStringList &words) { return carryOut(u"secure-erase"_qs, words); }
    int writes() const
    {
        int sum = 0;
        for (const PretendDevice &device : std::as_const(devices->devices))
            sum += device.writes;
        return sum;
    }
    /// Not one volume, and not a byte of a device.
    void expectNothingDone() const
    {
        EXPECT_EQ(writes(), 0);
        EXPECT_TRUE(given.isEmpty());
        EXPECT_EQ(describe("sda1"), u"ext4 System /");
        EXPECT_TRUE(describe("sdb1").startsWith(u"vfat First"_qs));
        EXPECT_TRUE(describe("sdb2").startsWith(u"ext4 Second"_qs));
    }

    PrivateBus bus;
    PretendBlockDevices machine;
    std::unique_ptr<MockedService> udisks;
    std::shared_ptr<PretendDevices> devices = std::make_shared<PretendDevices>();
    Result<QSet<quint64>> systemDevices;
    QStringList said;
    QList<QByteArray> given;
    quint64 system = 0, stick = 0, first = 0, second = 0;
};

} // namespace Quillmere
