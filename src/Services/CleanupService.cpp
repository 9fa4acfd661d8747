#include "Services/CleanupService.h"

#include "Utilities/Constants.h"
#include "Utilities/FailureDescription.h"
#include "Utilities/PathValidator.h"
#include "Utilities/SymlinkChecker.h"

#include <algorithm>

namespace Quillmere {

namespace {

bool mayBeDeleted(const CleanupItem &item)
{
    const QString category = item.category.toLower();
    return item.riskLevel == RiskLevel::Safe && (category.contains(u"cache") || category.contains(u"temp"));
}

QString lineOf(const CleanupItem &item, const Failure &failure)
{
    return u"Failed to clean "_qs + item.name + u": "_qs + localizedDescription(failure);
}

} // namespace

CleanupService::CleanupService(std::shared_ptr<const FileManager> files, std::shared_ptr<const Places> places)
    : m_files(std::move(files))
    , m_places(std::move(places))
{
}

QList<CleanupItem> CleanupService::validateBeforeCleanup(const QList<CleanupItem> &items) const
{
    QList<CleanupItem> valid;
    std::ranges::copy_if(items, std::back_inserter(valid),
                         [this](const CleanupItem &item) { return mayBeTouched(item); });
    return valid;
}

bool CleanupService::mayBeTouched(const CleanupItem &item) const
{
    if (!item.isDeletable)
        return false;
    const FilePath standardized = item.path.standardized();
    if (Constants::protectedPaths().contains(standardized.bytes()))
        return false;
    if (standardized == m_files->homeDirectory().standardized())
        return false;
    if (PathValidator::isProtectedUserDirectory(item.path, *m_files))
        return false;
    if (PathValidator::isProtectedPath(item.path, *m_files))
        return false;
    // Asked a second time on purpose: this gate stands on its own, whatever becomes of the tests above.
    if (PathValidator::isProtectedUserDirectory(item.path, *m_files))
        return false;
    // What lies on a volume that does not answer cannot be asked, and may be a link as well.
    if (m_files->isAnswering(item.path) && !SymlinkChecker::isSymlink(item.path, *m_files))
        return true;
    const FilePath target = m_files->resolvingSymlinks(item.path);
    return !PathValidator::isProtectedPath(target, *m_files)
        && !PathValidator::isProtectedUserDirectory(target, *m_files);
}

CleanupResult CleanupService::cleanItems(const QList<CleanupItem> &items, bool moveToTrash,
                                         const Progress &progress) const
{
    const QList<CleanupItem> valid = validateBeforeCleanup(items);
    const double total = valid.isEmpty() ? 1.0 : double(valid.size());
    CleanupResult result;
    for (qsizetype i = 0; i < valid.size(); ++i) {
        const CleanupItem &item = valid.at(i);
        if (!m_files->isAnswering(item.path)) {
            ++result.filesSkipped;
            result.errors.append(lineOf(item, Failure{Failure::Kind::NotAnswering, item.path, {}}));
        } else if (!m_files->fileExists(item.path)) {
            ++result.filesSkipped;
        } else if (!moveToTrash && !mayBeDeleted(item)) {
            ++result.filesSkipped;
            continue;
        } else if (const Result<void> removal = remove(item, moveToTrash)) {
            ++result.filesRemoved;
            result.sizeCleaned += item.size;
        } else {
            ++result.filesSkipped;
            result.errors.append(lineOf(item, removal.failure()));
        }
        progress(double(i + 1) / total);
    }
    return result;
}

void CleanupService::synchronize(const QList<CleanupItem> &items, const CleanupResult &result) const
{
    if (result.filesRemoved == 0)
        return;
    QList<FilePath> paths;
    std::ranges::transform(items, std::back_inserter(paths), &CleanupItem::path);
    m_files->synchronizeVolumes(paths);
}

Result<void> CleanupService::remove(const CleanupItem &item, bool moveToTrash) const
{
    if (const std::optional<QString> reason = m_places->reasonToKeep(item.path))
        return Failure{Failure::Kind::Protected, item.path, *reason};
    if (!moveToTrash)
        return m_files->removeItem(item.path);
    const Result<FilePath> trashed = m_files->trashItem(item.path);
    return trashed ? Result<void>() : trashed.failure();
}

} // namespace Quillmere
