#pragma once

#include "Platform/FileManager.h"

#include <QHash>

namespace Quillmere {

/// The folders of the user's own that XDG desktops know by what is kept in them, and that each language names anew.
struct UserFolders
{
    /// By what they are: desktop, documents, download, music, pictures, videos. Absolute; they need not exist.
    /// One that the user does without is missing.
    QHash<QByteArray, FilePath> locations;

    /// What user-dirs.dirs in @p config says. Lines of another shape, and a file that cannot be read or asked for, say
    /// nothing.
    [[nodiscard]] static UserFolders read(const FileManager &files, const FilePath &home, const FilePath &config);
};

} // namespace Quillmere
