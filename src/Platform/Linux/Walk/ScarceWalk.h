#pragma once

#include "Platform/Linux/Walk/Walk.h"

#include <functional>
#include <string>
#include <vector>

namespace Quillmere {

/// Walks through a tree when the process has no descriptor left: in a thread that has a table of descriptors of its
/// own, with two folders open at a time. Slower, since a folder is opened again to go on with it, but nothing of the
/// tree is lost.
class ScarceWalk
{
public:
    /// The tree whose root is @p folder; nothing as for measureTree().
    /// @p path is what WalkFolder::path says of it.
    [[nodiscard]] static WalkFindings of(const FilePath &folder, const QByteArray &path, const Walk &walk);
    /// The tree whose root is the folder @p name in @p parent.
    [[nodiscard]] static WalkFindings below(const WalkFolder &parent, const char *name, const Walk &walk);

private:
    using Opening = std::function<FileDescriptor()>;

    /// A folder between the root and the one that is read.
    struct Level
    {
        std::string name; ///< Empty for the root.
        QByteArray path; ///< As WalkFolder::path.
        NameList subfolders;
    };

    ScarceWalk(Opening openRoot, const Walk &walk);

    /// @p kept is the one descriptor of the process that the opening needs, or -1.
    [[nodiscard]] static WalkFindings walkFrom(const Opening &openRoot, int kept, const QByteArray &path,
                                               const Walk &walk);
    void run(const QByteArray &path);
    void goOn();
    [[nodiscard]] FileDescriptor openPatiently(const Opening &open);
    [[nodiscard]] FileDescriptor openNewestLevel();
    /// Reads the whole of the folder and goes on in it if it has sub-folders.
    void enter(FileDescriptor descriptor, std::string name, const QByteArray &path);

    const Opening m_openRoot;
    const Cancellation &m_cancellation;
    const std::unique_ptr<FolderReader> m_reader;
    DirectoryBuffer m_buffer;
    std::vector<Level> m_levels;
    bool m_hasLeftOut = false; ///< Asked to stop, with something still to be done.
    WalkFolder m_folder; ///< That of the newest level; closed while another is on its way back to it.
};

} // namespace Quillmere
