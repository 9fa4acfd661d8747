#pragma once

#include "Models/FileType.h"
#include "Models/RiskLevel.h"
#include "Values/FilePath.h"

#include <QDateTime>
#include <QUuid>

#include <optional>

namespace Quillmere {

/// One large file.
struct FileItem
{
    QUuid id = QUuid::createUuid(); ///< Made anew whenever the file is found.
    QString name; ///< The last component of its path, as it is shown.
    FilePath path;
    qint64 size = 0; ///< Bytes on disk.
    FileType fileType = FileType::Other;
    FileCategory category = FileCategory::Files;
    std::optional<QDateTime> lastOpened;
    std::optional<QDateTime> lastModified;
    RiskLevel riskLevel = RiskLevel::Medium;
    bool isInCloud = false;
    bool isApplication = false;

    bool operator==(const FileItem &) const = default;
};

} // namespace Quillmere

Q_DECLARE_METATYPE(Quillmere::FileItem)
