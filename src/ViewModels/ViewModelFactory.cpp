#include "ViewModels/ViewModelFactory.h"

namespace Quillmere {

ViewModelFactory::ViewModelFactory(Machine machine, HistoryService &history, QObject *parent)
    : QObject(parent)
    , m_machine(std::move(machine))
    , m_history(history)
{
}

SafeCleanupViewModel *ViewModelFactory::makeSafeCleanup(QObject *screen) const
{
    return new SafeCleanupViewModel(std::make_shared<ScannerService>(m_machine.files, m_machine.places),
                                    CleanupService(m_machine.files), m_history, m_machine.clock, screen);
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
