#include "Platform/Linux/Walk/TreeWalk.h"

#include <cstdio>

using namespace Quillmere;

/// Prints the files below a folder that occupy at least 50,000,000 bytes, a line each.
int main(int argumentCount, char **arguments)
{
    if (argumentCount != 2) {
        std::fputs("Usage: quillmere-large-files PATH\n", stderr);
        return 2;
    }
    FileSearch search;
    search.leastAllocatedSize = 50'000'000;
    search.closedFolder = "Library";
    const QList<FoundFile> files = findFiles(FilePath(arguments[1]), search, {}).valueOr({});
    for (const FoundFile &file : files)
        std::printf("%s\n", file.path.bytes().constData());
    return 0;
}
