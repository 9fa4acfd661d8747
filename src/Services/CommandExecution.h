#pragma once

#include "Platform/ProcessRunner.h"

#include <QCoro/QCoroTask>

#include <memory>

namespace Quillmere {

/// Runs @p command, without keeping the calling thread waiting, and answers with what it printed on both its outputs;
/// with nothing where that is no text. Fails with a sentence for the user when it cannot be started or does not end
/// with status 0. GUI thread only.
[[nodiscard]] QCoro::Task<Result<QString>> executeProcess(std::shared_ptr<const ProcessRunner> processes,
                                                          Command command);

} // namespace Quillmere
