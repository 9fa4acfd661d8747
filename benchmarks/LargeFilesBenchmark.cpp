#include "Utilities/LocalizationManager.h"
#include "Utilities/TextComparison.h"
#include "ViewModels/LargeFilesListModel.h"
#include "ViewModels/NameRanks.h"

#include <benchmark/benchmark.h>

using namespace Quillmere;

namespace {

QList<FileItem> someFiles(qsizetype count)
{
    QList<FileItem> files;
    for (qsizetype i = 0; i < count; ++i) {
        FileItem file;
        file.name = u"Recording %1 of a long evening.mkv"_qs.arg(i * 7919 % count);
        file.path = FilePath("/home/ada/Movies").appending(file.name.toUtf8());
        file.size = 50'000'000 + i;
        files.append(file);
    }
    return files;
}

void ranksNames(benchmark::State &state)
{
    const QList<FileItem> files = someFiles(state.range(0));
    for (auto _ : state)
        benchmark::DoNotOptimize(nameRanks(files, collationLocale(Language::English)));
}
BENCHMARK(ranksNames)->Arg(1'000)->Arg(100'000)->Unit(benchmark::kMillisecond);

/// What a sort without ranks would cost.
void sortsNames(benchmark::State &state)
{
    const QList<FileItem> files = someFiles(state.range(0));
    const QLocale locale = collationLocale(Language::English);
    for (auto _ : state) {
        QList<FileItem> sorted = files;
        std::ranges::stable_sort(sorted, [&](const FileItem &left, const FileItem &right) {
            return localizedStandardCompare(left.name, right.name, locale) < 0;
        });
        benchmark::DoNotOptimize(sorted);
    }
}
BENCHMARK(sortsNames)->Arg(1'000)->Arg(100'000)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
