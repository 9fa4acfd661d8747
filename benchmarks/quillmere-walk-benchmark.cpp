#include "Platform/Linux/Files/FolderListing.h"
#include "Platform/Linux/Walk/TreeWalk.h"

#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Quillmere;

namespace {

/// @p folders folders with ten empty files each.
class Tree
{
public:
    explicit Tree(int64_t folders)
    {
        for (int64_t folder = 0; folder < folders; ++folder) {
            const FilePath path = root().appending(QByteArray::number(static_cast<qint64>(folder)));
            ::mkdir(path.bytes().constData(), 0755);
            for (int file = 0; file < 10; ++file)
                ::close(::creat(path.appending(QByteArray::number(file)).bytes().constData(), 0644));
        }
    }

    [[nodiscard]] FilePath root() const { return FilePath(m_folder.path().toUtf8()); }

private:
    QTemporaryDir m_folder;
};

void measuresTree(benchmark::State &state)
{
    const Tree tree(state.range(0));
    WalkPool pool(static_cast<int>(state.range(1)), static_cast<int>(state.range(1)));
    for (auto _ : state)
        benchmark::DoNotOptimize(measureTree(tree.root(), {}, pool));
    state.SetItemsProcessed(state.iterations() * state.range(0) * 10);
}
BENCHMARK(measuresTree)
    ->ArgNames({"folders", "helpers"})
    ->ArgsProduct({{1, 10, 100, 3000}, {0, 1, 3, 15}})
    ->UseRealTime()
    ->MeasureProcessCPUTime();

void listsFolder(benchmark::State &state)
{
    const Tree tree(state.range(0));
    for (auto _ : state)
        benchmark::DoNotOptimize(contentsOfDirectory(tree.root(), HiddenFiles::Skip));
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(listsFolder)->Arg(10)->Arg(1000);

} // namespace

BENCHMARK_MAIN();
