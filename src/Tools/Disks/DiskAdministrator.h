#pragma once

#include "Tools/Disks/DiskTools.h"
#include "Tools/Disks/NtfsMount.h"
#include "Tools/ToolEnd.h"

#include <QStringList>

#include <optional>

namespace Quillmere {

/// What the administrator program does with disks. Each verb takes the whole identity of the disk that was shown to the
/// user, and does nothing to any other:
///     erase-volume FORMAT LABEL IDENTITY
///     secure-erase IDENTITY
///     mount-ntfs PLACE IDENTITY
class DiskAdministrator final
{
public:
    explicit DiskAdministrator(DiskTools tools, NtfsPrograms programs = {});

    [[nodiscard]] static QString usage();
    /// Nothing for a verb that is none of these.
    [[nodiscard]] std::optional<ToolEnd> carryOut(const QString &verb, const QStringList &arguments) const;

private:
    DiskTools m_tools;
    NtfsPrograms m_programs;
};

} // namespace Quillmere
