#pragma once

#include "Platform/Linux/Places/BaseDirectories.h"

#include <sys/types.h>

namespace Quillmere {

/// Whom the program works for, and where that user's folders are. Nothing of it need exist.
struct UserEnvironment
{
    FilePath home;
    FilePath dataHome; ///< One of the BaseDirectories.
    FilePath temporary;
    uid_t user = 0;

    /// Without HOME the user database answers.
    [[nodiscard]] static UserEnvironment of(uid_t user, const BaseDirectories::Environment &variables = qgetenv);
    /// Of the user whose rights this process has.
    [[nodiscard]] static UserEnvironment current();

    [[nodiscard]] FilePath homeTrash() const { return dataHome.appending("Trash"); }
    /// Whether the home is there, and is a folder below the root: no other is looked after.
    [[nodiscard]] bool hasHome() const;
};

} // namespace Quillmere
