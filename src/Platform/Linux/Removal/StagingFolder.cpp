#include "Platform/Linux/Removal/StagingFolder.h"

#include "Platform/Linux/Files/ErrnoFailure.h"
#include "Platform/Linux/Files/OpenAt.h"
#include "Platform/Linux/Files/PrivateFolder.h"
#include "Platform/Linux/Removal/DeepRemoval.h"
#include "Platform/Linux/Removal/FolderEmptying.h"

#include <QRandomGenerator>

#include <cerrno>
#include <tuple>

#include <fcntl.h>
#include <sys/file.h>

namespace Quillmere {

namespace {

constexpr char allName[] = "quillmere-incoming";
constexpr int mostNames = 16;

/// Nothing open unless the folder is there and nobody else's.
FileDescriptor openLocked(int parent, const QByteArray &name)
{
    FileDescriptor folder = openAt(parent, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW);
    struct stat status = {};
    if (!folder.isOpen() || ::flock(folder.number(), LOCK_EX | LOCK_NB) != 0 || ::fstat(folder.number(), &status) != 0
        || status.st_nlink == 0)
        return {};
    return folder;
}

void removeFolder(int parent, const QByteArray &name)
{
    const MayRemove everything;
    RemovalRecord record;
    // What does not go now goes the next time.
    std::ignore = DeepRemoval(parent, FilePath(allName), everything, record).remove(name);
}

void removeAbandoned(int all)
{
    const MayRemove nothing = [](const struct stat &) { return false; };
    for (const QByteArray &name : sweepFolder(all, nothing).folders) {
        const FileDescriptor abandoned = openLocked(all, name);
        if (abandoned.isOpen())
            removeFolder(all, name);
    }
}

} // namespace

Result<StagingFolder> StagingFolder::make(const TrashFolder &trash)
{
    const FilePath path = trash.path.appending(allName);
    StagingFolder staging;
    staging.m_trash = openAt(trash.folder.number(), ".", O_PATH | O_DIRECTORY);
    for (int attempt = 0; attempt < mostNames && !staging.m_folder.isOpen(); ++attempt) {
        const Result<FileDescriptor> opened
            = openOrMakePrivateFolder(trash.folder.number(), allName, FinalLink::Refuse, path);
        if (!opened)
            return opened.failure();
        staging.m_all = openAt(opened.value().number(), ".", O_RDONLY | O_DIRECTORY);
        if (!staging.m_all.isOpen())
            return failureFromErrno(errno, path);
        removeAbandoned(staging.m_all.number());
        staging.m_name = QByteArray::number(QRandomGenerator::global()->generate64(), 36);
        // Another program may just be clearing the whole place away.
        if (::mkdirat(staging.m_all.number(), staging.m_name.constData(), S_IRWXU) == 0)
            staging.m_folder = openLocked(staging.m_all.number(), staging.m_name);
        else if (errno != ENOENT && errno != EEXIST)
            return failureFromErrno(errno, path);
    }
    if (!staging.m_folder.isOpen())
        return Failure{Failure::Kind::Busy, path, u"Other programs keep clearing this folder"_qs};
    return staging;
}

void StagingFolder::clearAbandoned(const TrashFolder &trash)
{
    const FileDescriptor all = openAt(trash.folder.number(), allName, O_RDONLY | O_DIRECTORY | O_NOFOLLOW);
    if (!all.isOpen())
        return;
    removeAbandoned(all.number());
    // Fails, as it should, while another program has something in there.
    ::unlinkat(trash.folder.number(), allName, AT_REMOVEDIR);
}

StagingFolder::~StagingFolder()
{
    if (!m_folder.isOpen())
        return;
    removeFolder(m_all.number(), m_name);
    // Fails, as it should, while another program has something in there.
    ::unlinkat(m_trash.number(), allName, AT_REMOVEDIR);
}

} // namespace Quillmere
