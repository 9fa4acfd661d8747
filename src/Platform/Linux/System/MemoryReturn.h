#pragma once

namespace Quillmere {

/// Gives back what the program holds and does not use at the moment: freed memory that the allocator keeps, and the
/// pages of code and constants of the program and its libraries. The latter come back out of the page cache by
/// themselves where they are needed again. Any thread; safe while others run.
void returnUnusedMemory();

} // namespace Quillmere
