#pragma once

#include "Platform/Linux/Files/FileDescriptor.h"
#include "Values/FilePath.h"
#include "Values/Result.h"

#include <optional>

namespace Quillmere {

/// The lock that a holder has for as long as it lives. The kernel itself says who has it; the number written in the
/// file is for people alone. Open one a process: closing any gives the lock back.
class HolderLock
{
public:
    /// @p runFolder is made where it is missing. Fails with Protected where anybody but the user we run as may write.
    [[nodiscard]] static Result<HolderLock> open(const FilePath &runFolder);

    /// Makes this process the holder. Fails with AlreadyExists where another process is.
    [[nodiscard]] Result<void> take() const;
    /// A descriptor of the process that is the holder; nothing where there is none. Never this process.
    [[nodiscard]] Result<std::optional<FileDescriptor>> holder() const;

private:
    explicit HolderLock(FileDescriptor file, FilePath path);

    FileDescriptor m_file;
    FilePath m_path;
};

} // namespace Quillmere
