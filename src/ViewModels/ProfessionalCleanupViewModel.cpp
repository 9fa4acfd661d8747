#include "ViewModels/ProfessionalCleanupViewModel.h"

#include "Utilities/BackgroundWork.h"
#include "Utilities/LocalizationManager.h"

namespace Quillmere {

namespace {

// The groups of development tools are the greater part of the work.
constexpr double progressWithGroups = 0.75;

} // namespace

/// A folder that is a category by itself, with itself as its only item.
struct ProfessionalCleanupViewModel::WholeFolder
{
    FilePath path;
    QString name;
    QString nameKey;
    QString descriptionKey;
    QString icon;
};

ProfessionalCleanupViewModel::ProfessionalCleanupViewModel(std::shared_ptr<ScannerService> scanner,
                                                           DeveloperStorageService developerStorage,
                                                           CleanupService cleaner, HistoryService &history,
                                                           std::shared_ptr<const FileManager> files,
                                                           std::shared_ptr<const Clock> clock, QObject *parent)
    : CleanupViewModel(std::move(scanner), std::move(cleaner), history, std::move(clock),
                       {u"Professional Cleanup error: "_qs, false}, parent)
    , m_developerStorage(std::move(developerStorage))
    , m_files(std::move(files))
{
}

QCoro::Task<> ProfessionalCleanupViewModel::scan()
{
    const std::stop_token task = beginScan();
    const QPointer self(this);
    const WholeFolder wholeFolders[] = {
        {FilePath("/Library/Caches"), u"System Caches"_qs, u"professional.systemCaches"_qs,
         u"professional.systemCachesDescription"_qs, u"folder.badge.gearshape"_qs},
        // The home may be a link, and removal refuses what lies below one.
        {m_files->resolvingSymlinks(m_files->homeDirectory())
             .appending("Library/Containers/com.apple.mail/Data/Library/Mail Downloads"),
         u"Mail Downloads"_qs, u"professional.mailDownloads"_qs, u"professional.mailDownloadsDescription"_qs,
         u"envelope.open"_qs},
    };

    auto groups = inBackground([scanner = scanner(), storage = m_developerStorage, task] {
        return storage.scanCleanupCategories(*scanner, task);
    });
    const QList<CleanupCategory> found = co_await groups;
    if (!goesOn(self, task))
        co_return;
    append(found);
    showProgressOfScan(progressWithGroups, scanStatus());

    auto tools = inBackground([scanner = scanner(), storage = m_developerStorage, task] {
        return storage.scanInstalledTools(*scanner, task);
    });
    const std::optional<CleanupCategory> installed = co_await tools;
    if (!goesOn(self, task))
        co_return;
    if (installed)
        append({*installed});

    for (const WholeFolder &folder : wholeFolders) {
        auto measuring = this->measuring(folder.path, task);
        const qint64 size = co_await measuring;
        if (!goesOn(self, task))
            co_return;
        if (size >= 1)
            appendWhole(folder, size);
    }
    showProgressOfScan(1.0, scanStatus());
    setPhase(false, isCleaning());
}

QFuture<qint64> ProfessionalCleanupViewModel::measuring(const FilePath &folder, const std::stop_token &task) const
{
    return inBackground([scanner = scanner(), folder, task] { return scanner->sizeOf(folder, task).value_or(0); });
}

std::stop_token ProfessionalCleanupViewModel::beginScan()
{
    std::stop_token task = scanTask().begin();
    scanner()->resetCancellation();
    showProgressOfScan(0, localized(u"professional.scanningCategories"_qs));
    categories()->setCategories({});
    setPhase(true, isCleaning());
    return task;
}

bool ProfessionalCleanupViewModel::goesOn(const QPointer<ProfessionalCleanupViewModel> &model,
                                          const std::stop_token &task)
{
    if (!model || !model->scanTask().isLatest(task))
        return false;
    if (!model->scanner()->isCancelled())
        return true;
    model->setPhase(false, model->isCleaning());
    return false;
}

void ProfessionalCleanupViewModel::append(const QList<CleanupCategory> &found)
{
    categories()->append(found);
    Q_EMIT phaseChanged();
}

void ProfessionalCleanupViewModel::appendWhole(const WholeFolder &folder, qint64 size)
{
    const Localizer &localizer = Localizer::shared();
    CleanupItem item;
    item.name = folder.name;
    item.path = folder.path;
    item.size = size;
    item.category = folder.name;

    CleanupCategory category;
    category.name = folder.name;
    category.localizedName = localizer.localized(folder.nameKey);
    category.description = localizer.localized(folder.descriptionKey);
    category.riskLevel = RiskLevel::High;
    category.totalSize = size;
    category.itemCount = 1;
    category.isSelected = false;
    category.items = {item};
    category.icon = folder.icon;
    append({category});
}

} // namespace Quillmere
