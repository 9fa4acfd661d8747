#pragma once

#include <QString>

namespace Quillmere {

/// What the system may do with an extension of the same identifier that is installed already.
enum class ReplacementAction { Cancel, Replace };

/// How an activation ended.
enum class ActivationFinish { Completed, WillCompleteAfterReboot };

/// Is told how a request goes on. Every call comes on the GUI thread, and never from within submitActivation().
class SystemExtensionRequestDelegate
{
public:
    virtual ~SystemExtensionRequestDelegate() = default;

    /// The user has to allow the extension; the request stays open.
    virtual void requestNeedsUserApproval() = 0;
    [[nodiscard]] virtual ReplacementAction actionForReplacingExtension() = 0;
    virtual void requestDidFinish(ActivationFinish finish) = 0;
    /// @p description is the system's own sentence.
    virtual void requestDidFail(const QString &description) = 0;
};

/// Asks the system to bring its extensions into the active state. GUI thread only.
class SystemExtensionManager
{
public:
    virtual ~SystemExtensionManager() = default;

    /// @p delegate must outlive the manager. Asking for what is active already finishes soon.
    virtual void submitActivation(const QString &identifier, SystemExtensionRequestDelegate &delegate) = 0;
};

} // namespace Quillmere
