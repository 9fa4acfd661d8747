#pragma once

#include <QStringList>

namespace Quillmere {

/// The words that a shell would make of the command in a script of the form
///     do shell script "COMMAND" with administrator privileges
/// where it is nothing but words, quotation marks and blanks. None for any other script.
[[nodiscard]] QStringList wordsOfScript(const QString &script);

} // namespace Quillmere
