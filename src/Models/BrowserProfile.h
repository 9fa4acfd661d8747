#pragma once

#include "Values/FilePath.h"

#include <QString>
#include <QUuid>

#include <optional>

namespace Quillmere {

/// An installed browser. Its profiles are not told apart: one browser is one profile.
struct BrowserProfile
{
    QUuid id = QUuid::createUuid(); ///< A new one for each detection.
    QString browserName;
    QString profileName = u"Default"_qs;
    FilePath profilePath; ///< Where the program's table has its data, whether that exists or not.
    qint64 cacheSize = 0; ///< Bytes on disk, as all sizes here.
    qint64 cookiesSize = 0; ///< Always 0, like the two below: nothing measures them.
    qint64 historySize = 0;
    qint64 localStorageSize = 0;
    bool isBrowserRunning = false; ///< When it was detected, or since it was asked to quit.
    QString bundleIdentifier;
    std::optional<QString> icon; ///< A name of the desktop's icon theme, or the absolute path of a picture.

    bool operator==(const BrowserProfile &) const = default;
};

} // namespace Quillmere
