#include "Services/PermissionService.h"

namespace Quillmere {

bool PermissionService::hasFullDiskAccess(const FileManager &files)
{
    const FilePath bookmarks = files.homeDirectory().appending("Library/Safari/Bookmarks.plist");
    const FilePath permissions("/Library/Application Support/com.apple.TCC/TCC.db");
    for (const FilePath &file : {bookmarks, permissions}) {
        if (files.fileExists(file))
            return files.isReadableFile(file);
    }
    return false;
}

void PermissionService::openFullDiskAccessSettings(const Workspace &workspace)
{
    workspace.openURL(QUrl(u"x-apple.systempreferences:com.apple.preference.security?Privacy_AllFiles"_qs));
}

} // namespace Quillmere
