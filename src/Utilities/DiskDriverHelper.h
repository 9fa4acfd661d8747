#pragma once

#include "Platform/FileManager.h"
#include "Platform/Places.h"
#include "Platform/ProcessRunner.h"

#include <QCoro/QCoroTask>

#include <functional>
#include <memory>

namespace Quillmere {

/// Detects the driver by which NTFS disks can be written to, and installs it. Holds nothing but the way to the machine.
class DiskDriverHelper
{
public:
    DiskDriverHelper(std::shared_ptr<const FileManager> files, std::shared_ptr<const Places> places,
                     std::shared_ptr<const ProcessRunner> processes);

    /// The driver, or the layer below it, is there: one of them counts for both. Any thread.
    [[nodiscard]] bool checkDriversInstalled() const;
    /// The driver's own executable. Nothing when there is none, whatever checkDriversInstalled() says. Any thread.
    [[nodiscard]] std::optional<FilePath> driverExecutable() const;
    /// Asks for the system's password and installs both; whether that went well. GUI thread only, where @p statusUpdate
    /// is called too, with fixed English texts. This object may go meanwhile.
    [[nodiscard]] QCoro::Task<bool> installDrivers(std::function<void(const QString &)> statusUpdate) const;

private:
    std::shared_ptr<const FileManager> m_files;
    std::shared_ptr<const Places> m_places;
    std::shared_ptr<const ProcessRunner> m_processes;
};

} // namespace Quillmere
