#include "Platform/Linux/LinuxPlaces.h"

#include <algorithm>
#include <array>

namespace Quillmere {

namespace {

// Programs put their sockets into a folder of their own, or one below that.
constexpr int levelsOfSocketsInTemporary = 3;

constexpr std::array tables
    = {PlaceTable::UserCache, PlaceTable::UserLogs, PlaceTable::ContainerCache, PlaceTable::TemporaryFiles};

} // namespace

LinuxPlaces::LinuxPlaces(std::shared_ptr<const FileManager> files, const BaseDirectories::Environment &environment,
                         const PlacesData &data)
    : m_files(std::move(files))
{
    takeFolders(environment, data);
    takeRows(data);
    takeKept(data);
}

std::optional<QString> LinuxPlaces::reasonToKeep(const FilePath &item) const
{
    // A link is offered as itself, so only what lies above it is followed.
    const FilePath written = item.standardized();
    const FilePath folder = m_files->resolvingSymlinks(written.deletingLastPathComponent());
    const FilePath actual = folder.appending(written.lastPathComponent());

    if (auto reason = reasonOfPlace(actual))
        return reason;
    if (actual != written) {
        if (auto reason = reasonOfPlace(written))
            return reason;
    }
    if (std::ranges::any_of(m_roots, [&](const FilePath &root) { return root.isWithin(actual); }))
        return u"What it holds is offered by itself."_qs;
    return reasonOfUse(actual);
}

void LinuxPlaces::takeFolders(const BaseDirectories::Environment &environment, const PlacesData &data)
{
    const FilePath home = m_files->homeDirectory().standardized();
    const BaseDirectories folders = BaseDirectories::of(home, environment);
    m_bases = {
        {"", FilePath("/")},
        {"~", home},
        {"$cache", folders.cache},
        {"$config", folders.config},
        {"$data", folders.data},
        {"$state", folders.state},
        {"$temporary", m_files->temporaryDirectory().standardized()},
    };
    // A variable that names the home or the documents is a mistake, and no reason to offer them.
    if (!mayBeRoot(folders.cache, data))
        m_bases["$cache"] = home.appending(".cache");
    if (!mayBeRoot(folders.state, data))
        m_bases["$state"] = home.appending(".local/state");
    m_offersTemporary = mayBeRoot(m_bases.value("$temporary"), data);
}

void LinuxPlaces::takeRows(const PlacesData &data)
{
    QList<PlaceRow> known;
    for (const PlacesData::Place &place : data.programRoots)
        known.append({m_files->resolvingSymlinks(location(place)), {}});

    for (const PlaceTable table : tables) {
        for (const PlacesData::Row &entry : data.rows.value(table)) {
            const FilePath folder = location(entry.root);
            const PlaceRow actual = {m_files->resolvingSymlinks(folder), entry.suffix};
            // With a suffix only that folder in each child is offered, so the root may be a place of data.
            if (known.contains(actual) || (actual.suffix.isEmpty() && !mayBeRoot(folder, data)))
                continue;
            known.append(actual);
            m_rows[table].append({folder, entry.suffix});
        }
    }
    for (const PlaceRow &row : known)
        m_roots.append(row.root);
}

void LinuxPlaces::takeKept(const PlacesData &data)
{
    for (const PlacesData::ReasonedPlace &kept : data.keep) {
        for (const PlacePattern &pattern : patterns(kept.place)) {
            m_kept.append({pattern, kept.reason});
            if (const FilePath actual = m_files->resolvingSymlinks(pattern.base); actual != pattern.base)
                m_kept.append({{actual, pattern.names}, kept.reason});
        }
    }
}

FilePath LinuxPlaces::location(const PlacesData::Place &place) const
{
    FilePath path = m_bases.value(place.base);
    for (const QByteArray &name : place.names)
        path = path.appending(name);
    return path;
}

QList<PlacePattern> LinuxPlaces::patterns(const PlacesData::Place &place) const
{
    const FilePath home = m_bases.value("~");
    if (place.base == "$temporary") {
        return {
            {m_bases.value("$temporary"), place.names},
            // What a Flatpak application knows as /var/tmp.
            {home.appending(".var/app"), QList<QByteArray>{"*", "cache", "tmp"} + place.names},
        };
    }
    if (place.base != "$cache")
        return {{m_bases.value(place.base), place.names}};
    return {
        {m_bases.value("$cache"), place.names},
        {home.appending(".var/app"), QList<QByteArray>{"*", "cache"} + place.names},
        {home.appending("snap"), QList<QByteArray>{"*", "common", ".cache"} + place.names},
    };
}

bool LinuxPlaces::mayBeRoot(const FilePath &folder, const PlacesData &data) const
{
    const FilePath actual = m_files->resolvingSymlinks(folder);
    const FilePath home = m_files->resolvingSymlinks(m_bases.value("~"));
    return !home.isWithin(actual) && std::ranges::none_of(data.notRoots, [&](const PlacesData::ReasonedPlace &refused) {
        return m_files->resolvingSymlinks(location(refused.place)) == actual;
    });
}

std::optional<QString> LinuxPlaces::reasonOfPlace(const FilePath &item) const
{
    const auto kept
        = std::ranges::find_if(m_kept, [&](const Kept &kept) { return kept.pattern.isAtOrInside(item, *m_files); });
    return kept == m_kept.end() ? std::nullopt : std::optional(kept->reason);
}

bool LinuxPlaces::holdsSocket(const FilePath &folder, int levels) const
{
    const auto entries = m_files->contentsOfDirectory(folder, HiddenFiles::Include).valueOr({});
    return std::ranges::any_of(entries, [&](const DirectoryEntry &entry) {
        return entry.type == FileType::Other
            || (levels > 1 && entry.type == FileType::Directory && holdsSocket(entry.path, levels - 1));
    });
}

std::optional<QString> LinuxPlaces::reasonOfUse(const FilePath &item) const
{
    // The program's own tables below Library are offered as they stand.
    if (item.isWithin(m_files->resolvingSymlinks(m_bases.value("~").appending("Library"))))
        return std::nullopt;

    const auto attributes = m_files->attributesOfItem(item);
    const bool isForeign = attributes.isOk() && !attributes.value().isOwnedByUser;
    const bool isTemporary = item.isWithin(m_files->resolvingSymlinks(m_bases.value("$temporary")));
    if (isTemporary && !m_offersTemporary)
        return u"The folder for temporary files is one that programs rely on for longer."_qs;
    if (isTemporary && isForeign)
        return u"It belongs to another user."_qs;
    if (holdsSocket(item, isTemporary ? levelsOfSocketsInTemporary : 1))
        return u"A running program is reached through a socket or pipe in it."_qs;
    return std::nullopt;
}

} // namespace Quillmere
