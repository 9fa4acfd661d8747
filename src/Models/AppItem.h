#pragma once

#include "Models/RawValue.h"
#include "Models/SignedStatus.h"
#include "Values/FilePath.h"

#include <QList>
#include <QString>
#include <QUuid>

#include <optional>

namespace Quillmere {

/// What processors a program is made for. Nothing finds that out: only Unknown occurs.
enum class Architecture { AppleSilicon, Intel, Universal, Unknown };

template<>
struct RawValues<Architecture>
{
    static constexpr std::array<RawValueCase<Architecture>, 4> cases = {{
        {Architecture::AppleSilicon, u"appleSilicon"},
        {Architecture::Intel, u"intel"},
        {Architecture::Universal, u"universal"},
        {Architecture::Unknown, u"unknown"},
    }};
};

/// An application that is installed, with the files of the user's that belong to it.
struct AppItem
{
    QUuid id = QUuid::createUuid(); ///< A new one at each scan.
    QString name; ///< As shown: the name of the bundle without its extension.
    QString bundleIdentifier; ///< Empty where it has none.
    FilePath path;
    qint64 size = 0; ///< Bytes on disk: its own and those of all related files, as they were at the scan.
    std::optional<QString> version; ///< A scan leaves it empty rather than absent.
    Architecture architecture = Architecture::Unknown;
    std::optional<QString> developer; ///< Always absent.
    SignedStatus signedStatus = SignedStatus::Unknown;
    QList<FilePath> relatedFiles; ///< What it left behind, in the order of the search.
    QString icon; ///< A name of the desktop's icon theme, or the absolute path of a picture. Empty when there is none.

    bool operator==(const AppItem &) const = default;
    friend size_t qHash(const AppItem &item, size_t seed = 0) noexcept { return qHash(item.id, seed); }
};

} // namespace Quillmere
