#pragma once

#include <QString>

#include <optional>

namespace Quillmere {

/// The file system that the word @p format of an order stands for, by udisks2's name. Nothing for an unknown word.
/// The two of the system's own become the usual one of this platform, and are all that the program orders. The others
/// are there for an administrator who calls `quillmere-admin erase-volume` himself.
[[nodiscard]] std::optional<QString> fileSystemFor(const QString &format);

/// Empty when a volume of @p fileSystem may be called @p label, else why not, as a sentence.
[[nodiscard]] QString whyNotLabel(const QString &fileSystem, const QString &label);

} // namespace Quillmere
