#pragma once

#include "Platform/Bundle.h"
#include "Platform/Clock.h"
#include "Platform/UserDefaults.h"
#include "Utilities/InstallerTerms.h"

#include <memory>

namespace Quillmere {

/// Remembers which version of the program has been set up for this user. GUI thread only.
class SetupReceipt
{
public:
    SetupReceipt(std::shared_ptr<UserDefaults> defaults, std::shared_ptr<const Bundles> bundles,
                 std::shared_ptr<const Clock> clock, InstallerTerms terms);

    /// True before the first setup, and once for each version after it.
    [[nodiscard]] bool shouldShowWelcome() const;
    /// For the version that is running. Writes the conditions file too.
    void markCompleted() const;
    /// The same for the version of the bundle at @p location.
    void markCompleted(const FilePath &location) const;

    /// What tells one version from another. A bundle that does not say, or is none, counts as "dev", build "0".
    [[nodiscard]] static QString installSignature(const std::optional<Bundle> &bundle);

private:
    std::shared_ptr<UserDefaults> m_defaults;
    std::shared_ptr<const Bundles> m_bundles;
    std::shared_ptr<const Clock> m_clock;
    InstallerTerms m_terms;
};

} // namespace Quillmere
