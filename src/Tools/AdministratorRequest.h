#pragma once

#include "Tools/ShellText.h"

#include <QStringList>

#include <optional>

namespace Quillmere {

/// What the administrator program is asked to do: a verb of its own and what belongs to it.
struct AdministratorRequest
{
    QString verb;
    QStringList arguments;

    bool operator==(const AdministratorRequest &) const = default;
};

/// The request that stands for the commands in @p shellText. Nothing for commands that are not known, word by word.
[[nodiscard]] std::optional<AdministratorRequest> requestFor(const QString &shellText);

} // namespace Quillmere
