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

    /// What exists of it now, links among it included: folders in the order of their names.
    [[nodiscard]] QList<FilePath> existing(const FileManager &files) const;

    [[nodiscard]] static bool nameMatches(const QByteArray &pattern, const QByteArray &name);
};

} // namespace Quillmere
