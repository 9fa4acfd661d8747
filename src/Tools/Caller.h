#pragma once

#include "Values/FilePath.h"
#include "Values/Result.h"

#include <QByteArray>

#include <vector>

#include <sys/types.h>

namespace Quillmere {

/// The account that a program works for, which with root's rights is not the one that it runs under.
struct Caller
{
    uid_t user = 0;
    gid_t group = 0;
    std::vector<gid_t> groups; ///< All of them.
    QByteArray name;
    FilePath home;

    /// The user whom pkexec names, or else the one who runs the program. Fails for one without an account.
    [[nodiscard]] static Result<Caller> ofThisProcess();
    [[nodiscard]] static Result<Caller> ofUser(uid_t user);
};

} // namespace Quillmere
