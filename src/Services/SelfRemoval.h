#pragma once

#include "Platform/Bundle.h"
#include "Platform/FileManager.h"
#include "Platform/Places.h"
#include "Platform/ProcessRunner.h"
#include "Platform/Workspace.h"

#include <memory>

namespace Quillmere {

/// Removes the program from this machine with all that it has stored for the user. Copied like a value.
class SelfRemoval
{
public:
    struct Parts
    {
        std::shared_ptr<const FileManager> files;
        std::shared_ptr<const Places> places;
        std::shared_ptr<const Bundles> bundles;
        std::shared_ptr<const ProcessRunner> processes;
        std::shared_ptr<const Workspace> workspace;
    };

    explicit SelfRemoval(Parts parts);

    /// Deletes the data and leaves the bundle to a script that waits a second, so that the program must end at once.
    /// What cannot be deleted stays without a word; there is no way back. A bundle whose path a shell would misread
    /// stays too, which one line on the standard output says.
    void run() const;

private:
    void removeData() const;
    void removeItem(const FilePath &item) const;
    void leaveBundleToScript(const FilePath &bundle) const;

    Parts m_parts;
};

} // namespace Quillmere
