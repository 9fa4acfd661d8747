#include "Fakes/PretendHostStatistics.h"

namespace Quillmere {

void PretendHostStatistics::move(quint64 received, quint64 sent)
{
    for (InterfaceCounters &each : counters.value()) {
        each.received += received;
        each.sent += sent;
    }
}

void PretendHostStatistics::spend(quint64 elapsed, quint64 percent)
{
    const quint64 busy = elapsed * percent / 100;
    ticks.value().user += busy;
    ticks.value().idle += elapsed - busy;
}

} // namespace Quillmere
