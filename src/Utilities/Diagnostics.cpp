#include "Utilities/Diagnostics.h"

#include "Utilities/FailureDescription.h"

#include <cstdio>

namespace Quillmere {

void printDiagnostic(const QString &line)
{
    std::printf("%s\n", qUtf8Printable(line));
    std::fflush(stdout);
}

void printDiagnostic(const QString &text, const Failure &failure)
{
    const QString what = failure.detail.isEmpty() ? localizedDescription(failure) : failure.detail;
    const QString where = failure.path.isEmpty() ? QString() : u" ("_qs + failure.path.displayText() + u')';
    printDiagnostic(text + what + where);
}

} // namespace Quillmere
