#pragma once

#include "Platform/Linux/Files/FileDescriptor.h"
#include "Values/FilePath.h"
#include "Values/Result.h"

namespace Quillmere {

/// A folder beside a destination that nobody else may enter, where a copy grows until it is whole. One program at a
/// time has it; what killed ones have left in it is cleared away first. Goes at the end with what is in it.
class InstallStaging
{
public:
    /// Waits for whoever has it. @p folder, open for reading at @p path, must outlive this.
    [[nodiscard]] static Result<InstallStaging> make(int folder, const FilePath &path);

    InstallStaging(InstallStaging &&) noexcept = default;
    InstallStaging &operator=(InstallStaging &&) = delete;
    ~InstallStaging();

    /// Open for reading.
    [[nodiscard]] int descriptor() const { return m_staging.number(); }
    /// Puts what was staged under @p staged into the place @p name beside, in one step: whoever looks finds what was
    /// there or the new one. What was there is then staged instead, and goes at the end.
    [[nodiscard]] Result<void> replace(const QByteArray &staged, const QByteArray &name) const;
    /// The same for a place that must be free.
    [[nodiscard]] Result<void> add(const QByteArray &staged, const QByteArray &name) const;

private:
    InstallStaging(int folder, FilePath path, FileDescriptor staging);
    [[nodiscard]] Result<void> move(const QByteArray &staged, const QByteArray &name, unsigned int how) const;

    int m_folder;
    FilePath m_path;
    FileDescriptor m_staging; ///< Locked.
};

} // namespace Quillmere
