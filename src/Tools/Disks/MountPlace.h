#pragma once

#include "Platform/Linux/Files/FileDescriptor.h"
#include "Values/FilePath.h"
#include "Values/Result.h"

#include <QList>

namespace Quillmere {

/// An empty folder for a mount, in one that nobody but root can change, so that it stays what it was seen to be.
class MountPlace
{
public:
    /// @p place must stand one or two levels below one of @p folders. It is made where it is missing; no link is
    /// followed on the way. Fails with Protected for any other place.
    [[nodiscard]] static Result<MountPlace> make(const FilePath &place, const QList<FilePath> &folders);

    [[nodiscard]] const FilePath &path() const { return m_path; }
    /// Takes away a folder that was made, as long as it is empty and nothing is mounted there.
    void takeBack() const;

private:
    MountPlace(FilePath path, FileDescriptor parent, bool wasMade);

    FilePath m_path;
    FileDescriptor m_parent;
    bool m_wasMade = false;
};

} // namespace Quillmere
