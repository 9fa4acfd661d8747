#pragma once

#include "Values/FilePath.h"

#include <functional>

#include <sys/types.h>

namespace Quillmere {

/// Whom the program works for, and where that user's folders are. Nothing of it need exist.
struct UserEnvironment
{
    /// Gives the value of an environment variable; empty when it is not set.
    using Variables = std::function<QByteArray(const char *name)>;

    FilePath home;
    FilePath dataHome; ///< Of the XDG base directory specification; the home trash lies in it.
    FilePath temporary;
    uid_t user = 0;

    /// A variable that is empty or no absolute location counts as not set; without HOME the user database answers.
    [[nodiscard]] static UserEnvironment of(uid_t user, const Variables &variables = qgetenv);
    /// Of the user whose rights this process has.
    [[nodiscard]] static UserEnvironment current();
};

} // namespace Quillmere
