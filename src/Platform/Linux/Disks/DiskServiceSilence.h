#pragma once

#include "Values/FilePath.h"

namespace Quillmere {

/// That udisks2 has kept somebody waiting in vain, known for some seconds to all programs of a user: of the many
/// questions of one listing, which several programs ask, one alone waits.
class DiskServiceSilence
{
public:
    static constexpr int seconds = 3;

    /// @p runtimeFolder the user's folder for what need not outlive the session. In one that is not there, or that
    /// others may write into, nothing is remembered.
    explicit DiskServiceSilence(const FilePath &runtimeFolder);
    /// That of the user we run as.
    [[nodiscard]] static DiskServiceSilence ofThisUser();

    [[nodiscard]] bool isRecent() const;
    void remember() const;

private:
    FilePath m_runtimeFolder;
    FilePath m_file; ///< Its time of modification says since when.
};

} // namespace Quillmere
