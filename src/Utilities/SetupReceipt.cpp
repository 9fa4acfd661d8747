#include "Utilities/SetupReceipt.h"

namespace Quillmere {

namespace {

const QString hasSeenWelcome = u"hasSeenWelcome"_qs;
const QString forceWelcome = u"setup.forceWelcomeAfterInstall"_qs;
const QString signature = u"setup.installSignature"_qs;
const QString completedDate = u"setup.completedDate"_qs;

} // namespace

SetupReceipt::SetupReceipt(std::shared_ptr<UserDefaults> defaults, std::shared_ptr<const Bundles> bundles,
                           std::shared_ptr<const Clock> clock, InstallerTerms terms)
    : m_defaults(std::move(defaults))
    , m_bundles(std::move(bundles))
    , m_clock(std::move(clock))
    , m_terms(std::move(terms))
{
}

bool SetupReceipt::shouldShowWelcome() const
{
    m_defaults->setBoolean(forceWelcome, false);
    if (!m_defaults->boolean(hasSeenWelcome))
        return true;
    return m_defaults->string(signature) != installSignature(m_bundles->open(m_bundles->mainLocation()));
}

void SetupReceipt::markCompleted() const
{
    markCompleted(m_bundles->mainLocation());
}

void SetupReceipt::markCompleted(const FilePath &location) const
{
    m_defaults->setBoolean(hasSeenWelcome, true);
    m_defaults->setBoolean(forceWelcome, false);
    m_defaults->setString(signature, installSignature(m_bundles->open(location)));
    m_defaults->setDate(completedDate, m_clock->now());
    std::ignore = m_terms.writeFinalInstallationFile();
}

QString SetupReceipt::installSignature(const std::optional<Bundle> &bundle)
{
    const QString version = bundle ? bundle->shortVersion.value_or(u"dev"_qs) : u"dev"_qs;
    const QString build = bundle ? bundle->build.value_or(u"0"_qs) : u"0"_qs;
    return version + u'|' + build;
}

} // namespace Quillmere
