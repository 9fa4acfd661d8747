#include "Platform/Linux/System/ProcessStat.h"

#include "Platform/Linux/System/ProcText.h"

#include <algorithm>
#include <array>

namespace Quillmere {

namespace {

// proc(5) counts from 1, the name being the second; these count from the field behind the name.
enum Field {
    State = 0,
    Parent = 1,
    Flags = 6,
    UserTicks = 11,
    SystemTicks = 12,
    StartTime = 19,
    ResidentPages = 21,
    FieldsUsed,
};

constexpr quint64 kernelThreadFlag = 0x00200000; // PF_KTHREAD

} // namespace

std::optional<ProcessStat> parseProcessStat(QByteArrayView text)
{
    // The name may hold anything, parentheses and line ends as well; nothing behind it holds a parenthesis.
    const qsizetype open = text.indexOf('(');
    const qsizetype close = text.lastIndexOf(')');
    if (open < 1 || close < open || !text.endsWith('\n'))
        return std::nullopt;
    const QList<QByteArrayView> fields = fieldsOf(text.sliced(close + 1).chopped(1));
    if (fields.size() < FieldsUsed || fields.at(State).size() != 1)
        return std::nullopt;

    const auto pid = wholeNumber(text.first(open).trimmed());
    const auto parent = wholeNumber(fields.at(Parent));
    const auto flags = wholeNumber(fields.at(Flags));
    const auto user = wholeNumber(fields.at(UserTicks));
    const auto system = wholeNumber(fields.at(SystemTicks));
    const auto start = wholeNumber(fields.at(StartTime));
    const auto resident = wholeNumber(fields.at(ResidentPages));
    constexpr quint64 greatestPid = 1 << 22; // proc(5), pid_max
    if (!pid || *pid > greatestPid || !parent || *parent > greatestPid || !flags || !user || !system || !start
        || !resident)
        return std::nullopt;
    return ProcessStat{static_cast<pid_t>(*pid),
                       text.sliced(open + 1, close - open - 1).toByteArray(),
                       fields.at(State).front(),
                       static_cast<pid_t>(*parent),
                       (*flags & kernelThreadFlag) != 0,
                       *user + *system,
                       *start,
                       *resident};
}

} // namespace Quillmere
