#pragma once

#include "Models/Language.h"
#include "Platform/Workspace.h"
#include "Services/BundleInstaller.h"
#include "Utilities/SetupReceipt.h"
#include "ViewModels/DriversViewModel.h"

#include <QObject>
#include <QTimer>

namespace Quillmere {

/// The setup wizard: five steps from the choice of a language to the copied program. It ends with finished().
class WelcomeViewModel final : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QStringList languages READ languages CONSTANT)
    Q_PROPERTY(int languageIndex READ languageIndex NOTIFY selectedLanguageChanged)
    Q_PROPERTY(int currentStep READ currentStep NOTIFY currentStepChanged)
    Q_PROPERTY(double installProgress READ installProgress NOTIFY installProgressChanged)
    Q_PROPERTY(QString installStatusText READ installStatusText NOTIFY installStatusTextChanged)
    Q_PROPERTY(QString installedDestinationText READ installedDestinationText NOTIFY installedDestinationTextChanged)
    Q_PROPERTY(QString logoFile READ logoFile CONSTANT)
    Q_PROPERTY(Quillmere::DriversViewModel *drivers READ drivers CONSTANT)

public:
    static constexpr int installStep = 4;
    static constexpr int lastStep = 5;

    struct Parts
    {
        std::shared_ptr<const FileManager> files;
        std::shared_ptr<const Bundles> bundles;
        std::shared_ptr<const Workspace> workspace;
        SetupReceipt receipt;
        BundleInstaller installer;
        DiskDriverHelper drivers;
    };

    explicit WelcomeViewModel(Parts parts, QObject *parent = nullptr);

    [[nodiscard]] QStringList languages() const;
    [[nodiscard]] Language selectedLanguage() const { return m_selectedLanguage; }
    [[nodiscard]] int languageIndex() const;
    /// 1 to 5.
    [[nodiscard]] int currentStep() const { return m_currentStep; }
    /// 0 to 1. A display by the clock, which stands for no measured work.
    [[nodiscard]] double installProgress() const { return m_installProgress; }
    [[nodiscard]] QString installStatusText() const;
    [[nodiscard]] QString installedDestinationText() const { return m_installedDestinationText; }
    /// Of the bundle, or the program's own. As an address it would have Qt load every reader of pictures that there is,
    /// before the first frame.
    [[nodiscard]] QString logoFile() const;
    [[nodiscard]] DriversViewModel *drivers() { return &m_drivers; }

    /// A text of the wizard in the selected language, else in English, else the key itself.
    Q_INVOKABLE [[nodiscard]] QString text(const QString &key) const;

    /// The wizard has come into sight. Replaces a language that follows the desktop's by the one that it led to.
    Q_INVOKABLE void appear();
    /// For the whole program, at once.
    Q_INVOKABLE void selectLanguage(int index);
    Q_INVOKABLE void next();
    Q_INVOKABLE void back();
    Q_INVOKABLE void runWithoutInstalling();
    Q_INVOKABLE void startInstallation();
    Q_INVOKABLE void launch();
    Q_INVOKABLE void openMakerPage() const;
    Q_INVOKABLE void openPromotionPage() const;

    [[nodiscard]] const QTimer &progressTimer() const { return m_progressTimer; }
    [[nodiscard]] const QTimer &portableTimer() const { return m_portableTimer; }
    /// What the progress timer does each time.
    void advance();

Q_SIGNALS:
    void selectedLanguageChanged();
    void currentStepChanged();
    void installProgressChanged();
    void installStatusTextChanged();
    void installedDestinationTextChanged();
    /// The wizard is to go.
    void finished();

private:
    void setStep(int step);
    void setProgress(double progress);
    void setStatus(const QString &key);
    void setSelectedLanguage(Language language);
    void copyToApplications();

    Parts m_parts;
    DriversViewModel m_drivers;
    QTimer m_progressTimer{this};
    QTimer m_portableTimer{this};
    Language m_selectedLanguage = Language::English;
    int m_currentStep = 1;
    double m_installProgress = 0;
    QString m_status; ///< Key of its text; empty before the installation.
    QString m_installedDestinationText = u"/Applications"_qs;
};

} // namespace Quillmere
