#include "Models/FileType.h"

namespace Quillmere {

namespace {

struct FileTypeRow
{
    FileType type;
    const char *extensions; ///< In lower case, each between blanks.
    QStringView icon;
    FileCategory category;
};

constexpr FileTypeRow rows[] = {
    {FileType::File, "", u"doc", FileCategory::Files},
    {FileType::Video, " mp4 mov mkv avi ", u"film", FileCategory::Media},
    {FileType::Image, " jpg jpeg png gif heic ", u"photo", FileCategory::Media},
    {FileType::Audio, " mp3 wav aac m4a flac ", u"waveform", FileCategory::Media},
    {FileType::Archive, " zip rar 7z tar gz ", u"doc.zipper", FileCategory::Archives},
    {FileType::DiskImage, " dmg iso ", u"externaldrive", FileCategory::DiskImages},
    {FileType::Installer, " pkg ", u"shippingbox", FileCategory::Installers},
    {FileType::Application, " app ", u"app", FileCategory::Applications},
    {FileType::Document, " pdf doc docx pages txt rtf ", u"doc.text", FileCategory::Files},
    {FileType::Other, "", u"doc", FileCategory::Files},
};

const FileTypeRow &rowOf(FileType type)
{
    return rows[static_cast<size_t>(type)];
}

} // namespace

FileType fileTypeFromExtension(const QString &extension)
{
    if (extension.isEmpty() || extension.contains(u' '))
        return FileType::Other;
    const QString wanted = u' ' + extension.toLower() + u' ';
    for (const FileTypeRow &row : rows) {
        if (QLatin1String(row.extensions).contains(wanted))
            return row.type;
    }
    return FileType::Other;
}

QString icon(FileType type)
{
    return rowOf(type).icon.toString();
}

FileCategory categoryOf(FileType type)
{
    return rowOf(type).category;
}

} // namespace Quillmere
