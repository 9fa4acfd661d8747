#include "Tools/Disks/DiskIdentity.h"

#include "Platform/Linux/Disks/BlockDevices.h"

#include <QRegularExpression>

#include <algorithm>

namespace Quillmere {

namespace {

constexpr qsizetype wordCount = 8;
constexpr qsizetype longestText = 256;

bool isPlain(const QString &text)
{
    return text.size() <= longestText && std::ranges::all_of(text, [](QChar character) { return character.isPrint(); });
}

/// Exactly the number that is written, without a sign, blanks or zeros before it.
std::optional<qint64> count(const QString &text)
{
    bool isNumber = false;
    const qint64 number = text.toLongLong(&isNumber);
    return isNumber && number >= 0 && QString::number(number) == text ? std::optional(number) : std::nullopt;
}

} // namespace

std::optional<DiskIdentity> DiskIdentity::parse(const QStringList &words)
{
    static const QRegularExpression nodeForm(u"\\A[A-Za-z0-9][A-Za-z0-9._!-]{0,63}\\z"_qs);
    if (words.size() != wordCount)
        return std::nullopt;
    const std::optional<DiskName> name = DiskName::parse(words.at(0));
    const std::optional<quint64> number = deviceNumberOf(words.at(2).toUtf8());
    const std::optional<qint64> size = count(words.at(3));
    const std::optional<qint64> start = count(words.at(4));
    const std::optional<qint64> sequence = count(words.at(5));
    if (!name || !nodeForm.match(words.at(1)).hasMatch() || !number || !size || !start || !sequence)
        return std::nullopt;
    if (!isPlain(words.at(6)) || !isPlain(words.at(7)))
        return std::nullopt;
    return DiskIdentity{*name,  words.at(1).toLatin1(),          *number,     *size,
                        *start, static_cast<quint64>(*sequence), words.at(6), words.at(7)};
}

QStringList DiskIdentity::words() const
{
    return {name.text(),
            QString::fromLatin1(node),
            QString::fromLatin1(textOfDeviceNumber(number)),
            QString::number(size),
            QString::number(start),
            QString::number(sequence),
            serial,
            uuid};
}

} // namespace Quillmere
