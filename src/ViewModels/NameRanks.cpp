#include "ViewModels/NameRanks.h"

#include "Utilities/LocalizedSortKey.h"

#include <algorithm>
#include <numeric>

namespace Quillmere {

std::vector<qsizetype> nameRanks(const QList<FileItem> &files, const QLocale &locale)
{
    std::vector<LocalizedSortKey> keys;
    keys.reserve(static_cast<size_t>(files.size()));
    for (const FileItem &file : files)
        keys.emplace_back(file.name, locale);

    std::vector<size_t> order(keys.size());
    std::iota(order.begin(), order.end(), size_t(0));
    std::ranges::sort(order, [&](size_t left, size_t right) { return keys[left].compare(keys[right]) < 0; });

    std::vector<qsizetype> ranks(keys.size());
    qsizetype rank = 0;
    for (size_t i = 0; i < order.size(); ++i) {
        if (i > 0 && keys[order[i - 1]].compare(keys[order[i]]) != 0)
            ++rank;
        ranks[order[i]] = rank;
    }
    return ranks;
}

} // namespace Quillmere
