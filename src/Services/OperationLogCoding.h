#pragma once

#include "Models/OperationLog.h"
#include "Values/Result.h"

#include <QList>

namespace Quillmere {

/// The records as one JSON array, in their order. Fails with Malformed when a record has no valid date.
[[nodiscard]] Result<QByteArray> encodeOperationLogs(const QList<OperationLog> &logs);

/// The records of a JSON array, in its order. Fails with Malformed as a whole when a single one is not complete.
[[nodiscard]] Result<QList<OperationLog>> decodeOperationLogs(const QByteArray &json);

} // namespace Quillmere
