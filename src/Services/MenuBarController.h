#pragma once

#include "App/AppState.h"
#include "Platform/StatusItem.h"
#include "Services/MenuBarStatusService.h"
#include "Services/PowerManagementService.h"

#include <QObject>
#include <QPointer>

#include <functional>
#include <memory>

namespace Quillmere {

/// Keeps the program's status item and its menu in step with everything they show. GUI thread only.
class MenuBarController final : public QObject
{
    Q_OBJECT

public:
    /// What only the whole application can do.
    struct Application
    {
        /// Brings the first window to the front and to the keyboard.
        std::function<void()> showMainWindow;
        std::function<void()> terminate;
    };

    MenuBarController(StatusBar &statusBar, PowerManagementService &power, Application application,
                      QObject *parent = nullptr);
    ~MenuBarController() override;

    /// Makes the status item, once, and follows the two objects, neither of which it keeps alive.
    void start(AppState *appState, MenuBarStatusService *statusService);

    /// The lines of the menu as they are now.
    [[nodiscard]] QList<MenuEntry> buildMenu();

private:
    void observe();
    void updateStatusItem();
    [[nodiscard]] QList<MenuEntry> figures() const;
    [[nodiscard]] MenuEntry actionItem(const QString &key, const QString &symbol, void (MenuBarController::*action)());
    void toggleKeepAwake();
    void openDashboard();
    void openSettings();
    void openTab(SidebarTab tab);
    void quitApp();

    StatusBar &m_statusBar;
    PowerManagementService &m_power;
    Application m_application;
    std::unique_ptr<StatusItem> m_statusItem;
    QPointer<AppState> m_appState;
    QPointer<MenuBarStatusService> m_statusService;
    std::unique_ptr<QObject> m_observers; ///< Receives what is observed; a new one drops all earlier connections.
};

} // namespace Quillmere
