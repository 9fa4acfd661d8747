#pragma once

#include "Platform/Places.h"

#include <QHash>
#include <QStringList>

#include <optional>

namespace Quillmere {

/// The contents of Places.json, as written down: what a place begins with is not yet filled in.
/// Immutable; any thread.
struct PlacesData
{
    /// A location relative to one that is known only at run time.
    struct Place
    {
        QByteArray base; ///< "~", "$cache", "$temporary" and the like, or empty for the root.
        QList<QByteArray> names; ///< Downwards from the base; a `*` in a name stands for any run of characters.

        [[nodiscard]] static Place parse(const QByteArray &text);
    };

    struct Row
    {
        Place root;
        QByteArray suffix;
        QString reason;
    };

    /// One entry of a list, or several where a name in it holds a `*`.
    struct ListRow
    {
        Place place;
        QString name; ///< A `*` in it stands for what the last `*` of the place has led to.
        QByteArray holds; ///< Only a folder with such a child is meant. Empty: any.
        QString reason;
    };

    /// A folder that the user may move by a variable of the environment; it serves other places as their base.
    struct Variable
    {
        QByteArray name; ///< As a base, with the `$`.
        std::optional<Place> usual; ///< Where it is when the variable is not set. None: nowhere.
        bool isList = false; ///< Of several folders with colons between, of which the tool writes to the first.
    };

    struct ReasonedPlace
    {
        Place place;
        QString reason;
    };

    struct RefusedRoot
    {
        Place place;
        bool within = false; ///< Nothing inside it is a root either.
        QString reason;
    };

    QList<Place> programRoots;
    QHash<PlaceTable, QList<Row>> rows;
    QList<Variable> variables;
    QHash<QString, QList<ListRow>> lists;
    QList<RefusedRoot> notRoots;
    QList<ReasonedPlace> keep;

    /// What is compiled into the program. Built once, on first use.
    [[nodiscard]] static const PlacesData &builtIn();
};

} // namespace Quillmere
