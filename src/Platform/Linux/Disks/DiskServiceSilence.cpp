#include "Platform/Linux/Disks/DiskServiceSilence.h"

#include "Platform/Linux/Files/FileDescriptor.h"
#include "Platform/Linux/Files/RuntimeFolder.h"

#include <ctime>
#include <tuple>

#include <fcntl.h>
#include <sys/stat.h>

namespace Quillmere {

DiskServiceSilence::DiskServiceSilence(const FilePath &runtimeFolder)
    : m_runtimeFolder(runtimeFolder)
    , m_file(runtimeFolder.appending("quillmere-udisks2-silent"))
{
}

DiskServiceSilence DiskServiceSilence::ofThisUser()
{
    return DiskServiceSilence(runtimeFolderOfThisUser());
}

bool DiskServiceSilence::isRecent() const
{
    struct stat status = {};
    if (!seeThatItIsOurs(m_runtimeFolder) || ::lstat(m_file.bytes().constData(), &status) != 0)
        return false;
    const time_t age = ::time(nullptr) - status.st_mtim.tv_sec;
    // A clock that was put back must not make it last.
    return age >= 0 && age <= seconds;
}

void DiskServiceSilence::remember() const
{
    if (!seeThatItIsOurs(m_runtimeFolder))
        return;
    const FileDescriptor file(::open(m_file.bytes().constData(),
                                     O_CREAT | O_WRONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, S_IRUSR | S_IWUSR));
    if (file.isOpen())
        std::ignore = ::futimens(file.number(), nullptr);
}

} // namespace Quillmere
