#include "Platform/Linux/TreeWalk.h"

#include "Platform/Linux/FolderOpening.h"
#include "Platform/Linux/ScarceWalk.h"
#include "Platform/Linux/Walk.h"
#include "Platform/Linux/WalkWorker.h"

#include <cerrno>

namespace Quillmere {

namespace {

TreeSize walkFrom(FileDescriptor root, const Cancellation &cancellation, WalkPool &pool)
{
    Walk walk(cancellation);
    WalkWorker worker(walk, pool);
    worker.run({&walk, {std::make_shared<const FileDescriptor>(std::move(root)), {}, true}});
    if (!walk.isShared())
        return worker.sum();

    while (std::optional<WalkJob> job = pool.next(walk))
        worker.run(std::move(*job));
    TreeSize sum = WalkPool::sumOfHelpers(walk);
    sum += worker.sum();
    return sum;
}

} // namespace

Result<TreeSize> measureTree(const FilePath &folder, const Cancellation &cancellation, WalkPool &pool)
{
    FileDescriptor root = openFolderForReading(folder, FinalLink::Refuse);
    TreeSize size;
    if (root.isOpen())
        size = walkFrom(std::move(root), cancellation, pool);
    else if (lacksDescriptor(errno))
        size = ScarceWalk::of(folder, cancellation);
    if (cancellation.isRequested())
        return Failure{Failure::Kind::Cancelled, folder, {}};
    return size;
}

} // namespace Quillmere
