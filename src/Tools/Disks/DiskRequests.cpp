#include "Tools/Disks/DiskRequests.h"

#include <QRegularExpression>

#include <algorithm>
#include <array>

namespace Quillmere {

namespace {

const QString diskutil = u"/usr/sbin/diskutil"_qs;
const QString device = u"/dev/"_qs;
constexpr quint64 systemDisk = 1;

const std::array ntfsDrivers = {u"/usr/local/bin/ntfs-3g"_qs, u"/opt/homebrew/bin/ntfs-3g"_qs, u"/usr/bin/ntfs-3g"_qs,
                                u"/sbin/mount.ntfs-3g"_qs};

bool isNtfsMount(const ShellCommands &commands)
{
    if (commands.size() != 2 || commands.first().size() != 3 || commands.last().size() != 5)
        return false;
    const QStringList &folder = commands.first();
    const QStringList &mount = commands.last();
    return folder.at(0) == u"mkdir" && folder.at(1) == u"-p" && std::ranges::count(ntfsDrivers, mount.at(0)) == 1
        && mount.at(1).startsWith(device) && mount.at(2) == folder.at(2) && mount.at(3) == u"-o"
        && mount.at(4) == u"local,allow_other";
}

/// Whether an order of that name comes of the folder of a mount, as it stands or with the first part of it cut off that
/// looks like the number of a volume.
bool isCalledAsAFolder(const QString &name, const QList<MountEntry> &mounts)
{
    static const QRegularExpression volume(u"s[0-9]+"_qs);
    return std::ranges::any_of(mounts, [&](const MountEntry &mount) {
        QString folder = QString::fromUtf8(mount.location.lastPathComponent());
        const QRegularExpressionMatch match = volume.match(folder);
        return folder == name
            || (match.hasMatch() && folder.remove(match.capturedStart(), match.capturedLength()) == name);
    });
}

Result<AdministratorRequest> refused(const QString &reason)
{
    return Failure{Failure::Kind::Protected, {}, reason};
}

} // namespace

std::optional<AdministratorRequest> diskRequestFor(const ShellCommands &commands)
{
    if (isNtfsMount(commands))
        return AdministratorRequest{u"mount-ntfs"_qs,
                                    {commands.last().at(2), commands.last().at(1).mid(device.size())}};
    if (commands.size() != 1)
        return std::nullopt;
    const QStringList &words = commands.first();
    if (words.size() == 5 && words.at(0) == diskutil && words.at(1) == u"eraseVolume"
        && (words.at(2) == u"APFS" || words.at(2) == u"JHFS+") && words.at(3) == u"CleanDisk")
        return AdministratorRequest{u"erase-volume"_qs, words.mid(2)};
    if (words.size() == 4 && words.at(0) == diskutil && words.at(1) == u"secureErase" && words.at(2) == u"0"
        && words.at(3).startsWith(device))
        return AdministratorRequest{u"secure-erase"_qs, {words.at(3).mid(device.size())}};
    return std::nullopt;
}

Result<AdministratorRequest> withIdentity(const AdministratorRequest &request, const ListedDisks &listed,
                                          const QList<MountEntry> &mounts)
{
    const bool isWhole = request.verb == u"secure-erase";
    if (!isWhole && request.verb != u"erase-volume" && request.verb != u"mount-ntfs")
        return request;
    const QString text = request.arguments.value(request.arguments.size() - 1);
    // The name that the running system has everywhere, whatever follows in it.
    if (text == u"disk%1"_qs.arg(systemDisk) || text.startsWith(u"disk%1s"_qs.arg(systemDisk)))
        return refused(u"%1 is the disk that the running system needs, and is never erased here."_qs.arg(text));
    const std::optional<DiskName> name = DiskName::parse(text);
    if (!name || name->volume.has_value() == isWhole)
        return refused(u"There is no disk with the name %1. Nothing was done."_qs.arg(text));
    if (request.verb != u"mount-ntfs" && isCalledAsAFolder(text, mounts))
        return refused(
            u"A volume is mounted in a folder that has the name of the disk %1. Nothing was done."_qs.arg(text));
    const Result<DiskIdentity> identity = listed.find(*name);
    if (!identity)
        return refused(u"It is not known what %1 was when it was listed (%2). Nothing was done."_qs.arg(
            text, identity.failure().detail));
    AdministratorRequest whole = request;
    whole.arguments.removeLast();
    whole.arguments += identity.value().words();
    return whole;
}

} // namespace Quillmere
