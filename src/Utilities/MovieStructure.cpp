#include "Utilities/MovieStructure.h"

#include <QIODevice>
#include <QList>
#include <QtEndian>

#include <algorithm>
#include <optional>

namespace Quillmere {

namespace {

// ISO/IEC 14496-12: a box is its length, the kind of it in four letters, and what is in it. A length of 1 stands for
// one of eight bytes behind the kind, and a length of 0 for all that is left.
constexpr qint64 shortHeader = 8;
constexpr qint64 longHeader = 16;
// The tables of a short film take up some kilobytes.
constexpr qint64 longestTables = 4 * 1024 * 1024;
constexpr qsizetype mostBoxes = 4096;
constexpr quint32 mostPixelsPerSide = 4096;

struct Box
{
    QByteArray kind;
    qint64 begin = 0; ///< Of what is in it.
    qint64 end = 0;
};

std::optional<Box> boxIn(QByteArrayView header, qint64 at, qint64 end)
{
    if (header.size() < shortHeader)
        return std::nullopt;
    quint64 length = qFromBigEndian<quint32>(header.data());
    qint64 headerLength = shortHeader;
    if (length == 1) {
        if (header.size() < longHeader)
            return std::nullopt;
        length = qFromBigEndian<quint64>(header.data() + shortHeader);
        headerLength = longHeader;
    } else if (length == 0) {
        length = quint64(end - at);
    }
    if (length < quint64(headerLength) || length > quint64(end - at))
        return std::nullopt;
    return Box{header.sliced(4, 4).toByteArray(), at + headerLength, at + qint64(length)};
}

/// The boxes that lie one behind the other up to @p end; nothing where they do not fill it exactly, or are far more
/// than a short film has. @p headerAt answers with what stands at a place, as far as a header may be long.
template<typename HeaderAt>
std::optional<QList<Box>> boxesUntil(qint64 end, HeaderAt headerAt)
{
    QList<Box> boxes;
    for (qint64 at = 0; at < end; at = boxes.last().end) {
        const std::optional<Box> box = boxIn(headerAt(at), at, end);
        if (!box || boxes.size() == mostBoxes)
            return std::nullopt;
        boxes.append(*box);
    }
    return boxes;
}

std::optional<QList<Box>> boxesIn(QByteArrayView content)
{
    return boxesUntil(content.size(), [&](qint64 at) {
        return content.sliced(at, std::min<qint64>(longHeader, content.size() - at)).toByteArray();
    });
}

/// The same of a file, of which no more than the headers is read.
std::optional<QList<Box>> boxesIn(QIODevice &file)
{
    return boxesUntil(file.size(), [&](qint64 at) { return file.seek(at) ? file.read(longHeader) : QByteArray(); });
}

QByteArrayView contentOf(const Box &box, QByteArrayView whole)
{
    return whole.sliced(box.begin, box.end - box.begin);
}

/// What the only box of each kind in @p path holds, each within the one before; nothing where there is none or several.
std::optional<QByteArrayView> contentAt(QByteArrayView content, std::initializer_list<QByteArrayView> path)
{
    for (const QByteArrayView kind : path) {
        const auto boxes = boxesIn(content);
        if (!boxes)
            return std::nullopt;
        const auto isMeant = [&](const Box &box) { return box.kind == kind; };
        if (std::ranges::count_if(*boxes, isMeant) != 1)
            return std::nullopt;
        const auto found = std::ranges::find_if(*boxes, isMeant);
        content = contentOf(*found, content);
    }
    return content;
}

struct PictureSize
{
    quint32 width = 0;
    quint32 height = 0;
};

/// The last eight bytes of the track's header: whole pixels in the upper half of each number.
std::optional<PictureSize> pictureSizeOf(QByteArrayView track)
{
    const std::optional<QByteArrayView> header = contentAt(track, {"tkhd"});
    if (!header || header->size() < 84)
        return std::nullopt;
    const QByteArrayView size = header->last(8);
    return PictureSize{qFromBigEndian<quint32>(size.data()) >> 16, qFromBigEndian<quint32>(size.data() + 4) >> 16};
}

/// Whether what the track plays lies in the file itself: every entry says so, and names nothing.
bool isSelfContainedTrack(QByteArrayView track)
{
    constexpr qsizetype countLength = 8;
    const std::optional<QByteArrayView> references = contentAt(track, {"mdia", "minf", "dinf", "dref"});
    if (!references || references->size() < countLength)
        return false;
    const QByteArrayView entries = references->sliced(countLength);
    const auto boxes = boxesIn(entries);
    return boxes && !boxes->isEmpty() && std::ranges::all_of(*boxes, [&](const Box &box) {
               const QByteArrayView content = contentOf(box, entries);
               return content.size() >= 4 && (content.at(3) & 1) != 0
                   && std::ranges::all_of(content.sliced(4), [](char each) { return each == 0; });
           });
}

/// Whether the movie's tables say that it can be shown, and lead to nothing else.
bool isSelfContained(QByteArrayView tables)
{
    const auto boxes = boxesIn(tables);
    if (!boxes)
        return false;
    bool hasPicture = false;
    for (const Box &box : *boxes) {
        // A list of other movies, and tables that are packed.
        if (box.kind == "rmra" || box.kind == "cmov")
            return false;
        if (box.kind != "trak")
            continue;
        const QByteArrayView track = contentOf(box, tables);
        const std::optional<PictureSize> size = pictureSizeOf(track);
        if (!size || size->width > mostPixelsPerSide || size->height > mostPixelsPerSide
            || !isSelfContainedTrack(track))
            return false;
        hasPicture = hasPicture || (size->width > 0 && size->height > 0);
    }
    return hasPicture;
}

} // namespace

bool isSelfContainedMovie(QIODevice &file)
{
    // The kinds that a file of this family begins with. What else a player knows may be a list of other files.
    constexpr QByteArrayView firstKinds[] = {"ftyp", "moov", "mdat", "wide", "free", "skip", "pnot"};
    const auto boxes = boxesIn(file);
    if (!boxes || boxes->isEmpty()
        || std::ranges::find(firstKinds, QByteArrayView(boxes->first().kind)) == std::end(firstKinds))
        return false;
    int movies = 0;
    for (const Box &box : *boxes) {
        if (box.kind == "rmra")
            return false;
        if (box.kind != "moov")
            continue;
        if (++movies > 1 || box.end - box.begin > longestTables || !file.seek(box.begin)
            || !isSelfContained(file.read(box.end - box.begin)))
            return false;
    }
    return movies == 1 && std::ranges::any_of(*boxes, [](const Box &box) { return box.kind == "mdat"; });
}

} // namespace Quillmere
