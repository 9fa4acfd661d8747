#pragma once

#include "Platform/Bundle.h"
#include "Platform/FileManager.h"
#include "Platform/SystemExtensionManager.h"
#include "Utilities/Continuation.h"
#include "Values/SharedInstance.h"

#include <QCoro/QCoroTask>

#include <memory>
#include <optional>

namespace Quillmere {

/// Brings the traffic filter's extension into the active state, or says why that cannot be. GUI thread only.
class TrafficFilterExtensionManager final : public SystemExtensionRequestDelegate
{
public:
    struct ActivationResult
    {
        enum class Kind { Failed, Active, AwaitingUserApproval };

        Kind kind = Kind::Failed;
        QString message; ///< For people, in English. Of Failed alone.

        bool operator==(const ActivationResult &) const = default;
    };

    /// What the extension calls itself.
    [[nodiscard]] static QString extensionIdentifier() { return u"com.veltrane.quillmere.traffic-filter"_qs; }

    TrafficFilterExtensionManager(std::shared_ptr<const Bundles> bundles, std::shared_ptr<const FileManager> files,
                                  std::shared_ptr<SystemExtensionManager> extensions);

    [[nodiscard]] static TrafficFilterExtensionManager &shared()
    {
        return SharedInstance<TrafficFilterExtensionManager>::get();
    }

    /// Waits for as long as the system takes. While one call waits, each further one is told to wait for the user.
    [[nodiscard]] QCoro::Task<ActivationResult> activateIfNeeded();

    /// The running request has given its one answer. False before the first.
    [[nodiscard]] bool hasCompletedRequest() const { return m_hasCompletedRequest; }

    void requestNeedsUserApproval() override;
    [[nodiscard]] ReplacementAction actionForReplacingExtension() override;
    void requestDidFinish(ActivationFinish finish) override;
    void requestDidFail(const QString &description) override;

private:
    /// What to tell the user, nothing when the extension is sound.
    [[nodiscard]] std::optional<QString> validateBundledExtension() const;
    void complete(const ActivationResult &result);

    std::shared_ptr<const Bundles> m_bundles;
    std::shared_ptr<const FileManager> m_files;
    std::shared_ptr<SystemExtensionManager> m_extensions;
    std::optional<Continuation<ActivationResult>> m_continuation; ///< Present while a caller waits.
    bool m_hasCompletedRequest = false;
};

} // namespace Quillmere
