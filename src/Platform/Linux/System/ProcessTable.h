#pragma once

#include "Platform/Linux/Files/FileDescriptor.h"
#include "Platform/Linux/System/ProcessStat.h"
#include "Values/FilePath.h"

#include <QList>

namespace Quillmere {

/// The processes of the machine, as far as the kernel shows them to this user. One folder stays open; every question
/// is put to the kernel anew. Safe to use from several threads.
class ProcessTable
{
public:
    explicit ProcessTable(const FilePath &proc = FilePath("/proc"));

    /// Their numbers, rising. Empty when there is nothing to read.
    [[nodiscard]] QList<pid_t> processes() const;
    /// Nothing for one that has gone.
    [[nodiscard]] std::optional<ProcessStat> stat(pid_t pid) const;
    /// The file @p name of @p pid, relative to its folder. Nothing when it has gone or is not for this user.
    [[nodiscard]] std::optional<QByteArray> file(pid_t pid, const char *name) const;
    /// A file of the file system that @p pid sees, directly in its root. It is the process's own making: no link is
    /// followed, and nothing is read but a regular file of at most @p mostBytes.
    [[nodiscard]] std::optional<QByteArray> fileInRoot(pid_t pid, const char *name, qsizetype mostBytes) const;
    /// Where the link @p name of @p pid points to; empty for one that has gone or is not for this user.
    [[nodiscard]] QByteArray link(pid_t pid, const char *name) const;
    [[nodiscard]] std::optional<uid_t> user(pid_t pid) const;

private:
    FileDescriptor m_folder;
};

} // namespace Quillmere
