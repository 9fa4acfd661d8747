#include "Platform/Linux/Places/PlaceSearch.h"

#include <algorithm>

namespace Quillmere {

namespace {

bool areSame(std::span<const QByteArray> left, std::span<const QByteArray> right)
{
    return std::ranges::equal(left, right);
}

} // namespace

PlaceSearch::PlaceSearch(const FileManager &files, FilePath item, const Cancellation &cancellation)
    : m_files(files)
    , m_item(std::move(item))
    , m_cancellation(cancellation)
{
}

void PlaceSearch::add(const PlacePattern &pattern, const FilePath &writtenItem, const QString &reason)
{
    std::optional<PlacePattern::Inside> place = m_isSettled ? std::nullopt : pattern.inside(writtenItem);
    if (!place)
        return;
    const QList<QByteArray> way = PlacePattern::namesBelow(writtenItem, place->folder);
    m_isSettled = place->names.empty() && way.isEmpty();
    const bool isKnown = std::ranges::any_of(
        m_wanted, [&](const Wanted &known) { return known.way == way && areSame(known.names, place->names); });
    if (!isKnown)
        m_wanted.push_back({way, place->names, reason});
}

void PlaceSearch::addSockets(int levels, const QString &reason)
{
    m_levelsOfSockets = levels;
    m_reasonOfSockets = reason;
}

std::optional<QString> PlaceSearch::firstReason()
{
    m_best = m_wanted.size() + 1;
    if (m_isSettled)
        note(m_wanted.size() - 1);
    const bool isLookNeeded = m_isSettled ? m_wanted.size() > 1 : m_levelsOfSockets > 0 || !m_wanted.empty();
    if (const std::unique_ptr<OpenFolder> item = isLookNeeded ? m_files.openFolder(m_item) : nullptr)
        lookThrough(*item);
    if (m_cancellation.isRequested())
        return u"The look into it was broken off."_qs;
    if (m_best > m_wanted.size())
        return std::nullopt;
    return m_best == m_wanted.size() ? m_reasonOfSockets : m_wanted[m_best].reason;
}

void PlaceSearch::lookThrough(OpenFolder &item)
{
    SoughtList inItem;
    for (size_t rank = 0; rank < m_wanted.size() && rank < m_best; ++rank) {
        const auto &[way, names, reason] = m_wanted[rank];
        if (!way.isEmpty())
            lookBehind(item, {way.begin(), way.end()}, {names, rank});
        else
            inItem.push_back({names, rank});
    }
    std::erase_if(inItem, [&](const Sought &each) { return each.rank >= m_best; });
    if (!inItem.empty() || (m_levelsOfSockets > 0 && m_best > m_wanted.size()))
        lookIn(item, inItem, m_levelsOfSockets);
}

void PlaceSearch::lookBehind(const OpenFolder &folder, std::span<const QByteArray> way, const Sought &sought)
{
    const QByteArray &next = way.front();
    if (way.size() == 1 && sought.names.empty()) {
        if (folder.holds(next))
            note(sought.rank);
    } else if (const std::unique_ptr<OpenFolder> below = folder.enter(next)) {
        if (way.size() > 1)
            lookBehind(*below, way.subspan(1), sought);
        else
            lookIn(*below, {sought}, 0);
    }
}

void PlaceSearch::lookIn(OpenFolder &folder, const SoughtList &sought, int levelsOfSockets)
{
    SoughtList named;
    SoughtList open;
    for (const Sought &each : sought)
        (each.names.front().contains('*') ? open : named).push_back(each);
    lookForNamed(folder, named);
    goThrough(folder, open, levelsOfSockets);
}

void PlaceSearch::lookForNamed(const OpenFolder &folder, const SoughtList &sought)
{
    for (const Sought &each : sought) {
        if (each.rank >= m_best)
            continue;
        if (each.names.size() > 1)
            enter(folder, each.names.front(), {{each.names.subspan(1), each.rank}}, 0);
        else if (folder.holds(each.names.front()))
            note(each.rank);
    }
}

void PlaceSearch::goThrough(OpenFolder &folder, const SoughtList &open, int levelsOfSockets)
{
    const auto canImprove = [&] {
        return !m_cancellation.isRequested()
            && ((levelsOfSockets > 0 && m_best > m_wanted.size())
                || std::ranges::any_of(open, [&](const Sought &each) { return each.rank < m_best; }));
    };
    if (!canImprove())
        return;
    folder.forEach([&](QByteArrayView name, EntryKind kind) {
        if (m_cancellation.isRequested())
            return false;
        const size_t before = m_best;
        SoughtList below;
        for (const Sought &each : open) {
            if (each.rank >= m_best || !PlacePattern::nameMatches(each.names.front(), name))
                continue;
            if (each.names.size() == 1)
                note(each.rank);
            else
                below.push_back({each.names.subspan(1), each.rank});
        }
        if (levelsOfSockets > 0 && kind == EntryKind::Other)
            note(m_wanted.size());
        if (kind == EntryKind::Directory)
            enter(folder, name, below, levelsOfSockets - 1);
        return m_best == before || canImprove();
    });
}

void PlaceSearch::enter(const OpenFolder &folder, QByteArrayView name, const SoughtList &sought, int levelsOfSockets)
{
    if (sought.empty() && (levelsOfSockets <= 0 || m_best <= m_wanted.size()))
        return;
    if (const std::unique_ptr<OpenFolder> below = folder.enter(name.toByteArray()))
        lookIn(*below, sought, levelsOfSockets);
}

} // namespace Quillmere
