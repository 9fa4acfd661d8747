#pragma once

#include "Platform/FileManager.h"

namespace Quillmere {

/// FileManager::writeFile() in WriteMode::InPlace on this system.
[[nodiscard]] Result<void> writeInPlace(const FilePath &path, const QByteArray &contents);

} // namespace Quillmere
