#pragma once

#include "Platform/FilterManager.h"
#include "Platform/SystemExtensionManager.h"

#include <QList>
#include <QStringList>

namespace Quillmere {

/// A system that answers requests for extensions when it is told to.
class PretendSystemExtensionManager final : public SystemExtensionManager
{
public:
    /// What is done with a request as soon as the main queue comes to it.
    enum class Habit { Wait, Finish, NeedApproval, Fail };

    Habit habit = Habit::Finish;
    QString reason = u"The extension was refused."_qs; ///< Of Habit::Fail.
    QStringList submitted; ///< Identifiers, in their order.
    SystemExtensionRequestDelegate *delegate = nullptr; ///< Of the latest request.

    void submitActivation(const QString &identifier, SystemExtensionRequestDelegate &delegate) override;
};

/// The record of a traffic filter that keeps what it is given, or refuses to.
class PretendFilterManager final : public FilterManager
{
public:
    /// What the system itself holds.
    struct Saved
    {
        std::optional<FilterProviderConfiguration> configuration;
        QString localizedDescription;
        bool isEnabled = false;

        bool operator==(const Saved &) const = default;
    };

    std::optional<QString> loadError;
    std::optional<QString> saveError;
    QList<Saved> saves; ///< Each that was accepted, in their order.

    /// From now on completions wait for releaseAll().
    void hold() { m_isHolding = true; }
    void releaseAll();

    void loadFromPreferences(Completion completion) override;
    void saveToPreferences(Completion completion) override;

private:
    void answer(std::function<void()> completion);

    bool m_isHolding = false;
    QList<std::function<void()>> m_held;
};

} // namespace Quillmere
