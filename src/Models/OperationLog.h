#pragma once

#include "Models/RawValue.h"

#include <QDateTime>
#include <QMetaType>
#include <QStringList>
#include <QUuid>

namespace Quillmere {

namespace OperationTypes {
Q_NAMESPACE

/// What kind of operation a record tells of. Only SafeCleanup and BrowserCleanup are ever written.
enum class OperationType {
    SafeScan,
    SafeCleanup,
    BrowserScan,
    BrowserCleanup,
    LargeFilesScan,
    StartupScan,
    SpotlightReset,
    FullScan,
};
Q_ENUM_NS(OperationType)
} // namespace OperationTypes

namespace OperationStatuses {
Q_NAMESPACE

/// How an operation ended. Only Completed is ever written.
enum class OperationStatus { Completed, Partial, Failed, Cancelled };
Q_ENUM_NS(OperationStatus)
} // namespace OperationStatuses

using OperationStatuses::OperationStatus;
using OperationTypes::OperationType;

template<>
struct RawValues<OperationType>
{
    static constexpr std::array<RawValueCase<OperationType>, 8> cases = {{
        {OperationType::SafeScan, u"safeScan"},
        {OperationType::SafeCleanup, u"safeCleanup"},
        {OperationType::BrowserScan, u"browserScan"},
        {OperationType::BrowserCleanup, u"browserCleanup"},
        {OperationType::LargeFilesScan, u"largeFilesScan"},
        {OperationType::StartupScan, u"startupScan"},
        {OperationType::SpotlightReset, u"spotlightReset"},
        {OperationType::FullScan, u"fullScan"},
    }};
};

template<>
struct RawValues<OperationStatus>
{
    static constexpr std::array<RawValueCase<OperationStatus>, 4> cases = {{
        {OperationStatus::Completed, u"completed"},
        {OperationStatus::Partial, u"partial"},
        {OperationStatus::Failed, u"failed"},
        {OperationStatus::Cancelled, u"cancelled"},
    }};
};

/// One finished operation, as the history keeps it.
struct OperationLog
{
    QUuid id = QUuid::createUuid();
    QDateTime date; ///< When the record was made, UTC.
    OperationType operationType = OperationType::SafeCleanup;
    qint64 foundSize = 0; ///< Bytes found before the operation.
    qint64 cleanedSize = 0; ///< Bytes removed.
    qint64 filesRemoved = 0;
    qint64 filesSkipped = 0;
    QStringList errors; ///< As they came.
    QStringList categoriesAffected; ///< Stable English names.
    OperationStatus status = OperationStatus::Completed;

    bool operator==(const OperationLog &) const = default;
};

} // namespace Quillmere
