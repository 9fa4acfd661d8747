#include "Platform/Linux/Walk/TreeWalk.h"

#include <cstdio>

#include <unistd.h>

using namespace Quillmere;

/// Prints how many regular files stand below a folder and how many bytes they occupy.
int main(int argumentCount, char **arguments)
{
    if (argumentCount != 2) {
        std::fputs("Usage: quillmere-walk PATH\n", stderr);
        return 2;
    }
    if (::access(arguments[1], R_OK | X_OK) != 0) {
        std::perror(arguments[1]);
        return 1;
    }
    const TreeSize size = measureTree(FilePath(arguments[1]), {}).valueOr({});
    std::printf("%lld files, %lld bytes\n", static_cast<long long>(size.fileCount),
                static_cast<long long>(size.allocatedSize));
    return 0;
}
