#include "Platform/Linux/PlacePattern.h"

#include <algorithm>
#include <span>

namespace Quillmere {

namespace {

bool existsIn(const FilePath &folder, std::span<const QByteArray> names, const FileManager &files)
{
    if (names.empty())
        return files.attributesOfItem(folder).isOk();
    if (!names.front().contains('*'))
        return existsIn(folder.appending(names.front()), names.subspan(1), files);

    const auto entries = files.contentsOfDirectory(folder, HiddenFiles::Include).valueOr({});
    return std::ranges::any_of(entries, [&](const DirectoryEntry &entry) {
        return PlacePattern::nameMatches(names.front(), entry.path.lastPathComponent())
            && existsIn(entry.path, names.subspan(1), files);
    });
}

void takeExisting(const FilePath &folder, std::span<const QByteArray> names, const FileManager &files,
                  QList<FilePath> &found)
{
    if (names.empty()) {
        if (files.attributesOfItem(folder).isOk())
            found.append(folder);
        return;
    }
    if (!names.front().contains('*'))
        return takeExisting(folder.appending(names.front()), names.subspan(1), files, found);

    QList<QByteArray> matching;
    for (const DirectoryEntry &entry : files.contentsOfDirectory(folder, HiddenFiles::Include).valueOr({})) {
        const bool leadsElsewhere = entry.type == EntryKind::SymbolicLink && names.size() > 1;
        if (!leadsElsewhere && PlacePattern::nameMatches(names.front(), entry.path.lastPathComponent()))
            matching.append(entry.path.lastPathComponent());
    }
    std::ranges::sort(matching);
    for (const QByteArray &name : std::as_const(matching))
        takeExisting(folder.appending(name), names.subspan(1), files, found);
}

QList<QByteArray> namesBelow(const FilePath &base, const FilePath &item)
{
    QList<QByteArray> names = item.bytes().sliced(base.bytes().size()).split('/');
    names.removeAll(QByteArray());
    return names;
}

} // namespace

bool PlacePattern::isAtOrInside(const FilePath &item, const FileManager &files) const
{
    const std::span<const QByteArray> places(names);
    if (base.isWithin(item))
        return (item == base && places.empty()) || existsIn(base, places, files);
    if (!item.isWithin(base))
        return false;

    const QList<QByteArray> passed = namesBelow(base, item);
    if (passed.size() > names.size()
        || !std::equal(passed.begin(), passed.end(), names.begin(),
                       [](const QByteArray &name, const QByteArray &pattern) { return nameMatches(pattern, name); }))
        return false;
    return passed.size() == names.size() || existsIn(item, places.subspan(static_cast<size_t>(passed.size())), files);
}

QList<FilePath> PlacePattern::existing(const FileManager &files) const
{
    QList<FilePath> found;
    takeExisting(base, names, files, found);
    return found;
}

bool PlacePattern::nameMatches(const QByteArray &pattern, const QByteArray &name)
{
    const QList<QByteArray> pieces = pattern.split('*');
    if (pieces.size() == 1)
        return pattern == name;
    const QByteArray &first = pieces.first();
    const QByteArray &last = pieces.last();
    if (name.size() < first.size() + last.size() || !name.startsWith(first) || !name.endsWith(last))
        return false;

    qsizetype position = first.size();
    const qsizetype end = name.size() - last.size();
    for (const QByteArray &piece : pieces.sliced(1, pieces.size() - 2)) {
        const qsizetype found = name.indexOf(piece, position);
        if (found < 0 || found + piece.size() > end)
            return false;
        position = found + piece.size();
    }
    return true;
}

} // namespace Quillmere
