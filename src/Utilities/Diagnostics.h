#pragma once

#include "Values/Failure.h"

#include <QString>

namespace Quillmere {

/// One line on the standard output, at once. Any thread.
void printDiagnostic(const QString &line);
/// A fixed text, followed by what went wrong and where.
void printDiagnostic(const QString &text, const Failure &failure);

} // namespace Quillmere
