#pragma once

#include "App/AppState.h"
#include "Platform/FileManager.h"
#include "Platform/Workspace.h"
#include "Services/PowerManagementService.h"
#include "Services/SelfRemoval.h"
#include "ViewModels/DriversViewModel.h"

#include <QObject>

#include <functional>
#include <memory>

namespace Quillmere {

/// The Settings screen. Every change is stored at once.
class SettingsViewModel final : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QStringList languages READ languages CONSTANT)
    Q_PROPERTY(int languageIndex READ languageIndex WRITE setLanguageIndex NOTIFY languageChanged)
    Q_PROPERTY(int themeIndex READ themeIndex WRITE setThemeIndex NOTIFY settingsChanged)
    Q_PROPERTY(int menuBarModeIndex READ menuBarModeIndex WRITE setMenuBarModeIndex NOTIFY settingsChanged)
    Q_PROPERTY(bool keepAwake READ keepAwake WRITE setKeepAwake NOTIFY settingsChanged)
    Q_PROPERTY(bool confirmsDangerous READ confirmsDangerous WRITE setConfirmsDangerous NOTIFY settingsChanged)
    Q_PROPERTY(bool hasFullDiskAccess READ hasFullDiskAccess NOTIFY appeared)
    Q_PROPERTY(Quillmere::DriversViewModel *drivers READ drivers CONSTANT)
    Q_PROPERTY(QString nameAndVersion READ nameAndVersion CONSTANT)
    Q_PROPERTY(QString makerName READ makerName CONSTANT)
    Q_PROPERTY(QString makerLocation READ makerLocation CONSTANT)
    Q_PROPERTY(QString leadDeveloper READ leadDeveloper CONSTANT)
    Q_PROPERTY(QString makerPage READ makerPage CONSTANT)

public:
    /// What is referred to outlives it.
    struct Parts
    {
        std::shared_ptr<const FileManager> files;
        std::shared_ptr<const Workspace> workspace;
        PowerManagementService &power;
        AppState &state;
        DiskDriverHelper drivers;
        SelfRemoval removal;
        std::function<void()> terminate; ///< Ends the program, whatever it is doing.
    };

    explicit SettingsViewModel(Parts parts, QObject *parent = nullptr);

    /// How each language calls itself, in the order of the choices.
    [[nodiscard]] QStringList languages() const;
    [[nodiscard]] int languageIndex() const;
    void setLanguageIndex(int index);
    [[nodiscard]] int themeIndex() const { return int(m_parts.state.settings().theme); }
    void setThemeIndex(int index);
    [[nodiscard]] int menuBarModeIndex() const { return int(m_parts.state.settings().menuBarDisplayMode); }
    void setMenuBarModeIndex(int index);
    [[nodiscard]] bool keepAwake() const { return m_parts.state.settings().keepAwakeEnabled; }
    void setKeepAwake(bool keepAwake);
    [[nodiscard]] bool confirmsDangerous() const { return m_parts.state.settings().alwaysConfirmDangerous; }
    void setConfirmsDangerous(bool confirms);
    [[nodiscard]] bool hasFullDiskAccess() const { return m_hasFullDiskAccess; }
    [[nodiscard]] DriversViewModel *drivers() { return &m_drivers; }
    [[nodiscard]] QString nameAndVersion() const { return u"Quillmere 1.3.4"_qs; }
    [[nodiscard]] QString makerName() const;
    [[nodiscard]] QString makerLocation() const;
    [[nodiscard]] QString leadDeveloper() const;
    /// The address as people read it.
    [[nodiscard]] QString makerPage() const;

    /// The screen has come into sight: looks at the access and the drivers, which are then not looked at again.
    Q_INVOKABLE void appear();
    Q_INVOKABLE void openFullDiskAccessSettings() const;
    Q_INVOKABLE void openMakerPage() const;
    /// Removes the program with its data, without a further question, and ends it.
    Q_INVOKABLE void selfUninstall() const;

Q_SIGNALS:
    void languageChanged();
    void settingsChanged();
    void appeared();

private:
    template<typename Change>
    void edit(Change change);

    Parts m_parts;
    DriversViewModel m_drivers;
    bool m_hasFullDiskAccess = false;
};

} // namespace Quillmere
