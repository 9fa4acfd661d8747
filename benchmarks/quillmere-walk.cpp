#include "Platform/Linux/Walk/TreeWalk.h"

#include <cstdio>

using namespace Quillmere;

/// Prints how many regular files stand below a folder and how many bytes they occupy.
int main(int argumentCount, char **arguments)
{
    if (argumentCount != 2) {
        std::fputs("Usage: quillmere-walk PATH\n", stderr);
        return 2;
    }
    const TreeSize size = measureTree(FilePath(arguments[1]), {}).valueOr({});
    std::printf("%lld files, %lld bytes\n", static_cast<long long>(size.fileCount),
                static_cast<long long>(size.allocatedSize));
    return 0;
}
