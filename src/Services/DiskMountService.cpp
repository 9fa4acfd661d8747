#include "Services/DiskMountService.h"

#include "Utilities/BackgroundWork.h"
#include "Utilities/Diagnostics.h"

#include <array>
#include <tuple>
#include <utility>

namespace Quillmere {

namespace {

QString diskutil()
{
    return u"/usr/sbin/diskutil"_qs;
}

/// A name that is no text cannot be told to a program, so there is none.
std::optional<QString> textOf(const FilePath &path)
{
    return path.bytes().isValidUtf8() ? std::optional(QString::fromUtf8(path.bytes())) : std::nullopt;
}

/// What stands in @p line behind the first colon, up to the next. Nothing when it holds none of @p labels.
std::optional<QString> valueOf(const QString &line, const std::array<QStringView, 2> &labels)
{
    if (!line.contains(labels[0]) && !line.contains(labels[1]))
        return std::nullopt;
    return line.split(u':').at(1).trimmed();
}

QString typeOf(const QString &fileSystem)
{
    constexpr std::array<std::pair<QStringView, QStringView>, 4> types = {{
        {u"ntfs", u"ntfs"},
        {u"fat", u"msdos"}, // exFAT too
        {u"ms-dos", u"msdos"},
        {u"exfat", u"exfat"},
    }};
    for (const auto &[word, type] : types) {
        if (fileSystem.contains(word))
            return type.toString();
    }
    return {};
}

QString remountScript(const QString &driver, const QString &bsdName, const QString &volumePath)
{
    // The texts go in as they stand. A path with a quotation mark makes a script that fails.
    return u"do shell script \"mkdir -p \\\""_qs + volumePath + u"\\\" && "_qs + driver + u" /dev/"_qs + bsdName
        + u" \\\""_qs + volumePath + u"\\\" -o local,allow_other\" with administrator privileges"_qs;
}

} // namespace

/// The way to the machine, and what is done by it. Any thread; every call may wait for programs.
class DiskMountService::Mounting
{
public:
    Mounting(std::shared_ptr<const FileManager> files, std::shared_ptr<const Places> places,
             std::shared_ptr<const ProcessRunner> processes)
        : m_files(std::move(files))
        , m_processes(std::move(processes))
        , m_drivers(m_files, std::move(places), m_processes)
    {
    }

    void mountPresentVolumes() const;
    void mountVolumeIfNeeded(const FilePath &path) const;
    [[nodiscard]] QString getBSDName(const QString &path) const;
    [[nodiscard]] QString getFilesystemType(const QString &path) const;

private:
    [[nodiscard]] QStringList infoLines(const QString &path) const;
    void mountGeneric(const QString &bsdName) const;
    void remountNTFS(const QString &bsdName, const QString &volumePath) const;

    std::shared_ptr<const FileManager> m_files;
    std::shared_ptr<const ProcessRunner> m_processes;
    DiskDriverHelper m_drivers;
};

void DiskMountService::Mounting::mountPresentVolumes() const
{
    for (const FilePath &volume : m_files->mountedVolumes())
        mountVolumeIfNeeded(volume);
}

void DiskMountService::Mounting::mountVolumeIfNeeded(const FilePath &volume) const
{
    const Result<VolumeValues> values = m_files->valuesOfVolume(volume);
    if (!values || values.value().isInternal.value_or(true))
        return;
    const std::optional<QString> path = textOf(volume);
    const QString bsdName = path ? getBSDName(*path) : QString();
    if (bsdName.isEmpty())
        return;
    const QString type = getFilesystemType(*path);
    const QString disk = volume.displayText() + u" ("_qs + bsdName + u')';
    if (type == u"ntfs") {
        // A machine that says that it has such a disk writable already needs no other driver, and no driver writes to
        // one that is protected.
        if (!values.value().isReadOnly.value_or(true) || values.value().isWriteProtected.value_or(false))
            return;
        printDiagnostic(u"Auto-mounting NTFS disk: "_qs + disk);
        remountNTFS(bsdName, *path);
    } else if (type == u"msdos" || type == u"exfat") {
        printDiagnostic(u"Auto-mounting FAT/exFAT disk: "_qs + disk);
        mountGeneric(bsdName);
    }
}

QStringList DiskMountService::Mounting::infoLines(const QString &path) const
{
    const Result<ProcessOutcome> info = m_processes->run({diskutil(), {u"info"_qs, path}});
    if (!info || !info.value().standardOutput.isValidUtf8())
        return {};
    return QString::fromUtf8(info.value().standardOutput).split(u'\n');
}

QString DiskMountService::Mounting::getBSDName(const QString &path) const
{
    for (const QString &line : infoLines(path)) {
        if (const std::optional<QString> name = valueOf(line, {u"Device Node:", u"Device Identifier:"}))
            return *name;
    }
    return {};
}

QString DiskMountService::Mounting::getFilesystemType(const QString &path) const
{
    for (const QString &line : infoLines(path)) {
        const std::optional<QString> fileSystem = valueOf(line, {u"Type (Bundle):", u"File System Personality:"});
        const QString type = typeOf(fileSystem.value_or(QString()).toLower());
        if (!type.isEmpty())
            return type;
    }
    return {};
}

void DiskMountService::Mounting::mountGeneric(const QString &bsdName) const
{
    std::ignore = m_processes->launch({diskutil(), {u"mount"_qs, bsdName}});
}

void DiskMountService::Mounting::remountNTFS(const QString &bsdName, const QString &volumePath) const
{
    std::ignore = m_processes->run({diskutil(), {u"unmount"_qs, volumePath}});
    const std::optional<FilePath> driver = m_drivers.driverExecutable();
    if (!driver) {
        std::ignore = m_processes->run({diskutil(), {u"mount"_qs, bsdName}});
        return;
    }
    const QString script = remountScript(driver->displayText(), bsdName, volumePath);
    std::ignore = m_processes->launch({u"/usr/bin/osascript"_qs, {u"-e"_qs, script}});
}

DiskMountService::DiskMountService(std::shared_ptr<Workspace> workspace, std::shared_ptr<const FileManager> files,
                                   std::shared_ptr<const Places> places, std::shared_ptr<const ProcessRunner> processes)
    : m_workspace(std::move(workspace))
    , m_mounting(std::make_shared<const Mounting>(std::move(files), std::move(places), std::move(processes)))
{
}

DiskMountService::~DiskMountService()
{
    if (m_isStarted)
        m_workspace->observeMounts({});
}

void DiskMountService::start()
{
    if (m_isStarted)
        return;
    m_isStarted = true;
    m_workspace->observeMounts([this](const MountNotification &notification) { handleVolumeMounted(notification); });
    std::ignore = inChildProcess([mounting = m_mounting] { mounting->mountPresentVolumes(); });
}

void DiskMountService::handleVolumeMounted(const MountNotification &notification)
{
    if (!notification.volume)
        return;
    std::ignore = inChildProcess(
        [mounting = m_mounting, volume = *notification.volume] { mounting->mountVolumeIfNeeded(volume); });
}

QString DiskMountService::getBSDName(const FilePath &path) const
{
    const std::optional<QString> text = textOf(path);
    return text ? m_mounting->getBSDName(*text) : QString();
}

QString DiskMountService::getFilesystemType(const FilePath &path) const
{
    const std::optional<QString> text = textOf(path);
    return text ? m_mounting->getFilesystemType(*text) : QString();
}

} // namespace Quillmere
