#include "Platform/Linux/Files/LinuxFileManager.h"
#include "Services/BundleReplacement.h"

#include <cstdio>
#include <cstring>

using namespace Quillmere;

namespace {

bool report(const Failure &failure)
{
    std::fprintf(stderr, "%d %s\n", static_cast<int>(failure.kind), failure.detail.toUtf8().constData());
    return false;
}

bool trash(const LinuxFileManager &files, const FilePath &path)
{
    const Result<FilePath> trashed = files.trashItem(path);
    if (!trashed)
        return report(trashed.failure());
    std::puts(trashed.value().bytes().constData());
    return true;
}

bool remove(const LinuxFileManager &files, const FilePath &path)
{
    const Result<void> removed = files.removeItem(path);
    return removed || report(removed.failure());
}

bool replace(const LinuxFileManager &files, const FilePath &from, const FilePath &to)
{
    const Result<void> replaced = replaceBundle(files, from, to);
    return replaced || report(replaced.failure());
}

} // namespace

/// `quillmere-trash trash PATH...` prints where the items lie now; `remove` deletes them for good, `sync` sees their
/// volumes safely onto disk. `replace FROM TO` puts a copy of the one bundle in place of the other.
int main(int argc, char *argv[])
{
    if (argc < 2)
        return 2;
    const LinuxFileManager files;
    const bool forGood = std::strcmp(argv[1], "remove") == 0;
    if (std::strcmp(argv[1], "sync") == 0) {
        files.synchronizeVolumes(QList<FilePath>(argv + 2, argv + argc));
        return 0;
    }
    if (std::strcmp(argv[1], "replace") == 0)
        return argc == 4 && replace(files, FilePath(argv[2]), FilePath(argv[3])) ? 0 : 1;
    bool done = true;
    for (int argument = 2; argument < argc; ++argument) {
        const FilePath path(argv[argument]);
        done = (forGood ? remove(files, path) : trash(files, path)) && done;
    }
    return done ? 0 : 1;
}
