#pragma once

#include "Platform/Linux/Files/FileDescriptor.h"
#include "Platform/Linux/Files/FileIdentity.h"

#include <QByteArray>

#include <vector>

namespace Quillmere {

/// The folders from one where a walk began down to where it stands. Only the deepest are held open, so that no depth
/// uses up the descriptors; the way back up to a closed one is "..", taken only if it leads to the same folder.
/// Never leads through a link or into another mount.
class FolderStack
{
public:
    /// Stands in @p bottom, which stays the caller's and must stay open.
    explicit FolderStack(int bottom);

    [[nodiscard]] int current() const;
    [[nodiscard]] size_t depth() const { return m_folders.size(); }

    /// Goes into @p folder, readable, which was opened relative to current().
    void enter(FileDescriptor folder);
    /// Goes up. 0, or the error number because of which the stack now stands nowhere: ESTALE when somebody has moved
    /// the folder elsewhere meanwhile.
    [[nodiscard]] int leave();

private:
    struct Folder
    {
        FileDescriptor descriptor;
        FileIdentity identity; ///< Known once the descriptor was closed.
    };

    void closeTheHighest();

    int m_bottom;
    std::vector<Folder> m_folders;
    size_t m_closed = 0; ///< The first so many of m_folders are closed.
};

} // namespace Quillmere
