#include "Services/LargeFileFinder.h"

#include <algorithm>

namespace Quillmere {

namespace {

constexpr const char *searchedFolders[] = {"Downloads", "Documents", "Desktop", "Movies", "Music", "Pictures"};
constexpr qint64 leastSize = 50'000'000;
// A folder is shown as if this many items filled its part of the progress, which is full when the next one begins.
constexpr double itemsOfAPart = 10'000;
constexpr double mostOfAPart = 0.99;

FileItem itemOf(const FoundFile &file)
{
    FileItem item;
    item.name = FilePath::displayText(file.path.lastPathComponent());
    item.path = file.path;
    item.size = file.allocatedSize;
    item.fileType = fileTypeFromExtension(QString::fromUtf8(file.path.pathExtension()));
    item.category = categoryOf(item.fileType);
    item.lastOpened = file.accessed;
    item.lastModified = file.modified;
    return item;
}

} // namespace

LargeFileFinder::LargeFileFinder(std::shared_ptr<const FileManager> files, std::shared_ptr<const Places> places,
                                 Progress progress, Cancellation cancellation)
    : m_files(std::move(files))
    , m_places(std::move(places))
    , m_progress(std::move(progress))
    , m_cancellation(std::move(cancellation))
    , m_home(m_files->resolvingSymlinks(m_files->homeDirectory()))
{
}

std::optional<QList<FileItem>> LargeFileFinder::find()
{
    constexpr double part = 1.0 / std::size(searchedFolders);
    for (size_t i = 0; i < std::size(searchedFolders) && !m_cancellation.isRequested(); ++i)
        scanFolders(existingFolders(searchedFolders[i]), double(i) * part, double(i + 1) * part);
    if (m_cancellation.isRequested())
        return std::nullopt;
    return std::move(m_found);
}

void LargeFileFinder::scanFolders(const QList<FilePath> &folders, double baseProgress, double nextProgress)
{
    const double share = (nextProgress - baseProgress) / double(std::max<qsizetype>(folders.size(), 1));
    for (qsizetype i = 0; i < folders.size() && !m_cancellation.isRequested(); ++i)
        scanDirectory(folders.at(i), baseProgress + double(i) * share, baseProgress + double(i + 1) * share);
}

void LargeFileFinder::scanDirectory(const FilePath &folder, double baseProgress, double nextProgress)
{
    FileSearch search;
    search.leastAllocatedSize = leastSize;
    search.closedFolder = "Library";
    search.progress = [&](qint64 number, const QByteArray &name) {
        const double done = std::min(double(number) / itemsOfAPart, mostOfAPart);
        m_progress(baseProgress + (nextProgress - baseProgress) * done, FilePath::displayText(name));
    };
    const QList<FoundFile> files = m_files->findFiles(folder, search, m_cancellation).valueOr({});
    for (const FoundFile &file : files) {
        const bool isOfAnother = std::ranges::any_of(m_taken, [&](const FilePath &taken) {
            return taken != folder && taken.isWithin(folder) && file.path.isWithin(taken);
        });
        if (!isOfAnother)
            m_found.append(itemOf(file));
    }
}

QList<FilePath> LargeFileFinder::existingFolders(const QByteArray &name)
{
    QList<FilePath> folders;
    const auto take = [&](const FilePath &folder) {
        if (const std::optional<FilePath> place = placeToWalk(folder)) {
            m_taken.append(*place);
            folders.append(*place);
        }
    };
    take(m_files->homeDirectory().appending(name));
    for (const PlaceEntry &entry : m_places->entriesBehind(u"Large Files: "_qs + QString::fromUtf8(name)))
        take(entry.path);
    return folders;
}

std::optional<FilePath> LargeFileFinder::placeToWalk(const FilePath &folder) const
{
    if (!m_files->isAnswering(folder))
        return std::nullopt;
    // Moving a file to the Trash is refused below a link, so that what is found must be named by its true place.
    const FilePath place = m_files->resolvingSymlinks(folder);
    const bool isTaken = std::ranges::any_of(m_taken, [&](const FilePath &taken) { return place.isWithin(taken); });
    if (isTaken || m_home.isWithin(place) || !m_files->fileExists(place))
        return std::nullopt;
    return place;
}

} // namespace Quillmere
