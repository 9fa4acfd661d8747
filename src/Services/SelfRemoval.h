#pragma once

#include "Platform/Bundle.h"
#include "Platform/FileManager.h"
#include "Platform/Places.h"
#include "Platform/ProcessRunner.h"

#include <memory>

namespace Quillmere {

/// Removes the program from this machine with all that it has stored for the user. Copied like a value.
class SelfRemoval
{
public:
    SelfRemoval(std::shared_ptr<const FileManager> files, std::shared_ptr<const Places> places,
                std::shared_ptr<const Bundles> bundles, std::shared_ptr<const ProcessRunner> processes);

    /// Deletes the data and leaves the bundle to a script that waits a second, so that the program must end at once.
    /// What cannot be deleted stays without a word; there is no way back. A bundle whose path a shell would misread
    /// stays too, which one line on the standard output says.
    void run() const;

private:
    void removeData() const;
    void removeItem(const FilePath &item) const;
    void leaveBundleToScript(const FilePath &bundle) const;

    std::shared_ptr<const FileManager> m_files;
    std::shared_ptr<const Places> m_places;
    std::shared_ptr<const Bundles> m_bundles;
    std::shared_ptr<const ProcessRunner> m_processes;
};

} // namespace Quillmere
