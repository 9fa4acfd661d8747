#pragma once

#include "Platform/Linux/OnFirstUse.h"
#include "Platform/Places.h"

namespace Quillmere {

/// Places that are made when somebody first asks for them.
class PlacesOnFirstUse final : public Places
{
public:
    explicit PlacesOnFirstUse(OnFirstUse<Places>::Maker make)
        : m_places(std::move(make))
    {
    }

    [[nodiscard]] QList<PlaceRow> rowsBehind(PlaceTable table) const override { return m_places->rowsBehind(table); }
    [[nodiscard]] QList<PlaceEntry> entriesBehind(const QString &list) const override
    {
        return m_places->entriesBehind(list);
    }
    using Places::reasonToKeep;
    [[nodiscard]] std::optional<QString> reasonToKeep(const FilePath &item,
                                                      const Cancellation &cancellation) const override
    {
        return m_places->reasonToKeep(item, cancellation);
    }

private:
    OnFirstUse<Places> m_places;
};

} // namespace Quillmere
