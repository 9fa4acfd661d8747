#include "Tools/ps/LoadSample.h"

#include "Platform/Linux/System/ProcText.h"

#include <cmath>

namespace Quillmere {

namespace {

const QByteArray heading = "quillmere-ps 1";
constexpr double loadUnit = 1000; // Loads are kept in thousandths of a percent, as whole numbers.

std::optional<std::pair<pid_t, LoadSample::Process>> processIn(QByteArrayView line)
{
    const QList<QByteArrayView> fields = fieldsOf(line);
    if (fields.size() != 4)
        return std::nullopt;
    const auto pid = wholeNumber(fields.at(0));
    const auto start = wholeNumber(fields.at(1));
    const auto ticks = wholeNumber(fields.at(2));
    const auto load = wholeNumber(fields.at(3));
    if (!pid || *pid == 0 || *pid > std::numeric_limits<pid_t>::max() || !start || !ticks || !load)
        return std::nullopt;
    return std::pair(static_cast<pid_t>(*pid),
                     LoadSample::Process{*start, *ticks, static_cast<double>(*load) / loadUnit});
}

} // namespace

QByteArray LoadSample::written() const
{
    QByteArray text = heading + '\n' + boot + '\n' + QByteArray::number(instant) + '\n'
        + QByteArray::number(processes.size()) + '\n';
    for (auto each = processes.cbegin(); each != processes.cend(); ++each) {
        text += QByteArray::number(each.key()) + ' ' + QByteArray::number(each->startTime) + ' '
            + QByteArray::number(each->ticks) + ' ' + QByteArray::number(std::llround(each->load * loadUnit)) + '\n';
    }
    return text;
}

std::optional<LoadSample> LoadSample::read(const QByteArray &text)
{
    constexpr qsizetype headLines = 4;
    const QList<QByteArrayView> lines = wholeLines(text);
    if (lines.size() < headLines || lines.at(0) != heading)
        return std::nullopt;
    LoadSample sample;
    sample.boot = lines.at(1).toByteArray();
    const auto instant = wholeNumber(lines.at(2));
    const auto count = wholeNumber(lines.at(3));
    if (!instant || !count || *count != static_cast<quint64>(lines.size() - headLines))
        return std::nullopt;
    sample.instant = *instant;
    for (const QByteArrayView line : lines.sliced(headLines)) {
        const auto process = processIn(line);
        if (!process || sample.processes.contains(process->first))
            return std::nullopt;
        sample.processes.insert(process->first, process->second);
    }
    return sample;
}

} // namespace Quillmere
