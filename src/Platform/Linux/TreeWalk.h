#pragma once
#include "Platform/FileManager.h"
namespace Quillmere {
[[nodiscard]] Result<TreeSize> measureTree(const FilePath &folder, const Cancellation &cancellation);
}
