#pragma once

#include "App/AppDelegate.h"
#include "App/AppState.h"
#include "App/WindowEngine.h"
#include "Platform/Machine.h"
#include "Services/AdvertisementService.h"
#include "Services/DiskMountService.h"
#include "Services/HistoryService.h"
#include "Services/MenuBarController.h"
#include "Services/MenuBarStatusService.h"
#include "Services/PowerManagementService.h"
#include "Services/TrafficControlService.h"
#include "Services/TrafficFilterExtensionManager.h"
#include "Services/TrafficMonitorService.h"
#include "Utilities/LocalizationManager.h"
#include "ViewModels/UnfinishedRuns.h"
#include "ViewModels/ViewModelFactory.h"

#include <QTranslator>

#include <chrono>
#include <optional>

namespace Quillmere {

/// The composition root: builds everything on one machine, declares the windows and holds what lives as long as the
/// program does. Needs a running QGuiApplication. GUI thread only.
class QuillmereApp final : public QObject
{
    Q_OBJECT

public:
    explicit QuillmereApp(Machine machine, QObject *parent = nullptr);
    ~QuillmereApp() override;

    /// Loads the windows and shows the main one. False when the program's own files are broken.
    [[nodiscard]] bool start();
    /// Handles events until the program is ended, and gives its exit code. Does not return where something still goes
    /// on, which the end of the process then cuts off.
    [[nodiscard]] int exec();

    /// The appearance that the settings ask of the main window; nothing where the desktop decides, which it always does
    /// for the Settings window.
    [[nodiscard]] std::optional<ColorScheme> colorScheme() const;

    [[nodiscard]] AppState &appState() { return m_state; }
    [[nodiscard]] Localizer &localizer() { return m_localizer; }
    /// Null before start().
    [[nodiscard]] QQuickWindow *mainWindow() const { return m_mainWindow; }
    [[nodiscard]] QQuickWindow *settingsWindow() const { return m_settingsWindow; }

public Q_SLOTS:
    /// Brings the main window back, to the front and to the keyboard.
    void showMainWindow();
    void showSettings();
    /// Ends the program. Where a cleanup is under way the window comes to the front and shows it, and the program ends
    /// once it has come to its end and its record. One that hangs is cut off when the user asks again.
    void quit();

private:
    void install();
    void contentDidAppear();
    /// The few texts that are Qt's own, such as those of its save panel.
    void translateQt();
    void applyAppearance();
    void dress(WindowEngine &engine, ColorScheme scheme) const;
    /// Lets go of what only a window in sight needs.
    void rest();
    /// Ends the program at once, whatever it is doing, and stores nothing any more.
    void terminate();
    void runsHaveFinished();
    /// Whether the user has asked for the end before, apart from a double click, and waits for nothing any more.
    [[nodiscard]] bool mayCutOff();
    /// What the content of every window needs.
    [[nodiscard]] QVariantMap contentProperties();

    Machine m_machine;
    Localizer m_localizer;
    HistoryService m_history;
    AdvertisementService m_advertisements;
    AppState m_state;
    TrafficMonitorService m_trafficMonitor;
    TrafficFilterExtensionManager m_filterExtension;
    TrafficControlService m_trafficControl;
    PowerManagementService m_power;
    DiskMountService m_disks;
    MenuBarStatusService m_menuBarStatus;
    MenuBarController m_menuBar;
    AppDelegate m_delegate;
    UnfinishedRuns m_unfinishedRuns{m_machine.files, m_machine.clock};
    SetupReceipt m_receipt;
    ViewModelFactory m_viewModels;
    std::unique_ptr<WindowEngine> m_engine;
    std::unique_ptr<WindowEngine> m_settingsEngine; ///< Null until the window is first asked for.
    QTranslator m_qtTexts;
    bool m_endsWithTheRuns = false; ///< Until the user asks for the window again.
    /// When the user first asked for the end during the runs under way, by the clock that never goes back.
    std::optional<std::chrono::milliseconds> m_firstWish;
    QPointer<QQuickWindow> m_mainWindow;
    QPointer<QQuickWindow> m_settingsWindow;
};

} // namespace Quillmere
