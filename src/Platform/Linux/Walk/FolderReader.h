#pragma once

#include "Platform/Linux/Files/DirectoryBuffer.h"
#include "Platform/Linux/Files/NameList.h"
#include "Platform/Linux/Walk/WalkFindings.h"
#include "Platform/Linux/Walk/WalkFolder.h"

#include <functional>
#include <memory>

namespace Quillmere {

/// What one thread does with the entries of folders: it asks the files among them and collects the names of the
/// sub-folders to be entered. Each thread has its own.
class FolderReader
{
public:
    FolderReader() = default;
    virtual ~FolderReader() = default;
    Q_DISABLE_COPY_MOVE(FolderReader)

    /// Takes in the @p entries of @p folder. True when they are known to be the last, or the walk is to stop, which is
    /// asked before every entry; what was found is then a part.
    virtual bool takeIn(const DirectoryBuffer &entries, const WalkFolder &folder, NameList &subfolders) = 0;

    [[nodiscard]] const TreeSize &size() const { return m_findings.size; }
    /// Everything found so far, which is then no longer here.
    [[nodiscard]] WalkFindings takeFindings() { return std::exchange(m_findings, {}); }

protected:
    WalkFindings m_findings;
};

/// Makes the reader of one more thread. Any thread.
using ReaderMaker = std::function<std::unique_ptr<FolderReader>()>;

} // namespace Quillmere
