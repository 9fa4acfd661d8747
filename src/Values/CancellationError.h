#pragma once

#include <exception>

namespace Quillmere {

/// The one exception of the program, thrown by scans that were stopped and by nothing else.
class CancellationError final : public std::exception
{
public:
    [[nodiscard]] const char *what() const noexcept override { return "The scan was cancelled."; }
};

} // namespace Quillmere
