#pragma once

#include "Platform/FileManager.h"

#include <memory>
#include <optional>

namespace Quillmere {

/// The conditions under which the program was installed, as a file that the user can read again. Copied like a value.
class InstallerTerms
{
public:
    explicit InstallerTerms(std::shared_ptr<const FileManager> files);

    /// Replaces the file of an earlier setup. Answers where it lies; nothing when it could not be written, which is one
    /// line on standard output, or when there is no folder for it.
    [[nodiscard]] std::optional<FilePath> writeFinalInstallationFile() const;

private:
    std::shared_ptr<const FileManager> m_files;
};

} // namespace Quillmere
