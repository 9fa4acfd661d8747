#include "Utilities/PathValidator.h"

#include "Utilities/Constants.h"

#include <algorithm>

namespace Quillmere {

namespace {

/// As it is written and, where it is a link or lies behind one, as the target of another link names it.
QList<FilePath> waysToHome(const FileManager &files)
{
    const FilePath home = files.homeDirectory();
    return {home.standardized(), files.resolvingSymlinks(home)};
}

} // namespace

bool PathValidator::isProtectedPath(const FilePath &path, const FileManager &files)
{
    const FilePath standardized = path.standardized();
    return Constants::protectedPaths().contains(standardized.bytes()) || waysToHome(files).contains(standardized);
}

bool PathValidator::isProtectedUserDirectory(const FilePath &path, const FileManager &files)
{
    const FilePath standardized = path.standardized();
    const QList<FilePath> homes = waysToHome(files);
    return std::ranges::any_of(Constants::protectedUserDirectories(), [&](const QByteArray &name) {
        return std::ranges::any_of(homes, [&](const FilePath &home) { return home.appending(name) == standardized; });
    });
}

} // namespace Quillmere
