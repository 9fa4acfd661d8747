#pragma once

#include <QByteArray>
#include <QStringView>

namespace Quillmere {

/// The name of our own program that stands for the system's command @p launchPath here. Empty when the command is what
/// its path says.
[[nodiscard]] QByteArray helperProgramFor(QStringView launchPath);

} // namespace Quillmere
