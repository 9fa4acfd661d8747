#pragma once

#include "Values/FilePath.h"

#include <QList>

#include <functional>

namespace Quillmere {

/// The user's folders where XDG desktops keep them, which need not exist.
struct BaseDirectories
{
    /// Gives the value of an environment variable; empty when it is not set.
    using Environment = std::function<QByteArray(const char *name)>;

    FilePath cache;
    FilePath config;
    FilePath data;
    FilePath state;

    /// The system's folders for settings, the most important first.
    [[nodiscard]] static QList<FilePath> systemConfig(const Environment &environment);
    /// The same for what programs bring along.
    [[nodiscard]] static QList<FilePath> systemData(const Environment &environment = qgetenv);

    [[nodiscard]] static BaseDirectories of(const FilePath &home, const Environment &environment = qgetenv);
    /// What a variable says, tidied. One that is empty or names no absolute location counts as not set: @p usual.
    [[nodiscard]] static FilePath location(const Environment &environment, const char *name, const FilePath &usual);
};

} // namespace Quillmere
