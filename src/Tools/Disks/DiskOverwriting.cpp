#include "Tools/Disks/DiskOverwriting.h"

#include "Tools/Disks/ChosenDisk.h"

#include <QRandomGenerator>

#include <algorithm>

namespace Quillmere {

namespace {

constexpr qint64 bytesAtOnce = 4 << 20;
constexpr qint64 bytesOfAPlace = 64 << 10;
constexpr qint64 placesReadBack = 256;
constexpr qint64 linesOfProgress = 10;

Failure stopped(const ChosenDisk &disk, qint64 written, const QString &reason)
{
    return {Failure::Kind::Other,
            {},
            u"%1 was not overwritten: %2 Only the first %3 of %4 bytes were."_qs.arg(disk.name(), reason)
                .arg(written)
                .arg(disk.identity().size)};
}

Result<void> writeAll(const DiskTools &tools, const ChosenDisk &disk, OpenDevice &device)
{
    const qint64 size = disk.identity().size;
    qint64 linesSaid = 0;
    for (qint64 written = 0; written < size;) {
        // A reader of cards goes on with another card under the same name.
        if (!disk.seeThatItIsThis(device))
            return stopped(disk, written, u"It was exchanged meanwhile."_qs);
        const qint64 length = std::min(bytesAtOnce, size - written);
        if (const Result<void> done = device.writeZeros(written, length); !done)
            return stopped(disk, written, done.failure().detail + u'.');
        written += length;
        for (; linesSaid < linesOfProgress && written >= size / linesOfProgress * (linesSaid + 1); ++linesSaid)
            tools.say(u"%1 % of %2"_qs.arg((linesSaid + 1) * 100 / linesOfProgress).arg(disk.name()));
    }
    const Result<void> kept = device.synchronize();
    return kept ? kept
                : Failure{Failure::Kind::Other,
                          {},
                          u"%1 was not overwritten to its end: %2."_qs.arg(disk.name(), kept.failure().detail)};
}

/// The beginning, the end, and others that nobody can guess; all there are on a small disk.
QList<qint64> placesOn(qint64 size)
{
    QList<qint64> places;
    const qint64 there = size / bytesOfAPlace;
    if (there <= placesReadBack) {
        for (qint64 place = 0; place < there; ++place)
            places.append(place * bytesOfAPlace);
    } else {
        places.append(0);
        while (places.size() < placesReadBack - 1)
            places.append(QRandomGenerator::system()->bounded(there) * bytesOfAPlace);
    }
    places.append(std::max<qint64>(size - bytesOfAPlace, 0));
    return places;
}

Result<qsizetype> readBack(const ChosenDisk &disk, OpenDevice &device)
{
    const qint64 size = disk.identity().size;
    const QList<qint64> places = placesOn(size);
    for (const qint64 place : places) {
        const Result<QByteArray> contents = device.read(place, std::min(bytesOfAPlace, size - place));
        const bool isZero = contents && contents.value() == QByteArray(contents.value().size(), '\0');
        if (!isZero)
            return Failure{Failure::Kind::Other,
                           {},
                           u"%1 was overwritten, but what is read back at byte %2 is not zero: %3"_qs.arg(disk.name())
                               .arg(place)
                               .arg(contents ? u"it still holds something."_qs : contents.failure().detail)};
    }
    return places.size();
}

} // namespace

ToolEnd overwriteDisk(const DiskTools &tools, const DiskIdentity &identity)
{
    const Result<ChosenDisk> chosen = ChosenDisk::choose(tools, identity);
    if (!chosen)
        return ToolEnd::failed(chosen.failure());
    const ChosenDisk &disk = chosen.value();
    if (const Result<void> free = disk.release(tools); !free)
        return {ToolEnd::notBegun, free.failure().detail};
    const Result<std::unique_ptr<OpenDevice>> alone = disk.openAlone(tools);
    if (!alone)
        return {ToolEnd::notBegun, alone.failure().detail};
    OpenDevice &device = *alone.value();
    if (const Result<void> written = writeAll(tools, disk, device); !written)
        return ToolEnd::failed(written.failure());
    const Result<qsizetype> places = readBack(disk, device);
    if (!places)
        return ToolEnd::failed(places.failure());
    if (const Result<void> same = disk.seeThatItIsThis(device); !same)
        return ToolEnd::failed(
            {Failure::Kind::Other, {}, u"%1 was exchanged before its end was reached."_qs.arg(disk.name())});
    device.lookForPartitions();
    tools.say(u"Overwrote all %1 bytes of %2 with zeros, once. Read back %3 places: all zero."_qs.arg(identity.size)
                  .arg(disk.name())
                  .arg(places.value()));
    return {};
}

} // namespace Quillmere
