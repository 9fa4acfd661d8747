#pragma once

#include <QString>

#include <optional>

namespace Quillmere {

/// The shell command inside a script of exactly the form
///     do shell script "COMMAND" with administrator privileges
/// with the two escapes of its text, \" and \\, undone; a backslash before a single quote stands for itself. Nothing
/// for a script of any other form.
[[nodiscard]] std::optional<QString> shellTextOfScript(const QString &script);

} // namespace Quillmere
