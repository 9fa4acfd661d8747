#include "Utilities/SymlinkChecker.h"

namespace Quillmere {

bool SymlinkChecker::isSymlink(const FilePath &path, const FileManager &files)
{
    const Result<FileAttributes> attributes = files.attributesOfItem(path);
    return attributes && attributes.value().type == EntryKind::SymbolicLink;
}

} // namespace Quillmere
