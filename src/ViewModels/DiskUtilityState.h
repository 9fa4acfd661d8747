#pragma once

#include "Models/DiskAlertState.h"
#include "Models/EraseMode.h"
#include "ViewModels/LatestTask.h"
#include "ViewModels/ToolsViewModel.h"
#include "ViewModels/VolumeDetails.h"

#include <QStringList>

#include <optional>

namespace Quillmere {

/// The erase sheet: what is chosen, and how far its confirmations have come. An external volume needs one, an internal
/// one three, the last of them typed. What a press means depends on where the confirmations are; elsewhere it means
/// nothing. GUI thread only.
class DiskUtilityState final : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool isLoading READ isLoading NOTIFY volumesChanged)
    Q_PROPERTY(QStringList volumeTexts READ volumeTexts NOTIFY volumesChanged)
    Q_PROPERTY(int selectedRow READ selectedRow NOTIFY selectionChanged)
    Q_PROPERTY(QString selectedText READ selectedText NOTIFY selectionChanged)
    Q_PROPERTY(bool hasSelection READ hasSelection NOTIFY selectionChanged)
    Q_PROPERTY(Quillmere::VolumeDetails details READ details NOTIFY selectionChanged)
    Q_PROPERTY(Quillmere::EraseModes::EraseMode selectedMode READ selectedMode WRITE setSelectedMode NOTIFY modeChanged)
    Q_PROPERTY(bool isSecureBlocked READ isSecureBlocked NOTIFY lockChanged)
    Q_PROPERTY(Quillmere::DiskAlerts::DiskAlert alert READ alert NOTIFY alertChanged)
    Q_PROPERTY(bool isAsking READ isAsking NOTIFY alertChanged)
    Q_PROPERTY(bool isTyped READ isTyped NOTIFY alertChanged)
    Q_PROPERTY(bool isOver READ isOver NOTIFY alertChanged)
    Q_PROPERTY(int step READ step NOTIFY alertChanged)
    Q_PROPERTY(QString symbol READ symbol NOTIFY alertChanged)
    Q_PROPERTY(QString titleKey READ titleKey NOTIFY alertChanged)
    Q_PROPERTY(QString messageKey READ messageKey NOTIFY alertChanged)
    Q_PROPERTY(QString confirmKey READ confirmKey NOTIFY alertChanged)
    Q_PROPERTY(QString confirmInputText READ confirmInputText WRITE setConfirmInputText NOTIFY confirmInputTextChanged)

public:
    explicit DiskUtilityState(ToolsViewModel &tools, QObject *parent = nullptr);

    [[nodiscard]] bool isLoading() const { return m_tools.connectedVolumes().isEmpty(); }
    /// A row that stands for no volume, then one for each.
    [[nodiscard]] QStringList volumeTexts() const;
    /// Into volumeTexts(); -1 while what was chosen is no longer listed.
    [[nodiscard]] int selectedRow() const;
    [[nodiscard]] QString selectedText() const;
    [[nodiscard]] bool hasSelection() const { return m_selectedVolume.has_value(); }
    [[nodiscard]] const std::optional<VolumeInfo> &selectedVolume() const { return m_selectedVolume; }
    [[nodiscard]] VolumeDetails details() const;
    [[nodiscard]] EraseMode selectedMode() const { return m_selectedMode; }
    void setSelectedMode(EraseMode mode);
    /// What is chosen may not be done at all.
    [[nodiscard]] bool isSecureBlocked() const;
    [[nodiscard]] const DiskAlertState &alertState() const { return m_alertState; }
    [[nodiscard]] DiskAlert alert() const { return m_alertState.alert; }
    [[nodiscard]] bool hasSucceeded() const { return m_alertState.hasSucceeded; }

    /// A confirmation or the message at the end stands.
    [[nodiscard]] bool isAsking() const;
    // What the alert says. While it goes, it says what it said.
    /// Its confirmation is a typed one.
    [[nodiscard]] bool isTyped() const { return m_shownAlert.alert == DiskAlert::Confirm3; }
    /// It is the message at the end.
    [[nodiscard]] bool isOver() const { return m_shownAlert.alert == DiskAlert::Finished; }
    /// 1 to 3 for the confirmations; 0 for the message at the end.
    [[nodiscard]] int step() const;
    [[nodiscard]] QString symbol() const;
    [[nodiscard]] QString titleKey() const;
    [[nodiscard]] QString messageKey() const;
    [[nodiscard]] QString confirmKey() const;

    [[nodiscard]] const QString &confirmInputText() const { return m_confirmInputText; }
    void setConfirmInputText(const QString &text);

    /// A sheet that is opened begins anew. What an earlier one has begun goes on, and is not heard of here any more.
    Q_INVOKABLE void reset();
    /// Loads the volumes, which waits for the system, and chooses the first where none is chosen.
    Q_INVOKABLE void appear();
    Q_INVOKABLE void selectRow(int row);
    /// The run button.
    Q_INVOKABLE void run();
    /// The confirming button of the alert that stands, whichever that is.
    Q_INVOKABLE void confirm();
    void proceed();
    void eraseSystem();
    /// Leaves a confirmation, or the message at the end.
    Q_INVOKABLE void dismiss();

Q_SIGNALS:
    void volumesChanged();
    void selectionChanged();
    void modeChanged();
    void lockChanged();
    void alertChanged();
    void confirmInputTextChanged();

private:
    void select(const std::optional<VolumeInfo> &volume);
    void enter(const DiskAlertState &state);
    void runErase();
    QCoro::Task<> erase(VolumeInfo volume, EraseMode mode);

    ToolsViewModel &m_tools;
    std::optional<VolumeInfo> m_selectedVolume;
    EraseMode m_selectedMode = EraseMode::Quick;
    DiskAlertState m_alertState;
    DiskAlertState m_shownAlert; ///< The latest that asked.
    QString m_confirmInputText;
    LatestTask m_opening; ///< Of the sheet: an erasure begun in an earlier one says nothing in this.
};

} // namespace Quillmere
