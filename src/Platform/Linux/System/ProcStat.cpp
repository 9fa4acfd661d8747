#include "Platform/Linux/System/ProcStat.h"

#include "Platform/Linux/System/ProcText.h"

#include <array>

namespace Quillmere {

namespace {

enum Column { User, Nice, System, Idle, IoWait, Irq, SoftIrq, Steal, Columns };

// proc(5): the other four came one after the other up to Linux 2.6.11. The two of guests behind them are already part
// of user and nice.
constexpr qsizetype columnsOfEveryKernel = 4;

std::optional<CpuTicks> ticksOf(const QList<QByteArrayView> &fields)
{
    const qsizetype count = std::min<qsizetype>(fields.size() - 1, Columns);
    if (count < columnsOfEveryKernel)
        return std::nullopt;
    std::array<quint64, Columns> ticks{};
    for (qsizetype column = 0; column < count; ++column) {
        const std::optional<quint64> number = wholeNumber(fields.at(column + 1));
        if (!number)
            return std::nullopt;
        ticks[static_cast<size_t>(column)] = *number;
    }
    return CpuTicks{ticks[User], ticks[System] + ticks[Irq] + ticks[SoftIrq] + ticks[Steal],
                    ticks[Idle] + ticks[IoWait], ticks[Nice]};
}

} // namespace

std::optional<CpuTicks> parseProcStat(QByteArrayView text)
{
    for (const QByteArrayView line : wholeLines(text)) {
        const QList<QByteArrayView> fields = fieldsOf(line);
        if (!fields.isEmpty() && fields.first() == "cpu")
            return ticksOf(fields);
    }
    return std::nullopt;
}

} // namespace Quillmere
