#pragma once

#include "Services/ApplicationInventory.h"
#include "Services/ScannerService.h"

#include <QCoro/QCoroTask>

#include <functional>
#include <memory>
#include <stop_token>

namespace Quillmere {

/// One scan for applications, in two parts: they are listed, and then measured one by one. It is over early once its
/// task or its scanner was stopped, which it sees before each step. Copied like a value; awaited on the GUI thread.
class ApplicationScan
{
public:
    /// How many of all have been measured, 0 to 1, and the name of the next.
    using Progress = std::function<void(double fraction, const QString &name)>;

    ApplicationScan(ApplicationInventory inventory, std::shared_ptr<ScannerService> scanner, std::stop_token task);

    [[nodiscard]] bool isOver() const { return m_task.stop_requested() || m_scanner->isCancelled(); }

    /// By their names and places alone; a bundle that two listings name is listed once.
    [[nodiscard]] static QCoro::Task<QList<FoundApplication>> list(ApplicationScan scan);
    /// @p found with what they say of themselves, their sizes and the files that belong to them. Of a scan that is over
    /// early it is worth nothing.
    [[nodiscard]] static QCoro::Task<QList<FoundApplication>> measure(ApplicationScan scan,
                                                                      QList<FoundApplication> found, Progress progress);

private:
    [[nodiscard]] FoundApplication described(const FoundApplication &application) const;
    [[nodiscard]] qint64 sizeOf(const FilePath &leftover) const;

    ApplicationInventory m_inventory;
    std::shared_ptr<ScannerService> m_scanner;
    std::stop_token m_task;
};

} // namespace Quillmere
