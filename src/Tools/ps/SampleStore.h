#pragma once

#include "Tools/ps/LoadSample.h"
#include "Values/FilePath.h"

namespace Quillmere {

/// Keeps the last sample from one call of the program to the next, for this user alone.
class SampleStore
{
public:
    /// @p runtimeFolder is the user's folder for what need not outlive the session. One that is empty, relative,
    /// another user's, or open to others keeps nothing.
    explicit SampleStore(FilePath runtimeFolder);

    [[nodiscard]] std::optional<LoadSample> load() const;
    /// Whoever looks meanwhile finds the old sample or the new one. A sample that cannot be kept is just missing.
    void keep(const LoadSample &sample) const;

private:
    [[nodiscard]] bool isOurs(const FilePath &path, mode_t kind) const;

    FilePath m_runtimeFolder;
    FilePath m_folder;
    FilePath m_file;
};

} // namespace Quillmere
