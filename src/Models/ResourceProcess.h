#pragma once

#include "Values/FilePath.h"

#include <QString>

#include <optional>

namespace Quillmere {

/// A running application with its share of the machine.
struct ResourceProcess
{
    qint32 pid = 0;
    QString name;
    std::optional<FilePath> path; ///< Of the application's bundle.
    double cpuUsage = 0; ///< Percent of one core: a process on several can pass 100.
    quint64 memoryUsage = 0; ///< Bytes.
    quint64 networkUsage = 0; ///< Bytes per second. Always 0: nothing measures it yet.
    bool isInternetBlocked = false;
    bool isSystemProcess = false;
    std::optional<QString> icon; ///< A name of the desktop's icon theme, or the absolute path of a picture.
    bool canQuit = true;
    quint64 launchTime = 0; ///< Tells the application from a later one of the same pid.

    bool operator==(const ResourceProcess &) const = default;
};

} // namespace Quillmere
