#include "Tools/Disks/DiskAdministrator.h"

#include "Tools/Disks/DiskOverwriting.h"
#include "Tools/Disks/VolumeErasing.h"

#include <QFile>

#include <utility>

namespace Quillmere {

namespace {

ToolEnd wrongUse()
{
    return {ToolEnd::wrongUse, DiskAdministrator::usage()};
}

/// What stands behind the first @p before arguments, and is a volume or a whole disk as the verb needs it.
std::optional<DiskIdentity> identityBehind(const QStringList &arguments, qsizetype before, bool isVolume)
{
    const auto identity = DiskIdentity::parse(arguments.mid(before));
    return identity && identity->name.volume.has_value() == isVolume ? identity : std::nullopt;
}

} // namespace

DiskAdministrator::DiskAdministrator(DiskTools tools, NtfsPrograms programs)
    : m_tools(std::move(tools))
    , m_programs(std::move(programs))
{
}

QString DiskAdministrator::usage()
{
    return u"usage: quillmere-admin erase-volume FORMAT NAME VOLUME NODE NUMBER SIZE START SEQUENCE SERIAL UUID\n"
           "       quillmere-admin secure-erase DISK NODE NUMBER SIZE START SEQUENCE SERIAL UUID\n"
           "       quillmere-admin mount-ntfs PLACE VOLUME NODE NUMBER SIZE START SEQUENCE SERIAL UUID"_qs;
}

std::optional<ToolEnd> DiskAdministrator::carryOut(const QString &verb, const QStringList &arguments) const
{
    if (verb == u"erase-volume") {
        const auto volume = identityBehind(arguments, 2, true);
        return volume ? eraseVolume(m_tools, arguments.at(0), arguments.at(1), *volume) : wrongUse();
    }
    if (verb == u"secure-erase") {
        const auto disk = identityBehind(arguments, 0, false);
        return disk ? overwriteDisk(m_tools, *disk) : wrongUse();
    }
    if (verb == u"mount-ntfs") {
        const auto volume = identityBehind(arguments, 1, true);
        return volume ? mountNtfs(m_tools, m_programs, FilePath(QFile::encodeName(arguments.at(0))), *volume)
                      : wrongUse();
    }
    return std::nullopt;
}

} // namespace Quillmere
