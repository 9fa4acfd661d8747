#pragma once

#include "Platform/Linux/Files/FileDescriptor.h"
#include "Platform/OpenFolder.h"

namespace Quillmere {

/// An OpenFolder of this machine.
class FolderOnDisk final : public OpenFolder
{
public:
    /// @p folder is open for reading, or O_PATH where it may not be read.
    explicit FolderOnDisk(FileDescriptor folder);

    /// The folder @p name in the folder @p parent; none where openSubfolder() opens nothing.
    [[nodiscard]] static std::unique_ptr<OpenFolder> below(int parent, const QByteArray &name);

    [[nodiscard]] bool holds(const QByteArray &name) const override;
    [[nodiscard]] std::unique_ptr<OpenFolder> enter(const QByteArray &name) const override;
    void forEach(const Take &take) override;

private:
    FileDescriptor m_folder;
};

} // namespace Quillmere
