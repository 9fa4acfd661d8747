#pragma once

#include "Platform/FileManager.h"

#include <optional>
#include <span>

namespace Quillmere {

/// Where something lies: a folder that is known, and the names below it, in which `*` stands for any run of
/// characters. Names are compared by bytes.
struct PlacePattern
{
    FilePath base; ///< Standardized; a `*` in it is just a character.
    QList<QByteArray> names;

    /// A place as it is seen from an item.
    struct Inside
    {
        FilePath folder; ///< The item itself, or the base where that lies inside the item.
        std::span<const QByteArray> names; ///< What leads to the place from there; as long as the pattern lives.
    };

    /// Where in @p item such places would be; nothing where none can be, whatever exists. Without names left the folder
    /// is such a place. @p item is taken as standardized.
    [[nodiscard]] std::optional<Inside> inside(const FilePath &item) const;

    /// What exists of it now on volumes that answer, in the order of the names, links among it included. A `*` that is
    /// not the last name never stands for a link: anything may have been put there, and what a link leads to is
    /// elsewhere.
    [[nodiscard]] QList<FilePath> existing(const FileManager &files) const;

    /// What leads from @p base to @p item, which lies in it.
    [[nodiscard]] static QList<QByteArray> namesBelow(const FilePath &base, const FilePath &item);
    [[nodiscard]] static bool nameMatches(QByteArrayView pattern, QByteArrayView name);
};

} // namespace Quillmere
