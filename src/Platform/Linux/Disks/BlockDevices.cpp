#include "Platform/Linux/Disks/BlockDevices.h"

#include <QDir>
#include <QFile>

#include <algorithm>
#include <utility>

#include <sys/sysmacros.h>

namespace Quillmere {

namespace {

// Documentation/ABI/stable/sysfs-block: sizes and starts are in these, whatever the disk's own blocks are.
constexpr qint64 sectorBytes = 512;
// A chain of devices that is longer than this goes round in a ring.
constexpr int mostFoundations = 256;

QByteArray textIn(const QByteArray &folder, const char *name)
{
    QFile file(QFile::decodeName(folder + '/' + name));
    return file.open(QFile::ReadOnly) ? file.readAll().trimmed() : QByteArray();
}

QList<quint64> numbersIn(const QByteArray &folder)
{
    QList<quint64> numbers;
    const QDir directory(QFile::decodeName(folder));
    for (const QString &name : directory.entryList(QDir::AllEntries | QDir::NoDotAndDotDot, QDir::Name)) {
        if (const auto number = deviceNumberOf(textIn(folder + '/' + QFile::encodeName(name), "dev")))
            numbers.append(*number);
    }
    return numbers;
}

bool isPluggable(const QByteArray &diskFolder)
{
    return textIn(diskFolder, "removable") == "1" || diskFolder.contains("/usb");
}

BlockDevice describe(quint64 number, const QByteArray &folder)
{
    BlockDevice device;
    device.number = number;
    device.name = folder.mid(folder.lastIndexOf('/') + 1);
    device.size = textIn(folder, "size").toLongLong() * sectorBytes;
    device.partition = textIn(folder, "partition").toInt();
    device.isReadOnly = textIn(folder, "ro") != "0";
    const QByteArray diskFolder = device.partition == 0 ? folder : folder.left(folder.lastIndexOf('/'));
    if (device.partition != 0) {
        device.start = textIn(folder, "start").toLongLong() * sectorBytes;
        device.disk = deviceNumberOf(textIn(diskFolder, "dev"));
    }
    device.sequence = textIn(diskFolder, "diskseq").toULongLong();
    device.isPluggable = isPluggable(diskFolder);
    device.below = numbersIn(folder + "/slaves");
    device.backingFile = FilePath(textIn(folder, "loop/backing_file"));
    return device;
}

} // namespace

std::optional<quint64> deviceNumberOf(const QByteArray &text)
{
    const QList<QByteArray> parts = text.split(':');
    if (parts.size() != 2)
        return std::nullopt;
    bool isMajor = false;
    bool isMinor = false;
    const uint major = parts.first().toUInt(&isMajor);
    const uint minor = parts.last().toUInt(&isMinor);
    const quint64 number = makedev(major, minor);
    // Only the one way in which the kernel writes it.
    return isMajor && isMinor && textOfDeviceNumber(number) == text ? std::optional(number) : std::nullopt;
}

QByteArray textOfDeviceNumber(quint64 number)
{
    return QByteArray::number(major(number)) + ':' + QByteArray::number(minor(number));
}

FilePath nodeOf(const QByteArray &name)
{
    // The kernel writes a slash in a name as an exclamation mark.
    return FilePath("/dev").appending(QByteArray(name).replace('!', '/'));
}

BlockDevices::BlockDevices(FilePath sys, FilePath dev)
    : m_sys(std::move(sys))
    , m_dev(std::move(dev))
{
}

QByteArray BlockDevices::folderOf(quint64 number) const
{
    const FilePath link = m_sys.appending("dev/block/" + textOfDeviceNumber(number));
    return QFile::encodeName(QFileInfo(QFile::decodeName(link.bytes())).canonicalFilePath());
}

std::optional<BlockDevice> BlockDevices::device(quint64 number) const
{
    const QByteArray folder = folderOf(number);
    return folder.isEmpty() ? std::nullopt : std::optional(describe(number, folder));
}

std::optional<quint64> BlockDevices::numberOf(const QByteArray &name) const
{
    if (name.isEmpty() || name.contains('/') || name.startsWith('.'))
        return std::nullopt;
    return deviceNumberOf(textIn(m_sys.appending("class/block/" + name).bytes(), "dev"));
}

std::optional<quint64> BlockDevices::numberOfNode(const FilePath &node) const
{
    if (!node.isWithin(FilePath("/dev")))
        return std::nullopt;
    const FilePath ours = m_dev.appending(node.bytes().mid(qstrlen("/dev/")));
    // Names below /dev/mapper and the like are links to the kernel's own.
    const QByteArray path = QFile::encodeName(QFileInfo(QFile::decodeName(ours.bytes())).canonicalFilePath());
    return FilePath(path).isWithin(m_dev) ? numberOf(path.mid(m_dev.bytes().size() + 1).replace('/', '!'))
                                          : std::nullopt;
}

QByteArray BlockDevices::fileSystemUuid(quint64 number) const
{
    // 60-persistent-storage.rules of udev: each link there is called as a file system is, and leads to where it lies.
    const QByteArray links = "/dev/disk/by-uuid";
    const QDir folder(QFile::decodeName(m_dev.appending("disk/by-uuid").bytes()));
    for (const QString &link : folder.entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot, QDir::Name)) {
        const QByteArray name = QFile::encodeName(link);
        if (numberOfNode(FilePath(links).appending(name)) == number)
            return name;
    }
    return {};
}

std::optional<quint64> BlockDevices::numberOfMount(const QByteArray &device, const FilePath &source) const
{
    const std::optional<quint64> number = deviceNumberOf(device);
    // Some file systems of several parts have a number of their own, which is no device's.
    return number && major(*number) != 0 ? number : numberOfNode(source);
}

std::optional<BlockDevice> BlockDevices::wholeDisk(quint64 number) const
{
    std::optional<BlockDevice> found = device(number);
    for (int step = 0; found && step < mostFoundations; ++step) {
        if (found->disk)
            found = device(*found->disk);
        else if (found->below.size() == 1)
            found = device(found->below.first());
        else
            return found;
    }
    return std::nullopt;
}

QList<quint64> BlockDevices::foundations(quint64 number) const
{
    QList<quint64> found{number};
    for (qsizetype at = 0; at < found.size() && at < mostFoundations; ++at) {
        const std::optional<BlockDevice> next = device(found.at(at));
        if (!next)
            continue;
        QList<quint64> below = next->below;
        if (next->disk)
            below.append(*next->disk);
        for (const quint64 one : std::as_const(below)) {
            if (!found.contains(one))
                found.append(one);
        }
    }
    return found;
}

QList<quint64> BlockDevices::directlyAbove(quint64 number) const
{
    const QByteArray folder = folderOf(number);
    // Of a device that has just gone; an empty name would mean the folder that this process is in.
    if (folder.isEmpty())
        return {};
    QList<quint64> above = numbersIn(folder + "/holders");
    // Partitions are the folders in it that have a number.
    above += numbersIn(folder);
    return above;
}

QList<quint64> BlockDevices::withAllAbove(quint64 number) const
{
    QList<quint64> found{number};
    for (qsizetype at = 0; at < found.size() && at < mostFoundations; ++at) {
        for (const quint64 one : directlyAbove(found.at(at))) {
            // What stands on two of them comes behind both.
            if (one != number) {
                found.removeOne(one);
                found.append(one);
            }
        }
    }
    std::reverse(found.begin(), found.end());
    return found;
}

QList<quint64> BlockDevices::btrfsMembers(quint64 number) const
{
    const QByteArray folder = m_sys.appending("fs/btrfs").bytes();
    const QDir directory(QFile::decodeName(folder));
    for (const QString &name : directory.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name)) {
        const QList<quint64> members = numbersIn(folder + '/' + QFile::encodeName(name) + "/devices");
        if (members.contains(number))
            return members;
    }
    return {number};
}

} // namespace Quillmere
