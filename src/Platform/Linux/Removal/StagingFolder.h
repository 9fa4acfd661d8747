#pragma once

#include "Platform/Linux/Removal/TrashFolder.h"

namespace Quillmere {

/// A place in a trash, seen by nobody who lists it, where a copy grows until it is whole. Goes with what is in it;
/// what programs that were killed have left behind is cleared away by whoever uses the trash next.
class StagingFolder
{
public:
    [[nodiscard]] static Result<StagingFolder> make(const TrashFolder &trash);
    /// Clears away what killed programs have left in @p trash, where anything is: no file manager shows or empties it.
    static void clearAbandoned(const TrashFolder &trash);

    StagingFolder(StagingFolder &&) noexcept = default;
    StagingFolder &operator=(StagingFolder &&) = delete;
    ~StagingFolder();

    /// Open for reading.
    [[nodiscard]] int descriptor() const { return m_folder.number(); }

private:
    StagingFolder() = default;

    FileDescriptor m_trash;
    FileDescriptor m_all; ///< Holds those of every program.
    QByteArray m_name;
    FileDescriptor m_folder; ///< Locked, which tells the others that this one is in use.
};

} // namespace Quillmere
