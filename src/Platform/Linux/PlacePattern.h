#pragma once

#include "Platform/FileManager.h"

namespace Quillmere {

/// Where something lies: a folder that is known, and the names below it, in which `*` stands for any run of
/// characters. Names are compared by bytes.
struct PlacePattern
{
    FilePath base; ///< Standardized; a `*` in it is just a character.
    QList<QByteArray> names;

    /// True when @p item is such a place, whether it exists or not, or when one exists inside it.
    /// @p item is taken as standardized.
    [[nodiscard]] bool isAtOrInside(const FilePath &item, const FileManager &files) const;

    /// What exists of it now, in the order of the names, links among it included. A `*` that is not the last name never
    /// stands for a link: anything may have been put there, and what a link leads to is elsewhere.
    [[nodiscard]] QList<FilePath> existing(const FileManager &files) const;

    [[nodiscard]] static bool nameMatches(const QByteArray &pattern, const QByteArray &name);
};

} // namespace Quillmere
