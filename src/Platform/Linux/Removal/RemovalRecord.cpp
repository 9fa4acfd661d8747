#include "Platform/Linux/Removal/RemovalRecord.h"

#include "Platform/Linux/Files/ErrnoFailure.h"

#include <cerrno>

namespace Quillmere {

namespace {

Failure removalFailure(int error, const FilePath &path)
{
    switch (error) {
    case EXDEV:
        return {Failure::Kind::Busy, path, u"Another file system is mounted here"_qs};
    case ENOTEMPTY:
        return {Failure::Kind::Busy, path, u"Something new keeps appearing in the folder"_qs};
    case ESTALE:
        return {Failure::Kind::Busy, path, u"The folder was moved elsewhere meanwhile"_qs};
    case ENOTDIR:
        return {Failure::Kind::Busy, path, u"Replaced by something else meanwhile"_qs};
    default:
        return failureFromErrno(error, path);
    }
}

} // namespace

void RemovalRecord::addFailure(int error, const FilePath &path)
{
    const std::scoped_lock guard(m_mutex);
    if (!m_failure || path < m_failure->path)
        m_failure = removalFailure(error, path);
}

std::optional<Failure> RemovalRecord::failure() const
{
    const std::scoped_lock guard(m_mutex);
    return m_failure;
}

} // namespace Quillmere
