#pragma once

#include "Platform/FileManager.h"
#include "Platform/Workspace.h"

namespace Quillmere {

/// What the system allows the program. Any thread.
class PermissionService
{
public:
    PermissionService() = delete;

    /// Told by whether a file can be read that only programs with full access may read.
    [[nodiscard]] static bool hasFullDiskAccess(const FileManager &files);
    /// Shows the user where the system's settings grant full access. May wait for the desktop.
    static void openFullDiskAccessSettings(const Workspace &workspace);
};

} // namespace Quillmere
