#pragma once

#include <functional>
#include <vector>

#include <sys/stat.h>
#include <sys/types.h>

namespace Quillmere {

// What these are given are descriptors of files or folders, open for more than O_PATH.

/// Extended attributes, owner, rights and times, as far as the target's file system and our own rights allow it.
void copyMetadata(int source, int target, const struct stat &status);
/// Makes the owner and the group of @p status those of @p target as far as we may give files away, and answers with
/// what of the rights of @p status then fits: nobody can do more with it than before.
[[nodiscard]] mode_t giveToOwnerOf(const struct stat &status, int target);
void copyTimes(int target, const struct stat &status);

/// Those that the target's file system takes and we may set.
void copyExtendedAttributes(int source, int target);
/// The same of those that @p read reads; it answers with the length, or less than 0 for one that is to be left out.
using AttributeReading = std::function<ssize_t(const char *name, std::vector<char> &value)>;
void copyExtendedAttributes(int source, int target, const AttributeReading &read);

} // namespace Quillmere
