#include "Platform/Linux/Files/ErrnoFailure.h"

#include <cerrno>

namespace Quillmere {

namespace {

Failure::Kind kindOf(int error)
{
    switch (error) {
    case ENOENT:
    case ENOTDIR: // A component is not a folder, so nothing can stand below it.
    case ESTALE: // A file server has forgotten the item.
        return Failure::Kind::NotFound;
    case EACCES:
    case EPERM:
        return Failure::Kind::NoPermission;
    case EEXIST:
    case ENOTEMPTY:
        return Failure::Kind::AlreadyExists;
    case EBUSY:
    case ETXTBSY:
        return Failure::Kind::Busy;
    case ENOSPC:
    case EDQUOT:
        return Failure::Kind::NoSpace;
    case EROFS:
        return Failure::Kind::ReadOnly;
    case ELOOP:
        return Failure::Kind::LinkInPath;
    case ENOSYS:
    case EOPNOTSUPP:
    case EXDEV:
        return Failure::Kind::NotSupported;
    case ECANCELED:
        return Failure::Kind::Cancelled;
    default:
        return Failure::Kind::Other;
    }
}

} // namespace

Failure failureFromErrno(int error, const FilePath &path)
{
    return {kindOf(error), path, qt_error_string(error)};
}

} // namespace Quillmere
