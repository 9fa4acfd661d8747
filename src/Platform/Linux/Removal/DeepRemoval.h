#pragma once

#include "Platform/Linux/Removal/FolderEmptying.h"
#include "Platform/Linux/Removal/FolderStack.h"
#include "Platform/Linux/Removal/RemovalRecord.h"

#include <vector>

namespace Quillmere {

/// How often a folder is looked through again because something new stands in it when it should be empty.
constexpr int mostSweeps = 8;

/// Deletes one folder with all that is in it on the calling thread, however deep it goes: no recursion, and a fixed
/// number of descriptors.
class DeepRemoval
{
public:
    /// Everything passed must outlive this. @p location is that of @p parent, which is open for reading.
    DeepRemoval(int parent, FilePath location, const MayRemove &mayRemove, RemovalRecord &record);

    /// True when @p folder is gone. Once only.
    [[nodiscard]] bool remove(const QByteArray &folder);

private:
    struct Frame
    {
        QByteArray name;
        QList<QByteArray> folders;
        qsizetype next = 0;
        int sweeps = 0;
        bool failed = false;
    };

    void descend(const QByteArray &name, int sweeps);
    void handleUnopened(const QByteArray &name, int error);
    /// False when the way up is lost.
    [[nodiscard]] bool ascend();
    void fail(const QByteArray &name, int error);

    FilePath m_location;
    const MayRemove &m_mayRemove;
    RemovalRecord &m_record;
    FolderStack m_stack;
    std::vector<Frame> m_frames;
    bool m_failed = false;
};

} // namespace Quillmere
