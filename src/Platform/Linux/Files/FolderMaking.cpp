#include "Platform/Linux/Files/FolderMaking.h"

#include <cerrno>

#include <sys/stat.h>

namespace Quillmere {

void makeFolders(const FilePath &folder, mode_t mode)
{
    const FilePath above = folder.deletingLastPathComponent();
    if (::mkdir(folder.bytes().constData(), mode) == 0 || errno != ENOENT || above == folder)
        return;
    makeFolders(above, mode);
    ::mkdir(folder.bytes().constData(), mode);
}

} // namespace Quillmere
