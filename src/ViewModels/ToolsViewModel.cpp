#include "ViewModels/ToolsViewModel.h"

#include "Services/CommandExecution.h"
#include "Services/DiskSpaceService.h"
#include "Services/ElevatedCommand.h"
#include "Utilities/FailureDescription.h"
#include "Utilities/LocalizationManager.h"

#include <QPointer>
#include <QRegularExpression>

#include <utility>

namespace Quillmere {

namespace {

/// The row that always stands, whatever the system's disk is called.
VolumeInfo systemDisk(const FileManager &files)
{
    VolumeInfo volume;
    volume.name = u"Macintosh HD (System)"_qs;
    volume.path = FilePath("/");
    volume.bsdName = u"disk1s1s1"_qs;
    volume.isInternal = true;
    volume.fsType = u"APFS"_qs;
    const DiskSpaceService::DiskSpaceInfo space = DiskSpaceService::getDiskSpace(volume.path, files);
    volume.totalSize = space.totalSpace;
    volume.freeSize = space.freeSpace;
    return volume;
}

bool isListed(const FilePath &path)
{
    const QByteArray &text = path.bytes();
    return text != "/" && !text.startsWith("/private") && !text.startsWith("/var");
}

/// disk4 of disk4s2. The first partition alone is cut off: disk4s2s1 gives disk4s1.
QString wholeDiskOf(QString bsdName)
{
    static const QRegularExpression partition(u"s[0-9]+"_qs);
    const QRegularExpressionMatch match = partition.match(bsdName);
    return match.hasMatch() ? bsdName.remove(match.capturedStart(), match.capturedLength()) : bsdName;
}

QString startLine(const QString &key, const VolumeInfo &volume)
{
    return localized(key) + u": "_qs + volume.name + u" ("_qs + FilePath::displayText(volume.bsdName.toUtf8())
        + u")...\n"_qs;
}

} // namespace

ToolsViewModel::ToolsViewModel(std::shared_ptr<const ProcessRunner> processes, std::shared_ptr<const FileManager> files,
                               const DiskMountService &disks, QObject *parent)
    : QObject(parent)
    , m_processes(std::move(processes))
    , m_files(std::move(files))
    , m_disks(disks)
{
}

void ToolsViewModel::setShowDiskUtility(bool shows)
{
    if (std::exchange(m_showDiskUtility, shows) != shows)
        Q_EMIT showDiskUtilityChanged();
}

QCoro::Task<> ToolsViewModel::resetSpotlightIndex()
{
    return runCommand(u"Reset Spotlight Indexing"_qs, elevated({u"/usr/bin/mdutil"_qs, {u"-E"_qs, u"/"_qs}}));
}

QCoro::Task<> ToolsViewModel::rebuildLaunchServices()
{
    return runCommand(
        u"Rebuild Launch Services"_qs,
        {u"/System/Library/Frameworks/CoreServices.framework/Frameworks/LaunchServices.framework/Support/"
         "lsregister"_qs,
         {u"-kill"_qs, u"-r"_qs, u"-domain"_qs, u"local"_qs, u"-domain"_qs, u"system"_qs, u"-domain"_qs, u"user"_qs}});
}

QCoro::Task<> ToolsViewModel::reclaimMemory()
{
    return runCommand(u"Reclaim Memory"_qs, elevated({u"/usr/sbin/purge"_qs, {}}));
}

QCoro::Task<> ToolsViewModel::runCommand(QString name, Command command)
{
    const QPointer self(this);
    begin(name, localized(u"tools.executing"_qs) + u' ' + name + u"...\n"_qs);
    auto running = executeProcess(m_processes, command);
    const Result<QString> output = co_await running;
    if (!self)
        co_return;
    if (output)
        append(output.value() + u'\n' + localized(u"tools.success"_qs) + u'\n');
    else
        appendFailure(output.failure());
    end();
}

QCoro::Task<> ToolsViewModel::flushDNS()
{
    const QPointer self(this);
    begin(u"Flush DNS Cache"_qs, localized(u"tools.dnsStarting"_qs) + u'\n');
    const Command flush = {u"/usr/bin/dscacheutil"_qs, {u"-flushcache"_qs}};
    auto flushing = executeProcess(m_processes, flush);
    const Result<QString> flushed = co_await flushing;
    if (!self)
        co_return;
    if (!flushed) {
        appendFailure(flushed.failure());
        end();
        co_return;
    }
    append(localized(u"tools.dnsFlushed"_qs) + u'\n');
    const Command restart = elevated({u"/usr/bin/killall"_qs, {u"-HUP"_qs, u"mDNSResponder"_qs}});
    auto restarting = executeProcess(m_processes, restart);
    const Result<QString> restarted = co_await restarting;
    if (!self)
        co_return;
    if (restarted)
        append(localized(u"tools.dnsRestarted"_qs) + u'\n' + localized(u"tools.success"_qs) + u'\n');
    else
        appendFailure(restarted.failure());
    end();
}

void ToolsViewModel::loadVolumes()
{
    QList<VolumeInfo> volumes = {systemDisk(*m_files)};
    for (const FilePath &path : m_files->mountedVolumes()) {
        if (isListed(path))
            volumes.append(volumeAt(path));
    }
    m_connectedVolumes = volumes;
    Q_EMIT connectedVolumesChanged();
}

VolumeInfo ToolsViewModel::volumeAt(const FilePath &path) const
{
    const VolumeValues values = m_files->valuesOfVolume(path).valueOr({});
    const DiskSpaceService::DiskSpaceInfo space = DiskSpaceService::getDiskSpace(path, *m_files);
    const QString bsdName = m_disks.getBSDName(path);
    const QString fsType = m_disks.getFilesystemType(path);
    VolumeInfo volume;
    volume.name = FilePath::displayText(values.name ? values.name->toUtf8() : path.lastPathComponent());
    volume.path = path;
    volume.bsdName = bsdName.isEmpty() ? QString::fromUtf8(path.lastPathComponent()) : bsdName;
    volume.isInternal = values.isInternal.value_or(false);
    volume.fsType = fsType.isEmpty() ? u"Unknown"_qs : fsType;
    volume.totalSize = space.totalSpace;
    volume.freeSize = space.freeSpace;
    return volume;
}

QCoro::Task<bool> ToolsViewModel::quickFormat(VolumeInfo volume)
{
    const QString format = volume.fsType.toUpper().contains(u"APFS") ? u"APFS"_qs : u"JHFS+"_qs;
    return erase(u"Quick Format "_qs + volume.name, startLine(u"tools.quickStarting"_qs, volume),
                 {u"/usr/sbin/diskutil"_qs, {u"eraseVolume"_qs, format, u"CleanDisk"_qs, volume.bsdName}},
                 u"tools.quickSuccess"_qs);
}

QCoro::Task<bool> ToolsViewModel::secureOverwrite(VolumeInfo volume)
{
    if (volume.isInternal || volume.path == FilePath("/")) {
        append(u'\n' + localized(u"tools.secureBlocked"_qs) + u'\n');
        co_return false;
    }
    const QString disk = u"/dev/"_qs + wholeDiskOf(volume.bsdName);
    const Command command = {u"/usr/sbin/diskutil"_qs, {u"secureErase"_qs, u"0"_qs, disk}};
    auto erasing = erase(u"Secure Overwrite "_qs + volume.name, startLine(u"tools.secureStarting"_qs, volume), command,
                         u"tools.secureSuccess"_qs);
    const bool hasSucceeded = co_await erasing;
    co_return hasSucceeded;
}

QCoro::Task<bool> ToolsViewModel::erase(QString name, QString start, Command command, QString success)
{
    const QPointer self(this);
    begin(name, start);
    const Command withRights = elevated(command);
    auto running = executeProcess(m_processes, withRights);
    const Result<QString> output = co_await running;
    if (!self)
        co_return output.isOk();
    if (output) {
        append(output.value() + u'\n' + localized(success) + u'\n');
        loadVolumes();
    } else {
        appendFailure(output.failure());
    }
    end();
    co_return output.isOk();
}

void ToolsViewModel::begin(const QString &name, const QString &console)
{
    m_isRunning = true;
    Q_EMIT isRunningChanged();
    m_currentToolName = name;
    Q_EMIT currentToolNameChanged();
    m_consoleOutput = console;
    Q_EMIT consoleOutputChanged();
}

void ToolsViewModel::end()
{
    m_isRunning = false;
    Q_EMIT isRunningChanged();
}

void ToolsViewModel::append(const QString &text)
{
    m_consoleOutput += text;
    Q_EMIT consoleOutputChanged();
}

void ToolsViewModel::appendFailure(const Failure &failure)
{
    append(localized(u"tools.error"_qs) + u": "_qs + localizedDescription(failure) + u'\n');
}

} // namespace Quillmere
