#pragma once

#include "Platform/Bundle.h"

#include <QHash>

namespace Quillmere {

/// Bundles that say what they were told to.
class PretendBundles final : public Bundles
{
public:
    FilePath main = FilePath("/Applications/Quillmere.app");

    void add(const Bundle &bundle) { m_bundles.insert(bundle.location, bundle); }

    [[nodiscard]] FilePath mainLocation() const override { return main; }
    [[nodiscard]] std::optional<Bundle> open(const FilePath &location) const override
    {
        const auto found = m_bundles.constFind(location);
        return found == m_bundles.constEnd() ? std::nullopt : std::optional(*found);
    }

private:
    QHash<FilePath, Bundle> m_bundles;
};

} // namespace Quillmere
