#include "Platform/Linux/FolderListing.h"
namespace Quillmere {
Result<QList<DirectoryEntry>> contentsOfDirectory(const FilePath &, HiddenFiles) { return QList<DirectoryEntry>(); }
}
