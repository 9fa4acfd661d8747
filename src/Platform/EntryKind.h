#pragma once

namespace Quillmere {

enum class EntryKind { Regular, Directory, SymbolicLink, Other };

} // namespace Quillmere
