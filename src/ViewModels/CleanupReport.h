#pragma once

#include "Models/CleanupResult.h"

#include <QObject>

namespace Quillmere {

/// A cleanup's outcome as the report sheet shows it.
class CleanupReport
{
    Q_GADGET
    Q_PROPERTY(QString spaceFreed READ spaceFreed CONSTANT)
    Q_PROPERTY(QString filesRemoved READ filesRemoved CONSTANT)
    Q_PROPERTY(QString filesSkipped READ filesSkipped CONSTANT)
    Q_PROPERTY(QStringList errors READ errors CONSTANT)

public:
    CleanupReport() = default;
    explicit CleanupReport(const CleanupResult &result);

    [[nodiscard]] QString spaceFreed() const;
    [[nodiscard]] QString filesRemoved() const;
    /// Empty when nothing was skipped.
    [[nodiscard]] QString filesSkipped() const;
    /// The first few.
    [[nodiscard]] QStringList errors() const;

private:
    CleanupResult m_result;
};

} // namespace Quillmere
