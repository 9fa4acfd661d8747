#pragma once

#include "Platform/Places.h"

#include <functional>
#include <memory>
#include <mutex>

namespace Quillmere {

/// Places that are made when somebody first asks for them. Making them follows links wherever they lead, dead servers
/// included, which the start of the program must not wait for.
class PlacesOnFirstUse final : public Places
{
public:
    using Maker = std::function<std::unique_ptr<const Places>()>;

    /// @p make is called once, on the thread of the first question; others wait for it.
    explicit PlacesOnFirstUse(Maker make)
        : m_make(std::move(make))
    {
    }

    [[nodiscard]] QList<PlaceRow> rowsBehind(PlaceTable table) const override { return made().rowsBehind(table); }
    [[nodiscard]] QList<PlaceEntry> entriesBehind(const QString &list) const override
    {
        return made().entriesBehind(list);
    }
    [[nodiscard]] std::optional<QString> reasonToKeep(const FilePath &item) const override
    {
        return made().reasonToKeep(item);
    }

private:
    [[nodiscard]] const Places &made() const
    {
        std::call_once(m_once, [this] { m_places = m_make(); });
        return *m_places;
    }

    Maker m_make;
    mutable std::once_flag m_once;
    mutable std::unique_ptr<const Places> m_places;
};

} // namespace Quillmere
