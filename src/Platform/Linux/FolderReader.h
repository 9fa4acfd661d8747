#pragma once

#include "Platform/FileManager.h"
#include "Platform/Linux/DirectoryBuffer.h"
#include "Platform/Linux/NameList.h"

namespace Quillmere {

/// What one thread does with the entries of folders: it adds up the regular files and collects the names of the
/// sub-folders. Each thread has its own.
class FolderReader
{
public:
    /// @p cancellation is asked before every entry.
    explicit FolderReader(const Cancellation &cancellation);

    /// Takes in the @p entries of @p folder. True when they are known to be the last.
    bool takeIn(const DirectoryBuffer &entries, int folder, NameList &subfolders);

    /// Everything added up so far.
    [[nodiscard]] const TreeSize &sum() const { return m_sum; }

private:
    /// Asks for one entry whose kind is that of a file or not known.
    void ask(const char *name, int folder, NameList &subfolders);

    const Cancellation &m_cancellation;
    TreeSize m_sum;
};

} // namespace Quillmere
