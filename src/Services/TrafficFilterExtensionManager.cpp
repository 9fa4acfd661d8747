#include "Services/TrafficFilterExtensionManager.h"

#include <utility>

namespace Quillmere {

TrafficFilterExtensionManager::TrafficFilterExtensionManager(std::shared_ptr<const Bundles> bundles,
                                                             std::shared_ptr<const FileManager> files,
                                                             std::shared_ptr<SystemExtensionManager> extensions)
    : m_bundles(std::move(bundles))
    , m_files(std::move(files))
    , m_extensions(std::move(extensions))
{
}

std::optional<QString> TrafficFilterExtensionManager::validateBundledExtension() const
{
    const FilePath application = m_bundles->mainLocation().standardized();
    const FilePath location = application.appending("Contents/Library/SystemExtensions")
                                  .appending(extensionIdentifier().toUtf8() + ".systemextension");
    if (!m_files->fileExists(location)) {
        return u"The traffic-filter extension is missing from this application copy at "_qs + application.displayText()
            + u". Install version 1.3.4 from the signed PKG into /Applications and launch that copy."_qs;
    }
    const std::optional<Bundle> bundle = m_bundles->open(location);
    if (!bundle || bundle->identifier != extensionIdentifier()) {
        return u"The bundled traffic-filter extension is invalid or has an unexpected identifier. Reinstall Quillmere "
               "1.3.4 from the signed PKG."_qs;
    }
    if (!bundle->executable || !m_files->isExecutableFile(*bundle->executable)) {
        return u"The bundled traffic-filter executable is missing or cannot be executed. Reinstall Quillmere 1.3.4 "
               "from the signed PKG."_qs;
    }
    return std::nullopt;
}

QCoro::Task<TrafficFilterExtensionManager::ActivationResult> TrafficFilterExtensionManager::activateIfNeeded()
{
    if (const std::optional<QString> problem = validateBundledExtension())
        co_return ActivationResult{ActivationResult::Kind::Failed, *problem};
    if (m_continuation)
        co_return ActivationResult{ActivationResult::Kind::AwaitingUserApproval, {}};

    const Continuation<ActivationResult> answer;
    m_continuation = answer;
    m_hasCompletedRequest = false;
    m_extensions->submitActivation(extensionIdentifier(), *this);
    co_return co_await answer;
}

void TrafficFilterExtensionManager::requestNeedsUserApproval()
{
    complete({ActivationResult::Kind::AwaitingUserApproval, {}});
}

ReplacementAction TrafficFilterExtensionManager::actionForReplacingExtension()
{
    return ReplacementAction::Replace;
}

void TrafficFilterExtensionManager::requestDidFinish(ActivationFinish)
{
    complete({ActivationResult::Kind::Active, {}});
}

void TrafficFilterExtensionManager::requestDidFail(const QString &description)
{
    complete({ActivationResult::Kind::Failed, description});
}

void TrafficFilterExtensionManager::complete(const ActivationResult &result)
{
    if (std::exchange(m_hasCompletedRequest, true))
        return;
    if (const auto waiting = std::exchange(m_continuation, std::nullopt))
        waiting->resume(result);
}

} // namespace Quillmere
