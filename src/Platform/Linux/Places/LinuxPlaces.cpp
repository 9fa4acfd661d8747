#include "Platform/Linux/Places/LinuxPlaces.h"

#include "Platform/Linux/Places/UserFolders.h"
#include "Utilities/RemovableLocation.h"

#include <algorithm>
#include <array>

namespace Quillmere {

namespace {

// Programs put their sockets into a folder of their own, or one below that.
constexpr int levelsOfSocketsInTemporary = 3;

constexpr std::array tables
    = {PlaceTable::UserCache, PlaceTable::UserLogs, PlaceTable::ContainerCache, PlaceTable::TemporaryFiles};

/// The row's name, in which a `*` stands for the name on disk that the place's last `*` has led to.
QString nameOf(const PlacesData::ListRow &row, const FilePath &base, const FilePath &path)
{
    const auto isOpen = [](const QByteArray &name) { return name.contains('*'); };
    const auto last = std::ranges::find_if(row.place.names.rbegin(), row.place.names.rend(), isOpen);
    if (last == row.place.names.rend())
        return row.name;
    const QByteArray below = path.bytes().sliced(base.bytes().size());
    const QByteArray found = below.split('/').value(below.count('/') - (last - row.place.names.rbegin()));
    return QString(row.name).replace(u'*', FilePath::displayText(found));
}

} // namespace

LinuxPlaces::LinuxPlaces(std::shared_ptr<const FileManager> files, const BaseDirectories::Environment &environment,
                         const PlacesData &data)
    : m_files(std::move(files))
    , m_lists(data.lists)
{
    takeBases(environment, data);
    takeRows(data);
    takeKept(data);
}

QList<PlaceEntry> LinuxPlaces::entriesBehind(const QString &list) const
{
    QList<PlaceEntry> found;
    QList<FilePath> known;
    for (const PlacesData::ListRow &row : m_lists.value(list)) {
        if (!m_bases.contains(row.place.base))
            continue;
        const PlacePattern place = {m_bases[row.place.base].written, row.place.names};
        for (const FilePath &path : place.existing(*m_files)) {
            const FilePath actual = m_files->resolvingSymlinks(path);
            if (!isMeant(row, path) || known.contains(actual))
                continue;
            known.append(actual);
            found.append({nameOf(row, place.base, path), path});
        }
    }
    return found;
}

bool LinuxPlaces::isMeant(const PlacesData::ListRow &row, const FilePath &path) const
{
    const FilePath held = path.appending(row.holds);
    return row.holds.isEmpty() || (m_files->isAnswering(held) && m_files->attributesOfItem(held).isOk());
}

std::optional<QString> LinuxPlaces::reasonToKeep(const FilePath &item, const Cancellation &cancellation) const
{
    const FilePath written = item.standardized();
    const FilePath actual = removableLocation(*m_files, written);
    if (!m_files->isAnswering(actual))
        return u"It lies on a volume that does not answer."_qs;

    PlaceSearch search(*m_files, actual, cancellation);
    addKept(search, actual);
    if (actual != written)
        addKept(search, written);
    const std::optional<QString> fromOutside = reasonFromOutside(actual);
    // The program's own tables below Library are offered as they stand.
    if (!fromOutside && !actual.isWithin(m_bases["$library"].actual))
        search.addSockets(isTemporary(actual) ? levelsOfSocketsInTemporary : 1,
                          u"A running program is reached through a socket or pipe in it."_qs);
    const std::optional<QString> found = search.firstReason();
    return found ? found : fromOutside;
}

void LinuxPlaces::takeBases(const BaseDirectories::Environment &environment, const PlacesData &data)
{
    const FilePath home = m_files->homeDirectory().standardized();
    const BaseDirectories folders = BaseDirectories::of(home, environment);
    takeBase("", FilePath("/"));
    takeBase("~", home);
    takeBase("$temporary", m_files->temporaryDirectory().standardized());
    takeBase("$flatpak", home.appending(".var/app"));
    takeBase("$snap", home.appending("snap"));
    takeBase("$library", home.appending("Library"));

    takeUserFolders(home, folders.config);
    takeRefusedRoots(data);

    // A variable that names the home or the documents is a mistake, and no reason to offer them.
    const auto takeUnlessMistaken = [&](const QByteArray &name, const FilePath &told, const char *usual) {
        takeBase(name, mayBeRoot(m_files->resolvingSymlinks(told)) ? told : home.appending(usual).standardized());
    };
    takeUnlessMistaken("$config", folders.config, ".config");
    takeUnlessMistaken("$data", folders.data, ".local/share");
    takeRefusedRoots(data);
    takeUnlessMistaken("$cache", folders.cache, ".cache");
    takeUnlessMistaken("$state", folders.state, ".local/state");
    m_offersTemporary = mayBeRoot(m_bases["$temporary"].actual);
    takeVariables(environment, data);
}

void LinuxPlaces::takeRefusedRoots(const PlacesData &data)
{
    m_refusedRoots.clear();
    for (const PlacesData::RefusedRoot &refused : data.notRoots) {
        if (m_bases.contains(refused.place.base))
            m_refusedRoots.append({m_files->resolvingSymlinks(location(refused.place)), refused.within});
    }
}

void LinuxPlaces::takeUserFolders(const FilePath &home, const FilePath &config)
{
    const UserFolders folders = UserFolders::read(*m_files, home, config);
    for (auto folder = folders.locations.begin(); folder != folders.locations.end(); ++folder)
        takeBase('$' + folder.key(), folder.value());
}

void LinuxPlaces::takeVariables(const BaseDirectories::Environment &environment, const PlacesData &data)
{
    for (const PlacesData::Variable &variable : data.variables) {
        const QByteArray text = environment(variable.name.constData() + 1);
        const QByteArray value = variable.isList ? text.split(':').first() : text;
        const FilePath told(value);
        // One that names the home, the documents or the like is a mistake, whatever links it goes through.
        if (value.startsWith('/') && mayBeRoot(m_files->resolvingSymlinks(told.standardized())))
            takeBase(variable.name, told.standardized());
        else if (variable.usual && m_bases.contains(variable.usual->base))
            takeBase(variable.name, location(*variable.usual));
    }
}

void LinuxPlaces::takeBase(const QByteArray &name, const FilePath &folder)
{
    m_bases[name] = {folder, m_files->resolvingSymlinks(folder)};
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
            if (known.contains(actual) || (actual.suffix.isEmpty() && !mayBeRoot(actual.root)))
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
        if (!m_bases.contains(kept.place.base))
            continue;
        for (const PlacePattern &pattern : patterns(kept.place))
            m_kept.append({pattern, kept.reason});
    }
}

FilePath LinuxPlaces::location(const PlacesData::Place &place) const
{
    FilePath path = m_bases.value(place.base).written;
    for (const QByteArray &name : place.names)
        path = path.appending(name);
    return path;
}

QList<PlacePattern> LinuxPlaces::patterns(const PlacesData::Place &place) const
{
    QList<PlacePattern> found;
    const auto add = [&](const QByteArray &name, const QList<QByteArray> &names) {
        const Base base = m_bases.value(name);
        found.append({base.written, names});
        if (base.actual != base.written)
            found.append({base.actual, names});
    };
    add(place.base, place.names);
    if (place.base == "$cache") {
        add("$flatpak", QList<QByteArray>{"*", "cache"} + place.names);
        add("$snap", QList<QByteArray>{"*", "common", ".cache"} + place.names);
    }
    // What a Flatpak application knows as /var/tmp.
    if (place.base == "$temporary")
        add("$flatpak", QList<QByteArray>{"*", "cache", "tmp"} + place.names);
    return found;
}

bool LinuxPlaces::mayBeRoot(const FilePath &actual) const
{
    return !m_bases["~"].actual.isWithin(actual)
        && std::ranges::none_of(m_refusedRoots, [&](const RefusedRoot &refused) {
               return refused.within ? actual.isWithin(refused.actual) : actual == refused.actual;
           });
}

void LinuxPlaces::addKept(PlaceSearch &search, const FilePath &writtenItem) const
{
    for (const Kept &kept : m_kept)
        search.add(kept.pattern, writtenItem, kept.reason);
}

std::optional<QString> LinuxPlaces::reasonFromOutside(const FilePath &item) const
{
    if (std::ranges::any_of(m_roots, [&](const FilePath &root) { return root.isWithin(item); }))
        return u"What it holds is offered by itself."_qs;
    if (item.isWithin(m_bases["$library"].actual) || !isTemporary(item))
        return std::nullopt;
    if (!m_offersTemporary)
        return u"The folder for temporary files is one that programs rely on for longer."_qs;
    const auto attributes = m_files->attributesOfItem(item);
    if (attributes.isOk() && !attributes.value().isOwnedByUser)
        return u"It belongs to another user."_qs;
    return std::nullopt;
}

bool LinuxPlaces::isTemporary(const FilePath &item) const
{
    return item.isWithin(m_bases["$temporary"].actual);
}

} // namespace Quillmere
