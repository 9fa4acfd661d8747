#include "Platform/Linux/Walk/TreeMeasurer.h"

#include "Platform/Linux/Files/EntryStatus.h"

namespace Quillmere {

TreeMeasurer::TreeMeasurer(const Cancellation &cancellation)
    : m_cancellation(cancellation)
{
}

bool TreeMeasurer::takeIn(const DirectoryBuffer &entries, const WalkFolder &folder, NameList &subfolders)
{
    bool isLast = false;
    for (const dirent64 &entry : entries) {
        isLast = DirectoryBuffer::isLast(entry);
        if (DirectoryBuffer::isDots(entry))
            continue;
        if (m_cancellation.isRequested()) {
            m_findings.isPart = true;
            return true;
        }
        if (entry.d_type == DT_DIR)
            subfolders.append(entry.d_name);
        else if (entry.d_type == DT_REG || entry.d_type == DT_UNKNOWN)
            ask(entry.d_name, folder.number(), subfolders);
    }
    return isLast;
}

void TreeMeasurer::ask(const char *name, int folder, NameList &subfolders)
{
    const EntryStatus status(folder, name);
    if (status.isFolder())
        subfolders.append(name);
    else if (status.isFileOfTree())
        m_findings.size += {status.allocatedSize(), 1};
}

} // namespace Quillmere
