#pragma once

#include "Values/FilePath.h"
#include "Values/Result.h"

#include <QByteArray>
#include <QList>

#include <chrono>

namespace Quillmere {

/// Starts @p program in a session of its own, where nothing of ours ends it, and answers with all that it writes before
/// it closes its standard output, at most after @p patience. Its input and its standard error are /dev/null. Fails when
/// it cannot be started or does not close its output in time.
[[nodiscard]] Result<QByteArray> startDetached(const FilePath &program, const QList<QByteArray> &arguments,
                                               std::chrono::milliseconds patience);

} // namespace Quillmere
