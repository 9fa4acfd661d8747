#pragma once

#include <QString>

namespace Quillmere {

/// The host of the promotions and of the maker's own pages, chosen when the program is built. Under `.example` where
/// nobody chose one: such a host never exists and is never asked.
[[nodiscard]] QString promotionalHost();

} // namespace Quillmere
