#include "ViewModels/ApplicationScan.h"

#include "Utilities/BackgroundWork.h"

#include <QSet>

namespace Quillmere {

ApplicationScan::ApplicationScan(ApplicationInventory inventory, std::shared_ptr<ScannerService> scanner,
                                 std::stop_token task)
    : m_inventory(std::move(inventory))
    , m_scanner(std::move(scanner))
    , m_task(std::move(task))
{
}

QCoro::Task<QList<FoundApplication>> ApplicationScan::list(ApplicationScan scan)
{
    QList<FoundApplication> found;
    QSet<FilePath> known;
    auto looking = inBackground([scan] { return scan.m_inventory.roots(); });
    const QList<FilePath> roots = co_await looking;
    for (const FilePath &root : roots) {
        if (scan.isOver())
            co_return found;
        auto listing = inBackground([scan, root] { return scan.m_inventory.bundlesIn(root); });
        const QList<FoundApplication> bundles = co_await listing;
        for (const FoundApplication &bundle : bundles) {
            if (!known.contains(bundle.item.path))
                found.append(bundle);
            known.insert(bundle.item.path);
        }
    }
    if (scan.isOver())
        co_return found;
    auto listing = inBackground([scan] { return scan.m_inventory.listedApplications(); });
    const QList<FoundApplication> listed = co_await listing;
    co_return found + listed;
}

QCoro::Task<QList<FoundApplication>> ApplicationScan::measure(ApplicationScan scan, QList<FoundApplication> found,
                                                              Progress progress)
{
    for (qsizetype i = 0; i < found.size() && !scan.isOver(); ++i) {
        const FoundApplication named = found.at(i);
        progress(double(i) / double(found.size()), named.item.name);
        auto describing = inBackground([scan, named] { return scan.described(named); });
        FoundApplication application = co_await describing;
        if (scan.isOver())
            break;
        auto searching = inBackground([scan, application] { return scan.m_inventory.findLeftovers(application); });
        application.item.relatedFiles = co_await searching;
        const QList<FilePath> leftovers = application.item.relatedFiles;
        for (const FilePath &leftover : leftovers) {
            if (scan.isOver())
                break;
            auto adding = inBackground([scan, leftover] { return scan.sizeOf(leftover); });
            const qint64 size = co_await adding;
            application.item.size += size;
        }
        found[i] = application;
    }
    co_return found;
}

FoundApplication ApplicationScan::described(const FoundApplication &application) const
{
    FoundApplication described = m_inventory.described(application);
    described.item.size = m_inventory.sizeOf(described, *m_scanner, m_task);
    return described;
}

qint64 ApplicationScan::sizeOf(const FilePath &leftover) const
{
    return ApplicationInventory::sizeOf(leftover, *m_scanner, m_task);
}

} // namespace Quillmere
