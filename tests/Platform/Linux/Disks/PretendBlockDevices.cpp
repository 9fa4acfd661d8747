#include "Platform/Linux/Disks/PretendBlockDevices.h"

#include <QDir>
#include <QFile>

namespace Quillmere {

namespace {

QString text(const QByteArray &path)
{
    return QFile::decodeName(path);
}

} // namespace

PretendBlockDevices::PretendBlockDevices()
{
    for (const char *folder : {"sys/dev/block", "sys/class/block", "sys/fs/btrfs", "dev/mapper", "dev/disk/by-uuid"})
        QDir(m_root.path()).mkpath(text(folder));
}

FilePath PretendBlockDevices::sys() const
{
    return FilePath(QFile::encodeName(m_root.filePath(u"sys"_qs)));
}

FilePath PretendBlockDevices::dev() const
{
    return FilePath(QFile::encodeName(m_root.filePath(u"dev"_qs)));
}

void PretendBlockDevices::write(const QByteArray &file, const QByteArray &contents) const
{
    const QString path = m_root.filePath(text("sys/" + file));
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile handle(path);
    if (!handle.open(QFile::WriteOnly | QFile::Truncate) || handle.write(contents + '\n') < 0)
        qFatal("A pretended device cannot be written.");
}

quint64 PretendBlockDevices::describe(const QByteArray &folder, const QByteArray &name, const QByteArray &number,
                                      qint64 size)
{
    write(folder + "/dev", number);
    write(folder + "/size", QByteArray::number(size / 512));
    write(folder + "/ro", "0");
    const QString target = m_root.filePath(text("sys/" + folder));
    QFile::link(target, m_root.filePath(text("sys/dev/block/" + number)));
    QFile::link(target, m_root.filePath(text("sys/class/block/" + name)));
    QFile node(m_root.filePath(text("dev/" + name)));
    if (!node.open(QFile::WriteOnly))
        qFatal("A pretended node cannot be made.");
    return deviceNumberOf(number).value();
}

quint64 PretendBlockDevices::addDisk(const QByteArray &name, const QByteArray &number, qint64 size, quint64 sequence,
                                     const QByteArray &bus)
{
    const QByteArray folder = "devices/" + bus + "/block/" + name;
    write(folder + "/diskseq", QByteArray::number(sequence));
    write(folder + "/removable", "0");
    return describe(folder, name, number, size);
}

quint64 PretendBlockDevices::addPartition(const QByteArray &disk, int partition, const QByteArray &number, qint64 start,
                                          qint64 size)
{
    // So that the number of a disk and that of its partition stay apart.
    const bool endsWithDigit = disk.back() >= '0' && disk.back() <= '9';
    const QByteArray name = disk + (endsWithDigit ? "p" : "") + QByteArray::number(partition);
    const QString folder = QFileInfo(m_root.filePath(text("sys/class/block/" + disk))).canonicalFilePath();
    const QByteArray relative
        = QFile::encodeName(QDir(m_root.filePath(u"sys"_qs)).relativeFilePath(folder)) + '/' + name;
    write(relative + "/partition", QByteArray::number(partition));
    write(relative + "/start", QByteArray::number(start / 512));
    return describe(relative, name, number, size);
}

quint64 PretendBlockDevices::addStacked(const QByteArray &name, const QByteArray &number, qint64 size, quint64 sequence,
                                        const QList<QByteArray> &below)
{
    const quint64 device = addDisk(name, number, size, sequence, "virtual");
    const QString own = m_root.filePath(text("sys/devices/virtual/block/" + name));
    QDir(own).mkpath(u"slaves"_qs);
    for (const QByteArray &one : below) {
        const QString other = QFileInfo(m_root.filePath(text("sys/class/block/" + one))).canonicalFilePath();
        QFile::link(other, own + u"/slaves/"_qs + text(one));
        QDir(other).mkpath(u"holders"_qs);
        QFile::link(own, other + u"/holders/"_qs + text(name));
    }
    return device;
}

quint64 PretendBlockDevices::addLoop(const QByteArray &name, const QByteArray &number, quint64 sequence,
                                     const QByteArray &backingFile)
{
    const quint64 device = addDisk(name, number, 1 << 20, sequence, "virtual");
    write("devices/virtual/block/" + name + "/loop/backing_file", backingFile);
    return device;
}

void PretendBlockDevices::exchange(const QByteArray &disk, quint64 sequence)
{
    write("class/block/" + disk + "/diskseq", QByteArray::number(sequence));
}

void PretendBlockDevices::resize(const QByteArray &disk, qint64 size)
{
    write("class/block/" + disk + "/size", QByteArray::number(size / 512));
}

void PretendBlockDevices::remove(const QByteArray &disk)
{
    QDir(QFileInfo(m_root.filePath(text("sys/class/block/" + disk))).canonicalFilePath()).removeRecursively();
}

void PretendBlockDevices::addNodeLink(const QByteArray &link, const QByteArray &name)
{
    QFile::link(m_root.filePath(text("dev/" + name)), m_root.filePath(text("dev/" + link)));
}

void PretendBlockDevices::setUuid(const QByteArray &name, const QByteArray &uuid)
{
    const QString node = m_root.filePath(text("dev/" + name));
    const QDir links(m_root.filePath(u"dev/disk/by-uuid"_qs));
    for (const QFileInfo &link : links.entryInfoList(QDir::Files | QDir::System)) {
        if (link.symLinkTarget() == node)
            QFile::remove(link.filePath());
    }
    if (!uuid.isEmpty())
        QFile::link(node, links.filePath(text(uuid)));
}

QByteArray PretendBlockDevices::folderOf(const QByteArray &name) const
{
    return QFile::encodeName(QFileInfo(m_root.filePath(text("sys/class/block/" + name))).canonicalFilePath());
}

void PretendBlockDevices::addBtrfs(const QByteArray &uuid, const QList<QByteArray> &members)
{
    const QString folder = m_root.filePath(text("sys/fs/btrfs/" + uuid + "/devices"));
    QDir().mkpath(folder);
    for (const QByteArray &member : members)
        QFile::link(QFileInfo(m_root.filePath(text("sys/class/block/" + member))).canonicalFilePath(),
                    folder + u'/' + text(member));
}

} // namespace Quillmere
