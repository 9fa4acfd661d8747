#include "Platform/Linux/Disks/DiskServiceSilence.h"

#include "Platform/Linux/Files/FileDescriptor.h"

#include <ctime>
#include <tuple>

#include <fcntl.h>
#include <sys/stat.h>

namespace Quillmere {

DiskServiceSilence::DiskServiceSilence(RuntimeFolder folder)
    : m_folder(std::move(folder))
    , m_file(m_folder.path().appending("udisks2-silent"))
{
}

DiskServiceSilence DiskServiceSilence::ofThisUser()
{
    return DiskServiceSilence(RuntimeFolder::ofThisUser());
}

bool DiskServiceSilence::isRecent() const
{
    struct stat status = {};
    if (!m_folder.check() || ::lstat(m_file.bytes().constData(), &status) != 0)
        return false;
    const time_t age = ::time(nullptr) - status.st_mtim.tv_sec;
    // A clock that was put back must not make it last.
    return age >= 0 && age <= seconds;
}

void DiskServiceSilence::remember() const
{
    if (!m_folder.prepare())
        return;
    const FileDescriptor file(::open(m_file.bytes().constData(),
                                     O_CREAT | O_WRONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, S_IRUSR | S_IWUSR));
    if (file.isOpen())
        std::ignore = ::futimens(file.number(), nullptr);
}

} // namespace Quillmere
