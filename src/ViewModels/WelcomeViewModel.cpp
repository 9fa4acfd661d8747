#include "ViewModels/WelcomeViewModel.h"

#include "Services/AdvertisementService.h"
#include "Utilities/Deployment.h"
#include "Utilities/LocalizationManager.h"
#include "Utilities/PromotionalHost.h"
#include "ViewModels/DesktopRequests.h"

#include <QFile>

#include <algorithm>
#include <array>
#include <chrono>

namespace Quillmere {

namespace {

constexpr std::chrono::milliseconds betweenAdvances{400};
constexpr std::chrono::milliseconds untilPortableStart{2000};

// In the order in which they are offered; a language that follows the desktop's is not.
constexpr std::array offered = {Language::English, Language::Spanish, Language::Russian};

/// What a tick adds below a bound of the progress, and what it then says.
struct Advance
{
    double below;
    double step;
    const char16_t *status;
};
constexpr std::array advances = {
    Advance{0.3, 0.1, u"copying"},
    Advance{0.6, 0.15, u"registering"},
    Advance{0.9, 0.1, u"configuring"},
};

} // namespace

WelcomeViewModel::WelcomeViewModel(Parts parts, QObject *parent)
    : QObject(parent)
    , m_parts(std::move(parts))
    , m_drivers(m_parts.drivers, DriversViewModel::First::Outcome)
{
    m_progressTimer.setInterval(betweenAdvances);
    m_portableTimer.setInterval(untilPortableStart);
    m_portableTimer.setSingleShot(true);
    connect(&m_progressTimer, &QTimer::timeout, this, &WelcomeViewModel::advance);
    connect(&m_portableTimer, &QTimer::timeout, this, &WelcomeViewModel::finished);
}

QStringList WelcomeViewModel::languages() const
{
    QStringList names;
    for (const Language language : offered)
        names.append(displayName(language));
    return names;
}

int WelcomeViewModel::languageIndex() const
{
    return int(std::ranges::find(offered, m_selectedLanguage) - offered.begin());
}

QString WelcomeViewModel::installStatusText() const
{
    return m_status.isEmpty() ? QString() : text(m_status);
}

QString WelcomeViewModel::logoFile() const
{
    const FilePath file = m_parts.bundles->mainLocation().appending("Contents/Resources/app_logo.png");
    return m_parts.files->fileExists(file) ? QFile::decodeName(file.bytes()) : u":/icon/quillmere.svg"_qs;
}

QString WelcomeViewModel::text(const QString &key) const
{
    return LocalizationTable::setup().textOrEnglish(key, rawValue(m_selectedLanguage)).value_or(key);
}

void WelcomeViewModel::appear()
{
    m_drivers.check();
    Localizer &localizer = Localizer::shared();
    setSelectedLanguage(localizer.effectiveLanguage());
    if (localizer.language() == Language::System)
        localizer.setLanguage(m_selectedLanguage);
}

void WelcomeViewModel::selectLanguage(int index)
{
    if (index < 0 || index >= int(offered.size()))
        return;
    setSelectedLanguage(offered[static_cast<size_t>(index)]);
    Localizer::shared().setLanguage(m_selectedLanguage);
}

void WelcomeViewModel::next()
{
    if (m_currentStep < installStep)
        setStep(m_currentStep + 1);
}

void WelcomeViewModel::back()
{
    if (m_currentStep > 1 && m_currentStep < installStep)
        setStep(m_currentStep - 1);
}

void WelcomeViewModel::runWithoutInstalling()
{
    Q_EMIT finished();
}

void WelcomeViewModel::startInstallation()
{
    setProgress(0);
    setStatus(u"preparing"_qs);
    m_progressTimer.start();
}

void WelcomeViewModel::advance()
{
    for (const Advance &each : advances) {
        if (m_installProgress < each.below) {
            setProgress(m_installProgress + each.step);
            setStatus(QString::fromUtf16(each.status));
            return;
        }
    }
    m_progressTimer.stop();
    copyToApplications();
}

void WelcomeViewModel::copyToApplications()
{
    const std::optional<FilePath> destination = m_parts.installer.copyToApplications();
    if (!destination) {
        setStatus(u"portable"_qs);
        m_portableTimer.start();
        return;
    }
    m_installedDestinationText = destination->displayText();
    Q_EMIT installedDestinationTextChanged();
    setProgress(1);
    setStatus(u"done"_qs);
    setStep(lastStep);
}

void WelcomeViewModel::launch()
{
    m_parts.receipt.markCompleted();
    Q_EMIT finished();
}

void WelcomeViewModel::openMakerPage() const
{
    openWithoutWaiting(m_parts.workspace, Deployment::makerPage());
}

void WelcomeViewModel::openPromotionPage() const
{
    const QUrl home(u"https://"_qs + promotionalHost() + u'/');
    const QUrl page = AdvertisementService::localizedAdURL(home, m_selectedLanguage);
    openWithoutWaiting(m_parts.workspace, page);
}

void WelcomeViewModel::setStep(int step)
{
    m_currentStep = step;
    Q_EMIT currentStepChanged();
}

void WelcomeViewModel::setProgress(double progress)
{
    m_installProgress = progress;
    Q_EMIT installProgressChanged();
}

void WelcomeViewModel::setStatus(const QString &key)
{
    m_status = key;
    Q_EMIT installStatusTextChanged();
}

void WelcomeViewModel::setSelectedLanguage(Language language)
{
    m_selectedLanguage = language;
    Q_EMIT selectedLanguageChanged();
    Q_EMIT installStatusTextChanged();
}

} // namespace Quillmere
