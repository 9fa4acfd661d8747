#pragma once

#include "Models/RawValue.h"

#include <QMetaType>

namespace Quillmere {

namespace FileCategories {
Q_NAMESPACE

/// What the list of large files can be narrowed to. The last two are not offered, and no file belongs to them.
enum class FileCategory { All, Files, Media, Applications, Archives, Installers, DiskImages, Developer, OldFiles };
Q_ENUM_NS(FileCategory)
} // namespace FileCategories

using FileCategories::FileCategory;

template<>
struct RawValues<FileCategory>
{
    static constexpr std::array<RawValueCase<FileCategory>, 9> cases = {{
        {FileCategory::All, u"all"},
        {FileCategory::Files, u"files"},
        {FileCategory::Media, u"media"},
        {FileCategory::Applications, u"applications"},
        {FileCategory::Archives, u"archives"},
        {FileCategory::Installers, u"installers"},
        {FileCategory::DiskImages, u"diskImages"},
        {FileCategory::Developer, u"developer"},
        {FileCategory::OldFiles, u"oldFiles"},
    }};
};

/// How many of the cases, from the first, can be chosen.
inline constexpr qsizetype offeredFileCategories = 7;

/// Key of the category's label.
[[nodiscard]] inline QString labelKey(FileCategory category)
{
    switch (category) {
    case FileCategory::All:
        return u"largeFiles.filter.allFiles"_qs;
    case FileCategory::Files:
        return u"largeFiles.filter.documents"_qs;
    case FileCategory::OldFiles:
        return u"largeFiles.filter.old"_qs;
    default:
        return u"largeFiles.filter."_qs + rawValue(category);
    }
}

} // namespace Quillmere
