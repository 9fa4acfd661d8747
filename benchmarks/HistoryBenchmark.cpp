#include "Services/OperationLogCoding.h"

#include <benchmark/benchmark.h>

using namespace Quillmere;

namespace {

/// As many runs of the usual kind, an hour apart.
QList<OperationLog> history(qint64 runs)
{
    const QDateTime start({2015, 1, 1}, {0, 0, 0, 123}, Qt::UTC);
    QList<OperationLog> logs;
    for (qint64 run = 0; run < runs; ++run) {
        OperationLog log;
        log.date = start.addSecs(3600 * run);
        log.foundSize = 4'000'000'000 + run;
        log.cleanedSize = 3'000'000'000 + run;
        log.filesRemoved = run % 500;
        log.filesSkipped = run % 7;
        log.categoriesAffected = {u"User Cache"_qs, u"User Logs"_qs, u"Temporary Files"_qs};
        if (run % 10 == 0)
            log.errors = {u"/home/ada/.cache/some program/entry: Permission denied"_qs};
        logs.append(log);
    }
    return logs;
}

void encode(benchmark::State &state)
{
    const QList<OperationLog> logs = history(state.range(0));
    qint64 bytes = 0;
    for (auto _ : state) {
        const Result<QByteArray> json = encodeOperationLogs(logs);
        bytes += json.value().size();
        benchmark::DoNotOptimize(json);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
    state.SetBytesProcessed(bytes);
}

void decode(benchmark::State &state)
{
    const QByteArray json = encodeOperationLogs(history(state.range(0))).value();
    for (auto _ : state) {
        const Result<QList<OperationLog>> logs = decodeOperationLogs(json);
        if (!logs) {
            state.SkipWithError("The history does not decode.");
            break;
        }
        benchmark::DoNotOptimize(logs);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
    state.SetBytesProcessed(state.iterations() * json.size());
}

} // namespace

BENCHMARK(encode)->Arg(1'000)->Arg(100'000)->Unit(benchmark::kMillisecond);
BENCHMARK(decode)->Arg(1'000)->Arg(100'000)->Unit(benchmark::kMillisecond);
