#pragma once

#include "Platform/Linux/Files/RuntimeFolder.h"

namespace Quillmere {

/// That udisks2 has kept somebody waiting in vain, known for some seconds to all programs of a user: of the many
/// questions of one listing, which several programs ask, one alone waits.
class DiskServiceSilence
{
public:
    static constexpr int seconds = 3;

    explicit DiskServiceSilence(RuntimeFolder folder);
    /// That of the user we run as.
    [[nodiscard]] static DiskServiceSilence ofThisUser();

    [[nodiscard]] bool isRecent() const;
    void remember() const;

private:
    RuntimeFolder m_folder;
    FilePath m_file; ///< Its time of modification says since when.
};

} // namespace Quillmere
