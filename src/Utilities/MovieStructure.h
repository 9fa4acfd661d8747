#pragma once

class QIODevice;

namespace Quillmere {

/// Whether @p file is a movie of the MPEG-4 and QuickTime family that holds all it needs: its boxes fill it from end to
/// end, a track has a picture of at most 4096 by 4096, and nothing in it leads to another file or host. The pictures
/// themselves are not looked at. @p file is open and can seek.
[[nodiscard]] bool isSelfContainedMovie(QIODevice &file);

} // namespace Quillmere
