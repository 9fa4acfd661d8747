#include "Platform/Linux/Removal/FolderStack.h"

#include "Platform/Linux/Files/OpenAt.h"

#include <cerrno>
#include <fcntl.h>

namespace Quillmere {

namespace {

constexpr size_t mostHeldOpen = 32;

} // namespace

FolderStack::FolderStack(int bottom)
    : m_bottom(bottom)
{
}

int FolderStack::current() const
{
    return m_folders.empty() ? m_bottom : m_folders.back().descriptor.number();
}

void FolderStack::enter(FileDescriptor folder)
{
    m_folders.push_back({std::move(folder), {}});
    if (m_folders.size() - m_closed > mostHeldOpen)
        closeTheHighest();
}

int FolderStack::leave()
{
    const Folder left = std::move(m_folders.back());
    m_folders.pop_back();
    if (m_folders.empty() || m_folders.size() > m_closed)
        return 0;
    Folder &parent = m_folders.back();
    --m_closed;
    parent.descriptor = openAt(left.descriptor.number(), "..", O_RDONLY | O_DIRECTORY, RESOLVE_NO_XDEV);
    struct stat status = {};
    if (!parent.descriptor.isOpen() || ::fstat(parent.descriptor.number(), &status) != 0)
        return errno;
    return FileIdentity::of(status) == parent.identity ? 0 : ESTALE;
}

void FolderStack::closeTheHighest()
{
    Folder &highest = m_folders[m_closed];
    struct stat status = {};
    if (::fstat(highest.descriptor.number(), &status) != 0)
        return;
    highest.identity = FileIdentity::of(status);
    highest.descriptor = FileDescriptor();
    ++m_closed;
}

} // namespace Quillmere
