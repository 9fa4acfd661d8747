#include "ViewModels/StartupViewModel.h"

#include "Utilities/Attempt.h"
#include "Utilities/BackgroundWork.h"
#include "Utilities/LocalizationManager.h"
#include "ViewModels/DesktopRequests.h"

namespace Quillmere {

StartupViewModel::StartupViewModel(StartupService service, std::shared_ptr<const Workspace> workspace, QObject *parent)
    : QObject(parent)
    , m_service(std::move(service))
    , m_workspace(std::move(workspace))
{
}

QCoro::Task<> StartupViewModel::loadItems()
{
    const QPointer self(this);
    const std::stop_token load = m_loading.begin();
    setIsLoading(true);
    setErrorMessage({});
    auto loading
        = inBackground([service = m_service] { return attempted([&] { return service.loadStartupItems(); }); });
    const Result<QList<StartupItem>> result = co_await loading;
    if (!self || !m_loading.isLatest(load))
        co_return;
    if (result) {
        m_rows.setItems(result.value());
        Q_EMIT itemsChanged();
    } else {
        setErrorMessage(localized(u"startup.loadError"_qs));
    }
    setIsLoading(false);
}

QCoro::Task<> StartupViewModel::toggleItem(StartupItem item)
{
    std::optional<StartupError> error;
    if (m_service.isSwitchedByOthers(item)) {
        const QPointer self(this);
        auto switching
            = inBackground([service = m_service, item] { return service.toggleItem(item, !item.isEnabled); });
        error = co_await switching;
        if (!self)
            co_return;
    } else {
        error = m_service.toggleItem(item, !item.isEnabled);
    }
    if (error) {
        setErrorMessage(localized(u"startup.changeError"_qs));
        co_return;
    }
    QCoro::Task<> loading = loadItems();
    co_await loading;
}

void StartupViewModel::toggle(int row)
{
    if (showsRow(row))
        toggleItem(items().at(row));
}

void StartupViewModel::revealInFinder(const StartupItem &item) const
{
    revealWithoutWaiting(m_workspace, item.path);
}

void StartupViewModel::setIsLoading(bool isLoading)
{
    m_isLoading = isLoading;
    Q_EMIT isLoadingChanged();
}

void StartupViewModel::setErrorMessage(const std::optional<QString> &message)
{
    m_errorMessage = message;
    Q_EMIT errorMessageChanged();
}

} // namespace Quillmere
