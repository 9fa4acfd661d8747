#pragma once
#include "Platform/FileManager.h"
namespace Quillmere {
[[nodiscard]] Result<QList<DirectoryEntry>> contentsOfDirectory(const FilePath &folder, HiddenFiles hidden);
}
