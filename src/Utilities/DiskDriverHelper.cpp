#include "Utilities/DiskDriverHelper.h"

#include "Utilities/BackgroundWork.h"
#include "Utilities/Diagnostics.h"

#include <algorithm>
#include <array>

namespace Quillmere {

namespace {

constexpr std::array layers = {"/Library/Filesystems/macfuse.fs", "/Library/Filesystems/osxfuse.fs"};
constexpr std::array executables = {"/usr/local/bin/ntfs-3g", "/opt/homebrew/bin/ntfs-3g"};

QString installScript()
{
    const QString command = u"if [ -f /opt/homebrew/bin/brew ]; then /opt/homebrew/bin/brew install --cask macfuse"_qs
                            u" && /opt/homebrew/bin/brew install ntfs-3g-mac;"_qs
                            u" elif [ -f /usr/local/bin/brew ]; then /usr/local/bin/brew install --cask macfuse"_qs
                            u" && /usr/local/bin/brew install ntfs-3g-mac;"_qs
                            u" else echo 'Homebrew is required to download/compile NTFS-3G and macFUSE'; exit 1; fi"_qs;
    return u"do shell script \""_qs + command + u"\" with administrator privileges"_qs;
}

} // namespace

DiskDriverHelper::DiskDriverHelper(std::shared_ptr<const FileManager> files, std::shared_ptr<const Places> places,
                                   std::shared_ptr<const ProcessRunner> processes)
    : m_files(std::move(files))
    , m_places(std::move(places))
    , m_processes(std::move(processes))
{
}

bool DiskDriverHelper::checkDriversInstalled() const
{
    const auto exists = [this](const char *path) { return m_files->fileExists(FilePath(path)); };
    return std::ranges::any_of(layers, exists) || driverExecutable().has_value();
}

std::optional<FilePath> DiskDriverHelper::driverExecutable() const
{
    for (const char *path : executables) {
        if (m_files->fileExists(FilePath(path)))
            return FilePath(path);
    }
    const QList<PlaceEntry> drivers = m_places->entriesBehind(u"NTFS Drivers"_qs);
    return drivers.isEmpty() ? std::nullopt : std::optional(drivers.first().path);
}

QCoro::Task<bool> DiskDriverHelper::installDrivers(std::function<void(const QString &)> statusUpdate) const
{
    statusUpdate(u"Requesting administrator privileges..."_qs);
    const Command command = {u"/usr/bin/osascript"_qs, {u"-e"_qs, installScript()}};
    Result<std::future<int>> installation = m_processes->start(command);
    if (!installation) {
        printDiagnostic(u"Failed to start driver installation: "_qs, installation.failure());
        co_return false;
    }
    statusUpdate(u"Installing drivers in background..."_qs);
    // QtConcurrent copies what it runs, and a future cannot be copied.
    const std::shared_future<int> end = std::move(installation).value().share();
    auto waiting = inChildProcess([end] { return end.get(); });
    const int status = co_await waiting;
    co_return status == 0;
}

} // namespace Quillmere
