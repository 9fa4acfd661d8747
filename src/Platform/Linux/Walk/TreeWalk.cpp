#include "Platform/Linux/Walk/TreeWalk.h"

#include "Platform/Linux/Files/FolderOpening.h"
#include "Platform/Linux/Walk/FileFinder.h"
#include "Platform/Linux/Walk/ScarceWalk.h"
#include "Platform/Linux/Walk/TreeMeasurer.h"
#include "Platform/Linux/Walk/Walk.h"
#include "Platform/Linux/Walk/WalkWorker.h"

#include <algorithm>
#include <cerrno>

namespace Quillmere {

namespace {

WalkFindings walkFrom(WalkFolder root, Walk &walk, WalkPool &pool)
{
    WalkWorker worker(walk, pool);
    worker.run({&walk, {std::make_shared<const WalkFolder>(std::move(root)), {}, true}});
    if (!walk.isShared())
        return worker.takeFindings();

    while (std::optional<WalkJob> job = pool.next(walk))
        worker.run(std::move(*job));
    WalkFindings findings = WalkPool::findingsOfHelpers(walk);
    findings += worker.takeFindings();
    return findings;
}

/// @p path is what WalkFolder::path says of @p folder.
WalkFindings walkThrough(const FilePath &folder, const QByteArray &path, Walk &walk, WalkPool &pool)
{
    FileDescriptor root = openFolderForReading(folder, FinalLink::Refuse);
    if (root.isOpen())
        return walkFrom({std::move(root), path}, walk, pool);
    if (lacksDescriptor(errno))
        return ScarceWalk::of(folder, path, walk);
    return {};
}

/// The path of a root as its entries are named below it: never null, so that they are.
QByteArray pathForNaming(const FilePath &folder)
{
    QByteArray path = folder.bytes();
    while (path.endsWith('/'))
        path.chop(1);
    return path.isNull() ? QByteArray("") : path;
}

/// Byte by byte, with the slash before everything else that may stand in a name.
bool comesBefore(const FoundFile &left, const FoundFile &right)
{
    const auto rank = [](char byte) { return byte == '/' ? 0 : int(static_cast<unsigned char>(byte)); };
    return std::ranges::lexicographical_compare(left.path.bytes(), right.path.bytes(), {}, rank, rank);
}

} // namespace

Result<TreeSize> measureTree(const FilePath &folder, const Cancellation &cancellation, WalkPool &pool)
{
    Walk walk(cancellation, [&] { return std::make_unique<TreeMeasurer>(cancellation); });
    const WalkFindings findings = walkThrough(folder, {}, walk, pool);
    if (findings.isPart)
        return Failure{Failure::Kind::Cancelled, folder, {}};
    return findings.size;
}

Result<QList<FoundFile>> findFiles(const FilePath &folder, const FileSearch &search, const Cancellation &cancellation,
                                   WalkPool &pool)
{
    SearchCounter counter(search);
    Walk walk(cancellation, [&] { return std::make_unique<FileFinder>(search, counter, cancellation); });
    WalkFindings findings = walkThrough(folder, pathForNaming(folder), walk, pool);
    if (findings.isPart)
        return Failure{Failure::Kind::Cancelled, folder, {}};
    std::vector<FoundFile> &files = findings.files;
    // The threads bring them as they come upon them.
    std::ranges::sort(files, comesBefore);
    return QList<FoundFile>(std::make_move_iterator(files.begin()), std::make_move_iterator(files.end()));
}

} // namespace Quillmere
