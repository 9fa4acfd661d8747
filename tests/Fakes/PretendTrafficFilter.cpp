#include "Fakes/PretendTrafficFilter.h"

#include <QCoreApplication>
#include <QTimer>

#include <utility>

namespace Quillmere {

void PretendSystemExtensionManager::submitActivation(const QString &identifier,
                                                     SystemExtensionRequestDelegate &requester)
{
    submitted.append(identifier);
    delegate = &requester;
    if (habit == Habit::Wait)
        return;
    QTimer::singleShot(0, QCoreApplication::instance(), [this, asked = habit] {
        if (asked == Habit::Finish)
            delegate->requestDidFinish(ActivationFinish::Completed);
        else if (asked == Habit::NeedApproval)
            delegate->requestNeedsUserApproval();
        else
            delegate->requestDidFail(reason);
    });
}

void PretendFilterManager::loadFromPreferences(Completion completion)
{
    answer([this, completion = std::move(completion)] {
        if (!loadError) {
            const Saved current = saves.isEmpty() ? Saved() : saves.last();
            providerConfiguration = current.configuration;
            localizedDescription = current.localizedDescription;
            isEnabled = current.isEnabled;
        }
        completion(loadError);
    });
}

void PretendFilterManager::saveToPreferences(Completion completion)
{
    answer([this, completion = std::move(completion)] {
        if (!saveError)
            saves.append({providerConfiguration, localizedDescription, isEnabled});
        completion(saveError);
    });
}

void PretendFilterManager::answer(std::function<void()> completion)
{
    if (m_isHolding)
        m_held.append(std::move(completion));
    else
        QTimer::singleShot(0, QCoreApplication::instance(), std::move(completion));
}

void PretendFilterManager::releaseAll()
{
    m_isHolding = false;
    for (const std::function<void()> &completion : std::exchange(m_held, {}))
        completion();
}

} // namespace Quillmere
