#include "Platform/Linux/Files/OpenAt.h"
#include "Platform/Linux/Removal/TreeRemoval.h"

#include <cstdio>
#include <cstdlib>

#include <fcntl.h>

using namespace Quillmere;

/// `quillmere-remove THREADS PATH` deletes one item for good and prints how many entries that were.
int main(int argc, char *argv[])
{
    if (argc != 3)
        return 2;
    const Result<ItemPlace> place = ItemPlace::open(FilePath(argv[2]), LinksAbove::Refuse);
    if (!place)
        return 1;
    const FileDescriptor item = openAt(place.value().folder.number(), place.value().name, O_PATH | O_NOFOLLOW);
    RemovalRecord record;
    TreeRemoval(std::atoi(argv[1])).remove(place.value(), item, record);
    std::printf("%lld\n", static_cast<long long>(record.removed()));
    return record.failure() ? 1 : 0;
}
