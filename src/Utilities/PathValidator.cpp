#include "Utilities/PathValidator.h"

#include "Utilities/Constants.h"

#include <algorithm>

namespace Quillmere {

bool PathValidator::isProtectedPath(const FilePath &path, const FileManager &files)
{
    const FilePath standardized = path.standardized();
    return Constants::protectedPaths().contains(standardized.bytes())
        || standardized == files.homeDirectory().standardized();
}

bool PathValidator::isProtectedUserDirectory(const FilePath &path, const FileManager &files)
{
    const FilePath home = files.homeDirectory().standardized();
    const FilePath standardized = path.standardized();
    return std::ranges::any_of(Constants::protectedUserDirectories(),
                               [&](const QByteArray &name) { return home.appending(name) == standardized; });
}

} // namespace Quillmere
