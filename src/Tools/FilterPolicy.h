#pragma once

#include "Platform/Linux/Filter/LinuxFilterManager.h"
#include "Tools/ToolEnd.h"

#include <QStringList>

#include <unistd.h>

namespace Quillmere {

/// The rules of the traffic filter, where the filter reads them.
class FilterPolicy final
{
public:
    static constexpr qsizetype mostBytes = 64 * 1024;

    /// @p file is written; the folder that it is in is made where it is missing, the one above must exist. @p input is
    /// a descriptor that the record is read from.
    explicit FilterPolicy(FilePath file = LinuxFilterManager::policyFile(), int input = STDIN_FILENO);

    /// Takes one record, as FilterPolicyRecord.h says, to the end of the input and puts it in the place of the one
    /// before. What is no such record, is longer than mostBytes, or is not all there within some seconds, changes
    /// nothing. @p arguments must be none.
    [[nodiscard]] ToolEnd run(const QStringList &arguments) const;

private:
    FilePath m_file;
    int m_input;
};

} // namespace Quillmere
