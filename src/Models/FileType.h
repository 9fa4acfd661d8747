#pragma once

#include "Models/FileCategory.h"

#include <QStringList>

namespace Quillmere {

/// What kind of file its name says it is.
enum class FileType { File, Video, Image, Audio, Archive, DiskImage, Installer, Application, Document, Other };

template<>
struct RawValues<FileType>
{
    static constexpr std::array<RawValueCase<FileType>, 10> cases = {{
        {FileType::File, u"file"},
        {FileType::Video, u"video"},
        {FileType::Image, u"image"},
        {FileType::Audio, u"audio"},
        {FileType::Archive, u"archive"},
        {FileType::DiskImage, u"diskImage"},
        {FileType::Installer, u"installer"},
        {FileType::Application, u"application"},
        {FileType::Document, u"document"},
        {FileType::Other, u"other"},
    }};
};

/// The type of a file whose name ends with @p extension, without the point. Case does not matter. Never FileType::File.
[[nodiscard]] FileType fileTypeFromExtension(const QString &extension);
/// Name of the type's symbol.
[[nodiscard]] QString icon(FileType type);
/// What the list is narrowed to when files of this type are to be seen.
[[nodiscard]] FileCategory categoryOf(FileType type);

} // namespace Quillmere
