#include "Platform/Linux/TreeWalk.h"
#include "Platform/Linux/FolderListing.h"
#include <filesystem>
#include <sys/stat.h>
namespace Quillmere {
Result<TreeSize> measureTree(const FilePath &folder, const Cancellation &)
{
    TreeSize size;
    std::error_code error;
    for (const auto &entry : std::filesystem::recursive_directory_iterator(folder.bytes().toStdString(), error)) {
        struct stat status = {};
        if (::lstat(entry.path().c_str(), &status) == 0 && S_ISREG(status.st_mode)) {
            size.allocatedSize += status.st_blocks * 512;
            ++size.fileCount;
        }
    }
    return size;
}
Result<QList<DirectoryEntry>> contentsOfDirectory(const FilePath &, HiddenFiles) { return QList<DirectoryEntry>(); }
}
