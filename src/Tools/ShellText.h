#pragma once

#include <QList>
#include <QStringList>

#include <optional>

namespace Quillmere {

/// Commands that a shell would run one after the other, as long as each succeeds: `A && B`. Each is its words, as the
/// program would receive them.
using ShellCommands = QList<QStringList>;

/// Undoes the quoting of the POSIX shell: blanks between words, '...', "..." and \. Nothing for a text that asks the
/// shell for more than to run these very words: variables, substitutions, patterns, redirections, other chains than &&,
/// several lines, comments, assignments, and anything left open.
[[nodiscard]] std::optional<ShellCommands> parseShellText(const QString &text);

} // namespace Quillmere
