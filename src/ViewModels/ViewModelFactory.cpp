#include "ViewModels/ViewModelFactory.h"

namespace Quillmere {

ViewModelFactory::ViewModelFactory(Machine machine, HistoryService &history, QObject *parent)
    : QObject(parent)
    , m_machine(std::move(machine))
    , m_history(history)
{
}

ViewModelFactory::~ViewModelFactory()
{
    for (const std::weak_ptr<ScannerService> &made : m_scanners) {
        if (const std::shared_ptr<ScannerService> scanner = made.lock())
            scanner->cancelScan();
    }
}

std::shared_ptr<ScannerService> ViewModelFactory::makeScanner()
{
    m_scanners.removeIf([](const std::weak_ptr<ScannerService> &made) { return made.expired(); });
    auto scanner = std::make_shared<ScannerService>(m_machine.files, m_machine.places);
    m_scanners.append(scanner);
    return scanner;
}

SafeCleanupViewModel *ViewModelFactory::makeSafeCleanup(QObject *screen)
{
    return new SafeCleanupViewModel(makeScanner(), CleanupService(m_machine.files, m_machine.places), m_history,
                                    m_machine.clock, screen);
}

HistoryViewModel *ViewModelFactory::makeHistory(QObject *screen) const
{
    return new HistoryViewModel(m_history, m_machine.files, screen);
}

SidebarListModel *ViewModelFactory::makeSidebar(QObject *screen) const
{
    return new SidebarListModel(screen);
}

} // namespace Quillmere
