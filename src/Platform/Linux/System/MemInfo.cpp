#include "Platform/Linux/System/MemInfo.h"

#include "Platform/Linux/System/ProcText.h"

#include <QHash>

#include <limits>

namespace Quillmere {

namespace {

constexpr quint64 bytesPerUnit = 1024;
constexpr quint64 mostUnits = std::numeric_limits<quint64>::max() / bytesPerUnit / 8; // Their sum has room as well.

using Figures = QHash<QByteArrayView, quint64>;

Figures figuresIn(QByteArrayView text)
{
    Figures figures;
    for (const QByteArrayView line : wholeLines(text)) {
        const qsizetype colon = line.indexOf(':');
        const QList<QByteArrayView> fields = fieldsOf(line.sliced(colon + 1));
        // Figures without the unit are numbers of pages, not sizes.
        if (colon <= 0 || fields.size() != 2 || fields.at(1) != "kB")
            continue;
        const std::optional<quint64> number = wholeNumber(fields.first());
        if (number && *number <= mostUnits)
            figures.insert(line.first(colon), *number * bytesPerUnit);
    }
    return figures;
}

std::optional<quint64> figure(const Figures &figures, QByteArrayView name)
{
    const auto found = figures.constFind(name);
    return found == figures.constEnd() ? std::nullopt : std::optional(*found);
}

std::optional<quint64> availableOf(const Figures &figures)
{
    if (const std::optional<quint64> available = figure(figures, "MemAvailable"))
        return available;
    const std::optional<quint64> unused = figure(figures, "MemFree");
    if (!unused)
        return std::nullopt;
    const quint64 sum = *unused + figures.value("Buffers") + figures.value("Cached") + figures.value("SReclaimable");
    // Shared memory is counted as cached, but nothing else holds it.
    return sum - std::min(sum, figures.value("Shmem"));
}

} // namespace

MemInfo parseMemInfo(QByteArrayView text)
{
    const Figures figures = figuresIn(text);
    return {figure(figures, "MemTotal"), availableOf(figures)};
}

} // namespace Quillmere
