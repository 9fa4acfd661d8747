#include "Platform/Linux/Walk/FileFinder.h"

#include "Platform/Linux/Files/EntryStatus.h"
#include "Platform/PackageNames.h"

namespace Quillmere {

namespace {

bool isHiddenOrDots(const dirent64 &entry)
{
    return entry.d_name[0] == '.';
}

qint64 countItems(const DirectoryBuffer &entries)
{
    qint64 items = 0;
    for (const dirent64 &entry : entries)
        items += isHiddenOrDots(entry) ? 0 : 1;
    return items;
}

std::optional<QDateTime> timeOf(const struct statx &status, unsigned field, const statx_timestamp &time)
{
    if ((status.stx_mask & field) == 0)
        return std::nullopt;
    return QDateTime::fromMSecsSinceEpoch(time.tv_sec * 1000LL + time.tv_nsec / 1'000'000, Qt::UTC);
}

void enterLater(const char *name, NameList &subfolders)
{
    if (!isPackageName(name))
        subfolders.append(name);
}

} // namespace

FileFinder::FileFinder(const FileSearch &search, SearchCounter &counter, const Cancellation &cancellation)
    : m_search(search)
    , m_counter(counter)
    , m_cancellation(cancellation)
    , m_closedEnd(search.closedFolder.isEmpty() ? QByteArray() : '/' + search.closedFolder)
    , m_closedMiddle(search.closedFolder.isEmpty() ? QByteArray() : m_closedEnd + '/')
{
}

bool FileFinder::takeIn(const DirectoryBuffer &entries, const WalkFolder &folder, NameList &subfolders)
{
    const bool closed = isClosed(folder);
    qint64 number = m_counter.reserve(countItems(entries));
    bool isLast = false;
    for (const dirent64 &entry : entries) {
        isLast = DirectoryBuffer::isLast(entry);
        if (DirectoryBuffer::isDots(entry))
            continue;
        if (m_cancellation.isRequested()) {
            m_findings.isPart = true;
            return true;
        }
        if (isHiddenOrDots(entry))
            continue;
        if (m_counter.isToldOf(++number))
            m_counter.tell(number, entry.d_name);
        if (!closed)
            takeIn(entry, folder, subfolders);
    }
    return isLast;
}

bool FileFinder::isClosed(const WalkFolder &folder) const
{
    return !m_closedEnd.isEmpty() && (folder.path.endsWith(m_closedEnd) || folder.path.contains(m_closedMiddle));
}

void FileFinder::takeIn(const dirent64 &entry, const WalkFolder &folder, NameList &subfolders)
{
    if (entry.d_type == DT_DIR)
        enterLater(entry.d_name, subfolders);
    if (entry.d_type != DT_REG && entry.d_type != DT_UNKNOWN)
        return;
    const EntryStatus status(folder.number(), entry.d_name, STATX_ATIME | STATX_MTIME);
    if (status.isFolder())
        enterLater(entry.d_name, subfolders);
    else if (status.isFileOfTree())
        take(status, entry.d_name, folder);
}

void FileFinder::take(const EntryStatus &status, const char *name, const WalkFolder &folder)
{
    const qint64 size = status.allocatedSize();
    m_findings.size += {size, 1};
    if (size < m_search.leastAllocatedSize)
        return;
    const struct statx &fields = status.fields();
    m_findings.files.push_back({FilePath(folder.pathOf(name)), size, timeOf(fields, STATX_ATIME, fields.stx_atime),
                                timeOf(fields, STATX_MTIME, fields.stx_mtime)});
}

} // namespace Quillmere
