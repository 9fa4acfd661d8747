#pragma once

#include "Platform/Linux/Walk/FolderReader.h"

namespace Quillmere {

/// Adds up the regular files.
class TreeMeasurer final : public FolderReader
{
public:
    explicit TreeMeasurer(const Cancellation &cancellation);

    bool takeIn(const DirectoryBuffer &entries, const WalkFolder &folder, NameList &subfolders) override;

private:
    /// Asks for one entry whose kind is that of a file or not known.
    void ask(const char *name, int folder, NameList &subfolders);

    const Cancellation &m_cancellation;
};

} // namespace Quillmere
