#pragma once

#include "Platform/Linux/Files/RuntimeFolder.h"
#include "Tools/ps/LoadSample.h"

namespace Quillmere {

/// Keeps the last sample from one call of the program to the next, for this user alone.
class SampleStore
{
public:
    explicit SampleStore(RuntimeFolder folder);

    [[nodiscard]] std::optional<LoadSample> load() const;
    /// Whoever looks meanwhile finds the old sample or the new one. A sample that cannot be kept is just missing.
    void keep(const LoadSample &sample) const;

private:
    RuntimeFolder m_folder;
    FilePath m_file;
};

} // namespace Quillmere
