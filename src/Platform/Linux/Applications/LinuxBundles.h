#pragma once

#include "Platform/Bundle.h"

namespace Quillmere {

/// Bundles as folders with a `Contents/Info.plist`. A folder without one, or with one that is not a property list, is a
/// bundle that says nothing of itself.
class LinuxBundles final : public Bundles
{
public:
    /// @p program is where the running program lies.
    explicit LinuxBundles(const FilePath &program = runningProgram());

    /// Empty where the kernel does not tell.
    [[nodiscard]] static FilePath runningProgram();

    [[nodiscard]] FilePath mainLocation() const override { return m_mainLocation; }
    [[nodiscard]] std::optional<Bundle> open(const FilePath &location) const override;

private:
    FilePath m_mainLocation;
};

} // namespace Quillmere
