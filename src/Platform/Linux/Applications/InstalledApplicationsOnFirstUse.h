#pragma once

#include "Platform/InstalledApplications.h"
#include "Platform/Linux/OnFirstUse.h"

namespace Quillmere {

/// Installed applications that are looked for from when somebody first asks for them.
class InstalledApplicationsOnFirstUse final : public InstalledApplications
{
public:
    explicit InstalledApplicationsOnFirstUse(OnFirstUse<InstalledApplications>::Maker make)
        : m_applications(std::move(make))
    {
    }

    [[nodiscard]] QList<ListedApplication> applications() const override { return m_applications->applications(); }
    [[nodiscard]] QList<FilePath> leftoversOf(const ListedApplication &application) const override
    {
        return m_applications->leftoversOf(application);
    }
    [[nodiscard]] Result<void> uninstall(const ListedApplication &application) const override
    {
        return m_applications->uninstall(application);
    }

private:
    OnFirstUse<InstalledApplications> m_applications;
};

} // namespace Quillmere
