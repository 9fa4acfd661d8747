#pragma once

#include "Values/FilePath.h"
#include "Values/Result.h"

#include <sys/stat.h>

namespace Quillmere {

/// The program's own folder for what need not outlive the user's session. It lies in the session's; nothing can be kept
/// where that one is empty, relative, missing, another user's, or one that others may write into.
class RuntimeFolder
{
public:
    explicit RuntimeFolder(FilePath sessionFolder);
    /// That of the user we run as.
    [[nodiscard]] static RuntimeFolder ofThisUser();

    /// Need not exist.
    [[nodiscard]] const FilePath &path() const { return m_path; }
    /// Fails unless it is there and nobody but this user may write into it.
    [[nodiscard]] Result<void> check() const;
    /// The same, but makes it where it is missing.
    [[nodiscard]] Result<void> prepare() const;

private:
    FilePath m_sessionFolder;
    FilePath m_path;
};

/// Whether a folder or a file is the user's whom we run as, and nobody else may write into it.
[[nodiscard]] bool isClosedToOthers(const struct stat &status);

/// Fails for a folder that is not there, another user's, or one that others may write into.
[[nodiscard]] Result<void> seeThatItIsOurs(const FilePath &folder);

/// Makes @p folder for this user alone where it is missing. Fails for the same.
[[nodiscard]] Result<void> makeOurs(const FilePath &folder);

} // namespace Quillmere
