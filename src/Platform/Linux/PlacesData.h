#pragma once

#include "Platform/Places.h"

#include <QHash>
#include <QStringList>

namespace Quillmere {

/// The contents of Places.json, as written down: what a place begins with is not yet filled in.
/// Immutable; any thread.
struct PlacesData
{
    /// A location relative to one that is known only at run time.
    struct Place
    {
        QByteArray base; ///< "~", "$cache", "$config", "$data", "$state", "$temporary", or empty for the root.
        QList<QByteArray> names; ///< Downwards from the base; a `*` in a name stands for any run of characters.

        [[nodiscard]] static Place parse(const QByteArray &text);
    };

    struct Row
    {
        Place root;
        QByteArray suffix;
        QString reason;
    };

    struct ReasonedPlace
    {
        Place place;
        QString reason;
    };

    QList<Place> programRoots;
    QHash<PlaceTable, QList<Row>> rows;
    QList<ReasonedPlace> notRoots;
    QList<ReasonedPlace> keep;

    /// What is compiled into the program. Built once, on first use.
    [[nodiscard]] static const PlacesData &builtIn();
};

} // namespace Quillmere
