#pragma once

#include "Models/VolumeInfo.h"
#include "Services/DiskMountService.h"

#include <QObject>

#include <QCoro/QCoroTask>

namespace Quillmere {

/// The Tools screen: commands of the system, what they print, and the volumes that can be erased. Nothing keeps two
/// commands apart: a second one begins the console anew, and the first to end ends isRunning. None can be cancelled.
class ToolsViewModel final : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString consoleOutput READ consoleOutput NOTIFY consoleOutputChanged)
    Q_PROPERTY(bool isRunning READ isRunning NOTIFY isRunningChanged)
    Q_PROPERTY(QString currentToolName READ currentToolName NOTIFY currentToolNameChanged)
    Q_PROPERTY(bool showDiskUtility READ showDiskUtility WRITE setShowDiskUtility NOTIFY showDiskUtilityChanged)

public:
    ToolsViewModel(std::shared_ptr<const ProcessRunner> processes, std::shared_ptr<const FileManager> files,
                   const DiskMountService &disks, QObject *parent = nullptr);

    [[nodiscard]] const QString &consoleOutput() const { return m_consoleOutput; }
    [[nodiscard]] bool isRunning() const { return m_isRunning; }
    /// Of the last command that was begun. Fixed English, whatever language the console speaks.
    [[nodiscard]] const QString &currentToolName() const { return m_currentToolName; }
    [[nodiscard]] bool showDiskUtility() const { return m_showDiskUtility; }
    void setShowDiskUtility(bool shows);
    /// The system's disk first, then what is mounted, in the order of the system. Empty before loadVolumes().
    [[nodiscard]] const QList<VolumeInfo> &connectedVolumes() const { return m_connectedVolumes; }

    // Each is started and left to itself; whoever wants to know when it ends awaits it.
    QCoro::Task<> resetSpotlightIndex();
    QCoro::Task<> flushDNS();
    QCoro::Task<> rebuildLaunchServices();
    QCoro::Task<> reclaimMemory();

    Q_INVOKABLE void startSpotlightReset() { resetSpotlightIndex(); }
    Q_INVOKABLE void startDNSFlush() { flushDNS(); }
    Q_INVOKABLE void startLaunchServicesRebuild() { rebuildLaunchServices(); }
    Q_INVOKABLE void startMemoryReclaim() { reclaimMemory(); }

    /// Looks at what is mounted, and waits for the system's disk command.
    void loadVolumes();
    /// Gives @p volume a new file system, whatever it is: whoever calls has asked the user. True when it was done.
    QCoro::Task<bool> quickFormat(VolumeInfo volume);
    /// Writes zeros over the whole disk that @p volume lies on. True when it was done; never for one that is internal.
    QCoro::Task<bool> secureOverwrite(VolumeInfo volume);

Q_SIGNALS:
    void consoleOutputChanged();
    void isRunningChanged();
    void currentToolNameChanged();
    void showDiskUtilityChanged();
    void connectedVolumesChanged();

private:
    QCoro::Task<> runCommand(QString name, Command command);
    /// Runs what erases, after @p start was said, and says @p success once it has.
    QCoro::Task<bool> erase(QString name, QString start, Command command, QString success);
    [[nodiscard]] VolumeInfo volumeAt(const FilePath &path) const;
    void begin(const QString &name, const QString &console);
    void end();
    void append(const QString &text);
    void appendFailure(const Failure &failure);

    std::shared_ptr<const ProcessRunner> m_processes;
    std::shared_ptr<const FileManager> m_files;
    const DiskMountService &m_disks;
    QString m_consoleOutput;
    bool m_isRunning = false;
    QString m_currentToolName;
    bool m_showDiskUtility = false;
    QList<VolumeInfo> m_connectedVolumes;
};

} // namespace Quillmere
