#include "Platform/Linux/Places/PlacePattern.h"

#include <algorithm>

namespace Quillmere {

namespace {

void takeExisting(const FilePath &folder, std::span<const QByteArray> names, const FileManager &files,
                  QList<FilePath> &found)
{
    if ((names.empty() || names.front().contains('*')) && !files.isAnswering(folder))
        return;
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

} // namespace

QList<QByteArray> PlacePattern::namesBelow(const FilePath &base, const FilePath &item)
{
    QList<QByteArray> names = item.bytes().sliced(base.bytes().size()).split('/');
    names.removeAll(QByteArray());
    return names;
}

std::optional<PlacePattern::Inside> PlacePattern::inside(const FilePath &item) const
{
    const std::span<const QByteArray> places(names);
    if (base.isWithin(item))
        return Inside{base, places};
    if (!item.isWithin(base))
        return std::nullopt;

    const QList<QByteArray> passed = namesBelow(base, item);
    if (passed.size() > names.size()
        || !std::equal(passed.begin(), passed.end(), names.begin(),
                       [](const QByteArray &name, const QByteArray &pattern) { return nameMatches(pattern, name); }))
        return std::nullopt;
    return Inside{item, places.subspan(static_cast<size_t>(passed.size()))};
}

QList<FilePath> PlacePattern::existing(const FileManager &files) const
{
    QList<FilePath> found;
    takeExisting(base, names, files, found);
    return found;
}

bool PlacePattern::nameMatches(QByteArrayView pattern, QByteArrayView name)
{
    if (!pattern.contains('*'))
        return pattern == name;
    qsizetype inPattern = 0;
    qsizetype inName = 0;
    qsizetype star = -1; // The last one met, and where in the name that which follows it was last tried.
    qsizetype tried = 0;
    while (inName < name.size()) {
        if (inPattern < pattern.size() && pattern[inPattern] == '*') {
            star = inPattern++;
            tried = inName;
        } else if (inPattern < pattern.size() && pattern[inPattern] == name[inName]) {
            ++inPattern;
            ++inName;
        } else if (star >= 0) {
            inPattern = star + 1;
            inName = ++tried;
        } else {
            return false;
        }
    }
    while (inPattern < pattern.size() && pattern[inPattern] == '*')
        ++inPattern;
    return inPattern == pattern.size();
}

} // namespace Quillmere
