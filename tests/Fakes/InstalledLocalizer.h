#pragma once

#include "Fakes/PretendUserDefaults.h"
#include "Utilities/LocalizationManager.h"

namespace Quillmere {

/// A Localizer of a test's own, shared while it lives. Starts in English, whatever the desktop speaks.
class InstalledLocalizer
{
public:
    explicit InstalledLocalizer(std::shared_ptr<UserDefaults> defaults = std::make_shared<PretendUserDefaults>())
        : m_localizer(std::move(defaults), [this] { return m_desktopLanguage; })
    {
        SharedInstance<Localizer>::install(&m_localizer);
    }
    ~InstalledLocalizer() { SharedInstance<Localizer>::install(nullptr); }
    Q_DISABLE_COPY_MOVE(InstalledLocalizer)

    Localizer *operator->() { return &m_localizer; }
    /// From now on the desktop speaks the language of that code.
    void speakOnDesktop(const QString &code) { m_desktopLanguage = code; }

private:
    QString m_desktopLanguage = u"en"_qs;
    Localizer m_localizer;
};

} // namespace Quillmere
