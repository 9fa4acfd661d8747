#pragma once

#include "Models/OperationLog.h"
#include "Platform/FileManager.h"
#include "Utilities/DateFormatter.h"
#include "Values/SharedInstance.h"

#include <memory>

namespace Quillmere {

/// The program's own record of what it has removed, in one file. It keeps nothing in memory: every call reads the file
/// anew. The file has no lock, so everybody writes on the GUI thread.
class HistoryService
{
public:
    explicit HistoryService(std::shared_ptr<const FileManager> files);

    [[nodiscard]] static HistoryService &shared() { return SharedInstance<HistoryService>::get(); }

    /// Appends @p log behind the records that there are, and writes all of them in place. A file that could not be
    /// read is overwritten. A failure is a line on standard output and nothing else.
    void save(const OperationLog &log) const;
    /// Newest first; records of the same time in the order of the file. Empty when the file is missing, cannot be
    /// read, or holds a single record that is not complete.
    [[nodiscard]] QList<OperationLog> loadHistory() const;
    /// Deletes the file, if it can.
    void clearHistory() const;

    /// A header line and a line for each record, in the order of @p logs. No field is quoted, so a date with a comma
    /// adds one to its line.
    [[nodiscard]] QString exportCSV(const QList<OperationLog> &logs,
                                    const DateStyle &dateStyle = DateStyle::ofUser()) const;
    /// The records as in the file, in the order of @p logs; "[]" when they cannot be encoded.
    [[nodiscard]] QString exportJSON(const QList<OperationLog> &logs) const;

private:
    [[nodiscard]] FilePath file() const;

    std::shared_ptr<const FileManager> m_files;
};

} // namespace Quillmere
