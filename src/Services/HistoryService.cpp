#include "Services/HistoryService.h"

#include "Services/OperationLogCoding.h"
#include "Utilities/Diagnostics.h"
#include "Utilities/RemovableLocation.h"

#include <algorithm>
#include <tuple>

namespace Quillmere {

namespace {

/// The type's name in exports, in English whatever the language.
QString csvLabel(OperationType type)
{
    switch (type) {
    case OperationType::SafeScan:
        return u"Safe Scan"_qs;
    case OperationType::SafeCleanup:
        return u"Safe Cleanup"_qs;
    case OperationType::BrowserScan:
        return u"Browser Scan"_qs;
    case OperationType::BrowserCleanup:
        return u"Browser Cleanup"_qs;
    case OperationType::LargeFilesScan:
        return u"Large Files Scan"_qs;
    case OperationType::StartupScan:
        return u"Startup Scan"_qs;
    case OperationType::SpotlightReset:
        return u"Spotlight Reset"_qs;
    case OperationType::FullScan:
        return u"Full Scan"_qs;
    }
    Q_UNREACHABLE();
}

QString csvLine(const OperationLog &log, const ShortDateFormatter &dates)
{
    const QStringList fields = {
        dates.format(log.date),
        csvLabel(log.operationType),
        QString::number(log.foundSize),
        QString::number(log.cleanedSize),
        QString::number(log.filesRemoved),
        QString::number(log.filesSkipped),
        rawValue(log.status),
    };
    return fields.join(u',') + u'\n';
}

} // namespace

HistoryService::HistoryService(std::shared_ptr<const FileManager> files)
    : m_files(std::move(files))
{
}

void HistoryService::save(const OperationLog &log) const
{
    const Result<QByteArray> json = encodeOperationLogs(loadHistory() << log);
    const Result<void> saved
        = json ? m_files->writeFile(file(), json.value(), WriteMode::InPlace) : Result<void>(json.failure());
    if (!saved)
        printDiagnostic(u"Failed to save history: "_qs, saved.failure());
}

QList<OperationLog> HistoryService::loadHistory() const
{
    const Result<QByteArray> json = m_files->contentsOfFile(file());
    if (!json)
        return {};
    QList<OperationLog> logs = decodeOperationLogs(json.value()).valueOr({});
    std::ranges::stable_sort(logs, std::ranges::greater(), &OperationLog::date);
    return logs;
}

void HistoryService::clearHistory() const
{
    // Whether there was nothing to delete or it could not be deleted, loading shows what is left.
    std::ignore = m_files->removeItem(removableLocation(*m_files, file()));
}

QString HistoryService::exportCSV(const QList<OperationLog> &logs, const DateStyle &dateStyle) const
{
    QString text = u"Date,Type,Found Size,Cleaned Size,Files Removed,Files Skipped,Status\n"_qs;
    const ShortDateFormatter dates(dateStyle);
    for (const OperationLog &log : logs)
        text += csvLine(log, dates);
    return text;
}

QString HistoryService::exportJSON(const QList<OperationLog> &logs) const
{
    return QString::fromUtf8(encodeOperationLogs(logs).valueOr("[]"));
}

/// Makes the folder each time; whether that worked shows when the file is read or written.
FilePath HistoryService::file() const
{
    const FilePath support = m_files->applicationSupportDirectory();
    if (support.isEmpty())
        qFatal("This user has no Application Support folder.");
    const FilePath folder = support.appending("Quillmere");
    std::ignore = m_files->createDirectory(folder, Intermediates::Create);
    return folder.appending("history.json");
}

} // namespace Quillmere
