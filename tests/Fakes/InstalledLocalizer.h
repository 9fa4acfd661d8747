#pragma once

#include "Fakes/PretendUserDefaults.h"
#include "Utilities/LocalizationManager.h"

namespace Quillmere {

/// A Localizer of a test's own, shared while it lives. Starts in English, whatever the desktop speaks.
class InstalledLocalizer
{
public:
    explicit InstalledLocalizer(std::shared_ptr<UserDefaults> defaults = std::make_shared<PretendUserDefaults>())
        : m_localizer(std::move(defaults), [] { return u"en"_qs; })
    {
        SharedInstance<Localizer>::install(&m_localizer);
    }
    ~InstalledLocalizer() { SharedInstance<Localizer>::install(nullptr); }
    Q_DISABLE_COPY_MOVE(InstalledLocalizer)

    Localizer *operator->() { return &m_localizer; }

private:
    Localizer m_localizer;
};

} // namespace Quillmere
