#pragma once

#include "Platform/Linux/FileDescriptor.h"
#include "Platform/Linux/FolderReader.h"

#include <functional>
#include <string>
#include <vector>

namespace Quillmere {

/// Measures a tree when the process has no descriptor left: in a thread that has a table of descriptors of its own,
/// with two folders open at a time. Slower, since a folder is opened again to go on with it, but nothing of the tree is
/// lost.
class ScarceWalk
{
public:
    /// The tree whose root is @p folder; zero as for measureTree().
    [[nodiscard]] static TreeSize of(const FilePath &folder, const Cancellation &cancellation);
    /// The tree whose root is the folder @p name in @p parent.
    [[nodiscard]] static TreeSize below(int parent, const char *name, const Cancellation &cancellation);

private:
    using Opening = std::function<FileDescriptor()>;

    /// A folder between the root and the one that is read.
    struct Level
    {
        std::string name; ///< Empty for the root.
        NameList subfolders;
    };

    ScarceWalk(Opening openRoot, const Cancellation &cancellation);

    /// @p kept is the one descriptor of the process that the opening needs, or -1.
    [[nodiscard]] static TreeSize measure(const Opening &openRoot, int kept, const Cancellation &cancellation);
    void run();
    void goOn();
    [[nodiscard]] FileDescriptor openPatiently(const Opening &open) const;
    [[nodiscard]] FileDescriptor openNewestLevel() const;
    /// Reads the whole of @p folder and goes on in it if it has sub-folders.
    void enter(FileDescriptor folder, std::string name);

    const Opening m_openRoot;
    const Cancellation &m_cancellation;
    FolderReader m_reader;
    DirectoryBuffer m_buffer;
    std::vector<Level> m_levels;
    FileDescriptor m_folder; ///< That of the newest level; closed while another is on its way back to it.
};

} // namespace Quillmere
