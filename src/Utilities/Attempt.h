#pragma once

#include "Values/CancellationError.h"
#include "Values/Result.h"

#include <exception>
#include <type_traits>

namespace Quillmere {

/// The answer of @p work, or why it threw: Cancelled for a scan that was stopped. No other exception is expected of
/// anybody, but an exception that leaves a worker ends the program, and with it every run under way.
template<typename Work>
[[nodiscard]] Result<std::invoke_result_t<Work>> attempted(const Work &work)
{
    try {
        return work();
    } catch (const CancellationError &error) {
        return Failure{Failure::Kind::Cancelled, {}, QString::fromUtf8(error.what())};
    } catch (const std::exception &error) {
        return Failure{Failure::Kind::Other, {}, QString::fromUtf8(error.what())};
    }
}

} // namespace Quillmere
