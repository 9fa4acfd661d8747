#include "App/QuillmereApp.h"

#include "Utilities/BackgroundWork.h"

#include <QGuiApplication>
#include <QLibraryInfo>
#include <QTimer>

#include <chrono>
#include <cstdlib>

namespace Quillmere {

namespace {

// Who hides the window by mistake has it back before anything was let go.
constexpr std::chrono::seconds untilRest{2};
// A window that turns from light to dark is worse than one that comes a moment later.
constexpr std::chrono::milliseconds mostWaitForTheDesktop{150};
// What was begun with a click right before the end, such as a switch, has ended by then.
constexpr std::chrono::milliseconds mostWaitForWorkers{500};
// A double click on the menu is one wish for the end.
constexpr std::chrono::seconds longestDoubleClick{3};

bool areWorkersDone()
{
    // First of all, since other programs and dialogs are not waited for, and are there often.
    const bool areLooksDone = backgroundPool().waitForDone(int(mostWaitForWorkers.count()));
    return areLooksDone && childProcessPool().activeThreadCount() == 0 && elevationPool().activeThreadCount() == 0;
}

void bringBack(QWindow &window)
{
    window.setWindowStates(window.windowStates() & ~Qt::WindowMinimized);
    // Not by show(), which would also restore one that is maximised.
    window.setVisible(true);
    window.raise();
    window.requestActivate();
}

} // namespace

QuillmereApp::QuillmereApp(Machine machine, QObject *parent)
    : QObject(parent)
    , m_machine(std::move(machine))
    , m_localizer(m_machine.defaults)
    , m_history(m_machine.files)
    , m_advertisements(m_machine.urls)
    , m_state(m_machine.defaults)
    , m_trafficMonitor(m_machine.host, m_machine.clock)
    , m_filterExtension(m_machine.bundles, m_machine.files, m_machine.extensions)
    , m_trafficControl(m_machine.defaults, m_machine.filter, m_filterExtension)
    , m_power(m_machine.assertions, m_machine.processes, m_machine.isAdministrator)
    , m_disks(m_machine.workspace, m_machine.files, m_machine.places, m_machine.processes)
    , m_menuBarStatus(m_trafficMonitor, m_machine.host)
    , m_menuBar(*m_machine.statusBar, m_power, {[this] { showMainWindow(); }, [this] { quit(); }})
    , m_receipt(m_machine.defaults, m_machine.bundles, m_machine.clock, InstallerTerms(m_machine.files))
    , m_viewModels(m_machine,
                   {m_history, m_trafficMonitor, m_trafficControl, m_power, m_disks, m_state, m_receipt,
                    [this] { terminate(); }, m_advertisements})
{
    install();
    // The program lives on in the background with all its windows hidden.
    QGuiApplication::setQuitOnLastWindowClosed(false);
    connect(&m_localizer, &Localizer::languageChanged, this, &QuillmereApp::translateQt);
    connect(&m_state, &AppState::settingsChanged, this, &QuillmereApp::applyAppearance);
    connect(&m_unfinishedRuns, &UnfinishedRuns::finished, this, &QuillmereApp::runsHaveFinished);
    m_machine.appearance->observe([this] { applyAppearance(); });
}

QuillmereApp::~QuillmereApp()
{
    m_machine.appearance->observe({});
    m_settingsEngine.reset();
    m_engine.reset();
    // What the screens had begun may still ask for what goes now.
    backgroundPool().waitForDone();
    AppState::setShared(nullptr);
    SharedInstance<UnfinishedRuns>::install(nullptr);
    SharedInstance<DiskMountService>::install(nullptr);
    SharedInstance<PowerManagementService>::install(nullptr);
    SharedInstance<TrafficControlService>::install(nullptr);
    SharedInstance<TrafficFilterExtensionManager>::install(nullptr);
    SharedInstance<TrafficMonitorService>::install(nullptr);
    SharedInstance<AdvertisementService>::install(nullptr);
    SharedInstance<HistoryService>::install(nullptr);
    SharedInstance<Localizer>::install(nullptr);
}

void QuillmereApp::install()
{
    SharedInstance<Localizer>::install(&m_localizer);
    SharedInstance<HistoryService>::install(&m_history);
    SharedInstance<AdvertisementService>::install(&m_advertisements);
    SharedInstance<TrafficMonitorService>::install(&m_trafficMonitor);
    SharedInstance<TrafficFilterExtensionManager>::install(&m_filterExtension);
    SharedInstance<TrafficControlService>::install(&m_trafficControl);
    SharedInstance<PowerManagementService>::install(&m_power);
    SharedInstance<DiskMountService>::install(&m_disks);
    SharedInstance<UnfinishedRuns>::install(&m_unfinishedRuns);
}

bool QuillmereApp::start()
{
    m_delegate.applicationDidFinishLaunching();
    translateQt();
    m_engine = std::make_unique<WindowEngine>(m_advertisements.media());
    applyAppearance();

    QVariantMap properties = contentProperties();
    properties.insert(u"showingWelcome"_qs, m_receipt.shouldShowWelcome());
    m_mainWindow = m_engine->load(u"MainWindow.qml"_qs, properties);
    if (!m_mainWindow)
        return false;
    connect(m_mainWindow, SIGNAL(settingsRequested()), this, SLOT(showSettings()));
    connect(m_mainWindow, SIGNAL(quitRequested()), this, SLOT(quit()));
    m_mainWindow->setPersistentSceneGraph(false);
    connect(m_mainWindow, &QWindow::visibleChanged, this, [this](bool isVisible) {
        if (!isVisible)
            QTimer::singleShot(untilRest, this, &QuillmereApp::rest);
    });
    m_delegate.windowDidBecomeKey(m_mainWindow);
    m_machine.appearance->awaitAnswers(mostWaitForTheDesktop);
    showMainWindow();
    contentDidAppear();
    return true;
}

void QuillmereApp::rest()
{
    if (!m_mainWindow || m_mainWindow->isVisible())
        return;
    m_mainWindow->releaseResources();
    m_engine->trim();
    if (m_settingsEngine)
        m_settingsEngine->trim();
    m_advertisements.forgetMedia();
    if (m_machine.returnMemory)
        m_machine.returnMemory();
}

void QuillmereApp::translateQt()
{
    QCoreApplication::removeTranslator(&m_qtTexts);
    const QString language = rawValue(m_localizer.effectiveLanguage());
    if (m_qtTexts.load(u"qt_"_qs + language, QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(&m_qtTexts);
    if (m_engine)
        m_engine->retranslate();
    if (m_settingsEngine)
        m_settingsEngine->retranslate();
}

void QuillmereApp::contentDidAppear()
{
    AppState::setShared(&m_state);
    m_menuBarStatus.start();
    m_menuBar.start(&m_state, &m_menuBarStatus);
    m_disks.start();
}

QVariantMap QuillmereApp::contentProperties()
{
    return {
        {u"appState"_qs, QVariant::fromValue(&m_state)},
        {u"viewModels"_qs, QVariant::fromValue(&m_viewModels)},
    };
}

std::optional<ColorScheme> QuillmereApp::colorScheme() const
{
    switch (m_state.settings().theme) {
    case AppTheme::System:
        return std::nullopt;
    case AppTheme::Light:
        return ColorScheme::Light;
    case AppTheme::Dark:
        return ColorScheme::Dark;
    }
    Q_UNREACHABLE();
}

void QuillmereApp::applyAppearance()
{
    const ColorScheme ofTheDesktop = m_machine.appearance->colorScheme();
    if (m_engine)
        dress(*m_engine, colorScheme().value_or(ofTheDesktop));
    if (m_settingsEngine)
        dress(*m_settingsEngine, ofTheDesktop);
}

void QuillmereApp::dress(WindowEngine &engine, ColorScheme scheme) const
{
    engine.appearance().setDark(scheme == ColorScheme::Dark);
    engine.appearance().setReducedMotion(m_machine.appearance->prefersReducedMotion());
}

void QuillmereApp::showMainWindow()
{
    // Who asks for the window no longer wants the program to end.
    m_endsWithTheRuns = false;
    bringBack(*m_mainWindow);
}

void QuillmereApp::showSettings()
{
    if (!m_settingsWindow) {
        m_settingsEngine = std::make_unique<WindowEngine>(m_advertisements.media());
        applyAppearance();
        m_settingsWindow = m_settingsEngine->load(u"SettingsWindow.qml"_qs, contentProperties());
        if (!m_settingsWindow)
            return;
        connect(m_settingsWindow, SIGNAL(quitRequested()), this, SLOT(quit()));
    }
    bringBack(*m_settingsWindow);
}

void QuillmereApp::terminate()
{
    for (QWindow *window : QGuiApplication::topLevelWindows())
        window->hide();
    // Not quit(), which asks the windows first: the main window would refuse to close.
    QCoreApplication::exit(0);
}

void QuillmereApp::quit()
{
    if (m_unfinishedRuns.isEmpty() || mayCutOff()) {
        terminate();
        return;
    }
    // The user sees what the end waits for, and where there is no status item has a way to ask again.
    showMainWindow();
    m_endsWithTheRuns = true;
    m_firstWish = m_firstWish.value_or(m_machine.clock->elapsed());
}

bool QuillmereApp::mayCutOff()
{
    return m_firstWish && m_machine.clock->elapsed() - *m_firstWish >= longestDoubleClick
        && m_unfinishedRuns.areHanging();
}

void QuillmereApp::runsHaveFinished()
{
    m_firstWish.reset();
    if (m_endsWithTheRuns)
        terminate();
}

int QuillmereApp::exec()
{
    const int code = QCoreApplication::exec();
    // A scan only looks. It may hang, as on a mount that no longer answers, and would ask for what goes now.
    if (!m_unfinishedRuns.isEmpty() || !areWorkersDone())
        std::_Exit(code);
    return code;
}

} // namespace Quillmere
