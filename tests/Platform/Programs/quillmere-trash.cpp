#include "Platform/Linux/LinuxFileManager.h"

#include <cstdio>
#include <cstring>

using namespace Quillmere;

namespace {

int report(const Failure &failure)
{
    std::fprintf(stderr, "%d %s\n", static_cast<int>(failure.kind), failure.detail.toUtf8().constData());
    return 1;
}

} // namespace

/// `quillmere-trash trash PATH` prints where the item lies now; `quillmere-trash remove PATH` prints nothing.
int main(int argc, char *argv[])
{
    if (argc != 3)
        return 2;
    const LinuxFileManager files;
    const FilePath path(argv[2]);
    if (std::strcmp(argv[1], "remove") == 0) {
        const Result<void> removed = files.removeItem(path);
        return removed ? 0 : report(removed.failure());
    }
    const Result<FilePath> trashed = files.trashItem(path);
    if (!trashed)
        return report(trashed.failure());
    std::puts(trashed.value().bytes().constData());
    return 0;
}
