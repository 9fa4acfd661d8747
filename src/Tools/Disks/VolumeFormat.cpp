#include "Tools/Disks/VolumeFormat.h"

#include <algorithm>
#include <array>

namespace Quillmere {

namespace {

struct Format
{
    QStringView word;
    QStringView fileSystem;
};

constexpr std::array<Format, 6> formats = {{
    {u"APFS", u"ext4"},
    {u"ExFAT", u"exfat"},
    {u"FAT32", u"vfat"},
    {u"JHFS+", u"ext4"},
    {u"MS-DOS", u"vfat"},
    {u"NTFS", u"ntfs"},
}};

// ext4(5): 16 bytes. The other three count characters of UTF-16.
constexpr qsizetype longestOfExt4 = 16;
constexpr qsizetype longestOfFat = 11;
constexpr qsizetype longestOfNtfs = 32;

qsizetype longestLabel(const QString &fileSystem)
{
    if (fileSystem == u"ext4")
        return longestOfExt4;
    return fileSystem == u"ntfs" ? longestOfNtfs : longestOfFat;
}

bool isForFat(QChar character)
{
    constexpr char16_t firstBeyond = 0x80;
    return character.unicode() < firstBeyond && !QStringView(u"*?.,;:/\\|+=<>[]\"").contains(character);
}

} // namespace

std::optional<QString> fileSystemFor(const QString &format)
{
    const auto known = std::ranges::find(formats, format, &Format::word);
    return known == formats.end() ? std::nullopt : std::optional(known->fileSystem.toString());
}

QString whyNotLabel(const QString &fileSystem, const QString &label)
{
    if (label.trimmed().isEmpty())
        return u"A volume needs a name."_qs;
    if (!std::ranges::all_of(label, [](QChar character) { return character.isPrint(); }))
        return u"The name of the volume holds characters that cannot be shown."_qs;
    const qsizetype length = fileSystem == u"ext4" ? label.toUtf8().size() : label.size();
    if (length > longestLabel(fileSystem))
        return u"The name of the volume is too long: %1 takes %2 characters."_qs.arg(fileSystem)
            .arg(longestLabel(fileSystem));
    if (fileSystem == u"vfat" && !std::ranges::all_of(label, isForFat))
        return u"The name of the volume holds characters that vfat cannot keep."_qs;
    return {};
}

} // namespace Quillmere
