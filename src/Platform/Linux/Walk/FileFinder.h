#pragma once

#include "Platform/Linux/Walk/FolderReader.h"
#include "Platform/Linux/Walk/SearchCounter.h"

namespace Quillmere {

class EntryStatus;

/// Picks out the files that a search is after. A path is made up for those alone.
class FileFinder final : public FolderReader
{
public:
    FileFinder(const FileSearch &search, SearchCounter &counter, const Cancellation &cancellation);

    bool takeIn(const DirectoryBuffer &entries, const WalkFolder &folder, NameList &subfolders) override;

private:
    [[nodiscard]] bool isClosed(const WalkFolder &folder) const;
    void takeIn(const dirent64 &entry, const WalkFolder &folder, NameList &subfolders);
    void take(const EntryStatus &status, const char *name, const WalkFolder &folder);

    const FileSearch &m_search;
    SearchCounter &m_counter;
    const Cancellation &m_cancellation;
    QByteArray m_closedEnd; ///< How the path of a closed folder ends. Empty: there is none.
    QByteArray m_closedMiddle; ///< What the path of anything in it holds.
};

} // namespace Quillmere
